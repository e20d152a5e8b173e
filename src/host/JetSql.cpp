// Translation of one Jet SELECT into SQLite. A tokenizer keeps literals intact; a small
// precedence parser rewrites the operators whose meaning differs between the dialects
// ("+" on text, "&", Like, text comparisons without regard to case, True = -1).
#include "host/JetSql.h"
#include "host/JetTokenizer.h"
#include "entry/HostError.h"

#include <QDate>
#include <QList>
#include <QStringList>

namespace JetSql {
namespace {

QString sqlString(const QString& v)
{
    QString s = v;
    return QLatin1Char('\'') + s.replace(QLatin1Char('\''), QLatin1String("''")) + QLatin1Char('\'');
}

QString quotedName(const QString& name)
{
    QString s = name;
    return QLatin1Char('"') + s.replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
}

// Words that end an expression or shape the statement; never column names unless bracketed.
const QStringList& reservedWords()
{
    static const QStringList words = {
        QStringLiteral("SELECT"), QStringLiteral("DISTINCT"), QStringLiteral("DISTINCTROW"), QStringLiteral("TOP"),
        QStringLiteral("FROM"), QStringLiteral("WHERE"), QStringLiteral("GROUP"), QStringLiteral("BY"),
        QStringLiteral("HAVING"), QStringLiteral("ORDER"), QStringLiteral("AS"), QStringLiteral("JOIN"),
        QStringLiteral("LEFT"), QStringLiteral("RIGHT"), QStringLiteral("INNER"), QStringLiteral("OUTER"),
        QStringLiteral("ON"), QStringLiteral("UNION"), QStringLiteral("AND"), QStringLiteral("OR"),
        QStringLiteral("NOT"), QStringLiteral("IS"), QStringLiteral("LIKE"), QStringLiteral("BETWEEN"),
        QStringLiteral("IN"), QStringLiteral("MOD"), QStringLiteral("ASC"), QStringLiteral("DESC")};
    return words;
}

class Translator {
public:
    explicit Translator(QList<Token> tokens) : t(std::move(tokens)) {}

    QString statement()
    {
        if (!isWord(QStringLiteral("SELECT")))
            throw HostError(HostErr::SqlExecute, QStringLiteral("Only SELECT statements can run on this connection."));
        QString out = select();
        if (cur().kind != Tok::End)
            SyntaxError(QStringLiteral("unexpected '%1' at position %2").arg(cur().text).arg(cur().pos + 1));
        return out;
    }

private:
    QList<Token> t;
    int p = 0;
    int depth = 0;
    int exprCounter = 1000;

    const Token& cur() const { return t[p]; }
    const Token& peek(int k = 1) const { return t[qMin(p + k, int(t.size()) - 1)]; }
    bool isWord(const QString& w, int k = 0) const
    {
        const Token& x = peek(k);
        return x.kind == Tok::Ident && x.text.compare(w, Qt::CaseInsensitive) == 0;
    }
    bool isOp(const char* op, int k = 0) const { return peek(k).kind == Tok::Op && peek(k).text == QLatin1String(op); }
    bool acceptWord(const QString& w)
    {
        if (!isWord(w)) return false;
        ++p;
        return true;
    }
    bool acceptOp(const char* op)
    {
        if (!isOp(op)) return false;
        ++p;
        return true;
    }
    void expectOp(const char* op)
    {
        if (!acceptOp(op))
            SyntaxError(QStringLiteral("expected '%1' at position %2").arg(QLatin1String(op)).arg(cur().pos + 1));
    }
    void expectWord(const QString& w)
    {
        if (!acceptWord(w))
            SyntaxError(QStringLiteral("expected %1 at position %2").arg(w).arg(cur().pos + 1));
    }
    bool isReserved(const Token& x) const
    {
        return x.kind == Tok::Ident && reservedWords().contains(x.text, Qt::CaseInsensitive);
    }

    struct Enter {
        Translator& tr;
        explicit Enter(Translator& t) : tr(t)
        {
            if (++tr.depth > 200)
                SyntaxError(QStringLiteral("statement nested too deeply"));
        }
        ~Enter() { --tr.depth; }
    };

    QString name(const Token& x) const
    {
        return x.kind == Tok::Bracket ? QLatin1Char('[') + x.text + QLatin1Char(']') : x.text;
    }

