// Report files on disk: whole-file load, and saving that never damages the previous file.
#include "document/RdfFile.h"
#include "document/RdfSections.h"

#include "sqltext/clsTempFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr qint64 kMaxFileBytes = qint64(1) << 30; // far above any real report
constexpr qint64 kChunk = 64 * 1024;

[[noreturn]] void throwFileError(QFileDevice::FileError e, const QString& path)
{
    if (e == QFileDevice::ResourceError)
        throw RdfError(HostErr::DiskFull, QStringLiteral("Disk full: %1").arg(QDir::toNativeSeparators(path)));
    throw RdfError(HostErr::FileAccess, QStringLiteral("Path/File access error: %1").arg(QDir::toNativeSeparators(path)));
}

// Removes the temporary file unless the save went through.
class TempGuard {
public:
    explicit TempGuard(QString path) : m_path(std::move(path)) {}
    ~TempGuard()
    {
        if (!m_path.isEmpty())
            QFile::remove(m_path);
    }
    void release() { m_path.clear(); }

private:
    QString m_path;
};

void syncFolder(const QString& folder)
{
    // Makes the rename itself durable; failure here does not undo a completed save.
    const int fd = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

} // namespace

void RdfSaveFile(const QString& path, const RdfReport& report, const RdfSaveHooks& hooks)
{
    // Serialise first: a report the format cannot hold never touches the disk.
    const QByteArray bytes = RdfWrite(report);

    QFileInfo target(path);
    // Saving through a link replaces the file it points at, not the link.
    if (target.isSymLink() && target.exists())
        target = QFileInfo(target.canonicalFilePath());
    if (target.isDir())
        throw RdfError(HostErr::FileAccess, QStringLiteral("Path/File access error: %1").arg(QDir::toNativeSeparators(path)));
    const QString folder = target.absolutePath();
    if (!QFileInfo(folder).isDir())
        throw RdfError(HostErr::PathNotFound, QStringLiteral("Path not found: %1").arg(QDir::toNativeSeparators(folder)));

    const QString tempPath = clsTempFile::FileName2(QStringLiteral("~RD"), folder);
    if (tempPath.isEmpty())
        throw RdfError(HostErr::FileAccess, QStringLiteral("Path/File access error: %1").arg(QDir::toNativeSeparators(folder)));
    TempGuard guard(tempPath);

    QFile out(tempPath);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        throwFileError(out.error(), tempPath);
    for (qint64 done = 0; done < bytes.size();) {
        qint64 n = std::min(kChunk, qint64(bytes.size()) - done);
        const bool failing = hooks.failAfterBytes >= 0 && done + n > hooks.failAfterBytes;
        if (failing)
            n = hooks.failAfterBytes - done;
        if (n > 0 && out.write(bytes.constData() + done, n) != n)
            throwFileError(out.error(), tempPath);
        done += n;
        if (failing)
            throwFileError(QFileDevice::ResourceError, path);
    }
    if (!out.flush() || ::fsync(out.handle()) != 0)
        throwFileError(QFileDevice::ResourceError, path);
    out.close();

    // The new file gets the old one's permissions (the temporary starts private).
    const QFileDevice::Permissions perms = target.exists()
        ? target.permissions()
        : (QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther);
    QFile::setPermissions(tempPath, perms);

    // rename(2) replaces the old file in one step; QFile::rename would refuse to overwrite.
    if (std::rename(QFile::encodeName(tempPath).constData(), QFile::encodeName(target.absoluteFilePath()).constData()) != 0)
        throw RdfError(HostErr::FileAccess, QStringLiteral("Path/File access error: %1").arg(QDir::toNativeSeparators(path)));
    guard.release();
    syncFolder(folder);
}

RdfReport RdfLoadFile(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        if (!QFileInfo(info.absolutePath()).isDir())
            throw RdfError(HostErr::PathNotFound, QStringLiteral("Path not found: %1").arg(QDir::toNativeSeparators(path)));
        throw RdfError(HostErr::FileNotFound, QStringLiteral("File not found: %1").arg(QDir::toNativeSeparators(path)));
    }
    if (info.isDir())
        throw RdfError(HostErr::FileAccess, QStringLiteral("Path/File access error: %1").arg(QDir::toNativeSeparators(path)));
    QFile in(path);
    if (!in.open(QIODevice::ReadOnly))
        throw RdfError(HostErr::FileAccess, QStringLiteral("Path/File access error: %1").arg(QDir::toNativeSeparators(path)));
    if (in.size() > kMaxFileBytes)
        throw RdfError(HostErr::BadFileFormat, QStringLiteral("Bad file format: file of %1 bytes is too large at offset 0").arg(in.size()));
    const QByteArray bytes = in.readAll();
    if (in.error() != QFileDevice::NoError)
        throw RdfError(HostErr::FileAccess, QStringLiteral("Path/File access error: %1").arg(QDir::toNativeSeparators(path)));
    RdfReport report = RdfRead(bytes);
    RdfCheckSections(report);
    return report;
}
