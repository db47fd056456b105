#include "tests/testprogram.h"
#include "tests/widget/viewparts.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

/// What moves the cursor, and what goes along with it.
class CursorMovesTest : public QObject {
    Q_OBJECT

private slots:
    void aStepLeavesTheSelectionAtItsSide_data();
    void aStepLeavesTheSelectionAtItsSide();
    void rowsAreCrossedAtOneX();
    void pagesTakeTheViewAlong();
    void theViewFollows();
    void allIsSelectedWithoutScrolling();
    void quietMovesChangeTheCursorAlone();
    void typingBehindAMoveIsAnotherStep();
};

void CursorMovesTest::aStepLeavesTheSelectionAtItsSide_data()
{
    QTest::addColumn<qint64>("from");
    QTest::addColumn<qint64>("to");
    QTest::addColumn<bool>("forward");
    QTest::addColumn<qint64>("cursor");
    QTest::newRow("a[bc|d, left") << 1LL << 3LL << false << 1LL;
    QTest::newRow("a[bc|d, right") << 1LL << 3LL << true << 3LL;
    QTest::newRow("a|bc]d, left") << 3LL << 1LL << false << 1LL;
    QTest::newRow("a|bc]d, right") << 3LL << 1LL << true << 3LL;
    QTest::newRow("ab|cd, left") << 2LL << 2LL << false << 1LL;
    QTest::newRow("ab|cd, right") << 2LL << 2LL << true << 3LL;
}

void CursorMovesTest::aStepLeavesTheSelectionAtItsSide()
{
    QFETCH(qint64, from);
    QFETCH(qint64, to);
    QFETCH(bool, forward);
    ViewParts parts(u"abcd"_s);
    parts.select(from, to);
    parts.moves.moveBy(forward ? Move::CharacterForward : Move::CharacterBack, Selecting::Drop);
    QVERIFY(!parts.cursor.hasSelection());
    QTEST(parts.cursor.place().offset.value(), "cursor");
}

void CursorMovesTest::rowsAreCrossedAtOneX()
{
    ViewParts parts(u"xxxxxxxx\nx\nxxxxxxxx"_s);
    parts.setCursor(6);
    parts.moves.moveBy(Move::RowDown, Selecting::Drop);
    QCOMPARE(parts.cursor.position(), (RowCol{ RowIndex(1), 1 }));
    parts.moves.moveBy(Move::RowDown, Selecting::Drop);
    QCOMPARE(parts.cursor.position(), (RowCol{ RowIndex(2), 6 }));
    parts.moves.moveBy(Move::RowUp, Selecting::Drop);
    parts.moves.moveBy(Move::CharacterBack, Selecting::Drop);
    parts.moves.moveBy(Move::RowUp, Selecting::Drop);
    QCOMPARE(parts.cursor.position(), (RowCol{ RowIndex(0), 0 }));
}

void CursorMovesTest::pagesTakeTheViewAlong()
{
    ViewParts parts(u"x\n"_s.repeated(99));
    parts.moves.moveTo({ Offset(4) }, Selecting::Drop);
    parts.moves.moveBy(Move::PageDown, Selecting::Drop);
    const qint64 page = parts.scroller.rowsOfPage();
    QCOMPARE(parts.view.top(), RowIndex(page));
    QCOMPARE(parts.cursor.row(), RowIndex(2 + page));
    parts.moves.moveBy(Move::PageUp, Selecting::Extend);
    QCOMPARE(parts.view.top(), RowIndex(0));
    QCOMPARE(parts.cursor.row(), RowIndex(2));
    QCOMPARE(parts.cursor.selection().length(), 2 * page);
}

void CursorMovesTest::theViewFollows()
{
    ViewParts parts(u"x\n"_s.repeated(99));
    parts.moves.moveTo({ parts.document.store().end() }, Selecting::Extend);
    QCOMPARE(parts.view.top(), parts.view.lastTop());
    QCOMPARE(parts.cursor.anchor().offset, Offset(0));
    parts.moves.select({ Offset(9) }, { Offset(0) });
    QCOMPARE(parts.view.top(), RowIndex(0));
    QCOMPARE(parts.cursor.anchor().offset, Offset(9));
}

void CursorMovesTest::allIsSelectedWithoutScrolling()
{
    ViewParts parts(u"x\n"_s.repeated(99));
    parts.moves.selectAll();
    QCOMPARE(parts.cursor.selection().length(), parts.document.store().length());
    QCOMPARE(parts.cursor.place().offset, parts.document.store().end());
    QCOMPARE(parts.view.top(), RowIndex(0));
}

void CursorMovesTest::quietMovesChangeTheCursorAlone()
{
    ViewParts parts(u"x\n"_s.repeated(99));
    QSignalSpy copy(&parts.followers, &CursorFollowers::copyAvailable);
    parts.moves.setQuiet(true);
    parts.moves.moveTo({ Offset(150) }, Selecting::Extend);
    QCOMPARE(parts.cursor.place().offset, Offset(150));
    QCOMPARE(parts.view.top(), RowIndex(0));
    QVERIFY(copy.isEmpty());
    parts.moves.setQuiet(false);
    parts.moves.moveTo({ Offset(151) }, Selecting::Extend);
    QVERIFY(parts.view.top() > RowIndex(0));
    QCOMPARE(copy.size(), 1);
}

void CursorMovesTest::typingBehindAMoveIsAnotherStep()
{
    ViewParts parts(u"x"_s);
    parts.edits.type(u"a"_s);
    parts.edits.type(u"b"_s);
    parts.moves.moveTo({ Offset(2) }, Selecting::Drop);
    parts.edits.type(u"c"_s);
    QCOMPARE(parts.text(), u"abcx"_s);
    parts.edits.undo();
    QCOMPARE(parts.text(), u"abx"_s);
    parts.edits.undo();
    QCOMPARE(parts.text(), u"x"_s);
}

REGISTER_TEST(runWindowTest<CursorMovesTest>)
#include "cursormoves_test.moc"
