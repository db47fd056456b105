#include "tests/testprogram.h"
#include "tests/text/undosteps.h"
#include "tests/widget/drawntext.h"
#include "widget/preedit.h"

#include <QInputMethodEvent>
#include <QSignalSpy>
#include <QTextCharFormat>

using namespace Qt::StringLiterals;

using Attribute = QInputMethodEvent::Attribute;

namespace {

class ComposedEdit : public QMultiLineEdit {
public:
    using QMultiLineEdit::commitPreedit;
    using QMultiLineEdit::isComposing;
    using QMultiLineEdit::preedit;

    void compose(const QString &preedit, const QList<Attribute> &attributes = {})
    {
        QInputMethodEvent event(preedit, attributes);
        QCoreApplication::sendEvent(this, &event);
    }
    void commit(const QString &text, int from = 0, int length = 0)
    {
        QInputMethodEvent event;
        event.setCommitString(text, from, length);
        QCoreApplication::sendEvent(this, &event);
    }
    QVariant ask(Qt::InputMethodQuery query) const { return inputMethodQuery(query); }
};

} // namespace

/// Input methods: text that is being composed, what is committed, what they ask.
class QMultiLineEditInputTest : public QObject {
    Q_OBJECT

private slots:
    void composedTextIsNoPartOfTheDocument();
    void composedTextHasFormatsAndCursor();
    void cursorStandsInComposedText();
    void composedTextKeepsTheMarkedText();
    void commits_data();
    void commits();
    void commitIsOneStep();
    void committedTextIsCleaned_data();
    void committedTextIsCleaned();
    void returnEndsComposing();
    void clickEndsComposing();
    void undoEndsComposing();
    void answersQueries();
    void answersAboutPartsOfLongLines();
    void answersWithArguments();
    void inputMethodSelects();
    void longSelectionIsNotGivenWhole();
};

void QMultiLineEditInputTest::composedTextIsNoPartOfTheDocument()
{
    ComposedEdit edit;
    DrawnText::load(edit, u"ab|cd"_s);
    edit.setEdited(false);
    QSignalSpy changed(&edit, &QMultiLineEdit::textChanged);
    QSignalSpy undo(&edit, &QMultiLineEdit::undoAvailable);
    edit.compose(u"か"_s);
    edit.compose(u"かん"_s);
    QVERIFY(edit.isComposing());
    QCOMPARE(edit.preedit().text, u"かん"_s);
    QCOMPARE(DrawnText::draw(edit), u"ab|cd"_s);
    edit.compose(QString());
    QVERIFY(!edit.isComposing());
    QVERIFY(changed.isEmpty());
    QVERIFY(undo.isEmpty());
    QVERIFY(!edit.edited());
    QVERIFY(!edit.history().canUndo());
}

void QMultiLineEditInputTest::composedTextHasFormatsAndCursor()
{
    ComposedEdit edit;
    QTextCharFormat format;
    format.setFontUnderline(true);
    edit.compose(u"かんじ"_s,
        { { QInputMethodEvent::TextFormat, 0, 2, format }, { QInputMethodEvent::Cursor, 1, 1, {} },
            { QInputMethodEvent::TextFormat, 2, 1, format } });
    QCOMPARE(edit.preedit().formats.size(), 2);
    QCOMPARE(edit.preedit().formats[1].start, 2);
    QCOMPARE(edit.preedit().cursor, 1);
    QVERIFY(edit.preedit().cursorVisible);
    edit.compose(u"漢字"_s, { { QInputMethodEvent::Cursor, 99, 0, {} } });
    QVERIFY(edit.preedit().formats.isEmpty());
    QCOMPARE(edit.preedit().cursor, 2);
    QVERIFY(!edit.preedit().cursorVisible);
    edit.compose(u"漢"_s);
    QCOMPARE(edit.preedit().cursor, 1);
    QVERIFY(edit.preedit().cursorVisible);
}

