#include "editor/ctlediter.h"

#include "codec/charcode.h"
#include "codec/returncode.h"
#include "settings/settings.h"
#include "tests/document/documentfolder.h"
#include "tests/editor/hexfile.h"
#include "tests/messageboxes.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QRandomGenerator>
#include <QTest>

#include <memory>

namespace {

const QString otherName = QStringLiteral("other.txt");
const QString thirdName = QStringLiteral("third.txt");

/// Something of a second code in each code, undecodable bytes among it.
struct Sample {
    int code;
    QByteArray bytes;
};
const Sample samples[] = {
    { int(CharCode::ShiftJis), "a\x81\xCA \xEE\xF9 \xFA\x54 \xED\x40\x82\xA0\xFFz\nb\xEE\xF9\n" },
    { int(CharCode::Euc), "a\xA4\xA2 \x8F\xD4\xE3 \xAD\xF0 \xF9\xAC\xFFz\nb\x8F\xA2\xB7\n" },
    { int(CharCode::Jis), "a\x1B$@0!0!\x1B(Jz\\\n\x1B$B0!\nb\x1B(B\x1B[0m \x0E\x31\x0F\x1B$B)!\x1B(B\n" },
};

} // namespace

/// Bytes that a document was read from, through everything that an editor does to text.
class KeptBytesTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void codeIsDetectedAgain_data();
    void codeIsDetectedAgain();
    void terminalLog();
    void indentedAndBack_data();
    void indentedAndBack();
    void cutAndPasted_data();
    void cutAndPasted();
    void copiedToAnotherDocument_data();
    void copiedToAnotherDocument();
    void carriageReturnsInTheText();
    void anotherCodeBringsCharactersAlone();
    void savedInAnotherCode_data();
    void savedInAnotherCode();
    void takesBytesOfTheCodeItWasSavedIn_data();
    void takesBytesOfTheCodeItWasSavedIn();
    void deletedTextLeavesNothing();
    void otherSpellingsEndWithAnotherCode();
    void failedSaveInAnotherCodeKeepsThem();
    void byteOrderMarkIsDroppedWhereThereIsNone();
    void undoneEdits_data();
    void undoneEdits();

private:
    void load(const QByteArray &bytes, int code = 0)
    {
        QVERIFY(m_folder->write(name, bytes));
        QVERIFY(m_editor->loadFile(m_folder->path(), name, code));
    }
    QByteArray saved(ctlEditer &editor, const QString &as, int code = 0) const
    {
        return editor.saveFile(m_folder->path(), as, code) ? m_folder->read(as) : "(not saved)";
    }
    QByteArray saved(int code = 0) const { return saved(*m_editor, otherName, code); }
    static void addSamples();

    std::unique_ptr<DocumentFolder> m_folder;
    std::unique_ptr<QWidget> m_window;
    ctlEditer *m_editor = nullptr;
};

void KeptBytesTest::init()
{
    appSettings() = AppSettings();
    m_folder = std::make_unique<DocumentFolder>();
    m_window = std::make_unique<QWidget>();
    m_editor = new ctlEditer(m_window.get());
}

void KeptBytesTest::cleanup()
{
    m_window.reset();
    m_folder.reset();
}

void KeptBytesTest::addSamples()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("bytes");
    for (const Sample &sample : samples)
        QTest::newRow(infoOf(CharCode(sample.code)).name.data()) << sample.code << sample.bytes;
}

void KeptBytesTest::codeIsDetectedAgain_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("code");
    // Three bytes behind 8F would be taken for Shift-JIS.
    QTest::newRow("EUC, rows 89 to 92") << QByteArray("\xF9\xAC\xFA\xF0\xFA\xB6\n") << int(CharCode::Euc);
    QTest::newRow("JIS, older kanji") << QByteArray("\x1B$@0!\x1B(B\n") << int(CharCode::Jis);
}

void KeptBytesTest::codeIsDetectedAgain()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, code);
    load(bytes);
    QCOMPARE(m_editor->charCode(), code);
    const QString text = m_editor->text();
    QCOMPARE(saved().toHex(' '), bytes.toHex(' '));
    QVERIFY(m_editor->reload(m_folder->path(), otherName));
    QCOMPARE(m_editor->charCode(), code);
    QCOMPARE(m_editor->text(), text);
    // What is typed takes the same bytes as what was read.
    m_editor->setText(text);
    m_editor->saveFile(m_folder->path(), otherName);
    QVERIFY(m_editor->reload(m_folder->path(), otherName));
    QCOMPARE(m_editor->text(), text);
}