    QString select()
    {
        Enter e(*this);
        expectWord(QStringLiteral("SELECT"));
        QString out = QStringLiteral("SELECT ");
        QString limit;
        if (acceptWord(QStringLiteral("DISTINCT")) || acceptWord(QStringLiteral("DISTINCTROW")))
            out += QLatin1String("DISTINCT ");
        if (acceptWord(QStringLiteral("TOP"))) {
            if (cur().kind != Tok::Number)
                SyntaxError(QStringLiteral("TOP needs a number"));
            limit = QStringLiteral(" LIMIT ") + cur().text;
            ++p;
        }
        out += selectList();
        if (acceptWord(QStringLiteral("FROM")))
            out += QStringLiteral(" FROM ") + fromClause();
        if (acceptWord(QStringLiteral("WHERE")))
            out += QStringLiteral(" WHERE ") + expr(0);
        if (acceptWord(QStringLiteral("GROUP"))) {
            expectWord(QStringLiteral("BY"));
            out += QStringLiteral(" GROUP BY ") + orderList(false);
        }
        if (acceptWord(QStringLiteral("HAVING")))
            out += QStringLiteral(" HAVING ") + expr(0);
        if (acceptWord(QStringLiteral("UNION"))) {
            out += acceptWord(QStringLiteral("ALL")) ? QStringLiteral(" UNION ALL ") : QStringLiteral(" UNION ");
            return out + select();
        }
        if (acceptWord(QStringLiteral("ORDER"))) {
            expectWord(QStringLiteral("BY"));
            out += QStringLiteral(" ORDER BY ") + orderList(true);
        }
        return out + limit;
    }

    QString selectList()
    {
        QStringList items;
        do {
            if (acceptOp("*")) { items << QStringLiteral("*"); continue; }
            // table.* needs no alias
            if ((cur().kind == Tok::Ident || cur().kind == Tok::Bracket) && isOp(".", 1) && isOp("*", 2)) {
                items << name(cur()) + QStringLiteral(".*");
                p += 3;
                continue;
            }
            const int start = p;
            const QString e = expr(0);
            QString alias;
            if (acceptWord(QStringLiteral("AS")) || ((cur().kind == Tok::Ident && !isReserved(cur())) || cur().kind == Tok::Bracket)) {
                if (cur().kind != Tok::Ident && cur().kind != Tok::Bracket && cur().kind != Tok::String)
                    SyntaxError(QStringLiteral("missing alias after AS at position %1").arg(cur().pos + 1));
                alias = cur().text;
                ++p;
            } else {
                alias = plainColumnName(start, p);
                if (alias.isEmpty())
                    alias = QStringLiteral("Expr%1").arg(exprCounter++);
            }
            items << e + QStringLiteral(" AS ") + quotedName(alias);
        } while (acceptOp(","));
        return items.join(QStringLiteral(", "));
    }

    // The column name of an item that is a plain or qualified column reference, else "".
    QString plainColumnName(int from, int to) const
    {
        for (int i = from; i < to; ++i) {
            const bool nameTok = t[i].kind == Tok::Ident || t[i].kind == Tok::Bracket;
            const bool expectName = (i - from) % 2 == 0;
            if (expectName ? !nameTok : !(t[i].kind == Tok::Op && t[i].text == QLatin1String(".")))
                return QString();
        }
        return (to - from) % 2 == 1 ? t[to - 1].text : QString();
    }

