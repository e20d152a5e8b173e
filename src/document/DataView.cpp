// Template view and data view: the composed SELECT, decoding, and bound photos.
#include "document/clsRptControl.h"
#include "document/RecordQuery.h"

#include "entry/Host.h"
#include "entry/Prompts.h"
#include "entry/ReportKinds.h"

#include <QDateTime>
#include <QFileInfo>

namespace {

QString replaceTokens(const QString& sql) { return RecordQuery::ReplaceHostTokens(sql); }
QString valueText(const QVariant& v) { return RecordQuery::ValueText(v); }
QString nowText() { return RecordQuery::NowText(); }

void refuseUnsafeKey(int kind, const QString& key)
{
    if (!clsRptControl::KeyIsSafe(kind, key))
        throw HostError(HostErr::SqlSyntax, QStringLiteral("The record key %1 is not a valid key for this report").arg(key));
}

} // namespace

bool clsRptControl::KeyIsSafe(int databaseKind, const QString& key)
{
    if (key.isEmpty())
        return false;
    if (databaseKind == 1 || databaseKind == 5) {
        for (const QChar c : key)
            if (!c.isDigit() || c.unicode() > 127)
                return false;
        return key.size() <= 18;
    }
    // 'text' with every inner quote doubled.
    if (key.size() < 2 || !key.startsWith(QLatin1Char('\'')) || !key.endsWith(QLatin1Char('\'')))
        return false;
    const QString inner = key.mid(1, key.size() - 2);
    for (qsizetype i = 0; i < inner.size(); ++i) {
        if (inner[i] == QLatin1Char('\'')) {
            if (i + 1 >= inner.size() || inner[i + 1] != QLatin1Char('\''))
                return false;
            ++i;
        }
    }
    return true;
}

void clsRptControl::SetView(int view)
{
    for (ItemRecord& r : m_items) {
        QObject* c = r.control;
        if (r.ObjectType == ObjType::Field || r.ObjectType == ObjType::DateTime) {
            if (view == 0) {
                r.Text = Prop(c, "Text").toString();
                SetProp(c, "Text", r.Name);
            } else {
                SetProp(c, "Text", r.Text);
            }
        } else if (r.ObjectType == ObjType::Image && Prop(c, "DataBound").toBool()) {
            if (view == 0)
                SetProp(c, "Picture", QVariant());
            else
                SetProp(c, "FileName", GetBoundPhotoFile(AutoFillId, Prop(c, "PhotoSeq").toInt(), QString(), Prop(c, "Category").toInt()));
        }
    }
    DataView = view != 0;
}

bool clsRptControl::RefreshData(const QString& key, int first, int last)
{
    if (first == 0)
        first = 1;
    if (last == 0)
        last = RptItemCount();
    last = std::min(last, RptItemCount());

    QString list = QStringLiteral(",");
    for (int i = first; i <= last; ++i) {
        ItemRecord& r = ItemRef(i);
        QObject* c = r.control;
        if (r.ObjectType == ObjType::Field) {
            const QString& name = r.DataField;
            if (!list.contains(QLatin1Char(',') + name + QLatin1Char(','), Qt::CaseSensitive)) {
                if (r.HasExpression() && m_dic) {
                    m_dic->SelectField(r.DicId);
                    list += m_dic->FieldExpression() + QStringLiteral(" AS ") + name + QLatin1Char(',');
                } else {
                    list += name + QLatin1Char(',');
                }
            }
            const QString second = Prop(c, "DataFormat").toString();
            if (Prop(c, "UseShortText").toBool() && !second.isEmpty() && (r.CodeType == 1 || r.CodeType == 2) &&
                !list.contains(QLatin1Char(',') + second + QLatin1Char(','), Qt::CaseInsensitive))
                list += second + QLatin1Char(',');
        } else if (r.ObjectType == ObjType::Image) {
            if (!list.contains(QLatin1String(",PhotoVersion,")))
                list += QStringLiteral("PhotoVersion,");
        } else if (r.ObjectType == ObjType::DateTime) {
            r.Text = nowText();
            if (DataView)
                SetProp(c, "Text", r.Text);
        }
    }
    if (list == QLatin1String(","))
        return true;

    const int kind = m_dic ? m_dic->DatabaseKind() : 1;
    refuseUnsafeKey(kind, key);
    const QString columns = list.mid(1, list.size() - 2);
    const QString sql = RecordQuery::SelectRecord(*m_dic, columns, key);

    std::unique_ptr<Recordset> rs = m_db->OpenRecordset(kind, sql, 3, 1, 1);
    if (rs->RecordCount() == 0)
        return false;

    for (int i = first; i <= last; ++i) {
        ItemRecord& r = ItemRef(i);
        QObject* c = r.control;
        if (r.ObjectType == ObjType::Field) {
            const RecordQuery::FieldText t = RecordQuery::DecodeField(*rs, *m_dic, r.DataField, r.CodeType,
                                                                      Prop(c, "UseShortText").toBool(), Prop(c, "DataFormat").toString());
            if (t.formatCleared)
                SetProp(c, "FormatClass", 0);
            r.Text = t.text;
            if (DataView)
                SetProp(c, "Text", r.Text);
        } else if (r.ObjectType == ObjType::Image && Prop(c, "DataBound").toBool()) {
            if (!DataView) {
                SetProp(c, "Picture", QVariant());
            } else {
                const QVariant ver = rs->Fields(QStringLiteral("PhotoVersion"));
                SetProp(c, "FileName", GetBoundPhotoFile(key, Prop(c, "PhotoSeq").toInt(), ver.isNull() ? QString() : valueText(ver),
                                                         Prop(c, "Category").toInt()));
            }
        }
    }
    rs->Close();
    return true;
}

