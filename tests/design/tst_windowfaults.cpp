// The design window under faults. Hostile report files through the designer's own load path:
// damaged files go through File > Open into real item controls on the design page, which are
// then painted; each one either opens or is refused with the file-error message, nothing
// crashes or hangs. Saving to a read-only report or a full disk is refused and loses nothing.
#include "document/RdfFile.h"
#include "entry/SafeFile.h"
#include "support_windowhost.h"

#include <QBuffer>
#include <QRandomGenerator>

#include <cmath>
#include <sys/stat.h>

namespace {

QByteArray pictureBytes(const char* format)
{
    QImage img(24, 16, QImage::Format_RGB32);
    img.fill(Qt::darkGreen);
    QByteArray bytes;
    QBuffer buf(&bytes);
    buf.open(QIODevice::WriteOnly);
    img.save(&buf, format);
    return bytes;
}

// One item of every kind, two embedded pictures, a sub-report and a function field.
RdfReport everyKind()
{
    RdfReport r;
    r.header.detailTop = 1500;
    r.header.pageFooterTop = 6000;
    r.header.detailFieldList = QStringLiteral(",ListNum,");
    const quint8 kinds[] = {RdfKind::Label, RdfKind::Field, RdfKind::Box, RdfKind::Line, RdfKind::Image, RdfKind::Image,
                            RdfKind::DateTime, RdfKind::SubReport, RdfKind::NewPage, RdfKind::Section, RdfKind::FunctionField};
    int n = 0;
    for (quint8 k : kinds) {
        RdfItem it;
        it.kind = k;
        it.name = QStringLiteral("Item%1").arg(++n);
        it.fontName = QStringLiteral("Arial");
        it.fontSize = 10;
        it.text = QString::fromUtf8("Caf\u00e9 %1").arg(n);
        it.top = float(300 * n);
        it.left = 200;
        it.height = 400;
        it.width = 1800;
        it.borderWidth = 20;
        it.borderStyle = 1;
        if (k == RdfKind::Field || k == RdfKind::FunctionField) {
            it.dataField = QStringLiteral("ListNum");
            it.formatOrFile = QStringLiteral("#,##0");
            it.numberB = k == RdfKind::FunctionField ? 1 : 0;
        }
        if (k == RdfKind::Image) {
            it.flags |= RdfFlag::Embedded;
            it.formatOrFile = QString::number(r.pictures.size());
            r.pictures.push_back(pictureBytes(r.pictures.empty() ? "PNG" : "BMP"));
        }
        if (k == RdfKind::SubReport)
            it.dataField = QStringLiteral("SELECT A FROM T WHERE N = '%OwnerName%'");
        if (k == RdfKind::NewPage || k == RdfKind::Section || k == RdfKind::SubReport)
            it.flags |= RdfFlag::NewBand;
        r.items.push_back(it);
    }
    return r;
}

// Damage as a careless disk or a hostile sender makes it: flipped bytes, planted extreme
// numbers (lengths, counts, float sizes and positions), and cut-off ends.
QByteArray damaged(const QByteArray& good, QRandomGenerator& rng, int round)
{
    static const quint32 extremes[] = {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu, 0x0000FFFFu, 0x7F800000u /* +inf */,
                                       0x7FC00000u /* NaN */, 0x4F000000u /* 2^31 as float */, 0xCF000000u, 0x00000001u};
    QByteArray b = good;
    const int damage = 1 + int(rng.bounded(5));
    for (int d = 0; d < damage; ++d) {
        const qsizetype at = rng.bounded(int(b.size()));
        if (round % 3 == 0) {
            b[at] = char(b[at] ^ char(1 + rng.bounded(255)));
        } else {
            const quint32 v = extremes[rng.bounded(int(std::size(extremes)))];
            for (int k = 0; k < 4 && at + k < b.size(); ++k)
                b[at + k] = char(v >> (8 * k));
        }
    }
    if (rng.bounded(6) == 0)
        b.truncate(rng.bounded(int(b.size())));
    return b;
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(f.write(bytes), bytes.size());
}

} // namespace

