#include "design/DesignHistory.h"

#include "design/CommandBar.h"
#include "design/DesignPage.h"
#include "design/clsResize.h"
#include "design/frmPagewright.h"
#include "document/clsRptControl.h"
#include "properties/frmRptProperties.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QGraphicsProxyWidget>
#include <QGraphicsScene>
#include <QTimer>

DesignHistory::DesignHistory(frmPagewright& window)
    : QObject(&window), m_win(window), m_stack(window.Document(), this)
{
    m_stack.restored = [this] {
        if (m_win.PropertySheet() && m_win.PropertySheet()->isVisible())
            m_win.PropertySheet()->LoadProperties();
        m_win.DrawRuler();
        m_win.UpdateCaption();
    };
    qApp->installEventFilter(this);
}

DesignHistory::~DesignHistory() { qApp->removeEventFilter(this); }

void DesignHistory::Reset()
{
    m_stack.Reset();
    updateTools();
}

void DesignHistory::Flush(const QString& name)
{
    m_scheduled = false;
    // Inside a command or under a dialog the action is not over yet.
    if (m_commandDepth > 0 || QApplication::activeModalWidget())
        return;
    if (m_stack.Checkpoint(name))
        m_win.UpdateCaption();
    updateTools();
}

void DesignHistory::Undo()
{
    // A drag under way ends where it began before the document changes under it.
    if (m_win.SelObj().Dragging())
        m_win.SelObj().CancelDrag();
    // Only a user action can have changed the document since the last step, and every one
    // of them has asked for a flush.
    const bool pending = m_scheduled;
    if (pending)
        Flush();
    m_stack.Undo(false);
    updateTools();
}

void DesignHistory::Redo()
{
    if (m_win.SelObj().Dragging())
        m_win.SelObj().CancelDrag();
    const bool pending = m_scheduled;
    if (pending)
        Flush();
    m_stack.Redo(false);
    updateTools();
}

void DesignHistory::updateTools()
{
    CommandBar& bar = m_win.Commands();
    const auto show = [&bar](const char* tool, const QString& verb, bool can, const QString& what) {
        const QString name = QString::fromLatin1(tool);
        bar.SetEnabled(name, can);
        const QString text = can && !what.isEmpty() ? verb + QLatin1Char(' ') + what : verb;
        bar.SetCaption(name, QLatin1Char('&') + text);
        if (QAction* a = bar.Action(name))
            a->setToolTip(text);
    };
    show("miUndo", QStringLiteral("Undo"), m_stack.CanUndo(), m_stack.UndoName());
    show("miRedo", QStringLiteral("Redo"), m_stack.CanRedo(), m_stack.RedoName());
}

QString DesignHistory::StepName(const QString& t) const
{
    if (t.startsWith(u"cpColor")) {
        switch (m_win.Commands().PaletteTarget()) {
        case 1: return QStringLiteral("Fore Color");
        case 2: return QStringLiteral("Back Color");
        case 3: return QStringLiteral("Border Color");
        default: return QStringLiteral("Color");
        }
    }
    static const QHash<QString, QString> names{
        {QStringLiteral("fnLeft"), QStringLiteral("Align Text Left")},
        {QStringLiteral("fnCenter"), QStringLiteral("Center Text")},
        {QStringLiteral("fnRight"), QStringLiteral("Align Text Right")},
        {QStringLiteral("fnFont"), QStringLiteral("Font")},
        {QStringLiteral("fnFontSize"), QStringLiteral("Font Size")},
        {QStringLiteral("miEffectFlat"), QStringLiteral("Flat")},
        {QStringLiteral("miEffectShadow"), QStringLiteral("Shadow")},
        {QStringLiteral("miDeleteObject"), QStringLiteral("Delete")},
        {QStringLiteral("miPageHeader"), QStringLiteral("Page Header/Footer")},
        {QStringLiteral("miSendtoBack"), QStringLiteral("Send to Back")},
    };
    if (const auto it = names.constFind(t); it != names.cend())
        return *it;
    if (QAction* a = m_win.Commands().Action(t)) {
        QString caption = a->text();
        caption.remove(QLatin1Char('&'));
        if (caption.endsWith(QStringLiteral("...")))
            caption.chop(3);
        return caption;
    }
    return QString();
}

DesignHistory::Command::Command(DesignHistory& h, const QString& toolName)
    : m_h(h), m_tool(toolName), m_fileBefore(h.m_win.ReportFile())
{
    if (h.m_commandDepth == 0)
        h.Flush(); // what the user did before belongs to its own step
    ++h.m_commandDepth;
}

DesignHistory::Command::~Command()
{
    if (--m_h.m_commandDepth > 0)
        return;
    // A new or opened report starts a history of its own.
    if (m_tool == u"new" || (m_tool == u"Open" && m_h.m_win.ReportFile() != m_fileBefore)) {
        m_h.Reset();
        return;
    }
    m_h.Flush(m_h.StepName(m_tool));
}

SurfaceState DesignHistory::CaptureSurface() const
{
    const DesignPage& page = m_win.Page();
    SurfaceState s;
    s.headerShown = page.HeaderFooterShown();
    s.detailOffset = page.DetailHeaderBarOffset();
    s.footerShown = page.FooterShown();
    s.footerOffset = page.PageFooterBarOffset();
    s.gridX = m_win.Grid().x;
    s.gridY = m_win.Grid().y;
    return s;
}

void DesignHistory::RestoreSurface(const SurfaceState& s)
{
    DesignPage& page = m_win.Page();
    // The items are back in their places already: only the bars move.
    if (s.headerShown != page.HeaderFooterShown()) {
        page.ShowHeaderFooter(s.headerShown);
        m_win.Commands().SetChecked(u"miPageHeader", s.headerShown);
    }
    page.PlaceDetailBar(s.detailOffset);
    if (s.footerShown)
        page.PlaceFooterBar(s.footerOffset);
    if (s.gridX != m_win.Grid().x || s.gridY != m_win.Grid().y)
        m_win.SetGrid({s.gridX, s.gridY});
    m_win.DrawRuler();
}

bool DesignHistory::ours(QObject* watched) const
{
    auto* w = qobject_cast<QWidget*>(watched);
    if (!w)
        return false;
    const QWidget* top = w->window();
    // The in-place editor sits on the page through a proxy: a window of its own.
    if (const QGraphicsProxyWidget* proxy = top->graphicsProxyWidget())
        return proxy->scene() == m_win.Page().Scene();
    return top == &m_win || (top->parentWidget() && top->parentWidget()->window() == &m_win);
}

void DesignHistory::schedule()
{
    if (m_scheduled)
        return;
    m_scheduled = true;
    QTimer::singleShot(0, this, [this] { Flush(); });
}

bool DesignHistory::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonRelease:
    case QEvent::KeyRelease:
    case QEvent::Drop:
        if (ours(watched))
            schedule();
        break;
    default:
        break;
    }
    return false;
}