    QString fromClause()
    {
        QString out;
        int parens = 0;
        for (;;) {
            const Token& x = cur();
            if (x.kind == Tok::End || isWord(QStringLiteral("WHERE")) || isWord(QStringLiteral("GROUP")) || isWord(QStringLiteral("HAVING"))
                || isWord(QStringLiteral("ORDER")) || isWord(QStringLiteral("UNION")) || (isOp(")") && parens == 0))
                break;
            if (isOp("(") && isWord(QStringLiteral("SELECT"), 1)) {
                ++p;
                out += QLatin1Char('(') + select() + QLatin1Char(')');
                expectOp(")");
            } else if (acceptOp("(")) {
                ++parens;
                out += QLatin1Char('(');
            } else if (acceptOp(")")) {
                --parens;
                out += QLatin1Char(')');
            } else if (acceptOp(",")) {
                out += QStringLiteral(", ");
            } else if (acceptWord(QStringLiteral("ON"))) {
                out += QStringLiteral(" ON ") + expr(0);
            } else if (x.kind == Tok::Ident && (isReserved(x) || x.text.compare(QLatin1String("OUTER"), Qt::CaseInsensitive) == 0)) {
                static const QStringList allowed = {QStringLiteral("LEFT"), QStringLiteral("RIGHT"), QStringLiteral("INNER"),
                                                    QStringLiteral("OUTER"), QStringLiteral("JOIN"), QStringLiteral("AS")};
                if (!allowed.contains(x.text, Qt::CaseInsensitive))
                    SyntaxError(QStringLiteral("unexpected %1 in FROM clause").arg(x.text));
                out += QLatin1Char(' ') + x.text.toUpper() + QLatin1Char(' ');
                ++p;
            } else if (x.kind == Tok::Ident || x.kind == Tok::Bracket) {
                out += name(x);
                ++p;
                while (isOp(".") && (peek(1).kind == Tok::Ident || peek(1).kind == Tok::Bracket)) {
                    out += QLatin1Char('.') + name(peek(1));
                    p += 2;
                }
                out += QLatin1Char(' ');
            } else {
                SyntaxError(QStringLiteral("unexpected '%1' in FROM clause").arg(x.text));
            }
        }
        if (parens != 0)
            SyntaxError(QStringLiteral("unbalanced parentheses in FROM clause"));
        if (out.trimmed().isEmpty())
            SyntaxError(QStringLiteral("missing table after FROM"));
        return out.simplified();
    }

    QString orderList(bool directions)
    {
        QStringList items;
        do {
            QString item;
            if (cur().kind == Tok::Number) { // a column position stays a position
                item = cur().text;
                ++p;
            } else {
                item = QLatin1Char('(') + expr(0) + QStringLiteral(") COLLATE NOCASE");
            }
            if (directions) {
                if (acceptWord(QStringLiteral("ASC"))) item += QStringLiteral(" ASC");
                else if (acceptWord(QStringLiteral("DESC"))) item += QStringLiteral(" DESC");
            }
            items << item;
        } while (acceptOp(","));
        return items.join(QStringLiteral(", "));
    }

    // Binding powers, Jet's order: Or < And < Not < comparisons < & < + - < Mod < \ < * / < unary - < ^.
    int infixPower() const
    {
        const Token& x = cur();
        if (x.kind == Tok::Op) {
            const QString& o = x.text;
            if (o == QLatin1String("=") || o == QLatin1String("<>") || o == QLatin1String("!=") || o == QLatin1String("<")
                || o == QLatin1String(">") || o == QLatin1String("<=") || o == QLatin1String(">="))
                return 50;
            if (o == QLatin1String("&")) return 60;
            if (o == QLatin1String("+") || o == QLatin1String("-")) return 70;
            if (o == QLatin1String("\\")) return 90;
            if (o == QLatin1String("*") || o == QLatin1String("/")) return 100;
            if (o == QLatin1String("^")) return 120;
            return -1;
        }
        if (isWord(QStringLiteral("OR"))) return 20;
        if (isWord(QStringLiteral("AND"))) return 30;
        if (isWord(QStringLiteral("LIKE")) || isWord(QStringLiteral("IN")) || isWord(QStringLiteral("BETWEEN")) || isWord(QStringLiteral("IS")))
            return 50;
        if (isWord(QStringLiteral("NOT")) && (isWord(QStringLiteral("LIKE"), 1) || isWord(QStringLiteral("IN"), 1) || isWord(QStringLiteral("BETWEEN"), 1)))
            return 50;
        if (isWord(QStringLiteral("MOD"))) return 80;
        return -1;
    }

    QString expr(int minPower)
    {
        Enter e(*this);
        QString left = prefix();
        for (;;) {
            const int bp = infixPower();
            if (bp < 0 || bp <= minPower)
                return left;
            left = infix(left, bp);
        }
    }

