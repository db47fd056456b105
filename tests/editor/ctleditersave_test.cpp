#include "editor/ctlediter.h"

#include "codec/charcode.h"
#include "codec/codecs.h"
#include "codec/returncode.h"
#include "codec/textcodec.h"
#include "document/documentwriter.h"
#include "files/filename.h"
#include "settings/settings.h"
#include "tests/codec/everycharcode.h"
#include "tests/document/documentfolder.h"
#include "tests/editor/hexfile.h"
#include "tests/messageboxes.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

#include <memory>

#include <sys/stat.h>

namespace {

const QString cannotWrite = QStringLiteral("File Write Error|Cannot write the file.\n"
                                           "You do not have the permission or the file may be in use.");

} // namespace

class CtlEditerSaveTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void written_data();
    void written();
    void lineEnds_data();
    void lineEnds();
    void textEndsAtTheFirstNul_data();
    void textEndsAtTheFirstNul();
    void savedDocumentIsUnmodified();
    void savedUnderAnotherName();
    void codesThatAreGivenAreKept();
    void binaryIsRefused();
    void fileThatCouldNotBeReadIsKept();
    void fileThatWasReadIsNotKept();
    void failedSaveKeepsTheDocument_data();
    void failedSaveKeepsTheDocument();
    void savedAfterAFailure();
    void oldContentThatWasKeptIsNamed();
    void folderThatCannotKeepTheOldContentIsNamed();
    void fullDiskWhileEncoding();
    void unicodeComesBackAsUtf8();
    void asciiIsWrittenAsShiftJis();
    void changedFileIsOverwritten();
    void onlyEditedBytesDiffer();
    void everySample_data();
    void everySample();
    void randomBytes_data();
    void randomBytes();
    void randomLineEnds_data();
    void randomLineEnds();

private:
    bool load(const QByteArray &content, int requested = 0);
    WrittenText writtenAs(const TextCodec &codec, ReturnCode lineEnd) const
    {
        return { TextSnapshot(m_editor->store()), { &codec, TextCodec::AsRead::Everything }, lineEnd };
    }
    static bool write(DocumentWriter &writer)
    {
        auto step = DocumentWriter::Step::More;
        while (step == DocumentWriter::Step::More)
            step = writer.step();
        return step == DocumentWriter::Step::Written;
    }
    bool save(int charCode = 0, int returnCode = 0)
    {
        return m_editor->saveFile(folder().path(), name, charCode, returnCode);
    }
    DocumentFolder &folder() { return *m_folder; }

    std::unique_ptr<DocumentFolder> m_folder;
    std::unique_ptr<QWidget> m_window;
    ctlEditer *m_editor = nullptr;
};

void CtlEditerSaveTest::init()
{
    appSettings() = AppSettings();
    appSettings().FontName = QStringLiteral("monospace");
    m_folder = std::make_unique<DocumentFolder>();
    m_window = std::make_unique<QWidget>();
    m_editor = new ctlEditer(m_window.get());
}

void CtlEditerSaveTest::cleanup()
{
    m_window.reset();
    m_folder.reset();
}

bool CtlEditerSaveTest::load(const QByteArray &content, int requested)
{
    const MessageBoxes boxes;
    const bool written = folder().write(name, content);
    m_editor->loadFile(folder().path(), name, requested);
    return written && boxes.count() == 0;
}

void CtlEditerSaveTest::written_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("Unicode is UTF-8 without a mark") << 1 << bytes("e697a5e69cac41");
    QTest::newRow("UTF-8") << 2 << bytes("e697a5e69cac41");
    QTest::newRow("Shift-JIS") << 3 << bytes("93fa967b41");
    QTest::newRow("EUC") << 4 << bytes("c6fccbdc41");
    QTest::newRow("JIS") << 5 << bytes("1b2442467c4b5c1b284241");
    QTest::newRow("plain ASCII is Shift-JIS") << 6 << bytes("93fa967b41");
    QTest::newRow("a value nobody knows is Shift-JIS") << 99 << bytes("93fa967b41");
}

void CtlEditerSaveTest::written()
{
    QFETCH(int, code);
    m_editor->insert(QStringLiteral("日本A"));
    QVERIFY(save(code));
    QTEST(folder().read(name), "content");
    QCOMPARE(m_editor->charCode(), code);
}

