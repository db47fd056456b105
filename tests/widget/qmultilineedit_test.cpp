#include "tests/testprogram.h"
#include "tests/widget/markedtext.h"

#include <QScrollBar>
#include <QSignalSpy>

#include <limits>

using namespace Qt::StringLiterals;

/// The classic interface: text by rows, cursor and marked text, edits, wrapping.
class QMultiLineEditTest : public QObject {
    Q_OBJECT

private slots:
    void startsEmpty();
    void givesRows();
    void givesWrappedRows();
    void setTextStartsAnew();
    void takesAStoreOver();
    void cursorIsClamped_data();
    void cursorIsClamped();
    void cursorIsToldInIntToo();
    void markedRegion_data();
    void markedRegion();
    void markedRegionEndsWhereTheCursorIsShown();
    void insertReplacesTheMarkedText();
    void insertAt_data();
    void insertAt();
    void removeLine_data();
    void removeLine();
    void selectAllKeepsTheView();
    void wrapWidths_data();
    void wrapWidths();
    void wrapWidthFollowsTheWidget();
    void defaultTabStopIsEverybodys();
    void cursorSurvivesWrapping();
};

static RowCol markedStart(const QMultiLineEdit &edit)
{
    RowCol first, last;
    return edit.getMarkedRegion(&first.row, &first.column, &last.row, &last.column) ? first
                                                                                    : RowCol{ -1, -1 };
}

static RowCol markedEnd(const QMultiLineEdit &edit)
{
    RowCol first, last;
    return edit.getMarkedRegion(&first.row, &first.column, &last.row, &last.column) ? last : RowCol{ -1, -1 };
}

static void wrapAt(QMultiLineEdit &edit, int columns)
{
    edit.setWrapColumnOrWidth(columns);
    edit.setWordWrap(QMultiLineEdit::FixedColumnWidth);
}

void QMultiLineEditTest::startsEmpty()
{
    const QMultiLineEdit edit;
    QCOMPARE(edit.text(), QString());
    QCOMPARE(edit.numLines(), 1);
    QCOMPARE(edit.cursorPosition(), RowCol());
    QVERIFY(!edit.hasMarkedText());
    QVERIFY(!edit.edited());
    QVERIFY(edit.isUndoEnabled());
    QCOMPARE(edit.undoDepth(), 256);
    QVERIFY(!edit.isReadOnly());
    QVERIFY(!edit.isOverwriteMode());
    QCOMPARE(edit.wordWrap(), QMultiLineEdit::NoWrap);
    QCOMPARE(edit.wrapPolicy(), QMultiLineEdit::Anywhere);
    QVERIFY(!edit.history().canUndo());
}

void QMultiLineEditTest::givesRows()
{
    QMultiLineEdit edit;
    edit.setText(u"one\n\nthree"_s);
    QCOMPARE(edit.numLines(), 3);
    QCOMPARE(edit.textLine(0), u"one"_s);
    QCOMPARE(edit.textLine(1), u""_s);
    QVERIFY(!edit.textLine(1).isNull());
    QCOMPARE(edit.textLine(2), u"three"_s);
    QVERIFY(edit.textLine(3).isNull());
    QVERIFY(edit.textLine(-1).isNull());
    QVERIFY(edit.isEndOfParagraph(0));
    QVERIFY(edit.isEndOfParagraph(2));
    QVERIFY(!edit.isEndOfParagraph(3));
    QVERIFY(!edit.isEndOfParagraph(-1));
}

void QMultiLineEditTest::givesWrappedRows()
{
    QMultiLineEdit edit;
    wrapAt(edit, 4);
    edit.setText(u"xxxxxx\nxx"_s);
    QCOMPARE(edit.numLines(), 3);
    QCOMPARE(edit.textLine(0), u"xxxx"_s);
    QCOMPARE(edit.textLine(1), u"xx"_s);
    QVERIFY(!edit.isEndOfParagraph(0));
    QVERIFY(edit.isEndOfParagraph(1));
    QVERIFY(edit.isEndOfParagraph(2));
}

