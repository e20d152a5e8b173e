#include "pdf/PdfWriter.h"

#include "pdf/PdfEngine.h"

#include <QtGui/private/qpagedpaintdevice_p.h>

namespace {

// The page layout a paged device keeps; the base class reaches it through its private part.
class PdfWriterPrivate : public QPagedPaintDevicePrivate {
public:
    bool setPageLayout(const QPageLayout& layout) override
    {
        m_layout = layout;
        return true;
    }
    bool setPageSize(const QPageSize& size) override
    {
        m_layout.setPageSize(size);
        return m_layout.pageSize().isEquivalentTo(size);
    }
    bool setPageOrientation(QPageLayout::Orientation orientation) override
    {
        m_layout.setOrientation(orientation);
        return true;
    }
    bool setPageMargins(const QMarginsF& margins, QPageLayout::Unit units) override
    {
        m_layout.setUnits(units);
        return m_layout.setMargins(margins);
    }
    QPageLayout pageLayout() const override { return m_layout; }

private:
    QPageLayout m_layout{QPageSize(QPageSize::Letter), QPageLayout::Portrait, QMarginsF(0, 0, 0, 0), QPageLayout::Point};
};

} // namespace

PdfWriter::PdfWriter(QIODevice* out)
    : QPagedPaintDevice(new PdfWriterPrivate)
    , m_engine(std::make_unique<PdfEngine>(out))
{
}

PdfWriter::~PdfWriter() = default;

void PdfWriter::SetResolution(int dpi) { m_dpi = std::max(1, dpi); }
void PdfWriter::SetCreator(const QString& creator) { m_engine->creator = creator; }
void PdfWriter::SetTitle(const QString& title) { m_engine->title = title; }
void PdfWriter::SetCompressPages(bool on) { m_engine->compressPages = on; }

bool PdfWriter::newPage()
{
    if (!m_engine->isActive())
        return false;
    m_engine->NewPage();
    return true;
}

void PdfWriter::AddPage(const Pdf::PageContent& page) { m_engine->AddPage(page); }
void PdfWriter::Close() { m_engine->Close(); }

QPaintEngine* PdfWriter::paintEngine() const { return m_engine.get(); }

int PdfWriter::PageCount() const { return m_engine->PageCount(); }
int PdfWriter::PictureCount() const { return m_engine->PictureCount(); }
bool PdfWriter::Failed() const { return m_engine->Failed(); }

int PdfWriter::metric(PaintDeviceMetric metric) const { return Pdf::PageMetric(pageLayout(), m_dpi, metric); }
