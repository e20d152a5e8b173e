// Adding, deleting, copying, pasting and moving items.
#include "document/clsRptControl.h"

#include "entry/Host.h"
#include "entry/Prompts.h"
#include "sqltext/clsTempFile.h"

#include <QFile>
#include <algorithm>

namespace {
constexpr float BarHeight = 220;
}

QString clsRptControl::uniqueFieldName(const QString& name) const
{
    // On the first clash the name takes the new item count (already incremented); should that
    // be taken too (a pasted or loaded item), the next free number.
    const int self = RptItemCount();
    if (!nameTaken(name, self))
        return name;
    for (int n = RptItemCount();; ++n)
        if (!nameTaken(name + QString::number(n), self))
            return name + QString::number(n);
}

bool clsRptControl::nameTaken(const QString& name, int except) const
{
    for (size_t i = 0; i < m_items.size(); ++i)
        if (int(i) + 1 != except && m_items[i].Name == name)
            return true;
    return false;
}

int* clsRptControl::nameCounter(int objectType, QString& prefix)
{
    switch (objectType) {
    case ObjType::Label: prefix = QStringLiteral("Label"); return &m_textBoxCount;
    case ObjType::Box: prefix = QStringLiteral("Rect"); return &m_boxCount;
    case ObjType::Line: prefix = QStringLiteral("Line"); return &m_lineCount;
    case ObjType::Image: prefix = QStringLiteral("Image"); return &m_imageCount;
    case ObjType::NewPage: prefix = QStringLiteral("NewPage"); return &m_newPageCount;
    case ObjType::Section: prefix = QStringLiteral("Section"); return &m_sectionCount;
    case ObjType::DateTime: prefix = QStringLiteral("DateTime"); return &m_dateSubCount;
    case ObjType::SubReport: prefix = QStringLiteral("SubReport"); return &m_dateSubCount;
    default: return nullptr;
    }
}

QString clsRptControl::freeName(int index)
{
    const ItemRecord& rec = Item(index);
    if (!nameTaken(rec.Name, index))
        return rec.Name;
    QString prefix;
    int* counter = nameCounter(rec.ObjectType, prefix);
    bool numbered = false;
    if (counter && rec.Name.startsWith(prefix))
        rec.Name.mid(prefix.size()).toInt(&numbered);
    if (numbered) {
        for (;;) {
            const QString candidate = prefix + QString::number(++*counter);
            if (!nameTaken(candidate, index))
                return candidate;
        }
    }
    for (int n = RptItemCount();; ++n)
        if (!nameTaken(rec.Name + QString::number(n), index))
            return rec.Name + QString::number(n);
}

void clsRptControl::applyDictionaryDefaults(ItemRecord& rec, QObject* c, int dicId)
{
    m_dic->SelectField(dicId);
    rec.DataField = m_dic->FieldColumnName();
    rec.CodeType = m_dic->FieldCodeType();
    if (!m_dic->FieldExpression().isEmpty())
        rec.Flags |= 1;
    switch (m_dic->FieldDataType()) {
    case 10: case 12: SetProp(c, "FormatClass", 4); break;
    case 8: SetProp(c, "FormatClass", 2); break;
    case 1: SetProp(c, "FormatClass", 3); break;
    case 2: case 3: case 4: case 5: case 6: case 7:
        if (rec.CodeType != 2) {
            SetProp(c, "FormatClass", 1);
            SetProp(c, "Alignment", 1);
            SetProp(c, "FunctionType", 0);
        } else {
            SetProp(c, "FormatClass", 0);
        }
        break;
    default: break;
    }
    SetProp(c, "DataFormat", m_dic->FieldFormat());
    SetProp(c, "BorderStyle", 5);
}

