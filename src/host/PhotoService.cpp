#include "host/PhotoService.h"
#include "host/DataFolder.h"
#include "host/HostDatabase.h"
#include "entry/ReportKinds.h"

#include <QFileInfo>
#include <QRegularExpression>

PhotoResult PhotoService::found(const QString& file) const
{
    const QString localFile = LocalPath(file); // ids may differ in case from the file names
    if (!QFileInfo(localFile).isFile())
        return {};
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
