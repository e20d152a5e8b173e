#include "output/ReportLayout.h"
#include "render/ItemLayout.h"

#include <QtTest>

using namespace ReportLayout;

namespace {

// "page: record.band@x,y ..." per page, one line each.
QString describe(const std::vector<Page>& pages)
{
    QStringList lines;
    for (const Page& p : pages) {
        QStringList bands;
        for (const Placement& b : p.bands)
            bands << QString("%1.%2@%3,%4").arg(b.record).arg(b.band).arg(b.origin.x()).arg(b.origin.y());
        lines << bands.join(' ');
    }
    return lines.join('\n');
}

RdfItem item(quint8 kind, float top, qint32 height, quint32 flags = 0, const QString& text = {})
{
    RdfItem r;
    r.kind = kind;
    r.top = top;
    r.height = height;
    r.width = 1440;
    r.flags = flags;
    r.text = text;
    r.fontName = "Arial";
    r.fontSize = 10;
    r.borderStyle = ItemCode::BorderNone;
    return r;
}

} // namespace

class TestReportLayout : public QObject {
    Q_OBJECT
private slots:
    void paginate_data()
    {
        QTest::addColumn<int>("records");
        QTest::addColumn<QList<double>>("bands"); // heights of each record's bands
        QTest::addColumn<QList<bool>>("breaks");
        QTest::addColumn<int>("columns");
        QTest::addColumn<bool>("leftToRight");
        QTest::addColumn<bool>("newPage");
        QTest::addColumn<double>("spacing");
        QTest::addColumn<QString>("expected");
        // Body: x 0..2000, y 100..1100.
        QTest::newRow("new page per record") << 2 << QList<double>{400} << QList<bool>{false} << 1 << false << true << 50.0
                                             << "0.0@0,100\n1.0@0,100";
        QTest::newRow("flow with spacing") << 3 << QList<double>{400} << QList<bool>{false} << 1 << false << false << 50.0
                                           << "0.0@0,100 1.0@0,550\n2.0@0,100";
        QTest::newRow("two columns down") << 5 << QList<double>{400} << QList<bool>{false} << 2 << false << false << 0.0
                                          << "0.0@0,100 1.0@0,500 2.0@1000,100 3.0@1000,500\n4.0@0,100";
        QTest::newRow("two columns across") << 5 << QList<double>{400} << QList<bool>{false} << 2 << true << false << 0.0
                                            << "0.0@0,100 1.0@1000,100 2.0@0,500 3.0@1000,500\n4.0@0,100";
        QTest::newRow("page break marker") << 2 << QList<double>{200, 300} << QList<bool>{true, false} << 1 << false << false
                                           << 0.0 << "0.0@0,100\n0.1@0,100 1.0@0,400\n1.1@0,100";
        QTest::newRow("band taller than the body") << 2 << QList<double>{1500} << QList<bool>{false} << 1 << false << false
                                                   << 0.0 << "0.0@0,100\n1.0@0,100";
        QTest::newRow("no records") << 0 << QList<double>{100} << QList<bool>{false} << 1 << false << true << 0.0 << "";
    }
    void paginate()
    {
        QFETCH(int, records);
        QFETCH(QList<double>, bands);
        QFETCH(QList<bool>, breaks);
        QFETCH(int, columns);
        QFETCH(bool, leftToRight);
        QFETCH(bool, newPage);
        QFETCH(double, spacing);
        QFETCH(QString, expected);
        Frame f;
        f.body = QRectF(0, 100, 2000, 1000);
        f.columns = columns;
        f.leftToRight = leftToRight;
        f.newPagePerRecord = newPage;
        f.spacing = spacing;
        const std::vector<std::vector<double>> heights(size_t(records), std::vector<double>(bands.begin(), bands.end()));
        QCOMPARE(describe(Paginate(heights, std::vector<bool>(breaks.begin(), breaks.end()), f)), expected);
    }

