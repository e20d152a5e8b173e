// The property sheet over a real document on an offscreen page: which rows each selection shows,
// the lists' texts and codes, edits reaching every selected item, and the refusals.
#include "design/OffscreenPage.h"
#include "document/clsRptControl.h"
#include "entry/Prompts.h"
#include "entry/support_fakehost.h"
#include "properties/frmRptProperties.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>
#include <algorithm>

namespace {
struct Sheet {
    OffscreenPage page;
    clsRptControl doc;
    frmRptProperties sheet;
    FakeHost host;
    ScriptedPrompter prompts;

    Sheet()
    {
        doc.Init(nullptr, &page, &sheet);
        doc.SetSelectionManager(&page);
        gHost = &host; // after the document's Init: the fake host has no database
        sheet.Init(&doc, &page);
        sheet.show();
        sheet.activateWindow();
        (void)QTest::qWaitForWindowActive(&sheet);
    }
    ~Sheet() { gHost = nullptr; }

    QObject* ctl(int i) { return doc.Item(i).control; }
    int add(int kind, double left, double top, double width = 1440, double height = 300)
    {
        doc.AddNew(kind, QStringLiteral("Unbound"), 0);
        QObject* c = ctl(doc.RptItemCount());
        c->setProperty("Left", left);
        c->setProperty("Top", top);
        c->setProperty("Width", width);
        c->setProperty("Height", height);
        return doc.RptItemCount();
    }
    // The first item becomes the current one.
    void select(const QList<int>& items)
    {
        page.ClearSelection();
        for (int i : items)
            page.AddToSelection(ctl(i));
        if (!items.isEmpty()) {
            doc.SetUserControl(ctl(items.first()));
            doc.SetIndex(items.first());
        }
        sheet.LoadProperties();
    }
    template <class T> T* w(const QString& name) { return sheet.findChild<T*>(name); }
    // The captions of the rows shown, top to bottom.
    QString Captions()
    {
        QList<QLabel*> shown;
        for (QLabel* l : sheet.findChildren<QLabel*>())
            if (l->isVisibleTo(&sheet) && l->objectName().startsWith(QLatin1String("lbl")))
                shown << l;
        std::sort(shown.begin(), shown.end(), [](QLabel* a, QLabel* b) { return a->y() < b->y(); });
        QStringList out;
        for (QLabel* l : shown)
            out << l->text();
        return out.join(QLatin1Char(','));
    }
    void focus(QWidget* editor)
    {
        editor->setFocus();
        QTRY_VERIFY(editor->hasFocus());
    }
    void type(QWidget* editor, const QString& text)
    {
        focus(editor);
        QLineEdit* line = qobject_cast<QLineEdit*>(editor);
        if (auto* list = qobject_cast<QComboBox*>(editor))
            line = list->lineEdit();
        line->selectAll();
        QTest::keyClicks(editor, text);
    }
    void clickEntry(QComboBox* list, const QString& text)
    {
        list->showPopup();
        QAbstractItemView* view = list->view();
        const QModelIndex at = view->model()->index(list->findText(text), 0);
        QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(at).center());
        QTRY_VERIFY(!view->isVisible());
    }
};
} // namespace

class TestProperties : public QObject {
    Q_OBJECT
private slots:
    void rowsFollowTheSelectedKinds_data()
    {
        QTest::addColumn<QList<int>>("kinds");
        QTest::addColumn<QString>("captions");
        const QString border = QStringLiteral("Border Style,Border Width");
        QTest::newRow("field") << QList<int>{1}
                               << "Name,Left,Top,Width,Height,Format," + border +
                                      ",DataField,Special Effect,Text Alignment,Allow Shrink,Allow Grow,Font,Font Size,"
                                      "Font Bold,Font UnderLine,Font Italic,Fore Color,Back Color,Border Color,Back Style,"
                                      "Use Short Text";
        QTest::newRow("label and box: no name, no fonts")
            << QList<int>{2, 3} << "Left,Top,Width,Height," + border + ",Back Color,Border Color,Back Style";
        QTest::newRow("picture") << QList<int>{5}
                                 << "Name,Left,Top,Width,Height," + border +
                                        ",Photo Alignment,Size Mode,Type,Photo Number,Photo File,Back Color,Border Color";
        QTest::newRow("horizontal line") << QList<int>{-4} << "Name,Left,Top,Length,Style,Width,Color";
        QTest::newRow("vertical line") << QList<int>{4} << "Name,Left,Top,Length,Style,Width,Color";
        QTest::newRow("sub-report") << QList<int>{7} << "Name,Left,Top,Expression,Custom SQL";
        QTest::newRow("two sub-reports") << QList<int>{7, 7} << "Left,Top,Expression";
        QTest::newRow("section") << QList<int>{9} << "Name,Left,Top,Expression";
        QTest::newRow("new page and date") << QList<int>{6, 8} << "Left,Top";
        QTest::newRow("nothing: the panel hides") << QList<int>{} << "";
    }
    void rowsFollowTheSelectedKinds()
    {
        QFETCH(QList<int>, kinds);
        Sheet s;
        s.select({s.add(1, 0, 0)}); // rows shown before must go
        QList<int> items;
        for (int k : kinds) // a negative kind is a horizontal line
            items << (k < 0 ? s.add(-k, 100, 100, 2000, 30) : s.add(k, 100, 100, 30, 2000));
        s.select(items);
        QTEST(s.Captions(), "captions");
        QCOMPARE(s.w<QWidget>("picProperties")->isVisible(), !kinds.isEmpty());
        QCOMPARE(s.sheet.RowMask() == 0, kinds.isEmpty());
    }