void clsRptControl::AddNew(int NewObjectType, const QString& UserFieldName, int DicId)
{
    m_items.push_back(ItemRecord{});
    m_index = RptItemCount();
    ItemRecord& rec = m_items.back();
    rec.ObjectType = NewObjectType;
    QObject* c = m_win ? m_win->LoadItemControl(NewObjectType) : nullptr;
    rec.control = c;
    m_userControl = c;

    switch (NewObjectType) {
    case ObjType::Field: {
        ++m_textBoxCount;
        rec.Name = uniqueFieldName(UserFieldName);
        if (DicId >= 1 && m_dic) {
            rec.DicId = DicId;
            applyDictionaryDefaults(rec, c, DicId);
            if (!AutoFillId.isEmpty())
                rec.Text = GetFieldValue(rec.DataField, rec.CodeType, rec.HasExpression(), Prop(c, "UseShortText").toBool());
        }
        SetProp(c, "Text", DataView ? rec.Text : rec.Name);
        break;
    }
    case ObjType::Label:
        ++m_textBoxCount;
        rec.Name = UserFieldName == QLatin1String("Unbound") ? QStringLiteral("Label") + QString::number(m_textBoxCount) : UserFieldName;
        break;
    case ObjType::Box:
        rec.Name = QStringLiteral("Rect") + QString::number(++m_boxCount);
        SetProp(c, "Selected", true);
        SetProp(c, "BorderStyle", 6);
        if (m_win && c)
            m_win->SendToBack(c);
        break;
    case ObjType::Line:
        rec.Name = QStringLiteral("Line") + QString::number(++m_lineCount);
        break;
    case ObjType::Image:
        rec.Name = QStringLiteral("Image") + QString::number(++m_imageCount);
        break;
    case ObjType::DateTime:
        ++m_textBoxCount;
        rec.Name = QStringLiteral("DateTime") + QString::number(++m_dateSubCount);
        SetProp(c, "FormatClass", 2);
        SetProp(c, "DataFormat", QStringLiteral("General Date"));
        SetProp(c, "Text", DataView ? rec.Text : rec.Name);
        break;
    case ObjType::SubReport:
        ++m_textBoxCount;
        rec.Name = QStringLiteral("SubReport") + QString::number(++m_dateSubCount);
        break;
    case ObjType::NewPage:
        ++m_textBoxCount;
        rec.Name = QStringLiteral("NewPage") + QString::number(++m_newPageCount);
        break;
    case ObjType::Section:
        ++m_textBoxCount;
        rec.Name = QStringLiteral("Section") + QString::number(++m_sectionCount);
        break;
    default:
        break;
    }
    // Counters start again with every document, but a loaded or pasted item may hold the name.
    if (NewObjectType != ObjType::Field)
        rec.Name = freeName(m_index);
    SetProp(c, "Tag", m_index);
    DirtyFlag = true;
    emit itemsChanged();
}

void clsRptControl::Delete(int DeleteIndex)
{
    if (DeleteIndex < 1 || DeleteIndex > RptItemCount())
        return;
    ItemRecord& rec = ItemRef(DeleteIndex);
    if (m_sheet)
        m_sheet->RemoveItemName(rec.Name);
    if (rec.control) {
        if (m_userControl == rec.control)
            m_userControl = nullptr;
        if (m_win)
            m_win->UnloadItemControl(rec.control);
    }
    m_items.erase(m_items.begin() + (DeleteIndex - 1));
    for (int i = DeleteIndex; i <= RptItemCount(); ++i)
        SetProp(ItemRef(i).control, "Tag", i);
    if (m_index > RptItemCount())
        m_index = RptItemCount();
    DirtyFlag = true;
    emit itemsChanged();
}

void clsRptControl::DeleteSelected()
{
    const QList<QObject*> sel = selection();
    for (auto it = sel.rbegin(); it != sel.rend(); ++it) {
        const int i = indexOf(*it);
        if (m_sel)
            m_sel->RemoveFromSelection(*it);
        if (i)
            Delete(i);
    }
    SetEdit();
    SetIndex(m_index);
}

void clsRptControl::MoveControls(float OldOffset, float NewOffset)
{
    const float delta = NewOffset - OldOffset;
    for (ItemRecord& r : m_items) {
        const float top = Prop(r.control, "Top").toFloat();
        if (top >= OldOffset - BarHeight)
            SetProp(r.control, "Top", top + delta);
    }
    if (m_sel)
        m_sel->RefreshHandles();
}

