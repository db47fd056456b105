#include "tests/testprogram.h"
#include "tests/text/undosteps.h"
#include "tests/widget/drawntext.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

using Operation = void (*)(QMultiLineEdit &);

static void addOperations()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<int>("changes");
    const auto row = [](const char *name, int changes, Operation operation) {
        QTest::newRow(name) << operation << changes;
    };
    row("insert", 1, [](QMultiLineEdit &edit) { edit.insert(u"x\ny"_s); });
    row("insert nothing over selected text", 1, [](QMultiLineEdit &edit) { edit.insert(QString()); });
    row("replace nothing by text", 1, [](QMultiLineEdit &edit) { edit.replace({}, u"x"_s); });
    row("replace text by nothing", 1, [](QMultiLineEdit &edit) { edit.replace({ {}, Offset(1) }, {}); });
    row("cut", 1, [](QMultiLineEdit &edit) { edit.cut(); });
    row("paste", 1, [](QMultiLineEdit &edit) {
        edit.copy();
        edit.paste();
    });
    row("a typed character over selected text", 1,
        [](QMultiLineEdit &edit) { DrawnText::press(edit, u"'x'"_s); });
    row("Return", 1, [](QMultiLineEdit &edit) { DrawnText::press(edit, u"Return"_s); });
    row("Backspace", 1, [](QMultiLineEdit &edit) { DrawnText::press(edit, u"Backspace"_s); });
    row("undo of a group", 2, [](QMultiLineEdit &edit) {
        edit.insert(u"x"_s);
        edit.undo();
    });
    row("set text", 1, [](QMultiLineEdit &edit) { edit.setText(u"other"_s); });
    row("clear", 1, [](QMultiLineEdit &edit) { edit.clear(); });
}

/// What an edit tells and leaves behind, and how it is undone.
class QMultiLineEditUndoTest : public QObject {
    Q_OBJECT

private slots:
    void eachOperationTellsItsChangeOnce_data();
    void eachOperationTellsItsChangeOnce();
    void availabilityIsToldOnChangeOnly();
    void availabilityChangedInSilenceIsNotToldAfterwards();
    void anyEditSetsEdited_data();
    void anyEditSetsEdited();
    void typedCharactersAreOneStep();
    void lineBreakEndsAStep();
    void typingOverTextIsOneStep_data();
    void typingOverTextIsOneStep();
    void movingTheCursorEndsAStep();
    void undoPutsTheCursorBack();
    void undoGoesBackToTheTextAsSet();
    void undoSwitchedOffRecordsNothing();
    void depthBelowOneCountsAsOne();
};

void QMultiLineEditUndoTest::eachOperationTellsItsChangeOnce_data()
{
    addOperations();
    const auto row = [](const char *name, Operation operation) { QTest::newRow(name) << operation << 0; };
    row("copy", [](QMultiLineEdit &edit) { edit.copy(); });
    row("select all", [](QMultiLineEdit &edit) { edit.selectAll(); });
    row("a move", [](QMultiLineEdit &edit) { DrawnText::press(edit, u"Right Shift+Left"_s); });
    row("undo without steps", [](QMultiLineEdit &edit) { edit.undo(); });
    row("redo without steps", [](QMultiLineEdit &edit) { edit.redo(); });
    row("nothing to cut", [](QMultiLineEdit &edit) {
        edit.deselect();
        edit.cut();
    });
    row("Backspace at the start",
        [](QMultiLineEdit &edit) { DrawnText::press(edit, u"Ctrl+Home Backspace"_s); });
}

void QMultiLineEditUndoTest::eachOperationTellsItsChangeOnce()
{
    QFETCH(Operation, operation);
    QMultiLineEdit edit;
    DrawnText::load(edit, u"a[bc|d\nef"_s);
    QSignalSpy changed(&edit, &QMultiLineEdit::textChanged);
    operation(edit);
    QTEST(int(changed.size()), "changes");
}

