// Run-time helpers of the Jet dialect, installed on each SQLite connection.
#include "host/JetSql.h"
#include "entry/HostError.h"

#include <sqlite3.h>

#include <QList>
#include <cmath>
#include <limits>

namespace JetSql {
namespace {

struct PatternItem {
    enum Kind { Literal, AnyOne, AnyRun, Digit, Class } kind = Literal;
    QChar ch;                          // Literal
    QList<QPair<QChar, QChar>> ranges; // Class
    bool negated = false;              // Class
};

QList<PatternItem> compilePattern(const QString& pattern)
{
    QList<PatternItem> items;
    const int n = int(pattern.size());
    for (int i = 0; i < n; ++i) {
        const QChar c = pattern[i];
        PatternItem it;
        if (c == QLatin1Char('%') || c == QLatin1Char('*')) {
            it.kind = PatternItem::AnyRun;
        } else if (c == QLatin1Char('_') || c == QLatin1Char('?')) {
            it.kind = PatternItem::AnyOne;
        } else if (c == QLatin1Char('#')) {
            it.kind = PatternItem::Digit;
        } else if (c == QLatin1Char('[')) {
            int j = i + 1;
            it.kind = PatternItem::Class;
            if (j < n && pattern[j] == QLatin1Char('!')) { it.negated = true; ++j; }
            // A "-" first or last in a class stands for itself.
            while (j < n && pattern[j] != QLatin1Char(']')) {
                const QChar lo = pattern[j];
                if (j + 2 < n && pattern[j + 1] == QLatin1Char('-') && pattern[j + 2] != QLatin1Char(']')) {
                    it.ranges.append({lo, pattern[j + 2]});
                    j += 3;
                } else {
                    it.ranges.append({lo, lo});
                    ++j;
                }
            }
            if (j >= n)
                throw HostError(HostErr::SqlSyntax, QStringLiteral("Invalid pattern string: unclosed \"[\" in '%1'.").arg(pattern));
            i = j;
        } else {
            it.ch = c;
        }
        items.append(it);
    }
    return items;
}

bool classHas(const PatternItem& it, QChar c)
{
    const QChar variants[] = {c, c.toLower(), c.toUpper()};
    bool in = false;
    for (const auto& r : it.ranges)
        for (const QChar v : variants)
            if (v >= r.first && v <= r.second)
                in = true;
    return in != it.negated;
}

bool itemMatches(const PatternItem& it, QChar c)
{
    switch (it.kind) {
    case PatternItem::Literal: return c.toCaseFolded() == it.ch.toCaseFolded();
    case PatternItem::AnyOne: return true;
    case PatternItem::Digit: return c.isDigit();
    case PatternItem::Class: return classHas(it, c);
    case PatternItem::AnyRun: break;
    }
    return false;
}

QVariant toVariant(sqlite3_value* v)
{
    switch (sqlite3_value_type(v)) {
    case SQLITE_INTEGER: return QVariant(qlonglong(sqlite3_value_int64(v)));
    case SQLITE_FLOAT: return QVariant(sqlite3_value_double(v));
    case SQLITE_NULL: return QVariant();
    default:
        return QVariant(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_value_text(v)), sqlite3_value_bytes(v)));
    }
}

QString textOf(sqlite3_value* v)
{
    return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_value_text(v)), sqlite3_value_bytes(v));
}

void resultText(sqlite3_context* ctx, const QString& s)
{
    const QByteArray b = s.toUtf8();
    sqlite3_result_text(ctx, b.constData(), int(b.size()), SQLITE_TRANSIENT);
}

void resultError(sqlite3_context* ctx, const HostError& e)
{
    const QByteArray b = e.Description().toUtf8();
    sqlite3_result_error(ctx, b.constData(), int(b.size()));
}

bool isNumber(sqlite3_value* v)
{
    const int t = sqlite3_value_type(v);
    return t == SQLITE_INTEGER || t == SQLITE_FLOAT;
}

// Jet turns numbers into text without a trailing ".0".
QString numberText(sqlite3_value* v)
{
    if (sqlite3_value_type(v) == SQLITE_FLOAT) {
        const double d = sqlite3_value_double(v);
        return QString::number(d, 'g', 15);
    }
    return textOf(v);
}

void fnLike(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL)
        return sqlite3_result_null(ctx);
    try {
        sqlite3_result_int(ctx, LikeMatch(numberText(argv[0]), textOf(argv[1])) ? 1 : 0);
    } catch (const HostError& e) {
        resultError(ctx, e);
    }
}

void fnCLng(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL)
        return sqlite3_result_null(ctx);
    try {
        sqlite3_result_int64(ctx, CLng(toVariant(argv[0])));
    } catch (const HostError& e) {
        resultError(ctx, e);
    }
}

void fnCDbl(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL)
        return sqlite3_result_null(ctx);
    bool ok = isNumber(argv[0]);
    const double d = ok ? sqlite3_value_double(argv[0]) : textOf(argv[0]).trimmed().toDouble(&ok);
    if (!ok)
        return sqlite3_result_error(ctx, "Data type mismatch in criteria expression.", -1);
    sqlite3_result_double(ctx, d);
}

void fnCStr(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL)
        return sqlite3_result_null(ctx);
    resultText(ctx, numberText(argv[0]));
}

