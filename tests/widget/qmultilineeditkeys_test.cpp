#include "tests/testprogram.h"
#include "tests/widget/drawntext.h"
#include "tests/widget/rows.h"

#include <QRegularExpression>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

/// What each key does, drawn as text with its cursor before and after it.
class QMultiLineEditKeysTest : public QObject {
    Q_OBJECT

private slots:
    void keys_data();
    void keys();
    void wrappedRows_data();
    void wrappedRows();
    void keysOfTheWindowReachItOnce_data();
    void keysOfTheWindowReachItOnce();
    void textKeys_data();
    void textKeys();
    void tabAndBacktabKeepTheFocus();
    void pageMovesTakeTheViewAlong();
    void goalColumnSurvivesShortRows();
    void overwriteTakesTheInsertKey();
    void shortcutsDoNotTakeTheEditorsKeys();
};

/// Takes the keys that come up from the editor in it.
class EditorAndNeighbour : public QWidget {
public:
    EditorAndNeighbour()
    {
        m_edit.setGeometry(0, 0, 300, 200);
        m_other.setGeometry(0, 200, 300, 20);
        m_other.setFocusPolicy(Qt::StrongFocus);
        m_edit.setFocus();
    }
    QMultiLineEdit &edit() { return m_edit; }
    QList<QKeyCombination> keys;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        const bool isModifier = event->key() >= Qt::Key_Shift && event->key() <= Qt::Key_Alt;
        if (!isModifier)
            keys.append(event->keyCombination());
    }

private:
    QMultiLineEdit m_edit{ this };
    QWidget m_other{ this };
};