void QMultiLineEditUndoTest::availabilityIsToldOnChangeOnly()
{
    QMultiLineEdit edit;
    QSignalSpy undo(&edit, &QMultiLineEdit::undoAvailable);
    QSignalSpy redo(&edit, &QMultiLineEdit::redoAvailable);
    QSignalSpy copy(&edit, &QMultiLineEdit::copyAvailable);
    const auto told = [](QSignalSpy &spy) {
        QList<bool> values;
        for (const QList<QVariant> &arguments : std::as_const(spy))
            values.append(arguments[0].toBool());
        spy.clear();
        return values;
    };
    using Told = QList<bool>;
    edit.setText(u"abc"_s);
    QCOMPARE(told(undo), Told());
    edit.insert(u"x"_s);
    edit.insert(u"y"_s);
    QCOMPARE(told(undo), Told({ true }));
    QCOMPARE(told(redo), Told());
    edit.undo();
    QCOMPARE(told(undo), Told());
    QCOMPARE(told(redo), Told({ true }));
    edit.undo();
    QCOMPARE(told(undo), Told({ false }));
    QCOMPARE(told(redo), Told());
    edit.redo();
    edit.redo();
    QCOMPARE(told(undo), Told({ true }));
    QCOMPARE(told(redo), Told({ false }));
    edit.undo();
    edit.insert(u"z"_s);
    QCOMPARE(told(redo), Told({ true, false }));
    edit.setUndoEnabled(false);
    QCOMPARE(told(undo), Told({ false }));
    edit.setUndoEnabled(true);
    edit.insert(u"z"_s);
    edit.setText(u"abc"_s);
    QCOMPARE(told(undo), Told({ true, false }));

    DrawnText::press(edit, u"Shift+Right*2"_s);
    QCOMPARE(told(copy), Told({ true }));
    DrawnText::press(edit, u"Right"_s);
    QCOMPARE(told(copy), Told({ false }));
    edit.selectAll();
    edit.insert(u"new"_s);
    QCOMPARE(told(copy), Told({ true, false }));
    edit.selectAll();
    edit.setText(u"abc"_s);
    QCOMPARE(told(copy), Told({ true, false }));
}

void QMultiLineEditUndoTest::availabilityChangedInSilenceIsNotToldAfterwards()
{
    QMultiLineEdit edit;
    QSignalSpy undo(&edit, &QMultiLineEdit::undoAvailable);
    edit.blockSignals(true);
    edit.insert(u"x"_s);
    edit.blockSignals(false);
    edit.insert(u"y"_s);
    QVERIFY(undo.isEmpty());
}

void QMultiLineEditUndoTest::anyEditSetsEdited_data()
{
    addOperations();
}

void QMultiLineEditUndoTest::anyEditSetsEdited()
{
    QFETCH(Operation, operation);
    QMultiLineEdit edit;
    DrawnText::load(edit, u"a[bc|d\nef"_s);
    edit.setEdited(false);
    QVERIFY(!edit.edited());
    operation(edit);
    const bool isUndone = edit.history().canRedo();
    QCOMPARE(edit.edited(), !isUndone);
    edit.setEdited(false);
    QVERIFY(!edit.edited());
}

void QMultiLineEditUndoTest::typedCharactersAreOneStep()
{
    QMultiLineEdit edit;
    DrawnText::press(edit, u"'hello'"_s);
    QCOMPARE(undoSteps(edit.history()), 1);
    edit.undo();
    QCOMPARE(edit.text(), QString());
    edit.redo();
    QCOMPARE(DrawnText::draw(edit), u"hello|"_s);
    DrawnText::press(edit, u"Backspace*3"_s);
    QCOMPARE(undoSteps(edit.history()), 2);
    edit.undo();
    QCOMPARE(edit.text(), u"hello"_s);
}

void QMultiLineEditUndoTest::lineBreakEndsAStep()
{
    QMultiLineEdit edit;
    DrawnText::press(edit, u"'one' Return 'two'"_s);
    edit.undo();
    QCOMPARE(edit.text(), u"one\n"_s);
    edit.undo();
    QCOMPARE(edit.text(), u"one"_s);
    edit.undo();
    QCOMPARE(edit.text(), QString());
}

