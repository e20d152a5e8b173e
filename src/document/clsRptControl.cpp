#include "document/clsRptControl.h"

#include "entry/Host.h"
#include "sqltext/clsTempFile.h"

#include <QFile>
#include <QMetaProperty>
#include <cmath>

clsRptControl::clsRptControl()
{
    // The copy buffer's name is chosen once, when the document starts.
    m_copyBuffer = clsTempFile::FileName(QStringLiteral("~QR"));
}

clsRptControl::~clsRptControl()
{
    for (ItemRecord& r : m_items)
        r.control = nullptr;
    if (!m_copyBuffer.isEmpty())
        QFile::remove(m_copyBuffer);
    deleteTempFiles();
}

void clsRptControl::Init(FieldDictionary* dictionary, DesignSurface* window, PropertySheetLink* propertySheet)
{
    m_dic = dictionary;
    m_win = window;
    m_sheet = propertySheet;
    if (gHost) {
        m_db = &gHost->Database();
        m_graphicsFolder = (gHost->AppPath() + QStringLiteral("Graphics\\")).toUpper();
    }
}

// ---------------------------------------------------------------- control access

QVariant clsRptControl::Prop(const QObject* control, const char* name)
{
    if (!control || control->metaObject()->indexOfProperty(name) < 0)
        return {};
    return control->property(name);
}

bool clsRptControl::SetProp(QObject* control, const char* name, const QVariant& value)
{
    if (!control || control->metaObject()->indexOfProperty(name) < 0)
        return false;
    return control->setProperty(name, value);
}

bool clsRptControl::IsTextKind(int t)
{
    return t == ObjType::Field || t == ObjType::Label || t == ObjType::NewPage || t == ObjType::SubReport ||
           t == ObjType::DateTime || t == ObjType::Section || t == ObjType::FunctionField;
}

int clsRptControl::indexOf(const QObject* control) const
{
    if (!control)
        return 0;
    const int tag = Prop(control, "Tag").toInt();
    if (tag >= 1 && tag <= RptItemCount() && m_items[size_t(tag - 1)].control == control)
        return tag;
    for (size_t i = 0; i < m_items.size(); ++i)
        if (m_items[i].control == control)
            return int(i) + 1;
    return 0;
}

int clsRptControl::kindOf(const QObject* control) const
{
    const int i = indexOf(control);
    return i ? m_items[size_t(i - 1)].ObjectType : 0;
}

QList<QObject*> clsRptControl::selection() const
{
    return m_sel ? m_sel->SelectedControls() : QList<QObject*>();
}

void clsRptControl::tool(const QString& name, bool checked)
{
    if (m_win)
        m_win->SetToolChecked(name, checked);
}

void clsRptControl::toolText(const QString& name, const QString& text)
{
    if (m_win)
        m_win->SetToolText(name, text);
}

QVariant clsRptControl::readCurrent(const char* name) const
{
    return Prop(m_userControl, name);
}

void clsRptControl::writeSelected(const char* name, const QVariant& value, Applies applies)
{
    for (QObject* c : selection()) {
        const int kind = kindOf(c);
        if (applies == Applies::TextItems && !IsTextKind(kind))
            continue;
        if (applies == Applies::NotLines && kind == ObjType::Line)
            continue;
        SetProp(c, name, value);
    }
    DirtyFlag = true;
    if (m_sel)
        m_sel->RefreshHandles();
}

// ---------------------------------------------------------------- per-item properties

void clsRptControl::SetIndex(int index)
{
    m_index = index;
    if (index < 1 || index > RptItemCount())
        return;
    const ItemRecord& r = m_items[size_t(index - 1)];
    // The formatting tools show the current item, whatever kind of text it is.
    QObject* c = r.control;
    const QVariant effect = Prop(c, "SpecialEffect");
    if (effect.isValid()) {
        tool(QStringLiteral("miEffectFlat"), effect.toInt() == 0);
        tool(QStringLiteral("miEffectShadow"), effect.toInt() == 2);
    }
    if (IsTextKind(r.ObjectType)) {
        toolText(QStringLiteral("fnFont"), Prop(c, "FontName").toString());
        toolText(QStringLiteral("fnFontSize"), QString::number(Prop(c, "Fontsize").toDouble()));
        tool(QStringLiteral("fnBold"), Prop(c, "FontBold").toBool());
        tool(QStringLiteral("fnItalic"), Prop(c, "FontItalic").toBool());
        tool(QStringLiteral("fnUnderline"), Prop(c, "FontUnderline").toBool());
        const int a = Prop(c, "Alignment").toInt();
        tool(QStringLiteral("fnLeft"), a == 0);
        tool(QStringLiteral("fnRight"), a == 1);
        tool(QStringLiteral("fnCenter"), a == 2);
    }
}

