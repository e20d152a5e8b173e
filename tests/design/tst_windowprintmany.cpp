// File > Print Many from the window: no single record is asked for; the runner gets a copy of
// the report as it stands, marked for many records.
#include "support_windowhost.h"

#include "document/RdfFile.h"

#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>

class tst_windowprintmany : public QObject {
    Q_OBJECT
    QTemporaryDir m_tmp;

private slots:
    void initTestCase() { qputenv("TMPDIR", m_tmp.path().toLocal8Bit()); }

    void printManyHandsOverACopyForManyRecords()
    {
        QList<ReportRunRequest> runs;
        QStringList labels;
        SetReportRunner([&](QWidget*, const ReportRunRequest& r) {
            runs << r;
            for (const RdfItem& it : RdfLoadFile(r.file).items)
                if (it.kind == RdfKind::Label)
                    labels << it.text;
            return true;
        });
        {
            WindowTestHost host;
            Window w = Open();
            QVERIFY(w->Commands().Action(QStringLiteral("miPrintMany"))->isEnabled());
            QCOMPARE(w->Commands().Action(QStringLiteral("miPrintMany"))->text(), QString("Print &Many..."));
            Draw(*w, "tbInsertLabel", {600, 600}, {2400, 900});
            TypeLabel(*w, QStringLiteral("Just Listed"));
            ScriptedRecordPrompt record; // must not be asked: the records are chosen later
            Tool(*w, "miPrintMany");
            QVERIFY(record.asked.isEmpty());
            QCOMPARE(runs.size(), 1);
            QVERIFY(runs[0].many && !runs[0].preview);
            QVERIFY(runs[0].key.isEmpty());
            QCOMPARE(labels, QStringList{"Just Listed"});
            QVERIFY(!QFileInfo::exists(runs[0].file)); // the copy is gone afterwards
            QVERIFY(w->Document().DirtyFlag);
            host.prompts.answers.push_back(Mb::No); // the save question on close
        }
        SetReportRunner(nullptr);
    }
};

QTEST_MAIN(tst_windowprintmany)
#include "tst_windowprintmany.moc"