void QMultiLineEditKeysTest::keys_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("after");
    const auto row = [](const QString &before, const QString &keys, const QString &after) {
        const QString name = before + u" + "_s + keys;
        QTest::newRow(name.toUtf8().replace('\n', "\\n").replace('\t', "\\t").constData())
            << before << keys << after;
    };
    row(u"a|b"_s, u"Right"_s, u"ab|"_s);
    row(u"ab|"_s, u"Right"_s, u"ab|"_s);
    row(u"a|b"_s, u"Left*2"_s, u"|ab"_s);
    row(u"a|\nb"_s, u"Right"_s, u"a\n|b"_s);
    row(u"a\n|b"_s, u"Left"_s, u"a|\nb"_s);
    row(u"a[bc|d"_s, u"Left"_s, u"a|bcd"_s);
    row(u"a[bc|d"_s, u"Right"_s, u"abc|d"_s);
    row(u"a|bc]d"_s, u"Left"_s, u"a|bcd"_s);
    row(u"a|bc]d"_s, u"Right"_s, u"abc|d"_s);
    row(u"a|bcd"_s, u"Shift+Right*2"_s, u"a[bc|d"_s);
    row(u"abc|d"_s, u"Shift+Left*2"_s, u"a|bc]d"_s);
    row(u"a[bc|d"_s, u"Shift+Left*3"_s, u"|a]bcd"_s);
    row(u"a|\U0001F600b"_s, u"Right"_s, u"a\U0001F600|b"_s);
    row(u"a\U0001F600|b"_s, u"Left"_s, u"a|\U0001F600b"_s);
    row(u"a|e\u0301b"_s, u"Right*2"_s, u"ae\u0301b|"_s);
    row(u"ae\u0301|b"_s, u"Left"_s, u"a|e\u0301b"_s);

    row(u"ab|cd\nabcd"_s, u"Down"_s, u"abcd\nab|cd"_s);
    row(u"abcd\nab|cd"_s, u"Up"_s, u"ab|cd\nabcd"_s);
    row(u"ab|cd"_s, u"Down"_s, u"ab|cd"_s);
    row(u"ab|cd"_s, u"Up"_s, u"ab|cd"_s);
    row(u"a|b\n"_s, u"Down"_s, u"ab\n|"_s);
    row(u"ab|cd\nabcd"_s, u"Shift+Down"_s, u"ab[cd\nab|cd"_s);
    row(u"abcd\nab|cd"_s, u"Shift+Up"_s, u"ab|cd\nab]cd"_s);
    row(u"a\nb|c\nd"_s, u"Home"_s, u"a\n|bc\nd"_s);
    row(u"a\n|bc\nd"_s, u"End"_s, u"a\nbc|\nd"_s);
    row(u"a\nb|c\nd"_s, u"Shift+Home"_s, u"a\n|b]c\nd"_s);
    row(u"a\nb|c\nd"_s, u"Shift+End"_s, u"a\nb[c|\nd"_s);
    row(u"a\nb|c\nd"_s, u"Ctrl+Home"_s, u"|a\nbc\nd"_s);
    row(u"a\nb|c\nd"_s, u"Ctrl+End"_s, u"a\nbc\nd|"_s);
    row(u"a\nb|c\nd"_s, u"Ctrl+Shift+Home"_s, u"|a\nb]c\nd"_s);
    row(u"a\nb|c\nd"_s, u"Ctrl+Shift+End"_s, u"a\nb[c\nd|"_s);

    row(u"|one two, three"_s, u"Ctrl+Right"_s, u"one |two, three"_s);
    row(u"one |two, three"_s, u"Ctrl+Right"_s, u"one two|, three"_s);
    row(u"one two|, three"_s, u"Ctrl+Right"_s, u"one two, |three"_s);
    row(u"one two, three|"_s, u"Ctrl+Left*2"_s, u"one two|, three"_s);
    row(u"one| two"_s, u"Ctrl+Shift+Right"_s, u"one[ |two"_s);
    row(u"one two|"_s, u"Ctrl+Shift+Left"_s, u"one |two]"_s);
    row(u"one|\ntwo"_s, u"Ctrl+Right"_s, u"one\n|two"_s);
    row(u"one\n|two"_s, u"Ctrl+Left"_s, u"one|\ntwo"_s);
    row(u"|漢字とカナとabc"_s, u"Ctrl+Right"_s, u"漢字|とカナとabc"_s);
    row(u"漢字|とカナとabc"_s, u"Ctrl+Right*2"_s, u"漢字とカナ|とabc"_s);

    row(u"ab|c"_s, u"Backspace"_s, u"a|c"_s);
    row(u"ab|c"_s, u"Shift+Backspace"_s, u"a|c"_s);
    row(u"a\n|b"_s, u"Backspace"_s, u"a|b"_s);
    row(u"|ab"_s, u"Backspace"_s, u"|ab"_s);
    row(u"a[bc|d"_s, u"Backspace"_s, u"a|d"_s);
    row(u"a\U0001F600|b"_s, u"Backspace"_s, u"a|b"_s);
    row(u"a|bc"_s, u"Del"_s, u"a|c"_s);
    row(u"a|\nb"_s, u"Del"_s, u"a|b"_s);
    row(u"ab|"_s, u"Del"_s, u"ab|"_s);
    row(u"a|bc]d"_s, u"Del"_s, u"a|d"_s);
    row(u"one two|"_s, u"Ctrl+Backspace"_s, u"one |"_s);
    row(u"one |two three"_s, u"Ctrl+Del"_s, u"one |three"_s);
    row(u"o[ne t|wo"_s, u"Ctrl+Del"_s, u"o|wo"_s);
    row(u"o[ne t|wo"_s, u"Ctrl+Backspace"_s, u"o|wo"_s);

    row(u"a|b"_s, u"Return"_s, u"a\n|b"_s);
    row(u"a|b"_s, u"Enter"_s, u"a\n|b"_s);
    row(u"a|b"_s, u"Shift+Return"_s, u"a\n|b"_s);
    row(u"a|b"_s, u"Ctrl+Return"_s, u"a\n|b"_s);
    row(u"a|b"_s, u"Ctrl+Shift+Enter"_s, u"a\n|b"_s);
    row(u"a[b|c"_s, u"Return"_s, u"a\n|c"_s);
    row(u"a|b"_s, u"Tab"_s, u"a\t|b"_s);
    row(u"a[b|c"_s, u"Tab"_s, u"a\t|c"_s);
    row(u"a|b"_s, u"'xyz'"_s, u"axyz|b"_s);
    row(u"a[bc|d"_s, u"'x'"_s, u"ax|d"_s);
    row(u"|あ"_s, u"'い'"_s, u"い|あ"_s);

    row(u"a|b"_s, u"'xy' Ctrl+Shift+Z"_s, u"axy|b"_s);
    row(u"a|bcd"_s, u"Insert 'xy'"_s, u"axy|d"_s);
    row(u"ab|\nc"_s, u"Insert 'xy'"_s, u"abxy|\nc"_s);
    row(u"a|\U0001F600d"_s, u"Insert 'x'"_s, u"ax|d"_s);
    row(u"a[b|cd"_s, u"Insert 'x'"_s, u"ax|cd"_s);
    row(u"a|bcd"_s, u"Insert 'x' Insert 'y'"_s, u"axy|cd"_s);

    row(u"a[b|c"_s, u"Ctrl+Ins Right Shift+Ins"_s, u"abb|c"_s);
    row(u"a[b|c"_s, u"Shift+Del Right Shift+Ins"_s, u"acb|"_s);
    row(u"a[b|c"_s, u"Copy End Paste"_s, u"abcb|"_s);
    row(u"a[b|c"_s, u"Cut End Paste"_s, u"acb|"_s);
}

