#include "document/RdfFile.h"
#include "entry/Cp1252.h"
#include "support_bytes.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

RdfReport sampleReport()
{
    RdfReport r;
    RdfHeader& h = r.header;
    h.version = 100;
    h.headerFlags = 2;
    h.reserved3 = 7;
    h.firstDetailItem = 1;
    h.lastDetailItem = 2;
    h.detailSize = 4321;
    h.detailTop = 1500;
    h.pageFooterTop = 9000;
    h.reserved9 = -1;
    h.topMargin = 1080;
    h.bottomMargin = 1000;
    h.leftMargin = 720;
    h.rightMargin = 700;
    h.numberOfColumns = 2;
    h.dictionaryVersion = 7;
    h.sectionSpacingTwips = 360;
    h.reserved17 = 0;
    h.reportOption = -2;
    h.pictureCount = 1;
    h.reserved20[15] = 0xAB;
    h.detailFieldList = QStringLiteral(",ListNum,Price,");
    h.footerFieldList = QStringLiteral("Office");
    h.autoFillId = QStringLiteral("A1234");

    RdfItem label;
    label.kind = RdfKind::Label;
    label.name = QStringLiteral("Label1");
    label.flags = RdfFlag::Bold | RdfFlag::Opaque;
    label.alignment = 2;
    label.borderStyle = 1;
    label.borderWidth = 30;
    label.borderColor = 0x00FF8040;
    label.fontName = QStringLiteral("Arial");
    label.fontSize = 10.5f;
    label.backColor = 0xFFFFFF;
    label.foreColor = 0x80000008;
    label.specialEffect = 2;
    label.text = QString::fromUtf8("Café € ’");
    label.top = 120.5f;
    label.left = 60;
    label.height = 300;
    label.width = 2000;
    label.formatOrFile = QStringLiteral("General");

    RdfItem image;
    image.kind = RdfKind::Image;
    image.name = QStringLiteral("Image1");
    image.flags = RdfFlag::Embedded;
    image.borderWidth = 20;
    image.dicId = -3;
    image.codeType = 2;
    image.backColor = 0x00C0C0C0;
    image.specialEffect = 1;
    image.top = -220;
    image.left = 1440;
    image.height = 1440;
    image.width = 2880;
    image.numberA = 3;
    image.numberB = 1;
    image.sizeMode = 2;
    image.dataBound = true;
    image.formatOrFile = QStringLiteral("0");

    r.items = {label, image};
    QByteArray pic("\x89PNG\r\n\x1A\n", 8);
    for (int i = 0; i < 256; ++i)
        pic.append(char(i));
    r.pictures = {pic};
    return r;
}

QByteArray sampleBytes()
{
    QByteArray pic("\x89PNG\r\n\x1A\n", 8);
    for (int i = 0; i < 256; ++i)
        pic.append(char(i));
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

void expectError(const QByteArray& bytes, int number, const QString& description)
{
    try {
        RdfRead(bytes);
        QFAIL("no error");
    } catch (const RdfError& e) {
        QCOMPARE(e.Number(), number);
        QCOMPARE(e.Description(), description);
    }
}

QStringList folderEntries(const QString& dir)
{
    return QDir(dir).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}

QByteArray fileBytes(const QString& path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return f.readAll();
}

} // namespace

class TestRdfFile : public QObject {
    Q_OBJECT
private slots:
    void writesExactBytes()
    {
        QCOMPARE(RdfWrite(sampleReport()), sampleBytes());
    }

    void readsExactBytes()
    {
        const RdfReport r = RdfRead(sampleBytes());
        QCOMPARE(r.items.size(), size_t(2));
        QCOMPARE(r.items[0].text, QString::fromUtf8("Café € ’"));
        QVERIFY(r == sampleReport());
    }

