// The design window's sections, closing and files, driven with real widgets and QTest events.
#include "support_windowhost.h"

#include "design/DesignGeometry.h"
#include "design/PageRuler.h"
#include "design/SectionBar.h"
#include "design/clsResize.h"
#include "entry/Prompts.h"

#include <QFile>

class tst_windowfile : public QObject {
    Q_OBJECT
private slots:
    void headerFooterToggleAndFooterPlacement()
    {
        WindowTestHost host;
        auto w = Open();
        w->SetHeaderFooter(1660);
        QVERIFY(w->Commands().IsChecked(u"miPageHeader"));
        QCOMPARE(w->DetailHeaderBarOffset(), 1660.0f);
        // No items: the footer goes no higher than 6000.
        QCOMPARE(w->PageFooterBarOffset(), 6000.0f);
        QVERIFY(w->Page().Bar(QStringLiteral("PageHeaderBar"))->isVisible());
        QVERIFY(w->Page().Bar(QStringLiteral("DetailHeaderBar"))->Draggable());
        QCOMPARE(w->Page().Bar(QStringLiteral("DetailHeaderBar"))->pos().y(), 1660.0 - 220);

        // Below the items' end when they reach further.
        Draw(*w, "tbInsertRectangle", {600, 6000}, {1200, 7200});
        const double bottom = Geometry(Control(*w, 1)).bottom();
        w->MovePageFooterBar(0);
        QCOMPARE(double(w->PageFooterBarOffset()), bottom + 220);
        const QRectF detailBox = Geometry(Control(*w, 1));
        Tool(*w, "tbInsertLabel"); // a page header item
        Drag(*w, {600, 300}, {1800, 600});
        TypeLabel(*w, QStringLiteral("Header"));
        QCOMPARE(w->Document().RptItemCount(), 2);

        // Off again through the menu: the header item goes (after the question), the bars hide,
        // and the detail items move up with the detail bar.
        host.prompts.answers.push_back(Mb::OK);
        Tool(*w, "miPageHeader");
        QCOMPARE(w->Document().RptItemCount(), 1);
        QCOMPARE(Geometry(Control(*w, 1)), detailBox.translated(0, -1660));
        QCOMPARE(host.prompts.asked.size(), size_t(1));
        QCOMPARE(host.prompts.asked[0].title, QStringLiteral("Delete Header/Footer"));
        QVERIFY(!w->Commands().IsChecked(u"miPageHeader"));
        QVERIFY(!w->Page().Bar(QStringLiteral("PageHeaderBar"))->isVisible());
        QVERIFY(!w->Page().Bar(QStringLiteral("PageFooterBar"))->isVisible());
        QVERIFY(!w->Page().Bar(QStringLiteral("DetailHeaderBar"))->Draggable());
        QCOMPARE(w->DetailHeaderBarOffset(), 0.0f);

        // And on through the menu: a one-inch header; the detail items move down below it.
        const QRectF before = Geometry(Control(*w, 1));
        Tool(*w, "miPageHeader");
        QVERIFY(w->Commands().IsChecked(u"miPageHeader"));
        QCOMPARE(w->DetailHeaderBarOffset(), 1660.0f);
        QCOMPARE(Geometry(Control(*w, 1)), before.translated(0, 1660));
    }

