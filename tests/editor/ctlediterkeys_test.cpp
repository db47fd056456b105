#include "editor/ctlediter.h"

#include "settings/settings.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/undosteps.h"
#include "tests/widget/drawntext.h"
#include "tests/widget/rows.h"

#include <QKeyEvent>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QSignalSpy>

#include <memory>

class CtlEditerKeysTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void autoIndent_data();
    void autoIndent();
    void autoIndentTakesEveryReturn_data();
    void autoIndentTakesEveryReturn();
    void autoIndentIsOneUndoStep();
    void autoIndentOfAWrappedRow();
    void returnEndsAComposition();
    void blockIndent_data();
    void blockIndent();
    void blockIndentIsOneUndoStep();
    void blockIndentOfWrappedRows();
    void exactlyShiftIgnoresTheKeypad();
    void tabNeverMovesTheFocus();
    void controlTabIsLeftToTheWindow();
    void homeScrollsBack();
    void rightOverALineEndRepaintsTheRow();
    void randomBlocks_data();
    void randomBlocks();

private:
    std::unique_ptr<QWidget> m_window;
    ctlEditer *m_editor = nullptr;
};

void CtlEditerKeysTest::init()
{
    appSettings() = AppSettings();
    appSettings().FontName = QStringLiteral("monospace");
    m_window = std::make_unique<QWidget>();
    m_window->resize(500, 300);
    m_editor = new ctlEditer(m_window.get());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_editor->setFocus();
}

void CtlEditerKeysTest::cleanup()
{
    m_window.reset();
}

void CtlEditerKeysTest::autoIndent_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, int mode, const char16_t *before, const char16_t *after) {
        QTest::newRow(name) << mode << QString::fromUtf16(before) << QString::fromUtf16(after);
    };
    row("none: only a line break", 0, u"\t a|b", u"\t a\n|b");
    row("TAB, space, letter", 1, u"\t a|b", u"\t a\n\t |b");
    row("at the end of the row", 1, u"\t ab|", u"\t ab\n\t |");
    row("inside the indentation", 1, u"\t|  a", u"\t\n\t|  a");
    row("at column 0", 1, u"|\t a", u"\n|\t a");
    row("no indentation", 1, u"a|b", u"a\n|b");
    row("only the first characters count", 1, u" a \t|b", u" a \t\n |b");
    row("full-width space is not copied", 1, u"\u3000a|", u"\u3000a\n|");
    row("full-width space ends what is copied", 1, u" \u3000 a|", u" \u3000 a\n |");
    row("full-width space is copied", 2, u" \u3000\ta|", u" \u3000\ta\n \u3000\t|");
    row("full-width space inside the indentation", 2, u"\u3000|\u3000a", u"\u3000\n\u3000|\u3000a");
    row("3 is like 2", 3, u"\u3000a|", u"\u3000a\n\u3000|");
    row("-1 is like 2", -1, u"\u3000a|", u"\u3000a\n\u3000|");
    row("the cursor's row counts", 2, u"\tone\n  two|\n\tthree", u"\tone\n  two\n  |\n\tthree");
    row("spaces behind the cursor stay", 2, u"  a|  b", u"  a\n  |  b");
    row("selection in one row is replaced", 2, u"  a[bc|d", u"  a\n  |d");
    row("selection, cursor at its begin", 2, u"  a|bc]d", u"  a\n  |d");
    row("selection over lines, cursor at its end", 2, u"\ta[b\n  c|d", u"\ta\n  |d");
    row("selection over lines, cursor at its begin", 2, u"\ta|b\n  c]d", u"\ta\n\t|d");
    row("empty text", 2, u"|", u"\n|");
    row("row of blanks", 2, u"   |", u"   \n   |");
}

void CtlEditerKeysTest::autoIndent()
{
    QFETCH(int, mode);
    QFETCH(QString, before);
    appSettings().AutoIndent = mode;
    DrawnText::load(*m_editor, before);
    QTest::keyClick(m_editor, Qt::Key_Return);
    QTEST(DrawnText::draw(*m_editor), "after");
}

