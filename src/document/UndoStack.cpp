#include "document/UndoStack.h"

#include "document/clsRptControl.h"

#include <QHash>
#include <QSet>

// Everything about an item but its place: the file record (geometry zeroed) and the record
// fields the file does not carry as such.
struct UndoStack::ItemBody {
    RdfItem file;
    int objectType = 0;
    QString text;
    QString dataField;
    int dicId = 0;
    int codeType = 0;
    quint8 flags = 0;
    int zOrder = 0;

    bool operator==(const ItemBody&) const = default;

    qint64 bytes() const
    {
        const auto s = [](const QString& v) { return qint64(v.size()) * 2; };
        return qint64(sizeof(ItemBody)) + 32 + s(file.name) + s(file.dataField) + s(file.fontName) +
               s(file.text) + s(file.formatOrFile) + s(text) + s(dataField);
    }
};

namespace {
const char* const kUidProperty = "pwUndoId";

bool sameItem(const UndoStack::ItemState& a, const UndoStack::ItemState& b)
{
    return a.uid == b.uid && a.body == b.body && a.left == b.left && a.top == b.top && a.width == b.width &&
           a.height == b.height && a.z == b.z;
}
} // namespace

UndoStack::UndoStack(clsRptControl& doc, UndoSurface* surface) : m_doc(doc), m_surface(surface) {}

UndoStack::~UndoStack() = default;

quint32 UndoStack::uidOf(QObject* control)
{
    if (!control)
        return 0;
    bool ok = false;
    quint32 uid = control->property(kUidProperty).toUInt(&ok);
    if (!ok || uid == 0) {
        ++m_fresh;
        uid = m_nextUid++;
        control->setProperty(kUidProperty, uid);
    }
    return uid;
}

QList<quint32> UndoStack::selectionNow() const
{
    QList<quint32> uids;
    if (m_doc.m_sel)
        for (QObject* c : m_doc.m_sel->SelectedControls())
            if (c)
                uids << c->property(kUidProperty).toUInt();
    return uids;
}

UndoStack::ItemState UndoStack::captureItem(int index, const ItemState* previous)
{
    const ItemRecord& rec = m_doc.Item(index);
    QObject* c = rec.control;
    ItemState st;
    st.uid = uidOf(c);
    st.left = clsRptControl::Prop(c, "Left").toFloat();
    st.top = clsRptControl::Prop(c, "Top").toFloat();
    st.width = clsRptControl::Prop(c, "Width").toFloat();
    st.height = clsRptControl::Prop(c, "Height").toFloat();
    st.z = clsRptControl::Prop(c, "z").toDouble();

    ItemBody body;
    body.file = c ? m_doc.recordOf(rec) : RdfItem{};
    body.file.left = body.file.top = 0;
    body.file.width = body.file.height = 0;
    body.objectType = rec.ObjectType;
    body.text = rec.Text;
    body.dataField = rec.DataField;
    body.dicId = rec.DicId;
    body.codeType = rec.CodeType;
    body.flags = rec.Flags;
    body.zOrder = rec.ZOrder;
    if (previous && previous->body && *previous->body == body)
        st.body = previous->body;
    else
        st.body = std::make_shared<const ItemBody>(std::move(body));
    return st;
}

UndoStack::Snapshot UndoStack::capture(const Snapshot* previous)
{
    Snapshot s;
    QHash<quint32, int> before;
    if (previous) {
        before.reserve(qsizetype(previous->items.size()));
        for (int i = 0; i < int(previous->items.size()); ++i)
            before.insert(previous->items[size_t(i)].uid, i);
    }
    const int n = m_doc.RptItemCount();
    s.items.reserve(size_t(n));
    s.bytes = qint64(sizeof(Snapshot)) + qint64(n) * qint64(sizeof(ItemState));
    for (int i = 1; i <= n; ++i) {
        const ItemRecord& rec = m_doc.Item(i);
        const quint32 uid = rec.control ? rec.control->property(kUidProperty).toUInt() : 0;
        const auto it = uid ? before.constFind(uid) : before.cend();
        ItemState st = captureItem(i, it != before.cend() ? &previous->items[size_t(*it)] : nullptr);
        if (it == before.cend() || previous->items[size_t(*it)].body != st.body)
            s.bytes += st.body->bytes();
        s.items.push_back(std::move(st));
    }
    PageState& p = s.page;
    p.top = m_doc.TopMargin;
    p.bottom = m_doc.BottomMargin;
    p.left = m_doc.LeftMargin;
    p.right = m_doc.RightMargin;
    p.columns = m_doc.NumberOfColumns;
    p.sectionSpacing = m_doc.SectionSpacing();
    p.newPage = m_doc.NewPage;
    p.headerFlags = m_doc.HeaderFlags;
    p.reportOption = m_doc.ReportOption;
    p.fieldListFlag = m_doc.FieldListFlag;
    p.clearDataSource = m_doc.ClearDataSource;
    if (m_surface)
        s.surface = m_surface->CaptureSurface();
    s.selection = selectionNow();
    s.bytes += qint64(s.selection.size()) * 4;
    return s;
}

