#include "design/CommandTable.h"

#include "entry/ReportKinds.h"

#include <QHash>

#include <array>
#include <cstring>

namespace {
using SK = QKeySequence::StandardKey;
constexpr SK kNoKey = QKeySequence::UnknownKey;

constexpr CommandDef Cmd(const char* name, const char* tip, const char* category, const char* caption,
                         const char* description, ToolKind kind = ToolKind::Button, SK key = kNoKey,
                         const char* opens = nullptr)
{
    return CommandDef{.name = name, .toolTip = tip, .category = category, .caption = caption,
                      .description = description, .kind = kind, .shortcut = key, .currentTool = -1,
                      .picture = PictureMode::None, .opensBand = opens, .paletteIndex = -1};
}

constexpr CommandDef Tool(const char* name, const char* tip, const char* caption, const char* description,
                          int code, PictureMode picture = PictureMode::None, const char* opens = nullptr,
                          const char* category = "Toolbox")
{
    return CommandDef{.name = name, .toolTip = tip, .category = category, .caption = caption,
                      .description = description, .kind = ToolKind::Toolbox, .shortcut = kNoKey,
                      .currentTool = code, .picture = picture, .opensBand = opens, .paletteIndex = -1};
}

constexpr CommandDef Menu(const char* name, const char* caption, const char* band)
{
    return Cmd(name, "", "Built-in Menus", caption, "", ToolKind::Menu, kNoKey, band);
}

#define PW_COLOR(n)                                                                                   \
    CommandDef{.name = "cpColor" #n, .toolTip = "", .category = "ColorPalette", .caption = "Color" #n, \
               .description = "", .kind = ToolKind::PaletteColor, .shortcut = kNoKey, .currentTool = -1, \
               .picture = PictureMode::None, .opensBand = nullptr, .paletteIndex = n}

constexpr ToolKind B = ToolKind::Button;
constexpr ToolKind C = ToolKind::Check;
constexpr ToolKind T = ToolKind::Toggle;
constexpr ToolKind X = ToolKind::Combo;

constexpr std::array kCommands{
    Menu("mnuFile", "&File", "mnuFile"),
    Menu("mnuEdit", "&Edit", "mnuEdit"),
    Menu("mnuView", "&View", "mnuView"),
    Menu("mnuInsert", "&Insert", "mnuInsert"),
    Menu("mnuFormat", "Fo&rmat", "mnuFormat"),
    Menu("mnuTools", "&Tools", nullptr),
    Menu("mnuWindow", "&Window", nullptr),
    Cmd("mnuHelp", "", "Built-in Menus", "&Help", "", B, QKeySequence::HelpContents),

    Cmd("new", "New", "File", "&New", "Creates a new, blank file", B, QKeySequence::New),
    Cmd("Open", "Open", "File", "&Open", "Opens or finds a file", B, QKeySequence::Open),
    Cmd("miSave", "Save", "File", "&Save", "Saves current active file", B, QKeySequence::Save),
    Cmd("miSaveAs", "Save under a new name", "File", "Save &As...", "Saves current file with a new name", B,
        QKeySequence::SaveAs),
    Cmd("miSaveFlyer", "Save as flyer", "File", "Save Flyer", ""),
    Cmd("miSaveFlyerAs", "Save Flyer using another filename", "File", "Save Flyer As...", ""),
    Cmd("miPageSetup", "Page Setup", "File", "Page Setup...", "Setup page properties"),
    Cmd("miPrintSetup", "Print Setup", "File", "Print Setup...", "Set up printer properties"),
    Cmd("print", "Print", "View", "Print...", "Print current file"),
    // The File menu's print asks for the printer first, so it carries the print shortcut.
    Cmd("PrintFromFileMenu", "Print", "View", "Print...", "Print current file", B, QKeySequence::Print),
    Cmd("printpreview", "Print Preview", "View", "Print Preview", "Print preview current file"),
    Cmd("miPrintMany", "Print the report for many listings", "File", "Print &Many...",
        "Print the report for listings chosen in the property search, or for all of yours"),
    Cmd("miSelectProperty", "Select the Property whos data you wish to use to populate your report", "File",
        "Select Property", ""),
    Cmd("exit", "Exit", "File", "E&xit", "Close all documents and exit", B, QKeySequence::Quit),

    Cmd("miCut", "Cut", "Edit", "C&ut", "Cut current selection to clipboard", B, QKeySequence::Cut),
    Cmd("miCopy", "Copy", "Edit", "C&opy", "Copy current selection to clipboard", B, QKeySequence::Copy),
    Cmd("miPaste", "Paste", "Edit", "&Paste", "Paste clipboard contents into document", B, QKeySequence::Paste),
    Tool("miSelectByArea", "Select all controls within an area", "Group Select", "", 12, PictureMode::None,
         nullptr, "Edit"),
    // No Delete shortcut: the items take the Delete key themselves.
    Cmd("miDeleteObject", "Delete", "Edit", "Delete", ""),

    Cmd("miDataView", "Show property data", "View", "Data View", "", C),
    Cmd("miTemplateView", "Template View", "View", "Template", "View normal", C),
    Cmd("miPageHeader", "Show/Hide Page header/Footer bars", "View", "Page Header/Footer", "", C),
    Cmd("miShowOutline", "Show/Hide Control outlines", "View", "Show Outline", "", T),
    Cmd("miGridSetup", "Grid  Settings", "View", "Grid Settings", "Display grid"),

    Cmd("miProperties", "Properties", "Misc", "Properties", "Display property dialog box"),
    Cmd("miFieldList", "Field List", "Misc", "Field List", "View normal"),
    Cmd("miObjectName", "Object", "Misc", "Object Name", "Select current object", X),
    Cmd("miSendtoFront", "Bring to Front", "Misc", "Bring to &Front", "Bring to front"),
    Cmd("miSendtoBack", "Send to back", "Misc", "Send to &Back", "Send object to back"),
    Cmd("miEffect", "Special Effect", "Misc", "Effect", "Special Effect", B, kNoKey, "PopEffect"),
    Cmd("miEffectFlat", "Flat", "Misc", "Flat", "Special Effect Flat", C),
    Cmd("miEffectShadow", "Effect", "Misc", "Shadow", "Shadow", C),

    Cmd("fnFont", "Font Name", "Font", "&Font", "Change font", X),
    Cmd("fnFontSize", "Font Size", "Font", "Font &Size", "Change font size", X),
    Cmd("fnBold", "Bold", "Font", "&Bold", "Set current style to bold", C, QKeySequence::Bold),
    Cmd("fnItalic", "Italic", "Font", "&Italic", "Set current style to italic", C, QKeySequence::Italic),
    Cmd("fnUnderline", "Underline", "Font", "&Underline", "Set current style to underlined", C,
        QKeySequence::Underline),
    Cmd("fnLeft", "Left", "Font", "&Left", "Align left", C),
    Cmd("fnCenter", "Center", "Font", "&Center", "Align center", C),
    Cmd("fnRight", "Right", "Font", "&Right", "Align right", C),
    Cmd("fnForeColor", "Font/Fore Color", "Toolbox", "Font/Fore Color", "Font Fore Color", B, kNoKey,
        "barForeColor"),
    Cmd("fnBackColor", "Fill/Back Color", "Toolbox", "Fill/Back Color", "Fill/Background Color", B, kNoKey,
        "barBackColor"),
    Cmd("tbBorderColor", "Line/Border Color", "Toolbox", "Line/Border Color", "Line/Border Color", B, kNoKey,
        "barBorderColor"),

    Tool("tbSelectObjects", "Select", "Select Objects", "Select drawing objects", 0),
    Tool("tbInsertLabel", "Label", "Label", "Insert a Label", 2),
    Tool("tbInsertPicture", "Insert Picture from file", "Picture", "Insert picture at current position", 5,
         PictureMode::Embedded, "PopInsertPhoto"),
    Tool("EmbedPhoto", "Insert a photo from file", "Insert a Photo", "", 5, PictureMode::Embedded),
    Tool("InsertLinkedPhoto", "Insert a link to an external photo file", "Insert a linked photo", "", 5,
         PictureMode::Linked),
    Tool("tbBoundPicture", "Insert Bound Picture", "Bound Picture", "Insert picture at current position", 5,
         PictureMode::Bound),
    Tool("tbInsertRectangle", "Rectangle", "Rectangle", "Insert a Text box", 3),
    Tool("tbInsertLine", "Line", "Line", "Insert a Line", 4),
    Tool("tbDateTime", "Insert Date/Time", "Date/Time", "Insert Date", 8),
    Tool("tbPageBreak", "Page Break", "Page Break", "Page Break", 6, PictureMode::None, nullptr, "Misc"),
    Tool("tbSectionBreak", "Section Break", "Section Break", "", 9),
    Tool("tbSubReport", "Sub Report", "Sub Report", "", 7),
    Tool("miInsertFile", "Insert/Paste from a file", "Insert File", "Insert file at current position", 11),
    Cmd("miClearDataSource", "Clear Dic data source field when saving report", "Toolbox",
        "Clear Data Source on Save", "", T),

    PW_COLOR(0), PW_COLOR(1), PW_COLOR(2), PW_COLOR(3), PW_COLOR(4), PW_COLOR(5), PW_COLOR(6), PW_COLOR(7),
    PW_COLOR(8), PW_COLOR(9), PW_COLOR(10), PW_COLOR(11), PW_COLOR(12), PW_COLOR(13), PW_COLOR(14),
    PW_COLOR(15),
};
#undef PW_COLOR

constexpr const char* S = kSeparator;

constexpr const char* kMain[] = {"mnuFile", "mnuEdit", "mnuView", "mnuInsert", "mnuFormat", "mnuHelp"};
constexpr const char* kFile[] = {"new", "Open", S, "printpreview", "PrintFromFileMenu", "miPrintMany", "miPageSetup", S,
                                 "miSave", "miSaveAs", S, "miSelectProperty", "miClearDataSource", S, "exit"};
constexpr const char* kEdit[] = {"miCut", "miCopy", "miPaste", S, "miSelectByArea", "miDeleteObject"};
constexpr const char* kView[] = {"miProperties", "miFieldList", S, "printpreview", S, "miSendtoFront",
                                 "miSendtoBack", S, "miPageHeader", "miShowOutline", "miGridSetup"};
constexpr const char* kInsert[] = {"tbInsertLabel", "tbInsertPicture", "tbBoundPicture", "tbInsertRectangle",
                                   "tbInsertLine", "tbDateTime", S, "tbPageBreak", "tbSubReport",
                                   "tbSectionBreak", S, "miInsertFile"};
constexpr const char* kFormat[] = {"fnLeft", "fnCenter", "fnRight", S, "fnFontSize", "fnFont", S,
                                   "fnUnderline", "fnItalic", "fnBold", S, "fnForeColor", "fnBackColor",
                                   "tbBorderColor"};
constexpr const char* kFormatting[] = {"miObjectName", S, "fnFont", "fnFontSize", S, "fnBold", "fnItalic",
                                       "fnUnderline", S, "fnBackColor", "fnForeColor", "tbBorderColor"};
constexpr const char* kReportDesign[] = {"print", "printpreview", S, "miSave", "Open", "miPageSetup", S,
                                         "miProperties", S, "miCut", "miCopy", "miPaste", S, "miSendtoFront",
                                         "miSendtoBack", S, "miDataView", "miTemplateView", S, "fnLeft",
                                         "fnCenter", "fnRight", S, "miEffect"};
constexpr const char* kToolbox[] = {"tbSelectObjects", "tbInsertLabel", "tbInsertPicture", "tbBoundPicture",
                                    "tbInsertRectangle", "tbInsertLine"};
constexpr const char* kEffect[] = {"miEffectFlat", "miEffectShadow"};
constexpr const char* kInsertPhoto[] = {"EmbedPhoto", "InsertLinkedPhoto"};
constexpr const char* kPalette[] = {"cpColor0", "cpColor1", "cpColor2", "cpColor3", "cpColor4", "cpColor5",
                                    "cpColor6", "cpColor7", "cpColor8", "cpColor9", "cpColor10", "cpColor11",
                                    "cpColor12", "cpColor13", "cpColor14", "cpColor15"};

const std::array kBands{
    BandDef{"mnuMain", BandKind::MainMenu, "Menu Bar", kMain},
    BandDef{"mnuFile", BandKind::Menu, nullptr, kFile},
    BandDef{"mnuEdit", BandKind::Menu, nullptr, kEdit},
    BandDef{"mnuView", BandKind::Menu, nullptr, kView},
    BandDef{"mnuInsert", BandKind::Menu, nullptr, kInsert},
    BandDef{"mnuFormat", BandKind::Menu, nullptr, kFormat},
    BandDef{"barFormatting", BandKind::ToolBar, "Formatting", kFormatting},
    BandDef{"barReportDesign", BandKind::ToolBar, "Report Design", kReportDesign},
    BandDef{"barToolbox", BandKind::ToolBar, "Toolbox", kToolbox},
    BandDef{"PopEffect", BandKind::Popup, "Effect", kEffect},
    BandDef{"PopInsertPhoto", BandKind::Popup, "Insert Photo", kInsertPhoto},
    BandDef{"barForeColor", BandKind::Palette, "Font/Fore Color", kPalette},
    BandDef{"barBackColor", BandKind::Palette, "Fill/Back Color", kPalette},
    BandDef{"barBorderColor", BandKind::Palette, "Line/Border Color", kPalette},
};

template <typename Def, std::size_t N>
QHash<QString, const Def*> IndexByName(const std::array<Def, N>& defs)
{
    QHash<QString, const Def*> index;
    for (const Def& d : defs)
        index.insert(d.Name(), &d);
    return index;
}
}

