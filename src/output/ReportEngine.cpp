#include "output/ReportEngine.h"

#include "entry/Host.h"
#include "output/PagePipeline.h"
#include "output/ReportData.h"
#include "output/ReportOutput.h"
#include "render/ItemPainter.h"
#include "document/RdfPaper.h"

#include <QPagedPaintDevice>
#include <QPainter>
#include <QSet>
#include <QThread>
#include <algorithm>

namespace {

// Grow and shrink measure at the PDF's resolution, which is also fine enough for any printer.
constexpr double kLayoutDpi = 1200;
constexpr int kInvalidValue = 380; // the classic runtime's number for an argument out of range

QRectF marginRect(const RdfHeader& h, QSizeF page)
{
    const double left = std::max<int>(0, h.leftMargin), right = std::max<int>(0, h.rightMargin);
    const double top = std::max<int>(0, h.topMargin), bottom = std::max<int>(0, h.bottomMargin);
    // Margins that leave no room are ignored rather than printing nothing.
    const double w = page.width() - left - right, hgt = page.height() - top - bottom;
    return QRectF(w > 0 ? left : 0, hgt > 0 ? top : 0, w > 0 ? w : page.width(), hgt > 0 ? hgt : page.height());
}

void appendLooks(std::vector<ItemLook>& out, const std::vector<ItemLook>& looks, QPointF origin)
{
    for (const ItemLook& l : looks) {
        out.push_back(l);
        out.back().rect.translate(origin);
    }
}

// Pictures are read ahead this many records at a time, a window that fits well inside the
// picture store's cache of file bytes.
constexpr size_t kPrefetchWindow = 64;

int lastRecordOn(const ReportLayout::Page& page)
{
    int last = page.firstRecord;
    for (const ReportLayout::Placement& b : page.bands)
        last = std::max(last, b.record);
    return last;
}

} // namespace

// A stretch of a fitted band that goes on one page: a band taller than the page body is cut
// into pieces between items, so nothing falls below the printable area.
struct ReportEngine::Piece {
    std::vector<ItemLook> looks; // relative to the piece's top
    double height = 0;
    bool pageBreakAfter = false;
};

struct ReportEngine::Record {
    QString key;
    RecordValues values; // for the page header and footer
    std::vector<Piece> pieces;
};

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
    m_records.clear();
    m_pages.clear();
    m_pageCount = 0;
}

QPageLayout ReportEngine::PageLayout() const
{
    const std::optional<RdfPaper> stored = RdfReadPaper(m_report.header);
    const QPageSize size = m_options.paper ? *m_options.paper : stored ? stored->PageSize() : QPageSize(QPageSize::Letter);
    const bool landscape = m_options.landscape ? *m_options.landscape : stored && stored->landscape;
    return QPageLayout(size, landscape ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF(0, 0, 0, 0));
}

QSizeF ReportEngine::PagePoints() const
{
    return PageLayout().fullRectPoints().size();
}

bool ReportEngine::report(int done, int total) const
{
    return !m_options.progress || m_options.progress(done, total);
}

