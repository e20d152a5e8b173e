#pragma once
// Builds expected file bytes field by field, independently of the codec under test.
#include <QByteArray>
#include <QFile>
#include <QString>
#include <cstring>
#include <initializer_list>

class Bytes {
public:
    Bytes& u8(unsigned v) { m_b.append(char(v & 0xFF)); return *this; }
    Bytes& i16(int v) { return u8(unsigned(v)).u8(unsigned(v) >> 8); }
    Bytes& i32(long long v)
    {
        const unsigned long long u = static_cast<unsigned long long>(v);
        return u8(unsigned(u)).u8(unsigned(u >> 8)).u8(unsigned(u >> 16)).u8(unsigned(u >> 24));
    }
    Bytes& f32(float v)
    {
        unsigned int bits;
        std::memcpy(&bits, &v, 4);
        return i32(bits);
    }
    Bytes& zeros(int n) { m_b.append(QByteArray(n, '\0')); return *this; }
    // A length-prefixed string whose bytes are given as they must appear on disk.
    Bytes& str(const QByteArray& raw) { i16(int(raw.size())); m_b.append(raw); return *this; }
    Bytes& raw(const QByteArray& raw) { m_b.append(raw); return *this; }
    // An item record with every number 0 and every string empty (the unused element 0).
    Bytes& emptyItem()
    {
        u8(0).str("").i32(0).u8(0).u8(0).i16(0).i32(0).str("").i16(0).i16(0).str("");
        f32(0).i32(0).i32(0).u8(0).str("").f32(0).f32(0).i32(0).i32(0);
        return i16(0).i16(0).i16(0).i16(0).str("");
    }
    const QByteArray& bytes() const { return m_b; }
    operator QByteArray() const { return m_b; }

private:
    QByteArray m_b;
};

// A file's bytes; empty when it cannot be read.
inline QByteArray FileBytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}
