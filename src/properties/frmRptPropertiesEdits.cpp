// How the property sheet's editors commit: lists on a click, the rest on Enter and on leaving
// the editor, and Escape putting back what the editor had.
#include "document/clsRptControl.h"
#include "entry/Prompts.h"
#include "entry/ReportKinds.h"
#include "properties/NumberEdit.h"
#include "properties/frmRptProperties.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <QFileInfo>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>

namespace {
constexpr double MaxFontSize = 1638;

class Guard {
public:
    explicit Guard(bool& flag) : m_flag(flag) { m_flag = true; }
    ~Guard() { m_flag = false; }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

private:
    bool& m_flag;
};
} // namespace

bool frmRptProperties::CanEdit() const
{
    return m_doc && m_sel && !m_loading && !m_committing && !m_sel->SelectedControls().isEmpty();
}

bool frmRptProperties::eventFilter(QObject* watched, QEvent* event)
{
    const auto it = m_states.find(watched);
    if (it == m_states.end())
        return QWidget::eventFilter(watched, event);
    auto* editor = static_cast<QWidget*>(watched);
    EditorState& state = it.value();

    switch (event->type()) {
    case QEvent::Wheel:
        // A wheel over the sheet scrolls it: only an editor the user is in may take the wheel.
        if (!editor->hasFocus()) {
            QCoreApplication::sendEvent(m_viewport->verticalScrollBar(), event);
            return true;
        }
        break;
    case QEvent::FocusIn:
        // Coming back from a list's own pop-up is not a new visit.
        if (static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason) {
            if (auto* list = qobject_cast<QComboBox*>(editor)) {
                if (list->objectName() == QLatin1String("cboFontName") && list->count() == 0)
                    FillFontNames(list);
                state.focusIndex = list->currentIndex();
                state.focusText = list->currentText();
            }
        }
        break;
    case QEvent::FocusOut:
        if (static_cast<QFocusEvent*>(event)->reason() != Qt::PopupFocusReason && state.family != EditorFamily::FixedList)
            Commit(editor, state);
        break;
    case QEvent::KeyPress: {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (state.family == EditorFamily::FixedList)
            break;
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            Commit(editor, state);
            return true;
        }
        if (key == Qt::Key_Escape) {
            Escape(editor, state);
            return true;
        }
        break;
    }
    default: break;
    }
    return QWidget::eventFilter(watched, event);
}

void frmRptProperties::Commit(QWidget* editor, EditorState& state)
{
    if (!CanEdit())
        return;
    if (state.family == EditorFamily::Name) {
        ChangeName();
        return;
    }
    const Guard guard(m_committing);
    auto* list = qobject_cast<QComboBox*>(editor);
    switch (state.family) {
    case EditorFamily::YesNoList:
        if (list->currentIndex() >= 0) {
            WriteProperty(state.prop, list->currentData().toInt() != 0);
            state.focusIndex = list->currentIndex();
        }
        break;
    case EditorFamily::FontList: {
        const QString text = list->currentText().trimmed();
        if (text.isEmpty())
            break;
        if (state.prop == SheetProp::FontName) {
            WriteProperty(state.prop, text);
            break;
        }
        bool ok = false;
        const double size = text.toDouble(&ok);
        if (ok && size > 0 && size <= MaxFontSize) {
            WriteProperty(state.prop, float(size));
        } else {
            MsgBox(QStringLiteral("Enter a font size from 1 to 1638."), Mb::OKOnly | Mb::Exclamation,
                   QStringLiteral("Input Error"));
            list->setEditText(QString::number(double(m_doc->Fontsize())));
        }
        break;
    }
    case EditorFamily::FormatList:
        if (list->currentText() != state.focusText) {
            WriteProperty(state.prop, list->currentText());
            state.focusText = list->currentText();
        }
        break;
    case EditorFamily::DataFieldList:
        WriteProperty(state.prop, list->currentText());
        break;
    case EditorFamily::Number: {
        auto* edit = static_cast<NumberEdit*>(editor);
        if (edit->text().isEmpty())
            break;
        double v = 0;
        if (edit->Value(v)) {
            WriteProperty(state.prop, v);
            if (edit->ColourMode())
                ReadBack(editor, state.prop); // typed either way, shown in hex beside its swatch
        } else {
            MsgBox(edit->RangeMessage(), Mb::OKOnly | Mb::Exclamation, QStringLiteral("Input Error"));
            ReadBack(editor, state.prop);
        }
        break;
    }
    case EditorFamily::Text:
        WriteProperty(state.prop, static_cast<QLineEdit*>(editor)->text());
        break;
    default: break;
    }
}

