#include "support_report.h"

#include "entry/Prompts.h"
#include "output/ReportData.h"
#include "render/Format.h"
#include "output/ReportEngine.h"

#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QApplication>
#include <QTimer>
#include <QtTest>

namespace {
int DarkPixels(const QImage& shot)
{
    int dark = 0;
    for (int y = 0; y < shot.height(); ++y)
        for (int x = 0; x < shot.width(); ++x)
            dark += qGray(shot.pixel(x, y)) < 100;
    return dark;
}
} // namespace

class TestReportEngine : public QObject {
    Q_OBJECT
    QTemporaryDir m_tmp;
    QString m_report;
    QStringList m_keys;

    QString path(const QString& name) const { return m_tmp.filePath(name); }

    // Prints report for keys (records flowing on shared pages) to a PDF; its pages' text.
    QStringList printedPages(const QString& report, const QStringList& keys)
    {
        ReportEngine engine;
        ReportOptions o;
        o.newPagePerRecord = false;
        engine.SetOptions(o);
        engine.Load(report);
        const QString pdf = report + ".pdf";
        if (!engine.Run(keys) || !engine.WritePdf(pdf))
            return {};
        return PdfPages(pdf);
    }
    // A report on the fixture's page: header bar at 940, footer bar at 3220, ListNum in the detail.
    static void startReport(ReportFixture& f)
    {
        f.page.SetHeaderFooter(940);
        f.page.MovePageFooterBar(3220);
        f.add(ObjType::Field, "ListNum", 1, 1000, 0);
    }

private slots:
    void initTestCase()
    {
        m_report = path("sheet.rdf");
        ReportFixture f;
        f.buildListingReport(m_report, 32); // page numbers on
        m_keys = f.liveKeys(m_report, 3);
        QCOMPARE(m_keys.size(), 3);
    }

    void printsTheDataViewTextsOfEachRecord()
    {
        if (!HavePdfToText())
            QSKIP("pdftotext is not installed");
        ReportFixture f;
        const QStringList keys = m_keys.mid(0, 2);
        ReportEngine engine;
        engine.Load(m_report);
        QVERIFY(engine.Run(keys));
        QCOMPARE(engine.PageCount(), 2); // new page per record
        QVERIFY(engine.WritePdf(path("two.pdf")));
        const QStringList pages = PdfPages(path("two.pdf"));
        QCOMPARE(pages.size(), 2);
        for (int i = 0; i < 2; ++i) {
            const QString& text = pages[i];
            QVERIFY2(text.contains("Listing Sheet") && text.contains("Call the office"), qPrintable(text));
            QVERIFY(text.contains(QString("Page %1").arg(i + 1)));
            const QStringList shown = f.dataViewTexts(m_report, keys[i]);
            QCOMPARE(shown.size(), 5);
            QVERIFY(shown[3].startsWith('$')); // the price went through its currency format
            for (const QString& s : shown)
                QVERIFY2(text.contains(s), qPrintable(s + " missing from page:\n" + text));
            QVERIFY(!text.contains(keys[1 - i]));
        }
    }

    void withoutNewPageRecordsShareAPage()
    {
        if (!HavePdfToText())
            QSKIP("pdftotext is not installed");
        ReportFixture f;
        const QStringList pages = printedPages(m_report, m_keys);
        QCOMPARE(pages.size(), 1);
        for (const QString& k : m_keys)
            QVERIFY(pages[0].contains(k));
        QCOMPARE(pages[0].count("Listing Sheet"), 1); // one page header, however many records
    }

