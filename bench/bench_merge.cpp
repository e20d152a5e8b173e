// Merge printing at scale: a one-page Letter listing flyer (2 boxes, 2 lines, a logo, one
// 800x600 JPEG listing photo, 21 texts) printed by the streaming engine for every listing of a
// generated database of N listings, to one PDF. Photos are either 20 distinct pictures shared
// by all listings, or a distinct file per listing. Each run is a fresh child process so that
// its peak memory (VmHWM) is its own; the table gives pages/s, peak RSS and PDF size.
//
//   bench_merge [--n 1000,10000,100000] [--work DIR] [--modes shared,each] [--threads 1,2] [--repeat R]
//
// With several thread counts the runs alternate (1, 2, 1, 2, ...) so that load from other work
// on the machine falls on both alike.
//   bench_merge --writer-only N             (the PDF writer alone, pictures already decoded)
#include "document/RdfFile.h"
#include "entry/Host.h"
#include "host/DemoData.h"
#include "host/DemoPictures.h"
#include "host/EmbeddedHost.h"
#include "output/RenderKeys.h"
#include "output/ReportEngine.h"
#include "output/ReportOutput.h"
#include "pdf/PdfWriter.h"
#include "render/Picture.h"
#include "render/ItemPainter.h"

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <algorithm>
#include <cstdio>
#include <sys/resource.h>

