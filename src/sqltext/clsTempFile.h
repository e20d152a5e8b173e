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
};
