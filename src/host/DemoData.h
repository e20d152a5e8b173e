#pragma once
// The demo data set: a database of listings, tax rolls, offices, members and rentals with its
// field catalogue, listing and roster photos, agent pictures and office logos, the demo user's
// identity and report folders. Generation is deterministic: the same count gives the same data.
#include <QString>
#include <functional>

// The demo identity written to host.ini.
namespace DemoIdentity {
inline constexpr const char* UserName = "JCarter";
inline constexpr const char* AgentId = "A1001";
inline constexpr const char* OfficeId = "OF01";
inline constexpr int UserLevel = 100;
inline constexpr const char* StatusList = "2005,2006";
inline constexpr const char* AccessKey = "2";
inline constexpr int BoardId = 1;
inline constexpr qlonglong FirstListNum = 240001; // listings are numbered from here on
inline constexpr qlonglong FirstRentalNum = 500001;
}

// Writes the demo data into dir (created if needed). Replaces the database and the photo store;
// report folders, pictures of the user's own, host.ini and User.ini are kept when present.
// progress(done, total) is called now and then. Throws HostError on failure (nothing half-written
// replaces a good database).
void GenerateDemoData(const QString& dir, int listings = 500, std::function<void(int, int)> progress = {});

// True when dir holds host.ini and the database.
bool DemoDataExists(const QString& dir);

// The folder holding demo-schema.sql and dictionary.tsv: $PAGEWRIGHT_CATALOGUE, else
// <app dir>/../share/pagewright, else the source tree's data folder. "" when none has them.
QString CatalogueFolder();
