#include "render/Picture.h"

namespace {

int u16(const uchar* p, bool bigEndian) { return bigEndian ? (p[0] << 8) | p[1] : (p[1] << 8) | p[0]; }
quint32 u32(const uchar* p, bool bigEndian)
{
    return bigEndian ? (quint32(p[0]) << 24) | (quint32(p[1]) << 16) | (quint32(p[2]) << 8) | p[3]
                     : (quint32(p[3]) << 24) | (quint32(p[2]) << 16) | (quint32(p[1]) << 8) | p[0];
}

// The EXIF orientation tag of an APP1 segment (1 = upright, also when absent or unreadable).
int ExifOrientation(const uchar* seg, int len)
{
    if (len < 14 || std::memcmp(seg, "Exif\0\0", 6) != 0)
        return 1;
    const uchar* tiff = seg + 6;
    const int n = len - 6;
    bool be;
    if (tiff[0] == 'M' && tiff[1] == 'M')
        be = true;
    else if (tiff[0] == 'I' && tiff[1] == 'I')
        be = false;
    else
        return 1;
    const quint32 ifd = u32(tiff + 4, be);
    if (ifd > quint32(n) - 2 || ifd + 2 > quint32(n))
        return 1;
    const int count = u16(tiff + ifd, be);
    for (int i = 0; i < count; ++i) {
        const quint32 at = ifd + 2 + quint32(i) * 12;
        if (at + 12 > quint32(n))
            break;
        if (u16(tiff + at, be) == 0x0112)
            return u16(tiff + at + 8, be);
    }
    return 1;
}

} // namespace

std::optional<JpegStream> ParseJpegStream(const QByteArray& bytes)
{
    const auto* d = reinterpret_cast<const uchar*>(bytes.constData());
    const qsizetype n = bytes.size();
    if (n < 4 || d[0] != 0xFF || d[1] != 0xD8)
        return std::nullopt;
    bool adobe = false;
    qsizetype i = 2;
    while (i + 4 <= n) {
        if (d[i] != 0xFF)
            return std::nullopt;
        const uchar marker = d[i + 1];
        if (marker == 0xFF) { // fill byte
            ++i;
            continue;
        }
        if (marker == 0x01 || (marker >= 0xD0 && marker <= 0xD7)) {
            i += 2;
            continue;
        }
        const int len = (d[i + 2] << 8) | d[i + 3];
        if (len < 2 || i + 2 + len > n)
            return std::nullopt;
        const uchar* seg = d + i + 4;
        const int segLen = len - 2;
        if (marker == 0xE1 && ExifOrientation(seg, segLen) != 1)
            return std::nullopt; // upright only: the PDF would show it unturned
        if (marker == 0xEE && segLen >= 12 && std::memcmp(seg, "Adobe", 5) == 0)
            adobe = true;
        if (marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC) {
            // Baseline, extended and progressive Huffman frames at 8 bits are what every PDF
            // reader decodes; lossless and arithmetic-coded ones go through a decode instead.
            if (marker > 0xC2 || segLen < 6 || seg[0] != 8)
                return std::nullopt;
            JpegStream s;
            s.height = (seg[1] << 8) | seg[2];
            s.width = (seg[3] << 8) | seg[4];
            s.components = seg[5];
            if (s.width <= 0 || s.height <= 0 || (s.components != 1 && s.components != 3 && s.components != 4))
                return std::nullopt;
            s.invertedCmyk = s.components == 4 && adobe;
            return s;
        }
        if (marker == 0xDA || marker == 0xD9)
            return std::nullopt; // scan data before any frame header
        i += 2 + len;
    }
    return std::nullopt;
}
