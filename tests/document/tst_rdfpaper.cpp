// Paper size and orientation kept with a report, in header bytes that older readers skip:
// a report without them keeps its bytes, one with them changes only those 16 bytes.
#include "support_bytes.h"
#include "support_surface.h"

#include "document/RdfPaper.h"
#include "document/clsRptControl.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {
constexpr int kPaperOffset = 52; // the header's reserved 16 bytes
}

class TestRdfPaper : public QObject {
    Q_OBJECT
private slots:
    void namesAUserTypes_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::newRow("letter") << "Letter" << int(RdfPaper::Letter) << 0 << 0;
        QTest::newRow("case and blanks") << " a4 " << int(RdfPaper::A4) << 0 << 0;
        QTest::newRow("tabloid") << "TABLOID" << int(RdfPaper::Tabloid) << 0 << 0;
        QTest::newRow("inches") << "8.5x14in" << int(RdfPaper::Custom) << 12240 << 20160;
        QTest::newRow("millimetres") << "210 x 297 mm" << int(RdfPaper::Custom) << 11906 << 16838;
        QTest::newRow("too small") << "0.2x5in" << 0 << 0 << 0;
        QTest::newRow("too large") << "300x10in" << 0 << 0 << 0;
        QTest::newRow("no unit") << "8x10" << 0 << 0 << 0;
        QTest::newRow("unknown") << "B5" << 0 << 0 << 0;
        QTest::newRow("empty") << "" << 0 << 0 << 0;
    }
    void namesAUserTypes()
    {
        QFETCH(QString, name);
        QFETCH(int, kind);
        QFETCH(int, width);
        QFETCH(int, height);
        const std::optional<RdfPaper> p = RdfPaper::FromName(name);
        QCOMPARE(p.has_value(), kind != 0);
        if (!p)
            return;
        QCOMPARE(p->kind, kind);
        QCOMPARE(p->widthTwips, width);
        QCOMPARE(p->heightTwips, height);
    }

    void pageSizes()
    {
        QCOMPARE(RdfPaper{RdfPaper::Legal}.PageSize().id(), QPageSize::Legal);
        QCOMPARE(RdfPaper{RdfPaper::A5}.PageSize().id(), QPageSize::A5);
        const QSizeF custom = RdfPaper::FromName("5x7in")->PageSize().size(QPageSize::Point);
        QCOMPARE(custom, QSizeF(360, 504));
    }

    // The block's exact bytes, and what a reader makes of damaged ones.
    void theHeaderBlock()
    {
        RdfHeader h;
        RdfWritePaper(h, RdfPaper{RdfPaper::Custom, true, 12240, 20160});
        const QByteArray expected = Bytes().raw("PS").u8(1).u8(6).u8(1).zeros(3).i32(12240).i32(20160).bytes();
        QCOMPARE(QByteArray(reinterpret_cast<const char*>(h.reserved20.data()), 16), expected);
        QCOMPARE(RdfReadPaper(h), (RdfPaper{RdfPaper::Custom, true, 12240, 20160}));

        RdfHeader damaged = h;
        damaged.reserved20[3] = 9; // no such paper
        QVERIFY(!RdfReadPaper(damaged));
        damaged = h;
        damaged.reserved20[4] = 2; // no such orientation
        QVERIFY(!RdfReadPaper(damaged));
        damaged = h;
        damaged.reserved20[12] = 0xFF; // an absurd height
        damaged.reserved20[15] = 0x7F;
        QVERIFY(!RdfReadPaper(damaged));
        damaged = h;
        damaged.reserved20[0] = 'X';
        QVERIFY(!RdfReadPaper(damaged));

        RdfWritePaper(h, std::nullopt);
        QCOMPARE(h.reserved20, (std::array<quint8, 16>{}));
    }

    void aReportKeepsItsPaperAndOnlyThoseBytesChange()
    {
        QTemporaryDir dir;
        Doc d;
        d.surface.detailBar = 1000;
        d.surface.footerBar = 5000;
        d.add(ObjType::Label, "Unbound", 720, 200)->Text = "Title";
        d.add(ObjType::Box, "Unbound", 720, 1200, 3000, 1000);
        d.add(ObjType::Label, "Unbound", 720, 5200)->Text = "Footer";
        const QString plain = dir.filePath("plain.rdf"), a4 = dir.filePath("a4.rdf"), again = dir.filePath("again.rdf");
        QVERIFY(d.doc.SaveReport(plain, false));
        QCOMPARE(FileBytes(plain).mid(kPaperOffset, 16), QByteArray(16, '\0'));

        d.doc.Paper = RdfPaper{RdfPaper::A4, true};
        QVERIFY(d.doc.SaveReport(a4, false));
        const QByteArray before = FileBytes(plain), after = FileBytes(a4);
        QCOMPARE(after.size(), before.size());
        QCOMPARE(after.left(kPaperOffset), before.left(kPaperOffset));
        QCOMPARE(after.mid(kPaperOffset + 16), before.mid(kPaperOffset + 16));
        QCOMPARE(RdfReadPaper(RdfLoadFile(a4).header), (RdfPaper{RdfPaper::A4, true}));

        // Loading brings it back; a file without it loads without it and saves as it was.
        Doc e;
        e.doc.LoadReport(a4);
        QCOMPARE(e.doc.Paper, (std::optional<RdfPaper>(RdfPaper{RdfPaper::A4, true})));
        Doc g;
        g.doc.LoadReport(plain);
        QVERIFY(!g.doc.Paper);
        QVERIFY(g.doc.SaveReport(again, false));
        QCOMPARE(FileBytes(again), before);
    }
};

QTEST_MAIN(TestRdfPaper)
#include "tst_rdfpaper.moc"
