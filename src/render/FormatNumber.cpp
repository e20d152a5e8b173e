// Numbers for Format: the decimal digit representation, its rounding, the general form, and
// the custom number sections (0 # . , % E+ E- and literals).
#include "render/FormatInternal.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

namespace fmt_detail {

namespace {

void stripTrailingZeros(Decimal& d)
{
    while (!d.digits.empty() && d.digits.back() == '0')
        d.digits.pop_back();
    if (d.digits.empty())
        d.point = 0;
}

void stripLeadingZeros(Decimal& d)
{
    size_t n = 0;
    while (n < d.digits.size() && d.digits[n] == '0')
        ++n;
    d.digits.erase(0, n);
    d.point -= int(n);
}

Decimal fromDigits(bool negative, std::string digits)
{
    Decimal d;
    d.negative = negative;
    d.point = int(digits.size());
    d.digits = std::move(digits);
    d.exactInteger = true;
    stripLeadingZeros(d);
    stripTrailingZeros(d);
    return d;
}

} // namespace

Decimal decimalFromDouble(double v)
{
    Decimal d;
    if (v == 0 || !std::isfinite(v))
        return d;
    // 15 significant digits: what the classic runtime keeps of a double.
    char buf[64];
    auto res = std::to_chars(buf, buf + sizeof buf, std::fabs(v), std::chars_format::scientific, 14);
    std::string text(buf, res.ptr);
    const size_t e = text.find('e');
    std::string digits;
    for (size_t i = 0; i < e; ++i)
        if (text[i] != '.')
            digits += text[i];
    d.negative = v < 0;
    d.digits = digits;
    d.point = std::atoi(text.c_str() + e + 1) + 1;
    stripTrailingZeros(d);
    return d;
}

Decimal decimalFromUnsigned(unsigned long long v)
{
    return fromDigits(false, std::to_string(v));
}

Decimal decimalFromInteger(long long v)
{
    const unsigned long long mag = v < 0 ? 0ULL - static_cast<unsigned long long>(v) : static_cast<unsigned long long>(v);
    return fromDigits(v < 0, std::to_string(mag));
}

void roundTo(Decimal& d, int places)
{
    const int keep = d.point + places;
    if (d.isZero() || keep >= int(d.digits.size()))
        return;
    if (keep < 0) {
        d.digits.clear();
        d.point = 0;
        return;
    }
    const bool up = d.digits[size_t(keep)] >= '5'; // half away from zero
    d.digits.resize(size_t(keep));
    if (up) {
        int i = keep - 1;
        while (i >= 0 && d.digits[size_t(i)] == '9') {
            d.digits[size_t(i)] = '0';
            --i;
        }
        if (i >= 0) {
            ++d.digits[size_t(i)];
        } else {
            d.digits.insert(d.digits.begin(), '1');
            ++d.point;
        }
    }
    stripTrailingZeros(d);
}

void roundSignificant(Decimal& d, int significant)
{
    if (!d.isZero())
        roundTo(d, significant - d.point);
}

QString generalNumber(const Decimal& d)
{
    if (d.isZero())
        return QStringLiteral("0");
    QString out;
    if (d.negative)
        out += QLatin1Char('-');
    const int size = int(d.digits.size());
    const int exp = d.point - 1;
    // Doubles of 1E+15 and more or below 0.0001 switch to E notation; 64-bit integers stay
    // in full.
    if (exp < -4 || (exp >= 15 && !d.exactInteger)) {
        out += QLatin1Char(d.digits[0]);
        if (size > 1) {
            out += QLatin1Char('.');
            out += QString::fromLatin1(d.digits.data() + 1, size - 1);
        }
        out += exp < 0 ? QLatin1String("E-") : QLatin1String("E+");
        out += QStringLiteral("%1").arg(std::abs(exp), 2, 10, QLatin1Char('0'));
        return out;
    }
    if (d.point <= 0) {
        out += QLatin1String("0.");
        out += QString(-d.point, QLatin1Char('0'));
        out += QString::fromLatin1(d.digits.data(), size);
    } else if (d.point >= size) {
        out += QString::fromLatin1(d.digits.data(), size);
        out += QString(d.point - size, QLatin1Char('0'));
    } else {
        out += QString::fromLatin1(d.digits.data(), d.point);
        out += QLatin1Char('.');
        out += QString::fromLatin1(d.digits.data() + d.point, size - d.point);
    }
    return out;
}

namespace {

struct Item {
    enum Type { Lit, Int, Point, Frac, ExpMark, ExpDigit, Comma } type;
    QChar ch;
    bool plus = false; // ExpMark: E+ shows "+" for positive exponents
};

struct Parsed {
    std::vector<Item> items;
    int intCount = 0, fracCount = 0, expZeros = 0, expCount = 0;
    int percent = 0, scale = 0;
    bool grouping = false, hasExp = false, hasPoint = false;
    int firstIntZero = -1; // index among Int placeholders of the first '0'
};

Parsed parse(const std::vector<FmtChar>& toks)
{
    Parsed p;
    bool inExp = false;
    for (size_t i = 0; i < toks.size(); ++i) {
        const FmtChar& t = toks[i];
        if (t.literal) {
            p.items.push_back({Item::Lit, t.ch});
            continue;
        }
        const char c = t.ch.toLatin1();
        if (c == '0' || c == '#') {
            if (inExp) {
                p.items.push_back({Item::ExpDigit, t.ch});
                ++p.expCount;
                if (c == '0')
                    ++p.expZeros;
            } else if (p.hasPoint) {
                p.items.push_back({Item::Frac, t.ch});
                ++p.fracCount;
            } else {
                if (c == '0' && p.firstIntZero < 0)
                    p.firstIntZero = p.intCount;
                p.items.push_back({Item::Int, t.ch});
                ++p.intCount;
            }
        } else if (c == '.' && !p.hasPoint && !inExp) {
            p.items.push_back({Item::Point, t.ch});
            p.hasPoint = true;
        } else if (c == ',') {
            if (!p.hasPoint && !inExp)
                p.items.push_back({Item::Comma, t.ch});
        } else if (c == '%') {
            ++p.percent;
            p.items.push_back({Item::Lit, t.ch});
        } else if ((c == 'E' || c == 'e') && !inExp && i + 1 < toks.size() && !toks[i + 1].literal
                   && (toks[i + 1].ch == QLatin1Char('+') || toks[i + 1].ch == QLatin1Char('-'))) {
            Item m{Item::ExpMark, t.ch};
            m.plus = toks[i + 1].ch == QLatin1Char('+');
            p.items.push_back(m);
            p.hasExp = inExp = true;
            ++i;
        } else {
            p.items.push_back({Item::Lit, t.ch});
        }
    }
    // A comma between digit placeholders asks for grouping; commas after the last integer
    // placeholder divide by a thousand each.
    int intsSeen = 0;
    std::vector<Item> kept;
    for (const Item& it : p.items) {
        if (it.type == Item::Int)
            ++intsSeen;
        if (it.type != Item::Comma) {
            kept.push_back(it);
            continue;
        }
        if (intsSeen == 0)
            continue;
        if (intsSeen < p.intCount)
            p.grouping = true;
        else
            ++p.scale;
    }
    p.items = std::move(kept);
    return p;
}

// Emits integer digits `s` into the integer placeholders: each placeholder takes one digit from
// the right, the leftmost takes whatever is left over.
class IntWriter {
public:
    IntWriter(const std::string& s, int placeholders, bool grouping)
        : m_s(s), m_count(placeholders), m_grouping(grouping) {}

