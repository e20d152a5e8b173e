#include "support_fakehost.h"

#include "entry/Cp1252.h"
#include "entry/Prompts.h"
#include "entry/ReportKinds.h"
#include "entry/clsReportDesign.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

// Windows that record what the entry does with them.
template <class Base>
class Recorded : public Base {
public:
    Recorded(QStringList& l, const QString& n) : log(l), name(n), widget(new QWidget) {}
    ~Recorded() override { delete widget; }
    QWidget* Widget() override { return widget; }
    void Unload() override { log << name + " unload"; delete widget; widget = nullptr; }
    QString shown() const { return QStringLiteral("help=%1 visible=%2").arg(ComponentHelpFile()).arg(widget->isVisible()); }
    QStringList& log;
    QString name;
    QWidget* widget;
};

struct TestDesign : Recorded<DesignWindow> {
    explicit TestDesign(QStringList& l) : Recorded(l, QStringLiteral("design")) {}
    void Init(int job, int kind, bool fields) override { log << QStringLiteral("design init %1 %2 %3 ").arg(job).arg(kind).arg(fields) + shown(); }
    bool SetReport(const QString& file, const QString&, const QString& id) override { return log << "design report " + file + " " + id, true; }
};

struct TestFlyers : Recorded<FlyerWindow> {
    explicit TestFlyers(QStringList& l) : Recorded(l, QStringLiteral("flyers")) {}
    void Init(int job) override { log << QStringLiteral("flyers init %1 ").arg(job) + shown(); }
};

} // namespace

class TestEntry : public QObject {
    Q_OBJECT

    QStringList log;
    std::vector<std::unique_ptr<ComponentWindow>> made;

private slots:
    void init()
    {
        log.clear();
        made.clear();
        SetDesignWindowFactory([this] { auto* w = new TestDesign(log); made.emplace_back(w); log << "design created"; return w; });
        SetFlyerWindowFactory([this] { auto* w = new TestFlyers(log); made.emplace_back(w); log << "flyers created"; return w; });
    }

    void startDispatch_data()
    {
        QTest::addColumn<QVariant>("sw");
        QTest::addColumn<QStringList>("expected");
        const QString shown = QStringLiteral(" help=/help/pagewright.chm visible=");
        const QStringList flyers{"flyers created", "flyers init 7" + shown + "0"};
        auto design = [&](int kind) { return QStringList{"design created", QStringLiteral("design init 7 %1 1").arg(kind) + shown + "1"}; };
        QTest::newRow("flyers") << QVariant(2) << flyers;
        QTest::newRow("text two") << QVariant(QStringLiteral("2")) << flyers;
        QTest::newRow("listings") << QVariant(1) << design(1);
        QTest::newRow("rental") << QVariant(6) << design(6);
        QTest::newRow("zero") << QVariant(0) << design(0);
        QTest::newRow("seven") << QVariant(7) << design(7);
        QTest::newRow("not numeric") << QVariant(QStringLiteral("x")) << design(0);
        QTest::newRow("missing") << QVariant() << design(0);
    }
    void startDispatch()
    {
        QFETCH(QVariant, sw);
        QFETCH(QStringList, expected);
        FakeHost host;
        host.form.sw = sw;
        clsReportDesign rd;
        int job = 7;
        rd.Start(&host, job);
        QCOMPARE(log, expected);
        QCOMPARE(gHost, static_cast<TervaneCommon*>(&host));
        // The help file is asked before the main form is read.
        QCOMPARE(host.calls.mid(0, 2), (QStringList{"HelpFile", "MainForm"}));
        QCOMPARE(rd.DesignForm() != nullptr, !expected.first().startsWith("flyers"));
        QCOMPARE(rd.FlyerForm() != nullptr, expected.first().startsWith("flyers"));
    }

    void unloadClosesOnlyTheOpenWindow()
    {
        FakeHost host;
        clsReportDesign rd;
        rd.UnloadObj(); // nothing open: nothing happens
        QVERIFY(log.isEmpty());

        host.form.sw = 2;
        int job = 1;
        rd.Start(&host, job);
        host.form.sw = 1;
        rd.Start(&host, job);
        log.clear();
        rd.UnloadObj();
        QCOMPARE(log, QStringList{"design unload"});
        QVERIFY(rd.FlyerForm() != nullptr);
        rd.UnloadObj();
        QCOMPARE(log, (QStringList{"design unload", "flyers unload"}));
        rd.UnloadObj();
        QCOMPARE(log.size(), 2);
    }

    void unloadAfterWindowClosedItself()
    {
        FakeHost host;
        host.form.sw = 1;
        clsReportDesign rd;
        int job = 3;
        rd.Start(&host, job);
        auto* d = static_cast<TestDesign*>(rd.DesignForm());
        delete d->widget; // the window went away on its own
        d->widget = nullptr;
        QVERIFY(rd.DesignForm() == nullptr);
        log.clear();
        rd.UnloadObj();
        QVERIFY(log.isEmpty());
    }

