#include "render/Format.h"

#include <QDate>
#include <QDateTime>
#include <QFile>
#include <QRandomGenerator>
#include <QTime>
#include <QtTest>
#include <cmath>

namespace {

QVariant makeValue(const QString& type, const QString& text)
{
    if (type == QLatin1String("null"))
        return QVariant();
    if (type == QLatin1String("str"))
        return QVariant(text);
    if (type == QLatin1String("dbl"))
        return QVariant(text.toDouble());
    if (type == QLatin1String("float"))
        return QVariant(text.toFloat());
    if (type == QLatin1String("int"))
        return QVariant(text.toLongLong());
    if (type == QLatin1String("bool"))
        return QVariant(text == QLatin1String("true"));
    if (type == QLatin1String("date"))
        return QVariant(QDate::fromString(text, Qt::ISODate));
    if (type == QLatin1String("time"))
        return QVariant(QTime::fromString(text, QStringLiteral("HH:mm:ss")));
    if (type == QLatin1String("datetime"))
        return QVariant(QDateTime::fromString(text, Qt::ISODate));
    qFatal("unknown value type %s", qPrintable(type));
}

QString describe(const FormatError& e)
{
    return QStringLiteral("%1 %2").arg(e.number).arg(e.description);
}

} // namespace

class TestFormat : public QObject {
    Q_OBJECT
private slots:
    // The documented examples and the rules derived from them, one row per case.
    void cases_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("format");
        QTest::addColumn<QString>("expected");
        QFile file(QStringLiteral(PW_TEST_DATA "/format_cases.tsv"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        int line = 0, rows = 0;
        while (!file.atEnd()) {
            const QString text = QString::fromUtf8(file.readLine()).chopped(1);
            ++line;
            if (text.startsWith(QLatin1Char('#')) || text.isEmpty())
                continue;
            const QStringList f = text.split(QLatin1Char('\t'));
            QVERIFY2(f.size() == 5, qPrintable(QStringLiteral("line %1 has %2 fields").arg(line).arg(f.size())));
            QVERIFY2(!f[4].isEmpty(), qPrintable(QStringLiteral("line %1 has no source").arg(line)));
            const QString name = QStringLiteral("%1: %2(%3) \"%4\"").arg(line).arg(f[0], f[1], f[2]);
            QTest::newRow(qPrintable(name)) << makeValue(f[0], f[1]) << f[2] << f[3];
            ++rows;
        }
        QVERIFY(rows >= 150);
    }
    void cases()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, format);
        QFETCH(QString, expected);
        try {
            QCOMPARE(Format(value, format), expected);
        } catch (const FormatError& e) {
            QFAIL(qPrintable(QStringLiteral("unexpected error ") + describe(e)));
        }
    }

    void errors_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("format");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("description");
        const QString mismatch = QStringLiteral("Type mismatch");
        const QString overflow = QStringLiteral("Overflow");
        QTest::newRow("list") << QVariant(QVariantList{1, 2}) << "0" << 13 << mismatch;
        QTest::newRow("map, no format") << QVariant(QVariantMap{{"a", 1}}) << "" << 13 << mismatch;
        QTest::newRow("string list") << QVariant(QStringList{"5"}) << "@" << 13 << mismatch;
        QTest::newRow("point") << QVariant(QPoint(1, 2)) << "Currency" << 13 << mismatch;
        QTest::newRow("serial past 9999") << QVariant(3e6) << "Short Date" << 6 << overflow;
        QTest::newRow("huge serial, general") << QVariant(1e10) << "General Date" << 6 << overflow;
        QTest::newRow("serial before 100") << QVariant(-700000.0) << "yyyy" << 6 << overflow;
        QTest::newRow("date past 9999") << QVariant(QDate(10000, 1, 1)) << "" << 6 << overflow;
        QTest::newRow("NaN") << QVariant(std::nan("")) << "0.00" << 6 << overflow;
        QTest::newRow("infinity") << QVariant(HUGE_VAL) << "" << 6 << overflow;
    }
    void errors()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, format);
        QFETCH(int, number);
        QFETCH(QString, description);
        try {
            const QString out = Format(value, format);
            QFAIL(qPrintable(QStringLiteral("no error; got \"%1\"").arg(out)));
        } catch (const FormatError& e) {
            QCOMPARE(e.number, number);
            QCOMPARE(e.description, description);
        }
    }

    // A date far outside the range is still a number for number formats.
    void outOfRangeSerialAsNumber()
    {
        QCOMPARE(Format(QVariant(QDate(10000, 1, 1)), QStringLiteral("0")), QStringLiteral("2958466"));
        QCOMPARE(Format(QVariant(1e10), QStringLiteral("#,##0")), QStringLiteral("10,000,000,000"));
    }

    // What the named date/time formats print reads back as the same moment.
    void namedDatesReadBack()
    {
        const QStringList formats = {"General Date", "Long Date", "Medium Date", "Short Date", "ddddd ttttt", "c"};
        QRandomGenerator rng(20240301);
        for (int i = 0; i < 400; ++i) {
            const QDate d = QDate(1930, 1, 1).addDays(rng.bounded(36500));
            const QDateTime dt(d, QTime(0, 0).addSecs(rng.bounded(86400)));
            for (const QString& f : formats) {
                const QString shown = Format(dt, f);
                QCOMPARE(Format(shown, QStringLiteral("Short Date")), Format(dt, QStringLiteral("Short Date")));
            }
            const QString time = Format(dt, QStringLiteral("Long Time"));
            QCOMPARE(Format(time, QStringLiteral("hh:nn:ss")), dt.time().toString(QStringLiteral("HH:mm:ss")));
        }
    }

    // The general form keeps 15 significant digits and reads back as the same number.
    void generalNumberReadsBack()
    {
        QRandomGenerator rng(7);
        for (int i = 0; i < 2000; ++i) {
            const double mantissa = rng.generateDouble() * 2 - 1;
            const double v = mantissa * std::pow(10.0, rng.bounded(-12, 20));
            const QString shown = Format(v, QString());
            QVERIFY2(!shown.startsWith(QLatin1Char(' ')), qPrintable(shown));
            bool ok = false;
            const double back = shown.toDouble(&ok);
            QVERIFY2(ok, qPrintable(shown));
            QVERIFY2(std::fabs(back - v) <= std::fabs(v) * 1e-14, qPrintable(shown));
            QCOMPARE(Format(shown, QString()), shown); // numeric text: same general form
        }
    }

    // Formats and values a user or a damaged file could supply: never a crash, only text or
    // a FormatError.
    void hostileInput()
    {
        QCOMPARE(Format(5, QStringLiteral("0\"abc")), QStringLiteral("5abc"));  // unterminated quote
        QCOMPARE(Format(5, QStringLiteral("0\\")), QStringLiteral("5"));        // trailing backslash
        QCOMPARE(Format(5, QStringLiteral("0;;;;;;")), QStringLiteral("5"));    // extra sections
        QCOMPARE(Format(QVariant(), QStringLiteral(";;;")), QString());
        QCOMPARE(Format(1, QString(100000, QLatin1Char('0'))).size(), 100000);
        QCOMPARE(Format(1e300, QStringLiteral("0")).size(), 301);
        QCOMPARE(Format(1e-300, QStringLiteral("0.00")), QStringLiteral("0.00"));
        QCOMPARE(Format(QString(50000, QLatin1Char('9')), QStringLiteral("@")).size(), 50000);

        const QString alphabet = QStringLiteral("0#.,%Ee+-;\"\\@&<>!dmyhnswqctAMPap/: $()x");
        const QVariantList values = {QVariant(), 0, -1.5, 1e15, 45352.25, true, QString("abc"), QString(""),
                                     QString("3/1/2024"), QString("-0,,1"), QDate(2024, 3, 1)};
        QRandomGenerator rng(99);
        for (int i = 0; i < 3000; ++i) {
            QString format;
            const int len = rng.bounded(12);
            for (int k = 0; k < len; ++k)
                format += alphabet[rng.bounded(int(alphabet.size()))];
            for (const QVariant& v : values) {
                try {
                    Format(v, format);
                } catch (const FormatError& e) {
                    QVERIFY2(e.number == 6 || e.number == 13, qPrintable(format + " " + describe(e)));
                }
            }
        }
    }

    // Number text that is not quite a number stays text.
    void nearlyNumbersStayText()
    {
        for (const char* t : {"1.2.3", "12abc", "--5", "1e", "$", "()", "1 2", ",5", "1e999", "0x10", "5%"})
            QCOMPARE(Format(QString::fromLatin1(t), QStringLiteral("0.00")), QString::fromLatin1(t));
    }
};

QTEST_GUILESS_MAIN(TestFormat)
#include "tst_format.moc"
