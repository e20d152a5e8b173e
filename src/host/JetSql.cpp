// Translation of one Jet SELECT for a target database. A tokenizer keeps literals intact; a small
// precedence parser reads the statement and writes each construct the way the dialect table says
// ("+" on text, "&", Like, text comparisons without regard to case, True = -1). It tracks which
// pieces are conditions and which hold text, because a strictly typed target needs to know.
#include "host/JetSql.h"
#include "host/JetDialect.h"
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

// One translated piece of a statement and the kind of value it gives (Bool: a condition).
struct Expr {
    QString s;
    ValueKind k = ValueKind::Unknown;
};

QString fill(const char* tmpl, const QStringList& parts)
{
    QString out;
    const QString t = QLatin1String(tmpl);
    for (int i = 0; i < t.size(); ++i) {
        if (t[i] == QLatin1Char('%') && i + 1 < t.size()) {
            const QChar c = t[i + 1];
            if (c == QLatin1Char('*')) { out += parts.join(QStringLiteral(", ")); ++i; continue; }
            if (c == QLatin1Char('r')) { out += parts.mid(1).join(QStringLiteral(", ")); ++i; continue; }
            if (c.isDigit() && c != QLatin1Char('0')) { out += parts.value(c.digitValue() - 1); ++i; continue; }
        }
        out += t[i];
    }
    return out;
}

class Translator {
public:
    Translator(QList<Token> tokens, const Dialect& dialect, const Catalogue* catalogue)
        : t(std::move(tokens)), d(dialect), cat(catalogue)
    {
        // The tables the statement names, in order: a column's spelling comes from them first,
        // since two tables may spell the same column differently.
        if (cat)
            for (const Token& x : t)
                if ((x.kind == Tok::Ident || x.kind == Tok::Bracket) && cat->tableColumns.contains(x.text.toLower())
                    && !tables.contains(x.text.toLower()))
                    tables << x.text.toLower();
    }

    QString statement()
    {
        if (!isWord(QStringLiteral("SELECT")))
            throw HostError(HostErr::SqlExecute, QStringLiteral("Only SELECT statements can run on this connection."));
        QString out = select(false).s;
        if (cur().kind != Tok::End)
            SyntaxError(QStringLiteral("unexpected '%1' at position %2").arg(cur().text).arg(cur().pos + 1));
        return out;
    }

private:
    QList<Token> t;
    const Dialect& d;
    const Catalogue* cat;
    int p = 0;
    int depth = 0;
    int exprCounter = 1000;
    QHash<QString, Expr> aliases; // of the select being read, for ORDER BY
    QStringList tables;           // lower case

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

    // A value where a condition is wanted and the other way round.
    QString val(const Expr& e) const { return e.k == ValueKind::Bool ? fill(d.boolToValue, {e.s}) : e.s; }
    QString cond(const Expr& e) const { return e.k == ValueKind::Bool ? e.s : fill(d.valueToBool, {e.s}); }
    QString text(const Expr& e) const { return fill(d.textOperand, {val(e)}); }

    QString name(const Token& x, const QString& qualifier = QString()) const
    {
        if (!d.quoteNames)
            return x.kind == Tok::Bracket ? QLatin1Char('[') + x.text + QLatin1Char(']') : x.text;
        return quotedName(spelling(x.text, qualifier));
    }
    QString spelling(const QString& word, const QString& qualifier) const
    {
        if (!cat)
            return word;
        const QString w = word.toLower();
        const auto own = cat->tableColumns.find(qualifier.toLower());
        if (!qualifier.isEmpty() && own != cat->tableColumns.end() && own->contains(w))
            return own->value(w);
        for (const QString& table : tables) {
            const QHash<QString, QString>& columns = *cat->tableColumns.find(table);
            if (columns.contains(w))
                return columns.value(w);
        }
        return cat->names.value(w, word);
    }
    ValueKind columnKind(const QString& column) const
    {
        return cat ? cat->columnKinds.value(column.toLower(), ValueKind::Unknown) : ValueKind::Unknown;
    }

