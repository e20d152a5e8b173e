// The formatting and view commands of the window, clicked and chosen as a user does.
#include "support_windowhost.h"

#include "design/CommandTable.h"
#include "design/clsResize.h"
#include "entry/PrivateProfile.h"
#include "properties/frmRptProperties.h"

#include <QApplication>
#include <QComboBox>
#include <QSpinBox>
#include <QTimer>
#include <QMenu>

namespace {

// Two labels and a box on a fresh window, all three selected.
struct Formatted {
    WindowTestHost host;
    Window w = Open();
    QObject* first = nullptr;
    QObject* second = nullptr;
    QObject* box = nullptr;
    Formatted()
    {
        Draw(*w, "tbInsertLabel", {600, 600}, {2400, 900});
        TypeLabel(*w, QStringLiteral("Open House"));
        Draw(*w, "tbInsertLabel", {600, 1200}, {2400, 1500});
        TypeLabel(*w, QStringLiteral("Sunday"));
        Draw(*w, "tbInsertRectangle", {3000, 600}, {4200, 1800});
        first = Control(*w, 1);
        second = Control(*w, 2);
        box = Control(*w, 3);
        for (QObject* c : {first, second, box})
            w->SelObj().Select(c);
    }
    QVariant Prop(QObject* c, const char* name) const { return clsRptControl::Prop(c, name); }
    void Choose(const char* combo, const QString& text)
    {
        auto* box = w->findChild<QComboBox*>(QString::fromLatin1(combo));
        QVERIFY(box);
        const int i = box->findText(text);
        if (i >= 0) {
            box->setCurrentIndex(i);
            emit box->textActivated(text);
        } else {
            box->lineEdit()->setText(text);
            QTest::keyClick(box->lineEdit(), Qt::Key_Return);
        }
    }
};

} // namespace

class tst_windowformat : public QObject {
    Q_OBJECT
private slots:
    void styleAndAlignmentReachTextItems()
    {
        Formatted f;
        QVERIFY(!f.w->Commands().IsChecked(u"fnBold"));
        Tool(*f.w, "fnBold");
        QVERIFY(f.Prop(f.first, "FontBold").toBool() && f.Prop(f.second, "FontBold").toBool());
        QVERIFY(f.w->Commands().IsChecked(u"fnBold"));
        QVERIFY(f.w->DefaultFont.bold()); // new text items take the style too
        Tool(*f.w, "fnBold");
        QVERIFY(!f.Prop(f.first, "FontBold").toBool());
        QVERIFY(!f.w->Commands().IsChecked(u"fnBold"));

        Tool(*f.w, "fnItalic");
        Tool(*f.w, "fnUnderline");
        QVERIFY(f.Prop(f.second, "FontItalic").toBool() && f.Prop(f.second, "FontUnderline").toBool());

        Tool(*f.w, "fnCenter");
        QCOMPARE(f.Prop(f.first, "Alignment").toInt(), 2);
        QVERIFY(f.w->Commands().IsChecked(u"fnCenter") && !f.w->Commands().IsChecked(u"fnLeft"));
        Tool(*f.w, "fnRight");
        QCOMPARE(f.Prop(f.second, "Alignment").toInt(), 1);
        QCOMPARE(f.Prop(f.box, "Alignment").toInt(), 0); // a box has no text to align

        f.Choose("fnFontSize", QStringLiteral("14"));
        QCOMPARE(f.Prop(f.first, "Fontsize").toDouble(), 14.0);
        f.Choose("fnFontSize", QString()); // an emptied box changes nothing
        QCOMPARE(f.Prop(f.second, "Fontsize").toDouble(), 14.0);
        f.Choose("fnFont", QStringLiteral("Liberation Serif"));
        QCOMPARE(f.Prop(f.first, "FontName").toString(), QStringLiteral("Liberation Serif"));
        QVERIFY(f.w->Document().DirtyFlag);
    }

    void effectsAndPaletteColours()
    {
        Formatted f;
        Tool(*f.w, "miEffectShadow");
        QCOMPARE(f.Prop(f.first, "SpecialEffect").toInt(), 2);
        QCOMPARE(f.Prop(f.second, "SpecialEffect").toInt(), 2);
        QVERIFY(f.w->Commands().IsChecked(u"miEffectShadow"));
        Tool(*f.w, "miEffectFlat");
        QCOMPARE(f.Prop(f.second, "SpecialEffect").toInt(), 0);

        const auto open = [&](const char* band) {
            QMenu* m = f.w->Commands().Menu(QString::fromLatin1(band));
            m->popup(QPoint(0, 0));
            m->hide();
        };
        // Bright red (colour 12) from the back colour palette, as BGR.
        open("barBackColor");
        Tool(*f.w, "cpColor12");
        QCOMPARE(f.Prop(f.box, "BackColor").toUInt(), 0x0000FFu);
        QCOMPARE(f.Prop(f.first, "BackColor").toUInt(), 0x0000FFu);
        QCOMPARE(f.Prop(f.first, "Backstyle").toInt(), 1); // opaque, so the fill shows
        open("barForeColor");
        Tool(*f.w, "cpColor1"); // blue
        QCOMPARE(f.Prop(f.first, "ForeColor").toUInt(), 0x800000u);
        QCOMPARE(f.Prop(f.box, "BackColor").toUInt(), 0x0000FFu);
        open("barBorderColor");
        Tool(*f.w, "cpColor2"); // green
        QCOMPARE(f.Prop(f.box, "BorderColor").toUInt(), 0x008000u);
    }

