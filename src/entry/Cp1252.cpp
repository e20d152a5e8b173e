#include "entry/Cp1252.h"

namespace {
// 0x80..0x9F; 0 marks the five unassigned bytes, which map to the same C1 control code point.
const char16_t kHigh[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                            0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                            0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                            0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
}

QString FromCp1252(const char* data, qsizetype size)
{
    QString s(size, Qt::Uninitialized);
    QChar* out = s.data();
    for (qsizetype i = 0; i < size; ++i) {
        const unsigned char b = static_cast<unsigned char>(data[i]);
        if (b >= 0x80 && b <= 0x9F && kHigh[b - 0x80] != 0)
            out[i] = QChar(kHigh[b - 0x80]);
        else
            out[i] = QChar(b);
    }
    return s;
}

QString FromCp1252(const QByteArray& bytes) { return FromCp1252(bytes.constData(), bytes.size()); }

QByteArray ToCp1252(const QString& text)
{
    QByteArray out(text.size(), Qt::Uninitialized);
    qsizetype n = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text.at(i).unicode();
        char b = '?';
        if (c < 0x80 || (c >= 0xA0 && c <= 0xFF)) {
            b = char(c);
        } else if (c >= 0x80 && c <= 0x9F) {
            // Unassigned bytes round-trip as their C1 code points.
            if (kHigh[c - 0x80] == 0)
                b = char(c);
        } else {
            for (int k = 0; k < 32; ++k)
                if (kHigh[k] == c) { b = char(0x80 + k); break; }
        }
        if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i; // one "?" for the whole character
        out[n++] = b;
    }
    out.truncate(n);
    return out;
}
