#pragma once
// The .rdf report file: header record, item array, picture blocks. Pure data and bytes,
// no widgets. Little-endian, no padding; strings are a 16-bit length and Windows-1252
// bytes; booleans are 16-bit -1/0. The document converts its items to RdfItem records
// (and back); RdfSections.h orders them by page section before writing.
#include "entry/HostError.h"

#include <QByteArray>
#include <QString>
#include <array>
#include <cstdint>
#include <vector>

// Any failure reading or writing a report file. Number and description as the host's
// errors (HostErr::BadFileFormat for damaged files, FileNotFound, DiskFull ...).
class RdfError : public HostError {
public:
    using HostError::HostError;
};

// Item kinds as stored (the document's ObjectType, plus 10 for a Field with a function).
namespace RdfKind {
constexpr quint8 Field = 1;
constexpr quint8 Label = 2;
constexpr quint8 Box = 3;
constexpr quint8 Line = 4;
constexpr quint8 Image = 5;
constexpr quint8 NewPage = 6;
constexpr quint8 SubReport = 7;
constexpr quint8 DateTime = 8;
constexpr quint8 Section = 9;
constexpr quint8 FunctionField = 10;
}

// Bits of RdfItem::flags.
namespace RdfFlag {
constexpr quint32 Bold = 1;
constexpr quint32 Italic = 2;
constexpr quint32 Underline = 4;
constexpr quint32 AllowGrow = 8;
constexpr quint32 AllowShrink = 16;
constexpr quint32 Expression = 32;  // the field is computed from an SQL expression
constexpr quint32 NewBand = 64;     // new page, sub-report and section markers
constexpr quint32 Opaque = 128;     // Backstyle 1
constexpr quint32 ShortText = 256;  // UseShortText
constexpr quint32 MultiLine = 512;  // Height >= 2 x font size x 20
constexpr quint32 Embedded = 1024;  // the picture is carried inside the file
}

// Error number for values the format cannot hold (a string over 65535 bytes, too many items).
namespace RdfErr {
constexpr int InvalidArgument = 5;
}

struct RdfHeader {
    qint32 version = 100;
    qint32 headerFlags = 0;
    qint32 reserved3 = 0;
    qint16 firstDetailItem = 1;
    qint16 lastDetailItem = 0;
    qint32 detailSize = 0;       // twips
    qint32 detailTop = 0;        // twips: where the detail section starts on the design page
    qint32 pageFooterTop = 0;    // twips
    qint32 reserved9 = 0;
    qint16 topMargin = 1080;
    qint16 bottomMargin = 1080;
    qint16 leftMargin = 720;
    qint16 rightMargin = 720;
    quint8 numberOfColumns = 1;  // 0 means 1 to the document
    quint8 dictionaryVersion = 0;
    qint16 sectionSpacingTwips = 0;
    qint16 reserved17 = 0;
    qint16 reportOption = 0;
    qint32 pictureCount = 0;     // the writer stores pictures.size(); the reader sets it
    std::array<quint8, 16> reserved20 {};
    QString detailFieldList;
    QString headerFieldList;
    QString footerFieldList;
    QString autoFillId;

    bool operator==(const RdfHeader&) const = default;
};

struct RdfItem {
    quint8 kind = 0;
    QString name;
    quint32 flags = 0;
    quint8 alignment = 0;
    quint8 borderStyle = 0;
    qint16 borderWidth = 0;      // points x 20
    quint32 borderColor = 0;     // BGR
    QString dataField;           // bound field; sub-report SQL
    qint16 dicId = 0;
    qint16 codeType = 0;
    QString fontName;
    float fontSize = 0;          // points
    quint32 backColor = 0;
    quint32 foreColor = 0;
    quint8 specialEffect = 0;
    QString text;
    float top = 0;               // twips, relative to the item's section or band on disk
    float left = 0;
    qint32 height = 0;
    qint32 width = 0;
    qint16 numberA = 0;          // Field: FormatClass; Image: PhotoSeq
    qint16 numberB = 0;          // Field: FunctionType; Image: Category; markers: band data
    qint16 sizeMode = 0;         // Image; markers: band data
    bool dataBound = false;      // Image
    QString formatOrFile;        // DataFormat, or the picture file / picture list position

    bool operator==(const RdfItem&) const = default;
};

struct RdfReport {
    RdfHeader header;
    std::vector<RdfItem> items;        // items 1..n; the unused element 0 is implicit
    std::vector<QByteArray> pictures;  // whole picture files, in list order

    bool operator==(const RdfReport&) const = default;
};

// The file's bytes. Throws RdfError (RdfErr::InvalidArgument) for a string longer than
// 65535 bytes in Windows-1252 or more than 32767 items; characters outside the code page
// are stored as "?".
QByteArray RdfWrite(const RdfReport& report);

// Parses a whole file. Throws RdfError HostErr::BadFileFormat, "Bad file format: <what> at
// offset N", for anything that cannot be read; lengths and counts are checked against the
// bytes that remain before anything is allocated.
RdfReport RdfRead(const QByteArray& bytes);

// Test seam for RdfSaveFile: simulates a device that fails (disk full) once this many bytes
// of the file have been written. Negative: no simulated failure.
struct RdfSaveHooks {
    qint64 failAfterBytes = -1;
};

// Writes the report to path without ever damaging the previous file: a temporary file in
// the same folder is written, flushed to disk and renamed over the old one. On failure the
// old file is untouched, the temporary is removed and RdfError is thrown (PathNotFound,
// FileAccess, DiskFull, PermissionDenied for a read-only target, or the RdfWrite errors
// before anything touches the disk).
void RdfSaveFile(const QString& path, const RdfReport& report, const RdfSaveHooks& hooks = {});

// Reads and parses a file: FileNotFound (53), PathNotFound (76), FileAccess (75, also for a
// FIFO, device or anything else that is not a regular file), the RdfRead errors, or
// BadFileFormat for a header whose sections are garbled (RdfCheckSections).
RdfReport RdfLoadFile(const QString& path);
