#pragma once
// Where the embedded host keeps its data, and the names of what lies there:
//   host.ini          the demo user's identity (section [Host])
//   pagewright.db     the database (data tables and the field catalogue)
//   Users/<user>/Reports/<kind>/, Users/Templates|Office/Reports/Flyers/, Users/<user>/User.ini
//   Graphics/         agent pictures ("Last, First.jpg"), office logos (<OfficeId>.jpg|.bmp), the user's picture
//   Photos/           listing photos <ListNum>_<seq>.jpg, roster photos Roster/Agent_<id>.jpg, Roster/Office_<id>.jpg
#include <QString>
#include <QStringList>

namespace DataFolder {
inline constexpr const char* HostIniName = "host.ini";
inline constexpr const char* DatabaseName = "pagewright.db";
inline constexpr const char* HostSection = "Host";

// $PAGEWRIGHT_DATA, else <generic data location>/pagewright.
QString DefaultDataFolder();
// Takes "--data DIR" (or "--data=DIR") out of args; returns that folder, else the default.
// The result is absolute and clean.
QString ResolveDataFolder(QStringList& args);
// A local path in the host's form: "\" separators.
QString HostPathOf(const QString& localPath);

// True when dir does not exist or holds nothing at all (hidden files count): the only kind of
// folder demo data may be written into without being asked to.
bool IsEmptyOrAbsent(const QString& dir);
// What a data folder lacks to be opened: the names of host.ini and the database that are not
// regular files there. Empty when it is ready.
QStringList Missing(const QString& dir);
// Throws HostError 53 "File not found" naming what is missing, and how to make a new folder,
// when dir is not a prepared data folder. Never writes anything.
void RequirePrepared(const QString& dir);
}