    void subReportsPrintTheirRowsAndTheirErrors()
    {
        if (!HavePdfToText())
            QSKIP("pdftotext is not installed");
        ReportFixture f;
        startReport(f);
        clsRptControl::SetProp(f.add(ObjType::SubReport, "", 0, 1500, 0), "Width", 7000.f);
        f.doc.SetCustomSQL("SELECT MemFirstName + ' ' + MemLastName AS Agent, MemPhone FROM Members WHERE MemberId = '%ListAgentID%'");
        clsRptControl::SetProp(f.add(ObjType::SubReport, "", 0, 2200, 0), "Width", 7000.f);
        f.doc.SetCustomSQL("SELECT Nonsense FROM Nowhere WHERE ListNum = %ListNum%");
        f.add(ObjType::Label, "", 0, 2800, 0, "After the rows");
        QVERIFY(f.doc.SaveReport(path("sub.rdf"), false));

        const QString key = m_keys[0];
        auto rs = gHost->Database().OpenRecordset(
            1, "SELECT MemFirstName, MemLastName, MemPhone FROM Members, Listings WHERE MemberId = ListAgentID AND ListNum = " + key + ";", 3, 1, 1);
        QCOMPARE(rs->RecordCount(), 1);
        const QString agent = rs->Fields(0).toString() + ' ' + rs->Fields(1).toString();

        const QString text = printedPages(path("sub.rdf"), {key}).join('\f');
        for (const QString& s : {key, agent, rs->Fields(2).toString(), QString("Error: "), QString("After the rows")})
            QVERIFY2(text.contains(s), qPrintable(s + " missing from:\n" + text));

        // A value with a quote stays inside the statement's quotes.
        QCOMPARE(SubReportStatement("SELECT A FROM T WHERE N = '%OwnerName%' AND L = %ListNum%",
                                    [](const QString& n) { return n == "OwnerName" ? QString("O'Neil") : QString("240004"); }),
                 QString("SELECT A FROM T WHERE N = 'O''Neil' AND L = 240004"));
        QCOMPARE(SubReportParameters("%A% and %B% and 50%"), (QStringList{"A", "B"}));
    }

    void functionFieldsShowTotalsOfTheRecords()
    {
        if (!HavePdfToText())
            QSKIP("pdftotext is not installed");
        ReportFixture f;
        startReport(f);
        const int functions[] = {1, 2, 3, 4, 5}; // Sum, Average, Minimum, Maximum, Count
        for (int k = 0; k < 5; ++k)
            clsRptControl::SetProp(f.add(ObjType::Field, "ListPrice", 2, 3300 + 300 * k, 0), "FunctionType", functions[k]);
        QVERIFY(f.doc.SaveReport(path("totals.rdf"), false));

        std::vector<double> prices;
        for (const QString& key : m_keys) {
            auto rs = gHost->Database().OpenRecordset(1, "SELECT ListPrice FROM Listings WHERE ListNum = " + key + ";", 3, 1, 1);
            prices.push_back(rs->Fields(0).toDouble());
        }
        const double sum = prices[0] + prices[1] + prices[2];
        const auto money = [](double v) { return Format(QVariant(v), "Currency"); };

        const QString text = printedPages(path("totals.rdf"), m_keys).join('\f');
        const QStringList expected{money(sum), money(sum / 3), money(*std::min_element(prices.begin(), prices.end())),
                                   money(*std::max_element(prices.begin(), prices.end()))};
        for (const QString& s : expected)
            QVERIFY2(text.contains(s), qPrintable(s + " missing from:\n" + text));
        QVERIFY2(QRegularExpression("(^|\\s)3(\\s|$)").match(text).hasMatch(), qPrintable(text)); // the count
    }

    void missingAndUnsafeKeys()
    {
        ReportFixture f;
        ReportEngine engine;
        engine.Load(m_report);
        QVERIFY(engine.Run({"999999", m_keys[0]}));
        QCOMPARE(engine.MissingKeys(), QStringList{"999999"});
        QCOMPARE(engine.PrintedKeys(), QStringList{m_keys[0]});
        QCOMPARE(engine.PageCount(), 1);
        QVERIFY_THROWS_EXCEPTION(HostError, engine.Run({"1 OR 1=1"}));

        ScriptedPrompter prompts;
        QVERIFY(!RunReport(nullptr, m_report, "999999", false));
        QCOMPARE(prompts.asked.size(), size_t(1));
        QCOMPARE(prompts.asked[0].prompt, QString("999999 Not Found"));
    }

