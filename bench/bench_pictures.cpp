// One large picture used by many items: a report whose embedded 5700 x 5700 PNG (a small file,
// mostly flat colour) is shown by 64 picture items. Opening it and painting the page as the
// design window shows it must decode the picture once and stay small: the time to open, to
// paint the page, and the peak memory are printed.
#include "design/OffscreenPage.h"
#include "design/RptImage.h"
#include "document/clsRptControl.h"
#include "render/Picture.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QGraphicsScene>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdio>
#include <sys/resource.h>

namespace {

double PeakMb()
{
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return u.ru_maxrss / 1024.0;
}

} // namespace

// Writes the report with `items` picture items sharing one embedded picture.
int MakeReport(const QString& report, int items)
{
    QTemporaryDir dir;
    const QString png = dir.filePath(QStringLiteral("big.png"));
    {
        QImage big(5700, 5700, QImage::Format_RGB32);
        big.fill(qRgb(200, 220, 240));
        QPainter p(&big);
        p.setPen(QPen(Qt::darkBlue, 40));
        for (int i = 0; i < 5700; i += 400)
            p.drawLine(0, i, 5700, 5700 - i);
        p.end();
        big.save(png, "PNG");
    }
    OffscreenPage page;
    clsRptControl doc;
    doc.Init(nullptr, &page, nullptr);
    doc.SetSelectionManager(&page);
    for (int i = 0; i < items; ++i) {
        doc.AddNew(ObjType::Image, QStringLiteral("Unbound"), 0);
        QObject* c = doc.UserControl();
        clsRptControl::SetProp(c, "Embeded", true);
        clsRptControl::SetProp(c, "FileName", png);
        clsRptControl::SetProp(c, "Left", float(100 + (i % 8) * 1400));
        clsRptControl::SetProp(c, "Top", float(100 + (i / 8) * 1400));
        clsRptControl::SetProp(c, "Width", 1300.f);
        clsRptControl::SetProp(c, "Height", 1300.f);
    }
    return doc.SaveReport(report, false) ? 0 : 1;
}

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const int items = argc > 1 ? std::max(1, atoi(argv[1])) : 64;
    if (argc > 3 && QLatin1String(argv[2]) == QLatin1String("make"))
        return MakeReport(QString::fromLocal8Bit(argv[3]), items);
    // The report is made by another process, so that only opening counts here.
    QTemporaryDir dir;
    const QString report = dir.filePath(QStringLiteral("shared.rdf"));
    QProcess maker;
    maker.start(QCoreApplication::applicationFilePath(), {QString::number(items), QStringLiteral("make"), report});
    if (!maker.waitForFinished(-1) || maker.exitCode() != 0) {
        std::fprintf(stderr, "could not make the report\n");
        return 1;
    }
    PictureStore::Global().Clear(); // opening starts from nothing, as in a new session
    const double before = PeakMb();

    QElapsedTimer t;
    t.start();
    OffscreenPage page;
    clsRptControl doc;
    doc.Init(nullptr, &page, nullptr);
    doc.SetSelectionManager(&page);
    doc.LoadReport(report);
    const double openMs = t.nsecsElapsed() / 1e6;

    // The page as the design window shows it at 96 dpi: 15 twips a pixel.
    t.restart();
    QImage screen(800, 800, QImage::Format_RGB32);
    screen.fill(Qt::white);
    {
        QPainter p(&screen);
        page.Scene().render(&p, QRectF(0, 0, 800, 800), QRectF(0, 0, 12000, 12000));
    }
    const double paintMs = t.nsecsElapsed() / 1e6;
    t.restart();
    {
        QPainter p(&screen);
        page.Scene().render(&p, QRectF(0, 0, 800, 800), QRectF(0, 0, 12000, 12000));
    }
    const double repaintMs = t.nsecsElapsed() / 1e6;

    std::printf("report %.0f KB, %d items sharing one 5700 x 5700 picture\n", QFileInfo(report).size() / 1024.0, doc.RptItemCount());
    std::printf("open %.0f ms, first paint %.0f ms, repaint %.0f ms\n", openMs, paintMs, repaintMs);
    std::printf("peak memory %.0f MB (%.0f MB before opening), decoded pictures held %.0f MB\n", PeakMb(), before,
                PictureStore::Global().DecodedBytes() / 1048576.0);
    return 0;
}
