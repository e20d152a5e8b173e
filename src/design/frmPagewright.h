#pragma once
// The report/flyer design window: menus and tool bars from the command table, the design page
// with its rulers and section bars, the report document and the selection manager. It creates
// items with the current tool, routes item events to the selection manager, and opens, saves
// and closes reports.
#include "design/DesignGeometry.h"
#include "document/DesignSurface.h"
#include "design/frmGridSetup.h"
#include "entry/clsReportDesign.h"
#include "properties/FieldListOwner.h"

#include <QFont>
#include <QMainWindow>
#include <QPointer>
#include <memory>

struct ReportRunRequest;

class CommandBar;
class DesignHistory;
class ZoomController;
class DesignPage;
class FieldDictionary;
class QLineEdit;
class QGraphicsProxyWidget;
class RptItemControl;
class clsResize;
class clsRptControl;
class frmRptFields;
class frmRptProperties;
class GuideLineItem;
class RecoveryCopy;
class SmartGuideLines;

class frmPagewright : public QMainWindow, public DesignWindow, public DesignSurface, public FieldListOwner,
                      public GridTarget {
    Q_OBJECT
public:
    explicit frmPagewright(QWidget* parent = nullptr);
    ~frmPagewright() override;

    // --- DesignWindow
    void Init(int pJobIndex, int MenuSwitch, bool ShowFieldList) override;
    QWidget* Widget() override { return this; }
    void Unload() override;

    // --- the window's operations
    bool SetReport(const QString& pReportFile, const QString& pReportFileTitle, const QString& PropertyId) override;
    // Returns false when the user cancelled or the file could not be written or read.
    // Open mode with a path loads that file; without one the user chooses.
    bool OpenSaveReport(bool saveMode, const QString& path = QString());
    // True when a close is to be cancelled.
    bool QuerySaveChanges();
    // Loads a crash-recovery copy as unsaved changes of reportFile ("" when it was never saved),
    // shown as title; the report file itself is not touched. False (after a message) on failure.
    bool AdoptRecoveredReport(const QString& copyFile, const QString& reportFile, const QString& title);
    RecoveryCopy* Recovery() const { return m_recovery; }
    void UpdateCaption();
    void DrawRuler();
    void MoveDetailHeaderBar(float pos);
    void DeleteHeaderFooter() {}
    // Creates an item of the current tool over `band` (page twips).
    void CreateNewObject(const QString& DataField, const QRectF& band, int dicId = 0);
    void BeginTextEdit(QObject* item);
    void ToolClick(const QString& toolName);
    // A field from the field list dropped at a page point: a field item of the dictionary entry,
    // at the snapped point, sized for its name. Ignored unless a field drag is under way.
    void DropField(QPointF pagePoint, const QString& name, int dicId);
    // The band a dropped field gets: twice the name's text width by one text line + 60 twips.
    QRectF FieldBand(QPointF snappedPoint, const QString& name) const;
    // Where a field added from the keyboard goes: under the lowest item of the detail section.
    QPointF FreeFieldSpot() const;

    // --- FieldListOwner, for the field list
    bool IsDragField() const override { return DragField; }
    void SetDragField(bool on) override { DragField = on; }
    void AddFieldFromList(const QString& name, int dicId) override;

    // --- DesignSurface, for the document
    QObject* LoadItemControl(int objectType) override;
    void UnloadItemControl(QObject* control) override;
    void SendToBack(QObject* control) override;
    float DetailHeaderBarOffset() const override;
    float PageFooterBarOffset() const override;
    void HideHeaderFooter() override;
    void SetHeaderFooter(float detailBarTop) override;
    void MovePageFooterBar(float footerTop) override;
    void ClearDrawing() override;
    int GridIncX() const override { return m_grid.x; }
    int GridIncY() const override { return m_grid.y; }
    void SetGridSpacing(int x, int y) override { SetGrid({x, y}); }
    void SetMousePointer(int pointer) override;
    void SetToolText(const QString& tool, const QString& text) override;
    void SetToolChecked(const QString& tool, bool checked) override;
    void SetToolEnabled(const QString& tool, bool enabled) override;

    // --- parts and state, for the commands and tests
    clsRptControl& Document() const { return *m_doc; }
    clsResize& SelObj() const { return *m_sel; }
    CommandBar& Commands() const { return *m_bar; }
    DesignHistory& History() const { return *m_history; }
    ZoomController& Zoom() const { return *m_zoom; }
    DesignPage& Page() const { return *m_page; }
    SmartGuideLines* GuideLines() const { return m_guideLines; }
    QLineEdit* TextEditor() const { return m_text1; }
    FieldDictionary* Dictionary() const { return m_dic.get(); }
    frmRptFields* FieldList() const { return m_fields; }
    frmRptProperties* PropertySheet() const { return m_props; }
    int CurrentTool() const;
    int JobIndex() const { return m_jobIndex; }
    int MenuSwitch() const { return m_menuSwitch; }
    QString ReportsFolder() const { return m_reportsFolder; }   // with "~UserName~"
    QString ReportsFolderPath() const;                          // local, user resolved
    QString DesignerFolder() const { return m_designerFolder; }
    QString ReportFile() const { return m_reportFile; }
    QString ReportFileTitle() const { return m_reportFileTitle; }
    double PageLength() const { return m_pageLength; }
    DesignGeometry::GridSpacing Grid() const { return m_grid; }
    void SetGrid(const DesignGeometry::GridSpacing& grid);
    int TopZOrder() const { return m_topZOrder; }
    int BottomZOrder() const { return m_bottomZOrder; }
    QFont DefaultFont;
    bool DragField = false;
    bool Exiting = false;

    // The commands this window carries out; the rest stay disabled.
    static QStringList ImplementedTools();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    // item creation and page mouse work (frmPagewrightItems.cpp)
    void PageMouseDown(int button, int shift, QPointF point);
    void PageMouseMove(int buttons, int shift, QPointF point);
    void PageMouseUp(int button, int shift, QPointF point);
    void ItemMouseDown(RptItemControl* item, int button, int shift, float x, float y);
    void ItemMouseMove(RptItemControl* item, int button, int shift, float x, float y);
    void ItemMouseUp(RptItemControl* item, int button, int shift, float x, float y);
    void KeyDown(int keyCode, int shift);
    // Smart guides for the selection manager: the other items of the section and the margins.
    void InstallSmartGuides();
    void BarDragMoved(const QString& name, QPointF pointer, double barTop);
    void BarDropped(const QString& name, double barTop);
    void EndTextEdit(bool keep);
    bool TextEditorEvent(QEvent* event);
    QPointF ClampToPage(QPointF p) const;
    QString ChooseReportFile(const QString& title) const;
    QString ChooseEmbeddedPicture();
    void InsertFile(const QRectF& band);
    void FinishTool();
    // undo, zoom and arrange commands (frmPagewrightArrange.cpp); false when not one of them
    bool ViewCommand(const QString& toolName);
    bool ArrangeCommand(const QString& toolName);
    static QStringList ArrangeTools();
    // commands (frmPagewright.cpp)
    void NewReport();
    void ExitCommand();
    // Formatting and view tools; false when the tool is not one of them.
    bool FormatCommand(const QString& toolName);
    void ComboChange(const QString& toolName, const QString& text);
    void RefreshObjectNames();
    void ShowCurrentObjectName();
    void ApplyOutlines();
    void ShowTemplateView();
    bool ShowDataView();
    void SelectPropertyCommand();
    void ClipboardCommand(const QString& toolName);
    void ZOrderCommand(bool toFront);
    void PageHeaderCommand();
    void FormUnload();
    void FileError(const QString& fileName, int number, const QString& description) const;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool PageDragEvent(QEvent* event);
    void CreateFieldList(bool show);
    void ShowPropertySheet();
    // The page and the first selected item take the keyboard.
    void FocusSelection();
    // The design page shows the paper and the report's margins.
    void ShowPaper();
    // The sheet, when shown, reloads the selection's values after a change made elsewhere.
    void RefreshPropertySheet();
    // Print or preview: the report goes to a temporary file and, with its record, to the
    // installed report engine (asking for the record first when there is none).
    void PrintCommand(bool preview, bool printDialog);
    void PrintManyCommand(); // File > Print Many
    bool ReportHasItems(); // says so when there is nothing to print
    void RunOnPrintCopy(ReportRunRequest request);
    // A report file to open or save as: the component's file dialog when one is installed,
    // else a plain file chooser on the kind's folder. "" when cancelled.
    QString ChooseReportFile(bool saveMode) const;

    CommandBar* m_bar = nullptr;
    DesignHistory* m_history = nullptr;
    ZoomController* m_zoom = nullptr;
    DesignPage* m_page = nullptr;
    std::unique_ptr<clsRptControl> m_doc;
    std::unique_ptr<clsResize> m_sel;
    std::unique_ptr<FieldDictionary> m_dic;
    frmRptFields* m_fields = nullptr;
    frmRptProperties* m_props = nullptr;
    RecoveryCopy* m_recovery = nullptr; // child QObject of the window
    bool m_propsPlaced = false;
    GuideLineItem* m_hGuide = nullptr;
    GuideLineItem* m_vGuide = nullptr;
    SmartGuideLines* m_guideLines = nullptr; // in the page's scene
    QLineEdit* m_text1 = nullptr;
    QGraphicsProxyWidget* m_text1Proxy = nullptr;
    QPointer<QObject> m_editItem;
    QString m_editStart;
    bool m_endingEdit = false;

    int m_jobIndex = -1;
    int m_menuSwitch = 1;
    QString m_reportsFolder, m_designerFolder;
    QString m_reportFile, m_reportFileTitle;
    double m_pageLength = 14 * 1440.0;
    DesignGeometry::GridSpacing m_grid;
    int m_topZOrder = 0, m_bottomZOrder = 0;
    double m_sceneTopZ = 0, m_sceneBottomZ = 0;
    QPointF m_anchor;
    bool m_initialised = false;
    bool m_unloaded = false;
    bool m_unloading = false; // closing without asking
    bool m_jobClosed = false;
};

// Lets clsReportDesign create this window.
void RegisterDesignWindow();
