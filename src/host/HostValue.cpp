#include "host/HostValue.h"

#include <QDateTime>
#include <QRegularExpression>

namespace HostValue {

ColumnType TypeOfDeclared(const QString& declaredType)
{
    QString t = declaredType.trimmed().toUpper();
    if (const qsizetype paren = t.indexOf(QLatin1Char('(')); paren >= 0)
        t.truncate(paren);
    t = t.trimmed();
    if (t.startsWith(QLatin1String("DATE")) || t.startsWith(QLatin1String("TIME")) || t == QLatin1String("SMALLDATETIME"))
        return ColumnType::DateTime;
    if (t.startsWith(QLatin1String("BOOL")) || t == QLatin1String("BIT") || t == QLatin1String("YESNO")
        || t == QLatin1String("LOGICAL"))
        return ColumnType::Boolean;
    return ColumnType::Other;
}

namespace {

QVariant dateTimeOf(const QString& text)
{
    static const QRegularExpression iso(QStringLiteral(
        R"(^\s*(\d{4})-(\d{1,2})-(\d{1,2})(?:[T ](\d{1,2}):(\d{2})(?::(\d{2})(?:\.\d+)?)?)?\s*(?:Z|[+-]\d{2}(?::?\d{2})?)?\s*$)"));
    static const QRegularExpression timeOnly(QStringLiteral(R"(^\s*(\d{1,2}):(\d{2})(?::(\d{2})(?:\.\d+)?)?\s*$)"));
    if (const auto m = iso.match(text); m.hasMatch()) {
        const QDate d(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
        if (!d.isValid())
            return text;
        if (m.captured(4).isEmpty())
            return d;
        const QTime t(m.captured(4).toInt(), m.captured(5).toInt(), m.captured(6).toInt());
        if (!t.isValid())
            return text;
        // UTC: a stored wall-clock time must never meet a daylight-saving gap.
        return QDateTime(d, t, Qt::UTC);
    }
    if (const auto m = timeOnly.match(text); m.hasMatch()) {
        const QTime t(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
        return t.isValid() ? QVariant(t) : QVariant(text);
    }
    return text;
}

QVariant booleanOf(const QVariant& raw)
{
    switch (raw.typeId()) {
    case QMetaType::Bool:
        return raw;
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        return raw.toLongLong() != 0;
    case QMetaType::Double:
        return raw.toDouble() != 0.0;
    case QMetaType::QString: {
        const QString s = raw.toString().trimmed();
        if (s.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0 || s.compare(QLatin1String("t"), Qt::CaseInsensitive) == 0)
            return true;
        if (s.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0 || s.compare(QLatin1String("f"), Qt::CaseInsensitive) == 0)
            return false;
        bool ok = false;
        const double d = s.toDouble(&ok);
        return ok ? QVariant(d != 0.0) : raw;
    }
    default:
        return raw;
    }
}

} // namespace

QVariant Typed(const QVariant& raw, ColumnType type)
{
    if (raw.isNull() || type == ColumnType::Other)
        return raw;
    if (type == ColumnType::Boolean)
        return booleanOf(raw);
    // Numbers in a date column are not guessed at: SQLite alone has three conventions for them.
    return raw.typeId() == QMetaType::QString ? dateTimeOf(raw.toString()) : raw;
}

} // namespace HostValue
