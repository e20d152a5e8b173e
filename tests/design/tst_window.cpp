// The design window driven as a user drives it: real widgets, QTest mouse and key events.
#include "support_windowhost.h"

#include "design/clsResize.h"
#include "entry/PrivateProfile.h"
#include "entry/Prompts.h"
#include "entry/ReportKinds.h"

#include <QGraphicsObject>

class tst_window : public QObject {
    Q_OBJECT
private slots:
    void startsUntitledWithDefaults()
    {
        WindowTestHost host;
        UserIni::Set(QStringLiteral("Pagelength"), QStringLiteral("11"));
        auto w = Open();
        QCOMPARE(w->windowTitle(), QStringLiteral("Report/Flyer Designer - Untitled"));
        QCOMPARE(w->PageLength(), 11 * 1440.0);
        QCOMPARE(w->ReportsFolder(), QStringLiteral("Users\\~UserName~\\Reports\\Listings\\"));
        QCOMPARE(w->ReportsFolderPath(), host.Local(QStringLiteral("Users/tester/Reports/Listings/")));
        QCOMPARE(w->DesignerFolder(), host.dir.path() + QStringLiteral("\\Users\\tester\\Report Designer"));
        QCOMPARE(w->CurrentTool(), 0);
        QVERIFY(!w->Commands().IsChecked(u"miPageHeader"));
        QCOMPARE(w->DetailHeaderBarOffset(), 0.0f);
        QCOMPARE(w->PageFooterBarOffset(), 0.0f);
        // The view starts at the top: the bar above the page is in sight.
        QCOMPARE(w->Page().View()->mapToScene(QPoint(0, 0)).x(), 0.0);
        QVERIFY(w->Page().View()->mapToScene(QPoint(0, 0)).y() <= -220);
        QCOMPARE(w->Page().ScrollPosition(), QPointF(0, 0));
        // Present but not yet carried out: disabled, never a dead button.
        QVERIFY(!w->Commands().IsEnabled(u"printpreview"));
        QVERIFY(!w->Commands().IsEnabled(u"print"));
        QVERIFY(w->Commands().IsEnabled(u"miSaveAs"));
        QVERIFY(host.prompts.asked.empty());
    }

    void gridSettingReadAndWrittenBack_data()
    {
        QTest::addColumn<QString>("stored"); // "<none>" = no key
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("y");
        QTest::addColumn<QString>("written");
        QTest::newRow("missing") << "<none>" << 60 << 60 << "60,60";
        QTest::newRow("zero x") << "0,120" << 60 << 120 << "60,120";
        QTest::newRow("plain") << "90,45" << 90 << 45 << "90,45";
        QTest::newRow("negative and junk") << "-30,abc" << 60 << 60 << "60,60";
        QTest::newRow("one part") << "120" << 120 << 60 << "120,60";
    }

    void gridSettingReadAndWrittenBack()
    {
        QFETCH(QString, stored);
        QFETCH(int, x);
        QFETCH(int, y);
        QFETCH(QString, written);
        WindowTestHost host;
        if (stored != u"<none>")
            QVERIFY(UserIni::Set(QStringLiteral("Grid"), stored));
        {
            auto w = Open();
            QCOMPARE(w->GridIncX(), x);
            QCOMPARE(w->GridIncY(), y);
            QCOMPARE(w->SelObj().GridX(), float(x));
            QCOMPARE(w->SelObj().GridY(), float(y));
            QCOMPARE(UserIni::Get(QStringLiteral("Grid"), QStringLiteral("<none>")), stored);
            QVERIFY(w->close());
        }
        QCOMPARE(UserIni::Get(QStringLiteral("Grid"), QString()), written);
        QCOMPARE(host.closedJobs, QList<QVariant>{7});
    }

    void toolsSwitchedOffByKindAndLevel()
    {
        // The rules themselves are the command bar's; here the window must hand it its kind and the user's level.
        WindowTestHost host;
        host.level = 50;
        auto w = Open(ReportKind::Office);
        QVERIFY(!w->Commands().IsEnabled(u"tbBoundPicture"));
        QVERIFY(!w->Commands().IsEnabled(u"tbSubReport"));
        QVERIFY(w->Commands().IsEnabled(u"tbInsertLine"));
        QCOMPARE(w->Commands().Action(u"miSelectProperty")->text(), QStringLiteral("Select Office"));
    }

