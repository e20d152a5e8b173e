// Dates and times for Format: serial numbers (days since 30 Dec 1899, time of day as the
// fraction), the general date and the custom date/time sections, US English.
#include "render/Format.h"
#include "render/FormatInternal.h"

#include <QDate>
#include <cmath>

namespace fmt_detail {

namespace {

const QDate kEpoch(1899, 12, 30);
constexpr double kMinSerial = -657434.0;  // 1 Jan 100
constexpr double kMaxSerial = 2958466.0;  // just past 31 Dec 9999

const char* const kDayNames[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
const char* const kMonthNames[] = {"January", "February", "March", "April", "May", "June", "July",
                                   "August", "September", "October", "November", "December"};

struct Parts {
    QDate date;
    int hour = 0, minute = 0, second = 0;
    long long days = 0; // whole days from the epoch
    int seconds = 0;    // seconds into the day
    int weekday() const { return date.dayOfWeek() % 7 + 1; } // Sunday = 1
};

Parts split(double serial)
{
    if (!serialInRange(serial))
        throw FormatError{6, QStringLiteral("Overflow")};
    // Before the epoch the fraction still counts forward from midnight: -1.25 is 29 Dec 1899 6:00.
    long long days = static_cast<long long>(std::trunc(serial));
    long long secs = std::llround(std::fabs(serial - double(days)) * 86400.0);
    if (secs >= 86400) {
        secs -= 86400;
        days += serial < 0 ? -1 : 1;
    }
    Parts p;
    p.days = days;
    p.seconds = int(secs);
    p.date = kEpoch.addDays(days);
    p.hour = int(secs / 3600);
    p.minute = int(secs / 60 % 60);
    p.second = int(secs % 60);
    return p;
}

QString two(int n)
{
    return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0'));
}

QString shortDate(const Parts& p)
{
    return QStringLiteral("%1/%2/%3").arg(p.date.month()).arg(p.date.day()).arg(p.date.year());
}

QString longDate(const Parts& p)
{
    return QStringLiteral("%1, %2 %3, %4")
        .arg(QLatin1String(kDayNames[p.weekday() - 1]), QLatin1String(kMonthNames[p.date.month() - 1]),
             QString::number(p.date.day()))
        .arg(p.date.year());
}

int hour12(int h)
{
    return h % 12 == 0 ? 12 : h % 12;
}

QString longTime(const Parts& p)
{
    return QStringLiteral("%1:%2:%3 %4")
        .arg(hour12(p.hour))
        .arg(two(p.minute), two(p.second), p.hour < 12 ? QStringLiteral("AM") : QStringLiteral("PM"));
}

QString general(const Parts& p)
{
    if (p.days == 0)
        return longTime(p);
    if (p.seconds == 0)
        return shortDate(p);
    return shortDate(p) + QLatin1Char(' ') + longTime(p);
}

// Length of the AM/PM marker starting at i (5 "AM/PM", 4 "AMPM", 3 "A/P"), or 0.
int ampmAt(const std::vector<FmtChar>& t, size_t i)
{
    auto is = [&](size_t k, char c) {
        return k < t.size() && !t[k].literal && t[k].ch.toLower() == QLatin1Char(c);
    };
    if (!is(i, 'a'))
        return 0;
    if (is(i + 1, 'm') && is(i + 2, '/') && is(i + 3, 'p') && is(i + 4, 'm'))
        return 5;
    if (is(i + 1, 'm') && is(i + 2, 'p') && is(i + 3, 'm'))
        return 4;
    if (is(i + 1, '/') && is(i + 2, 'p'))
        return 3;
    return 0;
}

} // namespace

bool serialInRange(double serial)
{
    return std::isfinite(serial) && serial >= kMinSerial && serial < kMaxSerial;
}

double serialFromParts(int year, int month, int day, int hour, int minute, int second)
{
    const double days = double(kEpoch.daysTo(QDate(year, month, day)));
    const double frac = (hour * 3600 + minute * 60 + second) / 86400.0;
    return days < 0 ? days - frac : days + frac;
}

QString generalDate(double serial)
{
    return general(split(serial));
}

QString formatDateSection(const std::vector<FmtChar>& t, double serial)
{
    const Parts p = split(serial);
    bool twelveHour = false;
    for (size_t i = 0; i < t.size(); ++i)
        if (ampmAt(t, i))
            twelveHour = true;
    const int shownHour = twelveHour ? hour12(p.hour) : p.hour;

    QString out;
    bool afterHour = false; // m/mm right after h/hh means minutes
    size_t i = 0;
    while (i < t.size()) {
        const FmtChar& c = t[i];
        if (c.literal) {
            out += c.ch;
            ++i;
            continue;
        }
        if (const int n = ampmAt(t, i)) {
            const bool am = p.hour < 12;
            if (n == 4)
                out += am ? QStringLiteral("AM") : QStringLiteral("PM");
            else if (n == 5)
                out += am ? QString(t[i].ch) + t[i + 1].ch : QString(t[i + 3].ch) + t[i + 4].ch;
            else
                out += am ? t[i].ch : t[i + 2].ch;
            i += size_t(n);
            afterHour = false;
            continue;
        }
        const QChar lower = c.ch.toLower();
        size_t run = 1;
        while (i + run < t.size() && !t[i + run].literal && t[i + run].ch.toLower() == lower)
            ++run;
        size_t used = 1;
        bool isHour = false;
        switch (lower.toLatin1()) {
        case 'c':
            out += general(p);
            break;
        case 'd':
            used = std::min<size_t>(run, 6);
            switch (used) {
            case 1: out += QString::number(p.date.day()); break;
            case 2: out += two(p.date.day()); break;
            case 3: out += QLatin1String(kDayNames[p.weekday() - 1], 3); break;
            case 4: out += QLatin1String(kDayNames[p.weekday() - 1]); break;
            case 5: out += shortDate(p); break;
            default: out += longDate(p); break;
            }
            break;
        case 'w':
            used = std::min<size_t>(run, 2);
            if (used == 1) {
                out += QString::number(p.weekday());
            } else {
                // Weeks start on Sunday; week 1 holds 1 January.
                const QDate jan1(p.date.year(), 1, 1);
                const int offset = jan1.dayOfWeek() % 7;
                out += QString::number((p.date.dayOfYear() - 1 + offset) / 7 + 1);
            }
            break;
        case 'm':
            used = std::min<size_t>(run, 4);
            if (used <= 2 && afterHour)
                out += used == 1 ? QString::number(p.minute) : two(p.minute);
            else if (used == 1)
                out += QString::number(p.date.month());
            else if (used == 2)
                out += two(p.date.month());
            else if (used == 3)
                out += QLatin1String(kMonthNames[p.date.month() - 1], 3);
            else
                out += QLatin1String(kMonthNames[p.date.month() - 1]);
            break;
        case 'n':
            used = std::min<size_t>(run, 2);
            out += used == 1 ? QString::number(p.minute) : two(p.minute);
            break;
        case 's':
            used = std::min<size_t>(run, 2);
            out += used == 1 ? QString::number(p.second) : two(p.second);
            break;
        case 'h':
            used = std::min<size_t>(run, 2);
            out += used == 1 ? QString::number(shownHour) : two(shownHour);
            isHour = true;
            break;
        case 'q':
            out += QString::number((p.date.month() - 1) / 3 + 1);
            break;
        case 'y':
            if (run >= 4) {
                used = 4;
                out += QString::number(p.date.year());
            } else if (run >= 2) {
                used = 2;
                out += two(p.date.year() % 100);
            } else {
                out += QString::number(p.date.dayOfYear());
            }
            break;
        case 't':
            if (run >= 5) {
                used = 5;
                out += longTime(p);
            } else {
                out += c.ch;
                i += 1;
                continue; // a lone 't' is text and does not end an hour
            }
            break;
        default:
            out += c.ch; // separators and any other character print as they are
            ++i;
            continue;
        }
        afterHour = isHour;
        i += used;
    }
    return out;
}

} // namespace fmt_detail
