#include "tests/testprogram.h"
#include "tests/widget/viewparts.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

/// What edits a text at the cursor, and shows it.
class TextEditsTest : public QObject {
    Q_OBJECT

private slots:
    void anOperationIsToldOnce();
    void anOperationWithoutAChangeIsNotTold();
    void replacingKeepsTheCursorOnItsText_data();
    void replacingKeepsTheCursorOnItsText();
    void replacingAroundTheCursorIsOneStep();
    void droppedTextIsSelected_data();
    void droppedTextIsSelected();
    void overtypingSparesLineEnds();
    void erasing_data();
    void erasing();
    void theCursorIsInViewBehindAnEdit();
    void anotherTextIsShownFromItsStart();
};

void TextEditsTest::anOperationIsToldOnce()
{
    ViewParts parts(u"text"_s);
    QSignalSpy told(&parts.edits, &TextEdits::textChanged);
    {
        const TextEdits::Operation outer(parts.edits);
        parts.edits.insert(u"a", TextEdits::Joining::Never);
        parts.edits.insert(u"b", TextEdits::Joining::Never);
        QVERIFY(told.isEmpty());
    }
    QCOMPARE(told.size(), 1);
    QCOMPARE(parts.text(), u"abtext"_s);
    parts.edits.insert(u"c", TextEdits::Joining::Never);
    QCOMPARE(told.size(), 2);
}

void TextEditsTest::anOperationWithoutAChangeIsNotTold()
{
    ViewParts parts(u"text"_s);
    QSignalSpy told(&parts.edits, &TextEdits::textChanged);
    QVERIFY(!parts.edits.eraseSelection());
    parts.edits.insert(u"", TextEdits::Joining::Never);
    QVERIFY(told.isEmpty());
}

void TextEditsTest::replacingKeepsTheCursorOnItsText_data()
{
    QTest::addColumn<qint64>("cursor");
    QTest::addColumn<qint64>("after");
    QTest::newRow("|abcdef") << 0LL << 0LL;
    QTest::newRow("ab|cdef") << 2LL << 2LL;
    QTest::newRow("abc|def") << 3LL << 2LL;
    QTest::newRow("abcd|ef") << 4LL << 3LL;
    QTest::newRow("abcdef|") << 6LL << 5LL;
}

/// "cd" becomes "X".
void TextEditsTest::replacingKeepsTheCursorOnItsText()
{
    QFETCH(qint64, cursor);
    ViewParts parts(u"abcdef"_s);
    parts.setCursor(cursor);
    parts.edits.replaceRange({ Offset(2), Offset(4) }, u"X");
    QCOMPARE(parts.text(), u"abXef"_s);
    QTEST(parts.cursor.place().offset.value(), "after");
    QVERIFY(!parts.cursor.hasSelection());
}

void TextEditsTest::replacingAroundTheCursorIsOneStep()
{
    ViewParts parts(u"abSELcd"_s);
    parts.select(2, 5);
    parts.edits.replaceAround(-1, 2, u"X");
    QCOMPARE(parts.text(), u"aXd"_s);
    QCOMPARE(parts.cursor.place().offset, Offset(2));
    parts.edits.undo();
    QCOMPARE(parts.text(), u"abSELcd"_s);
    QVERIFY(!parts.document.history().canUndo());
}

void TextEditsTest::droppedTextIsSelected_data()
{
    QTest::addColumn<qint64>("to");
    QTest::addColumn<bool>("moves");
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("start");
    QTest::newRow("moved back") << 0LL << true << u"CDabef"_s << 0LL;
    QTest::newRow("moved on") << 6LL << true << u"abefCD"_s << 4LL;
    QTest::newRow("copied") << 6LL << false << u"abcdefCD"_s << 6LL;
}

void TextEditsTest::droppedTextIsSelected()
{
    QFETCH(qint64, to);
    QFETCH(bool, moves);
    ViewParts parts(u"abcdef"_s);
    parts.select(2, 4);
    parts.edits.drop(TextPiece(u"CD"), Offset(to), moves);
    QTEST(parts.text(), "text");
    QTEST(parts.cursor.selection().start.value(), "start");
    QCOMPARE(parts.cursor.selection().length(), 2);
    parts.edits.undo();
    QCOMPARE(parts.text(), u"abcdef"_s);
}

void TextEditsTest::overtypingSparesLineEnds()
{
    ViewParts parts(u"ab\ncd"_s);
    parts.cursor.setOverwrites(true);
    parts.edits.type(u"X"_s);
    parts.edits.type(u"YZ"_s);
    QCOMPARE(parts.text(), u"XYZ\ncd"_s);
    parts.select(0, 2);
    parts.edits.type(u"q"_s);
    QCOMPARE(parts.text(), u"qZ\ncd"_s);
}

void TextEditsTest::erasing_data()
{
    QTest::addColumn<qint64>("anchor");
    QTest::addColumn<int>("move");
    QTest::addColumn<QString>("text");
    QTest::newRow("ab |cd, back") << 3LL << int(Move::CharacterBack) << u"abcd ef"_s;
    QTest::newRow("ab |cd, forward") << 3LL << int(Move::CharacterForward) << u"ab d ef"_s;
    QTest::newRow("a word forward") << 3LL << int(Move::WordForward) << u"ab ef"_s;
    QTest::newRow("a[b |cd, the selection alone") << 1LL << int(Move::WordForward) << u"acd ef"_s;
}

void TextEditsTest::erasing()
{
    QFETCH(qint64, anchor);
    QFETCH(int, move);
    ViewParts parts(u"ab cd ef"_s);
    parts.select(anchor, 3);
    parts.edits.erase(Move(move));
    QTEST(parts.text(), "text");
    QVERIFY(!parts.cursor.hasSelection());
}

void TextEditsTest::theCursorIsInViewBehindAnEdit()
{
    ViewParts parts(u"x\n"_s.repeated(99));
    parts.setCursor(150);
    parts.edits.type(u"a"_s);
    QVERIFY(parts.view.isCursorRowVisible(parts.view.height()));
    QCOMPARE(RowIndex(parts.verticalBar.value()), parts.view.top());
    parts.scroller.setTop({});
    parts.edits.undo();
    QVERIFY(parts.view.isCursorRowVisible(parts.view.height()));
}

void TextEditsTest::anotherTextIsShownFromItsStart()
{
    ViewParts parts(u"x\n"_s.repeated(99));
    parts.scroller.setTop(RowIndex(50));
    parts.select(120, 140);
    QSignalSpy told(&parts.edits, &TextEdits::textChanged);
    TextStore other(parts.format.layoutRule());
    other.replace({}, 0, u"y\n"_s.repeated(99));
    parts.document.setText(std::move(other));
    QCOMPARE(told.size(), 1);
    QCOMPARE(parts.view.top(), RowIndex(0));
    QCOMPARE(parts.cursor.place().offset, Offset(0));
    QVERIFY(!parts.cursor.hasSelection());
}

REGISTER_TEST(runWindowTest<TextEditsTest>)
#include "textedits_test.moc"
