// The files a printed report becomes: written whole or not at all, named by key or page, and
// a full disk reported as such.
#include "support_report.h"

#include "output/ReportOutput.h"

#include <QDirIterator>
#include <QtTest>

namespace {

RdfReport oneLabel()
{
    RdfReport r;
    RdfItem it;
    it.kind = RdfKind::Label;
    it.text = QStringLiteral("Hello");
    it.width = 2000;
    it.height = 300;
    it.fontSize = 10;
    r.items.push_back(it);
    r.header.firstDetailItem = 1;
    r.header.lastDetailItem = 1;
    return r;
}

QStringList entries(const QString& dir)
{
    return QDir(dir).entryList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace

class TestReportOutput : public QObject {
    Q_OBJECT
    QTemporaryDir m_tmp;

    // Prints the label for keys (the layout without data) to out.
    static void print(PageOutput& out, const QStringList& keys)
    {
        ReportEngine engine;
        ReportOptions o;
        o.templateOnly = true;
        engine.SetOptions(o);
        engine.SetReport(oneLabel());
        QVERIFY(engine.Print(keys, out));
    }

private slots:
    void aFullDiskFailsWithError61AndLeavesNothing_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::newRow("pdf") << "pdf";
        QTest::newRow("pdf each") << "each";
        QTest::newRow("png") << "png";
        QTest::newRow("svg") << "svg";
    }
    void aFullDiskFailsWithError61AndLeavesNothing()
    {
        QFETCH(QString, kind);
        const QString dir = m_tmp.filePath("full-" + kind);
        QVERIFY(QDir().mkpath(dir));
        const QString target = dir + "/out.pdf";
        QFile old(target);
        QVERIFY(old.open(QIODevice::WriteOnly) && old.write("previous") == 8);
        old.close();
        OutputHooks hooks;
        hooks.failAfterBytes = 300;
        std::unique_ptr<PageOutput> out;
        if (kind == "pdf")
            out = std::make_unique<PdfFileOutput>(target, hooks);
        else if (kind == "each")
            out = std::make_unique<PdfEachOutput>(dir, hooks);
        else
            out = std::make_unique<PageImageOutput>(dir, kind == "png" ? PageImageOutput::Png : PageImageOutput::Svg, 40, hooks);
        try {
            print(*out, {"'A'", "'B'"});
            QFAIL("no error");
        } catch (const HostError& e) {
            QCOMPARE(e.Number(), HostErr::DiskFull);
            QVERIFY2(e.Description().startsWith("Disk full: " + QDir::toNativeSeparators(dir + "/")), qPrintable(e.Description()));
        }
        out.reset();
        // The previous file is untouched and no temporary is left behind.
        QCOMPARE(entries(dir), QStringList{"out.pdf"});
        QFile again(target);
        QVERIFY(again.open(QIODevice::ReadOnly));
        QCOMPARE(again.readAll(), QByteArray("previous"));
    }

    void aMissingFolderIsPathNotFound()
    {
        PdfFileOutput pdf(m_tmp.filePath("nowhere/out.pdf"));
        PdfEachOutput each(m_tmp.filePath("nowhere"));
        PageImageOutput png(m_tmp.filePath("nowhere"), PageImageOutput::Png, 40);
        for (PageOutput* out : std::initializer_list<PageOutput*>{&pdf, &each, &png}) {
            try {
                print(*out, {"x"});
                QFAIL("no error");
            } catch (const HostError& e) {
                QCOMPARE(e.Number(), HostErr::PathNotFound);
            }
        }
    }

    void aPdfPerRecordIsNamedByItsKey()
    {
        QCOMPARE(PdfEachOutput::FileNameFor("240001"), QString("240001"));
        QCOMPARE(PdfEachOutput::FileNameFor("'OF01'"), QString("OF01"));
        QCOMPARE(PdfEachOutput::FileNameFor("'../etc/x y'"), QString("record.._etc_x_y")); // never hidden, never a path
        QCOMPARE(PdfEachOutput::FileNameFor("'..'"), QString("record.."));
        QCOMPARE(PdfEachOutput::FileNameFor("''"), QString("record"));

        const QString dir = m_tmp.filePath("each");
        QVERIFY(QDir().mkpath(dir));
        PdfEachOutput out(dir);
        print(out, {"'A'", "'B'", "'A'"});
        QCOMPARE(out.FileCount(), 3);
        QCOMPARE(entries(dir), (QStringList{"A-2.pdf", "A.pdf", "B.pdf"}));
        if (HavePdfToText())
            QCOMPARE(PdfPages(dir + "/B.pdf").size(), 1);
    }

    void pagePicturesAreNumberedAndSized()
    {
        const QString dir = m_tmp.filePath("pages");
        QVERIFY(QDir().mkpath(dir));
        PageImageOutput png(dir, PageImageOutput::Png, 50);
        print(png, {"1", "2"});
        PageImageOutput svg(dir, PageImageOutput::Svg, 0);
        print(svg, {"1"});
        QCOMPARE(entries(dir), (QStringList{"page-000001.png", "page-000001.svg", "page-000002.png"}));
        const QImage page(dir + "/page-000002.png");
        QCOMPARE(page.size(), QSize(425, 550)); // Letter at 50 dpi
        QFile f(dir + "/page-000001.svg");
        QVERIFY(f.open(QIODevice::ReadOnly));
        const QByteArray svgText = f.readAll();
        QVERIFY(svgText.contains("<svg") && svgText.contains("Hello"));
    }
};

QTEST_MAIN(TestReportOutput)
#include "tst_reportoutput.moc"