void KeptBytesTest::terminalLog()
{
    QByteArray log;
    for (int line = 0; line < 2000; ++line)
        log += "\x1B[32m" + QByteArray::number(line) + "\x1B(B\x1B[m done\x1B(B\n";
    load(log);
    QCOMPARE(m_editor->charCode(), int(CharCode::Jis));
    QVERIFY(saved() == log);
    QVERIFY(!m_editor->text().contains(QLatin1StringView("(B")));
    m_editor->setCursorPosition(1000, 0);
    m_editor->insert(QStringLiteral("X"));
    const qsizetype place = log.indexOf("\x1B[32m1000\x1B");
    QVERIFY(saved() == log.first(place) + "X" + log.sliced(place));
}

void KeptBytesTest::indentedAndBack_data()
{
    addSamples();
}

void KeptBytesTest::indentedAndBack()
{
    QFETCH(int, code);
    QFETCH(QByteArray, bytes);
    load(bytes, code);
    const auto press = [this](Qt::KeyboardModifiers modifiers) {
        m_editor->selectAll();
        QTest::keyClick(m_editor, modifiers ? Qt::Key_Backtab : Qt::Key_Tab, modifiers);
    };
    const qint64 length = m_editor->store().length();
    press({});
    QVERIFY(m_editor->store().length() > length);
    press(Qt::ShiftModifier);
    QCOMPARE(m_editor->store().length(), length);
    QCOMPARE(saved().toHex(' '), bytes.toHex(' '));
}

void KeptBytesTest::cutAndPasted_data()
{
    addSamples();
}

void KeptBytesTest::cutAndPasted()
{
    QFETCH(int, code);
    QFETCH(QByteArray, bytes);
    load(bytes, code);
    m_editor->selectAll();
    m_editor->cut();
    QCOMPARE(m_editor->store().length(), 0);
    m_editor->paste();
    QCOMPARE(saved().toHex(' '), bytes.toHex(' '));
}

void KeptBytesTest::copiedToAnotherDocument_data()
{
    addSamples();
}

void KeptBytesTest::copiedToAnotherDocument()
{
    QFETCH(int, code);
    QFETCH(QByteArray, bytes);
    load(bytes, code);
    appSettings().DefCodec = code;
    ctlEditer other(m_window.get());
    m_editor->selectAll();
    m_editor->copy();
    other.paste();
    QCOMPARE(saved(other, thirdName).toHex(' '), saved().replace("\n", "\r\n").toHex(' '));
}

/// As in logs of what shows its progress. In another document they would not be what they were.
void KeptBytesTest::carriageReturnsInTheText()
{
    const QByteArray bytes = "a\n\xFA\x54\r\xEE\xF9\rz\r\n\xFF";
    load(bytes, int(CharCode::ShiftJis));
    m_editor->selectAll();
    m_editor->cut();
    m_editor->paste();
    QCOMPARE(saved().toHex(' '), bytes.toHex(' '));
    appSettings().DefCodec = int(CharCode::ShiftJis);
    appSettings().DefCRLF = int(ReturnCode::Lf);
    ctlEditer other(m_window.get());
    other.paste();
    QCOMPARE(saved(other, thirdName).toHex(' '), QByteArray("a\n\xFA\x54\n\xEE\xF9\nz\n\xFF").toHex(' '));
}

void KeptBytesTest::anotherCodeBringsCharactersAlone()
{
    load(samples[0].bytes, int(CharCode::ShiftJis));
    appSettings().DefCodec = int(CharCode::Utf8);
    appSettings().DefCRLF = int(ReturnCode::Lf);
    ctlEditer other(m_window.get());
    m_editor->selectAll();
    m_editor->copy();
    other.paste();
    QCOMPARE(saved(other, thirdName), QStringLiteral("a￢ ￢ ￢ 纊あ\uFFFDz\nb￢\n").toUtf8());
}

void KeptBytesTest::savedInAnotherCode_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("other");
    QTest::addColumn<QByteArray>("result");
    QTest::newRow("Shift-JIS as UTF-8") << QByteArray("\x82\xA0\xFF\xFA\x54\n") << int(CharCode::ShiftJis)
                                        << int(CharCode::Utf8) << QStringLiteral("あ\uFFFD￢\n").toUtf8();
    QTest::newRow("Shift-JIS as EUC") << QByteArray("\x82\xA0\x81\n") << int(CharCode::ShiftJis)
                                      << int(CharCode::Euc) << QByteArray("\xA4\xA2?\n");
    QTest::newRow("UTF-8 as JIS") << QByteArray("\xE3\x81\x82\xE3\x81\n") << int(CharCode::Utf8)
                                  << int(CharCode::Jis) << QByteArray("\x1B$B$\"\x1B(B??\n");
    QTest::newRow("JIS as UTF-8") << QByteArray("\x1B$B)!\x1B(Bz\n") << int(CharCode::Jis)
                                  << int(CharCode::Utf8) << QStringLiteral("\uFFFD\uFFFDz\n").toUtf8();
    QTest::newRow("plain ASCII as Shift-JIS") << QByteArray("a\xFFz\n") << int(CharCode::Ascii)
                                              << int(CharCode::ShiftJis) << QByteArray("a\xFFz\n");
}

