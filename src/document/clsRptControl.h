#pragma once
// The report document: the item records, the page settings and the file identity of one
// report. Everything that reads or changes a report goes through here. Each record points at
// its control on the design page; controls are QObjects whose properties ("Text", "FontBold",
// "Left", ...) are read and written by name, and whose "Tag" holds the item's index.
#include "document/RdfPaper.h"
#include "document/DesignSurface.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <vector>

class FieldDictionary;
class Database;
struct RdfItem;
struct RdfReport;

namespace ObjType {
constexpr int Field = 1, Label = 2, Box = 3, Line = 4, Image = 5, NewPage = 6, SubReport = 7, DateTime = 8, Section = 9;
constexpr int FunctionField = 10; // stored kind of a Field with a FunctionType
}

struct ItemRecord {
    int ObjectType = 0;
    QPointer<QObject> control;
    QString Name;
    QString Text;
    QString DataField;
    int DicId = 0;
    int CodeType = 0;
    quint8 Flags = 0; // bit 0: computed from an SQL expression
    int ZOrder = 0;

    bool HasExpression() const { return Flags & 1; }
};

class clsRptControl : public QObject {
    Q_OBJECT
public:
    clsRptControl();
    ~clsRptControl() override;

    // --- set-up
    void Init(FieldDictionary* dictionary, DesignSurface* window, PropertySheetLink* propertySheet);
    void SetSelectionManager(SelectionManager* selection) { m_sel = selection; }
    FieldDictionary* Dictionary() const { return m_dic; }
    DesignSurface* Window() const { return m_win; }
    QString GraphicsFolder() const { return m_graphicsFolder; }
    void SetGraphicsFolder(const QString& upperCasedFolder) { m_graphicsFolder = upperCasedFolder; }

    // --- public members
    QString AutoFillId;
    int HeaderFlags = 0;
    bool DataView = false;
    bool DirtyFlag = false;
    int TopMargin = 1080, BottomMargin = 1080, LeftMargin = 720, RightMargin = 720;
    int NumberOfColumns = 1;
    std::optional<RdfPaper> Paper; // none: Letter portrait, and nothing stored in the file
    bool EditControlsPasted = false;
    int ReportOption = 0;      // kept from the file and written back unchanged
    bool ClearDataSource = false;
    int FieldListFlag = 0;     // selects the two modes of the stored field list

    int RptItemCount() const { return int(m_items.size()); }
    QString FileName() const { return m_fileName; }
    void SetFileName(const QString& f) { m_fileName = f; }

    // --- per-item properties of the current index
    int Index() const { return m_index; }
    void SetIndex(int index);
    QString Name() const;
    void SetName(const QString& v);
    QString Text() const;
    void SetText(const QString& v);
    int DicId() const;
    void SetDicId(int v);
    QString CustomSQL() const;
    void SetCustomSQL(const QString& v);
    int ObjectType(int index) const;
    QString DataField() const; // of the record the current control's Tag names
    void SetDataField(const QString& v);
    const ItemRecord& Item(int index) const { return m_items.at(size_t(index - 1)); }
    ItemRecord& ItemRef(int index) { return m_items.at(size_t(index - 1)); }

    // --- properties of the current control, written to the whole selection
    QObject* UserControl() const { return m_userControl; }
    void SetUserControl(QObject* control) { m_userControl = control; }

    QString FontName() const;
    void SetFontName(const QString& v);
    float Fontsize() const;
    void SetFontsize(float v);
    bool FontBold() const;
    void SetFontBold(bool v);
    bool FontItalic() const;
    void SetFontItalic(bool v);
    bool FontUnderline() const;
    void SetFontUnderline(bool v);
    int Alignment() const;
    void SetAlignment(int v);
    int ImageAlignment() const;
    void SetImageAlignment(int v);
    int ImageSizeMode() const;
    void SetImageSizeMode(int v);
    int Effect() const;
    void SetEffect(int v);
    bool AllowGrow() const;
    void SetAllowGrow(bool v);
    bool AllowShrink() const;
    void SetAllowShrink(bool v);
    bool UseShortText() const;
    void SetUseShortText(bool v);
    float BorderWidth() const;
    void SetBorderWidth(float v);
    int BorderStyle() const;
    void SetBorderStyle(int v);
    int Backstyle() const;
    void SetBackstyle(int v);
    QString ItemFileName() const;
    void SetItemFileName(const QString& v);
    int Category() const;
    void SetCategory(int v);
    int FunctionType() const;
    void SetFunctionType(int v);
    int PhotoSeq() const;
    void SetPhotoSeq(int v);
    QString DataFormat() const;
    void SetDataFormat(const QString& v);
    quint32 ForeColor() const;
    void SetForeColor(quint32 v);
    quint32 BackColor() const;
    void SetBackColor(quint32 v);
    quint32 BorderColor() const;
    void SetBorderColor(quint32 v);
    float Height() const;
    void SetHeight(float v);
    float Width() const;
    void SetWidth(float v);
    float Top() const;
    void SetTop(float v);
    float Left() const;
    void SetLeft(float v);
    void ZOrder(int position);