    Expr select(bool partOfUnion)
    {
        Enter e(*this);
        const QHash<QString, Expr> outerAliases = aliases;
        aliases.clear();
        expectWord(QStringLiteral("SELECT"));
        QString out = QStringLiteral("SELECT ");
        QString limit;
        bool distinct = false;
        if (acceptWord(QStringLiteral("DISTINCT")) || acceptWord(QStringLiteral("DISTINCTROW"))) {
            out += QLatin1String("DISTINCT ");
            distinct = true;
        }
        if (acceptWord(QStringLiteral("TOP"))) {
            if (cur().kind != Tok::Number)
                SyntaxError(QStringLiteral("TOP needs a number"));
            limit = QStringLiteral(" LIMIT ") + cur().text;
            ++p;
        }
        ValueKind firstKind = ValueKind::Unknown;
        out += selectList(firstKind);
        if (acceptWord(QStringLiteral("FROM")))
            out += QStringLiteral(" FROM ") + fromClause();
        if (acceptWord(QStringLiteral("WHERE")))
            out += QStringLiteral(" WHERE ") + cond(expr(0));
        if (acceptWord(QStringLiteral("GROUP"))) {
            expectWord(QStringLiteral("BY"));
            out += QStringLiteral(" GROUP BY ") + orderList(false, false);
        }
        if (acceptWord(QStringLiteral("HAVING")))
            out += QStringLiteral(" HAVING ") + cond(expr(0));
        if (acceptWord(QStringLiteral("UNION"))) {
            out += acceptWord(QStringLiteral("ALL")) ? QStringLiteral(" UNION ALL ") : QStringLiteral(" UNION ");
            out += select(true).s;
            aliases = outerAliases;
            return Expr{out, firstKind};
        }
        if (acceptWord(QStringLiteral("ORDER"))) {
            expectWord(QStringLiteral("BY"));
            // After DISTINCT or UNION the sort keys must be result columns as they are.
            out += QStringLiteral(" ORDER BY ") + orderList(true, !(distinct || partOfUnion));
        }
        aliases = outerAliases;
        return Expr{out + limit, firstKind};
    }

    QString selectList(ValueKind& firstKind)
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
            const Expr e = expr(0);
            if (items.isEmpty())
                firstKind = e.k;
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
            aliases.insert(alias.toLower(), e);
            items << val(e) + QStringLiteral(" AS ") + quotedName(alias);
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
                out += QLatin1Char('(') + select(false).s + QLatin1Char(')');
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
                out += QStringLiteral(" ON ") + cond(expr(0));
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

