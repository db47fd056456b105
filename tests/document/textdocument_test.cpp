#include "document/textdocument.h"

#include "codec/codecs.h"
#include "tests/document/documentfolder.h"
#include "tests/document/textlistener.h"
#include "tests/testprogram.h"
#include "tests/text/storecompare.h"
#include "text/textsearch.h"

#include <QSignalSpy>
#include <QTest>

#include <cerrno>

using namespace Qt::StringLiterals;

/// A document without a window.
class TextDocumentTest : public QObject {
    Q_OBJECT

private slots:
    void isEmptyAtFirst();
    void anotherTextHasNoHistory();
    void opensAnnouncingOnce();
    void opensByWhoeverSetsTheText();
    void asksForTheCodesOfAFileThatDoesNotTell();
    void readsInTheCodeRequested();
    void newFileIsMadeByItsFirstSave();
    void binaryFilesAreNotWritten();
    void keepsAllButTheNameWhenReadingFails();
    void keepsTheContentThatCouldNotBeRead();
    void keepsTextAndHistoryWhenWritingFails();
    void savingEndsTheHistory();
    void knowsThatItWasOvertaken();
    void samplesAreEditedBack_data();
    void samplesAreEditedBack();
};

void TextDocumentTest::isEmptyAtFirst()
{
    const TextDocument document({ CharCode::Euc, ReturnCode::Lf });
    QCOMPARE(document.store().length(), 0);
    QVERIFY(!document.isEdited());
    QVERIFY(!document.history().canUndo());
    QCOMPARE(document.charCode(), CharCode::Euc);
    QCOMPARE(document.returnCode(), ReturnCode::Lf);
    QCOMPARE(&document.byteCodec(), &eucCodec());
    QCOMPARE(document.path() + document.name(), QString());
}

void TextDocumentTest::newFileIsMadeByItsFirstSave()
{
    const DocumentFolder folder;
    TextDocument document;
    document.startFile(folder.path(), fileName, { CharCode::Euc, ReturnCode::Lf });
    QVERIFY(document.file().isNew());
    QVERIFY(!document.isEdited());
    QCOMPARE(document.path() + document.name(), folder.path() + fileName);
    QCOMPARE(document.file().change(), FileChange::None);
    document.replace({}, 0, u"あ\n");
    QCOMPARE(folder.names(), QStringList());
    const SaveResult result = document.save(folder.path(), fileName);
    QCOMPARE(result.outcome, SaveResult::Outcome::Written);
    QCOMPARE(result.keptCopy, QString());
    QVERIFY(!document.file().isNew());
    QCOMPARE(folder.read(fileName), QByteArray("\244\242\n"));
    document.startNew({}, {}, utf8Codec());
    QVERIFY(!document.file().isNew());
}

void TextDocumentTest::anotherTextHasNoHistory()
{
    TextDocument document;
    document.replace(Offset(0), 0, u"abc");
    document.setEdited(false);
    TextListener heard(document);
    document.setText(storeOf(u"another"_s));
    QCOMPARE(document.store().text(), u"another"_s);
    QCOMPARE(heard.replacements, QList<Change>({ { 0, 3, 7 } }));
    QVERIFY(heard.changes.isEmpty());
    QVERIFY(!document.history().canUndo());
    QVERIFY(document.isEdited());
}

void TextDocumentTest::opensAnnouncingOnce()
{
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, "\xE6\xBC\xA2\r\nb"));
    TextDocument document;
    document.setText(storeOf(u"before"_s));
    document.layOut({ .limit = subpixelsPerPixel });
    TextListener heard(document);
    bool wasWhole = false;
    connect(&document, &TextDocument::replaced, this, [&] {
        wasWhole = document.store().length() == 3 && document.returnCode() == ReturnCode::CrLf
            && &document.byteCodec() == &utf8Codec() && !document.isEdited();
    });
    QVERIFY(!document.load(folder.path(), fileName, {}, {}));
    QCOMPARE(heard.replacements, QList<Change>({ { 0, 6, 3 } }));
    QVERIFY(heard.changes.isEmpty());
    QVERIFY(wasWhole);
    QCOMPARE(document.store().text(), u"漢\nb"_s);
    QCOMPARE(document.store().layoutRule().limit, subpixelsPerPixel);
    QCOMPARE(document.path(), folder.path());
    QCOMPARE(document.name(), fileName);
    QCOMPARE(document.charCode(), CharCode::Utf8);
}