    void hostFailurePropagates()
    {
        FakeHost host;
        host.form.sw = 1;
        SetDesignWindowFactory(nullptr);
        clsReportDesign rd;
        int job = 1;
        QVERIFY_THROWS_EXCEPTION(HostError, rd.Start(&host, job));
    }

    void reportKinds()
    {
        QCOMPARE(ReportFolderTemplate(1), QString("Users\\~UserName~\\Reports\\Listings\\"));
        QCOMPARE(ReportFolderTemplate(3), QString("Users\\~UserName~\\Reports\\Taxrolls\\"));
        QCOMPARE(ReportFolderTemplate(6), QString("Users\\~UserName~\\Reports\\Rental\\"));
        QCOMPARE(ReportFolderTemplate(9), ReportFolderTemplate(1));
        const int dic[] = {1, 1, 2, 3, 4, 5};
        for (int k = 1; k <= 6; ++k) {
            QCOMPARE(DictionaryKindOf(k), dic[k - 1]);
            QCOMPARE(ReportKindFromName(ReportKindName(k).toLower()), k);
        }
        QCOMPARE(ReportKindFromName("bogus"), 0);
        QCOMPARE(ReportKindFromName("7"), 0);
        QCOMPARE(ExpandUserName("Users\\~UserName~\\Reports\\", "Ann"), QString("Users\\Ann\\Reports\\"));
    }

    void localPathResolvesSeparatorsAndCase()
    {
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkpath("Users/demo/Reports/Flyers"));
        QFile f(dir.filePath("Users/demo/Reports/Flyers/Open House.rdf"));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.close();
        const QString host = QDir::toNativeSeparators(dir.path()).replace('/', '\\');
        QCOMPARE(LocalPath(host + "\\users\\demo\\Reports\\FLYERS\\open house.RDF"), dir.filePath("Users/demo/Reports/Flyers/Open House.rdf"));
        // What does not exist yet keeps its spelling after the part that does.
        QCOMPARE(LocalPath(host + "\\USERS\\demo\\New\\x.rdf"), dir.filePath("Users/demo/New/x.rdf"));
        QCOMPARE(LocalPath(host + "\\Users\\"), dir.filePath("Users") + "/");
        QCOMPARE(LocalPath(QString()), QString());
    }

    void recordsetNullsAndNames()
    {
        Recordset rs({"ListNum", "OwnerName"}, {{QVariant(12), QVariant()}, {QVariant(13), QVariant("Lee")}});
        QCOMPARE(rs.RecordCount(), 2);
        QVERIFY(!rs.Eof());
        QCOMPARE(rs.Fields("listnum").toInt(), 12);
        QVERIFY(rs.Fields("OWNERNAME").isNull());
        QVERIFY(rs.IsNull("OwnerName"));
        QVERIFY_THROWS_EXCEPTION(HostError, rs.Fields("Missing"));
        QVERIFY_THROWS_EXCEPTION(HostError, rs.Fields(2));
        rs.MoveNext();
        QCOMPARE(rs.Fields(1).toString(), QString("Lee"));
        rs.MoveNext();
        QVERIFY(rs.Eof());
        QVERIFY_THROWS_EXCEPTION(HostError, rs.Fields(0));
        QVERIFY_THROWS_EXCEPTION(HostError, rs.MoveNext());
        rs.Close();
        QCOMPARE(rs.RecordCount(), 0);
    }

    void cp1252()
    {
        const QByteArray bytes("\x80\x85\x92\x9f\xe9\xa0\x81", 7);
        const QString text = FromCp1252(bytes);
        QCOMPARE(text, QString::fromUtf8("€…’Ÿé\u00a0\u0081"));
        QCOMPARE(ToCp1252(text), bytes);
        QCOMPARE(ToCp1252(QString::fromUtf8("日本")), QByteArray("??"));
        QCOMPARE(ToCp1252(QString::fromUtf8("a😀b")), QByteArray("a?b"));
    }

    void messageBoxDefaults()
    {
        QCOMPARE(DefaultAnswer(Mb::OKOnly | Mb::Critical), Mb::OK);
        QCOMPARE(DefaultAnswer(Mb::YesNoCancel | Mb::Question), Mb::Yes);
        QCOMPARE(DefaultAnswer(Mb::YesNoCancel | Mb::DefaultButton3), Mb::Cancel);
        QCOMPARE(DefaultAnswer(Mb::OKCancel | Mb::DefaultButton2), Mb::Cancel);
        ScriptedPrompter p;
        p.answers.push_back(Mb::No);
        QCOMPARE(MsgBox("Do you wish to save your changes?", Mb::YesNoCancel | Mb::Question, "Report Design"), Mb::No);
        QCOMPARE(MsgBox("Again?", Mb::YesNo, "T"), Mb::Yes);
        QCOMPARE(p.asked.size(), size_t(2));
        QCOMPARE(p.asked[0].prompt, QString("Do you wish to save your changes?"));
        QCOMPARE(p.asked[0].buttons, Mb::YesNoCancel | Mb::Question);
        QCOMPARE(p.asked[0].title, QString("Report Design"));
    }
};

QTEST_MAIN(TestEntry)
#include "tst_entry.moc"
