#include "tests/recovery/recoveryfolder.h"
#include "tests/testprogram.h"

#include <atomic>
#include <new>

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using Outcome = Restored::Outcome;

/// From typing to the text that comes back.
class RecoveryJournalsTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<RecoveryFolder>(); }

    void uneditedDocumentHasNoJournal();
    void neverSavedTextComesBack();
    void editsOfAFileComeBackAndUndoLeadsToIt();
    void writesWhenTypingPauses();
    void writesWhileTypingGoesOn();
    void savingEndsTheJournal();
    void savingEndsTheJournalAtOnce();
    void growthOfTheFileIsNoEdit();
    void utf16ComesBackAsItIsSaved_data();
    void utf16ComesBackAsItIsSaved();
    void keptUtf16StaysSoWithoutItsFile();
    void journalThatWasRemovedIsMadeAgain();
    void undoingAllEndsTheJournal();
    void closingEndsTheJournal();
    void substitutedTextIsKept();
    void textIsKeptForEveryReason();
    void changedFileGivesADocumentNeverSaved_data();
    void changedFileGivesADocumentNeverSaved();
    void fileIsKnownByItsTextNotItsTimes_data();
    void fileIsKnownByItsTextNotItsTimes();
    void goneFileGivesADocumentNeverSaved();
    void restoringSupersedesTheJournal();
    void discardedJournalIsGone();
    void journalInUseIsNobodyElses();
    void foldersAndFilesArePrivate();
    void anotherLoadBeginsAnew();
    void textSetAsAWholeComesBack();
    void endDuringALoadKeepsWhatWasWritten();
    void looksAgainWhenThereIsMemory();

private:
    QString path() const { return m_folder->documents().path(); }
    void writeFile(const QByteArray &content) const
    {
        QVERIFY(m_folder->documents().write(u"file.txt"_s, content));
    }
    void load(TextDocument &document, const QByteArray &content) const
    {
        writeFile(content);
        QVERIFY(!document.load(path(), u"file.txt"_s, {}, { CharCode::Utf8, ReturnCode::Lf }));
    }
    std::unique_ptr<RecoveryFolder> m_folder;
};

void RecoveryJournalsTest::uneditedDocumentHasNoJournal()
{
    Run run(*m_folder);
    load(run.document, "text\n");
    QVERIFY(run.pause());
    QCOMPARE(m_folder->files(), QStringList());
}

void RecoveryJournalsTest::neverSavedTextComesBack()
{
    {
        Run run(*m_folder);
        run.document.replace(Offset(0), 0, u"caf\u00e9 \u2013 \u20ac");
        run.place = { { Offset(3), true }, Offset(1), Offset(2), 40 };
        QVERIFY(run.pause());
    }
    const auto found = m_folder->leftBehind();
    QCOMPARE(found.size(), 1U);
    QCOMPARE(found[0].path, QString());
    QCOMPARE(found[0].name, u"new"_s);
    QCOMPARE(found[0].length, 8);
    QVERIFY(!found[0].isFileUnchanged);
    Run run(*m_folder);
    const Restored restored = run.journals.restore(found[0], run.document);
    QCOMPARE(restored.outcome, Outcome::New);
    QCOMPARE(restored.place, (ViewPlace{ { Offset(3), true }, Offset(1), Offset(2), 40 }));
    QCOMPARE(run.text(), u"caf\u00e9 \u2013 \u20ac"_s);
    QVERIFY(run.document.isEdited());
    QCOMPARE(run.document.path(), QString());
    QCOMPARE(run.document.name(), u"new"_s);
    QCOMPARE(run.document.charCode(), CharCode::Utf8);
}