    void draggingDetailBarMovesFooterAndItems()
    {
        WindowTestHost host;
        auto w = Open();
        w->SetHeaderFooter(1660);
        Draw(*w, "tbInsertRectangle", {600, 300}, {1200, 900}); // page header item
        Draw(*w, "tbInsertRectangle", {600, 2400}, {1200, 3000}); // detail
        Draw(*w, "tbInsertRectangle", {600, 6600}, {1200, 6900}); // page footer
        const QRectF header = Geometry(Control(*w, 1)), detail = Geometry(Control(*w, 2)), footer = Geometry(Control(*w, 3));
        const float footerBar = w->PageFooterBarOffset();
        w->Document().DirtyFlag = false;

        // Grab the detail bar in its middle and pull it down by 600 twips (40 pixels).
        SectionBar* bar = w->Page().Bar(QStringLiteral("DetailHeaderBar"));
        const QPointF grab = bar->pos() + QPointF(3000, 110);
        QWidget* vp = Viewport(*w);
        const QPoint a = w->Page().ViewportPixel(grab);
        QTest::mousePress(vp, Qt::LeftButton, {}, a);
        QTest::mouseMove(vp, a + QPoint(0, 20));
        QTest::mouseMove(vp, a + QPoint(0, 40));
        const double grabbed = w->Page().PagePoint(a).y() - bar->pos().y();
        QCOMPARE(w->Page().VRuler()->Guide(), w->Page().PagePoint(a + QPoint(0, 40)).y() - grabbed + 220);
        QTest::mouseRelease(vp, Qt::LeftButton, {}, a + QPoint(0, 40));

        const double moved = Floor60(1660 - 220 + 600) + 220 - 1660; // the bar snaps to the grid
        QCOMPARE(double(w->DetailHeaderBarOffset()), 1660 + moved);
        QCOMPARE(double(w->PageFooterBarOffset()), footerBar + moved);
        QCOMPARE(Geometry(Control(*w, 1)), header);
        QCOMPARE(Geometry(Control(*w, 2)), detail.translated(0, moved));
        QCOMPARE(Geometry(Control(*w, 3)), footer.translated(0, moved));
        QVERIFY(w->Document().DirtyFlag);

        // The footer bar alone: only the footer item follows.
        const float newFooterBar = w->PageFooterBarOffset();
        QTest::mousePress(vp, Qt::LeftButton, {}, w->Page().ViewportPixel(QPointF(3000, newFooterBar - 110)));
        QTest::mouseMove(vp, w->Page().ViewportPixel(QPointF(3000, newFooterBar + 400)));
        QTest::mouseRelease(vp, Qt::LeftButton, {}, w->Page().ViewportPixel(QPointF(3000, newFooterBar + 400)));
        const double footerMoved = double(w->PageFooterBarOffset()) - newFooterBar;
        QVERIFY(footerMoved > 0);
        QCOMPARE(Geometry(Control(*w, 2)), detail.translated(0, moved));
        QCOMPARE(Geometry(Control(*w, 3)), footer.translated(0, moved + footerMoved));
    }

    void verticalRulerRestartsBelowBars()
    {
        using DesignGeometry::RulerMark;
        auto numbers = [](const std::vector<RulerMark>& marks) {
            std::vector<std::pair<double, int>> out;
            for (const RulerMark& m : marks)
                if (m.length == 0)
                    out.push_back({m.pos, m.number});
            return out;
        };
        // No bars inside the page: inches 1.. from the page top (220).
        auto plain = numbers(DesignGeometry::VRulerMarks(3 * 1440, 0, 0, false));
        QCOMPARE(plain, (std::vector<std::pair<double, int>>{{1660, 1}, {3100, 2}, {4540, 3}}));
        // Detail bar at 2000, footer at 5000: numbering starts again below each.
        auto barred = numbers(DesignGeometry::VRulerMarks(6 * 1440, 2000, 5000, true));
        QCOMPARE(barred, (std::vector<std::pair<double, int>>{{1660, 1}, {2220 + 1440, 1}, {5220 + 1440, 1}, {5220 + 2880, 2}}));
        // A hidden footer bar does not restart it.
        auto hidden = numbers(DesignGeometry::VRulerMarks(6 * 1440, 2000, 5000, false));
        QCOMPARE(hidden.back(), (std::pair<double, int>{2220 + 4 * 1440, 4}));
        // Ticks: 40 long, 90 at the half inch.
        const auto h = DesignGeometry::HRulerMarks();
        QCOMPARE(h.size(), size_t(21 * 8));
        QCOMPARE(h[0], (RulerMark{180, 40, 0}));
        QCOMPARE(h[3], (RulerMark{720, 90, 0}));
        QCOMPARE(h[7], (RulerMark{1440, 0, 1}));

        // The window's ruler follows its bars.
        WindowTestHost host;
        auto w = Open();
        w->SetHeaderFooter(2000);
        w->MovePageFooterBar(5000);
        QCOMPARE(numbers(w->Page().VRuler()->Marks())[1], (std::pair<double, int>{2220 + 1440, 1}));
    }

