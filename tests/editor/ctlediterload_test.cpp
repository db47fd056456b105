#include "editor/ctlediter.h"
#include "editor/readfailurebox.h"

#include "codec/charcode.h"
#include "codec/returncode.h"
#include "files/filename.h"
#include "settings/settings.h"
#include "tests/document/documentfolder.h"
#include "tests/editor/hexfile.h"
#include "tests/messageboxes.h"
#include "tests/testprogram.h"
#include "tests/widget/rows.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Notes the texts that are set.
class TextNotingEditor : public ctlEditer {
public:
    using ctlEditer::ctlEditer;
    using ctlEditer::setText;

    void setText(TextStore &&store) override
    {
        lengths << store.length();
        placesThen << cursorPosition();
        ctlEditer::setText(std::move(store));
    }

    QList<qint64> lengths;
    QList<RowCol> placesThen; ///< where the cursor stood
};

} // namespace

class CtlEditerLoadTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void detected_data();
    void detected();
    void requested_data();
    void requested();
    void emptyFileHasTheDefaults();
    void fileWithoutALineEndHasTheDefaultOne();
    void loadedDocumentIsUnmodified();
    void textIsSetByTheVirtualFunction();
    void textIsSetAndAnnouncedOnce();
    void failedLoadChangesNothingButTheName_data();
    void failedLoadChangesNothingButTheName();
    void readErrorIsTold();
    void reloadDetectsAnew();
    void largeFilesArriveWhole_data();
    void largeFilesArriveWhole();
    void wrappedWhileLoading();
    void anyBytesInTheName();

private:
    bool load(const QByteArray &content, int requested = 0);
    DocumentFolder &folder() { return *m_folder; }

    std::unique_ptr<DocumentFolder> m_folder;
    std::unique_ptr<QWidget> m_window;
    TextNotingEditor *m_editor = nullptr;
};

void CtlEditerLoadTest::init()
{
    appSettings() = AppSettings();
    appSettings().FontName = QStringLiteral("monospace");
    m_folder = std::make_unique<DocumentFolder>();
    m_window = std::make_unique<QWidget>();
    m_editor = new TextNotingEditor(m_window.get());
}

void CtlEditerLoadTest::cleanup()
{
    m_window.reset();
    m_folder.reset();
}

bool CtlEditerLoadTest::load(const QByteArray &content, int requested)
{
    const MessageBoxes boxes;
    const bool written = folder().write(name, content);
    m_editor->loadFile(folder().path(), name, requested);
    return written && boxes.count() == 0;
}

void CtlEditerLoadTest::detected_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("codeName");
    QTest::addColumn<int>("lineEnd");
    QTest::addColumn<QString>("lineEndName");
    const auto row = [](const char *title, const QByteArray &content, const char16_t *text, int code,
                         const char *codeName, int lineEnd, const char *lineEndName) {
        QTest::newRow(title) << content << QStringView(text).toString() << code
                             << QString::fromLatin1(codeName) << lineEnd << QString::fromLatin1(lineEndName);
    };
    row("plain ASCII", "abc", u"abc", 6, "Shift-JIS", 2, "CR+LF");
    row("ASCII with LF is UTF-8", "abc\n", u"abc\n", 2, "UTF8", 3, "LF");
    row("CR+LF", "a\r\nb\r\n", u"a\nb\n", 2, "UTF8", 2, "CR+LF");
    row("CR alone", "a\rb\rc", u"a\nb\nc", 2, "UTF8", 1, "CR");
    row("CR+LF first, then a lone CR", "a\r\nb\rc", u"a\nbc", 2, "UTF8", 2, "CR+LF");
    row("LF first, then CR", "a\nb\rc", u"a\nb\rc", 2, "UTF8", 3, "LF");
    row("only CR is the last byte", "abc\r", u"abc", 2, "UTF8", 2, "CR+LF");
    row("UTF-8", "日本\n", u"日本\n", 2, "UTF8", 3, "LF");
    row("UTF-8 mark stays", bytes("efbbbf610a"), u"\ufeffa\n", 2, "UTF8", 3, "LF");
    row("UTF-8 cut in the middle", bytes("e697a50ae69c"), u"日\n\xdce6\xdc9c", 2, "UTF8", 3, "LF");
    row("Shift-JIS", bytes("93fa967b0d0a"), u"日本\n", 3, "Shift-JIS", 2, "CR+LF");
    row("EUC", bytes("c6fccbdc0a"), u"日本\n", 4, "EUC", 3, "LF");
    row("JIS", bytes("1b2442467c4b5c1b28420d"), u"日本", 5, "JIS", 2, "CR+LF");
    row("Unicode", bytes("fffee5652c67"), u"日本", 1, "Unicode", 2, "CR+LF");
    row("Binary by its first byte", bytes("0041ff0a"), u"\u00ffA\u00ff\n", 0, "Binary", 0, "??");
    row("Binary by a later byte", bytes("410d0a00420d"), u"A\r\n\u00ffB\r", 0, "Binary", 0, "??");
    row("NUL behind the end of the UTF-8 pass", bytes("93fa967b00410a"),
        u"日本\xdcff"
        u"A\n",
        3, "Shift-JIS", 3, "LF");
}

