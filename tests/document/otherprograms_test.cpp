#include "document/textdocument.h"
#include "tests/document/documentfolder.h"
#include "tests/files/readthrough.h"
#include "tests/testprogram.h"

#include <QSignalSpy>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// A document whose file other programs write.
class OtherProgramsTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void noticesAWrite();
    void ownSaveIsNoNews();
    void savesOfAnotherDocumentAreNoNews();
    void acknowledgedUntilTheNextChange();
    void acknowledgedDeletion();
    void acknowledgedOnlyUntilItsOwnFileIsBack();
    void growthOfWhatAnotherDocumentSavedIsNoGrowth();
    void keepsTheFileOnceWhenWanted();
    void saveKeepsTheOtherVersion_data();
    void saveKeepsTheOtherVersion();
    void saveMakesADeletedFileAgain();
    void largeTouchedFileIsNoNews();
    void largeFileThatWasSavedMayGrow();
    void unreadFileHasNoNews();
    void detachedDocumentHasNoFile();

    void growth_data();
    void growth();
    void halfACharacterWaits_data();
    void halfACharacterWaits();
    void halfACharacterThatWasThereIsReadAgain();
    void growthIsNoEdit();
    void editedTextDoesNotGrow();
    void whatIsNoGrowthIsNotRead();
    void growthThatCannotBeRead_data();
    void growthThatCannotBeRead();
    void growthThatGoesMeanwhile();
    void savedBytesAreThoseOfTheFile();

private:
    QByteArray bytesName() const { return (m_folder->path() + fileName).toUtf8(); }
    bool append(const QByteArray &bytes) const
    {
        QFile file(m_folder->path() + fileName);
        return file.open(QIODevice::Append) && file.write(bytes) == bytes.size();
    }
    /// A document of the file, with these bytes in it.
    std::unique_ptr<TextDocument> open(const QByteArray &bytes, std::optional<CharCode> code = {})
    {
        auto document = std::make_unique<TextDocument>();
        if (!m_folder->write(fileName, bytes) || document->load(m_folder->path(), fileName, code, {}))
            return nullptr;
        return document;
    }

    std::unique_ptr<DocumentFolder> m_folder;
};

void OtherProgramsTest::init()
{
    m_folder = std::make_unique<DocumentFolder>();
}

void OtherProgramsTest::noticesAWrite()
{
    const auto document = open("old\n");
    QCOMPARE(document->file().change(), FileChange::None);
    QVERIFY(m_folder->write(fileName, "new\n"));
    QCOMPARE(document->file().change(), FileChange::Changed);
    QVERIFY(!document->load(m_folder->path(), fileName, {}, {}));
    QCOMPARE(document->file().change(), FileChange::None);
    QCOMPARE(document->store().text(), u"new\n"_s);
}

void OtherProgramsTest::ownSaveIsNoNews()
{
    const auto document = open("old\n");
    document->replace(Offset(0), 0, u"very ");
    QCOMPARE(document->save(m_folder->path(), fileName).overtaken, Overtaken::No);
    QCOMPARE(document->file().change(), FileChange::None);
    QCOMPARE(document->save(m_folder->path(), u"b.txt"_s).overtaken, Overtaken::No);
    QCOMPARE(document->file().change(), FileChange::None);
    QVERIFY(m_folder->write(u"b.txt"_s, "other"));
    QCOMPARE(document->file().change(), FileChange::Changed);
}

void OtherProgramsTest::savesOfAnotherDocumentAreNoNews()
{
    const auto one = open("old\n");
    TextDocument two;
    QVERIFY(!two.load(m_folder->path(), fileName, {}, {}));
    two.replace(Offset(0), 0, u"two ");
    two.save(m_folder->path(), fileName);
    QCOMPARE(one->file().change(), FileChange::None);
    QVERIFY(m_folder->write(fileName, "of another program"));
    QCOMPARE(one->file().change(), FileChange::Changed);
    QCOMPARE(two.file().change(), FileChange::Changed);
    one->replace(Offset(0), 0, u"one ");
    QCOMPARE(one->save(m_folder->path(), fileName).overtaken, Overtaken::ByProgram);
    QCOMPARE(two.file().change(), FileChange::None);
    two.replace(Offset(0), 0, u"again ");
    QCOMPARE(two.save(m_folder->path(), fileName).overtaken, Overtaken::ByDocument);
}

