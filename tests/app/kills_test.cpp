#include "app/qpeapplicationesc.h"
#include "files/stagedfolders.h"
#include "platform/toolkitstart.h"
#include "recovery/recoveryjournals.h"
#include "tests/app/typist.h"
#include "tests/figures.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QThread>

#include <algorithm>
#include <csignal>
#include <functional>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

int wantedKills()
{
    return qEnvironmentVariableIntValue("KILLS");
}

bool isLongRun()
{
    return wantedKills() > 0;
}

QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

/// What became of one document, as the program told it.
struct History {
    std::vector<Told> texts;
    size_t kept = 0; ///< this text must come back, or a later one

    /// -1: it never was the document's text.
    int lastOf(const QString &text) const
    {
        const auto found = std::find_if(
            texts.rbegin(), texts.rend(), [&text](const Told &told) { return told.text == text; });
        return int(texts.rend() - found) - 1;
    }
};

using Histories = std::vector<History>;

/// When a program is killed, and how far it had come.
struct Death {
    qint64 time = 0;
    bool isInRestoring = false;
};

void note(Histories &histories, const Told &told)
{
    switch (told.kind) {
    case Told::Kind::Opened:
    case Told::Kind::Changed:
        histories[size_t(told.document)].texts.push_back(told);
        break;
    case Told::Kind::Saved: {
        History &history = histories[size_t(told.document)];
        history.kept = history.texts.size() - 1;
        break;
    }
    case Told::Kind::Restoring:
    case Told::Kind::Writing:
        break;
    case Told::Kind::Written:
        for (History &history : histories)
            history.kept = history.texts.empty() ? 0 : history.texts.size() - 1;
        break;
    }
}

} // namespace

/// The program is killed while somebody types, at any moment, also while it saves a file or writes a journal;
/// and the next one while it brings back what that one left, or later.
///
/// KILLS in the environment says how often, and lets the program's own clock say when journals are written:
/// the longest time is told then of which nothing came back.
class KillsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanupTestCase();

    void keepsWhatWasWritten_data();
    void keepsWhatWasWritten();

private:
    using Life = std::function<void(Typist &typist)>;
    void liveAndDie(quint32 seed, const Life &life, int mostSteps);
    static pid_t start(quint32 seed, int pipe, const Life &life);
    Death listenAndKill(pid_t program, int pipe, quint32 seed, int mostSteps);
    void compareWithWhatIsLeft(const Death &death);
    std::vector<QStringList> textsLeft() const;
    void addJournals(std::vector<QStringList> &texts) const;
    QString textOfFile(const Typist::Document &document) const;

    std::unique_ptr<TestFiles> m_files;
    Histories m_histories;
    int m_kills = 0; ///< after which all was as it is to be
    int m_killsOfRestoring = 0; ///< of these, before anything was typed into what had come back
    int m_lost = 0; ///< documents whose text told last did not come back
    qint64 m_longestGap = 0; ///< ms from the first change that is lost to the kill
};

void KillsTest::init()
{
    resetSettings();
    m_files = std::make_unique<TestFiles>();
    for (const Typist::Document &document : Typist::documents()) {
        if (!document.name.isEmpty())
            m_files->write(document.name, document.content);
    }
}

void KillsTest::cleanupTestCase()
{
    if (!isLongRun()) {
        reportFigure("kills while the window is typed into", m_kills - m_killsOfRestoring);
        reportFigure("kills while texts are brought back", m_killsOfRestoring);
        return;
    }
    reportFigure("kills by the program's own clock", m_kills);
    reportFigure("kills by that clock, while texts are brought back", m_killsOfRestoring);
    reportFigure("documents that lost the last of what was typed by these", m_lost);
    reportFigure("milliseconds that one of these documents lost at most", m_longestGap);
    QVERIFY(m_longestGap <= 2000);
}

void KillsTest::keepsWhatWasWritten_data()
{
    constexpr int usualKills = 50;
    constexpr int killsOfSeed = 2;
    addSeeds(quint32((isLongRun() ? wantedKills() : usualKills) / killsOfSeed));
}

/// Everything up to the last write, nothing else missing, no character in the wrong place: each text is one
/// that the document had, not before the write.
void KillsTest::keepsWhatWasWritten()
{
    QFETCH(quint32, seed);
    constexpr int manySteps = 100;
    constexpr int stepsOfRestoring = 12;
    m_histories.assign(size_t(Typist::documents().size()), {});
    liveAndDie(
        seed, [this](Typist &typist) { typist.type(m_files->folder()); }, manySteps);
    liveAndDie(
        seed, [](Typist &typist) { typist.restoreAndType(); }, stepsOfRestoring);
    for (const LeftBehind &found : findLeftBehind(journalFolder()))
        QVERIFY(ClaimedJournal::claim(found.journal, FileCalls::system()).discard());
    removeNotedStrays();
    QCOMPARE(namesIn(m_files->folder()).size(), Typist::documents().size() - 1);
    QCOMPARE(namesIn(QFile::decodeName(journalFolder())), QStringList());
}