void RecoveryJournalsTest::editsOfAFileComeBackAndUndoLeadsToIt()
{
    {
        Run run(*m_folder);
        load(run.document, "one\r\ntwo\r\nthree\r\n");
        run.document.replace(Offset(4), 3, u"2");
        QVERIFY(run.pause());
        run.document.replace(Offset(0), 0, u"zero\n");
        run.document.replace(run.document.store().end(), 0, u"four");
        QVERIFY(run.pause());
    }
    const auto found = m_folder->leftBehind();
    QCOMPARE(found.size(), 1U);
    QCOMPARE(found[0].path, path());
    QCOMPARE(found[0].name, u"file.txt"_s);
    QVERIFY(found[0].isFileUnchanged);
    Run run(*m_folder);
    QCOMPARE(run.journals.restore(found[0], run.document).outcome, Outcome::Edited);
    QCOMPARE(run.text(), u"zero\none\n2\nthree\nfour"_s);
    QCOMPARE(run.document.returnCode(), ReturnCode::CrLf);
    QVERIFY(run.document.isEdited());
    run.document.undo();
    QCOMPARE(run.text(), u"one\ntwo\nthree\n"_s);
    QVERIFY(!run.document.isEdited());
}

void RecoveryJournalsTest::writesWhenTypingPauses()
{
    Run run(*m_folder);
    run.document.replace(Offset(0), 0, u"a");
    m_folder->now += WriteSchedule::pause - 1;
    run.journals.writeDue();
    QTRY_COMPARE(m_folder->leftBehind().size(), 0U);
    QCOMPARE(m_folder->files(), QStringList());
    m_folder->now += 1;
    run.journals.writeDue();
    QTRY_COMPARE(m_folder->files().filter(u".journal"_s).size(), 1);
}

void RecoveryJournalsTest::writesWhileTypingGoesOn()
{
    Run run(*m_folder);
    const qint64 start = m_folder->now;
    while (m_folder->now < start + WriteSchedule::longestWait) {
        run.document.replace(Offset(0), 0, u"a");
        run.journals.writeDue();
        QCOMPARE(m_folder->files(), QStringList());
        m_folder->now += 100;
    }
    run.journals.writeDue();
    QTRY_COMPARE(m_folder->files().filter(u".journal"_s).size(), 1);
}

void RecoveryJournalsTest::savingEndsTheJournal()
{
    Run run(*m_folder);
    load(run.document, "text\n");
    run.document.replace(Offset(0), 0, u"a");
    QVERIFY(run.pause());
    QCOMPARE(m_folder->files().size(), 1);
    QCOMPARE(run.document.save(path(), u"file.txt"_s).outcome, SaveResult::Outcome::Written);
    QVERIFY(run.pause());
    QCOMPARE(m_folder->files(), QStringList());
    run.document.replace(Offset(0), 0, u"b");
    QVERIFY(run.pause());
    QCOMPARE(m_folder->files().size(), 1);
}

/// Who is killed right behind a save finds nothing that was not saved.
void RecoveryJournalsTest::savingEndsTheJournalAtOnce()
{
    Run run(*m_folder);
    load(run.document, "text\n");
    run.document.replace(Offset(0), 0, u"a");
    QVERIFY(run.pause());
    QCOMPARE(m_folder->files().size(), 1);
    run.document.replace(Offset(0), 0, u"b");
    QCOMPARE(run.document.save(path(), u"file.txt"_s).outcome, SaveResult::Outcome::Written);
    QTRY_COMPARE(m_folder->files(), QStringList());
}

/// A log that is read on: what is edited then is edited in the file as it is.
void RecoveryJournalsTest::growthOfTheFileIsNoEdit()
{
    {
        Run run(*m_folder);
        load(run.document, "one\n");
        writeFile("one\ntwo\n");
        QVERIFY(run.document.readGrowth());
        QVERIFY(run.pause());
        QCOMPARE(m_folder->files(), QStringList());
        run.document.replace(Offset(0), 0, u"a");
        QVERIFY(run.pause());
    }
    Run run(*m_folder);
    QCOMPARE(run.journals.restore(m_folder->leftBehind().at(0), run.document).outcome, Outcome::Edited);
    QCOMPARE(run.text(), u"aone\ntwo\n"_s);
    run.document.undo();
    QCOMPARE(run.text(), u"one\ntwo\n"_s);
    QVERIFY(!run.document.isEdited());
}

