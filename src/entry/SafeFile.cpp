#include "entry/SafeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::atomic<qint64> gFailAfter{-1};
std::atomic<int> gFailErrno{0};
std::atomic<qint64> gWrittenTotal{0};

QString native(const QString& path) { return QDir::toNativeSeparators(path); }

// write(2) until done; returns 0 or the errno that stopped it.
int writeAll(int fd, const char* data, qint64 size)
{
    while (size > 0) {
        qint64 n = size;
        const qint64 failAfter = gFailAfter.load();
        if (failAfter >= 0) {
            const qint64 room = failAfter - gWrittenTotal.load();
            if (room <= 0)
                return gFailErrno.load();
            n = std::min(n, room);
        }
        const ssize_t w = ::write(fd, data, size_t(n));
        if (w < 0) {
            if (errno == EINTR)
                continue;
            return errno;
        }
        gWrittenTotal += w;
        data += w;
        size -= w;
    }
    return 0;
}

void syncFolder(const QString& folder)
{
    // Makes the rename itself durable; a failure here does not undo a completed write.
    const int fd = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

} // namespace

HostError FileErrorFromErrno(int error, const QString& path)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return HostError(HostErr::DiskFull, QStringLiteral("Disk full: %1").arg(native(path)));
    case EACCES:
    case EPERM:
    case EROFS:
        return HostError(HostErr::PermissionDenied, QStringLiteral("Permission denied: %1").arg(native(path)));
    case ENOENT:
    case ENOTDIR:
        return HostError(HostErr::PathNotFound, QStringLiteral("Path not found: %1").arg(native(path)));
    default:
        return HostError(HostErr::FileAccess, QStringLiteral("Path/File access error: %1").arg(native(path)));
    }
}

// Sequential, write-only, over the temporary's descriptor. Remembers the first failure so a
// streaming writer that ignores write errors still cannot produce a "successful" file.
class SafeFileWriter::FdDevice : public QIODevice {
public:
    explicit FdDevice(int fd) : m_fd(fd) { open(QIODevice::WriteOnly | QIODevice::Unbuffered); }
    ~FdDevice() override { closeFd(); }
    bool isSequential() const override { return true; }
    int Error() const { return m_error; }
    int Fd() const { return m_fd; }
    int TakeFd()
    {
        const int fd = m_fd;
        m_fd = -1;
        return fd;
    }
    void closeFd()
    {
        if (m_fd >= 0) {
            ::close(m_fd);
            m_fd = -1;
        }
    }
    void SetError(int e)
    {
        if (!m_error)
            m_error = e;
    }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 len) override
    {
        if (m_error || m_fd < 0)
            return -1;
        if (const int e = writeAll(m_fd, data, len)) {
            m_error = e;
            setErrorString(QString::fromLocal8Bit(strerror(e)));
            return -1;
        }
        return len;
    }

private:
    int m_fd;
    int m_error = 0;
};

