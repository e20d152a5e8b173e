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

// A command with shortcuts of its own ("Ctrl+D; Ctrl+Shift+D").
constexpr CommandDef Keyed(const char* name, const char* tip, const char* category, const char* caption,
                           const char* description, const char* keys, SK key = kNoKey,
                           ToolKind kind = ToolKind::Button, const char* opens = nullptr)
{
    CommandDef d = Cmd(name, tip, category, caption, description, kind, key, opens);
    d.keys = keys;
    return d;
}

constexpr CommandDef Menu(const char* name, const char* caption, const char* band)
{
    return Cmd(name, "", "Built-in Menus", caption, "", ToolKind::Menu, kNoKey, band);
}

// Palette colours are captioned with the colour's name: a swatch alone does not say which it is.
#define PW_COLOR(n, colourName)                                                                      \
    CommandDef{.name = "cpColor" #n, .toolTip = colourName, .category = "ColorPalette", .caption = colourName, \
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

    Keyed("miUndo", "Undo", "Edit", "&Undo", "Takes back the last change", "Ctrl+Z"),
    Keyed("miRedo", "Redo", "Edit", "&Redo", "Makes the last change taken back again", "Ctrl+Y; Ctrl+Shift+Z"),
    Keyed("miSelectAll", "Select All", "Edit", "Select &All", "Selects every item of the report", "Ctrl+A"),
    Keyed("miDuplicate", "Duplicate", "Edit", "&Duplicate", "Copies the selection one grid step down and right",
          "Ctrl+D"),
    Cmd("miCut", "Cut", "Edit", "C&ut", "Cut current selection to clipboard", B, QKeySequence::Cut),
    Cmd("miCopy", "Copy", "Edit", "C&opy", "Copy current selection to clipboard", B, QKeySequence::Copy),
    Cmd("miPaste", "Paste", "Edit", "&Paste", "Paste clipboard contents into document", B, QKeySequence::Paste),
    Tool("miSelectByArea", "Select all controls within an area", "Group Select", "", 12, PictureMode::None,
         nullptr, "Edit"),
    // No Delete shortcut: the items take the Delete key themselves.
    // The Delete key deletes the selection wherever the keyboard focus is in the window; a text
    // box that has the focus keeps the key for itself.
    Cmd("miDeleteObject", "Delete", "Edit", "Delete", "", B, QKeySequence::Delete),

    Cmd("miDataView", "Show property data", "View", "Data View", "", C),
    Cmd("miTemplateView", "Template View", "View", "Template", "View normal", C),
    Cmd("miPageHeader", "Show/Hide Page header/Footer bars", "View", "Page Header/Footer", "", C),
    Cmd("miShowOutline", "Show/Hide Control outlines", "View", "Show Outline", "", T),
    Cmd("miGridSetup", "Grid  Settings", "View", "Grid Settings", "Display grid"),

    Keyed("miZoomIn", "Zoom In", "View", "Zoom &In", "Shows the page larger", "Ctrl++; Ctrl+="),
    Keyed("miZoomOut", "Zoom Out", "View", "Zoom &Out", "Shows the page smaller", "Ctrl+-"),
    Keyed("miZoom100", "Actual Size", "View", "&100 %", "Shows the page at its actual size", "Ctrl+0"),
    Cmd("miZoomFitPage", "Fit Page", "View", "Fit &Page", "Shows the whole page width and height"),
    Cmd("miZoomFitWidth", "Fit Width", "View", "Fit &Width", "Shows the whole page width"),
    Cmd("miZoom", "Zoom", "View", "&Zoom", "Zoom level of the page", X),

    Cmd("miAlign", "Align", "Format", "&Align", "Lines the selected items up with the first one", B, kNoKey,
        "PopAlign"),
    Cmd("miAlignLefts", "Align Left", "Format", "&Left", "Aligns the left edges with the first selected item"),
    Cmd("miAlignRights", "Align Right", "Format", "&Right", "Aligns the right edges with the first selected item"),
    Cmd("miAlignTops", "Align Top", "Format", "&Top", "Aligns the top edges with the first selected item"),
    Cmd("miAlignBottoms", "Align Bottom", "Format", "&Bottom",
        "Aligns the bottom edges with the first selected item"),
    Cmd("miAlignCentres", "Align Centres", "Format", "&Centres",
        "Centres the items horizontally on the first selected item"),
    Cmd("miAlignMiddles", "Align Middles", "Format", "&Middles",
        "Centres the items vertically on the first selected item"),
    Cmd("miSize", "Make Same Size", "Format", "Make Same Si&ze", "Gives the selected items the first one's size",
        B, kNoKey, "PopSize"),
    Cmd("miSameWidth", "Make Same Width", "Format", "Same &Width", "Gives the selected items the first one's width"),
    Cmd("miSameHeight", "Make Same Height", "Format", "Same &Height",
        "Gives the selected items the first one's height"),
    Cmd("miSameSize", "Make Same Size", "Format", "Same &Size", "Gives the selected items the first one's size"),
    Cmd("miSpace", "Space Evenly", "Format", "Space &Evenly", "Spaces the selected items evenly", B, kNoKey,
        "PopSpace"),
    Cmd("miSpaceAcross", "Space Evenly Across", "Format", "&Across",
        "Leaves equal gaps between the selected items from left to right"),
    Cmd("miSpaceDown", "Space Evenly Down", "Format", "&Down",
        "Leaves equal gaps between the selected items from top to bottom"),
    Cmd("miCentreInPage", "Centre in Page", "Format", "Centre in &Page",
        "Centres the selection between the page margins"),
    Keyed("miNudgeLeft", "Nudge Left", "Format", "Nudge Left", "Moves the selection one pixel left", "Alt+Left"),
    Keyed("miNudgeRight", "Nudge Right", "Format", "Nudge Right", "Moves the selection one pixel right",
          "Alt+Right"),
    Keyed("miNudgeUp", "Nudge Up", "Format", "Nudge Up", "Moves the selection one pixel up", "Alt+Up"),
    Keyed("miNudgeDown", "Nudge Down", "Format", "Nudge Down", "Moves the selection one pixel down", "Alt+Down"),
    Cmd("miNudge", "Nudge", "Format", "&Nudge", "Moves the selection by one pixel", B, kNoKey, "PopNudge"),

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

    PW_COLOR(0, "Black"), PW_COLOR(1, "Navy"), PW_COLOR(2, "Green"), PW_COLOR(3, "Teal"),
    PW_COLOR(4, "Maroon"), PW_COLOR(5, "Purple"), PW_COLOR(6, "Olive"), PW_COLOR(7, "Silver"),
    PW_COLOR(8, "Gray"), PW_COLOR(9, "Blue"), PW_COLOR(10, "Lime"), PW_COLOR(11, "Aqua"),
    PW_COLOR(12, "Red"), PW_COLOR(13, "Fuchsia"), PW_COLOR(14, "Yellow"), PW_COLOR(15, "White"),
};
#undef PW_COLOR

