#pragma once
// The data of a printed report: for each record key, what every stored item shows. The select
// list is the one stored in the file (page header, detail and footer lists), completed with
// any bound field it lacks; the statement and the decoding are the data view's own.
#include "document/RdfFile.h"

#include <QHash>
#include "render/Picture.h"

#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

class FieldDictionary;
class Recordset;
class Database;
class clsRptControl;

// What the items show for one record, by stored position.
struct RecordValues {
    std::vector<QString> texts;
    std::vector<PictureRef> pictures; // shared with the picture store; null: none
    std::vector<QString> raw; // the unformatted value of each field (for totals)
};

// A sub-report's statement names columns of the record between "%" marks.
QStringList SubReportParameters(const QString& sql);
// The statement with each "%Name%" replaced by value(Name) (quotes doubled) and the host tokens.
QString SubReportStatement(const QString& sql, const std::function<QString(const QString&)>& value);

class ReportData {
public:
    // dictionary may be null for a report without data items; the host is gHost.
    ReportData(const RdfReport& report, FieldDictionary* dictionary);
    ~ReportData();

    // The select list used for every record ("" when the report needs no data).
    QString Columns() const { return m_columns; }
    // Fills values for key. False when the record does not exist. Throws HostError for a key
    // that cannot stand in SQL or a failed query.
    bool Fetch(const QString& key, RecordValues& values);
    // Function fields (Sum 1, Average 2, Minimum 3, Maximum 4, Count 5) show their total over
    // every fetched record, formatted as the field is; other fields keep their own value.
    void ApplyTotals(std::vector<RecordValues>& records) const;
    // What the items show with no record: labels, date/time and fixed pictures only.
    void Blank(RecordValues& values) const;

private:
    QString composeColumns() const;
    static PictureRef loadPicture(const QString& localPath);
    // The rows of a sub-report for the current record: one line each, columns apart.
    QString subReportText(const RdfItem& item, const Recordset* record) const;
    QString shownText(const RdfItem& item, const QString& value, bool formatCleared) const;

    const RdfReport& m_report;
    FieldDictionary* m_dic;
    QString m_columns;
    std::vector<PictureRef> m_fixedPictures; // unbound pictures, the same on every record
    std::unique_ptr<clsRptControl> m_photoLookup; // the data view's own bound-photo search
};
