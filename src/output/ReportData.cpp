#include "output/ReportData.h"

#include "document/RecordQuery.h"
#include "document/clsRptControl.h"
#include "entry/Host.h"
#include "entry/ReportKinds.h"
#include "render/Format.h"
#include "render/ItemLayout.h"

#include <QFileInfo>
#include <QImageReader>

namespace {

// Entries of a select list: commas inside parentheses or quotes belong to an expression.
QStringList splitSelectList(const QString& list)
{
    QStringList out;
    int depth = 0;
    bool quoted = false;
    qsizetype start = 0;
    for (qsizetype i = 0; i < list.size(); ++i) {
        const QChar c = list[i];
        if (c == QLatin1Char('\''))
            quoted = !quoted;
        else if (!quoted && c == QLatin1Char('('))
            ++depth;
        else if (!quoted && c == QLatin1Char(')'))
            depth = std::max(0, depth - 1);
        else if (!quoted && depth == 0 && c == QLatin1Char(',')) {
            out << list.mid(start, i - start);
            start = i + 1;
        }
    }
    out << list.mid(start);
    out.removeAll(QString());
    return out;
}

// The column name an entry delivers: "expr AS Name" gives Name.
QString entryName(const QString& entry)
{
    const qsizetype as = entry.lastIndexOf(QLatin1String(" AS "), -1, Qt::CaseInsensitive);
    return as >= 0 ? entry.mid(as + 4).trimmed() : entry.trimmed();
}

bool hasColumn(const QStringList& entries, const QString& name)
{
    for (const QString& e : entries)
        if (entryName(e).compare(name, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

bool isFieldKind(int kind) { return kind == RdfKind::Field || kind == RdfKind::FunctionField; }

QString graphicsFolder() { return gHost ? gHost->AppPath() + QStringLiteral("Graphics\\") : QString(); }

} // namespace

namespace {

PictureRef embeddedPicture(const QByteArray& bytes)
{
    try {
        return PictureStore::Global().FromBytes(bytes);
    } catch (const HostError&) {
        return {};
    }
}

} // namespace

ReportData::ReportData(const RdfReport& report, FieldDictionary* dictionary)
    : m_report(report)
    , m_dic(dictionary)
{
    m_columns = composeColumns();
    m_fixedPictures.resize(report.items.size());
    for (size_t i = 0; i < report.items.size(); ++i) {
        const RdfItem& it = report.items[i];
        if (it.kind != RdfKind::Image || it.dataBound)
            continue;
        bool isPos = false;
        const int pos = it.formatOrFile.toInt(&isPos);
        if ((it.flags & RdfFlag::Embedded) && isPos && pos >= 0 && pos < int(report.pictures.size()))
            m_fixedPictures[i] = embeddedPicture(report.pictures[size_t(pos)]);
        else if (!it.formatOrFile.isEmpty())
            m_fixedPictures[i] = loadPicture(LocalPath(ItemLayout::ExpandGraphicsToken(it.formatOrFile, graphicsFolder())));
    }
}

ReportData::~ReportData() = default;

QString ReportData::composeColumns() const
{
    QStringList entries;
    const RdfHeader& h = m_report.header;
    for (const QString& list : {h.headerFieldList, h.detailFieldList, h.footerFieldList})
        for (const QString& e : splitSelectList(list))
            if (!hasColumn(entries, entryName(e)))
                entries << e;
    // A list left empty (a report with a CMA field) or written elsewhere may lack a field:
    // it is added the way the data view selects it.
    bool boundPhoto = false;
    for (const RdfItem& it : m_report.items) {
        if (isFieldKind(it.kind) && !it.dataField.isEmpty()) {
            if (!hasColumn(entries, it.dataField)) {
                if ((it.flags & RdfFlag::Expression) && m_dic) {
                    m_dic->SelectField(it.dicId);
                    entries << m_dic->FieldExpression() + QStringLiteral(" AS ") + it.dataField;
                } else {
                    entries << it.dataField;
                }
            }
            if ((it.flags & RdfFlag::ShortText) && !it.formatOrFile.isEmpty() && (it.codeType == 1 || it.codeType == 2) &&
                !hasColumn(entries, it.formatOrFile))
                entries << it.formatOrFile;
        } else if (it.kind == RdfKind::Image && it.dataBound && it.numberB == 0) {
            boundPhoto = true;
        } else if (it.kind == RdfKind::SubReport) {
            for (const QString& name : SubReportParameters(it.dataField))
                if (!hasColumn(entries, name))
                    entries << name;
        }
    }
    if (boundPhoto && !hasColumn(entries, QStringLiteral("PhotoVersion")))
        entries << QStringLiteral("PhotoVersion");
    return entries.join(QLatin1Char(','));
}

// A picture that cannot be read prints as no picture, as a missing photo does.
PictureRef ReportData::loadPicture(const QString& localPath)
{
    return localPath.isEmpty() ? PictureRef() : PictureStore::Global().TryLoad(localPath);
}

QString ReportData::shownText(const RdfItem& item, const QString& value, bool formatCleared) const
{
    const int formatClass = item.kind == RdfKind::DateTime ? 2 : isFieldKind(item.kind) && !formatCleared ? item.numberA : 0;
    try {
        return ItemLayout::ShownText(value, item.formatOrFile, formatClass);
    } catch (const FormatError&) {
        return QStringLiteral("Error"); // what the item shows when its value cannot be formatted
    }
}

QStringList SubReportParameters(const QString& sql)
{
    QStringList names;
    // Marks pair up left to right; an unpaired last "%" is plain text.
    for (qsizetype a = sql.indexOf(QLatin1Char('%')); a >= 0;) {
        const qsizetype b = sql.indexOf(QLatin1Char('%'), a + 1);
        if (b < 0)
            break;
        names << sql.mid(a + 1, b - a - 1);
        a = sql.indexOf(QLatin1Char('%'), b + 1);
    }
    return names;
}

QString SubReportStatement(const QString& sql, const std::function<QString(const QString&)>& value)
{
    QString out;
    qsizetype pos = 0;
    for (qsizetype a = sql.indexOf(QLatin1Char('%')); a >= 0;) {
        const qsizetype b = sql.indexOf(QLatin1Char('%'), a + 1);
        if (b < 0)
            break;
        // Doubling quotes keeps a value inside the quotes the statement puts round it.
        QString v = value(sql.mid(a + 1, b - a - 1));
        v.replace(QLatin1Char('\''), QLatin1String("''"));
        out += sql.mid(pos, a - pos) + v;
        pos = b + 1;
        a = sql.indexOf(QLatin1Char('%'), pos);
    }
    return RecordQuery::ReplaceHostTokens(out + sql.mid(pos));
}

QString ReportData::subReportText(const RdfItem& item, const Recordset* record) const
{
    if (item.dataField.trimmed().isEmpty() || !gHost)
        return {};
    const QString sql = SubReportStatement(item.dataField, [record](const QString& name) {
        if (!record || !record->HasField(name))
            return QString();
        const QVariant v = record->Fields(name);
        return v.isNull() ? QString() : RecordQuery::ValueText(v);
    });
    try {
        std::unique_ptr<Recordset> rows = gHost->Database().OpenRecordset(m_dic ? m_dic->DatabaseKind() : 1, sql, 3, 1, 1);
        QStringList lines;
        for (; !rows->Eof(); rows->MoveNext()) {
            QStringList cells;
            for (int c = 0; c < rows->FieldCount(); ++c) {
                const QVariant v = rows->Fields(c);
                cells << (v.isNull() ? QString() : RecordQuery::ValueText(v));
            }
            lines << cells.join(QLatin1String("   "));
        }
        return lines.join(QLatin1Char('\n'));
    } catch (const HostError& e) {
        // One bad sub-report shows its error where it stands; the rest of the page still prints.
        return e.Text();
    }
}

void ReportData::ApplyTotals(std::vector<RecordValues>& records) const
{
    enum { Sum = 1, Average, Minimum, Maximum, Count };
    for (size_t i = 0; i < m_report.items.size(); ++i) {
        const RdfItem& it = m_report.items[i];
        const int fn = it.numberB;
        if (it.kind != RdfKind::FunctionField || fn < Sum || fn > Count)
            continue;
        double sum = 0, low = 0, high = 0;
        int numbers = 0, filled = 0;
        for (const RecordValues& r : records) {
            const QString& v = r.raw[i];
            if (v.isEmpty())
                continue;
            ++filled;
            bool ok = false;
            const double d = v.toDouble(&ok);
            if (!ok)
                continue; // text cannot be added up
            sum += d;
            low = numbers ? std::min(low, d) : d;
            high = numbers ? std::max(high, d) : d;
            ++numbers;
        }
        QString text;
        if (fn == Count)
            text = QString::number(filled); // a count is a count, whatever the field's format
        else if (numbers > 0) {
            const double v = fn == Sum ? sum : fn == Average ? sum / numbers : fn == Minimum ? low : high;
            text = shownText(it, QString::number(v, 'g', 15), false);
        }
        for (RecordValues& r : records)
            r.texts[i] = text;
    }
}

void ReportData::Blank(RecordValues& values) const
{
    const size_t n = m_report.items.size();
    values.raw.assign(n, QString());
    values.texts.assign(n, QString());
    values.pictures = m_fixedPictures;
    const QString now = RecordQuery::NowText();
    for (size_t i = 0; i < n; ++i) {
        const RdfItem& it = m_report.items[i];
        if (it.kind == RdfKind::DateTime)
            values.texts[i] = shownText(it, now, false);
        else if (it.kind == RdfKind::Label)
            values.texts[i] = it.text;
    }
}

bool ReportData::Fetch(const QString& key, RecordValues& values)
{
    const size_t n = m_report.items.size();
    values.texts.assign(n, QString());
    values.raw.assign(n, QString());
    values.pictures = m_fixedPictures;

    std::unique_ptr<Recordset> rs;
    if (!m_columns.isEmpty()) {
        if (!m_dic)
            throw HostError(HostErr::NoSuchField, QStringLiteral("The report needs data but no field dictionary is open"));
        const int kind = m_dic->DatabaseKind();
        if (!clsRptControl::KeyIsSafe(kind, key))
            throw HostError(HostErr::SqlSyntax, QStringLiteral("The record key %1 is not a valid key for this report").arg(key));
        rs = gHost->Database().OpenRecordset(kind, RecordQuery::SelectRecord(*m_dic, m_columns, key), 3, 1, 1);
        if (rs->RecordCount() == 0)
            return false;
    }
    const QString now = RecordQuery::NowText();
    for (size_t i = 0; i < n; ++i) {
        const RdfItem& it = m_report.items[i];
        if (isFieldKind(it.kind)) {
            RecordQuery::FieldText t;
            if (rs && rs->HasField(it.dataField))
                t = RecordQuery::DecodeField(*rs, *m_dic, it.dataField, it.codeType, it.flags & RdfFlag::ShortText,
                                             rs->HasField(it.formatOrFile) ? it.formatOrFile : QString());
            values.texts[i] = shownText(it, t.text, t.formatCleared);
            values.raw[i] = t.text;
        } else if (it.kind == RdfKind::DateTime) {
            values.texts[i] = shownText(it, now, false);
        } else if (it.kind == RdfKind::Label) {
            values.texts[i] = it.text;
        } else if (it.kind == RdfKind::SubReport) {
            values.texts[i] = subReportText(it, rs.get());
        } else if (it.kind == RdfKind::Image && it.dataBound) {
            if (!m_photoLookup) {
                m_photoLookup = std::make_unique<clsRptControl>();
                m_photoLookup->Init(m_dic, nullptr, nullptr);
            }
            QString version;
            if (rs && rs->HasField(QStringLiteral("PhotoVersion"))) {
                const QVariant v = rs->Fields(QStringLiteral("PhotoVersion"));
                version = v.isNull() ? QString() : RecordQuery::ValueText(v);
            }
            values.pictures[i] = loadPicture(m_photoLookup->GetBoundPhotoFile(key, it.numberA, version, it.numberB));
        }
    }
    if (rs)
        rs->Close();
    return true;
}