void UndoStack::Reset()
{
    m_states.clear();
    m_states.push_back(capture(nullptr));
    m_cur = 0;
    // An empty new report has nothing to lose: undoing back to it leaves nothing unsaved.
    m_saved = m_doc.DirtyFlag && m_doc.RptItemCount() > 0 ? -1 : 0;
}

bool UndoStack::Checkpoint(const QString& name)
{
    if (m_states.empty()) {
        Reset();
        return false;
    }
    Snapshot& last = m_states[size_t(m_cur)];
    m_fresh = 0;
    Snapshot now = capture(&last);
    // Nothing but new items and nothing unsaved: another report was loaded, with its own history.
    if (!m_doc.DirtyFlag && !now.items.empty() && m_fresh == int(now.items.size())) {
        m_states.clear();
        m_states.push_back(std::move(now));
        m_cur = m_saved = 0;
        return false;
    }
    bool changed = now.items.size() != last.items.size() || !(now.page == last.page) ||
                   !(now.surface == last.surface);
    for (size_t i = 0; !changed && i < now.items.size(); ++i)
        changed = !sameItem(now.items[i], last.items[i]);
    if (!changed) {
        last.selection = now.selection;
        if (!m_doc.DirtyFlag)
            m_saved = m_cur; // saved since
        return false;
    }
    now.name = name.isEmpty() ? describe(last, now) : name;
    m_states.resize(size_t(m_cur) + 1);
    if (m_saved > m_cur)
        m_saved = -1; // the saved state was undone and is now overwritten
    m_states.push_back(std::move(now));
    ++m_cur;
    m_doc.DirtyFlag = true;
    enforceCap();
    return true;
}

namespace {
QString kindName(int objectType)
{
    switch (objectType) {
    case ObjType::Field: return QStringLiteral("Field");
    case ObjType::Label: return QStringLiteral("Label");
    case ObjType::Box: return QStringLiteral("Rectangle");
    case ObjType::Line: return QStringLiteral("Line");
    case ObjType::Image: return QStringLiteral("Picture");
    case ObjType::NewPage: return QStringLiteral("Page Break");
    case ObjType::SubReport: return QStringLiteral("Sub Report");
    case ObjType::DateTime: return QStringLiteral("Date/Time");
    case ObjType::Section: return QStringLiteral("Section Break");
    default: return QString();
    }
}
} // namespace

QString UndoStack::describe(const Snapshot& from, const Snapshot& to) const
{
    QSet<quint32> fromIds, toIds;
    for (const ItemState& s : from.items)
        fromIds.insert(s.uid);
    for (const ItemState& s : to.items)
        toIds.insert(s.uid);
    QSet<int> addedKinds;
    for (const ItemState& s : to.items)
        if (!fromIds.contains(s.uid))
            addedKinds.insert(s.body->objectType);
    bool removed = false;
    for (const ItemState& s : from.items)
        removed = removed || !toIds.contains(s.uid);
    if (!addedKinds.isEmpty() && removed)
        return QStringLiteral("Edit");
    if (!addedKinds.isEmpty())
        return addedKinds.size() == 1 ? QStringLiteral("Insert ") + kindName(*addedKinds.cbegin())
                                      : QStringLiteral("Insert");
    if (removed)
        return QStringLiteral("Delete");
    if (!(from.surface == to.surface))
        return from.surface.gridX != to.surface.gridX || from.surface.gridY != to.surface.gridY
                   ? QStringLiteral("Grid Settings")
                   : QStringLiteral("Move Section");
    if (!(from.page == to.page))
        return QStringLiteral("Page Setup");
    bool moved = false, resized = false, formatted = false, typed = false, restacked = false;
    for (size_t i = 0; i < to.items.size(); ++i) {
        const ItemState& a = from.items[i];
        const ItemState& b = to.items[i];
        if (a.uid != b.uid || a.z != b.z)
            restacked = true;
        if (a.width != b.width || a.height != b.height)
            resized = true;
        else if (a.left != b.left || a.top != b.top)
            moved = true;
        if (a.body == b.body)
            continue;
        // A resize that only changes how the file marks a tall field is still a resize.
        ItemBody x = *a.body, y = *b.body;
        x.file.flags &= ~RdfFlag::MultiLine;
        y.file.flags &= ~RdfFlag::MultiLine;
        if (x.zOrder != y.zOrder)
            restacked = true;
        x.zOrder = y.zOrder;
        if (x.file.text != y.file.text || x.text != y.text)
            typed = true;
        x.file.text = y.file.text;
        x.text = y.text;
        if (!(x == y))
            formatted = true;
    }
    if (formatted)
        return QStringLiteral("Format");
    if (typed)
        return QStringLiteral("Typing");
    if (resized)
        return QStringLiteral("Resize");
    if (moved)
        return QStringLiteral("Move");
    if (restacked)
        return QStringLiteral("Arrange");
    return QStringLiteral("Edit");
}