void CtlEditerSaveTest::lineEnds_data()
{
    QTest::addColumn<int>("returnCode");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("CR+LF, none at the end") << 2 << QStringLiteral("a\nb") << bytes("610d0a62");
    QTest::newRow("CR+LF, one at the end") << 2 << QStringLiteral("a\nb\n") << bytes("610d0a620d0a");
    QTest::newRow("CR") << 1 << QStringLiteral("a\n\nb") << bytes("610d0d62");
    QTest::newRow("LF") << 3 << QStringLiteral("a\nb") << bytes("610a62");
    QTest::newRow("a value nobody knows is LF") << 77 << QStringLiteral("a\nb") << bytes("610a62");
    QTest::newRow("only a line end") << 2 << QStringLiteral("\n") << bytes("0d0a");
    QTest::newRow("nothing") << 2 << QString() << QByteArray();
}

void CtlEditerSaveTest::lineEnds()
{
    QFETCH(int, returnCode);
    QFETCH(QString, text);
    m_editor->insert(text);
    QVERIFY(save(int(CharCode::Utf8), returnCode));
    QTEST(folder().read(name), "content");
}

void CtlEditerSaveTest::textEndsAtTheFirstNul_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("content");
    const auto row = [](const char *title, int code, const QString &text, const char *hex) {
        QTest::newRow(title) << code << text << bytes(hex);
    };
    const QString nul(QChar(u'\0'));
    row("in the middle", 2, QStringLiteral("a\nb") + nul + QStringLiteral("c\n"), "610d0a62");
    row("at the begin", 2, nul + QStringLiteral("abc"), "");
    row("at the end", 3, QStringLiteral("abc") + nul, "616263");
    row("JIS is back in ASCII", 5, QStringLiteral("日") + nul + QStringLiteral("本"), "1b2442467c1b2842");
}

void CtlEditerSaveTest::textEndsAtTheFirstNul()
{
    QFETCH(int, code);
    QFETCH(QString, text);
    m_editor->setText(text);
    QVERIFY(save(code));
    QTEST(folder().read(name), "content");
    QCOMPARE(m_editor->text(), text);
}

void CtlEditerSaveTest::savedDocumentIsUnmodified()
{
    m_editor->insert(QStringLiteral("text"));
    m_editor->undo();
    m_editor->insert(QStringLiteral("more"));
    m_editor->insert(QStringLiteral("!"));
    m_editor->undo();
    QVERIFY(m_editor->undoAvailable() && m_editor->redoAvailable());
    QSignalSpy undo(m_editor, &ctlEditer::undoAvailable2);
    QSignalSpy redo(m_editor, &ctlEditer::redoAvailable2);
    QVERIFY(save());
    QVERIFY(!m_editor->edited());
    QVERIFY(!m_editor->undoAvailable());
    QVERIFY(!m_editor->redoAvailable());
    QVERIFY(!m_editor->history().canUndo());
    QVERIFY(!m_editor->history().canRedo());
    QVERIFY(m_editor->isUndoEnabled());
    QCOMPARE(undo.count(), 1);
    QCOMPARE(redo.count(), 1);
    QCOMPARE(undo[0][1].toBool(), false);
    m_editor->undo();
    QCOMPARE(m_editor->text(), QStringLiteral("more"));
    m_editor->insert(QStringLiteral("?"));
    QCOMPARE(undo.count(), 2);
    QCOMPARE(undo[1][1].toBool(), true);
}

void CtlEditerSaveTest::savedUnderAnotherName()
{
    QVERIFY(load("text\n"));
    QVERIFY(m_editor->saveFile(folder().path(), QStringLiteral("other.txt")));
    QCOMPARE(m_editor->name(), QStringLiteral("other.txt"));
    QCOMPARE(m_editor->path(), folder().path());
    QCOMPARE(folder().read(QStringLiteral("other.txt")), QByteArray("text\n"));
    QCOMPARE(folder().names(), QStringList({ name, QStringLiteral("other.txt") }));
}

void CtlEditerSaveTest::codesThatAreGivenAreKept()
{
    m_editor->insert(QStringLiteral("日\n"));
    QVERIFY(save(int(CharCode::Euc), int(ReturnCode::Cr)));
    QCOMPARE(m_editor->charCodeName(), QStringLiteral("EUC"));
    QCOMPARE(m_editor->returnCodeName(), QStringLiteral("CR"));
    QVERIFY(m_editor->saveFile(folder().path(), name));
    QCOMPARE(folder().read(name), bytes("c6fc0d"));
}

