// Hostile input for the report file reader: every damaged file is either read or refused
// with RdfError, quickly and without large allocations.
#include "document/RdfFile.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QtTest>

#include <atomic>
#include <cstdlib>
#include <new>

// Records the largest single allocation made through operator new while tracking is on
// (std::vector of items is where a hostile element count would strike).
namespace {
std::atomic<bool> g_tracking {false};
std::atomic<size_t> g_largest {0};
int g_notRoundTripped = 0;
int g_otherErrors = 0;
}

void* operator new(size_t size)
{
    if (g_tracking.load(std::memory_order_relaxed) && size > g_largest.load(std::memory_order_relaxed))
        g_largest.store(size, std::memory_order_relaxed);
    if (void* p = std::malloc(size ? size : 1))
        return p;
    throw std::bad_alloc();
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, size_t) noexcept { std::free(p); }

namespace {

RdfReport validReport()
{
    RdfReport r;
    r.header.detailFieldList = QStringLiteral(",ListNum,");
    r.header.autoFillId = QStringLiteral("12345");
    for (int i = 0; i < 6; ++i) {
        const RdfItem it{.kind = quint8(1 + i % 5), .name = QStringLiteral("Item%1").arg(i), .dataField = {},
                         .fontName = QStringLiteral("Arial"), .fontSize = 10, .text = QString::fromUtf8("Prix € %1").arg(i),
                         .top = float(100 * i), .height = 240, .width = 1000, .formatOrFile = QString::number(i % 2)};
        r.items.push_back(it);
    }
    r.pictures = {QByteArray(300, 'p'), QByteArray(50, 'q')};
    r.header.pictureCount = 2;
    return r;
}

// Reads bytes; true when read, false when refused with RdfError. Anything else fails the test.
bool readOrRefuse(const QByteArray& bytes, size_t* largest = nullptr)
{
    g_largest = 0;
    g_tracking = true;
    bool ok = false;
    try {
        const RdfReport r = RdfRead(bytes);
        g_tracking = false;
        // Whatever was read must write and read back to the same records.
        if (!(RdfRead(RdfWrite(r)) == r))
            ++g_notRoundTripped;
        ok = true;
    } catch (const RdfError& e) {
        g_tracking = false;
        if (e.Number() != HostErr::BadFileFormat || !e.Description().startsWith(QLatin1String("Bad file format: ")))
            ++g_otherErrors;
    }
    g_tracking = false;
    if (largest)
        *largest = g_largest;
    return ok;
}

} // namespace

class TestRdfFuzz : public QObject {
    Q_OBJECT
private slots:
    void everyTruncationIsRefused()
    {
        const QByteArray good = RdfWrite(validReport());
        QVERIFY(readOrRefuse(good));
        for (qsizetype n = 0; n < good.size(); ++n)
            QVERIFY2(!readOrRefuse(good.left(n)), qPrintable(QString("prefix of %1 bytes was accepted").arg(n)));
        QCOMPARE(g_otherErrors, 0);
    }

    void randomDamage()
    {
        const QByteArray good = RdfWrite(validReport());
        QRandomGenerator rng(7);
        const quint32 huge[] = {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu, 0x0000FFFFu, 0x00007FFFu, 0x00010000u};
        int accepted = 0;
        size_t worst = 0;
        QElapsedTimer timer;
        timer.start();
        for (int round = 0; round < 6000; ++round) {
            QByteArray b = good;
            const int damage = 1 + int(rng.bounded(6));
            for (int d = 0; d < damage; ++d) {
                const qsizetype at = rng.bounded(int(b.size()));
                if (round % 2 == 0) {
                    b[at] = char(b[at] ^ char(1 + rng.bounded(255)));
                } else { // plant a huge length or count, 16 or 32 bits wide
                    const quint32 v = huge[rng.bounded(6)];
                    for (int k = 0; k < 4 && at + k < b.size(); ++k)
                        b[at + k] = char(v >> (8 * k));
                }
            }
            if (rng.bounded(4) == 0)
                b.truncate(rng.bounded(int(b.size())));
            size_t largest = 0;
            accepted += readOrRefuse(b, &largest) ? 1 : 0;
            worst = std::max(worst, largest);
        }
        // Some damage lands in text or reserved fields and is readable; most is not.
        QVERIFY(accepted > 0);
        QVERIFY(accepted < 6000);
        QVERIFY2(worst <= size_t(good.size()) * 8 + 4096, qPrintable(QString::number(worst)));
        QVERIFY2(timer.elapsed() < 20000, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(g_notRoundTripped, 0);
        QCOMPARE(g_otherErrors, 0);
    }

    void hugeCountsFailAtOnce_data()
    {
        QTest::addColumn<int>("offset");
        QTest::addColumn<int>("width");
        QTest::addColumn<quint32>("value");
        const int descriptor = 68 + 2 * 4 + 9 + 5; // fixed header, then four strings
        QTest::newRow("element count 2^31-1") << descriptor + 2 << 4 << 0x7FFFFFFFu;
        QTest::newRow("element count 32768") << descriptor + 2 << 4 << 32768u;
        QTest::newRow("element count 5000") << descriptor + 2 << 4 << 5000u;
        QTest::newRow("picture count 2^31-1") << 48 << 4 << 0x7FFFFFFFu;
        QTest::newRow("detail list length 65535") << 68 << 2 << 0xFFFFu;
        QTest::newRow("item 1 name length 65535") << descriptor + 10 + 64 + 1 << 2 << 0xFFFFu;
    }
    void hugeCountsFailAtOnce()
    {
        QFETCH(int, offset);
        QFETCH(int, width);
        QFETCH(quint32, value);
        QByteArray b = RdfWrite(validReport());
        for (int k = 0; k < width; ++k)
            b[offset + k] = char(value >> (8 * k));
        size_t largest = 0;
        QElapsedTimer timer;
        timer.start();
        QVERIFY(!readOrRefuse(b, &largest));
        QVERIFY(timer.elapsed() < 500);
        QVERIFY2(largest <= size_t(b.size()) * 8, qPrintable(QString::number(largest)));
    }
};

QTEST_GUILESS_MAIN(TestRdfFuzz)
#include "tst_rdffuzz.moc"
