#include "document/RdfSections.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <stdexcept>

namespace {

constexpr double kBar = 220; // height of a section bar, twips

// NaN sorts last instead of breaking the ordering the sort relies on.
double sortKey(float top)
{
    return std::isnan(top) ? std::numeric_limits<double>::infinity() : double(top);
}

qint32 toTwips(double v)
{
    if (!std::isfinite(v))
        return 0;
    v = std::nearbyint(v);
    return qint32(std::clamp(v, double(std::numeric_limits<qint32>::min()), double(std::numeric_limits<qint32>::max())));
}

} // namespace

void RdfOrderSections(std::vector<RdfItem>& items, std::vector<int>& zorders, RdfHeader& header,
                      float detailHeaderBarOffset, float pageFooterBarOffset, bool hasHeader, bool hasFooter)
{
    const size_t n = items.size();
    if (zorders.size() != n)
        throw std::invalid_argument("RdfOrderSections: one stacking number per item");
    if (n > 32767)
        throw RdfError(RdfErr::InvalidArgument, QStringLiteral("Too many items to save: %1 (at most 32767)").arg(n));

    std::vector<size_t> order(n);
    std::iota(order.begin(), order.end(), size_t(0));
    std::stable_sort(order.begin(), order.end(),
                     [&](size_t a, size_t b) { return sortKey(items[a].top) < sortKey(items[b].top); });
    {
        std::vector<RdfItem> sortedItems;
        std::vector<int> sortedZ;
        sortedItems.reserve(n);
        sortedZ.reserve(n);
        for (size_t i : order) {
            sortedItems.push_back(std::move(items[i]));
            sortedZ.push_back(zorders[i]);
        }
        items = std::move(sortedItems);
        zorders = std::move(sortedZ);
    }

    const bool footer = hasHeader && hasFooter;
    const double inf = std::numeric_limits<double>::infinity();
    const double headerLimit = hasHeader ? double(detailHeaderBarOffset) - kBar : -inf;
    const double footerLimit = footer ? double(pageFooterBarOffset) - kBar : inf;
    // The detail bar's top on the page: the window's offset counts the page header bar too, and
    // loading puts the bar back at this value + 220.
    const qint32 detailTop = hasHeader ? toTwips(double(detailHeaderBarOffset) - kBar) : 0;
    const qint32 footerTop = footer ? toTwips(pageFooterBarOffset) : 0;

    // Sections are a prefix, a middle and a suffix of the sorted items (0-based bounds).
    size_t footerStart = n;
    size_t detailStart = n;
    for (size_t i = 0; i < n; ++i) {
        const double key = sortKey(items[i].top);
        if (footerStart == n && key >= footerLimit)
            footerStart = i;
        if (detailStart == n && key >= headerLimit)
            detailStart = i;
    }
    detailStart = std::min(detailStart, footerStart);

    // The exact inverse of RdfRestorePositions, walking the same items in the same order.
    double detailExtent = 0;
    double band = 0;
    double bandStart = detailTop;
    int bandNumber = 0;
    for (size_t i = 0; i < footerStart; ++i) {
        RdfItem& it = items[i];
        const double abs = it.top;
        const bool inDetail = i >= detailStart;
        const double base = inDetail ? detailTop : 0;
        if (inDetail)
            detailExtent = std::max(detailExtent, abs + it.height - detailTop);
        if (it.flags & RdfFlag::NewBand) {
            it.top = float(abs - base);
            band = abs - detailTop;
            if (inDetail) {
                it.numberB = qint16(std::min(++bandNumber, 32767));
                it.sizeMode = qint16(std::clamp(std::nearbyint(abs - bandStart), 0.0, 32767.0));
                bandStart = abs;
            }
        } else {
            it.top = float(abs - base - band);
        }
    }
    double footerExtent = 0;
    for (size_t i = footerStart; i < n; ++i) {
        RdfItem& it = items[i];
        footerExtent = std::max(footerExtent, double(it.top) + it.height - footerTop);
        it.top = float(double(it.top) - footerTop);
    }

    header.reserved3 = 0;
    header.firstDetailItem = qint16(detailStart + 1);
    header.lastDetailItem = qint16(footerStart);
    header.detailSize = toTwips(detailExtent);
    header.detailTop = detailTop;
    header.pageFooterTop = footerTop;
    header.reserved9 = footer ? toTwips(footerExtent) : 0;
    header.reserved17 = 0;
}

void RdfRestorePositions(std::vector<RdfItem>& items, const RdfHeader& header)
{
    const qsizetype n = qsizetype(items.size());
    const qsizetype last = std::clamp<qsizetype>(header.lastDetailItem, 0, n);
    const qsizetype first = header.firstDetailItem;
    const double detailTop = header.detailTop;
    double band = 0;
    for (qsizetype i = 1; i <= last; ++i) {
        RdfItem& it = items[size_t(i - 1)];
        double top = it.top;
        if (i >= first)
            top += detailTop;
        if (it.flags & RdfFlag::NewBand)
            band = top - detailTop;
        else
            top += band;
        it.top = float(top);
    }
    for (qsizetype i = last + 1; i <= n; ++i) {
        RdfItem& it = items[size_t(i - 1)];
        it.top = float(double(it.top) + header.pageFooterTop);
    }
}

void RdfCheckSections(const RdfReport& report)
{
    // Offsets of the header fields checked (version, flags and reserved3 come first).
    constexpr int kFirstAt = 12, kLastAt = 14, kDetailTopAt = 20, kFooterTopAt = 24;
    const RdfHeader& h = report.header;
    const qint64 n = qint64(report.items.size());
    auto fail = [](const QString& what, int at) {
        throw RdfError(HostErr::BadFileFormat, QStringLiteral("Bad file format: %1 at offset %2").arg(what).arg(at));
    };
    if (h.firstDetailItem < 1 || h.firstDetailItem > n + 1)
        fail(QStringLiteral("first detail item %1 of %2 items").arg(h.firstDetailItem).arg(n), kFirstAt);
    if (h.lastDetailItem < h.firstDetailItem - 1 || h.lastDetailItem > n)
        fail(QStringLiteral("last detail item %1 out of order (first detail item %2, %3 items)")
                 .arg(h.lastDetailItem).arg(h.firstDetailItem).arg(n),
             kLastAt);
    if (h.detailTop < 0)
        fail(QStringLiteral("detail top %1").arg(h.detailTop), kDetailTopAt);
    if (h.lastDetailItem < n && double(h.pageFooterTop) < double(h.detailTop) + kBar)
        fail(QStringLiteral("page footer top %1 above the detail section at %2").arg(h.pageFooterTop).arg(h.detailTop),
             kFooterTopAt);
}