void QMultiLineEditTest::setTextStartsAnew()
{
    QMultiLineEdit edit;
    edit.resize(100, 100);
    edit.setText(u"some text\n"_s.repeated(100));
    edit.insert(u"typed"_s);
    edit.setCursorPosition(90, 3);
    edit.setCursorPosition(95, 1, true);
    QVERIFY(edit.topRow() > 0);
    edit.setText(u"other\rtext\r\n\0x"_s + QChar(u'\0'));
    QCOMPARE(edit.text(), u"other\rtext\r\n\0x"_s + QChar(u'\0'));
    QCOMPARE(edit.cursorPosition(), RowCol());
    QVERIFY(!edit.hasMarkedText());
    QVERIFY(!edit.history().canUndo());
    QCOMPARE(edit.topRow(), 0);
    QCOMPARE(edit.xOffset(), 0);
    edit.clear();
    QCOMPARE(edit.text(), QString());
}

void QMultiLineEditTest::takesAStoreOver()
{
    QMultiLineEdit edit;
    wrapAt(edit, 3);
    TextStore::Builder builder(edit.layoutRule());
    builder.append(QByteArrayView("xxxx\n"));
    builder.append(QStringView(u"xx"));
    QSignalSpy changed(&edit, &QMultiLineEdit::textChanged);
    edit.setText(builder.finish());
    QCOMPARE(edit.text(), u"xxxx\nxx"_s);
    QCOMPARE(edit.numLines(), 3);
    QCOMPARE(changed.size(), 1);

    TextStore foreign;
    foreign.replace(0, 0, u"xxxxxx");
    edit.setText(std::move(foreign));
    QCOMPARE(edit.numLines(), 2);
}

void QMultiLineEditTest::cursorIsClamped_data()
{
    QTest::addColumn<qint64>("row");
    QTest::addColumn<qint64>("column");
    QTest::addColumn<QString>("after");
    QTest::newRow("inside") << 1LL << 1LL << u"ab\nc|de"_s;
    QTest::newRow("column too large") << 0LL << 9LL << u"ab|\ncde"_s;
    QTest::newRow("column too small") << 1LL << -1LL << u"ab\n|cde"_s;
    QTest::newRow("row too large") << 7LL << 1LL << u"ab\nc|de"_s;
    QTest::newRow("row too small") << -1LL << 1LL << u"a|b\ncde"_s;
    const qint64 most = std::numeric_limits<qint64>::max();
    QTest::newRow("as large as numbers are") << most << most << u"ab\ncde|"_s;
    QTest::newRow("as small as numbers are") << -most << -most << u"|ab\ncde"_s;
}

void QMultiLineEditTest::cursorIsClamped()
{
    QFETCH(qint64, row);
    QFETCH(qint64, column);
    QMultiLineEdit edit;
    edit.setText(u"ab\ncde"_s);
    edit.setCursorPosition(row, column);
    QTEST(MarkedText::draw(edit), "after");
    qint64 seenRow = -1, seenColumn = -1;
    edit.getCursorPosition(&seenRow, &seenColumn);
    QCOMPARE((RowCol{ seenRow, seenColumn }), edit.cursorPosition());
}

void QMultiLineEditTest::cursorIsToldInIntToo()
{
    QMultiLineEdit edit;
    edit.setText(u"ab\ncde"_s);
    edit.setCursorPosition(1, 2);
    int row = -1, column = -1;
    edit.getCursorPosition(&row, &column);
    QCOMPARE(row, 1);
    QCOMPARE(column, 2);
}

void QMultiLineEditTest::markedRegion_data()
{
    QTest::addColumn<QString>("drawing");
    QTest::addColumn<qint64>("row1");
    QTest::addColumn<qint64>("column1");
    QTest::addColumn<qint64>("row2");
    QTest::addColumn<qint64>("column2");
    QTest::addColumn<QString>("text");
    QTest::newRow("in a row") << u"a[bc|d"_s << 0LL << 1LL << 0LL << 3LL << u"bc"_s;
    QTest::newRow("backwards") << u"a|bc]d"_s << 0LL << 1LL << 0LL << 3LL << u"bc"_s;
    QTest::newRow("over rows") << u"a[b\nc|d"_s << 0LL << 1LL << 1LL << 1LL << u"b\nc"_s;
    QTest::newRow("a line end") << u"ab[\n|cd"_s << 0LL << 2LL << 1LL << 0LL << u"\n"_s;
    QTest::newRow("nothing") << u"ab|cd"_s << -1LL << -1LL << -1LL << -1LL << u""_s;
}

