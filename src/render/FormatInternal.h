#pragma once
// Pieces shared by the Format implementation files; not for callers outside render/.
#include <QString>
#include <QVariant>
#include <string>
#include <vector>

namespace fmt_detail {

// A decimal number as digits: value = 0.d1d2...dn x 10^point. Format rounds and places digits
// on this representation (half away from zero), never on binary doubles.
struct Decimal {
    bool negative = false;
    std::string digits; // significant digits, no leading or trailing zeros; empty means zero
    int point = 0;
    bool exactInteger = false; // from a 64-bit integer: shown in full, never in E notation
    bool isZero() const { return digits.empty(); }
};

// Doubles carry 15 significant digits, as the classic runtime shows them.
Decimal decimalFromDouble(double v);
Decimal decimalFromInteger(long long v);
Decimal decimalFromUnsigned(unsigned long long v);
// Rounds to `places` digits after the point (negative places round to tens, hundreds...).
void roundTo(Decimal& d, int places);
// Rounds to `significant` digits in total.
void roundSignificant(Decimal& d, int significant);
// The plain general form: "5459.4", "0.5", "-3", "1E+15", "1.5E-07".
QString generalNumber(const Decimal& d);

// The value to format, after coercion.
struct Value {
    enum Kind { Null, Text, Number, Date, Bool };
    Kind kind = Null;
    QString text;          // the original text when the value came as a string
    bool fromText = false; // a string that read as a number, date or boolean
    Decimal dec;           // numeric value (a date's serial number for dates)
    double serial = 0;     // date serial (days since 30 Dec 1899, time as fraction)
};

// Throws FormatError 13 for values no format can take (lists, maps, ...).
Value coerce(const QVariant& v);
// Text parsing used by coerce; exposed for tests of hostile input.
bool parseNumberText(const QString& s, double& out);
bool parseDateText(const QString& s, double& serial);

// One character of a format section: `literal` when it was quoted or escaped.
struct FmtChar {
    QChar ch;
    bool literal;
};
std::vector<FmtChar> lexSection(const QString& section);
// Splits on ';' outside quotes and escapes.
QStringList splitSections(const QString& format);

enum class SectionKind { Number, Date, String, Literal };
SectionKind classify(const std::vector<FmtChar>& toks);

// Renders a number with one custom number section; `withSign` puts "-" before negatives.
QString formatNumberSection(const std::vector<FmtChar>& toks, Decimal d, bool withSign);
// Renders a date serial with one custom date/time section. Throws FormatError 6 out of range.
QString formatDateSection(const std::vector<FmtChar>& toks, double serial);
QString generalDate(double serial);
// Renders text with one string section (@ & < > !).
QString formatStringSection(const std::vector<FmtChar>& toks, const QString& text);
// Only the literal characters of a section (used for the Null section).
QString literalText(const std::vector<FmtChar>& toks);

// Date serial <-> civil date; false when the serial is outside 1 Jan 100 .. 31 Dec 9999.
bool serialInRange(double serial);
double serialFromParts(int year, int month, int day, int hour, int minute, int second);

} // namespace fmt_detail