QString clsRptControl::Name() const { return m_index ? Item(m_index).Name : QString(); }
void clsRptControl::SetName(const QString& v) { if (m_index) ItemRef(m_index).Name = v; }
QString clsRptControl::Text() const { return m_index ? Item(m_index).Text : QString(); }
void clsRptControl::SetText(const QString& v) { if (m_index) ItemRef(m_index).Text = v; }
int clsRptControl::DicId() const { return m_index ? Item(m_index).DicId : 0; }
void clsRptControl::SetDicId(int v) { if (m_index) ItemRef(m_index).DicId = v; }
QString clsRptControl::CustomSQL() const { return m_index ? Item(m_index).DataField : QString(); }

void clsRptControl::SetCustomSQL(const QString& v)
{
    if (!m_index)
        return;
    ItemRef(m_index).DataField = v;
    if (m_sheet)
        m_sheet->ShowValue(QStringLiteral("CustomSQL"), v);
}

int clsRptControl::ObjectType(int index) const
{
    return index >= 1 && index <= RptItemCount() ? Item(index).ObjectType : 0;
}

QString clsRptControl::DataField() const
{
    const int i = indexOf(m_userControl);
    return i ? Item(i).DataField : QString();
}

void clsRptControl::SetDataField(const QString& v)
{
    const int i = indexOf(m_userControl);
    if (!i)
        return;
    ItemRef(i).DataField = v;
    if (m_sheet)
        m_sheet->ShowValue(QStringLiteral("DataField"), v);
}

// ---------------------------------------------------------------- selection-wide properties

QString clsRptControl::FontName() const { return readCurrent("FontName").toString(); }
void clsRptControl::SetFontName(const QString& v)
{
    writeSelected("FontName", v, Applies::TextItems);
    toolText(QStringLiteral("fnFont"), v);
}
float clsRptControl::Fontsize() const { return readCurrent("Fontsize").toFloat(); }
void clsRptControl::SetFontsize(float v)
{
    writeSelected("Fontsize", v, Applies::TextItems);
    toolText(QStringLiteral("fnFontSize"), QString::number(double(v)));
}
bool clsRptControl::FontBold() const { return readCurrent("FontBold").toBool(); }
void clsRptControl::SetFontBold(bool v) { writeSelected("FontBold", v, Applies::TextItems); tool(QStringLiteral("fnBold"), v); }
bool clsRptControl::FontItalic() const { return readCurrent("FontItalic").toBool(); }
void clsRptControl::SetFontItalic(bool v) { writeSelected("FontItalic", v, Applies::TextItems); tool(QStringLiteral("fnItalic"), v); }
bool clsRptControl::FontUnderline() const { return readCurrent("FontUnderline").toBool(); }
void clsRptControl::SetFontUnderline(bool v) { writeSelected("FontUnderline", v, Applies::TextItems); tool(QStringLiteral("fnUnderline"), v); }
int clsRptControl::Alignment() const { return readCurrent("Alignment").toInt(); }
void clsRptControl::SetAlignment(int v)
{
    writeSelected("Alignment", v, Applies::TextItems);
    tool(QStringLiteral("fnLeft"), v == 0);
    tool(QStringLiteral("fnRight"), v == 1);
    tool(QStringLiteral("fnCenter"), v == 2);
}
int clsRptControl::ImageAlignment() const { return readCurrent("Alignment").toInt(); }
void clsRptControl::SetImageAlignment(int v) { writeSelected("Alignment", v, Applies::All); }
int clsRptControl::ImageSizeMode() const { return readCurrent("SizeMode").toInt(); }
void clsRptControl::SetImageSizeMode(int v) { writeSelected("SizeMode", v, Applies::All); }
int clsRptControl::Effect() const { return readCurrent("SpecialEffect").toInt(); }
void clsRptControl::SetEffect(int v)
{
    writeSelected("SpecialEffect", v, Applies::All);
    tool(QStringLiteral("miEffectFlat"), v == 0);
    tool(QStringLiteral("miEffectShadow"), v == 2);
}
bool clsRptControl::AllowGrow() const { return readCurrent("AllowGrow").toBool(); }
void clsRptControl::SetAllowGrow(bool v) { writeSelected("AllowGrow", v, Applies::All); }
bool clsRptControl::AllowShrink() const { return readCurrent("AllowShrink").toBool(); }
void clsRptControl::SetAllowShrink(bool v) { writeSelected("AllowShrink", v, Applies::All); }
bool clsRptControl::UseShortText() const { return readCurrent("UseShortText").toBool(); }
void clsRptControl::SetUseShortText(bool v) { writeSelected("UseShortText", v, Applies::All); }
float clsRptControl::BorderWidth() const { return readCurrent("BorderWidth").toFloat(); }
void clsRptControl::SetBorderWidth(float v) { writeSelected("BorderWidth", v, Applies::All); }
int clsRptControl::BorderStyle() const { return readCurrent("BorderStyle").toInt(); }
void clsRptControl::SetBorderStyle(int v) { writeSelected("BorderStyle", v, Applies::All); }
int clsRptControl::Backstyle() const { return readCurrent("Backstyle").toInt(); }
void clsRptControl::SetBackstyle(int v) { writeSelected("Backstyle", v, Applies::All); }
QString clsRptControl::ItemFileName() const { return readCurrent("FileName").toString(); }
void clsRptControl::SetItemFileName(const QString& v)
{
    writeSelected("FileName", v, Applies::All);
    if (m_sheet)
        m_sheet->ShowValue(QStringLiteral("FileName"), v);
}
int clsRptControl::Category() const { return readCurrent("Category").toInt(); }
void clsRptControl::SetCategory(int v) { writeSelected("Category", v, Applies::All); }
int clsRptControl::FunctionType() const { return readCurrent("FunctionType").toInt(); }
void clsRptControl::SetFunctionType(int v) { writeSelected("FunctionType", v, Applies::All); }
int clsRptControl::PhotoSeq() const { return readCurrent("PhotoSeq").toInt(); }
void clsRptControl::SetPhotoSeq(int v)
{
    for (QObject* c : selection()) {
        const bool changed = Prop(c, "PhotoSeq").isValid() && Prop(c, "PhotoSeq").toInt() != v;
        SetProp(c, "PhotoSeq", v);
        // A bound picture whose photo number changes shows that photo.
        if (changed && kindOf(c) == ObjType::Image && Prop(c, "DataBound").toBool() && DataView && !AutoFillId.isEmpty())
            SetProp(c, "FileName", GetBoundPhotoFile(AutoFillId, v, QString(), Prop(c, "Category").toInt()));
    }
    DirtyFlag = true;
    if (m_sel)
        m_sel->RefreshHandles();
}
QString clsRptControl::DataFormat() const { return readCurrent("DataFormat").toString(); }
void clsRptControl::SetDataFormat(const QString& v)
{
    writeSelected("DataFormat", v, Applies::All);
    if (m_sheet)
        m_sheet->ShowValue(QStringLiteral("DataFormat"), v);
}
quint32 clsRptControl::ForeColor() const { return readCurrent("ForeColor").toUInt(); }
void clsRptControl::SetForeColor(quint32 v) { writeSelected("ForeColor", v, Applies::TextItems); }
quint32 clsRptControl::BackColor() const { return readCurrent("BackColor").toUInt(); }
void clsRptControl::SetBackColor(quint32 v) { writeSelected("BackColor", v, Applies::NotLines); }
quint32 clsRptControl::BorderColor() const { return readCurrent("BorderColor").toUInt(); }
void clsRptControl::SetBorderColor(quint32 v) { writeSelected("BorderColor", v, Applies::All); }

