#include "entry/PrivateProfile.h"
#include "entry/Cp1252.h"
#include "entry/Host.h"
#include "entry/ReportKinds.h"

#include "entry/SafeFile.h"

#include <QFile>
#include <vector>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

struct Line {
    QByteArray text; // without its line end
    QByteArray end;  // "\r\n", "\n", "\r" or "" for a last line without one
};

std::vector<Line> splitLines(const QByteArray& data)
{
    std::vector<Line> lines;
    qsizetype start = 0;
    const qsizetype n = data.size();
    while (start < n) {
        qsizetype i = start;
        while (i < n && data[i] != '\n' && data[i] != '\r')
            ++i;
        Line l{data.mid(start, i - start), {}};
        if (i < n) {
            if (data[i] == '\r' && i + 1 < n && data[i + 1] == '\n') {
                l.end = "\r\n";
                i += 2;
            } else {
                l.end = data.mid(i, 1);
                i += 1;
            }
        }
        lines.push_back(l);
        start = i;
    }
    return lines;
}

// "[name]" → name; not a header → null.
QByteArray sectionName(const QByteArray& line)
{
    const QByteArray t = line.trimmed();
    if (!t.startsWith('['))
        return {};
    const qsizetype close = t.indexOf(']');
    if (close < 0)
        return {};
    return t.mid(1, close - 1).trimmed();
}

bool sameName(const QByteArray& a, const QString& b)
{
    return FromCp1252(a).compare(b.trimmed(), Qt::CaseInsensitive) == 0;
}

// Key of a "key=value" line; comments and other lines give null.
QByteArray keyOf(const QByteArray& line, QByteArray* value = nullptr)
{
    const QByteArray t = line.trimmed();
    if (t.isEmpty() || t.startsWith(';'))
        return {};
    const qsizetype eq = line.indexOf('=');
    if (eq < 0)
        return {};
    if (value)
        *value = line.mid(eq + 1).trimmed();
    return line.left(eq).trimmed();
}

constexpr char kBom[] = "\xEF\xBB\xBF";
constexpr qint64 kMaxIniBytes = 16 << 20; // an INI file is a few lines; anything bigger is not one

// The file's bytes without a UTF-8 byte-order mark (which would hide the first section);
// *bom tells whether there was one so a write can put it back.
QByteArray readAll(const QString& path, bool* exists, bool* bom = nullptr)
{
    *exists = QFile::exists(path);
    QByteArray data;
    try {
        data = ReadRegularFile(path, kMaxIniBytes);
    } catch (const HostError&) {
        return {};
    }
    if (data.isNull())
        data = QByteArray(""); // read, and empty: not the same as unreadable
    const bool hasBom = data.startsWith(kBom);
    if (bom)
        *bom = hasBom;
    return hasBom ? data.mid(3) : data;
}

// An exclusive advisory lock on "<file>.lock" for one read-modify-write, so two programs that
// change the same file at once both keep their change. Released when it goes out of scope.
class FileLock {
public:
    explicit FileLock(const QString& path)
    {
        m_fd = ::open(QFile::encodeName(path + QStringLiteral(".lock")).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        if (m_fd < 0)
            return;
        while (::flock(m_fd, LOCK_EX) != 0) {
            if (errno != EINTR) {
                ::close(m_fd);
                m_fd = -1;
                return;
            }
        }
    }
    ~FileLock()
    {
        if (m_fd >= 0)
            ::close(m_fd); // closing releases the lock
    }
    bool Locked() const { return m_fd >= 0; }

private:
    int m_fd = -1;
};

} // namespace

QString PrivateProfile::GetString(const QString& section, const QString& key, const QString& defaultValue, const QString& path)
{
    bool exists = false;
    const QByteArray data = readAll(path, &exists);
    bool inSection = false;
    for (const Line& l : splitLines(data)) {
        const QByteArray sec = sectionName(l.text);
        if (!sec.isNull()) {
            inSection = sameName(sec, section);
            continue;
        }
        if (!inSection)
            continue;
        QByteArray value;
        const QByteArray k = keyOf(l.text, &value);
        if (!k.isNull() && sameName(k, key)) {
            if (value.size() >= 2 && ((value.startsWith('"') && value.endsWith('"')) || (value.startsWith('\'') && value.endsWith('\''))))
                value = value.mid(1, value.size() - 2);
            return FromCp1252(value);
        }
    }
    return defaultValue;
}

bool PrivateProfile::WriteString(const QString& section, const QString& key, const QString& value, const QString& path)
{
    FileLock lock(path);
    if (!lock.Locked())
        return false; // the folder cannot be written, so neither can the file
    bool exists = false, bom = false;
    const QByteArray data = readAll(path, &exists, &bom);
    if (exists && data.isNull())
        return false; // unreadable: never overwrite what we could not read
    std::vector<Line> lines = splitLines(data);

    QByteArray eol = "\r\n";
    for (const Line& l : lines)
        if (!l.end.isEmpty()) { eol = l.end; break; }

    const QByteArray newLine = ToCp1252(key.trimmed()) + '=' + ToCp1252(value);
    qsizetype sectionAt = -1, lastContent = -1;
    bool done = false;
    for (qsizetype i = 0; i < qsizetype(lines.size()) && !done; ++i) {
        const QByteArray sec = sectionName(lines[i].text);
        if (!sec.isNull()) {
            if (sectionAt >= 0)
                break; // end of our section
            if (sameName(sec, section))
                sectionAt = lastContent = i;
            continue;
        }
        if (sectionAt < 0)
            continue;
        if (!lines[i].text.trimmed().isEmpty())
            lastContent = i;
        const QByteArray k = keyOf(lines[i].text);
        if (!k.isNull() && sameName(k, key)) {
            lines[i].text = newLine;
            done = true;
        }
    }
    if (!done) {
        if (sectionAt >= 0) {
            // After the section's last non-blank line.
            if (lines[lastContent].end.isEmpty())
                lines[lastContent].end = eol;
            lines.insert(lines.begin() + lastContent + 1, Line{newLine, eol});
        } else {
            if (!lines.empty() && lines.back().end.isEmpty())
                lines.back().end = eol;
            lines.push_back(Line{'[' + ToCp1252(section.trimmed()) + ']', eol});
            lines.push_back(Line{newLine, eol});
        }
    }
    QByteArray out;
    out.reserve(data.size() + newLine.size() + 16);
    if (bom)
        out += kBom;
    for (const Line& l : lines)
        out += l.text + l.end;

    // A reader in another program sees the old file or the new one, never half of one.
    try {
        SafeFileWriter::WriteFile(path, out);
    } catch (const HostError&) {
        return false;
    }
    return true;
}

QString UserIni::Path()
{
    return gHost ? LocalPath(gHost->UserPath() + QStringLiteral("\\User.ini")) : QString();
}

QString UserIni::Get(const QString& key, const QString& defaultValue)
{
    return PrivateProfile::GetString(QStringLiteral("Pagewright"), key, defaultValue, Path());
}

bool UserIni::Set(const QString& key, const QString& value)
{
    return PrivateProfile::WriteString(QStringLiteral("Pagewright"), key, value, Path());
}