void QMultiLineEditInputTest::cursorStandsInComposedText()
{
    ComposedEdit edit;
    edit.resize(200, 100);
    DrawnText::load(edit, u"ab|cd"_s);
    const QRect before = edit.cursorRect();
    edit.compose(u"xyz"_s, { { QInputMethodEvent::Cursor, 2, 1, {} } });
    QVERIFY(edit.cursorRect().left() > before.left());
    const QRect inside = edit.cursorRect();
    edit.compose(u"xyz"_s);
    QVERIFY(edit.cursorRect().left() > inside.left());
    QCOMPARE(edit.offsetAt(edit.cursorRect().center()), Offset(2));
    QVERIFY(edit.ask(Qt::ImCursorRectangle)
                .toRect()
                .contains(edit.viewport()->mapTo(&edit, edit.cursorRect().center())));

    edit.compose(u"long"_s.repeated(50));
    QVERIFY(edit.xOffset() > 0);
    QVERIFY(edit.viewport()->rect().intersects(edit.cursorRect()));
}

void QMultiLineEditInputTest::composedTextKeepsTheMarkedText()
{
    ComposedEdit edit;
    DrawnText::load(edit, u"a[bc|d"_s);
    edit.compose(u"か"_s);
    QCOMPARE(DrawnText::draw(edit), u"a[bc|d"_s);
    edit.compose(QString());
    QCOMPARE(DrawnText::draw(edit), u"a[bc|d"_s);
    edit.compose(u"か"_s);
    edit.commit(u"蚊"_s);
    QCOMPARE(DrawnText::draw(edit), u"a蚊|d"_s);
    edit.undo();
    QCOMPARE(edit.text(), u"abcd"_s);
}

void QMultiLineEditInputTest::commits_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("after");
    QTest::newRow("at the cursor") << u"ab|cd"_s << u"漢字"_s << 0 << 0 << u"ab漢字|cd"_s;
    QTest::newRow("over selected text") << u"a[bc|d"_s << u"X"_s << 0 << 0 << u"aX|d"_s;
    QTest::newRow("replacing before the cursor") << u"abc|d"_s << u"X"_s << -2 << 2 << u"aX|d"_s;
    QTest::newRow("replacing behind the cursor") << u"a|bcd"_s << u"X"_s << 0 << 2 << u"aX|d"_s;
    QTest::newRow("replacing elsewhere") << u"a|bcd"_s << u"X"_s << 1 << 2 << u"abX|"_s;
    QTest::newRow("deleting surroundings") << u"abc|d"_s << u""_s << -2 << 2 << u"a|d"_s;
    QTest::newRow("replacing before the start") << u"a|bcd"_s << u"X"_s << -9 << 2 << u"X|cd"_s;
    QTest::newRow("replacing beyond the end") << u"abc|d"_s << u"X"_s << 0 << 99 << u"abcX|"_s;
    QTest::newRow("replacing and selected text") << u"ab[cd|ef"_s << u"X"_s << -1 << 2 << u"aX|f"_s;
    QTest::newRow("nothing") << u"a[b|c"_s << u""_s << 0 << 0 << u"a[b|c"_s;
}

void QMultiLineEditInputTest::commits()
{
    QFETCH(QString, before);
    QFETCH(QString, text);
    QFETCH(int, from);
    QFETCH(int, length);
    ComposedEdit edit;
    DrawnText::load(edit, before);
    const QString plain = edit.text();
    QSignalSpy changed(&edit, &QMultiLineEdit::textChanged);
    edit.commit(text, from, length);
    QTEST(DrawnText::draw(edit), "after");
    QCOMPARE(changed.size(), plain == edit.text() ? 0 : 1);
    QVERIFY(undoSteps(edit.history()) <= 1);
    edit.undo();
    QCOMPARE(edit.text(), plain);
}

