// Report file codec timings: section pass, write, read and restore for growing reports with
// 20 embedded pictures of about 50 KB, and the atomic save/load of the largest one.
#include "document/RdfFile.h"
#include "document/RdfSections.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>

namespace {

RdfReport makeReport(int items)
{
    QRandomGenerator rng(42);
    RdfReport r;
    r.header.autoFillId = QStringLiteral("A100234");
    for (int i = 0; i < items; ++i) {
        RdfItem it;
        it.kind = quint8(1 + i % 5);
        it.name = QStringLiteral("Item%1").arg(i);
        it.dataField = QStringLiteral("ListPrice");
        it.fontName = QStringLiteral("Arial");
        it.fontSize = 10;
        it.text = QStringLiteral("Sample text for item %1").arg(i);
        it.top = float(rng.bounded(20000));
        it.left = float(rng.bounded(11000));
        it.height = 240;
        it.width = 1440;
        it.flags = i % 50 == 0 ? RdfFlag::NewBand : 0;
        it.formatOrFile = QStringLiteral("#,##0");
        r.items.push_back(it);
    }
    for (int p = 0; p < 20; ++p) {
        QByteArray pic(50 * 1024 + p, Qt::Uninitialized);
        for (qsizetype k = 0; k < pic.size(); ++k)
            pic[k] = char(rng.bounded(256));
        r.pictures.push_back(pic);
    }
    return r;
}

template <typename F>
double bestMs(int runs, F&& f)
{
    double best = 1e300;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer t;
        t.start();
        f();
        best = std::min(best, t.nsecsElapsed() / 1e6);
    }
    return best;
}

} // namespace

int main()
{
    QTextStream out(stdout);
    out << "items  order_ms  write_ms  read_ms  restore_ms  bytes\n";
    for (int n : {500, 1000, 2000, 5000}) {
        const RdfReport base = makeReport(n);
        RdfReport ordered = base;
        const double orderMs = bestMs(5, [&] {
            ordered = base;
            std::vector<int> z(ordered.items.size(), 0);
            RdfOrderSections(ordered.items, z, ordered.header, 3000, 15000, true, true);
        });
        QByteArray bytes;
        const double writeMs = bestMs(5, [&] { bytes = RdfWrite(ordered); });
        RdfReport loaded;
        const double readMs = bestMs(5, [&] { loaded = RdfRead(bytes); });
        const double restoreMs = bestMs(5, [&] {
            RdfReport copy = loaded;
            RdfRestorePositions(copy.items, copy.header);
        });
        out << qSetFieldWidth(5) << n << qSetFieldWidth(0) << "  " << qSetFieldWidth(8) << QString::number(orderMs, 'f', 2)
            << qSetFieldWidth(0) << "  " << qSetFieldWidth(8) << QString::number(writeMs, 'f', 2) << qSetFieldWidth(0) << "  "
            << qSetFieldWidth(7) << QString::number(readMs, 'f', 2) << qSetFieldWidth(0) << "  " << qSetFieldWidth(10)
            << QString::number(restoreMs, 'f', 2) << qSetFieldWidth(0) << "  " << bytes.size() << "\n";
    }

    QTemporaryDir dir;
    const QString path = dir.filePath("Bench.rdf");
    const RdfReport big = makeReport(5000);
    const double saveMs = bestMs(3, [&] { RdfSaveFile(path, big); });
    const double loadMs = bestMs(3, [&] { RdfLoadFile(path); });
    out << "5000 items + 20 pictures: save (temp, fsync, rename) " << QString::number(saveMs, 'f', 2) << " ms, load "
        << QString::number(loadMs, 'f', 2) << " ms\n";
    return 0;
}
