#pragma once
// A selection manager over an offscreen page, for tests of selecting, dragging and snapping
// without a window: a document on the page, a 60-twip grid, a Legal page, 15 twips a pixel.
#include "design/OffscreenPage.h"
#include "design/RptItemControl.h"
#include "design/clsResize.h"
#include "document/clsRptControl.h"

#include <memory>

struct SelectionSurface {
    std::unique_ptr<OffscreenPage> surface;
    std::unique_ptr<clsRptControl> doc;
    std::unique_ptr<clsResize> sel;

    void Make()
    {
        RptItemControl::SetPixelTwips(15);
        surface = std::make_unique<OffscreenPage>();
        doc = std::make_unique<clsRptControl>();
        doc->Init(nullptr, surface.get(), nullptr);
        sel = std::make_unique<clsResize>();
        sel->SetRptControl(doc.get());
        sel->SetScene(&surface->Scene());
        sel->SetGridX(60);
        sel->SetGridY(60);
        sel->SetPageSize(12240, 20160);
    }
    void Reset()
    {
        sel.reset();
        doc.reset();
        surface.reset();
    }
};
