// The PDF writer alone: the flyer's pages (2 boxes, 2 lines, a logo, one 800 x 600 JPEG photo
// out of 20 distinct, 21 texts) painted by the item painter with every picture already in
// memory, onto our writer and onto Qt's. This is the ceiling for the report engine.
//
//   bench_pdfwriter [pages] [ours|qt|ours-notext]   (no mode: each in its own process)
#include "pdf/PdfWriter.h"
#include "render/ItemPainter.h"
#include "render/Picture.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdio>
#include <sys/resource.h>

namespace {

constexpr int kDpi = 1200;

double PeakMb()
{
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return u.ru_maxrss / 1024.0;
}

QByteArray Jpeg(const QImage& img)
{
    QByteArray bytes;
    QBuffer b(&bytes);
    b.open(QIODevice::WriteOnly);
    img.save(&b, "JPG", 85);
    return bytes;
}

QImage PhotoImage(int seed)
{
    QImage img(800, 600, QImage::Format_RGB32);
    for (int y = 0; y < 600; ++y) {
        QRgb* line = reinterpret_cast<QRgb*>(img.scanLine(y));
        for (int x = 0; x < 800; ++x)
            line[x] = qRgb((x / 3 + seed * 37) & 255, (y / 2 + x / 7) & 255, (seed * 53 + (x ^ y)) & 255);
    }
    return img;
}

ItemLook Text(const QString& s, double left, double top, double w, double size, bool bold = false)
{
    ItemLook l;
    l.text = s;
    l.rect = QRectF(left, top, w, size * 30);
    l.fontSize = size;
    l.bold = bold;
    return l;
}

std::vector<ItemLook> Page(int record, const PictureRef& photo, const PictureRef& logo, bool withText)
{
    std::vector<ItemLook> looks;
    ItemLook box;
    box.kind = ItemKind::Box;
    box.rect = QRectF(720, 720, 10800, 1400);
    box.borderStyle = ItemCode::BorderSolid;
    box.backStyle = ItemCode::BackOpaque;
    box.backColor = 0x00F0E8E0;
    looks.push_back(box);
    box.rect = QRectF(720, 10400, 10800, 3600);
    box.backStyle = ItemCode::BackTransparent;
    looks.push_back(box);
    ItemLook line;
    line.kind = ItemKind::Line;
    line.lineStyle = ItemCode::BorderSolid;
    line.borderWidth = 2;
    line.rect = QRectF(720, 2300, 10800, 40);
    looks.push_back(line);
    line.rect = QRectF(720, 10200, 10800, 40);
    looks.push_back(line);
    ItemLook pic;
    pic.kind = ItemKind::Picture;
    pic.sizeMode = ItemCode::SizeZoom;
    pic.backStyle = ItemCode::BackOpaque;
    pic.picture = logo;
    pic.rect = QRectF(900, 800, 1600, 1200);
    looks.push_back(pic);
    pic.picture = photo;
    pic.rect = QRectF(1440, 2600, 9360, 7200);
    looks.push_back(pic);
    if (!withText)
        return looks;
    looks.push_back(Text(QStringLiteral("Just Listed"), 2800, 900, 8000, 28, true));
    const char* labels[] = {"Price", "Bedrooms", "Baths", "Square feet", "Year built", "Lot size", "Garage", "Schools",
                            "Taxes", "Listing agent", "Office", "Phone", "MLS #"};
    for (int i = 0; i < 13; ++i)
        looks.push_back(Text(QString::fromLatin1(labels[i]), 900 + (i % 2) * 5400, 10600 + (i / 2) * 420, 2000, 10, true));
    const QString values[] = {QStringLiteral("$ %1").arg(250000 + record * 17), QString::number(2 + record % 4),
                              QString::number(1 + record % 3), QString::number(1400 + record % 900),
                              QString::number(1950 + record % 70), QStringLiteral("0.%1 acres").arg(record % 90 + 10),
                              QStringLiteral("%1 Maple Street, Springfield").arg(100 + record)};
    for (int i = 0; i < 7; ++i)
        looks.push_back(Text(values[i], 3000 + (i % 2) * 5400, 10600 + (i / 2) * 420, 3000, 10));
    return looks;
}

int Run(const QString& mode, int pages)
{
    PictureStore store;
    std::vector<PictureRef> photos;
    for (int i = 0; i < 20; ++i)
        photos.push_back(store.FromBytes(Jpeg(PhotoImage(i))));
    QImage logoImg(300, 200, QImage::Format_ARGB32);
    logoImg.fill(qRgba(20, 60, 140, 255));
    const PictureRef logo = Picture::FromImage(logoImg);
    if (mode == QLatin1String("qt")) // Qt's writer takes pixels: decode them before the clock starts
        for (const PictureRef& p : photos)
            p->Image();

    QTemporaryDir dir;
    const QString out = dir.filePath(QStringLiteral("out.pdf"));
    QElapsedTimer t;
    t.start();
    {
        QFile file(out);
        file.open(QIODevice::WriteOnly);
        std::unique_ptr<QPagedPaintDevice> device;
        if (mode == QLatin1String("qt")) {
            auto w = std::make_unique<QPdfWriter>(&file);
            w->setResolution(kDpi);
            device = std::move(w);
        } else {
            auto w = std::make_unique<PdfWriter>(&file);
            w->SetResolution(kDpi);
            device = std::move(w);
        }
        device->setPageSize(QPageSize(QPageSize::Letter));
        device->setPageMargins(QMarginsF(0, 0, 0, 0));
        QPainter p(device.get());
        for (int i = 0; i < pages; ++i) {
            if (i)
                device->newPage();
            const auto looks = Page(i, photos[size_t(i % 20)], logo, mode != QLatin1String("ours-notext"));
            p.save();
            p.scale(kDpi / 1440.0, kDpi / 1440.0);
            for (const ItemLook& l : looks)
                PaintItem(p, l, PixelTwipsForDpi(kDpi));
            p.restore();
        }
        p.end();
    }
    const double s = t.nsecsElapsed() / 1e9;
    std::printf("%-12s %7d %10.0f %10.1f %10.1f\n", qPrintable(mode), pages, pages / s, QFileInfo(out).size() / 1048576.0,
                PeakMb());
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    const int pages = argc > 1 ? std::max(1, atoi(argv[1])) : 2000;
    if (argc > 2)
        return Run(QString::fromLatin1(argv[2]), pages);
    std::printf("%-12s %7s %10s %10s %10s\n", "writer", "pages", "pages/s", "PDF MB", "peak MB");
    std::fflush(stdout);
    for (const char* mode : {"ours", "ours-notext", "qt"}) {
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedChannels);
        const int n = QLatin1String(mode) == QLatin1String("qt") ? std::max(1, pages / 10) : pages;
        child.start(QCoreApplication::applicationFilePath(), {QString::number(n), QString::fromLatin1(mode)});
        child.waitForFinished(-1);
    }
    return 0;
}
