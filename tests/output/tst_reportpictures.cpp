#include "support_report.h"

#include "output/ReportEngine.h"
#include "render/Picture.h"

#include <QCryptographicHash>
#include <QtTest>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

class TestReportPictures : public QObject {
    Q_OBJECT

private slots:
    void listingPhotosPassThroughOncePerFile()
    {
        QTemporaryDir tmp;
        const QString report = tmp.filePath("photos.rdf");
        ReportFixture f;
        f.page.SetHeaderFooter(940);
        f.page.MovePageFooterBar(3220);
        f.add(ObjType::Field, "ListNum", 1, 1000, 0);
        QObject* photo = f.add(ObjType::Image, "Unbound", 0, 1400, 0);
        clsRptControl::SetProp(photo, "DataBound", true);
        clsRptControl::SetProp(photo, "PhotoSeq", 1);
        clsRptControl::SetProp(photo, "Height", 1500.f);
        QVERIFY(f.doc.SaveReport(report, false));
        // Listings with a first photo (some have none).
        QStringList keys;
        for (const QString& key : f.liveKeys(report, 12))
            if (keys.size() < 3 && QFileInfo::exists(DemoFolder() + QStringLiteral("/Photos/%1_1.jpg").arg(key)))
                keys << key;
        QCOMPARE(keys.size(), 3);

        PictureStore::Global().Clear();
        ReportEngine engine;
        engine.Load(report);
        QVERIFY(engine.Run(keys + keys)); // each listing printed twice
        QCOMPARE(engine.PageCount(), 6);
        const QString pdf = tmp.filePath("photos.pdf");
        QVERIFY(engine.WritePdf(pdf));
        QFile out(pdf);
        QVERIFY(out.open(QIODevice::ReadOnly));
        const QByteArray bytes = out.readAll();

        QSet<QByteArray> distinct;
        for (const QString& key : keys) {
            QFile jpg(DemoFolder() + QStringLiteral("/Photos/%1_1.jpg").arg(key));
            QVERIFY2(jpg.open(QIODevice::ReadOnly), qPrintable(jpg.fileName()));
            const QByteArray original = jpg.readAll();
            QCOMPARE(bytes.count(original), 1); // the file's own bytes, once for both pages
            distinct.insert(QCryptographicHash::hash(original, QCryptographicHash::Sha1));
        }
        QCOMPARE(bytes.count("/DCTDecode"), distinct.size());
    }

    void aPipeIsRefusedAsOutputAndLeftInPlace()
    {
        QTemporaryDir tmp;
        const QString report = tmp.filePath("label.rdf");
        ReportFixture f;
        f.add(ObjType::Label, "", 0, 100, 0, "Springfield");
        QVERIFY(f.doc.SaveReport(report, false));
        const QString fifo = tmp.filePath("out.pdf");
        QCOMPARE(::mkfifo(fifo.toLocal8Bit().constData(), 0600), 0);
        ::signal(SIGPIPE, SIG_IGN);
        int reader = ::open(fifo.toLocal8Bit().constData(), O_RDONLY | O_NONBLOCK);
        QVERIFY(reader >= 0);
        ReportEngine engine;
        ReportOptions o;
        o.templateOnly = true;
        bool writing = false;
        // The reader goes away once the pages are being painted: the writes fail.
        o.progress = [&](int, int) {
            if (writing && reader >= 0) {
                ::close(reader);
                reader = -1;
            }
            return true;
        };
        engine.SetOptions(o);
        engine.Load(report);
        QVERIFY(engine.Run({QStringLiteral("1")}));
        writing = true;
        QString error;
        try {
            engine.WritePdf(fifo);
        } catch (const HostError& e) {
            error = e.Text();
        }
        QCOMPARE(error, QStringLiteral("Error: 75 - Path/File access error: ") + fifo);
        const QFileInfo after(fifo);
        QVERIFY(after.exists() && !after.isFile()); // still the pipe
    }
};

QTEST_MAIN(TestReportPictures)
#include "tst_reportpictures.moc"
