#include "support_surface.h"

#include "document/clsRptControl.h"
#include "entry/Prompts.h"

#include <QFile>
#include <QtTest>

class TestDocument : public QObject {
    Q_OBJECT
private slots:
    void naming()
    {
        Doc d;
        d.doc.AddNew(ObjType::Field, "ListNum", 0);
        d.doc.AddNew(ObjType::DateTime, "Unbound", 0);
        d.doc.AddNew(ObjType::SubReport, "Unbound", 0);
        d.doc.AddNew(ObjType::Label, "Unbound", 0);
        QCOMPARE(d.doc.Item(4).Name, QString("Label4"));
        QCOMPARE(d.doc.Item(2).Name, QString("DateTime1"));
        QCOMPARE(d.doc.Item(3).Name, QString("SubReport2")); // shares the date/time counter
        d.doc.AddNew(ObjType::Box, "Unbound", 0);
        d.doc.AddNew(ObjType::Line, "Unbound", 0);
        d.doc.AddNew(ObjType::Image, "Unbound", 0);
        QCOMPARE(d.doc.Item(5).Name, QString("Rect1"));
        QCOMPARE(d.doc.Item(6).Name, QString("Line1"));
        QCOMPARE(d.doc.Item(7).Name, QString("Image1"));
        d.doc.AddNew(ObjType::Field, "ListNum", 0);
        QCOMPARE(d.doc.Item(8).Name, QString("ListNum8"));
        d.doc.AddNew(ObjType::Label, "Caption", 0);
        QCOMPARE(d.doc.Item(9).Name, QString("Caption"));
        for (int i = 1; i <= d.doc.RptItemCount(); ++i)
            QCOMPARE(d.ctl(i)->Tag, i);
        // Boxes start selected, with a solid edge, behind the others.
        QVERIFY(d.ctl(5)->Selected);
        QCOMPARE(d.ctl(5)->BorderStyle, 6);
        QCOMPARE(d.surface.events.count("SendToBack"), 1);
        QCOMPARE(d.ctl(2)->FormatClass, 2);
        QCOMPARE(d.ctl(2)->DataFormat, QString("General Date"));
    }

    void findObject()
    {
        Doc d;
        QCOMPARE(d.doc.FindObject("Label1"), 0);
        d.doc.AddNew(ObjType::Label, "Unbound", 0);
        d.doc.AddNew(ObjType::Label, "Unbound", 0);
        QCOMPARE(d.doc.FindObject("Label2"), 2);
        QCOMPARE(d.doc.FindObject("label2"), 0);
        d.doc.SetIndex(2);
        d.doc.ChangeObjectName("Price");
        QCOMPARE(d.doc.FindObject("Price"), 2);
    }

    void kindRestrictionsOnWrites()
    {
        Doc d;
        d.add(ObjType::Box, "Unbound", 0, 0);
        d.add(ObjType::Label, "Unbound", 0, 0);
        d.add(ObjType::Line, "Unbound", 0, 0);
        d.select({1, 2, 3});
        d.doc.SetUserControl(d.doc.Item(2).control);
        d.doc.SetFontBold(true);
        QVERIFY(!d.ctl(1)->FontBold);
        QVERIFY(d.ctl(2)->FontBold);
        QVERIFY(!d.ctl(3)->FontBold);
        QCOMPARE(d.surface.checked.value("fnBold"), true);
        d.doc.SetBackColor(0x00FF00);
        QCOMPARE(d.ctl(1)->BackColor, 0x00FF00u);
        QCOMPARE(d.ctl(2)->BackColor, 0x00FF00u);
        QCOMPARE(d.ctl(3)->BackColor, 0xFFFFFFu); // never on lines
        d.doc.SetForeColor(0x0000FF);
        QCOMPARE(d.ctl(1)->ForeColor, 0u);
        QCOMPARE(d.ctl(2)->ForeColor, 0xFFu);
        d.doc.SetBorderColor(0x123456);
        for (int i = 1; i <= 3; ++i)
            QCOMPARE(d.ctl(i)->BorderColor, 0x123456u);
        d.doc.SetAlignment(2);
        QCOMPARE(d.ctl(2)->Alignment, 2);
        QCOMPARE(d.ctl(1)->Alignment, 0);
        QCOMPARE(d.surface.checked.value("fnCenter"), true);
        QCOMPARE(d.surface.checked.value("fnLeft"), false);
        d.doc.ZOrder(5);
        QCOMPARE(d.doc.Item(2).ZOrder, 5);
    }

