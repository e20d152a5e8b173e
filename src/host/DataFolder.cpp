#include "host/DataFolder.h"

#include <QDir>
#include <QStandardPaths>

namespace DataFolder {

QString DefaultDataFolder()
{
    const QString env = qEnvironmentVariable("PAGEWRIGHT_DATA");
    if (!env.isEmpty())
        return QDir::cleanPath(QDir(env).absolutePath());
    return QDir::cleanPath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/pagewright"));
}

QString ResolveDataFolder(QStringList& args)
{
    QString dir;
    for (int i = 0; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--data") && i + 1 < args.size()) {
            dir = args[i + 1];
            args.remove(i, 2);
            break;
        }
        if (args[i].startsWith(QLatin1String("--data="))) {
            dir = args[i].mid(7);
            args.remove(i);
            break;
        }
    }
    return dir.isEmpty() ? DefaultDataFolder() : QDir::cleanPath(QDir(dir).absolutePath());
}

QString HostPathOf(const QString& localPath)
{
    QString p = localPath;
    return p.replace(QLatin1Char('/'), QLatin1Char('\\'));
}

} // namespace DataFolder