    void damagedFilesFailWithTheCodecMessage_data()
    {
        QTest::addColumn<int>("keep"); // bytes kept of the good file; -1: garbage
        QTest::newRow("empty") << 0;
        QTest::newRow("half a header") << 20;
        QTest::newRow("cut in the items") << 200;
        QTest::newRow("garbage") << -1;
    }
    void damagedFilesFailWithTheCodecMessage()
    {
        QFETCH(int, keep);
        QFile good(m_report);
        QVERIFY(good.open(QIODevice::ReadOnly));
        QByteArray bytes = keep < 0 ? QByteArray(300, '\xff') : good.readAll().left(keep);
        const QString bad = path("bad.rdf");
        QFile out(bad);
        QVERIFY(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(bytes);
        out.close();

        QString codecMessage;
        try {
            RdfLoadFile(bad);
        } catch (const RdfError& e) {
            codecMessage = e.Description();
        }
        QVERIFY(codecMessage.startsWith("Bad file format"));
        ReportEngine engine;
        try {
            engine.Load(bad);
            QFAIL("a damaged file loaded");
        } catch (const RdfError& e) {
            QCOMPARE(e.Description(), codecMessage);
        }
        ScriptedPrompter prompts;
        QVERIFY(!RunReport(nullptr, bad, "240001", true));
        QCOMPARE(prompts.asked.size(), size_t(1));
        QCOMPARE(prompts.asked[0].title, QString("Report Designer File error"));
        QCOMPARE(prompts.asked[0].prompt, "Error: 321 - " + codecMessage);
    }

    void progressCanCancel()
    {
        ReportFixture f;
        ReportEngine engine;
        ReportOptions o;
        QList<int> seen;
        o.progress = [&seen](int done, int) {
            seen << done;
            return done < 1;
        };
        engine.SetOptions(o);
        engine.Load(m_report);
        QVERIFY(!engine.Run(m_keys));
        QCOMPARE(seen, (QList<int>{0, 1}));

        o.progress = {};
        engine.SetOptions(o);
        QVERIFY(engine.Run(m_keys));
        o.progress = [](int done, int) { return done < 2; }; // stop before the third page
        engine.SetOptions(o);
        QVERIFY(!engine.WritePdf(path("cancelled.pdf")));
        QVERIFY(!QFile::exists(path("cancelled.pdf")));
    }

    void thePrintPathPreviewShowsTheRecord()
    {
        ReportFixture f;
        int dark = -1;
        // The preview is modal: look at it from a timer once it is up, then close it.
        QTimer poll;
        poll.setInterval(20);
        connect(&poll, &QTimer::timeout, [&] {
            auto* dlg = qobject_cast<QPrintPreviewDialog*>(QApplication::activeModalWidget());
            if (!dlg)
                return;
            poll.stop();
            auto* widget = dlg->findChild<QPrintPreviewWidget*>();
            dlg->resize(900, 1100);
            widget->setZoomMode(QPrintPreviewWidget::FitInView);
            QTest::qWait(100);
            if (widget->pageCount() == 1)
                dark = DarkPixels(widget->grab().toImage());
            dlg->reject();
        });
        poll.start();
        QVERIFY(RunReport(nullptr, m_report, m_keys[0], true));
        QVERIFY2(dark > 1500, qPrintable(QString::number(dark))); // text, not just the page's shadow
    }

    void previewShowsEveryPage()
    {
        ReportFixture f;
        ReportEngine engine;
        engine.Load(m_report);
        QVERIFY(engine.Run(m_keys));
        QPrinter printer(QPrinter::HighResolution);
        printer.setFullPage(true);
        std::unique_ptr<QPrintPreviewDialog> dlg = NewReportPreview(engine, printer, nullptr);
        dlg->show();
        auto* widget = dlg->findChild<QPrintPreviewWidget*>();
        QVERIFY(widget);
        QTRY_COMPARE(widget->pageCount(), 3);
        // The pages carry ink: count the dark pixels of the first page as shown.
        dlg->resize(900, 1100);
        widget->setZoomMode(QPrintPreviewWidget::FitInView);
        widget->setCurrentPage(1);
        QTest::qWait(50);
        const int dark = DarkPixels(widget->grab().toImage());
        QVERIFY2(dark > 1500, qPrintable(QString::number(dark)));
        dlg->close();
    }
};

QTEST_MAIN(TestReportEngine)
#include "tst_reportengine.moc"