void CtlEditerLoadTest::detected()
{
    QFETCH(QByteArray, content);
    QVERIFY(load(content));
    QTEST(m_editor->text(), "text");
    QTEST(m_editor->charCode(), "code");
    QTEST(m_editor->charCodeName(), "codeName");
    QTEST(m_editor->returnCode(), "lineEnd");
    QTEST(m_editor->returnCodeName(), "lineEndName");
}

void CtlEditerLoadTest::requested_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *title, int code, const char *hex, const char16_t *text) {
        QTest::newRow(title) << code << bytes(hex) << QStringView(text).toString();
    };
    row("Unicode without a mark is Latin-1", 1, "41e90a", u"A\u00e9\n");
    row("UTF-8", 2, "e697a50a", u"日\n");
    row("Shift-JIS", 3, "93fa0a", u"日\n");
    row("EUC", 4, "c6fc0a", u"日\n");
    row("JIS", 5, "1b2442467c1b28420a", u"日\n");
    row("plain ASCII is Shift-JIS", 6, "93fa0a", u"日\n");
    row("a value nobody knows is Shift-JIS", 99, "93fa0a", u"日\n");
    row("UTF-8 bytes as EUC keep their bytes", 4, "e60a", u"\xdce6\n");
}

void CtlEditerLoadTest::requested()
{
    QFETCH(int, code);
    QFETCH(QByteArray, content);
    QVERIFY(load(content, code));
    QTEST(m_editor->text(), "text");
    QCOMPARE(m_editor->charCode(), code);
    QCOMPARE(m_editor->returnCode(), int(ReturnCode::Lf));
}

void CtlEditerLoadTest::emptyFileHasTheDefaults()
{
    appSettings().DefCodec = int(CharCode::Euc);
    appSettings().DefCRLF = int(ReturnCode::Cr);
    m_editor->insert(QStringLiteral("before"));
    QVERIFY(load(QByteArray()));
    QCOMPARE(m_editor->text(), QString());
    QCOMPARE(m_editor->charCode(), int(CharCode::Euc));
    QCOMPARE(m_editor->returnCode(), int(ReturnCode::Cr));
    QVERIFY(!m_editor->edited());
}

void CtlEditerLoadTest::fileWithoutALineEndHasTheDefaultOne()
{
    appSettings().DefCRLF = int(ReturnCode::Lf);
    QVERIFY(load("no line end"));
    QCOMPARE(m_editor->returnCodeName(), QStringLiteral("LF"));
    QCOMPARE(m_editor->charCode(), int(CharCode::Ascii));
}

void CtlEditerLoadTest::loadedDocumentIsUnmodified()
{
    m_editor->insert(QStringLiteral("edited"));
    m_editor->undo();
    m_editor->insert(QStringLiteral("again"));
    QSignalSpy undo(m_editor, &ctlEditer::undoAvailable2);
    QVERIFY(load("text\n"));
    QCOMPARE(m_editor->path(), folder().path());
    QCOMPARE(m_editor->name(), name);
    QVERIFY(!m_editor->edited());
    QVERIFY(m_editor->isUndoEnabled());
    QVERIFY(!m_editor->undoAvailable());
    QVERIFY(!m_editor->redoAvailable());
    QVERIFY(!m_editor->history().canUndo());
    QCOMPARE(undo.count(), 1);
    QCOMPARE(undo[0][1].toBool(), false);
    QCOMPARE(m_editor->cursorOffset(), Offset(0));
    m_editor->insert(QStringLiteral("x"));
    QVERIFY(m_editor->undoAvailable());
    m_editor->undo();
    QCOMPARE(m_editor->text(), QStringLiteral("text\n"));
}

void CtlEditerLoadTest::textIsSetByTheVirtualFunction()
{
    m_editor->insert(QStringLiteral("one\ntwo"));
    QVERIFY(load("text\n"));
    QCOMPARE(m_editor->lengths, QList<qint64>({ 5 }));
    QCOMPARE(m_editor->placesThen, QList<RowCol>({ RowCol{ RowIndex(0), 0 } }));
    QVERIFY(!m_editor->edited());
}

void CtlEditerLoadTest::textIsSetAndAnnouncedOnce()
{
    m_editor->insert(QStringLiteral("before"));
    QList<qint64> lengths;
    connect(m_editor, &ctlEditer::textChanged, this, [&] { lengths << m_editor->store().length(); });
    QVERIFY(load("text\n"));
    QCOMPARE(lengths, QList<qint64>({ 5 }));
}

void CtlEditerLoadTest::failedLoadChangesNothingButTheName_data()
{
    QTest::addColumn<QString>("failing");
    QTest::addColumn<QString>("message");
    QTest::newRow("missing") << QStringLiteral("missing.txt") << QStringLiteral("This file is not exists!");
    QTest::newRow("folder") << QStringLiteral("folder") << QStringLiteral("This is a folder, not a file!");
    QTest::newRow("FIFO") << QStringLiteral("fifo")
                          << QStringLiteral("This is a device or a pipe, not a file!");
    QTest::newRow("link to itself") << QStringLiteral("circle")
                                    << QStringLiteral("This file was not opened!");
    QTest::newRow("8 TiB") << QStringLiteral("sparse")
                           << QStringLiteral("There is not enough memory for this file!");
}

