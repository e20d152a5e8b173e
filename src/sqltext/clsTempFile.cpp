#include "sqltext/clsTempFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

QString clsTempFile::FileName(const QString& strPrefix)
{
    return FileName2(strPrefix, QDir::tempPath());
}

QString clsTempFile::FileName2(const QString& strPrefix, const QString& Path)
{
    if (Path.isEmpty() || !QFileInfo(Path).isDir())
        return {};
    const QString folder = QDir(Path).absolutePath();
    const QString prefix = strPrefix.left(3);
    // O_EXCL makes the creation itself the uniqueness test: two callers can never get one file.
    for (int attempt = 0; attempt < 1000; ++attempt) {
        const quint32 n = QRandomGenerator::global()->generate();
        const QString hex = QStringLiteral("%1%2").arg(quint32(::getpid()), 8, 16, QLatin1Char('0')).arg(n, 8, 16, QLatin1Char('0')).toUpper();
        const QString name = folder + QLatin1Char('/') + prefix + hex + QStringLiteral(".tmp");
        const QByteArray local = QFile::encodeName(name);
        const int fd = ::open(local.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd >= 0) {
            ::close(fd);
            return name;
        }
        if (errno != EEXIST)
            return {};
    }
    return {};
}

int clsTempFile::RemoveOrphans(const QString& strPrefix, const QString& folder)
{
    const QString dir = folder.isEmpty() ? QDir::tempPath() : folder;
    const QString prefix = strPrefix.left(3);
    static const QRegularExpression tail(QStringLiteral("^([0-9A-F]{8})[0-9A-F]{8}\\.TMP$"));
    int removed = 0;
    const QStringList names = QDir(dir).entryList({prefix + QStringLiteral("*.tmp")}, QDir::Files | QDir::Hidden | QDir::System);
    for (const QString& name : names) {
        if (!name.startsWith(prefix))
            continue; // the name filter ignores case
        const QRegularExpressionMatch m = tail.match(name.mid(prefix.size()).toUpper());
        if (!m.hasMatch())
            continue; // not one of ours, or of an older naming: nobody to ask, so it stays
        bool ok = false;
        const pid_t pid = pid_t(m.captured(1).toUInt(&ok, 16));
        if (!ok || pid <= 0 || pid == ::getpid())
            continue;
        // ESRCH: no such process. EPERM means it runs under another user, so it stays.
        if (::kill(pid, 0) == -1 && errno == ESRCH && QFile::remove(dir + QLatin1Char('/') + name))
            ++removed;
    }
    return removed;
}
