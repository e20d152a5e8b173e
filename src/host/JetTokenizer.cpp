#include "host/JetTokenizer.h"
#include "entry/HostError.h"

namespace JetSql {

[[noreturn]] void SyntaxError(const QString& what)
{
    throw HostError(HostErr::SqlSyntax, QStringLiteral("Syntax error in query: %1.").arg(what));
}

namespace {
bool isIdentStart(QChar c) { return c.isLetter() || c == QLatin1Char('_'); }
bool isIdentChar(QChar c) { return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('$'); }

} // namespace

// Splits the statement up to its first ";" (outside literals); the rest must be blank.
QList<Token> Tokenize(const QString& s)
{
    QList<Token> out;
    int i = 0;
    const int n = int(s.size());
    while (i < n) {
        const QChar c = s[i];
        if (c.isSpace()) { ++i; continue; }
        Token t;
        t.pos = i;
        if (c == QLatin1Char('\'') || c == QLatin1Char('"')) {
            const QChar q = c;
            QString v;
            int j = i + 1;
            for (;;) {
                if (j >= n)
                    SyntaxError(QStringLiteral("unterminated string starting at position %1").arg(i + 1));
                if (s[j] == q) {
                    if (j + 1 < n && s[j + 1] == q) { v += q; j += 2; continue; }
                    break;
                }
                v += s[j++];
            }
            t.kind = Tok::String;
            t.text = v;
            i = j + 1;
        } else if (c == QLatin1Char('[')) {
            const int close = int(s.indexOf(QLatin1Char(']'), i + 1));
            if (close < 0)
                SyntaxError(QStringLiteral("unclosed \"[\" at position %1").arg(i + 1));
            t.kind = Tok::Bracket;
            t.text = s.mid(i + 1, close - i - 1);
            i = close + 1;
        } else if (c == QLatin1Char('#')) {
            const int close = int(s.indexOf(QLatin1Char('#'), i + 1));
            if (close < 0)
                SyntaxError(QStringLiteral("unclosed date literal at position %1").arg(i + 1));
            t.kind = Tok::Date;
            t.text = s.mid(i + 1, close - i - 1).trimmed();
            i = close + 1;
        } else if (c.isDigit() || (c == QLatin1Char('.') && i + 1 < n && s[i + 1].isDigit())) {
            int j = i;
            while (j < n && s[j].isDigit()) ++j;
            if (j < n && s[j] == QLatin1Char('.')) { ++j; while (j < n && s[j].isDigit()) ++j; }
            if (j < n && (s[j] == QLatin1Char('e') || s[j] == QLatin1Char('E'))) {
                int k = j + 1;
                if (k < n && (s[k] == QLatin1Char('+') || s[k] == QLatin1Char('-'))) ++k;
                if (k < n && s[k].isDigit()) { j = k; while (j < n && s[j].isDigit()) ++j; }
            }
            if (j < n && isIdentStart(s[j]))
                SyntaxError(QStringLiteral("bad number at position %1").arg(i + 1));
            t.kind = Tok::Number;
            t.text = s.mid(i, j - i);
            i = j;
        } else if (isIdentStart(c)) {
            int j = i;
            while (j < n && isIdentChar(s[j])) ++j;
            t.kind = Tok::Ident;
            t.text = s.mid(i, j - i);
            i = j;
        } else {
            static const char* const twoChar[] = {"<>", "<=", ">=", "!="};
            t.kind = Tok::Op;
            t.text = c;
            for (const char* op : twoChar)
                if (i + 1 < n && s[i] == QLatin1Char(op[0]) && s[i + 1] == QLatin1Char(op[1]))
                    t.text = QLatin1String(op);
            if (!QStringLiteral("(),.;+-*/\\^&=<>!").contains(c))
                SyntaxError(QStringLiteral("unexpected character '%1' at position %2").arg(c).arg(i + 1));
            i += int(t.text.size());
            if (t.text == QLatin1String(";")) {
                if (!s.mid(i).trimmed().isEmpty())
                    throw HostError(HostErr::MultipleStatements, QStringLiteral("Characters found after end of SQL statement."));
                break;
            }
        }
        out.append(t);
    }
    Token end;
    end.kind = Tok::End;
    end.pos = n;
    out.append(end);
    return out;
}

} // namespace JetSql