void RecoveryJournalsTest::utf16ComesBackAsItIsSaved_data()
{
    QTest::addColumn<bool>("isKept");
    QTest::addColumn<bool>("isSaved");
    QTest::addColumn<QByteArray>("written");
    const QByteArray utf16("\xFE\xFF\0b\0a\0\xE9\0\r\0\n\x0A\x0D", 14);
    QTest::newRow("read only") << false << false << QByteArray("ba\xC3\xA9\r\n\xE0\xA8\x8D");
    QTest::newRow("kept") << true << false << utf16;
    QTest::newRow("saved as UTF-8") << false << true << QByteArray("ba\xC3\xA9\r\n\xE0\xA8\x8D");
    QTest::newRow("saved as UTF-16") << true << true << utf16;
}

/// The bytes of one of its characters are those of a line end.
void RecoveryJournalsTest::utf16ComesBackAsItIsSaved()
{
    QFETCH(bool, isKept);
    QFETCH(bool, isSaved);
    {
        Run run(*m_folder);
        writeFile(QByteArray("\xFE\xFF\0a\0\xE9\0\r\0\n\x0A\x0D", 12));
        TextStore text;
        QVERIFY(!run.document.readUtf16(path(), u"file.txt"_s, { true, true }, {}, text));
        run.document.setText(std::move(text));
        if (isKept)
            run.document.keepUtf16();
        if (isSaved)
            QCOMPARE(run.document.save(path(), u"file.txt"_s).outcome, SaveResult::Outcome::Written);
        run.document.replace(Offset(0), 0, u"b");
        QVERIFY(run.pause());
    }
    Run run(*m_folder);
    QCOMPARE(run.journals.restore(m_folder->leftBehind().at(0), run.document).outcome, Outcome::Edited);
    QCOMPARE(run.text(), u"ba\u00e9\n\u0a0d"_s);
    QCOMPARE(run.document.returnCode(), ReturnCode::CrLf);
    QCOMPARE(run.document.save(path(), u"file.txt"_s).outcome, SaveResult::Outcome::Written);
    QTEST(m_folder->documents().read(u"file.txt"_s), "written");
}

/// Again and again, and where Save As is asked for no other code.
void RecoveryJournalsTest::keptUtf16StaysSoWithoutItsFile()
{
    {
        Run run(*m_folder);
        writeFile(QByteArray("\xFE\xFF\0a\0\xE9\0\r\0\n", 10));
        TextStore text;
        QVERIFY(!run.document.readUtf16(path(), u"file.txt"_s, { true, true }, {}, text));
        run.document.setText(std::move(text));
        run.document.keepUtf16();
        run.document.replace(Offset(0), 0, u"b");
        QVERIFY(run.pause());
    }
    writeFile("of another program\n");
    for (int start = 0; start < 2; ++start) {
        Run run(*m_folder);
        QCOMPARE(run.journals.restore(m_folder->leftBehind().at(0), run.document).outcome, Outcome::New);
        QVERIFY(run.document.isUtf16());
        QVERIFY(run.pause());
        if (start == 0)
            continue;
        QCOMPARE(run.document.save(path(), u"other.txt"_s).outcome, SaveResult::Outcome::Written);
    }
    QCOMPARE(m_folder->documents().read(u"other.txt"_s), QByteArray("\xFE\xFF\0b\0a\0\xE9\0\r\0\n", 12));
}

/// As somebody does who cleans up.
void RecoveryJournalsTest::journalThatWasRemovedIsMadeAgain()
{
    {
        Run run(*m_folder);
        load(run.document, "text\n");
        run.document.replace(Offset(0), 0, u"a");
        QVERIFY(run.pause());
        QVERIFY(QDir(QFile::decodeName(m_folder->journals())).removeRecursively());
        run.document.replace(Offset(0), 0, u"b");
        QVERIFY(run.pause());
        QCOMPARE(run.journals.failure(), 0);
    }
    const auto found = m_folder->leftBehind();
    QCOMPARE(found.size(), 1U);
    Run run(*m_folder);
    QCOMPARE(run.journals.restore(found[0], run.document).outcome, Outcome::Edited);
    QCOMPARE(run.text(), u"batext\n"_s);
}