void TextDocumentTest::opensByWhoeverSetsTheText()
{
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, "read"));
    TextDocument document;
    document.setText(storeOf(u"before"_s));
    TextListener heard(document);
    TextStore text;
    QVERIFY(!document.read(folder.path(), fileName, {}, {}, text));
    QCOMPARE(document.store().length(), 0);
    QVERIFY(heard.replacements.isEmpty());
    text.replace(Offset(0), 0, u"as ");
    document.setText(std::move(text));
    QCOMPARE(document.store().text(), u"as read"_s);
    QCOMPARE(heard.replacements, QList<Change>({ { 0, 6, 7 } }));
    QVERIFY(!document.isEdited());
    document.setText(storeOf(u"set"_s));
    QCOMPARE(heard.replacements.last(), Change({ 0, 7, 3 }));
    QVERIFY(document.isEdited());
}

void TextDocumentTest::asksForTheCodesOfAFileThatDoesNotTell()
{
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, ""));
    TextDocument document;
    QVERIFY(!document.load(folder.path(), fileName, {}, { CharCode::Jis, ReturnCode::Cr }));
    QCOMPARE(document.charCode(), CharCode::Jis);
    QCOMPARE(document.returnCode(), ReturnCode::Cr);
}

void TextDocumentTest::readsInTheCodeRequested()
{
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, "\x82\xA0\xFA\x54\n"));
    TextDocument document;
    QVERIFY(!document.load(folder.path(), fileName, CharCode::ShiftJis, {}));
    QCOMPARE(document.store().text(), u"あ￢\n"_s);
    QCOMPARE(document.save(folder.path(), u"b.txt"_s).outcome, SaveResult::Outcome::Written);
    QCOMPARE(folder.read(u"b.txt"_s), folder.read(fileName));
    QCOMPARE(document.save(folder.path(), u"b.txt"_s, CharCode::Utf8, ReturnCode::CrLf).outcome,
        SaveResult::Outcome::Written);
    QCOMPARE(folder.read(u"b.txt"_s), u"あ￢\r\n"_s.toUtf8());
    QCOMPARE(document.charCode(), CharCode::Utf8);
    QCOMPARE(document.returnCode(), ReturnCode::CrLf);
}

void TextDocumentTest::binaryFilesAreNotWritten()
{
    const DocumentFolder folder;
    const QByteArray bytes("a\0b\n", 4);
    QVERIFY(folder.write(fileName, bytes));
    TextDocument document;
    QVERIFY(!document.load(folder.path(), fileName, {}, {}));
    QCOMPARE(document.charCode(), CharCode::Binary);
    QCOMPARE(document.returnCode(), ReturnCode::None);
    document.replace(Offset(0), 0, u"x");
    QCOMPARE(document.save(folder.path(), fileName, CharCode::Utf8).outcome, SaveResult::Outcome::Binary);
    QCOMPARE(folder.read(fileName), bytes);
    QCOMPARE(document.charCode(), CharCode::Binary);
    QVERIFY(document.isEdited());
}

void TextDocumentTest::keepsAllButTheNameWhenReadingFails()
{
    const DocumentFolder folder;
    TextDocument document({ CharCode::Euc, ReturnCode::Lf });
    document.replace(Offset(0), 0, u"abc");
    TextListener heard(document);
    const auto failure = document.load(folder.path(), u"missing"_s, CharCode::Utf8, {});
    QCOMPARE(failure, std::optional(ReadFailure::Missing));
    QVERIFY(heard.replacements.isEmpty());
    QCOMPARE(document.name(), u"missing"_s);
    QCOMPARE(document.store().text(), u"abc"_s);
    QCOMPARE(document.charCode(), CharCode::Euc);
    QVERIFY(document.isEdited() && document.history().canUndo());
}

void TextDocumentTest::keepsTheContentThatCouldNotBeRead()
{
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, "not to be lost"));
    FileCalls calls = FileCalls::system();
    calls.pread = [](int, void *, size_t, off_t) -> ssize_t {
        errno = EIO;
        return -1;
    };
    TextDocument document({}, calls);
    QCOMPARE(document.load(folder.path(), fileName, {}, {}), std::optional(ReadFailure::BrokenOff));
    calls.pread = FileCalls::system().pread;
    document.replace(Offset(0), 0, u"new");
    const SaveResult result = document.save(folder.path(), fileName);
    QCOMPARE(result.outcome, SaveResult::Outcome::Written);
    QCOMPARE(result.overtaken, Overtaken::No);
    QFile kept(result.keptCopy);
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), QByteArray("not to be lost"));
    QCOMPARE(document.save(folder.path(), fileName).keptCopy, QString());
}

