#include "output/ReportEngine.h"

#include "entry/Host.h"
#include "output/ReportData.h"
#include "pdf/PdfWriter.h"
#include "render/ItemPainter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPagedPaintDevice>
#include <QPainter>
#include <algorithm>

namespace {

constexpr double kPdfDpi = 1200;

QRectF marginRect(const RdfHeader& h, QSizeF page)
{
    const double left = std::max<int>(0, h.leftMargin), right = std::max<int>(0, h.rightMargin);
    const double top = std::max<int>(0, h.topMargin), bottom = std::max<int>(0, h.bottomMargin);
    // Margins that leave no room are ignored rather than printing nothing.
    const double w = page.width() - left - right, hgt = page.height() - top - bottom;
    return QRectF(w > 0 ? left : 0, hgt > 0 ? top : 0, w > 0 ? w : page.width(), hgt > 0 ? hgt : page.height());
}

void paintLooks(QPainter& p, const std::vector<ItemLook>& looks, QPointF origin, double px)
{
    for (ItemLook l : looks) {
        l.rect.translate(origin);
        PaintItem(p, l, px);
    }
}

} // namespace

ReportEngine::ReportEngine() = default;
ReportEngine::~ReportEngine() = default;

void ReportEngine::Load(const QString& reportFile)
{
    SetReport(RdfLoadFile(reportFile));
}

void ReportEngine::SetReport(const RdfReport& report)
{
    m_report = report;
    m_sections = ReportLayout::SplitSections(m_report);
    m_values.clear();
    m_detail.clear();
    m_pages.clear();
}

bool ReportEngine::report(int done, int total) const
{
    return !m_options.progress || m_options.progress(done, total);
}

std::vector<ItemLook> ReportEngine::bandLooks(const ReportLayout::Band& band, const RecordValues& values, double px) const
{
    std::vector<ItemLook> looks;
    looks.reserve(band.items.size());
    for (size_t k = 0; k < band.items.size(); ++k) {
        const size_t i = size_t(band.items[k]);
        looks.push_back(ReportLayout::LookOf(m_report.items[i], QPointF(0, 0), values.texts[i], values.pictures[i], px));
        looks.back().rect.moveTop(band.tops[k]);
    }
    return looks;
}

bool ReportEngine::Run(const QStringList& keys)
{
    m_values.clear();
    m_detail.clear();
    m_pages.clear();
    m_missing.clear();
    m_printed.clear();
    if (gHost && !m_dictionary && !m_options.templateOnly)
        m_dictionary = gHost->NewFieldDictionary(m_options.databaseKind);

    ReportData data(m_report, m_dictionary.get());
    // Layout is in twips; grow and shrink measure at the PDF's resolution, which is also fine
    // enough for any printer.
    const double px = PixelTwipsForDpi(kPdfDpi);
    std::vector<std::vector<double>> heights;
    const int total = int(keys.size());
    for (int k = 0; k < total; ++k) {
        if (!report(k, total))
            return false;
        RecordValues values;
        if (m_options.templateOnly)
            data.Blank(values);
        else if (!data.Fetch(keys[k], values)) {
            m_missing << keys[k];
            continue;
        }
        m_values.push_back(std::move(values));
        m_printed << keys[k];
    }
    // Totals need every record before any band is fitted.
    data.ApplyTotals(m_values);
    for (const RecordValues& values : m_values) {
        std::vector<std::vector<ItemLook>> bands;
        std::vector<double> h;
        for (const ReportLayout::Band& band : m_sections.detail) {
            std::vector<ItemLook> looks = bandLooks(band, values, px);
            h.push_back(ReportLayout::FitBand(band, m_report, looks, px));
            bands.push_back(std::move(looks));
        }
        m_detail.push_back(std::move(bands));
        heights.push_back(std::move(h));
    }
    if (!report(total, total))
        return false;

    const QSizeF points = m_options.pageSize.size(QPageSize::Point);
    m_pageTwips = QSizeF(points.width() * 20, points.height() * 20);
    const QRectF inner = marginRect(m_report.header, m_pageTwips);
    ReportLayout::Frame frame;
    frame.body = inner.adjusted(0, m_sections.header.height, 0, -m_sections.footer.height);
    if (frame.body.height() < 0)
        frame.body.setHeight(0);
    frame.columns = std::max<int>(1, m_report.header.numberOfColumns);
    frame.leftToRight = m_report.header.headerFlags & ReportLayout::FillLeftToRight;
    frame.newPagePerRecord = m_options.newPagePerRecord;
    frame.spacing = std::max<int>(0, m_report.header.sectionSpacingTwips);
    std::vector<bool> breaks;
    for (const ReportLayout::Band& b : m_sections.detail)
        breaks.push_back(b.pageBreakAfter);
    m_pages = ReportLayout::Paginate(heights, breaks, frame);
    return true;
}

