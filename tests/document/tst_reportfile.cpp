#include "support_bytes.h"
#include "support_surface.h"

#include "document/RdfFile.h"
#include "document/clsRptControl.h"
#include "entry/Prompts.h"

#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString makePicture(const QString& path, QColor color)
{
    QImage img(40, 30, QImage::Format_RGB32);
    img.fill(color);
    img.save(path, "PNG");
    return path;
}

// A report with something of every kind, built through the document's own interface.
void populate(Doc& d, const QString& pictureA, const QString& pictureB)
{
    d.surface.detailBar = 1440 + 220;
    d.surface.footerBar = 9000;
    TestControl* title = d.add(ObjType::Label, "Unbound", 720, 200, 4000, 400);
    title->Text = QString::fromUtf8("Open House — Café");
    title->FontBold = true;
    title->Fontsize = 18;
    title->ForeColor = 0x0000FF;
    title->Backstyle = 1;
    TestControl* f = d.add(ObjType::Field, "ListPrice", 720, 2000, 2000, 300);
    d.doc.ItemRef(2).DataField = "ListPrice";
    d.doc.ItemRef(2).DicId = 12;
    f->DataFormat = "Currency";
    f->FormatClass = 1;
    f->Alignment = 1;
    f->UseShortText = true;
    d.add(ObjType::Box, "Unbound", 600, 1900, 6000, 3000)->BorderWidth = 2.5f;
    TestControl* line = d.add(ObjType::Line, "Unbound", 600, 5000, 6000, 45);
    line->BorderStyle = 2;
    TestControl* img1 = d.add(ObjType::Image, "Unbound", 700, 2500, 1440, 1080);
    img1->Embeded = true;
    img1->FileName = pictureA;
    TestControl* img2 = d.add(ObjType::Image, "Unbound", 2500, 2500, 1440, 1080);
    img2->Embeded = true;
    img2->FileName = pictureA; // the same picture again: stored once
    TestControl* img3 = d.add(ObjType::Image, "Unbound", 4500, 2500, 1440, 1080);
    img3->Embeded = true;
    img3->FileName = pictureB;
    TestControl* photo = d.add(ObjType::Image, "Unbound", 4500, 3700, 1440, 1080);
    photo->DataBound = true;
    photo->PhotoSeq = 2;
    d.add(ObjType::DateTime, "Unbound", 720, 9300, 2000, 300);
    d.add(ObjType::Label, "Unbound", 4000, 9300, 2000, 300)->Text = "Page footer";
}

} // namespace

class TestReportFile : public QObject {
    Q_OBJECT
private slots:
    void saveLoadSaveGivesSameBytes()
    {
        QTemporaryDir dir;
        const QString a = makePicture(dir.filePath("a.png"), Qt::red);
        const QString b = makePicture(dir.filePath("b.png"), Qt::blue);
        Doc d1;
        populate(d1, a, b);
        d1.doc.SetSectionSpacing(0.25f);
        const QString f1 = dir.filePath("one.rdf"), f2 = dir.filePath("two.rdf");
        QVERIFY(d1.doc.SaveReport(f1, false));
        QVERIFY(!d1.doc.DirtyFlag);
        QCOMPARE(d1.doc.FileName(), f1);
        d1.doc.DmpReport(dir.filePath("one.txt"));

        const RdfReport stored = RdfLoadFile(f1);
        QCOMPARE(stored.header.sectionSpacingTwips, qint16(360));
        QCOMPARE(int(stored.pictures.size()), 2); // a.png once, b.png once
        QCOMPARE(stored.header.firstDetailItem, qint16(2));
        QStringList pictureIndexes;
        for (const RdfItem& it : stored.items)
            if (it.kind == RdfKind::Image && (it.flags & RdfFlag::Embedded))
                pictureIndexes << it.formatOrFile;
        QCOMPARE(pictureIndexes, QStringList({"0", "0", "1"}));
        QCOMPARE(stored.pictures[0], FileBytes(a));

        Doc d2;
        d2.doc.LoadReport(f1);
        QCOMPARE(d2.doc.RptItemCount(), d1.doc.RptItemCount());
        QCOMPARE(d2.doc.SectionSpacing(), 0.25f);
        QVERIFY(d2.surface.events.contains("SetHeaderFooter 1660"));
        QVERIFY(d2.surface.events.contains("MovePageFooterBar 9000"));
        // Absolute positions come back.
        for (int i = 1; i <= d1.doc.RptItemCount(); ++i) {
            const int j = d2.doc.FindObject(d1.doc.Item(i).Name);
            QVERIFY2(j > 0, qPrintable(d1.doc.Item(i).Name));
            QCOMPARE(d2.ctl(j)->Top, d1.ctl(i)->Top);
            QCOMPARE(d2.ctl(j)->Left, d1.ctl(i)->Left);
        }
        // Embedded pictures were unpacked to temporary files.
        const int img = d2.doc.FindObject("Image2");
        QVERIFY(d2.ctl(img)->Embeded);
        QVERIFY(d2.ctl(img)->FileName.contains("~QR"));
        QCOMPARE(FileBytes(d2.ctl(img)->FileName), FileBytes(a));

        QVERIFY(d2.doc.SaveReport(f2, false));
        QCOMPARE(FileBytes(f2), FileBytes(f1));

        // The dump of what was loaded is the same after another save and load, but for the
        // names of the temporary files the embedded pictures were unpacked to.
        Doc d3;
        d3.doc.LoadReport(f2);
        d2.doc.DmpReport(dir.filePath("two.txt"));
        d3.doc.DmpReport(dir.filePath("three.txt"));
        const QRegularExpression temp(QStringLiteral("~QR[0-9A-F]+\\.tmp"));
        const QString two = QString::fromLatin1(FileBytes(dir.filePath("two.txt"))).replace(temp, "~QR.tmp");
        const QString three = QString::fromLatin1(FileBytes(dir.filePath("three.txt"))).replace(temp, "~QR.tmp");
        QCOMPARE(three, two);
        QVERIFY(two.startsWith("Report MyReport\r\nItems            =  10 \r\nBegin Label Label1\r\n"
                               "   Text          = Open House \u0097 Caf\u00e9\r\n   Left          =  720 \r\n"));
        QVERIFY(two.contains("Begin Image Image4\r\n"));
        QVERIFY(two.contains("   DataBound     = True\r\n   PhotoSeq      =  2 \r\n   Category      =  0 \r\nEnd\r\n"));
    }