    QString infix(const QString& l, int bp)
    {
        const Token op = cur();
        ++p;
        const QString o = op.text.toUpper();
        if (op.kind == Tok::Op) {
            const QString r = expr(o == QLatin1String("^") ? bp - 1 : bp);
            if (bp == 50) {
                const QString sqlOp = o == QLatin1String("!=") ? QStringLiteral("<>") : o;
                return QStringLiteral("(%1 %2 %3 COLLATE NOCASE)").arg(l, sqlOp, r);
            }
            if (o == QLatin1String("&")) return QStringLiteral("jet_amp(%1, %2)").arg(l, r);
            if (o == QLatin1String("+")) return QStringLiteral("jet_plus(%1, %2)").arg(l, r);
            if (o == QLatin1String("/")) return QStringLiteral("(CAST(%1 AS REAL) / %2)").arg(l, r);
            if (o == QLatin1String("\\")) return QStringLiteral("(jet_clng(%1) / jet_clng(%2))").arg(l, r);
            if (o == QLatin1String("^")) return QStringLiteral("jet_pow(%1, %2)").arg(l, r);
            return QStringLiteral("(%1 %2 %3)").arg(l, o, r);
        }
        if (o == QLatin1String("OR") || o == QLatin1String("AND"))
            return QStringLiteral("(%1 %2 %3)").arg(l, o, expr(bp));
        if (o == QLatin1String("MOD"))
            return QStringLiteral("(%1 % %2)").arg(l, expr(bp));
        bool negate = false;
        QString word = o;
        if (o == QLatin1String("NOT")) {
            negate = true;
            word = cur().text.toUpper();
            ++p;
        }
        const QString notText = negate ? QStringLiteral("NOT ") : QString();
        if (word == QLatin1String("LIKE"))
            return QStringLiteral("(%1jet_like(%2, %3))").arg(notText, l, expr(bp));
        if (word == QLatin1String("BETWEEN")) {
            const QString low = expr(bp);
            expectWord(QStringLiteral("AND"));
            const QString high = expr(bp);
            return QStringLiteral("(%1 COLLATE NOCASE %2BETWEEN %3 AND %4)").arg(l, notText, low, high);
        }
        if (word == QLatin1String("IN")) {
            expectOp("(");
            QString list;
            if (isWord(QStringLiteral("SELECT"))) {
                list = select();
            } else {
                QStringList items;
                do items << expr(0);
                while (acceptOp(","));
                list = items.join(QStringLiteral(", "));
            }
            expectOp(")");
            return QStringLiteral("(%1 COLLATE NOCASE %2IN (%3))").arg(l, notText, list);
        }
        // IS [NOT] NULL
        const bool isNot = acceptWord(QStringLiteral("NOT"));
        expectWord(QStringLiteral("NULL"));
        return QStringLiteral("(%1 IS %2NULL)").arg(l, isNot ? QStringLiteral("NOT ") : QString());
    }

    QString prefix()
    {
        const Token x = cur();
        switch (x.kind) {
        case Tok::End:
            SyntaxError(QStringLiteral("missing expression at the end"));
        case Tok::String:
            ++p;
            return sqlString(x.text);
        case Tok::Number:
            ++p;
            return x.text;
        case Tok::Date:
            ++p;
            return dateLiteral(x.text);
        case Tok::Bracket:
            return columnRef();
        case Tok::Op:
            if (acceptOp("(")) {
                QString inner = isWord(QStringLiteral("SELECT")) ? select() : expr(0);
                expectOp(")");
                return QLatin1Char('(') + inner + QLatin1Char(')');
            }
            if (acceptOp("-")) return QStringLiteral("(- %1)").arg(expr(110));
            if (acceptOp("+")) return expr(110);
            SyntaxError(QStringLiteral("unexpected '%1' at position %2").arg(x.text).arg(x.pos + 1));
        case Tok::Ident:
            break;
        }
        const QString w = x.text.toUpper();
        if (w == QLatin1String("NOT")) { ++p; return QStringLiteral("(NOT %1)").arg(expr(40)); }
        if (w == QLatin1String("NULL")) { ++p; return QStringLiteral("NULL"); }
        if (w == QLatin1String("TRUE")) { ++p; return QStringLiteral("-1"); }
        if (w == QLatin1String("FALSE")) { ++p; return QStringLiteral("0"); }
        if (w == QLatin1String("EXISTS")) {
            ++p;
            expectOp("(");
            const QString q = select();
            expectOp(")");
            return QStringLiteral("EXISTS (%1)").arg(q);
        }
        // Left( and Right( are functions, not joins.
        const bool stringFunction = w == QLatin1String("LEFT") || w == QLatin1String("RIGHT");
        if (isReserved(x) && !(stringFunction && isOp("(", 1)))
            SyntaxError(QStringLiteral("unexpected %1 at position %2").arg(x.text).arg(x.pos + 1));
        if (isOp("(", 1))
            return functionCall();
        return columnRef();
    }

    QString columnRef()
    {
        QString out = name(cur());
        ++p;
        while (isOp(".") && (peek(1).kind == Tok::Ident || peek(1).kind == Tok::Bracket)) {
            out += QLatin1Char('.') + name(peek(1));
            p += 2;
        }
        return out;
    }