void OtherProgramsTest::acknowledgedUntilTheNextChange()
{
    const auto document = open("old\n");
    QVERIFY(m_folder->write(fileName, "new\n"));
    document->file().acknowledge();
    QCOMPARE(document->file().change(), FileChange::None);
    QVERIFY(m_folder->write(fileName, "newer\n"));
    QCOMPARE(document->file().change(), FileChange::Changed);
    document->file().acknowledge();
    const SaveResult result = document->save(m_folder->path(), fileName);
    QCOMPARE(result.overtaken, Overtaken::ByProgram);
    QVERIFY(!result.keptCopy.isEmpty());
    QCOMPARE(document->file().change(), FileChange::None);
}

void OtherProgramsTest::acknowledgedDeletion()
{
    const auto document = open("old\n");
    QVERIFY(QFile::remove(m_folder->path() + fileName));
    QCOMPARE(document->file().change(), FileChange::Deleted);
    document->file().acknowledge();
    QCOMPARE(document->file().change(), FileChange::None);
    QVERIFY(m_folder->write(fileName, "new\n"));
    QVERIFY(document->file().change() != FileChange::None);
}

/// A link that leads to one file, to another one and back, as at a change of what is in use.
void OtherProgramsTest::acknowledgedOnlyUntilItsOwnFileIsBack()
{
    QVERIFY(m_folder->write(u"one"_s, "one\n") && m_folder->write(u"other"_s, "other\n"));
    const auto leadTo = [this](const char *name) {
        ::unlink(bytesName().constData());
        return ::symlink(name, bytesName().constData()) == 0;
    };
    QVERIFY(leadTo("one"));
    TextDocument document;
    QVERIFY(!document.load(m_folder->path(), fileName, {}, {}));
    QVERIFY(leadTo("other"));
    document.file().acknowledge();
    QCOMPARE(document.file().change(), FileChange::None);
    QVERIFY(leadTo("one"));
    QCOMPARE(document.file().change(), FileChange::None);
    QVERIFY(leadTo("other"));
    QCOMPARE(document.file().change(), FileChange::Replaced);
}

/// This document has not read it, so that reading on would leave the other one's text out.
void OtherProgramsTest::growthOfWhatAnotherDocumentSavedIsNoGrowth()
{
    const auto one = open("old\n");
    TextDocument two;
    QVERIFY(!two.load(m_folder->path(), fileName, {}, {}));
    two.replace(Offset(0), 0, u"two ");
    two.save(m_folder->path(), fileName);
    QVERIFY(append("more\n"));
    QCOMPARE(two.file().change(), FileChange::Grown);
    QCOMPARE(one->file().change(), FileChange::Changed);
    QVERIFY(!one->readGrowth());
    QCOMPARE(one->store().text(), u"old\n"_s);
}

void OtherProgramsTest::keepsTheFileOnceWhenWanted()
{
    const auto document = open("old\n");
    document->file().keep();
    const SaveResult first = document->save(m_folder->path(), fileName);
    QVERIFY(first.wasToBeKept);
    QVERIFY(!first.keptCopy.isEmpty());
    document->replace(Offset(0), 0, u"new ");
    const SaveResult second = document->save(m_folder->path(), fileName);
    QVERIFY(!second.wasToBeKept);
    QCOMPARE(second.keptCopy, QString());
}

void OtherProgramsTest::saveKeepsTheOtherVersion_data()
{
    QTest::addColumn<bool>("isReplaced");
    QTest::newRow("written in place") << false;
    QTest::newRow("replaced") << true;
}

