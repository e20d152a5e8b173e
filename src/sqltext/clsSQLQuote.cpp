#include "sqltext/clsSQLQuote.h"

QString clsSQLQuote::QuoteText(const QString& text) const
{
    QString s = text;
    return s.replace(QLatin1Char('\''), QLatin1String("''"));
}

QString clsSQLQuote::QuoteLike(const QString& text) const
{
    QString out;
    out.reserve(text.size() * 2);
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '\'':
            out += QLatin1String("''");
            break;
        case '_': case '%': case '*': case '?': case '[': case '#':
            out += QLatin1Char('[') + c + QLatin1Char(']');
            break;
        case '-':
            if (ModernJet)
                out += c;
            else
                out += QLatin1String("[-]");
            break;
        default:
            out += c;
        }
    }
    return out;
}

QString clsAllowedStatuses::SQLAllowedStatuses(const QString& excludedStatuses)
{
    static const char* const codes[] = {"2001", "2002", "2003", "2004", "2005", "2006", "2007"};
    QString result;
    for (const char* code : codes)
        if (!excludedStatuses.contains(QLatin1String(code), Qt::CaseSensitive))
            result += QLatin1Char('\'') + QLatin1String(code) + QLatin1String("',");
    if (result.isEmpty())
        return QStringLiteral("'0000'");
    result.chop(1);
    return result;
}
