#pragma once
// Pictures as the designer, the preview and the PDF share them: one immutable Picture per
// distinct file (or content), decoded at most once while it is cached, with its natural size
// known from the header alone. A JPEG keeps its original bytes so that a PDF can carry them
// as they are. Everything here is safe to use from several threads.
//
//   PictureRef p = PictureStore::Global().Load(path);   // throws HostError; no decode yet
//   p->PixelSize();                                      // from the header
//   p->ImageFor(QSize(200, 150));                        // a screen copy, decoded on first use
#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QHash>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

class PictureBudget;
class QThreadPool;

// What a PDF needs to embed a JPEG without decoding it.
struct JpegStream {
    int width = 0, height = 0;
    int components = 0;         // 1 gray, 3 RGB (YCbCr), 4 CMYK
    bool invertedCmyk = false;  // Adobe's CMYK JPEGs store the inks inverted
};

// Parses a JPEG's markers up to its frame header. Empty when the bytes are not a JPEG a PDF
// reader can show as they are (8-bit baseline or progressive, 1, 3 or 4 components, no
// orientation other than upright).
std::optional<JpegStream> ParseJpegStream(const QByteArray& bytes);

class Picture {
public:
    // A picture held in memory already (tests, generated images). Its content hash is taken
    // over the pixels.
    static std::shared_ptr<const Picture> FromImage(const QImage& image);

    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;
    ~Picture();

    // Pixels as shown (a JPEG's orientation applied), known without decoding.
    QSize PixelSize() const { return m_size; }
    // A hash of the file's bytes (or of the pixels), the identity of the content.
    const QByteArray& Hash() const { return m_hash; }
    // The original file bytes (empty for FromImage).
    const QByteArray& Bytes() const { return m_bytes; }
    // Set when the bytes can go into a PDF as a DCT stream unchanged.
    const std::optional<JpegStream>& Jpeg() const { return m_jpeg; }

    // The whole decoded picture; decoded once and kept while the store's budget allows.
    // Null when the bytes do not decode.
    QImage Image() const;
    // A copy for drawing into `pixels` device pixels: the whole picture when the target is at
    // least as large, otherwise a smooth copy of about that size (kept for the next paint).
    QImage ImageFor(QSize pixels) const;
    // Whether a decoded copy is held now (for tests and the budget).
    bool IsDecoded() const;

private:
    friend class PictureStore;
    friend class PictureBudget;
class QThreadPool;
    Picture() = default;
    QImage decode(QSize scaled) const;
    void release() const; // the budget drops the decoded copy

    QSize m_size;
    QByteArray m_hash, m_bytes;
    std::optional<JpegStream> m_jpeg;
    std::shared_ptr<PictureBudget> m_budget;

    mutable std::mutex m_mutex;
    mutable QImage m_image;                     // the whole picture, when decoded
    mutable std::vector<QImage> m_screenCopies; // a few scaled copies, newest last
};

using PictureRef = std::shared_ptr<const Picture>;

// The process's pictures: a cache by path (with size and modification time) and by content,
// bounded by the bytes it keeps, and the limit on what a picture may decode to.
class PictureStore {
public:
    // decodedBudget: bytes of decoded pixels kept at once; fileBudget: bytes of files kept.
    explicit PictureStore(qint64 decodedBudget = 256ll << 20, qint64 fileBudget = 64ll << 20);
    ~PictureStore();
    static PictureStore& Global();

    static constexpr qint64 MaxPixels = 100'000'000;   // 100 megapixels decode to 400 MB
    static constexpr qint64 MaxFileBytes = 256ll << 20;

    // Reads a picture file. Only regular files are opened (a FIFO or a device would hang or
    // never end), read in one go with the size known up front. Throws HostError:
    // 53 "File not found", 75 "Path/File access error" (a folder, a device, unreadable),
    // 481 "Invalid picture", 481 "Picture too large: W x H pixels (the limit is 100 megapixels)".
    PictureRef Load(const QString& localPath);
    // Like Load, but a picture that cannot be read gives null instead of an error.
    PictureRef TryLoad(const QString& localPath) noexcept;
    // Picture bytes kept inside a report file; shared by content with every other use.
    PictureRef FromBytes(const QByteArray& bytes);

    // Loads (and, with decode, decodes) pictures on a worker thread so that a later Load finds
    // them in the cache. Unreadable paths are skipped quietly.
    void Prefetch(const QStringList& localPaths, bool decode);
    // Waits for the prefetches under way.
    void WaitForPrefetch();

    void Clear();
    qint64 DecodedBytes() const;
    int CachedCount() const;

private:
    struct Entry {
        QString key;
        PictureRef picture;
    };
    PictureRef cached(const QString& key);
    PictureRef byContent(const QByteArray& hash);
    PictureRef make(QByteArray bytes, QByteArray hash);
    void remember(const QString& key, const PictureRef& picture);

    std::shared_ptr<PictureBudget> m_budget;
    qint64 m_fileBudget;
    mutable std::mutex m_mutex;
    std::list<Entry> m_lru; // least recently used first
    QHash<QString, std::list<Entry>::iterator> m_byKey;
    QHash<QByteArray, std::weak_ptr<const Picture>> m_byContent;
    qint64 m_fileBytes = 0;
    std::unique_ptr<QThreadPool> m_pool;
};
