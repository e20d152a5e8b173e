// The embedded host on generated demo data: identity and folders, the statements the designer
// sends, the photo service, the SQL log, job closing and determinism of the generator.
#include "host/DataFolder.h"
#include "host/DemoData.h"
#include "host/EmbeddedHost.h"
#include "host/SqliteDatabase.h"
#include "entry/PrivateProfile.h"
#include "entry/ReportKinds.h"
#include "sqltext/clsSQLQuote.h"
#include "support_host.h"

#include <QDirIterator>
#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QWidget>
#include <QtTest>

class TestDemoHost : public QObject {
    Q_OBJECT
    std::unique_ptr<EmbeddedHost> m_host;

    QStringList run(const QString& sql, int kind = 1) { return RowsOf(*m_host->Database().OpenRecordset(kind, sql, 3, 1, 1)); }

    static QStringList dump(const QString& dir)
    {
        SqliteDatabase db(dir + QStringLiteral("/pagewright.db"));
        QStringList out;
        for (const char* table : {"Listings", "Photo", "Office", "Members", "TaxRolls", "Rentals", "DicKinds", "DicFields", "DicCodes"}) {
            auto rs = db.RunNative(QStringLiteral("SELECT * FROM %1 ORDER BY 1, 2").arg(QLatin1String(table)));
            out << QLatin1String(table) << RowsOf(*rs);
        }
        QDirIterator it(dir, QDir::Files, QDirIterator::Subdirectories);
        QStringList files;
        while (it.hasNext())
            files << QDir(dir).relativeFilePath(it.next());
        files.sort();
        return out + files;
    }

private slots:
    void initTestCase() { m_host = EmbeddedHost::Open(SmallDemoFolder()); }

    void identityAndFolders()
    {
        const QString dir = SmallDemoFolder();
        QCOMPARE(m_host->UserName(), QStringLiteral("JCarter"));
        QCOMPARE(m_host->AgentId(), QStringLiteral("A1001"));
        QCOMPARE(m_host->StatusList(), QStringLiteral("2005,2006"));
        const QString hostDir = QString(dir).replace(QLatin1Char('/'), QLatin1Char('\\'));
        QCOMPARE(m_host->AppPath(), hostDir + QLatin1Char('\\'));
        QCOMPARE(m_host->DataPath(), hostDir);
        QCOMPARE(m_host->UserPath(), hostDir + QStringLiteral("\\Users\\JCarter"));
        QCOMPARE(m_host->HelpFile(), hostDir + QStringLiteral("\\Help\\Pagewright.chm"));
        QVERIFY(QFileInfo::exists(LocalPath(m_host->UserPath() + QStringLiteral("\\User.ini"))));
        for (int kind = 1; kind <= 6; ++kind) {
            const QString folder = LocalPath(m_host->AppPath() + ExpandUserName(ReportFolderTemplate(kind), m_host->UserName()));
            QVERIFY2(QFileInfo(folder).isDir(), qPrintable(folder));
        }
        for (const char* who : {"Templates", "Office"}) {
            const QString flyers = LocalPath(m_host->AppPath() + ExpandUserName(QStringLiteral("users\\~UserName~\\Reports\\Flyers\\"), QLatin1String(who)));
            QVERIFY2(QFileInfo(flyers).isDir(), qPrintable(flyers));
            QVERIFY(QDir(flyers).isEmpty());
        }
        for (const char* picture : {"Carter, Jordan.jpg", "JCarter.jpg", "OF01.jpg", "OF02.bmp"})
            QVERIFY2(QFileInfo::exists(dir + QStringLiteral("/Graphics/") + QLatin1String(picture)), picture);
    }