    void closingAsksOnlyWhenDirty()
    {
        WindowTestHost host;
        auto w = Open();
        QVERIFY(w->close()); // nothing drawn: nothing asked
        QVERIFY(host.prompts.asked.empty());
        QCOMPARE(host.closedJobs, QList<QVariant>{7});

        auto d = Open(1, 9);
        Draw(*d, "tbInsertRectangle", {600, 600}, {1200, 1200});
        host.prompts.answers.push_back(Mb::Cancel);
        QVERIFY(!d->close());
        QVERIFY(d->isVisible());
        QCOMPARE(host.prompts.asked.size(), size_t(1));
        QCOMPARE(host.prompts.asked[0].prompt, QStringLiteral("Do you wish to save your changes?"));
        QCOMPARE(host.prompts.asked[0].buttons, Mb::YesNoCancel | Mb::Exclamation);
        QCOMPARE(host.closedJobs.size(), 1);

        // Yes with no file asks for one; cancelling that keeps the window too.
        host.prompts.answers.push_back(Mb::Yes);
        QVERIFY(!d->close());
        QCOMPARE(host.prompts.fileTitles.last(), QStringLiteral("Save"));

        host.prompts.answers.push_back(Mb::No);
        QVERIFY(d->close());
        QCOMPARE(host.closedJobs, (QList<QVariant>{7, 9}));
    }

    void closeWithKnownFileNamesIt()
    {
        WindowTestHost host;
        const QString file = host.Local(QStringLiteral("Users/tester/Reports/Listings/flyer.rdf"));
        auto w = Open();
        Draw(*w, "tbInsertRectangle", {600, 600}, {1200, 1200});
        host.prompts.files.push_back(file);
        Tool(*w, "miSaveAs");
        QVERIFY(QFile::exists(file));
        Draw(*w, "tbInsertLine", {600, 1800}, {1800, 1800});
        host.prompts.answers.push_back(Mb::Yes);
        // "exit" asks as a close does, and Yes saves to the known file.
        Tool(*w, "exit");
        QCOMPARE(host.prompts.asked.back().prompt, QStringLiteral("Do you wish to save changes to\n") + file + QStringLiteral("?"));
        QVERIFY(!w->Document().DirtyFlag);
        QVERIFY(!w->isVisible());
        QCOMPARE(host.closedJobs, QList<QVariant>{7});
    }

    void saveOpenRoundTripAndCaption()
    {
        WindowTestHost host;
        const QString file = host.Local(QStringLiteral("Users/tester/Reports/Listings/open house"));
        auto w = Open();
        Draw(*w, "tbInsertRectangle", {600, 600}, {1800, 1200});
        Draw(*w, "tbInsertLabel", {600, 1800}, {3000, 2100});
        TypeLabel(*w, QStringLiteral("Open House"));
        const QRectF box = Geometry(Control(*w, 1)), label = Geometry(Control(*w, 2));

        host.prompts.files.push_back(file);
        Tool(*w, "miSave"); // no file yet: asks for a name, adds the extension
        QCOMPARE(w->ReportFile(), file + QStringLiteral(".rdf"));
        QCOMPARE(w->windowTitle(), QStringLiteral("Report/Flyer Designer - open house.rdf"));
        QVERIFY(!w->Document().DirtyFlag);

        Tool(*w, "new");
        QCOMPARE(w->Document().RptItemCount(), 0);
        QCOMPARE(w->windowTitle(), QStringLiteral("Report/Flyer Designer - Untitled"));
        QVERIFY(w->ReportFile().isEmpty());

        host.prompts.files.push_back(file + QStringLiteral(".rdf"));
        Tool(*w, "Open");
        QCOMPARE(host.prompts.fileTitles.last(), QStringLiteral("Open"));
        QCOMPARE(w->Document().RptItemCount(), 2);
        QCOMPARE(Geometry(Control(*w, 1)), box);
        QCOMPARE(Geometry(Control(*w, 2)), label);
        QCOMPARE(clsRptControl::Prop(Control(*w, 2), "Text").toString(), QStringLiteral("Open House"));
        QCOMPARE(w->windowTitle(), QStringLiteral("Report/Flyer Designer - open house.rdf"));

        // A template opens but is not kept as the file to save to.
        const QString tpl = host.Local(QStringLiteral("Users/Templates/base.rdf"));
        QDir().mkpath(QFileInfo(tpl).path());
        QVERIFY(QFile::copy(file + QStringLiteral(".rdf"), tpl));
        w->SetReport(tpl, QStringLiteral("base.rdf"), QString());
        QCOMPARE(w->Document().RptItemCount(), 2);
        QVERIFY(w->ReportFile().isEmpty());
        QCOMPARE(w->windowTitle(), QStringLiteral("Report/Flyer Designer - base.rdf"));
    }