void OtherProgramsTest::saveKeepsTheOtherVersion()
{
    QFETCH(bool, isReplaced);
    const auto document = open("old\n");
    document->replace(Offset(0), 0, u"mine ");
    if (isReplaced) {
        QVERIFY(m_folder->write(u"other"_s, "theirs\n"));
        QCOMPARE(::rename((m_folder->path() + u"other"_s).toUtf8().constData(), bytesName().constData()), 0);
    } else {
        QVERIFY(m_folder->write(fileName, "theirs\n"));
    }
    const SaveResult result = document->save(m_folder->path(), fileName);
    QCOMPARE(result.outcome, SaveResult::Outcome::Written);
    QCOMPARE(result.overtaken, Overtaken::ByProgram);
    QCOMPARE(m_folder->read(fileName), QByteArray("mine old\n"));
    QFile kept(result.keptCopy);
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), QByteArray("theirs\n"));
    QVERIFY(result.keptCopy.endsWith(u"-a.txt"_s));
}

void OtherProgramsTest::saveMakesADeletedFileAgain()
{
    const auto document = open("old\n");
    QVERIFY(QFile::remove(m_folder->path() + fileName));
    const SaveResult result = document->save(m_folder->path(), fileName);
    QCOMPARE(result.overtaken, Overtaken::No);
    QCOMPARE(result.keptCopy, QString());
    QCOMPARE(m_folder->read(fileName), QByteArray("old\n"));
}

/// Nothing is said of it before somebody has read through it, and a save does that itself.
void OtherProgramsTest::largeTouchedFileIsNoNews()
{
    const QByteArray content = QByteArray("line\n").repeated(FileVersion::mostCompared / 4);
    for (const bool isChanged : { false, true }) {
        const auto document = open(content);
        QByteArray now = content;
        if (isChanged)
            now[0] = 'L';
        QVERIFY(m_folder->write(fileName, now));
        const timespec times[] = { { 1000, 0 }, { 1000, 0 } };
        QCOMPARE(::utimensat(AT_FDCWD, bytesName().constData(), times, 0), 0);
        QCOMPARE(document->file().change(), FileChange::Unsure);
        const auto seen = readThrough(bytesName());
        QVERIFY(seen);
        if (!isChanged) {
            QCOMPARE(document->file().change(seen), FileChange::None);
            QCOMPARE(::chmod(bytesName().constData(), 0640), 0);
            QCOMPARE(document->file().change(), FileChange::Unsure);
        }
        document->replace(Offset(0), 0, u"x");
        const SaveResult result = document->save(m_folder->path(), fileName);
        QCOMPARE(result.outcome, SaveResult::Outcome::Written);
        QCOMPARE(result.overtaken, isChanged ? Overtaken::ByProgram : Overtaken::No);
        QCOMPARE(result.keptCopy.isEmpty(), !isChanged);
    }
}

void OtherProgramsTest::largeFileThatWasSavedMayGrow()
{
    const auto document = open(QByteArray("line\n").repeated(FileVersion::mostCompared / 4));
    document->replace(Offset(0), 0, u"x");
    QCOMPARE(document->save(m_folder->path(), fileName).outcome, SaveResult::Outcome::Written);
    QVERIFY(append("more\n"));
    QCOMPARE(document->file().change(), FileChange::Grown);
    QVERIFY(document->readGrowth());
    QVERIFY(append("and more\n"));
    QCOMPARE(document->file().change(), FileChange::Grown);
    QVERIFY(document->readGrowth());
    QCOMPARE(document->file().change(), FileChange::None);
    const auto seen = readThrough(bytesName());
    QVERIFY(seen && seen->hash == document->file().version().content().value());
}

void OtherProgramsTest::unreadFileHasNoNews()
{
    const auto document = open("old\n");
    QVERIFY(document->load(m_folder->path(), u"missing.txt"_s, {}, {}));
    QCOMPARE(document->file().change(), FileChange::None);
    TextDocument empty;
    QCOMPARE(empty.file().change(), FileChange::None);
}

void OtherProgramsTest::detachedDocumentHasNoFile()
{
    const auto document = open("old\n");
    document->detachFromFile(u"a copy"_s);
    QCOMPARE(document->path(), QString());
    QCOMPARE(document->name(), u"a copy"_s);
    QVERIFY(document->isEdited());
    QVERIFY(m_folder->write(fileName, "new\n"));
    QCOMPARE(document->file().change(), FileChange::None);
}

