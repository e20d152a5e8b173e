#include "output/ReportLayout.h"

#include "render/ItemLayout.h"

#include <algorithm>
#include <cmath>

namespace ReportLayout {

namespace {

// Damaged files may carry NaN or absurd numbers; they must not poison the layout.
double finite(double v) { return std::isfinite(v) ? std::clamp(v, -1e7, 1e7) : 0.0; }


bool isTextKind(int kind)
{
    return kind == RdfKind::Field || kind == RdfKind::Label || kind == RdfKind::DateTime || kind == RdfKind::FunctionField ||
           kind == RdfKind::SubReport;
}

bool isPrinted(int kind) { return isTextKind(kind) || kind == RdfKind::Box || kind == RdfKind::Line || kind == RdfKind::Image; }

void addItem(Band& band, const RdfReport& report, int i, double top)
{
    if (!isPrinted(report.items[size_t(i)].kind))
        return;
    band.items.push_back(i);
    band.tops.push_back(top);
}

void addItem(Band& band, const RdfReport& report, int i) { addItem(band, report, i, finite(report.items[size_t(i)].top)); }

double extent(const Band& band, const RdfReport& report)
{
    double h = 0;
    for (size_t k = 0; k < band.items.size(); ++k)
        h = std::max(h, band.tops[k] + finite(report.items[size_t(band.items[k])].height));
    return h;
}

} // namespace

Sections SplitSections(const RdfReport& report)
{
    const int n = int(report.items.size());
    const RdfHeader& h = report.header;
    const int first = std::clamp<int>(h.firstDetailItem, 1, n + 1);
    const int last = std::clamp<int>(h.lastDetailItem, first - 1, n);

    Sections s;
    for (int i = 0; i < first - 1; ++i)
        addItem(s.header, report, i);
    s.header.height = first > 1 ? std::max(extent(s.header, report), finite(h.detailTop)) : extent(s.header, report);

    Band band;
    double bandStart = 0; // a marker's stored top is relative to the detail, not to its band
    for (int i = first - 1; i < last; ++i) {
        const RdfItem& it = report.items[size_t(i)];
        if (it.flags & RdfFlag::NewBand) {
            const double at = finite(it.top);
            band.height = std::max({at - bandStart, extent(band, report), 0.0});
            band.pageBreakAfter = it.kind == RdfKind::NewPage;
            s.detail.push_back(std::move(band));
            band = Band();
            bandStart = at;
            // A sub-report is printed: it is the first thing in the band it opens.
            if (it.kind == RdfKind::SubReport)
                addItem(band, report, i, 0);
        } else {
            addItem(band, report, i);
        }
    }
    if (s.detail.empty() || !band.items.empty()) {
        band.height = extent(band, report);
        s.detail.push_back(std::move(band));
    }
    for (int i = last; i < n; ++i)
        addItem(s.footer, report, i);
    s.footer.height = extent(s.footer, report);
    return s;
}

ItemLook LookOf(const RdfItem& r, QPointF origin, const QString& text, const PictureRef& picture, double px)
{
    ItemLook l;
    l.rect = QRectF(origin.x() + finite(r.left), origin.y() + finite(r.top), std::max(0.0, finite(r.width)),
                    std::max(0.0, finite(r.height)));
    l.borderWidth = r.borderWidth / 20.0;
    l.borderStyle = r.borderStyle;
    l.borderColor = r.borderColor;
    l.backColor = r.backColor;
    l.backStyle = (r.flags & RdfFlag::Opaque) ? ItemCode::BackOpaque : ItemCode::BackTransparent;
    if (isTextKind(r.kind)) {
        l.kind = ItemKind::Text;
        l.text = text;
        if (!r.fontName.isEmpty())
            l.fontName = r.fontName;
        l.fontSize = std::isfinite(r.fontSize) && r.fontSize > 0 ? std::min<double>(r.fontSize, 1638) : 10.0;
        l.bold = r.flags & RdfFlag::Bold;
        l.italic = r.flags & RdfFlag::Italic;
        l.underline = r.flags & RdfFlag::Underline;
        // An unknown alignment code keeps the label's left alignment, as the control does.
        l.alignment = r.alignment <= 2 ? r.alignment : ItemCode::AlignLeft;
        l.foreColor = r.foreColor;
        l.specialEffect = r.specialEffect;
    } else if (r.kind == RdfKind::Box) {
        l.kind = ItemKind::Box;
    } else if (r.kind == RdfKind::Line) {
        l.kind = ItemKind::Line;
        l.lineStyle = ItemLayout::LineDrawStyle(r.borderStyle, ItemLayout::StrokeThickness(l.borderWidth, px), px);
    } else {
        l.kind = ItemKind::Picture;
        l.picture = picture;
        l.sizeMode = r.sizeMode;
        l.pictureAlignment = r.alignment;
        l.backStyle = ItemCode::BackOpaque;
        l.specialEffect = r.specialEffect;
        // Without a picture the frame goes round the whole item, as on the design page.
        if (!picture)
            l.pictureRect = QRectF(QPointF(0, 0), l.rect.size());
    }
    return l;
}

double FitBand(const Band& band, const RdfReport& report, std::vector<ItemLook>& looks, double px)
{
    struct Change {
        double bottom; // where the item ended as designed
        double delta;
    };
    std::vector<Change> changes;
    for (size_t k = 0; k < band.items.size(); ++k) {
        const RdfItem& it = report.items[size_t(band.items[k])];
        // A sub-report's row count is only known when printing: it always grows to hold them.
        const bool grow = (it.flags & RdfFlag::AllowGrow) || it.kind == RdfKind::SubReport;
        const bool shrink = it.flags & RdfFlag::AllowShrink;
        if (!isTextKind(it.kind) || !(grow || shrink))
            continue;
        ItemLook& l = looks[k];
        const QSizeF size = l.rect.size();
        const ItemLayout::TextParts parts = ItemLayout::TextLayout(size, l.borderWidth * 20, l.borderStyle, l.specialEffect, px);
        const double needed = l.text.isEmpty() ? size.height() - parts.label.height()
                                               : ItemLayout::TextHeight(l, parts.label.width()) + size.height() - parts.label.height();
        double h = size.height();
        if (grow && needed > h)
            h = needed;
        else if (shrink && needed < h)
            h = std::max(0.0, needed);
        if (h != size.height()) {
            changes.push_back({band.tops[k] + finite(it.height), h - size.height()});
            l.rect.setHeight(h);
        }
    }
    double height = band.height;
    if (changes.empty())
        return height;
    // Whatever starts below a resized item moves with its bottom edge.
    for (size_t k = 0; k < band.items.size(); ++k) {
        const double top = band.tops[k];
        double shift = 0;
        for (const Change& c : changes)
            if (top >= c.bottom)
                shift += c.delta;
        looks[k].rect.translate(0, shift);
    }
    double shift = 0;
    for (const Change& c : changes)
        if (height >= c.bottom)
            shift += c.delta;
    height += shift;
    for (const ItemLook& l : looks)
        height = std::max(height, l.rect.bottom() - 0.0);
    return std::max(0.0, height);
}

Paginator::Paginator(const Frame& frame)
    : m_frame(frame)
    , m_columns(std::max(1, frame.columns))
    , m_colWidth(frame.body.width() / m_columns)
    , m_y(frame.body.top())
{
}

void Paginator::newPage(int record)
{
    m_pages.push_back(Page{{}, record});
    m_col = 0;
    m_y = m_frame.body.top();
    m_rowHeight = 0;
    m_columnUsed = false;
    m_pending = false;
}

void Paginator::place(int r, int b, double yAt)
{
    if (m_pending || m_pages.empty())
        newPage(r);
    m_pages.back().bands.push_back({r, b, QPointF(m_frame.body.left() + m_col * m_colWidth, yAt)});
}

void Paginator::Add(int r, const std::vector<double>& bands, const std::vector<bool>& breaks)
{
    const double top = m_frame.body.top();
    const double bottom = m_frame.body.bottom();
    if (m_records > 0 && m_frame.newPagePerRecord)
        m_pending = true;
    const bool first = m_records++ == 0;
    if (m_frame.leftToRight && m_columns > 1) {
        // Records go across a row of columns, then the next row starts below the tallest.
        double total = 0;
        for (double h : bands)
            total += h;
        if (!first && !m_pending) {
            if (++m_col >= m_columns) {
                m_col = 0;
                m_y += m_rowHeight + m_frame.spacing;
                m_rowHeight = 0;
            }
        }
        if (!m_pending && !m_pages.empty() && m_y + total > bottom && m_y > top)
            m_pending = true;
        if (m_pending)
            newPage(r);
        double at = m_y;
        for (int b = 0; b < int(bands.size()); ++b) {
            place(r, b, at);
            at += bands[size_t(b)];
            if (b + 1 < int(bands.size()) && b < int(breaks.size()) && breaks[size_t(b)]) {
                newPage(r);
                at = m_y;
            }
        }
        m_rowHeight = std::max(m_rowHeight, at - m_y);
        return;
    }
    if (m_columnUsed && !m_pending)
        m_y += m_frame.spacing;
    for (int b = 0; b < int(bands.size()); ++b) {
        const double h = bands[size_t(b)];
        if (!m_pending && m_columnUsed && m_y + h > bottom) {
            if (++m_col >= m_columns) {
                m_pending = true;
            } else {
                m_y = top;
                m_columnUsed = false;
            }
        }
        if (m_pending)
            newPage(r);
        place(r, b, m_y);
        m_y += h;
        m_columnUsed = true;
        if (b < int(breaks.size()) && breaks[size_t(b)])
            m_pending = true;
    }
}

std::vector<Page> Paginator::TakeFinished()
{
    // The last page stays open for the next record unless a new page is already due.
    const size_t done = m_pending ? m_pages.size() : m_pages.empty() ? 0 : m_pages.size() - 1;
    std::vector<Page> out(std::make_move_iterator(m_pages.begin()), std::make_move_iterator(m_pages.begin() + qsizetype(done)));
    m_pages.erase(m_pages.begin(), m_pages.begin() + qsizetype(done));
    return out;
}

std::vector<Page> Paginator::Finish()
{
    std::vector<Page> out = std::move(m_pages);
    m_pages.clear();
    return out;
}

std::vector<Page> Paginate(const std::vector<std::vector<double>>& heights, const std::vector<bool>& breaks, const Frame& f)
{
    Paginator pager(f);
    for (int r = 0; r < int(heights.size()); ++r)
        pager.Add(r, heights[size_t(r)], breaks);
    return pager.Finish();
}

} // namespace ReportLayout