void QMultiLineEditKeysTest::keys()
{
    QFETCH(QString, before);
    QFETCH(QString, keys);
    QMultiLineEdit edit;
    DrawnText::load(edit, before);
    DrawnText::press(edit, keys);
    QTEST(DrawnText::draw(edit), "after");
}

/// Rows of four characters; the cursor's place is told as row:column.
void QMultiLineEditKeysTest::wrappedRows_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<qint64>("row");
    QTest::addColumn<qint64>("column");
    QTest::newRow("End stays on the row") << u"a|bcdefgh"_s << u"End"_s << 0LL << 4LL;
    QTest::newRow("End twice stays there") << u"a|bcdefgh"_s << u"End End"_s << 0LL << 4LL;
    QTest::newRow("Home of a continued row") << u"abcdef|gh"_s << u"Home"_s << 1LL << 0LL;
    QTest::newRow("Home from a row's end") << u"a|bcdefgh"_s << u"End Home"_s << 0LL << 0LL;
    QTest::newRow("Right over the row's end") << u"abc|defgh"_s << u"Right"_s << 1LL << 0LL;
    QTest::newRow("Left over the row's start") << u"abcd|efgh"_s << u"Left"_s << 0LL << 3LL;
    QTest::newRow("Down from a row's end") << u"a|bcdefghij"_s << u"End Down"_s << 1LL << 4LL;
    QTest::newRow("typing at a row's end goes on below") << u"a|bcdefgh"_s << u"End 'x'"_s << 1LL << 1LL;
    QTest::newRow("Backspace at a row's end") << u"a|bcdefgh"_s << u"End Backspace"_s << 0LL << 3LL;
    QTest::newRow("End of the text") << u"a|bcdefgh"_s << u"Ctrl+End"_s << 1LL << 4LL;
}

void QMultiLineEditKeysTest::wrappedRows()
{
    QFETCH(QString, before);
    QFETCH(QString, keys);
    QMultiLineEdit edit;
    wrapAt(edit, 4);
    // Digits and letters differ in width in a font that is not of fixed pitch; x is the measure.
    DrawnText::load(edit, QString(before).replace(QRegularExpression(u"[a-w]"_s), u"x"_s));
    DrawnText::press(edit, keys);
    const RowCol at = edit.cursorPosition();
    QTEST(at.row.value(), "row");
    QTEST(at.column, "column");
}

void QMultiLineEditKeysTest::keysOfTheWindowReachItOnce_data()
{
    QTest::addColumn<QString>("key");
    for (const char *key : { "Ctrl+N", "Ctrl+M", "Ctrl+1", "Ctrl+2", "Ctrl+5", "Ctrl+O", "Ctrl+S", "Ctrl+Q",
             "Ctrl+Z", "Ctrl+X", "Ctrl+C", "Ctrl+V", "Ctrl+A", "Ctrl+Tab", "Ctrl+Shift+Tab", "Ctrl+Backtab",
             "Ctrl+Shift+Backtab", "Ctrl+Num+1", "Escape", "F5", "Alt+F" })
        QTest::newRow(key) << QString::fromLatin1(key);
}

