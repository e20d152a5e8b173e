#include "design/CommandBar.h"
#include "design/CommandTable.h"
#include "entry/ReportKinds.h"

#include <QAction>
#include <QActionGroup>
#include <QComboBox>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QSignalSpy>
#include <QToolBar>
#include <QToolButton>
#include <QtTest>

namespace {
QStringList AllNames()
{
    QStringList names;
    for (const CommandDef& d : Commands())
        names << d.Name();
    return names;
}

QStringList ToolNamesOf(const QWidget* container)
{
    QStringList names;
    for (const QAction* a : container->actions())
        if (!a->isSeparator())
            names << a->objectName();
    return names;
}

struct Window {
    QMainWindow w;
    CommandBar* bar = new CommandBar(&w);
    Window() { bar->SetImplemented(AllNames()); }
};
}

class TestCommands : public QObject {
    Q_OBJECT
private slots:
    void tableDefinesEachToolOnce()
    {
        QSet<QString> seen;
        for (const CommandDef& d : Commands()) {
            QVERIFY2(!seen.contains(d.Name()), qPrintable(d.Name()));
            seen.insert(d.Name());
        }
        QCOMPARE(seen.size(), int(Commands().size()));

        QVERIFY(FindCommand(u"miSave"));
        QCOMPARE(FindCommand(u"miSave")->Name(), QString("miSave"));
        QVERIFY(!FindCommand(u"MISAVE"));   // names are compared exactly
        QVERIFY(!FindCommand(u"miSave "));
        QVERIFY(!FindCommand(u""));
        QVERIFY(!FindCommand(u"-"));
        QVERIFY(!FindBand(u"barformatting"));

        QStringList unplaced;
        for (const CommandDef& d : Commands()) {
            if (d.opensBand)
                QVERIFY2(FindBand(QString::fromLatin1(d.opensBand)), d.opensBand);
            if (PlacementsOf(d.Name()).isEmpty())
                unplaced << d.Name();
        }
        QCOMPARE(unplaced, QStringList({"mnuTools", "mnuWindow", "miSaveFlyer", "miSaveFlyerAs"}));
        for (const BandDef& b : Bands())
            for (const QString& t : BandToolNames(b))
                QVERIFY2(FindCommand(t), qPrintable(b.Name() + ": " + t));

        QCOMPARE(PlacementsOf(u"printpreview"),
                 QList<Placement>({{"mnuFile", 2}, {"mnuView", 2}, {"barReportDesign", 1}}));
        QCOMPARE(PlacementsOf(u"cpColor15"),
                 QList<Placement>({{"barForeColor", 15}, {"barBackColor", 15}, {"barBorderColor", 15}}));
    }

    void toolTexts_data()
    {
        QTest::addColumn<QString>("tip");
        QTest::addColumn<QString>("category");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("description");
        const auto row = [](const char* n, const char* tip, const char* cat, const char* cap, const char* desc) {
            QTest::newRow(n) << QString(tip) << QString(cat) << QString(cap) << QString(desc);
        };
        // Rows that are easy to get wrong: access keys, odd spacing and spelling, tips that differ from captions.
        row("miSaveAs", "Save under a new name", "File", "Save &As...", "Saves current file with a new name");
        row("miSaveFlyer", "Save as flyer", "File", "Save Flyer", "");
        row("miSelectProperty", "Select the Property whos data you wish to use to populate your report", "File",
            "Select Property", "");
        row("exit", "Exit", "File", "E&xit", "Close all documents and exit");
        row("miGridSetup", "Grid  Settings", "View", "Grid Settings", "Display grid");
        row("miEffectShadow", "Effect", "Misc", "Shadow", "Shadow");
        row("tbInsertRectangle", "Rectangle", "Toolbox", "Rectangle", "Insert a Text box");
        row("miClearDataSource", "Clear Dic data source field when saving report", "Toolbox",
            "Clear Data Source on Save", "");
        row("cpColor12", "Red", "ColorPalette", "Red", "");
        row("mnuFormat", "", "Built-in Menus", "Fo&rmat", "");
    }
    void toolTexts()
    {
        QFETCH(QString, tip);
        QFETCH(QString, category);
        QFETCH(QString, caption);
        QFETCH(QString, description);
        const QString name = QTest::currentDataTag();
        const CommandDef* d = FindCommand(name);
        QVERIFY(d);
        QCOMPARE(QString(d->toolTip), tip);
        QCOMPARE(QString(d->category), category);
        QCOMPARE(QString(d->caption), caption);
        QCOMPARE(QString(d->description), description);

        Window win;
        QAction* a = win.bar->Action(name);
        QVERIFY(a);
        QCOMPARE(a->objectName(), name);
        QCOMPARE(a->text(), caption);
        if (!tip.isEmpty())
            QCOMPARE(a->toolTip(), tip);
        QCOMPARE(a->statusTip(), description);
    }

