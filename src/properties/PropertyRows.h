#pragma once
// The property sheet's fixed tables: its rows in layout order, the row set of each item kind,
// and the value lists with their display texts and stored codes.
#include <QList>
#include <QString>
#include <QStringList>

namespace RowBit {
constexpr quint32 Name = 1, Left = 2, Top = 4, Width = 8, Height = 16, Border = 32, DataField = 128, Effect = 256,
                  Alignment = 512, AllowShrink = 1024, AllowGrow = 2048, Font = 4096, FunctionType = 16384,
                  CustomSQL = 32768, UseShortText = 65536, ForeColor = 131072, BackColor = 262144,
                  FileName = 1048576, ImageAlignment = 2097152, ImageSizeMode = 4194304, Category = 8388608,
                  PhotoSeq = 16777216, BackStyle = 268435456, Format = 536870912, Expression = 1073741824;
constexpr quint32 All = 0xFFFFFFFFu;
}

// What an editor reads and writes through the document.
enum class SheetProp {
    Name, Left, Top, Width, Height, Format, BorderStyle, BorderWidth, DataField, Effect, Alignment, ImageAlignment,
    ImageSizeMode, AllowShrink, AllowGrow, Category, PhotoSeq, FileName, FontName, FontSize, FontBold, FontUnderline,
    FontItalic, ForeColor, BackColor, BorderColor, BackStyle, Expression, UseShortText, CustomSQL, FunctionType
};

// How an editor commits and what Escape does (see frmRptPropertiesEdits.cpp).
enum class EditorFamily { FixedList, YesNoList, FontList, FormatList, DataFieldList, Number, Text, Name };

struct SheetRow {
    quint32 bit;
    const char* label;   // object name of the caption label
    const char* caption; // its usual text
    const char* editor;  // object name of the editor
    const char* button;  // object name of the "..." button beside it, or null
    SheetProp prop;
    EditorFamily family;
};

// Every row, in layout order.
const QList<SheetRow>& SheetRows();

// The rows an item kind shows; kinds without a row set leave the mask as it is (All).
quint32 KindRowMask(int objectType);

struct ValueEntry {
    QString text;
    int code;
};
// The fixed entries of a list editor by its object name ("cboBorderStyle", ...); empty for a
// list without fixed entries.
QList<ValueEntry> ValueList(const QString& listName);

// The named formats offered for an item's FormatClass.
QStringList FormatNames(int formatClass);
QStringList FontSizes();