    void listEntriesWriteTheirCodesToEverySelectedItem_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("list");
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("property");
        QTest::addColumn<int>("code");
        QTest::newRow("dash") << 3 << "cboBorderStyle" << "Dash" << "BorderStyle" << 1;
        QTest::newRow("none") << 2 << "cboBorderStyle" << "None" << "BorderStyle" << 5;
        QTest::newRow("dash-dot-dot") << 3 << "cboBorderStyle" << "Dash-Dot-Dot" << "BorderStyle" << 4;
        QTest::newRow("center text") << 2 << "cboAlignment" << "Center" << "Alignment" << 2;
        QTest::newRow("right text") << 1 << "cboAlignment" << "Right" << "Alignment" << 1;
        QTest::newRow("bottom-right photo") << 5 << "cboImageAlignment" << "BottomRight" << "Alignment" << 4;
        QTest::newRow("stretch") << 5 << "cboImageSizeMode" << "Stretch" << "SizeMode" << 2;
        QTest::newRow("shadow") << 8 << "cboEffect" << "Shadow" << "SpecialEffect" << 2;
        QTest::newRow("office logo") << 5 << "cboCategory" << "Office Logo" << "Category" << 4;
        QTest::newRow("opaque") << 3 << "cboBackStyle" << "Opaque" << "Backstyle" << 1;
    }
    void listEntriesWriteTheirCodesToEverySelectedItem()
    {
        QFETCH(int, kind);
        QFETCH(QString, list);
        QFETCH(QString, entry);
        QFETCH(QString, property);
        QFETCH(int, code);
        Sheet s;
        const int a = s.add(kind, 0, 0, 2000, 30), b = s.add(kind, 0, 600, 2000, 30);
        s.select({a, b});
        s.clickEntry(s.w<QComboBox>(list), entry);
        const QByteArray name = property.toLatin1();
        QCOMPARE(s.ctl(a)->property(name).toInt(), code);
        QCOMPARE(s.ctl(b)->property(name).toInt(), code);
        // Loaded again, the stored code shows its text.
        s.w<QComboBox>(list)->setCurrentIndex(-1);
        s.select({b});
        QCOMPARE(s.w<QComboBox>(list)->currentText(), entry);
    }

    void selComboItemMatchesTheCodeNotThePosition()
    {
        Sheet s;
        auto* list = s.w<QComboBox>("cboFunctionType");
        QStringList texts;
        for (int i = 0; i < list->count(); ++i)
            texts << QStringLiteral("%1=%2").arg(list->itemText(i)).arg(list->itemData(i).toInt());
        QCOMPARE(texts.join(','), "None=0,Sum=1,Average=2,Minimum=3,Maximum=4,Count=5,CMA Statistics=6");
        frmRptProperties::SelComboItem(list, 6);
        QCOMPARE(list->currentText(), "CMA Statistics");
        frmRptProperties::SelComboItem(list, 9); // no such code: unchanged
        QCOMPARE(list->currentText(), "CMA Statistics");
        QCOMPARE(s.w<QComboBox>("cboFontSize")->count(), 15);
    }

    void differingFontSizesShowEmptyAndTypingSetsBoth()
    {
        Sheet s;
        const int a = s.add(2, 0, 0), b = s.add(2, 0, 600);
        s.ctl(b)->setProperty("Fontsize", 12.0f);
        s.select({a, b});
        auto* size = s.w<QComboBox>("cboFontSize");
        QCOMPARE(size->currentText(), QString());
        s.focus(size);
        s.focus(s.w<QWidget>("fpLeft")); // leaving it empty writes nothing
        QCOMPARE(s.ctl(b)->property("Fontsize").toFloat(), 12.0f);
        s.type(size, "14");
        QTest::keyClick(size, Qt::Key_Return);
        QCOMPARE(s.ctl(a)->property("Fontsize").toFloat(), 14.0f);
        QCOMPARE(s.ctl(b)->property("Fontsize").toFloat(), 14.0f);
        s.type(size, "0");
        QTest::keyClick(size, Qt::Key_Return);
        QCOMPARE(s.prompts.asked.size(), size_t(1));
        QCOMPARE(s.prompts.asked[0].title, "Input Error");
        QCOMPARE(size->currentText(), "14");
    }

    void yesNoListsCommitOnEnterAndEscapeRestores()
    {
        Sheet s;
        const int a = s.add(1, 0, 0), b = s.add(1, 0, 600);
        s.select({a, b});
        auto* bold = s.w<QComboBox>("cboFontBold");
        QCOMPARE(bold->currentText(), "No");
        s.focus(bold);
        bold->setCurrentIndex(0);
        QTest::keyClick(bold, Qt::Key_Escape);
        QCOMPARE(bold->currentText(), "No");
        QCOMPARE(s.ctl(a)->property("FontBold").toBool(), false);

        auto* underline = s.w<QComboBox>("cboFontUnderline");
        s.focus(underline);
        underline->setCurrentIndex(0);
        QTest::keyClick(underline, Qt::Key_Enter);
        QCOMPARE(s.ctl(a)->property("FontUnderline").toBool(), true);
        QCOMPARE(s.ctl(b)->property("FontUnderline").toBool(), true);

        auto* grow = s.w<QComboBox>("cboAllowGrow"); // leaving the list commits too
        s.focus(grow);
        grow->setCurrentIndex(0);
        s.focus(bold);
        QCOMPARE(s.ctl(a)->property("AllowGrow").toBool(), true);
    }

    void numberEditsCheckTheirRange_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("edit");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("property");
        QTest::addColumn<double>("expected"); // -1: refused, the old value stays
        QTest::addColumn<QString>("message");
        QTest::newRow("left") << 2 << "fpLeft" << "500" << "Left" << 500.0 << "";
        QTest::newRow("too wide") << 2 << "fpWidth" << "35001" << "Width" << -1.0 << "Enter a whole number from 0 to 35000.";
        QTest::newRow("a lone point") << 3 << "fpBorderWidth" << "." << "BorderWidth" << -1.0 << "Enter a number from 0 to 100.";
        QTest::newRow("border width") << 3 << "fpBorderWidth" << "2.5" << "BorderWidth" << 2.5 << "";
        QTest::newRow("photo number") << 5 << "fpPhotoSeq" << "7" << "PhotoSeq" << 7.0 << "";
        QTest::newRow("fore colour") << 2 << "fpForeColor" << "255" << "ForeColor" << 255.0 << "";
        QTest::newRow("negative back colour") << 2 << "fpBackColor" << "-2147483643" << "BackColor" << 2147483653.0 << "";
        QTest::newRow("hex colour") << 2 << "fpForeColor" << "#FF8000" << "ForeColor" << double(0x0080FF) << "";
        QTest::newRow("half a hex colour") << 2 << "fpBorderColor" << "#FF80" << "BorderColor" << -1.0
                                           << "Enter a colour as #RRGGBB, or a whole number from 0 to 2147483647.";
    }
    void numberEditsCheckTheirRange()
    {
        QFETCH(int, kind);
        QFETCH(QString, edit);
        QFETCH(QString, typed);
        QFETCH(QString, property);
        QFETCH(double, expected);
        QFETCH(QString, message);
        Sheet s;
        const int a = s.add(kind, 60, 60), b = s.add(kind, 60, 600);
        s.select({a, b});
        const QByteArray name = property.toLatin1();
        const double before = s.ctl(b)->property(name).toDouble();
        auto* box = s.w<QLineEdit>(edit);
        s.type(box, typed);
        QTest::keyClick(box, Qt::Key_Return);
        QCOMPARE(s.ctl(a)->property(name).toDouble(), expected < 0 ? before : expected);
        QCOMPARE(s.ctl(b)->property(name).toDouble(), expected < 0 ? before : expected);
        QCOMPARE(s.prompts.asked.empty() ? QString() : s.prompts.asked[0].prompt, message);
        if (!message.isEmpty()) // a colour reads back in hex
            QCOMPARE(box->text(), edit.endsWith(u"Color") ? QStringLiteral("#%1").arg(qint64(before), 6, 16, QLatin1Char('0'))
                                                           : QString::number(before));
        if (expected >= 0 && expected <= 0xFFFFFF && edit.endsWith(u"Color")) {
            const qint64 v = qint64(expected);
            QCOMPARE(box->text(), QStringLiteral("#%1%2%3").arg(v & 0xFF, 2, 16, QLatin1Char('0'))
                                      .arg((v >> 8) & 0xFF, 2, 16, QLatin1Char('0')).arg(v >> 16, 2, 16, QLatin1Char('0')).toUpper());
            auto* swatch = s.sheet.findChild<QWidget*>(QStringLiteral("sw") + edit.mid(2));
            QVERIFY(swatch && swatch->isVisibleTo(box));
            QCOMPARE(swatch->palette().color(QPalette::Window), ColorFromBgr(quint32(v)));
        }
    }

    void emptyEditIsNeverWrittenAndEscapeReadsBack()
    {
        Sheet s;
        const int a = s.add(3, 100, 0), b = s.add(3, 200, 600);
        s.select({a, b});
        auto* left = s.w<QLineEdit>("fpLeft");
        QCOMPARE(left->text(), QString());
        QCOMPARE(s.w<QLineEdit>("fpWidth")->text(), "1440");
        s.focus(left);
        QTest::keyClick(left, Qt::Key_Return);
        s.focus(s.w<QWidget>("fpTop"));
        QCOMPARE(s.ctl(b)->property("Left").toFloat(), 200.0f);
        s.type(left, "999");
        QTest::keyClick(left, Qt::Key_Escape);
        QCOMPARE(left->text(), "100"); // the current item's value
        QCOMPARE(s.ctl(a)->property("Left").toFloat(), 100.0f);
    }

    void formatListByClassCommitsOnlyAChange()
    {
        Sheet s;
        const int a = s.add(1, 0, 0);
        s.ctl(a)->setProperty("FormatClass", 2);
        s.ctl(a)->setProperty("DataFormat", "General Date");
        s.select({a});
        auto* format = s.w<QComboBox>("cboFormat");
        QStringList entries;
        for (int i = 0; i < format->count(); ++i)
            entries << format->itemText(i);
        QCOMPARE(entries.join(','), "General Date,Short Date,Medium Date,Long Date");
        QCOMPARE(format->currentText(), "General Date");
        s.type(format, "yyyy");
        QTest::keyClick(format, Qt::Key_Escape);
        QCOMPARE(format->currentText(), "General Date");
        s.type(format, "Long Date");
        s.focus(s.w<QWidget>("fpLeft"));
        QCOMPARE(s.ctl(a)->property("DataFormat").toString(), "Long Date");
        QCOMPARE(s.w<QLineEdit>("txtExpression")->text(), "Long Date");
    }

    void renamingChecksTheNameAndUpdatesTheList_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("names");
        QTest::newRow("blank") << "   " << "Invalid Name" << "Label1,Label2";
        QTest::newRow("in use") << "Label2" << "This name is already in use. Please choose another" << "Label1,Label2";
        QTest::newRow("case differs") << "label2" << "" << "label2,Label2";
        QTest::newRow("new") << "Price" << "" << "Price,Label2";
    }
    void renamingChecksTheNameAndUpdatesTheList()
    {
        QFETCH(QString, typed);
        QFETCH(QString, message);
        QFETCH(QString, names);
        Sheet s;
        const int a = s.add(2, 0, 0);
        s.add(2, 0, 600);
        s.select({a});
        auto* name = s.w<QLineEdit>("txtName");
        s.type(name, typed);
        QTest::keyClick(name, Qt::Key_Return);
        QCOMPARE(s.prompts.asked.empty() ? QString() : s.prompts.asked[0].prompt, message);
        QStringList list;
        for (int i = 0; i < s.sheet.ObjectList()->count(); ++i)
            list << s.sheet.ObjectList()->itemText(i);
        QCOMPARE(list.join(','), names);
        QCOMPARE(s.doc.Item(a).Name + "," + s.doc.Item(2).Name, names);
        QCOMPARE(name->text(), s.doc.Item(a).Name);
        QCOMPARE(s.sheet.ObjectList()->currentIndex(), 0);
    }

    void objectListFollowsDeletesAndSelects()
    {
        Sheet s;
        const int a = s.add(2, 0, 0), b = s.add(3, 0, 600);
        s.add(4, 0, 900, 2000, 30);
        s.select({a});
        s.doc.Delete(b);
        QCOMPARE(s.sheet.ObjectList()->count(), 2);
        QCOMPARE(s.sheet.ObjectList()->itemText(1), "Line1");
        s.sheet.ObjectList()->activated(1);
        QCOMPARE(s.page.SelectedControls(), QList<QObject*>{s.ctl(2)});
        QCOMPARE(s.doc.Index(), 2);
        QCOMPARE(s.w<QLineEdit>("txtName")->text(), "Line1");
    }

    void colourAndFileButtons()
    {
        Sheet s;
        const int line = s.add(4, 0, 0, 2000, 30), box = s.add(3, 0, 600), pic = s.add(5, 0, 900);
        s.select({box, line});
        s.prompts.colors = {0x123456u, std::nullopt};
        s.w<QPushButton>("cmdSetBackColor")->click();
        QCOMPARE(s.ctl(box)->property("BackColor").toUInt(), 0x123456u);
        QCOMPARE(s.ctl(line)->property("BackColor").isValid(), false);
        QCOMPARE(s.w<QLineEdit>("fpBackColor")->text(), "#563412"); // shown red first
        const uint border = s.ctl(box)->property("BorderColor").toUInt();
        s.w<QPushButton>("cmdSetBorderColor")->click(); // cancelled
        QCOMPARE(s.ctl(box)->property("BorderColor").toUInt(), border);

        s.select({pic});
        s.prompts.files = {QStringLiteral("/pictures/house.jpg")};
        s.sheet.cmdSetFileName_Click();
        QCOMPARE(s.ctl(pic)->property("FileName").toString(), "/pictures/house.jpg");
        QCOMPARE(s.w<QLineEdit>("txtFileName")->text(), "/pictures/house.jpg");
        QTRY_VERIFY(s.w<QLineEdit>("txtFileName")->hasFocus());
    }

    // The picture's file is shown as this system writes paths; committing the box unchanged
    // keeps the stored (host) form, and Escape shows it the same way again.
    void pictureFileShowsThePlatformSeparator()
    {
        Sheet s;
        QTemporaryDir dir;
        const QString local = dir.filePath("house.png");
        QImage img(4, 4, QImage::Format_RGB32);
        img.fill(Qt::red);
        QVERIFY(img.save(local));
        const QString host = QString(local).replace('/', '\\');
        const int pic = s.add(5, 0, 0);
        s.select({pic});
        s.doc.SetItemFileName(host);
        QLineEdit* box = s.w<QLineEdit>("txtFileName");
        QCOMPARE(box->text(), QDir::toNativeSeparators(local));
        s.select({pic});
        QCOMPARE(box->text(), QDir::toNativeSeparators(local));
        s.focus(box);
        QTest::keyClick(box, Qt::Key_Return);
        QCOMPARE(s.ctl(pic)->property("FileName").toString(), host);
        QTest::keyClick(box, Qt::Key_End);
        QTest::keyClick(box, Qt::Key_Backspace);
        QTest::keyClick(box, Qt::Key_Escape);
        QCOMPARE(box->text(), QDir::toNativeSeparators(local));
        QVERIFY(s.prompts.asked.empty());
    }

    void toolWindowLife()
    {
        Sheet s;
        QVERIFY(s.doc.DirtyFlag);
        s.sheet.close();
        QVERIFY(!s.sheet.isVisible());
        s.sheet.show();
        emit s.host.events.MinimizedChanged(true);
        emit s.host.events.MinimizedChanged(true);
        QVERIFY(!s.sheet.isVisible());
        emit s.host.events.MinimizedChanged(false);
        QVERIFY(s.sheet.isVisible());
        emit s.host.events.UnloadForm();
        QVERIFY(!s.sheet.isVisible());
    }
};

QTEST_MAIN(TestProperties)
#include "tst_properties.moc"