void QMultiLineEditTest::markedRegion()
{
    QFETCH(QString, drawing);
    QMultiLineEdit edit;
    MarkedText::load(edit, drawing);
    QCOMPARE(MarkedText::draw(edit), drawing);
    QTEST(markedStart(edit).row, "row1");
    QTEST(markedStart(edit).column, "column1");
    QTEST(markedEnd(edit).row, "row2");
    QTEST(markedEnd(edit).column, "column2");
    QTEST(edit.markedText(), "text");
    QCOMPARE(edit.hasMarkedText(), !edit.markedText().isEmpty());
    edit.deselect();
    QVERIFY(!edit.hasMarkedText());
}

void QMultiLineEditTest::markedRegionEndsWhereTheCursorIsShown()
{
    QMultiLineEdit edit;
    wrapAt(edit, 4);
    edit.setText(u"xxxxxxxx"_s);
    edit.setCursorPosition(0, 1);
    edit.setCursorPosition(0, 4, true);
    QCOMPARE(edit.cursorPosition(), (RowCol{ 0, 4 }));
    QCOMPARE(markedEnd(edit), (RowCol{ 0, 4 }));
    edit.setCursorPosition(1, 0, true);
    QCOMPARE(markedEnd(edit), (RowCol{ 1, 0 }));
    QCOMPARE(edit.markedText(), u"xxx"_s);
}

void QMultiLineEditTest::insertReplacesTheMarkedText()
{
    QMultiLineEdit edit;
    MarkedText::load(edit, u"a[bc|d"_s);
    edit.insert(u"x\ny"_s);
    QCOMPARE(MarkedText::draw(edit), u"ax\ny|d"_s);
    QCOMPARE(edit.history().undoSteps(), 1);
    edit.undo();
    QCOMPARE(edit.text(), u"abcd"_s);
    MarkedText::load(edit, u"a[bc|d"_s);
    edit.insert(QString());
    QCOMPARE(MarkedText::draw(edit), u"a|d"_s);
}

void QMultiLineEditTest::insertAt_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<qint64>("row");
    QTest::addColumn<qint64>("column");
    QTest::addColumn<bool>("mark");
    QTest::addColumn<QString>("after");
    QTest::newRow("behind the cursor") << u"a|b\ncd"_s << 1LL << 1LL << false << u"a|b\ncXYd"_s;
    QTest::newRow("before the cursor") << u"ab\nc|d"_s << 0LL << 0LL << false << u"XYab\nc|d"_s;
    QTest::newRow("at the cursor") << u"a|b"_s << 0LL << 1LL << false << u"a|XYb"_s;
    QTest::newRow("beside marked text") << u"a[b|c"_s << 0LL << 3LL << false << u"a[b|cXY"_s;
    QTest::newRow("marked") << u"|abc"_s << 0LL << 2LL << true << u"ab[XY|c"_s;
    QTest::newRow("beyond the end") << u"|abc"_s << 9LL << 9LL << false << u"|abcXY"_s;
}

void QMultiLineEditTest::insertAt()
{
    QFETCH(QString, before);
    QFETCH(qint64, row);
    QFETCH(qint64, column);
    QFETCH(bool, mark);
    QMultiLineEdit edit;
    MarkedText::load(edit, before);
    edit.insertAt(u"XY"_s, row, column, mark);
    QTEST(MarkedText::draw(edit), "after");
    QCOMPARE(edit.history().undoSteps(), 1);
}

void QMultiLineEditTest::removeLine_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<qint64>("row");
    QTest::addColumn<QString>("after");
    QTest::newRow("first") << u"ab\nc|d\nef"_s << 0LL << u"c|d\nef"_s;
    QTest::newRow("middle, with the cursor") << u"ab\nc|d\nef"_s << 1LL << u"ab\n|ef"_s;
    QTest::newRow("last") << u"a|b\ncd\nef"_s << 2LL << u"a|b\ncd"_s;
    QTest::newRow("last, with the cursor") << u"ab\ncd|"_s << 1LL << u"ab|"_s;
    QTest::newRow("empty last") << u"a|b\n"_s << 1LL << u"a|b"_s;
    QTest::newRow("only") << u"ab|"_s << 0LL << u"|"_s;
    QTest::newRow("none such") << u"ab|\ncd"_s << 2LL << u"ab|\ncd"_s;
    QTest::newRow("below none") << u"ab|\ncd"_s << -1LL << u"ab|\ncd"_s;
}