void QMultiLineEditKeysTest::keysOfTheWindowReachItOnce()
{
    QFETCH(QString, key);
    const QKeyCombination keys = QKeySequence(key, QKeySequence::PortableText)[0];
    EditorAndNeighbour window;
    window.show();
    DrawnText::load(window.edit(), u"a[b|c"_s);
    QTest::keyClick(&window.edit(), keys.key(), keys.keyboardModifiers());
    QCOMPARE(window.keys, QList<QKeyCombination>({ keys }));
    QCOMPARE(DrawnText::draw(window.edit()), u"a[b|c"_s);
    QVERIFY(window.edit().hasFocus() || window.focusWidget() == &window.edit());
}

void QMultiLineEditKeysTest::textKeys_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QString>("after");
    const int altGr = int(Qt::ControlModifier | Qt::AltModifier);
    QTest::newRow("plain") << u"x"_s << int(Qt::NoModifier) << u"x|"_s;
    QTest::newRow("Shift") << u"X"_s << int(Qt::ShiftModifier) << u"X|"_s;
    QTest::newRow("AltGr as Ctrl+Alt") << u"@"_s << altGr << u"@|"_s;
    QTest::newRow("AltGr as group switch") << u"€"_s << int(Qt::GroupSwitchModifier) << u"€|"_s;
    QTest::newRow("keypad") << u"7"_s << int(Qt::KeypadModifier) << u"7|"_s;
    QTest::newRow("typographic quote of a device key") << u"\u2019"_s << int(Qt::NoModifier) << u"\u2019|"_s;
    QTest::newRow("surrogate pair") << u"\U00020B9F"_s << int(Qt::NoModifier) << u"\U00020B9F|"_s;
    QTest::newRow("joiner") << u"\u200D"_s << int(Qt::NoModifier) << u"\u200D|"_s;
    QTest::newRow("several at once") << u"かな"_s << int(Qt::NoModifier) << u"かな|"_s;
    QTest::newRow("Ctrl only") << u"x"_s << int(Qt::ControlModifier) << u"|"_s;
    QTest::newRow("Alt only") << u"x"_s << int(Qt::AltModifier) << u"|"_s;
    QTest::newRow("Meta") << u"x"_s << int(Qt::MetaModifier) << u"|"_s;
    QTest::newRow("control character") << u"\u0001"_s << int(Qt::NoModifier) << u"|"_s;
    QTest::newRow("nothing") << u""_s << int(Qt::NoModifier) << u"|"_s;
}

void QMultiLineEditKeysTest::textKeys()
{
    QFETCH(QString, text);
    QFETCH(int, modifiers);
    QMultiLineEdit edit;
    QKeyEvent event(QEvent::KeyPress, Qt::Key_unknown, Qt::KeyboardModifiers(modifiers), text);
    QCoreApplication::sendEvent(&edit, &event);
    QTEST(DrawnText::draw(edit), "after");
    QCOMPARE(event.isAccepted(), edit.text() == text && !text.isEmpty());
}

void QMultiLineEditKeysTest::tabAndBacktabKeepTheFocus()
{
    EditorAndNeighbour window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.edit().setFocus();
    DrawnText::load(window.edit(), u"a|b"_s);
    QTest::keyClick(&window.edit(), Qt::Key_Tab);
    QTest::keyClick(&window.edit(), Qt::Key_Backtab, Qt::ShiftModifier);
    QTest::keyClick(&window.edit(), Qt::Key_Tab, Qt::ShiftModifier);
    QVERIFY(window.edit().hasFocus());
    QCOMPARE(DrawnText::draw(window.edit()), u"a\t|b"_s);
    QVERIFY(window.keys.isEmpty());
}

