#pragma once
// Text in the PDF: report text is Windows-1252, so every font is a simple font with
// WinAnsiEncoding. The standard fonts stand in for the families reports use (Arial and
// Liberation Sans for Helvetica, Times New Roman for Times, Courier New for Courier: the same
// metrics), with the /Widths of the font Qt actually laid the text out with, so viewers place
// the letters where the painter did, and search finds the words as typed.
//
// Pages may be painted on several threads at once: the fonts are one process-wide registry
// (safe from any thread), and a font's resource name comes from what it is, not from when a
// page first used it, so the file's bytes do not depend on which page finished first.
#include <QByteArray>
#include <QFont>
#include <QHash>
#include <QString>
#include <array>
#include <memory>
#include <mutex>

namespace Pdf {

struct FontResource {
    QByteArray name;                    // "/F3a91c07e", from the family and style
    QByteArray dict;                    // the font dictionary, written once per file
    std::array<float, 256> widths{};    // per byte, in 1/1000 em
};

// The encoded text of one run and its width at a font size of 1.
struct EncodedText {
    QByteArray literal; // "(...)"
    double width = 0;
    int count = 0;      // characters
};

class FontRegistry {
public:
    static FontRegistry& Global();
    // The resource for a font; the same object for as long as the process runs.
    const FontResource& For(const QFont& font);

private:
    std::mutex m_mutex;
    QHash<QString, std::shared_ptr<const FontResource>> m_byKey;
};

// Encodings kept by one thread: runs that repeat (the labels of every page) are encoded once.
// Fonts live as long as the process, so their addresses are safe keys.
class TextCache {
public:
    // Text in the font's encoding; characters outside Windows-1252 become "?".
    const EncodedText& Encode(const FontResource& font, const QString& text);

private:
    QHash<QPair<const FontResource*, QString>, EncodedText> m_texts;
};

// The standard font standing for a family, e.g. "Helvetica-Bold" for Arial bold.
QByteArray StandardFontName(const QString& family, bool bold, bool italic);

} // namespace Pdf
