// Undo, redo and zoom on a 2,000-item report in the design window: the time of one undo and
// one redo of a step that touches every item (a move, a format) or one item, the time of a
// zoom change with every item on the page, and the memory 100 steps hold.
#include "BenchHost.h"
#include "design/RptItemControl.h"
#include "design/frmPagewright.h"
#include "document/clsRptControl.h"
#include "design/DesignHistory.h"
#include "design/Zoom.h"
#include "design/clsResize.h"
#include "document/UndoStack.h"
#include "entry/Host.h"
#include "entry/Prompts.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>
#include <QFile>
#include <algorithm>
#include <vector>



namespace {
long PeakKb(const char* field)
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : f.readAll().split('\n'))
        if (line.startsWith(field))
            return line.mid(int(qstrlen(field))).trimmed().split(' ').value(0).toLong();
    return -1;
}

double Median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}
} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir dir;
    QDir(dir.path()).mkpath(QStringLiteral("Users/bench/Reports/Listings"));
    BenchHost host(dir.path());
    gHost = &host;
    ScriptedPrompter prompts; // nothing may block a benchmark
    const int count = 2000;

    frmPagewright w;
    w.setAttribute(Qt::WA_DeleteOnClose, false);
    w.resize(1200, 800);
    w.show();
    w.Init(-1, 1, false);
    clsRptControl& doc = w.Document();
    const int kinds[] = {ObjType::Label, ObjType::Box, ObjType::Line, ObjType::Image, ObjType::DateTime};
    for (int i = 0; i < count; ++i) {
        const int kind = kinds[i % 5];
        doc.AddNew(kind, QStringLiteral("Unbound"), 0);
        auto* c = qobject_cast<RptItemControl*>(doc.Item(doc.RptItemCount()).control);
        c->Move(float(60 * (i % 100)), float(240 * (i / 100) + 60), 1200, kind == ObjType::Line ? 0 : 240);
        if (kind == ObjType::Label)
            clsRptControl::SetProp(c, "Text", QStringLiteral("Label text %1").arg(i));
    }
    QApplication::processEvents();
    DesignHistory& history = w.History();
    UndoStack& stack = history.Stack();
    QElapsedTimer t;
    t.start();
    history.Reset();
    std::printf("%d items: first snapshot %lld ms\n", count, static_cast<long long>(t.elapsed()));
    const long rssBefore = PeakKb("VmRSS:");

    // 100 steps: each moves every item (the worst case for a snapshot history), or formats
    // every text item, or moves one item.
    std::vector<double> checkpoint;
    for (int step = 0; step < 100; ++step) {
        for (int i = 1; i <= count; ++i) {
            QObject* c = doc.Item(i).control;
            if (step % 3 == 0)
                clsRptControl::SetProp(c, "Left", clsRptControl::Prop(c, "Left").toFloat() + 60);
            else if (step % 3 == 1 && i % 5 == 1)
                clsRptControl::SetProp(c, "FontBold", step % 2 == 1);
            else if (step % 3 == 2 && i == step)
                clsRptControl::SetProp(c, "Top", clsRptControl::Prop(c, "Top").toFloat() + 60);
        }
        t.restart();
        stack.Checkpoint(QStringLiteral("Step"));
        checkpoint.push_back(double(t.nsecsElapsed()) / 1e6);
    }
    const long rssAfter = PeakKb("VmRSS:");
    std::printf("100 steps: %d kept, history estimate %.1f MB, resident memory grew %.1f MB; taking a step %.1f ms "
                "(median)\n",
                stack.Steps(), double(stack.MemoryUsed()) / 1048576.0, double(rssAfter - rssBefore) / 1024.0,
                Median(checkpoint));

    std::vector<double> undoMs, redoMs;
    for (int i = 0; i < 30; ++i) {
        t.restart();
        history.Undo();
        undoMs.push_back(double(t.nsecsElapsed()) / 1e6);
    }
    for (int i = 0; i < 30; ++i) {
        t.restart();
        history.Redo();
        redoMs.push_back(double(t.nsecsElapsed()) / 1e6);
    }
    std::printf("undo of one step: median %.1f ms, worst %.1f ms; redo: median %.1f ms, worst %.1f ms\n",
                Median(undoMs), *std::max_element(undoMs.begin(), undoMs.end()), Median(redoMs),
                *std::max_element(redoMs.begin(), redoMs.end()));

    // Zoom changes with every item selected (handles and frames follow), painted.
    w.SelObj().ClearSelect();
    for (int i = 1; i <= count; i += 10)
        w.SelObj().Select(doc.Item(i).control);
    std::vector<double> zoomMs;
    for (int percent : {25, 50, 100, 200, 400, 800, 100}) {
        t.restart();
        w.Zoom().SetPercent(percent);
        QApplication::processEvents(); // repaint at the new scale
        zoomMs.push_back(double(t.nsecsElapsed()) / 1e6);
    }
    std::printf("zoom change with %d items (%d selected), painted: median %.1f ms, worst %.1f ms\n", count,
                w.SelObj().Count(), Median(zoomMs), *std::max_element(zoomMs.begin(), zoomMs.end()));
    std::printf("peak resident memory %.1f MB\n", double(PeakKb("VmHWM:")) / 1024.0);
    doc.DirtyFlag = false;
    gHost = nullptr;
    return 0;
}