    void openUnpreparedFolder()
    {
        QTemporaryDir empty;
        try {
            EmbeddedHost::Open(empty.path());
            QFAIL("an empty folder was accepted");
        } catch (const HostError& e) {
            QCOMPARE(e.Number(), HostErr::FileNotFound);
            QCOMPARE(e.Description(), QStringLiteral("File not found: the data folder %1 is empty; run 'pagewright demo --data \"%1\"' to fill it.").arg(empty.path()));
        }
        QVERIFY(!DemoDataExists(empty.path()));
        QVERIFY(DemoDataExists(SmallDemoFolder()));
        QVERIFY_THROWS_EXCEPTION(HostError, GenerateDemoData(empty.path(), 0));
        QVERIFY(!DemoDataExists(empty.path()));

        // A folder with anything in it but no database is the user's: refused, and left alone.
        QTemporaryDir used;
        QDir(used.path()).mkpath(QStringLiteral("Photos"));
        QFile photo(used.filePath(QStringLiteral("Photos/240001_1.jpg")));
        QVERIFY(photo.open(QIODevice::WriteOnly));
        photo.write("mine");
        photo.close();
        QCOMPARE(DataFolder::Missing(used.path()), (QStringList{QStringLiteral("host.ini"), QStringLiteral("pagewright.db")}));
        try {
            GenerateDemoData(used.path(), 10);
            QFAIL("demo data was written over a used folder");
        } catch (const HostError& e) {
            QCOMPARE(e.Number(), HostErr::FileNotFound);
            QCOMPARE(e.Description(), QStringLiteral("File not found: host.ini and pagewright.db in the data folder %1. Nothing was changed; "
                                                     "restore them from a backup, or run 'pagewright demo' with an empty folder.").arg(used.path()));
        }
        QCOMPARE(QDir(used.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot), QStringList{QStringLiteral("Photos")});
        QCOMPARE(QDir(used.filePath(QStringLiteral("Photos"))).entryList(QDir::Files), QStringList{QStringLiteral("240001_1.jpg")});
    }

    void resolveDataFolder()
    {
        QStringList args{QStringLiteral("--kind"), QStringLiteral("1"), QStringLiteral("--data"), QStringLiteral("/tmp/x/../pw"), QStringLiteral("SELECT")};
        QCOMPARE(DataFolder::ResolveDataFolder(args), QStringLiteral("/tmp/pw"));
        QCOMPARE(args, QStringList({"--kind", "1", "SELECT"}));
        QStringList other{QStringLiteral("--data=/srv/data")};
        QCOMPARE(DataFolder::ResolveDataFolder(other), QStringLiteral("/srv/data"));
        QVERIFY(other.isEmpty());
        qputenv("PAGEWRIGHT_DATA", "/opt/pwdata");
        QStringList none;
        QCOMPARE(DataFolder::ResolveDataFolder(none), QStringLiteral("/opt/pwdata"));
        qunsetenv("PAGEWRIGHT_DATA");
        QVERIFY(DataFolder::DefaultDataFolder().endsWith(QLatin1String("/pagewright")));
    }

    void listingExists()
    {
        const QString sql = QStringLiteral("SELECT Count(*) AS RecCount FROM Listings WHERE ListNum = %1 AND CLng(LstStatus) NOT IN (2005,2006);");
        QCOMPARE(run(sql.arg(240001)), QStringList{QStringLiteral("1")});
        QCOMPARE(run(sql.arg(240002)), QStringList{QStringLiteral("0")}); // withdrawn: excluded
        QCOMPARE(run(sql.arg(240003)), QStringList{QStringLiteral("0")}); // cancelled: excluded
        QCOMPARE(run(sql.arg(999999)), QStringList{QStringLiteral("0")});
        QCOMPARE(run(QStringLiteral("SELECT LstStatus FROM Listings WHERE ListNum = 240002")), QStringList{QStringLiteral("2005")});
    }

    void companyOffices()
    {
        QStringList rows = run(QStringLiteral("Select OffOfficeId From Office Where offCompanyCode = (Select offCompanyCode From Office Where offOfficeId = 'of01');"));
        rows.sort();
        QCOMPARE(rows, QStringList({"OF01", "OF02", "OF03"}));
    }

    void agentNames()
    {
        const QString sql = QStringLiteral("SELECT MemberId As SelectedId,(MemLastName + ', ' + MemFirstName + ' ' +  IIF(IsNull(MemMiddleInitial),'',MemMiddleInitial)) "
                                           "AS AgentName FROM Members Where MemOfficeID = 'OF01';");
        auto rs = m_host->Database().OpenRecordset(4, sql);
        QCOMPARE(rs->Columns(), QStringList({"SelectedId", "AgentName"}));
        QCOMPARE(rs->RecordCount(), 5);
        auto raw = m_host->Sqlite().RunNative(QStringLiteral("SELECT MemLastName, MemFirstName, MemMiddleInitial FROM Members WHERE MemOfficeID = 'OF01' ORDER BY MemberId"));
        bool sawNull = false, sawInitial = false;
        for (; !rs->Eof(); rs->MoveNext(), raw->MoveNext()) {
            const QVariant middle = raw->Fields(2);
            (middle.isNull() ? sawNull : sawInitial) = true;
            QCOMPARE(rs->Fields(QStringLiteral("AgentName")).toString(),
                     raw->Fields(0).toString() + QStringLiteral(", ") + raw->Fields(1).toString() + QLatin1Char(' ') + middle.toString());
        }
        QVERIFY(sawNull && sawInitial);
        QCOMPARE(run(QStringLiteral("SELECT MemFirstName FROM Members WHERE MemberId = 'a1001';")), QStringList{QStringLiteral("Jordan")});
    }

