// Mouse and keyboard work on the design page: creating items with the current tool, routing
// item events to the selection manager, in-place label editing, dragging the section bars.
#include "design/frmPagewright.h"

#include "design/CommandBar.h"
#include "design/DesignPage.h"
#include "design/DragBox.h"
#include "design/RptTextBox.h"
#include "design/SectionBar.h"
#include "design/SmartGuideLines.h"
#include "design/clsResize.h"
#include "properties/frmRptProperties.h"
#include "document/clsRptControl.h"
#include "entry/Host.h"
#include "entry/Prompts.h"
#include "entry/ReportKinds.h"

#include <QDateTime>
#include <QFileInfo>
#include <QGraphicsProxyWidget>
#include <QKeyEvent>
#include <QLineEdit>

using namespace DesignGeometry;

namespace {
constexpr int KeyDelete = 46, KeyLeft = 37, KeyUp = 38, KeyRight = 39, KeyDown_ = 40;

// A click without a drag still gives an item the user can see and grab.
QSizeF DefaultSize(int tool)
{
    switch (tool) {
    case ObjType::Box: case ObjType::Image: return {1440, 1440};
    case ObjType::Line: return {1440, 0};
    default: return {1440, 240};
    }
}

bool EditsInPlace(int kind)
{
    return kind == ObjType::Field || kind == ObjType::Label || kind == ObjType::NewPage ||
           kind == ObjType::SubReport || kind == ObjType::Section;
}
} // namespace

QPointF frmPagewright::ClampToPage(QPointF p) const
{
    return {std::clamp(p.x(), 0.0, m_pageLength), std::clamp(p.y(), 0.0, m_pageLength)};
}

void frmPagewright::PageMouseDown(int button, int, QPointF point)
{
    m_sel->ClearSelect();
    m_doc->SetEdit();
    if (button != RptItemControl::LeftButton || CurrentTool() == 0)
        return;
    m_anchor = Snap(ClampToPage(point), m_grid);
    m_page->ShowBand(QRectF(m_anchor, QSizeF(0, 0)));
}

void frmPagewright::PageMouseMove(int buttons, int, QPointF point)
{
    m_page->SetGuides(point);
    if ((buttons & RptItemControl::LeftButton) && m_page->BandVisible())
        m_page->ShowBand(BandRect(m_anchor, Snap(ClampToPage(point), m_grid)));
}

void frmPagewright::PageMouseUp(int, int, QPointF point)
{
    if (!m_page->BandVisible())
        return;
    const QRectF band = BandRect(m_anchor, Snap(ClampToPage(point), m_grid));
    m_page->ShowBand(band);
    switch (CurrentTool()) {
    case 11:
        FinishTool();
        InsertFile(band);
        break;
    case 12: {
        FinishTool();
        m_doc->SelectByArea(float(band.left()), float(band.top()), float(band.right()), float(band.bottom()));
        SetMousePointer(0);
        const QList<QObject*> sel = m_sel->SelectedControls();
        if (!sel.isEmpty())
            if (auto* c = qobject_cast<RptItemControl*>(sel.first()))
                c->setFocus();
        break;
    }
    default:
        CreateNewObject(QStringLiteral("Unbound"), band);
        break;
    }
}

void frmPagewright::FinishTool()
{
    m_page->HideBand();
    m_bar->ResetToolButtons();
}

void frmPagewright::InsertFile(const QRectF& band)
{
    SetMousePointer(0);
    const QString file = ChooseReportFile(QStringLiteral("Insert File"));
    if (file.isEmpty())
        return;
    float x = float(band.left()), y = float(band.top());
    try {
        m_doc->EditPasteControls(file, x, y);
        FocusSelection();
    } catch (const HostError& e) {
        SetMousePointer(0);
        FileError(file, e.Number(), e.Description());
    }
}

