// Opening a large report in the design window: 2,000 items written to a file, then timed from
// creating the window to the loaded page.
#include "BenchHost.h"
#include "design/RptItemControl.h"
#include "design/frmPagewright.h"
#include "document/clsRptControl.h"
#include "entry/Host.h"
#include "entry/Prompts.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>


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
    const QString file = dir.path() + QStringLiteral("/Users/bench/Reports/Listings/big.rdf");

    {
        frmPagewright w;
        w.setAttribute(Qt::WA_DeleteOnClose, false);
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
        if (!doc.SaveReport(file, false)) {
            std::fprintf(stderr, "bench_window: could not write %s\n", qPrintable(file));
            return 1;
        }
        doc.DirtyFlag = false;
    }

    for (int run = 1; run <= 3; ++run) {
        QElapsedTimer t;
        t.start();
        auto* w = new frmPagewright;
        w->setAttribute(Qt::WA_DeleteOnClose, false);
        w->resize(1200, 800);
        w->show();
        w->Init(-1, 1, false);
        const qint64 initMs = t.elapsed();
        w->SetReport(file, QStringLiteral("big.rdf"), QString());
        const qint64 loadMs = t.elapsed();
        QApplication::processEvents(); // first paint
        const qint64 shownMs = t.elapsed();
        std::printf("run %d: %d items: window %lld ms, loaded %lld ms, painted %lld ms (items loaded: %d)\n", run, count,
                    static_cast<long long>(initMs), static_cast<long long>(loadMs), static_cast<long long>(shownMs),
                    w->Document().RptItemCount());
        QElapsedTimer c;
        c.start();
        delete w;
        std::printf("        closed in %lld ms\n", static_cast<long long>(c.elapsed()));
    }
    gHost = nullptr;
    return 0;
}
