#include "recovery/journalreader.h"
#include "recovery/journaltext.h"
#include "recovery/journalwriter.h"
#include "tests/files/quickcalls.h"
#include "tests/recovery/journalbytes.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;
using Progress = JournalWriter::Progress;

namespace {

/// A document whose journal is written step by step.
class Written : public QObject {
public:
    explicit Written(FileCalls calls = FileCalls::system())
        : m_calls(std::move(calls))
        , writer(m_journals, m_calls)
    {
        connect(&document, &TextDocument::changed, this,
            [this](const TextChange &change) { m_text.note(change); });
        m_text.begin(document, WholeIn::NoFile);
    }
    /// The document is a file that was read.
    bool load(const QByteArray &bytes)
    {
        const FileCodes codes{ CharCode::Utf8, ReturnCode::Lf };
        if (!folder.documents().write(fileName, bytes)
            || document.load(folder.documents().path(), fileName, CharCode::Utf8, codes))
            return false;
        m_text.begin(document, WholeIn::FileRead);
        return true;
    }

    void begin()
    {
        JournalState state;
        state.length = document.store().length();
        const auto before = std::exchange(m_write, m_text.next(document, state));
        writer.begin(*m_write);
    }
    Progress finish()
    {
        Progress progress = Progress::More;
        while (progress == Progress::More)
            progress = writer.step();
        return progress;
    }
    Progress write()
    {
        begin();
        return finish();
    }

    QByteArray bytes() const { return JournalBytes::only(folder); }
    /// What would come back if the program were killed now.
    QString killedNow() const
    {
        RecoveryFolder copy;
        TextDocument restored;
        return restore(JournalBytes::put(copy, bytes()).journal, restored).isRestored()
            ? restored.store().text()
            : u"(nothing)"_s;
    }
    QString text() const { return document.store().text(); }

    RecoveryFolder folder;
    TextDocument document;

private:
    const FileCalls m_calls;
    JournalText m_text;
    std::shared_ptr<const JournalWrite> m_write;
    const QByteArray m_journals = folder.journals();

public:
    JournalWriter writer; ///< reads what was begun last
};

/// The types of a journal's records, each once where several follow one another, as letters.
QString recordsOf(const QByteArray &journal)
{
    const RecoveryFolder folder;
    QFile file(QFile::decodeName(JournalBytes::put(folder, journal).journal));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    JournalReader reader(file.handle(), FileCalls::system());
    QString types;
    for (auto record = reader.next(); record; record = reader.next()) {
        const QChar type = u"?btsec"[int(record->type)];
        if (!types.endsWith(type))
            types += type;
    }
    return types;
}

/// A disk that loses what a failing sync did not bring there, as disks do, though the file goes on showing
/// it until it is read anew.
class ForgetfulDisk {
public:
    FileCalls calls()
    {
        FileCalls calls = quickCalls();
        calls.pwrite = [this](int file, const void *from, size_t size, off_t offset) {
            m_unsynced << std::pair(offset, size);
            return ::pwrite(file, from, size, offset);
        };
        calls.fsync = [this](int file) {
            const auto unsynced = std::exchange(m_unsynced, {});
            if (!isFailing)
                return 0;
            for (const auto &[offset, size] : unsynced)
                ::pwrite(file, QByteArray(qsizetype(size), '\0').constData(), size, offset);
            errno = EIO;
            return -1;
        };
        return calls;
    }
    bool isFailing = false;

private:
    QList<std::pair<off_t, size_t>> m_unsynced;
};

} // namespace

/// The journal of one document, step by step.
class JournalWriterTest : public QObject {
    Q_OBJECT

private slots:
    void writesStandOneBehindTheOther();
    void baseIsKeptBeforeTheEdits();
    void longBaseIsReadAtLeisure();
    void longWriteIsManySteps();
    void textThatComesBackIsNotWrittenAgain();
    void oldJournalStaysUntilTheNewOneIsWhole();
    void newJournalIsOnTheDiskBeforeItHasItsName();
    void grownJournalIsMadeAnew();
    void whatFailedIsNotBuiltUpon();
    void whatIsGivenUpIsGone();
    void removedIsGone();
};

void JournalWriterTest::writesStandOneBehindTheOther()
{
    Written journal;
    journal.document.replace(Offset(0), 0, u"one");
    QCOMPARE(journal.write(), Progress::Done);
    QCOMPARE(recordsOf(journal.bytes()), u"bec"_s);
    QCOMPARE(journal.killedNow(), u"one"_s);
    const QByteArray before = journal.bytes();
    journal.document.replace(Offset(3), 0, u" two");
    QCOMPARE(journal.write(), Progress::Done);
    QVERIFY(journal.bytes().startsWith(before));
    QCOMPARE(recordsOf(journal.bytes()), u"becec"_s);
    QCOMPARE(journal.killedNow(), u"one two"_s);
    QVERIFY(!journal.writer.hasLeisureWork());
}