QString UndoStack::UndoName() const { return CanUndo() ? m_states[size_t(m_cur)].name : QString(); }
QString UndoStack::RedoName() const { return CanRedo() ? m_states[size_t(m_cur) + 1].name : QString(); }

bool UndoStack::Undo(bool takeInChanges)
{
    // A change not yet taken in is the step to take back.
    if (takeInChanges)
        Checkpoint();
    if (!CanUndo())
        return false;
    const std::vector<int> touched = restore(m_states[size_t(m_cur)], m_states[size_t(m_cur) - 1]);
    --m_cur;
    settle(touched);
    m_doc.DirtyFlag = m_cur != m_saved;
    if (restored)
        restored();
    return true;
}

bool UndoStack::Redo(bool takeInChanges)
{
    if (takeInChanges)
        Checkpoint();
    if (!CanRedo())
        return false;
    const std::vector<int> touched = restore(m_states[size_t(m_cur)], m_states[size_t(m_cur) + 1]);
    ++m_cur;
    settle(touched);
    m_doc.DirtyFlag = m_cur != m_saved;
    if (restored)
        restored();
    return true;
}

void UndoStack::settle(const std::vector<int>& touched)
{
    // The items written stand in the step as their controls show them, so that what a control
    // derives from the restored values (a line's slack, a rounded border) is never taken for a
    // change of its own.
    Snapshot& s = m_states[size_t(m_cur)];
    for (int t : touched) {
        const int i = t >= 0 ? t : -1 - t;
        if (size_t(i) >= s.items.size())
            continue;
        ItemState& st = s.items[size_t(i)];
        if (t >= 0) {
            st = captureItem(i + 1, &st);
            continue;
        }
        const QObject* c = m_doc.Item(i + 1).control;
        st.left = clsRptControl::Prop(c, "Left").toFloat();
        st.top = clsRptControl::Prop(c, "Top").toFloat();
        st.width = clsRptControl::Prop(c, "Width").toFloat();
        st.height = clsRptControl::Prop(c, "Height").toFloat();
    }
    s.page.sectionSpacing = m_doc.SectionSpacing();
}