void CtlEditerKeysTest::autoIndentTakesEveryReturn_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("Return") << int(Qt::Key_Return) << Qt::KeyboardModifiers();
    QTest::newRow("Enter of the keypad") << int(Qt::Key_Enter) << Qt::KeyboardModifiers(Qt::KeypadModifier);
    QTest::newRow("Shift+Return") << int(Qt::Key_Return) << Qt::KeyboardModifiers(Qt::ShiftModifier);
    QTest::newRow("Ctrl+Return") << int(Qt::Key_Return) << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("Ctrl+Shift+Enter") << int(Qt::Key_Enter) << (Qt::ShiftModifier | Qt::ControlModifier);
}

void CtlEditerKeysTest::autoIndentTakesEveryReturn()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    for (const int mode : { 0, 1 }) {
        appSettings().AutoIndent = mode;
        DrawnText::load(*m_editor, QStringLiteral("  a|"));
        QTest::keyClick(m_editor, Qt::Key(key), modifiers);
        QCOMPARE(
            DrawnText::draw(*m_editor), mode == 0 ? QStringLiteral("  a\n|") : QStringLiteral("  a\n  |"));
    }
}

void CtlEditerKeysTest::autoIndentIsOneUndoStep()
{
    DrawnText::load(*m_editor, QStringLiteral("\t a|b"));
    QTest::keyClick(m_editor, Qt::Key_Return);
    QVERIFY(m_editor->undoAvailable());
    QCOMPARE(undoSteps(m_editor->history()), 1);
    m_editor->undo();
    QCOMPARE(m_editor->text(), QStringLiteral("\t ab"));
    QVERIFY(!m_editor->undoAvailable());
}

void CtlEditerKeysTest::autoIndentOfAWrappedRow()
{
    appSettings().WrapMode = 2;
    appSettings().WrapLen = 4;
    m_editor->applyWrapMode();
    // The rows are "  ab" and " cde": the second one's own blanks count.
    DrawnText::load(*m_editor, QStringLiteral("  ab cd|e"));
    QTest::keyClick(m_editor, Qt::Key_Return);
    QCOMPARE(DrawnText::draw(*m_editor), QStringLiteral("  ab cd\n |e"));
}

void CtlEditerKeysTest::returnEndsAComposition()
{
    DrawnText::load(*m_editor, QStringLiteral("  a|"));
    QInputMethodEvent composing(QStringLiteral("にほん"), {});
    QApplication::sendEvent(m_editor, &composing);
    QTest::keyClick(m_editor, Qt::Key_Return);
    QVERIFY(!m_editor->text().contains(u'\n'));
    QTest::keyClick(m_editor, Qt::Key_Return);
    QVERIFY(m_editor->text().endsWith(QStringLiteral("\n  ")));
}

void CtlEditerKeysTest::blockIndent_data()
{
    QTest::addColumn<bool>("shift");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, bool shift, const char *before, const char *after) {
        QTest::newRow(name) << shift << QString::fromUtf8(before) << QString::fromUtf8(after);
    };
    row("two lines and the end's row stays", false, "a[a\nbb\nc|c", "[\taa\n\tbb\n|cc");
    row("lines 3 to 5, end at column 0", false, "1\n2\n[3\n4\n|5\n6", "1\n2\n[\t3\n\t4\n|5\n6");
    row("reversed selection", false, "a|a\nbb\nc]c", "[\taa\n\tbb\n|cc");
    row("empty lines stay empty", false, "[a\n\n\nb\n|c", "[\ta\n\n\n\tb\n|c");
    row("line of a TAB gets one more", false, "[\t\na\n|", "[\t\t\n\ta\n|");
    row("Japanese", false, "[日本\n語\n|", "[\t日本\n\t語\n|");
    row("selection inside a line is replaced", false, "a[b|c", "a\t|c");
    row("no selection", false, "a|b", "a\t|b");
    row("only a line end selected", false, "a[\n|b", "[\ta\n|b");
    row("out: one TAB goes", true, "[\t\ta\n\tb\n|\tc", "[\ta\nb\n|\tc");
    row("out: lines without a TAB stay", true, "[a\n\tb\n  c\n \td\n|e", "[a\nb\n  c\n \td\n|e");
    row("out: empty lines stay", true, "[\n\ta\n\n|b", "[\na\n\n|b");
    row("out: a line of one TAB becomes empty", true, "[\t\n\ta\n|b",
        "[\n"
        "a\n|b");
    row("out: reversed, from the middles", true, "\ta|a\n\tb]b", "[aa\n|\tbb");
}

