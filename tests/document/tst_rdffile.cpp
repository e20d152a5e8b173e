#include "document/RdfFile.h"
#include "entry/Cp1252.h"
#include "support_bytes.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QByteArray samplePicture()
{
    QByteArray pic("\x89PNG\r\n\x1A\n", 8);
    for (int i = 0; i < 256; ++i)
        pic.append(char(i));
    return pic;
}

// The report that sampleBytes() encodes, written in the same field order.
RdfReport sampleReport()
{
    RdfReport r;
    r.header = {.version = 100, .headerFlags = 2, .reserved3 = 7, .firstDetailItem = 1, .lastDetailItem = 2, .detailSize = 4321,
                .detailTop = 1500, .pageFooterTop = 9000, .reserved9 = -1, .topMargin = 1080, .bottomMargin = 1000,
                .leftMargin = 720, .rightMargin = 700, .numberOfColumns = 2, .dictionaryVersion = 7, .sectionSpacingTwips = 360,
                .reserved17 = 0, .reportOption = -2, .pictureCount = 1, .reserved20 = {},
                .detailFieldList = QStringLiteral(",ListNum,Price,"), .headerFieldList = {},
                .footerFieldList = QStringLiteral("Office"), .autoFillId = QStringLiteral("A1234")};
    r.header.reserved20[15] = 0xAB;
    const RdfItem label{.kind = RdfKind::Label, .name = QStringLiteral("Label1"), .flags = RdfFlag::Bold | RdfFlag::Opaque,
                        .alignment = 2, .borderStyle = 1, .borderWidth = 30, .borderColor = 0x00FF8040, .dataField = {},
                        .fontName = QStringLiteral("Arial"), .fontSize = 10.5f, .backColor = 0xFFFFFF, .foreColor = 0x80000008,
                        .specialEffect = 2, .text = QString::fromUtf8("Café € ’"),
                        .top = 120.5f, .left = 60, .height = 300, .width = 2000, .formatOrFile = QStringLiteral("General")};
    const RdfItem image{.kind = RdfKind::Image, .name = QStringLiteral("Image1"), .flags = RdfFlag::Embedded, .borderWidth = 20,
                        .dataField = {}, .dicId = -3, .codeType = 2, .fontName = {}, .backColor = 0x00C0C0C0, .specialEffect = 1, .text = {},
                        .top = -220, .left = 1440, .height = 1440, .width = 2880, .numberA = 3, .numberB = 1, .sizeMode = 2,
                        .dataBound = true, .formatOrFile = QStringLiteral("0")};
    r.items = {label, image};
    r.pictures = {samplePicture()};
    return r;
}

QByteArray sampleBytes()
{
    const QByteArray pic = samplePicture();
    Bytes b;
    // Header record.
    b.i32(100).i32(2).i32(7).i16(1).i16(2).i32(4321).i32(1500).i32(9000).i32(-1);
    b.i16(1080).i16(1000).i16(720).i16(700).u8(2).u8(7).i16(360).i16(0).i16(-2).i32(1);
    b.zeros(15).u8(0xAB);
    b.str(",ListNum,Price,").str("").str("Office").str("A1234");
    // Array descriptor and the unused element 0.
    b.i16(1).i32(3).i32(0).emptyItem();
    // The label.
    b.u8(2).str("Label1").i32(129).u8(2).u8(1).i16(30).i32(0x00FF8040).str("").i16(0).i16(0);
    b.str("Arial").f32(10.5f).i32(0xFFFFFF).i32(0x80000008).u8(2).str(QByteArray("Caf\xE9 \x80 \x92"));
    b.f32(120.5f).f32(60).i32(300).i32(2000).i16(0).i16(0).i16(0).i16(0).str("General");
    // The image.
    b.u8(5).str("Image1").i32(1024).u8(0).u8(0).i16(20).i32(0).str("").i16(-3).i16(2);
    b.str("").f32(0).i32(0x00C0C0C0).i32(0).u8(1).str("");
    b.f32(-220).f32(1440).i32(1440).i32(2880).i16(3).i16(1).i16(2).i16(-1).str("0");
    // One picture block.
    b.i32(pic.size()).raw(pic);
    return b;
}

// The number and message of the RdfError that f throws; (0, "") when it throws none.
template <class F>
QPair<int, QString> errorOf(F&& f)
{
    try {
        f();
    } catch (const RdfError& e) {
        return {e.Number(), e.Description()};
    }
    return {0, QString()};
}

QStringList folderEntries(const QString& dir)
{
    return QDir(dir).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

} // namespace

class TestRdfFile : public QObject {
    Q_OBJECT
private slots:
    void exactBytesBothWays()
    {
        QCOMPARE(RdfWrite(sampleReport()), sampleBytes());
        const RdfReport r = RdfRead(sampleBytes());
        QCOMPARE(r.items.size(), size_t(2));
        QCOMPARE(r.items[0].text, QString::fromUtf8("Café € ’"));
        QVERIFY(r == sampleReport());
        RdfReport stale = sampleReport();
        stale.header.pictureCount = 9; // the writer counts the pictures itself
        QCOMPARE(RdfWrite(stale), sampleBytes());
    }

