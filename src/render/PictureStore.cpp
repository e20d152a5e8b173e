#include "render/Picture.h"

#include "entry/HostError.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QImageReader>
#include <QRunnable>
#include <QThreadPool>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// Decoded pixels kept across every picture of one store; the least recently decoded picture
// gives its copy back first. A picture never holds its own lock while calling in here, and
// this calls pictures only under its own lock, so the two cannot deadlock.
class PictureBudget {
public:
    explicit PictureBudget(qint64 limit) : m_limit(limit) {}

    void Add(const Picture* picture, qint64 bytes)
    {
        std::vector<const Picture*> evict;
        {
            std::lock_guard lock(m_mutex);
            forget(picture);
            m_held.push_back({picture, bytes});
            m_used += bytes;
            while (m_used > m_limit && m_held.size() > 1) {
                evict.push_back(m_held.front().picture);
                m_used -= m_held.front().bytes;
                m_held.erase(m_held.begin());
            }
            // Released under the lock so that a picture being destroyed waits for it.
            for (const Picture* p : evict)
                p->release();
        }
    }
    void Remove(const Picture* picture)
    {
        std::lock_guard lock(m_mutex);
        forget(picture);
    }
    qint64 Used() const
    {
        std::lock_guard lock(m_mutex);
        return m_used;
    }

private:
    void forget(const Picture* picture)
    {
        for (auto it = m_held.begin(); it != m_held.end(); ++it)
            if (it->picture == picture) {
                m_used -= it->bytes;
                m_held.erase(it);
                return;
            }
    }
    struct Held {
        const Picture* picture;
        qint64 bytes;
    };
    mutable std::mutex m_mutex;
    qint64 m_limit, m_used = 0;
    std::vector<Held> m_held;
};

namespace {

QString TooLarge(QSize s)
{
    return QStringLiteral("Picture too large: %1 x %2 pixels (the limit is %3 megapixels)")
        .arg(s.width())
        .arg(s.height())
        .arg(PictureStore::MaxPixels / 1'000'000);
}

QByteArray ContentHash(const QByteArray& bytes) { return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1); }

struct Fd {
    int fd = -1;
    ~Fd()
    {
        if (fd >= 0)
            ::close(fd);
    }
};

} // namespace

// --- Picture ---------------------------------------------------------------------------

Picture::~Picture()
{
    if (m_budget)
        m_budget->Remove(this);
}

std::shared_ptr<const Picture> Picture::FromImage(const QImage& image)
{
    std::shared_ptr<Picture> p(new Picture);
    p->m_size = image.size();
    p->m_image = image;
    if (!image.isNull()) {
        QCryptographicHash h(QCryptographicHash::Sha1);
        h.addData(QByteArray::number(image.width()) + 'x' + QByteArray::number(image.height()) + '/' +
                  QByteArray::number(int(image.format())));
        h.addData(QByteArrayView(reinterpret_cast<const char*>(image.constBits()), image.sizeInBytes()));
        p->m_hash = h.result();
    }
    return p;
}

