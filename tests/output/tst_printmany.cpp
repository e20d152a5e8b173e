// Print Many's printing: the chosen records streamed to a printer (here its PDF file), with
// what was not found said afterwards.
#include "support_report.h"

#include "entry/Prompts.h"
#include "output/RenderKeys.h"
#include "output/ReportRunMany.h"

#include <QPrinter>
#include <QtTest>

class TestPrintMany : public QObject {
    Q_OBJECT
    QTemporaryDir m_tmp;
    QString m_report;
    QStringList m_keys;

private slots:
    void initTestCase()
    {
        m_report = m_tmp.filePath("sheet.rdf");
        ReportFixture f;
        f.buildListingReport(m_report, 0);
        m_keys = f.liveKeys(m_report, 3);
        QCOMPARE(m_keys.size(), 3);
    }

    void theChosenRecordsPrintPageByPage()
    {
        ReportFixture f;
        ScriptedPrompter prompts;
        int asked = 0;
        SetRecordChooser([&](QWidget*, int kind) -> std::optional<QStringList> {
            ++asked;
            if (kind != 1)
                return std::nullopt;
            return QStringList{m_keys[0], "999999", m_keys[2]};
        });
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        const QString pdf = m_tmp.filePath("many.pdf");
        printer.setOutputFileName(pdf);
        ReportRunRequest r;
        r.file = m_report;
        r.many = true;
        QVERIFY(PrintReportMany(nullptr, r, &printer));
        QCOMPARE(asked, 1);
        QCOMPARE(prompts.asked.size(), size_t(1));
        QCOMPARE(prompts.asked[0].prompt, QString("999999 Not Found"));
        if (HavePdfToText()) {
            const QStringList pages = PdfPages(pdf);
            QCOMPARE(pages.size(), 2);
            QVERIFY(pages[0].contains(m_keys[0]) && pages[1].contains(m_keys[2]));
        }

        // Nothing chosen, nothing printed.
        r.databaseKind = 2;
        QVERIFY(!PrintReportMany(nullptr, r, &printer));
        SetRecordChooser(nullptr);
    }

    // "All my listings" is the user's own, with the status filter of data view.
    void allMyListings()
    {
        ReportFixture f;
        std::unique_ptr<FieldDictionary> dic = gHost->NewFieldDictionary(1);
        const QStringList mine = RenderKeys::Select(*dic, "ListAgentID = '~UserId~'", QString());
        QVERIFY(!mine.isEmpty());
        auto rs = gHost->Database().OpenRecordset(1, "SELECT ListNum FROM Listings WHERE ListAgentID = '" + gHost->AgentId() +
                                                         "' AND CLng(LstStatus) NOT IN (" + gHost->StatusList() + ") ORDER BY ListNum;", 3, 1, 1);
        QStringList expected;
        for (; !rs->Eof(); rs->MoveNext())
            expected << rs->Fields(0).toString();
        QCOMPARE(mine, expected);
    }
};

QTEST_MAIN(TestPrintMany)
#include "tst_printmany.moc"