namespace {

constexpr int kDistinctPhotos = 20;

double cpuSeconds()
{
    rusage u {};
    getrusage(RUSAGE_SELF, &u);
    return u.ru_utime.tv_sec + u.ru_stime.tv_sec + (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

long peakRssKb()
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : f.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    return -1;
}

quint32 bgr(int r, int g, int b) { return quint32(r) | quint32(g) << 8 | quint32(b) << 16; }

RdfItem text(quint8 kind, const QString& fieldOrText, double xPt, double yPt, double wPt, double hPt, float size, bool bold = false,
             quint32 color = 0)
{
    RdfItem it;
    it.kind = kind;
    if (kind == RdfKind::Label)
        it.text = fieldOrText;
    else
        it.dataField = fieldOrText;
    it.left = float(xPt * 20);
    it.top = float(yPt * 20);
    it.width = qint32(wPt * 20);
    it.height = qint32(hPt * 20);
    it.fontName = QStringLiteral("DejaVu Sans");
    it.fontSize = size;
    it.flags = bold ? RdfFlag::Bold : 0;
    if (hPt > 2 * size)
        it.flags |= RdfFlag::MultiLine;
    it.foreColor = color;
    it.borderStyle = ItemCode::BorderNone;
    return it;
}

RdfItem shape(quint8 kind, double xPt, double yPt, double wPt, double hPt, quint32 fill, quint32 border, double borderPt)
{
    RdfItem it;
    it.kind = kind;
    it.left = float(xPt * 20);
    it.top = float(yPt * 20);
    it.width = qint32(wPt * 20);
    it.height = qint32(hPt * 20);
    it.backColor = fill;
    it.borderColor = border;
    it.borderWidth = qint16(borderPt * 20);
    it.borderStyle = borderPt > 0 ? ItemCode::BorderSolid : ItemCode::BorderNone;
    if (kind == RdfKind::Box)
        it.flags = RdfFlag::Opaque;
    return it;
}

// The peer's flyer, item for item, on a Letter page without margins.
RdfReport flyer()
{
    RdfReport r;
    RdfHeader& h = r.header;
    h.topMargin = h.bottomMargin = h.leftMargin = h.rightMargin = 0;
    const quint32 navy = bgr(0x1f, 0x3a, 0x5f), white = bgr(255, 255, 255);
    auto& v = r.items;
    v.push_back(shape(RdfKind::Box, 0, 0, 612, 100, navy, 0, 0));
    RdfItem street = text(RdfKind::Field, QStringLiteral("FullAddress"), 36, 14, 410, 40, 26, true, white);
    street.flags |= RdfFlag::Expression;
    street.dicId = 16;
    v.push_back(street);
    v.push_back(text(RdfKind::Field, QStringLiteral("City"), 36, 58, 200, 26, 15, false, white));
    v.push_back(text(RdfKind::Field, QStringLiteral("State"), 240, 58, 60, 26, 15, false, white));
    v.push_back(text(RdfKind::Field, QStringLiteral("Zip"), 300, 58, 120, 26, 15, false, white));
    RdfItem logo = shape(RdfKind::Image, 452, 10, 133.333, 80, white, 0, 0);
    logo.formatOrFile = QStringLiteral("~Graphics~OF01.jpg");
    logo.sizeMode = ItemCode::SizeZoom;
    v.push_back(logo);
    v.push_back(text(RdfKind::Field, QStringLiteral("LstStatus"), 36, 108, 360, 20, 12, true, bgr(0xb7, 0x1c, 0x1c)));
    RdfItem photo = shape(RdfKind::Image, 36, 130, 360, 270, white, 0, 0);
    photo.dataBound = true;
    photo.numberA = 1; // the listing's first photo
    photo.sizeMode = ItemCode::SizeZoom;
    v.push_back(photo);
    v.push_back(shape(RdfKind::Box, 408, 130, 168, 270, bgr(0xf0, 0xf0, 0xf0), navy, 1));
    v.push_back(text(RdfKind::Field, QStringLiteral("ListPrice"), 416, 138, 152, 30, 22, true, bgr(0x1b, 0x5e, 0x20)));
    const char* facts[] = {"ListNum", "Bedrooms", "Baths", "SqFt", "Subdivision", "YearBuilt", "PropType", "Garage"};
    for (int i = 0; i < 8; ++i)
        v.push_back(text(RdfKind::Field, QLatin1String(facts[i]), 416, 176 + 22 * i, 152, 18, 11));
    v.push_back(shape(RdfKind::Line, 36, 414, 540, 0, 0, navy, 1));
    v.push_back(text(RdfKind::Label, QStringLiteral("About this home"), 36, 424, 540, 22, 14, true, navy));
    v.push_back(text(RdfKind::Field, QStringLiteral("Remarks"), 36, 450, 540, 210, 11));
    v.push_back(shape(RdfKind::Line, 36, 676, 540, 0, 0, navy, 1));
    v.push_back(text(RdfKind::Label, QStringLiteral("Presented by"), 36, 684, 300, 16, 10));
    v.push_back(text(RdfKind::Field, QStringLiteral("ListAgentID"), 36, 700, 300, 22, 16, true));
    v.push_back(text(RdfKind::Field, QStringLiteral("PrivateRemarks"), 36, 726, 300, 18, 12));
    v.push_back(text(RdfKind::Field, QStringLiteral("OwnerName"), 36, 746, 300, 18, 12));
    v.push_back(text(RdfKind::Field, QStringLiteral("ListOfficeID"), 336, 700, 240, 22, 13, true));
    v.push_back(text(RdfKind::Label, QStringLiteral("Information deemed reliable but not guaranteed."), 336, 748, 240, 16, 8));
    h.firstDetailItem = 1;
    h.lastDetailItem = qint16(v.size());
    h.detailSize = 792 * 20;
    return r;
}

// A house picture at 800x600, as the listing photos of the peer's data set.
QByteArray photoBytes(int variant)
{
    const QImage img = DemoPictures::House(variant).scaled(800, 600, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QBuffer b;
    b.open(QIODevice::WriteOnly);
    img.save(&b, "JPG", 85);
    return b.data();
}

// The same JPEG made a distinct file: a comment segment after the start marker.
QByteArray withComment(const QByteArray& jpeg, const QByteArray& note)
{
    QByteArray seg("\xFF\xFE", 2);
    const int len = int(note.size()) + 2;
    seg.append(char(len >> 8)).append(char(len & 0xFF)).append(note);
    return jpeg.left(2) + seg + jpeg.mid(2);
}

void fail(const QString& what)
{
    std::fprintf(stderr, "bench_merge: %s\n", qPrintable(what));
    std::exit(1);
}

// A data folder with n listings, every one visible to the demo user with one photo.
QString prepareData(const QString& work, int n)
{
    const QString dir = work + QStringLiteral("/data-%1").arg(n);
    if (!QFileInfo::exists(dir + QStringLiteral("/.bench-ready"))) {
        QDir(dir).removeRecursively();
        QElapsedTimer t;
        t.start();
        GenerateDemoData(dir, n);
        std::printf("demo data, %d listings: %.1f s\n", n, t.elapsed() / 1000.0);
        std::fflush(stdout);
        {
            QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("bench"));
            db.setDatabaseName(dir + QStringLiteral("/pagewright.db"));
            if (!db.open())
                fail(db.lastError().text());
            QSqlQuery q(db);
            for (const char* sql : {"UPDATE Listings SET LstStatus = '2001'", "DELETE FROM Photo",
                                    "INSERT INTO Photo (PhoListnum, PhotoVersion, PhotoCount) SELECT ListNum, 'V1', 1 FROM Listings"})
                if (!q.exec(QLatin1String(sql)))
                    fail(q.lastError().text());
            db.close();
        }
        QSqlDatabase::removeDatabase(QStringLiteral("bench"));
        QFile(dir + QStringLiteral("/.bench-ready")).open(QIODevice::WriteOnly);
    }
    return dir;
}

void writePhotos(const QString& dir, int n, bool each)
{
    QList<QByteArray> pool;
    for (int v = 0; v < kDistinctPhotos; ++v)
        pool << photoBytes(v);
    for (int i = 0; i < n; ++i) {
        const qlonglong key = DemoIdentity::FirstListNum + i;
        QFile f(dir + QStringLiteral("/Photos/%1_1.jpg").arg(key));
        const QByteArray& base = pool[i % kDistinctPhotos];
        if (!f.open(QIODevice::WriteOnly) || f.write(each ? withComment(base, QByteArray::number(key)) : base) < 0)
            fail(QStringLiteral("cannot write ") + f.fileName());
    }
}

// One measured run (in a child process): every listing's flyer to out.pdf.
int runOne(const QString& dir, const QString& pdf, int threads)
{
    std::unique_ptr<EmbeddedHost> host = EmbeddedHost::Open(dir);
    gHost = host.get();
    QElapsedTimer t;
    t.start();
    QStringList keys;
    {
        std::unique_ptr<FieldDictionary> dic = host->NewFieldDictionary(1);
        keys = RenderKeys::Select(*dic, QString(), QString());
    }
    int pages = 0;
    {
        ReportEngine engine;
        ReportOptions options;
        options.threads = threads;
        engine.SetOptions(options);
        engine.SetReport(flyer());
        PdfFileOutput out(pdf);
        engine.Print(keys, out);
        pages = engine.PageCount();
    }
    const double secs = t.elapsed() / 1000.0;
    std::printf("%d %.3f %.3f %ld %lld\n", pages, secs, cpuSeconds(), peakRssKb(), QFileInfo(pdf).size());
    gHost = nullptr;
    return 0;
}

// The writer alone: the same pages with every value and picture already in memory, on the
// engine's own PDF writer - the limit the engine can get near on this machine.
int writerOnly(int n, const QString& pdf)
{
    QList<PictureRef> photos;
    for (int v = 0; v < kDistinctPhotos; ++v)
        photos << PictureStore::Global().FromBytes(photoBytes(v));
    const RdfReport r = flyer();
    QElapsedTimer t;
    t.start();
    {
        QFile file(pdf);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            fail(QStringLiteral("cannot write ") + pdf);
        PdfWriter w(&file);
        w.SetResolution(1200);
        w.setPageSize(QPageSize(QPageSize::Letter));
        w.setPageMargins(QMarginsF());
        QPainter p(&w);
        const double px = PixelTwipsForDpi(1200);
        for (int i = 0; i < n; ++i) {
            if (i)
                w.newPage();
            p.save();
            p.scale(1200 / 1440.0, 1200 / 1440.0);
            for (const RdfItem& it : r.items) {
                ItemLook l;
                l.rect = QRectF(it.left, it.top, it.width, it.height);
                if (it.kind == RdfKind::Image) {
                    l.kind = ItemKind::Picture;
                    l.picture = photos[i % kDistinctPhotos];
                } else if (it.kind == RdfKind::Box || it.kind == RdfKind::Line) {
                    l.kind = it.kind == RdfKind::Box ? ItemKind::Box : ItemKind::Line;
                    l.backColor = it.backColor;
                    l.backStyle = ItemCode::BackOpaque;
                } else {
                    l.text = it.kind == RdfKind::Label ? it.text : QStringLiteral("%1 value %2").arg(it.dataField).arg(i);
                    l.fontName = it.fontName;
                    l.fontSize = it.fontSize;
                }
                PaintItem(p, l, px);
            }
            p.restore();
        }
    }
    std::printf("%d %.3f %.3f %ld %lld\n", n, t.elapsed() / 1000.0, cpuSeconds(), peakRssKb(), QFileInfo(pdf).size());
    return 0;
}

struct Result {
    int pages = 0;
    double secs = 0;
    double cpu = 0;
    long rssKb = 0;
    qint64 bytes = 0;
};

Result child(const QStringList& args)
{
    QProcess p;
    p.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    p.start(QCoreApplication::applicationFilePath(), args);
    if (!p.waitForFinished(-1) || p.exitCode() != 0)
        fail(QStringLiteral("the run failed: ") + args.join(QLatin1Char(' ')));
    const QList<QByteArray> f = p.readAllStandardOutput().trimmed().split('\n').last().split(' ');
    if (f.size() != 5)
        fail(QStringLiteral("unexpected output"));
    return {f[0].toInt(), f[1].toDouble(), f[2].toDouble(), f[3].toLong(), f[4].toLongLong()};
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QStringList args = app.arguments().mid(1);
    if (args.value(0) == QLatin1String("--one"))
        return runOne(args.value(1), args.value(2), args.value(3).toInt());
    if (args.value(0) == QLatin1String("--writer-only-child"))
        return writerOnly(args.value(1).toInt(), args.value(2));

    QList<int> sizes{1000, 10000, 100000};
    QString work = QDir::tempPath() + QStringLiteral("/pagewright-bench-merge");
    QStringList modes{QStringLiteral("shared"), QStringLiteral("each")};
    int writerN = 0;
    QList<int> threadCounts{0};
    int repeat = 1;
    for (int i = 0; i + 1 < args.size(); i += 2) {
        if (args[i] == QLatin1String("--n")) {
            sizes.clear();
            for (const QString& s : args[i + 1].split(QLatin1Char(',')))
                sizes << s.toInt();
        } else if (args[i] == QLatin1String("--work")) {
            work = args[i + 1];
        } else if (args[i] == QLatin1String("--modes")) {
            modes = args[i + 1].split(QLatin1Char(','));
        } else if (args[i] == QLatin1String("--threads")) {
            threadCounts.clear();
            for (const QString& s : args[i + 1].split(QLatin1Char(',')))
                threadCounts << s.toInt();
        } else if (args[i] == QLatin1String("--repeat")) {
            repeat = std::max(1, args[i + 1].toInt());
        } else if (args[i] == QLatin1String("--writer-only")) {
            writerN = args[i + 1].toInt();
        }
    }
    QDir().mkpath(work);
    if (writerN > 0) {
        const Result r = child({QStringLiteral("--writer-only-child"), QString::number(writerN), work + QStringLiteral("/writer.pdf")});
        std::printf("writer alone, %d pages: %.0f pages/s (%.0f per CPU second), peak %.0f MB, PDF %.1f MB\n", r.pages, r.pages / r.secs,
                    r.pages / r.cpu, r.rssKb / 1024.0, r.bytes / 1048576.0);
        return 0;
    }
    // Two cores shared with other work: pages per CPU second is the steadier figure.
    std::printf("%-8s %-7s %7s %8s %9s %9s %10s %12s %8s\n", "N", "photos", "threads", "pages", "seconds", "pages/s", "pages/cpu-s",
                "peak RSS MB", "PDF MB");
    std::fflush(stdout);
    for (int n : sizes) {
        const QString dir = prepareData(work, n);
        for (const QString& mode : modes) {
            writePhotos(dir, n, mode == QLatin1String("each"));
            const QString pdf = work + QStringLiteral("/merge-%1-%2.pdf").arg(n).arg(mode);
            for (int rep = 0; rep < repeat; ++rep) {
                for (int threads : threadCounts) {
                    const Result r = child({QStringLiteral("--one"), dir, pdf, QString::number(threads)});
                    std::printf("%-8d %-7s %7s %8d %9.2f %9.0f %10.0f %12.0f %8.1f\n", n, mode == QLatin1String("each") ? "each" : "20",
                                threads ? qPrintable(QString::number(threads)) : "cores", r.pages, r.secs, r.pages / r.secs,
                                r.pages / r.cpu, r.rssKb / 1024.0, r.bytes / 1048576.0);
                    std::fflush(stdout);
                    QFile::remove(pdf);
                }
            }
        }
    }
    return 0;
}
