// Fields from the field list on the design page: where the list appears, dropping a field on the
// page (and only while a field drag is under way), adding one with the keyboard.
#include "support_windowhost.h"
#include "properties/support_fielddictionary.h"

#include "design/RptItemControl.h"
#include "design/clsResize.h"
#include "entry/Prompts.h"
#include "properties/frmRptFields.h"

#include <QDrag>
#include <QDropEvent>
#include <QFontMetricsF>
#include <QListWidget>
#include <QMimeData>
#include <QTabBar>

namespace {
class FieldsHost : public WindowTestHost {
public:
    QList<int> kinds;
    std::unique_ptr<FieldDictionary> NewFieldDictionary(int kind) override
    {
        kinds << kind;
        auto d = std::make_unique<GroupDictionary>();
        d->kind = kind;
        return d;
    }
};

// The band rule: twice the name's width by one line of a new text item's font + 60, in whole twips.
QSizeF BandSize(const frmPagewright&, const QString& name)
{
    QFont font(QStringLiteral("Arial"));
    font.setPointSizeF(10);
    const QFontMetricsF fm(font);
    const double px = RptItemControl::PixelTwips();
    return {std::round(2 * fm.horizontalAdvance(name) * px), std::round(fm.height() * px) + 60};
}

// Drags `data` over the page and drops it at a page point, as the window system delivers it.
bool DropOnPage(frmPagewright& w, QPointF pagePoint, const QMimeData* data)
{
    QWidget* vp = Viewport(w);
    const QPoint px = w.Page().ViewportPixel(pagePoint);
    QDragEnterEvent enter(px + QPoint(20, 20), Qt::CopyAction, data, Qt::LeftButton, {});
    QApplication::sendEvent(vp, &enter);
    QDragMoveEvent move(px, Qt::CopyAction, data, Qt::LeftButton, {});
    QApplication::sendEvent(vp, &move);
    QDropEvent drop(px, Qt::CopyAction, data, Qt::LeftButton, {});
    QApplication::sendEvent(vp, &drop);
    return drop.isAccepted();
}

QString Prop(QObject* c, const char* name) { return clsRptControl::Prop(c, name).toString(); }
} // namespace

class tst_fielddrop : public QObject {
    Q_OBJECT
private slots:
    void fieldListPlacedShownAndUnloaded()
    {
        FieldsHost host;
        auto w = Open(1);
        QCOMPARE(host.kinds, QList<int>{1});
        frmRptFields* list = w->FieldList();
        QVERIFY(list);
        QVERIFY(list->isVisible());
        QVERIFY(list->isWindow());
        QCOMPARE(list->parentWidget(), w.get());
        const QRect g = w->geometry();
        QCOMPARE(list->pos(), QPoint(g.left() + g.width() * 2 / 3, g.top() + g.height() / 2 - list->height() / 2));
        // Put away (its close button only hides it); the view command brings it back.
        list->hide();
        Tool(*w, "miFieldList");
        QVERIFY(list->isVisible());

        // Not asked for: made, but not shown.
        {
            frmPagewright quiet;
            quiet.setAttribute(Qt::WA_DeleteOnClose, false);
            quiet.Init(-1, 3, false);
            QVERIFY(quiet.FieldList());
            QVERIFY(!quiet.FieldList()->isVisible());
            QCOMPARE(quiet.FieldList()->TypeTabs()->count(), 1); // tax rolls: "All" only
            quiet.Unload();
        }

        emit host.events.UnloadForm();
        QVERIFY(!list->isVisible());
        QVERIFY(host.prompts.asked.empty());
    }

