#include "design/frmPagewright.h"
#include "design/RecoveryCopy.h"
#include "help/HelpBook.h"
#include "help/HelpContexts.h"

#include "design/CommandBar.h"
#include "design/DesignHistory.h"
#include "design/Zoom.h"
#include "design/DesignPage.h"
#include "design/PageRuler.h"
#include "design/Rectangle.h"
#include "design/RptImage.h"
#include "design/RptLine.h"
#include "design/RptTextBox.h"
#include "design/SectionBar.h"
#include "design/clsResize.h"
#include "document/clsRptControl.h"
#include "entry/Host.h"
#include "entry/PrivateProfile.h"
#include "entry/Prompts.h"
#include "entry/ReportKinds.h"
#include "properties/frmRptFields.h"
#include "properties/frmRptProperties.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFontDatabase>
#include <QGraphicsProxyWidget>
#include <QGraphicsScene>
#include <QLineEdit>
#include <QStyle>
#include <QToolBar>

using namespace DesignGeometry;

// The selection manager moves a ruler guide line by moving a scene item; this item passes the
// move on to the ruler widget. It is never added to the scene.
class GuideLineItem : public QGraphicsItem {
public:
    GuideLineItem(PageRuler* ruler, Qt::Orientation o) : m_ruler(ruler), m_orientation(o)
    {
        setFlag(ItemSendsGeometryChanges);
    }
    QRectF boundingRect() const override { return {}; }
    void paint(QPainter*, const QStyleOptionGraphicsItem*, QWidget*) override {}

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override
    {
        if (change == ItemPositionHasChanged) {
            const QPointF p = value.toPointF();
            m_ruler->SetGuide(m_orientation == Qt::Horizontal ? p.x() : p.y());
        }
        return QGraphicsItem::itemChange(change, value);
    }

private:
    PageRuler* m_ruler;
    Qt::Orientation m_orientation;
};

frmPagewright::frmPagewright(QWidget* parent)
    : QMainWindow(parent)
{
    setObjectName(QStringLiteral("frmPagewright"));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(1100, 780);
    m_bar = new CommandBar(this);
    m_bar->setObjectName(QStringLiteral("ddbMenu"));
    QStringList tools = ImplementedTools();
    // Printing needs an engine; without one the print tools stay disabled.
    if (HasReportRunner())
        tools << QStringLiteral("print") << QStringLiteral("printpreview") << QStringLiteral("PrintFromFileMenu")
              << QStringLiteral("miPrintMany");
    if (HasPrinterSetup())
        tools << QStringLiteral("miPrintSetup");
    m_bar->SetImplemented(tools);
    // Wide enough for the top tool bars: a tool pushed into the overflow menu is a tool lost.
    // Bars share a row until a break (the arrange tools sit beside the formatting ones).
    int barsWidth = 0, rowWidth = 0;
    for (QToolBar* b : findChildren<QToolBar*>())
        if (toolBarArea(b) == Qt::TopToolBarArea) {
            if (toolBarBreak(b))
                rowWidth = 0;
            rowWidth += b->sizeHint().width();
            barsWidth = std::max(barsWidth, rowWidth);
        }
    resize(std::max(width(), barsWidth + 2 * style()->pixelMetric(QStyle::PM_ToolBarHandleExtent)), height());
    m_page = new DesignPage(this);
    setCentralWidget(m_page);

    m_doc = std::make_unique<clsRptControl>();
    m_sel = std::make_unique<clsResize>();
    m_hGuide = new GuideLineItem(m_page->HRuler(), Qt::Horizontal);
    m_vGuide = new GuideLineItem(m_page->VRuler(), Qt::Vertical);
    m_history = new DesignHistory(*this);
    m_zoom = new ZoomController(*this);

    // In-place editor of a label's text: a line edit on the page, at screen scale.
    m_text1 = new QLineEdit;
    m_text1->setObjectName(QStringLiteral("Text1"));
    m_text1->setFrame(false);
    m_text1Proxy = m_page->Scene()->addWidget(m_text1);
    m_text1Proxy->setScale(RptItemControl::PixelTwips());
    m_text1Proxy->setZValue(2e9);
    m_text1Proxy->setVisible(false);
    m_text1->installEventFilter(this);
    // Fields dragged from the field list land on the viewport, over the page or over an item.
    m_page->View()->viewport()->setAcceptDrops(true);
    m_page->View()->viewport()->installEventFilter(this);

    connect(m_bar, &CommandBar::triggered, this, &frmPagewright::ToolClick);
    connect(m_bar, &CommandBar::comboChanged, this, [this](const QString& tool, const QString& text) {
        if (tool == u"miZoom") {
            if (const int percent = ViewZoom::Parse(text))
                m_zoom->SetPercent(percent);
            else
                m_bar->SetComboText(tool, ViewZoom::Text(m_zoom->Percent()));
            return;
        }
        const DesignHistory::Command step(*m_history, tool);
        ComboChange(tool, text);
        if (m_props && m_props->isVisible())
            m_props->LoadProperties();
    });
    connect(m_page, &DesignPage::pageMouseDown, this, &frmPagewright::PageMouseDown);
    connect(m_page, &DesignPage::pageMouseMove, this, &frmPagewright::PageMouseMove);
    connect(m_page, &DesignPage::pageMouseUp, this, &frmPagewright::PageMouseUp);
    connect(m_page, &DesignPage::barDragMoved, this, &frmPagewright::BarDragMoved);
    connect(m_page, &DesignPage::barDropped, this, &frmPagewright::BarDropped);
    connect(m_page->View(), &PageView::keyDown, this, &frmPagewright::KeyDown);
    DefaultFont = QFont(QStringLiteral("Arial"));
    DefaultFont.setPointSizeF(10);
}

