// Report document timings: save and load of growing reports built through the document and
// real item controls (labels, fields, boxes, lines, pictures; 20 embedded pictures of ~50 KB).
// Loading goes into a fresh document on a fresh offscreen page each time, as opening a file does.
#include "design/OffscreenPage.h"
#include "document/clsRptControl.h"
#include "entry/Host.h"
#include "host/DemoData.h"
#include "host/EmbeddedHost.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int Runs = 5;

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

// Noisy pictures compress badly, which keeps each file near the wanted size.
QStringList makePictures(const QString& dir, int count)
{
    QRandomGenerator rng(7);
    QStringList files;
    qint64 total = 0;
    for (int i = 0; i < count; ++i) {
        const bool png = i % 2 == 1;
        const int side = png ? 150 : 290;
        QImage img(side, side, QImage::Format_RGB32);
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x)
                img.setPixel(x, y, qRgb((x * 3 + i * 20) & 255, (y * 5) & 255, int(rng.bounded(256))));
        const QString f = QDir(dir).filePath(QStringLiteral("pic%1.%2").arg(i).arg(png ? "png" : "jpg"));
        img.save(f, png ? "PNG" : "JPG", png ? -1 : 95);
        total += QFileInfo(f).size();
        files << f;
    }
    std::printf("%d pictures, %.1f KB on average\n", count, total / 1024.0 / count);
    return files;
}

// Field ids of the demo catalogue, plain columns only.
const int PlainFields[] = {1, 2, 3, 6, 8, 9, 10, 11, 12, 13, 14, 15, 17, 18, 20, 21, 22, 23, 24, 25, 26, 28, 30, 32, 34, 38};

void build(clsRptControl& doc, int items, const QStringList& pictures)
{
    using P = clsRptControl;
    int picture = 0;
    for (int i = 0; i < items; ++i) {
        const float top = float(100 + (i / 8) * 300), left = float(100 + (i % 8) * 1400);
        switch (i % 10) {
        case 0: case 1: case 2:
            doc.AddNew(ObjType::Label, QStringLiteral("Unbound"), 0);
            P::SetProp(doc.UserControl(), "Text", QStringLiteral("Label text %1").arg(i));
            P::SetProp(doc.UserControl(), "FontBold", i % 3 == 0);
            break;
        case 3: case 4: case 5: {
            const int id = PlainFields[i % std::size(PlainFields)];
            doc.AddNew(ObjType::Field, QStringLiteral("Field"), id);
            P::SetProp(doc.UserControl(), "Fontsize", 12.f);
            break;
        }
        case 6:
            doc.AddNew(ObjType::Box, QStringLiteral("Unbound"), 0);
            P::SetProp(doc.UserControl(), "BackColor", 0xE0E0E0u);
            break;
        case 7:
            doc.AddNew(ObjType::Line, QStringLiteral("Unbound"), 0);
            break;
        default: {
            doc.AddNew(ObjType::Image, QStringLiteral("Unbound"), 0);
            QObject* c = doc.UserControl();
            if (picture < pictures.size()) {
                P::SetProp(c, "Embeded", true);
                P::SetProp(c, "FileName", pictures.at(picture++));
            } else {
                P::SetProp(c, "DataBound", true);
                P::SetProp(c, "PhotoSeq", 1 + i % 9);
            }
            break;
        }
        }
        QObject* c = doc.UserControl();
        P::SetProp(c, "Left", left);
        P::SetProp(c, "Top", top);
        P::SetProp(c, "Width", 1300.f);
        P::SetProp(c, "Height", i % 10 >= 8 ? 1000.f : 255.f);
    }
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QTemporaryDir dir;
    const QString data = dir.filePath(QStringLiteral("data"));
    GenerateDemoData(data, 20);
    auto host = EmbeddedHost::Open(data);
    gHost = host.get();
    auto dic = host->NewFieldDictionary(1);
    const QStringList pictures = makePictures(dir.path(), 20);

    std::printf("%6s %10s %10s %12s %12s %10s %10s\n", "items", "build ms", "save ms", "save us/item", "load ms", "load us/item",
                "file KB");
    for (const int n : {500, 1000, 2000, 5000}) {
        const QString file = dir.filePath(QStringLiteral("report%1.rdf").arg(n));
        OffscreenPage page;
        clsRptControl doc;
        doc.Init(dic.get(), &page, nullptr);
        doc.SetSelectionManager(&page);
        QElapsedTimer bt;
        bt.start();
        build(doc, n, pictures);
        const double buildMs = bt.nsecsElapsed() / 1e6;

        std::vector<double> saves, loads;
        for (int r = 0; r < Runs; ++r) {
            QElapsedTimer t;
            t.start();
            if (!doc.SaveReport(file, false)) {
                std::fprintf(stderr, "save failed\n");
                return 1;
            }
            saves.push_back(t.nsecsElapsed() / 1e6);
        }
        for (int r = 0; r < Runs; ++r) {
            OffscreenPage freshPage;
            clsRptControl fresh;
            fresh.Init(dic.get(), &freshPage, nullptr);
            fresh.SetSelectionManager(&freshPage);
            QElapsedTimer t;
            t.start();
            fresh.LoadReport(file);
            loads.push_back(t.nsecsElapsed() / 1e6);
            if (fresh.RptItemCount() != n) {
                std::fprintf(stderr, "loaded %d items of %d\n", fresh.RptItemCount(), n);
                return 1;
            }
        }
        const double s = median(saves), l = median(loads);
        std::printf("%6d %10.1f %10.1f %12.2f %12.1f %10.2f %10.0f\n", n, buildMs, s, s * 1000 / n, l, l * 1000 / n,
                    QFileInfo(file).size() / 1024.0);
        doc.UnloadReport();
    }
    gHost = nullptr;
    return 0;
}