    void droppedFieldTakesDictionaryDefaults()
    {
        FieldsHost host;
        auto w = Open(1);
        std::unique_ptr<QMimeData> price(frmRptFields::NewFieldMime(QStringLiteral("List Price"), 2));
        std::unique_ptr<QMimeData> date(frmRptFields::NewFieldMime(QStringLiteral("List Date"), 3));

        w->DragField = true;
        const QPointF at = Actual(*w, QPointF(1000, 700));
        QVERIFY(DropOnPage(*w, QPointF(1000, 700), price.get()));
        QCOMPARE(w->Document().RptItemCount(), 1);
        QVERIFY(!w->DragField);
        QCOMPARE(w->CurrentTool(), 0);
        const ItemRecord& rec = w->Document().Item(1);
        QCOMPARE(rec.ObjectType, 1);
        QCOMPARE(rec.Name, QStringLiteral("List Price"));
        QCOMPARE(rec.DataField, QStringLiteral("ListPrice"));
        QCOMPARE(rec.DicId, 2);
        QObject* c = rec.control;
        QCOMPARE(Prop(c, "FormatClass"), QStringLiteral("1"));
        QCOMPARE(Prop(c, "Alignment"), QStringLiteral("1"));
        QCOMPARE(Prop(c, "DataFormat"), QStringLiteral("Currency"));
        QCOMPARE(Prop(c, "Text"), QStringLiteral("List Price"));
        QCOMPARE(Prop(c, "FontName"), QStringLiteral("Arial"));
        QCOMPARE(Geometry(c), QRectF(QPointF(Floor60(at.x()), Floor60(at.y())), BandSize(*w, QStringLiteral("List Price"))));
        QCOMPARE(w->SelObj().SelectedControls(), QList<QObject*>{c});
        QVERIFY(w->Document().DirtyFlag);

        // Dropped onto an existing item: still a drop on the page, at the pointer.
        w->DragField = true;
        const QPointF onItem = Geometry(c).center();
        QVERIFY(DropOnPage(*w, onItem, date.get()));
        QCOMPARE(w->Document().RptItemCount(), 2);
        QObject* d = w->Document().Item(2).control;
        QCOMPARE(w->Document().Item(2).DataField, QStringLiteral("ListDate"));
        QCOMPARE(Prop(d, "FormatClass"), QStringLiteral("2"));
        const QPointF onItemActual = Actual(*w, onItem);
        QCOMPARE(Geometry(d).topLeft(), QPointF(Floor60(onItemActual.x()), Floor60(onItemActual.y())));
        // Same font, same height; the width follows the name.
        QCOMPARE(Geometry(d).size(), BandSize(*w, QStringLiteral("List Date")));
        QCOMPARE(Geometry(d).height(), Geometry(c).height());
        QVERIFY(Geometry(d).width() != Geometry(c).width());

        // The same field twice gets a name of its own. The bold the tools last gave the first
        // one stays with it: the new field, its band and the tools are the kind's 10 points, and
        // it is the only item selected.
        w->SelObj().ClearSelect();
        w->SelObj().Select(c);
        Tool(*w, "fnBold");
        QVERIFY(clsRptControl::Prop(c, "FontBold").toBool());
        w->DragField = true;
        QVERIFY(DropOnPage(*w, QPointF(3000, 3000), price.get()));
        QCOMPARE(w->Document().Item(3).Name, QStringLiteral("List Price3"));
        QCOMPARE(w->Document().Item(3).DataField, QStringLiteral("ListPrice"));
        QObject* again = w->Document().Item(3).control;
        QVERIFY(!clsRptControl::Prop(again, "FontBold").toBool());
        QCOMPARE(clsRptControl::Prop(again, "Fontsize").toDouble(), 10.0);
        QCOMPARE(Geometry(again).size(), BandSize(*w, QStringLiteral("List Price")));
        QVERIFY(!w->Commands().IsChecked(u"fnBold"));
        QCOMPARE(w->SelObj().SelectedControls(), QList<QObject*>{again});
    }

