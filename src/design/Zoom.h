#pragma once
// Zoom of the design page: the view's transform only. The scene stays in twips, so stored
// positions and grid steps never change with the zoom; what must keep its size on the screen
// (handles, frames, ruler ticks) asks for the zoom of the view that shows it.
#include <QObject>
#include <QPointF>
#include <QStringList>
#include <optional>

class QGraphicsItem;
class QGraphicsScene;
class frmPagewright;

namespace ViewZoom {
constexpr int MinPercent = 25, MaxPercent = 800;
// The zoom steps of Zoom In and Zoom Out and the zoom box.
const QList<int>& Steps();
// The next step above / below `percent` (clamped to the range).
int StepIn(int percent);
int StepOut(int percent);
// "150 %", and back: "150", "150%", "150 %" give 150; anything else 0.
QString Text(int percent);
int Parse(const QString& text);
// The zoom factor of the first view showing the scene (1 without a view).
double Of(const QGraphicsScene* scene);
double Of(const QGraphicsItem* item);
}

class ZoomController : public QObject {
    Q_OBJECT
public:
    explicit ZoomController(frmPagewright& window);

    int Percent() const { return m_percent; }
    // Sets the zoom, keeping the page point under the viewport pixel `anchor` in its place
    // (the viewport's centre when none is given). Clamped to 25 %–800 %.
    void SetPercent(int percent, std::optional<QPoint> anchor = std::nullopt);
    void ZoomIn() { SetPercent(ViewZoom::StepIn(m_percent)); }
    void ZoomOut() { SetPercent(ViewZoom::StepOut(m_percent)); }
    void FitPage();
    void FitWidth();
    // The zoom kept for this user (User.ini, its own section), applied without saving it again.
    void LoadSaved();

    // Ctrl+wheel on the page zooms around the pointer.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void apply(int percent, std::optional<QPoint> anchor);

    frmPagewright& m_win;
    int m_percent = 100;
};