/// From the first moment on the text comes back whatever becomes of the file.
void JournalWriterTest::baseIsKeptBeforeTheEdits()
{
    Written journal;
    QVERIFY(journal.load("one\ntwo\n"));
    journal.document.replace(Offset(3), 0, u"!");
    QCOMPARE(journal.write(), Progress::Done);
    QCOMPARE(recordsOf(journal.bytes()), u"btsec"_s);
    QVERIFY(!journal.writer.hasLeisureWork());
    QVERIFY(journal.folder.documents().write(fileName, "of another program"));
    QCOMPARE(journal.killedNow(), u"one!\ntwo\n"_s);
}

/// It is only known again, not kept.
void JournalWriterTest::longBaseIsReadAtLeisure()
{
    Written journal;
    QVERIFY(journal.load(QByteArray(BaseReading::mostKept + 1, 'x')));
    QVERIFY(!journal.writer.hasLeisureWork());
    journal.document.replace(Offset(0), 0, u"a");
    QCOMPARE(journal.write(), Progress::Done);
    QCOMPARE(journal.killedNow(), journal.text());
    while (journal.writer.hasLeisureWork())
        QVERIFY(journal.writer.stepAtLeisure() != Progress::Failed);
    QVERIFY(recordsOf(journal.bytes()).contains(u's'));
    QVERIFY(!recordsOf(journal.bytes()).contains(u't'));
    QVERIFY(journal.bytes().size() < 1000);
    journal.document.replace(Offset(0), 0, u"b");
    QCOMPARE(journal.write(), Progress::Done);
    QCOMPARE(journal.killedNow(), journal.text());
}

/// So that other documents need not wait.
void JournalWriterTest::longWriteIsManySteps()
{
    constexpr int megabytes = 3;
    qint64 writtenInStep = 0, most = 0;
    FileCalls calls = quickCalls();
    calls.pwrite = [&writtenInStep](int file, const void *from, size_t size, off_t offset) {
        writtenInStep += qint64(size);
        return ::pwrite(file, from, size, offset);
    };
    Written journal(calls);
    journal.document.replace(Offset(0), 0, QString(megabytes << 20, u'x'));
    journal.begin();
    int steps = 0;
    for (Progress progress = Progress::More; progress == Progress::More; ++steps) {
        writtenInStep = 0;
        progress = journal.writer.step();
        QVERIFY(progress != Progress::Failed);
        most = qMax(most, writtenInStep);
    }
    QVERIFY2(most < 2 << 20, qPrintable(QString::number(most)));
    QVERIFY(steps >= megabytes);
    QVERIFY(journal.killedNow() == journal.text());
}