void frmPagewright::CreateNewObject(const QString& DataField, const QRectF& bandIn, int dicId)
{
    const int tool = CurrentTool();
    m_page->HideBand();
    if (tool < 1 || tool > 9)
        return;
    QRectF band = bandIn;
    if (band.width() <= 0 && band.height() <= 0)
        band.setSize(DefaultSize(tool));

    const int before = m_doc->RptItemCount();
    try {
        m_doc->AddNew(tool, DataField, dicId);
    } catch (const HostError& e) {
        // The record may already be in: an item the dictionary could not describe goes again.
        if (m_doc->RptItemCount() > before)
            m_doc->Delete(m_doc->RptItemCount());
        m_bar->ResetToolButtons();
        MsgBox(e.Text(),
               Mb::OKOnly | Mb::Critical, QStringLiteral("Report error"));
        return;
    }
    const int index = m_doc->RptItemCount();
    auto* c = qobject_cast<RptItemControl*>(m_doc->Item(index).control);
    m_bar->ResetToolButtons();
    if (!c)
        return;
    c->Move(float(band.left()), float(band.top()), float(band.width()), float(band.height()));
    if (tool != ObjType::Label)
        m_sel->Select(c);
    SetMousePointer(0);

    // Fields and labels keep the font their kind and the dictionary give them: the tools' last
    // state belongs to the items it was used on, not to the next one.
    switch (tool) {
    case ObjType::Image: {
        const bool bound = m_bar->PictureBound();
        clsRptControl::SetProp(c, "DataBound", bound);
        if (bound) {
            if (m_doc->DataView && !m_doc->AutoFillId.isEmpty())
                clsRptControl::SetProp(c, "FileName", m_doc->GetBoundPhotoFile(m_doc->AutoFillId,
                                           clsRptControl::Prop(c, "PhotoSeq").toInt(), QString(),
                                           clsRptControl::Prop(c, "Category").toInt()));
        } else {
            const bool embedded = m_bar->PictureEmbedded();
            const QString file = ChooseEmbeddedPicture();
            if (!file.isEmpty()) {
                clsRptControl::SetProp(c, "Embeded", embedded);
                clsRptControl::SetProp(c, "FileName", file);
            }
        }
        break;
    }
    case ObjType::NewPage: case ObjType::Section:
        clsRptControl::SetProp(c, "Text", m_doc->Item(index).Name);
        c->Move(1, float(band.top()), 600, 1);
        break;
    case ObjType::SubReport: {
        const QString file = ChooseReportFile(QStringLiteral("Sub Report"));
        if (file.isEmpty()) {
            m_sel->ClearSelect();
            m_doc->Delete(index);
            return;
        }
        clsRptControl::SetProp(c, "Text", file);
        break;
    }
    case ObjType::DateTime:
        clsRptControl::SetProp(c, "Text", m_doc->DataView ? QDateTime::currentDateTime().toString(QStringLiteral("M/d/yyyy h:mm:ss AP"))
                                                          : m_doc->Item(index).Name);
        break;
    default:
        break;
    }

    // The tool may have moved or resized the item (a break spans the page): frame and sheet follow.
    m_sel->RefreshDragToSource();
    c->setVisible(true);
    m_sceneTopZ += 1;
    c->setZValue(tool == ObjType::Box ? c->zValue() : m_sceneTopZ);
    m_doc->ItemRef(index).ZOrder = ++m_topZOrder;
    m_doc->DirtyFlag = true;
    // The tools and the sheet show the item as it now is, every property set.
    m_doc->SetIndex(index);
    m_doc->SetUserControl(c);
    RefreshPropertySheet();
    if (tool == ObjType::Label)
        BeginTextEdit(c);
    else
        c->setFocus();
}

QString frmPagewright::ChooseEmbeddedPicture()
{
    QString folder;
    if (gHost)
        folder = LocalPath(gHost->AppPath() + QStringLiteral("Graphics"));
    return Prompts().ChooseOpenFile(QStringLiteral("Insert Picture"), folder,
                                    QStringLiteral("Pictures (*.jpg *.bmp *.ico);;All (*)"));
}

// ---------------------------------------------------------------- item events

