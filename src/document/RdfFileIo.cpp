// Report files on disk: whole-file load, and saving that never damages the previous file.
#include "document/RdfFile.h"
#include "document/RdfSections.h"

#include "entry/SafeFile.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>

namespace {

constexpr qint64 kMaxFileBytes = qint64(1) << 30; // far above any real report

[[noreturn]] void rethrow(const HostError& e) { throw RdfError(e.Number(), e.Description()); }

} // namespace

void RdfSaveFile(const QString& path, const RdfReport& report, const RdfSaveHooks& hooks)
{
    // Serialise first: a report the format cannot hold never touches the disk.
    const QByteArray bytes = RdfWrite(report);
    if (QFileInfo(path).isDir())
        throw RdfError(HostErr::FileAccess, QStringLiteral("Path/File access error: %1").arg(QDir::toNativeSeparators(path)));
    struct Injected {
        explicit Injected(qint64 after) : on(after >= 0) { if (on) SafeFileWriter::InjectFailure(after, ENOSPC); }
        ~Injected() { if (on) SafeFileWriter::InjectFailure(-1, 0); }
        bool on;
    } injected(hooks.failAfterBytes);
    try {
        SafeFileWriter::WriteFile(path, bytes);
    } catch (const RdfError&) {
        throw;
    } catch (const HostError& e) {
        rethrow(e);
    }
}

RdfReport RdfLoadFile(const QString& path)
{
    QByteArray bytes;
    try {
        bytes = ReadRegularFile(path, kMaxFileBytes);
    } catch (const HostError& e) {
        if (e.Number() == HostErr::OutOfMemory)
            throw RdfError(HostErr::BadFileFormat, QStringLiteral("Bad file format: file of %1 bytes is too large at offset 0").arg(QFileInfo(path).size()));
        rethrow(e);
    }
    RdfReport report = RdfRead(bytes);
    RdfCheckSections(report);
    return report;
}
