#include "settings/recency.h"

#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Letters are names, digits behind them what changes with each use: "a1 b2".
QStringList listOf(const QString &drawn)
{
    return drawn.split(u' ', Qt::SkipEmptyParts);
}

bool isSameName(const QString &a, const QString &b)
{
    return a.front() == b.front();
}

QString merged(const QString &base, const QString &mine, const QString &theirs, qsizetype capacity = 20)
{
    return QStringList(
        mergedRecency<QString>(listOf(base), listOf(mine), listOf(theirs), capacity, isSameName))
        .join(u' ');
}

} // namespace

/// Two lists of recent items that began as one.
class RecencyTest : public QObject {
    Q_OBJECT

private slots:
    void merges_data();
    void merges();
    void keepsWithinTheCapacity_data();
    void keepsWithinTheCapacity();
    void random_data() { addSeeds(20); }
    void random();
};

void RecencyTest::merges_data()
{
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("mine");
    QTest::addColumn<QString>("theirs");
    QTest::addColumn<QString>("result");
    const auto row = [](const char *name, const char *base, const char *mine, const char *theirs,
                         const char *result) {
        QTest::newRow(name) << QString::fromLatin1(base) << QString::fromLatin1(mine)
                            << QString::fromLatin1(theirs) << QString::fromLatin1(result);
    };
    row("nothing happened", "a1 b1", "a1 b1", "a1 b1", "a1 b1");
    row("all empty", "", "", "", "");
    row("added here", "a1", "c1 a1", "a1", "c1 a1");
    row("added there", "a1", "a1", "d1 a1", "d1 a1");
    row("added by both", "a1", "c1 a1", "d1 a1", "c1 d1 a1");
    row("the same added by both", "a1", "c1 a1", "c2 a1", "c1 a1");
    row("added to nothing", "", "c1", "d1 e1", "c1 d1 e1");
    row("used again here", "a1 b1", "b2 a1", "d1 a1 b1", "b2 d1 a1");
    row("used again there", "a1 b1", "c1 a1 b1", "b2 a1", "c1 b2 a1");
    row("used again by both", "a1 b1", "b2 a1", "b3 a1", "b2 a1");
    row("used again here, at the same place in it", "a1 b1", "b1 a1", "d1 a1 b1", "b1 d1 a1");
    row("cleared here", "a1 b1", "", "a1 b1", "");
    row("cleared here, added there", "a1 b1", "", "d1 a1 b1", "d1");
    row("cleared here, used there", "a1 b1", "", "b2 a1", "");
    row("cleared there", "a1 b1", "a1 b1", "", "");
    row("cleared there, added here", "a1 b1", "c1 a1 b1", "", "c1");
    row("cleared there, used here", "a1 b1", "b2 a1", "", "b2");
    row("cleared by both", "a1 b1", "", "", "");
    row("cleared and used again here", "a1 b1", "b2", "d1 a1 b1", "b2 d1");
}

void RecencyTest::merges()
{
    QFETCH(QString, base);
    QFETCH(QString, mine);
    QFETCH(QString, theirs);
    QTEST(merged(base, mine, theirs), "result");
}

void RecencyTest::keepsWithinTheCapacity_data()
{
    QTest::addColumn<QString>("mine");
    QTest::addColumn<QString>("theirs");
    QTest::addColumn<QString>("result");
    QTest::newRow("fell off here") << u"d1 a1 b1"_s << u"a1 b1 c1"_s << u"d1 a1 b1"_s;
    QTest::newRow("fell off there") << u"a1 b1 c1"_s << u"d1 a1 b1"_s << u"d1 a1 b1"_s;
    QTest::newRow("fell off both") << u"d1 a1 b1"_s << u"e1 a1 b1"_s << u"d1 e1 a1"_s;
    QTest::newRow("fell off here, used there") << u"d1 a1 b1"_s << u"c2 a1 b1"_s << u"d1 c2 a1"_s;
}

void RecencyTest::keepsWithinTheCapacity()
{
    QFETCH(QString, mine);
    QFETCH(QString, theirs);
    QTEST(merged(u"a1 b1 c1"_s, mine, theirs, 3), "result");
}

/// Several processes, each with its own list, that take over the file's before each write: once all have
/// written, each again, all have what was used last.
void RecencyTest::random()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    constexpr int capacity = 5;
    struct Process {
        QStringList known, list;
    };
    QList<Process> processes(3);
    QStringList file;
    const auto write = [&](Process &process) {
        process.list = mergedRecency<QString>(process.known, process.list, file, capacity, isSameName);
        process.known = process.list;
        file = process.list;
    };
    for (int step = 0; step < 200; ++step) {
        Process &process = processes[random.bounded(3)];
        const QString used = QChar(u'a' + random.bounded(8)) + QString::number(step);
        process.list.removeIf([&](const QString &item) { return isSameName(item, used); });
        process.list.prepend(used);
        process.list.resize(qMin<qsizetype>(capacity, process.list.size()));
        if (random.bounded(2))
            continue;
        write(process);
        QCOMPARE(file.first(), used);
        QVERIFY(file.size() <= capacity);
    }
    for (int round = 0; round < 2; ++round) {
        for (Process &process : processes)
            write(process);
    }
    for (const Process &process : processes)
        QCOMPARE(process.list, file);
}

REGISTER_TEST(runCoreTest<RecencyTest>)
#include "recency_test.moc"