    void ownerSearch()
    {
        const QString head = QStringLiteral("SELECT ListNum As SelectedId,StreetNumber,StreetDirection,StreetName,OwnerName FROM Listings");
        const QString allowed = QStringLiteral(") AND lstStatus IN (") + clsAllowedStatuses::SQLAllowedStatuses(m_host->StatusList()) + QStringLiteral(");");
        auto rs = m_host->Database().OpenRecordset(1, head + QStringLiteral(" Where (OwnerName Like 'O''N%'") + allowed);
        QCOMPARE(rs->Columns(), QStringList({"SelectedId", "StreetNumber", "StreetDirection", "StreetName", "OwnerName"}));
        QStringList owners;
        for (; !rs->Eof(); rs->MoveNext())
            owners << rs->Fields(QStringLiteral("OwnerName")).toString();
        owners.sort();
        QCOMPARE(owners, QStringList({"O'Neil", "O'Neill Family Trust"}));

        rs = m_host->Database().OpenRecordset(1, head + QStringLiteral(" Where OwnerName = 'o''neil';"));
        QCOMPARE(rs->RecordCount(), 1);
        QCOMPARE(rs->Fields(QStringLiteral("SelectedId")).toLongLong(), 240004LL);

        const clsSQLQuote q;
        const QStringList literal = run(QStringLiteral("SELECT ListNum FROM Listings WHERE OwnerName Like '%1%';").arg(q.QuoteLike(QStringLiteral("50%_Off"))));
        QCOMPARE(literal, QStringList{QStringLiteral("240005")});
        const QStringList wild = run(QStringLiteral("SELECT ListNum FROM Listings WHERE OwnerName Like '50%_Off%' ORDER BY ListNum;"));
        QCOMPARE(wild, QStringList({"240005", "240011"})); // "50XOff Realty" matches only the unescaped pattern
        QCOMPARE(run(QStringLiteral("SELECT ListNum FROM Listings WHERE OwnerName Like '%1%';").arg(q.QuoteLike(QStringLiteral("Star*Light #")))),
                 QStringList{QStringLiteral("240013")});
        QCOMPARE(run(QStringLiteral("SELECT ListNum FROM Listings WHERE OwnerName Like '%1%';").arg(q.QuoteLike(QStringLiteral("[Bracket]")))),
                 QStringList{QStringLiteral("240012")});
    }

    void taxRollSearch()
    {
        auto rs = m_host->Database().OpenRecordset(2, QStringLiteral(
            "SELECT TaxId As SelectedId,TaxHouseNumber as StreetNumber,TaxStreetDir as StreetDirection,TaxStreetName as StreetName,"
            "TaxOwnerName as OwnerName FROM TaxRolls Where TaxOwnerName = 'O''Neil';"));
        QCOMPARE(rs->Columns(), QStringList({"SelectedId", "StreetNumber", "StreetDirection", "StreetName", "OwnerName"}));
        QCOMPARE(rs->RecordCount(), 1);
        QCOMPARE(rs->Fields(QStringLiteral("SelectedId")).typeId(), int(QMetaType::QString));
    }

