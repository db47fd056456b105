#include "tests/testprogram.h"
#include "widget/textcursor.h"

using namespace Qt::StringLiterals;

/// The cursor on a text that nobody shows.
class TextCursorTest : public QObject {
    Q_OBJECT

private slots:
    void startsAtTheStart();
    void selectionIsInTheOrderOfTheText_data();
    void selectionIsInTheOrderOfTheText();
    void moves_data();
    void moves();
    void rowEndIsNotTheNextRowsStart();
    void nearestIsInTheText_data();
    void nearestIsInTheText();
    void wholeLines_data();
    void wholeLines();
};

/// With every character a pixel wide.
static TextStore storeOf(const QString &text, int columns = 0)
{
    TextStore::Builder builder(LayoutRule{ .limit = columns * subpixelsPerPixel });
    builder.append(text);
    return builder.finish();
}

void TextCursorTest::startsAtTheStart()
{
    const TextStore store = storeOf(u"text"_s);
    const TextCursor cursor(store);
    QCOMPARE(cursor.place().offset, Offset(0));
    QCOMPARE(cursor.position(), RowCol());
    QVERIFY(!cursor.hasSelection());
    QVERIFY(!cursor.goalX());
    QVERIFY(!cursor.overwrites());
}

void TextCursorTest::selectionIsInTheOrderOfTheText_data()
{
    QTest::addColumn<qint64>("place");
    QTest::addColumn<qint64>("anchor");
    QTest::addColumn<qint64>("start");
    QTest::addColumn<qint64>("end");
    QTest::newRow("a[b|c") << 2LL << 1LL << 1LL << 2LL;
    QTest::newRow("a|b]c") << 1LL << 2LL << 1LL << 2LL;
    QTest::newRow("ab|c") << 2LL << 2LL << 2LL << 2LL;
}

void TextCursorTest::selectionIsInTheOrderOfTheText()
{
    QFETCH(qint64, place);
    QFETCH(qint64, anchor);
    const TextStore store = storeOf(u"abc"_s);
    TextCursor cursor(store);
    cursor.set({ Offset(place) }, { Offset(anchor) });
    QTEST(cursor.selection().start.value(), "start");
    QTEST(cursor.selection().end.value(), "end");
    QTEST(cursor.selectionBegin().offset.value(), "start");
    QTEST(cursor.selectionEnd().offset.value(), "end");
    QCOMPARE(cursor.hasSelection(), place != anchor);
    cursor.set({ Offset(place) });
    QVERIFY(!cursor.hasSelection());
    QCOMPARE(cursor.place().offset, Offset(place));
}

void TextCursorTest::moves_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<Move>("move");
    QTest::addColumn<QString>("after");
    QTest::newRow("back") << u"ab|c"_s << Move::CharacterBack << u"a|bc"_s;
    QTest::newRow("back over a pair") << u"\U00020B9F|c"_s << Move::CharacterBack << u"|\U00020B9Fc"_s;
    QTest::newRow("back from the start") << u"|ab"_s << Move::CharacterBack << u"|ab"_s;
    QTest::newRow("forward over a line end") << u"a|\nb"_s << Move::CharacterForward << u"a\n|b"_s;
    QTest::newRow("forward over a mark") << u"|e\u0301b"_s << Move::CharacterForward << u"e\u0301|b"_s;
    QTest::newRow("forward from the end") << u"ab|"_s << Move::CharacterForward << u"ab|"_s;
    QTest::newRow("a word back") << u"one two|"_s << Move::WordBack << u"one |two"_s;
    QTest::newRow("a word forward") << u"|one two"_s << Move::WordForward << u"one |two"_s;
    QTest::newRow("to the row's start") << u"ab\ncd|e"_s << Move::RowStart << u"ab\n|cde"_s;
    QTest::newRow("to the row's end") << u"a|b\ncde"_s << Move::RowEnd << u"ab|\ncde"_s;
    QTest::newRow("to the start") << u"ab\nc|d"_s << Move::TextStart << u"|ab\ncd"_s;
    QTest::newRow("to the end") << u"|ab\ncd"_s << Move::TextEnd << u"ab\ncd|"_s;
}

void TextCursorTest::moves()
{
    QFETCH(QString, before);
    QFETCH(Move, move);
    const TextStore store = storeOf(QString(before).remove(u'|'));
    TextCursor cursor(store);
    cursor.set({ Offset(before.indexOf(u'|')) });
    QTEST(store.text().insert(cursor.target(move).offset.value(), u'|'), "after");
    QCOMPARE(cursor.place().offset, Offset(before.indexOf(u'|')));
}

/// Both are the same offset.
void TextCursorTest::rowEndIsNotTheNextRowsStart()
{
    const TextStore store = storeOf(u"abcdef"_s, 3);
    TextCursor cursor(store);
    cursor.set({ Offset(1) });
    cursor.set(cursor.target(Move::RowEnd));
    QCOMPARE(cursor.position(), (RowCol{ RowIndex(0), 3 }));
    QCOMPARE(cursor.target(Move::RowStart).offset, Offset(0));
    cursor.set({ Offset(3) });
    QCOMPARE(cursor.position(), (RowCol{ RowIndex(1), 0 }));
}

void TextCursorTest::nearestIsInTheText_data()
{
    QTest::addColumn<RowCol>("position");
    QTest::addColumn<qint64>("offset");
    QTest::newRow("inside") << RowCol{ RowIndex(1), 1 } << 4LL;
    QTest::newRow("behind a row's end") << RowCol{ RowIndex(0), 99 } << 2LL;
    QTest::newRow("before a row's start") << RowCol{ RowIndex(1), -5 } << 3LL;
    QTest::newRow("below the last row") << RowCol{ RowIndex(9), 1 } << 4LL;
    QTest::newRow("above the first row") << RowCol{ RowIndex(-1), 1 } << 1LL;
}

void TextCursorTest::nearestIsInTheText()
{
    QFETCH(RowCol, position);
    const TextStore store = storeOf(u"ab\ncd"_s);
    QTEST(TextCursor(store).nearest(position).offset.value(), "offset");
}

void TextCursorTest::wholeLines_data()
{
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<QString>("line");
    QTest::newRow("first") << 1LL << u"ab\n"_s;
    QTest::newRow("at its end") << 2LL << u"ab\n"_s;
    QTest::newRow("empty") << 3LL << u"\n"_s;
    QTest::newRow("last") << 4LL << u"cd"_s;
    QTest::newRow("at the end of the text") << 6LL << u"cd"_s;
}

void TextCursorTest::wholeLines()
{
    QFETCH(qint64, offset);
    const TextStore store = storeOf(u"ab\n\ncd"_s);
    const TextRange line = wholeLineAt(store, Offset(offset));
    QTEST(store.text(line.start, line.end - line.start), "line");
}

REGISTER_TEST(runPlainTest<TextCursorTest>)
#include "textcursor_test.moc"