    void roundTrips()
    {
        // Extremes of every field, several pictures, an empty picture and a 65535-byte string.
        RdfReport r = sampleReport();
        RdfItem x{.kind = 255, .name = QString(65535, QChar(0x20AC)), .flags = 0xFFFFFFFFu, .alignment = 255, .borderStyle = 255,
                  .borderWidth = -32768, .borderColor = 0xFFFFFFFFu, .dataField = QStringLiteral("SELECT * FROM Listings WHERE City = 'Zürich'"),
                  .dicId = 32767, .codeType = -1, .fontName = {}, .fontSize = 1e-3f, .text = {}, .top = -1e9f, .left = 3.25f,
                  .height = std::numeric_limits<qint32>::min(), .width = std::numeric_limits<qint32>::max(), .numberB = 6, .formatOrFile = {}};
        // Every byte value survives, the five unassigned ones included.
        for (int c = 1; c < 256; ++c)
            x.text += FromCp1252(QByteArray(1, char(c)));
        r.items.push_back(x);
        r.pictures.push_back(QByteArray());
        r.pictures.push_back(QByteArray(70000, 'x'));
        r.header.pictureCount = 3;

        const QByteArray bytes = RdfWrite(r);
        QVERIFY(RdfRead(bytes) == r);
        QCOMPARE(RdfWrite(RdfRead(bytes)), bytes);

        RdfReport empty;
        empty.header.pictureCount = 0;
        QVERIFY(RdfRead(RdfWrite(empty)) == empty);
    }

    void textOutsideCodePageBecomesQuestionMark()
    {
        RdfReport r;
        RdfItem it;
        it.text = QString::fromUtf8("a€b\u4E2Dc😀");
        r.items = {it};
        QCOMPARE(RdfRead(RdfWrite(r)).items[0].text, QStringLiteral("a€b?c?"));
    }

    void rejectsWhatTheFileCannotHold()
    {
        RdfReport r;
        RdfItem it;
        it.text = QString(65536, QLatin1Char('a'));
        r.items = {RdfItem{}, it};
        QCOMPARE(errorOf([&] { RdfWrite(r); }),
                 qMakePair(int(RdfErr::InvalidArgument), QStringLiteral("Text too long to save: item 2 Text is 65536 bytes (at most 65535)")));
        QTemporaryDir dir; // an unsavable report never touches the disk
        QVERIFY_THROWS_EXCEPTION(RdfError, RdfSaveFile(dir.filePath("x.rdf"), r));
        QVERIFY(folderEntries(dir.path()).isEmpty());
        RdfReport h;
        h.header.autoFillId = QString(70000, QLatin1Char('k'));
        QVERIFY_THROWS_EXCEPTION(RdfError, RdfWrite(h));
        RdfReport many;
        many.items.resize(32768);
        QVERIFY_THROWS_EXCEPTION(RdfError, RdfWrite(many));
    }

    void readerAcceptsQuirksOfOtherWriters()
    {
        // Padding after the last picture is ignored.
        QVERIFY(RdfRead(sampleBytes() + QByteArray(100, '\0')) == sampleReport());
        // Any non-zero boolean is true.
        QByteArray b = sampleBytes();
        const qsizetype dataBoundAt = b.size() - 4 - 264 - 2 - 1 - 2;
        QCOMPARE(b.mid(dataBoundAt, 2), QByteArray("\xFF\xFF", 2));
        b[dataBoundAt] = 1;
        b[dataBoundAt + 1] = 0;
        QCOMPARE(RdfRead(b).items[1].dataBound, true);
    }

