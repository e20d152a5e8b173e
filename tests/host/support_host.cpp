#include "support_host.h"
#include "host/DemoData.h"
#include "PgTest.h"

#include <QTemporaryDir>

QString SmallDemoFolder()
{
    static QTemporaryDir dir;
    static bool made = false;
    if (!made) {
        GenerateDemoData(dir.path(), 60);
        UseTestServerFor(dir.path());
        made = true;
    }
    return dir.path();
}

QStringList RowsOf(Recordset& rs)
{
    QStringList out;
    for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext()) {
        QStringList cells;
        for (int c = 0; c < rs.FieldCount(); ++c) {
            const QVariant v = rs.Fields(c);
            cells << (v.isNull() ? QStringLiteral("<Null>") : v.toString());
        }
        out << cells.join(QLatin1Char('|'));
    }
    rs.MoveFirst();
    return out;
}