void ReportEngine::warn(const QString& text)
{
    if (!m_warnings.contains(text))
        m_warnings << text;
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

ReportEngine::Record ReportEngine::layoutRecord(const QString& key, RecordValues&& values, double px)
{
    Record rec;
    rec.key = key;
    const QRectF inner = marginRect(m_report.header, m_pageTwips);
    const double room = inner.height() - m_sections.header.height - m_sections.footer.height;
    for (const ReportLayout::Band& band : m_sections.detail) {
        std::vector<ItemLook> looks = bandLooks(band, values, px);
        const double height = ReportLayout::FitBand(band, m_report, looks, px);
        // Cut where no item is split: an item crossing the page's foot moves to the next piece.
        std::vector<double> cuts{0};
        while (room > 0 && height - cuts.back() > room) {
            const double start = cuts.back();
            double cut = start + room;
            for (const ItemLook& l : looks)
                if (l.rect.top() > start && l.rect.top() < cut && l.rect.bottom() > cut)
                    cut = l.rect.top();
            cuts.push_back(cut);
        }
        cuts.push_back(std::max(height, cuts.back()));
        for (size_t c = 0; c + 1 < cuts.size(); ++c) {
            Piece piece;
            piece.height = cuts[c + 1] - cuts[c];
            for (size_t k = 0; k < looks.size(); ++k) {
                const ItemLook& l = looks[k];
                const bool last = c + 2 == cuts.size();
                if (l.rect.top() < cuts[c] || (!last && l.rect.top() >= cuts[c + 1]))
                    continue;
                if (room > 0 && l.rect.height() > room + 0.5) {
                    const RdfItem& it = m_report.items[size_t(band.items[k])];
                    warn(QStringLiteral("Item %1%2 is taller than the printing area of the page (%3 of %4 twips) and is cut at the page's foot")
                             .arg(band.items[k] + 1)
                             .arg(it.name.isEmpty() ? QString() : QStringLiteral(" (") + it.name + QLatin1Char(')'))
                             .arg(qRound(room))
                             .arg(qRound(l.rect.height())));
                }
                piece.looks.push_back(l);
                piece.looks.back().rect.translate(0, -cuts[c]);
            }
            // What is left below a cut item is no page of its own.
            if (c > 0 && piece.looks.empty())
                continue;
            rec.pieces.push_back(std::move(piece));
        }
        rec.pieces.back().pageBreakAfter = band.pageBreakAfter;
    }
    rec.values = std::move(values);
    return rec;
}

const ReportEngine::Record& ReportEngine::record(int index) const
{
    return m_records[size_t(index - m_firstRecord)];
}

void ReportEngine::releaseBefore(int index)
{
    while (m_firstRecord < index && !m_records.empty()) {
        m_records.pop_front();
        ++m_firstRecord;
    }
}

bool ReportEngine::run(const QStringList& keys, const std::function<bool(const ReportLayout::Page&)>& pageDone, bool keep)
{
    m_records.clear();
    m_firstRecord = 0;
    m_pages.clear();
    m_pageCount = 0;
    m_heldPeak = 0;
    m_missing.clear();
    m_printed.clear();
    m_warnings.clear();
    if (gHost && !m_dictionary && !m_options.templateOnly)
        m_dictionary = gHost->NewFieldDictionary(m_options.databaseKind);

    ReportData data(m_report, m_dictionary.get());
    const double px = PixelTwipsForDpi(kLayoutDpi);
    const QSizeF points = PagePoints();
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

    const int total = int(keys.size());
    const int chunk = std::max(1, m_options.chunkSize);
    auto fetch = [&](int start, std::vector<std::optional<RecordValues>>& out, bool pictures) {
        const QStringList part = keys.mid(start, chunk);
        if (m_options.templateOnly) {
            out.clear();
            out.resize(size_t(part.size()));
            for (auto& v : out)
                data.Blank(v.emplace());
        } else {
            data.FetchMany(part, out, pictures);
        }
    };

    // Totals need every record before the first page: a pass over the values alone.
    ReportTotals totals(m_report);
    std::vector<std::optional<RecordValues>> values;
    if (!totals.Empty() && !m_options.templateOnly) {
        for (int start = 0; start < total; start += chunk) {
            if (!report(start / 2, total))
                return false;
            fetch(start, values, false);
            for (const auto& v : values)
                if (v)
                    totals.Add(*v);
        }
    }
    totals.Finish(data);
    const int base = totals.Empty() || m_options.templateOnly ? 0 : total / 2;
    auto progressAt = [&](int done) { return base ? base + done / 2 : done; };

    ReportLayout::Paginator pager(frame);
    auto flush = [&](std::vector<ReportLayout::Page> pages) {
        for (ReportLayout::Page& page : pages) {
            ++m_pageCount;
            if (keep) {
                m_pages.push_back(std::move(page));
                continue;
            }
            if (!pageDone(page))
                return false;
            // Later pages only show records from the last one on this page on.
            releaseBefore(lastRecordOn(page));
        }
        // ... and none before the first record of the page still open.
        if (!keep && pager.OpenFirstRecord() >= 0)
            releaseBefore(pager.OpenFirstRecord());
        return true;
    };
    int index = 0;
    for (int start = 0; start < total; start += chunk) {
        fetch(start, values, true);
        for (size_t i = 0; i < values.size(); ++i) {
            // The files of the next records are read (and hashed) on another thread while
            // these are laid out and painted.
            if (i == 0)
                prefetchPictures(values, 0, 2 * kPrefetchWindow);
            else if (i % kPrefetchWindow == 0)
                prefetchPictures(values, i + kPrefetchWindow, kPrefetchWindow);
            if (!report(progressAt(start + int(i)), total))
                return false;
            const QString& key = keys[start + qsizetype(i)];
            if (!values[i]) {
                m_missing << key;
                continue;
            }
            totals.Apply(*values[i]);
            data.LoadPictures(*values[i]);
            m_records.push_back(layoutRecord(key, std::move(*values[i]), px));
            m_heldPeak = std::max(m_heldPeak, int(m_records.size()));
            values[i].reset();
            m_printed << key;
            std::vector<double> heights;
            std::vector<bool> breaks;
            for (const Piece& p : m_records.back().pieces) {
                heights.push_back(p.height);
                breaks.push_back(p.pageBreakAfter);
            }
            pager.Add(index++, heights, breaks);
            if (!flush(pager.TakeFinished()))
                return false;
        }
    }
    if (!flush(pager.Finish()))
        return false;
    return report(total, total);
}

void ReportEngine::prefetchPictures(const std::vector<std::optional<RecordValues>>& values, size_t from, size_t count)
{
    QStringList paths;
    for (size_t i = from; i < values.size() && i < from + count; ++i) {
        if (!values[i])
            continue;
        for (const QString& file : values[i]->pictureFiles)
            if (!file.isEmpty())
                paths << file;
    }
    if (!paths.isEmpty())
        PictureStore::Global().Prefetch(paths, m_decodePrefetched);
}

bool ReportEngine::Run(const QStringList& keys)
{
    m_decodePrefetched = false; // the preview scales what it shows
    return run(keys, {}, true);
}

bool ReportEngine::Print(const QStringList& keys, PageOutput& output)
{
    output.Begin(PageLayout());
    m_decodePrefetched = output.NeedsPixels();
    const int threads = m_options.threads > 0 ? m_options.threads : QThread::idealThreadCount();
    // Painting (text shaping above all) is most of a page's cost; the layout stays on this
    // thread, in order, and the pages are painted wherever there is a free core.
    std::unique_ptr<PagePipeline> pipeline;
    if (threads > 1 && output.PaintsAnywhere())
        pipeline = std::make_unique<PagePipeline>(threads, output.PagesInFlight(threads));
    const double dpi = output.Dpi();
    int number = 0;
    const bool done = run(keys, [&](const ReportLayout::Page& page) {
        const int first = page.firstRecord;
        const QString key = record(first).key;
        if (pipeline) {
            std::unique_ptr<PageCanvas> canvas = output.NewCanvas(number);
            if (!canvas)
                return false;
            auto looks = std::make_shared<const std::vector<ItemLook>>(pageLooks(page, number, dpi));
            pipeline->Submit(
                std::move(canvas),
                [looks, dpi](PageCanvas& c) {
                    QPainter p(c.Device());
                    if (c.Hints()) // setting none still makes an SVG write a group
                        p.setRenderHints(QPainter::RenderHints(c.Hints()));
                    PaintLooks(p, *looks, dpi);
                },
                [&output, n = number, first, key](std::unique_ptr<PageCanvas> c) { output.PutCanvas(n, first, key, std::move(c)); });
            ++number;
            return true;
        }
        QPainter* p = output.BeginPage(number, first, key);
        if (!p)
            return false;
        paintPage(*p, page, number, dpi);
        output.EndPage();
        ++number;
        return true;
    }, false);
    if (done && pipeline)
        pipeline->Finish();
    pipeline.reset(); // on a cancel or a failure: the pages in flight are dropped
    m_records.clear();
    if (!done)
        return false;
    if (m_pageCount > 0)
        output.Finish();
    return true;
}

void ReportEngine::PaintPage(QPainter& p, int page, double dpi) const
{
    if (page < 0 || page >= int(m_pages.size()))
        return;
    paintPage(p, m_pages[size_t(page)], page, dpi);
}

void PaintLooks(QPainter& p, const std::vector<ItemLook>& looks, double dpi)
{
    const double px = PixelTwipsForDpi(dpi);
    p.save();
    p.scale(dpi / 1440.0, dpi / 1440.0);
    for (const ItemLook& l : looks)
        PaintItem(p, l, px);
    p.restore();
}

void ReportEngine::paintPage(QPainter& p, const ReportLayout::Page& pg, int number, double dpi) const
{
    PaintLooks(p, pageLooks(pg, number, dpi), dpi);
}

std::vector<ItemLook> ReportEngine::pageLooks(const ReportLayout::Page& pg, int number, double dpi) const
{
    const double px = PixelTwipsForDpi(dpi);
    const QRectF inner = marginRect(m_report.header, m_pageTwips);
    const RecordValues& first = record(pg.firstRecord).values;

    std::vector<ItemLook> looks;
    appendLooks(looks, bandLooks(m_sections.header, first, px), inner.topLeft());
    for (const ReportLayout::Placement& b : pg.bands)
        appendLooks(looks, record(b.record).pieces[size_t(b.band)].looks, b.origin);
    appendLooks(looks, bandLooks(m_sections.footer, first, px), QPointF(inner.left(), inner.bottom() - m_sections.footer.height));

    const int flags = m_report.header.headerFlags;
    if (flags & ReportLayout::PageNumbers) {
        ItemLook label;
        label.text = QStringLiteral("Page ") + QString::number(number + 1);
        label.alignment = ItemCode::AlignCenter;
        label.fontSize = 9;
        const double h = 9 * 20 * 1.6;
        // In the bottom margin, just below the printing area.
        label.rect = QRectF(inner.left(), std::min(inner.bottom() + 60, m_pageTwips.height() - h), inner.width(), h);
        looks.push_back(std::move(label));
    }
    if (flags & ReportLayout::PageBorder) {
        ItemLook border;
        border.kind = ItemKind::Box;
        border.borderStyle = ItemCode::BorderSolid;
        border.borderWidth = 1;
        border.rect = inner;
        looks.push_back(std::move(border));
    }
    return looks;
}

bool ReportEngine::PrintTo(QPagedPaintDevice& device, int copies, const PageSelection& selection)
{
    std::vector<int> chosen; // 0-based
    for (int i = 0; i < PageCount(); ++i)
        if (selection.ranges.isEmpty() || selection.ranges.contains(i + 1))
            chosen.push_back(i);
    if (selection.lastPageFirst)
        std::reverse(chosen.begin(), chosen.end());
    if (chosen.empty() && !selection.ranges.isEmpty())
        throw HostError(kInvalidValue, QStringLiteral("Nothing to print in pages %1: the report has %2 page(s)")
                                           .arg(selection.ranges.toString())
                                           .arg(PageCount()));
    const QPageLayout layout = PageLayout();
    device.setPageSize(layout.pageSize());
    device.setPageOrientation(layout.orientation());
    device.setPageMargins(QMarginsF(0, 0, 0, 0), QPageLayout::Point);
    QPainter p;
    if (!p.begin(&device))
        throw HostError(HostErr::FileAccess, QStringLiteral("Cannot print on this device"));
    const double dpi = device.logicalDpiX();
    // The device's origin is the printable area; pages are laid out from the paper's corner.
    const QRectF paintRect = device.pageLayout().paintRectPoints();
    p.translate(-paintRect.left() * dpi / 72.0, -paintRect.top() * dpi / 72.0);
    const int pages = int(chosen.size());
    const int sets = std::max(1, copies);
    const int total = pages * sets;
    for (int i = 0; i < total; ++i) {
        if (!report(i, total)) {
            p.end();
            return false;
        }
        if (i > 0)
            device.newPage();
        PaintPage(p, chosen[size_t(selection.collate ? i % pages : i / sets)], dpi);
    }
    p.end();
    return report(total, total);
}

bool ReportEngine::WritePdf(const QString& path)
{
    PdfFileOutput out(path);
    out.Begin(PageLayout());
    const int pages = PageCount();
    for (int i = 0; i < pages; ++i) {
        if (!report(i, pages))
            return false; // the output's temporary file goes with it
        const ReportLayout::Page& page = m_pages[size_t(i)];
        QPainter* p = out.BeginPage(i, page.firstRecord, record(page.firstRecord).key);
        paintPage(*p, page, i, out.Dpi());
        out.EndPage();
    }
    if (!report(pages, pages))
        return false;
    out.Finish();
    return true;
}