void ReportEngine::PaintPage(QPainter& p, int page, double dpi) const
{
    if (page < 0 || page >= PageCount())
        return;
    const ReportLayout::Page& pg = m_pages[size_t(page)];
    const double px = PixelTwipsForDpi(dpi);
    p.save();
    p.scale(dpi / 1440.0, dpi / 1440.0);
    const QRectF inner = marginRect(m_report.header, m_pageTwips);
    const RecordValues& first = m_values[size_t(pg.firstRecord)];

    paintLooks(p, bandLooks(m_sections.header, first, px), inner.topLeft(), px);
    for (const ReportLayout::Placement& b : pg.bands)
        paintLooks(p, m_detail[size_t(b.record)][size_t(b.band)], b.origin, px);
    paintLooks(p, bandLooks(m_sections.footer, first, px), QPointF(inner.left(), inner.bottom() - m_sections.footer.height), px);

    const int flags = m_report.header.headerFlags;
    if (flags & ReportLayout::PageNumbers) {
        ItemLook number;
        number.text = QStringLiteral("Page ") + QString::number(page + 1);
        number.alignment = ItemCode::AlignCenter;
        number.fontSize = 9;
        const double h = 9 * 20 * 1.6;
        // In the bottom margin, just below the printing area.
        number.rect = QRectF(inner.left(), std::min(inner.bottom() + 60, m_pageTwips.height() - h), inner.width(), h);
        PaintItem(p, number, px);
    }
    if (flags & ReportLayout::PageBorder) {
        ItemLook border;
        border.kind = ItemKind::Box;
        border.borderStyle = ItemCode::BorderSolid;
        border.borderWidth = 1;
        border.rect = inner;
        PaintItem(p, border, px);
    }
    p.restore();
}

bool ReportEngine::PrintTo(QPagedPaintDevice& device, int copies)
{
    device.setPageSize(m_options.pageSize);
    device.setPageOrientation(QPageLayout::Portrait);
    device.setPageMargins(QMarginsF(0, 0, 0, 0), QPageLayout::Point);
    QPainter p;
    if (!p.begin(&device))
        throw HostError(HostErr::FileAccess, QStringLiteral("Cannot print on this device"));
    const double dpi = device.logicalDpiX();
    // The device's origin is the printable area; pages are laid out from the paper's corner.
    const QRectF paintRect = device.pageLayout().paintRectPoints();
    p.translate(-paintRect.left() * dpi / 72.0, -paintRect.top() * dpi / 72.0);
    const int pages = PageCount();
    const int total = pages * std::max(1, copies);
    for (int i = 0; i < total; ++i) {
        if (!report(i, total)) {
            p.end();
            return false;
        }
        if (i > 0)
            device.newPage();
        PaintPage(p, i % pages, dpi);
    }
    p.end();
    return report(total, total);
}

bool ReportEngine::WritePdf(const QString& path)
{
    const QFileInfo info(path);
    if (!info.absoluteDir().exists())
        throw HostError(HostErr::PathNotFound, QStringLiteral("Path not found: ") + path);
    bool ok = false;
    bool failed = false;
    {
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            throw HostError(HostErr::FileAccess, QStringLiteral("Cannot write ") + path);
        PdfWriter pdf(&file);
        pdf.SetResolution(int(kPdfDpi));
        pdf.SetCreator(QStringLiteral("Pagewright"));
        ok = PrintTo(pdf);
        failed = pdf.Failed() || !file.flush();
    }
    // Only a file of our own goes again: the target may be a pipe or a device.
    const bool regular = QFileInfo(path).isFile();
    if (failed) {
        if (regular)
            QFile::remove(path);
        throw HostError(HostErr::DiskFull, QStringLiteral("Disk full: ") + path);
    }
    if (!ok) {
        if (regular)
            QFile::remove(path); // a cancelled run leaves no half-written file
        return false;
    }
    if (!QFileInfo::exists(path) || QFileInfo(path).size() == 0)
        throw HostError(HostErr::FileAccess, QStringLiteral("Cannot write ") + path);
    return ok;
}
