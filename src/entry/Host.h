#pragma once
// The host's objects as the designer sees them. A host (the embedded one in src/host, or any
// other) implements these; the designer reaches them only through gHost.
// Every operation may throw HostError.
#include "entry/HostError.h"
#include "entry/Recordset.h"

#include <QObject>
#include <QString>
#include <QVariant>
#include <memory>
#include <vector>

class QWidget;

// The host's data-access object. Statements are in the Jet SQL dialect, one per call.
class Database {
public:
    virtual ~Database() = default;
    // kind: database selector (1 listings, 2 tax rolls, 3 offices, 4 agents, 5 rentals).
    // cursor/lock/options are the classic ADO values (3 static, 1 read-only, 1 SQL text).
    virtual std::unique_ptr<Recordset> OpenRecordset(int kind, const QString& sql, int cursor = 3,
                                                     int lock = 1, int options = 1) = 0;
};

// One entry of a field list: its display name and its dictionary number.
struct FieldListEntry {
    QString name;
    int dicId = 0;
};

// One entry of a code list: its display text and its code.
struct CodeListEntry {
    QString text;
    QString code;
};

// The field catalogue of one database kind. One field is "current" at a time.
class FieldDictionary {
public:
    virtual ~FieldDictionary() = default;

    // Database selector: 1 listings, 2 tax rolls, 3 offices, 4 agents, 5 rentals.
    virtual int DatabaseKind() const = 0;
    virtual QString TableName() const = 0;
    virtual QString KeyField() const = 0;

    // Make a field current; an unknown id or name throws HostError (3270).
    virtual void SelectField(int dicId) = 0;
    virtual void SelectFieldByName(const QString& name) = 0;

    // Values of the current field.
    virtual int DicId() const = 0;
    virtual QString FieldName() const = 0;        // display name
    virtual QString FieldColumnName() const = 0;
    virtual int FieldDataType() const = 0;        // DAO codes: 1 Boolean, 2..7 numbers, 8 Date, 10 Text, 12 Memo
    virtual int FieldCodeType() const = 0;        // 1 or 2: the column holds a code
    virtual QString FieldExpression() const = 0;  // SQL expression of a computed field, else ""
    virtual QString FieldFormat() const = 0;      // the format text a new item gets as DataFormat

    // Code decoding; an unknown code gives the code itself back, a Null-ish empty code "".
    virtual QString DecodeLong(const QString& code) const = 0;
    virtual QString DecodeShort(const QString& code) const = 0;
    // The current field's code list: column 0 the code, column 1 its description.
    virtual std::unique_ptr<Recordset> FieldCodes(bool longText, bool sorted) const = 0;
    // The current field's codes as (text, code) pairs, for filling a list.
    virtual std::vector<CodeListEntry> FillCodeList() const = 0;

    // Restrict the enumeration to one field group ("" = all), then list it.
    virtual void SetFieldGroup(const QString& groupCode) = 0;
    virtual std::vector<FieldListEntry> FillFieldList() const = 0;

    // The catalogue's version byte, stored in report files; Reload re-reads the catalogue.
    virtual quint8 Version() const = 0;
    virtual void Reload() = 0;
};

// The host's event source.
class AppEvents : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
signals:
    void UnloadForm();
    void MinimizedChanged(bool minimized);
};

// The host's main window: owner of the designer's windows, carrier of the late-bound Switch.
class HostMainForm {
public:
    virtual ~HostMainForm() = default;
    // Late-bound: may be missing (invalid QVariant) or not a number.
    virtual QVariant Switch() const = 0;
    virtual void SetSwitch(const QVariant& value) = 0;
    virtual QWidget* Window() const = 0; // owner window, may be null
};

struct PhotoResult {
    QString path;
    int status = 1; // 1 = no picture
};

class TervaneCommon;

// The print library's photo service.
class PhotoLibrary {
public:
    virtual ~PhotoLibrary() = default;
    // A listing photo (mode 0).
    virtual PhotoResult GetPhotoFile(TervaneCommon& host, const QString& listNum, int photoSeq,
                                     const QString& photoVersion, int mode) = 0;
    // A roster photo: operation "GetRosterPhoto", kind 1 agent, 2 office.
    virtual PhotoResult GetPhotoFile(TervaneCommon& host, const QString& rosterId, int rosterKind,
                                     const QString& operation) = 0;
};

// The host's common object.
class TervaneCommon {
public:
    virtual ~TervaneCommon() = default;

    virtual HostMainForm& MainForm() = 0;
    virtual ::Database& Database() = 0;
    virtual ::AppEvents& AppEvents() = 0;
    virtual void CloseJob(const QVariant& jobIndex) = 0;
    virtual QString AppPath() const = 0;   // ends with "\"
    virtual QString UserPath() const = 0;  // no trailing "\"
    virtual QString UserName() const = 0;
    virtual QString OfficeId() const = 0;
    virtual QString AgentId() const = 0;
    virtual int UserLevel() const = 0;
    virtual QString DataPath() const = 0;  // no trailing "\"
    virtual QString AccessKey() const = 0;
    virtual int BoardId() const = 0;
    virtual QString StatusList() const = 0;
    virtual QString HelpFile() const = 0;

    // What the host's type library and print library provide.
    virtual std::unique_ptr<FieldDictionary> NewFieldDictionary(int databaseKind) = 0;
    virtual PhotoLibrary& PhotoService() = 0;
};

// The host object in use; set by clsReportDesign::Start, never cleared.
extern TervaneCommon* gHost;