void clsRptControl::ClearTextdata()
{
    for (ItemRecord& r : m_items)
        if (r.ObjectType == ObjType::Field)
            r.Text.clear();
}

void clsRptControl::ClearDataView()
{
    for (ItemRecord& r : m_items)
        if (r.ObjectType == ObjType::Field) {
            r.Text.clear();
            SetProp(r.control, "Text", QString());
        }
}

QString clsRptControl::GetFieldValue(const QString& column, int codeType, bool hasExpression, bool useShortText)
{
    try {
        const int kind = m_dic->DatabaseKind();
        refuseUnsafeKey(kind, AutoFillId);
        QString filter;
        const QString statusList = gHost ? gHost->StatusList() : QString();
        if (kind == 1 && !statusList.isEmpty())
            filter = QStringLiteral(" AND CLng(LstStatus) NOT IN (") + statusList + QLatin1Char(')');
        QString sql;
        if (hasExpression) {
            m_dic->SelectFieldByName(column);
            sql = QStringLiteral("SELECT ") + m_dic->FieldExpression() + QStringLiteral(" AS ") + column;
        } else {
            sql = QStringLiteral("SELECT ") + column;
        }
        sql += QStringLiteral(" FROM ") + m_dic->TableName() + QStringLiteral(" WHERE ") + m_dic->KeyField() + QStringLiteral(" = ") +
               AutoFillId + filter + QLatin1Char(';');
        std::unique_ptr<Recordset> rs = m_db->OpenRecordset(kind, replaceTokens(sql), 3, 1, 1);
        const QVariant v = rs->Fields(column);
        if (v.isNull())
            return QString();
        const QString s = valueText(v);
        if (codeType != 1 && codeType != 2)
            return s;
        return useShortText ? m_dic->DecodeShort(s) : m_dic->DecodeLong(s);
    } catch (const std::exception&) {
        MsgBox(QStringLiteral("Error - Unable to retrieve data for ") + AutoFillId, Mb::OKOnly | Mb::Exclamation, QStringLiteral("Report design"));
        return QString();
    }
}

// ---------------------------------------------------------------- photos

QString clsRptControl::GetBoundPhotoFile(const QString& listNum, int photoSeq, const QString& photoVersion, int category)
{
    if (category != 0)
        return GetAgentPhoto(listNum, category, photoSeq);
    if (!KeyIsSafe(1, listNum) && !KeyIsSafe(5, listNum))
        return QString();
    QString version = photoVersion;
    if (version.isEmpty()) {
        auto rs = m_db->OpenRecordset(1, QStringLiteral("SELECT PhotoVersion FROM Photo WHERE PhoListNum = ") + listNum + QLatin1Char(';'), 3, 1, 1);
        if (rs->RecordCount() > 0) {
            const QVariant v = rs->Fields(QStringLiteral("PhotoVersion"));
            version = v.isNull() ? QString() : valueText(v);
        }
        rs->Close();
    }
    const PhotoResult r = gHost->PhotoService().GetPhotoFile(*gHost, listNum, photoSeq, version, 0);
    return r.status == 1 ? QString() : LocalPath(r.path);
}

QString clsRptControl::GetAgentPhoto(const QString& listNum, int category, int)
{
    QString base, rosterId;
    int rosterKind = 0;
    if ((category == 1 || category == 2) && KeyIsSafe(1, listNum)) {
        const QString column = category == 1 ? QStringLiteral("ListAgentName") : QStringLiteral("SaleAgentName");
        m_dic->SelectFieldByName(column);
        const QString expr = m_dic->FieldExpression();
        const QString sql = expr.isEmpty()
                                ? QStringLiteral("SELECT ") + column + QStringLiteral(" FROM Listings WHERE ListNum = ") + listNum + QLatin1Char(';')
                                : QStringLiteral("SELECT ") + expr + QStringLiteral(" AS ") + column + QStringLiteral(" FROM Listings WHERE ListNum = ") + listNum + QLatin1Char(';');
        auto rs = m_db->OpenRecordset(1, sql, 3, 1, 1);
        if (rs->RecordCount() > 0) {
            const QVariant v = rs->Fields(column);
            base = v.isNull() ? QString() : valueText(v);
        }
        rs->Close();
    } else if (category == 3) {
        base = gHost->UserName();
        rosterId = gHost->AgentId();
        rosterKind = 1;
    } else if (category == 4) {
        base = rosterId = gHost->OfficeId();
        rosterKind = 2;
    }
    const QString graphics = gHost->AppPath() + QStringLiteral("Graphics\\");
    for (const char* ext : {".jpg", ".bmp"}) {
        const QString path = graphics + base + QLatin1String(ext);
        if (QFileInfo::exists(LocalPath(path)))
            return LocalPath(path);
    }
    if (category == 3 || category == 4) {
        const PhotoResult r = gHost->PhotoService().GetPhotoFile(*gHost, rosterId, rosterKind, QStringLiteral("GetRosterPhoto"));
        return r.status == 1 ? QString() : LocalPath(r.path);
    }
    return QString();
}
