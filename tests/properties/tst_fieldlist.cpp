// The field list tool window: tabs from the dictionary, the list per tab, starting a field drag,
// Enter and double-click, and its life as a tool window.
#include "support_fielddictionary.h"
#include "entry/support_fakehost.h"
#include "properties/frmRptFields.h"

#include <QDrag>
#include <QListWidget>
#include <QMimeData>
#include <QTabBar>
#include <QtTest>

namespace {
QStringList Tabs(const frmRptFields& f)
{
    QStringList out;
    for (int i = 0; i < f.TypeTabs()->count(); ++i)
        out << f.TypeTabs()->tabText(i) + QLatin1Char('=') + f.TypeTabs()->tabData(i).toString();
    return out;
}

QStringList Entries(const frmRptFields& f)
{
    QStringList out;
    for (int i = 0; i < f.FieldList()->count(); ++i) {
        const QListWidgetItem* it = f.FieldList()->item(i);
        out << it->text() + QLatin1Char('=') + it->data(Qt::UserRole).toString();
    }
    return out;
}

QPoint EntryPoint(const frmRptFields& f, int row)
{
    return f.FieldList()->visualItemRect(f.FieldList()->item(row)).center();
}

// The field list of a fresh window over `dic`, shown, with drags recorded instead of run.
struct Fixture {
    FakeHost host;
    GroupDictionary dic;
    RecordingOwner owner;
    frmRptFields win;
    QList<QPair<QString, int>> dragged; // what each started drag carried
    QList<bool> dragFlagDuring;
    std::function<void(QDrag*)> onDrag;

    explicit Fixture(int kind = 1)
    {
        gHost = &host;
        dic.kind = kind;
        win.SetDragRunner([this](QDrag* d) {
            QString name;
            int id = -1;
            if (frmRptFields::ReadFieldMime(d->mimeData(), name, id))
                dragged.append({name, id});
            dragFlagDuring << owner.dragField;
            if (onDrag)
                onDrag(d);
            return Qt::IgnoreAction;
        });
    }
    ~Fixture() { gHost = nullptr; }
    void Start()
    {
        win.Init(&dic, &owner);
        win.show();
        QVERIFY(QTest::qWaitForWindowExposed(&win));
    }
    // Press on an entry and pull the mouse away with the left button held.
    void PullEntry(int row)
    {
        QWidget* vp = win.FieldList()->viewport();
        const QPoint at = EntryPoint(win, row);
        QTest::mousePress(vp, Qt::LeftButton, {}, at);
        QTest::mouseMove(vp, at + QPoint(30, 0));
        QTest::mouseRelease(vp, Qt::LeftButton, {}, at + QPoint(30, 0));
    }
};
} // namespace

class tst_fieldlist : public QObject {
    Q_OBJECT
private slots:
    void listingTabsFollowTheGroupCodes()
    {
        Fixture f;
        f.Start();
        QCOMPARE(f.win.windowTitle(), QStringLiteral("Available Fields"));
        QCOMPARE(Tabs(f.win), QStringList({"General=GEN", "Financial=FIN", "Address=ADR", "All="}));
        QCOMPARE(f.dic.selected.first(), 5);
        QCOMPARE(f.win.TypeTabs()->currentIndex(), 0);
        QCOMPARE(Entries(f.win), QStringList({"List Number=1", "List Date=3"}));
        QCOMPARE(f.win.FieldName(), QString()); // nothing chosen yet
        QCOMPARE(f.win.DicId(), 0);

        f.win.TypeTabs()->setCurrentIndex(1);
        QCOMPARE(Entries(f.win), QStringList({"List Price=2", "Taxes=7"}));
        f.win.FieldList()->setCurrentRow(1);
        QCOMPARE(f.win.FieldName(), QStringLiteral("Taxes"));
        QCOMPARE(f.win.DicId(), 7);

        f.win.TypeTabs()->setCurrentIndex(3);
        QCOMPARE(Entries(f.win), QStringList({"List Number=1", "List Price=2", "List Date=3", "Street Name=6", "Taxes=7"}));
        // Each tab asked for its own group once; "All" asks for no restriction.
        QCOMPARE(f.dic.groupCalls, QStringList({"GEN", "FIN", ""}));
    }

