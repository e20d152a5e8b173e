#pragma once
// Putting the demo data on a PostgreSQL server: the tables of a data folder's SQLite database are
// copied as they are (same keys, same rows, same field catalogue), so every command answers the
// same on both hosts. Also makes scratch databases for tests.
#include <QString>
#include <functional>

namespace PgDemo {

// Copies every table of sqliteFile to the server at url, replacing tables of the same names, in
// one transaction. Columns the catalogue calls dates become date columns. Creates the read-only
// role pagewright_reader (when the login may) with SELECT on the tables and grants it to the login.
// progress(done, total) counts tables. Throws HostError.
void Load(const QString& sqliteFile, const QString& url, const std::function<void(int, int)>& progress = {});

// True when the server at url holds the demo tables.
bool HasDemo(const QString& url);

// Creates (or empties) the database `name` on the server of adminUrl; returns its URL.
QString CreateDatabase(const QString& adminUrl, const QString& name);

} // namespace PgDemo
