// Values for Format: what a QVariant is (Null, number, date, boolean or plain text), reading
// numbers and dates out of database text the way the classic conversions do (US English).
#include "render/Format.h"
#include "render/FormatInternal.h"

#include <QDate>
#include <QDateTime>
#include <QRegularExpression>
#include <QTime>
#include <charconv>
#include <cmath>

namespace fmt_detail {

namespace {

bool isSpace(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QChar(0xA0);
}

int monthFromName(const QString& word)
{
    static const char* const names[] = {"january", "february", "march", "april", "may", "june", "july",
                                        "august", "september", "october", "november", "december"};
    const QString w = word.toLower();
    if (w.size() < 3)
        return 0;
    for (int m = 0; m < 12; ++m) {
        const QLatin1String full(names[m]);
        if (w == full || w == full.left(3) || (m == 8 && w == QLatin1String("sept")))
            return m + 1;
    }
    return 0;
}

bool isDayName(const QString& word)
{
    static const char* const names[] = {"sunday", "monday", "tuesday", "wednesday", "thursday", "friday", "saturday"};
    const QString w = word.toLower();
    for (const char* n : names) {
        const QLatin1String full(n);
        if (w == full || w == full.left(3))
            return true;
    }
    return false;
}

int expandYear(const QString& y)
{
    const int v = y.toInt();
    if (y.size() > 2)
        return v;
    return v < 30 ? 2000 + v : 1900 + v; // the classic two-digit year window
}

// "14:05", "14:05:09", "2:05 PM", "7 AM", "7a"; a bare number is not a time.
bool parseTime(const QString& s, int& h, int& n, int& sec)
{
    static const QRegularExpression re(
        QStringLiteral("^(\\d{1,2})(?::(\\d{1,2})(?::(\\d{1,2})(?:\\.\\d+)?)?)?\\s*([AaPp][Mm]?)?$"));
    const auto m = re.match(s);
    if (!m.hasMatch() || (m.captured(2).isEmpty() && m.captured(4).isEmpty()))
        return false;
    h = m.captured(1).toInt();
    n = m.captured(2).isEmpty() ? 0 : m.captured(2).toInt();
    sec = m.captured(3).isEmpty() ? 0 : m.captured(3).toInt();
    if (n > 59 || sec > 59)
        return false;
    if (!m.captured(4).isEmpty()) {
        if (h > 12)
            return false;
        const bool pm = m.captured(4).at(0).toLower() == QLatin1Char('p');
        h = h % 12 + (pm ? 12 : 0);
    }
    return h <= 23;
}

bool finish(int y, int mo, int d, const QString& timeText, double& serial)
{
    if (y < 100 || y > 9999 || !QDate::isValid(y, mo, d))
        return false;
    int h = 0, n = 0, s = 0;
    if (!timeText.isEmpty() && !parseTime(timeText.trimmed(), h, n, s))
        return false;
    serial = serialFromParts(y, mo, d, h, n, s);
    return true;
}

} // namespace

bool parseNumberText(const QString& input, double& out)
{
    qsizetype i = 0, end = input.size();
    while (i < end && isSpace(input[i]))
        ++i;
    while (end > i && isSpace(input[end - 1]))
        --end;
    if (i == end)
        return false;
    bool negative = false, signSeen = false, parens = false;
    if (input[i] == QLatin1Char('(') && input[end - 1] == QLatin1Char(')')) {
        parens = negative = true;
        ++i;
        --end;
    }
    auto takeSign = [&](qsizetype pos) {
        if (pos < end && !signSeen && (input[pos] == QLatin1Char('-') || input[pos] == QLatin1Char('+'))) {
            negative = negative != (input[pos] == QLatin1Char('-'));
            signSeen = true;
            return true;
        }
        return false;
    };
    if (takeSign(i))
        ++i;
    if (i < end && input[i] == QLatin1Char('$')) {
        ++i;
        if (takeSign(i))
            ++i;
    }
    if (end > i && !signSeen && !parens
        && (input[end - 1] == QLatin1Char('-') || input[end - 1] == QLatin1Char('+'))) {
        takeSign(end - 1);
        --end;
    }
    std::string clean;
    bool digits = false, point = false;
    for (; i < end; ++i) {
        const QChar c = input[i];
        if (c.isDigit() && c.unicode() < 128) {
            clean += char(c.unicode());
            digits = true;
        } else if (c == QLatin1Char(',') && !point && digits) {
            continue; // thousands separators are ignored wherever they stand in the integer part
        } else if (c == QLatin1Char('.') && !point) {
            clean += '.';
            point = true;
        } else {
            break;
        }
    }
    if (!digits)
        return false;
    if (i < end && (input[i] == QLatin1Char('e') || input[i] == QLatin1Char('E') || input[i] == QLatin1Char('d')
                    || input[i] == QLatin1Char('D'))) {
        clean += 'e';
        ++i;
        if (i < end && (input[i] == QLatin1Char('+') || input[i] == QLatin1Char('-')))
            clean += char(input[i++].unicode());
        bool expDigits = false;
        while (i < end && input[i].isDigit() && input[i].unicode() < 128) {
            clean += char(input[i++].unicode());
            expDigits = true;
        }
        if (!expDigits)
            return false;
    }
    if (i != end)
        return false;
    double v = 0;
    const auto res = std::from_chars(clean.data(), clean.data() + clean.size(), v);
    if (res.ec != std::errc() || res.ptr != clean.data() + clean.size() || !std::isfinite(v))
        return false;
    out = negative ? -v : v;
    return true;
}

bool parseDateText(const QString& input, double& serial)
{
    QString s = input.trimmed();
    if (s.isEmpty() || s.size() > 64)
        return false;
    int h = 0, n = 0, sec = 0;
    if (parseTime(s, h, n, sec)) {
        serial = (h * 3600 + n * 60 + sec) / 86400.0;
        return true;
    }
    // A leading day name ("Friday, March 01, 2024") adds nothing.
    static const QRegularExpression dayName(QStringLiteral("^([A-Za-z]+),?\\s+"));
    const auto dm = dayName.match(s);
    if (dm.hasMatch() && isDayName(dm.captured(1)))
        s = s.mid(dm.capturedLength());

    static const QRegularExpression iso(
        QStringLiteral("^(\\d{4})([-/])(\\d{1,2})\\2(\\d{1,2})(?:(?:T|\\s+)(.+?))?Z?$"));
    static const QRegularExpression us(QStringLiteral("^(\\d{1,2})([-/.])(\\d{1,2})\\2(\\d{4}|\\d{2})(?:\\s+(.+))?$"));
    static const QRegularExpression monthFirst(
        QStringLiteral("^([A-Za-z]{3,9})\\.?[\\s-]+(\\d{1,2}),?[\\s-]+(\\d{4}|\\d{2})(?:\\s+(.+))?$"));
    static const QRegularExpression dayFirst(
        QStringLiteral("^(\\d{1,2})[\\s-]+([A-Za-z]{3,9})\\.?,?[\\s-]+(\\d{4}|\\d{2})(?:\\s+(.+))?$"));

    if (auto m = iso.match(s); m.hasMatch())
        return finish(m.captured(1).toInt(), m.captured(3).toInt(), m.captured(4).toInt(), m.captured(5), serial);
    if (auto m = us.match(s); m.hasMatch()) {
        int mo = m.captured(1).toInt(), d = m.captured(3).toInt();
        if (mo > 12 && d <= 12)
            std::swap(mo, d); // "13/1/2024" can only be day first
        return finish(expandYear(m.captured(4)), mo, d, m.captured(5), serial);
    }
    if (auto m = monthFirst.match(s); m.hasMatch()) {
        const int mo = monthFromName(m.captured(1));
        return mo && finish(expandYear(m.captured(3)), mo, m.captured(2).toInt(), m.captured(4), serial);
    }
    if (auto m = dayFirst.match(s); m.hasMatch()) {
        const int mo = monthFromName(m.captured(2));
        return mo && finish(expandYear(m.captured(3)), mo, m.captured(1).toInt(), m.captured(4), serial);
    }
    return false;
}

namespace {

Value fromText(const QString& s)
{
    Value v;
    v.text = s;
    v.kind = Value::Text;
    if (s.isEmpty())
        return v;
    double d = 0;
    if (parseNumberText(s, d)) {
        v.kind = Value::Number;
        v.fromText = true;
        v.serial = d;
        v.dec = decimalFromDouble(d);
        return v;
    }
    const QString t = s.trimmed();
    if (t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0
        || t.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0) {
        const bool b = t.size() == 4;
        v.kind = Value::Bool;
        v.fromText = true;
        v.serial = b ? -1 : 0;
        v.dec = decimalFromInteger(b ? -1 : 0);
        return v;
    }
    if (parseDateText(s, d)) {
        v.kind = Value::Date;
        v.fromText = true;
        v.serial = d;
        v.dec = decimalFromDouble(d);
    }
    return v;
}

Value number(double d, Decimal dec)
{
    Value v;
    v.kind = Value::Number;
    v.serial = d;
    v.dec = std::move(dec);
    return v;
}

Value date(double serial)
{
    Value v;
    v.kind = Value::Date;
    v.serial = serial;
    v.dec = decimalFromDouble(serial);
    return v;
}

} // namespace

Value coerce(const QVariant& var)
{
    if (!var.isValid())
        return {};
    const int type = var.typeId();
    if (type == QMetaType::QString)
        return fromText(var.toString());
    if (var.isNull() || type == QMetaType::Nullptr)
        return {};
    switch (type) {
    case QMetaType::Bool: {
        const bool b = var.toBool();
        Value v = number(b ? -1 : 0, decimalFromInteger(b ? -1 : 0));
        v.kind = Value::Bool;
        return v;
    }
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::Short:
    case QMetaType::SChar:
    case QMetaType::Char:
    case QMetaType::LongLong: {
        const long long i = var.toLongLong();
        return number(double(i), decimalFromInteger(i));
    }
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::UShort:
    case QMetaType::UChar:
    case QMetaType::ULongLong: {
        const unsigned long long u = var.toULongLong();
        return number(double(u), decimalFromUnsigned(u));
    }
    case QMetaType::Double:
    case QMetaType::Float: {
        const double d = var.toDouble();
        if (!std::isfinite(d))
            throw FormatError{6, QStringLiteral("Overflow")};
        Decimal dec = decimalFromDouble(d);
        if (type != QMetaType::Double)
            roundSignificant(dec, 7); // a single keeps 7 digits
        return number(d, dec);
    }
    case QMetaType::QChar:
        return fromText(QString(var.toChar()));
    case QMetaType::QByteArray:
        return fromText(QString::fromLatin1(var.toByteArray()));
    case QMetaType::QDate: {
        const QDate d = var.toDate();
        return d.isValid() ? date(serialFromParts(d.year(), d.month(), d.day(), 0, 0, 0)) : Value{};
    }
    case QMetaType::QTime: {
        const QTime t = var.toTime();
        return t.isValid() ? date((t.hour() * 3600 + t.minute() * 60 + t.second()) / 86400.0) : Value{};
    }
    case QMetaType::QDateTime: {
        const QDateTime dt = var.toDateTime();
        if (!dt.isValid())
            return {};
        const QDate d = dt.date();
        const QTime t = dt.time();
        return date(serialFromParts(d.year(), d.month(), d.day(), t.hour(), t.minute(), t.second()));
    }
    default:
        throw FormatError{13, QStringLiteral("Type mismatch")};
    }
}

} // namespace fmt_detail