constexpr const char* S = kSeparator;

constexpr const char* kMain[] = {"mnuFile", "mnuEdit", "mnuView", "mnuInsert", "mnuFormat", "mnuHelp"};
constexpr const char* kFile[] = {"new", "Open", S, "printpreview", "PrintFromFileMenu", "miPrintMany", "miPageSetup", "miPrintSetup", S,
                                 "miSave", "miSaveAs", S, "miSelectProperty", "miClearDataSource", S, "exit"};
constexpr const char* kEdit[] = {"miUndo", "miRedo", S, "miCut", "miCopy", "miPaste", S, "miDuplicate", S, "miSelectAll", "miSelectByArea",
                                 "miDeleteObject"};
constexpr const char* kView[] = {"miProperties", "miFieldList", S, "printpreview", S, "miSendtoFront",
                                 "miSendtoBack", S, "miPageHeader", "miShowOutline", "miGridSetup", S,
                                 "miZoomIn", "miZoomOut", "miZoom100", "miZoomFitPage", "miZoomFitWidth"};
constexpr const char* kInsert[] = {"tbInsertLabel", "tbInsertPicture", "tbBoundPicture", "tbInsertRectangle",
                                   "tbInsertLine", "tbDateTime", S, "tbPageBreak", "tbSubReport",
                                   "tbSectionBreak", S, "miInsertFile"};
