#include "app/qpeapplicationesc.h"
#include "files/stagedfile.h"
#include "platform/toolkitstart.h"
#include "recovery/recoveryjournals.h"
#include "tests/app/typist.h"
#include "tests/figures.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QThread>

#include <csignal>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int usualKills = 50;

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
    case Told::Kind::Writing:
        break;
    case Told::Kind::Written:
        for (History &history : histories)
            history.kept = history.texts.empty() ? 0 : history.texts.size() - 1;
        break;
    }
}

} // namespace

/// The program is killed while somebody types, at any moment, also while it saves a file or writes a journal.
///
/// KILLS in the environment says how often, and lets the program's own clock say when journals are written:
/// the longest time is told then of which nothing came back.
class KillsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanupTestCase();

    void keepsWhatWasWritten_data() { addSeeds(quint32(isLongRun() ? wantedKills() : usualKills)); }
    void keepsWhatWasWritten();

private:
    pid_t startTyping(quint32 seed, int pipe) const;
    static Histories listenAndKill(pid_t program, int pipe, QRandomGenerator &random, qint64 *killed);
    void compareWithWhatIsLeft(const Histories &histories, qint64 killed);
    std::vector<QStringList> textsLeft();
    void addJournals(std::vector<QStringList> &texts);
    QString textOfFile(const Typist::Document &document) const;

    std::unique_ptr<TestFiles> m_files;
    int m_kills = 0; ///< after which all was as it is to be
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
        reportFigure("kills while the window is typed into", m_kills);
        return;
    }
    reportFigure("kills by the program's own clock", m_kills);
    reportFigure("documents that lost the last of what was typed by these", m_lost);
    reportFigure("milliseconds that one of these documents lost at most", m_longestGap);
    QVERIFY(m_longestGap <= 2000);
}

/// Everything up to the last write, nothing else missing, no character in the wrong place: each text is one
/// that the document had, not before the write.
void KillsTest::keepsWhatWasWritten()
{
    QFETCH(quint32, seed);
    int pipes[2];
    QCOMPARE(pipe(pipes), 0);
    const pid_t program = startTyping(seed, pipes[1]);
    close(pipes[1]);
    QVERIFY(program > 0);
    QRandomGenerator random(seed);
    qint64 killed = 0;
    const Histories histories = listenAndKill(program, pipes[0], random, &killed);
    close(pipes[0]);
    for (const History &history : histories)
        QVERIFY(!history.texts.empty());
    compareWithWhatIsLeft(histories, killed);
    removeStagedStrays(QFile::encodeName(m_files->folder()));
    QCOMPARE(namesIn(m_files->folder()).size(), Typist::documents().size() - 1);
    QCOMPARE(namesIn(QFile::decodeName(journalFolder())), QStringList());
    ++m_kills;
}

/// A process of its own, which goes on from here: it has the program's window, and no threads by then.
pid_t KillsTest::startTyping(quint32 seed, int pipe) const
{
    const pid_t program = fork();
    if (program != 0)
        return program;
    TestWindow window;
    const auto writes = isLongRun() ? Typist::Writes::Unasked : Typist::Writes::AtOnce;
    Typist(window, writes, seed, pipe).type(m_files->folder());
}

/// At a random moment behind the opening of the last document.
Histories KillsTest::listenAndKill(pid_t program, int pipe, QRandomGenerator &random, qint64 *killed)
{
    constexpr int mostChanges = 100;
    constexpr int longestSession = 8000; // ms
    constexpr int longestWait = 3000; // µs
    Histories histories(size_t(Typist::documents().size()));
    Listener listener(pipe);
    std::optional<Told> told;
    const auto hear = [&] {
        told = listener.next();
        if (told)
            note(histories, *told);
        return told.has_value();
    };
    for (size_t opened = 0; opened < histories.size() && hear(); ++opened) { }
    const int most = isLongRun() ? INT_MAX : random.bounded(mostChanges);
    const qint64 end = isLongRun() ? Told::now() + random.bounded(longestSession) : LLONG_MAX;
    for (int heard = 0; heard < most && Told::now() < end && hear(); ++heard) { }
    QThread::usleep(ulong(random.bounded(longestWait)));
    *killed = Told::now();
    kill(program, SIGKILL);
    waitpid(program, nullptr, 0);
    while (hear()) { }
    return histories;
}

void KillsTest::compareWithWhatIsLeft(const Histories &histories, qint64 killed)
{
    const std::vector<QStringList> left = textsLeft();
    for (size_t number = 0; number < histories.size(); ++number) {
        const History &history = histories[number];
        int newest = -1;
        for (const QString &text : left[number]) {
            QVERIFY2(history.lastOf(text) >= 0, qPrintable(text));
            newest = qMax(newest, history.lastOf(text));
        }
        QVERIFY2(newest >= int(history.kept), qPrintable(left[number].value(0)));
        if (size_t(newest) + 1 == history.texts.size())
            continue;
        ++m_lost;
        m_longestGap = qMax(m_longestGap, killed - history.texts[size_t(newest) + 1].time);
    }
}

/// Of each document the texts that its user finds again: in its file, and in journals.
std::vector<QStringList> KillsTest::textsLeft()
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

void KillsTest::addJournals(std::vector<QStringList> &texts)
{
    for (const LeftBehind &found : findLeftBehind(journalFolder())) {
        size_t number = 0;
        while (Typist::documents()[qsizetype(number)].name != (found.path.isEmpty() ? QString() : found.name))
            ++number;
        TextDocument document;
        Restored restored = restore(found.journal, document);
        const bool isEdited = restored.outcome == Restored::Outcome::Edited;
        QVERIFY(isEdited || restored.outcome == Restored::Outcome::New);
        const Typist::Document &expected = Typist::documents()[qsizetype(number)];
        QCOMPARE(document.charCode(), expected.charCode);
        QCOMPARE(document.returnCode(), expected.returnCode);
        texts[number] << document.store().text();
        if (document.history().canUndo())
            document.undo();
        if (isEdited)
            QCOMPARE(document.store().text(), texts[number][0]);
        QVERIFY(restored.journal.discard());
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