void KeptBytesTest::savedInAnotherCode()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, code);
    QFETCH(int, other);
    QFETCH(QByteArray, result);
    load(bytes, code);
    QCOMPARE(saved(other).toHex(' '), result.toHex(' '));
    QCOMPARE(saved().toHex(' '), result.toHex(' '));
}

void KeptBytesTest::takesBytesOfTheCodeItWasSavedIn_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("result");
    QTest::newRow("text alone") << QByteArray("\x82\xA0\n") << QByteArray("\x8F\xD4\xE3\xFFz\n\xA4\xA2\n");
    QTest::newRow("an undecodable byte") << QByteArray("\xFF\n") << QByteArray("\xF9\xA1?z\n?\n");
    QTest::newRow("a second code") << QByteArray("\xFA\x54\n") << QByteArray("\xF9\xA1?z\n\xA2\xCC\n");
}

/// Not when it still has bytes of the code that it was read in.
void KeptBytesTest::takesBytesOfTheCodeItWasSavedIn()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, result);
    load(before, int(CharCode::ShiftJis));
    saved(int(CharCode::Euc));
    ctlEditer source(m_window.get());
    QVERIFY(m_folder->write(thirdName, "\x8F\xD4\xE3\xFFz\n"));
    QVERIFY(source.loadFile(m_folder->path(), thirdName, int(CharCode::Euc)));
    source.selectAll();
    source.copy();
    m_editor->setCursorPosition(0, 0);
    m_editor->paste();
    QCOMPARE(saved().toHex(' '), result.toHex(' '));
}

/// But for a file that never had any.
void KeptBytesTest::deletedTextLeavesNothing()
{
    const QByteArray bytes = "log\x1B(B";
    load(bytes);
    m_editor->selectAll();
    m_editor->cut();
    QCOMPARE(saved(), QByteArray());
    load(bytes);
    m_editor->selectAll();
    m_editor->cut();
    m_editor->undo();
    QCOMPARE(saved().toHex(' '), bytes.toHex(' '));
    load("\x1B(B");
    QCOMPARE(saved().toHex(' '), QByteArray("\x1B(B").toHex(' '));
}

/// Undecodable bytes are bytes of their code again, though.
void KeptBytesTest::otherSpellingsEndWithAnotherCode()
{
    load("\xFA\x54\xFF\n", int(CharCode::ShiftJis));
    saved(int(CharCode::Utf8));
    QCOMPARE(saved(int(CharCode::ShiftJis)).toHex(' '), QByteArray("\x81\xCA\xFF\n").toHex(' '));
    QVERIFY(m_editor->loadFile(m_folder->path(), name, int(CharCode::ShiftJis)));
    QCOMPARE(saved().toHex(' '), QByteArray("\xFA\x54\xFF\n").toHex(' '));
}

void KeptBytesTest::failedSaveInAnotherCodeKeepsThem()
{
    load("\xFA\x54\xFF\n", int(CharCode::ShiftJis));
    const MessageBoxes boxes;
    QVERIFY(!m_editor->saveFile(m_folder->path() + QStringLiteral("missing/"), name, int(CharCode::Utf8)));
    QCOMPARE(saved(int(CharCode::ShiftJis)).toHex(' '), QByteArray("\xFA\x54\xFF\n").toHex(' '));
}

void KeptBytesTest::byteOrderMarkIsDroppedWhereThereIsNone()
{
    const QByteArray bytes = "\xEF\xBB\xBF"
                             "a\n";
    load(bytes);
    QCOMPARE(saved(), bytes);
    QCOMPARE(saved(int(CharCode::ShiftJis)), "a\n");
    QCOMPARE(saved(int(CharCode::Utf8)), bytes);
}

void KeptBytesTest::undoneEdits_data()
{
    addSamples();
}

void KeptBytesTest::undoneEdits()
{
    QFETCH(int, code);
    QFETCH(QByteArray, bytes);
    load(bytes, code);
    QRandomGenerator random(seedOr(7));
    for (int i = 0; i < 300; ++i) {
        const int row = random.bounded(int(m_editor->numLines()));
        m_editor->setCursorPosition(row, random.bounded(8));
        if (random.bounded(2) == 0)
            m_editor->insert(QStringLiteral("漢\n"));
        else
            QTest::keyClick(m_editor, random.bounded(2) == 0 ? Qt::Key_Delete : Qt::Key_Backspace);
    }
    while (m_editor->undoAvailable())
        m_editor->undo();
    QCOMPARE(saved().toHex(' '), bytes.toHex(' '));
}

REGISTER_TEST(runWindowTest<KeptBytesTest>)
#include "keptbytes_test.moc"
