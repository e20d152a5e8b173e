// Statements that would run forever or fill the memory, a writer holding a lock, and a writer
// that died mid-transaction: the database call fails clearly, waits, or recovers.
#include "host/SqliteDatabase.h"
#include "support_host.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void exec(sqlite3* db, const char* sql)
{
    char* err = nullptr;
    if (sqlite3_exec(db, sql, nullptr, nullptr, &err) != SQLITE_OK) {
        qWarning("%s: %s", sql, err);
        sqlite3_free(err);
    }
}

// A database with one table T of `rows` rows: N (1..rows) and a text W of `width` characters.
QString makeDatabase(const QTemporaryDir& dir, int rows, int width)
{
    const QString file = dir.filePath("data.db");
    sqlite3* db = nullptr;
    sqlite3_open(file.toUtf8().constData(), &db);
    exec(db, "CREATE TABLE T (N INTEGER, W TEXT)");
    exec(db, QStringLiteral("WITH RECURSIVE c(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM c WHERE n < %1) "
                            "INSERT INTO T SELECT n, substr(printf('%.*c', %2, 'w'), 1, %2) FROM c")
                 .arg(rows).arg(width).toUtf8().constData());
    sqlite3_close(db);
    return file;
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

// Runs `child` in a forked process that then ends at once, as a crashed program would, without
// committing, closing or cleaning up anything. `ready` is written by the child when it is far
// enough for the parent to go on; returns the child's pid.
pid_t forkWriter(const std::function<void(int readyFd)>& child, int* readyFd)
{
    int fds[2];
    if (pipe(fds) != 0)
        return -1;
    const pid_t pid = fork();
    if (pid == 0) {
        ::close(fds[0]);
        child(fds[1]);
        _exit(0);
    }
    ::close(fds[1]);
    *readyFd = fds[0];
    return pid;
}

} // namespace

class TestSqlBudget : public QObject {
    Q_OBJECT
private slots:
    void crossJoinIsStoppedAndTheConnectionStillWorks()
    {
        QTemporaryDir dir;
        SqliteDatabase db(makeDatabase(dir, 2000, 4));
        db.SetBudget({300, qint64(64) << 20});
        const QString sql = QStringLiteral("SELECT Count(*) FROM T AS A, T AS B, T AS C");
        QCOMPARE(errorOf([&] { db.OpenRecordset(1, sql); }),
                 qMakePair(int(HostErr::Timeout), "The statement took longer than 0.3 s and was stopped (statement: " + sql + ")"));
        // The budget is per statement: the next one runs normally.
        QCOMPARE(RowsOf(*db.OpenRecordset(1, QStringLiteral("SELECT Count(*) FROM T"))), QStringList{"2000"});
    }

    void wideResultIsRefused()
    {
        QTemporaryDir dir;
        SqliteDatabase db(makeDatabase(dir, 300, 1000));
        db.SetBudget({10000, qint64(1) << 20});
        const QString sql = QStringLiteral("SELECT A.W, B.N FROM T AS A, T AS B");
        QCOMPARE(errorOf([&] { db.OpenRecordset(1, sql); }),
                 qMakePair(int(HostErr::OutOfMemory), "Out of memory: the result is larger than 1 MB (statement: " + sql + ")"));
        QCOMPARE(db.OpenRecordset(1, QStringLiteral("SELECT W FROM T WHERE N = 1"))->Fields(0).toString(), QString(1000, 'w'));
    }

    void writerThatDiedMidTransactionIsRolledBack()
    {
        QTemporaryDir dir;
        const QString file = makeDatabase(dir, 5000, 200);
        int ready = -1;
        const pid_t pid = forkWriter([&](int) {
            sqlite3* w = nullptr;
            sqlite3_open(file.toUtf8().constData(), &w);
            // A tiny cache makes the changes spill into the file before the commit.
            exec(w, "PRAGMA cache_size = 2; BEGIN; UPDATE T SET W = 'half-written', N = -N");
        }, &ready);
        int status = 0;
        QCOMPARE(waitpid(pid, &status, 0), pid);
        ::close(ready);
        QVERIFY2(QFile::exists(file + "-journal"), "the writer should have left a hot journal");

        SqliteDatabase db(file);
        QCOMPARE(RowsOf(*db.OpenRecordset(1, QStringLiteral("SELECT Count(*), Min(N), Max(W) FROM T"))),
                 QStringList{"5000|1|" + QString(200, 'w')});
        // Still only reads.
        QCOMPARE(errorOf([&] { db.RunNative(QStringLiteral("DELETE FROM T")); }).first, int(HostErr::SqlExecute));
    }

    void briefLockIsWaitedFor()
    {
        QTemporaryDir dir;
        const QString file = makeDatabase(dir, 10, 1);
        int ready = -1;
        const pid_t pid = forkWriter([&](int fd) {
            sqlite3* w = nullptr;
            sqlite3_open(file.toUtf8().constData(), &w);
            exec(w, "BEGIN EXCLUSIVE; UPDATE T SET N = N + 100");
            (void)::write(fd, "x", 1);
            ::usleep(400 * 1000);
            exec(w, "COMMIT");
            sqlite3_close(w);
        }, &ready);
        char c = 0;
        QCOMPARE(::read(ready, &c, 1), ssize_t(1)); // the lock is held now
        SqliteDatabase db(file);
        QCOMPARE(RowsOf(*db.OpenRecordset(1, QStringLiteral("SELECT Min(N) FROM T"))), QStringList{"101"});
        int status = 0;
        waitpid(pid, &status, 0);
        ::close(ready);
    }
};

QTEST_GUILESS_MAIN(TestSqlBudget)
#include "tst_sqlbudget.moc"
