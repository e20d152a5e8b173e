#pragma once
// Help context numbers of the program's windows (help/contexts.txt maps them to pages).
namespace HelpContext {
constexpr int DesignWindow = 100;
constexpr int PropertySheet = 200;
constexpr int FieldList = 210;
constexpr int PageSetup = 300;
constexpr int GridSetup = 310;
constexpr int FindProperty = 400;
constexpr int FlyerManager = 450;
constexpr int ReportFiles = 500;
constexpr int ListingPrompt = 600;
constexpr int Printing = 700;
}