    void placeholder(QString& out)
    {
        const int fromRight = m_count - 1 - m_seen;
        const int len = int(m_s.size());
        if (m_seen == 0) {
            for (int i = 0; i < len - fromRight; ++i)
                digit(out, i);
        } else if (len - 1 - fromRight >= 0) {
            digit(out, len - 1 - fromRight);
        }
        ++m_seen;
    }
    void all(QString& out)
    {
        for (int i = 0; i < int(m_s.size()); ++i)
            digit(out, i);
    }

private:
    void digit(QString& out, int i)
    {
        out += QLatin1Char(m_s[size_t(i)]);
        const int q = int(m_s.size()) - 1 - i;
        if (m_grouping && q > 0 && q % 3 == 0)
            out += QLatin1Char(',');
    }
    const std::string& m_s;
    int m_count;
    bool m_grouping;
    int m_seen = 0;
};

} // namespace

QString formatNumberSection(const std::vector<FmtChar>& toks, Decimal d, bool withSign)
{
    const Parsed p = parse(toks);
    if (p.intCount == 0 && p.fracCount == 0)
        return literalText(toks);

    if (!d.isZero())
        d.point += 2 * p.percent - 3 * p.scale;

    int exponent = 0;
    if (p.hasExp) {
        if (!d.isZero()) {
            exponent = d.point - p.intCount;
            d.point = p.intCount;
        }
        roundTo(d, p.fracCount);
        if (!d.isZero() && d.point > p.intCount) { // 9.995 -> 10.00: renormalise
            d.point = p.intCount;
            ++exponent;
        }
    } else {
        roundTo(d, p.fracCount);
    }

    std::string intDigits;
    for (int i = 0; i < d.point; ++i)
        intDigits += i < int(d.digits.size()) ? d.digits[size_t(i)] : '0';
    const int minInt = p.firstIntZero < 0 ? 0 : p.intCount - p.firstIntZero;
    if (int(intDigits.size()) < minInt)
        intDigits.insert(0, size_t(minInt) - intDigits.size(), '0');

    std::string frac;
    for (int j = 0; j < p.fracCount; ++j) {
        const int idx = d.point + j;
        frac += idx >= 0 && idx < int(d.digits.size()) ? d.digits[size_t(idx)] : '0';
    }
    // Trailing zeros under '#' placeholders are dropped.
    int fracShown = p.fracCount;
    {
        int j = p.fracCount;
        for (auto it = p.items.rbegin(); it != p.items.rend(); ++it) {
            if (it->type != Item::Frac)
                continue;
            --j;
            if (it->ch == QLatin1Char('#') && frac[size_t(j)] == '0' && j == fracShown - 1)
                fracShown = j;
            else
                break;
        }
    }

    QString out;
    if (withSign && d.negative)
        out += QLatin1Char('-');
    IntWriter ints(intDigits, p.intCount, p.grouping);
    int fracIndex = 0;
    bool expWritten = false;
    for (const Item& it : p.items) {
        switch (it.type) {
        case Item::Lit:
            out += it.ch;
            break;
        case Item::Int:
            ints.placeholder(out);
            break;
        case Item::Point:
            if (p.intCount == 0)
                ints.all(out);
            out += QLatin1Char('.');
            break;
        case Item::Frac:
            if (fracIndex < fracShown)
                out += QLatin1Char(frac[size_t(fracIndex)]);
            ++fracIndex;
            break;
        case Item::ExpMark:
            out += it.ch;
            if (exponent < 0)
                out += QLatin1Char('-');
            else if (it.plus)
                out += QLatin1Char('+');
            break;
        case Item::ExpDigit:
            if (!expWritten) {
                QString e = QString::number(std::abs(exponent));
                if (e.size() < p.expZeros)
                    e.prepend(QString(p.expZeros - e.size(), QLatin1Char('0')));
                else if (exponent == 0 && p.expZeros == 0)
                    e.clear();
                out += e;
                expWritten = true;
            }
            break;
        case Item::Comma:
            break;
        }
    }
    return out;
}

} // namespace fmt_detail
