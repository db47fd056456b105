#include "recovery/claimedjournal.h"
#include "recovery/texthash.h"
#include "tests/recovery/journalbytes.h"
#include "tests/testprogram.h"

#include <QTest>

#include <csignal>

#include <sys/file.h>
#include <sys/wait.h>

using namespace Qt::StringLiterals;
using Outcome = Restored::Outcome;

/// What is found at a start, whatever there is.
class LeftBehindTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<RecoveryFolder>(); }

    void noFolderIsNothing();
    void newestComesFirst();
    void placesOutsideOfTheTextComeInside();
    void whateverIsInTheFolder();
    void whatHasNothingOfATextIsRemoved();
    void lostStartIsNoLostText_data();
    void lostStartIsNoLostText();
    void partOfTheStartIsLost();
    void unfinishedFilesAreCleared();
    void aThousandJournals();
    void killedProgramLeavesItsJournal();
    void linksAreNotFollowed();
    void journalThatGoesMeanwhileIsNone();
    void whoLooksIsWaitedFor();
    void whoRestoresIsNotWaitedFor();
    void failingDiscardIsTold();
    void filesOfOthersAreLeftAlone();
    void textIsKnownByItsUnitsNotItsLeaves();
    void longSpellingComesBack();

private:
    void makeFile(const QByteArray &name, const QByteArray &content = {}) const
    {
        QFile file(QFile::decodeName(m_folder->journals() + name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }
    void makeFolder() const { QVERIFY(QDir().mkpath(QFile::decodeName(m_folder->journals()))); }
    /// Of a document that was never saved and has no text.
    static QByteArray journalOf(const JournalState &state)
    {
        QByteArray journal = journalMagic().toByteArray();
        appendRecord(journal, RecordType::Base, contentOf(JournalBase()));
        appendRecord(journal, RecordType::Commit, contentOf(state));
        return journal;
    }
    void leave(const QString &text)
    {
        Run run(*m_folder);
        run.document.replace({}, 0, text);
        QVERIFY(run.pause());
    }
    std::unique_ptr<RecoveryFolder> m_folder;
};

void LeftBehindTest::noFolderIsNothing()
{
    QVERIFY(m_folder->leftBehind().empty());
}

/// By the time of the last commit: the file may have been copied since.
void LeftBehindTest::newestComesFirst()
{
    makeFolder();
    for (const qint64 time : { 4, 7, 1, 6, 3, 2, 5 }) {
        JournalState state;
        state.time = time;
        makeFile(QByteArray::number(time) + ".journal", journalOf(state));
    }
    QList<qint64> times;
    for (const LeftBehind &found : m_folder->leftBehind())
        times << found.time;
    QCOMPARE(times, QList<qint64>({ 7, 6, 5, 4, 3, 2, 1 }));
}

void LeftBehindTest::placesOutsideOfTheTextComeInside()
{
    JournalState state;
    state.place = { { Offset(5), true }, Offset(7), Offset(3), -1 };
    Run run(*m_folder);
    const Restored restored =
        run.journals.restore(JournalBytes::put(*m_folder, journalOf(state)), run.document);
    QCOMPARE(restored.outcome, Outcome::New);
    const ViewPlace inside = { { Offset(), true }, Offset(), Offset(), 0 };
    QVERIFY(restored.place == inside);
}

void LeftBehindTest::whateverIsInTheFolder()
{
    leave(u"text"_s);
    makeFile("foreign.journal", QByteArray(100000, '\xff'));
    makeFile("other.txt", "text");
    makeFile("huge.journal");
    QCOMPARE(truncate((m_folder->journals() + "huge.journal").constData(), off_t{ 1 } << 40), 0);
    QCOMPARE(mkfifo((m_folder->journals() + "fifo.journal").constData(), 0600), 0);
    QCOMPARE(mkdir((m_folder->journals() + "folder.journal").constData(), 0700), 0);
    QCOMPARE(symlink("nowhere", (m_folder->journals() + "link.journal").constData()), 0);
    const QStringList before = m_folder->files();
    QCOMPARE(m_folder->leftBehind().size(), 1U);
    for (const QString &name : before) {
        TextDocument document;
        const QByteArray journal = m_folder->journals() + QFile::encodeName(name);
        const Outcome outcome = restore(journal, document).outcome;
        const bool isNone = outcome == Outcome::NotPossible || outcome == Outcome::InUse;
        QCOMPARE(isNone, journal != m_folder->leftBehind().at(0).journal);
    }
    QCOMPARE(m_folder->files(), before);
}

/// Cut off before there was any, or never come to the disk; what may have some stays.
void LeftBehindTest::whatHasNothingOfATextIsRemoved()
{
    leave(u"text"_s);
    const QByteArray bytes = JournalBytes::only(*m_folder);
    const qsizetype magic = journalMagic().size();
    makeFile("empty.journal");
    makeFile("zeros.journal", QByteArray(4096, '\0'));
    makeFile("half a magic.journal", bytes.first(magic / 2));
    makeFile("magic.journal", bytes.first(magic));
    makeFile("half a head.journal", bytes.first(magic + 5));
    makeFile("half a base.journal", bytes.first(magic + JournalRecord::headSize + 3));
    makeFile("locked.journal");
    makeFile(
        "wrong length.journal", bytes.first(magic) + QByteArray("\0\0\0\1", 4) + bytes.sliced(magic + 4, 30));
    makeFile("other.txt");
    const int locked = open((m_folder->journals() + "locked.journal").constData(), O_RDWR | O_CLOEXEC);
    QCOMPARE(flock(locked, LOCK_EX | LOCK_NB), 0);
    const auto found = m_folder->leftBehind();
    close(locked);
    QCOMPARE(found.size(), 2U);
    QCOMPARE(m_folder->files().size(), 4);
    for (const QString &name : { u"locked.journal"_s, u"wrong length.journal"_s, u"other.txt"_s })
        QVERIFY(m_folder->files().contains(name));
}

void LeftBehindTest::lostStartIsNoLostText_data()
{
    QTest::addColumn<bool>("isOfFile");
    QTest::addColumn<int>("from"); // of the bytes that are lost
    QTest::addColumn<int>("count"); // 0: all of the first record
    for (const bool isOfFile : { false, true }) {
        const QByteArray of = isOfFile ? "of a file: " : "of no file: ";
        const int magic = int(journalMagic().size());
        QTest::newRow((of + "magic").constData()) << isOfFile << 3 << 1;
        QTest::newRow((of + "length").constData()) << isOfFile << magic << 4;
        QTest::newRow((of + "checksum").constData()) << isOfFile << magic + 5 << 1;
        QTest::newRow((of + "type").constData()) << isOfFile << magic + 12 << 1;
        QTest::newRow((of + "all of it").constData()) << isOfFile << 0 << 0;
    }
}

void LeftBehindTest::lostStartIsNoLostText()
{
    QFETCH(bool, isOfFile);
    QFETCH(int, from);
    QFETCH(int, count);
    QVERIFY(m_folder->documents().write(u"file"_s, "one\ntwo\n"));
    {
        Run run(*m_folder);
        if (isOfFile)
            QVERIFY(!run.document.load(m_folder->documents().path(), u"file"_s, {}, {}));
        for (const QString &text : { u"first "_s, u"second "_s }) {
            run.document.replace({}, 0, text);
            QVERIFY(run.pause());
        }
    }
    QByteArray bytes = JournalBytes::only(*m_folder);
    const qsizetype magic = journalMagic().size();
    const qint64 lost = count > 0 ? count : magic + recordSize(QByteArrayView(bytes).sliced(magic));
    bytes.replace(from, lost, QByteArray(lost, '\xff'));
    const auto before = m_folder->leftBehind();
    QVERIFY(QFile::remove(QFile::decodeName(before.at(0).journal)));
    makeFile("damaged.journal", bytes);
    const auto found = m_folder->leftBehind();
    QCOMPARE(found.size(), 1U);
    QCOMPARE(found[0].length, before.at(0).length);
    QCOMPARE(found[0].time, before.at(0).time);
    TextDocument document;
    QVERIFY(restore(found[0].journal, document).isRestored());
    QCOMPARE(document.store().text(), isOfFile ? u"second first one\ntwo\n"_s : u"second first "_s);
    QVERIFY(document.isEdited());
}

/// So much that of the text before only the end is left.
void LeftBehindTest::partOfTheStartIsLost()
{
    const QByteArray content = QByteArray("a line of some length\n").repeated(40000) + "the last line\n";
    QVERIFY(m_folder->documents().write(u"file"_s, content));
    {
        Run run(*m_folder);
        QVERIFY(!run.document.load(m_folder->documents().path(), u"file"_s, {}, {}));
        run.document.replace({}, 0, u"edited ");
        QVERIFY(run.pause());
    }
    QByteArray bytes = JournalBytes::only(*m_folder);
    bytes.replace(0, 8192, QByteArray(8192, '\0'));
    QVERIFY(QFile::remove(QFile::decodeName(m_folder->leftBehind().at(0).journal)));
    makeFile("damaged.journal", bytes);
    TextDocument document;
    QCOMPARE(restore(m_folder->leftBehind().at(0).journal, document).outcome, Outcome::Parts);
    QVERIFY(document.store().text().startsWith(u"edited \n[...]\n"_s));
    QVERIFY(document.store().text().endsWith(u"a line of some length\nthe last line\n"_s));
}

void LeftBehindTest::unfinishedFilesAreCleared()
{
    makeFolder();
    makeFile(".unfinished-a", "Marlo");
    makeFile(".unfinished-b", "Marlo");
    const int locked = open((m_folder->journals() + ".unfinished-b").constData(), O_RDWR | O_CLOEXEC);
    QCOMPARE(flock(locked, LOCK_EX | LOCK_NB), 0);
    QVERIFY(m_folder->leftBehind().empty());
    QCOMPARE(m_folder->files(), QStringList(u".unfinished-b"_s));
    close(locked);
    QVERIFY(m_folder->leftBehind().empty());
    QCOMPARE(m_folder->files(), QStringList());
}

void LeftBehindTest::aThousandJournals()
{
    leave(u"text"_s);
    const QByteArray bytes = JournalBytes::only(*m_folder);
    constexpr int many = 1000;
    for (int i = 1; i < many; ++i)
        makeFile(QByteArray::number(i) + ".journal", i % 2 == 0 ? bytes : bytes.first(i % bytes.size()));
    const auto found = m_folder->leftBehind();
    QVERIFY(found.size() >= many / 2);
    QVERIFY(std::ranges::all_of(found, [](const LeftBehind &one) { return one.name == u"new"; }));
}

/// Another process holds its journal until it is killed; its number says nothing.
void LeftBehindTest::killedProgramLeavesItsJournal()
{
    int pipes[2];
    QCOMPARE(pipe(pipes), 0);
    const pid_t child = fork();
    if (child == 0) {
        Run run(*m_folder);
        run.document.replace({}, 0, u"its text");
        const char written = run.pause() ? 'y' : 'n';
        if (write(pipes[1], &written, 1) == 1)
            pause();
        _exit(1);
    }
    char written = 'n';
    QCOMPARE(read(pipes[0], &written, 1), ssize_t{ 1 });
    QCOMPARE(written, 'y');
    QCOMPARE(m_folder->files().size(), 1);
    QVERIFY(m_folder->leftBehind().empty());
    const QByteArray journal = m_folder->journals() + QFile::encodeName(m_folder->files().at(0));
    TextDocument document;
    QCOMPARE(restore(journal, document).outcome, Outcome::InUse);
    kill(child, SIGKILL);
    QCOMPARE(waitpid(child, nullptr, 0), child);
    close(pipes[0]);
    close(pipes[1]);
    QCOMPARE(m_folder->leftBehind().size(), 1U);
    QCOMPARE(restore(journal, document).outcome, Outcome::New);
    QCOMPARE(document.store().text(), u"its text"_s);
}

/// A link that somebody put there leads nowhere.
void LeftBehindTest::linksAreNotFollowed()
{
    leave(u"text"_s);
    const QByteArray journal = m_folder->leftBehind().at(0).journal;
    const QByteArray moved = QFile::encodeName(m_folder->documents().path()) + "moved";
    QCOMPARE(rename(journal.constData(), moved.constData()), 0);
    QCOMPARE(symlink(moved.constData(), journal.constData()), 0);
    QVERIFY(m_folder->leftBehind().empty());
    QVERIFY(!ClaimedJournal::claim(journal, FileCalls::system()));
}

/// Its program may remove it between the opening and the lock.
void LeftBehindTest::journalThatGoesMeanwhileIsNone()
{
    leave(u"text"_s);
    const QByteArray journal = m_folder->leftBehind().at(0).journal;
    FileCalls calls = FileCalls::system();
    calls.flock = [&journal](int file, int operation) {
        ::unlink(journal.constData());
        return ::flock(file, operation);
    };
    QVERIFY(!ClaimedJournal::claim(journal, calls));
}

/// Another program, or this one in a thread, may look what there is when somebody restores.
void LeftBehindTest::whoLooksIsWaitedFor()
{
    leave(u"text"_s);
    const QByteArray journal = m_folder->leftBehind().at(0).journal;
    int looker = openUnused(journal, LOCK_SH, FileCalls::system());
    QVERIFY(looker != -1);
    int refusals = 0;
    FileCalls calls = FileCalls::system();
    calls.flock = [&](int file, int operation) {
        const int result = ::flock(file, operation);
        refusals += result == 0 ? 0 : 1;
        if (refusals == 3 && looker != -1)
            ::close(std::exchange(looker, -1));
        return result;
    };
    QVERIFY(ClaimedJournal::claim(journal, calls));
    QCOMPARE(looker, -1);
}

void LeftBehindTest::whoRestoresIsNotWaitedFor()
{
    leave(u"text"_s);
    const QByteArray journal = m_folder->leftBehind().at(0).journal;
    const ClaimedJournal claimed = ClaimedJournal::claim(journal, FileCalls::system());
    QVERIFY(claimed);
    int asked = 0;
    FileCalls calls = FileCalls::system();
    calls.flock = [&asked](int file, int operation) {
        ++asked;
        return ::flock(file, operation);
    };
    QVERIFY(!ClaimedJournal::claim(journal, calls));
    QCOMPARE(asked, 2);
}

void LeftBehindTest::failingDiscardIsTold()
{
    leave(u"text"_s);
    const LeftBehind found = m_folder->leftBehind().at(0);
    FileCalls calls = FileCalls::system();
    calls.unlink = [](const char *) {
        errno = EACCES;
        return -1;
    };
    RecoveryJournals journals(m_folder->journals(), calls);
    QVERIFY(!journals.discard(found));
    QCOMPARE(m_folder->leftBehind().size(), 1U);
}

/// As the other user of a folder that two share sees it.
void LeftBehindTest::filesOfOthersAreLeftAlone()
{
    leave(u"text"_s);
    makeFile(".unfinished-a", "Marlo");
    const QStringList files = m_folder->files();
    const LeftBehind found = m_folder->leftBehind().at(0);
    makeFile(".unfinished-a", "Marlo"); // which that has cleared
    FileCalls calls = FileCalls::system();
    calls.fstat = [](int file, struct stat *info) {
        const int result = ::fstat(file, info);
        info->st_uid += 1;
        return result;
    };
    RecoveryJournals others(m_folder->journals(), calls);
    QSignalSpy looked(&others, &RecoveryJournals::foundLeftBehind);
    others.lookForLeftBehind();
    QTRY_COMPARE(looked.size(), 1);
    QCOMPARE(looked[0][0].value<std::vector<LeftBehind>>().size(), 0U);
    TextDocument document;
    QCOMPARE(restore(found.journal, document, calls).outcome, Outcome::InUse);
    QVERIFY(!others.discard(found));
    QCOMPARE(m_folder->files(), files);
}

void LeftBehindTest::textIsKnownByItsUnitsNotItsLeaves()
{
    TextStore one;
    TextStore other;
    const QString text = QString(9000, u'a') + u"\u3042"_s + QString(3000, u'b');
    one.replace({}, 0, text);
    for (qsizetype i = text.size() - 1; i >= 0; --i)
        other.replace({}, 0, QStringView(text).sliced(i, 1));
    QCOMPARE(textHashOf(one, text.size()), textHashOf(other, text.size()));
    QCOMPARE(textHashOf(one, 5000), textHashOf(other, 5000));
    other.replace(Offset(11000), 1, u"c");
    QVERIFY(textHashOf(one, text.size()) != textHashOf(other, text.size()));
    QCOMPARE(textHashOf(one, 11000), textHashOf(other, 11000));
}

/// Designations that say nothing, one after the other, are one spelling of any length.
void LeftBehindTest::longSpellingComesBack()
{
    const QByteArray content = "a" + QByteArray("\x1b$B\x1b(B").repeated(60000) + "b\n";
    QVERIFY(m_folder->documents().write(u"file"_s, content));
    {
        Run run(*m_folder);
        QVERIFY(!run.document.load(m_folder->documents().path(), u"file"_s, CharCode::Jis, {}));
        QCOMPARE(run.text(), u"ab\n"_s);
        run.document.replace({}, 0, u"x");
        QVERIFY(run.pause());
    }
    QVERIFY(m_folder->documents().write(u"file"_s, "another"));
    TextDocument document;
    QCOMPARE(restore(m_folder->leftBehind().at(0).journal, document).outcome, Outcome::New);
    QCOMPARE(
        document.save(m_folder->documents().path(), u"restored"_s).outcome, SaveResult::Outcome::Written);
    QCOMPARE(m_folder->documents().read(u"restored"_s), "x" + content);
}

REGISTER_TEST(runCoreTest<LeftBehindTest>)
#include "leftbehind_test.moc"
