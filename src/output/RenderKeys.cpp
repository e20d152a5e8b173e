#include "output/RenderKeys.h"

#include "document/RecordQuery.h"
#include "entry/Host.h"

#include <QIODevice>
#include <QRegularExpression>
#include <algorithm>

namespace RenderKeys {

namespace {

// A user's condition goes inside parentheses ahead of the status filter: it must not close
// them early, nor end the statement.
bool staysInside(const QString& text)
{
    int depth = 0;
    QChar quote;
    for (const QChar c : text) {
        if (!quote.isNull()) {
            if (c == quote)
                quote = QChar();
            continue;
        }
        if (c == QLatin1Char('\'') || c == QLatin1Char('"'))
            quote = c;
        else if (c == QLatin1Char('('))
            ++depth;
        else if (c == QLatin1Char(')') && --depth < 0)
            return false;
        else if (c == QLatin1Char(';'))
            return false;
    }
    return depth == 0 && quote.isNull();
}

bool numericKey(const QString& k, qlonglong* value)
{
    bool ok = false;
    *value = k.toLongLong(&ok);
    return ok;
}

} // namespace

QStringList Read(QIODevice& in)
{
    QStringList keys;
    while (!in.atEnd()) {
        const QString line = QString::fromUtf8(in.readLine()).trimmed();
        if (!line.isEmpty())
            keys << line;
    }
    return keys;
}

QStringList Select(FieldDictionary& dic, const QString& condition, const QString& orderBy)
{
    for (const QString& part : {condition, orderBy})
        if (!staysInside(part))
            throw HostError(HostErr::SqlSyntax,
                            QStringLiteral("Syntax error in the condition: unbalanced parentheses or quotes, or a \";\": ") + part);
    const QString key = dic.TableName() + QLatin1Char('.') + dic.KeyField();
    QString sql = RecordQuery::SelectRecords(dic, key, {}); // the status filter and host tokens as for printing
    // Replace the key list with the user's condition, then add the order.
    const QString inList = key + QStringLiteral(" IN ()");
    sql.replace(inList, condition.trimmed().isEmpty() ? QStringLiteral("1 = 1") : QLatin1Char('(') + condition + QLatin1Char(')'));
    sql.chop(1); // the ";"
    sql += QStringLiteral(" ORDER BY ") + (orderBy.trimmed().isEmpty() ? key : orderBy) + QLatin1Char(';');
    sql = RecordQuery::ReplaceHostTokens(sql); // the condition may name the user ('~UserId~')
    std::unique_ptr<Recordset> rs = gHost->Database().OpenRecordset(dic.DatabaseKind(), sql, 3, 1, 1);
    QStringList keys;
    const bool quoted = dic.DatabaseKind() != 1 && dic.DatabaseKind() != 5;
    for (; !rs->Eof(); rs->MoveNext()) {
        const QVariant v = rs->Fields(0);
        if (v.isNull())
            continue;
        QString k = RecordQuery::ValueText(v);
        if (quoted)
            k = QLatin1Char('\'') + k.replace(QLatin1Char('\''), QLatin1String("''")) + QLatin1Char('\'');
        keys << k;
    }
    rs->Close();
    return keys;
}

std::optional<std::pair<int, int>> ParseShard(const QString& text)
{
    static const QRegularExpression shard(QStringLiteral("^(\\d{1,6})/(\\d{1,6})$"));
    const QRegularExpressionMatch m = shard.match(text.trimmed());
    if (!m.hasMatch())
        return std::nullopt;
    const int i = m.captured(1).toInt(), n = m.captured(2).toInt();
    if (n < 1 || i < 1 || i > n)
        return std::nullopt;
    return std::make_pair(i, n);
}

QStringList Shard(QStringList keys, int index, int count)
{
    std::stable_sort(keys.begin(), keys.end(), [](const QString& a, const QString& b) {
        qlonglong x = 0, y = 0;
        const bool nx = numericKey(a, &x), ny = numericKey(b, &y);
        if (nx && ny)
            return x < y;
        if (nx != ny)
            return nx; // numbers before text
        return a < b;
    });
    const qsizetype n = keys.size();
    const qsizetype from = n * (index - 1) / count, to = n * index / count;
    return keys.mid(from, to - from);
}

} // namespace RenderKeys
