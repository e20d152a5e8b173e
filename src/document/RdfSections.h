#pragma once
// Page sections of a report file. Items are stored page header first, then detail, then
// page footer, with tops relative to their section (and, in the detail, to the band opened
// by the last new-band marker). These two functions convert between the design page's
// absolute tops and the stored ones; RdfRestorePositions(RdfOrderSections(x)) gives back
// every absolute top (exactly, for whole and half twips).
#include "document/RdfFile.h"

#include <vector>

// Before saving. Sorts items by Top (stable: equal tops keep their order), carrying zorders
// along (zorders must be as long as items), then fills the header's section fields:
// - detailTop: the rounded detail header bar offset - 220 (the bar's top on the page, as the
//   loader places the bar at detailTop + 220), 0 without a page header;
// - firstDetailItem / lastDetailItem: items with Top >= detail bar offset - 220 are detail,
//   those with Top >= page footer bar offset - 220 are footer; without a page header every
//   item is detail (first 1, last = count). A footer needs the page header to be on;
// - pageFooterTop: the rounded page footer bar offset, 0 when there is no footer;
// - detailSize: the lowest bottom (Top + Height) of the detail items below detailTop, at
//   least 0; the caller adds the section spacing;
// - reserved9: the same for the page footer below pageFooterTop; reserved3 and reserved17: 0.
// Each new-band marker (RdfFlag::NewBand) in the detail also receives its band data:
// numberB = the number (from 1) of the band it closes, sizeMode = that band's height in
// twips (up to 32767).
// Throws RdfError (RdfErr::InvalidArgument) for more than 32767 items.
void RdfOrderSections(std::vector<RdfItem>& items, std::vector<int>& zorders, RdfHeader& header,
                      float detailHeaderBarOffset, float pageFooterBarOffset, bool hasHeader, bool hasFooter);

// After loading: makes the stored tops absolute again. Items 1..lastDetailItem are walked in
// order with a band offset starting at 0: a detail item (index >= firstDetailItem) gets
// detailTop added; then a new-band marker sets the band offset to its Top - detailTop and
// any other item gets the band offset added. Items after lastDetailItem get pageFooterTop
// added. Header values outside the item range are clamped, never trusted.
void RdfRestorePositions(std::vector<RdfItem>& items, const RdfHeader& header);

// Before the positions are trusted: refuses, with RdfError HostErr::BadFileFormat
// ("Bad file format: <what> at offset N", N the offset of the header field), a header whose
// sections cannot be those of a saved design page: detail items outside 1..count + 1, a last
// detail item before the first one - 1 or past the count, a negative detail top, or page
// footer items whose section starts less than one section bar below the detail top. Such a
// file would otherwise open with its items in the wrong sections and at wrong places.
void RdfCheckSections(const RdfReport& report);
