#include "search/frmjumpto.h"
#include "tests/app/testwindow.h"
#include "tests/search/searchforms.h"
#include "tests/testprogram.h"
#include "tests/widget/drawntext.h"
#include "tests/widget/rows.h"

#include <QLineEdit>

#include <limits>

using namespace Qt::StringLiterals;

/// The jumps to a line and to the last edited place.
class JumpTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void jumpsToLines_data();
    void jumpsToLines();
    void lineOneOfAnEmptyDocument();
    void emptyLastLine();
    void linesCountLogicallyWhenWrapped();
    void jumpScrolls();
    void jumpDialog();
    void cancelledDialogJumpsNowhere();
    void jumpsToLastEdit();
    void lastEditIsWhereItBegan_data();
    void lastEditIsWhereItBegan();
    void lastEditFollowsUndoAndRedo();
    void lastEditWithoutHistory_data();
    void lastEditWithoutHistory();
    void lastEditOfEachDocument();
    void lastEditAmongWrappedRows();
    void lastEditScrolls();

private:
    ctlEditer &editor() { return *m_window->currentEditor(); }

    std::unique_ptr<TestWindow> m_window;
    TestFiles m_files;
};

void JumpTest::init()
{
    m_window.reset();
    resetSettings();
    m_window = std::make_unique<TestWindow>();
    QVERIFY(m_window->open());
}

void JumpTest::jumpsToLines_data()
{
    QTest::addColumn<qint64>("line");
    QTest::addColumn<QString>("expected");

    const QString unchanged = QStringLiteral("[aaaaaaaa|\nb\nc");
    QTest::newRow("the first") << qint64(1) << "|aaaaaaaa\nb\nc";
    QTest::newRow("the second, below a wrapped one") << qint64(2) << "aaaaaaaa\n|b\nc";
    QTest::newRow("the last") << qint64(3) << "aaaaaaaa\nb\n|c";
    QTest::newRow("zero") << qint64(0) << unchanged;
    QTest::newRow("negative") << qint64(-1) << unchanged;
    QTest::newRow("behind the end") << qint64(4) << unchanged;
    QTest::newRow("far behind the end") << std::numeric_limits<qint64>::max() << unchanged;
    QTest::newRow("far before the start") << std::numeric_limits<qint64>::min() << unchanged;
}

void JumpTest::jumpsToLines()
{
    QFETCH(qint64, line);
    QFETCH(QString, expected);

    editor().setText(QStringLiteral("aaaaaaaa\nb\nc"));
    wrapAt(editor(), 3);
    QVERIFY(editor().numLines() > 3);
    const RowCol end = editor().store().rowColAt(Offset(8));
    editor().setCursorPosition(0, 0);
    editor().setCursorPosition(end, true);
    editor().jumpToLine(line);
    QCOMPARE(DrawnText::draw(editor()), expected);
}

void JumpTest::jumpsToLastEdit()
{
    editor().setText(QStringLiteral("one\ntwo"));
    m_window->slotCmdViewLastEdit();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("|one\ntwo"));
    editor().setCursorPosition(1, 3);
    QTest::keyClicks(&editor(), QStringLiteral("xyz"));
    editor().setCursorPosition(0, 1);
    m_window->slotCmdViewLastEdit();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("one\ntwo|xyz"));
    editor().setCursorPosition(0, 0);
    editor().setCursorPosition(0, 2, true);
    editor().insert(QStringLiteral("O"));
    editor().setCursorPosition(1, 0);
    m_window->slotCmdViewLastEdit();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("|Oe\ntwoxyz"));
    m_window->slotCmdEditUndo();
    m_window->slotCmdViewLastEdit();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("one\ntwo|xyz"));
}

void JumpTest::jumpDialog()
{
    editor().setText(QStringLiteral("a\nb\nc"));
    MessageBoxes boxes;
    QStringList left;
    QTimer::singleShot(0, this, [&] {
        auto *dialog = m_window->findChild<frmJumpTo *>();
        auto *field = dialog->findChild<QLineEdit *>();
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Jump to"));
        QCOMPARE(field->width(), 40);
        field->setText(QStringLiteral("x"));
        QTest::keyClick(field, Qt::Key_Return);
        left << field->text() << (dialog->isVisible() ? QStringLiteral("open") : QStringLiteral("closed"));
        field->setText(QStringLiteral("３"));
        buttonOf(*dialog, QStringLiteral("Jump"))->click();
    });
    m_window->slotCmdViewGyoJump();
    QCOMPARE(left, (QStringList{ QStringLiteral("x"), QStringLiteral("open") }));
    QCOMPARE(boxes.texts(), QStringList{ QStringLiteral("Input Error|Input a number.") });
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("a\nb\n|c"));
}

