// Embedded host timings: demo generation, and a data-view SELECT by key with 40 columns.
#include "host/DemoData.h"
#include "host/EmbeddedHost.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

double generate(const QString& dir, int listings)
{
    QElapsedTimer t;
    t.start();
    GenerateDemoData(dir, listings);
    return t.nsecsElapsed() / 1e6;
}

// The columns a full data view selects: every catalogue field plus the photo columns.
QString fortyColumns(EmbeddedHost& host)
{
    auto d = host.NewFieldDictionary(1);
    QStringList cols;
    for (int id = 1; id <= 38; ++id) {
        d->SelectField(id);
        cols << (d->FieldExpression().isEmpty() ? d->FieldColumnName() : d->FieldExpression() + QStringLiteral(" AS ") + d->FieldColumnName());
    }
    cols << QStringLiteral("PhotoVersion") << QStringLiteral("PhotoCount");
    QString s = cols.join(QLatin1Char(','));
    s.replace(QLatin1String("'~AccessKey~'"), host.AccessKey());
    s.replace(QLatin1String("'~UserId~'"), QLatin1Char('\'') + host.AgentId() + QLatin1Char('\''));
    return s;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir small, large;
    std::printf("demo generation, 500 listings:   %8.1f ms\n", generate(small.path(), 500));
    std::printf("demo generation, 5000 listings:  %8.1f ms\n", generate(large.path(), 5000));

    auto host = EmbeddedHost::Open(large.path());
    const QString columns = fortyColumns(*host);
    std::vector<double> times;
    int rows = 0;
    for (int i = 0; i < 1000; ++i) {
        const QString sql = QStringLiteral("SELECT %1 FROM Listings LEFT JOIN Photo ON Listings.Listnum = Photo.PhoListnum WHERE ListNum = %2 "
                                           "AND CLng(LstStatus) NOT IN (%3);")
                                .arg(columns)
                                .arg(DemoIdentity::FirstListNum + (i * 37) % 5000)
                                .arg(host->StatusList());
        QElapsedTimer t;
        t.start();
        auto rs = host->Database().OpenRecordset(1, sql, 3, 1, 1);
        times.push_back(t.nsecsElapsed() / 1e3);
        rows += rs->RecordCount();
        if (i == 0 && rs->FieldCount() != 40)
            std::fprintf(stderr, "expected 40 columns, got %d\n", rs->FieldCount());
    }
    std::sort(times.begin(), times.end());
    std::printf("data-view SELECT by key, 40 columns, 1000 runs: median %.1f us, 95th percentile %.1f us (%d rows found)\n",
                times[times.size() / 2], times[times.size() * 95 / 100], rows);
    return 0;
}
