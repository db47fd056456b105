#include "widget/keybindings.h"

#include "tests/testprogram.h"
#include "tests/widget/inputparts.h"
#include "widget/qmultilineedit.h"

#include <QContextMenuEvent>
#include <QKeyEvent>

using namespace Qt::StringLiterals;

namespace {

/// Notes the commands that a kind of editor may do in its own way.
class Commanded : public QMultiLineEdit {
public:
    Commanded()
        : QMultiLineEdit(nullptr)
    {
    }
    void cut() override { called << u"cut"_s; }
    void copy() override { called << u"copy"_s; }
    void paste() override { called << u"paste"_s; }

    QStringList called;

protected:
    void contextMenuEvent(QContextMenuEvent *) override { called << u"menu"_s; }
};

QKeyEvent keyEvent(QKeyCombination keys, const QString &text = {})
{
    return { QEvent::KeyPress, keys.key(), keys.keyboardModifiers(), text };
}

/// A text with "|" for the cursor, and keys to press in it.
struct Bound : InputParts {
    explicit Bound(QString drawn)
        : InputParts(QString(drawn).remove(u'|'))
    {
        setCursor(drawn.indexOf(u'|'));
    }
    bool press(QKeyCombination keys, const QString &text = {})
    {
        return bindings.handle(keyEvent(keys, text));
    }

    Commanded commands;
    KeyBindings bindings{ commands, scroller, moves, edits };
};

} // namespace

/// What keys do, without an editor that gets them.
class KeyBindingsTest : public QObject {
    Q_OBJECT

private slots:
    void movesAndEdits_data();
    void movesAndEdits();
    void commandsAreTheEditors_data();
    void commandsAreTheEditors();
    void undoAndRedo_data();
    void undoAndRedo();
    void overwrites();
    void scrollsWithoutMoving();
    void writesText_data();
    void writesText();
    void leavesOtherKeys_data();
    void leavesOtherKeys();
};

void KeyBindingsTest::movesAndEdits_data()
{
    QTest::addColumn<QKeyCombination>("keys");
    QTest::addColumn<QString>("drawn");
    const auto row = [](const char *name, QKeyCombination keys, const QString &drawn) {
        QTest::newRow(name) << keys << drawn;
    };
    row("Left", Qt::Key_Left, u"top\none two| three\nlast"_s);
    row("Right", Qt::Key_Right, u"top\none two t|hree\nlast"_s);
    row("Ctrl+Left", Qt::CTRL | Qt::Key_Left, u"top\none |two three\nlast"_s);
    row("Ctrl+Right", Qt::CTRL | Qt::Key_Right, u"top\none two three|\nlast"_s);
    row("Down", Qt::Key_Down, u"top\none two three\nlast|"_s);
    row("Up", Qt::Key_Up, u"top|\none two three\nlast"_s);
    row("Home", Qt::Key_Home, u"top\n|one two three\nlast"_s);
    row("End", Qt::Key_End, u"top\none two three|\nlast"_s);
    row("Ctrl+Home", Qt::CTRL | Qt::Key_Home, u"|top\none two three\nlast"_s);
    row("Ctrl+End", Qt::CTRL | Qt::Key_End, u"top\none two three\nlast|"_s);
    row("Page Down", Qt::Key_PageDown, u"top\none two three\nlast|"_s);
    row("Page Up", Qt::Key_PageUp, u"top|\none two three\nlast"_s);
    row("Shift+Left", Qt::SHIFT | Qt::Key_Left, u"top\none two| ]three\nlast"_s);
    row("Shift+End", Qt::SHIFT | Qt::Key_End, u"top\none two [three|\nlast"_s);
    row("Ctrl+Shift+Home", Qt::CTRL | Qt::SHIFT | Qt::Key_Home, u"|top\none two ]three\nlast"_s);
    row("Return", Qt::Key_Return, u"top\none two \n|three\nlast"_s);
    row("Enter of the keypad", Qt::KeypadModifier | Qt::Key_Enter, u"top\none two \n|three\nlast"_s);
    row("Shift+Return", Qt::SHIFT | Qt::Key_Return, u"top\none two \n|three\nlast"_s);
    row("Ctrl+Return", Qt::CTRL | Qt::Key_Return, u"top\none two \n|three\nlast"_s);
    row("Tab", Qt::Key_Tab, u"top\none two \t|three\nlast"_s);
    row("Shift+Tab", Qt::SHIFT | Qt::Key_Backtab, u"top\none two |three\nlast"_s);
    row("Backspace", Qt::Key_Backspace, u"top\none two|three\nlast"_s);
    row("Shift+Backspace", Qt::SHIFT | Qt::Key_Backspace, u"top\none two|three\nlast"_s);
    row("Ctrl+Backspace", Qt::CTRL | Qt::Key_Backspace, u"top\none |three\nlast"_s);
    row("Delete", Qt::Key_Delete, u"top\none two |hree\nlast"_s);
    row("Ctrl+Delete", Qt::CTRL | Qt::Key_Delete, u"top\none two |\nlast"_s);
}