void JumpTest::lineOneOfAnEmptyDocument()
{
    editor().jumpToLine(1);
    QCOMPARE(DrawnText::draw(editor()), u"|"_s);
    editor().jumpToLine(2);
    QCOMPARE(DrawnText::draw(editor()), u"|"_s);
}

void JumpTest::emptyLastLine()
{
    editor().setText(u"a\n"_s);
    editor().jumpToLine(2);
    QCOMPARE(DrawnText::draw(editor()), u"a\n|"_s);
}

void JumpTest::linesCountLogicallyWhenWrapped()
{
    editor().setText(QString(u"0123456789\n"_s).repeated(50));
    for (const int columns : { 3, 5, 100 }) {
        wrapAt(editor(), columns);
        for (const int line : { 1, 2, 17, 50, 51 }) {
            editor().jumpToLine(line);
            QCOMPARE(editor().cursorOffset(), Offset(qint64(line - 1) * 11));
            QCOMPARE(editor().cursorPosition().column, 0);
        }
    }
}

void JumpTest::jumpScrolls()
{
    editor().setText(QString(u"line\n"_s).repeated(100000));
    for (const qint64 line : { 50000, 3, 100001, 1 }) {
        editor().jumpToLine(line);
        QCOMPARE(editor().cursorPosition(), (RowCol{ RowIndex(line - 1), 0 }));
        QVERIFY(editor().viewport()->rect().adjusted(-1, 0, 1, 0).contains(editor().cursorRect()));
    }
}

void JumpTest::cancelledDialogJumpsNowhere()
{
    editor().setText(u"a\nb"_s);
    QTimer::singleShot(0, this, [&] {
        auto *dialog = m_window->findChild<frmJumpTo *>();
        dialog->findChild<QLineEdit *>()->setText(u"2"_s);
        buttonOf(*dialog, u"Cancel"_s)->click();
    });
    m_window->slotCmdViewGyoJump();
    QCOMPARE(DrawnText::draw(editor()), u"|a\nb"_s);
    QVERIFY(!m_window->findChild<frmJumpTo *>());
}

using Edit = void (*)(TestWindow &, ctlEditer &);

void JumpTest::lastEditIsWhereItBegan_data()
{
    QTest::addColumn<Edit>("edit");
    QTest::addColumn<qint64>("place");
    const auto row = [](const char *name, qint64 place, Edit edit) { QTest::newRow(name) << edit << place; };
    row("typing", 6, [](TestWindow &, ctlEditer &editor) {
        editor.setCursorPosition(1, 2);
        QTest::keyClicks(&editor, u"xyz"_s);
    });
    row("repeated Backspace", 4, [](TestWindow &, ctlEditer &editor) {
        editor.setCursorPosition(1, 2);
        QTest::keyClick(&editor, Qt::Key_Backspace);
        QTest::keyClick(&editor, Qt::Key_Backspace);
    });
    row("repeated Delete", 5, [](TestWindow &, ctlEditer &editor) {
        editor.setCursorPosition(1, 1);
        QTest::keyClick(&editor, Qt::Key_Delete);
        QTest::keyClick(&editor, Qt::Key_Delete);
    });
    row("selected text typed over", 1, [](TestWindow &, ctlEditer &editor) {
        editor.setCursorPosition(0, 1);
        editor.setCursorPosition(1, 3, true);
        QTest::keyClicks(&editor, u"x"_s);
    });
    row("text removed before an earlier edit", 0, [](TestWindow &, ctlEditer &editor) {
        editor.setCursorPosition(2, 3);
        QTest::keyClicks(&editor, u"later gone up"_s);
        editor.setCursorPosition(0, 0);
        editor.setCursorPosition(1, 0, true);
        QTest::keyClick(&editor, Qt::Key_Delete);
    });
    row("date and time", 4, [](TestWindow &window, ctlEditer &editor) {
        editor.setCursorPosition(1, 0);
        window.slotCmdEditDateTime();
    });
    row("another edit after an undone one", 4, [](TestWindow &, ctlEditer &editor) {
        editor.setCursorPosition(0, 0);
        editor.setCursorPosition(2, 1, true);
        QTest::keyClick(&editor, Qt::Key_Tab);
        editor.undo();
        editor.setCursorPosition(1, 0);
        editor.insert(u"\t"_s);
    });
    row("more edits than are kept apart", 6, [](TestWindow &, ctlEditer &editor) {
        for (int i = 0; i < 300; ++i)
            insertAt(editor, u"x"_s, 0, 0);
        removeRow(editor, 0);
        insertAt(editor, u"abc\n"_s, 0, 0);
        insertAt(editor, u"x"_s, 1, 2);
    });
}

