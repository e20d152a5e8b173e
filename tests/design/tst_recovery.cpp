// Crash recovery: a design window killed with SIGKILL in the middle of editing leaves a copy
// of its unsaved changes, which the next start offers; saving or closing cleanly leaves none.
#include "design/RecoveryCopy.h"
#include "entry/PrivateProfile.h"
#include "sqltext/clsTempFile.h"
#include "support_windowhost.h"

#include <QApplication>
#include <QProcess>

#include <csignal>
#include <cstdio>

namespace {

// The test host over a folder given from outside, so a child process and the test share it.
class SharedFolderHost : public WindowTestHost {
public:
    explicit SharedFolderHost(const QString& folder) : m_folder(folder)
    {
        QDir(folder).mkpath(QStringLiteral("Users/tester/Reports/Listings"));
    }
    QString AppPath() const override { return m_folder + QLatin1Char('/'); }
    QString UserPath() const override { return m_folder + QStringLiteral("/Users/tester"); }
    QString DataPath() const override { return m_folder; }
    QString Report() const { return m_folder + QStringLiteral("/Users/tester/Reports/Listings/Open House.rdf"); }
    QString RecoveryFolder() const { return m_folder + QStringLiteral("/Users/tester/Recovery"); }

private:
    QString m_folder;
};

QStringList recoveryFiles(const SharedFolderHost& host)
{
    return QDir(host.RecoveryFolder()).entryList(QDir::Files, QDir::Name);
}

QByteArray bytesOf(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The child: opens the report, draws a box as a user does, waits for the recovery copy that
// the end of the drag brings, says so, and edits on until it is killed.
int runEditingChild(const QString& folder, const QString& tempFolder)
{
    SharedFolderHost host(folder);
    Window w = Open();
    w->SetReport(host.Report(), QStringLiteral("Open House.rdf"), QString());
    Draw(*w, "tbInsertRectangle", {1200, 1500}, {3000, 2400});
    // A temporary file of this process, as a copy or a print would leave.
    const QString temp = clsTempFile::FileName2(QStringLiteral("~QR"), tempFolder);
    for (int i = 0; i < 600 && w->Recovery()->CopyFile().isEmpty(); ++i)
        QTest::qWait(50);
    std::printf("READY %s %s\n", qPrintable(w->Recovery()->CopyFile()), qPrintable(temp));
    std::fflush(stdout);
    for (;;)
        QTest::qWait(1000);
}

struct KilledEditor {
    QString copy, temp;
};

KilledEditor killEditorMidEdit(const QString& folder, const QString& tempFolder)
{
    QProcess child;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    child.setProcessEnvironment(env);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--edit-and-wait"), folder, tempFolder});
    QByteArray out;
    while (!out.contains('\n') && child.waitForReadyRead(60000))
        out += child.readAllStandardOutput();
    ::kill(pid_t(child.processId()), SIGKILL);
    child.waitForFinished(10000);
    const QStringList parts = QString::fromLocal8Bit(out).trimmed().split(QLatin1Char(' '));
    if (parts.size() != 3 || parts[0] != QLatin1String("READY"))
        return {};
    return {parts[1], parts[2]};
}

// A saved report with one label, made through the window as a user would.
void saveOneLabelReport(SharedFolderHost& host)
{
    Window w = Open();
    Draw(*w, "tbInsertLabel", {600, 300}, {2400, 600});
    TypeLabel(*w, QStringLiteral("Open House"));
    QVERIFY(w->Document().SaveReport(host.Report(), false));
    w->Unload();
}

} // namespace

class TestRecovery : public QObject {
    Q_OBJECT
private slots:
    void killedEditorIsOfferedAndRecoveredAsUnsavedChanges()
    {
        QTemporaryDir data, temp;
        SharedFolderHost host(data.path());
        saveOneLabelReport(host);
        const QByteArray saved = bytesOf(host.Report());
        QVERIFY(!saved.isEmpty());

        const KilledEditor killed = killEditorMidEdit(data.path(), temp.path());
        QVERIFY2(!killed.copy.isEmpty(), "the child never wrote its recovery copy");
        QVERIFY(QFile::exists(killed.copy));
        const QString id = QFileInfo(killed.copy).completeBaseName();
        QCOMPARE(recoveryFiles(host), (QStringList{id + ".ini", id + ".lock", id + ".rdf"}));
        QCOMPARE(bytesOf(host.Report()), saved); // the report itself is never written by recovery

        // The killed process's temporary file goes; one of a running process (ours) stays.
        const QString mine = clsTempFile::FileName2(QStringLiteral("~QR"), temp.path());
        QVERIFY(QFile::exists(killed.temp));
        QCOMPARE(clsTempFile::RemoveOrphans(QStringLiteral("~QR"), temp.path()), 1);
        QVERIFY(!QFile::exists(killed.temp));
        QVERIFY(QFile::exists(mine));

        // The next start.
        const QDateTime written = QDateTime::fromString(
            PrivateProfile::GetString("Recovery", "Written", "", host.RecoveryFolder() + "/" + id + ".ini"), Qt::ISODate);
        QVERIFY(written.isValid());
        host.prompts.answers = {Mb::Yes};
        Window w = Open();
        const auto opened = RecoveryCopy::OfferRecovery(w.get());
        QCOMPARE(host.prompts.asked.size(), size_t(1));
        QCOMPARE(host.prompts.asked[0].prompt, "Recover the unsaved changes to Open House.rdf from " + written.toString("HH:mm") + "?");
        QCOMPARE(host.prompts.asked[0].buttons, Mb::YesNo | Mb::Question);
        QCOMPARE(host.prompts.asked[0].title, QString("Report/Flyer Designer"));
        QCOMPARE(opened, std::vector<frmPagewright*>{w.get()});
        QCOMPARE(w->Document().RptItemCount(), 2); // the label and the box drawn before the kill
        QCOMPARE(clsRptControl::Prop(Control(*w, 1), "Text").toString(), QString("Open House"));
        QVERIFY(w->Document().DirtyFlag);
        QCOMPARE(w->ReportFile(), host.Report());
        QVERIFY(w->windowTitle().contains("Open House.rdf"));
        QCOMPARE(bytesOf(host.Report()), saved);
        // Undo starts at the recovered page: a change undoes back to it, still unsaved.
        w->SelObj().Select(Control(*w, 1));
        const double left = clsRptControl::Prop(Control(*w, 1), "Left").toDouble();
        QTest::keyClick(w->Page().View(), Qt::Key_Right);
        QCoreApplication::processEvents();
        QCOMPARE(clsRptControl::Prop(Control(*w, 1), "Left").toDouble(), left + 60);
        QTest::keyClick(w->Page().View(), Qt::Key_Z, Qt::ControlModifier);
        QCoreApplication::processEvents();
        QCOMPARE(w->Document().RptItemCount(), 2);
        QCOMPARE(clsRptControl::Prop(Control(*w, 1), "Left").toDouble(), left);
        QVERIFY(w->Document().DirtyFlag);
        QVERIFY(!w->Commands().Action(QStringLiteral("miUndo"))->isEnabled());
        // The old copy is gone; the window keeps its own while the changes stay unsaved.
        QVERIFY(!QFile::exists(killed.copy));
        const QString own = w->Recovery()->CopyFile();
        QVERIFY(QFile::exists(own));
        QCOMPARE(recoveryFiles(host).size(), 3);

        // Saving (Ctrl+S, a real key) ends the need for a copy once the user pauses.
        QTest::keyClick(w.get(), Qt::Key_S, Qt::ControlModifier);
        QVERIFY(!w->Document().DirtyFlag);
        QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(own), 20000);
        QCOMPARE(recoveryFiles(host), QStringList{});
        QVERIFY(bytesOf(host.Report()) != saved);
        w->Unload();
        // Nothing left to offer.
        Window again = Open();
        QCOMPARE(RecoveryCopy::OfferRecovery(again.get()), std::vector<frmPagewright*>{});
        QCOMPARE(host.prompts.asked.size(), size_t(1));
    }

