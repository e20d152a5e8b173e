// The plain-text dump of a report, for inspection; nothing reads it back.
#include "document/clsRptControl.h"
#include "document/VbPrint.h"
#include "entry/ReportKinds.h"

namespace {

// Colours are 32-bit BGR values that the dump prints as a VB Long does: a system colour
// (high bit set, 0x8000000F) is negative, -2147483633.
double signedColour(const QObject* c, const char* name)
{
    return double(qint32(clsRptControl::Prop(c, name).toUInt()));
}

void position(VbPrintWriter& w, const QObject* c)
{
    w.Number(QStringLiteral("   Left          = "), clsRptControl::Prop(c, "Left").toDouble(), true);
    w.Number(QStringLiteral("   Top           = "), clsRptControl::Prop(c, "Top").toDouble(), true);
    w.Number(QStringLiteral("   Width         = "), clsRptControl::Prop(c, "Width").toDouble(), true);
    w.Number(QStringLiteral("   Height        = "), clsRptControl::Prop(c, "Height").toDouble(), true);
}

void border(VbPrintWriter& w, const QObject* c)
{
    w.Number(QStringLiteral("   BorderStyle   = "), clsRptControl::Prop(c, "BorderStyle").toInt());
    w.Number(QStringLiteral("   BorderWidth   = "), clsRptControl::Prop(c, "BorderWidth").toDouble(), true);
    w.Number(QStringLiteral("   BorderColor   = "), signedColour(c, "BorderColor"));
}

void font(VbPrintWriter& w, const QObject* c)
{
    w.Text(QStringLiteral("   FontName      = "), clsRptControl::Prop(c, "FontName").toString());
    w.Number(QStringLiteral("   FontSize      = "), clsRptControl::Prop(c, "Fontsize").toDouble(), true);
    w.Boolean(QStringLiteral("   FontBold      = "), clsRptControl::Prop(c, "FontBold").toBool());
    w.Boolean(QStringLiteral("   FontItalic    = "), clsRptControl::Prop(c, "FontItalic").toBool());
    w.Boolean(QStringLiteral("   FontUnderline = "), clsRptControl::Prop(c, "FontUnderline").toBool());
}

void textColour(VbPrintWriter& w, const QObject* c)
{
    w.Number(QStringLiteral("   ForeColor     = "), signedColour(c, "ForeColor"));
    w.Boolean(QStringLiteral("   AllowGrow     = "), clsRptControl::Prop(c, "AllowGrow").toBool());
    w.Boolean(QStringLiteral("   AllowShrink   = "), clsRptControl::Prop(c, "AllowShrink").toBool());
}

void back(VbPrintWriter& w, const QObject* c)
{
    w.Number(QStringLiteral("   BackColor     = "), signedColour(c, "BackColor"));
    w.Number(QStringLiteral("   SpecialEffect = "), clsRptControl::Prop(c, "SpecialEffect").toInt());
    w.Number(QStringLiteral("   Alignment     = "), clsRptControl::Prop(c, "Alignment").toInt());
}

} // namespace

void clsRptControl::DmpReport(const QString& FileName) const
{
    if (RptItemCount() == 0)
        return; // an empty report writes nothing
    VbPrintWriter w;
    w.Line(QStringLiteral("Report MyReport"));
    w.Number(QStringLiteral("Items            = "), RptItemCount());
    for (const ItemRecord& r : m_items) {
        const QObject* c = r.control;
        switch (r.ObjectType) {
        case ObjType::Field:
            w.Line(QStringLiteral("Begin Field ") + r.Name);
            w.Number(QStringLiteral("   DicId         = "), r.DicId);
            position(w, c); border(w, c); font(w, c); textColour(w, c);
            break;
        case ObjType::Label:
            w.Line(QStringLiteral("Begin Label ") + r.Name);
            w.Text(QStringLiteral("   Text          = "), Prop(c, "Text").toString());
            position(w, c); border(w, c); font(w, c); textColour(w, c);
            break;
        case ObjType::Box:
            w.Line(QStringLiteral("Begin Box   ") + r.Name);
            position(w, c); border(w, c); back(w, c);
            break;
        case ObjType::Line:
            w.Line(QStringLiteral("Begin Line  ") + r.Name);
            position(w, c); border(w, c);
            break;
        case ObjType::Image: {
            w.Line(QStringLiteral("Begin Image ") + r.Name);
            position(w, c); border(w, c); back(w, c);
            w.Number(QStringLiteral("   SizeMode      = "), Prop(c, "SizeMode").toInt());
            const bool bound = Prop(c, "DataBound").toBool();
            w.Boolean(QStringLiteral("   DataBound     = "), bound);
            if (bound) {
                w.Number(QStringLiteral("   PhotoSeq      = "), Prop(c, "PhotoSeq").toInt());
                w.Number(QStringLiteral("   Category      = "), Prop(c, "Category").toInt());
            } else {
                // The path the picture control holds ("~Graphics~" expanded), as this system writes paths.
                w.Text(QStringLiteral("   FileName      = "), DisplayPath(Prop(c, "FileName").toString()));
            }
            break;
        }
        default:
            continue;
        }
        w.Line(QStringLiteral("End"));
    }
    w.SaveFile(FileName);
}