QImage Picture::decode(QSize scaled) const
{
    QBuffer buffer;
    buffer.setData(m_bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    if (scaled.isValid())
        reader.setScaledSize(scaled);
    return reader.read();
}

QImage Picture::Image() const
{
    qint64 bytes = 0;
    QImage img;
    {
        std::lock_guard lock(m_mutex);
        if (!m_image.isNull() || m_bytes.isEmpty())
            return m_image;
        m_image = decode({});
        img = m_image;
        bytes = m_image.sizeInBytes();
    }
    if (m_budget && bytes > 0)
        m_budget->Add(this, bytes);
    return img;
}

QImage Picture::ImageFor(QSize pixels) const
{
    if (!pixels.isValid() || pixels.isEmpty() || pixels.width() >= m_size.width() || pixels.height() >= m_size.height())
        return Image();
    {
        std::lock_guard lock(m_mutex);
        for (const QImage& c : m_screenCopies)
            if (std::abs(c.width() - pixels.width()) <= 1 && std::abs(c.height() - pixels.height()) <= 1)
                return c;
    }
    QImage source;
    {
        std::lock_guard lock(m_mutex);
        source = m_image;
    }
    QImage copy;
    if (source.isNull() && m_jpeg) {
        // A JPEG decodes straight to a small size, never holding the whole picture.
        copy = decode(pixels);
    } else {
        if (source.isNull())
            source = Image();
        if (source.isNull())
            return {};
        copy = source.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    std::lock_guard lock(m_mutex);
    m_screenCopies.push_back(copy);
    if (m_screenCopies.size() > 3)
        m_screenCopies.erase(m_screenCopies.begin());
    return copy;
}

bool Picture::IsDecoded() const
{
    std::lock_guard lock(m_mutex);
    return !m_image.isNull();
}

void Picture::release() const
{
    std::lock_guard lock(m_mutex);
    if (!m_bytes.isEmpty()) // an in-memory picture has nothing to decode it again from
        m_image = QImage();
}

// --- PictureStore ------------------------------------------------------------------------

PictureStore::PictureStore(qint64 decodedBudget, qint64 fileBudget)
    : m_budget(std::make_shared<PictureBudget>(decodedBudget))
    , m_fileBudget(fileBudget)
    , m_pool(std::make_unique<QThreadPool>())
{
    m_pool->setMaxThreadCount(1);
    // Qt refuses decodes past 256 MB by default; our own pixel limit is the one that speaks.
    if (QImageReader::allocationLimit() < 512)
        QImageReader::setAllocationLimit(512);
}

PictureStore::~PictureStore() { m_pool->waitForDone(); }

PictureStore& PictureStore::Global()
{
    static PictureStore* store = new PictureStore; // outlives every picture handed out
    return *store;
}

PictureRef PictureStore::cached(const QString& key)
{
    std::lock_guard lock(m_mutex);
    auto it = m_byKey.constFind(key);
    if (it == m_byKey.cend())
        return {};
    m_lru.splice(m_lru.end(), m_lru, *it);
    return (*it)->picture;
}

PictureRef PictureStore::byContent(const QByteArray& hash)
{
    std::lock_guard lock(m_mutex);
    auto it = m_byContent.constFind(hash);
    return it == m_byContent.cend() ? PictureRef() : it->lock();
}

void PictureStore::remember(const QString& key, const PictureRef& picture)
{
    std::lock_guard lock(m_mutex);
    if (m_byKey.contains(key))
        return;
    m_lru.push_back({key, picture});
    m_byKey.insert(key, std::prev(m_lru.end()));
    m_fileBytes += picture->Bytes().size();
    m_byContent.insert(picture->Hash(), picture);
    while (m_fileBytes > m_fileBudget && m_lru.size() > 1) {
        m_fileBytes -= m_lru.front().picture->Bytes().size();
        m_byKey.remove(m_lru.front().key);
        m_lru.pop_front();
    }
    // Content entries of pictures nobody holds any more go now and then.
    if (m_byContent.size() > 2 * qsizetype(m_lru.size()) + 64)
        for (auto it = m_byContent.begin(); it != m_byContent.end();)
            it = it->expired() ? m_byContent.erase(it) : std::next(it);
}

PictureRef PictureStore::make(QByteArray bytes, QByteArray hash)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    QSize size = reader.size();
    std::optional<JpegStream> jpeg = ParseJpegStream(bytes);
    if (!size.isValid() || size.isEmpty()) {
        // The decoder gave up before the frame; a frame too large still says so.
        if (jpeg && qint64(jpeg->width) * jpeg->height > MaxPixels)
            throw HostError(481, TooLarge(QSize(jpeg->width, jpeg->height)));
        throw HostError(481, QStringLiteral("Invalid picture"));
    }
    if (reader.transformation() & QImageIOHandler::TransformationRotate90)
        size.transpose();
    if (qint64(size.width()) * size.height() > MaxPixels)
        throw HostError(481, TooLarge(size));
    std::shared_ptr<Picture> p(new Picture);
    p->m_size = size;
    p->m_jpeg = std::move(jpeg);
    if (p->m_jpeg && (p->m_jpeg->width != size.width() || p->m_jpeg->height != size.height()))
        p->m_jpeg.reset(); // the frame and the reader disagree: decode it instead
    p->m_bytes = std::move(bytes);
    p->m_hash = std::move(hash);
    p->m_budget = m_budget;
    return p;
}

PictureRef PictureStore::FromBytes(const QByteArray& bytes)
{
    QByteArray hash = ContentHash(bytes);
    const QString key = QStringLiteral("#") + QString::fromLatin1(hash.toHex());
    if (PictureRef p = cached(key))
        return p;
    PictureRef p = byContent(hash);
    if (!p)
        p = make(bytes, hash);
    remember(key, p);
    return p;
}

PictureRef PictureStore::Load(const QString& localPath)
{
    if (localPath.isEmpty())
        throw HostError(HostErr::FileNotFound, QStringLiteral("File not found"));
    const QByteArray native = localPath.toLocal8Bit();
    // Non-blocking, so that opening a FIFO with no writer returns at once; only regular
    // files are read, all of them, by the size they had when opened.
    Fd f{::open(native.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)};
    if (f.fd < 0) {
        if (errno == ENOENT || errno == ENOTDIR)
            throw HostError(HostErr::FileNotFound, QStringLiteral("File not found"));
        throw HostError(HostErr::FileAccess, QStringLiteral("Path/File access error"));
    }
    struct stat st {};
    if (::fstat(f.fd, &st) != 0 || !S_ISREG(st.st_mode))
        throw HostError(HostErr::FileAccess, QStringLiteral("Path/File access error"));
    const QString key = localPath + QLatin1Char('|') + QString::number(qint64(st.st_size)) + QLatin1Char('|') +
                        QString::number(qint64(st.st_mtim.tv_sec)) + QLatin1Char('.') +
                        QString::number(qint64(st.st_mtim.tv_nsec)) + QLatin1Char('|') + QString::number(qint64(st.st_ino));
    if (PictureRef p = cached(key))
        return p;
    if (st.st_size > MaxFileBytes)
        throw HostError(481, QStringLiteral("Picture too large: %1 bytes").arg(qint64(st.st_size)));
    QByteArray bytes(qsizetype(st.st_size), Qt::Uninitialized);
    qsizetype got = 0;
    while (got < bytes.size()) {
        const ssize_t r = ::read(f.fd, bytes.data() + got, size_t(bytes.size() - got));
        if (r < 0 && errno == EINTR)
            continue;
        if (r < 0)
            throw HostError(HostErr::FileAccess, QStringLiteral("Path/File access error"));
        if (r == 0)
            break; // the file shrank since it was opened
        got += r;
    }
    bytes.truncate(got);
    QByteArray hash = ContentHash(bytes);
    PictureRef p = byContent(hash);
    if (!p)
        p = make(std::move(bytes), std::move(hash));
    remember(key, p);
    return p;
}

PictureRef PictureStore::TryLoad(const QString& localPath) noexcept
{
    try {
        return Load(localPath);
    } catch (const HostError&) {
        return {};
    }
}

void PictureStore::Prefetch(const QStringList& localPaths, bool decode)
{
    m_pool->start([this, localPaths, decode] {
        for (const QString& path : localPaths)
            if (PictureRef p = TryLoad(path); p && decode)
                p->Image();
    });
}

void PictureStore::WaitForPrefetch() { m_pool->waitForDone(); }

void PictureStore::Clear()
{
    std::lock_guard lock(m_mutex);
    m_lru.clear();
    m_byKey.clear();
    m_byContent.clear();
    m_fileBytes = 0;
}

qint64 PictureStore::DecodedBytes() const { return m_budget->Used(); }

int PictureStore::CachedCount() const
{
    std::lock_guard lock(m_mutex);
    return int(m_lru.size());
}