    void roundTrips()
    {
        // Extremes of every field, several pictures, an empty picture and a 65535-byte string.
        RdfReport r = sampleReport();
        RdfItem x;
        x.kind = 255;
        x.name = QString(65535, QChar(0x20AC));
        x.flags = 0xFFFFFFFFu;
        x.alignment = 255;
        x.borderStyle = 255;
        x.borderWidth = -32768;
        x.borderColor = 0xFFFFFFFFu;
        x.dataField = QStringLiteral("SELECT * FROM Listings WHERE City = 'Zürich'");
        x.dicId = 32767;
        x.codeType = -1;
        x.fontSize = 1e-3f;
        x.top = -1e9f;
        x.left = 3.25f;
        x.height = std::numeric_limits<qint32>::min();
        x.width = std::numeric_limits<qint32>::max();
        x.numberB = 6;
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

    void writerCountsPicturesItself()
    {
        RdfReport r = sampleReport();
        r.header.pictureCount = 9; // stale value from the caller
        QCOMPARE(RdfWrite(r), sampleBytes());
    }

    void textOutsideCodePageBecomesQuestionMark()
    {
        RdfReport r;
        RdfItem it;
        it.text = QString::fromUtf8("a€b\u4E2Dc😀");
        r.items = {it};
        QCOMPARE(RdfRead(RdfWrite(r)).items[0].text, QStringLiteral("a€b?c?"));
    }

    void rejectsOverlongText()
    {
        RdfReport r;
        RdfItem it;
        it.text = QString(65536, QLatin1Char('a'));
        r.items = {RdfItem{}, it};
        try {
            RdfWrite(r);
            QFAIL("no error");
        } catch (const RdfError& e) {
            QCOMPARE(e.Number(), RdfErr::InvalidArgument);
            QCOMPARE(e.Description(), QStringLiteral("Text too long to save: item 2 Text is 65536 bytes (at most 65535)"));
        }
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
        expectError(bytes, HostErr::BadFileFormat, message);
    }

    void savesAndLoadsFiles()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath("Flyer.rdf");
        RdfSaveFile(path, sampleReport());
        QCOMPARE(fileBytes(path), sampleBytes());
        QVERIFY(RdfLoadFile(path) == sampleReport());
        QCOMPARE(folderEntries(dir.path()), QStringList{"Flyer.rdf"});

        // Saving again replaces the file and keeps its permissions.
        QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup));
        RdfReport smaller;
        smaller.items = {RdfItem{}};
        RdfSaveFile(path, smaller);
        QCOMPARE(fileBytes(path), RdfWrite(smaller));
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

        try {
            RdfSaveFile(path, sampleReport(), RdfSaveHooks{failAfter});
            QFAIL("no error");
        } catch (const RdfError& e) {
            QCOMPARE(e.Number(), HostErr::DiskFull);
            QCOMPARE(e.Description(), "Disk full: " + path);
        }
        QCOMPARE(fileBytes(path), oldBytes);
        QCOMPARE(folderEntries(dir.path()), QStringList{"Listing.rdf"});
    }

    void unsavableReportNeverTouchesDisk()
    {
        QTemporaryDir dir;
        RdfReport r;
        RdfItem it;
        it.name = QString(70000, QLatin1Char('n'));
        r.items = {it};
        QVERIFY_THROWS_EXCEPTION(RdfError, RdfSaveFile(dir.filePath("x.rdf"), r));
        QVERIFY(folderEntries(dir.path()).isEmpty());
    }

    void fileErrors()
    {
        QTemporaryDir dir;
        auto number = [](auto&& f) {
            try {
                f();
            } catch (const RdfError& e) {
                return e.Number();
            }
            return 0;
        };
        const QString missing = dir.filePath("none.rdf");
        QCOMPARE(number([&] { RdfLoadFile(missing); }), HostErr::FileNotFound);
        try {
            RdfLoadFile(missing);
        } catch (const RdfError& e) {
            QCOMPARE(e.Description(), "File not found: " + missing);
        }
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