    // The catalogue's expressions on a known listing, with the tokens the data view replaces.
    void expressionFieldValues()
    {
        auto d = m_host->NewFieldDictionary(1);
        QStringList columns;
        for (const char* name : {"ListAgentName", "SaleAgentName", "MyListing", "AgentRemarks", "FullAddress"}) {
            d->SelectFieldByName(QLatin1String(name));
            columns << d->FieldExpression() + QStringLiteral(" AS ") + QLatin1String(name);
        }
        QString sql = QStringLiteral("SELECT %1 FROM Listings WHERE ListNum = 240001;").arg(columns.join(QLatin1Char(',')));
        sql.replace(QLatin1String("'~AccessKey~'"), m_host->AccessKey());
        sql.replace(QLatin1String("'~UserId~'"), QLatin1Char('\'') + m_host->AgentId() + QLatin1Char('\''));
        auto rs = m_host->Database().OpenRecordset(1, sql);
        QCOMPARE(rs->Fields(QStringLiteral("ListAgentName")).toString(), QStringLiteral("Carter, Jordan"));
        QVERIFY(rs->IsNull(QStringLiteral("SaleAgentName"))); // active: no sale agent
        QCOMPARE(rs->Fields(QStringLiteral("MyListing")).toString(), QStringLiteral("Yes"));
        QVERIFY(rs->Fields(QStringLiteral("AgentRemarks")).toString().startsWith(QLatin1String("Showing: call Jordan.")));
        auto raw = m_host->Sqlite().RunNative(QStringLiteral("SELECT StreetNumber, StreetDirection, StreetName FROM Listings WHERE ListNum = 240001"));
        const QString dir = raw->Fields(1).isNull() ? QString() : raw->Fields(1).toString() + QLatin1Char(' ');
        QCOMPARE(rs->Fields(QStringLiteral("FullAddress")).toString(), raw->Fields(0).toString() + QLatin1Char(' ') + dir + raw->Fields(2).toString());

        // Every fifth listing has no Photo row: the join gives Null.
        QCOMPARE(run(QStringLiteral("SELECT ListNum, PhotoVersion FROM Listings LEFT JOIN Photo ON Listings.Listnum = Photo.PhoListnum"
                                    " WHERE ListNum IN (240001, 240005) AND CLng(LstStatus) NOT IN (2005,2006) ORDER BY ListNum;")),
                 QStringList({"240001|V2", "240005|<Null>"}));
        QCOMPARE(run(QStringLiteral("SELECT Listnum, PhotoVersion FROM Rentals LEFT JOIN Photo ON Rentals.Listnum = Photo.PhoListnum WHERE Listnum = 500001;"), 5),
                 QStringList{QStringLiteral("500001|V1")});
    }

    void photoService()
    {
        PhotoLibrary& photos = m_host->PhotoService();
        const int count = run(QStringLiteral("SELECT PhotoCount FROM Photo WHERE PhoListNum = 240001;")).value(0).toInt();
        QVERIFY(count >= 1);
        PhotoResult r = photos.GetPhotoFile(*m_host, QStringLiteral("240001"), 1, QStringLiteral("V1"), 0);
        QCOMPARE(r.status, 0);
        QCOMPARE(r.path, m_host->AppPath() + QStringLiteral("Photos\\240001_1.jpg"));
        QCOMPARE(QImage(LocalPath(r.path)).size(), QSize(320, 240));
        QCOMPARE(photos.GetPhotoFile(*m_host, QStringLiteral("240001"), count, QString(), 0).status, 0);
        r = photos.GetPhotoFile(*m_host, QStringLiteral("240001"), count + 1, QString(), 0);
        QCOMPARE(r.status, 1);
        QCOMPARE(r.path, QString());
        QCOMPARE(photos.GetPhotoFile(*m_host, QStringLiteral("240001"), 0, QString(), 0).status, 1);
        QCOMPARE(photos.GetPhotoFile(*m_host, QStringLiteral("240005"), 1, QString(), 0).status, 1); // no Photo row
        QCOMPARE(photos.GetPhotoFile(*m_host, QStringLiteral("240001 OR 1=1"), 1, QString(), 0).status, 1);

        r = photos.GetPhotoFile(*m_host, QStringLiteral("a1001"), 1, QStringLiteral("GetRosterPhoto"));
        QCOMPARE(r.status, 0);
        QVERIFY(QFileInfo(LocalPath(r.path)).isFile());
        QCOMPARE(photos.GetPhotoFile(*m_host, QStringLiteral("A1002"), 1, QStringLiteral("GetRosterPhoto")).status, 1);
        QCOMPARE(photos.GetPhotoFile(*m_host, QStringLiteral("OF01"), 2, QStringLiteral("GetRosterPhoto")).status, 0);
        QCOMPARE(photos.GetPhotoFile(*m_host, QStringLiteral("OF05"), 2, QStringLiteral("GetRosterPhoto")).status, 1);
        QCOMPARE(photos.GetPhotoFile(*m_host, QStringLiteral("A1001"), 2, QStringLiteral("GetRosterPhoto")).status, 1);
        QCOMPARE(photos.GetPhotoFile(*m_host, QStringLiteral("A1001"), 1, QStringLiteral("Other")).status, 1);
        QCOMPARE(photos.GetPhotoFile(*m_host, QStringLiteral("../Roster/Agent_A1001"), 1, QStringLiteral("GetRosterPhoto")).status, 1);
    }