void QMultiLineEditTest::removeLine()
{
    QFETCH(QString, before);
    QFETCH(qint64, row);
    QMultiLineEdit edit;
    MarkedText::load(edit, before);
    edit.removeLine(row);
    QTEST(MarkedText::draw(edit), "after");
}

void QMultiLineEditTest::selectAllKeepsTheView()
{
    QMultiLineEdit edit;
    edit.resize(100, 100);
    edit.setText(u"line\n"_s.repeated(100));
    edit.setTopRow(10);
    edit.selectAll();
    QCOMPARE(edit.topRow(), 10);
    QCOMPARE(edit.markedText(), edit.text());
    QCOMPARE(edit.cursorOffset(), edit.store().length());
}

void QMultiLineEditTest::wrapWidths_data()
{
    QTest::addColumn<QMultiLineEdit::WordWrap>("mode");
    QTest::addColumn<int>("value");
    QTest::addColumn<qint64>("rows");
    QTest::newRow("none") << QMultiLineEdit::NoWrap << 5 << 1LL;
    QTest::newRow("columns") << QMultiLineEdit::FixedColumnWidth << 5 << 4LL;
    QTest::newRow("one column") << QMultiLineEdit::FixedColumnWidth << 1 << 20LL;
    QTest::newRow("no column") << QMultiLineEdit::FixedColumnWidth << 0 << 20LL;
    QTest::newRow("columns below 0") << QMultiLineEdit::FixedColumnWidth << -80 << 20LL;
    QTest::newRow("a pixel, narrower than a character") << QMultiLineEdit::FixedPixelWidth << 1 << 20LL;
    QTest::newRow("pixels below 0") << QMultiLineEdit::FixedPixelWidth << -1 << 20LL;
    QTest::newRow("many pixels") << QMultiLineEdit::FixedPixelWidth << 100000 << 1LL;
}

void QMultiLineEditTest::wrapWidths()
{
    QFETCH(QMultiLineEdit::WordWrap, mode);
    QFETCH(int, value);
    QMultiLineEdit edit;
    edit.setText(u"x"_s.repeated(20));
    edit.setWordWrap(mode);
    edit.setWrapColumnOrWidth(value);
    QTEST(edit.numLines(), "rows");
    QCOMPARE(edit.wrapColumnOrWidth(), qMax(1, value));
}

void QMultiLineEditTest::wrapWidthFollowsTheWidget()
{
    QMultiLineEdit edit;
    edit.setText(u"x"_s.repeated(2000));
    edit.setWordWrap(QMultiLineEdit::WidgetWidth);
    edit.resize(400, 2000);
    edit.show();
    const qint64 wide = edit.numLines();
    edit.resize(200, 2000);
    QVERIFY(edit.numLines() > wide);
    QCOMPARE(edit.horizontalScrollBar()->maximum(), 0);
    edit.resize(1, 1);
    QCOMPARE(edit.numLines(), 2000);
}

void QMultiLineEditTest::defaultTabStopIsEverybodys()
{
    QMultiLineEdit one, other;
    one.setText(u"\tx"_s);
    const int before = QMultiLineEdit::defaultTabStop();
    const Subpixels x = one.store().xAt({ 0, 1 });
    QMultiLineEdit::setDefaultTabStop(before * 2);
    QCOMPARE(one.store().xAt({ 0, 1 }), x * 2);
    QCOMPARE(other.layoutRule().tabStop, x * 2);
    QMultiLineEdit::setDefaultTabStop(0);
    QCOMPARE(QMultiLineEdit::defaultTabStop(), 1);
    QMultiLineEdit::setDefaultTabStop(before);
}

void QMultiLineEditTest::cursorSurvivesWrapping()
{
    QMultiLineEdit edit;
    MarkedText::load(edit, u"xxxxxxxxxx[xxx|xxxx\nxxx"_s);
    for (const int columns : { 5, 3, 100, 1 }) {
        wrapAt(edit, columns);
        QCOMPARE(MarkedText::draw(edit), u"xxxxxxxxxx[xxx|xxxx\nxxx"_s);
    }
    QCOMPARE(edit.cursorPosition(), (RowCol{ 13, 0 }));
}

REGISTER_TEST(runWindowTest<QMultiLineEditTest>)
#include "qmultilineedit_test.moc"