void RecoveryJournalsTest::undoingAllEndsTheJournal()
{
    {
        Run run(*m_folder);
        load(run.document, "text\n");
        run.document.replace(Offset(0), 0, u"a");
        QVERIFY(run.pause());
        run.document.undo();
        QVERIFY(run.pause());
        QCOMPARE(m_folder->files(), QStringList());
        run.document.redo();
        QVERIFY(run.pause());
    }
    Run run(*m_folder);
    QCOMPARE(run.journals.restore(m_folder->leftBehind().at(0), run.document).outcome, Outcome::Edited);
    QCOMPARE(run.text(), u"atext\n"_s);
}

void RecoveryJournalsTest::closingEndsTheJournal()
{
    Run run(*m_folder);
    run.document.replace(Offset(0), 0, u"a");
    QVERIFY(run.pause());
    QCOMPARE(m_folder->files().size(), 1);
    run.journals.end(run.document);
    QVERIFY(run.journals.flush(std::chrono::minutes(1)));
    QCOMPARE(m_folder->files(), QStringList());
}

/// A character that the file could not hold stays in the journal until the user has been told.
void RecoveryJournalsTest::substitutedTextIsKept()
{
    {
        Run run(*m_folder);
        run.document.setCodes({ CharCode::ShiftJis, ReturnCode::Lf });
        run.document.replace(Offset(0), 0, u"5 \u20ac");
        QVERIFY(run.pause());
        QCOMPARE(run.document.save(path(), u"file.txt"_s).outcome, SaveResult::Outcome::Written);
        run.journals.keep(run.document, KeptFor::Substitution);
        QCOMPARE(m_folder->files().size(), 1);
        QVERIFY(run.pause());
        QCOMPARE(m_folder->files().size(), 1);
    }
    QCOMPARE(m_folder->documents().read(u"file.txt"_s), "5 ?");
    const auto found = m_folder->leftBehind();
    QCOMPARE(found.at(0).name, u"file.txt"_s);
    Run run(*m_folder);
    QCOMPARE(run.journals.restore(found.at(0), run.document).outcome, Outcome::New);
    QCOMPARE(run.text(), u"5 \u20ac"_s);
    QVERIFY(run.pause());
    QCOMPARE(run.document.save(path(), u"file.txt"_s).outcome, SaveResult::Outcome::Written);
    run.journals.keep(run.document, KeptFor::Substitution);
    run.journals.endKeeping(run.document, KeptFor::Substitution);
    QVERIFY(run.pause());
    QCOMPARE(m_folder->files(), QStringList());
}

void RecoveryJournalsTest::textIsKeptForEveryReason()
{
    Run run(*m_folder);
    load(run.document, "text\n");
    run.journals.keep(run.document, KeptFor::Substitution);
    run.journals.keep(run.document, KeptFor::FileLost);
    QVERIFY(run.pause());
    QCOMPARE(m_folder->files().size(), 1);
    run.journals.endKeeping(run.document, KeptFor::Substitution);
    QVERIFY(run.pause());
    QCOMPARE(m_folder->files().size(), 1);
    run.journals.endKeeping(run.document, KeptFor::FileLost);
    QVERIFY(run.pause());
    QCOMPARE(m_folder->files(), QStringList());
}

void RecoveryJournalsTest::changedFileGivesADocumentNeverSaved_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("of another length") << QByteArray("another program's\n");
    QTest::newRow("of the same length") << QByteArray("two\none\n");
}