    void pageDefaultsAndEndOfPage()
    {
        Doc d;
        d.doc.TopMargin = 1;
        d.doc.NumberOfColumns = 3;
        d.doc.NewPage = false;
        d.doc.SetPageDefaults();
        QCOMPARE(d.doc.TopMargin, 1080);
        QCOMPARE(d.doc.BottomMargin, 1080);
        QCOMPARE(d.doc.LeftMargin, 720);
        QCOMPARE(d.doc.RightMargin, 720);
        QCOMPARE(d.doc.NumberOfColumns, 1);
        QVERIFY(d.doc.NewPage);
        float end = -1;
        d.doc.CalcEndOfPage(end);
        QCOMPARE(end, 0.f);
        d.add(ObjType::Label, "Unbound", 0, 500, 100, 250);
        d.add(ObjType::Label, "Unbound", 0, 100, 100, 1000);
        d.doc.CalcEndOfPage(end);
        QCOMPARE(end, 1100.f);
    }

    void deleteRetags()
    {
        Doc d;
        for (int i = 0; i < 3; ++i)
            d.add(ObjType::Label, "Unbound", 0, 0);
        d.doc.Delete(1);
        QCOMPARE(d.doc.RptItemCount(), 2);
        QCOMPARE(d.ctl(1)->Tag, 1);
        QCOMPARE(d.ctl(2)->Tag, 2);
        QCOMPARE(d.doc.Item(1).Name, QString("Label2"));
        QCOMPARE(int(d.surface.controls.size()), 2);
        d.select({1, 2});
        d.doc.DeleteSelected();
        QCOMPARE(d.doc.RptItemCount(), 0);
        QVERIFY(d.surface.selected.isEmpty());
        QCOMPARE(d.surface.enabled.value("miCopy", true), false);
        QCOMPARE(d.surface.enabled.value("miPaste", true), false);
    }

    void selectByArea()
    {
        Doc d;
        d.add(ObjType::Box, "Unbound", 0, 0, 5000, 5000);     // encloses the area: no edge inside
        d.add(ObjType::Label, "Unbound", 1500, 1200, 3000, 2000); // only its top edge crosses
        d.add(ObjType::Label, "Unbound", 1000, 1000, 100, 100);    // on the corner
        d.add(ObjType::Label, "Unbound", 3000, 1200, 100, 100);    // right of the area
        d.surface.selected.clear();
        d.doc.SelectByArea(1000, 1000, 2000, 2000);
        QCOMPARE(d.surface.selected, (QList<QObject*>{d.doc.Item(2).control, d.doc.Item(3).control}));
    }

    void moveControlsBelowBar()
    {
        Doc d;
        d.add(ObjType::Label, "Unbound", 0, 100);
        d.add(ObjType::Label, "Unbound", 0, 1800); // at bar - 220: moves
        d.add(ObjType::Label, "Unbound", 0, 1779); // just above: stays
        d.doc.MoveControls(2000, 2600);
        QCOMPARE(d.ctl(1)->Top, 100.f);
        QCOMPARE(d.ctl(2)->Top, 2400.f);
        QCOMPARE(d.ctl(3)->Top, 1779.f);
    }

