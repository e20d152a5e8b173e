#pragma once
// Values as the classic sequential-file Print statement writes them, for the report's text
// dump: strings as they are, booleans "True"/"False", numbers in the Str form (a blank or
// "-" for the sign, no leading zero before the point: " .25") followed by one blank.
// Lines end in CR LF and the text is Windows-1252, as the Windows program wrote them.
#include <QByteArray>
#include <QString>

// The Str form of a number: the shortest general form with up to 7 significant digits for a
// Single (isSingle) and 15 for a Double, which also holds every 16- and 32-bit integer.
// Exponent form ("1E+07", "1.234568E+07", "1E-05") below 0.0001 and from 10^precision up.
// Examples: " 5", "-12.5", " .25", "-.5", " 0".
QString VbPrintNumber(double v, bool isSingle);

// Collects the dump's lines in memory; nothing touches the disk until SaveFile.
class VbPrintWriter {
public:
    void Line(const QString& text);                                           // Print #f, text
    void Text(const QString& label, const QString& value);                    // Print #f, label; value
    void Number(const QString& label, double value, bool isSingle = false);   // Print #f, label; value
    void Boolean(const QString& label, bool value);                           // Print #f, label; value

    bool IsEmpty() const { return m_text.isEmpty(); }
    QString Contents() const { return m_text; }
    QByteArray Bytes() const;

    // Replaces the file at path with the lines. With no lines nothing is written and no file
    // is created or touched; returns false then. Throws RdfError when the file cannot be written.
    bool SaveFile(const QString& path) const;

private:
    QString m_text;
};