void CtlEditerSaveTest::binaryIsRefused()
{
    const QByteArray content("\0binary\r\n", 9);
    QVERIFY(load(content));
    m_editor->insert(QStringLiteral("x"));
    const MessageBoxes boxes;
    QVERIFY(!save(int(CharCode::Utf8), int(ReturnCode::Lf)));
    QCOMPARE(boxes.texts(), QStringList(QStringLiteral("Error|The binary file cannot be saved.")));
    QCOMPARE(boxes.shown()[0].icon, QMessageBox::Information);
    QCOMPARE(folder().read(name), content);
    QCOMPARE(m_editor->charCode(), int(CharCode::Binary));
    QCOMPARE(m_editor->returnCode(), int(ReturnCode::None));
    QVERIFY(m_editor->edited());
    QVERIFY(m_editor->undoAvailable());
}

void CtlEditerSaveTest::fileThatCouldNotBeReadIsKept()
{
    QVERIFY(QDir(folder().path()).mkdir(name));
    MessageBoxes boxes;
    m_editor->loadFile(folder().path(), name, 0);
    QCOMPARE(boxes.count(), 1);
    QVERIFY(QDir(folder().path()).rmdir(name));
    QVERIFY(folder().write(name, "nobody has read this"));
    m_editor->insert(QStringLiteral("new"));
    QVERIFY(save(int(CharCode::Utf8)));
    QCOMPARE(folder().read(name), QByteArray("new"));
    QCOMPARE(boxes.count(), 2);
    QCOMPARE(boxes.shown()[1].title, QStringLiteral("Confirm File Save"));
    QFile kept(boxes.shown()[1].text.section(u'\n', 1));
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), QByteArray("nobody has read this"));
    m_editor->insert(QStringLiteral("er"));
    QVERIFY(save(int(CharCode::Utf8)));
    QCOMPARE(boxes.count(), 2);
}

void CtlEditerSaveTest::fileThatWasReadIsNotKept()
{
    const MessageBoxes boxes;
    m_editor->loadFile(folder().path(), QStringLiteral("missing"), 0);
    QVERIFY(load("text"));
    QVERIFY(save());
    QVERIFY(folder().write(QStringLiteral("other"), "old"));
    m_editor->loadFile(folder().path(), QStringLiteral("missing"), 0);
    QVERIFY(m_editor->saveFile(folder().path(), QStringLiteral("other")));
    QCOMPARE(boxes.count(), 2);
}

void CtlEditerSaveTest::failedSaveKeepsTheDocument_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("failing");
    QTest::newRow("folder that is not there") << QStringLiteral("no/") << name;
    QTest::newRow("folder of that name") << QString() << QStringLiteral("folder");
    QTest::newRow("FIFO") << QString() << QStringLiteral("fifo");
}

void CtlEditerSaveTest::failedSaveKeepsTheDocument()
{
    QFETCH(QString, path);
    QFETCH(QString, failing);
    QVERIFY(QDir(folder().path()).mkdir(QStringLiteral("folder")));
    QCOMPARE(::mkfifo(FileName::toBytes(folder().path() + QStringLiteral("fifo")).constData(), 0644), 0);
    QVERIFY(load("text\n"));
    m_editor->insert(QStringLiteral("x"));
    const QStringList before = folder().names();
    QSignalSpy undo(m_editor, &ctlEditer::undoAvailable2);
    const MessageBoxes boxes;
    QVERIFY(!m_editor->saveFile(folder().path() + path, failing, int(CharCode::Jis), int(ReturnCode::Cr)));
    QCOMPARE(boxes.texts(), QStringList(cannotWrite));
    QCOMPARE(boxes.shown()[0].icon, QMessageBox::Critical);
    QCOMPARE(m_editor->path(), folder().path());
    QCOMPARE(m_editor->name(), name);
    QCOMPARE(m_editor->text(), QStringLiteral("xtext\n"));
    QVERIFY(m_editor->edited());
    QVERIFY(m_editor->undoAvailable());
    QCOMPARE(undo.count(), 0);
    QCOMPARE(m_editor->charCode(), int(CharCode::Jis));
    QCOMPARE(m_editor->returnCode(), int(ReturnCode::Cr));
    QCOMPARE(folder().names(), before);
    QCOMPARE(folder().read(name), QByteArray("text\n"));
}