void RecoveryJournalsTest::changedFileGivesADocumentNeverSaved()
{
    QFETCH(QByteArray, content);
    {
        Run run(*m_folder);
        load(run.document, "one\ntwo\n");
        run.document.replace(Offset(3), 0, u"!");
        QVERIFY(run.pause());
    }
    writeFile(content);
    const timespec later[] = { { ::time(nullptr) + 1, 0 }, { ::time(nullptr) + 1, 0 } };
    QCOMPARE(utimensat(AT_FDCWD, QFile::encodeName(path() + u"file.txt"_s).constData(), later, 0), 0);
    const auto found = m_folder->leftBehind();
    QVERIFY(!found.at(0).isFileUnchanged);
    Run run(*m_folder);
    const Restored restored = run.journals.restore(found[0], run.document);
    QCOMPARE(restored.outcome, Outcome::New);
    QCOMPARE(restored.path, path());
    QCOMPARE(run.text(), u"one!\ntwo\n"_s);
    QCOMPARE(run.document.path(), QString());
    QCOMPARE(run.document.name(), u"file.txt"_s);
    QVERIFY(run.document.isEdited());
    QCOMPARE(m_folder->documents().read(u"file.txt"_s), content);
}

void RecoveryJournalsTest::fileIsKnownByItsTextNotItsTimes_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<qint64>("later");
    QTest::addColumn<Outcome>("outcome");
    QTest::newRow("touched") << QByteArray("one\ntwo\n") << qint64{ 1 } << Outcome::Edited;
    QTest::newRow("other text of the same size and time")
        << QByteArray("two\none\n") << qint64{ 0 } << Outcome::New;
}

void RecoveryJournalsTest::fileIsKnownByItsTextNotItsTimes()
{
    QFETCH(QByteArray, content);
    QFETCH(qint64, later);
    QFETCH(Outcome, outcome);
    const QByteArray name = QFile::encodeName(path() + u"file.txt"_s);
    struct stat before = {};
    {
        Run run(*m_folder);
        load(run.document, "one\ntwo\n");
        QCOMPARE(::stat(name.constData(), &before), 0);
        run.document.replace(Offset(3), 0, u"!");
        QVERIFY(run.pause());
    }
    writeFile(content);
    before.st_mtim.tv_sec += later;
    const timespec times[] = { before.st_mtim, before.st_mtim };
    QCOMPARE(utimensat(AT_FDCWD, name.constData(), times, 0), 0);
    Run run(*m_folder);
    QCOMPARE(run.journals.restore(m_folder->leftBehind().at(0), run.document).outcome, outcome);
    QCOMPARE(run.text(), u"one!\ntwo\n"_s);
}

void RecoveryJournalsTest::goneFileGivesADocumentNeverSaved()
{
    {
        Run run(*m_folder);
        load(run.document, "one\ntwo\n");
        run.document.replace(Offset(0), 3, u"");
        QVERIFY(run.pause());
    }
    QVERIFY(QFile::remove(path() + u"file.txt"_s));
    Run run(*m_folder);
    QCOMPARE(run.journals.restore(m_folder->leftBehind().at(0), run.document).outcome, Outcome::New);
    QCOMPARE(run.text(), u"\ntwo\n"_s);
    QCOMPARE(run.document.path(), QString());
}

void RecoveryJournalsTest::restoringSupersedesTheJournal()
{
    {
        Run run(*m_folder);
        run.document.replace(Offset(0), 0, u"text");
        QVERIFY(run.pause());
    }
    const QStringList before = m_folder->files();
    {
        Run run(*m_folder);
        const auto found = m_folder->leftBehind();
        QCOMPARE(run.journals.restore(found.at(0), run.document).outcome, Outcome::New);
        QCOMPARE(m_folder->files(), before);
        QVERIFY(run.pause());
        QCOMPARE(m_folder->files().size(), 1);
        QVERIFY(m_folder->files() != before);
    }
    Run run(*m_folder);
    QCOMPARE(run.journals.restore(m_folder->leftBehind().at(0), run.document).outcome, Outcome::New);
    QCOMPARE(run.text(), u"text"_s);
}

void RecoveryJournalsTest::discardedJournalIsGone()
{
    {
        Run run(*m_folder);
        run.document.replace(Offset(0), 0, u"text");
        QVERIFY(run.pause());
    }
    const Run run(*m_folder);
    QVERIFY(RecoveryJournals(m_folder->journals()).discard(m_folder->leftBehind().at(0)));
    QCOMPARE(m_folder->files(), QStringList());
}

