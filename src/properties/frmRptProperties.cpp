#include "properties/frmRptProperties.h"
#include "entry/ReportKinds.h"

#include "document/clsRptControl.h"
#include "entry/Host.h"
#include "properties/NumberEdit.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <cmath>

namespace {
// Row geometry, in twips like everything else on the page.
constexpr int RowLeft = 60, FirstRowTop = 90, RowGap = 30;
constexpr int LabelWidth = 1500, EditorWidth = 1560, ButtonWidth = 300;

NumberEdit* NewNumberEdit(const QString& name, QWidget* parent)
{
    if (name == QLatin1String("fpBorderWidth") || name == QLatin1String("fpSectionSpacing"))
        return new NumberEdit(0, 100, 2, parent);
    if (name == QLatin1String("fpPhotoSeq"))
        return new NumberEdit(0, 32767, 0, parent);
    if (name == QLatin1String("fpForeColor") || name == QLatin1String("fpBorderColor") ||
        name == QLatin1String("fpBackColor")) {
        auto* edit = name == QLatin1String("fpBackColor") ? new NumberEdit(-2147483648.0, 2147483647.0, 0, parent)
                                                          : new NumberEdit(0, 2147483647.0, 0, parent);
        edit->SetColourMode(QStringLiteral("sw") + name.mid(2));
        return edit;
    }
    return new NumberEdit(0, 35000, 0, parent); // positions, sizes and the page length, in twips
}
} // namespace

frmRptProperties::frmRptProperties(QWidget* parent)
    : HostToolWindow(parent)
{
    setObjectName(QStringLiteral("frmRptProperties"));
    setWindowTitle(QStringLiteral("Properties"));
    m_objects = new QComboBox(this);
    m_objects->setObjectName(QStringLiteral("cboObjects"));
    m_viewport = new QScrollArea(this);
    m_viewport->setObjectName(QStringLiteral("vsViewPort1"));
    m_viewport->setWidgetResizable(false);
    m_panel = new QWidget;
    m_panel->setObjectName(QStringLiteral("picProperties"));
    m_viewport->setWidget(m_panel);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_objects);
    layout->addWidget(m_viewport, 1);

    BuildRows();
    connect(m_objects, &QComboBox::activated, this, &frmRptProperties::ObjectChosen);
}

frmRptProperties::~frmRptProperties()
{
    // The editors die after this object's members: nothing they say on the way may reach us.
    m_doc = nullptr;
    m_sel = nullptr;
    for (QWidget* editor : std::as_const(m_editors)) {
        editor->removeEventFilter(this);
        disconnect(editor, nullptr, this, nullptr);
    }
    disconnect(m_objects, nullptr, this, nullptr);
}

void frmRptProperties::BuildRows()
{
    for (const SheetRow& def : SheetRows()) {
        Row row{&def, new QLabel(QString::fromLatin1(def.caption), m_panel), NewEditor(def), nullptr};
        row.label->setObjectName(QString::fromLatin1(def.label));
        if (def.button) {
            row.button = new QPushButton(QStringLiteral(". . ."), m_panel);
            row.button->setObjectName(QString::fromLatin1(def.button));
            row.button->setFocusPolicy(Qt::TabFocus);
        }
        m_rows << row;
        EditorState state;
        state.prop = def.prop;
        state.family = def.family;
        m_states.insert(row.editor, state);
        row.editor->installEventFilter(this);
        if (auto* list = qobject_cast<QComboBox*>(row.editor)) {
            if (def.family == EditorFamily::FixedList)
                connect(list, &QComboBox::activated, this, [this, list] { FixedListClicked(list); });
            else if (def.family == EditorFamily::FontList)
                connect(list, &QComboBox::activated, this, [this, list] { FontListClicked(list); });
        }
    }
    for (const Row& row : m_rows)
        if (row.button) {
            const SheetProp prop = row.def->prop;
            connect(row.button, &QPushButton::clicked, this, [this, prop] {
                if (prop == SheetProp::FileName)
                    cmdSetFileName_Click();
                else
                    cmdSetColor_Click(prop);
            });
        }

    // The section rows sit on the panel too, but the row layout never shows them.
    auto hidden = [this](const char* label, const QString& caption, QWidget* editor, const QString& tip) {
        auto* l = new QLabel(caption, m_panel);
        l->setObjectName(QString::fromLatin1(label));
        l->hide();
        editor->setToolTip(tip);
        editor->hide();
        m_editors.insert(editor->objectName(), editor);
    };
    auto* spacing = NewNumberEdit(QStringLiteral("fpSectionSpacing"), m_panel);
    spacing->setObjectName(QStringLiteral("fpSectionSpacing"));
    hidden("lblSectionSpacing", QStringLiteral("Section Spacing"), spacing,
           QStringLiteral("Space in inches between sections when printing more than one section per page"));
    auto* force = new QComboBox(m_panel);
    force->setObjectName(QStringLiteral("cboForceNewPage"));
    hidden("lblForceNewPage", QStringLiteral("Force New Page"), force,
           QStringLiteral("Force a new page after printing this section"));
    auto* length = NewNumberEdit(QStringLiteral("fpLength"), m_panel);
    length->setObjectName(QStringLiteral("fpLength"));
    hidden("lblLength", QStringLiteral("Length"), length, QString());
}