void CtlEditerSaveTest::savedAfterAFailure()
{
    m_editor->insert(QStringLiteral("a\nb"));
    {
        const MessageBoxes boxes;
        QVERIFY(!m_editor->saveFile(
            folder().path() + QStringLiteral("no/"), name, int(CharCode::Utf8), int(ReturnCode::Lf)));
    }
    QVERIFY(m_editor->saveFile(folder().path(), name));
    QCOMPARE(folder().read(name), QByteArray("a\nb"));
}

void CtlEditerSaveTest::oldContentThatWasKeptIsNamed()
{
    // Nothing may be written behind the first block once the file itself is being overwritten.
    const QByteArray file = FileName::toBytes(folder().path() + name);
    QVERIFY(folder().write(name, "the old content"));
    QCOMPARE(::link(file.constData(), (file + "2").constData()), 0);
    struct stat target;
    QCOMPARE(::stat(file.constData(), &target), 0);
    FileCalls calls = FileCalls::system();
    calls.pwrite = [&](int fd, const void *from, size_t size, off_t offset) -> ssize_t {
        struct stat info;
        ::fstat(fd, &info);
        if (info.st_ino == target.st_ino) {
            errno = EIO;
            return -1;
        }
        return ::pwrite(fd, from, size, offset);
    };
    m_editor->insert(QStringLiteral("new"));
    DocumentWriter writer(file, writtenAs(utf8Codec(), ReturnCode::Lf), calls);
    QVERIFY(!write(writer));
    QFile kept(QFile::decodeName(writer.keptCopy()));
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), QByteArray("the old content"));
}

/// The permission to write the file, which the usual message speaks of, is there.
void CtlEditerSaveTest::folderThatCannotKeepTheOldContentIsNamed()
{
    const QByteArray file = FileName::toBytes(folder().path() + name);
    QVERIFY(load("the old content"));
    QCOMPARE(::link(file.constData(), (file + "2").constData()), 0);
    const QByteArray state = qgetenv("XDG_STATE_HOME");
    const MessageBoxes boxes;
    qputenv("XDG_STATE_HOME", "/dev/null/x");
    const bool isSaved = save();
    qputenv("XDG_STATE_HOME", state);
    QVERIFY(!isSaved);
    QCOMPARE(boxes.count(), 2);
    QCOMPARE(boxes.texts().first(), cannotWrite);
    QVERIFY(boxes.texts().last().contains(QStringLiteral("\n/dev/null/x/marlopad/\n")));
    QCOMPARE(folder().read(name), QByteArray("the old content"));
    QVERIFY(save());
    QCOMPARE(boxes.count(), 2);
}

void CtlEditerSaveTest::fullDiskWhileEncoding()
{
    FileCalls calls = FileCalls::system();
    off_t room = 700000;
    calls.pwrite = [&](int fd, const void *from, size_t size, off_t offset) -> ssize_t {
        if (offset + off_t(size) > room) {
            errno = ENOSPC;
            return -1;
        }
        return ::pwrite(fd, from, size, offset);
    };
    QVERIFY(folder().write(name, "the old content"));
    m_editor->setText(QStringLiteral("日本語のテキスト\n").repeated(100000));
    for (const ReturnCode lineEnd : { ReturnCode::Lf, ReturnCode::CrLf }) {
        DocumentWriter writer(
            FileName::toBytes(folder().path() + name), writtenAs(eucCodec(), lineEnd), calls);
        QVERIFY(!write(writer));
        QCOMPARE(writer.keptCopy(), QByteArray());
        QCOMPARE(folder().read(name), QByteArray("the old content"));
        QCOMPARE(folder().names().size(), 1);
    }
}

void CtlEditerSaveTest::unicodeComesBackAsUtf8()
{
    QVERIFY(load(bytes("fffee5652c67")));
    QCOMPARE(m_editor->charCodeName(), QStringLiteral("Unicode"));
    m_editor->setCursorPosition(0, 2);
    m_editor->insert(QStringLiteral("\n語"));
    QVERIFY(save());
    QCOMPARE(folder().read(name), QByteArray("日本\r\n語"));
    QCOMPARE(m_editor->charCodeName(), QStringLiteral("Unicode"));
    m_editor->reload(folder().path(), name);
    QCOMPARE(m_editor->charCodeName(), QStringLiteral("UTF8"));
    QCOMPARE(m_editor->text(), QStringLiteral("日本\n語"));
}