    void componentFileDialogWhenInstalled()
    {
        WindowTestHost host;
        host.level = 50;
        struct Call { bool save; QString caption, folder; QStringList lookIns; };
        QList<Call> calls;
        const QString file = host.Local(QStringLiteral("Users/tester/Reports/Listings/flyer.rdf"));
        QDir().mkpath(QFileInfo(file).path());
        SetReportFileDialog([&](bool save, const QString& caption, const QString& folder, const QString& ext,
                                const QStringList& lookIns, const QString& pattern, const QString&) {
            calls.append({save, caption, folder, lookIns});
            if (ext != u"rdf" || pattern != u"*.rdf")
                return std::optional<ReportFileChoice>();
            return std::optional<ReportFileChoice>(ReportFileChoice{file, QString(), QStringLiteral("flyer")});
        });
        auto w = Open();
        Draw(*w, "tbInsertRectangle", {600, 600}, {1800, 1200});
        Tool(*w, "miSaveAs");
        Tool(*w, "Open");
        SetReportFileDialog(nullptr);
        QVERIFY(QFile::exists(file));
        QCOMPARE(w->ReportFile(), file);
        QCOMPARE(calls.size(), 2);
        const QString folder = host.AppPath() + QStringLiteral("Users\\~UserName~\\Reports\\Listings\\");
        QCOMPARE(calls[0].caption, QStringLiteral("Save"));
        QCOMPARE(calls[0].folder, folder);
        QCOMPARE(calls[0].lookIns, QStringList{QStringLiteral("tester")}); // templates only for level 100
        QCOMPARE(calls[1].caption, QStringLiteral("Open"));
        QCOMPARE(calls[1].lookIns, QStringList({QStringLiteral("tester"), QStringLiteral("Templates")}));
        QVERIFY(host.prompts.fileTitles.isEmpty()); // the plain chooser was never shown
    }

    void unreadableFileReportsAndKeepsReport()
    {
        WindowTestHost host;
        const QString bad = host.Local(QStringLiteral("Users/tester/Reports/Listings/bad.rdf"));
        {
            QFile f(bad);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write(QByteArray("\x64\x00garbage that is no report", 28));
        }
        auto w = Open();
        Draw(*w, "tbInsertRectangle", {600, 600}, {1200, 1200});
        host.prompts.files.push_back(bad);
        host.prompts.answers.push_back(Mb::No); // the unsaved box is offered for saving first
        Tool(*w, "Open");
        QCOMPARE(host.prompts.asked.size(), size_t(2));
        QCOMPARE(host.prompts.asked[0].prompt, QStringLiteral("Do you wish to save your changes?"));
        QCOMPARE(host.prompts.asked[1].title, QStringLiteral("Report Designer File error"));
        QCOMPARE(host.prompts.asked[1].buttons, Mb::OKOnly | Mb::Critical);
        QVERIFY(host.prompts.asked[1].prompt.startsWith(QStringLiteral("Error: ")));
        QVERIFY(host.prompts.asked[1].prompt.endsWith(QStringLiteral("\nFile: ") + bad));
        QCOMPARE(w->Document().RptItemCount(), 1);
        QCOMPARE(w->windowTitle(), QStringLiteral("Report/Flyer Designer - Untitled"));
    }

