#include "design/DesignPage.h"

#include "design/PageRuler.h"
#include "design/RptItemControl.h"
#include "design/SectionBar.h"

#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QGraphicsSceneMouseEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

using namespace DesignGeometry;

namespace {
constexpr double PageZ = -1e9;
constexpr double BarZ = 1e9;
constexpr double BandZ = 1e9 + 1;


} // namespace

// The white page under every item: takes the mouse where no item is.
class PageSurface : public QGraphicsObject {
public:
    explicit PageSurface(DesignPage* page) : m_page(page)
    {
        setZValue(PageZ);
        setAcceptedMouseButtons(Qt::LeftButton | Qt::RightButton | Qt::MiddleButton);
        setAcceptHoverEvents(true);
    }
    void SetLength(double len)
    {
        prepareGeometryChange();
        m_length = len;
    }
    QRectF boundingRect() const override { return {0, 0, m_length, m_length}; }
    void paint(QPainter* p, const QStyleOptionGraphicsItem*, QWidget*) override
    {
        // Off the paper: mid grey; the paper's margins: light grey; the printable area: white.
        const QRectF all = boundingRect();
        p->fillRect(all, QColor(160, 160, 160));
        p->fillRect(all.intersected(m_page->PaperRect()), QColor(224, 224, 224));
        const QRectF printable = all.intersected(m_page->PrintableRect());
        p->fillRect(printable, Qt::white);
        QPen pen(QColor(96, 96, 96), 0, Qt::DashLine);
        pen.setCosmetic(true);
        p->setPen(pen);
        p->setBrush(Qt::NoBrush);
        p->drawRect(printable);
    }

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* e) override
    {
        e->accept();
        emit m_page->pageMouseDown(RptItemControl::ButtonOf(e->button()), RptItemControl::ShiftOf(e->modifiers()), e->scenePos());
    }
    void mouseMoveEvent(QGraphicsSceneMouseEvent* e) override
    {
        emit m_page->pageMouseMove(RptItemControl::ButtonOf(e->buttons()), RptItemControl::ShiftOf(e->modifiers()), e->scenePos());
    }
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* e) override
    {
        emit m_page->pageMouseUp(RptItemControl::ButtonOf(e->button()), RptItemControl::ShiftOf(e->modifiers()), e->scenePos());
    }
    void hoverMoveEvent(QGraphicsSceneHoverEvent* e) override
    {
        emit m_page->pageMouseMove(0, RptItemControl::ShiftOf(e->modifiers()), e->scenePos());
    }

private:
    DesignPage* m_page;
    double m_length = 0;
};

void PageView::keyPressEvent(QKeyEvent* event)
{
    // A focused item raises its own key events; keys with no item go to the window.
    if (scene() && dynamic_cast<RptItemControl*>(scene()->focusItem())) {
        QGraphicsView::keyPressEvent(event);
        return;
    }
    if (scene() && scene()->focusItem()) { // the in-place editor, for one
        QGraphicsView::keyPressEvent(event);
        return;
    }
    const int code = RptItemControl::KeyCodeOf(event->key());
    if (code == 46 || (code >= 37 && code <= 40)) {
        emit keyDown(code, RptItemControl::ShiftOf(event->modifiers()));
        event->accept();
        return;
    }
    QGraphicsView::keyPressEvent(event);
}

DesignPage::DesignPage(QWidget* parent)
    : QWidget(parent)
{
    m_scene = new QGraphicsScene(this);
    // Items are added and removed all the time; an index only slows that down.
    m_scene->setItemIndexMethod(QGraphicsScene::NoIndex);
    m_view = new PageView(m_scene, this);
    m_view->setObjectName(QStringLiteral("vsvReportForm"));
    m_view->setFrameShape(QFrame::NoFrame);
    m_view->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_view->setBackgroundBrush(QColor(128, 128, 128));
    m_view->setTransformationAnchor(QGraphicsView::NoAnchor);
    const double scale = 1.0 / RptItemControl::PixelTwips();
    m_view->setTransform(QTransform::fromScale(scale, scale));
    m_view->setFocusPolicy(Qt::StrongFocus);

    m_hRuler = new PageRuler(Qt::Horizontal, m_view, this);
    m_hRuler->setObjectName(QStringLiteral("HRuler"));
    m_vRuler = new PageRuler(Qt::Vertical, m_view, this);
    m_vRuler->setObjectName(QStringLiteral("VRuler"));
    m_corner = new QWidget(this);
    m_corner->setObjectName(QStringLiteral("picCornerBlock"));
    m_corner->setFixedSize(m_vRuler->sizeHint().width(), m_hRuler->sizeHint().height());
    m_corner->setAutoFillBackground(true);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(0);
    grid->addWidget(m_corner, 0, 0);
    grid->addWidget(m_hRuler, 0, 1);
    grid->addWidget(m_vRuler, 1, 0);
    grid->addWidget(m_view, 1, 1);

    m_surface = new PageSurface(this);
    m_scene->addItem(m_surface);
    m_pageHeaderBar = new SectionBar(QStringLiteral("PageHeaderBar"), QStringLiteral("Page Header"));
    m_detailBar = new SectionBar(QStringLiteral("DetailHeaderBar"), QStringLiteral("Detail"));
    m_pageFooterBar = new SectionBar(QStringLiteral("PageFooterBar"), QStringLiteral("Page Footer"));
    for (SectionBar* b : {m_pageHeaderBar, m_detailBar, m_pageFooterBar}) {
        b->setZValue(BarZ);
        m_scene->addItem(b);
        connect(b, &SectionBar::dragMoved, this, &DesignPage::barDragMoved);
        connect(b, &SectionBar::dropped, this, &DesignPage::barDropped);
    }
    m_pageFooterBar->SetDraggable(true);

    m_band = new QGraphicsRectItem;
    QPen pen(Qt::black, 0, Qt::DashLine);
    pen.setCosmetic(true);
    m_band->setPen(pen);
    m_band->setZValue(BandZ);
    m_band->setVisible(false);
    m_scene->addItem(m_band);

    SetPageLength(m_pageLength);
    ShowHeaderFooter(false);
    m_hRuler->SetMarks(HRulerMarks());
}

