#include "document/RdfFile.h"

#include "entry/Cp1252.h"

#include <QtEndian>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

// Smallest possible item record: the fixed fields plus five empty strings.
constexpr qsizetype kMinItemBytes = 54 + 5 * 2;
constexpr qsizetype kMaxItems = 32767; // the document counts items in 16 bits

class Writer {
public:
    explicit Writer(qsizetype reserve) { m_out.reserve(reserve); }

    void u8(quint8 v) { m_out.append(char(v)); }
    void i16(qint16 v) { put(qToLittleEndian(v)); }
    void i32(qint32 v) { put(qToLittleEndian(v)); }
    void u32(quint32 v) { put(qToLittleEndian(v)); }
    void f32(float v)
    {
        quint32 bits;
        std::memcpy(&bits, &v, 4);
        u32(bits);
    }
    void boolean(bool v) { i16(v ? -1 : 0); }
    void bytes(const char* data, qsizetype n) { m_out.append(data, n); }
    void str(const QString& s, const char* what, qsizetype item)
    {
        const QByteArray b = ToCp1252(s);
        if (b.size() > 0xFFFF) {
            const QString where = item > 0 ? QStringLiteral("item %1 %2").arg(item).arg(QLatin1String(what))
                                           : QLatin1String(what);
            throw RdfError(RdfErr::InvalidArgument,
                           QStringLiteral("Text too long to save: %1 is %2 bytes (at most 65535)").arg(where).arg(b.size()));
        }
        const quint16 n = quint16(b.size());
        put(qToLittleEndian(n));
        m_out.append(b);
    }
    QByteArray take() { return std::move(m_out); }

private:
    template <typename T>
    void put(T v) { m_out.append(reinterpret_cast<const char*>(&v), sizeof v); }
    QByteArray m_out;
};

// Every read checks what remains first, so damaged input fails with the offset of the damage.
// Field names are plain C strings: the message is only composed when something fails.
class Reader {
public:
    explicit Reader(const QByteArray& data) : m_p(data.constData()), m_size(data.size()) {}

    qsizetype pos() const { return m_pos; }
    qsizetype remaining() const { return m_size - m_pos; }
    void setItem(qsizetype item) { m_item = item; } // -1: not in an item

    [[noreturn]] void fail(const QString& what, qsizetype at) const
    {
        throw RdfError(HostErr::BadFileFormat, QStringLiteral("Bad file format: %1 at offset %2").arg(what).arg(at));
    }
    QString where(const char* field) const
    {
        return m_item >= 0 ? QStringLiteral("item %1 %2").arg(m_item).arg(QLatin1String(field)) : QLatin1String(field);
    }

    void need(qsizetype n, const char* field) const
    {
        if (n > remaining())
            fail(QStringLiteral("end of file in %1").arg(where(field)), m_pos);
    }

    quint8 u8(const char* field)
    {
        need(1, field);
        return quint8(m_p[m_pos++]);
    }
    qint16 i16(const char* field) { return get<qint16>(field); }
    qint32 i32(const char* field) { return get<qint32>(field); }
    quint32 u32(const char* field) { return get<quint32>(field); }
    float f32(const char* field)
    {
        const quint32 bits = u32(field);
        float v;
        std::memcpy(&v, &bits, 4);
        // NaN or infinity would poison sorting and layout later; no writer produces them.
        if (!std::isfinite(v))
            fail(QStringLiteral("%1 is not a finite number").arg(where(field)), m_pos - 4);
        return v;
    }
    bool boolean(const char* field) { return i16(field) != 0; } // any non-zero reads as true
    QString str(const char* field)
    {
        const quint16 n = get<quint16>(field);
        need(n, field);
        const QString s = FromCp1252(m_p + m_pos, n);
        m_pos += n;
        return s;
    }
    const char* skip(qsizetype n, const char* field)
    {
        need(n, field);
        const char* at = m_p + m_pos;
        m_pos += n;
        return at;
    }

private:
    template <typename T>
    T get(const char* field)
    {
        need(sizeof(T), field);
        const T v = qFromLittleEndian<T>(m_p + m_pos);
        m_pos += sizeof(T);
        return v;
    }
    const char* m_p;
    qsizetype m_size;
    qsizetype m_pos = 0;
    qsizetype m_item = -1;
};

