#include "entry/PrintForm.h"

namespace {
PrintFormFactory g_printFormFactory;
}

void SetPrintFormFactory(PrintFormFactory factory) { g_printFormFactory = std::move(factory); }

std::unique_ptr<PrintForm> NewPrintForm() { return g_printFormFactory ? g_printFormFactory() : nullptr; }
