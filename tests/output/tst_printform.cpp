// The print form behind the flyer manager: template-only and keyed output, copies on the
// printer, missing keys, and the preview pane.
#include "support_printdialog.h"
#include "support_report.h"

#include "entry/Prompts.h"
#include "output/ReportPrintForm.h"

#include <QSignalSpy>
#include <QtTest>

class TestPrintForm : public QObject {
    Q_OBJECT
    QTemporaryDir m_tmp;
    QString m_report;
    QString m_key;
    QStringList m_values; // what the data view shows for m_key

    QString path(const QString& name) const { return m_tmp.filePath(name); }

private slots:
    void initTestCase()
    {
        m_report = path("sheet.rdf");
        ReportFixture f;
        f.buildListingReport(m_report, 0);
        m_key = f.liveKeys(m_report, 1).value(0);
        QVERIFY(!m_key.isEmpty());
        m_values = f.dataViewTexts(m_report, m_key);
        QCOMPARE(m_values.size(), 5);
    }

    void templateAndKeyedOutput_data()
    {
        QTest::addColumn<bool>("templateOnly");
        QTest::addColumn<QString>("element");
        QTest::addColumn<int>("copies");
        QTest::newRow("template") << true << QString() << 1;
        QTest::newRow("template ignores a key") << true << QString("0%1") << 1;
        QTest::newRow("listing") << false << QString("0%1") << 1;
        QTest::newRow("listing, two copies") << false << QString("0%1") << 2;
    }
    void templateAndKeyedOutput()
    {
        if (!HavePdfToText())
            QSKIP("pdftotext is not installed");
        QFETCH(bool, templateOnly);
        QFETCH(QString, element);
        QFETCH(int, copies);
        ReportFixture f;
        ScriptedPrompter prompter;
        PrintDialogDriver dialogs;
        ReportPrintForm form;
        const QString pdf = path(QString("out%1.pdf").arg(QTest::currentDataTag()));
        dialogs.answers = {{pdf}};
        form.SetReportFile(m_report);
        form.SetTemplateOnly(templateOnly);
        form.SetCopies(copies);
        QCOMPARE(form.Printer().copyCount(), copies);
        QVERIFY(form.PrintList({element.contains("%1") ? element.arg(m_key) : element}, 1, false));
        QVERIFY(prompter.asked.empty());
        const QStringList pages = PdfPages(pdf);
        QCOMPARE(pages.size(), copies);
        for (const QString& text : pages) {
            QVERIFY2(text.contains("Listing Sheet") && text.contains("Call the office"), qPrintable(text));
            for (const QString& v : m_values)
                if (!v.isEmpty())
                    QVERIFY2(text.contains(v) != templateOnly, qPrintable(v + " in " + text));
        }
    }

    void missingKeyAndDamagedFile()
    {
        ReportFixture f;
        ScriptedPrompter prompter;
        ReportPrintForm form;
        form.Printer().setOutputFileName(path("none.pdf"));
        form.SetReportFile(m_report);
        QVERIFY(!form.PrintList({"0999999"}));
        QFile junk(path("junk.rdf"));
        QVERIFY(junk.open(QIODevice::WriteOnly));
        junk.write("not a report");
        junk.close();
        form.SetReportFile(junk.fileName());
        QVERIFY(!form.PrintList({QString()}));
        QCOMPARE(prompter.asked.size(), size_t(2));
        QCOMPARE(prompter.asked[0].prompt, QString("999999 Not Found"));
        QCOMPARE(prompter.asked[1].title, QString("Report Designer File error"));
        QVERIFY(!QFile::exists(path("none.pdf")));
    }

    void copiesSignal()
    {
        ReportPrintForm form;
        QSignalSpy spy(&form, &PrintForm::Copies);
        form.SetCopies(3);
        form.SetCopies(3);
        form.SetCopies(-4);
        QCOMPARE(form.GetCopies(), 1);
        QCOMPARE(form.Printer().copyCount(), 1);
        QCOMPARE(spy, (QList<QList<QVariant>>{{3}, {1}}));
    }

    void previewPane()
    {
        ReportFixture f;
        ReportPrintForm form;
        QWidget host;
        auto* pane = qobject_cast<ReportPreviewPane*>(form.PreviewPane(&host));
        QVERIFY(pane);
        QCOMPARE(form.PreviewPane(&host), pane);
        pane->resize(600, 600);
        QVERIFY(form.LoadPreview(m_report));
        // Letter paper fits by its height and stands centred.
        const QRectF page = pane->PageRect();
        QCOMPARE(page.height(), 600.0 - 16);
        QCOMPARE(page.width(), (600.0 - 16) * 8.5 / 11);
        QCOMPARE(page.center(), QPointF(300, 300));
        const QImage shot = pane->grab().toImage();
        int ink = 0;
        for (int y = int(page.top()) + 2; y < page.bottom() - 2; ++y)
            for (int x = int(page.left()) + 2; x < page.right() - 2; ++x)
                ink += qGray(shot.pixel(x, y)) < 128;
        QVERIFY(ink > 20); // the labels are drawn on the white page
        QVERIFY(!form.LoadPreview(path("missing.rdf")));
        QVERIFY(!pane->Message().isEmpty());
        QVERIFY(pane->PageRect().isEmpty());
        QVERIFY(!form.LoadPreview(QString()));
        QVERIFY(pane->Message().isEmpty());
    }
};

QTEST_MAIN(TestPrintForm)
#include "tst_printform.moc"
