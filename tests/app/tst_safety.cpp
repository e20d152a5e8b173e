// The batch commands and the designer under faults, run as the real executable: a data folder
// that lost its database, a disk that fills up, a read-only target, FIFOs and devices as input.
#include "AppRun.h"
#include "document/RdfFile.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

// Runs pagewright with every file it writes limited to `fileLimit` bytes (0: no limit), as a
// disk with that much room left would: writes past it fail with EFBIG, SIGXFSZ ignored.
AppRun runLimited(const QStringList& args, rlim_t fileLimit = 0)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    p.setProcessEnvironment(env);
    if (fileLimit)
        p.setChildProcessModifier([fileLimit] {
            ::signal(SIGXFSZ, SIG_IGN);
            rlimit l{fileLimit, fileLimit};
            ::setrlimit(RLIMIT_FSIZE, &l);
        });
    p.start(QStringLiteral(PW_APP), args);
    p.waitForFinished(120000);
    return {p.exitCode(), QString::fromLocal8Bit(p.readAllStandardOutput()), QString::fromLocal8Bit(p.readAllStandardError())};
}

// Every file below dir with a hash of its bytes: what "untouched" means.
QMap<QString, QByteArray> snapshot(const QString& dir)
{
    QMap<QString, QByteArray> files;
    QDirIterator it(dir, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString f = it.next();
        QFile file(f);
        file.open(QIODevice::ReadOnly);
        files.insert(QDir(dir).relativeFilePath(f), QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1));
    }
    return files;
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

// A report of many labels: its dump is a few kilobytes.
QByteArray labelsReport()
{
    RdfReport r;
    for (int i = 0; i < 40; ++i) {
        RdfItem it;
        it.kind = RdfKind::Label;
        it.name = QStringLiteral("Label%1").arg(i);
        it.fontName = QStringLiteral("Arial");
        it.fontSize = 10;
        it.text = QStringLiteral("Open house this Sunday %1").arg(i);
        it.top = float(240 * i);
        it.height = 240;
        it.width = 3000;
        r.items.push_back(it);
    }
    r.header.lastDetailItem = qint16(r.items.size()); // every label in the detail section
    return RdfWrite(r);
}

const QString& demoFolder()
{
    static QTemporaryDir dir;
    static bool made = false;
    if (!made) {
        const AppRun r = runLimited({"demo", "--data", dir.path(), "--listings", "12"});
        if (r.code != 0)
            qWarning("demo failed: %s", qPrintable(r.err));
        made = true;
    }
    static const QString path = dir.path();
    return path;
}

} // namespace

class TestSafety : public QObject {
    Q_OBJECT
private slots:
    // A folder that lost its database (or host.ini) still holds the user's photos, pictures and
    // reports: no command may regenerate demo data over it.
    void folderWithoutDatabaseIsNeverRegenerated()
    {
        QTemporaryDir dir;
        const QString d = dir.path();
        writeFile(d + "/host.ini", "[Host]\r\nUserName=JCarter\r\n");
        writeFile(d + "/Photos/240001_1.jpg", "the user's photo");
        writeFile(d + "/Graphics/Carter, Jane.jpg", "the user's picture");
        writeFile(d + "/Users/JCarter/Reports/Listings/Mine.rdf", labelsReport());
        const auto before = snapshot(d);
        const QString report = d + "/Users/JCarter/Reports/Listings/Mine.rdf";
        const QList<QStringList> commands = {
            {"sql", "--data", d, "--kind", "1", "SELECT Count(*) FROM Listings"},
            {"dataview", report, "--key", "240001", "--data", d},
            {"resave", report, dir.filePath("out.rdf"), "--data", d},
            {"render", report, "--key", "240001", "--pdf", dir.filePath("out.pdf"), "--data", d},
            {"demo", "--data", d},
            {"demo", "--data", d, "--force"},
            {"--data", d},
        };
        for (const QStringList& args : commands) {
            const AppRun r = runLimited(args);
            QVERIFY2(r.code != 0, qPrintable(args.join(' ')));
            QVERIFY2(r.err.contains("pagewright.db") && r.err.contains("Nothing was changed"), qPrintable(args.join(' ') + ": " + r.err));
            QCOMPARE(snapshot(d), before);
        }
        // An empty folder is only filled when asked to.
        QTemporaryDir empty;
        const AppRun r = runLimited({"sql", "--data", empty.path(), "--kind", "1", "SELECT 1"});
        QCOMPARE(r.code, 1);
        QVERIFY2(r.err.contains("is empty; run 'pagewright demo"), qPrintable(r.err));
        QVERIFY(QDir(empty.path()).isEmpty());
    }

