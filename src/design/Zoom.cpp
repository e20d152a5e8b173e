#include "design/Zoom.h"

#include "design/CommandBar.h"
#include "design/DesignPage.h"
#include "design/PageRuler.h"
#include "design/RptItemControl.h"
#include "design/clsResize.h"
#include "design/frmPagewright.h"
#include "entry/Host.h"
#include "entry/PrivateProfile.h"

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QRegularExpression>
#include <QScrollBar>
#include <QWheelEvent>
#include <cmath>

namespace {
const QString kSection = QStringLiteral("Pagewright View");
const QString kKey = QStringLiteral("Zoom");
}

const QList<int>& ViewZoom::Steps()
{
    static const QList<int> steps{25, 33, 50, 67, 75, 100, 125, 150, 200, 300, 400, 600, 800};
    return steps;
}

int ViewZoom::StepIn(int percent)
{
    for (int s : Steps())
        if (s > percent)
            return s;
    return MaxPercent;
}

int ViewZoom::StepOut(int percent)
{
    int below = MinPercent;
    for (int s : Steps())
        if (s < percent)
            below = s;
    return below;
}

QString ViewZoom::Text(int percent) { return QString::number(percent) + QStringLiteral(" %"); }

int ViewZoom::Parse(const QString& text)
{
    static const QRegularExpression re(QStringLiteral("^\\s*(\\d{1,4})\\s*%?\\s*$"));
    const QRegularExpressionMatch m = re.match(text);
    return m.hasMatch() ? m.captured(1).toInt() : 0;
}

double ViewZoom::Of(const QGraphicsScene* scene)
{
    if (!scene || scene->views().isEmpty())
        return 1;
    const double m = scene->views().constFirst()->transform().m11();
    return m > 0 ? m * RptItemControl::PixelTwips() : 1;
}

double ViewZoom::Of(const QGraphicsItem* item) { return item ? Of(item->scene()) : 1; }

ZoomController::ZoomController(frmPagewright& window) : QObject(&window), m_win(window)
{
    QStringList items;
    for (int s : ViewZoom::Steps())
        items << ViewZoom::Text(s);
    m_win.Commands().SetComboItems(u"miZoom", items);
    m_win.Commands().SetComboText(u"miZoom", ViewZoom::Text(m_percent));
    m_win.Page().View()->viewport()->installEventFilter(this);
}

void ZoomController::LoadSaved()
{
    if (!gHost)
        return;
    const int saved = ViewZoom::Parse(PrivateProfile::GetString(kSection, kKey, QStringLiteral("100"), UserIni::Path()));
    if (saved > 0)
        apply(std::clamp(saved, ViewZoom::MinPercent, ViewZoom::MaxPercent), std::nullopt);
}

void ZoomController::SetPercent(int percent, std::optional<QPoint> anchor)
{
    percent = std::clamp(percent, ViewZoom::MinPercent, ViewZoom::MaxPercent);
    apply(percent, anchor);
    if (gHost)
        PrivateProfile::WriteString(kSection, kKey, QString::number(percent), UserIni::Path());
}

void ZoomController::apply(int percent, std::optional<QPoint> anchor)
{
    QGraphicsView* view = m_win.Page().View();
    QWidget* vp = view->viewport();
    const QPoint at = anchor.value_or(vp->rect().center());
    const QPointF pagePoint = view->mapToScene(at);
    m_percent = percent;
    const double scale = percent / 100.0 / RptItemControl::PixelTwips();
    view->setTransform(QTransform::fromScale(scale, scale));
    // The page point that was under the anchor stays under it.
    const QPoint now = view->mapFromScene(pagePoint);
    view->horizontalScrollBar()->setValue(view->horizontalScrollBar()->value() + now.x() - at.x());
    view->verticalScrollBar()->setValue(view->verticalScrollBar()->value() + now.y() - at.y());
    // From the menu or the zoom box, what the user is working on stays in sight.
    if (!anchor && m_win.SelObj().Count() > 0)
        view->centerOn(m_win.SelObj().SelectionBounds().center());
    m_win.SelObj().RefreshDragToSource();
    m_win.Page().HRuler()->update();
    m_win.Page().VRuler()->update();
    m_win.Commands().SetComboText(u"miZoom", ViewZoom::Text(percent));
    m_win.Commands().SetEnabled(u"miZoomIn", percent < ViewZoom::MaxPercent);
    m_win.Commands().SetEnabled(u"miZoomOut", percent > ViewZoom::MinPercent);
}

void ZoomController::FitPage()
{
    QGraphicsView* view = m_win.Page().View();
    const QRectF page = view->sceneRect();
    const QSize vp = view->maximumViewportSize();
    const double px = RptItemControl::PixelTwips();
    const double fit = std::min(vp.width() * px / page.width(), vp.height() * px / page.height());
    SetPercent(int(std::floor(fit * 100)));
    view->horizontalScrollBar()->setValue(view->horizontalScrollBar()->minimum());
    view->verticalScrollBar()->setValue(view->verticalScrollBar()->minimum());
}

void ZoomController::FitWidth()
{
    QGraphicsView* view = m_win.Page().View();
    const QRectF page = view->sceneRect();
    // Room for the vertical scroll bar that the taller page will need.
    const int w = view->maximumViewportSize().width() - view->verticalScrollBar()->sizeHint().width();
    SetPercent(int(std::floor(w * RptItemControl::PixelTwips() / page.width() * 100)));
    view->horizontalScrollBar()->setValue(view->horizontalScrollBar()->minimum());
}

bool ZoomController::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Wheel) {
        auto* e = static_cast<QWheelEvent*>(event);
        if (e->modifiers() & Qt::ControlModifier) {
            const int dy = e->angleDelta().y();
            if (dy != 0)
                SetPercent(dy > 0 ? ViewZoom::StepIn(m_percent) : ViewZoom::StepOut(m_percent),
                           e->position().toPoint());
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}
