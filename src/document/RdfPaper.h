#pragma once
// Paper size and orientation kept with a report. The file format has no field for them, so
// they live in the header's 16 reserved bytes, which every reader of the format skips and
// which the document always wrote as zeros: a report without a paper setting keeps all-zero
// bytes there and its file stays byte-for-byte what it was.
//
//   bytes 0-1  "PS"          marks the block
//   byte  2    1             block version
//   byte  3    paper         1 Letter, 2 Legal, 3 Tabloid, 4 A4, 5 A5, 6 custom
//   byte  4    orientation   0 portrait, 1 landscape
//   bytes 5-7  0
//   bytes 8-11 width, 12-15 height: twips, little-endian, custom paper only (else 0)
#include "document/RdfFile.h"

#include <QPageSize>
#include <QString>
#include <QStringList>
#include <optional>

struct RdfPaper {
    enum Kind { Letter = 1, Legal, Tabloid, A4, A5, Custom };
    int kind = Letter;
    bool landscape = false;
    int widthTwips = 0;  // custom paper, portrait width
    int heightTwips = 0; // custom paper, portrait height

    bool operator==(const RdfPaper&) const = default;

    // Custom sizes from half an inch to 200 inches.
    static constexpr int MinTwips = 720;
    static constexpr int MaxTwips = 288000;

    // The page size (portrait; the orientation is apart).
    QPageSize PageSize() const;
    // The names a user types: "Letter", "Legal", "Tabloid", "A4", "A5" or "WxHin" / "WxHmm"
    // (e.g. "8.5x14in", "210x297mm"). Case does not matter. Empty when the name means nothing.
    static std::optional<RdfPaper> FromName(const QString& name);
    static QStringList Names(); // the five standard names, in menu order
    QString Name() const;       // the menu name; "Custom" for a custom size
};

// The paper stored in a header; nothing when the reserved bytes hold no valid block.
std::optional<RdfPaper> RdfReadPaper(const RdfHeader& header);
// Stores paper in header's reserved bytes; nothing clears them (a report without a setting).
void RdfWritePaper(RdfHeader& header, const std::optional<RdfPaper>& paper);