std::vector<int> UndoStack::restore(const Snapshot& from, const Snapshot& to)
{
    std::vector<int> touched;
    clsRptControl& d = m_doc;
    QHash<quint32, int> at; // uid -> index in the document (which stands at `from`)
    at.reserve(qsizetype(from.items.size()));
    for (int i = 0; i < int(from.items.size()); ++i)
        at.insert(from.items[size_t(i)].uid, i);

    if (d.m_sel)
        d.m_sel->ClearSelection();
    std::vector<ItemRecord> records;
    records.reserve(to.items.size());
    std::vector<bool> kept(from.items.size(), false);
    QHash<quint32, QObject*> controls;
    for (const ItemState& t : to.items) {
        const ItemBody& b = *t.body;
        QObject* c = nullptr;
        const ItemState* was = nullptr;
        const auto it = at.constFind(t.uid);
        if (it != at.cend() && size_t(*it) < d.m_items.size()) {
            was = &from.items[size_t(*it)];
            kept[size_t(*it)] = true;
            c = d.m_items[size_t(*it)].control;
        }
        if (!c && d.m_win) {
            c = d.m_win->LoadItemControl(b.objectType);
            was = nullptr;
            if (c)
                c->setProperty(kUidProperty, t.uid);
        }
        if (c && (!was || was->body != t.body)) {
            d.applyRecord(c, b.objectType, b.file, {});
            if (b.objectType == ObjType::Image) {
                clsRptControl::SetProp(c, "Embeded", bool(b.file.flags & RdfFlag::Embedded));
                if (clsRptControl::Prop(c, "FileName").toString() != b.file.formatOrFile)
                    clsRptControl::SetProp(c, "FileName", b.file.formatOrFile);
            }
            if (b.objectType == ObjType::Field && d.DataView)
                clsRptControl::SetProp(c, "Text", b.text);
        }
        if (c && (!was || was->body != t.body || was->left != t.left || was->top != t.top ||
                  was->width != t.width || was->height != t.height)) {
            clsRptControl::SetProp(c, "Left", t.left);
            clsRptControl::SetProp(c, "Top", t.top);
            clsRptControl::SetProp(c, "Width", t.width);
            clsRptControl::SetProp(c, "Height", t.height);
        }
        if (c && (!was || was->z != t.z))
            clsRptControl::SetProp(c, "z", t.z);
        // Negative: only the place was written.
        if (c && (!was || !sameItem(*was, t)))
            touched.push_back(!was || was->body != t.body ? int(records.size()) : -1 - int(records.size()));
        ItemRecord rec;
        rec.ObjectType = b.objectType;
        rec.control = c;
        rec.Name = b.file.name;
        rec.Text = b.text;
        rec.DataField = b.dataField;
        rec.DicId = b.dicId;
        rec.CodeType = b.codeType;
        rec.Flags = b.flags;
        rec.ZOrder = b.zOrder;
        records.push_back(rec);
        controls.insert(t.uid, c);
    }
    for (size_t i = 0; i < from.items.size() && i < d.m_items.size(); ++i) {
        if (kept[i])
            continue;
        if (d.m_sheet)
            d.m_sheet->RemoveItemName(d.m_items[i].Name);
        if (d.m_win && d.m_items[i].control)
            d.m_win->UnloadItemControl(d.m_items[i].control);
    }
    d.m_items = std::move(records);
    for (int i = 1; i <= int(d.m_items.size()); ++i)
        if (QObject* c = d.m_items[size_t(i - 1)].control; c && c->property("Tag").toInt() != i)
            clsRptControl::SetProp(c, "Tag", i);
    d.m_index = 0;
    d.m_userControl = nullptr;

    const PageState& p = to.page;
    d.TopMargin = p.top;
    d.BottomMargin = p.bottom;
    d.LeftMargin = p.left;
    d.RightMargin = p.right;
    d.NumberOfColumns = p.columns;
    if (d.SectionSpacing() != p.sectionSpacing)
        d.SetSectionSpacing(p.sectionSpacing);
    d.NewPage = p.newPage;
    d.HeaderFlags = p.headerFlags;
    d.ReportOption = p.reportOption;
    d.FieldListFlag = p.fieldListFlag;
    d.ClearDataSource = p.clearDataSource;
    if (m_surface && !(from.surface == to.surface))
        m_surface->RestoreSurface(to.surface);

    if (d.m_sel) {
        for (quint32 uid : to.selection)
            if (QObject* c = controls.value(uid))
                d.m_sel->AddToSelection(c);
        d.m_sel->RefreshHandles();
    }
    emit d.itemsChanged();
    d.SetEdit();
    return touched;
}

qint64 UndoStack::MemoryUsed() const
{
    qint64 total = 0;
    for (const Snapshot& s : m_states)
        total += s.bytes;
    return total;
}

void UndoStack::SetMemoryCap(qint64 bytes)
{
    m_cap = bytes;
    enforceCap();
}

void UndoStack::enforceCap()
{
    // The oldest steps go first; the state the document stands in always stays.
    qint64 used = MemoryUsed();
    while (used > m_cap && m_cur > 0) {
        used -= m_states.front().bytes;
        m_states.erase(m_states.begin());
        --m_cur;
        m_saved = m_saved > 0 ? m_saved - 1 : -1;
        // The new first state now holds alone the items it shared with the dropped one: it
        // counts every item it holds.
        Snapshot& first = m_states.front();
        used -= first.bytes;
        first.bytes = qint64(sizeof(Snapshot)) + qint64(first.items.size()) * qint64(sizeof(ItemState)) +
                      qint64(first.selection.size()) * 4;
        QSet<const ItemBody*> seen;
        for (const ItemState& st : first.items)
            if (st.body && !seen.contains(st.body.get())) {
                seen.insert(st.body.get());
                first.bytes += st.body->bytes();
            }
        used += first.bytes;
    }
}