SafeFileWriter::SafeFileWriter(const QString& path)
{
    QFileInfo target(path);
    // Writing through a link replaces the file it points at, not the link.
    if (target.isSymLink() && target.exists())
        target = QFileInfo(target.canonicalFilePath());
    m_target = target.absoluteFilePath();
    const QString folder = target.absolutePath();
    if (!QFileInfo(folder).isDir())
        throw HostError(HostErr::PathNotFound, QStringLiteral("Path not found: %1").arg(native(folder)));

    struct stat st {};
    const QByteArray local = QFile::encodeName(m_target);
    if (::stat(local.constData(), &st) == 0) {
        if (!S_ISREG(st.st_mode))
            throw HostError(HostErr::FileAccess, QStringLiteral("Path/File access error: %1").arg(native(path)));
        // Checked by the mode bits, not access(2): root may write anything, but a file its
        // owner made read-only is still not ours to replace.
        if ((st.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 || ::access(local.constData(), W_OK) != 0)
            throw HostError(HostErr::PermissionDenied, QStringLiteral("Permission denied: %1").arg(native(path)));
    }

    // Beside the target so the rename stays on one file system; hidden, and named after the
    // target so a leftover is recognisable.
    const mode_t mode = (st.st_mode ? st.st_mode : 0666) & 0777;
    for (int attempt = 0; attempt < 100; ++attempt) {
        const QString name = folder + QStringLiteral("/.") + target.fileName() + QStringLiteral(".")
            + QString::number(QRandomGenerator::global()->generate(), 16) + QStringLiteral(".part");
        const int fd = ::open(QFile::encodeName(name).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (fd >= 0) {
            m_temp = name;
            // A new file follows the umask; a replaced one keeps its old permissions.
            if (st.st_mode)
                ::fchmod(fd, mode);
            m_device = std::make_unique<FdDevice>(fd);
            return;
        }
        if (errno != EEXIST)
            throw FileErrorFromErrno(errno, path);
    }
    throw HostError(HostErr::FileAccess, QStringLiteral("Path/File access error: %1").arg(native(path)));
}

SafeFileWriter::~SafeFileWriter()
{
    if (!m_done)
        Cancel();
}

QIODevice* SafeFileWriter::Device() { return m_device.get(); }

void SafeFileWriter::fail(int error)
{
    Cancel();
    throw FileErrorFromErrno(error, m_target);
}

void SafeFileWriter::Write(const QByteArray& bytes)
{
    if (m_done || !m_device)
        throw HostError(HostErr::FileAccess, QStringLiteral("Path/File access error: %1").arg(native(m_target)));
    if (m_device->write(bytes) != bytes.size())
        fail(m_device->Error() ? m_device->Error() : EIO);
}

void SafeFileWriter::Commit()
{
    if (m_done || !m_device)
        throw HostError(HostErr::FileAccess, QStringLiteral("Path/File access error: %1").arg(native(m_target)));
    if (m_device->Error())
        fail(m_device->Error());
    // fsync reports what delayed allocation could not write (a full disk may only show here).
    if (::fsync(m_device->Fd()) != 0)
        fail(errno);
    m_device->close();
    const int closed = ::close(m_device->TakeFd());
    const int closeErr = errno;
    if (closed != 0)
        fail(closeErr);
    // rename(2) replaces the old file in one step.
    if (std::rename(QFile::encodeName(m_temp).constData(), QFile::encodeName(m_target).constData()) != 0)
        fail(errno);
    m_done = true;
    syncFolder(QFileInfo(m_target).absolutePath());
}

void SafeFileWriter::Cancel()
{
    m_done = true;
    m_device.reset();
    if (!m_temp.isEmpty())
        ::unlink(QFile::encodeName(m_temp).constData());
    m_temp.clear();
}

void SafeFileWriter::WriteFile(const QString& path, const QByteArray& bytes)
{
    SafeFileWriter w(path);
    w.Write(bytes);
    w.Commit();
}

void SafeFileWriter::InjectFailure(qint64 afterBytes, int error)
{
    gWrittenTotal = 0;
    gFailErrno = error;
    gFailAfter = afterBytes;
}

bool IsRegularFile(const QString& path)
{
    struct stat st {};
    return ::stat(QFile::encodeName(path).constData(), &st) == 0 && S_ISREG(st.st_mode);
}

QByteArray ReadRegularFile(const QString& path, qint64 maxBytes)
{
    const QByteArray local = QFile::encodeName(path);
    // O_NONBLOCK: opening a FIFO with no writer would otherwise wait forever.
    const int fd = ::open(local.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        const int e = errno;
        if (e == ENOENT) {
            if (!QFileInfo(QFileInfo(path).absolutePath()).isDir())
                throw HostError(HostErr::PathNotFound, QStringLiteral("Path not found: %1").arg(native(path)));
            throw HostError(HostErr::FileNotFound, QStringLiteral("File not found: %1").arg(native(path)));
        }
        throw FileErrorFromErrno(e, path);
    }
    struct Closer {
        int fd;
        ~Closer() { ::close(fd); }
    } closer{fd};
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode))
        throw HostError(HostErr::FileAccess, QStringLiteral("Path/File access error: %1").arg(native(path)));
    if (st.st_size > maxBytes)
        throw HostError(HostErr::OutOfMemory, QStringLiteral("Out of memory: %1 is %2 bytes, more than %3")
                                                 .arg(native(path)).arg(qint64(st.st_size)).arg(maxBytes));
    QByteArray bytes(qsizetype(st.st_size), Qt::Uninitialized);
    qint64 done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::read(fd, bytes.data() + done, size_t(bytes.size() - done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            throw FileErrorFromErrno(errno, path);
        if (n == 0)
            break; // shrank while we read: what is there is what we have
        done += n;
    }
    bytes.truncate(done);
    return bytes;
}
