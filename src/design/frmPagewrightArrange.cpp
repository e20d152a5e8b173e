// Undo and redo, zoom, and the arrange commands: align, same size, even spacing, centring,
// Select All, Duplicate and nudging.
#include "design/frmPagewright.h"

#include "design/Arrange.h"
#include "design/CommandBar.h"
#include "design/DesignHistory.h"
#include "design/DesignPage.h"
#include "design/RptItemControl.h"
#include "design/Zoom.h"
#include "design/clsResize.h"
#include "document/clsRptControl.h"
#include "properties/frmRptProperties.h"

#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <cmath>

namespace {
// Paper width the page is centred on (Letter): the design page itself is wider.
constexpr double PaperWidth = 12240;

const QHash<QString, Arrange::Op>& ArrangeOps()
{
    using Arrange::Op;
    static const QHash<QString, Op> ops{
        {QStringLiteral("miAlignLefts"), Op::AlignLefts},   {QStringLiteral("miAlignRights"), Op::AlignRights},
        {QStringLiteral("miAlignTops"), Op::AlignTops},     {QStringLiteral("miAlignBottoms"), Op::AlignBottoms},
        {QStringLiteral("miAlignCentres"), Op::AlignCentres}, {QStringLiteral("miAlignMiddles"), Op::AlignMiddles},
        {QStringLiteral("miSameWidth"), Op::SameWidth},     {QStringLiteral("miSameHeight"), Op::SameHeight},
        {QStringLiteral("miSameSize"), Op::SameSize},       {QStringLiteral("miSpaceAcross"), Op::SpaceAcross},
        {QStringLiteral("miSpaceDown"), Op::SpaceDown},
    };
    return ops;
}

// A name no item has yet: the name's own stem with the first free number.
QString FreeName(const QString& name, const QSet<QString>& taken)
{
    static const QRegularExpression digits(QStringLiteral("\\d+$"));
    QString stem = name;
    stem.remove(digits);
    for (int n = 1;; ++n)
        if (const QString candidate = stem + QString::number(n); !taken.contains(candidate))
            return candidate;
}
} // namespace

QStringList frmPagewright::ArrangeTools()
{
    QStringList tools{QStringLiteral("miUndo"),       QStringLiteral("miRedo"),        QStringLiteral("miSelectAll"),
                      QStringLiteral("miDuplicate"),  QStringLiteral("miZoomIn"),      QStringLiteral("miZoomOut"),
                      QStringLiteral("miZoom100"),    QStringLiteral("miZoomFitPage"), QStringLiteral("miZoomFitWidth"),
                      QStringLiteral("miZoom"),       QStringLiteral("miAlign"),       QStringLiteral("miSize"),
                      QStringLiteral("miSpace"),      QStringLiteral("miCentreInPage"), QStringLiteral("miNudge"),
                      QStringLiteral("miNudgeLeft"),  QStringLiteral("miNudgeRight"),  QStringLiteral("miNudgeUp"),
                      QStringLiteral("miNudgeDown")};
    tools << ArrangeOps().keys();
    return tools;
}

bool frmPagewright::ViewCommand(const QString& t)
{
    if (t == u"miUndo")
        m_history->Undo();
    else if (t == u"miRedo")
        m_history->Redo();
    else if (t == u"miZoomIn")
        m_zoom->ZoomIn();
    else if (t == u"miZoomOut")
        m_zoom->ZoomOut();
    else if (t == u"miZoom100")
        m_zoom->SetPercent(100);
    else if (t == u"miZoomFitPage")
        m_zoom->FitPage();
    else if (t == u"miZoomFitWidth")
        m_zoom->FitWidth();
    else
        return false;
    return true;
}