void writeItem(Writer& w, const RdfItem& it, qsizetype index)
{
    w.u8(it.kind);
    w.str(it.name, "Name", index);
    w.u32(it.flags);
    w.u8(it.alignment);
    w.u8(it.borderStyle);
    w.i16(it.borderWidth);
    w.u32(it.borderColor);
    w.str(it.dataField, "DataField", index);
    w.i16(it.dicId);
    w.i16(it.codeType);
    w.str(it.fontName, "FontName", index);
    w.f32(it.fontSize);
    w.u32(it.backColor);
    w.u32(it.foreColor);
    w.u8(it.specialEffect);
    w.str(it.text, "Text", index);
    w.f32(it.top);
    w.f32(it.left);
    w.i32(it.height);
    w.i32(it.width);
    w.i16(it.numberA);
    w.i16(it.numberB);
    w.i16(it.sizeMode);
    w.boolean(it.dataBound);
    w.str(it.formatOrFile, "format/file", index);
}

RdfItem readItem(Reader& r, qsizetype index)
{
    r.setItem(index);
    RdfItem it;
    it.kind = r.u8("kind");
    it.name = r.str("Name");
    it.flags = r.u32("flags");
    it.alignment = r.u8("Alignment");
    it.borderStyle = r.u8("BorderStyle");
    it.borderWidth = r.i16("BorderWidth");
    it.borderColor = r.u32("BorderColor");
    it.dataField = r.str("DataField");
    it.dicId = r.i16("DicId");
    it.codeType = r.i16("code type");
    it.fontName = r.str("FontName");
    it.fontSize = r.f32("FontSize");
    it.backColor = r.u32("BackColor");
    it.foreColor = r.u32("ForeColor");
    it.specialEffect = r.u8("SpecialEffect");
    it.text = r.str("Text");
    it.top = r.f32("Top");
    it.left = r.f32("Left");
    it.height = r.i32("Height");
    it.width = r.i32("Width");
    it.numberA = r.i16("number A");
    it.numberB = r.i16("number B");
    it.sizeMode = r.i16("SizeMode");
    it.dataBound = r.boolean("DataBound");
    it.formatOrFile = r.str("format/file");
    r.setItem(-1);
    return it;
}

} // namespace

QByteArray RdfWrite(const RdfReport& report)
{
    const RdfHeader& h = report.header;
    if (qsizetype(report.items.size()) > kMaxItems)
        throw RdfError(RdfErr::InvalidArgument,
                       QStringLiteral("Too many items to save: %1 (at most %2)").arg(report.items.size()).arg(kMaxItems));
    qsizetype estimate = 256 + qsizetype(report.items.size() + 1) * 128;
    for (const QByteArray& p : report.pictures) {
        if (p.size() > std::numeric_limits<qint32>::max() - 4)
            throw RdfError(RdfErr::InvalidArgument, QStringLiteral("Picture too large to save: %1 bytes").arg(p.size()));
        estimate += 4 + p.size();
    }

    Writer w(estimate);
    w.i32(h.version);
    w.i32(h.headerFlags);
    w.i32(h.reserved3);
    w.i16(h.firstDetailItem);
    w.i16(h.lastDetailItem);
    w.i32(h.detailSize);
    w.i32(h.detailTop);
    w.i32(h.pageFooterTop);
    w.i32(h.reserved9);
    w.i16(h.topMargin);
    w.i16(h.bottomMargin);
    w.i16(h.leftMargin);
    w.i16(h.rightMargin);
    w.u8(h.numberOfColumns);
    w.u8(h.dictionaryVersion);
    w.i16(h.sectionSpacingTwips);
    w.i16(h.reserved17);
    w.i16(h.reportOption);
    w.i32(qint32(report.pictures.size()));
    w.bytes(reinterpret_cast<const char*>(h.reserved20.data()), qsizetype(h.reserved20.size()));
    w.str(h.detailFieldList, "detail field list", 0);
    w.str(h.headerFieldList, "header field list", 0);
    w.str(h.footerFieldList, "footer field list", 0);
    w.str(h.autoFillId, "AutoFillId", 0);

    w.i16(1); // one dimension
    w.i32(qint32(report.items.size() + 1));
    w.i32(0); // lower bound
    writeItem(w, RdfItem{}, 0);
    for (size_t i = 0; i < report.items.size(); ++i)
        writeItem(w, report.items[i], qsizetype(i + 1));

    for (const QByteArray& p : report.pictures) {
        w.i32(qint32(p.size()));
        w.bytes(p.constData(), p.size());
    }
    return w.take();
}

