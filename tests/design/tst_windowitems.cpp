// Items on the page as a user makes and changes them: break markers, unique names on paste and
// Insert File, Delete after a paste, in-place editing, the bound picture's placeholder, the paper
// edge, and the tools that must stay in reach.
#include "support_windowhost.h"

#include "design/DragBox.h"
#include "design/RptImage.h"
#include "design/RptTextBox.h"
#include "design/clsResize.h"
#include "properties/frmRptProperties.h"

#include <QComboBox>
#include <QDoubleSpinBox>
#include <QTimer>
#include <QToolBar>

namespace {

// A listing without photos: the photo look-up answers "no picture".
class NoPhotoHost : public WindowTestHost, public Database, public PhotoLibrary {
public:
    ::Database& Database() override { return *this; }
    PhotoLibrary& PhotoService() override { return *this; }
    std::unique_ptr<Recordset> OpenRecordset(int, const QString&, int, int, int) override
    {
        return std::make_unique<Recordset>(QStringList{QStringLiteral("PhotoVersion")}, QList<QVariantList>{});
    }
    PhotoResult GetPhotoFile(TervaneCommon&, const QString&, int, const QString&, int) override { return {}; }
    PhotoResult GetPhotoFile(TervaneCommon&, const QString&, int, const QString&) override { return {}; }
};

QStringList Names(frmPagewright& w)
{
    QStringList out;
    for (int i = 1; i <= w.Document().RptItemCount(); ++i)
        out << w.Document().Item(i).Name;
    return out;
}

bool Unique(const QStringList& names) { return QSet<QString>(names.begin(), names.end()).size() == names.size(); }

QRectF FrameRect(frmPagewright& w, QObject* c)
{
    const DragBox* f = w.SelObj().Frame(c);
    return f ? QRectF(f->Left(), f->Top(), f->Width(), f->Height()) : QRectF();
}

// How many pixels of the viewport in a page area pass a test.
template <typename Test>
int PixelsWhere(frmPagewright& w, QRectF pageArea, Test test)
{
    const QImage img = Viewport(w)->grab().toImage();
    const QRect px(w.Page().ViewportPixel(pageArea.topLeft()), w.Page().ViewportPixel(pageArea.bottomRight()));
    int n = 0;
    for (int y = px.top(); y <= px.bottom(); ++y)
        for (int x = px.left(); x <= px.right(); ++x)
            if (img.rect().contains(x, y) && test(img.pixelColor(x, y)))
                ++n;
    return n;
}

int PixelsOf(frmPagewright& w, QRectF pageArea, QColor colour)
{
    return PixelsWhere(w, pageArea, [colour](QColor c) { return c == colour; });
}

const QColor MarkerBlue(0, 0, 160);

// The marker's dashed line along the break, and its caption (blue-ish text) under it.
bool MarkerShown(frmPagewright& w, double top, bool widerThanTheBreak = false)
{
    const int line = PixelsOf(w, {0, top - 20, 600, 40}, MarkerBlue);
    const int caption = PixelsWhere(w, {0, top + 30, 600, 180},
                                    [](QColor c) { return c.blue() > 100 && c.red() < 120 && c.green() < 120; });
    // A caption wider than the break is not cut at its 600 twips.
    const int past = PixelsWhere(w, {600, top + 30, 400, 180},
                                 [](QColor c) { return c.blue() > 100 && c.red() < 120 && c.green() < 120; });
    return line > 10 && caption > 10 && (!widerThanTheBreak || past > 0);
}

} // namespace

