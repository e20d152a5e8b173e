// Undo and redo through the real window: every change is drawn, moved or formatted with the
// mouse, menus and keys, then taken back step by step and made again, and the document (its
// text dump and its saved bytes) must match what it was at each step.
#include "support_windowhost.h"

#include "design/DesignHistory.h"
#include "design/DesignPage.h"
#include "design/SectionBar.h"
#include "design/clsResize.h"
#include "document/UndoStack.h"

#include <QGraphicsItem>
#include <QMenu>
#include <QScrollBar>

namespace {

struct State {
    QByteArray dump;
    QByteArray bytes;
};

QByteArray ReadAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The document as its file and its dump show it, leaving its unsaved mark and name alone.
State Snap(frmPagewright& w, const QString& dir)
{
    clsRptControl& d = w.Document();
    const bool dirty = d.DirtyFlag;
    const QString name = d.FileName();
    State s;
    // An empty report writes no files at all.
    QFile::remove(dir + QStringLiteral("/snap.txt"));
    d.DmpReport(dir + QStringLiteral("/snap.txt"));
    s.dump = ReadAll(dir + QStringLiteral("/snap.txt"));
    QFile::remove(dir + QStringLiteral("/snap.rdf"));
    d.SaveReport(dir + QStringLiteral("/snap.rdf"), false);
    s.bytes = ReadAll(dir + QStringLiteral("/snap.rdf"));
    d.DirtyFlag = dirty;
    d.SetFileName(name);
    return s;
}

// Lets the window take in the action just finished, as the event loop does between user actions.
void Settle() { QCoreApplication::processEvents(); }

void Key(frmPagewright& w, Qt::Key key, Qt::KeyboardModifiers mods = Qt::NoModifier)
{
    // Keys go where the user's keys go: the page has the focus.
    QTest::keyClick(w.Page().View(), key, mods);
    Settle();
}

void OpenPalette(frmPagewright& w, const char* band)
{
    QMetaObject::invokeMethod(w.Commands().Menu(QString::fromLatin1(band)), "aboutToShow");
}

QString UndoText(frmPagewright& w) { return w.Commands().Action(u"miUndo")->text(); }
QString RedoText(frmPagewright& w) { return w.Commands().Action(u"miRedo")->text(); }

} // namespace