    void bandsHoldTheirToolsInOrder()
    {
        // Orders users see and a table edit easily breaks; below, every band's widgets must match the band table.
        const QList<std::pair<const char*, QStringList>> fixed = {
            {"mnuMain", {"mnuFile", "mnuEdit", "mnuView", "mnuInsert", "mnuFormat", "mnuHelp"}},
            {"mnuFile", {"new", "Open", "printpreview", "PrintFromFileMenu", "miPrintMany", "miPageSetup", "miPrintSetup", "miSave", "miSaveAs",
                         "miSelectProperty", "miClearDataSource", "exit"}},
            {"barToolbox", {"tbSelectObjects", "tbInsertLabel", "tbInsertPicture", "tbBoundPicture",
                            "tbInsertRectangle", "tbInsertLine"}}};
        for (const auto& [band, tools] : fixed) {
            QVERIFY2(FindBand(QString(band)), band);
            QCOMPARE(BandToolNames(*FindBand(QString(band))), tools);
        }

        Window win;
        for (const BandDef& band : Bands()) {
            const QString name = band.Name();
            const QWidget* container = name == "mnuMain"       ? static_cast<QWidget*>(win.w.menuBar())
                                       : win.bar->ToolBar(name) ? static_cast<QWidget*>(win.bar->ToolBar(name))
                                                                : win.bar->Menu(name);
            QVERIFY2(container, qPrintable(name));
            QCOMPARE(container->objectName(), name);
            QCOMPARE(ToolNamesOf(container), BandToolNames(band));
            // The same action object everywhere, so state set once shows in every place.
            for (const QAction* a : container->actions())
                if (!a->isSeparator())
                    QCOMPARE(a, win.bar->Action(a->objectName()));
        }
    }

    void dropDownsOpenTheirBands()
    {
        Window win;
        CommandBar& b = *win.bar;
        const QList<std::pair<const char*, const char*>> opens = {
            {"mnuFile", "mnuFile"}, {"tbInsertPicture", "PopInsertPhoto"}, {"miEffect", "PopEffect"},
            {"tbBorderColor", "barBorderColor"}};
        for (const auto& [tool, band] : opens) {
            QVERIFY(b.Menu(QString(band)));
            QCOMPARE(b.Action(QString(tool))->menu(), b.Menu(QString(band)));
        }
        QVERIFY(!b.Action(u"mnuHelp")->menu()); // Help acts on a click
        QCOMPARE(win.w.toolBarArea(b.ToolBar(u"barToolbox")), Qt::LeftToolBarArea);

        const auto mode = [&](const char* bar, const char* tool) {
            auto* button = qobject_cast<QToolButton*>(b.ToolBar(QString(bar))->widgetForAction(b.Action(QString(tool))));
            return button ? int(button->popupMode()) : -1;
        };
        QCOMPARE(mode("barToolbox", "tbInsertPicture"), int(QToolButton::MenuButtonPopup));
        QCOMPARE(mode("barFormatting", "fnBackColor"), int(QToolButton::InstantPopup));
        QCOMPARE(mode("barReportDesign", "miEffect"), int(QToolButton::InstantPopup));
    }