void frmRptProperties::Escape(QWidget* editor, EditorState& state)
{
    auto* list = qobject_cast<QComboBox*>(editor);
    switch (state.family) {
    case EditorFamily::YesNoList: list->setCurrentIndex(state.focusIndex); break;
    case EditorFamily::FormatList: list->setEditText(state.focusText); break;
    case EditorFamily::Number:
    case EditorFamily::Text:
        if (m_doc)
            ReadBack(editor, state.prop);
        break;
    default: break;
    }
}

void frmRptProperties::ReadBack(QWidget* editor, SheetProp prop)
{
    const QVariant v = ReadProperty(prop);
    if (auto* edit = qobject_cast<NumberEdit*>(editor))
        edit->SetValue(prop == SheetProp::BackColor ? QVariant(qint32(v.toUInt())) : v);
    else if (auto* box = qobject_cast<QLineEdit*>(editor))
        box->setText(prop == SheetProp::FileName ? DisplayPath(v.toString()) : v.toString());
}

void frmRptProperties::FixedListClicked(QComboBox* list)
{
    if (!CanEdit() || list->currentIndex() < 0)
        return;
    const Guard guard(m_committing);
    WriteProperty(m_states.value(list).prop, list->currentData().toInt());
}

void frmRptProperties::FontListClicked(QComboBox* list)
{
    const auto it = m_states.find(list);
    if (it != m_states.end())
        Commit(list, it.value());
}

void frmRptProperties::WriteProperty(SheetProp prop, const QVariant& value)
{
    using P = SheetProp;
    clsRptControl& d = *m_doc;
    const float f = value.toFloat();
    const int i = int(value.toDouble());
    switch (prop) {
    case P::Name: break; // through ChangeName
    case P::Left: d.SetLeft(f); break;
    case P::Top: d.SetTop(f); break;
    case P::Width: d.SetWidth(f); break;
    case P::Height: d.SetHeight(f); break;
    case P::Format:
    case P::Expression: d.SetDataFormat(value.toString()); break;
    case P::BorderStyle: d.SetBorderStyle(i); break;
    case P::BorderWidth: d.SetBorderWidth(f); break;
    case P::DataField: d.SetDataField(value.toString()); break;
    case P::Effect: d.SetEffect(i); break;
    case P::Alignment: d.SetAlignment(i); break;
    case P::ImageAlignment: d.SetImageAlignment(i); break;
    case P::ImageSizeMode: d.SetImageSizeMode(i); break;
    case P::AllowShrink: d.SetAllowShrink(value.toBool()); break;
    case P::AllowGrow: d.SetAllowGrow(value.toBool()); break;
    case P::Category: d.SetCategory(i); break;
    case P::PhotoSeq: d.SetPhotoSeq(i); break;
    case P::FileName:
        // The box shows the path as this system writes it: leaving it unchanged keeps the stored form.
        if (value.toString() != DisplayPath(d.ItemFileName()))
            d.SetItemFileName(value.toString());
        break;
    case P::FontName: d.SetFontName(value.toString()); break;
    case P::FontSize: d.SetFontsize(f); break;
    case P::FontBold: d.SetFontBold(value.toBool()); break;
    case P::FontUnderline: d.SetFontUnderline(value.toBool()); break;
    case P::FontItalic: d.SetFontItalic(value.toBool()); break;
    // Colours are 0x00BBGGRR; the back colour edit also takes the negative (system colour) values.
    case P::ForeColor: d.SetForeColor(quint32(qint64(value.toDouble()))); break;
    case P::BackColor: d.SetBackColor(quint32(qint64(value.toDouble()))); break;
    case P::BorderColor: d.SetBorderColor(quint32(qint64(value.toDouble()))); break;
    case P::BackStyle: d.SetBackstyle(i); break;
    case P::UseShortText: d.SetUseShortText(value.toBool()); break;
    case P::CustomSQL: d.SetCustomSQL(value.toString()); break;
    case P::FunctionType: d.SetFunctionType(i); break;
    }
}