void TextDocumentTest::keepsTextAndHistoryWhenWritingFails()
{
    const DocumentFolder folder;
    TextDocument document;
    document.replace(Offset(0), 0, u"abc");
    const QSignalSpy saved(&document, &TextDocument::saved);
    const SaveResult result =
        document.save(folder.path() + u"missing/"_s, fileName, CharCode::Jis, ReturnCode::Cr);
    QCOMPARE(result.outcome, SaveResult::Outcome::NotWritten);
    QCOMPARE(result.keptCopy, QString());
    QCOMPARE(saved.count(), 0);
    QCOMPARE(document.name(), QString());
    QVERIFY(document.isEdited() && document.history().canUndo());
    QCOMPARE(document.charCode(), CharCode::Jis);
    QCOMPARE(document.returnCode(), ReturnCode::Cr);
}

void TextDocumentTest::savingEndsTheHistory()
{
    const DocumentFolder folder;
    TextDocument document({ CharCode::Utf8, ReturnCode::Lf });
    document.replace(Offset(0), 0, u"abc\n");
    TextListener heard(document);
    const QSignalSpy saved(&document, &TextDocument::saved);
    QCOMPARE(document.save(folder.path(), fileName).outcome, SaveResult::Outcome::Written);
    QCOMPARE(saved.count(), 1);
    QVERIFY(heard.changes.isEmpty() && heard.replacements.isEmpty());
    QCOMPARE(folder.read(fileName), QByteArray("abc\n"));
    QCOMPARE(document.path() + document.name(), folder.path() + fileName);
    QVERIFY(!document.isEdited() && !document.history().canUndo());
}

void TextDocumentTest::knowsThatItWasOvertaken()
{
    const DocumentFolder folder;
    QVERIFY(folder.write(fileName, "first"));
    TextDocument one;
    TextDocument other;
    QVERIFY(!one.load(folder.path(), fileName, {}, {}));
    QVERIFY(!other.load(folder.path(), fileName, {}, {}));
    one.replace(Offset(0), 0, u"1");
    QCOMPARE(one.save(folder.path(), fileName).overtaken, Overtaken::No);
    other.replace(Offset(0), 0, u"2");
    const SaveResult result = other.save(folder.path(), fileName);
    QCOMPARE(result.outcome, SaveResult::Outcome::Written);
    QCOMPARE(result.overtaken, Overtaken::ByDocument);
    QFile kept(result.keptCopy);
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), QByteArray("1first"));
}

void TextDocumentTest::samplesAreEditedBack_data()
{
    QTest::addColumn<QString>("sample");
    for (const QString &file : QDir(QStringLiteral(SAMPLES_DIR)).entryList({ u"*.txt"_s }, QDir::Files))
        QTest::newRow(qPrintable(file)) << file;
}

/// Opened, one of its characters replaced wherever it stands, that undone and redone, saved; then replaced
/// back, which gives the sample's own bytes.
void TextDocumentTest::samplesAreEditedBack()
{
    QFETCH(QString, sample);
    const DocumentFolder folder;
    QFile file(QStringLiteral(SAMPLES_DIR "/") + sample);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QVERIFY(folder.write(fileName, bytes));
    TextDocument document;
    QVERIFY(!document.load(folder.path(), fileName, {}, {}));
    const QString text = document.store().text();
    const auto replaceAll = [&document](const QString &from, const QString &to) {
        const TextPattern pattern(from, Qt::CaseSensitive);
        CursorPlace place;
        int count = 0;
        while (const auto hit = findHit(document.store(), pattern, SearchDirection::Forward, place)) {
            document.replace(hit->begin.offset, from.size(), to);
            place = { hit->begin.offset + to.size() };
            ++count;
        }
        return count;
    };
    const QString character = text.sliced(text.size() / 2, 1);
    const int count = replaceAll(character, u"<#>"_s);
    QVERIFY(count > 0);
    QCOMPARE(document.store().text(), QString(text).replace(character, u"<#>"_s));
    while (document.history().canUndo())
        document.undo();
    QCOMPARE(document.store().text(), text);
    QVERIFY(!document.isEdited());
    while (document.history().canRedo())
        document.redo();
    QCOMPARE(document.save(folder.path(), fileName).outcome, SaveResult::Outcome::Written);
    QVERIFY(folder.read(fileName) != bytes);
    QCOMPARE(replaceAll(u"<#>"_s, character), count);
    QCOMPARE(document.store().text(), text);
    QCOMPARE(document.save(folder.path(), fileName).outcome, SaveResult::Outcome::Written);
    // What the byte-order mark said of a UTF-16 file is written in UTF-8.
    const bool isUnicode = document.charCode() == CharCode::Unicode;
    QCOMPARE(folder.read(fileName), isUnicode ? QString(text).replace(u"\n"_s, u"\r\n"_s).toUtf8() : bytes);
}

REGISTER_TEST(runCoreTest<TextDocumentTest>)
#include "textdocument_test.moc"
