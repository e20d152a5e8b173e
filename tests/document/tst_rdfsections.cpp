#include "document/RdfSections.h"

#include <QRandomGenerator>
#include <QtTest>

namespace {

RdfItem item(const char* name, float top, quint32 flags = 0, qint32 height = 100)
{
    RdfItem it;
    it.kind = (flags & RdfFlag::NewBand) ? RdfKind::Section : RdfKind::Label;
    it.name = QString::fromLatin1(name);
    it.top = top;
    it.flags = flags;
    it.height = height;
    return it;
}

QStringList names(const std::vector<RdfItem>& items)
{
    QStringList out;
    for (const RdfItem& it : items)
        out << it.name;
    return out;
}

QList<float> tops(const std::vector<RdfItem>& items)
{
    QList<float> out;
    for (const RdfItem& it : items)
        out << it.top;
    return out;
}

struct Ordered {
    std::vector<RdfItem> items;
    std::vector<int> z;
    RdfHeader header;
};

Ordered order(std::vector<RdfItem> items, float detailBar, float footerBar, bool hasHeader, bool hasFooter)
{
    Ordered o;
    o.items = std::move(items);
    o.z.assign(o.items.size(), 0);
    RdfOrderSections(o.items, o.z, o.header, detailBar, footerBar, hasHeader, hasFooter);
    return o;
}

} // namespace

class TestRdfSections : public QObject {
    Q_OBJECT
private slots:
    void onlyDetail()
    {
        const Ordered o = order({item("B", 900), item("A", 100), item("C", 5000)}, 3000, 8000, false, true);
        QCOMPARE(names(o.items), QStringList({"A", "B", "C"}));
        QCOMPARE(tops(o.items), QList<float>({100, 900, 5000}));
        QCOMPARE(o.header.firstDetailItem, qint16(1));
        QCOMPARE(o.header.lastDetailItem, qint16(3));
        QCOMPARE(o.header.detailTop, 0);
        QCOMPARE(o.header.pageFooterTop, 0);
        QCOMPARE(o.header.reserved9, 0);
        QCOMPARE(o.header.detailSize, 5100);
    }

    void headerDetailFooter()
    {
        // Detail bar at 1500 and footer bar at 6000: the limits are 1280 and 5780, and the detail
        // is stored from the bar's top on the page, 1280.
        const Ordered o = order({item("F2", 7000), item("D1", 1280), item("H1", 100), item("F1", 5780),
                                 item("H2", 1279.5f), item("D2", 2000, 0, 400)},
                                1500, 6000, true, true);
        QCOMPARE(names(o.items), QStringList({"H1", "H2", "D1", "D2", "F1", "F2"}));
        QCOMPARE(tops(o.items), QList<float>({100, 1279.5f, 0, 720, -220, 1000}));
        QCOMPARE(o.header.firstDetailItem, qint16(3));
        QCOMPARE(o.header.lastDetailItem, qint16(4));
        QCOMPARE(o.header.detailTop, 1280);
        QCOMPARE(o.header.pageFooterTop, 6000);
        QCOMPARE(o.header.detailSize, 1120); // D2's bottom at 2400
        QCOMPARE(o.header.reserved9, 1100); // F2's bottom at 7100

        // Without the footer on, the footer-high items stay in the detail.
        const Ordered noFooter = order({item("H", 100), item("D", 2000), item("L", 7000)}, 1500, 6000, true, false);
        QCOMPARE(noFooter.header.lastDetailItem, qint16(3));
        QCOMPARE(noFooter.header.pageFooterTop, 0);
        QCOMPARE(tops(noFooter.items), QList<float>({100, 720, 5720}));

        // Only header items: the detail is empty and starts after them.
        const Ordered onlyHeader = order({item("H1", 10), item("H2", 20)}, 1500, 6000, true, true);
        QCOMPARE(onlyHeader.header.firstDetailItem, qint16(3));
        QCOMPARE(onlyHeader.header.lastDetailItem, qint16(2));
    }