void QMultiLineEditKeysTest::pageMovesTakeTheViewAlong()
{
    QMultiLineEdit edit;
    edit.resize(300, 300);
    edit.show();
    edit.setText(u"x\n"_s.repeated(500));
    const qint64 page = qint64(edit.viewport()->height() / edit.rowHeight()) - 1;
    edit.setCursorPosition(5, 0);
    edit.setTopRow(RowIndex(3));
    DrawnText::press(edit, u"PgDown"_s);
    QCOMPARE(edit.cursorPosition(), (RowCol{ RowIndex(5 + page), 0 }));
    QCOMPARE(edit.topRow(), RowIndex(3 + page));
    DrawnText::press(edit, u"Shift+PgUp"_s);
    QCOMPARE(edit.cursorPosition(), (RowCol{ RowIndex(5), 0 }));
    QCOMPARE(edit.topRow(), RowIndex(3));
    QCOMPARE(edit.markedText(), u"x\n"_s.repeated(page));
    DrawnText::press(edit, u"PgUp PgUp"_s);
    QCOMPARE(edit.cursorPosition(), (RowCol{ RowIndex(0), 0 }));
    DrawnText::press(edit, u"PgDown*100"_s);
    QCOMPARE(edit.cursorPosition(), (RowCol{ RowIndex(500), 0 }));
    DrawnText::press(edit, u"Ctrl+Home Ctrl+Down*2"_s);
    QCOMPARE(edit.topRow(), RowIndex(2));
    QCOMPARE(edit.cursorPosition(), (RowCol{ RowIndex(0), 0 }));
    DrawnText::press(edit, u"Ctrl+Up"_s);
    QCOMPARE(edit.topRow(), RowIndex(1));
}

void QMultiLineEditKeysTest::goalColumnSurvivesShortRows()
{
    QMultiLineEdit edit;
    DrawnText::load(edit, u"xxxx|x\nx\n\nxxxxx"_s);
    DrawnText::press(edit, u"Down"_s);
    QCOMPARE(DrawnText::draw(edit), u"xxxxx\nx|\n\nxxxxx"_s);
    DrawnText::press(edit, u"Down*2"_s);
    QCOMPARE(DrawnText::draw(edit), u"xxxxx\nx\n\nxxxx|x"_s);
    DrawnText::press(edit, u"Up*2 Left Right Up"_s);
    QCOMPARE(DrawnText::draw(edit), u"x|xxxx\nx\n\nxxxxx"_s);
}

void QMultiLineEditKeysTest::overwriteTakesTheInsertKey()
{
    QMultiLineEdit edit;
    QVERIFY(!edit.isOverwriteMode());
    DrawnText::press(edit, u"Ins"_s);
    QVERIFY(edit.isOverwriteMode());
    DrawnText::load(edit, u"|abc"_s);
    DrawnText::press(edit, u"'x'"_s);
    edit.undo();
    QCOMPARE(DrawnText::draw(edit).remove(u'|'), u"abc"_s);
    DrawnText::press(edit, u"Ins"_s);
    QVERIFY(!edit.isOverwriteMode());
}

void QMultiLineEditKeysTest::shortcutsDoNotTakeTheEditorsKeys()
{
    const auto overrides = [](Qt::Key key, Qt::KeyboardModifiers modifiers, const QString &text = {}) {
        QMultiLineEdit edit;
        QKeyEvent event(QEvent::ShortcutOverride, key, modifiers, text);
        event.ignore();
        QCoreApplication::sendEvent(&edit, &event);
        return event.isAccepted();
    };
    QVERIFY(overrides(Qt::Key_A, Qt::NoModifier, u"a"_s));
    QVERIFY(overrides(Qt::Key_Delete, Qt::NoModifier));
    QVERIFY(overrides(Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier));
    QVERIFY(overrides(Qt::Key_Y, Qt::ControlModifier));
    QVERIFY(!overrides(Qt::Key_Z, Qt::ControlModifier));
    QVERIFY(!overrides(Qt::Key_F, Qt::AltModifier, u"f"_s));
    QVERIFY(!overrides(Qt::Key_Escape, Qt::NoModifier));
}

REGISTER_TEST(runWindowTest<QMultiLineEditKeysTest>)
#include "qmultilineeditkeys_test.moc"