    void dropsIgnoredUnlessAFieldDragIsUnderWay()
    {
        FieldsHost host;
        auto w = Open(1);
        w->Document().DirtyFlag = false; // binding the property sheet marks a new window changed
        std::unique_ptr<QMimeData> field(frmRptFields::NewFieldMime(QStringLiteral("Taxes"), 7));

        QVERIFY(!DropOnPage(*w, QPointF(600, 600), field.get())); // no drag under way
        QCOMPARE(w->Document().RptItemCount(), 0);

        w->DragField = true;
        QMimeData text;
        text.setText(QStringLiteral("Taxes"));
        QVERIFY(!DropOnPage(*w, QPointF(600, 600), &text)); // not a field
        QMimeData forged;
        forged.setData(frmRptFields::MimeType, QByteArray("99999\tTaxes"));
        QVERIFY(!DropOnPage(*w, QPointF(600, 600), &forged));
        QCOMPARE(w->Document().RptItemCount(), 0);
        QVERIFY(w->DragField); // still the list's drag
        QVERIFY(!w->Document().DirtyFlag);

        // A dictionary number the dictionary does not know: a clear message, no half-made item.
        std::unique_ptr<QMimeData> unknown(frmRptFields::NewFieldMime(QStringLiteral("Ghost"), 42));
        QVERIFY(DropOnPage(*w, QPointF(600, 600), unknown.get()));
        QCOMPARE(host.prompts.asked.size(), size_t(1));
        QCOMPARE(host.prompts.asked.front().title, QStringLiteral("Report error"));
        QCOMPARE(host.prompts.asked.front().prompt, QStringLiteral("Error: 3270 - Property not found."));
        QCOMPARE(w->Document().RptItemCount(), 0);
        QCOMPARE(w->CurrentTool(), 0);
        QVERIFY(!w->DragField);
    }

    void dragFromTheListEndToEnd()
    {
        FieldsHost host;
        auto w = Open(1);
        frmRptFields* list = w->FieldList();
        list->TypeTabs()->setCurrentIndex(1); // Financial: List Price, Taxes
        bool dropped = false;
        list->SetDragRunner([&](QDrag* drag) {
            dropped = DropOnPage(*w, QPointF(2000, 1500), drag->mimeData());
            return dropped ? Qt::CopyAction : Qt::IgnoreAction;
        });
        QWidget* vp = list->FieldList()->viewport();
        const QPoint from = list->FieldList()->visualItemRect(list->FieldList()->item(1)).center();
        QTest::mousePress(vp, Qt::LeftButton, {}, from);
        QTest::mouseMove(vp, from + QPoint(0, 25));
        QTest::mouseRelease(vp, Qt::LeftButton, {}, from + QPoint(0, 25));
        QVERIFY(dropped);
        QCOMPARE(w->Document().RptItemCount(), 1);
        QCOMPARE(w->Document().Item(1).Name, QStringLiteral("Taxes"));
        QCOMPARE(w->Document().Item(1).DicId, 7);
        QVERIFY(!w->DragField);
    }

    void keyboardAddsBelowTheLowestDetailItem()
    {
        FieldsHost host;
        auto w = Open(1);
        QListWidget* entries = w->FieldList()->FieldList();
        entries->setFocus();
        entries->setCurrentRow(0); // List Number
        QTest::keyClick(entries, Qt::Key_Return);
        QCOMPARE(w->Document().RptItemCount(), 1);
        QObject* first = Control(*w, 1);
        QCOMPARE(w->Document().Item(1).DataField, QStringLiteral("ListNum"));
        const QSizeF numberSize = BandSize(*w, QStringLiteral("List Number"));
        QCOMPARE(Geometry(first), QRectF(QPointF(0, 0), numberSize));

        // The next one goes under it, on the next grid line.
        entries->setCurrentRow(1); // List Date
        QTest::keyClick(entries, Qt::Key_Enter);
        const double below = std::ceil(numberSize.height() / 60) * 60;
        QCOMPARE(Geometry(Control(*w, 2)), QRectF(QPointF(0, below), BandSize(*w, QStringLiteral("List Date"))));

        // Under the lowest item wherever it is, lined up with it.
        clsRptControl::SetProp(first, "Left", 300.0f);
        clsRptControl::SetProp(first, "Top", 1000.0f); // bottom 1000 + height, off the grid
        const double lowest = 1000 + numberSize.height();
        entries->setCurrentRow(0);
        QTest::keyClick(entries, Qt::Key_Return);
        QCOMPARE(w->Document().RptItemCount(), 3);
        QCOMPARE(Geometry(Control(*w, 3)).topLeft(), QPointF(300, std::ceil(lowest / 60) * 60));
        QCOMPARE(w->Document().Item(3).Name, QStringLiteral("List Number3"));

        // Not in the middle of a drag.
        w->DragField = true;
        QTest::keyClick(entries, Qt::Key_Return);
        QCOMPARE(w->Document().RptItemCount(), 3);
    }
};

QTEST_MAIN(tst_fielddrop)
#include "tst_fielddrop.moc"