// "+": numbers add; text joins text; Null wins.
void fnPlus(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    sqlite3_value* a = argv[0];
    sqlite3_value* b = argv[1];
    if (sqlite3_value_type(a) == SQLITE_NULL || sqlite3_value_type(b) == SQLITE_NULL)
        return sqlite3_result_null(ctx);
    double da = 0, db = 0;
    bool numeric = false;
    if (isNumber(a) && isNumber(b)) {
        if (sqlite3_value_type(a) == SQLITE_INTEGER && sqlite3_value_type(b) == SQLITE_INTEGER) {
            sqlite3_int64 r;
            if (!__builtin_add_overflow(sqlite3_value_int64(a), sqlite3_value_int64(b), &r))
                return sqlite3_result_int64(ctx, r);
        }
        da = sqlite3_value_double(a);
        db = sqlite3_value_double(b);
        numeric = true;
    } else if (isNumber(a) != isNumber(b)) {
        // A number and a text: Jet adds when the text reads as a number.
        bool ok = false;
        const double t = textOf(isNumber(a) ? b : a).trimmed().toDouble(&ok);
        if (ok) {
            da = isNumber(a) ? sqlite3_value_double(a) : t;
            db = isNumber(b) ? sqlite3_value_double(b) : t;
            numeric = true;
        }
    }
    if (numeric)
        return sqlite3_result_double(ctx, da + db);
    resultText(ctx, numberText(a) + numberText(b));
}

// "&": always text; a Null side counts as "", two Nulls give Null.
void fnAmp(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    const bool na = sqlite3_value_type(argv[0]) == SQLITE_NULL;
    const bool nb = sqlite3_value_type(argv[1]) == SQLITE_NULL;
    if (na && nb)
        return sqlite3_result_null(ctx);
    resultText(ctx, (na ? QString() : numberText(argv[0])) + (nb ? QString() : numberText(argv[1])));
}

void fnPow(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL)
        return sqlite3_result_null(ctx);
    sqlite3_result_double(ctx, std::pow(sqlite3_value_double(argv[0]), sqlite3_value_double(argv[1])));
}

void fnRight(sqlite3_context* ctx, int, sqlite3_value** argv)
{
    if (sqlite3_value_type(argv[0]) == SQLITE_NULL)
        return sqlite3_result_null(ctx);
    const QString s = numberText(argv[0]);
    const int n = sqlite3_value_int(argv[1]);
    resultText(ctx, n <= 0 ? QString() : s.right(n));
}

} // namespace

bool LikeMatch(const QString& value, const QString& pattern)
{
    const QList<PatternItem> items = compilePattern(pattern);
    // Greedy match with one backtrack point per run, as glob matchers do.
    int v = 0, pi = 0;
    int starItem = -1, starValue = 0;
    const int nv = int(value.size());
    const int np = int(items.size());
    while (v < nv) {
        if (pi < np && items[pi].kind == PatternItem::AnyRun) {
            starItem = pi++;
            starValue = v;
        } else if (pi < np && itemMatches(items[pi], value[v])) {
            ++pi;
            ++v;
        } else if (starItem >= 0) {
            pi = starItem + 1;
            v = ++starValue;
        } else {
            return false;
        }
    }
    while (pi < np && items[pi].kind == PatternItem::AnyRun)
        ++pi;
    return pi == np;
}

qint32 CLng(const QVariant& value)
{
    double d = 0;
    if (value.typeId() == QMetaType::LongLong || value.typeId() == QMetaType::Int) {
        const qlonglong n = value.toLongLong();
        if (n < std::numeric_limits<qint32>::min() || n > std::numeric_limits<qint32>::max())
            throw HostError(HostErr::SqlExecute, QStringLiteral("Overflow converting %1 to a long integer.").arg(n));
        return qint32(n);
    }
    if (value.typeId() == QMetaType::Double) {
        d = value.toDouble();
    } else {
        bool ok = false;
        d = value.toString().trimmed().toDouble(&ok);
        if (!ok)
            throw HostError(HostErr::SqlExecute, QStringLiteral("Data type mismatch in criteria expression: '%1' is not a number.").arg(value.toString()));
    }
    const double r = std::nearbyint(d); // the default rounding mode rounds half to even, like Jet
    if (!(r >= std::numeric_limits<qint32>::min() && r <= std::numeric_limits<qint32>::max()))
        throw HostError(HostErr::SqlExecute, QStringLiteral("Overflow converting %1 to a long integer.").arg(d));
    return qint32(r);
}

void RegisterJetFunctions(sqlite3* db)
{
    struct Fn { const char* name; int args; void (*fn)(sqlite3_context*, int, sqlite3_value**); };
    static const Fn fns[] = {
        {"jet_like", 2, fnLike}, {"jet_clng", 1, fnCLng}, {"jet_cdbl", 1, fnCDbl}, {"jet_cstr", 1, fnCStr},
        {"jet_plus", 2, fnPlus}, {"jet_amp", 2, fnAmp},   {"jet_pow", 2, fnPow},   {"jet_right", 2, fnRight},
    };
    for (const Fn& f : fns)
        sqlite3_create_function_v2(db, f.name, f.args, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, f.fn, nullptr, nullptr, nullptr);
}

} // namespace JetSql