/// Nothing is removed that it leaves behind.
void KillsTest::liveAndDie(quint32 seed, const Life &life, int mostSteps)
{
    int pipes[2];
    QCOMPARE(pipe(pipes), 0);
    const pid_t program = start(seed, pipes[1], life);
    close(pipes[1]);
    QVERIFY(program > 0);
    const Death death = listenAndKill(program, pipes[0], seed, mostSteps);
    close(pipes[0]);
    for (const History &history : m_histories)
        QVERIFY(!history.texts.empty());
    compareWithWhatIsLeft(death);
    ++m_kills;
    m_killsOfRestoring += death.isInRestoring ? 1 : 0;
}

/// A process of its own, which goes on from here: it has the program's window, and no threads by then.
pid_t KillsTest::start(quint32 seed, int pipe, const Life &life)
{
    const pid_t program = fork();
    if (program != 0)
        return program;
    TestWindow window;
    Typist typist(window, isLongRun() ? Typist::Writes::Unasked : Typist::Writes::AtOnce, seed, pipe);
    life(typist);
    _exit(1);
}

/// At a random moment when every document has a text.
Death KillsTest::listenAndKill(pid_t program, int pipe, quint32 seed, int mostSteps)
{
    constexpr int longestSession = 8000; // ms
    constexpr int longestWait = 3000; // µs
    QRandomGenerator random(seed);
    Listener listener(pipe);
    Death death;
    const auto hear = [&] {
        const std::optional<Told> told = listener.next();
        if (!told)
            return false;
        note(m_histories, *told);
        if (told->kind == Told::Kind::Restoring || told->kind == Told::Kind::Changed)
            death.isInRestoring = told->kind == Told::Kind::Restoring;
        return true;
    };
    const auto hasNoText = [](const History &history) { return history.texts.empty(); };
    while (std::ranges::any_of(m_histories, hasNoText) && hear()) { }
    const int most = isLongRun() && random.bounded(2) == 0 ? INT_MAX : random.bounded(mostSteps);
    const qint64 end = isLongRun() ? Told::now() + random.bounded(longestSession) : LLONG_MAX;
    for (int heard = 0; heard < most && Told::now() < end && hear(); ++heard) { }
    QThread::usleep(ulong(random.bounded(longestWait)));
    death.time = Told::now();
    kill(program, SIGKILL);
    waitpid(program, nullptr, 0);
    while (hear()) { }
    return death;
}

/// What has not come back is lost for ever, and what has must not be lost by the next kill.
void KillsTest::compareWithWhatIsLeft(const Death &death)
{
    const std::vector<QStringList> left = textsLeft();
    for (size_t number = 0; number < m_histories.size(); ++number) {
        History &history = m_histories[number];
        int newest = -1;
        for (const QString &text : left[number]) {
            QVERIFY2(history.lastOf(text) >= 0, qPrintable(text));
            newest = qMax(newest, history.lastOf(text));
        }
        QVERIFY2(newest >= int(history.kept), qPrintable(left[number].value(0)));
        history.kept = size_t(newest);
        if (history.kept + 1 == history.texts.size())
            continue;
        ++m_lost;
        m_longestGap = qMax(m_longestGap, death.time - history.texts[history.kept + 1].time);
        history.texts.resize(history.kept + 1);
    }
}

/// Of each document the texts that its user finds again: in its file, and in journals.
std::vector<QStringList> KillsTest::textsLeft() const
{
    std::vector<QStringList> texts;
    for (const Typist::Document &document : Typist::documents())
        texts.push_back({ document.name.isEmpty() ? QString() : textOfFile(document) });
    addJournals(texts);
    return texts;
}

QString KillsTest::textOfFile(const Typist::Document &document) const
{
    TextDocument file;
    const FileCodes codes{ document.charCode, document.returnCode };
    return file.load(m_files->folder(), document.name, document.charCode, codes) ? u"(cannot be read)"_s
                                                                                 : file.store().text();
}

void KillsTest::addJournals(std::vector<QStringList> &texts) const
{
    for (const LeftBehind &found : findLeftBehind(journalFolder())) {
        const auto number = size_t(Typist::numberOf(found.name));
        TextDocument document;
        const Restored restored = restore(found.journal, document);
        const bool isEdited = restored.outcome == Restored::Outcome::Edited;
        const bool isSaved = restored.outcome == Restored::Outcome::Saved;
        QVERIFY(isEdited || isSaved || restored.outcome == Restored::Outcome::New);
        const Typist::Document &expected = Typist::documents()[qsizetype(number)];
        QCOMPARE(document.charCode(), expected.charCode);
        QCOMPARE(document.returnCode(), expected.returnCode);
        texts[number] << document.store().text();
        if (document.history().canUndo())
            document.undo();
        if (isEdited || isSaved)
            QCOMPARE(document.store().text(), texts[number][0]);
    }
}

namespace {

int runKillsTest(int argc, char **argv)
{
    if (isLongRun())
        qputenv("QTEST_FUNCTION_TIMEOUT", QByteArray::number(INT_MAX));
    prepareEventLoop();
    QPEApplicationEsc application(argc, argv);
    KillsTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runKillsTest)
#include "kills_test.moc"