    QString dateLiteral(const QString& text) const
    {
        static const char* const formats[] = {"M/d/yyyy", "yyyy-MM-dd", "M/d/yy", "M-d-yyyy"};
        const QString datePart = text.section(QLatin1Char(' '), 0, 0);
        for (const char* f : formats) {
            const QDate d = QDate::fromString(datePart, QLatin1String(f));
            if (d.isValid())
                return sqlString(d.toString(Qt::ISODate));
        }
        SyntaxError(QStringLiteral("bad date #%1#").arg(text));
    }

    QString functionCall()
    {
        const Token fn = cur();
        p += 2; // name and "("
        QStringList args;
        const QString f = fn.text.toUpper();
        if (f == QLatin1String("COUNT") && acceptOp("*")) {
            args << QStringLiteral("*");
        } else if (!isOp(")")) {
            do args << expr(0);
            while (acceptOp(","));
        }
        expectOp(")");
        auto need = [&](int lo, int hi) {
            if (args.size() < lo || args.size() > hi)
                throw HostError(HostErr::SqlSyntax, QStringLiteral("Wrong number of arguments used with function %1 in query expression.").arg(fn.text));
        };
        struct Simple { const char* jet; const char* sqlite; int lo, hi; };
        static const Simple simple[] = {
            {"UCASE", "upper", 1, 1}, {"LCASE", "lower", 1, 1}, {"LEN", "length", 1, 1}, {"TRIM", "trim", 1, 1},
            {"LTRIM", "ltrim", 1, 1}, {"RTRIM", "rtrim", 1, 1}, {"ABS", "abs", 1, 1}, {"MID", "substr", 2, 3},
            {"CLNG", "jet_clng", 1, 1}, {"CINT", "jet_clng", 1, 1}, {"CDBL", "jet_cdbl", 1, 1}, {"CSNG", "jet_cdbl", 1, 1},
            {"CCUR", "jet_cdbl", 1, 1}, {"CSTR", "jet_cstr", 1, 1}, {"RIGHT", "jet_right", 2, 2},
            {"COUNT", "count", 1, 1}, {"SUM", "sum", 1, 1}, {"AVG", "avg", 1, 1}, {"MIN", "min", 1, 1}, {"MAX", "max", 1, 1},
        };
        for (const Simple& s : simple)
            if (f == QLatin1String(s.jet)) {
                need(s.lo, s.hi);
                return QLatin1String(s.sqlite) + QLatin1Char('(') + args.join(QStringLiteral(", ")) + QLatin1Char(')');
            }
        if (f == QLatin1String("IIF")) {
            need(3, 3);
            return QStringLiteral("(CASE WHEN %1 THEN %2 ELSE %3 END)").arg(args[0], args[1], args[2]);
        }
        if (f == QLatin1String("ISNULL")) {
            need(1, 1);
            return QStringLiteral("(CASE WHEN %1 IS NULL THEN -1 ELSE 0 END)").arg(args[0]);
        }
        if (f == QLatin1String("NZ")) {
            need(1, 2);
            return QStringLiteral("COALESCE(%1, %2)").arg(args[0], args.size() > 1 ? args[1] : QStringLiteral("''"));
        }
        if (f == QLatin1String("LEFT")) {
            need(2, 2);
            return QStringLiteral("substr(%1, 1, %2)").arg(args[0], args[1]);
        }
        if (f == QLatin1String("YEAR") || f == QLatin1String("MONTH") || f == QLatin1String("DAY")) {
            need(1, 1);
            const char* part = f == QLatin1String("YEAR") ? "%Y" : f == QLatin1String("MONTH") ? "%m" : "%d";
            return QStringLiteral("CAST(strftime('%1', %2) AS INTEGER)").arg(QLatin1String(part), args[0]);
        }
        if (f == QLatin1String("DATE") || f == QLatin1String("NOW")) {
            need(0, 0);
            return f == QLatin1String("DATE") ? QStringLiteral("date('now', 'localtime')") : QStringLiteral("datetime('now', 'localtime')");
        }
        throw HostError(HostErr::SqlSyntax, QStringLiteral("Undefined function '%1' in expression.").arg(fn.text));
    }
};

} // namespace

QString Translate(const QString& jet)
{
    Translator tr(Tokenize(jet));
    return tr.statement();
}

} // namespace JetSql
