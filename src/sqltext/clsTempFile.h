#pragma once
// Unique temporary files. Each call creates a new, empty file and returns its full path;
// the caller owns it and deletes it. "" on any failure.
#include <QString>

class clsTempFile {
public:
    // In the system's temporary folder.
    static QString FileName(const QString& strPrefix);
    // In the given folder (a local path).
    static QString FileName2(const QString& strPrefix, const QString& Path);

    // Names are <prefix><pid><random>.tmp, eight hex digits each, so that the files a killed process left can
    // be told from those of one still running. Removes, in folder (the system's temporary folder
    // when empty), the files with this prefix whose process no longer runs; returns how many.
    static int RemoveOrphans(const QString& strPrefix, const QString& folder = QString());
};
