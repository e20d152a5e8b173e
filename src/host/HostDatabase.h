#pragma once
// The database behind the embedded host: the designer's Database (Jet SQL, translated), plus the
// host's own queries for its catalogue and photo service. SQLite in the data folder, or a
// PostgreSQL server (PgDatabase).
#include "entry/Host.h"

#include <functional>

class HostDatabase : public Database {
public:
    // Runs one of the host's own statements as it is: not translated, not logged. Written so that
    // every target reads it the same way: double-quoted names, parameters ?1, ?2, ...
    virtual std::unique_ptr<Recordset> RunNative(const QString& sql, const QVariantList& params = {}) = 0;

    // Called with every statement OpenRecordset receives, exactly as received.
    void SetStatementObserver(std::function<void(const QString&)> observer) { m_observer = std::move(observer); }

protected:
    std::function<void(const QString&)> m_observer;
};
