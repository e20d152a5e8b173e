// Print and preview from the window: the report reaches the engine as a temporary copy with its
// record, and the user's unsaved work is left as it was.
#include "support_windowhost.h"

#include "document/RdfFile.h"

#include <QDir>
#include <QMenu>
#include <QFileInfo>

namespace {

struct Run {
    ReportRunRequest request;
    QString fileName;     // the temporary file's name, without folder
    QStringList labels;   // label texts found in it
    bool existed = false;
};

// Records what the engine was given and what the file it got holds.
struct RecordingEngine {
    QList<Run> runs;
    RecordingEngine()
    {
        SetReportRunner([this](QWidget*, const ReportRunRequest& r) {
            Run run;
            run.request = r;
            run.fileName = QFileInfo(r.file).fileName();
            run.existed = QFileInfo::exists(r.file);
            const RdfReport rep = RdfLoadFile(r.file);
            for (const RdfItem& it : rep.items)
                if (it.kind == RdfKind::Label)
                    run.labels << it.text;
            runs << run;
            return true;
        });
    }
    ~RecordingEngine() { SetReportRunner(nullptr); }
};

QStringList TempLeftovers(const QString& folder)
{
    return QDir(folder).entryList({QStringLiteral("~QR*")}, QDir::Files);
}

} // namespace

class tst_windowprint : public QObject {
    Q_OBJECT
    QTemporaryDir m_tmp;

private slots:
    void initTestCase() { qputenv("TMPDIR", m_tmp.path().toLocal8Bit()); }

    void printToolsNeedAnEngine()
    {
        {
            WindowTestHost host;
            Window w = Open();
            for (const char* t : {"print", "printpreview", "PrintFromFileMenu"})
                QVERIFY2(!w->Commands().Action(QString::fromLatin1(t))->isEnabled(), t);
        }
        RecordingEngine engine;
        WindowTestHost host;
        Window w = Open();
        for (const char* t : {"print", "printpreview", "PrintFromFileMenu"})
            QVERIFY2(w->Commands().Action(QString::fromLatin1(t))->isEnabled(), t);
    }

    void previewAsksForTheRecordThenHandsOverACopy()
    {
        RecordingEngine engine;
        WindowTestHost host;
        Window w = Open();
        Draw(*w, "tbInsertLabel", {600, 600}, {2400, 900});
        TypeLabel(*w, QStringLiteral("Open House"));
        QVERIFY(w->Document().DirtyFlag);
        const QStringList before = TempLeftovers(m_tmp.path()); // the document's copy buffer

        ScriptedRecordPrompt record;
        Tool(*w, "printpreview"); // no record chosen: nothing is printed
        QCOMPARE(record.asked, QStringList{QString()});
        QVERIFY(engine.runs.isEmpty());
        QCOMPARE(TempLeftovers(m_tmp.path()), before);

        record.answer = true;
        Tool(*w, "printpreview");
        QCOMPARE(engine.runs.size(), 1);
        const Run run = engine.runs[0];
        QVERIFY(run.existed);
        QVERIFY2(run.fileName.startsWith(QStringLiteral("~QR")), qPrintable(run.fileName));
        QCOMPARE(QFileInfo(run.request.file).absolutePath(), QDir(m_tmp.path()).absolutePath());
        QCOMPARE(run.labels, QStringList{QStringLiteral("Open House")});
        QCOMPARE(run.request.key, QStringLiteral("240001"));
        QCOMPARE(run.request.title, QStringLiteral("Untitled"));
        QVERIFY(run.request.preview && !run.request.printDialog);
        QCOMPARE(TempLeftovers(m_tmp.path()), before); // the copy is gone afterwards
        // Printing is not saving: closing still offers to save the work.
        QVERIFY(w->Document().DirtyFlag);
        QVERIFY(w->ReportFile().isEmpty());

        // With the record known, printing asks nothing more.
        Tool(*w, "print");
        Tool(*w, "PrintFromFileMenu");
        QCOMPARE(record.asked.size(), 2);
        QCOMPARE(engine.runs.size(), 3);
        QVERIFY(!engine.runs[1].request.preview && !engine.runs[1].request.printDialog);
        QVERIFY(!engine.runs[2].request.preview && engine.runs[2].request.printDialog);
        host.prompts.answers.push_back(Mb::No); // the save question on close
    }

    void printSetupIsOnTheFileMenuAndOpensTheSetup()
    {
        int shown = 0;
        QWidget* parent = nullptr;
        SetPrinterSetup([&](QWidget* p) { ++shown, parent = p; });
        WindowTestHost host;
        Window w = Open();
        QAction* setup = w->Commands().Action(QStringLiteral("miPrintSetup"));
        QVERIFY(setup->isEnabled());
        QMenu* file = w->Commands().Menu(u"mnuFile");
        QVERIFY(file && file->actions().contains(setup));
        setup->trigger();
        QCOMPARE(shown, 1);
        QCOMPARE(parent, w.get());
        SetPrinterSetup(nullptr);
    }

    void anEmptyReportIsNotPrinted()
    {
        RecordingEngine engine;
        WindowTestHost host;
        Window w = Open();
        Tool(*w, "print");
        QVERIFY(engine.runs.isEmpty());
        QCOMPARE(host.prompts.asked.size(), size_t(1));
        QCOMPARE(host.prompts.asked[0].prompt, QStringLiteral("There is nothing on the report to print."));
    }
};

QTEST_MAIN(tst_windowprint)
#include "tst_windowprint.moc"