frmPagewright::~frmPagewright()
{
    FormUnload();
    delete m_hGuide;
    delete m_vGuide;
}

static QStringList PaletteTools()
{
    QStringList names;
    for (int i = 0; i < 16; ++i)
        names << QStringLiteral("cpColor%1").arg(i);
    return names;
}

QStringList frmPagewright::ImplementedTools()
{
    return QStringList{QStringLiteral("new"), QStringLiteral("Open"), QStringLiteral("miSave"), QStringLiteral("miSaveAs"),
            QStringLiteral("exit"), QStringLiteral("tbSelectObjects"), QStringLiteral("tbInsertLabel"),
            QStringLiteral("tbInsertPicture"), QStringLiteral("EmbedPhoto"), QStringLiteral("InsertLinkedPhoto"),
            QStringLiteral("tbBoundPicture"), QStringLiteral("tbInsertRectangle"), QStringLiteral("tbInsertLine"),
            QStringLiteral("tbDateTime"), QStringLiteral("tbPageBreak"), QStringLiteral("tbSectionBreak"),
            QStringLiteral("tbSubReport"), QStringLiteral("miInsertFile"), QStringLiteral("miSelectByArea"),
            QStringLiteral("miDeleteObject"), QStringLiteral("miCut"), QStringLiteral("miCopy"),
            QStringLiteral("miPaste"), QStringLiteral("miSendtoFront"), QStringLiteral("miSendtoBack"),
            QStringLiteral("miPageHeader"), QStringLiteral("miFieldList"), QStringLiteral("fnBold"),
            QStringLiteral("fnItalic"), QStringLiteral("fnUnderline"), QStringLiteral("fnLeft"),
            QStringLiteral("fnCenter"), QStringLiteral("fnRight"), QStringLiteral("miEffect"),
            QStringLiteral("miEffectFlat"), QStringLiteral("miEffectShadow"), QStringLiteral("fnFont"),
            QStringLiteral("fnFontSize"), QStringLiteral("miObjectName"), QStringLiteral("fnForeColor"),
            QStringLiteral("fnBackColor"), QStringLiteral("tbBorderColor"), QStringLiteral("miShowOutline"),
            QStringLiteral("miClearDataSource"), QStringLiteral("miTemplateView"), QStringLiteral("miDataView"),
            QStringLiteral("miSelectProperty"), QStringLiteral("miPageSetup"), QStringLiteral("miGridSetup"), QStringLiteral("miProperties"),
            QStringLiteral("mnuHelp")}
           + PaletteTools() + ArrangeTools();
}