    void drawsEachKindInAllDirections_data()
    {
        QTest::addColumn<QString>("tool");
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("direction"); // 0 down-right, 1 up-left, 2 up-right, 3 down-left
        const struct { const char* tool; int kind; } tools[] = {
            {"tbInsertRectangle", ObjType::Box}, {"tbInsertLine", ObjType::Line},     {"tbInsertLabel", ObjType::Label},
            {"tbBoundPicture", ObjType::Image},  {"tbDateTime", ObjType::DateTime},   {"InsertLinkedPhoto", ObjType::Image},
            {"tbSubReport", ObjType::SubReport},
        };
        for (const auto& t : tools)
            for (int d = 0; d < 4; ++d)
                QTest::addRow("%s %d", t.tool, d) << QString::fromLatin1(t.tool) << t.kind << d;
    }

    void drawsEachKindInAllDirections()
    {
        QFETCH(QString, tool);
        QFETCH(int, kind);
        QFETCH(int, direction);
        WindowTestHost host;
        const QString sub = host.Local(QStringLiteral("Users/tester/Reports/Listings/part.rdf"));
        host.prompts.files.push_back(sub);
        auto w = Open();
        Tool(*w, tool.toLatin1().constData());
        QCOMPARE(w->CurrentTool(), kind);

        const QPointF p1 = Actual(*w, {1010, 1210}), p2 = Actual(*w, {3305, 2580});
        QPointF from = p1, to = p2;
        if (direction == 1) std::swap(from, to);
        if (direction == 2) { from = {p1.x(), p2.y()}; to = {p2.x(), p1.y()}; }
        if (direction == 3) { from = {p2.x(), p1.y()}; to = {p1.x(), p2.y()}; }
        Drag(*w, from, to);
        if (kind == ObjType::Label) {
            QVERIFY(w->TextEditor()->isVisible());
            TypeLabel(*w, QStringLiteral("Price"));
        }

        QCOMPARE(w->Document().RptItemCount(), 1);
        QCOMPARE(w->Document().Item(1).ObjectType, kind);
        const QRectF expected(Floor60(p1.x()), Floor60(p1.y()), Floor60(p2.x()) - Floor60(p1.x()), Floor60(p2.y()) - Floor60(p1.y()));
        if (kind == ObjType::Line) {
            // A line is horizontal or vertical: the wider band gives a horizontal one.
            const QRectF r = Geometry(Control(*w, 1));
            QCOMPARE(r.topLeft(), expected.topLeft());
            QCOMPARE(r.width(), expected.width());
            QCOMPARE(clsRptControl::Prop(Control(*w, 1), "Orientation").toInt(), 1);
        } else {
            QCOMPARE(Geometry(Control(*w, 1)), expected);
        }
        QCOMPARE(w->CurrentTool(), 0); // back to select
        QVERIFY(w->Commands().IsChecked(u"tbSelectObjects"));
        QCOMPARE(w->Document().Item(1).ZOrder, 1);
        QVERIFY(w->Document().DirtyFlag);
        QVERIFY(!w->Page().BandVisible());
        // Everything but a label is selected at once; a label is being (was) edited.
        QCOMPARE(w->SelObj().Count(), kind == ObjType::Label ? 0 : 1);

        QObject* c = Control(*w, 1);
        switch (kind) {
        case ObjType::Label:
            QCOMPARE(clsRptControl::Prop(c, "Text").toString(), QStringLiteral("Price"));
            QCOMPARE(w->Document().Item(1).Text, QStringLiteral("Price"));
            QCOMPARE(clsRptControl::Prop(c, "FontName").toString(), QStringLiteral("Arial"));
            break;
        case ObjType::DateTime:
            QCOMPARE(clsRptControl::Prop(c, "Text").toString(), QStringLiteral("DateTime1"));
            break;
        case ObjType::SubReport:
            QCOMPARE(clsRptControl::Prop(c, "Text").toString(), sub);
            break;
        case ObjType::Image:
            QCOMPARE(clsRptControl::Prop(c, "DataBound").toBool(), tool == u"tbBoundPicture");
            QCOMPARE(clsRptControl::Prop(c, "Embeded").toBool(), false);
            break;
        default:
            break;
        }
    }

