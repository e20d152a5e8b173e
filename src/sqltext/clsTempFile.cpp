#include "sqltext/clsTempFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
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
        const QString name = folder + QLatin1Char('/') + prefix + QString::number(n, 16).toUpper() + QStringLiteral(".tmp");
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