    // A header whose sections are out of order (here: the page footer starts above the detail)
    // would open with items in the wrong sections: it is refused as a bad file format.
    void garbledSectionHeaderIsRefused()
    {
        WindowTestHost host;
        const QString file = host.Local(QStringLiteral("Users/tester/Reports/Listings/garbled.rdf"));
        auto w = Open();
        Draw(*w, "tbInsertRectangle", {600, 600}, {1800, 1200});
        Draw(*w, "tbInsertRectangle", {600, 1800}, {1800, 2400});
        host.prompts.files.push_back(file);
        Tool(*w, "miSave");
        QByteArray bytes;
        {
            QFile f(file);
            QVERIFY(f.open(QIODevice::ReadOnly));
            bytes = f.readAll();
        }
        QCOMPARE(bytes.mid(14, 2), QByteArray("\x02\x00", 2)); // last detail item: both boxes are detail
        bytes[14] = 1;                                          // now the second box would be page footer, at 0
        {
            QFile f(file);
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write(bytes);
        }
        Tool(*w, "new");
        Draw(*w, "tbInsertLabel", {600, 600}, {1800, 900});
        w->Document().DirtyFlag = false;
        host.prompts.files.push_back(file);
        Tool(*w, "Open");
        QCOMPARE(host.prompts.asked.size(), size_t(1));
        QCOMPARE(host.prompts.asked[0].title, QStringLiteral("Report Designer File error"));
        QCOMPARE(host.prompts.asked[0].prompt,
                 QStringLiteral("Error: 321 - Bad file format: page footer top 0 above the detail section at 0 at offset 24\nFile: ") + file);
        QCOMPARE(w->Document().RptItemCount(), 1); // the open report stays as it was
        QCOMPARE(w->Document().Item(1).ObjectType, ObjType::Label);
    }

    // The copy buffer is a temporary file; when it is gone (a cleaned /tmp) Paste says so
    // instead of taking the program down, and the report is left as it was.
    void pasteWithTheCopyBufferGoneSaysSo()
    {
        WindowTestHost host;
        auto w = Open();
        Draw(*w, "tbInsertRectangle", {600, 600}, {1800, 1200});
        Tool(*w, "miCopy");
        w->Document().DirtyFlag = false;
        QVERIFY(QFile::remove(w->Document().CopyBufferFile()));
        Tool(*w, "miPaste");
        QCOMPARE(host.prompts.asked.size(), size_t(1));
        QCOMPARE(host.prompts.asked[0].title, QStringLiteral("Paste"));
        QCOMPARE(host.prompts.asked[0].buttons, Mb::OKOnly | Mb::Critical);
        QVERIFY2(host.prompts.asked[0].prompt.startsWith(QStringLiteral("Error: 53 - File not found: ")),
                 qPrintable(host.prompts.asked[0].prompt));
        QCOMPARE(w->Document().RptItemCount(), 1);
        QVERIFY(!w->Document().DirtyFlag);
    }

    void screenshotOfPopulatedWindow()
    {
        WindowTestHost host;
        auto w = Open();
        w->resize(1000, 700);
        w->SetHeaderFooter(1660);
        Draw(*w, "tbInsertLabel", {600, 300}, {4200, 700});
        TypeLabel(*w, QStringLiteral("Featured Listing"));
        Draw(*w, "tbInsertRectangle", {600, 1800}, {6000, 4200});
        Draw(*w, "tbInsertLine", {900, 4500}, {6000, 4500});
        Draw(*w, "tbDateTime", {3600, 6300}, {6000, 6600});
        w->SelObj().Select(Control(*w, 2));
        QApplication::processEvents();
        const QImage shot = w->grab().toImage();
        const QString path = QDir::currentPath() + QStringLiteral("/design-window.png");
        QVERIFY(shot.save(path));
        QVERIFY(QFile::exists(path));
        // The page is white where nothing lies, and the box's border is drawn in black.
        const QPoint blank = w->Page().ViewportPixel(QPointF(8000, 3000));
        const QPoint boxEdge = w->Page().ViewportPixel(QPointF(3000, 4200 - 10));
        const QImage vp = w->Page().View()->viewport()->grab().toImage();
        QCOMPARE(vp.pixelColor(blank), QColor(Qt::white));
        QVERIFY(vp.pixelColor(boxEdge) != QColor(Qt::white));
    }
};

QTEST_MAIN(tst_windowfile)
#include "tst_windowfile.moc"