    void sectionsAndBands()
    {
        RdfReport rep;
        rep.items = {
            item(RdfKind::Label, 100, 200),                  // page header
            item(RdfKind::Field, 0, 300),                    // band 1
            item(RdfKind::NewPage, 500, 100, RdfFlag::NewBand), // closes band 1 at 500
            item(RdfKind::Box, 40, 900),                     // band 2, relative to the marker
            item(RdfKind::Section, 1200, 100, RdfFlag::NewBand), // closes band 2 at 700 below the first
            item(RdfKind::Line, 0, 30),                      // page footer
        };
        rep.header.firstDetailItem = 2;
        rep.header.lastDetailItem = 5;
        rep.header.detailTop = 720;
        const Sections s = SplitSections(rep);
        QCOMPARE(s.header.items, std::vector<int>{0});
        QCOMPARE(s.header.height, 720.0);
        QCOMPARE(s.detail.size(), size_t(2));
        QCOMPARE(s.detail[0].items, std::vector<int>{1});
        QCOMPARE(s.detail[0].height, 500.0);
        QVERIFY(s.detail[0].pageBreakAfter);
        QCOMPARE(s.detail[1].items, std::vector<int>{3});
        QCOMPARE(s.detail[1].height, 940.0); // the box reaches past the marker
        QVERIFY(!s.detail[1].pageBreakAfter);
        QCOMPARE(s.footer.items, std::vector<int>{5});
        QCOMPARE(s.footer.height, 30.0);

        // Section fields out of range are clamped, never trusted.
        rep.header.firstDetailItem = -4;
        rep.header.lastDetailItem = 999;
        const Sections all = SplitSections(rep);
        QVERIFY(all.header.items.empty() && all.footer.items.empty());
        QCOMPARE(all.detail.size(), size_t(3)); // the former header and footer items join the first and a last band
        rep.items[1].top = std::numeric_limits<float>::quiet_NaN();
        QCOMPARE(SplitSections(rep).detail[0].height, 500.0);
    }

    void aSubReportOpensItsBandAndGrowsWithItsRows()
    {
        RdfReport rep;
        rep.items = {
            item(RdfKind::Field, 0, 300),                           // band 1
            item(RdfKind::SubReport, 600, 250, RdfFlag::NewBand),   // closes band 1 at 600, opens band 2
            item(RdfKind::Label, 300, 200),                         // band 2, below the sub-report
        };
        rep.header.firstDetailItem = 1;
        rep.header.lastDetailItem = 3;
        const Sections s = SplitSections(rep);
        QCOMPARE(s.detail.size(), size_t(2));
        QCOMPARE(s.detail[0].height, 600.0);
        QCOMPARE(s.detail[1].items, (std::vector<int>{1, 2}));
        QCOMPARE(s.detail[1].tops, (std::vector<double>{0, 300}));
        QCOMPARE(s.detail[1].height, 500.0);

        // Three rows need more than the designed 250 twips, without any grow flag.
        const double px = 1.2;
        std::vector<ItemLook> looks{LookOf(rep.items[1], {}, "Jane Carter   555-0101\nSam Ortiz   555-0102\nLee Park   555-0103", {}, px),
                                    LookOf(rep.items[2], {}, "x", {}, px)};
        looks[0].rect.moveTop(0);
        const double height = FitBand(s.detail[1], rep, looks, px);
        const double delta = looks[0].rect.height() - 250;
        QVERIFY2(delta > 300, qPrintable(QString::number(delta)));
        QCOMPARE(looks[1].rect.top(), 300 + delta); // the label stays below the rows
        QCOMPARE(height, 500 + delta);
    }

    void growAndShrink_data()
    {
        QTest::addColumn<quint32>("flags");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("taller");
        QTest::addColumn<bool>("shorter");
        const QString longText = QString("Spacious colonial on a quiet street. ").repeated(12);
        QTest::newRow("grow") << RdfFlag::AllowGrow << longText << true << false;
        QTest::newRow("grow keeps a short text's height") << RdfFlag::AllowGrow << "Short" << false << false;
        QTest::newRow("shrink empties") << RdfFlag::AllowShrink << "" << false << true;
        QTest::newRow("shrink does not grow") << RdfFlag::AllowShrink << longText << false << false;
        QTest::newRow("fixed") << quint32(0) << longText << false << false;
    }
    void growAndShrink()
    {
        QFETCH(quint32, flags);
        QFETCH(QString, text);
        QFETCH(bool, taller);
        QFETCH(bool, shorter);
        RdfReport rep;
        rep.items = {item(RdfKind::Field, 100, 600, flags), item(RdfKind::Label, 800, 300), item(RdfKind::Label, 100, 300)};
        rep.items[2].left = 2000; // beside the field: never moves
        Band band{{0, 1, 2}, {100, 800, 100}, 1200, false};
        const double px = 1.2;
        std::vector<ItemLook> looks;
        for (int i = 0; i < 3; ++i)
            looks.push_back(LookOf(rep.items[size_t(i)], {}, i == 0 ? text : QString("x"), {}, px));
        const double height = FitBand(band, rep, looks, px);
        const double delta = looks[0].rect.height() - 600;
        QCOMPARE(delta > 0, taller);
        QCOMPARE(delta < 0, shorter);
        QCOMPARE(looks[1].rect.top(), 800 + delta); // the item below follows the bottom edge
        QCOMPARE(looks[2].rect.top(), 100.0);
        QCOMPARE(height, 1200 + delta);
    }
};

QTEST_MAIN(TestReportLayout)
#include "tst_reportlayout.moc"