QVariant frmRptProperties::ReadProperty(SheetProp prop) const
{
    using P = SheetProp;
    const clsRptControl& d = *m_doc;
    switch (prop) {
    case P::Name: return d.Name();
    case P::Left: return d.Left();
    case P::Top: return d.Top();
    case P::Width: return d.Width();
    case P::Height: return d.Height();
    case P::Format:
    case P::Expression: return d.DataFormat();
    case P::BorderStyle: return d.BorderStyle();
    case P::BorderWidth: return d.BorderWidth();
    case P::DataField: return d.DataField();
    case P::Effect: return d.Effect();
    case P::Alignment: return d.Alignment();
    case P::ImageAlignment: return d.ImageAlignment();
    case P::ImageSizeMode: return d.ImageSizeMode();
    case P::AllowShrink: return d.AllowShrink();
    case P::AllowGrow: return d.AllowGrow();
    case P::Category: return d.Category();
    case P::PhotoSeq: return d.PhotoSeq();
    case P::FileName: return d.ItemFileName();
    case P::FontName: return d.FontName();
    case P::FontSize: return d.Fontsize();
    case P::FontBold: return d.FontBold();
    case P::FontUnderline: return d.FontUnderline();
    case P::FontItalic: return d.FontItalic();
    case P::ForeColor: return d.ForeColor();
    case P::BackColor: return d.BackColor();
    case P::BorderColor: return d.BorderColor();
    case P::BackStyle: return d.Backstyle();
    case P::UseShortText: return d.UseShortText();
    case P::CustomSQL: return d.CustomSQL();
    case P::FunctionType: return d.FunctionType();
    }
    return {};
}

void frmRptProperties::ChangeName()
{
    if (!m_doc || m_committing || m_doc->Index() < 1 || m_doc->Index() > m_doc->RptItemCount())
        return;
    const Guard guard(m_committing);
    auto* box = static_cast<QLineEdit*>(m_editors.value(QStringLiteral("txtName")));
    const QString text = box->text();
    const QString current = m_doc->Name();
    if (text == current)
        return;
    if (text.trimmed().isEmpty()) {
        box->setText(current);
        MsgBox(QStringLiteral("Invalid Name"), Mb::OKOnly, QStringLiteral("Invalid Name"));
        return;
    }
    if (m_doc->FindObject(text) >= 1) {
        MsgBox(QStringLiteral("This name is already in use. Please choose another"), Mb::OKOnly,
               QStringLiteral("Invalid Name"));
        box->setText(current);
        return;
    }
    m_doc->ChangeObjectName(text);
}

void frmRptProperties::cmdSetColor_Click(SheetProp which)
{
    if (!CanEdit())
        return;
    // The dialog is asked to start from a colour, but the sheet gives it none.
    const std::optional<quint32> chosen = Prompts().ChooseColor(0);
    if (!chosen)
        return;
    const char* editor = which == SheetProp::ForeColor ? "fpForeColor"
                         : which == SheetProp::BackColor ? "fpBackColor"
                                                         : "fpBorderColor";
    WriteProperty(which, double(*chosen));
    auto* edit = static_cast<NumberEdit*>(m_editors.value(QString::fromLatin1(editor)));
    edit->SetValue(which == SheetProp::BackColor ? QVariant(qint32(*chosen)) : QVariant(*chosen));
}

void frmRptProperties::cmdSetFileName_Click()
{
    if (!CanEdit())
        return;
    // Start where the current picture is, else in the graphics folder.
    const QString current = m_doc->ItemFileName();
    const QString folder = !current.isEmpty() ? QFileInfo(LocalPath(current)).absolutePath()
                           : !m_doc->GraphicsFolder().isEmpty() ? LocalPath(m_doc->GraphicsFolder())
                                                                : QString();
    const QString path = Prompts().ChooseOpenFile(QStringLiteral("Photo File"), folder,
                                                  QStringLiteral("Pictures (*.jpg *.bmp *.ico);;All (*.*)"));
    if (path.isEmpty())
        return;
    m_doc->SetItemFileName(path);
    QWidget* box = m_editors.value(QStringLiteral("txtFileName"));
    if (box->isVisible())
        box->setFocus();
}
