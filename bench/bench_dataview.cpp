// Data-view refresh timings on the demo database: a report of 300 bound fields (50 coded, 20
// computed from expressions, the rest plain columns, some bound twice) shown for one listing
// after another, as paging through records in the designer does.
#include "design/OffscreenPage.h"
#include "document/clsRptControl.h"
#include "entry/Host.h"
#include "host/DemoData.h"
#include "host/EmbeddedHost.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

// Field ids of the demo catalogue by what they exercise.
const int Coded[] = {4, 7, 27};
const int Computed[] = {5, 16, 19, 29, 31, 33, 35, 36, 37};
const int Plain[] = {1, 2, 3, 6, 8, 9, 10, 11, 12, 13, 14, 15, 17, 18, 20, 21, 22, 23, 24, 25, 26, 28, 30, 32, 34, 38};

void build(clsRptControl& doc, FieldDictionary& dic)
{
    auto add = [&](int id, int i) {
        dic.SelectField(id);
        doc.AddNew(ObjType::Field, dic.FieldColumnName(), id);
        QObject* c = doc.UserControl();
        clsRptControl::SetProp(c, "Left", float(100 + (i % 6) * 1800));
        clsRptControl::SetProp(c, "Top", float(100 + (i / 6) * 260));
        clsRptControl::SetProp(c, "Width", 1700.f);
        return c;
    };
    int i = 0;
    for (int k = 0; k < 50; ++k, ++i) {
        QObject* c = add(Coded[k % std::size(Coded)], i);
        clsRptControl::SetProp(c, "UseShortText", k % 5 == 0);
    }
    for (int k = 0; k < 20; ++k, ++i)
        add(Computed[k % std::size(Computed)], i);
    for (int k = 0; k < 230; ++k, ++i) {
        QObject* c = add(Plain[k % std::size(Plain)], i);
        clsRptControl::SetProp(c, "AllowGrow", k % 7 == 0);
    }
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QTemporaryDir dir;
    const QString data = dir.filePath(QStringLiteral("data"));
    GenerateDemoData(data, 500);
    auto host = EmbeddedHost::Open(data);
    gHost = host.get();
    auto dic = host->NewFieldDictionary(1);

    OffscreenPage page;
    clsRptControl doc;
    doc.Init(dic.get(), &page, nullptr);
    doc.SetSelectionManager(&page);
    build(doc, *dic);
    doc.DataView = true;

    std::vector<double> times;
    int found = 0, nonEmpty = 0;
    for (int r = 0; r < 200; ++r) {
        const QString key = QString::number(DemoIdentity::FirstListNum + (r * 3) % 500);
        QElapsedTimer t;
        t.start();
        const bool ok = doc.RefreshData(key);
        times.push_back(t.nsecsElapsed() / 1e6);
        found += ok;
        if (ok && r < 20)
            for (int i = 1; i <= doc.RptItemCount(); ++i)
                nonEmpty += !doc.Item(i).Text.isEmpty();
    }
    std::sort(times.begin(), times.end());
    std::printf("RefreshData, %d fields, 200 refreshes: median %.2f ms, 95th percentile %.2f ms, max %.2f ms "
                "(%d listings found, %d values shown in the first 20)\n",
                doc.RptItemCount(), times[times.size() / 2], times[times.size() * 95 / 100], times.back(), found, nonEmpty);
    doc.UnloadReport();
    gHost = nullptr;
    return 0;
}