void frmPagewright::ItemMouseDown(RptItemControl* item, int button, int shift, float x, float y)
{
    if (m_editItem && m_editItem != item)
        EndTextEdit(true);
    // With a tool chosen the press starts a new item, over an existing one as on the empty page.
    if (CurrentTool() != 0 && (button & RptItemControl::LeftButton)) {
        PageMouseDown(button, shift, item->LastScenePos());
        return;
    }
    if (button & RptItemControl::RightButton) {
        // The sheet shows the item under the pointer: select it first unless it already is.
        if (!m_sel->IsSelected(item)) {
            m_sel->ClearSelect();
            m_sel->Select(item);
        }
        m_doc->SetIndex(clsRptControl::Prop(item, "Tag").toInt());
        m_doc->SetUserControl(item);
        m_doc->SetEdit();
        ShowPropertySheet();
        return;
    }
    m_sel->MouseDown(item, button, shift, x, y);
}

void frmPagewright::ItemMouseMove(RptItemControl* item, int button, int shift, float x, float y)
{
    if (m_page->BandVisible()) {
        PageMouseMove(button, shift, item->LastScenePos());
        return;
    }
    m_page->SetGuides(item->pos() + QPointF(x, y));
    m_sel->MouseMove(x, y, shift);
}

void frmPagewright::ItemMouseUp(RptItemControl* item, int button, int shift, float, float)
{
    if (m_page->BandVisible()) {
        PageMouseUp(button, shift, item->LastScenePos());
        return;
    }
    if (button & RptItemControl::RightButton)
        return;
    m_sel->MouseUp();
    const int index = clsRptControl::Prop(item, "Tag").toInt();
    const int kind = m_doc->ObjectType(index);
    // A second click on a lone selected text item drops the selection and edits its text.
    if (m_sel->Count() == 0 && EditsInPlace(kind))
        BeginTextEdit(item);
}

void frmPagewright::KeyDown(int keyCode, int shift)
{
    if (m_sel->Count() == 0)
        return;
    if (keyCode == KeyDelete) {
        m_doc->DeleteSelected();
        return;
    }
    float dx = 0, dy = 0;
    switch (keyCode) {
    case KeyLeft: dx = -float(m_grid.x); break;
    case KeyRight: dx = float(m_grid.x); break;
    case KeyUp: dy = -float(m_grid.y); break;
    case KeyDown_: dy = float(m_grid.y); break;
    default: return;
    }
    if (shift & RptItemControl::ShiftMask)
        m_sel->ResizeSelectionBy(dx, dy);
    else
        m_sel->MoveSelectionBy(dx, dy);
    m_doc->DirtyFlag = true;
}

// ---------------------------------------------------------------- in-place text editing

void frmPagewright::BeginTextEdit(QObject* item)
{
    auto* c = qobject_cast<RptTextBox*>(item);
    if (!c)
        return;
    if (m_editItem && m_editItem != item)
        EndTextEdit(true);
    m_editItem = item;
    const double px = RptItemControl::PixelTwips();
    QFont f = c->Font();
    m_text1->setFont(f);
    m_text1->setText(c->Text());
    m_editStart = c->Text();
    m_text1->setFixedSize(std::max(8, int(c->Width() / px)), std::max(int(QFontMetrics(f).height() + 2), int(c->Height() / px)));
    m_text1Proxy->setPos(c->pos());
    m_text1Proxy->setVisible(true);
    m_page->Scene()->setFocusItem(m_text1Proxy);
    m_text1->setFocus();
    m_text1->selectAll();
}

void frmPagewright::EndTextEdit(bool keep)
{
    if (m_endingEdit || !m_editItem)
        return;
    m_endingEdit = true;
    QObject* item = m_editItem;
    m_editItem = nullptr;
    const QString text = keep ? m_text1->text() : m_editStart;
    m_text1Proxy->setVisible(false);
    const int index = clsRptControl::Prop(item, "Tag").toInt();
    if (index >= 1 && index <= m_doc->RptItemCount() && m_doc->Item(index).control == item) {
        if (keep && text.isEmpty()) {
            // An empty label is no item.
            m_sel->RemoveSelect(item);
            m_doc->Delete(index);
        } else if (keep && text != m_editStart) {
            clsRptControl::SetProp(item, "Text", text);
            if (m_doc->ObjectType(index) == ObjType::Label)
                m_doc->ItemRef(index).Text = text;
            m_doc->DirtyFlag = true;
        }
    }
    m_text1->clear();
    m_endingEdit = false;
    RefreshPropertySheet();
}