class tst_windowitems : public QObject {
    Q_OBJECT
private slots:
    void breakItemsAgreeWithTheirFrameAndShowAMarker()
    {
        WindowTestHost host;
        auto w = Open();
        Tool(*w, "miProperties");
        Draw(*w, "tbPageBreak", {1200, 2400}, {4200, 2700});
        QObject* brk = Control(*w, 1);
        QCOMPARE(Geometry(brk), QRectF(1, 2400, 600, 1));
        QCOMPARE(FrameRect(*w, brk), Geometry(brk));
        auto* sheet = w->PropertySheet();
        QCOMPARE(sheet->findChild<QLineEdit*>(QStringLiteral("fpLeft"))->text(), QStringLiteral("1"));
        QCOMPARE(sheet->findChild<QLineEdit*>(QStringLiteral("fpWidth"))->text(), QStringLiteral("600"));
        QCOMPARE(sheet->findChild<QLineEdit*>(QStringLiteral("fpHeight"))->text(), QStringLiteral("1"));

        // Seen without Show Outline: a dashed line with the item's caption, in both views.
        Draw(*w, "tbSectionBreak", {600, 4200}, {3000, 4500});
        Click(*w, {8000, 8000});
        QVERIFY(!w->Commands().IsChecked(u"miShowOutline"));
        QCOMPARE(static_cast<RptTextBox*>(brk)->MarkerCaption(), QStringLiteral("NewPage1"));
        QVERIFY(MarkerShown(*w, 2400, true)); // "NewPage1"
        QVERIFY(MarkerShown(*w, 4200));
        ScriptedRecordPrompt record;
        record.answer = true;
        Tool(*w, "miDataView");
        QVERIFY(w->Document().DataView);
        QVERIFY(MarkerShown(*w, 2400));

        // The marker can be taken hold of and dragged, though the item is one twip high.
        Tool(*w, "miTemplateView");
        QTest::mouseClick(Viewport(*w), Qt::LeftButton, {}, w->Page().ViewportPixel({300, 2500}));
        QVERIFY(w->SelObj().IsSelected(brk));
    }

    void aToolDrawsOverAnExistingItem()
    {
        WindowTestHost host;
        auto w = Open();
        Draw(*w, "tbBoundPicture", {600, 600}, {3000, 3000});
        QObject* pic = Control(*w, 1);
        const QRectF pic0 = Geometry(pic);
        // A date stamp drawn across the picture: a new item there, the picture stays put.
        Draw(*w, "tbDateTime", {1200, 2400}, {2400, 2700});
        QCOMPARE(w->Document().RptItemCount(), 2);
        QCOMPARE(w->Document().ObjectType(2), 8);
        QCOMPARE(Geometry(Control(*w, 2)), QRectF(1200, 2400, 1200, 300));
        QCOMPARE(Geometry(pic), pic0);
        QCOMPARE(w->CurrentTool(), 0);
    }

    void namesStayUniqueOnPasteAndInsertFile()
    {
        WindowTestHost host;
        auto w = Open();
        Draw(*w, "tbInsertLabel", {600, 600}, {2400, 900});
        TypeLabel(*w, QStringLiteral("Open House"));
        w->Document().SetIndex(1);
        w->Document().ChangeObjectName(QStringLiteral("Title"));
        Draw(*w, "tbInsertRectangle", {600, 1200}, {1800, 1800});
        host.prompts.files.push_back(WritePicture(host.Local(QStringLiteral("front.bmp"))));
        Draw(*w, "tbInsertPicture", {3000, 1200}, {4200, 2400});
        QCOMPARE(Names(*w), (QStringList{"Title", "Rect1", "Image1"}));

        const QString file = host.Local(QStringLiteral("Users/tester/Reports/Listings/part.rdf"));
        QVERIFY(w->Document().SaveReport(file, false));

        // Copied and pasted: every pasted item gets a name of its own.
        for (int i = 1; i <= 3; ++i)
            w->SelObj().Select(Control(*w, i));
        Tool(*w, "miCopy");
        Tool(*w, "miPaste");
        QCOMPARE(w->Document().RptItemCount(), 6);
        QStringList names = Names(*w);
        QVERIFY2(Unique(names), qPrintable(names.join(u',')));
        // Numbered names go on with their kind's count; any other name takes a number.
        QVERIFY(names.contains(u"Rect2") && names.contains(u"Image2"));
        QCOMPARE(names.filter(QRegularExpression(QStringLiteral("^Title\\d+$"))).size(), 1);

        // Inserted from a file: the same.
        host.prompts.files.push_back(file);
        Draw(*w, "miInsertFile", {600, 6000}, {600, 6000});
        QCOMPARE(w->Document().RptItemCount(), 9);
        names = Names(*w);
        QVERIFY2(Unique(names), qPrintable(names.join(u',')));

        // In a new window, with its counters back at 1, a new item after a report was loaded
        // does not take a loaded item's name.
        w.reset();
        auto w2 = Open();
        w2->Document().LoadReport(file);
        Draw(*w2, "tbInsertRectangle", {600, 3000}, {1800, 3600});
        QCOMPARE(Names(*w2), (QStringList{"Title", "Rect1", "Image1", "Rect2"}));
    }

