#include "design/CommandBar.h"

#include "design/ComboTool.h"

#include <QAction>
#include <QActionGroup>
#include <QFile>
#include <cstring>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPixmap>
#include <QSignalBlocker>
#include <QToolBar>
#include <QToolButton>

namespace {
QColor ColorOfBgr(quint32 bgr)
{
    return QColor(int(bgr & 0xFF), int((bgr >> 8) & 0xFF), int((bgr >> 16) & 0xFF));
}

QIcon Swatch(int paletteIndex)
{
    QPixmap pm(16, 16);
    pm.fill(ColorOfBgr(QBColor(paletteIndex)));
    QPainter p(&pm);
    p.setPen(Qt::gray); // keeps white visible on a white menu
    p.drawRect(0, 0, 15, 15);
    return QIcon(pm);
}
}

// The icon resource sits in a static library: it must be registered by hand.
static void InitIcons() { Q_INIT_RESOURCE(icons); }

CommandBar::CommandBar(QMainWindow* window) : QObject(window)
{
    InitIcons();
    CreateActions();
    CreateBands(window);
    for (QAction* a : std::as_const(m_actions))
        if (!a->shortcut().isEmpty())
            window->addAction(a); // shortcuts work even for tools that sit only in a tool bar
    for (auto it = m_actions.cbegin(); it != m_actions.cend(); ++it)
        UpdateEnabled(it.key());
    SetChecked(u"miTemplateView", true);
    ResetToolButtons();
}

void CommandBar::CreateActions()
{
    m_toolbox = new QActionGroup(this);
    m_toolbox->setExclusive(true);
    for (const CommandDef& def : Commands()) {
        const QString name = def.Name();
        QAction* a = nullptr;
        if (def.kind == ToolKind::Combo) {
            // The object list holds only existing names; font name and size may be typed.
            const bool editable = name != u"miObjectName";
            const QString pattern = name == u"fnFontSize" ? QStringLiteral("(\\d{1,4}(\\.\\d{1,2})?)?")
                                    : name == u"miZoom" ? QStringLiteral("(\\d{1,3} ?%?)?")
                                                        : QString();
            auto* combo = new ComboTool(name, editable, pattern, this);
            if (name == u"fnFontSize")
                combo->SetItems(FontSizeChoices());
            connect(combo, &ComboTool::committed, this, [this, name](const QString& text) {
                if (IsEnabled(name))
                    emit comboChanged(name, text);
            });
            a = combo;
        } else {
            a = new QAction(this);
            a->setObjectName(name);
        }
        a->setText(QString::fromLatin1(def.caption));
        a->setToolTip(QString::fromLatin1(def.toolTip));
        a->setStatusTip(QString::fromLatin1(def.description));
        // Menu titles stay words, in the menu bar too.
        if (const QString icon = QStringLiteral(":/icons/%1.svg").arg(name);
            std::strcmp(def.category, "Built-in Menus") != 0 && QFile::exists(icon))
            a->setIcon(QIcon(icon));
        if (const QList<QKeySequence> keys = ShortcutsOf(def); !keys.isEmpty())
            a->setShortcuts(keys);
        switch (def.kind) {
        case ToolKind::Check:
        case ToolKind::Toggle:
            a->setCheckable(true);
            break;
        case ToolKind::Toolbox:
            a->setCheckable(true);
            m_toolbox->addAction(a);
            break;
        case ToolKind::PaletteColor:
            a->setIcon(Swatch(def.paletteIndex));
            break;
        default:
            break;
        }
        if (def.kind != ToolKind::Combo && def.kind != ToolKind::Menu)
            connect(a, &QAction::triggered, this, [this, &def, a] { OnTriggered(def, a); });
        m_actions.insert(name, a);
        m_state.insert(name, ToolState{.implemented = def.kind == ToolKind::Menu});
    }
}

void CommandBar::CreateBands(QMainWindow* window)
{
    // Drop-down bands first, so the tools that open them can be given their menus.
    for (const BandDef& band : Bands()) {
        if (band.kind == BandKind::MainMenu || band.kind == BandKind::ToolBar)
            continue;
        const QString name = band.Name();
        const CommandDef* owner = FindCommand(name);
        auto* menu = new QMenu(window);
        menu->setObjectName(name);
        menu->setTitle(band.title ? QString::fromLatin1(band.title)
                                  : owner ? QString::fromLatin1(owner->caption) : name);
        menu->setToolTipsVisible(true);
        const int target = PaletteTargetOfBand(name);
        connect(menu, &QMenu::aboutToShow, this, [this, name, target] {
            if (target != 0)
                m_paletteTarget = target;
            emit bandOpened(name);
        });
        m_menus.insert(name, menu);
    }
    for (const CommandDef& def : Commands())
        if (def.opensBand)
            if (QMenu* menu = Menu(QString::fromLatin1(def.opensBand)))
                m_actions.value(def.Name())->setMenu(menu);

    QToolBar* previous = nullptr;
    for (const BandDef& band : Bands()) {
        const QString name = band.Name();
        switch (band.kind) {
        case BandKind::MainMenu: {
            QMenuBar* bar = window->menuBar();
            bar->setObjectName(name);
            FillBand(band, bar);
            break;
        }
        case BandKind::ToolBar: {
            auto* bar = new QToolBar(QString::fromLatin1(band.title), window);
            bar->setObjectName(name);
            if (name == u"barToolbox") {
                // The item kinds with their names under their pictures.
                bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
                window->addToolBar(Qt::LeftToolBarArea, bar);
            } else {
                if (previous && name != u"barArrange") // the arrange tools share the formatting row
                    window->addToolBarBreak(Qt::TopToolBarArea);
                window->addToolBar(Qt::TopToolBarArea, bar);
                previous = bar;
            }
            FillBand(band, bar);
            m_toolBars.insert(name, bar);
            break;
        }
        default:
            FillBand(band, Menu(name));
            break;
        }
    }
}