    QString orderList(bool ordering, bool mayFold)
    {
        QStringList items;
        do {
            QString item;
            if (cur().kind == Tok::Number) { // a column position stays a position
                item = cur().text;
                ++p;
            } else {
                // A select item's alias sorts by that item.
                const bool aliasRef = (cur().kind == Tok::Ident || cur().kind == Tok::Bracket) && !isOp(".", 1) && !isOp("(", 1)
                                      && aliases.contains(cur().text.toLower());
                Expr e;
                if (aliasRef && d.quoteNames && mayFold) {
                    e = aliases.value(cur().text.toLower());
                    ++p;
                } else {
                    e = expr(0);
                }
                if (!ordering)
                    item = fill(d.groupItem, {val(e)});
                else if (d.foldOrder && mayFold && e.k == ValueKind::Text)
                    item = fill(d.orderItem, {text(e)});
                else
                    item = fill(d.orderItem, {val(e)});
            }
            if (ordering) {
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

    Expr expr(int minPower)
    {
        Enter e(*this);
        Expr left = prefix();
        for (;;) {
            const int bp = infixPower();
            if (bp < 0 || bp <= minPower)
                return left;
            left = infix(left, bp);
        }
    }

    static bool isText(const Expr& e) { return e.k == ValueKind::Text; }

    Expr infix(const Expr& l, int bp)
    {
        const Token op = cur();
        ++p;
        const QString o = op.text.toUpper();
        const ValueKind num = ValueKind::Number;
        if (op.kind == Tok::Op) {
            const Expr r = expr(o == QLatin1String("^") ? bp - 1 : bp);
            if (bp == 50) {
                const QString sqlOp = o == QLatin1String("!=") ? QStringLiteral("<>") : o;
                const bool folded = isText(l) || isText(r);
                return {fill(d.compare, {folded ? text(l) : val(l), sqlOp, folded ? text(r) : val(r)}), ValueKind::Bool};
            }
            if (o == QLatin1String("&")) return {fill(d.amp, {val(l), val(r)}), ValueKind::Text};
            if (o == QLatin1String("+"))
                return {fill(d.plus, {val(l), val(r)}), isText(l) || isText(r) ? ValueKind::Text : l.k == num && r.k == num ? num : ValueKind::Unknown};
            if (o == QLatin1String("/")) return {fill(d.divide, {val(l), val(r)}), num};
            if (o == QLatin1String("\\")) return {fill(d.intDivide, {val(l), val(r)}), num};
            if (o == QLatin1String("^")) return {fill(d.power, {val(l), val(r)}), num};
            return {QStringLiteral("(%1 %2 %3)").arg(val(l), o, val(r)), num};
        }
        if (o == QLatin1String("OR") || o == QLatin1String("AND"))
            return {QStringLiteral("(%1 %2 %3)").arg(cond(l), o, cond(expr(bp))), ValueKind::Bool};
        if (o == QLatin1String("MOD"))
            return {fill(d.mod, {val(l), val(expr(bp))}), num};
        bool negate = false;
        QString word = o;
        if (o == QLatin1String("NOT")) {
            negate = true;
            word = cur().text.toUpper();
            ++p;
        }
        const QString notText = negate ? QStringLiteral("NOT ") : QString();
        if (word == QLatin1String("LIKE"))
            return {fill(d.like, {notText, val(l), val(expr(bp))}), ValueKind::Bool};
        if (word == QLatin1String("BETWEEN")) {
            const Expr low = expr(bp);
            expectWord(QStringLiteral("AND"));
            const Expr high = expr(bp);
            const bool folded = isText(l) || isText(low) || isText(high);
            auto side = [&](const Expr& e) { return folded ? text(e) : val(e); };
            return {fill(d.between, {side(l), notText, side(low), side(high)}), ValueKind::Bool};
        }
        if (word == QLatin1String("IN")) {
            expectOp("(");
            Expr result;
            if (isWord(QStringLiteral("SELECT"))) {
                const Expr sub = select(false);
                const bool folded = isText(l) || isText(sub);
                result = {folded ? fill(d.inSelectText, {text(l), notText, sub.s}) : fill(d.inList, {val(l), notText, sub.s}), ValueKind::Bool};
            } else {
                QList<Expr> items;
                bool folded = isText(l);
                do {
                    items << expr(0);
                    folded = folded || isText(items.last());
                } while (acceptOp(","));
                QStringList list;
                for (const Expr& e : items)
                    list << (folded ? text(e) : val(e));
                result = {fill(d.inList, {folded ? text(l) : val(l), notText, list.join(QStringLiteral(", "))}), ValueKind::Bool};
            }
            expectOp(")");
            return result;
        }
        // IS [NOT] NULL
        const bool isNot = acceptWord(QStringLiteral("NOT"));
        expectWord(QStringLiteral("NULL"));
        return {QStringLiteral("(%1 IS %2NULL)").arg(val(l), isNot ? QStringLiteral("NOT ") : QString()), ValueKind::Bool};
    }

    Expr prefix()
    {
        const Token x = cur();
        switch (x.kind) {
        case Tok::End:
            SyntaxError(QStringLiteral("missing expression at the end"));
        case Tok::String:
            ++p;
            return {sqlString(x.text), ValueKind::Text};
        case Tok::Number:
            ++p;
            return {x.text, ValueKind::Number};
        case Tok::Date:
            ++p;
            return {dateLiteral(x.text), ValueKind::Date};
        case Tok::Bracket:
            return columnRef();
        case Tok::Op:
            if (acceptOp("(")) {
                const Expr inner = isWord(QStringLiteral("SELECT")) ? select(false) : expr(0);
                expectOp(")");
                return {QLatin1Char('(') + inner.s + QLatin1Char(')'), inner.k};
            }
            if (acceptOp("-")) return {QStringLiteral("(- %1)").arg(val(expr(110))), ValueKind::Number};
            if (acceptOp("+")) return expr(110);
            SyntaxError(QStringLiteral("unexpected '%1' at position %2").arg(x.text).arg(x.pos + 1));
        case Tok::Ident:
            break;
        }
        const QString w = x.text.toUpper();
        if (w == QLatin1String("NOT")) { ++p; return {QStringLiteral("(NOT %1)").arg(cond(expr(40))), ValueKind::Bool}; }
        if (w == QLatin1String("NULL")) { ++p; return {QStringLiteral("NULL"), ValueKind::Unknown}; }
        if (w == QLatin1String("TRUE")) { ++p; return {QStringLiteral("-1"), ValueKind::Number}; }
        if (w == QLatin1String("FALSE")) { ++p; return {QStringLiteral("0"), ValueKind::Number}; }
        if (w == QLatin1String("EXISTS")) {
            ++p;
            expectOp("(");
            const QString q = select(false).s;
            expectOp(")");
            return {QStringLiteral("EXISTS (%1)").arg(q), ValueKind::Bool};
        }
        // Left( and Right( are functions, not joins.
        const bool stringFunction = w == QLatin1String("LEFT") || w == QLatin1String("RIGHT");
        if (isReserved(x) && !(stringFunction && isOp("(", 1)))
            SyntaxError(QStringLiteral("unexpected %1 at position %2").arg(x.text).arg(x.pos + 1));
        if (isOp("(", 1))
            return functionCall();
        return columnRef();
    }

    Expr columnRef()
    {
        QString out = name(cur());
        QString last = cur().text;
        ++p;
        while (isOp(".") && (peek(1).kind == Tok::Ident || peek(1).kind == Tok::Bracket)) {
            out += QLatin1Char('.') + name(peek(1), last);
            last = peek(1).text;
            p += 2;
        }
        return {out, columnKind(last)};
    }

    QString dateLiteral(const QString& text) const
    {
        static const char* const formats[] = {"M/d/yyyy", "yyyy-MM-dd", "M/d/yy", "M-d-yyyy"};
        const QString datePart = text.section(QLatin1Char(' '), 0, 0);
        for (const char* f : formats) {
            const QDate dt = QDate::fromString(datePart, QLatin1String(f));
            if (dt.isValid())
                return fill(d.dateLiteral, {dt.toString(Qt::ISODate)});
        }
        SyntaxError(QStringLiteral("bad date #%1#").arg(text));
    }

    Expr functionCall()
    {
        const Token fn = cur();
        p += 2; // name and "("
        QList<Expr> args;
        const QString f = fn.text.toUpper();
        if (f == QLatin1String("COUNT") && acceptOp("*")) {
            args << Expr{QStringLiteral("*"), ValueKind::Unknown};
        } else if (!isOp(")")) {
            do args << expr(0);
            while (acceptOp(","));
        }
        expectOp(")");
        auto need = [&](int lo, int hi) {
            if (args.size() < lo || args.size() > hi)
                throw HostError(HostErr::SqlSyntax, QStringLiteral("Wrong number of arguments used with function %1 in query expression.").arg(fn.text));
        };
        QStringList values;
        for (const Expr& a : args)
            values << val(a);
        for (const FunctionRule& rule : d.functions)
            if (f == QLatin1String(rule.jet)) {
                need(rule.minArgs, rule.maxArgs);
                if (rule.defaultArg && values.size() < rule.maxArgs)
                    values << QLatin1String(rule.defaultArg);
                const ValueKind k = rule.result != ValueKind::Unknown ? rule.result : args.value(0).k;
                return {fill(rule.target, values), k};
            }
        if (f == QLatin1String("IIF")) {
            need(3, 3);
            const ValueKind k = args[1].k != ValueKind::Unknown ? args[1].k : args[2].k;
            return {fill(d.iif, {cond(args[0]), values[1], values[2]}), k};
        }
        if (f == QLatin1String("ISNULL")) {
            need(1, 1);
            return {fill(d.isNull, {values[0]}), ValueKind::Bool};
        }
        if (f == QLatin1String("YEAR") || f == QLatin1String("MONTH") || f == QLatin1String("DAY")) {
            need(1, 1);
            const char* letter = f == QLatin1String("YEAR") ? "%Y" : f == QLatin1String("MONTH") ? "%m" : "%d";
            return {fill(d.datePart, {f.toLower(), QLatin1String(letter), values[0]}), ValueKind::Number};
        }
        if (f == QLatin1String("DATE") || f == QLatin1String("NOW")) {
            need(0, 0);
            return {QLatin1String(f == QLatin1String("DATE") ? d.today : d.now), ValueKind::Text};
        }
        throw HostError(HostErr::SqlSyntax, QStringLiteral("Undefined function '%1' in expression.").arg(fn.text));
    }
};

} // namespace

QString Translate(const QString& jet, const Dialect& dialect, const Catalogue* catalogue)
{
    Translator tr(Tokenize(jet), dialect, catalogue);
    return tr.statement();
}

} // namespace JetSql
