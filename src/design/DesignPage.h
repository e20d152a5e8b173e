#pragma once
// The design page as a widget: the scrolling view of the page scene (twips), the two rulers and
// their corner, the three section bars and the rubber band. It keeps the page geometry (bar
// offsets, which bars show) and reports mouse work on the empty page; what that work means is
// the window's business.
//
// Coordinates: the scene is the page (item Left/Top). Bar offsets are in the viewport's
// coordinates, where the page starts below the 220-twip page header bar: a bar with offset B
// covers page y B − 220 .. B.
#include "design/DesignGeometry.h"

#include <QGraphicsView>
#include <QMarginsF>
#include <QPointer>
#include <QWidget>

class PageRuler;
class SectionBar;
class QGraphicsRectItem;
class QGraphicsScene;
class PageSurface;

// The view: passes keys to the focused item, else reports them.
class PageView : public QGraphicsView {
    Q_OBJECT
public:
    using QGraphicsView::QGraphicsView;
signals:
    void keyDown(int keyCode, int shift);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

class DesignPage : public QWidget {
    Q_OBJECT
public:
    explicit DesignPage(QWidget* parent = nullptr);
    ~DesignPage() override;

    QGraphicsScene* Scene() const { return m_scene; }
    PageView* View() const { return m_view; }
    PageRuler* HRuler() const { return m_hRuler; }
    PageRuler* VRuler() const { return m_vRuler; }
    QWidget* CornerBlock() const { return m_corner; }
    SectionBar* Bar(const QString& name) const; // "PageHeaderBar", "DetailHeaderBar", "PageFooterBar"

    double PageLength() const { return m_pageLength; }
    void SetPageLength(double twips);

    float DetailHeaderBarOffset() const { return m_detailOffset; }
    float PageFooterBarOffset() const { return m_footerOffset; }
    bool HeaderFooterShown() const { return m_headerShown; }
    bool FooterShown() const { return m_footerShown; }
    // Places the bars; the caller has already moved the items.
    void PlaceDetailBar(float offset);
    void PlaceFooterBar(float offset);
    // Page header and footer bars shown or hidden; the detail bar is draggable only with them.
    void ShowHeaderFooter(bool on);
    void DrawRuler();

    // Ruler guide lines at a page point (the vertical one in the viewport's coordinates).
    void SetGuides(QPointF pagePoint);
    void HideGuides();

    // The paper the report prints on (twips) and its margins: the page shows the printable
    // area white and what lies outside it grey, so the user sees what fits.
    void SetPaper(QSizeF paper, QMarginsF margins);
    // The printable area on the page (page twips; its top-left is the page's origin), and where
    // the paper itself ends.
    QRectF PrintableRect() const;
    QRectF PaperRect() const;

    QGraphicsRectItem* Band() const { return m_band; }
    void ShowBand(const QRectF& rect);
    void HideBand();
    bool BandVisible() const;
    QRectF BandRect() const;

    // The page's visible top-left corner, in page twips.
    QPointF ScrollPosition() const;
    // Page point of a viewport pixel, and back.
    QPointF PagePoint(QPoint viewportPixel) const;
    QPoint ViewportPixel(QPointF pagePoint) const;

signals:
    // Mouse work on the empty page; points in page twips.
    void pageMouseDown(int button, int shift, QPointF point);
    void pageMouseMove(int buttons, int shift, QPointF point);
    void pageMouseUp(int button, int shift, QPointF point);
    // A section bar is being dragged / was dropped; barTop in page twips.
    void barDragMoved(const QString& name, QPointF pointer, double barTop);
    void barDropped(const QString& name, double barTop);

private:
    friend class PageSurface;
    void PlaceBars();

    QGraphicsScene* m_scene;
    PageView* m_view;
    PageRuler* m_hRuler;
    PageRuler* m_vRuler;
    QWidget* m_corner;
    PageSurface* m_surface;
    SectionBar* m_pageHeaderBar;
    SectionBar* m_detailBar;
    SectionBar* m_pageFooterBar;
    QGraphicsRectItem* m_band;
    double m_pageLength = 14 * 1440.0;
    QSizeF m_paper{12240, 15840}; // Letter
    QMarginsF m_margins{720, 1080, 720, 1080};
    float m_detailOffset = 0;
    float m_footerOffset = 0;
    bool m_headerShown = false;
    bool m_footerShown = false;
};