    void dumpOfEmptyReportWritesNothing()
    {
        QTemporaryDir dir;
        Doc d;
        d.doc.DmpReport(dir.filePath("x.txt"));
        QVERIFY(!QFile::exists(dir.filePath("x.txt")));
        QVERIFY(d.doc.SaveReport(dir.filePath("x.rdf"), false));
        QVERIFY(!QFile::exists(dir.filePath("x.rdf")));
    }

    void onlyDetailItems()
    {
        QTemporaryDir dir;
        Doc d;
        d.add(ObjType::Label, "Unbound", 0, 300);
        d.add(ObjType::Label, "Unbound", 0, 100);
        d.add(ObjType::Label, "Unbound", 0, 100);
        QVERIFY(d.doc.SaveReport(dir.filePath("d.rdf"), false));
        const RdfReport r = RdfLoadFile(dir.filePath("d.rdf"));
        QCOMPARE(r.header.firstDetailItem, qint16(1));
        QCOMPARE(r.header.lastDetailItem, qint16(3));
        // Stable order by top: equal tops keep their order.
        QCOMPARE(r.items[0].name, QString("Label2"));
        QCOMPARE(r.items[1].name, QString("Label3"));
        QCOMPARE(r.items[2].name, QString("Label1"));
        Doc e;
        e.doc.LoadReport(dir.filePath("d.rdf"));
        QVERIFY(!e.surface.events.join(' ').contains("SetHeaderFooter"));
    }

    void staticSaveFreezesFields()
    {
        QTemporaryDir dir;
        Doc d;
        d.add(ObjType::Field, "City", 0, 0)->Text = "Springfield";
        d.doc.ItemRef(1).DataField = "City";
        QVERIFY(d.doc.SaveReport(dir.filePath("s.rdf"), true));
        const RdfReport r = RdfLoadFile(dir.filePath("s.rdf"));
        QCOMPARE(r.items[0].kind, RdfKind::Label);
        QCOMPARE(r.items[0].text, QString("Springfield"));
        QCOMPARE(r.header.headerFlags & 2, 2);
        QVERIFY(r.header.detailFieldList.isEmpty());
        Doc e;
        e.doc.LoadReport(dir.filePath("s.rdf"));
        QCOMPARE(e.doc.HeaderFlags & 2, 0);
    }

    void subReportWithoutSqlStopsTheSave()
    {
        ScriptedPrompter p;
        QTemporaryDir dir;
        Doc d;
        d.add(ObjType::SubReport, "Unbound", 0, 0);
        QVERIFY(!d.doc.SaveReport(dir.filePath("sub.rdf"), false));
        QVERIFY(!QFile::exists(dir.filePath("sub.rdf")));
        QCOMPARE(p.asked.size(), size_t(1));
        QCOMPARE(p.asked[0].prompt, QString("Warning - No SQL Text in Subreport SubReport1"));
        QCOMPARE(p.asked[0].title, QString("Save Report"));
        d.doc.SetIndex(1);
        d.doc.SetCustomSQL("SELECT * FROM Rooms WHERE ListNum = %ListNum% AND x = %Other%");
        QVERIFY(d.doc.SaveReport(dir.filePath("sub.rdf"), false));
        const RdfReport r = RdfLoadFile(dir.filePath("sub.rdf"));
        QCOMPARE(r.header.detailFieldList, QString("ListNum,Other"));
    }

