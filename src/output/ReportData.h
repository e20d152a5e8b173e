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
#include <optional>
#include <vector>

class FieldDictionary;
class Recordset;
class Database;
class clsRptControl;

// What the items show for one record, by stored position.
struct RecordValues {
    std::vector<QString> texts;
    std::vector<PictureRef> pictures; // shared with the picture store; null: none
    std::vector<QString> pictureFiles; // bound photos found but not yet loaded (LoadPictures)
    std::vector<QString> raw; // the unformatted value of each field (for totals)
};

// A sub-report's statement names columns of the record between "%" marks.
QStringList SubReportParameters(const QString& sql);
// The statement with the host tokens and each "%Name%" replaced by value(Name) as a literal:
// within a quoted literal with that quote doubled, bare as a number when it is one, Null when
// empty, else as a quoted text literal. No value can change the statement's structure.
QString SubReportStatement(const QString& sql, const std::function<QString(const QString&)>& value);

class ReportData;

// Totals of function fields (Sum, Average, Minimum, Maximum, Count) over the records printed:
// every record's values are added first (a pass without pictures), then each printed record
// shows them.
class ReportTotals {
public:
    explicit ReportTotals(const RdfReport& report);
    bool Empty() const { return m_totals.empty(); }
    void Add(const RecordValues& record);
    void Finish(const ReportData& data);
    void Apply(RecordValues& record) const;

private:
    enum { Sum = 1, Average, Minimum, Maximum, Count };
    struct Total {
        size_t item = 0;
        int function = 0;
        double sum = 0, low = 0, high = 0;
        int numbers = 0, filled = 0;
        QString text;
    };
    std::vector<Total> m_totals;
};

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
    // Fills out[i] with the record of keys[i], or leaves it empty when there is none, with one
    // statement for all of them (the same select list, status filter and decoding as Fetch).
    // Repeated keys get the same record again. Bound photos are found (pictureFiles) but not
    // loaded; without pictures they are not even looked up (a first pass for totals). Throws
    // HostError as Fetch does.
    void FetchMany(const QStringList& keys, std::vector<std::optional<RecordValues>>& out, bool pictures = true);
    // Loads the bound photos FetchMany found into values.pictures.
    void LoadPictures(RecordValues& values);
    // Function fields (Sum 1, Average 2, Minimum 3, Maximum 4, Count 5) show their total over
    // every fetched record, formatted as the field is; other fields keep their own value.
    void ApplyTotals(std::vector<RecordValues>& records) const;
    // What the items show with no record: labels, date/time and fixed pictures only.
    void Blank(RecordValues& values) const;
    // The text item (0-based) shows for value, formatted as the item is.
    QString ShownText(size_t item, const QString& value) const;

private:
    QString composeColumns() const;
    void checkKey(const QString& key) const;
    void decodeRow(const QString& key, const Recordset* rs, RecordValues& values, bool pictures);
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