void RecoveryJournalsTest::journalInUseIsNobodyElses()
{
    Run one(*m_folder);
    one.document.replace(Offset(0), 0, u"text");
    QVERIFY(one.pause());
    QCOMPARE(m_folder->leftBehind().size(), 0U);
    Run other(*m_folder);
    const LeftBehind named{ m_folder->journals() + QFile::encodeName(m_folder->files().at(0)), {}, {} };
    QCOMPARE(other.journals.restore(named, other.document).outcome, Outcome::InUse);
    QVERIFY(!other.journals.discard(named));
    QCOMPARE(m_folder->files().size(), 1);
}

void RecoveryJournalsTest::foldersAndFilesArePrivate()
{
    const mode_t mask = umask(0);
    Run run(*m_folder);
    run.document.replace(Offset(0), 0, u"text");
    QVERIFY(run.pause());
    umask(mask);
    struct stat info = {};
    QCOMPARE(stat(m_folder->journals().constData(), &info), 0);
    QCOMPARE(info.st_mode & 07777, mode_t{ 0700 });
    const QByteArray file = m_folder->journals() + QFile::encodeName(m_folder->files().at(0));
    QCOMPARE(stat(file.constData(), &info), 0);
    QCOMPARE(info.st_mode & 07777, mode_t{ 0600 });
}

void RecoveryJournalsTest::anotherLoadBeginsAnew()
{
    Run run(*m_folder);
    load(run.document, "one\n");
    run.document.replace(Offset(0), 0, u"a");
    QVERIFY(run.pause());
    load(run.document, "two\n");
    QVERIFY(run.pause());
    QCOMPARE(m_folder->files(), QStringList());
}

void RecoveryJournalsTest::textSetAsAWholeComesBack()
{
    {
        Run run(*m_folder);
        load(run.document, "one\n");
        TextStore text;
        text.replace(Offset(0), 0, u"another text");
        run.document.setText(std::move(text));
        QVERIFY(run.pause());
    }
    Run run(*m_folder);
    QCOMPARE(run.journals.restore(m_folder->leftBehind().at(0), run.document).outcome, Outcome::New);
    QCOMPARE(run.text(), u"another text"_s);
}

/// There is no text then that could be written.
void RecoveryJournalsTest::endDuringALoadKeepsWhatWasWritten()
{
    {
        Run run(*m_folder);
        load(run.document, "old\n");
        run.document.replace(Offset(0), 0, u"kept ");
        QVERIFY(run.pause());
        run.document.replace(Offset(0), 0, u"lost ");
        connect(&run.document, &TextDocument::aboutToReplace, this,
            [&run] { run.journals.flush(std::chrono::seconds(10)); });
        load(run.document, "old\n");
        QCOMPARE(run.text(), u"old\n"_s);
    }
    const auto found = m_folder->leftBehind();
    QCOMPARE(found.size(), 1U);
    Run run(*m_folder);
    run.journals.restore(found[0], run.document);
    QCOMPARE(run.text(), u"kept old\n"_s);
}

/// Nothing is said until then: an offer to restore stays.
void RecoveryJournalsTest::looksAgainWhenThereIsMemory()
{
    {
        Run run(*m_folder);
        run.document.replace(Offset(0), 0, u"text"_s);
        QVERIFY(run.pause());
    }
    FileCalls calls = FileCalls::system();
    calls.opendir = [isFirst = std::make_shared<std::atomic<bool>>(true)](const char *name) {
        if (isFirst->exchange(false))
            throw std::bad_alloc();
        return FileCalls::system().opendir(name);
    };
    RecoveryJournals journals(m_folder->journals(), calls);
    QList<size_t> found;
    connect(&journals, &RecoveryJournals::foundLeftBehind, this,
        [&found](const std::vector<LeftBehind> &texts) { found << texts.size(); });
    journals.lookForLeftBehind();
    QTRY_COMPARE(found, QList<size_t>{ 1 });
}

REGISTER_TEST(runCoreTest<RecoveryJournalsTest>)
#include "recoveryjournals_test.moc"