    void failedSaveKeepsOldFileAndReports()
    {
        ScriptedPrompter p;
        QTemporaryDir dir;
        Doc d;
        d.add(ObjType::Label, "Unbound", 0, 0);
        const QString f = dir.filePath("keep.rdf");
        QVERIFY(d.doc.SaveReport(f, false));
        const QByteArray before = FileBytes(f);
        d.add(ObjType::Label, "Unbound", 0, 500);
        QVERIFY(d.doc.DirtyFlag);
        // An embedded picture that has vanished makes the save fail before the file is touched.
        TestControl* img = d.add(ObjType::Image, "Unbound", 0, 900);
        img->Embeded = true;
        img->FileName = dir.filePath("gone.png");
        QVERIFY(!d.doc.SaveReport(f, false));
        QCOMPARE(FileBytes(f), before);
        QVERIFY(d.doc.DirtyFlag);
        QCOMPARE(p.asked.size(), size_t(1));
        QVERIFY(p.asked[0].prompt.startsWith("Error: 53 - "));
        QCOMPARE(p.asked[0].title, QString("Save Report Error"));
        QCOMPARE(p.asked[0].buttons, Mb::OKOnly | Mb::Critical);
        // A folder that does not exist.
        QVERIFY(!d.doc.SaveReport(dir.filePath("no/such/x.rdf"), false));
        QCOMPARE(p.asked.size(), size_t(2));
        QVERIFY(p.asked[1].prompt.startsWith("Error: "));
    }

    void columnsZeroAndFlags()
    {
        QTemporaryDir dir;
        RdfReport r;
        r.header.numberOfColumns = 0;
        r.header.headerFlags = 2 | 8;
        r.header.sectionSpacingTwips = 100; // 0.069444.. inch
        r.header.autoFillId = "1001";
        r.items.push_back(RdfItem{.kind = RdfKind::Label, .name = "Label1", .dataField = {}, .fontName = {}, .text = {},
                                  .height = 300, .width = 1000, .formatOrFile = {}});
        r.header.lastDetailItem = 1;
        RdfSaveFile(dir.filePath("c.rdf"), r);
        Doc d;
        d.doc.LoadReport(dir.filePath("c.rdf"));
        QCOMPARE(d.doc.NumberOfColumns, 1);
        QCOMPARE(d.doc.HeaderFlags, 8);
        QCOMPARE(d.doc.SectionSpacing(), 0.06944f);
        QVERIFY(d.doc.DataView);
        QCOMPARE(d.surface.checked.value("miDataView"), true);
        QCOMPARE(d.surface.checked.value("miTemplateView"), false);
    }

    void graphicsFolderTravels()
    {
        QTemporaryDir dir;
        Doc d;
        d.doc.SetGraphicsFolder("C:\\TERVANE\\GRAPHICS\\");
        d.add(ObjType::Image, "Unbound", 0, 0)->FileName = "C:\\Tervane\\Graphics\\logos\\Acme.bmp";
        d.add(ObjType::Image, "Unbound", 0, 0)->FileName = "D:\\Elsewhere\\Graphics\\x.bmp";
        QVERIFY(d.doc.SaveReport(dir.filePath("g.rdf"), false));
        const RdfReport r = RdfLoadFile(dir.filePath("g.rdf"));
        QCOMPARE(r.items[0].formatOrFile, QString("~Graphics~logos\\Acme.bmp"));
        QCOMPARE(r.items[1].formatOrFile, QString("D:\\Elsewhere\\Graphics\\x.bmp"));
        Doc e;
        e.doc.LoadReport(dir.filePath("g.rdf"));
        // The control expands the token against the graphics folder of the machine that opens it.
        QCOMPARE(e.ctl(1)->FileName, QString("~Graphics~logos\\Acme.bmp"));
    }

    void unreadableFileLeavesReportAlone()
    {
        QTemporaryDir dir;
        Doc d;
        d.add(ObjType::Label, "Unbound", 0, 0);
        QFile bad(dir.filePath("bad.rdf"));
        QVERIFY(bad.open(QIODevice::WriteOnly));
        bad.write("not a report");
        bad.close();
        QVERIFY_THROWS_EXCEPTION(RdfError, d.doc.LoadReport(dir.filePath("bad.rdf")));
        QCOMPARE(d.doc.RptItemCount(), 1);
        QVERIFY_THROWS_EXCEPTION(RdfError, d.doc.LoadReport(dir.filePath("missing.rdf")));
        QCOMPARE(d.doc.RptItemCount(), 1);
    }
};

QTEST_GUILESS_MAIN(TestReportFile)
#include "tst_reportfile.moc"