void KeyBindingsTest::movesAndEdits()
{
    QFETCH(QKeyCombination, keys);
    Bound bound(u"top\none two |three\nlast"_s);
    QVERIFY(bound.bindings.handles(keyEvent(keys)));
    QVERIFY(bound.press(keys));
    QTEST(bound.drawn(), "drawn");
    QVERIFY(bound.commands.called.isEmpty());
}

void KeyBindingsTest::commandsAreTheEditors_data()
{
    QTest::addColumn<QKeyCombination>("keys");
    QTest::addColumn<QString>("command");
    QTest::newRow("Shift+Insert") << (Qt::SHIFT | Qt::Key_Insert) << u"paste"_s;
    QTest::newRow("Ctrl+Insert") << (Qt::CTRL | Qt::Key_Insert) << u"copy"_s;
    QTest::newRow("Shift+Delete") << (Qt::SHIFT | Qt::Key_Delete) << u"cut"_s;
    QTest::newRow("Paste") << QKeyCombination(Qt::Key_Paste) << u"paste"_s;
    QTest::newRow("Copy") << QKeyCombination(Qt::Key_Copy) << u"copy"_s;
    QTest::newRow("Cut") << QKeyCombination(Qt::Key_Cut) << u"cut"_s;
    QTest::newRow("Menu") << QKeyCombination(Qt::Key_Menu) << u"menu"_s;
    QTest::newRow("Shift+F10") << (Qt::SHIFT | Qt::Key_F10) << u"menu"_s;
}

void KeyBindingsTest::commandsAreTheEditors()
{
    QFETCH(QKeyCombination, keys);
    Bound bound(u"te|xt"_s);
    QVERIFY(bound.bindings.handles(keyEvent(keys)));
    QVERIFY(bound.press(keys));
    QFETCH(QString, command);
    QCOMPARE(bound.commands.called, QStringList{ command });
    QCOMPARE(bound.drawn(), u"te|xt"_s);
}

void KeyBindingsTest::undoAndRedo_data()
{
    QTest::addColumn<QKeyCombination>("undo");
    QTest::addColumn<QKeyCombination>("redo");
    QTest::newRow("keys of their own") << QKeyCombination(Qt::Key_Undo) << QKeyCombination(Qt::Key_Redo);
    QTest::newRow("Ctrl+Y") << QKeyCombination(Qt::Key_Undo) << (Qt::CTRL | Qt::Key_Y);
    QTest::newRow("Ctrl+Shift+Z") << QKeyCombination(Qt::Key_Undo) << (Qt::CTRL | Qt::SHIFT | Qt::Key_Z);
}

void KeyBindingsTest::undoAndRedo()
{
    QFETCH(QKeyCombination, undo);
    QFETCH(QKeyCombination, redo);
    Bound bound(u"|"_s);
    bound.commands.insert(u"text"_s);
    QVERIFY(bound.press(undo));
    QCOMPARE(bound.commands.text(), QString());
    QVERIFY(bound.press(redo));
    QCOMPARE(bound.commands.text(), u"text"_s);
}

