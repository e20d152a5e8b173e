#pragma once
// The photo service of the embedded host: listing photos and roster photos are files in the
// photo store of the data folder. Paths come back in the host's form ("\" separators).
#include "entry/Host.h"

class HostDatabase;

class PhotoService : public PhotoLibrary {
public:
    // photoStore: the local path of the Photos folder.
    PhotoService(HostDatabase& db, QString photoStore) : m_db(db), m_store(std::move(photoStore)) {}

    // Photo photoSeq (1 = first) of a listing or rental; status 1 when the record has no Photo
    // row, the number is beyond its PhotoCount or the file is missing. The version is not checked.
    PhotoResult GetPhotoFile(TervaneCommon& host, const QString& listNum, int photoSeq, const QString& photoVersion, int mode) override;
    // Roster photo of an agent (kind 1) or office (kind 2); operation must be "GetRosterPhoto".
    PhotoResult GetPhotoFile(TervaneCommon& host, const QString& rosterId, int rosterKind, const QString& operation) override;

private:
    PhotoResult found(const QString& localFile) const;

    HostDatabase& m_db;
    QString m_store;
};