void CtlEditerSaveTest::asciiIsWrittenAsShiftJis()
{
    QVERIFY(load("abc"));
    QCOMPARE(m_editor->charCode(), int(CharCode::Ascii));
    m_editor->insert(QStringLiteral("日"));
    QVERIFY(save());
    QCOMPARE(folder().read(name), bytes("93fa616263"));
}

void CtlEditerSaveTest::changedFileIsOverwritten()
{
    QVERIFY(load("text\n"));
    QVERIFY(folder().write(name, "somebody else's\n"));
    const MessageBoxes boxes;
    QVERIFY(save());
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(folder().read(name), QByteArray("text\n"));
}

void CtlEditerSaveTest::onlyEditedBytesDiffer()
{
    // Shift-JIS with CR+LF, bytes that are no characters among them.
    const QByteArray before = bytes("93fa967b0d0a85fffd8141200d0a") + "end \x81";
    QVERIFY(load(before, int(CharCode::ShiftJis)));
    m_editor->setCursorPosition(0, 1);
    m_editor->insert(QStringLiteral("x"));
    QVERIFY(save());
    QCOMPARE(folder().read(name), QByteArray(before).insert(2, 'x'));
}

void CtlEditerSaveTest::everySample_data()
{
    QTest::addColumn<QString>("file");
    const QDir samples(QStringLiteral(SAMPLES_DIR));
    for (const QString &file : samples.entryList({ QStringLiteral("*.txt") }, QDir::Files))
        QTest::newRow(qPrintable(file)) << samples.filePath(file);
}

void CtlEditerSaveTest::everySample()
{
    QFETCH(QString, file);
    QFile sample(file);
    QVERIFY(sample.open(QIODevice::ReadOnly));
    const QByteArray content = sample.readAll();
    QVERIFY(load(content));
    QVERIFY(!m_editor->text().contains(u'\ufffd'));
    QVERIFY(save());
    if (m_editor->charCode() == int(CharCode::Unicode))
        QCOMPARE(folder().read(name), m_editor->text().toUtf8());
    else
        QCOMPARE(folder().read(name), content);
}

void CtlEditerSaveTest::randomBytes_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<quint32>("seed");
    const quint32 first = seedOr(1);
    for (const CharCode code : everyCharCode()) {
        for (quint32 seed = first; isCodeOfText(code) && seed < first + 8; ++seed)
            QTest::addRow("code %d, seed %u", int(code), seed) << int(code) << seed;
    }
}

/// Whatever the bytes, a file that is opened and saved is the same file.
void CtlEditerSaveTest::randomBytes()
{
    QFETCH(int, code);
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    QByteArray content = "first line\n";
    const bool dense = seed % 2 == 0;
    for (int i = 0; i < 30000; ++i)
        content += char(dense && random.bounded(4) > 0 ? 0x81 + random.bounded(0x7c) : random.bounded(256));
    QVERIFY(load(content, code));
    const QString text = m_editor->text();
    QVERIFY(save());
    const QByteArray saved = folder().read(name);
    content.replace('\0', '\xff');
    QCOMPARE(saved, content);
    m_editor->loadFile(folder().path(), name, code);
    QCOMPARE(m_editor->text(), text);
}

void CtlEditerSaveTest::randomLineEnds_data()
{
    QTest::addColumn<int>("lineEnd");
    QTest::addColumn<quint32>("seed");
    const quint32 first = seedOr(1);
    for (const int lineEnd : { int(ReturnCode::Cr), int(ReturnCode::CrLf), int(ReturnCode::Lf) }) {
        for (quint32 seed = first; seed < first + 5; ++seed)
            QTest::addRow("line end %d, seed %u", lineEnd, seed) << lineEnd << seed;
    }
}

void CtlEditerSaveTest::randomLineEnds()
{
    QFETCH(int, lineEnd);
    QFETCH(quint32, seed);
    static const QByteArray ends[] = { "", "\r", "\r\n", "\n" };
    QRandomGenerator random(seed);
    QByteArray content;
    for (int i = 0; i < 3000; ++i)
        content += QByteArray("日本語").repeated(random.bounded(30)) + ends[lineEnd];
    content += seed % 2 == 0 ? "no end" : "";
    QVERIFY(load(content));
    QCOMPARE(m_editor->returnCode(), lineEnd);
    QVERIFY(save());
    QVERIFY(folder().read(name) == content);
}

REGISTER_TEST(runWindowTest<CtlEditerSaveTest>)
#include "ctleditersave_test.moc"