    void structuralErrors_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("message");
        // The sample's header: 68 fixed bytes (picture count at 48), then four strings of 15, 0, 6, 5.
        const int descriptor = 68 + 8 + 26;
        const QByteArray good = sampleBytes();
        auto patched = [&](int at, const QByteArray& with) {
            QByteArray b = good;
            b.replace(at, with.size(), with);
            return b;
        };
        QTest::newRow("empty file") << QByteArray() << "Bad file format: end of file in header at offset 0";
        QTest::newRow("two dimensions") << patched(descriptor, Bytes().i16(2))
                                        << QString("Bad file format: item array has 2 dimensions (expected 1) at offset %1").arg(descriptor);
        QTest::newRow("lower bound 1") << patched(descriptor + 6, Bytes().i32(1))
                                       << QString("Bad file format: item array lower bound 1 (expected 0) at offset %1").arg(descriptor + 6);
        QTest::newRow("no element 0") << patched(descriptor + 2, Bytes().i32(0))
                                      << QString("Bad file format: item array has 0 elements (at least 1) at offset %1").arg(descriptor + 2);
        QTest::newRow("2^31-1 elements") << patched(descriptor + 2, Bytes().i32(0x7FFFFFFF))
                                         << QString("Bad file format: item array has 2147483647 elements (at most 32768) at offset %1").arg(descriptor + 2);
        QTest::newRow("more elements than bytes")
            << patched(descriptor + 2, Bytes().i32(20000))
            << QString("Bad file format: 20000 items do not fit in the %1 bytes that remain at offset %2")
                   .arg(good.size() - descriptor - 10).arg(descriptor + 2);
        QTest::newRow("negative picture count") << patched(48, Bytes().i32(-1))
                                                << "Bad file format: picture count -1 at offset 48";
        QTest::newRow("picture count beyond the file") << patched(48, Bytes().i32(1000))
                                                       << "Bad file format: 1000 pictures do not fit in the 268 bytes that remain at offset 48";
        QTest::newRow("picture longer than the file")
            << patched(good.size() - 268, Bytes().i32(265))
            << QString("Bad file format: picture 0 length 265 with 264 bytes remaining at offset %1").arg(good.size() - 268);
        QTest::newRow("name longer than the file") << patched(descriptor + 10 + 64 + 1, Bytes().i16(0xFFFF))
                                           << QString("Bad file format: end of file in item 1 Name at offset %1").arg(descriptor + 10 + 64 + 3);
        // Item 1 starts after element 0; its Top follows 57 bytes of earlier fields.
        const int topAt = descriptor + 10 + 64 + 57;
        QTest::newRow("top not a number") << patched(topAt, Bytes().i32(0x7FC00000))
                                          << QString("Bad file format: item 1 Top is not a finite number at offset %1").arg(topAt);
    }
    void structuralErrors()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, message);
        QCOMPARE(errorOf([&] { RdfRead(bytes); }), qMakePair(int(HostErr::BadFileFormat), message));
    }

    void savesAndLoadsFiles()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("Flyer.rdf");
        RdfSaveFile(path, sampleReport());
        QCOMPARE(FileBytes(path), sampleBytes());
        QVERIFY(RdfLoadFile(path) == sampleReport());
        QCOMPARE(folderEntries(dir.path()), QStringList{"Flyer.rdf"});

        // Saving again replaces the file and keeps its permissions.
        QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup));
        RdfReport smaller;
        smaller.items = {RdfItem{}};
        RdfSaveFile(path, smaller);
        QCOMPARE(FileBytes(path), RdfWrite(smaller));
        QCOMPARE(QFile::permissions(path) & 0x7777,
                 QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup | QFileDevice::ReadUser | QFileDevice::WriteUser);
    }

    void failedSaveKeepsOldFile_data()
    {
        QTest::addColumn<qint64>("failAfter");
        QTest::newRow("before the first byte") << qint64(0);
        QTest::newRow("halfway") << qint64(RdfWrite(sampleReport()).size() / 2);
        QTest::newRow("one byte short") << qint64(RdfWrite(sampleReport()).size() - 1);
    }
    void failedSaveKeepsOldFile()
    {
        QFETCH(qint64, failAfter);
        QTemporaryDir dir;
        const QString path = dir.filePath("Listing.rdf");
        QFile old(path);
        QVERIFY(old.open(QIODevice::WriteOnly));
        const QByteArray oldBytes("the previous report", 19);
        old.write(oldBytes);
        old.close();

        QCOMPARE(errorOf([&] { RdfSaveFile(path, sampleReport(), RdfSaveHooks{failAfter}); }),
                 qMakePair(int(HostErr::DiskFull), "Disk full: " + path));
        QCOMPARE(FileBytes(path), oldBytes);
        QCOMPARE(folderEntries(dir.path()), QStringList{"Listing.rdf"});
    }

    void fileErrors()
    {
        QTemporaryDir dir;
        auto number = [](auto&& f) { return errorOf(f).first; };
        const QString missing = dir.filePath("none.rdf");
        QCOMPARE(errorOf([&] { RdfLoadFile(missing); }), qMakePair(int(HostErr::FileNotFound), "File not found: " + missing));
        QCOMPARE(number([&] { RdfLoadFile(dir.filePath("no/such/folder/a.rdf")); }), HostErr::PathNotFound);
        QCOMPARE(number([&] { RdfLoadFile(dir.path()); }), HostErr::FileAccess);
        QCOMPARE(number([&] { RdfSaveFile(dir.filePath("no/such/folder/a.rdf"), sampleReport()); }), HostErr::PathNotFound);
        QCOMPARE(number([&] { RdfSaveFile(dir.path(), sampleReport()); }), HostErr::FileAccess);
        // A damaged file on disk reports the format error of the reader.
        QFile f(dir.filePath("bad.rdf"));
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(sampleBytes().left(50));
        f.close();
        QCOMPARE(number([&] { RdfLoadFile(dir.filePath("bad.rdf")); }), HostErr::BadFileFormat);
    }
};

QTEST_GUILESS_MAIN(TestRdfFile)
#include "tst_rdffile.moc"