class TestWindowFaults : public QObject {
    Q_OBJECT
private slots:
    void damagedFilesOpenOrAreRefusedInTheWindow()
    {
        WindowTestHost host;
        Window w = Open();
        const QString path = host.Local("Users/tester/Reports/Listings/fuzz.rdf");
        const QByteArray good = RdfWrite(everyKind());
        writeFile(path, good);
        QVERIFY(w->OpenSaveReport(false, path));
        QCOMPARE(w->Document().RptItemCount(), 11);
        QVERIFY2(host.prompts.asked.empty(), qPrintable(host.prompts.asked.empty() ? QString() : host.prompts.asked[0].prompt));

        QRandomGenerator rng(20261123);
        int opened = 0, refused = 0;
        constexpr int kRounds = 300;
        for (int round = 0; round < kRounds; ++round) {
            writeFile(path, damaged(good, rng, round));
            host.prompts.asked.clear();
            if (w->OpenSaveReport(false, path)) {
                ++opened;
                // An item may report its own trouble (a picture that is not there); the file opened.
                for (const auto& a : host.prompts.asked)
                    QVERIFY2(a.title != "Report Designer File error", qPrintable(a.prompt));
                // Paint what was loaded: extreme sizes and fonts must not crash the painters.
                if (round % 4 == 0)
                    QVERIFY(!Viewport(*w)->grab().isNull());
            } else {
                ++refused;
                QCOMPARE(host.prompts.asked.size(), size_t(1));
                QCOMPARE(host.prompts.asked[0].title, QString("Report Designer File error"));
                QVERIFY2(host.prompts.asked[0].prompt.startsWith("Error: 321 - Bad file format: "), qPrintable(host.prompts.asked[0].prompt));
            }
        }
        QVERIFY(opened > 0);
        QVERIFY(refused > 0);
        // The window still works after all that: a clean file opens as it should.
        writeFile(path, good);
        QVERIFY(w->OpenSaveReport(false, path));
        QCOMPARE(w->Document().RptItemCount(), 11);
    }

    void nonRegularFilesAreRefusedAtOnce()
    {
        WindowTestHost host;
        Window w = Open();
        const QString fifo = host.Local("Users/tester/Reports/Listings/pipe.rdf");
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        for (const QString& path : {fifo, QStringLiteral("/dev/zero"), host.Local("Users/tester/Reports")}) {
            host.prompts.asked.clear();
            QVERIFY(!w->OpenSaveReport(false, path));
            QCOMPARE(host.prompts.asked.size(), size_t(1));
            QVERIFY2(host.prompts.asked[0].prompt.startsWith("Error: 75 - Path/File access error: "), qPrintable(host.prompts.asked[0].prompt));
        }
    }

    void saveToReadOnlyReportOrFullDiskKeepsEverything()
    {
        WindowTestHost host;
        Window w = Open();
        const QString path = host.Local("Users/tester/Reports/Listings/Locked.rdf");
        writeFile(path, "the old report");
        QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther));
        Draw(*w, "tbInsertRectangle", {1200, 1500}, {3000, 2400});
        QVERIFY(w->Document().DirtyFlag);
        host.prompts.files = {path};
        Tool(*w, "miSaveAs");
        QCOMPARE(host.prompts.asked.size(), size_t(1));
        QCOMPARE(host.prompts.asked[0].title, QString("Save Report Error"));
        QCOMPARE(host.prompts.asked[0].prompt, "Error: 70 - Permission denied: " + path);
        QVERIFY(w->Document().DirtyFlag);

        // A disk that fills up half-way: the old file stays, the changes stay unsaved.
        const QString other = host.Local("Users/tester/Reports/Listings/Other.rdf");
        writeFile(other, "the other report");
        host.prompts.files = {other};
        host.prompts.asked.clear();
        SafeFileWriter::InjectFailure(100, ENOSPC);
        Tool(*w, "miSaveAs");
        SafeFileWriter::InjectFailure(-1, 0);
        QCOMPARE(host.prompts.asked.size(), size_t(1));
        QCOMPARE(host.prompts.asked[0].prompt, "Error: 61 - Disk full: " + other);
        QVERIFY(w->Document().DirtyFlag);
        for (const auto& [file, bytes] : {std::pair{path, QByteArray("the old report")}, std::pair{other, QByteArray("the other report")}}) {
            QFile f(file);
            QVERIFY(f.open(QIODevice::ReadOnly));
            QCOMPARE(f.readAll(), bytes);
        }
        QCOMPARE(QDir(host.Local("Users/tester/Reports/Listings")).entryList(QDir::Files | QDir::Hidden), (QStringList{"Locked.rdf", "Other.rdf"}));
    }
};

QTEST_MAIN(TestWindowFaults)
#include "tst_windowfaults.moc"
