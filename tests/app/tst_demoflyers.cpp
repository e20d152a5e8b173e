// The sample flyers of the demo data: written into the folders the flyer manager lists,
// loadable, and printing a listing's photo, price and address.
#include "output/support_report.h"

#include "entry/ReportKinds.h"
#include "dialogs/frmFlyers.h"
#include "output/ReportEngine.h"
#include "output/ReportPrintForm.h"
#include "output/support_printdialog.h"

#include <QListWidget>

#include <QtTest>

class TestDemoFlyers : public QObject {
    Q_OBJECT
private slots:
    void writtenByTheDemoCommandAndPrintable()
    {
        QTemporaryDir dir;
        QProcess demo;
        demo.start(QStringLiteral(PW_APP), {"demo", "--data", dir.path(), "--listings", "12"});
        QVERIFY(demo.waitForFinished(120000));
        QCOMPARE(demo.exitCode(), 0);
        // The folders the manager names ("users\Templates\...") are the demo data's "Users" ones.
        const QStringList written{dir.filePath("Users/Templates/Reports/Flyers/Open House.rdf"),
                                  dir.filePath("Users/Templates/Reports/Flyers/Just Listed.rdf"),
                                  dir.filePath("Users/JCarter/Reports/Flyers/Featured Home.rdf")};
        for (const QString& f : written)
            QVERIFY2(QFileInfo(f).size() > 0, qPrintable(f));
        QVERIFY(!QFileInfo::exists(dir.filePath("users")));

        auto host = EmbeddedHost::Open(dir.path());
        gHost = host.get();
        const QString key = QString::number(DemoIdentity::FirstListNum);
        auto rs = host->Database().OpenRecordset(1, "SELECT City FROM Listings WHERE ListNum = " + key + ";", 3, 1, 1);
        const QString city = rs->Fields(0).toString();
        for (const QString& file : written) {
            // Every item has a name of its own: the designer's object list shows them.
            QSet<QString> names;
            for (const RdfItem& it : RdfLoadFile(file).items) {
                QVERIFY2(!it.name.isEmpty(), qPrintable(file + ": an item without a name, text " + it.text));
                QVERIFY2(!names.contains(it.name.toLower()), qPrintable(file + ": " + it.name + " twice"));
                names.insert(it.name.toLower());
            }
            ReportEngine engine;
            engine.Load(file);
            QVERIFY(engine.Run({key}));
            QCOMPARE(engine.PageCount(), 1);
            const QString pdf = dir.filePath(QFileInfo(file).baseName() + ".pdf");
            QVERIFY(engine.WritePdf(pdf));
            if (HavePdfToText()) {
                const QString text = PdfPages(pdf).value(0);
                QVERIFY2(text.contains("Listing #") && text.contains(key) && text.contains(city), qPrintable(text));
            }
            // The listing's photo and the office logo.
            if (!QStandardPaths::findExecutable("pdfimages").isEmpty()) {
                QProcess p;
                p.start("pdfimages", {"-list", pdf});
                QVERIFY(p.waitForFinished(30000));
                QCOMPARE(QString::fromUtf8(p.readAllStandardOutput()).count(" image "), 2);
            }
        }
        // The manager lists them and prints through the installed print form.
        InstallPrintForm();
        frmFlyers w;
        w.Init(1);
        QCOMPARE(w.List1->count(), 2);
        w.List1->setCurrentRow(1);
        QCOMPARE(w.SelectedFlyer, QString("Open House.rdf"));
        QVERIFY(static_cast<ReportPreviewPane*>(w.Vp)->HasPage());
        PrintDialogDriver dialogs; // no printer here: the printer dialog asks for the file
        dialogs.answers = {{dir.filePath("merged.pdf")}};
        w.PrintFlyer(key);
        QCOMPARE(dialogs.titles.size(), 1);
        if (HavePdfToText())
            QVERIFY(PdfPages(dir.filePath("merged.pdf")).value(0).contains(city));
        SetPrintFormFactory({});
        gHost = nullptr;
    }
};

QTEST_MAIN(TestDemoFlyers)
#include "tst_demoflyers.moc"