    void toolboxTools_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<bool>("bound");
        QTest::addColumn<bool>("embedded");
        QTest::newRow("tbSelectObjects") << 0 << false << false;
        QTest::newRow("tbInsertLabel") << 2 << false << false;
        QTest::newRow("tbInsertPicture") << 5 << false << true;
        QTest::newRow("EmbedPhoto") << 5 << false << true;
        QTest::newRow("InsertLinkedPhoto") << 5 << false << false;
        QTest::newRow("tbBoundPicture") << 5 << true << false;
        QTest::newRow("miSelectByArea") << 12 << false << false;
    }
    void toolboxTools()
    {
        QFETCH(int, code);
        QFETCH(bool, bound);
        QFETCH(bool, embedded);
        const QString name = QTest::currentDataTag();
        Window win;
        CommandBar& b = *win.bar;
        QCOMPARE(b.CurrentTool(), 0);
        QVERIFY(b.IsChecked(u"tbSelectObjects"));

        // Start from the opposite picture mode so both flags must really be set.
        b.Action(bound ? u"InsertLinkedPhoto" : u"tbBoundPicture")->trigger();
        b.Action(u"tbInsertLine")->trigger();
        int toolAtSignal = -1;
        QStringList seen;
        connect(&b, &CommandBar::triggered, &b, [&](const QString& n) { seen << n; toolAtSignal = b.CurrentTool(); });
        b.Action(name)->trigger();
        QCOMPARE(seen, QStringList{name});
        QCOMPARE(toolAtSignal, code); // the dispatcher already sees the new tool
        QCOMPARE(b.CurrentTool(), code);
        if (code == 5) {
            QCOMPARE(b.PictureBound(), bound);
            QCOMPARE(b.PictureEmbedded(), embedded);
        }
        QStringList checked;
        for (const CommandDef& d : Commands())
            if (d.kind == ToolKind::Toolbox && b.IsChecked(d.Name()))
                checked << d.Name();
        QCOMPARE(checked, QStringList{name});

        // Clicking the checked tool again keeps it.
        b.Action(name)->trigger();
        QVERIFY(b.IsChecked(name));

        b.ResetToolButtons();
        QCOMPARE(b.CurrentTool(), 0);
        QVERIFY(b.IsChecked(u"tbSelectObjects"));
        QCOMPARE(b.IsChecked(name), name == "tbSelectObjects");
    }

    void checkMarks()
    {
        Window win;
        CommandBar& b = *win.bar;
        QVERIFY(b.IsChecked(u"miTemplateView"));
        QVERIFY(!b.IsChecked(u"miDataView"));

        using Marks = QList<std::pair<QString, bool>>;
        Marks atSignal;
        connect(&b, &CommandBar::triggered, &b, [&](const QString& n) { atSignal.append({n, b.IsChecked(n)}); });
        const auto click = [&](const QString& n) {
            atSignal.clear();
            b.Action(n)->trigger();
            return atSignal;
        };
        // Marks the program keeps: a click reports the mark as it was and leaves it.
        for (const char* tool : {"fnBold", "fnLeft", "miEffectShadow", "miPageHeader", "miDataView"}) {
            const QString n = tool;
            QCOMPARE(click(n), (Marks{{n, false}}));
            QVERIFY(!b.IsChecked(n));
            b.SetChecked(n, true);
            QCOMPARE(click(n), (Marks{{n, true}}));
            QVERIFY(b.IsChecked(n));
        }
        // Marks that flip themselves.
        for (const char* tool : {"miShowOutline", "miClearDataSource"}) {
            const QString n = tool;
            QCOMPARE(click(n), (Marks{{n, true}}));
            QCOMPARE(click(n), (Marks{{n, false}}));
        }
        // Plain commands take no mark.
        b.SetChecked(u"miSave", true);
        QVERIFY(!b.IsChecked(u"miSave"));
    }

    void switchedOffTools_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("level");
        QTest::addColumn<QStringList>("off");
        QTest::addColumn<QString>("caption");
        QTest::newRow("listings, level 100") << ReportKind::Listings << 100 << QStringList() << "Select Property";
        QTest::newRow("flyers, level 250") << ReportKind::Flyers << 250 << QStringList() << "Select Property";
        QTest::newRow("tax rolls") << ReportKind::Taxrolls << 100 << QStringList{"tbBoundPicture"} << "Select Property";
        QTest::newRow("office, level 99") << ReportKind::Office << 99
                                          << QStringList{"tbBoundPicture", "tbSubReport", "miClearDataSource"}
                                          << "Select Office";
        QTest::newRow("members, level 0") << ReportKind::Members << 0
                                          << QStringList{"tbSubReport", "miClearDataSource"} << "Select Agent";
        QTest::newRow("rental, level -1") << ReportKind::Rental << -1
                                          << QStringList{"tbSubReport", "miClearDataSource"} << "Select Rental";
    }
    void switchedOffTools()
    {
        QFETCH(int, kind);
        QFETCH(int, level);
        QFETCH(QStringList, off);
        QFETCH(QString, caption);
        QCOMPARE(SwitchedOffTools(kind, level), off);
        QCOMPARE(SelectPropertyCaption(kind), caption);

        Window win;
        CommandBar& b = *win.bar;
        // A different set-up first: applying again must undo it.
        b.ApplyReportKindAndLevel(ReportKind::Office, 0);
        b.ApplyReportKindAndLevel(kind, level);
        QCOMPARE(b.Action(u"miSelectProperty")->text(), caption);
        QSignalSpy spy(&b, &CommandBar::triggered);
        for (const char* tool : {"tbBoundPicture", "tbSubReport", "miClearDataSource", "tbInsertLine"}) {
            const QString n = tool;
            b.SetEnabled(n, true); // cannot bring a switched-off tool back
            QCOMPARE(b.IsEnabled(n), !off.contains(n));
            b.Action(n)->trigger();
        }
        QCOMPARE(spy.count(), 4 - off.size());
        if (off.contains("tbSubReport")) {
            QCOMPARE(b.CurrentTool(), 4); // the last live tool, tbInsertLine
            QVERIFY(!b.IsChecked(u"tbSubReport"));
        }
    }

    void triggerEmitsItsName()
    {
        Window win;
        QSignalSpy spy(win.bar, &CommandBar::triggered);
        int expected = 0;
        for (const CommandDef& d : Commands()) {
            if (d.kind == ToolKind::Menu || d.kind == ToolKind::Combo)
                continue;
            win.bar->Action(d.Name())->trigger();
            ++expected;
            QCOMPARE(spy.count(), expected);
            QCOMPARE(spy.last().at(0).toString(), d.Name());
        }
        QVERIFY(expected > 60);
    }

    void unimplementedCommandsAreDisabled()
    {
        QMainWindow w;
        CommandBar b(&w);
        for (const CommandDef& d : Commands())
            QCOMPARE(b.IsEnabled(d.Name()), d.kind == ToolKind::Menu);
        QVERIFY(!w.findChild<QComboBox*>("fnFont")->isEnabled());

        b.SetImplemented({"miSave", "fnFont", "cpColor3", "nonsense"});
        QStringList live;
        for (const CommandDef& d : Commands())
            if (b.IsEnabled(d.Name()) && d.kind != ToolKind::Menu)
                live << d.Name();
        QCOMPARE(live, QStringList({"miSave", "fnFont", "cpColor3"}));
        for (QComboBox* box : w.findChildren<QComboBox*>("fnFont"))
            QVERIFY(box->isEnabled());
        QVERIFY(b.IsEnabled(u"mnuFile"));

        QSignalSpy spy(&b, &CommandBar::triggered);
        b.Action(u"miCut")->trigger();
        b.Action(u"cpColor4")->trigger();
        b.Action(u"fnBold")->trigger();
        QCOMPARE(spy.count(), 0);
        QVERIFY(!b.IsChecked(u"fnBold"));
        b.SetEnabled(u"miCut", true); // not implemented: stays off
        QVERIFY(!b.IsEnabled(u"miCut"));

        b.SetEnabled(u"miSave", false);
        QVERIFY(!b.IsEnabled(u"miSave"));
        b.Action(u"miSave")->trigger();
        QCOMPARE(spy.count(), 0);
        b.SetEnabled(u"miSave", true);
        b.Action(u"miSave")->trigger();
        QCOMPARE(spy.count(), 1);

        // Unknown names are ignored rather than crashing the window.
        b.SetEnabled(u"nonsense", true);
        b.SetChecked(u"nonsense", true);
        b.SetCaption(u"nonsense", "x");
        QVERIFY(!b.Action(u"nonsense"));
        QVERIFY(!b.IsEnabled(u"nonsense"));
    }

    void comboTools()
    {
        Window win;
        CommandBar& b = *win.bar;
        QCOMPARE(b.ComboItems(u"fnFontSize"),
                 QStringList({"8", "10", "11", "12", "14", "16", "18", "20", "22", "24", "26", "36", "48", "72"}));
        const QList<QComboBox*> sizes = win.w.findChildren<QComboBox*>("fnFontSize");
        QCOMPARE(sizes.size(), 2); // tool bar and Format menu
        QVERIFY(b.ToolBar(u"barFormatting")->findChild<QComboBox*>("fnFontSize"));
        QVERIFY(b.Menu(u"mnuFormat")->findChild<QComboBox*>("fnFontSize"));

        QSignalSpy spy(&b, &CommandBar::comboChanged);
        b.SetComboText(u"fnFontSize", "10");
        QCOMPARE(spy.count(), 0);
        for (QComboBox* box : sizes)
            QCOMPARE(box->currentText(), QString("10"));

        // Typing a size that is not in the list (there is no 9) and pressing Enter.
        QLineEdit* edit = sizes[0]->lineEdit();
        edit->selectAll();
        QTest::keyClicks(edit, "9x");
        QCOMPARE(edit->text(), QString("9")); // only numbers can be typed
        QTest::keyClick(edit, Qt::Key_Return);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0), (QList<QVariant>{"fnFontSize", "9"}));
        QCOMPARE(b.ComboText(u"fnFontSize"), QString("9"));
        QCOMPARE(sizes[1]->currentText(), QString("9"));
        emit edit->editingFinished(); // leaving the box afterwards reports nothing new
        QCOMPARE(spy.count(), 1);

        // Emptying the box restores the last value instead of reporting "".
        edit->clear();
        QTest::keyClick(edit, Qt::Key_Return);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(edit->text(), QString("9"));

        // The object list is a fixed list; keyboard picks report the chosen name.
        b.SetComboItems(u"miObjectName", {"Label1", "Field2"});
        auto* objects = b.ToolBar(u"barFormatting")->findChild<QComboBox*>("miObjectName");
        QVERIFY(objects && !objects->isEditable());
        QCOMPARE(objects->currentIndex(), -1);
        QTest::keyClick(objects, Qt::Key_Down);
        QCOMPARE(spy.count(), 2);
        QCOMPARE(spy.at(1), (QList<QVariant>{"miObjectName", "Label1"}));
        b.SetComboText(u"miObjectName", "Field2");
        QCOMPARE(objects->currentText(), QString("Field2"));
        b.SetComboItems(u"miObjectName", {});
        QCOMPARE(objects->count(), 0);
        QCOMPARE(spy.count(), 2);
        QCOMPARE(b.ComboText(u"miSave"), QString()); // not a combo
    }

    void paletteColors_data()
    {
        QTest::addColumn<int>("n");
        QTest::addColumn<uint>("bgr");
        // Values are BGR: dark blue is 0x800000 and bright red 0x0000FF.
        QTest::newRow("color 0") << 0 << 0x000000u;
        QTest::newRow("color 1") << 1 << 0x800000u;
        QTest::newRow("color 6") << 6 << 0x008080u;
        QTest::newRow("color 12") << 12 << 0x0000FFu;
        QTest::newRow("color 15") << 15 << 0xFFFFFFu;
        QTest::newRow("below") << -1 << 0u;
        QTest::newRow("above") << 16 << 0u;
    }
    void paletteColors()
    {
        QFETCH(int, n);
        QFETCH(uint, bgr);
        QCOMPARE(QBColor(n), quint32(bgr));
        if (n < 0 || n > 15)
            return;
        Window win;
        const QString name = QStringLiteral("cpColor%1").arg(n);
        QCOMPARE(FindCommand(name)->paletteIndex, n);
        const QImage swatch = win.bar->Action(name)->icon().pixmap(16, 16).toImage();
        QCOMPARE(swatch.pixelColor(8, 8), QColor(int(bgr & 0xFF), int((bgr >> 8) & 0xFF), int(bgr >> 16)));
    }

    void openingAPaletteSetsItsTarget()
    {
        Window win;
        CommandBar& b = *win.bar;
        QCOMPARE(b.PaletteTarget(), 0);
        QSignalSpy opened(&b, &CommandBar::bandOpened);
        const auto open = [&](const char* band) {
            QMenu* m = b.Menu(QString(band));
            m->popup(QPoint(0, 0));
            m->hide();
        };
        open("barBackColor");
        QCOMPARE(b.PaletteTarget(), 2);
        open("barForeColor");
        QCOMPARE(b.PaletteTarget(), 1);
        open("barBorderColor");
        QCOMPARE(b.PaletteTarget(), 3);
        open("PopEffect"); // not a palette: the target stays
        QCOMPARE(b.PaletteTarget(), 3);
        open("barBackColor");
        QCOMPARE(b.PaletteTarget(), 2);
        QStringList names;
        for (const auto& args : opened)
            names << args.at(0).toString();
        QCOMPARE(names, QStringList({"barBackColor", "barForeColor", "barBorderColor", "PopEffect", "barBackColor"}));

        b.Action(u"cpColor12")->trigger(); // a colour click keeps the target for the dispatcher
        QCOMPARE(b.PaletteTarget(), 2);
    }

    void shortcutReachesItsCommand()
    {
        Window win;
        win.w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&win.w));
        win.w.activateWindow();
        QSignalSpy spy(win.bar, &CommandBar::triggered);
        QTest::keyClick(&win.w, Qt::Key_S, Qt::ControlModifier);
        QTest::keyClick(&win.w, Qt::Key_B, Qt::ControlModifier);
        QCOMPARE(spy.count(), 2);
        QCOMPARE(spy.at(0).at(0).toString(), QString("miSave"));
        QCOMPARE(spy.at(1).at(0).toString(), QString("fnBold"));
    }
};

QTEST_MAIN(TestCommands)
#include "tst_commands.moc"
