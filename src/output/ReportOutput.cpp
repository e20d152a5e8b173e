#include "output/ReportOutput.h"

#include "pdf/PdfPage.h"
#include "pdf/PdfWriter.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImageWriter>
#include <QSaveFile>
#include <QStorageInfo>
#include <QSvgGenerator>
#include <algorithm>
#include <cerrno>

namespace {

QString native(const QString& path) { return QDir::toNativeSeparators(path); }

constexpr int kPdfDpi = 1200;

// A page image as PNG bytes.
QByteArray PngBytes(const QImage& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    if (!writer.write(image))
        throw HostError(HostErr::FileAccess, QStringLiteral("Cannot encode the page: ") + writer.errorString());
    return bytes;
}

// Twips as the SVG's user unit; the page keeps its size in points.
void SetUpSvg(QSvgGenerator& svg, QIODevice* out, QSize pixels, double dpi, int page)
{
    svg.setOutputDevice(out);
    svg.setResolution(int(dpi));
    svg.setSize(pixels);
    svg.setViewBox(QRect(QPoint(0, 0), pixels));
    svg.setTitle(QStringLiteral("Page %1").arg(page + 1));
}

// A PDF page painted on any thread and compressed there.
class PdfCanvas : public PageCanvas {
public:
    explicit PdfCanvas(const QPageLayout& layout) : m_page(layout, kPdfDpi) {}
    QPaintDevice* Device() override { return &m_page; }
    void Close() override { content = m_page.Take(true); }
    Pdf::PageContent content;

private:
    PdfPage m_page;
};

// A PNG page, painted and encoded on any thread.
class PngCanvas : public PageCanvas {
public:
    explicit PngCanvas(QImage image) : m_image(std::move(image)) {}
    QPaintDevice* Device() override { return &m_image; }
    int Hints() const override { return QPainter::Antialiasing | QPainter::SmoothPixmapTransform; }
    void Close() override
    {
        bytes = PngBytes(m_image);
        m_image = QImage();
    }
    QByteArray bytes;

private:
    QImage m_image;
};

// An SVG page, written to memory on any thread.
class SvgCanvas : public PageCanvas {
public:
    SvgCanvas(QSize pixels, double dpi, int page) : m_buffer(&bytes)
    {
        m_buffer.open(QIODevice::WriteOnly);
        SetUpSvg(m_svg, &m_buffer, pixels, dpi, page);
    }
    QPaintDevice* Device() override { return &m_svg; }
    QByteArray bytes;

private:
    QBuffer m_buffer;
    QSvgGenerator m_svg;
};

} // namespace

HostError OutputFileError(const QFileDevice& file, const QString& path, bool diskFull)
{
    // Qt reports ENOSPC as a resource error, but forgets it again on commit; a folder left with
    // no room says the same.
    const QStorageInfo volume(QFileInfo(path).absolutePath());
    if (diskFull || file.error() == QFileDevice::ResourceError || file.errorString().contains(QLatin1String("No space left")) ||
        (volume.isValid() && volume.bytesAvailable() < 64 * 1024))
        return HostError(HostErr::DiskFull, QStringLiteral("Disk full: ") + native(path));
    return HostError(HostErr::FileAccess, QStringLiteral("Path/File access error: ") + native(path));
}

void RequireFolder(const QString& folder)
{
    if (!QFileInfo(folder).isDir())
        throw HostError(HostErr::PathNotFound, QStringLiteral("Path not found: ") + native(folder));
}

// Passes writes on to the temporary file, noticing the first failure: a writer that keeps
// writing into a failed device must not make a short file look whole.
class OutputFile::Sink : public QIODevice {
public:
    Sink(QSaveFile& file, qint64 failAfter) : m_file(file), m_failAfter(failAfter) { open(QIODevice::WriteOnly); }
    bool failed = false;
    bool diskFull = false;

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 len) override
    {
        if (failed)
            return -1;
        if (m_failAfter >= 0 && m_written + len > m_failAfter) {
            failed = diskFull = true;
            return -1;
        }
        if (m_file.write(data, len) != len) {
            failed = true;
            diskFull = m_file.error() == QFileDevice::ResourceError || errno == ENOSPC;
            return -1;
        }
        m_written += len;
        return len;
    }

private:
    QSaveFile& m_file;
    qint64 m_failAfter;
    qint64 m_written = 0;
};

OutputFile::OutputFile(const QString& path, const OutputHooks& hooks)
    : m_path(path)
{
    const QFileInfo info(path);
    RequireFolder(info.absolutePath());
    // Output goes to a temporary file renamed over the target: a folder, pipe or device in its
    // place is refused rather than replaced.
    if (info.exists() && !info.isFile())
        throw HostError(HostErr::FileAccess, QStringLiteral("Path/File access error: ") + native(path));
    m_file = std::make_unique<QSaveFile>(path);
    if (!m_file->open(QIODevice::WriteOnly))
        throw OutputFileError(*m_file, path);
    m_sink = std::make_unique<Sink>(*m_file, hooks.failAfterBytes);
}