QWidget* frmRptProperties::NewEditor(const SheetRow& def)
{
    const QString name = QString::fromLatin1(def.editor);
    QWidget* editor = nullptr;
    switch (def.family) {
    case EditorFamily::Number:
        editor = NewNumberEdit(name, m_panel);
        break;
    case EditorFamily::Name:
    case EditorFamily::Text:
        editor = new QLineEdit(m_panel);
        if (def.family == EditorFamily::Name)
            editor->setToolTip(QStringLiteral("Name of Item"));
        break;
    default: {
        auto* list = new QComboBox(m_panel);
        const bool editable = def.family == EditorFamily::FontList || def.family == EditorFamily::FormatList ||
                              def.family == EditorFamily::DataFieldList;
        list->setEditable(editable);
        list->setInsertPolicy(QComboBox::NoInsert);
        editor = list;
    }
    }
    editor->setObjectName(name);
    // Not WheelFocus: a wheel passing over the sheet must not land in an editor.
    editor->setFocusPolicy(Qt::StrongFocus);
    m_editors.insert(name, editor);
    return editor;
}

void frmRptProperties::Init(clsRptControl* document, SelectionManager* selection)
{
    m_doc = document;
    m_sel = selection;
    if (m_doc)
        m_doc->DirtyFlag = true;
    const double twipsPerPixel = 1440.0 / logicalDpiX();
    resize(int(std::lround(3500 / twipsPerPixel)), int(std::lround(6300 / twipsPerPixel)));
    FillLists();
    m_viewport->setBackgroundRole(m_panel->backgroundRole());
    m_viewport->viewport()->setPalette(m_panel->palette());
    m_panel->move(0, 0);
    AttachHostEvents();
}

void frmRptProperties::FillLists()
{
    for (auto it = m_editors.cbegin(); it != m_editors.cend(); ++it) {
        auto* list = qobject_cast<QComboBox*>(it.value());
        if (!list || list->objectName() == QLatin1String("cboFontName"))
            continue;
        const QSignalBlocker block(list);
        list->clear();
        for (const ValueEntry& e : ValueList(list->objectName()))
            list->addItem(e.text, e.code);
        list->setCurrentIndex(-1);
    }
    auto* sizes = static_cast<QComboBox*>(m_editors.value(QStringLiteral("cboFontSize")));
    const QSignalBlocker block(sizes);
    sizes->addItems(FontSizes());
    sizes->setEditText(QString());
}

void frmRptProperties::FillFontNames(QComboBox* list)
{
    const QString text = list->currentText();
    const QSignalBlocker block(list);
    list->addItems(QFontDatabase::families());
    list->setEditText(text);
}

void frmRptProperties::SelComboItem(QComboBox* list, int code)
{
    if (!list)
        return;
    for (int i = 0; i < list->count(); ++i)
        if (list->itemData(i).isValid() && list->itemData(i).toInt() == code) {
            list->setCurrentIndex(i);
            return;
        }
}

// ---------------------------------------------------------------- loading

void frmRptProperties::ShowProperties()
{
    LoadProperties();
    show();
    raise();
    activateWindow();
}

