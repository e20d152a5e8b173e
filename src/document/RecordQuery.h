#pragma once
// How one record of a report kind is fetched and turned into item texts. The document's data
// view and the report engine both come through here, so a printed report shows exactly what
// the data view shows.
#include <QString>
#include <QStringList>
#include <QVariant>

class FieldDictionary;
class Recordset;

namespace RecordQuery {

// "'~AccessKey~'" becomes the host's access key, "'~UserId~'" the quoted agent id.
QString ReplaceHostTokens(QString sql);

// A column value as text, as the classic engine's CStr gives it: whole numbers that arrive as
// reals lose their ".0", a Date/Time shows in the General Date form ("6/18/2024" when it has no
// time of day), a Boolean as "True"/"False".
QString ValueText(const QVariant& value);

// The stamp a date-time item shows: now in the General Date form ("11/23/2026 7:09:45 PM").
QString NowText();

// The statement that fetches one record: columns (a select list without surrounding commas),
// the Photo join when the list holds PhotoVersion, the key inserted as given, the listing
// status filter and the host tokens.
QString SelectRecord(FieldDictionary& dictionary, const QString& columns, const QString& key);

// The same statement for many records at once: the key condition is "Table.Key IN (keys)".
// Keys are inserted as given; the caller checks them.
QString SelectRecords(FieldDictionary& dictionary, const QString& columns, const QStringList& keys);

struct FieldText {
    QString text;
    bool formatCleared = false; // a coded short text with a second column shows unformatted
};

// The text of a field item from the current row: Null is "", coded values are decoded long or
// short, and a coded short text with a second column (secondColumn) joins both with ", ".
FieldText DecodeField(const Recordset& rs, const FieldDictionary& dictionary, const QString& dataField, int codeType,
                      bool useShortText, const QString& secondColumn);

} // namespace RecordQuery
