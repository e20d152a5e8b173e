// Painting speed of the shared item painter: 2,000 mixed items (half of them formatted,
// word-wrapped text) onto a 300 dpi Letter page, as the report engine paints a page.
#include "render/Format.h"
#include "render/ItemLayout.h"
#include "render/ItemPainter.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <cstdio>
#include <ctime>

namespace {

// CPU time of this process: the machine may be shared, and wall time then says little.
double CpuSeconds()
{
    timespec ts{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return double(ts.tv_sec) + ts.tv_nsec / 1e9;
}

struct Job {
    ItemLook look;
    QString value, format; // formatted at paint time, as a data-bound field is
    int formatClass = 0;
};

QList<Job> MakeItems(int count)
{
    QImage photo(64, 48, QImage::Format_RGB32);
    photo.fill(QColor(90, 140, 200));
    const PictureRef picture = Picture::FromImage(photo);
    const QStringList formats = {QStringLiteral("$#,##0"), QStringLiteral("mm/dd/yyyy"), QStringLiteral("#,##0.00"),
                                 QStringLiteral("General Number")};
    const QStringList values = {QStringLiteral("1250000"), QStringLiteral("2024-03-01"), QStringLiteral("2345.678"),
                                QStringLiteral("42")};
    QList<Job> jobs;
    jobs.reserve(count);
    for (int i = 0; i < count; ++i) {
        Job j;
        ItemLook& l = j.look;
        // A grid of cells over a Letter page (12240 x 15840 twips).
        const double x = 360 + (i % 8) * 1440, y = 360 + ((i / 8) % 60) * 250;
        l.rect = QRectF(x, y, 1380, 240);
        if (i % 2 == 0) {
            l.kind = ItemKind::Text;
            j.value = values[(i / 2) % values.size()];
            j.format = formats[(i / 2) % formats.size()];
            j.formatClass = (i / 2) % formats.size() == 1 ? 2 : 1;
            l.fontSize = 8 + (i % 3) * 2;
            l.bold = i % 6 == 0;
            l.wordWrap = true;
            l.borderStyle = i % 4 == 0 ? ItemCode::BorderSolid : ItemCode::BorderNone;
            l.specialEffect = i % 10 == 0 ? ItemCode::EffectShadow : ItemCode::EffectFlat;
            l.borderWidth = 1;
            l.alignment = (i / 2) % 3;
        } else if (i % 8 == 1) {
            l.kind = ItemKind::Text;
            l.text = QStringLiteral("Charming colonial with a wrap-around porch");
        } else if (i % 8 == 3) {
            l.kind = ItemKind::Box;
            l.borderStyle = i % 16 == 3 ? ItemCode::BorderSolid : ItemCode::BorderDash;
            l.backStyle = ItemCode::BackOpaque;
            l.backColor = 0x00F0F0F0;
        } else if (i % 8 == 5) {
            l.kind = ItemKind::Line;
            l.rect.setHeight(45);
            l.lineStyle = (i / 8) % 7;
            l.borderWidth = (i / 8) % 3;
        } else {
            l.kind = ItemKind::Picture;
            l.picture = picture;
            l.sizeMode = (i / 8) % 3;
            l.pictureAlignment = (i / 8) % 5;
            l.backStyle = ItemCode::BackOpaque;
        }
        jobs << j;
    }
    return jobs;
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    const double dpi = 300;
    const double px = PixelTwipsForDpi(dpi);
    QImage page(int(8.5 * dpi), int(11 * dpi), QImage::Format_ARGB32_Premultiplied);
    const QList<Job> jobs = MakeItems(2000);

    auto paintAll = [&] {
        page.fill(Qt::white);
        QPainter p(&page);
        p.scale(1 / px, 1 / px);
        for (const Job& j : jobs) {
            if (j.formatClass == 0) {
                PaintItem(p, j.look, px);
                continue;
            }
            ItemLook l = j.look;
            try {
                l.text = ItemLayout::ShownText(j.value, j.format, j.formatClass);
            } catch (const FormatError&) {
                l.text = QStringLiteral("Error");
            }
            PaintItem(p, l, px);
        }
    };

    paintAll(); // warm the font and glyph caches
    const int rounds = 5;
    QElapsedTimer timer;
    timer.start();
    const double cpu0 = CpuSeconds();
    for (int r = 0; r < rounds; ++r)
        paintAll();
    const double cpu = CpuSeconds() - cpu0;
    const double wall = timer.nsecsElapsed() / 1e9;
    const double items = double(rounds) * jobs.size();
    std::printf("bench_paint: %d items x %d rounds on a %dx%d page (300 dpi Letter)\n", int(jobs.size()), rounds,
                page.width(), page.height());
    std::printf("bench_paint: cpu %.1f ms per page, %.0f items/s (target >= 20000)\n", cpu * 1000 / rounds, items / cpu);
    std::printf("bench_paint: wall %.1f ms per page, %.0f items/s\n", wall * 1000 / rounds, items / wall);
    if (argc > 1)
        page.save(QString::fromLocal8Bit(argv[1]));
    return 0;
}
