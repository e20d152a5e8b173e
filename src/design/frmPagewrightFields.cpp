// The design window's side of the field list: creating it, and turning a dropped field (or one
// chosen with the keyboard) into a data field item.
#include "design/frmPagewright.h"
#include "design/RptTextBox.h"

#include "design/CommandBar.h"
#include "design/DesignPage.h"
#include "design/RptItemControl.h"
#include "design/clsResize.h"
#include "document/clsRptControl.h"
#include "properties/frmRptFields.h"
#include "properties/frmRptProperties.h"

#include <QScreen>

#include <QDropEvent>
#include <QFontMetricsF>
#include <QGraphicsScene>
#include <QMimeData>

using namespace DesignGeometry;

void frmPagewright::CreateFieldList(bool show)
{
    if (!m_fields) {
        m_fields = new frmRptFields(this);
        // Appearing with the window, it must not take the keyboard from the design page.
        m_fields->setAttribute(Qt::WA_ShowWithoutActivating);
        m_fields->Init(m_dic.get(), this);
    }
    // Right of the middle of the window, centred on its height: clear of the page's left edge.
    const QRect g = geometry();
    m_fields->move(g.left() + g.width() * 2 / 3, g.top() + g.height() / 2 - m_fields->height() / 2);
    if (show) {
        m_fields->show();
        // Some window systems activate a new tool window regardless; the page keeps the keyboard.
        activateWindow();
    }
}

void frmPagewright::ShowPropertySheet()
{
    if (!m_propsPlaced) {
        // First time: beside the field list (or the window's right edge), kept on the screen.
        m_propsPlaced = true;
        const int x = m_fields ? m_fields->frameGeometry().right() + 8 : geometry().right() - m_props->width();
        QRect r(QPoint(x, geometry().top() + 60), m_props->size());
        if (const QScreen* s = screen()) {
            const QRect avail = s->availableGeometry();
            r.moveRight(std::min(r.right(), avail.right()));
            r.moveLeft(std::max(r.left(), avail.left()));
        }
        m_props->move(r.topLeft());
    }
    m_props->ShowProperties();
}

QRectF frmPagewright::FieldBand(QPointF snappedPoint, const QString& name) const
{
    // Measured in the font the new field gets: its kind's, not the tools' last one.
    const QFontMetricsF fm(RptTextBox::KindFont());
    const double px = RptItemControl::PixelTwips();
    const double width = std::round(2 * fm.horizontalAdvance(name) * px);
    const double height = std::round(fm.height() * px) + 60;
    return {snappedPoint, QSizeF(width, height)};
}

void frmPagewright::DropField(QPointF pagePoint, const QString& name, int dicId)
{
    m_page->HideGuides();
    if (!DragField || name.isEmpty())
        return;
    const QPointF at = Snap(ClampToPage(pagePoint), m_grid);
    m_sel->ClearSelect(); // the new field alone is selected, as a drawn item is
    m_bar->SetCurrentTool(ObjType::Field);
    CreateNewObject(name, FieldBand(at, name), dicId);
    DragField = false;
}

QPointF frmPagewright::FreeFieldSpot() const
{
    // The detail section runs from its bar to the footer bar (or the end of the page).
    const float detailTop = m_page->DetailHeaderBarOffset();
    const float detailEnd = m_page->FooterShown() ? m_page->PageFooterBarOffset() - BarHeight : float(m_pageLength);
    double lowest = detailTop, left = 0;
    for (int i = 1; i <= m_doc->RptItemCount(); ++i) {
        QObject* c = m_doc->Item(i).control;
        if (!c)
            continue;
        const double top = clsRptControl::Prop(c, "Top").toDouble();
        const double bottom = top + clsRptControl::Prop(c, "Height").toDouble();
        if (top >= detailTop && top < detailEnd && bottom > lowest) {
            lowest = bottom;
            left = clsRptControl::Prop(c, "Left").toDouble();
        }
    }
    // The next grid line at or below the lowest item, so the new field never overlaps it.
    float y = Snap(float(lowest), m_grid.y);
    if (y < lowest)
        y += float(m_grid.y);
    return ClampToPage(QPointF(Snap(float(left), m_grid.x), y));
}

void frmPagewright::AddFieldFromList(const QString& name, int dicId)
{
    if (name.isEmpty() || DragField)
        return;
    m_sel->ClearSelect();
    m_bar->SetCurrentTool(ObjType::Field);
    CreateNewObject(name, FieldBand(FreeFieldSpot(), name), dicId);
    m_page->View()->ensureVisible(m_page->Scene()->focusItem() ? m_page->Scene()->focusItem()->sceneBoundingRect()
                                                                 : QRectF());
}

bool frmPagewright::PageDragEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto* e = static_cast<QDropEvent*>(event);
        QString name;
        int dicId = 0;
        if (!DragField || !frmRptFields::ReadFieldMime(e->mimeData(), name, dicId)) {
            e->ignore();
            return true;
        }
        // The ruler guides follow the pointer, as they do for a section bar.
        m_page->SetGuides(m_page->PagePoint(e->position().toPoint()));
        e->setDropAction(Qt::CopyAction);
        e->accept();
        return true;
    }
    case QEvent::DragLeave:
        m_page->HideGuides();
        return false;
    case QEvent::Drop: {
        auto* e = static_cast<QDropEvent*>(event);
        QString name;
        int dicId = 0;
        if (!DragField || !frmRptFields::ReadFieldMime(e->mimeData(), name, dicId)) {
            m_page->HideGuides();
            e->ignore();
            return true;
        }
        e->setDropAction(Qt::CopyAction);
        e->accept();
        DropField(m_page->PagePoint(e->position().toPoint()), name, dicId);
        return true;
    }
    default:
        return false;
    }
}