void frmRptProperties::LoadProperties()
{
    if (!m_doc)
        return;
    m_loading = true;
    m_panel->hide();
    FillObjectList();
    const QList<QObject*> selected = m_sel ? m_sel->SelectedControls() : QList<QObject*>();
    if (selected.isEmpty()) {
        m_mask = 0;
        m_loading = false;
        return;
    }
    static_cast<QLineEdit*>(m_editors.value(QStringLiteral("txtName")))->setText(m_doc->Name());

    auto label = [this](const char* name) { return m_panel->findChild<QLabel*>(QString::fromLatin1(name)); };
    const bool currentIsLine = m_doc->ObjectType(m_doc->Index()) == ObjType::Line;
    label("lblBorderWidth")->setText(currentIsLine ? QStringLiteral("Width") : QStringLiteral("Border Width"));
    label("lblBorderStyle")->setText(currentIsLine ? QStringLiteral("Style") : QStringLiteral("Border Style"));
    label("lblBorderColor")->setText(currentIsLine ? QStringLiteral("Color") : QStringLiteral("Border Color"));
    label("lblWidth")->setText(QStringLiteral("Width"));
    label("lblHeight")->setText(QStringLiteral("Height"));

    m_mask = RowBit::All;
    for (QObject* c : selected) {
        const int kind = m_doc->ObjectType(clsRptControl::Prop(c, "Tag").toInt());
        m_mask &= KindRowMask(kind);
        if (kind != ObjType::Line)
            continue;
        // A line has one length: along its width when horizontal, else along its height.
        if (clsRptControl::Prop(c, "Orientation").toInt() == 1) {
            label("lblWidth")->setText(QStringLiteral("Length"));
        } else {
            m_mask = (m_mask & ~RowBit::Width) | RowBit::Height;
            label("lblHeight")->setText(QStringLiteral("Length"));
        }
    }
    if (selected.size() > 1)
        m_mask &= ~(RowBit::Name | RowBit::DataField | RowBit::CustomSQL);

    ShowCommonValues(selected);
    LayoutRows();
    m_panel->show();
    m_loading = false;
}

const char* frmRptProperties::ControlProperty(SheetProp prop)
{
    using P = SheetProp;
    switch (prop) {
    case P::Left: return "Left";
    case P::Top: return "Top";
    case P::Width: return "Width";
    case P::Height: return "Height";
    case P::BorderStyle: return "BorderStyle";
    case P::BorderWidth: return "BorderWidth";
    case P::Effect: return "SpecialEffect";
    case P::Alignment:
    case P::ImageAlignment: return "Alignment";
    case P::ImageSizeMode: return "SizeMode";
    case P::AllowShrink: return "AllowShrink";
    case P::AllowGrow: return "AllowGrow";
    case P::Category: return "Category";
    case P::PhotoSeq: return "PhotoSeq";
    case P::FontName: return "FontName";
    case P::FontSize: return "Fontsize";
    case P::FontBold: return "FontBold";
    case P::FontUnderline: return "FontUnderline";
    case P::FontItalic: return "FontItalic";
    case P::ForeColor: return "ForeColor";
    case P::BackColor: return "BackColor";
    case P::BorderColor: return "BorderColor";
    case P::BackStyle: return "Backstyle";
    case P::UseShortText: return "UseShortText";
    case P::FunctionType: return "FunctionType";
    default: return nullptr; // read from the current item through the document
    }
}

void frmRptProperties::ShowCommonValues(const QList<QObject*>& selected)
{
    for (const Row& row : m_rows) {
        const SheetProp p = row.def->prop;
        // Position and size always show; the format list is refilled for the current item at every load.
        const bool always = p == SheetProp::Left || p == SheetProp::Top || p == SheetProp::Width ||
                            p == SheetProp::Height || p == SheetProp::Format;
        if (always || (m_mask & row.def->bit))
            ShowEditorValue(row, selected);
    }
}

void frmRptProperties::ShowEditorValue(const Row& row, const QList<QObject*>& selected)
{
    using P = SheetProp;
    QWidget* ed = row.editor;
    switch (row.def->prop) {
    case P::Name: return;
    case P::DataField: static_cast<QComboBox*>(ed)->setEditText(m_doc->DataField()); return;
    case P::CustomSQL: static_cast<QLineEdit*>(ed)->setText(m_doc->CustomSQL()); return;
    case P::Expression: static_cast<QLineEdit*>(ed)->setText(m_doc->DataFormat()); return;
    case P::FileName: static_cast<QLineEdit*>(ed)->setText(DisplayPath(m_doc->ItemFileName())); return;
    case P::Format: {
        auto* list = static_cast<QComboBox*>(ed);
        list->clear();
        list->addItems(FormatNames(clsRptControl::Prop(m_doc->UserControl(), "FormatClass").toInt()));
        list->setEditText(m_doc->DataFormat());
        return;
    }
    default: break;
    }

    // The value all selected items share; items without the property have no say.
    QVariant common;
    bool differ = false;
    for (QObject* c : selected) {
        const QVariant v = clsRptControl::Prop(c, ControlProperty(row.def->prop));
        if (!v.isValid())
            continue;
        if (!common.isValid())
            common = v;
        else if (v.toString() != common.toString())
            differ = true;
    }
    if (differ)
        common = QVariant();

    if (auto* edit = qobject_cast<NumberEdit*>(ed)) {
        if (row.def->prop == P::BackColor && common.isValid())
            common = qint32(common.toUInt()); // the back colour edit shows the signed value
        edit->SetValue(common);
        return;
    }
    auto* list = static_cast<QComboBox*>(ed);
    if (row.def->family == EditorFamily::FontList) {
        list->setEditText(!common.isValid()                   ? QString()
                          : row.def->prop == P::FontSize ? QString::number(common.toDouble())
                                                              : common.toString());
        return;
    }
    list->setCurrentIndex(-1);
    if (common.isValid())
        SelComboItem(list, row.def->family == EditorFamily::YesNoList ? (common.toBool() ? -1 : 0) : common.toInt());
}