    void onlyAllTab_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("groupFieldMissing");
        QTest::newRow("tax rolls") << 2 << false;
        QTest::newRow("offices") << 3 << false;
        QTest::newRow("members") << 4 << false;
        QTest::newRow("rentals") << 5 << false;
        QTest::newRow("listings without the group field") << 1 << true;
    }
    void onlyAllTab()
    {
        QFETCH(int, kind);
        QFETCH(bool, groupFieldMissing);
        Fixture f(kind);
        f.dic.groupFieldMissing = groupFieldMissing;
        f.Start();
        QCOMPARE(Tabs(f.win), QStringList({"All="}));
        if (kind != 1)
            QVERIFY(f.dic.selected.isEmpty()); // the group field is not even looked at
        QCOMPARE(f.dic.groupCalls, QStringList({""}));
        QCOMPARE(f.win.FieldList()->count(), int(f.dic.fields.size()));
    }

    void dragNeedsButtonEntryAndNoDragUnderWay()
    {
        Fixture f;
        f.Start();
        QWidget* vp = f.win.FieldList()->viewport();
        const QPoint at = EntryPoint(f.win, 1);

        for (const QPoint p : {at, at + QPoint(40, 0), at + QPoint(80, 0)}) { // no button held
            QMouseEvent move(QEvent::MouseMove, p, vp->mapToGlobal(p), Qt::NoButton, Qt::NoButton, {});
            QApplication::sendEvent(vp, &move);
        }
        QVERIFY(f.dragged.isEmpty());

        f.owner.dragField = true; // a drag already under way
        f.PullEntry(1);
        QVERIFY(f.dragged.isEmpty());
        f.owner.dragField = false;

        // Pressed below the last entry: nothing to drag.
        const QPoint empty(at.x(), vp->height() - 3);
        QVERIFY(!f.win.FieldList()->itemAt(empty));
        QTest::mousePress(vp, Qt::LeftButton, {}, empty);
        QTest::mouseMove(vp, empty - QPoint(0, 40));
        QTest::mouseRelease(vp, Qt::LeftButton, {}, empty - QPoint(0, 40));
        QVERIFY(f.dragged.isEmpty());

        // Right button: a context click, never a drag.
        QTest::mousePress(vp, Qt::RightButton, {}, at);
        QTest::mouseMove(vp, at + QPoint(40, 0));
        QTest::mouseRelease(vp, Qt::RightButton, {}, at + QPoint(40, 0));
        QVERIFY(f.dragged.isEmpty());

        f.PullEntry(1);
        QCOMPARE(f.dragged, (QList<QPair<QString, int>>{{QStringLiteral("List Date"), 3}}));
        QCOMPARE(f.dragFlagDuring, QList<bool>{true});
        QVERIFY(!f.owner.dragField); // over once the drag has ended
        QVERIFY(f.owner.added.isEmpty());
    }

    void dropBackOnListCreatesNothing()
    {
        Fixture f;
        f.Start();
        bool flagAfterDrop = true;
        Qt::DropAction action = Qt::CopyAction;
        bool accepted = false;
        f.onDrag = [&](QDrag* d) {
            QWidget* vp = f.win.FieldList()->viewport();
            const QPoint at = EntryPoint(f.win, 0);
            QDragEnterEvent enter(at, Qt::CopyAction, d->mimeData(), Qt::LeftButton, {});
            QApplication::sendEvent(vp, &enter);
            QVERIFY(enter.isAccepted());
            QDropEvent drop(at, Qt::CopyAction, d->mimeData(), Qt::LeftButton, {});
            QApplication::sendEvent(vp, &drop);
            accepted = drop.isAccepted();
            action = drop.dropAction();
            flagAfterDrop = f.owner.dragField;
        };
        f.PullEntry(0);
        QCOMPARE(f.dragged.size(), 1);
        QVERIFY(accepted);
        QCOMPARE(action, Qt::IgnoreAction);
        QVERIFY(!flagAfterDrop); // the list ended the drag itself
        QVERIFY(f.owner.added.isEmpty());
        QCOMPARE(f.win.FieldList()->count(), 2); // the list itself is unchanged

        // Something else dragged over the list is refused.
        QMimeData text;
        text.setText(QStringLiteral("List Date"));
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &text, Qt::LeftButton, {});
        QApplication::sendEvent(f.win.FieldList()->viewport(), &enter);
        QVERIFY(!enter.isAccepted());
    }

    void enterAndDoubleClickAddTheField()
    {
        Fixture f;
        f.Start();
        QListWidget* list = f.win.FieldList();
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Return); // nothing chosen: nothing added
        QVERIFY(f.owner.added.isEmpty());

        list->setCurrentRow(0);
        QTest::keyClick(list, Qt::Key_Return);
        QTest::keyClick(list, Qt::Key_Down);
        QTest::keyClick(list, Qt::Key_Enter);
        f.win.TypeTabs()->setCurrentIndex(1);
        // A real double-click: press, release, then the double-click press and its release.
        const QPoint at = EntryPoint(f.win, 1);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseRelease(list->viewport(), Qt::LeftButton, {}, at);
        QCOMPARE(f.owner.added, (QList<QPair<QString, int>>{{QStringLiteral("List Number"), 1},
                                                            {QStringLiteral("List Date"), 3},
                                                            {QStringLiteral("Taxes"), 7}}));
        QVERIFY(f.dragged.isEmpty());
    }

    void closeHidesAndHostEventsHideRestoreUnload()
    {
        Fixture f;
        f.Start();
        QVERIFY(!f.win.close()); // the close is refused...
        QVERIFY(!f.win.isVisible()); // ...and the window put away
        f.win.show();
        QVERIFY(f.win.isVisible());

        emit f.host.events.MinimizedChanged(true);
        QVERIFY(!f.win.isVisible());
        emit f.host.events.MinimizedChanged(true); // said twice: still remembers "shown"
        emit f.host.events.MinimizedChanged(false);
        QVERIFY(f.win.isVisible());

        // Hidden before the host was minimised: stays hidden when it comes back.
        f.win.hide();
        emit f.host.events.MinimizedChanged(true);
        emit f.host.events.MinimizedChanged(false);
        QVERIFY(!f.win.isVisible());

        f.win.show();
        emit f.host.events.UnloadForm();
        QVERIFY(!f.win.isVisible());
        emit f.host.events.MinimizedChanged(false); // no longer listening
        QVERIFY(!f.win.isVisible());
    }

    void fieldMimeRoundTripAndHostileData_data()
    {
        QTest::addColumn<QByteArray>("payload");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("dicId");
        QTest::newRow("plain") << QByteArray("12\tList Price") << true << "List Price" << 12;
        QTest::newRow("tab in name") << QByteArray("3\tA\tB") << true << "A\tB" << 3;
        QTest::newRow("utf-8") << QByteArray("4\tSuperficie m\xc2\xb2") << true << QString::fromUtf8("Superficie m\xc2\xb2") << 4;
        QTest::newRow("largest id") << QByteArray("32767\tX") << true << "X" << 32767;
        QTest::newRow("id too large") << QByteArray("32768\tX") << false << "" << 0;
        QTest::newRow("negative id") << QByteArray("-1\tX") << false << "" << 0;
        QTest::newRow("not a number") << QByteArray("x1\tX") << false << "" << 0;
        QTest::newRow("no name") << QByteArray("5\t") << false << "" << 0;
        QTest::newRow("no tab") << QByteArray("5 List Price") << false << "" << 0;
        QTest::newRow("empty") << QByteArray() << false << "" << 0;
    }
    void fieldMimeRoundTripAndHostileData()
    {
        QFETCH(QByteArray, payload);
        QFETCH(bool, ok);
        QFETCH(QString, name);
        QFETCH(int, dicId);
        QMimeData data;
        data.setData(frmRptFields::MimeType, payload);
        QString gotName = QStringLiteral("<unset>");
        int gotId = -7;
        QCOMPARE(frmRptFields::ReadFieldMime(&data, gotName, gotId), ok);
        if (ok) {
            QCOMPARE(gotName, name);
            QCOMPARE(gotId, dicId);
            // Written by the list, read back the same.
            std::unique_ptr<QMimeData> again(frmRptFields::NewFieldMime(name, dicId));
            QString n2;
            int id2 = 0;
            QVERIFY(frmRptFields::ReadFieldMime(again.get(), n2, id2));
            QCOMPARE(n2, name);
            QCOMPARE(id2, dicId);
        } else {
            QCOMPARE(gotName, QStringLiteral("<unset>")); // untouched on failure
            QCOMPARE(gotId, -7);
        }
        QMimeData plain;
        plain.setText(QStringLiteral("12\tList Price"));
        QVERIFY(!frmRptFields::ReadFieldMime(&plain, gotName, gotId));
        QVERIFY(!frmRptFields::ReadFieldMime(nullptr, gotName, gotId));
    }
};

QTEST_MAIN(tst_fieldlist)
#include "tst_fieldlist.moc"
