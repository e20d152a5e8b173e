#include "pdf/PdfFonts.h"

#include "entry/Cp1252.h"
#include "pdf/PdfStream.h"

#include <QCryptographicHash>
#include <QFontInfo>
#include <QRawFont>

namespace Pdf {

QByteArray StandardFontName(const QString& family, bool bold, bool italic)
{
    const QString f = family.toLower();
    if (f.contains(QLatin1String("courier")) || f.contains(QLatin1String("mono")) || f.contains(QLatin1String("consol"))) {
        static const char* n[] = {"Courier", "Courier-Bold", "Courier-Oblique", "Courier-BoldOblique"};
        return n[(bold ? 1 : 0) + (italic ? 2 : 0)];
    }
    if (f.contains(QLatin1String("times")) || (f.contains(QLatin1String("serif")) && !f.contains(QLatin1String("sans"))) ||
        f.contains(QLatin1String("georgia")) || f.contains(QLatin1String("garamond")) || f.contains(QLatin1String("roman"))) {
        static const char* n[] = {"Times-Roman", "Times-Bold", "Times-Italic", "Times-BoldItalic"};
        return n[(bold ? 1 : 0) + (italic ? 2 : 0)];
    }
    static const char* n[] = {"Helvetica", "Helvetica-Bold", "Helvetica-Oblique", "Helvetica-BoldOblique"};
    return n[(bold ? 1 : 0) + (italic ? 2 : 0)];
}

FontRegistry& FontRegistry::Global()
{
    static FontRegistry registry;
    return registry;
}

const FontResource& FontRegistry::For(const QFont& font)
{
    const bool bold = font.weight() >= QFont::DemiBold;
    const bool italic = font.italic();
    QString key = font.family();
    key += QLatin1Char(bold ? 'B' : '-');
    key += QLatin1Char(italic ? 'I' : '-');
    {
        std::lock_guard lock(m_mutex);
        if (const auto it = m_byKey.constFind(key); it != m_byKey.cend())
            return **it;
    }
    // Measured outside the lock; two threads meeting a new font at once measure it twice and
    // keep the first.
    auto res = std::make_shared<FontResource>();
    res->name = "/F" + QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha1).toHex().left(8);
    // The widths of the face Qt resolves the family to, at 1000 units per em.
    QFont probe(font.family());
    probe.setBold(bold);
    probe.setItalic(italic);
    probe.setPixelSize(1000);
    const QRawFont raw = QRawFont::fromFont(probe);
    QByteArray widths = "[";
    for (int b = 32; b < 256; ++b) {
        const QString ch = FromCp1252(QByteArray(1, char(b)));
        float w = 0;
        if (raw.isValid() && !ch.isEmpty()) {
            const QList<quint32> glyphs = raw.glyphIndexesForString(ch);
            if (!glyphs.isEmpty() && glyphs[0] != 0)
                w = float(raw.advancesForGlyphIndexes(glyphs).value(0).x());
            else if (b != 32)
                w = res->widths[size_t('?')];
        }
        res->widths[size_t(b)] = w;
        if (b > 32)
            widths += ' ';
        AppendNumber(widths, w, 0);
    }
    widths += ']';
    res->dict = "<</Type/Font/Subtype/Type1/BaseFont/" + StandardFontName(font.family(), bold, italic) +
                "/Encoding/WinAnsiEncoding/FirstChar 32/LastChar 255/Widths " + widths + ">>";
    std::lock_guard lock(m_mutex);
    auto it = m_byKey.constFind(key);
    if (it == m_byKey.cend())
        it = m_byKey.insert(key, std::move(res));
    return **it;
}

const EncodedText& TextCache::Encode(const FontResource& font, const QString& text)
{
    const QPair<const FontResource*, QString> key(&font, text);
    auto it = m_texts.constFind(key);
    if (it != m_texts.cend())
        return *it;
    if (m_texts.size() > 20000) // a merge of many records: names and addresses do not repeat
        m_texts.clear();
    EncodedText e;
    QByteArray bytes = ToCp1252(text);
    // Control characters have no glyph in any of the fonts.
    for (char& c : bytes)
        if (uchar(c) < 32)
            c = ' ';
    double w = 0;
    for (char c : bytes)
        w += font.widths[uchar(c)];
    e.width = w / 1000.0;
    e.count = int(bytes.size());
    AppendString(e.literal, bytes);
    return *m_texts.insert(key, std::move(e));
}

} // namespace Pdf
