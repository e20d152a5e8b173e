// Text for Format: the string sections (@ & < > !) and the format lexer shared by all kinds.
#include "render/FormatInternal.h"

namespace fmt_detail {

std::vector<FmtChar> lexSection(const QString& section)
{
    std::vector<FmtChar> out;
    out.reserve(size_t(section.size()));
    for (qsizetype i = 0; i < section.size(); ++i) {
        const QChar c = section[i];
        if (c == QLatin1Char('"')) {
            // An unterminated quote runs to the end of the section.
            for (++i; i < section.size() && section[i] != QLatin1Char('"'); ++i)
                out.push_back({section[i], true});
        } else if (c == QLatin1Char('\\')) {
            if (++i < section.size())
                out.push_back({section[i], true});
        } else {
            out.push_back({c, false});
        }
    }
    return out;
}

QStringList splitSections(const QString& format)
{
    QStringList out;
    qsizetype start = 0;
    bool quoted = false;
    for (qsizetype i = 0; i < format.size(); ++i) {
        const QChar c = format[i];
        if (c == QLatin1Char('"'))
            quoted = !quoted;
        else if (c == QLatin1Char('\\') && !quoted)
            ++i;
        else if (c == QLatin1Char(';') && !quoted) {
            out << format.mid(start, i - start);
            start = i + 1;
        }
    }
    out << format.mid(start);
    return out;
}

QString literalText(const std::vector<FmtChar>& toks)
{
    QString out;
    out.reserve(qsizetype(toks.size()));
    for (const FmtChar& t : toks)
        out += t.ch;
    return out;
}

QString formatStringSection(const std::vector<FmtChar>& toks, const QString& value)
{
    bool leftToRight = false;
    int caseMode = 0; // -1 lower, 1 upper
    int placeholders = 0;
    for (const FmtChar& t : toks) {
        if (t.literal)
            continue;
        if (t.ch == QLatin1Char('!'))
            leftToRight = true;
        else if (t.ch == QLatin1Char('<') && caseMode == 0)
            caseMode = -1; // with both < and >, the first one wins
        else if (t.ch == QLatin1Char('>') && caseMode == 0)
            caseMode = 1;
        else if (t.ch == QLatin1Char('@') || t.ch == QLatin1Char('&'))
            ++placeholders;
    }
    const QString text = caseMode < 0 ? value.toLower() : caseMode > 0 ? value.toUpper() : value;
    auto isControl = [](const FmtChar& t) {
        return !t.literal && (t.ch == QLatin1Char('!') || t.ch == QLatin1Char('<') || t.ch == QLatin1Char('>'));
    };
    auto isPlaceholder = [](const FmtChar& t) {
        return !t.literal && (t.ch == QLatin1Char('@') || t.ch == QLatin1Char('&'));
    };

    if (placeholders == 0) {
        QString out = text;
        for (const FmtChar& t : toks)
            if (!isControl(t))
                out += t.ch;
        return out;
    }

    // With at least as many placeholders as characters, the text fills from the right (from
    // the left after "!") and missing characters show as a blank for @, nothing for &. With
    // more characters, each placeholder takes one from the left and the last placeholder takes
    // the rest, whichever the direction: "testing" with \x@\x@ is "xtxesting".
    std::vector<QString> fill(toks.size());
    const qsizetype n = text.size();
    if (leftToRight || n > placeholders) {
        qsizetype next = 0;
        int seen = 0;
        for (size_t k = 0; k < toks.size(); ++k) {
            if (!isPlaceholder(toks[k]))
                continue;
            ++seen;
            if (next < n)
                fill[k] = seen == placeholders ? text.mid(next) : QString(text[next]);
            else if (toks[k].ch == QLatin1Char('@'))
                fill[k] = QStringLiteral(" ");
            next = seen == placeholders ? n : next + 1;
        }
    } else {
        qsizetype next = n - 1;
        for (size_t k = toks.size(); k-- > 0;) {
            if (!isPlaceholder(toks[k]))
                continue;
            if (next >= 0)
                fill[k] = QString(text[next]);
            else if (toks[k].ch == QLatin1Char('@'))
                fill[k] = QStringLiteral(" ");
            --next;
        }
    }
    QString out;
    for (size_t k = 0; k < toks.size(); ++k) {
        if (isPlaceholder(toks[k]))
            out += fill[k];
        else if (!isControl(toks[k]))
            out += toks[k].ch;
    }
    return out;
}

} // namespace fmt_detail