void OtherProgramsTest::growth_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("added");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *tag, const QByteArray &before, const QByteArray &added, CharCode code,
                         const QString &text) { QTest::newRow(tag) << before << added << int(code) << text; };
    row("ASCII", "a\n", "b\n", CharCode::Ascii, u"a\nb\n"_s);
    row("CR+LF", "a\r\n", "b\r\nc", CharCode::Utf8, u"a\nb\nc"_s);
    row("CR|LF", "a\r\nb\r", "\nc", CharCode::Utf8, u"a\nb\nc"_s);
    row("UTF-8", "あ\n", "い\n", CharCode::Utf8, u"あ\nい\n"_s);
    row("Shift-JIS", "\x82\xa0\n", "\x82\xa2\n", CharCode::ShiftJis, u"あ\nい\n"_s);
    row("EUC", "\xa4\xa2\n", "\xa4\xa4\n", CharCode::Euc, u"あ\nい\n"_s);
    row("JIS", "\x1b$B$\"\x1b(B\n", "\x1b$B$$\x1b(B\n", CharCode::Jis, u"あ\nい\n"_s);
    row("JIS, within a set", "\x1b$B$\"", "$$\x1b(B\n", CharCode::Jis, u"あい\n"_s);
    row("a character parted", "\xe3\x81", "\x82\n", CharCode::Utf8, u"あ\n"_s);
    row("undecodable bytes", "a\xff\n", "b\xff\n", CharCode::Utf8, u"a\xdcff\nb\xdcff\n"_s);
}

void OtherProgramsTest::growth()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, added);
    QFETCH(int, code);
    QFETCH(QString, text);
    const auto document = open(before, CharCode(code));
    QVERIFY(append(added));
    QCOMPARE(document->file().change(), FileChange::Grown);
    QVERIFY(document->readGrowth());
    QCOMPARE(document->store().text(), text);
    QCOMPARE(document->file().change(), FileChange::None);
    QCOMPARE(int(document->charCode()), code);
    QVERIFY(!document->isEdited());
    document->store().checkInvariants();
}

void OtherProgramsTest::halfACharacterWaits_data()
{
    QTest::addColumn<QByteArray>("character");
    QTest::addColumn<int>("code");
    QTest::newRow("UTF-8") << QByteArray("あ") << int(CharCode::Utf8);
    QTest::newRow("UTF-8, four bytes") << QByteArray("😀") << int(CharCode::Utf8);
    QTest::newRow("Shift-JIS") << QByteArray("\x82\xa0") << int(CharCode::ShiftJis);
    QTest::newRow("EUC") << QByteArray("\xa4\xa2") << int(CharCode::Euc);
}

/// However many of its bytes are there.
void OtherProgramsTest::halfACharacterWaits()
{
    QFETCH(QByteArray, character);
    QFETCH(int, code);
    const auto document = open("a\n", CharCode(code));
    const auto whole = std::make_unique<TextDocument>();
    QVERIFY(append("b"));
    QVERIFY(document->readGrowth());
    for (qsizetype size = 1; size < character.size(); ++size) {
        QVERIFY(append(character.sliced(size - 1, 1)));
        QVERIFY(document->readGrowth());
        QCOMPARE(document->store().text(), u"a\nb"_s);
    }
    QVERIFY(append(character.last(1) + "\n"));
    QVERIFY(document->readGrowth());
    QVERIFY(!whole->load(m_folder->path(), fileName, CharCode(code), {}));
    QCOMPARE(document->store().text(), whole->store().text());
    QCOMPARE(document->store().length(), character.size() == 4 ? 6 : 5);
    QCOMPARE(document->file().change(), FileChange::None);
}

void OtherProgramsTest::halfACharacterThatWasThereIsReadAgain()
{
    const auto document = open("a\xe3\x81", CharCode::Utf8);
    QCOMPARE(document->store().length(), 3);
    QVERIFY(append("\x82"));
    QVERIFY(document->readGrowth());
    QCOMPARE(document->store().text(), u"aあ"_s);
}