void frmRptProperties::LayoutRows()
{
    const double twipsPerPixel = 1440.0 / logicalDpiX();
    auto px = [twipsPerPixel](double twips) { return int(std::lround(twips / twipsPerPixel)); };
    // A row is as tall as its tallest kind of editor.
    const int rowHeight = qMax(m_editors.value(QStringLiteral("txtName"))->sizeHint().height(),
                               m_editors.value(QStringLiteral("cboFontSize"))->sizeHint().height());
    const double labelHeight = rowHeight * twipsPerPixel;

    double y = FirstRowTop;
    for (const Row& row : m_rows) {
        const bool on = m_mask & row.def->bit;
        row.label->setVisible(on);
        row.editor->setVisible(on);
        if (row.button)
            row.button->setVisible(on);
        if (!on)
            continue;
        const int editorWidth = row.button ? EditorWidth - ButtonWidth : EditorWidth;
        row.label->setGeometry(px(RowLeft), px(y), px(LabelWidth), rowHeight);
        row.editor->setGeometry(px(RowLeft + LabelWidth), px(y), px(editorWidth), rowHeight);
        if (row.button)
            row.button->setGeometry(px(RowLeft + LabelWidth + editorWidth), px(y), px(ButtonWidth), rowHeight);
        y = std::round(y + labelHeight + RowGap);
    }
    m_panel->resize(px(RowLeft + LabelWidth + EditorWidth + RowLeft), px(y));
}

// ---------------------------------------------------------------- the item-name list

void frmRptProperties::FillObjectList()
{
    const QSignalBlocker block(m_objects);
    m_objects->clear();
    for (int i = 1; i <= m_doc->RptItemCount(); ++i)
        m_objects->addItem(m_doc->Item(i).Name);
    m_objects->setCurrentIndex(m_doc->Index() >= 1 && m_doc->Index() <= m_doc->RptItemCount() ? m_doc->Index() - 1 : -1);
}

void frmRptProperties::ObjectChosen(int index)
{
    if (!m_doc || !m_sel)
        return;
    const int item = m_doc->FindObject(m_objects->itemText(index));
    if (item < 1 || !m_doc->Item(item).control)
        return;
    QObject* control = m_doc->Item(item).control;
    m_sel->ClearSelection();
    m_sel->AddToSelection(control);
    m_doc->SetUserControl(control);
    m_doc->SetIndex(item);
    m_sel->RefreshHandles();
    LoadProperties();
}

void frmRptProperties::RemoveItemName(const QString& name)
{
    const int i = m_objects->findText(name, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (i >= 0)
        m_objects->removeItem(i);
}

void frmRptProperties::ReplaceItemName(const QString& oldName, const QString& newName)
{
    int i = m_objects->findText(oldName, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (i >= 0) {
        m_objects->setItemText(i, newName);
    } else {
        m_objects->addItem(newName);
        i = m_objects->count() - 1;
    }
    m_objects->setCurrentIndex(i);
}

void frmRptProperties::ShowValue(const QString& box, const QVariant& value)
{
    auto edit = [this](const char* name) { return qobject_cast<QLineEdit*>(m_editors.value(QString::fromLatin1(name))); };
    auto list = [this](const char* name) { return qobject_cast<QComboBox*>(m_editors.value(QString::fromLatin1(name))); };
    if (box == QLatin1String("Left") || box == QLatin1String("Top") || box == QLatin1String("Width") ||
        box == QLatin1String("Height") || box == QLatin1String("SectionSpacing")) {
        static_cast<NumberEdit*>(m_editors.value(QStringLiteral("fp") + box))->SetValue(value);
    } else if (box == QLatin1String("FileName")) {
        edit("txtFileName")->setText(DisplayPath(value.toString()));
    } else if (box == QLatin1String("CustomSQL")) {
        edit("txtCustomSQL")->setText(value.toString());
    } else if (box == QLatin1String("DataFormat")) {
        list("cboFormat")->setEditText(value.toString());
        edit("txtExpression")->setText(value.toString());
    } else if (box == QLatin1String("DataField")) {
        list("cboDataField")->setEditText(value.toString());
    }
}

// ---------------------------------------------------------------- life as a tool window