constexpr const char* kFormat[] = {"fnLeft", "fnCenter", "fnRight", S, "fnFontSize", "fnFont", S,
                                   "fnUnderline", "fnItalic", "fnBold", S, "fnForeColor", "fnBackColor",
                                   "tbBorderColor", S, "miAlign", "miSize", "miSpace", "miCentreInPage", "miNudge"};
constexpr const char* kFormatting[] = {"miObjectName", S, "fnFont", "fnFontSize", S, "fnBold", "fnItalic",
                                       "fnUnderline", S, "fnBackColor", "fnForeColor", "tbBorderColor"};
constexpr const char* kReportDesign[] = {"print", "printpreview", S, "miSave", "Open", "miPageSetup", S,
                                         "miProperties", S, "miUndo", "miRedo", S, "miCut", "miCopy", "miPaste", S, "miSendtoFront",
                                         "miSendtoBack", S, "miDataView", "miTemplateView", S, "fnLeft",
                                         "fnCenter", "fnRight", S, "miEffect", S, "miZoomOut", "miZoom",
                                         "miZoomIn"};
constexpr const char* kArrange[] = {"miAlignLefts", "miAlignCentres", "miAlignRights", S, "miAlignTops",
                                    "miAlignMiddles", "miAlignBottoms", S, "miSameWidth", "miSameHeight",
                                    "miSameSize", S, "miSpaceAcross", "miSpaceDown", "miCentreInPage"};
constexpr const char* kAlign[] = {"miAlignLefts", "miAlignCentres", "miAlignRights", S, "miAlignTops",
                                  "miAlignMiddles", "miAlignBottoms"};
constexpr const char* kSize[] = {"miSameWidth", "miSameHeight", "miSameSize"};
constexpr const char* kSpace[] = {"miSpaceAcross", "miSpaceDown"};
constexpr const char* kNudge[] = {"miNudgeLeft", "miNudgeRight", "miNudgeUp", "miNudgeDown"};
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
    BandDef{"barArrange", BandKind::ToolBar, "Arrange", kArrange},
    BandDef{"barReportDesign", BandKind::ToolBar, "Report Design", kReportDesign},
    BandDef{"barToolbox", BandKind::ToolBar, "Toolbox", kToolbox},
    BandDef{"PopEffect", BandKind::Popup, "Effect", kEffect},
    BandDef{"PopInsertPhoto", BandKind::Popup, "Insert Photo", kInsertPhoto},
    BandDef{"PopAlign", BandKind::Popup, "Align", kAlign},
    BandDef{"PopSize", BandKind::Popup, "Make Same Size", kSize},
    BandDef{"PopSpace", BandKind::Popup, "Space Evenly", kSpace},
    BandDef{"PopNudge", BandKind::Popup, "Nudge", kNudge},
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

QList<QKeySequence> ShortcutsOf(const CommandDef& def)
{
    QList<QKeySequence> keys;
    if (def.shortcut != QKeySequence::UnknownKey)
        keys << QKeySequence(def.shortcut);
    if (def.keys)
        for (const QString& k : QString::fromLatin1(def.keys).split(QStringLiteral("; "), Qt::SkipEmptyParts))
            if (const QKeySequence seq(k, QKeySequence::PortableText); !seq.isEmpty() && !keys.contains(seq))
                keys << seq;
    return keys;
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
