#pragma once
// Page layout of a printed report, in twips and free of devices: which stored items form the
// page header, the detail bands and the page footer, how a text item grows or shrinks with
// its value, and how the records' bands flow into columns and pages.
#include "document/RdfFile.h"
#include "render/ItemLook.h"

#include <QRectF>
#include <vector>

namespace ReportLayout {

// Bits of the header's HeaderFlags that change the printout.
constexpr int FillLeftToRight = 16;
constexpr int PageNumbers = 32;
constexpr int PageBorder = 64;

// One section or band as designed: stored item positions (0-based into the report's items)
// whose tops are relative to the band, and the band's height.
struct Band {
    std::vector<int> items;
    std::vector<double> tops; // each item's top within the band (a sub-report opens its band at 0)
    double height = 0;
    bool pageBreakAfter = false; // closed by a new-page marker
};

struct Sections {
    Band header;
    std::vector<Band> detail; // at least one
    Band footer;
};

// Splits stored items (tops as stored: relative to their section or band) by the header's
// section fields; out-of-range fields are clamped. Markers close bands and are not printed.
Sections SplitSections(const RdfReport& report);

// The look of one stored item placed at `origin` (the top left of its band), showing `text`
// (text kinds) or `picture` (images). px is one device pixel in twips.
ItemLook LookOf(const RdfItem& item, QPointF origin, const QString& text, const PictureRef& picture, double px);

// Resizes text items marked AllowGrow (taller only) or AllowShrink (shorter only) to the
// height their text needs, moves the items below each one by the change, and returns the
// band's new height. looks are band-relative and in the band's item order.
double FitBand(const Band& band, const RdfReport& report, std::vector<ItemLook>& looks, double px);

// Where the records' bands go.
struct Frame {
    QRectF body;          // page area between header and footer, within the margins
    int columns = 1;
    bool leftToRight = false;
    bool newPagePerRecord = true;
    double spacing = 0;   // between records, twips
};

struct Placement {
    int record = 0;
    int band = 0;
    QPointF origin;
};

struct Page {
    std::vector<Placement> bands;
    int firstRecord = 0;  // whose data the page header and footer show
};

// Flows records into pages one record at a time, so that a long run can print each page as
// soon as nothing more can land on it.
class Paginator {
public:
    explicit Paginator(const Frame& frame);
    // Places record r's bands (fitted heights in order); breaks[b]: band b ends with a page break.
    void Add(int record, const std::vector<double>& heights, const std::vector<bool>& breaks);
    // The pages no later record can add to, in order; they are handed over once.
    std::vector<Page> TakeFinished();
    // The first record of the page still open: no later page shows an earlier record. -1 when
    // no page is open.
    int OpenFirstRecord() const { return m_pages.empty() ? -1 : m_pages.back().firstRecord; }
    // Every page still held, after the last record.
    std::vector<Page> Finish();

private:
    void newPage(int record);
    void place(int record, int band, double y);

    Frame m_frame;
    int m_columns;
    double m_colWidth;
    std::vector<Page> m_pages;
    int m_records = 0;
    int m_col = 0;
    double m_y = 0;
    double m_rowHeight = 0;
    bool m_columnUsed = false;
    bool m_pending = true; // a new page is due before the next band
};

// heights[r][b]: the fitted height of band b of record r; breaks[b]: band b ends with a page
// break. Never returns an empty page; a band taller than the body starts a fresh column and
// runs past it rather than being lost.
std::vector<Page> Paginate(const std::vector<std::vector<double>>& heights, const std::vector<bool>& breaks,
                           const Frame& frame);

} // namespace ReportLayout
