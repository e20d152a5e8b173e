#pragma once
// Every command of the design window, defined once as data, and the bands (menus, tool bars,
// pop-up palettes) that show them. CommandBar builds the widgets from these tables; the
// dispatcher in the window switches on the names.
#include <QKeySequence>
#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <span>

enum class ToolKind : quint8 {
    Button,       // plain command
    Check,        // check mark kept by the program (document, window); a click leaves it as it was
    Toggle,       // a click flips its own check mark
    Toolbox,      // member of the exclusive toolbox group; sets CurrentTool
    Combo,        // combo box (font name, font size, object name)
    PaletteColor, // one of the sixteen colours of the colour palettes
    Menu,         // a menu title of the main menu
};

// Sub-mode of the picture tool: which of PictureBound / PictureEmbedded a toolbox tool sets.
enum class PictureMode : quint8 { None, Embedded, Linked, Bound };

struct CommandDef {
    const char* name;
    const char* toolTip;
    const char* category;
    const char* caption;     // "&" marks the access key
    const char* description; // status-bar text
    ToolKind kind = ToolKind::Button;
    QKeySequence::StandardKey shortcut = QKeySequence::UnknownKey;
    int currentTool = -1;            // CurrentTool code of a toolbox tool, else -1
    PictureMode picture = PictureMode::None;
    const char* opensBand = nullptr; // the drop-down band the tool opens, if any
    int paletteIndex = -1;           // QuickBASIC colour number of a palette colour
    const char* keys = nullptr;      // further shortcuts, portable text separated by "; "

    QString Name() const { return QString::fromLatin1(name); }
};

enum class BandKind : quint8 { MainMenu, Menu, ToolBar, Popup, Palette };

// Tools of a band in order; "-" is a separator.
inline constexpr const char* kSeparator = "-";

struct BandDef {
    const char* name;
    BandKind kind;
    const char* title; // window title of a tool bar or pop-up; menus take their tool's caption
    std::span<const char* const> tools;

    QString Name() const { return QString::fromLatin1(name); }
};

std::span<const CommandDef> Commands();
std::span<const BandDef> Bands();

// Exact, case-sensitive look-ups (tool names are compared exactly); nullptr when unknown.
const CommandDef* FindCommand(QStringView name);
const BandDef* FindBand(QStringView name);

// The bands a tool is placed in, in table order, with its position among the band's tools
// (separators not counted). A tool placed nowhere gives an empty list.
struct Placement {
    QString band;
    int position;
    bool operator==(const Placement&) const = default;
};
QList<Placement> PlacementsOf(QStringView toolName);

// Tool names of a band without separators.
QStringList BandToolNames(const BandDef& band);

// Every shortcut of a tool: its standard key, then its further keys.
QList<QKeySequence> ShortcutsOf(const CommandDef& def);

// Fixed entries of the font size combo.
QStringList FontSizeChoices();

// Palette target recorded when a colour palette opens: 1 fore, 2 back, 3 border; 0 for any
// other band.
int PaletteTargetOfBand(QStringView bandName);

// The standard 16-colour table as a 32-bit BGR value (0 black .. 15 bright white); numbers
// outside 0..15 give black.
quint32 QBColor(int n);

// Caption of miSelectProperty for a report kind: "Select Office", "Select Agent",
// "Select Rental", else "Select Property".
QString SelectPropertyCaption(int reportKind);

// Tools that are switched off for a report kind and user level.
QStringList SwitchedOffTools(int reportKind, int userLevel);