    void bandMarkers()
    {
        const Ordered o = order({item("A", 2000), item("M1", 2500, RdfFlag::NewBand), item("B", 2600),
                                 item("M2", 4000, RdfFlag::NewBand), item("C", 4100), item("H", 300)},
                                1500, 9000, true, false);
        QCOMPARE(names(o.items), QStringList({"H", "A", "M1", "B", "M2", "C"}));
        // Markers are relative to the detail; the items after a marker to the marker.
        QCOMPARE(tops(o.items), QList<float>({300, 720, 1220, 100, 2720, 100}));
        QCOMPARE(o.items[2].numberB, qint16(1));
        QCOMPARE(o.items[2].sizeMode, qint16(1220));
        QCOMPARE(o.items[4].numberB, qint16(2));
        QCOMPARE(o.items[4].sizeMode, qint16(1500));
        QCOMPARE(o.items[0].numberB, qint16(0)); // header items get no band data

        std::vector<RdfItem> restored = o.items;
        RdfRestorePositions(restored, o.header);
        QCOMPARE(tops(restored), QList<float>({300, 2000, 2500, 2600, 4000, 4100}));
    }

    void equalTopsKeepTheirOrder()
    {
        std::vector<RdfItem> items;
        std::vector<int> z;
        // 5000 items on five tops, listed in descending top order; names record the input order.
        for (int i = 0; i < 5000; ++i) {
            items.push_back(item(QByteArray::number(i).constData(), float(1000 * (4 - i % 5))));
            z.push_back(i);
        }
        RdfHeader h;
        RdfOrderSections(items, z, h, 0, 0, false, false);
        for (size_t i = 1; i < items.size(); ++i) {
            const bool sameTop = items[i].top == items[i - 1].top;
            QVERIFY(items[i].top >= items[i - 1].top);
            if (sameTop)
                QVERIFY(items[i].name.toInt() > items[i - 1].name.toInt());
        }
        for (size_t i = 0; i < items.size(); ++i)
            QCOMPARE(z[i], items[i].name.toInt()); // stacking numbers travel with their items
        QCOMPARE(items.front().name, QStringLiteral("4"));
    }

    void saveThenLoadGivesBackAbsoluteTops_data()
    {
        QTest::addColumn<bool>("hasHeader");
        QTest::addColumn<bool>("hasFooter");
        QTest::addColumn<float>("detailBar");
        QTest::newRow("no sections") << false << false << 0.f;
        QTest::newRow("header") << true << false << 2200.f;
        QTest::newRow("header and footer") << true << true << 2200.f;
        QTest::newRow("fractional bar") << true << true << 1750.5f;
    }
    void saveThenLoadGivesBackAbsoluteTops()
    {
        QFETCH(bool, hasHeader);
        QFETCH(bool, hasFooter);
        QFETCH(float, detailBar);
        QRandomGenerator rng(20240301);
        for (int round = 0; round < 20; ++round) {
            std::vector<RdfItem> items;
            for (int i = 0; i < 300; ++i) {
                const float top = float(rng.bounded(40000)) / 2 - 500; // half twips, some negative
                const quint32 flags = rng.bounded(10) == 0 ? RdfFlag::NewBand : 0;
                items.push_back(item(QByteArray::number(i).constData(), top, flags));
            }
            std::vector<RdfItem> expected = items;
            std::stable_sort(expected.begin(), expected.end(), [](const RdfItem& a, const RdfItem& b) { return a.top < b.top; });

            std::vector<int> z(items.size(), 0);
            RdfHeader h;
            RdfOrderSections(items, z, h, detailBar, 15000, hasHeader, hasFooter);
            QCOMPARE(names(items), names(expected));

            // Through the file, as the document saves and loads.
            RdfReport rep;
            rep.header = h;
            rep.items = items;
            RdfReport loaded = RdfRead(RdfWrite(rep));
            RdfRestorePositions(loaded.items, loaded.header);
            QCOMPARE(tops(loaded.items), tops(expected));
        }
    }