void KeyBindingsTest::overwrites()
{
    Bound bound(u"|"_s);
    for (const bool overwrites : { true, false }) {
        QVERIFY(bound.press(Qt::Key_Insert));
        QCOMPARE(bound.commands.isOverwriteMode(), overwrites);
    }
}

void KeyBindingsTest::scrollsWithoutMoving()
{
    Bound bound(u"|"_s + u"line\n"_s.repeated(100));
    QVERIFY(bound.press(Qt::CTRL | Qt::Key_Down));
    QVERIFY(bound.press(Qt::CTRL | Qt::Key_Down));
    QCOMPARE(bound.view.top(), RowIndex(2));
    QVERIFY(bound.press(Qt::CTRL | Qt::Key_Up));
    QCOMPARE(bound.view.top(), RowIndex(1));
    QCOMPARE(bound.cursor.place().offset, Offset(0));
}

void KeyBindingsTest::writesText_data()
{
    QTest::addColumn<QKeyCombination>("keys");
    QTest::addColumn<QString>("text");
    QTest::newRow("a letter") << QKeyCombination(Qt::Key_A) << u"a"_s;
    QTest::newRow("a capital letter") << (Qt::SHIFT | Qt::Key_A) << u"A"_s;
    QTest::newRow("AltGr as some keyboards say it") << (Qt::CTRL | Qt::ALT | Qt::Key_Q) << u"@"_s;
    QTest::newRow("of the keypad") << (Qt::KeypadModifier | Qt::Key_1) << u"1"_s;
    QTest::newRow("beyond 16 bits") << QKeyCombination(Qt::Key_unknown) << u"𠮟"_s;
    QTest::newRow("a joiner") << QKeyCombination(Qt::Key_unknown) << QString(QChar(0x200d));
    QTest::newRow("of a font's own") << QKeyCombination(Qt::Key_unknown) << QString(QChar(0xe000));
}

void KeyBindingsTest::writesText()
{
    QFETCH(QKeyCombination, keys);
    QFETCH(QString, text);
    Bound bound(u"<|>"_s);
    QVERIFY(bound.bindings.handles(keyEvent(keys, text)));
    QVERIFY(bound.press(keys, text));
    QCOMPARE(bound.text(), u'<' + text + u'>');
}

void KeyBindingsTest::leavesOtherKeys_data()
{
    QTest::addColumn<QKeyCombination>("keys");
    QTest::addColumn<QString>("text");
    QTest::newRow("a modifier alone") << QKeyCombination(Qt::Key_Shift) << QString();
    QTest::newRow("a command") << (Qt::CTRL | Qt::Key_S) << QString(QChar(0x13));
    QTest::newRow("a menu's letter") << (Qt::ALT | Qt::Key_F) << u"f"_s;
    QTest::newRow("the desktop's") << (Qt::META | Qt::Key_A) << u"a"_s;
    QTest::newRow("Escape") << QKeyCombination(Qt::Key_Escape) << QString(QChar(0x1b));
    QTest::newRow("Alt+Left") << (Qt::ALT | Qt::Key_Left) << QString();
    QTest::newRow("F6") << QKeyCombination(Qt::Key_F6) << QString();
}

void KeyBindingsTest::leavesOtherKeys()
{
    QFETCH(QKeyCombination, keys);
    QFETCH(QString, text);
    Bound bound(u"te|xt"_s);
    QVERIFY(!bound.bindings.handles(keyEvent(keys, text)));
    QVERIFY(!bound.press(keys, text));
    QCOMPARE(bound.drawn(), u"te|xt"_s);
    QVERIFY(bound.commands.called.isEmpty());
}

REGISTER_TEST(runWindowTest<KeyBindingsTest>)
#include "keybindings_test.moc"