void CtlEditerKeysTest::blockIndent()
{
    QFETCH(bool, shift);
    QFETCH(QString, before);
    DrawnText::load(*m_editor, before);
    if (shift)
        QTest::keyClick(m_editor, Qt::Key_Backtab, Qt::ShiftModifier);
    else
        QTest::keyClick(m_editor, Qt::Key_Tab);
    QTEST(DrawnText::draw(*m_editor), "after");
    QVERIFY(m_editor->updatesEnabled());
}

void CtlEditerKeysTest::blockIndentIsOneUndoStep()
{
    const QString text = QStringLiteral("one\ntwo\nthree\n");
    DrawnText::load(*m_editor, u'[' + text + u'|');
    QTest::keyClick(m_editor, Qt::Key_Tab);
    QTest::keyClick(m_editor, Qt::Key_Tab);
    QCOMPARE(m_editor->text(), QStringLiteral("\t\tone\n\t\ttwo\n\t\tthree\n"));
    QTest::keyClick(m_editor, Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(undoSteps(m_editor->history()), 3);
    m_editor->undo();
    QCOMPARE(m_editor->text(), QStringLiteral("\t\tone\n\t\ttwo\n\t\tthree\n"));
    m_editor->undo();
    m_editor->undo();
    QCOMPARE(m_editor->text(), text);
    QVERIFY(!m_editor->undoAvailable());
}

void CtlEditerKeysTest::blockIndentOfWrappedRows()
{
    appSettings().WrapMode = 2;
    appSettings().WrapLen = 12;
    m_editor->applyWrapMode();
    // Rows of 12 columns: "aaaaaaaaaaaa" "aaa", "bbb", "cccccccccccc" "ccc"; a TAB is 4 columns wide.
    DrawnText::load(*m_editor, QStringLiteral("[aaaaaaaaaaaaaaa\nbbb\ncccccccccccccc|c"));
    QCOMPARE(m_editor->numLines(), 5);
    QTest::keyClick(m_editor, Qt::Key_Tab);
    // The selection ends in the last line's second row, so its first row is part of the block.
    QCOMPARE(DrawnText::draw(*m_editor), QStringLiteral("[\taaaaaaaaaaaaaaa\n\tbbb\n\tcccccccccccc|ccc"));
    QTest::keyClick(m_editor, Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(m_editor->text(), QStringLiteral("aaaaaaaaaaaaaaa\nbbb\nccccccccccccccc"));
    // A selection that begins in a continuation row leaves that line alone.
    DrawnText::load(*m_editor, QStringLiteral("aaaaaaaaaaaaa[aa\nbbb\n|ccc"));
    QTest::keyClick(m_editor, Qt::Key_Tab);
    QCOMPARE(DrawnText::draw(*m_editor), QStringLiteral("aaaaaaaaaaaa[aaa\n\tbbb\n|ccc"));
}

void CtlEditerKeysTest::exactlyShiftIgnoresTheKeypad()
{
    DrawnText::load(*m_editor, QStringLiteral("[\ta\n|b"));
    QTest::keyClick(m_editor, Qt::Key_Backtab, Qt::ShiftModifier | Qt::KeypadModifier);
    QCOMPARE(m_editor->text(), QStringLiteral("a\nb"));
    DrawnText::load(*m_editor, QStringLiteral("[\ta\n|b"));
    QTest::keyClick(m_editor, Qt::Key_Tab, Qt::ShiftModifier);
    QCOMPARE(m_editor->text(), QStringLiteral("a\nb"));
}

void CtlEditerKeysTest::tabNeverMovesTheFocus()
{
    QWidget other(m_window.get());
    other.setFocusPolicy(Qt::StrongFocus);
    other.show();
    m_editor->setFocus();
    DrawnText::load(*m_editor, QStringLiteral("a|"));
    QTest::keyClick(m_editor, Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), m_editor);
    QTest::keyClick(m_editor, Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), m_editor);
    QCOMPARE(m_editor->text(), QStringLiteral("a\t"));
}

void CtlEditerKeysTest::controlTabIsLeftToTheWindow()
{
    for (const auto modifiers :
        { Qt::KeyboardModifiers(Qt::ControlModifier), Qt::ControlModifier | Qt::ShiftModifier }) {
        DrawnText::load(*m_editor, QStringLiteral("[a\nb|"));
        const int key = modifiers.testFlag(Qt::ShiftModifier) ? Qt::Key_Backtab : Qt::Key_Tab;
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        event.setAccepted(true);
        QCoreApplication::instance()->notify(m_editor, &event);
        QVERIFY(!event.isAccepted());
        QCOMPARE(m_editor->text(), QStringLiteral("a\nb"));
        QVERIFY(m_editor->hasMarkedText());
    }
}

