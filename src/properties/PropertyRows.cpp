#include "properties/PropertyRows.h"

#include <QHash>

const QList<SheetRow>& SheetRows()
{
    using P = SheetProp;
    using F = EditorFamily;
    static const QList<SheetRow> rows = {
        {RowBit::Name, "lblName", "Name", "txtName", nullptr, P::Name, F::Name},
        {RowBit::Left, "lblLeft", "Left", "fpLeft", nullptr, P::Left, F::Number},
        {RowBit::Top, "lblTop", "Top", "fpTop", nullptr, P::Top, F::Number},
        {RowBit::Width, "lblWidth", "Width", "fpWidth", nullptr, P::Width, F::Number},
        {RowBit::Height, "lblHeight", "Height", "fpHeight", nullptr, P::Height, F::Number},
        {RowBit::Format, "lblFormat", "Format", "cboFormat", nullptr, P::Format, F::FormatList},
        {RowBit::Border, "lblBorderStyle", "Border Style", "cboBorderStyle", nullptr, P::BorderStyle, F::FixedList},
        {RowBit::Border, "lblBorderWidth", "Border Width", "fpBorderWidth", nullptr, P::BorderWidth, F::Number},
        {RowBit::DataField, "lblDataField", "DataField", "cboDataField", nullptr, P::DataField, F::DataFieldList},
        {RowBit::Effect, "lblEffect", "Special Effect", "cboEffect", nullptr, P::Effect, F::FixedList},
        {RowBit::Alignment, "lblAlignment", "Text Alignment", "cboAlignment", nullptr, P::Alignment, F::FixedList},
        {RowBit::ImageAlignment, "lblImageAlignment", "Photo Alignment", "cboImageAlignment", nullptr, P::ImageAlignment,
         F::FixedList},
        {RowBit::ImageSizeMode, "lblImageSizeMode", "Size Mode", "cboImageSizeMode", nullptr, P::ImageSizeMode,
         F::FixedList},
        {RowBit::AllowShrink, "lblAllowShrink", "Allow Shrink", "cboAllowShrink", nullptr, P::AllowShrink, F::YesNoList},
        {RowBit::AllowGrow, "lblAllowGrow", "Allow Grow", "cboAllowGrow", nullptr, P::AllowGrow, F::YesNoList},
        {RowBit::Category, "lblCategory", "Type", "cboCategory", nullptr, P::Category, F::FixedList},
        {RowBit::PhotoSeq, "lblPhotoSeq", "Photo Number", "fpPhotoSeq", nullptr, P::PhotoSeq, F::Number},
        {RowBit::FileName, "lblFileName", "Photo File", "txtFileName", "cmdSetFileName", P::FileName, F::Text},
        {RowBit::Font, "lblFontName", "Font", "cboFontName", nullptr, P::FontName, F::FontList},
        {RowBit::Font, "lblFontSize", "Font Size", "cboFontSize", nullptr, P::FontSize, F::FontList},
        {RowBit::Font, "lblFontBold", "Font Bold", "cboFontBold", nullptr, P::FontBold, F::YesNoList},
        {RowBit::Font, "lblFontUnderline", "Font UnderLine", "cboFontUnderline", nullptr, P::FontUnderline, F::YesNoList},
        {RowBit::Font, "lblFontItalic", "Font Italic", "cboFontItalic", nullptr, P::FontItalic, F::YesNoList},
        {RowBit::ForeColor, "lblForecolor", "Fore Color", "fpForeColor", "cmdSetForeColor", P::ForeColor, F::Number},
        {RowBit::BackColor, "lblBackcolor", "Back Color", "fpBackColor", "cmdSetBackColor", P::BackColor, F::Number},
        {RowBit::Border, "lblBorderColor", "Border Color", "fpBorderColor", "cmdSetBorderColor", P::BorderColor, F::Number},
        {RowBit::BackStyle, "lblBackStyle", "Back Style", "cboBackStyle", nullptr, P::BackStyle, F::FixedList},
        {RowBit::Expression, "lblExpression", "Expression", "txtExpression", nullptr, P::Expression, F::Text},
        {RowBit::UseShortText, "lblUseShortText", "Use Short Text", "cboUseShortText", nullptr, P::UseShortText,
         F::YesNoList},
        {RowBit::CustomSQL, "lblCustomSQL", "Custom SQL", "txtCustomSQL", nullptr, P::CustomSQL, F::Text},
        {RowBit::FunctionType, "lblFunctionType", "Function", "cboFunctionType", nullptr, P::FunctionType, F::FixedList},
    };
    return rows;
}

