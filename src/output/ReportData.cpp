#include "output/ReportData.h"

#include "document/RecordQuery.h"
#include "document/clsRptControl.h"
#include "entry/Host.h"
#include "entry/ReportKinds.h"
#include "render/Format.h"
#include "render/ItemLayout.h"

#include <QRegularExpression>
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

namespace {

// A record value where the statement has a bare placeholder: a plain number stays a number,
// no value is Null, and anything else becomes a quoted literal, so no value can add SQL.
QString bareLiteral(const QString& v)
{
    static const QRegularExpression number(QStringLiteral("^-?[0-9]{1,15}(\\.[0-9]{1,15})?$"));
    if (v.isEmpty())
        return QStringLiteral("Null");
    if (number.match(v).hasMatch())
        return v;
    QString q = v;
    return QLatin1Char('\'') + q.replace(QLatin1Char('\''), QLatin1String("''")) + QLatin1Char('\'');
}

bool isPlaceholderName(QStringView name)
{
    // "50% and 60%" in a Like pattern is not a placeholder.
    if (name.isEmpty() || name.front().isSpace() || name.back().isSpace())
        return false;
    for (QChar c : name)
        if (!(c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char(' ') || c == QLatin1Char('.')))
            return false;
    return true;
}

} // namespace

QString SubReportStatement(const QString& sqlIn, const std::function<QString(const QString&)>& value)
{
    // The host's tokens first: a record value that happens to spell one must stay text.
    const QString sql = RecordQuery::ReplaceHostTokens(sqlIn);
    // The placeholder's surroundings decide the form of the value: inside '...' or "..." it
    // joins that literal with that quote doubled, inside [...] it cannot close the name, and
    // bare it is a literal of its own (see bareLiteral). Quotes are tracked as the Jet
    // tokenizer reads them, so a value can never end a literal early.
    QString out;
    out.reserve(sql.size());
    QChar quote; // '\'', '"', '[' while inside one; null outside
    const qsizetype n = sql.size();
    for (qsizetype i = 0; i < n; ++i) {
        const QChar c = sql[i];
        if (c == QLatin1Char('%')) {
            const qsizetype close = sql.indexOf(QLatin1Char('%'), i + 1);
            if (close > i && isPlaceholderName(QStringView(sql).mid(i + 1, close - i - 1))) {
                QString v = value(sql.mid(i + 1, close - i - 1));
                if (quote.isNull())
                    out += bareLiteral(v);
                else if (quote == QLatin1Char('['))
                    out += v.remove(QLatin1Char(']'));
                else
                    out += v.replace(quote, QString(2, quote));
                i = close;
                continue;
            }
        }
        out += c;
        if (quote.isNull()) {
            if (c == QLatin1Char('\'') || c == QLatin1Char('"') || c == QLatin1Char('['))
                quote = c;
        } else if (quote == QLatin1Char('[') ? c == QLatin1Char(']') : c == quote) {
            if (quote != QLatin1Char('[') && i + 1 < n && sql[i + 1] == quote)
                out += sql[++i]; // a doubled quote stays inside the literal
            else
                quote = QChar();
        }
    }
    return out;
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

ReportTotals::ReportTotals(const RdfReport& report)
{
    for (size_t i = 0; i < report.items.size(); ++i) {
        const RdfItem& it = report.items[i];
        if (it.kind != RdfKind::FunctionField || it.numberB < Sum || it.numberB > Count)
            continue;
        Total t;
        t.item = i;
        t.function = it.numberB;
        m_totals.push_back(t);
    }
}

void ReportTotals::Add(const RecordValues& r)
{
    for (Total& t : m_totals) {
        const QString& v = t.item < r.raw.size() ? r.raw[t.item] : QString();
        if (v.isEmpty())
            continue;
        ++t.filled;
        bool ok = false;
        const double d = v.toDouble(&ok);
        if (!ok)
            continue; // text cannot be added up
        t.sum += d;
        t.low = t.numbers ? std::min(t.low, d) : d;
        t.high = t.numbers ? std::max(t.high, d) : d;
        ++t.numbers;
    }
}

void ReportTotals::Finish(const ReportData& data)
{
    for (Total& t : m_totals) {
        if (t.function == Count)
            t.text = QString::number(t.filled); // a count is a count, whatever the field's format
        else if (t.numbers > 0) {
            const double v = t.function == Sum ? t.sum : t.function == Average ? t.sum / t.numbers : t.function == Minimum ? t.low : t.high;
            t.text = data.ShownText(t.item, QString::number(v, 'g', 15));
        }
    }
}

void ReportTotals::Apply(RecordValues& r) const
{
    for (const Total& t : m_totals)
        if (t.item < r.texts.size())
            r.texts[t.item] = t.text;
}

QString ReportData::ShownText(size_t item, const QString& value) const
{
    return shownText(m_report.items[item], value, false);
}

void ReportData::ApplyTotals(std::vector<RecordValues>& records) const
{
    ReportTotals totals(m_report);
    for (const RecordValues& r : records)
        totals.Add(r);
    totals.Finish(*this);
    for (RecordValues& r : records)
        totals.Apply(r);
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

namespace {

// The key as the database gives it back, to match rows with the keys asked for: numbers
// without leading zeros, text keys without their quotes.
QString keyText(const QString& key, bool quoted)
{
    if (!quoted) {
        bool ok = false;
        const qlonglong n = key.toLongLong(&ok);
        return ok ? QString::number(n) : key;
    }
    QString inner = key.mid(1, key.size() - 2);
    return inner.replace(QLatin1String("''"), QLatin1String("'"));
}

const QString kKeyColumn = QStringLiteral("PwRecordKey");

} // namespace

void ReportData::checkKey(const QString& key) const
{
    if (!m_dic)
        throw HostError(HostErr::NoSuchField, QStringLiteral("The report needs data but no field dictionary is open"));
    if (!clsRptControl::KeyIsSafe(m_dic->DatabaseKind(), key))
        throw HostError(HostErr::SqlSyntax, QStringLiteral("The record key %1 is not a valid key for this report").arg(key));
}

bool ReportData::Fetch(const QString& key, RecordValues& values)
{
    std::unique_ptr<Recordset> rs;
    if (!m_columns.isEmpty()) {
        checkKey(key);
        rs = gHost->Database().OpenRecordset(m_dic->DatabaseKind(), RecordQuery::SelectRecord(*m_dic, m_columns, key), 3, 1, 1);
        if (rs->RecordCount() == 0)
            return false;
    }
    decodeRow(key, rs.get(), values, true);
    LoadPictures(values);
    if (rs)
        rs->Close();
    return true;
}

void ReportData::FetchMany(const QStringList& keys, std::vector<std::optional<RecordValues>>& out, bool pictures)
{
    out.clear();
    out.resize(size_t(keys.size()));
    if (keys.isEmpty())
        return;
    if (m_columns.isEmpty()) {
        for (size_t k = 0; k < out.size(); ++k)
            decodeRow(keys[qsizetype(k)], nullptr, out[k].emplace(), pictures);
        return;
    }
    for (const QString& key : keys)
        checkKey(key);
    const int kind = m_dic->DatabaseKind();
    const bool quoted = kind != 1 && kind != 5;
    // Each distinct key once in the statement; repeats print again from the same row.
    QStringList distinct;
    QHash<QString, std::vector<size_t>> wanted;
    for (qsizetype k = 0; k < keys.size(); ++k) {
        const QString t = keyText(keys[k], quoted);
        auto& places = wanted[t];
        if (places.empty())
            distinct << keys[k];
        places.push_back(size_t(k));
    }
    const QString columns = m_columns + QLatin1Char(',') + m_dic->TableName() + QLatin1Char('.') + m_dic->KeyField() +
                            QStringLiteral(" AS ") + kKeyColumn;
    std::unique_ptr<Recordset> rs = gHost->Database().OpenRecordset(kind, RecordQuery::SelectRecords(*m_dic, columns, distinct), 3, 1, 1);
    for (; !rs->Eof(); rs->MoveNext()) {
        const QString value = RecordQuery::ValueText(rs->Fields(kKeyColumn));
        auto it = wanted.find(quoted ? value : keyText(value, false));
        if (it == wanted.end() || it->empty())
            continue;
        const std::vector<size_t>& places = *it;
        RecordValues& first = out[places[0]].emplace();
        decodeRow(keys[qsizetype(places[0])], rs.get(), first, pictures);
        for (size_t s = 1; s < places.size(); ++s)
            out[places[s]] = first;
        it->clear(); // a key matches one record
    }
    rs->Close();
}

void ReportData::LoadPictures(RecordValues& values)
{
    for (size_t i = 0; i < values.pictureFiles.size() && i < values.pictures.size(); ++i)
        if (!values.pictureFiles[i].isEmpty())
            values.pictures[i] = loadPicture(values.pictureFiles[i]);
}

void ReportData::decodeRow(const QString& key, const Recordset* rs, RecordValues& values, bool pictures)
{
    const size_t n = m_report.items.size();
    values.texts.assign(n, QString());
    values.raw.assign(n, QString());
    values.pictures = m_fixedPictures;
    values.pictureFiles.assign(n, QString());
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
            values.texts[i] = subReportText(it, rs);
        } else if (it.kind == RdfKind::Image && it.dataBound && pictures) {
            if (!m_photoLookup) {
                m_photoLookup = std::make_unique<clsRptControl>();
                m_photoLookup->Init(m_dic, nullptr, nullptr);
            }
            QString version;
            if (rs && rs->HasField(QStringLiteral("PhotoVersion"))) {
                const QVariant v = rs->Fields(QStringLiteral("PhotoVersion"));
                version = v.isNull() ? QString() : RecordQuery::ValueText(v);
            }
            // Decoded later, one record at a time (LoadPictures): a chunk of records must not
            // hold a chunk of decoded photos.
            values.pictureFiles[i] = m_photoLookup->GetBoundPhotoFile(key, it.numberA, version, it.numberB);
        }
    }
}
