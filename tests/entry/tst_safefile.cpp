#include "entry/SafeFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// A real full disk for this process: writes past `bytes` fail with EFBIG (SIGXFSZ ignored),
// exactly as on a file system that has run out of room for the file.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &m_old);
        m_oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit l = m_old;
        l.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &l);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_oldHandler);
    }

private:
    rlimit m_old{};
    void (*m_oldHandler)(int) = nullptr;
};

QByteArray fileBytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

QStringList entries(const QString& dir)
{
    return QDir(dir).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

template <class F>
QPair<int, QString> errorOf(F&& f)
{
    try {
        f();
    } catch (const HostError& e) {
        return {e.Number(), e.Description()};
    }
    return {0, QString()};
}

} // namespace

class TestSafeFile : public QObject {
    Q_OBJECT
private slots:
    void fullDiskKeepsTheOldFileAndLeavesNothing()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("out.pdf");
        writeFile(path, "old contents");
        const QByteArray big(64 * 1024, 'x');
        QPair<int, QString> err;
        {
            FileSizeLimit limit(4096);
            err = errorOf([&] { SafeFileWriter::WriteFile(path, big); });
        }
        QCOMPARE(err, qMakePair(int(HostErr::DiskFull), "Disk full: " + path));
        QCOMPARE(fileBytes(path), QByteArray("old contents"));
        QCOMPARE(entries(dir.path()), QStringList{"out.pdf"});

        // The same through the streaming device, which a writer such as QPdfWriter uses and whose
        // failures it does not check: Commit still refuses.
        {
            FileSizeLimit limit(4096);
            SafeFileWriter w(path);
            for (int i = 0; i < 32; ++i)
                w.Device()->write(QByteArray(1024, 'y'));
            err = errorOf([&] { w.Commit(); });
        }
        QCOMPARE(err.first, int(HostErr::DiskFull));
        QCOMPARE(fileBytes(path), QByteArray("old contents"));
        QCOMPARE(entries(dir.path()), QStringList{"out.pdf"});
    }

    void injectedFailureAndSuccessfulReplace()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("dump.txt");
        SafeFileWriter::InjectFailure(10, ENOSPC);
        const auto err = errorOf([&] { SafeFileWriter::WriteFile(path, QByteArray(100, 'a')); });
        SafeFileWriter::InjectFailure(-1, 0);
        QCOMPARE(err.first, int(HostErr::DiskFull));
        QVERIFY(!QFile::exists(path));
        QCOMPARE(entries(dir.path()), QStringList{});

        // A new file follows the umask; a replaced one keeps its permissions; a link stays a link.
        SafeFileWriter::WriteFile(path, "one");
        QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        QVERIFY(QFile::link(path, dir.filePath("link.txt")));
        SafeFileWriter::WriteFile(dir.filePath("link.txt"), "two");
        QCOMPARE(fileBytes(path), QByteArray("two"));
        QVERIFY(QFileInfo(dir.filePath("link.txt")).isSymLink());
        struct stat st {};
        QCOMPARE(::stat(QFile::encodeName(path).constData(), &st), 0);
        QCOMPARE(int(st.st_mode & 0777), 0600);

        // Nothing committed: the target is untouched.
        {
            SafeFileWriter w(path);
            w.Write("three");
        }
        QCOMPARE(fileBytes(path), QByteArray("two"));
        QCOMPARE(entries(dir.path()), (QStringList{"dump.txt", "link.txt"}));
    }

    void readOnlyTargetIsRefused()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("Listing.rdf");
        writeFile(path, "keep me");
        QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther));
        QCOMPARE(errorOf([&] { SafeFileWriter::WriteFile(path, "new"); }),
                 qMakePair(int(HostErr::PermissionDenied), "Permission denied: " + path));
        QCOMPARE(fileBytes(path), QByteArray("keep me"));
        QCOMPARE(entries(dir.path()), QStringList{"Listing.rdf"});
        QCOMPARE(errorOf([&] { SafeFileWriter::WriteFile(dir.filePath("none/x.txt"), "new"); }).first, int(HostErr::PathNotFound));
        QCOMPARE(errorOf([&] { SafeFileWriter::WriteFile("/dev/null", "new"); }).first, int(HostErr::FileAccess));
    }

    void readsOnlyRegularFiles()
    {
        QTemporaryDir dir;
        const QString fifo = dir.filePath("pipe.rdf");
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        // Would block forever in open() or read() if it were treated as a file.
        QCOMPARE(errorOf([&] { ReadRegularFile(fifo, 1 << 20); }),
                 qMakePair(int(HostErr::FileAccess), "Path/File access error: " + fifo));
        QCOMPARE(errorOf([&] { ReadRegularFile("/dev/zero", 1 << 20); }).first, int(HostErr::FileAccess));
        QCOMPARE(errorOf([&] { ReadRegularFile(dir.path(), 1 << 20); }).first, int(HostErr::FileAccess));
        QCOMPARE(errorOf([&] { ReadRegularFile(dir.filePath("none"), 1 << 20); }),
                 qMakePair(int(HostErr::FileNotFound), "File not found: " + dir.filePath("none")));
        QCOMPARE(errorOf([&] { ReadRegularFile(dir.filePath("no/none"), 1 << 20); }).first, int(HostErr::PathNotFound));
        QVERIFY(!IsRegularFile(fifo));

        const QString file = dir.filePath("a.bin");
        writeFile(file, QByteArray("\0\1\2three", 8));
        QVERIFY(IsRegularFile(file));
        QCOMPARE(ReadRegularFile(file, 8), QByteArray("\0\1\2three", 8));
        QCOMPARE(errorOf([&] { ReadRegularFile(file, 7); }).first, int(HostErr::OutOfMemory));
        writeFile(dir.filePath("empty"), {});
        QCOMPARE(ReadRegularFile(dir.filePath("empty"), 0), QByteArray());
    }
};

QTEST_GUILESS_MAIN(TestSafeFile)
#include "tst_safefile.moc"