void clsRptControl::CalcEndOfPage(float& end) const
{
    end = 0;
    for (const ItemRecord& r : m_items)
        end = std::max(end, Prop(r.control, "Top").toFloat() + Prop(r.control, "Height").toFloat());
}

void clsRptControl::SelectByArea(float ALeft, float ATop, float ARight, float ABottom)
{
    auto within = [](float v, float lo, float hi) { return v >= lo && v <= hi; };
    for (const ItemRecord& r : m_items) {
        const float top = Prop(r.control, "Top").toFloat(), left = Prop(r.control, "Left").toFloat();
        const float bottom = top + Prop(r.control, "Height").toFloat();
        const float right = left + Prop(r.control, "Width").toFloat();
        if ((within(top, ATop, ABottom) || within(bottom, ATop, ABottom)) &&
            (within(left, ALeft, ARight) || within(right, ALeft, ARight)) && m_sel)
            m_sel->AddToSelection(r.control);
    }
    if (m_sel)
        m_sel->RefreshHandles();
    SetEdit();
}

bool clsRptControl::DeleteHeaderFooter()
{
    if (!m_win)
        return false;
    const float headerLimit = m_win->DetailHeaderBarOffset() - BarHeight;
    const float footerLimit = m_win->PageFooterBarOffset() - BarHeight;
    bool asked = false;
    auto confirm = [&]() {
        if (asked)
            return true;
        asked = true;
        const int answer = MsgBox(QStringLiteral("Warning - All Header/Footer items are about to be deleted!\nDo you wish to proceed?"),
                                  Mb::OKCancel | Mb::Exclamation, QStringLiteral("Delete Header/Footer"));
        return answer != Mb::Cancel;
    };
    // Page footer first, then page header, each from the last item to the first.
    for (int pass = 0; pass < 2; ++pass) {
        for (int i = RptItemCount(); i >= 1; --i) {
            const float top = Prop(Item(i).control, "Top").toFloat();
            const bool hit = pass == 0 ? top >= footerLimit : top < headerLimit;
            if (!hit)
                continue;
            if (!confirm()) {
                if (m_sel)
                    m_sel->RefreshHandles();
                return true;
            }
            if (m_sel && Item(i).control)
                m_sel->RemoveFromSelection(Item(i).control);
            Delete(i);
        }
    }
    return false;
}

void clsRptControl::PurgeText()
{
    for (ItemRecord& r : m_items)
        if (r.ObjectType == ObjType::Field) {
            r.Text.clear();
            SetProp(r.control, "Text", QString());
        }
}

void clsRptControl::SetPageDefaults()
{
    NewPage = true;
    TopMargin = BottomMargin = 1080;
    LeftMargin = RightMargin = 720;
    NumberOfColumns = 1;
    Paper.reset();
}

void clsRptControl::SetEdit()
{
    if (!m_win)
        return;
    const bool any = !selection().isEmpty();
    m_win->SetToolEnabled(QStringLiteral("miCopy"), any);
    m_win->SetToolEnabled(QStringLiteral("miCut"), any);
    m_win->SetToolEnabled(QStringLiteral("miPaste"), EditControlsPasted);
}

void clsRptControl::UnloadReport()
{
    if (m_sel)
        m_sel->ClearSelection();
    for (ItemRecord& r : m_items)
        if (r.control && m_win)
            m_win->UnloadItemControl(r.control);
    m_items.clear();
    m_index = 0;
    m_userControl = nullptr;
    m_textBoxCount = 0;
    if (m_win) {
        m_win->HideHeaderFooter();
        m_win->ClearDrawing();
    }
    SetPageDefaults();
    deleteTempFiles();
    emit itemsChanged();
}

QString clsRptControl::AddTempFile()
{
    const QString f = clsTempFile::FileName(QStringLiteral("~QR"));
    if (!f.isEmpty())
        m_tempFiles << f;
    return f;
}

void clsRptControl::deleteTempFiles()
{
    for (const QString& f : std::as_const(m_tempFiles))
        QFile::remove(f); // already gone is fine
    m_tempFiles.clear();
}