    void objectNameChoosesTheItem()
    {
        Formatted f;
        auto* names = f.w->findChild<QComboBox*>(QStringLiteral("miObjectName"));
        QVERIFY(names);
        QStringList listed;
        for (int i = 0; i < names->count(); ++i)
            listed << names->itemText(i);
        QCOMPARE(listed, QStringList({f.w->Document().Item(1).Name, f.w->Document().Item(2).Name,
                                      f.w->Document().Item(3).Name}));
        f.Choose("miObjectName", f.w->Document().Item(2).Name);
        QCOMPARE(f.w->SelObj().Count(), 1);
        QVERIFY(f.w->SelObj().IsSelected(f.second));
        QCOMPARE(names->currentText(), f.w->Document().Item(2).Name);

        // Deleting an item takes its name off the list.
        Tool(*f.w, "miDeleteObject");
        QCOMPARE(names->count(), 2);
        QCOMPARE(names->findText(QStringLiteral("Label2")), -1);
    }

    void outlinesAndClearDataSource()
    {
        Formatted f;
        Tool(*f.w, "miShowOutline");
        QVERIFY(f.w->Commands().IsChecked(u"miShowOutline"));
        QVERIFY(f.Prop(f.first, "ShowOutline").toBool());
        Draw(*f.w, "tbInsertLabel", {600, 2400}, {2400, 2700}); // new items follow the setting
        TypeLabel(*f.w, QStringLiteral("Price"));
        QVERIFY(f.Prop(Control(*f.w, 4), "ShowOutline").toBool());
        Tool(*f.w, "miShowOutline");
        QVERIFY(!f.Prop(f.first, "ShowOutline").toBool());

        Tool(*f.w, "miClearDataSource");
        QVERIFY(f.w->Document().ClearDataSource);
        QVERIFY(f.w->Commands().IsChecked(u"miClearDataSource"));
        Tool(*f.w, "miClearDataSource");
        QVERIFY(!f.w->Document().ClearDataSource);
    }

    void propertySheetFromMenuAndRightClick()
    {
        Formatted f;
        frmRptProperties* sheet = f.w->PropertySheet();
        QVERIFY(sheet && !sheet->isVisible());
        Tool(*f.w, "miProperties");
        QVERIFY(sheet->isVisible());
        sheet->hide();

        // A right-click on an unselected item selects it alone and shows its properties.
        Click(*f.w, {6000, 6000});
        QTest::mouseClick(Viewport(*f.w), Qt::RightButton, {}, f.w->Page().ViewportPixel(Geometry(f.second).center()));
        QVERIFY(sheet->isVisible());
        QCOMPARE(f.w->SelObj().Count(), 1);
        QVERIFY(f.w->SelObj().IsSelected(f.second));
        auto* name = sheet->findChild<QLineEdit*>(QStringLiteral("txtName"));
        QVERIFY(name);
        QCOMPARE(name->text(), f.w->Document().Item(2).Name);
    }

    void gridAndPageSetupFromTheMenus()
    {
        WindowTestHost host;
        auto w = Open();
        QTimer::singleShot(0, [] {
            QWidget* d = QApplication::activeModalWidget();
            QVERIFY(d);
            d->findChild<QSpinBox*>(QStringLiteral("fpGridWidth"))->setValue(120);
            QTest::keyClick(d, Qt::Key_Return);
        });
        Tool(*w, "miGridSetup");
        QCOMPARE(w->GridIncX(), 120);
        QCOMPARE(w->SelObj().GridX(), 120.0f); // the drag steps follow at once
        QCOMPARE(w->GridIncY(), 60);

        w->Document().DirtyFlag = false;
        QTimer::singleShot(0, [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
        Tool(*w, "miPageSetup");
        QCOMPARE(w->Document().TopMargin, 1080);
        QVERIFY(!w->Document().DirtyFlag);
        QVERIFY(w->close());
        QCOMPARE(UserIni::Get(QStringLiteral("Grid"), QString()), QStringLiteral("120,60"));
    }

    void dataViewAsksForTheRecordFirst()
    {
        Formatted f;
        ScriptedRecordPrompt record;
        Tool(*f.w, "miDataView"); // cancelled: nothing changes
        QCOMPARE(record.asked, QStringList{QString()});
        QVERIFY(f.w->Commands().IsChecked(u"miTemplateView"));
        QVERIFY(!f.w->Document().DataView);

        record.answer = true;
        Tool(*f.w, "miDataView");
        QVERIFY(f.w->Document().DataView);
        QVERIFY(f.w->Commands().IsChecked(u"miDataView") && !f.w->Commands().IsChecked(u"miTemplateView"));
        QVERIFY(f.w->windowTitle().endsWith(QStringLiteral(" #240001")));
        Tool(*f.w, "miDataView"); // already checked: nothing, and no second question
        QCOMPARE(record.asked.size(), 2);

        Tool(*f.w, "miTemplateView");
        QVERIFY(!f.w->Document().DataView);
        QVERIFY(f.w->Commands().IsChecked(u"miTemplateView"));
        // With a record known, the switch asks nothing.
        Tool(*f.w, "miDataView");
        QCOMPARE(record.asked.size(), 2);
        QVERIFY(f.w->Document().DataView);

        // Select Property always asks, with the key as it stands, and stays in data view.
        Tool(*f.w, "miTemplateView");
        Tool(*f.w, "miSelectProperty");
        QCOMPARE(record.asked.last(), QStringLiteral("240001"));
        QVERIFY(f.w->Document().DataView && f.w->Commands().IsChecked(u"miDataView"));
    }
};

QTEST_MAIN(tst_windowformat)
#include "tst_windowformat.moc"