void frmPagewright::Init(int pJobIndex, int MenuSwitch, bool ShowFieldList)
{
    m_jobIndex = pJobIndex;
    m_menuSwitch = MenuSwitch >= 1 && MenuSwitch <= 6 ? MenuSwitch : ReportKind::Listings;
    if (gHost) {
        connect(&gHost->AppEvents(), &AppEvents::UnloadForm, this, [this] {
            // The host's request: ask about unsaved work (the answer cannot stop it), then go.
            if (!Exiting && !m_unloading)
                QuerySaveChanges();
            Unload();
        });
        m_designerFolder = gHost->DataPath() + QStringLiteral("\\Users\\") + gHost->UserName() +
                           QStringLiteral("\\Report Designer");
    }
    m_pageLength = PageLengthTwips(UserIni::Get(QStringLiteral("Pagelength"), QStringLiteral("14")));

    m_reportsFolder = ReportFolderTemplate(m_menuSwitch);
    m_bar->ApplyReportKindAndLevel(m_menuSwitch, gHost ? gHost->UserLevel() : 0);

    if (gHost) {
        try {
            m_dic = gHost->NewFieldDictionary(DictionaryKindOf(m_menuSwitch));
        } catch (const HostError& e) {
            MsgBox(e.Text(),
                   Mb::OKOnly | Mb::Critical, QStringLiteral("Report error"));
        }
    }
    if (!m_props)
        m_props = new frmRptProperties(this);
    m_doc->Init(m_dic.get(), this, m_props);
    if (!m_recovery)
        m_recovery = new RecoveryCopy(this);

    m_bar->SetComboItems(u"fnFont", QFontDatabase::families());
    m_bar->SetComboText(u"fnFont", DefaultFont.family());
    m_bar->SetComboText(u"fnFontSize", QString::number(DefaultFont.pointSizeF()));

    m_grid = ParseGrid(UserIni::Get(QStringLiteral("Grid"), QStringLiteral("60,60")));

    m_sel->SetScene(m_page->Scene());
    m_sel->SetRptControl(m_doc.get());
    m_sel->SetGridX(float(m_grid.x));
    m_sel->SetGridY(float(m_grid.y));
    m_sel->SetRulerLines(m_hGuide, m_vGuide);
    m_sel->SetPageSize(float(m_pageLength), float(m_pageLength));
    InstallSmartGuides();
    m_props->Init(m_doc.get(), m_sel.get());
    connect(m_sel.get(), &clsResize::selectionChanged, this, [this] {
        m_doc->SetEdit();
        if (m_sel->Count() == 0) {
            // Nothing selected: the tools show no item's style, only what a new text gets.
            for (const char* t : {"fnBold", "fnItalic", "fnUnderline", "fnLeft", "fnCenter", "fnRight",
                                  "miEffectFlat", "miEffectShadow"})
                m_bar->SetChecked(QString::fromLatin1(t), false);
            m_bar->SetComboText(u"fnFont", RptTextBox::KindFont().family());
            m_bar->SetComboText(u"fnFontSize", QString::number(RptTextBox::KindFont().pointSizeF()));
        }
        ShowCurrentObjectName();
        if (m_props->isVisible())
            m_props->LoadProperties();
    });
    // Whatever moved or resized the selection (mouse, handles, keys), the sheet shows it.
    connect(m_sel.get(), &clsResize::itemsMoved, this, &frmPagewright::RefreshPropertySheet);
    connect(m_doc.get(), &clsRptControl::itemsChanged, this, [this] {
        ShowPaper(); // a report loaded or cleared brings its own margins
        RefreshObjectNames();
        if (m_bar->IsChecked(u"miShowOutline"))
            ApplyOutlines();
    });

    m_page->SetPageLength(m_pageLength);
    m_sel->ClearSelect();
    m_doc->SetPageDefaults();
    HideHeaderFooter();
    m_doc->SetEdit();
    CreateFieldList(ShowFieldList);
    m_initialised = true;

    m_reportFileTitle = QStringLiteral("Untitled");
    UpdateCaption();
    m_zoom->LoadSaved();
    m_history->Reset();
}

void frmPagewright::SetGrid(const GridSpacing& grid)
{
    m_grid = grid;
    m_sel->SetGridX(float(grid.x));
    m_sel->SetGridY(float(grid.y));
}

int frmPagewright::CurrentTool() const { return m_bar->CurrentTool(); }

// ---------------------------------------------------------------- commands

void frmPagewright::ToolClick(const QString& toolName)
{
    const QString& t = toolName;
    if (ViewCommand(t))
        return;
    // Whatever the command changes is one step of the history.
    const DesignHistory::Command step(*m_history, t);
    if (ArrangeCommand(t))
        return;
    if (t == u"new")
        NewReport();
    else if (t == u"Open") {
        // Another report replaces this one: unsaved work is offered for saving first.
        if (!QuerySaveChanges())
            OpenSaveReport(false);
    }
    else if (t == u"miSave") {
        if (!m_reportFile.isEmpty()) {
            SetMousePointer(11);
            m_doc->SaveReport(m_reportFile, false);
            SetMousePointer(0);
        } else {
            OpenSaveReport(true);
        }
    } else if (t == u"miSaveAs")
        OpenSaveReport(true);
    else if (t == u"exit")
        ExitCommand();
    else if (t == u"print" || t == u"printpreview")
        PrintCommand(t == u"printpreview", false);
    else if (t == u"PrintFromFileMenu")
        PrintCommand(false, true);
    else if (t == u"miPrintSetup")
        RunPrinterSetup(this);
    else if (t == u"miPrintMany")
        PrintManyCommand();
    else if (t == u"miDeleteObject")
        m_doc->DeleteSelected();
    else if (t == u"miCut" || t == u"miCopy" || t == u"miPaste")
        ClipboardCommand(t);
    else if (t == u"miSendtoFront" || t == u"miSendtoBack")
        ZOrderCommand(t == u"miSendtoFront");
    else if (t == u"miPageHeader")
        PageHeaderCommand();
    else if (FormatCommand(t)) {
        if (m_props->isVisible())
            m_props->LoadProperties(); // the sheet shows what the tool just changed
        return;
    }
    else if (t == u"miProperties")
        ShowPropertySheet();
    else if (t == u"mnuHelp")
        ShowHelp(this, HelpContext::DesignWindow);
    else if (t == u"miFieldList" && m_fields) {
        m_fields->show();
        m_fields->raise();
        m_fields->activateWindow();
    }
    // Toolbox tools: CommandBar has already set CurrentTool and the picture mode.
}