OutputFile::~OutputFile()
{
    m_sink.reset();
    if (m_file && m_file->isOpen())
        m_file->cancelWriting(); // destroying it uncommitted removes the temporary
}

QIODevice& OutputFile::Device() { return *m_sink; }

void OutputFile::Fail()
{
    const HostError e = OutputFileError(*m_file, m_path, m_sink->diskFull);
    m_file->cancelWriting();
    throw e;
}

bool OutputFile::Failed() const { return m_sink->failed; }

void OutputFile::Commit()
{
    if (!m_sink->failed) {
        // The buffer's last bytes; a failure shows in error(), which commit() would reset.
        m_file->flush();
        if (m_file->error() != QFileDevice::NoError) {
            m_sink->failed = true;
            m_sink->diskFull = m_file->error() == QFileDevice::ResourceError || errno == ENOSPC;
        }
    }
    if (m_sink->failed)
        Fail();
    if (!m_file->commit())
        throw OutputFileError(*m_file, m_path, errno == ENOSPC);
}

// ---- one PDF -------------------------------------------------------------------------------

PdfFileOutput::PdfFileOutput(QString path, const OutputHooks& hooks) : m_path(std::move(path)), m_hooks(hooks) {}

PdfFileOutput::~PdfFileOutput()
{
    if (m_painter.isActive())
        m_painter.end();
    m_writer.reset();
    m_file.reset();
}

void PdfFileOutput::Begin(const QPageLayout& layout)
{
    m_file = std::make_unique<OutputFile>(m_path, m_hooks);
    m_writer = std::make_unique<PdfWriter>(&m_file->Device());
    m_writer->SetResolution(1200);
    m_writer->SetCreator(QStringLiteral("Pagewright"));
    m_writer->setPageLayout(layout);
    m_started = false;
}

QPainter* PdfFileOutput::BeginPage(int, int, const QString&)
{
    if (!m_started) {
        if (!m_painter.begin(m_writer.get()))
            m_file->Fail();
        m_started = true;
    } else {
        m_writer->newPage();
    }
    // A long run stops at the first failed write rather than painting on into nothing.
    if (m_file->Failed())
        m_file->Fail();
    return &m_painter;
}

void PdfFileOutput::EndPage() {}

double PdfFileOutput::Dpi() const { return kPdfDpi; }

std::unique_ptr<PageCanvas> PdfFileOutput::NewPdfCanvas(const QPageLayout& layout) { return std::make_unique<PdfCanvas>(layout); }

std::unique_ptr<PageCanvas> PdfFileOutput::NewCanvas(int) { return NewPdfCanvas(m_writer->pageLayout()); }

void PdfFileOutput::PutCanvas(int, int, const QString&, std::unique_ptr<PageCanvas> canvas)
{
    // A long run stops at the first failed write rather than painting on into nothing.
    if (m_file->Failed())
        m_file->Fail();
    m_writer->AddPage(static_cast<PdfCanvas&>(*canvas).content);
    m_canvasPages = true;
}

void PdfFileOutput::Finish()
{
    if (m_painter.isActive())
        m_painter.end(); // writes the trailer
    else if (m_canvasPages)
        m_writer->Close();
    const bool failed = m_writer->Failed();
    m_writer.reset();
    if (failed)
        m_file->Fail();
    m_file->Commit();
    m_file.reset();
}

// ---- a PDF per record ----------------------------------------------------------------------

PdfEachOutput::PdfEachOutput(QString folder, const OutputHooks& hooks) : m_folder(std::move(folder)), m_hooks(hooks) {}
PdfEachOutput::~PdfEachOutput() = default;

QString PdfEachOutput::FileNameFor(const QString& key)
{
    QString name;
    for (const QChar c : key) {
        const bool plain = c.unicode() < 128 && (c.isLetterOrNumber() || c == QLatin1Char('-') || c == QLatin1Char('_') || c == QLatin1Char('.'));
        name += plain ? c : QLatin1Char('_');
    }
    // A text key is given in quotes ("'OF01'"); they are no part of its name.
    if (key.size() >= 2 && key.startsWith(QLatin1Char('\'')) && key.endsWith(QLatin1Char('\'')))
        name = name.mid(1, name.size() - 2);
    if (name.isEmpty() || name.startsWith(QLatin1Char('.')))
        name.prepend(QLatin1String("record"));
    return name;
}

void PdfEachOutput::Begin(const QPageLayout& layout)
{
    RequireFolder(m_folder);
    m_layout = layout;
}

PdfFileOutput& PdfEachOutput::fileFor(int record, const QString& key)
{
    if (record != m_record || !m_current) {
        if (m_current) {
            m_current->Finish();
            ++m_files;
        }
        const QString base = FileNameFor(key);
        QString name = base;
        for (int n = 2; m_used.contains(name); ++n)
            name = base + QLatin1Char('-') + QString::number(n);
        m_used.insert(name);
        m_current = std::make_unique<PdfFileOutput>(QDir(m_folder).filePath(name + QStringLiteral(".pdf")), m_hooks);
        m_current->Begin(m_layout);
        m_record = record;
    }
    return *m_current;
}