quint32 KindRowMask(int objectType)
{
    switch (objectType) {
    case 1: return 0x30071FBF;
    case 2:
    case 8: return 0x1006133F;
    case 3: return 0x1004003F;
    case 4: return 0x2F;
    case 5: return 0x01F4003F;
    case 6: return 0x7;
    case 7: return 0x40008007;
    case 9: return 0x40000007;
    default: return RowBit::All;
    }
}

QList<ValueEntry> ValueList(const QString& listName)
{
    static const QList<ValueEntry> yesNo = {{QStringLiteral("Yes"), -1}, {QStringLiteral("No"), 0}};
    static const QHash<QString, QList<ValueEntry>> lists = {
        {QStringLiteral("cboAlignment"), {{"Left", 0}, {"Center", 2}, {"Right", 1}}},
        {QStringLiteral("cboImageAlignment"),
         {{"TopLeft", 0}, {"TopRight", 1}, {"BottomLeft", 3}, {"BottomRight", 4}, {"Center", 2}}},
        {QStringLiteral("cboImageSizeMode"), {{"Zoom", 0}, {"Clip", 1}, {"Stretch", 2}}},
        {QStringLiteral("cboEffect"), {{"Flat", 0}, {"Shadow", 2}}},
        {QStringLiteral("cboBorderStyle"),
         {{"None", 5}, {"Solid", 6}, {"Dash", 1}, {"Dot", 2}, {"Dash-Dot", 3}, {"Dash-Dot-Dot", 4}}},
        {QStringLiteral("cboFontBold"), yesNo},
        {QStringLiteral("cboFontItalic"), yesNo},
        {QStringLiteral("cboFontUnderline"), yesNo},
        {QStringLiteral("cboAllowGrow"), yesNo},
        {QStringLiteral("cboAllowShrink"), yesNo},
        {QStringLiteral("cboUseShortText"), yesNo},
        {QStringLiteral("cboCategory"),
         {{"Listing", 0}, {"List Agent", 1}, {"Sale Agent", 2}, {"Current User", 3}, {"Office Logo", 4}}},
        {QStringLiteral("cboBackStyle"), {{"Transparent", 0}, {"Opaque", 1}}},
        {QStringLiteral("cboFunctionType"),
         {{"None", 0}, {"Sum", 1}, {"Average", 2}, {"Minimum", 3}, {"Maximum", 4}, {"Count", 5}, {"CMA Statistics", 6}}},
        // The panel's section row, which the row layout never shows.
        {QStringLiteral("cboForceNewPage"), yesNo},
    };
    return lists.value(listName);
}

QStringList FormatNames(int formatClass)
{
    switch (formatClass) {
    case 1:
        return {QStringLiteral("General Number"), QStringLiteral("Currency"), QStringLiteral("Fixed"),
                QStringLiteral("Standard"), QStringLiteral("Percent")};
    case 2:
        return {QStringLiteral("General Date"), QStringLiteral("Short Date"), QStringLiteral("Medium Date"),
                QStringLiteral("Long Date")};
    case 3: return {QStringLiteral("Yes/No"), QStringLiteral("True/False"), QStringLiteral("On/Off")};
    default: return {};
    }
}

QStringList FontSizes()
{
    return {"8", "9", "10", "11", "12", "14", "16", "18", "20", "22", "24", "26", "36", "48", "72"};
}
