#pragma once
// Files that never leave a user with half a result or a hung program.
//
// SafeFileWriter writes to a temporary file beside the target, and only when every byte is on
// the disk (written, flushed, fsync'd) renames it over the target in one step. A failure at any
// point leaves the old target as it was and no temporary behind, and throws a HostError with the
// classic number: 61 "Disk full" (no space, quota, file-size limit), 70 "Permission denied"
// (a read-only target or folder), 76 "Path not found", 75 "Path/File access error" otherwise.
//
// ReadRegularFile opens only regular files (a FIFO or a device would hang or never end) and
// reads exactly the size known up front.
#include "entry/HostError.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>
#include <memory>

class SafeFileWriter {
public:
    // Checks the target and creates the temporary file; throws HostError when it cannot.
    // A target that exists but is read-only (no write bit) is refused with 70 even where the
    // folder would let us replace it: the user marked it so it stays as it is.
    explicit SafeFileWriter(const QString& path);
    ~SafeFileWriter(); // removes the temporary unless committed
    SafeFileWriter(const SafeFileWriter&) = delete;
    SafeFileWriter& operator=(const SafeFileWriter&) = delete;

    // For writers that stream (QPdfWriter, QImageWriter, ...): a write-only sequential device on
    // the temporary file. A failed write is remembered and reported by Commit().
    QIODevice* Device();
    // Appends bytes; throws at once on failure.
    void Write(const QByteArray& bytes);
    // Flushes, fsyncs, renames over the target and makes the rename durable. Throws on failure
    // (the temporary is then removed and the target untouched).
    void Commit();
    // Gives up: removes the temporary; the target is untouched.
    void Cancel();

    QString TargetPath() const { return m_target; }

    // The whole job for a result already in memory.
    static void WriteFile(const QString& path, const QByteArray& bytes);

    // Test seam: every writer fails with this errno once this many bytes are written in total
    // (< 0: off). Lets a test fake a full disk without touching the real one.
    static void InjectFailure(qint64 afterBytes, int error);

private:
    class FdDevice;
    [[noreturn]] void fail(int error);
    QString m_target; // absolute path of the file to replace (a link's target, not the link)
    QString m_temp;
    std::unique_ptr<FdDevice> m_device;
    bool m_done = false;
};

// Maps an errno of a failed file operation to the classic error. `path` goes into the text.
HostError FileErrorFromErrno(int error, const QString& path);

// Reads a whole regular file of at most maxBytes. Throws HostError: 53 "File not found",
// 76 "Path not found", 70 "Permission denied", 75 "Path/File access error" for a folder, FIFO,
// device or socket, 7 "Out of memory" for a file larger than maxBytes.
QByteArray ReadRegularFile(const QString& path, qint64 maxBytes);

// True when path names an existing regular file (through links), without opening it.
bool IsRegularFile(const QString& path);