#define PW_GEOMETRY(NAME)                                                      \
    float clsRptControl::NAME() const { return readCurrent(#NAME).toFloat(); } \
    void clsRptControl::Set##NAME(float v)                                     \
    {                                                                          \
        writeSelected(#NAME, v, Applies::All);                                 \
        if (m_sheet)                                                           \
            m_sheet->ShowValue(QStringLiteral(#NAME), v);                      \
    }
PW_GEOMETRY(Height)
PW_GEOMETRY(Width)
PW_GEOMETRY(Top)
PW_GEOMETRY(Left)
#undef PW_GEOMETRY

void clsRptControl::ZOrder(int position)
{
    for (QObject* c : selection())
        if (const int i = indexOf(c))
            ItemRef(i).ZOrder = position;
    DirtyFlag = true;
}

void clsRptControl::SetSectionSpacing(float inches)
{
    m_sectionSpacing = inches;
    if (m_sheet)
        m_sheet->ShowValue(QStringLiteral("SectionSpacing"), inches);
}

// ---------------------------------------------------------------- look-ups

int clsRptControl::FindObject(const QString& objectName) const
{
    for (size_t i = 0; i < m_items.size(); ++i)
        if (m_items[i].Name == objectName)
            return int(i) + 1;
    return 0;
}

void clsRptControl::ChangeObjectName(const QString& newName)
{
    if (!m_index)
        return;
    if (m_sheet)
        m_sheet->ReplaceItemName(Item(m_index).Name, newName);
    ItemRef(m_index).Name = newName;
    DirtyFlag = true;
    emit itemsChanged(); // the window's list of names shows the new one
}
