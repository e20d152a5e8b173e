// Format throughput: formats per second for named, custom number and custom date formats,
// with values as they come from the database (text) and as typed values.
#include "render/Format.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QVariant>
#include <cstdio>
#include <vector>

namespace {

struct Case {
    const char* label;
    QVariant value;
    QString format;
};

double run(const std::vector<Case>& cases, int rounds, qsizetype& sink)
{
    QElapsedTimer timer;
    timer.start();
    for (int r = 0; r < rounds; ++r)
        for (const Case& c : cases)
            sink += Format(c.value, c.format).size();
    const double secs = double(timer.nsecsElapsed()) / 1e9;
    return double(rounds) * double(cases.size()) / secs;
}

} // namespace

int main()
{
    const QDateTime when(QDate(2024, 3, 1), QTime(14, 5, 9));
    const std::vector<std::pair<const char*, std::vector<Case>>> groups = {
        {"named number",
         {{"Currency", QString("5459.4"), "Currency"},
          {"Standard", 1234567.891, "Standard"},
          {"Percent", 0.12345, "Percent"},
          {"Yes/No", QString("0"), "Yes/No"}}},
        {"custom number",
         {{"#,##0.00 text", QString("5459.4"), "##,##0.00"},
          {"#,##0 double", 1234567.0, "#,##0"},
          {"sections", -1234.5, "$#,##0.00;($#,##0.00);\\Z\\e\\r\\o"},
          {"scientific", 0.000123, "0.00E+00"}}},
        {"named date",
         {{"Short Date text", QString("2024-03-01 14:05:09"), "Short Date"},
          {"Long Date", when, "Long Date"},
          {"General Date", when, "General Date"},
          {"Medium Time text", QString("3/1/2024 2:05 PM"), "Medium Time"}}},
        {"custom date",
         {{"mm/dd/yyyy", when, "mm/dd/yyyy"},
          {"dddd, mmmm d", QString("2024-03-01"), "dddd, mmmm d"},
          {"hh:nn AM/PM", when, "hh:nn AM/PM"}}},
        {"string",
         {{"@@@-@@-@@@@", QString("465043799"), "@@@-@@-@@@@"}, {">", QString("davolio"), ">"}}},
    };

    qsizetype sink = 0;
    std::vector<Case> all;
    for (const auto& g : groups) {
        run(g.second, 200, sink); // warm up
        std::printf("%-14s %12.0f formats/s\n", g.first, run(g.second, 20000, sink));
        all.insert(all.end(), g.second.begin(), g.second.end());
    }
    std::printf("%-14s %12.0f formats/s (%zu formats per round)\n", "mix", run(all, 20000, sink), all.size());
    return sink == 0; // keeps the work from being optimised away
}
