// The classic Format function: picks the named format or the custom section for the value
// and hands it to the number, date or string formatter.
#include "render/Format.h"
#include "render/FormatInternal.h"

using namespace fmt_detail;

namespace fmt_detail {

SectionKind classify(const std::vector<FmtChar>& toks)
{
    bool digits = false, date = false, caseOrFill = false;
    for (size_t i = 0; i < toks.size(); ++i) {
        if (toks[i].literal)
            continue;
        const QChar c = toks[i].ch;
        switch (c.toLower().toLatin1()) {
        case '@':
        case '&':
            return SectionKind::String;
        case '0':
        case '#':
            digits = true;
            break;
        case '<':
        case '>':
        case '!':
            caseOrFill = true;
            break;
        case 'd': case 'm': case 'y': case 'h': case 'n': case 's': case 'w': case 'q': case 'c':
            date = true;
            break;
        case 'a': {
            // AM/PM, AMPM and A/P alone make a time format.
            auto is = [&](size_t k, char ch) {
                return k < toks.size() && !toks[k].literal && toks[k].ch.toLower() == QLatin1Char(ch);
            };
            if ((is(i + 1, 'm') && (is(i + 2, '/') || is(i + 2, 'p'))) || (is(i + 1, '/') && is(i + 2, 'p')))
                date = true;
            break;
        }
        case 't': {
            size_t run = 0;
            while (i + run < toks.size() && !toks[i + run].literal && toks[i + run].ch.toLower() == QLatin1Char('t'))
                ++run;
            if (run >= 5)
                date = true;
            break;
        }
        default:
            break;
        }
    }
    if (digits)
        return SectionKind::Number;
    if (date)
        return SectionKind::Date;
    return caseOrFill ? SectionKind::String : SectionKind::Literal;
}

} // namespace fmt_detail

namespace {

enum class Named { None, GeneralNumber, Currency, Fixed, Standard, Percent, Scientific, YesNo, TrueFalse, OnOff,
                   GeneralDate, LongDate, MediumDate, ShortDate, LongTime, MediumTime, ShortTime };

Named namedFormat(const QString& format)
{
    static const struct {
        const char* name;
        Named kind;
    } table[] = {
        {"General Number", Named::GeneralNumber}, {"Currency", Named::Currency},     {"Fixed", Named::Fixed},
        {"Standard", Named::Standard},            {"Percent", Named::Percent},       {"Scientific", Named::Scientific},
        {"Yes/No", Named::YesNo},                 {"True/False", Named::TrueFalse},  {"On/Off", Named::OnOff},
        {"General Date", Named::GeneralDate},     {"Long Date", Named::LongDate},    {"Medium Date", Named::MediumDate},
        {"Short Date", Named::ShortDate},         {"Long Time", Named::LongTime},    {"Medium Time", Named::MediumTime},
        {"Short Time", Named::ShortTime},
    };
    if (format.size() > 14)
        return Named::None;
    for (const auto& e : table)
        if (format.compare(QLatin1String(e.name), Qt::CaseInsensitive) == 0)
            return e.kind;
    return Named::None;
}

// The custom format each named format stands for (US English regional settings).
const char* namedPattern(Named n)
{
    switch (n) {
    case Named::Currency: return "$#,##0.00;($#,##0.00)";
    case Named::Fixed: return "0.00";
    case Named::Standard: return "#,##0.00";
    case Named::Percent: return "0.00%";
    case Named::Scientific: return "0.00E+00";
    case Named::LongDate: return "dddd, mmmm d, yyyy";
    case Named::MediumDate: return "dd-mmm-yy";
    case Named::ShortDate: return "m/d/yyyy";
    case Named::LongTime: return "h:mm:ss AM/PM";
    case Named::MediumTime: return "hh:mm AM/PM";
    case Named::ShortTime: return "hh:mm";
    default: return nullptr;
    }
}

QString generalText(const Value& v)
{
    switch (v.kind) {
    case Value::Null: return {};
    case Value::Text: return v.text;
    case Value::Bool: return v.dec.isZero() ? QStringLiteral("False") : QStringLiteral("True");
    case Value::Date: return generalDate(v.serial);
    case Value::Number: return generalNumber(v.dec);
    }
    return {};
}

// String sections see a string as it was given and anything else in its general form.
QString stringForm(const Value& v)
{
    return v.fromText ? v.text : generalText(v);
}

QString formatCustom(const Value& v, const QString& format);

QString formatNamed(const Value& v, Named n)
{
    if (v.kind == Value::Null || v.kind == Value::Text)
        return v.text; // Null and text that is neither number nor date pass through
    switch (n) {
    case Named::GeneralNumber: return generalNumber(v.dec);
    case Named::GeneralDate: return generalDate(v.serial);
    case Named::YesNo: return v.dec.isZero() ? QStringLiteral("No") : QStringLiteral("Yes");
    case Named::TrueFalse: return v.dec.isZero() ? QStringLiteral("False") : QStringLiteral("True");
    case Named::OnOff: return v.dec.isZero() ? QStringLiteral("Off") : QStringLiteral("On");
    default: return formatCustom(v, QLatin1String(namedPattern(n)));
    }
}

QString formatCustom(const Value& v, const QString& format)
{
    const QStringList sections = splitSections(format);
    if (v.kind == Value::Null) {
        if (sections.size() >= 4)
            return literalText(lexSection(sections[3]));
        if (sections.size() >= 2 && classify(lexSection(sections[0])) == SectionKind::String)
            return formatStringSection(lexSection(sections[1]), QString());
        return {};
    }
    if (v.kind == Value::Text) {
        const auto first = lexSection(sections[0]);
        if (classify(first) != SectionKind::String)
            return v.text; // the classic function gives back text it cannot read as a number or date
        if (v.text.isEmpty() && sections.size() >= 2)
            return formatStringSection(lexSection(sections[1]), QString());
        return formatStringSection(first, v.text);
    }

    qsizetype index = 0;
    bool withSign = true;
    if (!v.dec.isZero() && v.dec.negative && sections.size() >= 2 && !sections[1].isEmpty()) {
        index = 1;
        withSign = false;
    } else if (v.dec.isZero() && sections.size() >= 3 && !sections[2].isEmpty()) {
        index = 2;
    }
    if (sections[index].isEmpty())
        return generalText(v);
    const auto toks = lexSection(sections[index]);
    switch (classify(toks)) {
    case SectionKind::Number: {
        Decimal d = v.dec;
        if (!withSign)
            d.negative = false;
        return formatNumberSection(toks, d, withSign);
    }
    case SectionKind::Date:
        return formatDateSection(toks, v.serial);
    case SectionKind::String:
        return formatStringSection(toks, stringForm(v));
    case SectionKind::Literal:
        break;
    }
    return literalText(toks);
}

} // namespace

QString Format(const QVariant& value, const QString& format)
{
    const Value v = coerce(value);
    if (format.isEmpty())
        return generalText(v);
    const Named n = namedFormat(format);
    if (n != Named::None)
        return formatNamed(v, n);
    return formatCustom(v, format);
}
