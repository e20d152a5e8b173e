#pragma once
// Text in the PDF: report text is Windows-1252, so every font is a simple font with
// WinAnsiEncoding. The standard fonts stand in for the families reports use (Arial and
// Liberation Sans for Helvetica, Times New Roman for Times, Courier New for Courier: the same
// metrics), with the /Widths of the font Qt actually laid the text out with, so viewers place
// the letters where the painter did, and search finds the words as typed.
#include <QByteArray>
#include <QFont>
#include <QHash>
#include <QString>
#include <array>
#include <memory>
#include <vector>

namespace Pdf {

class Writer;

struct FontResource {
    QByteArray name;                    // "/F1"
    int object = 0;
    std::array<float, 256> widths{};    // per byte, in 1/1000 em
};

// The encoded text of one run and its width at a font size of 1.
struct EncodedText {
    QByteArray literal; // "(...)"
    double width = 0;
    int count = 0;      // characters
};

class Fonts {
public:
    // The resource for a font, written to the file on first use.
    const FontResource& For(const QFont& font, Writer& writer);
    // Text in the font's encoding; characters outside Windows-1252 become "?". Runs that
    // repeat (the labels of every page) are encoded once.
    const EncodedText& Encode(const FontResource& font, const QString& text);
    // "/F1 5 0 R/F2 9 0 R" for the resource dictionary.
    QByteArray ResourceEntries() const;

    // The standard font standing for a family, e.g. "Helvetica-Bold" for Arial bold.
    static QByteArray StandardName(const QString& family, bool bold, bool italic);

private:
    std::vector<std::unique_ptr<FontResource>> m_fonts;
    QHash<QString, FontResource*> m_byKey;
    QHash<QPair<const FontResource*, QString>, EncodedText> m_texts;
};

} // namespace Pdf