void QMultiLineEditInputTest::commitIsOneStep()
{
    ComposedEdit edit;
    edit.compose(u"か"_s);
    edit.commit(u"漢字"_s);
    edit.compose(u"へ"_s);
    edit.commit(u"変換"_s);
    QCOMPARE(edit.text(), u"漢字変換"_s);
    QCOMPARE(undoSteps(edit.history()), 2);
}

void QMultiLineEditInputTest::committedTextIsCleaned_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("after");
    QTest::newRow("NUL") << u"a\0b"_s << u"ab|"_s;
    QTest::newRow("control characters") << u"a\u0001\u001Bb\u0085"_s << u"ab|"_s;
    QTest::newRow("carriage return") << u"a\rb"_s << u"a\nb|"_s;
    QTest::newRow("carriage return and line feed") << u"a\r\nb"_s << u"a\nb|"_s;
    QTest::newRow("line end and TAB") << u"a\n\tb"_s << u"a\n\tb|"_s;
    QTest::newRow("lone surrogate") << u"a"_s + QChar(0xdc80) << u"a\uFFFD|"_s;
    QTest::newRow("surrogate pair") << u"\U00020B9F"_s << u"\U00020B9F|"_s;
}

void QMultiLineEditInputTest::committedTextIsCleaned()
{
    QFETCH(QString, text);
    ComposedEdit edit;
    edit.commit(text);
    QTEST(DrawnText::draw(edit), "after");
}

void QMultiLineEditInputTest::returnEndsComposing()
{
    ComposedEdit edit;
    DrawnText::load(edit, u"a|b"_s);
    edit.compose(u"かな"_s);
    DrawnText::press(edit, u"Return"_s);
    QCOMPARE(DrawnText::draw(edit), u"aかな|b"_s);
    QVERIFY(!edit.isComposing());
    DrawnText::press(edit, u"Return"_s);
    QCOMPARE(DrawnText::draw(edit), u"aかな\n|b"_s);
    edit.compose(u"か"_s);
    DrawnText::press(edit, u"Enter"_s);
    QCOMPARE(DrawnText::draw(edit), u"aかな\nか|b"_s);
}

void QMultiLineEditInputTest::clickEndsComposing()
{
    ComposedEdit edit;
    edit.resize(200, 100);
    DrawnText::load(edit, u"ab|"_s);
    edit.compose(u"かな"_s);
    QTest::mouseClick(edit.viewport(), Qt::LeftButton, {}, QPoint(1, 5));
    QCOMPARE(DrawnText::draw(edit), u"|abかな"_s);
}

void QMultiLineEditInputTest::undoEndsComposing()
{
    ComposedEdit edit;
    DrawnText::load(edit, u"ab|"_s);
    edit.insert(u"c"_s);
    edit.compose(u"かな"_s);
    edit.undo();
    QVERIFY(!edit.isComposing());
    QCOMPARE(edit.text(), u"abc"_s);
}

void QMultiLineEditInputTest::answersQueries()
{
    ComposedEdit edit;
    DrawnText::load(edit, u"first\nsec[on|d\nthird"_s);
    QVERIFY(edit.ask(Qt::ImEnabled).toBool());
    QVERIFY(edit.testAttribute(Qt::WA_InputMethodEnabled));
    QCOMPARE(edit.ask(Qt::ImSurroundingText).toString(), u"second"_s);
    QCOMPARE(edit.ask(Qt::ImCursorPosition).toInt(), 5);
    QCOMPARE(edit.ask(Qt::ImAnchorPosition).toInt(), 3);
    QCOMPARE(edit.ask(Qt::ImAbsolutePosition).toInt(), 11);
    QCOMPARE(edit.ask(Qt::ImCurrentSelection).toString(), u"on"_s);
    QCOMPARE(edit.ask(Qt::ImTextBeforeCursor).toString(), u"secon"_s);
    QCOMPARE(edit.ask(Qt::ImTextAfterCursor).toString(), u"d"_s);
    QVERIFY(edit.ask(Qt::ImHints).toUInt() & Qt::ImhMultiLine);
    QCOMPARE(edit.ask(Qt::ImFont).value<QFont>(), edit.font());
    QVERIFY(!edit.ask(Qt::ImReadOnly).toBool());
    QVERIFY(
        edit.ask(Qt::ImAnchorRectangle).toRectF().left() < edit.ask(Qt::ImCursorRectangle).toRectF().left());
    QCOMPARE(edit.ask(Qt::ImInputItemClipRectangle).toRect(), edit.viewport()->geometry());
}