QPainter* PdfEachOutput::BeginPage(int, int record, const QString& key) { return fileFor(record, key).BeginPage(m_page++, record, key); }

std::unique_ptr<PageCanvas> PdfEachOutput::NewCanvas(int) { return PdfFileOutput::NewPdfCanvas(m_layout); }

void PdfEachOutput::PutCanvas(int, int record, const QString& key, std::unique_ptr<PageCanvas> canvas)
{
    fileFor(record, key).PutCanvas(m_page++, record, key, std::move(canvas));
}

void PdfEachOutput::EndPage() { m_current->EndPage(); }

void PdfEachOutput::Finish()
{
    if (m_current) {
        m_current->Finish();
        ++m_files;
        m_current.reset();
    }
}

double PdfEachOutput::Dpi() const { return kPdfDpi; }

// ---- pictures of pages ---------------------------------------------------------------------

PageImageOutput::PageImageOutput(QString folder, Format format, double dpi, const OutputHooks& hooks)
    : m_folder(std::move(folder)), m_format(format), m_dpi(format == Svg ? 1440 : dpi), m_hooks(hooks)
{
}

PageImageOutput::~PageImageOutput()
{
    if (m_painter.isActive())
        m_painter.end();
}

QString PageImageOutput::FileNameFor(int page, Format format)
{
    return QStringLiteral("page-") + QString::number(page + 1).rightJustified(6, QLatin1Char('0')) +
           (format == Png ? QStringLiteral(".png") : QStringLiteral(".svg"));
}

void PageImageOutput::Begin(const QPageLayout& layout)
{
    RequireFolder(m_folder);
    m_points = layout.fullRectPoints().size();
}

QSize PageImageOutput::pagePixels() const
{
    const QSize pixels(qRound(m_points.width() * m_dpi / 72.0), qRound(m_points.height() * m_dpi / 72.0));
    if (m_format == Png && (pixels.width() <= 0 || pixels.height() <= 0 || qint64(pixels.width()) * pixels.height() > 400'000'000))
        throw HostError(5, QStringLiteral("The page is too large at %1 dpi").arg(m_dpi));
    return pixels;
}

namespace {

QImage blankPage(QSize pixels, double dpi)
{
    QImage image(pixels, QImage::Format_RGB32);
    image.setDotsPerMeterX(qRound(dpi / 0.0254));
    image.setDotsPerMeterY(qRound(dpi / 0.0254));
    image.fill(Qt::white);
    return image;
}

} // namespace

std::unique_ptr<PageCanvas> PageImageOutput::NewCanvas(int page)
{
    const QSize pixels = pagePixels();
    if (m_format == Png)
        return std::make_unique<PngCanvas>(blankPage(pixels, m_dpi));
    return std::make_unique<SvgCanvas>(pixels, m_dpi, page);
}

int PageImageOutput::PagesInFlight(int threads) const
{
    if (m_format != Png)
        return PageOutput::PagesInFlight(threads);
    // Every page waiting is a whole image: keep them within about 256 MB.
    const QSize pixels = pagePixels();
    const qint64 bytes = std::max<qint64>(1, qint64(pixels.width()) * pixels.height() * 4);
    return int(std::clamp<qint64>((256ll << 20) / bytes, threads + 1, 4 * threads));
}

void PageImageOutput::PutCanvas(int page, int, const QString&, std::unique_ptr<PageCanvas> canvas)
{
    writeFile(page, m_format == Png ? static_cast<PngCanvas&>(*canvas).bytes : static_cast<SvgCanvas&>(*canvas).bytes);
}

void PageImageOutput::writeFile(int page, const QByteArray& bytes)
{
    OutputFile file(QDir(m_folder).filePath(FileNameFor(page, m_format)), m_hooks);
    if (file.Device().write(bytes) != bytes.size())
        file.Fail();
    file.Commit();
}

QPainter* PageImageOutput::BeginPage(int page, int, const QString&)
{
    m_page = page;
    const QSize pixels = pagePixels();
    if (m_format == Png) {
        m_image = blankPage(pixels, m_dpi);
        m_painter.begin(&m_image);
        m_painter.setRenderHint(QPainter::Antialiasing);
        m_painter.setRenderHint(QPainter::SmoothPixmapTransform);
    } else {
        m_file = std::make_unique<OutputFile>(QDir(m_folder).filePath(FileNameFor(page, m_format)), m_hooks);
        auto svg = std::make_unique<QSvgGenerator>();
        SetUpSvg(*svg, &m_file->Device(), pixels, m_dpi, page);
        m_svg = std::move(svg);
        m_painter.begin(m_svg.get());
    }
    return &m_painter;
}

void PageImageOutput::EndPage()
{
    m_painter.end();
    if (m_format == Png) {
        writeFile(m_page, PngBytes(m_image));
        m_image = QImage();
    } else {
        m_svg.reset();
        m_file->Commit();
        m_file.reset();
    }
}
