#include "tests/faults/diskmodel.h"
#include "tests/faults/onefault.h"
#include "tests/faults/operations.h"
#include "tests/figures.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QSet>

using namespace Qt::StringLiterals;

/// The power goes while the program writes: whatever of what was not synced is on the disk then, the next
/// start finds the old text or the new one, and the new one for sure where the user was told so.
class PowerCutTest : public QObject {
    Q_OBJECT

private slots:
    void modelLosesWhatWasNotSynced();
    void everyStateOfTheDisk_data();
    void everyStateOfTheDisk();
    void withoutSyncsMuchIsLost_data();
    void withoutSyncsMuchIsLost();
    void cleanupTestCase() { reportFigure("states of a disk after a power cut", m_states); }

private:
    enum class Syncs { AreDone, DoNothing };
    void play(const NamedOperation &named, Syncs syncs);
    QString lostIn(const DiskState &state, const Operation &operation, bool isDone) const;

    const Sandbox m_sandbox;
    int m_states = 0;
    QString m_loss; ///< the first one; empty for none
};

/// A file that is replaced as programs often do, without a sync, may be empty, torn, the old or the new one.
void PowerCutTest::modelLosesWhatWasNotSynced()
{
    m_sandbox.empty();
    const QByteArray name = m_sandbox.documents() + "file.txt";
    DiskModel disk(m_sandbox.root());
    const FileCalls calls = disk.noting(quickCalls());
    std::mt19937 random;
    const auto contents = [&] {
        QSet<QByteArray> found;
        disk.visitStatesAfter(disk.steps(), random, 1024, [&](const DiskState &state) {
            const auto &names = state.folders.at(m_sandbox.documents());
            const auto file = names.find("file.txt");
            found << (file == names.end() ? QByteArray("none") : state.contents.at(file->second));
        });
        return found;
    };
    int fd = calls.open(name.constData(), O_RDWR | O_CREAT, 0600);
    calls.pwrite(fd, "old", 3, 0);
    QCOMPARE(contents(), (QSet<QByteArray>{ "none", "", "o", QByteArray("\0ld", 3), "old" }));
    calls.fsync(fd);
    QCOMPARE(contents(), (QSet<QByteArray>{ "none", "old" }));
    calls.close(fd);
    fd = calls.open(m_sandbox.documents().constData(), O_RDONLY | O_DIRECTORY, 0);
    calls.fsync(fd);
    calls.close(fd);
    QCOMPARE(contents(), QSet<QByteArray>{ "old" });
    const QByteArray other = m_sandbox.documents() + "other.txt";
    fd = calls.open(other.constData(), O_RDWR | O_CREAT, 0600);
    calls.pwrite(fd, "new", 3, 0);
    calls.close(fd);
    calls.rename(other.constData(), name.constData());
    QCOMPARE(contents(), (QSet<QByteArray>{ "old", "", "n", QByteArray("\0ew", 3), "new" }));
    calls.unlink(name.constData());
    QVERIFY(contents().contains("none"));
}

void PowerCutTest::everyStateOfTheDisk_data()
{
    QTest::addColumn<NamedOperation>("named");
    for (const NamedOperation &named : operations()) {
        // Short texts are torn as long ones are.
        const QByteArrayView name = named.name;
        if (!name.startsWith("load") && !name.contains("long text"))
            QTest::newRow(named.name) << named;
    }
}

QString PowerCutTest::lostIn(const DiskState &state, const Operation &operation, bool isDone) const
{
    m_sandbox.empty();
    state.put(m_sandbox.root());
    const NextStart start = m_sandbox.startAgain();
    const QString stray = m_sandbox.unexplained(start);
    const QString lost = operation.lostOnDisk(start, isDone);
    return lost.isEmpty() && !stray.isEmpty() ? u"left behind: "_s + stray : lost;
}

/// Notes the first loss that a power cut brings, of all that it may bring at any moment.
void PowerCutTest::play(const NamedOperation &named, Syncs syncs)
{
    constexpr std::size_t most = 1024;
    const quint32 seed = seedOr(1);
    std::mt19937 random(seed);
    const auto operation = named.make(m_sandbox);
    m_sandbox.empty();
    operation->prepare();
    DiskModel disk(m_sandbox.root());
    FileCalls calls = disk.noting(quickCalls());
    if (syncs == Syncs::DoNothing)
        calls.fsync = [](int) { return 0; };
    QVERIFY(operation->run(calls, [&disk] { disk.begin(); }));
    operation->noteResult();
    m_loss.clear();
    QSet<QByteArray> seen;
    for (std::size_t steps = 0; steps <= disk.steps() && m_loss.isEmpty(); ++steps) {
        const bool isDone = steps == disk.steps();
        if (isDone)
            seen.clear();
        disk.visitStatesAfter(steps, random, most, [&](const DiskState &state) {
            const QByteArray key = state.key(m_sandbox.root());
            if (!m_loss.isEmpty() || seen.contains(key))
                return;
            seen.insert(key);
            m_states += syncs == Syncs::AreDone ? 1 : 0;
            const QString lost = lostIn(state, *operation, isDone);
            if (!lost.isEmpty())
                m_loss = u"seed %1, step %2 of %3: %4"_s.arg(seed).arg(steps).arg(disk.steps()).arg(lost);
        });
    }
}

void PowerCutTest::everyStateOfTheDisk()
{
    QFETCH(NamedOperation, named);
    play(named, Syncs::AreDone);
    QVERIFY2(m_loss.isEmpty(), qPrintable(m_loss));
}

void PowerCutTest::withoutSyncsMuchIsLost_data()
{
    QTest::addColumn<NamedOperation>("named");
    for (const NamedOperation &named : operations()) {
        const QByteArrayView name = named.name;
        if ((name.contains("save") && !name.contains("long text")) || name.contains("write"))
            QTest::newRow(named.name) << named;
    }
}

/// The model would see it if the program did not sync.
void PowerCutTest::withoutSyncsMuchIsLost()
{
    QFETCH(NamedOperation, named);
    play(named, Syncs::DoNothing);
    QVERIFY(!m_loss.isEmpty());
}

REGISTER_TEST(runCoreTest<PowerCutTest>)
#include "powercut_test.moc"
