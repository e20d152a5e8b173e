#include "document/RecordQuery.h"

#include "entry/Host.h"
#include "render/Format.h"

#include <QDateTime>

namespace RecordQuery {

QString ReplaceHostTokens(QString sql)
{
    if (!gHost)
        return sql;
    sql.replace(QLatin1String("'~AccessKey~'"), gHost->AccessKey(), Qt::CaseSensitive);
    sql.replace(QLatin1String("'~UserId~'"), QLatin1Char('\'') + gHost->AgentId() + QLatin1Char('\''), Qt::CaseSensitive);
    return sql;
}

QString ValueText(const QVariant& v)
{
    switch (v.typeId()) {
    case QMetaType::QDate:
    case QMetaType::QDateTime:
    case QMetaType::QTime:
        // A Date/Time value reads as the classic engine's text of it: "6/18/2024", "6/18/2024 7:09:45 PM".
        if (v.isNull())
            return QString();
        try {
            return Format(v, QStringLiteral("General Date"));
        } catch (const FormatError&) {
            return v.toString(); // before the year 100: the ISO form rather than nothing
        }
    case QMetaType::Bool:
        return v.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    default:
        break;
    }
    // Whole numbers come back from the database as integers or reals; show them without ".0".
    if (v.typeId() == QMetaType::Double) {
        const double d = v.toDouble();
        if (d == double(qint64(d)))
            return QString::number(qint64(d));
        return QString::number(d, 'g', 15);
    }
    return v.toString();
}

QString NowText()
{
    return Format(QDateTime::currentDateTime(), QStringLiteral("General Date"));
}

namespace {

QString selectWhere(FieldDictionary& dic, const QString& columns, const QString& condition)
{
    const int kind = dic.DatabaseKind();
    const bool photo = (QLatin1Char(',') + columns + QLatin1Char(',')).contains(QLatin1String(",PhotoVersion,"));
    QString join;
    if (kind == 1 && photo)
        join = QStringLiteral(" LEFT JOIN Photo ON Listings.Listnum = Photo.PhoListnum");
    else if (kind == 5 && photo)
        join = QStringLiteral(" LEFT JOIN Photo ON Rentals.Listnum = Photo.PhoListnum");
    QString sql = QStringLiteral("SELECT ") + columns + QStringLiteral(" FROM ") + dic.TableName() + join +
                  QStringLiteral(" WHERE ") + condition + QLatin1Char(';');
    const QString statusList = gHost ? gHost->StatusList() : QString();
    if (kind == 1 && !statusList.isEmpty()) {
        sql.chop(1);
        sql += QStringLiteral(" AND CLng(LstStatus) NOT IN (") + statusList + QStringLiteral(");");
    }
    return ReplaceHostTokens(sql);
}

} // namespace

QString SelectRecord(FieldDictionary& dic, const QString& columns, const QString& key)
{
    return selectWhere(dic, columns, dic.KeyField() + QStringLiteral(" = ") + key);
}

QString SelectRecords(FieldDictionary& dic, const QString& columns, const QStringList& keys)
{
    return selectWhere(dic, columns, dic.TableName() + QLatin1Char('.') + dic.KeyField() + QStringLiteral(" IN (") +
                                         keys.join(QLatin1Char(',')) + QLatin1Char(')'));
}

FieldText DecodeField(const Recordset& rs, const FieldDictionary& dic, const QString& dataField, int codeType,
                      bool useShortText, const QString& second)
{
    FieldText out;
    const QVariant v = rs.Fields(dataField);
    if (v.isNull())
        return out;
    const QString s = ValueText(v);
    const bool coded = codeType == 1 || codeType == 2;
    if (!coded) {
        out.text = s;
    } else if (!useShortText) {
        out.text = dic.DecodeLong(s);
    } else if (second.isEmpty()) {
        out.text = dic.DecodeShort(s);
    } else {
        out.formatCleared = true;
        out.text = dic.DecodeLong(s);
        const QVariant v2 = rs.Fields(second);
        if (!v2.isNull())
            out.text = out.text.isEmpty() ? ValueText(v2) : out.text + QStringLiteral(", ") + ValueText(v2);
    }
    return out;
}

} // namespace RecordQuery