void QMultiLineEditInputTest::answersAboutPartsOfLongLines()
{
    ComposedEdit edit;
    edit.setText(u"\U00020B9F"_s.repeated(100'000));
    edit.setCursorPosition(0, 100'001);
    const QString shown = edit.ask(Qt::ImSurroundingText).toString();
    QVERIFY(shown.size() > 1000 && shown.size() < 5000);
    QVERIFY(shown.isValidUtf16());
    const int cursor = edit.ask(Qt::ImCursorPosition).toInt();
    QCOMPARE(shown.first(cursor), edit.ask(Qt::ImTextBeforeCursor).toString());
    QCOMPARE(shown.sliced(cursor), edit.ask(Qt::ImTextAfterCursor).toString());
    edit.setCursorPosition(0, 0, true);
    const int anchor = edit.ask(Qt::ImAnchorPosition).toInt();
    QVERIFY(anchor >= 0 && anchor <= edit.ask(Qt::ImSurroundingText).toString().size());
}

void QMultiLineEditInputTest::answersWithArguments()
{
    ComposedEdit edit;
    edit.resize(300, 100);
    DrawnText::load(edit, u"abc|def"_s);
    const auto ask = [&edit](Qt::InputMethodQuery query, const QVariant &argument) {
        QVariant answer;
        QMetaObject::invokeMethod(&edit, "inputMethodQuery", Qt::DirectConnection,
            Q_RETURN_ARG(QVariant, answer), Q_ARG(Qt::InputMethodQuery, query), Q_ARG(QVariant, argument));
        return answer;
    };
    QCOMPARE(ask(Qt::ImTextBeforeCursor, 2).toString(), u"bc"_s);
    QCOMPARE(ask(Qt::ImTextBeforeCursor, 99).toString(), u"abc"_s);
    QCOMPARE(ask(Qt::ImTextAfterCursor, 1).toString(), u"d"_s);
    QCOMPARE(ask(Qt::ImTextAfterCursor, -1).toString(), u""_s);
    QCOMPARE(ask(Qt::ImCursorPosition, QPointF(290, 5)).toInt(), 6);
    QCOMPARE(ask(Qt::ImCursorPosition, QPointF(0, 5)).toInt(), 0);
}

void QMultiLineEditInputTest::inputMethodSelects()
{
    ComposedEdit edit;
    DrawnText::load(edit, u"first\nsec|ond"_s);
    edit.compose(QString(), { { QInputMethodEvent::Selection, 1, 3, {} } });
    QCOMPARE(DrawnText::draw(edit), u"first\ns[eco|nd"_s);
    edit.compose(QString(), { { QInputMethodEvent::Selection, 4, -2, {} } });
    QCOMPARE(DrawnText::draw(edit), u"first\nse|co]nd"_s);
    edit.compose(QString(), { { QInputMethodEvent::Selection, 99, 0, {} } });
    QCOMPARE(DrawnText::draw(edit), u"first\nsecond|"_s);
}

void QMultiLineEditInputTest::longSelectionIsNotGivenWhole()
{
    ComposedEdit edit;
    edit.setText(u"line\n"_s.repeated(100'000));
    edit.selectAll();
    QVERIFY(edit.ask(Qt::ImCurrentSelection).toString().size() < 100'000);
}

REGISTER_TEST(runWindowTest<QMultiLineEditInputTest>)
#include "qmultilineeditinput_test.moc"
