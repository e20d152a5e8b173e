#include "host/PhotoService.h"
#include "host/DataFolder.h"
#include "host/HostDatabase.h"
#include "entry/ReportKinds.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>

QString PhotoService::caseInsensitive(const QString& file) const
{
    // Listing the folder for every missing photo costs seconds in a store of 100,000 files:
    // an index of its names, made again only when the folder changes.
    const QFileInfo info(file);
    const QString folder = info.absolutePath();
    if (!QFileInfo(folder).isDir())
        return LocalPath(file); // a folder spelt otherwise: rare, and small
    const QDateTime changed = QFileInfo(folder).lastModified();
    FolderIndex& index = m_indexes[folder];
    if (!index.built || index.changed != changed) {
        index.names.clear();
        QDirIterator it(folder, QDir::Files | QDir::Hidden | QDir::System);
        while (it.hasNext()) {
            const QString name = QFileInfo(it.next()).fileName();
            index.names.insert(name.toLower(), name);
        }
        index.changed = changed;
        index.built = true;
    }
    const auto hit = index.names.constFind(info.fileName().toLower());
    return hit == index.names.cend() ? QString() : folder + QLatin1Char('/') + *hit;
}

PhotoResult PhotoService::found(const QString& file) const
{
    // The exact name first: that is how the store writes them.
    QString localFile = file;
    if (!QFileInfo(localFile).isFile()) {
        localFile = caseInsensitive(file); // ids may differ in case from the file names
        if (localFile.isEmpty() || !QFileInfo(localFile).isFile())
            return {};
    }
    return PhotoResult{DataFolder::HostPathOf(QFileInfo(localFile).absoluteFilePath()), 0};
}

PhotoResult PhotoService::GetPhotoFile(TervaneCommon&, const QString& listNum, int photoSeq, const QString&, int mode)
{
    bool ok = false;
    const qlonglong key = listNum.trimmed().toLongLong(&ok);
    if (!ok || mode != 0 || photoSeq < 1)
        return {};
    auto rs = m_db.RunNative(QStringLiteral("SELECT \"PhotoCount\" FROM \"Photo\" WHERE \"PhoListnum\" = ?1"), {key});
    if (rs->Eof() || rs->Fields(0).isNull() || photoSeq > rs->Fields(0).toInt())
        return {};
    return found(m_store + QStringLiteral("/%1_%2.jpg").arg(key).arg(photoSeq));
}

PhotoResult PhotoService::GetPhotoFile(TervaneCommon&, const QString& rosterId, int rosterKind, const QString& operation)
{
    if (operation.compare(QLatin1String("GetRosterPhoto"), Qt::CaseInsensitive) != 0 || (rosterKind != 1 && rosterKind != 2))
        return {};
    // Ids name files: anything that could leave the folder is no id of ours.
    static const QRegularExpression safe(QStringLiteral("^[A-Za-z0-9_-]+$"));
    if (!safe.match(rosterId).hasMatch())
        return {};
    return found(m_store + QStringLiteral("/Roster/%1_%2.jpg").arg(rosterKind == 1 ? QStringLiteral("Agent") : QStringLiteral("Office"), rosterId));
}
