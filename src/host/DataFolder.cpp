#include "host/DataFolder.h"

#include "entry/HostError.h"
#include "entry/SafeFile.h"

#include <QDir>
#include <QFileInfo>
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

bool IsEmptyOrAbsent(const QString& dir)
{
    const QFileInfo info(dir);
    if (!info.exists() && !info.isSymLink())
        return true;
    return info.isDir() && QDir(dir).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

QStringList Missing(const QString& dir)
{
    QStringList missing;
    for (const char* name : {HostIniName, DatabaseName})
        if (!IsRegularFile(dir + QLatin1Char('/') + QLatin1String(name)))
            missing << QLatin1String(name);
    return missing;
}

void RequirePrepared(const QString& dir)
{
    const QStringList missing = Missing(dir);
    if (missing.isEmpty())
        return;
    const QString native = QDir::toNativeSeparators(dir);
    if (!QFileInfo(dir).exists())
        throw HostError(HostErr::PathNotFound,
                        QStringLiteral("Path not found: the data folder %1 does not exist; run 'pagewright demo --data \"%1\"' to make one.").arg(native));
    if (IsEmptyOrAbsent(dir))
        throw HostError(HostErr::FileNotFound,
                        QStringLiteral("File not found: the data folder %1 is empty; run 'pagewright demo --data \"%1\"' to fill it.").arg(native));
    // Something is there: it may be the user's, so it is not ours to replace.
    throw HostError(HostErr::FileNotFound,
                    QStringLiteral("File not found: %1 in the data folder %2. Nothing was changed; restore %3 from a backup, "
                                   "or run 'pagewright demo' with an empty folder.")
                        .arg(missing.join(QStringLiteral(" and ")), native, missing.size() > 1 ? QStringLiteral("them") : QStringLiteral("it")));
}

} // namespace DataFolder