void QMultiLineEditUndoTest::typingOverTextIsOneStep_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QStringList>("undone"); // step by step
    QTest::addRow("selected text") << u"a[bcd|e"_s << u"'xyz'"_s << u"axyz|e"_s << QStringList{ u"abcd|e"_s };
    QTest::addRow("selected backwards over a line end")
        << u"a|b\nc]d"_s << u"'xyz'"_s << u"axyz|d"_s << QStringList{ u"ab\nc|d"_s };
    QTest::addRow("overwriting") << u"a|bcde"_s << u"Insert 'xyz'"_s << u"axyz|e"_s
                                 << QStringList{ u"abcd|e"_s };
    QTest::addRow("overwriting beyond the line")
        << u"ab|c\nd"_s << u"Insert 'xyz'"_s << u"abxyz|\nd"_s << QStringList{ u"abc|\nd"_s };
    QTest::addRow("selected text, then Backspace")
        << u"a[bcd|e"_s << u"'xyz' Backspace"_s << u"axy|e"_s << QStringList{ u"axyz|e"_s, u"abcd|e"_s };
    QTest::addRow("selected text, then elsewhere")
        << u"a[bcd|e"_s << u"'xy' Left Right 'z'"_s << u"axyz|e"_s << QStringList{ u"axy|e"_s, u"abcd|e"_s };
    QTest::addRow("overwriting at two places")
        << u"|abcd"_s << u"Insert 'x' Right 'y'"_s << u"xby|d"_s << QStringList{ u"xbc|d"_s, u"a|bcd"_s };
}

void QMultiLineEditUndoTest::typingOverTextIsOneStep()
{
    QFETCH(const QString, before);
    QFETCH(const QString, keys);
    QFETCH(const QString, after);
    QFETCH(const QStringList, undone);
    QMultiLineEdit edit;
    DrawnText::load(edit, before);
    DrawnText::press(edit, keys);
    QCOMPARE(DrawnText::draw(edit), after);
    for (const QString &text : undone) {
        edit.undo();
        QCOMPARE(DrawnText::draw(edit), text);
    }
    QCOMPARE(undoSteps(edit.history()), 0);
    for (qsizetype i = 0; i < undone.size(); ++i)
        edit.redo();
    QCOMPARE(DrawnText::draw(edit), after);
}

void QMultiLineEditUndoTest::movingTheCursorEndsAStep()
{
    QMultiLineEdit edit;
    DrawnText::press(edit, u"'ab' Left Right 'cd'"_s);
    QCOMPARE(undoSteps(edit.history()), 2);
    edit.undo();
    QCOMPARE(edit.text(), u"ab"_s);
}

void QMultiLineEditUndoTest::undoPutsTheCursorBack()
{
    QMultiLineEdit edit;
    DrawnText::load(edit, u"ab|cd"_s);
    edit.insert(u"xy"_s);
    DrawnText::press(edit, u"Ctrl+End"_s);
    edit.undo();
    QCOMPARE(DrawnText::draw(edit), u"ab|cd"_s);
    edit.redo();
    QCOMPARE(DrawnText::draw(edit), u"abxy|cd"_s);
}

void QMultiLineEditUndoTest::undoGoesBackToTheTextAsSet()
{
    QMultiLineEdit edit;
    edit.setUndoDepth(3);
    edit.setText(u"start"_s);
    for (int i = 0; i < 20; ++i) {
        edit.insert(QString::number(i));
        edit.setCursorPosition(0, i);
    }
    while (edit.history().canUndo())
        edit.undo();
    QCOMPARE(edit.text(), u"start"_s);
}

void QMultiLineEditUndoTest::undoSwitchedOffRecordsNothing()
{
    QMultiLineEdit edit;
    edit.insert(u"kept"_s);
    edit.setUndoEnabled(false);
    QVERIFY(!edit.history().canUndo());
    DrawnText::press(edit, u"'typed' Shift+Home Del 'new'"_s);
    QVERIFY(!edit.history().canUndo());
    edit.undo();
    QCOMPARE(edit.text(), u"new"_s);
    edit.setUndoEnabled(true);
    QVERIFY(!edit.history().canUndo());
    edit.insert(u"x"_s);
    edit.undo();
    QCOMPARE(edit.text(), u"new"_s);
}

void QMultiLineEditUndoTest::depthBelowOneCountsAsOne()
{
    QMultiLineEdit edit;
    edit.setUndoDepth(-5);
    QCOMPARE(edit.undoDepth(), 1);
    edit.setUndoDepth(7);
    QCOMPARE(edit.undoDepth(), 7);
}

REGISTER_TEST(runWindowTest<QMultiLineEditUndoTest>)
#include "qmultilineeditundo_test.moc"