void JumpTest::lastEditIsWhereItBegan()
{
    QFETCH(Edit, edit);
    QFETCH(qint64, place);
    editor().setText(u"abc\ndef\nghi"_s);
    edit(*m_window, editor());
    for (const bool fromTheEnd : { true, false }) {
        editor().setCursorPosition(fromTheEnd ? editor().numLines() : 0, fromTheEnd ? 1000 : 0);
        editor().setCursorPosition(1, 1, true);
        m_window->slotCmdViewLastEdit();
        QCOMPARE(editor().cursorOffset(), Offset(place));
        QVERIFY(!editor().hasMarkedText());
    }
}

void JumpTest::lastEditFollowsUndoAndRedo()
{
    editor().setText(u"abcdef"_s);
    const auto jump = [this] {
        editor().setCursorPosition(0, 100);
        m_window->slotCmdViewLastEdit();
        return editor().cursorOffset();
    };
    insertAt(editor(), u"1"_s, 0, 1);
    insertAt(editor(), u"2"_s, 0, 3);
    QCOMPARE(jump(), Offset(3));
    editor().undo();
    QCOMPARE(jump(), Offset(1));
    editor().undo();
    QCOMPARE(jump(), Offset(6)); // nothing to go to: the cursor stays
    editor().redo();
    QCOMPARE(jump(), Offset(1));
    editor().redo();
    QCOMPARE(jump(), Offset(3));
    editor().undo();
    insertAt(editor(), u"3"_s, 0, 5);
    QCOMPARE(jump(), Offset(5));
}

void JumpTest::lastEditWithoutHistory_data()
{
    QTest::addColumn<Edit>("empty");
    const auto row = [](const char *name, Edit empty) { QTest::newRow(name) << empty; };
    row("saved", [](TestWindow &window, ctlEditer &) { window.slotCmdFileSave(); });
    row("reloaded", [](TestWindow &window, ctlEditer &editor) {
        const MessageBoxes boxes({ QStringLiteral("Yes") });
        editor.setEdited(false);
        window.slotCmdFileReload();
    });
    row("never edited", [](TestWindow &window, ctlEditer &editor) {
        window.slotCmdFileSave();
        editor.setCursorPosition(0, 1);
    });
}

void JumpTest::lastEditWithoutHistory()
{
    QFETCH(Edit, empty);
    m_window->setDocument(m_files.write(u"a.txt"_s, "abc\ndef\n"));
    insertAt(editor(), u"x"_s, 0, 0);
    empty(*m_window, editor());
    QVERIFY(editor().history().commands().empty());
    editor().setCursorPosition(1, 0);
    editor().setCursorPosition(1, 2, true);
    const QString before = DrawnText::draw(editor());
    m_window->slotCmdViewLastEdit();
    QCOMPARE(DrawnText::draw(editor()), before);
}

void JumpTest::lastEditOfEachDocument()
{
    editor().setText(u"abcdef"_s);
    insertAt(editor(), u"x"_s, 0, 2);
    ctlEditer *const first = &editor();
    m_window->slotCmdFileNew();
    editor().setText(u"ghijkl"_s);
    m_window->slotCmdViewLastEdit();
    QCOMPARE(editor().cursorOffset(), Offset(0));
    insertAt(editor(), u"x"_s, 0, 4);
    m_window->slotCmdViewLastEdit();
    QCOMPARE(editor().cursorOffset(), Offset(4));
    m_window->tabBar()->setCurrentTab(first);
    QCOMPARE(&editor(), first);
    m_window->slotCmdViewLastEdit();
    QCOMPARE(editor().cursorOffset(), Offset(2));
}

void JumpTest::lastEditAmongWrappedRows()
{
    editor().setText(QString(u"0123456789"_s).repeated(100));
    insertAt(editor(), u"x"_s, 0, 777);
    for (const int columns : { 3, 7, 1000 }) {
        wrapAt(editor(), columns);
        editor().setCursorPosition(0, 0);
        m_window->slotCmdViewLastEdit();
        QCOMPARE(editor().cursorOffset(), Offset(777));
    }
}

void JumpTest::lastEditScrolls()
{
    editor().setText(QString(u"line\n"_s).repeated(1000));
    insertAt(editor(), u"x"_s, 500, 2);
    editor().setCursorPosition(0, 0);
    m_window->slotCmdViewLastEdit();
    QCOMPARE(editor().cursorPosition(), (RowCol{ RowIndex(500), 2 }));
    QVERIFY(editor().viewport()->rect().contains(editor().cursorRect()));
}

REGISTER_TEST(runWindowTest<JumpTest>)
#include "jump_test.moc"