    void declinedCopyIsDiscardedAndCleanCloseLeavesNone()
    {
        QTemporaryDir data, temp;
        SharedFolderHost host(data.path());
        saveOneLabelReport(host);
        const KilledEditor killed = killEditorMidEdit(data.path(), temp.path());
        QVERIFY(QFile::exists(killed.copy));

        host.prompts.answers = {Mb::No};
        Window w = Open();
        QCOMPARE(RecoveryCopy::OfferRecovery(w.get()), std::vector<frmPagewright*>{});
        QCOMPARE(host.prompts.asked.size(), size_t(1));
        QCOMPARE(w->Document().RptItemCount(), 0);
        QCOMPARE(recoveryFiles(host), QStringList{});

        // Unsaved work in a window that is open is not someone else's to recover.
        Draw(*w, "tbInsertRectangle", {1200, 1500}, {3000, 2400});
        QTRY_VERIFY_WITH_TIMEOUT(!w->Recovery()->CopyFile().isEmpty(), 20000);
        Window second = Open();
        QCOMPARE(RecoveryCopy::OfferRecovery(second.get()), std::vector<frmPagewright*>{});
        QCOMPARE(host.prompts.asked.size(), size_t(1));
        second->Unload();

        // Closing and answering No to saving drops the changes, and with them the copy.
        host.prompts.answers = {Mb::No};
        w->close();
        QCOMPARE(recoveryFiles(host), QStringList{});
    }
};

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    if (argc == 4 && qstrcmp(argv[1], "--edit-and-wait") == 0)
        return runEditingChild(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]));
    TestRecovery t;
    return QTest::qExec(&t, argc, argv);
}

#include "tst_recovery.moc"
