#pragma once
// Runs the real pagewright executable (PW_APP, set by the test's CMake) as a user would.
#include <QProcess>
#include <QStringList>

struct AppRun {
    int code = -1;
    QString out, err;
};

inline AppRun RunPagewright(const QStringList& args)
{
    QProcess p;
    p.start(QStringLiteral(PW_APP), args);
    p.waitForFinished(120000);
    return {p.exitCode(), QString::fromLocal8Bit(p.readAllStandardOutput()), QString::fromLocal8Bit(p.readAllStandardError())};
}