void frmPagewright::ExitCommand()
{
    if (QuerySaveChanges())
        return;
    Exiting = true;
    if (m_jobIndex != -1 && gHost && !m_jobClosed) {
        m_jobClosed = true;
        gHost->CloseJob(m_jobIndex);
    }
    // The host may already have unloaded us through CloseJob.
    if (!m_unloaded)
        Unload();
}

void frmPagewright::ClipboardCommand(const QString& toolName)
{
    // With a text editor focused these are its own text commands.
    auto* edit = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    const bool nothingSelected = m_sel->Count() == 0;
    if (toolName == u"miPaste") {
        if (edit) {
            edit->paste();
            return;
        }
        QPointF at = m_page->ScrollPosition();
        float x = float(at.x()), y = float(at.y());
        try {
            m_doc->EditPasteControls(QString(), x, y);
            FocusSelection(); // the keys (Delete, arrows) now act on what was pasted
        } catch (const HostError& e) {
            // The copy buffer is a temporary file that may be gone or damaged.
            MsgBox(e.Text(), Mb::OKOnly | Mb::Critical, QStringLiteral("Paste"));
        }
        return;
    }
    if (nothingSelected) {
        if (edit)
            toolName == u"miCut" ? edit->cut() : edit->copy();
        return;
    }
    m_doc->EditCopyControls();
    if (toolName == u"miCut")
        m_doc->DeleteSelected();
    m_doc->SetEdit();
}

void frmPagewright::ZOrderCommand(bool toFront)
{
    const QList<QObject*> sel = m_sel->SelectedControls();
    if (sel.isEmpty())
        return;
    int number = 0;
    if (toFront)
        number = ++m_topZOrder;
    else
        number = --m_bottomZOrder;
    for (QObject* o : sel)
        if (auto* c = qobject_cast<RptItemControl*>(o)) {
            if (toFront) {
                m_sceneTopZ += 1;
                c->setZValue(m_sceneTopZ);
            } else {
                SendToBack(c);
            }
        }
    m_doc->ZOrder(number);
}

void frmPagewright::PageHeaderCommand()
{
    if (m_bar->IsChecked(u"miPageHeader")) {
        if (m_doc->DeleteHeaderFooter())
            return; // the user kept them
        // What was the detail section moves back up to the top of the page.
        const float old = m_page->DetailHeaderBarOffset();
        if (old > 0)
            m_doc->MoveControls(old, 0);
        HideHeaderFooter();
    } else {
        // A one-inch page header to start with.
        SetHeaderFooter(BarHeight + 1440);
    }
    m_doc->DirtyFlag = true;
    DrawRuler();
}

// ---------------------------------------------------------------- closing

void frmPagewright::closeEvent(QCloseEvent* event)
{
    if (!m_unloading && !Exiting) {
        if (QuerySaveChanges()) {
            event->ignore();
            return;
        }
        if (m_jobIndex != -1 && gHost && !m_jobClosed) {
            m_jobClosed = true;
            m_unloading = true; // the host may unload us from inside CloseJob
            gHost->CloseJob(m_jobIndex);
        }
    }
    FormUnload();
    event->accept();
}

void frmPagewright::Unload()
{
    if (m_unloaded)
        return;
    m_unloading = true;
    FormUnload();
    close();
}

void frmPagewright::FormUnload()
{
    if (m_unloaded)
        return;
    m_unloaded = true;
    if (m_recovery)
        m_recovery->Remove(); // a clean end: saved, or dropped on purpose
    if (m_initialised && gHost)
        UserIni::Set(QStringLiteral("Grid"), GridText(m_grid));
    if (gHost)
        disconnect(&gHost->AppEvents(), nullptr, this, nullptr);
    EndTextEdit(false);
    if (m_fields)
        m_fields->Unload();
    if (m_props)
        m_props->Unload();
    if (m_sel)
        m_sel->ClearSelect();
}

void RegisterDesignWindow()
{
    SetDesignWindowFactory([] { return new frmPagewright; });
}