void CtlEditerLoadTest::failedLoadChangesNothingButTheName()
{
    QFETCH(QString, failing);
    QVERIFY(QDir(folder().path()).mkdir(QStringLiteral("folder")));
    QCOMPARE(::mkfifo(FileName::toBytes(folder().path() + QStringLiteral("fifo")).constData(), 0644), 0);
    QCOMPARE(
        ::symlink("circle", FileName::toBytes(folder().path() + QStringLiteral("circle")).constData()), 0);
    if (failing == QStringLiteral("sparse")) {
        QFile sparse(folder().path() + failing);
        QVERIFY(sparse.open(QIODevice::WriteOnly));
        QVERIFY(sparse.resize(qint64{ 8 } << 40));
    }
    QVERIFY(load(bytes("c6fccbdc0d0a")));
    m_editor->insert(QStringLiteral("x"));
    const MessageBoxes boxes;
    m_editor->loadFile(folder().path(), failing, int(CharCode::Utf8));
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.shown()[0].title, QStringLiteral("File Load Error!"));
    QTEST(boxes.shown()[0].text, "message");
    QCOMPARE(boxes.shown()[0].icon, QMessageBox::Critical);
    QCOMPARE(m_editor->path(), folder().path());
    QCOMPARE(m_editor->name(), failing);
    QCOMPARE(m_editor->text(), QStringLiteral("x日本\n"));
    QCOMPARE(m_editor->charCode(), int(CharCode::Euc));
    QCOMPARE(m_editor->returnCode(), int(ReturnCode::CrLf));
    QVERIFY(m_editor->edited());
    QVERIFY(m_editor->undoAvailable());
    m_editor->undo();
    QCOMPARE(m_editor->text(), QStringLiteral("日本\n"));
}

void CtlEditerLoadTest::readErrorIsTold()
{
    const MessageBoxes boxes;
    tellReadFailure(m_editor, ReadFailure::BrokenOff);
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(boxes.shown()[0].title, QStringLiteral("File Load Error!"));
    QCOMPARE(boxes.shown()[0].text, QStringLiteral("This file could not be read to its end!"));
}

void CtlEditerLoadTest::reloadDetectsAnew()
{
    QVERIFY(load("日本\n", int(CharCode::ShiftJis)));
    QCOMPARE(m_editor->charCode(), int(CharCode::ShiftJis));
    m_editor->reload(folder().path(), name);
    QCOMPARE(m_editor->charCode(), int(CharCode::Utf8));
    QCOMPARE(m_editor->text(), QStringLiteral("日本\n"));
    QVERIFY(folder().write(name, "changed\r\n"));
    m_editor->reload(folder().path(), name);
    QCOMPARE(m_editor->text(), QStringLiteral("changed\n"));
    QCOMPARE(m_editor->returnCode(), int(ReturnCode::CrLf));
}

void CtlEditerLoadTest::largeFilesArriveWhole_data()
{
    QTest::addColumn<QByteArray>("unit");
    QTest::newRow("ASCII lines") << QByteArray("a line of text\n");
    QTest::newRow("one line") << QByteArray("no line end ");
    QTest::newRow("mixed UTF-8") << QByteArray("日本語 and ASCII\n");
    QTest::newRow("only line ends") << QByteArray("\n");
}

void CtlEditerLoadTest::largeFilesArriveWhole()
{
    QFETCH(QByteArray, unit);
    const QByteArray content = unit.repeated(1000003 / unit.size());
    QVERIFY(load(content, int(CharCode::Utf8)));
    const QString text = QString::fromUtf8(content);
    QVERIFY(m_editor->text() == text);
    QCOMPARE(m_editor->numLines(), text.count(u'\n') + 1);
}

void CtlEditerLoadTest::wrappedWhileLoading()
{
    appSettings().WrapMode = 2;
    appSettings().WrapLen = 10;
    m_editor->applyWrapMode();
    QVERIFY(load(QByteArray(95, 'x') + '\n' + QByteArray(5, 'x')));
    QCOMPARE(m_editor->numLines(), 11);
    QCOMPARE(rowText(*m_editor, 0).size(), 10);
    QCOMPARE(rowText(*m_editor, 9).size(), 5);
    QCOMPARE(m_editor->store().lineCount(), 2);
}

void CtlEditerLoadTest::anyBytesInTheName()
{
    const QString oddName = FileName::fromBytes("\x83\x65\xff.txt");
    m_editor->insert(QStringLiteral("text"));
    QVERIFY(m_editor->saveFile(folder().path(), oddName));
    const MessageBoxes boxes;
    ctlEditer other(m_window.get());
    other.loadFile(folder().path(), oddName, 0);
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(other.text(), QStringLiteral("text"));
    QCOMPARE(::unlink(FileName::toBytes(folder().path() + oddName).constData()), 0);
}

REGISTER_TEST(runWindowTest<CtlEditerLoadTest>)
#include "ctlediterload_test.moc"