void CommandBar::FillBand(const BandDef& band, QWidget* container)
{
    auto* bar = qobject_cast<QToolBar*>(container);
    for (const char* tool : band.tools) {
        if (std::strcmp(tool, kSeparator) == 0) {
            auto* sep = new QAction(container);
            sep->setSeparator(true);
            container->addAction(sep);
            continue;
        }
        const CommandDef* def = FindCommand(QString::fromLatin1(tool));
        QAction* a = def ? m_actions.value(def->Name()) : nullptr;
        if (!a)
            continue;
        container->addAction(a);
        if (bar && a->menu()) {
            // A tool that is a command itself (the picture tool) acts on a click and opens its
            // pop-up from the arrow; the colour and effect tools only open their pop-up.
            if (auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(a)))
                button->setPopupMode(def->currentTool >= 0 ? QToolButton::MenuButtonPopup
                                                           : QToolButton::InstantPopup);
        }
    }
}

void CommandBar::OnTriggered(const CommandDef& def, QAction* action)
{
    if (!action->isEnabled()) {
        if (def.kind == ToolKind::Toolbox && m_lastToolboxTool)
            m_lastToolboxTool->setChecked(true);
        return;
    }
    switch (def.kind) {
    case ToolKind::Check: {
        // The program owns this mark: undo the flip the click made.
        const QSignalBlocker block(action);
        action->setChecked(!action->isChecked());
        break;
    }
    case ToolKind::Toolbox:
        m_lastToolboxTool = action;
        m_currentTool = def.currentTool;
        if (def.picture != PictureMode::None) {
            m_pictureBound = def.picture == PictureMode::Bound;
            m_pictureEmbedded = def.picture == PictureMode::Embedded;
        }
        break;
    default:
        break;
    }
    emit triggered(def.Name());
}

QAction* CommandBar::Action(QStringView name) const
{
    return m_actions.value(name.toString(), nullptr);
}

QMenu* CommandBar::Menu(QStringView band) const
{
    return m_menus.value(band.toString()).data();
}

QToolBar* CommandBar::ToolBar(QStringView band) const
{
    return m_toolBars.value(band.toString()).data();
}

void CommandBar::UpdateEnabled(const QString& name)
{
    QAction* a = m_actions.value(name);
    if (!a)
        return;
    const ToolState st = m_state.value(name);
    a->setEnabled(st.implemented && st.wanted && !st.switchedOff);
}

void CommandBar::SetImplemented(const QStringList& names)
{
    for (auto it = m_state.begin(); it != m_state.end(); ++it) {
        const CommandDef* def = FindCommand(it.key());
        it->implemented = (def && def->kind == ToolKind::Menu) || names.contains(it.key());
        UpdateEnabled(it.key());
    }
}

bool CommandBar::IsImplemented(QStringView name) const
{
    return m_state.value(name.toString()).implemented;
}

void CommandBar::SetEnabled(QStringView name, bool enabled)
{
    const QString key = name.toString();
    auto it = m_state.find(key);
    if (it == m_state.end())
        return;
    it->wanted = enabled;
    UpdateEnabled(key);
}

bool CommandBar::IsEnabled(QStringView name) const
{
    const QAction* a = Action(name);
    return a && a->isEnabled();
}

void CommandBar::SetChecked(QStringView name, bool checked)
{
    if (QAction* a = Action(name); a && a->isCheckable())
        a->setChecked(checked);
}

bool CommandBar::IsChecked(QStringView name) const
{
    const QAction* a = Action(name);
    return a && a->isChecked();
}

void CommandBar::SetCaption(QStringView name, const QString& caption)
{
    if (QAction* a = Action(name))
        a->setText(caption);
}

void CommandBar::ApplyReportKindAndLevel(int reportKind, int userLevel)
{
    const QStringList off = SwitchedOffTools(reportKind, userLevel);
    for (auto it = m_state.begin(); it != m_state.end(); ++it) {
        it->switchedOff = off.contains(it.key());
        UpdateEnabled(it.key());
    }
    SetCaption(u"miSelectProperty", SelectPropertyCaption(reportKind));
}

void CommandBar::ResetToolButtons()
{
    m_lastToolboxTool = Action(u"tbSelectObjects");
    m_lastToolboxTool->setChecked(true);
    m_currentTool = 0;
}

ComboTool* CommandBar::Combo(QStringView name) const
{
    return qobject_cast<ComboTool*>(Action(name));
}

void CommandBar::SetComboItems(QStringView name, const QStringList& items)
{
    if (ComboTool* c = Combo(name))
        c->SetItems(items);
}

QStringList CommandBar::ComboItems(QStringView name) const
{
    const ComboTool* c = Combo(name);
    return c ? c->Items() : QStringList();
}

void CommandBar::SetComboText(QStringView name, const QString& text)
{
    if (ComboTool* c = Combo(name))
        c->SetText(text);
}

QString CommandBar::ComboText(QStringView name) const
{
    const ComboTool* c = Combo(name);
    return c ? c->Text() : QString();
}
