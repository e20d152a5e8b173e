// One drag step of a large selection: 200 boxes selected, the selection moved one grid step
// per mouse move, as the design page does while the button is held. Then one box dragged
// among 2000 others with smart guides on (every move gathers and matches all their edges, as
// the window does) and with Alt held.
#include "design/DragBox.h"
#include "design/Rectangle.h"
#include "design/SmartGuideLines.h"
#include "design/clsResize.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QGraphicsScene>
#include <QGraphicsView>
#include <algorithm>
#include <cstdio>
#include <vector>

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);

    QGraphicsScene scene;
    QGraphicsView view(&scene);
    view.resize(1200, 900);
    view.scale(1.0 / 15, 1.0 / 15);
    view.show();

    clsResize sel;
    sel.SetScene(&scene);
    sel.SetGridX(60);
    sel.SetGridY(60);
    sel.SetPageSize(100000, 100000); // room for every step: a step held at an edge costs nothing

    std::vector<Rectangle*> items;
    for (int i = 0; i < 200; ++i) {
        auto* r = new Rectangle;
        scene.addItem(r);
        r->Move(float(600 + (i % 10) * 1000), float(600 + (i / 10) * 800), 900, 600);
        items.push_back(r);
    }
    QElapsedTimer t;
    t.start();
    for (Rectangle* r : items)
        sel.Select(r);
    const double selectMs = double(t.nsecsElapsed()) / 1e6;

    constexpr int Steps = 100;
    std::vector<double> stepMs, moveMs;
    float x = 5000;
    for (int round = 0; round < 5; ++round) {
        // A plain click inside the selection keeps it and starts the drag.
        sel.MouseDown(items.front(), 1, 0, x, 5000);
        for (int i = 0; i < Steps; ++i) {
            x += (round % 2 ? -60 : 60);
            t.restart();
            sel.MouseMove(x, 5000);
            moveMs.push_back(double(t.nsecsElapsed()) / 1e6);
            app.processEvents(); // the repaint the event loop would do before the next move
            stepMs.push_back(double(t.nsecsElapsed()) / 1e6);
        }
        t.restart();
        sel.MouseUp();
        app.processEvents();
        std::printf("round %d: mouse-up writing %d items back: %.2f ms\n", round + 1, sel.Count(),
                    double(t.nsecsElapsed()) / 1e6);
    }
    std::sort(stepMs.begin(), stepMs.end());
    std::sort(moveMs.begin(), moveMs.end());
    std::printf("select 200 items: %.2f ms\n", selectMs);
    std::printf("drag step with %d selected, %zu steps: median %.3f ms, 90th %.3f ms, max %.3f ms (target < 16 ms)\n",
                sel.Count(), stepMs.size(), stepMs[stepMs.size() / 2], stepMs[stepMs.size() * 9 / 10], stepMs.back());
    std::printf("  of which moving the frames (no repaint): median %.3f ms\n", moveMs[moveMs.size() / 2]);

    sel.ClearSelect();
    for (int i = 200; i < 2000; ++i) {
        auto* r = new Rectangle;
        scene.addItem(r);
        r->Move(float(600 + (i % 10) * 1000 + i % 7), float(600 + (i / 10) * 800), 900, 600);
        items.push_back(r);
    }
    auto* lines = new SmartGuideLines;
    scene.addItem(lines);
    Rectangle* dragged = items[555];
    sel.SetSmartGuides(
        [&](const QRectF& moving) {
            std::vector<QRectF> others;
            others.reserve(items.size());
            for (Rectangle* r : items)
                if (!sel.IsSelected(r))
                    others.push_back(DragBox::SourceRect(r));
            return SmartGuides::Collect(others, {{0, 1e9}}, 10800, moving);
        },
        lines);
    for (int alt : {0, 4}) {
        std::vector<double> guideMs, matchMs;
        float gx = 5000;
        sel.MouseDown(dragged, 1, 0, gx, 5000);
        for (int i = 0; i < 500; ++i) {
            gx += (i / 50) % 2 ? -7.5f : 7.5f; // half-pixel moves at 200 %: a guide check on every one
            t.restart();
            sel.MouseMove(gx, 5000 + float(i % 3), alt);
            matchMs.push_back(double(t.nsecsElapsed()) / 1e6);
            app.processEvents();
            guideMs.push_back(double(t.nsecsElapsed()) / 1e6);
        }
        sel.MouseUp();
        std::sort(guideMs.begin(), guideMs.end());
        std::sort(matchMs.begin(), matchMs.end());
        std::printf("drag step of 1 item among %zu, guides %s: median %.3f ms, 90th %.3f ms, max %.3f ms;"
                    " without the repaint: median %.3f ms\n",
                    items.size(), alt ? "off (Alt)" : "on", guideMs[guideMs.size() / 2],
                    guideMs[guideMs.size() * 9 / 10], guideMs.back(), matchMs[matchMs.size() / 2]);
    }
    return 0;
}
