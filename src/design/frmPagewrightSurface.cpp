// The design window as the document's drawing surface: the document creates, orders and
// removes item controls, moves the section bars and asks for the sheet and tools to follow.
#include "design/frmPagewright.h"

#include "design/CommandBar.h"
#include "design/DesignGeometry.h"
#include "design/DesignPage.h"
#include "design/Rectangle.h"
#include "design/RptImage.h"
#include "design/RptLine.h"
#include "design/RptTextBox.h"
#include "design/clsResize.h"
#include "document/clsRptControl.h"
#include "properties/frmRptProperties.h"

#include <QApplication>
#include <QGraphicsScene>

using namespace DesignGeometry;

QObject* frmPagewright::LoadItemControl(int objectType)
{
    RptItemControl* c = nullptr;
    switch (objectType) {
    case ObjType::Box: c = new Rectangle; break;
    case ObjType::Line: c = new RptLine; break;
    case ObjType::Image: c = new RptImage; break;
    default: {
        auto* text = new RptTextBox;
        text->SetMarkerKind(objectType);
        c = text;
        break;
    }
    }
    m_page->Scene()->addItem(c);
    // Later items lie over earlier ones, as they were added.
    m_sceneTopZ += 1;
    c->setZValue(m_sceneTopZ);
    connect(c, &RptItemControl::MouseDown, this, [this, c](int b, int s, float x, float y) { ItemMouseDown(c, b, s, x, y); });
    connect(c, &RptItemControl::MouseMove, this, [this, c](int b, int s, float x, float y) { ItemMouseMove(c, b, s, x, y); });
    connect(c, &RptItemControl::MouseUp, this, [this, c](int b, int s, float x, float y) { ItemMouseUp(c, b, s, x, y); });
    connect(c, &RptItemControl::KeyDown, this, &frmPagewright::KeyDown);
    return c;
}

void frmPagewright::UnloadItemControl(QObject* control)
{
    auto* c = qobject_cast<RptItemControl*>(control);
    if (!c)
        return;
    if (m_editItem == control)
        EndTextEdit(false);
    m_sel->RemoveSelect(control);
    // The control may be the one whose key or mouse event led here: let it finish first.
    c->hide();
    c->disconnect(this);
    if (c->scene())
        c->scene()->removeItem(c);
    c->deleteLater();
}

void frmPagewright::SendToBack(QObject* control)
{
    if (auto* c = qobject_cast<RptItemControl*>(control)) {
        m_sceneBottomZ -= 1;
        c->setZValue(m_sceneBottomZ);
    }
}

float frmPagewright::DetailHeaderBarOffset() const { return m_page->DetailHeaderBarOffset(); }
float frmPagewright::PageFooterBarOffset() const { return m_page->FooterShown() ? m_page->PageFooterBarOffset() : 0; }

void frmPagewright::HideHeaderFooter()
{
    m_page->ShowHeaderFooter(false);
    m_bar->SetChecked(u"miPageHeader", false);
    DrawRuler();
}

void frmPagewright::SetHeaderFooter(float detailBarTop)
{
    m_bar->SetChecked(u"miPageHeader", true);
    const float footer = m_page->FooterShown() ? m_page->PageFooterBarOffset() : 0;
    m_page->ShowHeaderFooter(true);
    MoveDetailHeaderBar(detailBarTop);
    MovePageFooterBar(footer);
}

void frmPagewright::MoveDetailHeaderBar(float pos)
{
    // The items of the detail section and below move with the bar.
    const float old = m_page->DetailHeaderBarOffset();
    if (pos != old)
        m_doc->MoveControls(old, pos);
    m_page->PlaceDetailBar(pos);
    DrawRuler();
}

void frmPagewright::MovePageFooterBar(float footerTop)
{
    float pos = footerTop;
    if (pos == 0) {
        float end = 0;
        m_doc->CalcEndOfPage(end);
        pos = std::max(end + BarHeight, 6000.0f);
    }
    m_page->PlaceFooterBar(pos);
    DrawRuler();
}

void frmPagewright::ClearDrawing()
{
    m_page->HideBand();
    m_page->HideGuides();
}

void frmPagewright::DrawRuler() { m_page->DrawRuler(); }

void frmPagewright::FocusSelection()
{
    m_page->View()->setFocus();
    const QList<QObject*> sel = m_sel->SelectedControls();
    if (!sel.isEmpty())
        if (auto* c = qobject_cast<RptItemControl*>(sel.first()))
            c->setFocus();
}

void frmPagewright::ShowPaper()
{
    m_page->SetPaper(QSizeF(12240, 15840), // Letter, as the report engine prints
                     QMarginsF(m_doc->LeftMargin, m_doc->TopMargin, m_doc->RightMargin, m_doc->BottomMargin));
}

void frmPagewright::RefreshPropertySheet()
{
    if (m_props && m_props->isVisible())
        m_props->LoadProperties();
}

void frmPagewright::SetMousePointer(int pointer)
{
    QWidget* vp = m_page->View()->viewport();
    if (pointer == 11)
        vp->setCursor(Qt::WaitCursor);
    else
        vp->unsetCursor();
}

void frmPagewright::SetToolText(const QString& tool, const QString& text)
{
    if (tool == u"fnFont" || tool == u"fnFontSize" || tool == u"miObjectName")
        m_bar->SetComboText(tool, text);
    else
        m_bar->SetCaption(tool, text);
}

void frmPagewright::SetToolChecked(const QString& tool, bool checked) { m_bar->SetChecked(tool, checked); }
void frmPagewright::SetToolEnabled(const QString& tool, bool enabled) { m_bar->SetEnabled(tool, enabled); }