    void demoForceOnAFullDiskKeepsTheOldData()
    {
        // A first run that fails leaves the folder empty, so the next try may fill it.
        QTemporaryDir first;
        const AppRun failed = runLimited({"demo", "--data", first.path(), "--listings", "12"}, 48 * 1024);
        QVERIFY(failed.code != 0);
        QVERIFY2(failed.err.contains("error"), qPrintable(failed.err));
        QVERIFY(QDir(first.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot));

        QTemporaryDir dir;
        QVERIFY(runLimited({"demo", "--data", dir.path(), "--listings", "12"}).code == 0);
        writeFile(dir.filePath("Graphics/My own logo.jpg"), "mine");
        const auto before = snapshot(dir.path());
        QVERIFY(before.contains("Photos/240001_1.jpg") || before.keys().filter("Photos/").size() > 0);
        const AppRun full = runLimited({"demo", "--data", dir.path(), "--listings", "12", "--force"}, 48 * 1024);
        QVERIFY2(full.code != 0, qPrintable(full.out));
        QCOMPARE(snapshot(dir.path()), before);
        // With room it regenerates, and the user's own picture stays.
        QCOMPARE(runLimited({"demo", "--data", dir.path(), "--listings", "12", "--force"}).code, 0);
        QVERIFY(QFile::exists(dir.filePath("Graphics/My own logo.jpg")));
        QVERIFY(!QFile::exists(dir.filePath(".demo-new")));
    }

    void fullDiskFailsWithDiskFullAndLeavesNoPartialFile()
    {
        QTemporaryDir dir;
        const QString report = dir.filePath("Labels.rdf");
        writeFile(report, labelsReport());
        const QString out = dir.filePath("labels.txt");
        AppRun r = runLimited({"dump", report, out}, 1024);
        QCOMPARE(r.code, 1);
        QVERIFY2(r.err.contains("Error: 61 - Disk full: " + out), qPrintable(r.err));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"Labels.rdf"});

        // An older dump stays as it was.
        writeFile(out, "the old dump");
        r = runLimited({"dump", report, out}, 1024);
        QCOMPARE(r.code, 1);
        QFile old(out);
        QVERIFY(old.open(QIODevice::ReadOnly));
        QCOMPARE(old.readAll(), QByteArray("the old dump"));

        // resave the same way.
        const QString again = dir.filePath("Again.rdf");
        r = runLimited({"resave", report, again, "--data", demoFolder()}, 1024);
        QCOMPARE(r.code, 1);
        QVERIFY2(r.err.contains("Error: 61 - Disk full: " + again), qPrintable(r.err));
        QVERIFY(!QFile::exists(again));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), (QStringList{"Labels.rdf", "labels.txt"}));
        // dump accepts --sql-log like every subcommand (it sends no statements).
        QCOMPARE(runLimited({"dump", report, out, "--sql-log", dir.filePath("sql.log")}).code, 0);
    }

    void readOnlyTargetIsRefusedWithPermissionDenied()
    {
        QTemporaryDir dir;
        const QString report = dir.filePath("Labels.rdf");
        writeFile(report, labelsReport());
        const QString target = dir.filePath("Locked.rdf");
        writeFile(target, "keep me");
        QVERIFY(QFile::setPermissions(target, QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther));
        for (const QStringList& args : {QStringList{"resave", report, target, "--data", demoFolder()}, QStringList{"dump", report, target}}) {
            const AppRun r = runLimited(args);
            QCOMPARE(r.code, 1);
            QVERIFY2(r.err.contains("Error: 70 - Permission denied: " + target), qPrintable(r.err));
            QFile f(target);
            QVERIFY(f.open(QIODevice::ReadOnly));
            QCOMPARE(f.readAll(), QByteArray("keep me"));
        }
    }

    void fifoAndDevicesAreRefusedNotWaitedOn()
    {
        QTemporaryDir dir;
        const QString fifo = dir.filePath("pipe.rdf");
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        for (const QString& input : {fifo, QStringLiteral("/dev/zero")}) {
            const QList<QStringList> commands = {{"dump", input, dir.filePath("d.txt")},
                                                 {"resave", input, dir.filePath("r.rdf"), "--data", demoFolder()},
                                                 {"dataview", input, "--key", "240001", "--data", demoFolder()}};
            for (const QStringList& args : commands) {
                const AppRun r = runLimited(args);
                QCOMPARE(r.code, 1);
                QVERIFY2(r.err.contains("Error: 75 - Path/File access error: " + input), qPrintable(args.join(' ') + ": " + r.err));
            }
        }
    }

    // A picture item naming a FIFO: the commands finish (the picture is missing), never wait.
    void fifoAsPictureIsNotWaitedOn()
    {
        QTemporaryDir dir;
        const QString fifo = dir.filePath("photo.jpg");
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        RdfReport r;
        RdfItem pic;
        pic.kind = RdfKind::Image;
        pic.name = "Picture1";
        pic.height = 1440;
        pic.width = 1440;
        pic.formatOrFile = fifo;
        r.items.push_back(pic);
        r.header.lastDetailItem = 1;
        const QString report = dir.filePath("Picture.rdf");
        writeFile(report, RdfWrite(r));
        const QList<QStringList> commands = {{"dump", report, dir.filePath("d.txt")},
                                             {"resave", report, dir.filePath("r.rdf"), "--data", demoFolder()},
                                             {"dataview", report, "--key", "240001", "--data", demoFolder()}};
        for (const QStringList& args : commands) {
            QProcess p;
            p.start(QStringLiteral(PW_APP), args);
            const bool finished = p.waitForFinished(20000);
            if (!finished)
                p.kill(), p.waitForFinished();
            QVERIFY2(finished, qPrintable(args.join(' ') + " waits on the FIFO"));
        }
    }
};

QTEST_GUILESS_MAIN(TestSafety)
#include "tst_safety.moc"
