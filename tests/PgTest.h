#pragma once
// Running a test against the PostgreSQL host. CTest sets PW_TEST_PG to the file holding the URL
// of its private cluster (scripts/pg-test-cluster); a test that needs the cluster and cannot
// reach it fails.
#include "host/DataFolder.h"
#include "host/PgDemo.h"

#include <QCoreApplication>
#include <QFile>
#include <QtTest>

// True when this run is the PostgreSQL one.
inline bool OnTestServer()
{
    return !qEnvironmentVariableIsEmpty("PW_TEST_PG");
}

// The cluster's superuser URL (postgres database).
inline QString TestServerAdminUrl()
{
    QFile f(qEnvironmentVariable("PW_TEST_PG"));
    if (!f.open(QIODevice::ReadOnly))
        qFatal("The PostgreSQL test cluster is not running: '%s' cannot be read.", qPrintable(f.fileName()));
    const QString url = QString::fromUtf8(f.readAll()).trimmed();
    if (url.isEmpty())
        qFatal("The PostgreSQL test cluster wrote no URL to '%s'.", qPrintable(f.fileName()));
    return url;
}

// A fresh database of this test program on the cluster; its URL.
inline QString NewTestDatabase(const QString& purpose)
{
    const QString name = QStringLiteral("pw_%1_%2_%3").arg(QCoreApplication::applicationName(), purpose).arg(QCoreApplication::applicationPid()).toLower();
    return PgDemo::CreateDatabase(TestServerAdminUrl(), name);
}

// In the PostgreSQL run: copies the demo folder's database to a fresh database of the cluster
// and makes it the one every host of this process (and of the programs it starts) opens.
inline void UseTestServerFor(const QString& demoFolder)
{
    if (!OnTestServer())
        return;
    const QString url = NewTestDatabase(QStringLiteral("demo"));
    PgDemo::Load(demoFolder + QLatin1Char('/') + QLatin1String(DataFolder::DatabaseName), url);
    qputenv("PAGEWRIGHT_DATABASE", url.toUtf8());
}
