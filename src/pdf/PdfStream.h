#pragma once
// The bytes of a PDF file as they go out: numbered objects written once, in order, to a
// QIODevice, with only each object's offset kept for the cross-reference table at the end.
#include <QByteArray>
#include <QIODevice>
#include <vector>

namespace Pdf {

// Appends a number the short way PDF likes: at most `decimals` decimals, no trailing zeros.
void AppendNumber(QByteArray& out, double v, int decimals = 2);
void AppendInt(QByteArray& out, qint64 v);
// A PDF string literal "(...)" of 8-bit text, with ( ) \ escaped.
void AppendString(QByteArray& out, const QByteArray& text);
// A zlib stream for /FlateDecode.
QByteArray Deflate(const QByteArray& data, int level);

class Writer {
public:
    explicit Writer(QIODevice* out) : m_out(out) {}

    // Object numbers can be reserved ahead (the page tree, the resources) and written later.
    int Reserve();
    void Object(int number, const QByteArray& body);                      // "n 0 obj body endobj"
    void Stream(int number, const QByteArray& dict, const QByteArray& data); // dict without << >> and /Length
    int Object(const QByteArray& body) { int n = Reserve(); Object(n, body); return n; }
    int Stream(const QByteArray& dict, const QByteArray& data) { int n = Reserve(); Stream(n, dict, data); return n; }

    void Header();
    // The cross-reference table and trailer; every reserved object must have been written.
    void Finish(int catalog, int info);
    void Flush();
    bool Failed() const { return m_failed; }
    qint64 Offset() const { return m_offset; }

private:
    void write(const char* data, qsizetype n);
    void write(const QByteArray& b) { write(b.constData(), b.size()); }
    void begin(int number);

    QIODevice* m_out;
    QByteArray m_buffer;
    qint64 m_offset = 0;
    std::vector<qint64> m_offsets{0}; // object 0 is the free list head
    bool m_failed = false;
};

} // namespace Pdf
