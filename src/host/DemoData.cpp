// Deterministic demo data. Its own small random generator keeps the output identical across
// compilers and platforms (the standard distributions are not).
#include "host/DemoData.h"
#include "host/DataFolder.h"
#include "host/DemoPictures.h"
#include "entry/HostError.h"
#include "entry/PrivateProfile.h"

#include <sqlite3.h>

#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTextStream>
#include <QVariant>

#include <cstdio>

namespace {

class Rng {
public:
    explicit Rng(quint64 seed) : s(seed) {}
    quint64 next()
    {
        quint64 z = (s += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    int below(int n) { return int(next() % quint64(n)); }
    int between(int lo, int hi) { return lo + below(hi - lo + 1); }
    template <size_t N> const char* pick(const char* const (&a)[N]) { return a[below(int(N))]; }

private:
    quint64 s;
};

const char* const kLastNames[] = {"Smith", "Johnson", "Garcia", "Miller", "Davis", "Martinez", "Lopez", "Wilson", "Anderson",
                                  "Thomas", "Taylor", "Moore", "Jackson", "Martin", "Lee", "Thompson", "White", "Harris",
                                  "Clark", "Lewis", "Robinson", "Walker", "Young", "Allen", "King", "Wright", "Scott", "Hill"};
const char* const kFirstNames[] = {"James", "Mary", "Robert", "Patricia", "John", "Jennifer", "Michael", "Linda", "David",
                                   "Elizabeth", "William", "Barbara", "Richard", "Susan", "Joseph", "Jessica", "Thomas",
                                   "Sarah", "Daniel", "Karen", "Maria", "Ana", "Kevin", "Laura"};
const char* const kStreets[] = {"Maple", "Oak", "Cedar", "Elm", "Pine", "Lakeview", "Hillcrest", "Sunset", "Park", "Washington",
                                "Lincoln", "Jefferson", "Willow", "Birch", "Meadow", "River", "Forest", "Highland", "Spring", "Main"};
const char* const kSuffixes[] = {"St", "Ave", "Rd", "Dr", "Ln", "Ct", "Blvd", "Way"};
const char* const kDirections[] = {"N", "S", "E", "W", "NE", "NW", "SE", "SW"};
const char* const kCities[] = {"Springfield", "Riverton", "Lakeside", "Fairview", "Georgetown", "Ashland"};
const char* const kZips[] = {"55101", "55104", "55112", "55120", "55126", "55130"};
const char* const kSubdivisions[] = {"Oak Hills", "Maple Grove", "Harbor Point", "Cedar Ridge", "Old Town", "Riverside Estates"};
const char* const kPropTypes[] = {"RES", "RES", "RES", "CND", "MFH", "LND", "COM"};
const char* const kStyles[] = {"RAN", "COL", "CAP", "VIC", "CTP"};
const char* const kRemarkA[] = {"Charming", "Spacious", "Updated", "Sun-filled", "Move-in ready", "Classic", "Beautifully kept"};
const char* const kRemarkB[] = {"home on a quiet street", "property near parks and schools", "house with an open floor plan",
                                "residence with a large fenced yard", "home close to shopping and transit"};
const char* const kRemarkC[] = {"New roof in 2021.", "Hardwood floors throughout.", "Finished lower level.",
                                "Kitchen with granite counters.", "Two-car garage and workshop.", "Walk to the lake."};

// Owners that exercise quoting and Like escapes; they sit at fixed places so small sets have them.
const char* const kTrickyOwners[] = {"O'Neil", "50%_Off-Realty LLC", "O'Neill Family Trust", "100% Pure Holdings",
                                      "Smith_Jones Partners", "A-1 Investments", "500 Oak Partners", "50XOff Realty",
                                      "[Bracket] Homes", "Star*Light #2 LLC"};

struct Office { const char* id; const char* name; const char* company; };
const Office kOffices[] = {
    {"OF01", "Lakeside Realty - Downtown", "C1"}, {"OF02", "Lakeside Realty - North", "C1"}, {"OF03", "Lakeside Realty - West", "C1"},
    {"OF04", "Summit Home Partners", "C2"},       {"OF05", "Summit Home Partners East", "C2"}, {"OF06", "Summit Commercial", "C2"},
    {"OF07", "Harbor Light Properties", "C3"},    {"OF08", "Harbor Light Rentals", "C3"},
};
constexpr int kMembers = 40;

QString csv(const QString& dir, const char* name) { return dir + QLatin1Char('/') + QLatin1String(name); }

class Writer {
public:
    explicit Writer(const QString& file)
    {
        if (sqlite3_open_v2(file.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) != SQLITE_OK)
            fail(QStringLiteral("Could not create the database '%1'").arg(file));
        exec("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF;");
    }
    ~Writer()
    {
        for (auto& s : stmts) sqlite3_finalize(s.second);
        sqlite3_close(db);
    }
    void exec(const QString& sql)
    {
        char* err = nullptr;
        if (sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, &err) != SQLITE_OK) {
            const QString msg = QString::fromUtf8(err ? err : "unknown error");
            sqlite3_free(err);
            throw HostError(HostErr::SqlExecute, QStringLiteral("Could not build the demo database: %1").arg(msg));
        }
    }
    void insert(const char* table, const QVariantList& values)
    {
        sqlite3_stmt*& st = stmts[QByteArray(table)];
        if (!st) {
            QString sql = QStringLiteral("INSERT INTO %1 VALUES (").arg(QLatin1String(table));
            for (int i = 0; i < values.size(); ++i) sql += i ? QStringLiteral(", ?") : QStringLiteral("?");
            if (sqlite3_prepare_v2(db, (sql + QLatin1Char(')')).toUtf8().constData(), -1, &st, nullptr) != SQLITE_OK)
                fail(QStringLiteral("Could not prepare the insert into %1").arg(QLatin1String(table)));
        }
        sqlite3_reset(st);
        for (int i = 0; i < values.size(); ++i) {
            const QVariant& v = values[i];
            if (v.isNull()) sqlite3_bind_null(st, i + 1);
            else if (v.typeId() == QMetaType::Int || v.typeId() == QMetaType::LongLong) sqlite3_bind_int64(st, i + 1, v.toLongLong());
            else if (v.typeId() == QMetaType::Double) sqlite3_bind_double(st, i + 1, v.toDouble());
            else {
                const QByteArray b = v.toString().toUtf8();
                sqlite3_bind_text(st, i + 1, b.constData(), int(b.size()), SQLITE_TRANSIENT);
            }
        }
        if (sqlite3_step(st) != SQLITE_DONE)
            fail(QStringLiteral("Could not insert into %1").arg(QLatin1String(table)));
    }
    [[noreturn]] void fail(const QString& what)
    {
        throw HostError(HostErr::SqlExecute, QStringLiteral("%1: %2").arg(what, QString::fromUtf8(db ? sqlite3_errmsg(db) : "out of memory")));
    }

private:
    sqlite3* db = nullptr;
    std::map<QByteArray, sqlite3_stmt*> stmts;
};

QString readText(const QString& file)
{
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        throw HostError(HostErr::FileNotFound, QStringLiteral("Could not read the catalogue file '%1'.").arg(file));
    return QString::fromUtf8(f.readAll());
}

void loadCatalogue(Writer& w, const QString& file)
{
    const QStringList lines = readText(file).split(QLatin1Char('\n'));
    int order = 0;
    for (int n = 0; n < lines.size(); ++n) {
        const QString line = lines[n].trimmed().isEmpty() ? QString() : lines[n];
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        QStringList c = line.split(QLatin1Char('\t'));
        for (QString& s : c) s = s.trimmed();
        auto bad = [&]() { return HostError(HostErr::BadFileFormat, QStringLiteral("%1, line %2: malformed catalogue row.").arg(file).arg(n + 1)); };
        if (c[0] == QLatin1String("kind") && c.size() == 5)
            w.insert("DicKinds", {c[1].toInt(), c[2], c[3], c[4].toInt()});
        else if (c[0] == QLatin1String("field") && (c.size() == 11 || c.size() == 10))
            w.insert("DicFields", {c[1].toInt(), c[2].toInt(), c[3], c[4], c[5].toInt(), c[6].toInt(), c[7], c[8], c[9].toInt(), c.value(10)});
        else if (c[0] == QLatin1String("code") && c.size() == 6)
            w.insert("DicCodes", {c[1].toInt(), c[2].toInt(), c[3], c[4], c[5], ++order});
        else
            throw bad();
    }
}

QVariant maybe(Rng& r, int percentNull, const QVariant& v) { return r.below(100) < percentNull ? QVariant() : v; }

QString remarks(Rng& r)
{
    // One draw per statement: a call evaluates its arguments in no fixed order.
    const QString a = QLatin1String(r.pick(kRemarkA));
    const QString b = QLatin1String(r.pick(kRemarkB));
    return QStringLiteral("%1 %2. %3").arg(a, b, QLatin1String(r.pick(kRemarkC)));
}

QString memberId(int i) { return QStringLiteral("A%1").arg(1001 + i); }

struct Member { QString id, last, first, office; };

std::vector<Member> writeOfficesAndMembers(Writer& w, Rng& r)
{
    for (const Office& o : kOffices) {
        const int n = int(&o - kOffices);
        w.insert("Office", {o.id, o.name, o.company, QStringLiteral("%1 %2 %3").arg(100 + n * 111).arg(QLatin1String(kStreets[n])).arg(QLatin1String(kSuffixes[n])),
                            kCities[n % 6], "MN", kZips[n % 6], QStringLiteral("(651) 555-01%1").arg(10 + n), QStringLiteral("info%1@example.com").arg(n + 1)});
    }
    std::vector<Member> members;
    static const char* const titles[] = {"SLS", "SLS", "SLS", "ASB", "BRK", "MGR"};
    for (int i = 0; i < kMembers; ++i) {
        Member m{memberId(i), QLatin1String(r.pick(kLastNames)), QLatin1String(r.pick(kFirstNames)), QLatin1String(kOffices[i % 8].id)};
        if (i == 0) { m.last = QStringLiteral("Carter"); m.first = QStringLiteral("Jordan"); }
        if (i == 6) m.last = QStringLiteral("O'Brien");
        const QVariant middle = maybe(r, 35, QString(QChar(QLatin1Char(char('A' + r.below(26))))));
        w.insert("Members", {m.id, m.last, m.first, middle, m.office, i == 0 ? "BRK" : r.pick(titles),
                             QStringLiteral("(651) 555-%1").arg(2000 + i), QStringLiteral("%1.%2@example.com").arg(m.first.toLower(), QString(m.last).remove(QLatin1Char('\'')).toLower()),
                             QStringLiteral("LIC-%1").arg(40000 + i * 37)});
        members.push_back(m);
    }
    return members;
}

struct Address { QString number, dir, street; int addressNumber; };

Address address(Rng& r)
{
    Address a;
    a.addressNumber = r.between(1, 98) * 100 + r.between(0, 99);
    a.number = QString::number(a.addressNumber);
    a.dir = r.below(2) ? QString() : QLatin1String(r.pick(kDirections));
    a.street = QLatin1String(r.pick(kStreets));
    a.street += QLatin1Char(' ') + QLatin1String(r.pick(kSuffixes));
    return a;
}

QString personName(Rng& r)
{
    QString n = QLatin1String(r.pick(kLastNames));
    return n + QStringLiteral(", ") + QLatin1String(r.pick(kFirstNames));
}

QString status(Rng& r, int i)
{
    if (i == 0) return QStringLiteral("2001");
    if (i == 1) return QStringLiteral("2005");
    if (i == 2) return QStringLiteral("2006");
    if (i >= 3 && i < 3 + int(std::size(kTrickyOwners))) return QStringLiteral("2001");
    static const int weights[] = {45, 10, 20, 8, 7, 5, 5};
    int roll = r.below(100);
    for (int k = 0; k < 7; ++k) {
        if (roll < weights[k]) return QString::number(2001 + k);
        roll -= weights[k];
    }
    return QStringLiteral("2001");
}

struct PhotoJob { qlonglong key; int count; };

void writeListings(Writer& w, Rng& r, int count, const std::vector<Member>& members, std::vector<PhotoJob>& photos,
                   const std::function<void(int, int)>& progress)
{
    const QDate base(2024, 1, 2);
    for (int i = 0; i < count; ++i) {
        const qlonglong num = DemoIdentity::FirstListNum + i;
        const QString st = status(r, i);
        const Member& agent = i == 0 ? members[0] : members[size_t(r.below(kMembers))];
        const bool closed = st == QLatin1String("2002") || st == QLatin1String("2003");
        const QVariant saleAgent = closed ? QVariant(members[size_t(r.below(kMembers))].id) : QVariant();
        const Address a = address(r);
        const QString owner = i >= 3 && i < 3 + int(std::size(kTrickyOwners))
                                  ? QLatin1String(kTrickyOwners[i - 3])
                                  : personName(r);
        const QString type = QLatin1String(r.pick(kPropTypes));
        const bool land = type == QLatin1String("LND");
        const int sqft = land ? 0 : r.between(8, 45) * 100;
        const double price = double(r.between(90, 900)) * 1000.0;
        const QDate listed = base.addDays(r.below(700));
        const QVariant sold = st == QLatin1String("2003") ? QVariant(price * (0.92 + r.below(10) / 100.0)) : QVariant();
        const QVariant soldOn = st == QLatin1String("2003") ? QVariant(listed.addDays(20 + r.below(120)).toString(Qt::ISODate)) : QVariant();
        w.insert("Listings", {num, st, agent.id, saleAgent, agent.office, 1 + (i % 5 == 4 ? 1 : 0), a.number,
                              a.dir.isEmpty() ? QVariant() : QVariant(a.dir), a.street, a.addressNumber, owner,
                              kCities[r.below(6)], "MN", kZips[r.below(6)], kSubdivisions[r.below(6)], price, sold,
                              double(int(price * 0.012)), land ? QVariant() : QVariant(r.between(1, 6)),
                              land ? QVariant() : QVariant(r.between(2, 8) / 2.0), land ? QVariant() : QVariant(sqft),
                              land ? QVariant() : QVariant(r.between(1900, 2023)), land ? 0 : r.between(0, 3),
                              r.below(5) == 0 ? -1 : 0, type, land ? QVariant() : QVariant(QLatin1String(r.pick(kStyles))),
                              remarks(r), QStringLiteral("Showing: call %1. Lockbox code %2.").arg(agent.first).arg(r.between(1000, 9999)),
                              listed.toString(Qt::ISODate), soldOn});
        // Every fifth listing has no photos at all (no Photo row).
        if (i % 5 != 4) {
            const int n = 1 + r.below(4);
            w.insert("Photo", {num, QStringLiteral("V%1").arg(1 + r.below(3)), n});
            photos.push_back({num, n});
        }
        if (progress && i % 100 == 0)
            progress(i, count);
    }
}

void writeTaxRolls(Writer& w, Rng& r, int count)
{
    for (int i = 0; i < count; ++i) {
        const Address a = address(r);
        const QString owner = i < 2 ? QLatin1String(kTrickyOwners[i])
                                    : personName(r);
        const double land = r.between(20, 200) * 1000.0;
        const double improvement = r.between(0, 600) * 1000.0;
        static const char* const classes[] = {"R", "R", "R", "A", "C", "I", "X"};
        w.insert("TaxRolls", {QStringLiteral("%1-%2-%3").arg(10 + i / 1000, 2, 10, QLatin1Char('0')).arg(i % 1000, 3, 10, QLatin1Char('0')).arg(r.below(1000), 3, 10, QLatin1Char('0')),
                              owner, a.number, a.dir.isEmpty() ? QVariant() : QVariant(a.dir), a.street, a.addressNumber,
                              kCities[r.below(6)], kZips[r.below(6)], r.pick(classes), 2024, land, improvement, land + improvement,
                              double(int((land + improvement) * 0.0125)),
                              QStringLiteral("Lot %1, Block %2, %3").arg(r.between(1, 40)).arg(r.between(1, 12)).arg(QLatin1String(r.pick(kSubdivisions)))});
    }
}

void writeRentals(Writer& w, Rng& r, int count, const std::vector<Member>& members, std::vector<PhotoJob>& photos)
{
    static const char* const statuses[] = {"AV", "AV", "LS", "OM"};
    for (int i = 0; i < count; ++i) {
        const qlonglong num = DemoIdentity::FirstRentalNum + i;
        const Member& agent = members[size_t(r.below(kMembers))];
        const Address a = address(r);
        const int beds = r.between(0, 4);
        w.insert("Rentals", {num, r.pick(statuses), agent.id, agent.office, a.number, a.dir.isEmpty() ? QVariant() : QVariant(a.dir),
                             a.street, a.addressNumber, kCities[r.below(6)], kZips[r.below(6)], double(r.between(8, 40) * 50),
                             double(r.between(5, 20) * 100), beds, r.between(2, 5) / 2.0, r.between(4, 20) * 100,
                             r.below(4) == 0 ? -1 : 0, r.below(2) ? -1 : 0, QDate(2025, 1, 1).addDays(r.below(365)).toString(Qt::ISODate),
                             remarks(r)});
        if (i % 3 == 0) {
            const int n = 1 + r.below(2);
            w.insert("Photo", {num, QStringLiteral("V1"), n});
            photos.push_back({num, n});
        }
    }
}

void saveImage(const QImage& img, const QString& file, const char* format)
{
    if (!img.save(file, format, 80))
        throw HostError(HostErr::FileAccess, QStringLiteral("Could not write the picture '%1'.").arg(file));
}

void writePictures(const QString& dir, const std::vector<Member>& members, const std::vector<PhotoJob>& photos)
{
    // A pool of encoded photos keeps large sets fast; listings reuse them in a fixed pattern.
    constexpr int kPool = 24;
    QList<QByteArray> pool;
    for (int v = 0; v < kPool; ++v) {
        const QString tmp = dir + QStringLiteral("/Photos/.pool.jpg");
        saveImage(DemoPictures::House(v), tmp, "JPG");
        QFile f(tmp);
        f.open(QIODevice::ReadOnly);
        pool << f.readAll();
        f.close();
        QFile::remove(tmp);
    }
    for (const PhotoJob& job : photos)
        for (int seq = 1; seq <= job.count; ++seq) {
            QFile f(dir + QStringLiteral("/Photos/%1_%2.jpg").arg(job.key).arg(seq));
            if (!f.open(QIODevice::WriteOnly) || f.write(pool[int((job.key * 7 + seq * 5) % kPool)]) < 0)
                throw HostError(HostErr::FileAccess, QStringLiteral("Could not write the photo '%1'.").arg(f.fileName()));
        }
    for (size_t i = 0; i < members.size(); ++i) {
        const Member& m = members[i];
        if (i % 2 == 0)
            saveImage(DemoPictures::Portrait(int(i)), dir + QStringLiteral("/Graphics/%1, %2.jpg").arg(m.last, m.first), "JPG");
        if (i % 4 == 2) // a few agents also have an older bitmap, which the .jpg outranks
            saveImage(DemoPictures::Portrait(int(i) + 1), dir + QStringLiteral("/Graphics/%1, %2.bmp").arg(m.last, m.first), "BMP");
        if (i % 3 == 0)
            saveImage(DemoPictures::Portrait(int(i) + 2), dir + QStringLiteral("/Photos/Roster/Agent_%1.jpg").arg(m.id), "JPG");
    }
    saveImage(DemoPictures::Portrait(99), dir + QStringLiteral("/Graphics/%1.jpg").arg(QLatin1String(DemoIdentity::UserName)), "JPG");
    for (int n = 0; n < int(std::size(kOffices)); ++n) {
        const bool bmp = n % 2 == 1;
        saveImage(DemoPictures::Logo(n), dir + QStringLiteral("/Graphics/%1.%2").arg(QLatin1String(kOffices[n].id), bmp ? QStringLiteral("bmp") : QStringLiteral("jpg")),
                  bmp ? "BMP" : "JPG");
        if (n < 4)
            saveImage(DemoPictures::Logo(n + 10), dir + QStringLiteral("/Photos/Roster/Office_%1.jpg").arg(QLatin1String(kOffices[n].id)), "JPG");
    }
}

void writeIdentity(const QString& dir)
{
    const QString ini = dir + QLatin1Char('/') + QLatin1String(DataFolder::HostIniName);
    if (QFileInfo::exists(ini))
        return;
    QFile f(ini);
    if (!f.open(QIODevice::WriteOnly))
        throw HostError(HostErr::FileAccess, QStringLiteral("Could not write '%1'.").arg(ini));
    QTextStream out(&f);
    out << "; The demo user of the embedded host.\r\n[Host]\r\n"
        << "UserName=" << DemoIdentity::UserName << "\r\n"
        << "AgentId=" << DemoIdentity::AgentId << "\r\n"
        << "OfficeId=" << DemoIdentity::OfficeId << "\r\n"
        << "UserLevel=" << DemoIdentity::UserLevel << "\r\n"
        << "StatusList=" << DemoIdentity::StatusList << "\r\n"
        << "AccessKey=" << DemoIdentity::AccessKey << "\r\n"
        << "BoardId=" << DemoIdentity::BoardId << "\r\n"
        << "HelpFile=Help\\Pagewright.chm\r\n";
}

void makeFolders(const QString& dir)
{
    const QString user = QLatin1String(DemoIdentity::UserName);
    QStringList folders = {QStringLiteral("Graphics"), QStringLiteral("Photos/Roster"), QStringLiteral("Help"),
                           QStringLiteral("Users/Templates/Reports/Flyers"), QStringLiteral("Users/Office/Reports/Flyers"),
                           QStringLiteral("Users/%1/Report Designer").arg(user)};
    for (const char* kind : {"Listings", "Flyers", "Taxrolls", "Office", "Members", "Rental"})
        folders << QStringLiteral("Users/%1/Reports/%2").arg(user, QLatin1String(kind));
    for (const QString& f : folders)
        if (!QDir().mkpath(dir + QLatin1Char('/') + f))
            throw HostError(HostErr::PathNotFound, QStringLiteral("Could not create the folder '%1/%2'.").arg(dir, f));
    const QString userIni = dir + QStringLiteral("/Users/%1/User.ini").arg(user);
    if (!QFileInfo::exists(userIni))
        PrivateProfile::WriteString(QStringLiteral("Pagewright"), QStringLiteral("Grid"), QStringLiteral("60,60"), userIni);
}

} // namespace

QString CatalogueFolder()
{
    QStringList candidates;
    const QString env = qEnvironmentVariable("PAGEWRIGHT_CATALOGUE");
    if (!env.isEmpty())
        candidates << env;
    if (QCoreApplication::instance())
        candidates << QCoreApplication::applicationDirPath() + QStringLiteral("/../share/pagewright");
    candidates << QStringLiteral(PW_CATALOGUE_DIR);
    for (const QString& c : candidates)
        if (QFileInfo::exists(csv(c, "demo-schema.sql")) && QFileInfo::exists(csv(c, "dictionary.tsv")))
            return QDir::cleanPath(c);
    return QString();
}

bool DemoDataExists(const QString& dir)
{
    return QFileInfo(dir + QLatin1Char('/') + QLatin1String(DataFolder::HostIniName)).isFile()
           && QFileInfo(dir + QLatin1Char('/') + QLatin1String(DataFolder::DatabaseName)).isFile();
}

void GenerateDemoData(const QString& dir, int listings, std::function<void(int, int)> progress)
{
    if (listings < 1 || listings > 1000000)
        throw HostError(HostErr::SqlExecute, QStringLiteral("The number of listings must be between 1 and 1000000, not %1.").arg(listings));
    const QString catalogue = CatalogueFolder();
    if (catalogue.isEmpty())
        throw HostError(HostErr::FileNotFound, QStringLiteral("Could not find demo-schema.sql and dictionary.tsv (set PAGEWRIGHT_CATALOGUE to their folder)."));
    // Only an empty folder or one that already is a data folder: anything else may be the
    // user's (a folder whose database went missing still holds their reports and photos).
    const bool wasEmpty = DataFolder::IsEmptyOrAbsent(dir);
    if (!wasEmpty && !DataFolder::Missing(dir).isEmpty())
        DataFolder::RequirePrepared(dir);
    // A first run that fails (a full disk) takes back what it made, so the folder is empty
    // again and may be filled by the next try rather than refused as someone else's.
    struct FirstRunGuard {
        QString dir;
        bool active;
        ~FirstRunGuard()
        {
            if (!active)
                return;
            for (const QFileInfo& f : QDir(dir).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
                f.isDir() && !f.isSymLink() ? (void)QDir(f.filePath()).removeRecursively() : (void)QFile::remove(f.filePath());
        }
    } firstRun{dir, wasEmpty};
    makeFolders(dir);

    // Everything new is built beside the old data and swapped in only once complete, so a
    // full disk or a crash half-way leaves the old photos and database as they were.
    const QString stage = dir + QStringLiteral("/.demo-new");
    QDir(stage).removeRecursively(); // what an interrupted run left
    struct StageGuard {
        QString path;
        ~StageGuard() { QDir(path).removeRecursively(); }
    } guard{stage};
    if (!QDir().mkpath(stage + QStringLiteral("/Photos/Roster")) || !QDir().mkpath(stage + QStringLiteral("/Graphics")))
        throw HostError(HostErr::PathNotFound, QStringLiteral("Could not create the folder '%1'.").arg(stage));

    const QString db = dir + QLatin1Char('/') + QLatin1String(DataFolder::DatabaseName);
    const QString tmp = stage + QLatin1Char('/') + QLatin1String(DataFolder::DatabaseName);
    std::vector<Member> members;
    std::vector<PhotoJob> photos;
    {
        Writer w(tmp);
        w.exec(readText(csv(catalogue, "demo-schema.sql")));
        w.exec(QStringLiteral("BEGIN"));
        loadCatalogue(w, csv(catalogue, "dictionary.tsv"));
        Rng r(20240611);
        members = writeOfficesAndMembers(w, r);
        writeListings(w, r, listings, members, photos, progress);
        writeTaxRolls(w, r, qMax(20, listings / 2));
        writeRentals(w, r, qMax(10, listings / 5), members, photos);
        w.exec(QStringLiteral("COMMIT"));
    }
    writePictures(stage, members, photos);

    // The swap: renames within one folder, nothing left to fail for lack of room.
    auto move = [](const QString& from, const QString& to) {
        if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
            throw HostError(HostErr::FileAccess, QStringLiteral("Could not put the new demo data in place at '%1'.").arg(to));
    };
    const QString photosDir = dir + QStringLiteral("/Photos");
    if (QFileInfo(photosDir).isDir())
        move(photosDir, stage + QStringLiteral("/Photos.old"));
    move(stage + QStringLiteral("/Photos"), photosDir);
    const QStringList graphics = QDir(stage + QStringLiteral("/Graphics")).entryList(QDir::Files);
    for (const QString& g : graphics)
        move(stage + QStringLiteral("/Graphics/") + g, dir + QStringLiteral("/Graphics/") + g);
    move(tmp, db);
    writeIdentity(dir);
    firstRun.active = false;
    if (progress)
        progress(listings, listings);
}