DesignPage::~DesignPage() = default;

SectionBar* DesignPage::Bar(const QString& name) const
{
    for (SectionBar* b : {m_pageHeaderBar, m_detailBar, m_pageFooterBar})
        if (b->Name() == name)
            return b;
    return nullptr;
}

void DesignPage::SetPageLength(double twips)
{
    m_pageLength = twips;
    m_surface->SetLength(twips);
    m_scene->setSceneRect(0, -BarHeight, twips, twips + BarHeight);
    for (SectionBar* b : {m_pageHeaderBar, m_detailBar, m_pageFooterBar})
        b->SetWidth(twips);
    PlaceBars();
    DrawRuler();
    // A new page is shown from its top-left corner, the bar above the page included.
    m_view->horizontalScrollBar()->setValue(m_view->horizontalScrollBar()->minimum());
    m_view->verticalScrollBar()->setValue(m_view->verticalScrollBar()->minimum());
}

void DesignPage::PlaceBars()
{
    m_pageHeaderBar->setPos(0, -BarHeight);
    m_detailBar->setPos(0, m_detailOffset - BarHeight);
    m_pageFooterBar->setPos(0, m_footerOffset - BarHeight);
    m_pageHeaderBar->setVisible(m_headerShown);
    m_pageFooterBar->setVisible(m_footerShown);
    m_surface->update();
}

void DesignPage::PlaceDetailBar(float offset)
{
    m_detailOffset = offset;
    PlaceBars();
}

void DesignPage::PlaceFooterBar(float offset)
{
    m_footerOffset = offset;
    m_footerShown = true;
    PlaceBars();
}

void DesignPage::ShowHeaderFooter(bool on)
{
    m_headerShown = on;
    m_detailBar->SetDraggable(on);
    if (!on) {
        // Without a page header the detail bar sits where the page header bar was.
        m_footerShown = false;
        m_detailOffset = 0;
        m_footerOffset = 0;
    }
    PlaceBars();
}

void DesignPage::DrawRuler()
{
    m_hRuler->SetMarks(HRulerMarks());
    m_vRuler->SetMarks(VRulerMarks(m_pageLength, m_detailOffset, m_footerOffset, m_footerShown));
}

void DesignPage::SetGuides(QPointF p)
{
    m_hRuler->SetGuide(std::max(0.0, p.x()));
    m_vRuler->SetGuide(std::max(0.0, p.y() + BarHeight));
}

void DesignPage::HideGuides()
{
    m_hRuler->SetGuide(-1);
    m_vRuler->SetGuide(-1);
}

void DesignPage::ShowBand(const QRectF& rect)
{
    m_band->setRect(rect);
    m_band->setVisible(true);
}

void DesignPage::HideBand()
{
    m_band->setVisible(false);
}

bool DesignPage::BandVisible() const { return m_band->isVisible(); }
QRectF DesignPage::BandRect() const { return m_band->rect(); }

QPointF DesignPage::ScrollPosition() const
{
    const QPointF p = m_view->mapToScene(QPoint(0, 0));
    return {std::max(0.0, p.x()), std::max(0.0, p.y())};
}

QPointF DesignPage::PagePoint(QPoint px) const { return m_view->mapToScene(px); }
QPoint DesignPage::ViewportPixel(QPointF p) const { return m_view->mapFromScene(p); }

void DesignPage::SetPaper(QSizeF paper, QMarginsF margins)
{
    if (paper == m_paper && margins == m_margins)
        return;
    m_paper = paper;
    m_margins = margins;
    m_surface->update();
}

QRectF DesignPage::PrintableRect() const
{
    // The page starts at the top-left margin. Across, the printable width; down, one page's
    // printable height plus the section bars that lie within it (they take no paper).
    const double width = std::max(0.0, m_paper.width() - m_margins.left() - m_margins.right());
    double height = std::max(0.0, m_paper.height() - m_margins.top() - m_margins.bottom());
    if (m_headerShown && m_detailOffset - BarHeight < height)
        height += BarHeight;
    if (m_footerShown && m_footerOffset - BarHeight < height)
        height += BarHeight;
    return {0, 0, width, height};
}

QRectF DesignPage::PaperRect() const
{
    const QRectF p = PrintableRect();
    return p.adjusted(0, 0, m_margins.right(), m_margins.bottom());
}