    // A photo whose file name differs in case is still found (through an index of the folder,
    // not a listing of it per photo), and under the name it has on disk.
    void aPhotoSpeltOtherwiseIsFound()
    {
        PhotoLibrary& photos = m_host->PhotoService();
        const QString store = LocalPath(m_host->AppPath() + QStringLiteral("Photos\\"));
        QVERIFY(QFile::rename(store + "240002_1.jpg", store + "240002_1.JPG"));
        const PhotoResult r = photos.GetPhotoFile(*m_host, QStringLiteral("240002"), 1, QString(), 0);
        QVERIFY(QFile::rename(store + "240002_1.JPG", store + "240002_1.jpg"));
        QCOMPARE(r.status, 0);
        QCOMPARE(r.path, m_host->AppPath() + QStringLiteral("Photos\\240002_1.JPG"));
        QCOMPARE(photos.GetPhotoFile(*m_host, QStringLiteral("240002"), 1, QString(), 0).path,
                 m_host->AppPath() + QStringLiteral("Photos\\240002_1.jpg"));
    }

    void sqlLog()
    {
        QTemporaryDir tmp;
        const QString log = tmp.filePath(QStringLiteral("sql.log"));
        QVERIFY(m_host->SetSqlLog(log));
        const QString a = QStringLiteral("SELECT Count(*) AS RecCount FROM Listings WHERE ListNum = 240001;");
        const QString b = QStringLiteral("select  OffName1 from Office where OffOfficeId = 'OF01'");
        const QString bad = QStringLiteral("SELECT Nope FROM Listings");
        m_host->Database().OpenRecordset(1, a);
        m_host->Database().OpenRecordset(3, b);
        QVERIFY_THROWS_EXCEPTION(HostError, m_host->Database().OpenRecordset(1, bad));
        QVERIFY(m_host->SetSqlLog(QString()));
        m_host->Database().OpenRecordset(1, a); // not logged any more
        QFile f(log);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(f.readAll()), a + QLatin1Char('\n') + b + QLatin1Char('\n') + bad + QLatin1Char('\n'));
        QVERIFY(!m_host->SetSqlLog(tmp.filePath(QStringLiteral("no/such/folder/sql.log"))));
    }

    void jobsAndMainForm()
    {
        QSignalSpy spy(m_host.get(), &EmbeddedHost::jobClosed);
        m_host->CloseJob(QVariant(3));
        m_host->CloseJob(QVariant(-1));
        QCOMPARE(spy.count(), 2);
        QCOMPARE(spy.at(0).at(0).toInt(), 3);
        QCOMPARE(m_host->ClosedJobs(), QList<int>({3, -1}));

        HostMainForm& form = m_host->MainForm();
        QVERIFY(!form.Switch().isValid());
        QCOMPARE(form.Window(), nullptr);
        auto* w = new QWidget;
        m_host->MainForm().SetWindow(w);
        QCOMPARE(form.Window(), w);
        delete w;
        QCOMPARE(form.Window(), nullptr);
    }

    void determinism()
    {
        QTemporaryDir a, b;
        GenerateDemoData(a.path(), 30);
        int calls = 0, lastDone = -1;
        GenerateDemoData(b.path(), 30, [&](int done, int total) { ++calls; lastDone = done; QCOMPARE(total, 30); });
        QVERIFY(calls >= 2);
        QCOMPARE(lastDone, 30);
        const QStringList da = dump(a.path());
        QCOMPARE(da, dump(b.path()));
        QVERIFY(da.contains(QLatin1String("Photos/240001_1.jpg")));
        QFile pa(a.filePath(QStringLiteral("Photos/240001_1.jpg"))), pb(b.filePath(QStringLiteral("Photos/240001_1.jpg")));
        QVERIFY(pa.open(QIODevice::ReadOnly) && pb.open(QIODevice::ReadOnly));
        QCOMPARE(pa.readAll(), pb.readAll());

        // Regenerating keeps a user's edited identity and replaces the data.
        QVERIFY(QFileInfo::exists(a.filePath(QStringLiteral("Photos/240022_1.jpg"))));
        QVERIFY(PrivateProfile::WriteString(QStringLiteral("Host"), QStringLiteral("UserName"), QStringLiteral("Someone"), a.filePath(QStringLiteral("host.ini"))));
        GenerateDemoData(a.path(), 20);
        QCOMPARE(EmbeddedHost::Open(a.path())->UserName(), QStringLiteral("Someone"));
        SqliteDatabase db(a.filePath(QStringLiteral("pagewright.db")));
        QCOMPARE(RowsOf(*db.RunNative(QStringLiteral("SELECT Count(*) FROM Listings"))), QStringList{QStringLiteral("20")});
        QVERIFY(!QFileInfo::exists(a.filePath(QStringLiteral("Photos/240022_1.jpg"))));
    }
};

QTEST_MAIN(TestDemoHost)
#include "tst_demohost.moc"
