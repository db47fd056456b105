#include "platform/digitgrouping.h"
#include "tests/testprogram.h"

#include <QLocale>
#include <QTest>

class DigitGroupingTest : public QObject {
    Q_OBJECT

private slots:
    void groups_data();
    void groups();
};

void DigitGroupingTest::groups_data()
{
    QTest::addColumn<qint64>("number");
    QTest::addColumn<QString>("grouped");
    QTest::newRow("none") << qint64(0) << QStringLiteral("0");
    QTest::newRow("three digits") << qint64(999) << QStringLiteral("999");
    QTest::newRow("four digits") << qint64(1234) << QStringLiteral("1,234");
    QTest::newRow("six digits") << qint64(123456) << QStringLiteral("123,456");
    QTest::newRow("beyond 32 bits") << qint64(9876543210) << QStringLiteral("9,876,543,210");
}

void DigitGroupingTest::groups()
{
    QFETCH(qint64, number);
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    QTEST(groupDigits(number), "grouped");
}

REGISTER_TEST(runCoreTest<DigitGroupingTest>)
#include "digitgrouping_test.moc"