void JournalWriterTest::textThatComesBackIsNotWrittenAgain()
{
    Written journal;
    QVERIFY(journal.load(QByteArray("a line of text\n").repeated(200'000)));
    const TextPiece all = journal.document.store().piece({}, journal.document.store().length());
    journal.document.replace(Offset(0), 1, u"A");
    QCOMPARE(journal.write(), Progress::Done);
    const qsizetype before = journal.bytes().size();
    journal.document.replace(Offset(0), journal.document.store().length(), u"short");
    QCOMPARE(journal.write(), Progress::Done);
    journal.document.replace(Offset(0), 5, all);
    QCOMPARE(journal.write(), Progress::Done);
    QVERIFY(journal.bytes().size() - before < 1000);
    QVERIFY(journal.killedNow() == journal.text());
}

void JournalWriterTest::oldJournalStaysUntilTheNewOneIsWhole()
{
    ForgetfulDisk disk;
    Written journal(disk.calls());
    QVERIFY(journal.load("text\n"));
    journal.document.replace(Offset(0), 0, u"a");
    QCOMPARE(journal.write(), Progress::Done);
    disk.isFailing = true;
    journal.document.replace(Offset(0), 0, QString(2 << 20, u'b'));
    QCOMPARE(journal.write(), Progress::Failed);
    disk.isFailing = false;
    journal.begin();
    const QByteArray torn = journal.bytes();
    QCOMPARE(journal.killedNow(), u"atext\n"_s);
    int steps = 0;
    for (Progress progress = Progress::More; progress == Progress::More; ++steps) {
        QVERIFY(journal.bytes() == torn);
        progress = journal.writer.step();
    }
    QVERIFY(steps > 2);
    QVERIFY(journal.killedNow() == journal.text());
    QCOMPARE(journal.folder.files().size(), 1);
}

void JournalWriterTest::newJournalIsOnTheDiskBeforeItHasItsName()
{
    QStringList calls;
    FileCalls noting = FileCalls::system();
    noting.pwrite = [&calls](int file, const void *from, size_t size, off_t offset) {
        calls << u"write"_s;
        return ::pwrite(file, from, size, offset);
    };
    noting.fsync = [&calls](int file) {
        struct stat info = {};
        calls << (::fstat(file, &info) == 0 && S_ISDIR(info.st_mode) ? u"sync folder"_s : u"sync"_s);
        return 0;
    };
    noting.rename = [&calls](const char *from, const char *to) {
        calls << u"rename"_s;
        return ::rename(from, to);
    };
    Written journal(noting);
    journal.document.replace(Offset(0), 0, u"text");
    QCOMPARE(journal.write(), Progress::Done);
    calls.removeAll(u"write"_s);
    QCOMPARE(calls.sliced(calls.size() - 3), (QStringList{ u"sync"_s, u"rename"_s, u"sync folder"_s }));
    calls.clear();
    journal.document.replace(Offset(0), 0, u"more ");
    QCOMPARE(journal.write(), Progress::Done);
    QCOMPARE(calls, (QStringList{ u"write"_s, u"sync"_s }));
}

void JournalWriterTest::grownJournalIsMadeAnew()
{
    constexpr int megabyte = 1 << 20;
    Written journal(quickCalls());
    QVERIFY(journal.load("the file\n"));
    journal.document.replace(journal.document.store().end(), 0, u"at the end\n");
    qsizetype before = 0, largest = 0;
    bool isAnew = false;
    for (int write = 0; write < 40 && !isAnew; ++write) {
        const QChar letter(u'a' + write % 26);
        journal.document.replace(Offset(4), write == 0 ? 0 : megabyte, QString(megabyte, letter));
        QCOMPARE(journal.write(), Progress::Done);
        isAnew = journal.bytes().size() < before;
        largest = qMax(largest, before);
        before = journal.bytes().size();
    }
    QVERIFY(isAnew);
    QVERIFY(journal.killedNow() == journal.text());
    QVERIFY(largest < 16 * megabyte);
    QCOMPARE(recordsOf(journal.bytes()), u"btsec"_s);
    QVERIFY(journal.bytes().size() < 2 * megabyte);
    QCOMPARE(journal.folder.files().size(), 1);
    journal.document.replace(Offset(0), 0, u"on and on ");
    QCOMPARE(journal.write(), Progress::Done);
    QVERIFY(journal.killedNow() == journal.text());
}

/// What a failing sync was about may be lost though the next one goes well.
void JournalWriterTest::whatFailedIsNotBuiltUpon()
{
    ForgetfulDisk disk;
    Written journal(disk.calls());
    QVERIFY(journal.load("text\n"));
    journal.document.replace(Offset(0), 0, u"a");
    QCOMPARE(journal.write(), Progress::Done);
    disk.isFailing = true;
    journal.document.replace(Offset(0), 0, u"b");
    QCOMPARE(journal.write(), Progress::Failed);
    QCOMPARE(journal.writer.error(), EIO);
    QCOMPARE(journal.killedNow(), u"atext\n"_s);
    disk.isFailing = false;
    for (const char16_t letter : { u'c', u'd' }) {
        journal.document.replace(Offset(0), 0, QString(letter));
        QCOMPARE(journal.write(), Progress::Done);
        QCOMPARE(journal.killedNow(), journal.text());
    }
    QCOMPARE(journal.folder.files().size(), 1);
}

void JournalWriterTest::whatIsGivenUpIsGone()
{
    Written journal;
    journal.document.replace(Offset(0), 0, u"text");
    journal.begin();
    QCOMPARE(journal.writer.step(), Progress::More);
    QCOMPARE(journal.folder.files().size(), 1);
    journal.writer.rest();
    QCOMPARE(journal.folder.files(), QStringList());
}

void JournalWriterTest::removedIsGone()
{
    Written journal;
    journal.writer.remove();
    journal.document.replace(Offset(0), 0, u"text");
    QCOMPARE(journal.write(), Progress::Done);
    QCOMPARE(journal.folder.files().size(), 1);
    journal.writer.remove();
    QCOMPARE(journal.folder.files(), QStringList());
}

REGISTER_TEST(runCoreTest<JournalWriterTest>)
#include "journalwriter_test.moc"