    void restoreIgnoresImpossibleHeaders()
    {
        RdfHeader h;
        h.detailTop = 1000;
        h.pageFooterTop = 5000;
        std::vector<RdfItem> items = {item("A", 10), item("B", 20), item("C", 30)};

        h.firstDetailItem = -5;
        h.lastDetailItem = 300; // beyond the items: all are detail
        std::vector<RdfItem> a = items;
        RdfRestorePositions(a, h);
        QCOMPARE(tops(a), QList<float>({1010, 1020, 1030}));

        h.firstDetailItem = 2;
        h.lastDetailItem = -1; // all are footer
        std::vector<RdfItem> b = items;
        RdfRestorePositions(b, h);
        QCOMPARE(tops(b), QList<float>({5010, 5020, 5030}));

        std::vector<RdfItem> none;
        RdfRestorePositions(none, h);
        QVERIFY(none.empty());
    }

    // Every header the section pass writes passes the check; garbled ones are refused with
    // the field and its offset, before any item is placed.
    void garbledSectionsAreRefused_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::addColumn<int>("detailTop");
        QTest::addColumn<int>("footerTop");
        QTest::addColumn<QString>("message"); // empty: accepted
        // Four items.
        QTest::newRow("only detail") << 1 << 4 << 0 << 0 << "";
        QTest::newRow("header, detail, footer") << 2 << 3 << 1280 << 6000 << "";
        QTest::newRow("all page header") << 5 << 4 << 1280 << 0 << "";
        QTest::newRow("footer one bar below the detail") << 1 << 2 << 0 << 220 << "";
        QTest::newRow("footer above the detail") << 2 << 3 << 2000 << 100
            << "Bad file format: page footer top 100 above the detail section at 2000 at offset 24";
        QTest::newRow("footer inside the detail bar") << 1 << 3 << 1000 << 1100
            << "Bad file format: page footer top 1100 above the detail section at 1000 at offset 24";
        QTest::newRow("first detail item 0") << 0 << 4 << 0 << 0 << "Bad file format: first detail item 0 of 4 items at offset 12";
        QTest::newRow("first detail item past the end") << 6 << 4 << 0 << 0 << "Bad file format: first detail item 6 of 4 items at offset 12";
        QTest::newRow("last before first") << 3 << 1 << 500 << 0
            << "Bad file format: last detail item 1 out of order (first detail item 3, 4 items) at offset 14";
        QTest::newRow("last past the end") << 1 << 9 << 0 << 0
            << "Bad file format: last detail item 9 out of order (first detail item 1, 4 items) at offset 14";
        QTest::newRow("negative detail top") << 2 << 4 << -220 << 0 << "Bad file format: detail top -220 at offset 20";
    }
    void garbledSectionsAreRefused()
    {
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(int, detailTop);
        QFETCH(int, footerTop);
        QFETCH(QString, message);
        RdfReport r;
        r.items = {item("A", 10), item("B", 20), item("C", 30), item("D", 40)};
        r.header.firstDetailItem = qint16(first);
        r.header.lastDetailItem = qint16(last);
        r.header.detailTop = detailTop;
        r.header.pageFooterTop = footerTop;
        QString got;
        try {
            RdfCheckSections(r);
        } catch (const RdfError& e) {
            QCOMPARE(e.Number(), int(HostErr::BadFileFormat));
            got = e.Description();
        }
        QCOMPARE(got, message);
    }

    void whatTheSectionPassWritesIsAccepted()
    {
        for (const auto& [hasHeader, hasFooter] : {std::pair{false, false}, {true, false}, {true, true}}) {
            Ordered o = order({item("H", 100), item("D", 1500), item("F", 7000), item("G", 7200)}, 1480, 6400, hasHeader, hasFooter);
            RdfReport r;
            r.items = o.items;
            r.header = o.header;
            RdfCheckSections(r); // throws on failure
        }
        RdfReport empty;
        empty.header.lastDetailItem = 0;
        RdfCheckSections(empty);
    }

    void rejectsWhatTheFileCannotHold()
    {
        std::vector<RdfItem> items(2);
        std::vector<int> z(1);
        RdfHeader h;
        QVERIFY_THROWS_EXCEPTION(std::invalid_argument, RdfOrderSections(items, z, h, 0, 0, false, false));
        std::vector<RdfItem> many(32768);
        std::vector<int> manyZ(32768);
        QVERIFY_THROWS_EXCEPTION(RdfError, RdfOrderSections(many, manyZ, h, 0, 0, false, false));
    }
};

QTEST_GUILESS_MAIN(TestRdfSections)
#include "tst_rdfsections.moc"
