#pragma once
// The design window's menu bar, tool bars and pop-up palettes, built from the command table.
// One QAction per tool, shared by every place the tool appears; every click arrives at the one
// signal `triggered(toolName)`.
#include "design/CommandTable.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

class QAction;
class QActionGroup;
class QMainWindow;
class QMenu;
class QToolBar;
class ComboTool;

class CommandBar : public QObject {
    Q_OBJECT
public:
    // Builds the menu bar and tool bars into `window`. Every command starts disabled until
    // SetImplemented names it; the select tool is checked and template view is on.
    explicit CommandBar(QMainWindow* window);

    // The tool's action; nullptr for an unknown name.
    QAction* Action(QStringView name) const;
    // The widget of a band: a QMenu for menus, pop-ups and palettes, a QToolBar for tool bars.
    QMenu* Menu(QStringView band) const;
    QToolBar* ToolBar(QStringView band) const;

    // The commands the window handles; every other command stays disabled. Menu titles are
    // always live.
    void SetImplemented(const QStringList& names);
    bool IsImplemented(QStringView name) const;

    // A command is enabled only when it is implemented, not switched off and not disabled here.
    void SetEnabled(QStringView name, bool enabled);
    bool IsEnabled(QStringView name) const;
    void SetChecked(QStringView name, bool checked);
    bool IsChecked(QStringView name) const;
    void SetCaption(QStringView name, const QString& caption);

    // Switches off the tools a report kind or a user level may not use, and gives
    // miSelectProperty the kind's caption. May be called again with other values.
    void ApplyReportKindAndLevel(int reportKind, int userLevel);

    // Toolbox state. A toolbox click sets these before `triggered` is emitted.
    int CurrentTool() const { return m_currentTool; }
    // For tools without a button (a field dropped from the field list is tool 1).
    void SetCurrentTool(int code) { m_currentTool = code; }
    bool PictureBound() const { return m_pictureBound; }
    bool PictureEmbedded() const { return m_pictureEmbedded; }
    // Back to the select tool: its button checked, CurrentTool 0.
    void ResetToolButtons();

    // The colour palette opened last: 1 fore, 2 back, 3 border; 0 before any.
    int PaletteTarget() const { return m_paletteTarget; }

    // Combo tools (fnFont, fnFontSize, miObjectName). Setting the text reports no change.
    void SetComboItems(QStringView name, const QStringList& items);
    QStringList ComboItems(QStringView name) const;
    void SetComboText(QStringView name, const QString& text);
    QString ComboText(QStringView name) const;

signals:
    // A tool was clicked. For a Check tool the check mark is still the one before the click;
    // a Toggle tool's mark has already flipped.
    void triggered(const QString& toolName);
    // The user changed a combo tool.
    void comboChanged(const QString& toolName, const QString& text);
    // A drop-down band (menu, pop-up, palette) is about to open.
    void bandOpened(const QString& bandName);

private:
    struct ToolState {
        bool implemented = false;
        bool wanted = true;
        bool switchedOff = false;
    };

    void CreateActions();
    void CreateBands(QMainWindow* window);
    void FillBand(const BandDef& band, QWidget* container);
    void OnTriggered(const CommandDef& def, QAction* action);
    void UpdateEnabled(const QString& name);
    ComboTool* Combo(QStringView name) const;

    QHash<QString, QAction*> m_actions;
    QHash<QString, ToolState> m_state;
    QHash<QString, QPointer<QMenu>> m_menus;
    QHash<QString, QPointer<QToolBar>> m_toolBars;
    QActionGroup* m_toolbox = nullptr;
    QAction* m_lastToolboxTool = nullptr;
    int m_currentTool = 0;
    bool m_pictureBound = false;
    bool m_pictureEmbedded = false;
    int m_paletteTarget = 0;
};