std::span<const CommandDef> Commands() { return kCommands; }
std::span<const BandDef> Bands() { return kBands; }

const CommandDef* FindCommand(QStringView name)
{
    static const QHash<QString, const CommandDef*> index = IndexByName(kCommands);
    return index.value(name.toString(), nullptr);
}

const BandDef* FindBand(QStringView name)
{
    static const QHash<QString, const BandDef*> index = IndexByName(kBands);
    return index.value(name.toString(), nullptr);
}

QStringList BandToolNames(const BandDef& band)
{
    QStringList names;
    for (const char* t : band.tools)
        if (std::strcmp(t, kSeparator) != 0)
            names << QString::fromLatin1(t);
    return names;
}

QList<Placement> PlacementsOf(QStringView toolName)
{
    QList<Placement> result;
    for (const BandDef& band : kBands) {
        const int pos = BandToolNames(band).indexOf(toolName.toString());
        if (pos >= 0)
            result.append({band.Name(), pos});
    }
    return result;
}

QStringList FontSizeChoices()
{
    return {"8", "10", "11", "12", "14", "16", "18", "20", "22", "24", "26", "36", "48", "72"};
}

int PaletteTargetOfBand(QStringView bandName)
{
    if (bandName == u"barForeColor")
        return 1;
    if (bandName == u"barBackColor")
        return 2;
    if (bandName == u"barBorderColor")
        return 3;
    return 0;
}

quint32 QBColor(int n)
{
    // BGR: red in the low byte.
    static constexpr quint32 table[16] = {0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080,
                                          0x008080, 0xC0C0C0, 0x808080, 0xFF0000, 0x00FF00, 0xFFFF00,
                                          0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF};
    return n >= 0 && n < 16 ? table[n] : 0;
}

QString SelectPropertyCaption(int reportKind)
{
    switch (reportKind) {
    case ReportKind::Office:
        return QStringLiteral("Select Office");
    case ReportKind::Members:
        return QStringLiteral("Select Agent");
    case ReportKind::Rental:
        return QStringLiteral("Select Rental");
    default:
        return QStringLiteral("Select Property");
    }
}

QStringList SwitchedOffTools(int reportKind, int userLevel)
{
    QStringList off;
    // Tax-roll and office records have no photos to bind.
    if (reportKind == ReportKind::Taxrolls || reportKind == ReportKind::Office)
        off << QStringLiteral("tbBoundPicture");
    if (userLevel < 100)
        off << QStringLiteral("tbSubReport") << QStringLiteral("miClearDataSource");
    return off;
}