    void breaksSitAtTheLeftEdge()
    {
        WindowTestHost host;
        auto w = Open();
        Tool(*w, "tbPageBreak");
        const QPointF a = Actual(*w, {2000, 3000}), b = Actual(*w, {4000, 3500});
        Drag(*w, a, b);
        Draw(*w, "tbSectionBreak", b + QPointF(0, 1500), a + QPointF(0, 1500)); // drawn upwards
        QCOMPARE(w->Document().RptItemCount(), 2);
        QCOMPARE(Geometry(Control(*w, 1)), QRectF(1, Floor60(a.y()), 600, 1));
        QCOMPARE(clsRptControl::Prop(Control(*w, 1), "Text").toString(), QStringLiteral("NewPage1"));
        QCOMPARE(Geometry(Control(*w, 2)), QRectF(1, Floor60(a.y() + 1500), 600, 1));
        QCOMPARE(clsRptControl::Prop(Control(*w, 2), "Text").toString(), QStringLiteral("Section1"));
    }

    void labelTextEditedInPlaceAndEmptyLabelDeleted()
    {
        WindowTestHost host;
        auto w = Open();
        Draw(*w, "tbInsertLabel", {600, 600}, {2400, 900});
        QLineEdit* ed = w->TextEditor();
        QVERIFY(ed->hasFocus());
        // Leaving the editor empty removes the label it was made for.
        ed->clear();
        QTest::keyClick(ed, Qt::Key_Return);
        QCOMPARE(w->Document().RptItemCount(), 0);
        QVERIFY(!ed->isVisible());

        // Escape gives up a new label as it was: without a text, so without the label.
        Draw(*w, "tbInsertLabel", {600, 600}, {2400, 900});
        QTest::keyClicks(ed, QStringLiteral("Asking"));
        QTest::keyClick(ed, Qt::Key_Escape);
        QVERIFY(!ed->isVisible());
        QCOMPARE(w->Document().RptItemCount(), 0);

        Draw(*w, "tbInsertLabel", {600, 600}, {2400, 900});
        QTest::keyClicks(ed, QStringLiteral("Sold!"));
        QTest::keyClick(ed, Qt::Key_Enter);
        QCOMPARE(w->Document().RptItemCount(), 1);
        QCOMPARE(w->Document().Item(1).Text, QStringLiteral("Sold!"));
        QCOMPARE(w->Document().Item(1).Name, QStringLiteral("Label3"));
    }

    void fileChooserToolsAskForAFile()
    {
        WindowTestHost host;
        const QString pic = WritePicture(host.Local(QStringLiteral("house.bmp")));
        auto w = Open();
        // No file chosen for the sub report: the item drawn for it goes again.
        Draw(*w, "tbSubReport", {600, 600}, {2400, 1200});
        QCOMPARE(w->Document().RptItemCount(), 0);
        QCOMPARE(w->SelObj().Count(), 0);
        QCOMPARE(w->CurrentTool(), 0);

        host.prompts.files.push_back(pic);
        Tool(*w, "tbInsertPicture");
        QVERIFY(w->Commands().PictureEmbedded());
        Drag(*w, {600, 600}, {2400, 1800});
        QCOMPARE(w->Document().RptItemCount(), 1);
        QObject* c = Control(*w, 1);
        QCOMPARE(clsRptControl::Prop(c, "FileName").toString(), pic);
        QVERIFY(clsRptControl::Prop(c, "Embeded").toBool());
        QVERIFY(!clsRptControl::Prop(c, "DataBound").toBool());
        QCOMPARE(host.prompts.fileTitles, (QStringList{QStringLiteral("Sub Report"), QStringLiteral("Insert Picture")}));
    }