void CtlEditerKeysTest::homeScrollsBack()
{
    m_editor->setText(QString(1000, u'x') + u'\n' + QString(1000, u'y'));
    QTest::keyClick(m_editor, Qt::Key_End);
    QVERIFY(m_editor->xOffset() > 0);
    QTest::keyClick(m_editor, Qt::Key_Home);
    QCOMPARE(m_editor->xOffset(), 0);
    QTest::keyClick(m_editor, Qt::Key_End);
    QVERIFY(m_editor->xOffset() > 0);
    QTest::keyClick(m_editor, Qt::Key_Right);
    QCOMPARE(m_editor->cursorPosition().row, RowIndex(1));
    QCOMPARE(m_editor->xOffset(), 0);
}

void CtlEditerKeysTest::rightOverALineEndRepaintsTheRow()
{
    class Recorder : public ctlEditer {
    public:
        using ctlEditer::ctlEditer;
        QList<RowIndex> rows;

    protected:
        void paintCell(QPainter &painter, RowIndex row, const QRectF &cell, const QRect &update) override
        {
            rows.append(row);
            ctlEditer::paintCell(painter, row, cell, update);
        }
    };
    Recorder editor(m_window.get());
    editor.show();
    editor.setFocus();
    DrawnText::load(editor, QStringLiteral("a|b\ncd"));
    QTRY_VERIFY(editor.rows.contains(RowIndex(1)));
    QTest::keyClick(&editor, Qt::Key_Right, Qt::ShiftModifier);
    QTRY_VERIFY(!editor.rows.isEmpty());
    QCoreApplication::processEvents();
    editor.rows.clear();
    QTest::keyClick(&editor, Qt::Key_Right, Qt::ShiftModifier);
    QVERIFY(editor.hasMarkedText());
    QTRY_VERIFY(editor.rows.contains(RowIndex(0)) && editor.rows.contains(RowIndex(1)));
}

void CtlEditerKeysTest::randomBlocks_data()
{
    addSeeds(20);
}

/// Against the rows as the editor shows them, taken one after the other.
void CtlEditerKeysTest::randomBlocks()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const QString alphabet = QStringLiteral("\n\n\t\tab 語");
    for (int round = 0; round < 15; ++round) {
        appSettings().WrapMode = random.bounded(2) * 2;
        appSettings().WrapLen = 1 + random.bounded(6);
        m_editor->applyWrapMode();
        QString text;
        for (int i = random.bounded(60); i >= 0; --i)
            text += alphabet[random.bounded(int(alphabet.size()))];
        m_editor->setText(text);
        const auto place = [&] {
            return m_editor->store().rowColAt(Offset(random.bounded(int(text.size() + 1))));
        };
        const RowCol anchor = place(), cursor = place();
        m_editor->setCursorPosition(anchor);
        m_editor->setCursorPosition(cursor, true);
        if (!m_editor->markedText().contains(u'\n'))
            continue;
        const bool out = random.bounded(2) == 1;
        const RowIndex row1 = qMin(anchor, cursor).row, row2 = qMax(anchor, cursor).row;
        QString expected;
        for (RowIndex row; row <= m_editor->store().lastRow(); ++row) {
            QString line = rowText(*m_editor, row.value());
            const bool begins = row == RowIndex() || m_editor->store().row(row - 1).endsLine;
            const bool inBlock = row >= row1 && row < row2;
            if (inBlock && begins && !line.isEmpty())
                line = !out ? u'\t' + line : line.startsWith(u'\t') ? line.sliced(1) : line;
            const bool last = row == m_editor->store().lastRow();
            expected +=
                line + (m_editor->store().row(row).endsLine && !last ? QStringLiteral("\n") : QString());
        }
        QTest::keyClick(
            m_editor, out ? Qt::Key_Backtab : Qt::Key_Tab, out ? Qt::ShiftModifier : Qt::NoModifier);
        QCOMPARE(m_editor->text(), expected);
        QVERIFY(!out || m_editor->hasMarkedText());
        m_editor->undo();
        QCOMPARE(m_editor->text(), text);
    }
}

REGISTER_TEST(runWindowTest<CtlEditerKeysTest>)
#include "ctlediterkeys_test.moc"