bool frmPagewright::ArrangeCommand(const QString& t)
{
    const QList<QObject*> sel = m_sel->SelectedControls();
    if (t == u"miSelectAll") {
        EndTextEdit(true);
        m_sel->ClearSelect();
        for (int i = 1; i <= m_doc->RptItemCount(); ++i)
            if (QObject* c = m_doc->Item(i).control)
                m_sel->Select(c);
        m_doc->SetEdit();
        return true;
    }
    if (t == u"miDuplicate") {
        if (sel.isEmpty())
            return true;
        // Duplicating goes through the copy file but leaves what the user copied alone.
        QFile buffer(m_doc->CopyBufferFile());
        const bool hadCopy = m_doc->EditControlsPasted;
        const QByteArray kept = hadCopy && buffer.open(QIODevice::ReadOnly) ? buffer.readAll() : QByteArray();
        buffer.close();
        const QRectF bounds = m_sel->SelectionBounds();
        const int before = m_doc->RptItemCount();
        m_doc->EditCopyControls();
        // Paste lands on the next grid line past the point: one step right of and below the original.
        float x = float(bounds.left()), y = float(bounds.top());
        m_doc->EditPasteControls(QString(), x, y);
        if (hadCopy && buffer.open(QIODevice::WriteOnly))
            buffer.write(kept);
        m_doc->EditControlsPasted = hadCopy;
        QSet<QString> taken;
        for (int i = 1; i <= before; ++i)
            taken.insert(m_doc->Item(i).Name);
        for (int i = before + 1; i <= m_doc->RptItemCount(); ++i) {
            ItemRecord& rec = m_doc->ItemRef(i);
            if (taken.contains(rec.Name))
                rec.Name = FreeName(rec.Name, taken);
            taken.insert(rec.Name);
        }
        emit m_doc->itemsChanged();
        m_doc->SetEdit();
        return true;
    }
    double dx = 0, dy = 0;
    const double pixel = std::max(1.0, std::round(RptItemControl::PixelTwips() / (m_zoom->Percent() / 100.0)));
    if (t == u"miNudgeLeft") dx = -pixel;
    else if (t == u"miNudgeRight") dx = pixel;
    else if (t == u"miNudgeUp") dy = -pixel;
    else if (t == u"miNudgeDown") dy = pixel;
    if (dx != 0 || dy != 0) {
        if (!sel.isEmpty()) {
            m_sel->MoveSelectionBy(float(dx), float(dy));
            m_doc->DirtyFlag = true;
        }
        return true;
    }

    const auto op = ArrangeOps().constFind(t);
    if (op == ArrangeOps().cend() && t != u"miCentreInPage")
        return false;
    std::vector<Arrange::Box> boxes;
    for (QObject* c : sel) {
        Arrange::Box b;
        b.rect = QRectF(clsRptControl::Prop(c, "Left").toDouble(), clsRptControl::Prop(c, "Top").toDouble(),
                        clsRptControl::Prop(c, "Width").toDouble(), clsRptControl::Prop(c, "Height").toDouble());
        if (m_doc->ObjectType(clsRptControl::Prop(c, "Tag").toInt()) == ObjType::Line)
            b.line = clsRptControl::Prop(c, "Orientation").toInt() == 1 ? 1 : 2;
        boxes.push_back(b);
    }
    std::vector<Arrange::Box> result;
    if (op != ArrangeOps().cend()) {
        result = Arrange::Apply(*op, boxes);
    } else {
        const double offset = Arrange::CentreOffset(boxes, PaperWidth - m_doc->LeftMargin - m_doc->RightMargin);
        result = boxes;
        for (Arrange::Box& b : result)
            b.rect.translate(offset, 0);
    }
    bool changed = false;
    for (size_t i = 0; i < result.size(); ++i) {
        if (result[i] == boxes[i])
            continue;
        QObject* c = sel[qsizetype(i)];
        const QRectF& r = result[i].rect;
        clsRptControl::SetProp(c, "Left", float(r.left()));
        clsRptControl::SetProp(c, "Top", float(r.top()));
        clsRptControl::SetProp(c, "Width", float(r.width()));
        clsRptControl::SetProp(c, "Height", float(r.height()));
        changed = true;
    }
    if (changed) {
        m_doc->DirtyFlag = true;
        m_sel->RefreshDragToSource();
        if (m_props->isVisible())
            m_props->LoadProperties();
    }
    return true;
}
