// The design window's formatting and view commands: font style and alignment, effects, the
// colour palettes, the three combo tools, outlines, and the switch between template and data view.
#include "design/frmPagewright.h"

#include "design/CommandBar.h"
#include "design/CommandTable.h"
#include "design/DesignPage.h"
#include "design/clsResize.h"
#include "design/frmPageSetup.h"
#include "document/clsRptControl.h"
#include "entry/HostError.h"
#include "entry/Prompts.h"

#include <QGraphicsItem>

bool frmPagewright::FormatCommand(const QString& t)
{
    if (t == u"fnBold" || t == u"fnItalic" || t == u"fnUnderline") {
        // The new style is the opposite of the mark the tool shows now.
        const bool on = !m_bar->IsChecked(t);
        if (t == u"fnBold") {
            DefaultFont.setBold(on);
            m_doc->SetFontBold(on);
        } else if (t == u"fnItalic") {
            DefaultFont.setItalic(on);
            m_doc->SetFontItalic(on);
        } else {
            DefaultFont.setUnderline(on);
            m_doc->SetFontUnderline(on);
        }
    } else if (t == u"fnLeft") {
        m_doc->SetAlignment(0);
    } else if (t == u"fnCenter") {
        m_doc->SetAlignment(2);
    } else if (t == u"fnRight") {
        m_doc->SetAlignment(1);
    } else if (t == u"miEffectShadow" || t == u"miEffectFlat") {
        m_doc->SetEffect(t == u"miEffectShadow" ? 2 : 0);
    } else if (t.startsWith(u"cpColor")) {
        bool ok = false;
        const int n = t.mid(7).toInt(&ok);
        if (!ok || n < 0 || n > 15)
            return true;
        const quint32 colour = QBColor(n);
        switch (m_bar->PaletteTarget()) {
        case 1: m_doc->SetForeColor(colour); break;
        case 2:
            // A fill chosen from the palette is meant to be seen: transparent items become opaque.
            m_doc->SetBackstyle(1);
            m_doc->SetBackColor(colour);
            break;
        case 3: m_doc->SetBorderColor(colour); break;
        default: break;
        }
    } else if (t == u"miShowOutline") {
        ApplyOutlines(); // the tool has flipped its own mark
    } else if (t == u"miClearDataSource") {
        m_doc->ClearDataSource = m_bar->IsChecked(t);
    } else if (t == u"miTemplateView") {
        if (!m_bar->IsChecked(t))
            ShowTemplateView();
    } else if (t == u"miDataView") {
        if (!m_bar->IsChecked(t))
            ShowDataView();
    } else if (t == u"miPageSetup") {
        frmPageSetup::Start(*m_doc, this);
        ShowPaper();
    } else if (t == u"miGridSetup") {
        frmGridSetup::Start(*this, this);
    } else if (t == u"miSelectProperty") {
        SelectPropertyCommand();
    } else {
        return false;
    }
    return true;
}

void frmPagewright::ComboChange(const QString& tool, const QString& text)
{
    if (tool == u"fnFont") {
        if (text.isEmpty())
            return;
        DefaultFont.setFamily(text);
        m_doc->SetFontName(text);
    } else if (tool == u"fnFontSize") {
        bool ok = false;
        const double size = text.toDouble(&ok);
        // The combo lets through what a point size can be; nothing else reaches the items.
        if (!ok || size < 1 || size > 1638)
            return;
        DefaultFont.setPointSizeF(size);
        m_doc->SetFontsize(float(size));
    } else if (tool == u"miObjectName") {
        const int index = m_doc->FindObject(text);
        if (index == 0)
            return;
        m_doc->SetIndex(index);
        QObject* c = m_doc->Item(index).control;
        m_doc->SetUserControl(c);
        auto* item = dynamic_cast<QGraphicsItem*>(c);
        if (item && item->isVisible()) {
            item->setFocus();
            // Selected as by a click: the chosen item alone.
            m_sel->ClearSelect();
            m_sel->Select(c);
            m_page->View()->ensureVisible(item->sceneBoundingRect());
        }
    }
}

void frmPagewright::RefreshObjectNames()
{
    QStringList names;
    names.reserve(m_doc->RptItemCount());
    for (int i = 1; i <= m_doc->RptItemCount(); ++i)
        names << m_doc->Item(i).Name;
    m_bar->SetComboItems(u"miObjectName", names);
    ShowCurrentObjectName();
}

void frmPagewright::ShowCurrentObjectName()
{
    const QList<QObject*> sel = m_sel->SelectedControls();
    QString name;
    if (!sel.isEmpty())
        for (int i = 1; i <= m_doc->RptItemCount(); ++i)
            if (m_doc->Item(i).control == sel.last())
                name = m_doc->Item(i).Name;
    m_bar->SetComboText(u"miObjectName", name);
}

void frmPagewright::ApplyOutlines()
{
    const bool on = m_bar->IsChecked(u"miShowOutline");
    for (int i = 1; i <= m_doc->RptItemCount(); ++i)
        if (QObject* c = m_doc->Item(i).control)
            clsRptControl::SetProp(c, "ShowOutline", on);
}

void frmPagewright::ShowTemplateView()
{
    m_doc->SetView(0);
    m_bar->SetChecked(u"miTemplateView", true);
    m_bar->SetChecked(u"miDataView", false);
}

bool frmPagewright::ShowDataView()
{
    if (m_doc->AutoFillId.isEmpty()) {
        // The record comes first; without one there is nothing to show.
        if (!PropertyPrompt(*m_doc, QString()) || m_doc->AutoFillId.isEmpty())
            return false;
    }
    m_doc->SetView(1);
    m_bar->SetChecked(u"miDataView", true);
    m_bar->SetChecked(u"miTemplateView", false);
    UpdateCaption();
    return true;
}

void frmPagewright::SelectPropertyCommand()
{
    if (PropertyPrompt(*m_doc, m_doc->AutoFillId) && !m_doc->AutoFillId.isEmpty()) {
        if (m_bar->IsChecked(u"miTemplateView")) {
            m_doc->SetView(1);
            m_bar->SetChecked(u"miDataView", true);
            m_bar->SetChecked(u"miTemplateView", false);
        }
        const BusyPointer busy(this);
        try {
            m_doc->RefreshData(m_doc->AutoFillId);
        } catch (const HostError& e) {
            MsgBox(e.Text(),
                   Mb::OKOnly | Mb::Critical, QStringLiteral("Report error"));
        }
    }
    UpdateCaption();
}