class TestUndo : public QObject {
    Q_OBJECT
private slots:
    void everyStepUndoesAndRedoesToTheSameDocument()
    {
        WindowTestHost host;
        Window w = Open();
        w->activateWindow();
        const QString dir = host.dir.path();
        std::vector<State> states{Snap(*w, dir)};
        QStringList names;
        const auto step = [&](const char* name) {
            Settle();
            QCOMPARE(w->History().Stack().Steps(), int(states.size()));
            QCOMPARE(UndoText(*w), QStringLiteral("&Undo ") + QLatin1String(name));
            states.push_back(Snap(*w, dir));
            names << QLatin1String(name);
        };
        QCOMPARE(UndoText(*w), QStringLiteral("&Undo"));
        QVERIFY(!w->Commands().IsEnabled(u"miUndo"));

        Draw(*w, "tbInsertRectangle", {600, 600}, {2400, 1800});
        step("Insert Rectangle");
        Draw(*w, "tbInsertLine", {600, 2400}, {3000, 2400});
        step("Insert Line");
        Draw(*w, "tbInsertLabel", {3000, 600}, {4800, 900});
        step("Insert Label");
        TypeLabel(*w, QStringLiteral("Price"));
        step("Typing");
        QCOMPARE(w->Document().Item(3).control->property("Text").toString(), QStringLiteral("Price"));

        // A move of the box and the line together, by mouse: one step.
        w->SelObj().ClearSelect();
        w->SelObj().Select(Control(*w, 1));
        w->SelObj().Select(Control(*w, 2));
        // An empty box is grabbed by its border.
        Drag(*w, {1200, 605}, {1200 + 240, 605 + 120});
        step("Move");
        QCOMPARE(Geometry(Control(*w, 2)).topLeft(), QPointF(Floor60(600) + 240, 2400 + 120));

        // Formatting from the tool bar and the palette.
        w->SelObj().ClearSelect();
        w->SelObj().Select(Control(*w, 3));
        Key(*w, Qt::Key_B, Qt::ControlModifier);
        step("Bold");
        OpenPalette(*w, "barBackColor");
        Tool(*w, "cpColor12");
        step("Back Color");
        // A resize from the keyboard.
        Key(*w, Qt::Key_Right, Qt::ShiftModifier);
        step("Resize");
        // Bring the box to the front, then delete the line with the Delete key.
        w->SelObj().ClearSelect();
        w->SelObj().Select(Control(*w, 1));
        Tool(*w, "miSendtoFront");
        step("Bring to Front");
        w->SelObj().ClearSelect();
        w->SelObj().Select(Control(*w, 2));
        QTest::keyClick(w->Page().View(), Qt::Key_Delete);
        step("Delete");
        QCOMPARE(w->Document().RptItemCount(), 2);

        // All the way back with Ctrl+Z ...
        for (int i = int(states.size()) - 1; i > 0; --i) {
            QCOMPARE(UndoText(*w), QStringLiteral("&Undo ") + names.at(i - 1));
            Key(*w, Qt::Key_Z, Qt::ControlModifier);
            const State s = Snap(*w, dir);
            QCOMPARE(s.dump, states[size_t(i - 1)].dump);
            QCOMPARE(s.bytes, states[size_t(i - 1)].bytes);
            QCOMPARE(RedoText(*w), QStringLiteral("&Redo ") + names.at(i - 1));
        }
        QVERIFY(!w->Commands().IsEnabled(u"miUndo"));
        QCOMPARE(w->Document().RptItemCount(), 0);
        QVERIFY(!w->Document().DirtyFlag); // back where the new report started

        // ... and all the way forward with Ctrl+Y and Ctrl+Shift+Z in turn.
        for (size_t i = 1; i < states.size(); ++i) {
            Key(*w, i % 2 ? Qt::Key_Y : Qt::Key_Z, i % 2 ? Qt::ControlModifier : Qt::ControlModifier | Qt::ShiftModifier);
            const State s = Snap(*w, dir);
            QCOMPARE(s.dump, states[i].dump);
            QCOMPARE(s.bytes, states[i].bytes);
        }
        QVERIFY(!w->Commands().IsEnabled(u"miRedo"));
        QCOMPARE(RedoText(*w), QStringLiteral("&Redo"));

        // A new change after an undo drops what could have been redone.
        Key(*w, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(w->Commands().IsEnabled(u"miRedo"));
        Draw(*w, "tbInsertRectangle", {6000, 600}, {7200, 1200});
        Settle();
        QVERIFY(!w->Commands().IsEnabled(u"miRedo"));
        QCOMPARE(UndoText(*w), QStringLiteral("&Undo Insert Rectangle"));
    }

    void undoRestoresNamesStackingPicturesAndSelection()
    {
        WindowTestHost host;
        Window w = Open();
        w->activateWindow();
        const QString picture = WritePicture(host.Local(QStringLiteral("red.bmp")));
        Draw(*w, "tbInsertRectangle", {600, 600}, {2400, 1800});
        Draw(*w, "tbInsertRectangle", {1200, 1200}, {3000, 2400});
        host.prompts.files.push_back(picture);
        Draw(*w, "tbInsertPicture", {3600, 600}, {4800, 1800});
        Settle();
        QCOMPARE(w->Document().RptItemCount(), 3);
        QCOMPARE(clsRptControl::Prop(Control(*w, 3), "FileName").toString(), picture);
        w->SelObj().ClearSelect();
        w->SelObj().Select(Control(*w, 1));
        Tool(*w, "miSendtoFront");
        Settle();
        const auto zOf = [&](int i) { return qobject_cast<QGraphicsObject*>(Control(*w, i))->zValue(); };
        QVERIFY(zOf(1) > zOf(2));
        const int zOrder = w->Document().Item(1).ZOrder;
        QVERIFY(zOrder != 0);

        // Delete everything (selected in an order of its own), then undo.
        w->SelObj().ClearSelect();
        for (int i : {3, 1, 2})
            w->SelObj().Select(Control(*w, i));
        Tool(*w, "miDeleteObject");
        Settle();
        QCOMPARE(w->Document().RptItemCount(), 0);
        QCOMPARE(UndoText(*w), QStringLiteral("&Undo Delete"));
        Tool(*w, "miUndo");
        QCOMPARE(w->Document().RptItemCount(), 3);
        QCOMPARE(w->Document().Item(1).Name, QStringLiteral("Rect1"));
        QCOMPARE(w->Document().Item(2).Name, QStringLiteral("Rect2"));
        QCOMPARE(w->Document().Item(3).Name, QStringLiteral("Image1"));
        QCOMPARE(w->Document().Item(1).ZOrder, zOrder);
        QVERIFY(zOf(1) > zOf(2));
        QCOMPARE(clsRptControl::Prop(Control(*w, 3), "FileName").toString(), picture);
        QVERIFY(!clsRptControl::Prop(Control(*w, 3), "Picture").value<QImage>().isNull());
        for (int i = 1; i <= 3; ++i)
            QCOMPARE(clsRptControl::Prop(Control(*w, i), "Tag").toInt(), i);
        const QList<QObject*> sel = w->SelObj().SelectedControls();
        QCOMPARE(sel.size(), 3);
        QCOMPARE(sel.at(0), Control(*w, 3));
        QCOMPARE(sel.at(1), Control(*w, 1));
        QCOMPARE(sel.at(2), Control(*w, 2));
        // The restored items are live: they move like any other.
        Drag(*w, {3900, 1200}, {3900 + 120, 1200});
        Settle();
        QCOMPARE(Geometry(Control(*w, 3)).left(), Floor60(3600) + 120);
        QCOMPARE(UndoText(*w), QStringLiteral("&Undo Move"));
    }

    void undoingToTheSavedStateClearsTheUnsavedMark()
    {
        WindowTestHost host;
        Window w = Open();
        w->activateWindow();
        Draw(*w, "tbInsertRectangle", {600, 600}, {2400, 1800});
        Settle();
        const QString file = host.Local(QStringLiteral("Users/tester/Reports/Listings/kept.rdf"));
        host.prompts.files.push_back(file);
        Key(*w, Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(w->ReportFile(), file);
        QVERIFY(!w->Document().DirtyFlag);
        QCOMPARE(w->History().Stack().Steps(), 1); // a save keeps the history

        w->SelObj().Select(Control(*w, 1));
        Key(*w, Qt::Key_Down);
        QVERIFY(w->Document().DirtyFlag);
        Key(*w, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(!w->Document().DirtyFlag);
        host.prompts.asked.clear();
        QVERIFY(!w->QuerySaveChanges()); // nothing to ask about
        QVERIFY(host.prompts.asked.empty());
        // Before the save is unsaved again; and so is the step after it.
        Key(*w, Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(w->Document().DirtyFlag);
        Key(*w, Qt::Key_Y, Qt::ControlModifier);
        QVERIFY(!w->Document().DirtyFlag);
        Key(*w, Qt::Key_Y, Qt::ControlModifier);
        QVERIFY(w->Document().DirtyFlag);
    }

    // A report the host hands the window (the flyer manager, --open) starts its own history:
    // the first change to it is a step that undoes back to the report as it was loaded.
    void reportSetByTheHostStartsItsOwnHistory()
    {
        WindowTestHost host;
        const QString file = host.Local(QStringLiteral("Users/tester/Reports/Listings/given.rdf"));
        {
            Window first = Open();
            Draw(*first, "tbInsertRectangle", {600, 600}, {2400, 1800});
            Draw(*first, "tbInsertRectangle", {3000, 600}, {4200, 1800});
            first->Document().SaveReport(file, false);
        }
        Window w = Open();
        w->activateWindow();
        QVERIFY(w->SetReport(file, QStringLiteral("given.rdf"), QString()));
        QCOMPARE(w->Document().RptItemCount(), 2);
        Settle();
        const QRectF before = Geometry(Control(*w, 1));
        QVERIFY2(!w->Commands().Action(QStringLiteral("miUndo"))->isEnabled(), "nothing to undo right after loading");
        Click(*w, {600, 1200});
        Key(*w, Qt::Key_Right);
        Settle();
        QCOMPARE(Geometry(Control(*w, 1)).left(), before.left() + 60);
        QVERIFY(w->Document().DirtyFlag);
        QCOMPARE(w->History().Stack().Steps(), 1);
        QCOMPARE(UndoText(*w), QStringLiteral("&Undo Move"));
        Tool(*w, "miUndo");
        QCOMPARE(Geometry(Control(*w, 1)), before);
        QCOMPARE(w->Document().RptItemCount(), 2);
        QVERIFY(!w->Document().DirtyFlag);
    }

    void selectionScrollingAndViewsAreNoSteps()
    {
        WindowTestHost host;
        Window w = Open();
        w->activateWindow();
        Draw(*w, "tbInsertRectangle", {600, 600}, {2400, 1800});
        Draw(*w, "tbInsertRectangle", {3000, 600}, {4200, 1800});
        Settle();
        QCOMPARE(w->History().Stack().Steps(), 2);
        Click(*w, {1200, 1200});
        Click(*w, {6000, 6000});
        Key(*w, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(w->SelObj().Count(), 2);
        w->Page().View()->verticalScrollBar()->setValue(200);
        Tool(*w, "miZoomIn");
        Tool(*w, "miTemplateView");
        Tool(*w, "miShowOutline");
        Tool(*w, "miShowOutline");
        Settle();
        QCOMPARE(w->History().Stack().Steps(), 2);
        // Undo brings back the selection of the time before the step.
        Tool(*w, "miUndo");
        QCOMPARE(w->Document().RptItemCount(), 1);
    }

    void dragOfManyItemsIsOneStep()
    {
        WindowTestHost host;
        Window w = Open();
        w->activateWindow();
        for (int i = 0; i < 20; ++i)
            Draw(*w, "tbInsertRectangle", {600.0 + (i % 5) * 1200, 600.0 + (i / 5) * 1200},
                 {1200.0 + (i % 5) * 1200, 1200.0 + (i / 5) * 1200});
        Settle();
        QCOMPARE(w->History().Stack().Steps(), 20);
        Key(*w, Qt::Key_A, Qt::ControlModifier);
        Drag(*w, {900, 605}, {900 + 600, 605 + 600});
        Settle();
        QCOMPARE(w->History().Stack().Steps(), 21);
        QCOMPARE(UndoText(*w), QStringLiteral("&Undo Move"));
        Tool(*w, "miUndo");
        QCOMPARE(Geometry(Control(*w, 20)).topLeft(), QPointF(Floor60(600 + 4 * 1200), Floor60(600 + 3 * 1200)));
    }

    void sectionsAndPageHeaderAreUndone()
    {
        WindowTestHost host;
        Window w = Open();
        w->activateWindow();
        Draw(*w, "tbInsertRectangle", {600, 600}, {2400, 1800});
        Settle();
        const QRectF before = Geometry(Control(*w, 1));
        Tool(*w, "miPageHeader");
        Settle();
        QVERIFY(w->Page().HeaderFooterShown());
        QCOMPARE(UndoText(*w), QStringLiteral("&Undo Page Header/Footer"));
        QVERIFY(Geometry(Control(*w, 1)).top() > before.top()); // the detail items moved down
        Tool(*w, "miUndo");
        QVERIFY(!w->Page().HeaderFooterShown());
        QVERIFY(!w->Commands().IsChecked(u"miPageHeader"));
        QCOMPARE(Geometry(Control(*w, 1)), before);
        Tool(*w, "miRedo");
        QVERIFY(w->Page().HeaderFooterShown());
        QVERIFY(w->Commands().IsChecked(u"miPageHeader"));
        QCOMPARE(w->Page().DetailHeaderBarOffset(), 220.f + 1440);
    }

    void memoryCapDropsTheOldestSteps()
    {
        WindowTestHost host;
        Window w = Open();
        UndoStack& stack = w->History().Stack();
        for (int i = 0; i < 6; ++i)
            Draw(*w, "tbInsertRectangle", {600.0 + i * 600, 600}, {1000.0 + i * 600, 1200});
        Settle();
        QCOMPARE(stack.Steps(), 6);
        const qint64 used = stack.MemoryUsed();
        const qint64 cap = used * 4 / 5;
        stack.SetMemoryCap(cap);
        QVERIFY(stack.Steps() < 6);
        QVERIFY(stack.MemoryUsed() <= cap || stack.Steps() == 0);
        // What remains still undoes correctly.
        const int left = stack.Steps();
        for (int i = 0; i < left; ++i)
            QVERIFY(stack.Undo());
        QVERIFY(!stack.CanUndo());
        QCOMPARE(w->Document().RptItemCount(), 6 - left);
    }
};

QTEST_MAIN(TestUndo)
#include "tst_undo.moc"
