// File > Print Many: the report printed for many records at once. The records are chosen and
// the pages streamed by the report runner; the window hands it a copy of the report as it is.
#include "design/frmPagewright.h"

#include "document/clsRptControl.h"
#include "entry/Prompts.h"

void frmPagewright::PrintManyCommand()
{
    if (!ReportHasItems())
        return;
    ReportRunRequest request;
    request.many = true;
    RunOnPrintCopy(request);
}