RdfReport RdfRead(const QByteArray& bytes)
{
    Reader r(bytes);
    RdfReport rep;
    RdfHeader& h = rep.header;
    const char* hd = "header";
    h.version = r.i32(hd); // not checked: every version so far has this layout
    h.headerFlags = r.i32(hd);
    h.reserved3 = r.i32(hd);
    h.firstDetailItem = r.i16(hd);
    h.lastDetailItem = r.i16(hd);
    h.detailSize = r.i32(hd);
    h.detailTop = r.i32(hd);
    h.pageFooterTop = r.i32(hd);
    h.reserved9 = r.i32(hd);
    h.topMargin = r.i16(hd);
    h.bottomMargin = r.i16(hd);
    h.leftMargin = r.i16(hd);
    h.rightMargin = r.i16(hd);
    h.numberOfColumns = r.u8(hd);
    h.dictionaryVersion = r.u8(hd);
    h.sectionSpacingTwips = r.i16(hd);
    h.reserved17 = r.i16(hd);
    h.reportOption = r.i16(hd);
    const qsizetype pictureCountAt = r.pos();
    h.pictureCount = r.i32(hd);
    std::memcpy(h.reserved20.data(), r.skip(16, hd), 16);
    h.detailFieldList = r.str("detail field list");
    h.headerFieldList = r.str("header field list");
    h.footerFieldList = r.str("footer field list");
    h.autoFillId = r.str("AutoFillId");

    const char* arr = "item array descriptor";
    const qsizetype dimsAt = r.pos();
    const qint16 dims = r.i16(arr);
    if (dims != 1)
        r.fail(QStringLiteral("item array has %1 dimensions (expected 1)").arg(dims), dimsAt);
    const qsizetype countAt = r.pos();
    const qint32 count = r.i32(arr);
    const qsizetype lowerAt = r.pos();
    const qint32 lower = r.i32(arr);
    if (count < 1)
        r.fail(QStringLiteral("item array has %1 elements (at least 1)").arg(count), countAt);
    if (count - 1 > kMaxItems)
        r.fail(QStringLiteral("item array has %1 elements (at most %2)").arg(count).arg(kMaxItems + 1), countAt);
    if (lower != 0)
        r.fail(QStringLiteral("item array lower bound %1 (expected 0)").arg(lower), lowerAt);
    // Checked before anything is allocated, so a huge count in a small file fails at once.
    if (qint64(count) * kMinItemBytes > r.remaining())
        r.fail(QStringLiteral("%1 items do not fit in the %2 bytes that remain").arg(count).arg(r.remaining()), countAt);

    readItem(r, 0); // the unused element 0: read for its length, its contents are ignored
    rep.items.reserve(size_t(count - 1));
    for (qint32 i = 1; i < count; ++i)
        rep.items.push_back(readItem(r, i));

    if (h.pictureCount < 0)
        r.fail(QStringLiteral("picture count %1").arg(h.pictureCount), pictureCountAt);
    if (qint64(h.pictureCount) * 4 > r.remaining())
        r.fail(QStringLiteral("%1 pictures do not fit in the %2 bytes that remain").arg(h.pictureCount).arg(r.remaining()),
               pictureCountAt);
    rep.pictures.reserve(size_t(h.pictureCount));
    for (qint32 i = 0; i < h.pictureCount; ++i) {
        const qsizetype lengthAt = r.pos();
        const qint32 length = r.i32("picture length");
        if (length < 0 || length > r.remaining())
            r.fail(QStringLiteral("picture %1 length %2 with %3 bytes remaining").arg(i).arg(length).arg(r.remaining()), lengthAt);
        rep.pictures.emplace_back(r.skip(length, "picture"), length);
    }
    // Bytes after the last picture are ignored: older writers padded their files.
    return rep;
}