    void deleteHeaderFooterAsksOnce()
    {
        ScriptedPrompter p;
        Doc d;
        d.surface.detailBar = 1000;
        d.surface.footerBar = 8000;
        d.add(ObjType::Label, "Unbound", 0, 0);    // header
        d.add(ObjType::Label, "Unbound", 0, 3000); // detail
        d.add(ObjType::Label, "Unbound", 0, 7800); // footer
        d.add(ObjType::Label, "Unbound", 0, 500);  // header
        p.answers.push_back(Mb::Cancel);
        QVERIFY(d.doc.DeleteHeaderFooter());
        QCOMPARE(d.doc.RptItemCount(), 4);
        QCOMPARE(p.asked.size(), size_t(1));
        QCOMPARE(p.asked[0].prompt, QString("Warning - All Header/Footer items are about to be deleted!\nDo you wish to proceed?"));
        QCOMPARE(p.asked[0].buttons, Mb::OKCancel | Mb::Exclamation);
        p.answers.push_back(Mb::OK);
        QVERIFY(!d.doc.DeleteHeaderFooter());
        QCOMPARE(p.asked.size(), size_t(2));
        QCOMPARE(d.doc.RptItemCount(), 1);
        QCOMPARE(d.ctl(1)->Top, 3000.f);
        // Nothing left in header or footer: no question.
        QVERIFY(!d.doc.DeleteHeaderFooter());
        QCOMPARE(p.asked.size(), size_t(2));
    }

    void copyPasteSnapsToGrid_data()
    {
        QTest::addColumn<float>("x");
        QTest::addColumn<float>("y");
        QTest::addColumn<float>("ex");
        QTest::addColumn<float>("ey");
        QTest::newRow("minimum then next multiple") << 10.f << 10.f << 120.f << 120.f;
        QTest::newRow("on the grid moves on") << 180.f << 95.f << 240.f << 120.f;
        QTest::newRow("large") << 1000.f << 1020.f << 1020.f << 1080.f;
    }
    void copyPasteSnapsToGrid()
    {
        QFETCH(float, x);
        QFETCH(float, y);
        QFETCH(float, ex);
        QFETCH(float, ey);
        Doc d;
        TestControl* a = d.add(ObjType::Label, "Unbound", 500, 700);
        a->Text = "Hello";
        a->FontBold = true;
        d.add(ObjType::Box, "Unbound", 800, 1000, 200, 200);
        d.select({1, 2});
        d.doc.EditCopyControls();
        QVERIFY(d.doc.EditControlsPasted);
        QCOMPARE(d.surface.enabled.value("miPaste"), true);
        d.doc.EditPasteControls(QString(), x, y);
        QCOMPARE(x, ex);
        QCOMPARE(y, ey);
        QCOMPARE(d.doc.RptItemCount(), 4);
        QCOMPARE(d.ctl(3)->Left, ex);
        QCOMPARE(d.ctl(3)->Top, ey);
        QCOMPARE(d.ctl(4)->Left, ex + 300);
        QCOMPARE(d.ctl(4)->Top, ey + 300);
        QCOMPARE(d.ctl(3)->Text, QString("Hello"));
        QVERIFY(d.ctl(3)->FontBold);
        QCOMPARE(d.surface.selected, (QList<QObject*>{d.doc.Item(3).control, d.doc.Item(4).control}));
        QVERIFY(d.doc.DirtyFlag);
    }

    void bufferAndTempFilesGoWithTheDocument()
    {
        QString buffer, temp;
        {
            Doc d;
            buffer = d.doc.CopyBufferFile();
            QVERIFY(!buffer.isEmpty());
            QVERIFY(QFileInfo(buffer).fileName().startsWith("~QR"));
            temp = d.doc.AddTempFile();
            QVERIFY(QFile::exists(temp));
            d.add(ObjType::Label, "Unbound", 0, 0);
            d.select({1});
            d.doc.EditCopyControls();
            QVERIFY(QFile(buffer).size() > 0);
        }
        QVERIFY(!QFile::exists(buffer));
        QVERIFY(!QFile::exists(temp));
    }
};

QTEST_GUILESS_MAIN(TestDocument)
#include "tst_document.moc"
