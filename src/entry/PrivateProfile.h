#pragma once
// INI files with the semantics of the classic private-profile calls: section and key names are
// case-insensitive, a missing key gives the default, and a write changes only the one line of
// that key (or adds it), keeping every other byte of the file, comments and all.
// The host and other programs share these files, so nothing of theirs may be lost.
#include <QString>

namespace PrivateProfile {
// Path is a local path. Surrounding spaces are trimmed; a value in matching quotes loses them.
QString GetString(const QString& section, const QString& key, const QString& defaultValue, const QString& path);
// Creates the file (not its folder) when missing. Returns false when the file cannot be written;
// the old file is then untouched.
bool WriteString(const QString& section, const QString& key, const QString& value, const QString& path);
}

// The per-user settings file, UserPath + "\User.ini", section "Pagewright".
namespace UserIni {
QString Path(); // local path of the current host's User.ini
QString Get(const QString& key, const QString& defaultValue);
bool Set(const QString& key, const QString& value);
}