bool frmPagewright::TextEditorEvent(QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        auto* k = static_cast<QKeyEvent*>(event);
        if (k->key() == Qt::Key_Return || k->key() == Qt::Key_Enter) {
            EndTextEdit(true);
            m_page->View()->setFocus();
            return true;
        }
        if (k->key() == Qt::Key_Escape) {
            // Escape gives up the edit: the item keeps the text it had, the editor closes. A label
            // that never had a text is given up with it, as an empty label would be.
            const int index = clsRptControl::Prop(m_editItem, "Tag").toInt();
            if (m_editStart.isEmpty() && m_doc->ObjectType(index) == ObjType::Label) {
                m_text1->clear();
                EndTextEdit(true);
            } else {
                EndTextEdit(false);
            }
            m_page->View()->setFocus();
            return true;
        }
    } else if (event->type() == QEvent::FocusOut) {
        EndTextEdit(true);
    }
    return false;
}

bool frmPagewright::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_text1 && m_editItem)
        return TextEditorEvent(event);
    if (watched == m_page->View()->viewport())
        return PageDragEvent(event);
    return QMainWindow::eventFilter(watched, event);
}

// ---------------------------------------------------------------- section bars

void frmPagewright::BarDragMoved(const QString&, QPointF pointer, double barTop)
{
    m_page->SetGuides(QPointF(pointer.x(), barTop));
}

void frmPagewright::BarDropped(const QString& name, double barTop)
{
    m_page->HideGuides();
    // Offsets count the bar's bottom edge on the page, which is its top in the viewport.
    float pos = Snap(float(barTop), m_grid.y) + BarHeight;
    if (name == u"DetailHeaderBar") {
        const float old = m_page->DetailHeaderBarOffset();
        const float footer = m_page->FooterShown() ? m_page->PageFooterBarOffset() : 0;
        // The page header keeps room for its own bar; the footer moves along, so it must stay on the page.
        pos = std::max(pos, BarHeight);
        if (footer > 0)
            pos = std::min(pos, float(m_pageLength) - (footer - old));
        if (pos == old)
            return;
        MoveDetailHeaderBar(pos);
        if (footer > 0)
            m_page->PlaceFooterBar(footer + (pos - old));
    } else if (name == u"PageFooterBar") {
        const float old = m_page->PageFooterBarOffset();
        pos = std::clamp(pos, m_page->DetailHeaderBarOffset() + BarHeight, float(m_pageLength));
        if (pos == old)
            return;
        m_doc->MoveControls(old, pos);
        m_page->PlaceFooterBar(pos);
    } else {
        return;
    }
    m_doc->DirtyFlag = true;
    DrawRuler();
    RefreshPropertySheet(); // the selected items may have moved with the section
}

// ---------------------------------------------------------------- smart guides

void frmPagewright::InstallSmartGuides()
{
    if (!m_guideLines) {
        m_guideLines = new SmartGuideLines;
        m_page->Scene()->addItem(m_guideLines);
    }
    m_sel->SetSmartGuides([this](const QRectF& moving) {
        // Sections in page twips: a bar with offset B takes page y B - 220 .. B.
        std::vector<SmartGuides::Section> sections;
        const double detail = m_page->HeaderFooterShown() ? m_page->DetailHeaderBarOffset() : 0;
        const double footer = m_page->FooterShown() ? m_page->PageFooterBarOffset() : m_pageLength + BarHeight;
        if (m_page->HeaderFooterShown())
            sections.push_back({0, detail - BarHeight});
        sections.push_back({detail, footer - BarHeight});
        if (m_page->FooterShown())
            sections.push_back({footer, m_pageLength});
        const QList<QObject*> selected = m_sel->SelectedControls();
        const QSet<QObject*> selectedSet(selected.begin(), selected.end());
        std::vector<QRectF> others;
        for (int i = 1; i <= m_doc->RptItemCount(); ++i)
            if (QObject* c = m_doc->Item(i).control; c && !selectedSet.contains(c))
                others.push_back(DragBox::SourceRect(c));
        return SmartGuides::Collect(others, sections, m_page->PrintableRect().width(), moving);
    }, m_guideLines);
}
