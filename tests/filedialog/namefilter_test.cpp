#include "filedialog/namefilter.h"
#include "tests/testprogram.h"

#include <QRandomGenerator>
#include <QTest>

#include <fnmatch.h>

class NameFilterTest : public QObject {
    Q_OBJECT

private slots:
    void matches_data();
    void matches();
    void matchesAsTheSystemDoes_data();
    void matchesAsTheSystemDoes();
};

void NameFilterTest::matches_data()
{
    QTest::addColumn<QString>("patterns");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("expected");
    const QString texts = QStringLiteral("*.txt;*.ini;*.log");
    QTest::newRow("first pattern") << texts << QStringLiteral("a.txt") << true;
    QTest::newRow("last pattern") << texts << QStringLiteral("a.log") << true;
    QTest::newRow("hidden") << texts << QStringLiteral(".txt") << true;
    QTest::newRow("other") << texts << QStringLiteral("a.conf") << false;
    QTest::newRow("case counts") << texts << QStringLiteral("B.TXT") << false;
    QTest::newRow("extension is not the end") << texts << QStringLiteral("a.txt~") << false;
    QTest::newRow("dot is a dot") << texts << QStringLiteral("atxt") << false;
    QTest::newRow("no pattern") << QString() << QStringLiteral("a") << true;
    QTest::newRow("star alone") << QStringLiteral("*") << QStringLiteral("README") << true;
    QTest::newRow("undecodable byte") << QStringLiteral("*.txt") << QStringLiteral(u"\xDC83.txt") << true;
    QTest::newRow("line end in the name") << QStringLiteral("*.txt") << QStringLiteral("a\nb.txt") << true;
    QTest::newRow("one character of two units")
        << QStringLiteral("?") << QStringLiteral(u"\U0001F600") << true;
    QTest::newRow("pair after a star") << QStringLiteral("*?") << QStringLiteral(u"\U0001F600") << true;
    QTest::newRow("bracket is itself") << QStringLiteral("[a]") << QStringLiteral("a") << false;
    QTest::newRow("empty name") << QStringLiteral("?") << QString() << false;
}

void NameFilterTest::matches()
{
    QFETCH(QString, patterns);
    QFETCH(QString, name);
    QFETCH(bool, expected);
    QCOMPARE(NameFilter(patterns).matches(name), expected);
}

void NameFilterTest::matchesAsTheSystemDoes_data()
{
    QTest::addColumn<uint>("seed");
    for (uint seed : { 1U, 2U, uint(qEnvironmentVariableIntValue("SEED")) + 3U })
        QTest::addRow("seed %u", seed) << seed;
}

void NameFilterTest::matchesAsTheSystemDoes()
{
    QFETCH(uint, seed);
    QRandomGenerator random(seed);
    const auto text = [&random](const QByteArray &alphabet) {
        QByteArray result;
        for (int size = random.bounded(1, 10); size > 0; --size)
            result += alphabet[random.bounded(int(alphabet.size()))];
        return result;
    };
    int matched = 0;
    for (int round = 0; round < 50000; ++round) {
        const QByteArray pattern = text("ab.**?");
        const QByteArray name = text("ab.");
        const bool expected = ::fnmatch(pattern.constData(), name.constData(), 0) == 0;
        const bool actual = NameFilter(QString::fromLatin1(pattern)).matches(QString::fromLatin1(name));
        QVERIFY2(actual == expected, (pattern + " on " + name).constData());
        matched += expected ? 1 : 0;
    }
    QVERIFY(matched > 1000);
}

REGISTER_TEST(runCoreTest<NameFilterTest>)
#include "namefilter_test.moc"