    void deleteRemovesWhatWasJustPasted()
    {
        WindowTestHost host;
        auto w = Open();
        Draw(*w, "tbInsertRectangle", {600, 600}, {1800, 1200});
        Draw(*w, "tbInsertLabel", {600, 1800}, {2400, 2100});
        TypeLabel(*w, QStringLiteral("Sunday"));
        QObject* box = Control(*w, 1);
        w->SelObj().ClearSelect();
        // The box is chosen from the tool bar's list of names, which keeps the keyboard.
        auto* objects = w->findChild<QComboBox*>(QStringLiteral("miObjectName"));
        QVERIFY(objects);
        objects->setFocus();
        objects->setCurrentIndex(objects->findText(QStringLiteral("Rect1")));
        emit objects->textActivated(QStringLiteral("Rect1"));
        QVERIFY(w->SelObj().IsSelected(box));
        QCOMPARE(QApplication::focusWidget(), objects);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_C, Qt::ControlModifier);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(w->Document().RptItemCount(), 3);
        QObject* pasted = Control(*w, 3);
        QCOMPARE(w->SelObj().SelectedControls(), QList<QObject*>{pasted});
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
        QCOMPARE(w->Document().RptItemCount(), 2);
        QCOMPARE(Control(*w, 1), box);
    }

    void escapeCancelsAnInPlaceEdit()
    {
        WindowTestHost host;
        auto w = Open();
        Draw(*w, "tbInsertLabel", {600, 600}, {2400, 900});
        TypeLabel(*w, QStringLiteral("Open House"));
        QObject* label = Control(*w, 1);
        Click(*w, Geometry(label).center());
        Click(*w, Geometry(label).center()); // the second click edits it
        QVERIFY(w->TextEditor()->isVisible());
        QTest::keyClicks(w->TextEditor(), QStringLiteral("Closed"));
        QTest::keyClick(w->TextEditor(), Qt::Key_Escape);
        QVERIFY(!w->TextEditor()->isVisible());
        QCOMPARE(clsRptControl::Prop(label, "Text").toString(), QStringLiteral("Open House"));
        QCOMPARE(w->Document().Item(1).Text, QStringLiteral("Open House"));

        // A label just drawn and given up with Escape is not left behind empty.
        Draw(*w, "tbInsertLabel", {600, 1800}, {2400, 2100});
        QVERIFY(w->TextEditor()->isVisible());
        QTest::keyClick(w->TextEditor(), Qt::Key_Escape);
        QCOMPARE(w->Document().RptItemCount(), 1);
    }

    void textIsPaintedInPlaceAfterAnInPlaceEdit_data()
    {
        QTest::addColumn<int>("zoom");
        QTest::addColumn<int>("alignment"); // 0 left, 1 right, 2 centre
        QTest::addColumn<int>("ending");    // 0 Return, 1 a click on the page, 2 a click on another item
        for (int zoom : {100, 200})
            for (int alignment : {0, 1, 2})
                for (int ending : {0, 1, 2})
                    QTest::addRow("%d%% align %d end %d", zoom, alignment, ending) << zoom << alignment << ending;
    }

    // The editor shows the end of a long text (scrolled), and once it closes the window must show
    // the item painted where it is, not what the editor left on the screen.
    void textIsPaintedInPlaceAfterAnInPlaceEdit()
    {
        QFETCH(int, zoom);
        QFETCH(int, alignment);
        QFETCH(int, ending);
        WindowTestHost host;
        auto w = Open();
        w->Zoom().SetPercent(zoom);
        Draw(*w, "tbInsertLabel", {1440, 600}, {4320, 900});
        TypeLabel(*w, QStringLiteral("Open House this Sunday from one to four, refreshments served"));
        Draw(*w, "tbInsertLabel", {1440, 2400}, {4320, 2700});
        TypeLabel(*w, QStringLiteral("Other"));
        QObject* label = Control(*w, 1);
        clsRptControl::SetProp(label, "Alignment", alignment);
        Click(*w, {8000, 8000});
        const QPointF centre = Geometry(label).center();
        Click(*w, centre);
        Click(*w, centre);
        QVERIFY(w->TextEditor()->isVisible());
        QTest::keyClick(w->TextEditor(), Qt::Key_End);
        QTest::keyClicks(w->TextEditor(), QStringLiteral(" daily"));
        if (ending == 0)
            QTest::keyClick(w->TextEditor(), Qt::Key_Return);
        else
            Click(*w, ending == 1 ? QPointF(8000, 8000) : Geometry(Control(*w, 2)).center());
        QVERIFY(!w->TextEditor()->isVisible());
        QCOMPARE(clsRptControl::Prop(label, "Text").toString(),
                 QStringLiteral("Open House this Sunday from one to four, refreshments served daily"));
        QTest::qWait(50); // let the window repaint what changed
        // Around the label (the editor stood there): the dashed page edge elsewhere is drawn with
        // another dash phase by partial repaints, which is not what this is about.
        const QRect around = QRect(w->Page().ViewportPixel(Geometry(label).topLeft()),
                                   w->Page().ViewportPixel(Geometry(label).bottomRight()))
                                 .adjusted(-64, -16, 64, 16);
        const QImage shown = OnScreen(Viewport(*w)).copy(around);
        QVERIFY(!shown.isNull());
        QCOMPARE(shown, Viewport(*w)->grab().toImage().convertToFormat(QImage::Format_RGB32).copy(around));
    }

    void boundPictureWithoutAPhotoShowsItsPlaceholder()
    {
        NoPhotoHost host;
        auto w = Open();
        Draw(*w, "tbBoundPicture", {600, 600}, {2400, 2400});
        auto* pic = qobject_cast<RptImage*>(Control(*w, 1));
        QVERIFY(pic);
        QVERIFY(pic->Look().placeholderVisible);
        ScriptedRecordPrompt record;
        record.answer = true;
        Tool(*w, "miDataView");
        QVERIFY(w->Document().DataView);
        const ItemLook look = pic->Look();
        QVERIFY(look.placeholderVisible);
        QCOMPARE(look.placeholder, QStringLiteral("  Picture 1"));
    }

    void paperEdgeAndMarginsShowOnThePage()
    {
        WindowTestHost host;
        auto w = Open();
        // Letter with the default margins: 7.5 by 9.5 inches print.
        QCOMPARE(w->Page().PrintableRect(), QRectF(0, 0, 10800, 13680));
        QCOMPARE(w->Page().PaperRect(), QRectF(0, 0, 11520, 14760));
        QVERIFY(PixelsOf(*w, {10200, 600, 300, 300}, Qt::white) > 0);
        QCOMPARE(PixelsOf(*w, {11000, 600, 300, 300}, Qt::white), 0);
        QVERIFY(PixelsOf(*w, {11000, 600, 300, 300}, QColor(224, 224, 224)) > 0);

        // One-inch side margins from Page Setup: half an inch less to print on.
        QTimer::singleShot(0, [] {
            QWidget* d = QApplication::activeModalWidget();
            QVERIFY(d);
            d->findChild<QDoubleSpinBox*>(QStringLiteral("fpLeftMargin"))->setValue(1);
            d->findChild<QDoubleSpinBox*>(QStringLiteral("fpRightMargin"))->setValue(1);
            QTest::keyClick(d, Qt::Key_Return);
        });
        Tool(*w, "miPageSetup");
        QCOMPARE(w->Document().LeftMargin, 1440);
        QCOMPARE(w->Page().PrintableRect().width(), 9360.0);
        QCOMPARE(PixelsOf(*w, {10200, 600, 300, 300}, Qt::white), 0);

        // Section bars within the page take no paper: with a page header, the detail and the
        // page footer bars lie within it.
        Tool(*w, "miPageHeader");
        QCOMPARE(w->Page().PrintableRect().height(), 13680.0 + 2 * 220);
    }

    void effectToolsInReachAtTheDefaultSize()
    {
        WindowTestHost host;
        auto w = Open();
        QVERIFY(w->width() >= 1100 && w->height() == 780);
        QApplication::processEvents();
        for (const char* tool : {"miEffect", "fnLeft", "fnCenter", "fnRight", "miDataView", "miTemplateView"}) {
            QToolBar* bar = w->Commands().ToolBar(u"barReportDesign");
            QWidget* button = bar->widgetForAction(w->Commands().Action(QString::fromLatin1(tool)));
            QVERIFY2(button && button->isVisible(), tool);
            QVERIFY2(bar->rect().contains(button->geometry()), tool);
        }
    }
};

QTEST_MAIN(tst_windowitems)
#include "tst_windowitems.moc"