    void keyboardDeletesMovesAndResizes()
    {
        WindowTestHost host;
        UserIni::Set(QStringLiteral("Grid"), QStringLiteral("60,120"));
        auto w = Open();
        Draw(*w, "tbInsertRectangle", {600, 600}, {1800, 1200});
        QCOMPARE(w->SelObj().Count(), 1);
        QWidget* view = w->Page().View();
        view->setFocus();
        const QRectF r0 = Geometry(Control(*w, 1));
        QTest::keyClick(view, Qt::Key_Right);
        QTest::keyClick(view, Qt::Key_Down);
        QCOMPARE(Geometry(Control(*w, 1)), r0.translated(60, 120));
        QTest::keyClick(view, Qt::Key_Left, Qt::ShiftModifier);
        QTest::keyClick(view, Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(Geometry(Control(*w, 1)), QRectF(r0.left() + 60, r0.top() + 120, r0.width() - 60, r0.height() + 120));
        QTest::keyClick(view, Qt::Key_Delete);
        QCOMPARE(w->Document().RptItemCount(), 0);
        QCOMPARE(w->SelObj().Count(), 0);
        // Delete with nothing selected does nothing.
        QTest::keyClick(view, Qt::Key_Delete);
        QCOMPARE(w->Document().RptItemCount(), 0);
    }

    void bringToFrontNumbersIncrease()
    {
        WindowTestHost host;
        auto w = Open();
        Draw(*w, "tbInsertLine", {600, 600}, {1800, 600});
        Draw(*w, "tbInsertLine", {600, 1200}, {1800, 1200});
        QCOMPARE(w->TopZOrder(), 2);
        w->SelObj().ClearSelect();
        w->SelObj().Select(Control(*w, 2));
        Tool(*w, "miSendtoFront");
        w->SelObj().ClearSelect();
        w->SelObj().Select(Control(*w, 1));
        Tool(*w, "miSendtoFront");
        QCOMPARE(w->Document().Item(2).ZOrder, 3);
        QCOMPARE(w->Document().Item(1).ZOrder, 4);
        auto* g1 = qobject_cast<QGraphicsObject*>(Control(*w, 1));
        auto* g2 = qobject_cast<QGraphicsObject*>(Control(*w, 2));
        QVERIFY(g1->zValue() > g2->zValue());
        Tool(*w, "miSendtoBack");
        QCOMPARE(w->Document().Item(1).ZOrder, -1);
        QVERIFY(g1->zValue() < g2->zValue());
    }

    void selectByAreaSelectsBandItems()
    {
        WindowTestHost host;
        auto w = Open();
        Draw(*w, "tbInsertRectangle", {600, 600}, {1200, 1200});
        Draw(*w, "tbInsertRectangle", {3000, 3000}, {3600, 3600});
        Click(*w, {5000, 5000}); // empty page: drops the selection
        QCOMPARE(w->SelObj().Count(), 0);
        Tool(*w, "miSelectByArea");
        QCOMPARE(w->CurrentTool(), 12);
        Drag(*w, {2400, 2400}, {300, 300}); // upwards, around the first box only
        QCOMPARE(w->SelObj().SelectedControls(), QList<QObject*>{Control(*w, 1)});
        QCOMPARE(w->CurrentTool(), 0);
        QVERIFY(w->Commands().IsEnabled(u"miCopy"));
    }

    void insertFilePastesAtBand()
    {
        WindowTestHost host;
        const QString file = host.Local(QStringLiteral("Users/tester/Reports/Listings/piece.rdf"));
        {
            auto src = Open();
            Draw(*src, "tbInsertRectangle", {600, 600}, {1200, 900});
            Draw(*src, "tbInsertLine", {600, 1500}, {1800, 1500});
            QVERIFY(src->Document().SaveReport(file, false));
            src->Document().DirtyFlag = false;
        }
        auto w = Open();
        Tool(*w, "miInsertFile");
        host.prompts.files.push_back(file);
        const QPointF at = Actual(*w, {3000, 2000});
        Drag(*w, at, at + QPointF(300, 300));
        QCOMPARE(w->Document().RptItemCount(), 2);
        // The group's corner lands on the next grid step above the band's corner.
        const double x = Floor60(at.x()) + 60, y = Floor60(at.y()) + 60;
        QCOMPARE(Geometry(Control(*w, 1)), QRectF(x, y, 600, 300));
        QCOMPARE(Geometry(Control(*w, 2)).topLeft(), QPointF(x, y + 900));
        QCOMPARE(w->CurrentTool(), 0);
    }
};

QTEST_MAIN(tst_window)
#include "tst_window.moc"
