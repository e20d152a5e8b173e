#include "pdf/PdfStream.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <zlib.h>

namespace Pdf {

void AppendNumber(QByteArray& out, double v, int decimals)
{
    if (!std::isfinite(v))
        v = 0;
    char buf[48];
    auto r = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::fixed, decimals);
    char* end = r.ptr;
    if (r.ec != std::errc()) {
        out += '0';
        return;
    }
    if (std::find(buf, end, '.') != end) {
        while (end[-1] == '0')
            --end;
        if (end[-1] == '.')
            --end;
    }
    if (end - buf == 2 && buf[0] == '-' && buf[1] == '0')
        out += '0'; // a tiny negative rounds to "-0"
    else
        out.append(buf, end - buf);
}

void AppendInt(QByteArray& out, qint64 v)
{
    char buf[24];
    auto r = std::to_chars(buf, buf + sizeof buf, v);
    out.append(buf, r.ptr - buf);
}

void AppendString(QByteArray& out, const QByteArray& text)
{
    out += '(';
    for (char c : text) {
        if (c == '(' || c == ')' || c == '\\')
            out += '\\';
        if (c == '\r') {
            out += "\\r";
            continue;
        }
        out += c;
    }
    out += ')';
}

namespace {

// One zlib stream per thread and level, reset between uses: setting one up (and its 256 KB of
// tables) cost as much as compressing a page. The bytes are those of a fresh stream.
class DeflateStream {
public:
    ~DeflateStream()
    {
        if (m_ready)
            deflateEnd(&m_z);
    }
    z_stream* For(int level)
    {
        if (m_ready) {
            deflateReset(&m_z);
        } else {
            m_z = z_stream{};
            m_ready = deflateInit(&m_z, level) == Z_OK;
            if (!m_ready)
                return nullptr;
        }
        return &m_z;
    }

private:
    z_stream m_z{};
    bool m_ready = false;
};

} // namespace

QByteArray Deflate(const QByteArray& data, int level)
{
    thread_local std::array<DeflateStream, 10> streams;
    level = std::clamp(level, 0, 9);
    z_stream* z = streams[size_t(level)].For(level);
    if (!z)
        return {};
    QByteArray out(qsizetype(deflateBound(z, uLong(data.size()))), Qt::Uninitialized);
    z->next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.constData()));
    z->avail_in = uInt(data.size());
    z->next_out = reinterpret_cast<Bytef*>(out.data());
    z->avail_out = uInt(out.size());
    if (deflate(z, Z_FINISH) != Z_STREAM_END)
        return {};
    out.truncate(qsizetype(z->total_out));
    return out;
}

int Writer::Reserve()
{
    m_offsets.push_back(-1);
    return int(m_offsets.size()) - 1;
}

void Writer::write(const char* data, qsizetype n)
{
    m_buffer.append(data, n);
    m_offset += n;
    if (m_buffer.size() >= (1 << 16))
        Flush();
}

void Writer::Flush()
{
    if (m_buffer.isEmpty())
        return;
    if (!m_failed && m_out->write(m_buffer) != m_buffer.size())
        m_failed = true;
    m_buffer.clear();
}

void Writer::begin(int number)
{
    m_offsets[size_t(number)] = m_offset;
    QByteArray b;
    AppendInt(b, number);
    b += " 0 obj\n";
    write(b);
}

void Writer::Object(int number, const QByteArray& body)
{
    begin(number);
    write(body);
    write("\nendobj\n", 8);
}

void Writer::Stream(int number, const QByteArray& dict, const QByteArray& data)
{
    begin(number);
    QByteArray b = "<<";
    b += dict;
    b += "/Length ";
    AppendInt(b, data.size());
    b += ">>\nstream\n";
    write(b);
    write(data);
    write("\nendstream\nendobj\n", 18);
}

void Writer::Header() { write("%PDF-1.4\n%\xE2\xE3\xCF\xD3\n", 15); }

void Writer::Finish(int catalog, int info)
{
    const qint64 xref = m_offset;
    QByteArray b = "xref\n0 ";
    AppendInt(b, qint64(m_offsets.size()));
    b += "\n0000000000 65535 f\r\n";
    char entry[48];
    for (size_t i = 1; i < m_offsets.size(); ++i) {
        std::snprintf(entry, sizeof entry, "%010lld 00000 n\r\n", static_cast<long long>(std::max<qint64>(0, m_offsets[i])));
        b.append(entry, 20);
    }
    b += "trailer\n<</Size ";
    AppendInt(b, qint64(m_offsets.size()));
    b += "/Root ";
    AppendInt(b, catalog);
    b += " 0 R/Info ";
    AppendInt(b, info);
    b += " 0 R>>\nstartxref\n";
    AppendInt(b, xref);
    b += "\n%%EOF\n";
    write(b);
    Flush();
}

} // namespace Pdf