    // --- document-level
    bool NewPage = true;
    float SectionSpacing() const { return m_sectionSpacing; }
    void SetSectionSpacing(float inches);

    // --- look-ups
    int FindObject(const QString& objectName) const;
    void ChangeObjectName(const QString& newName);

    // --- editing
    void AddNew(int NewObjectType, const QString& UserFieldName, int DicId);
    void Delete(int DeleteIndex);
    void DeleteSelected();
    void EditCopyControls();
    void EditPasteControls(const QString& FileName, float& X, float& Y);
    void MoveControls(float OldOffset, float NewOffset);
    void CalcEndOfPage(float& end) const;
    void SelectByArea(float ALeft, float ATop, float ARight, float ABottom);
    bool DeleteHeaderFooter();
    void PurgeText();
    void SetPageDefaults();
    void SetEdit();
    void UnloadReport();
    QString AddTempFile();
    QString CopyBufferFile() const { return m_copyBuffer; }
    QStringList TempFiles() const { return m_tempFiles; }

    // --- file
    bool SaveReport(const QString& FileName, bool pStaticReport);
    void LoadReport(const QString& FileName); // throws RdfError / HostError for the caller to report
    void DmpReport(const QString& FileName) const;
    // The document's .rdf bytes written to path for crash recovery: no message box on failure,
    // and the document's file name and unsaved state stay as they were.
    bool WriteRecoveryCopy(const QString& path);

    // --- data view
    void SetView(int view);
    bool RefreshData(const QString& key, int first = 0, int last = 0);
    void ClearTextdata();
    void ClearDataView();
    QString GetBoundPhotoFile(const QString& listNum, int photoSeq, const QString& photoVersion, int category);
    QString GetAgentPhoto(const QString& listNum, int category, int photoSeq);

    // Reading a control's property by name; a control without it gives an invalid QVariant.
    static QVariant Prop(const QObject* control, const char* name);
    // Writing one; a control without that property is skipped (returns false).
    static bool SetProp(QObject* control, const char* name, const QVariant& value);
    static bool IsTextKind(int objectType);
    // Whether a record key may stand in SQL as it is: a plain number for listings and rentals
    // (database kinds 1 and 5), a quoted literal with its quotes doubled for the others.
    static bool KeyIsSafe(int databaseKind, const QString& key);

signals:
    void itemsChanged();

private:
    friend class RptFileConverter;
    friend class UndoStack;
    int indexOf(const QObject* control) const;
    int kindOf(const QObject* control) const;
    QVariant readCurrent(const char* name) const;
    enum class Applies { All, TextItems, NotLines };
    void writeSelected(const char* name, const QVariant& value, Applies applies);
    QList<QObject*> selection() const;
    void tool(const QString& name, bool checked);
    void toolText(const QString& name, const QString& text);
    void syncToolsFromCurrent();
    QString uniqueFieldName(const QString& name) const;
    // Names stay unique: whether another item than `except` (an index, 0 for none) has it, and
    // a free name for item `index` when its own is taken (a numbered name of its kind goes on
    // with the kind's counter, any other name takes a number after it).
    bool nameTaken(const QString& name, int except) const;
    QString freeName(int index);
    // The kind's counter and name prefix ("Rect", "Line", ...); null for a field.
    int* nameCounter(int objectType, QString& prefix);
    void applyDictionaryDefaults(ItemRecord& rec, QObject* control, int dicId);
    QString GetFieldValue(const QString& column, int codeType, bool hasExpression, bool useShortText);
    // Records -> controls; shared by loading and pasting. Returns the first new index.
    int buildItems(const std::vector<RdfItem>& records, const QStringList& pictureFiles);
    void applyRecord(QObject* control, int kind, const RdfItem& r, const QStringList& pictureFiles);
    // An item as the file codec sees it, but with a picture's own file name.
    RdfItem recordOf(const ItemRecord& rec) const;
    void deleteTempFiles();

    FieldDictionary* m_dic = nullptr;
    DesignSurface* m_win = nullptr;
    PropertySheetLink* m_sheet = nullptr;
    SelectionManager* m_sel = nullptr;
    Database* m_db = nullptr;
    QString m_graphicsFolder;
    QString m_fileName;
    std::vector<ItemRecord> m_items;
    int m_index = 0;
    QPointer<QObject> m_userControl;
    float m_sectionSpacing = 0;
    bool m_staticSave = false;
    bool m_function6 = false;
    // Name counters, incremented before use.
    int m_textBoxCount = 0, m_boxCount = 0, m_lineCount = 0, m_imageCount = 0, m_newPageCount = 0,
        m_sectionCount = 0, m_dateSubCount = 0;
    QString m_copyBuffer;
    QStringList m_tempFiles;
};
