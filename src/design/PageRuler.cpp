#include "design/PageRuler.h"

#include "design/RptItemControl.h"

#include <QGraphicsView>
#include <QPainter>
#include <QScrollBar>
#include <cmath>

using namespace DesignGeometry;

PageRuler::PageRuler(Qt::Orientation orientation, QGraphicsView* view, QWidget* parent)
    : QWidget(parent)
    , m_orientation(orientation)
    , m_view(view)
{
    QFont f(QStringLiteral("Arial"));
    f.setPixelSize(std::max(7, int(std::lround(150 / RptItemControl::PixelTwips()))));
    setFont(f);
    setAutoFillBackground(false);
    if (orientation == Qt::Horizontal)
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    else
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    // Scrolling the page scrolls the ruler with it.
    connect(view->horizontalScrollBar(), &QScrollBar::valueChanged, this, qOverload<>(&QWidget::update));
    connect(view->verticalScrollBar(), &QScrollBar::valueChanged, this, qOverload<>(&QWidget::update));
}

void PageRuler::SetMarks(std::vector<RulerMark> marks)
{
    m_marks = std::move(marks);
    update();
}

void PageRuler::SetGuide(double pos)
{
    if (pos == m_guide)
        return;
    m_guide = pos;
    update();
}

QSize PageRuler::sizeHint() const
{
    const int t = int(std::lround(BarHeight / RptItemControl::PixelTwips()));
    return m_orientation == Qt::Horizontal ? QSize(100, t) : QSize(t, 100);
}

double PageRuler::ToPixel(double pos) const
{
    if (m_orientation == Qt::Horizontal)
        return m_view->mapFromScene(QPointF(pos, 0)).x();
    return m_view->mapFromScene(QPointF(0, pos - BarHeight)).y();
}

double PageRuler::Thickness(double twips) const
{
    return twips / RptItemControl::PixelTwips();
}

void PageRuler::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.fillRect(rect(), palette().color(QPalette::Window));
    p.setPen(palette().color(QPalette::WindowText));
    const QFontMetricsF fm(font());
    const double along = m_orientation == Qt::Horizontal ? width() : height();
    double numbersEnd = -1e9; // numbers that would run into the last one are left out when zoomed out
    for (const RulerMark& m : m_marks) {
        const double at = ToPixel(m.pos);
        if (at < -40 || at > along + 40)
            continue;
        if (m.length > 0) {
            const double from = Thickness(30), to = Thickness(30 + m.length);
            if (m_orientation == Qt::Horizontal)
                p.drawLine(QPointF(at, from), QPointF(at, to));
            else
                p.drawLine(QPointF(from, at), QPointF(to, at));
        } else {
            const QString text = QString::number(m.number);
            const double w = fm.horizontalAdvance(text);
            const double extent = m_orientation == Qt::Horizontal ? w : fm.height();
            if (at - extent / 2 < numbersEnd && m.number != 1)
                continue;
            numbersEnd = at + extent / 2 + 2;
            if (m_orientation == Qt::Horizontal)
                p.drawText(QPointF(at - w / 2, fm.ascent()), text);
            else
                p.drawText(QPointF(Thickness(20), at + fm.ascent() / 2 - 1), text);
        }
    }
    if (m_guide >= 0) {
        const double at = ToPixel(m_guide);
        p.setPen(QPen(Qt::blue, 1, Qt::DotLine));
        if (m_orientation == Qt::Horizontal)
            p.drawLine(QPointF(at, 0), QPointF(at, height()));
        else
            p.drawLine(QPointF(0, at), QPointF(width(), at));
    }
    p.setPen(palette().color(QPalette::Mid));
    if (m_orientation == Qt::Horizontal)
        p.drawLine(0, height() - 1, width(), height() - 1);
    else
        p.drawLine(width() - 1, 0, width() - 1, height());
}
