#pragma once
// Report kinds (the host's Switch values), their folders and their dictionaries.
#include <QString>

namespace ReportKind {
constexpr int Listings = 1;
constexpr int Flyers = 2;
constexpr int Taxrolls = 3;
constexpr int Office = 4;
constexpr int Members = 5;
constexpr int Rental = 6;
}

// The stored folder template of a report kind: "Users\~UserName~\Reports\Listings\" and so on,
// relative to AppPath. Kinds outside 1..6 fall back to Listings.
QString ReportFolderTemplate(int reportKind);
// Dictionary kind of a report kind: Listings and Flyers 1, Tax rolls 2, Office 3, Members 4, Rental 5.
int DictionaryKindOf(int reportKind);
// Parses "listings", "flyers", ... or a number 1..6; 0 when unknown.
int ReportKindFromName(const QString& name);
QString ReportKindName(int reportKind);

// Replaces "~UserName~" in a folder template.
QString ExpandUserName(const QString& folderTemplate, const QString& userName);

// Host paths use "\" and are case-insensitive. LocalPath turns one into a path on this
// file system: separators become "/", and each component that does not exist as written is
// matched case-insensitively against what the folder holds.
QString LocalPath(const QString& hostPath);

// A host path as a user of this system reads it: LocalPath with the platform's separator.
// For messages, labels and batch output only; what is stored keeps its stored form.
QString DisplayPath(const QString& hostPath);