void OtherProgramsTest::growthIsNoEdit()
{
    const auto document = open("a\n");
    document->replace(Offset(0), 0, u"x");
    document->undo();
    QVERIFY(append("b\n"));
    const QSignalSpy changed(document.get(), &TextDocument::changed);
    QVERIFY(document->readGrowth());
    QCOMPARE(changed.count(), 1);
    QVERIFY(!document->isEdited());
    QVERIFY(!document->history().canUndo());
    QVERIFY(!document->history().canRedo());
}

void OtherProgramsTest::editedTextDoesNotGrow()
{
    const auto document = open("a\n");
    document->replace(Offset(0), 0, u"x");
    QVERIFY(append("b\n"));
    QCOMPARE(document->file().change(), FileChange::Grown);
    QVERIFY(!document->readGrowth());
    QCOMPARE(document->store().text(), u"xa\n"_s);
}

void OtherProgramsTest::whatIsNoGrowthIsNotRead()
{
    const auto document = open("a\n");
    QVERIFY(!document->readGrowth());
    QVERIFY(m_folder->write(fileName, "other\n"));
    QVERIFY(!document->readGrowth());
    QCOMPARE(document->store().text(), u"a\n"_s);
}

void OtherProgramsTest::growthThatCannotBeRead_data()
{
    QTest::addColumn<CharCode>("code");
    QTest::newRow("appended") << CharCode::Utf8;
    QTest::newRow("read as a whole") << CharCode::Jis;
}

/// Behind what the document has, which can be read.
void OtherProgramsTest::growthThatCannotBeRead()
{
    QFETCH(CharCode, code);
    constexpr off_t known = 2;
    bool isBroken = false;
    FileCalls calls = FileCalls::system();
    calls.pread = [&](int fd, void *to, size_t size, off_t offset) -> ssize_t {
        if (!isBroken || offset + off_t(size) <= known || size == 1)
            return ::pread(fd, to, size, offset);
        errno = EIO;
        return -1;
    };
    TextDocument document({}, calls);
    QVERIFY(m_folder->write(fileName, "a\n"));
    QVERIFY(!document.load(m_folder->path(), fileName, code, {}));
    QVERIFY(append("b\n"));
    isBroken = true;
    const GrowthResult growth = document.readGrowth();
    QVERIFY(!growth.isRead);
    QCOMPARE(growth.failure, ReadFailure::BrokenOff);
    QCOMPARE(document.store().text(), u"a\n"_s);
    isBroken = false;
    QVERIFY(document.readGrowth());
    QCOMPARE(document.store().text(), u"a\nb\n"_s);
}

/// Between the look at the file and the reading of it.
void OtherProgramsTest::growthThatGoesMeanwhile()
{
    bool isToGo = false;
    FileCalls calls = FileCalls::system();
    calls.fstat = [&](int fd, struct stat *info) {
        if (std::exchange(isToGo, false) && ::truncate(bytesName().constData(), 1) != 0)
            return -1;
        return ::fstat(fd, info);
    };
    TextDocument document({}, calls);
    QVERIFY(m_folder->write(fileName, "a\n"));
    QVERIFY(!document.load(m_folder->path(), fileName, {}, {}));
    QVERIFY(append("b\n"));
    isToGo = true;
    const GrowthResult growth = document.readGrowth();
    QVERIFY(!growth.isRead && !growth.failure);
    QVERIFY(!isToGo);
    QCOMPARE(document.store().text(), u"a\n"_s);
    QCOMPARE(document.file().change(), FileChange::Changed);
}

void OtherProgramsTest::savedBytesAreThoseOfTheFile()
{
    const QByteArray bytes = "\x81\x41 a\xff\n";
    const auto document = open(bytes, CharCode::ShiftJis);
    QVERIFY(append(bytes));
    QVERIFY(document->readGrowth());
    QCOMPARE(document->save(m_folder->path(), fileName).overtaken, Overtaken::No);
    QCOMPARE(m_folder->read(fileName), bytes + bytes);
}

REGISTER_TEST(runCoreTest<OtherProgramsTest>)
#include "otherprograms_test.moc"
