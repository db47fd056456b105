#include "tests/testprogram.h"
#include "tests/text/undosteps.h"
#include "tests/widget/drawntext.h"
#include "tests/widget/rows.h"

#include <QScrollBar>
#include <QSignalSpy>

#include <limits>

using namespace Qt::StringLiterals;

/// The classic interface: text by rows, cursor and selection, edits, wrapping.
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
    void selectedRegion_data();
    void selectedRegion();
    void selectedRegionEndsWhereTheCursorIsShown();
    void insertReplacesTheMarkedText();
    void selectAllKeepsTheView();
    void wrapWidths_data();
    void wrapWidths();
    void defaultTabStopIsEverybodys();
    void cursorSurvivesWrapping();
};

static std::pair<RowCol, RowCol> markedRegion(const QMultiLineEdit &edit)
{
    qint64 row1 = -1, column1 = -1, row2 = -1, column2 = -1;
    edit.getMarkedRegion(&row1, &column1, &row2, &column2);
    return { { RowIndex(row1), column1 }, { RowIndex(row2), column2 } };
}

static RowCol selectionStart(const QMultiLineEdit &edit)
{
    return markedRegion(edit).first;
}

static RowCol selectionEnd(const QMultiLineEdit &edit)
{
    return markedRegion(edit).second;
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
    QCOMPARE(rowText(edit, 0), u"one"_s);
    QCOMPARE(rowText(edit, 1), u""_s);
    QCOMPARE(rowText(edit, 2), u"three"_s);
    QVERIFY(edit.store().row(RowIndex(0)).endsLine);
    QVERIFY(edit.store().row(RowIndex(2)).endsLine);
}

void QMultiLineEditTest::givesWrappedRows()
{
    QMultiLineEdit edit;
    wrapAt(edit, 4);
    edit.setText(u"xxxxxx\nxx"_s);
    QCOMPARE(edit.numLines(), 3);
    QCOMPARE(rowText(edit, 0), u"xxxx"_s);
    QCOMPARE(rowText(edit, 1), u"xx"_s);
    QVERIFY(!edit.store().row(RowIndex(0)).endsLine);
    QVERIFY(edit.store().row(RowIndex(1)).endsLine);
    QVERIFY(edit.store().row(RowIndex(2)).endsLine);
}

void QMultiLineEditTest::setTextStartsAnew()
{
    QMultiLineEdit edit;
    edit.resize(100, 100);
    edit.setText(u"some text\n"_s.repeated(100));
    edit.insert(u"typed"_s);
    edit.setCursorPosition(90, 3);
    edit.setCursorPosition(95, 1, true);
    QVERIFY(edit.topRow() > RowIndex(0));
    edit.setText(u"other\rtext\r\n\0x"_s + QChar(u'\0'));
    QCOMPARE(edit.text(), u"other\rtext\r\n\0x"_s + QChar(u'\0'));
    QCOMPARE(edit.cursorPosition(), RowCol());
    QVERIFY(!edit.hasMarkedText());
    QVERIFY(!edit.history().canUndo());
    QCOMPARE(edit.topRow(), RowIndex(0));
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
    foreign.replace(Offset(0), 0, u"xxxxxx");
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
    QTEST(DrawnText::draw(edit), "after");
    qint64 seenRow = -1, seenColumn = -1;
    edit.getCursorPosition(&seenRow, &seenColumn);
    QCOMPARE((RowCol{ RowIndex(seenRow), seenColumn }), edit.cursorPosition());
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

void QMultiLineEditTest::selectedRegion_data()
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

void QMultiLineEditTest::selectedRegion()
{
    QFETCH(QString, drawing);
    QMultiLineEdit edit;
    DrawnText::load(edit, drawing);
    QCOMPARE(DrawnText::draw(edit), drawing);
    QTEST(selectionStart(edit).row.value(), "row1");
    QTEST(selectionStart(edit).column, "column1");
    QTEST(selectionEnd(edit).row.value(), "row2");
    QTEST(selectionEnd(edit).column, "column2");
    QTEST(edit.markedText(), "text");
    QCOMPARE(edit.hasMarkedText(), !edit.markedText().isEmpty());
    edit.deselect();
    QVERIFY(!edit.hasMarkedText());
}

void QMultiLineEditTest::selectedRegionEndsWhereTheCursorIsShown()
{
    QMultiLineEdit edit;
    wrapAt(edit, 4);
    edit.setText(u"xxxxxxxx"_s);
    edit.setCursorPosition(0, 1);
    edit.setCursorPosition(0, 4, true);
    QCOMPARE(edit.cursorPosition(), (RowCol{ RowIndex(0), 4 }));
    QCOMPARE(selectionEnd(edit), (RowCol{ RowIndex(0), 4 }));
    edit.setCursorPosition(1, 0, true);
    QCOMPARE(selectionEnd(edit), (RowCol{ RowIndex(1), 0 }));
    QCOMPARE(edit.markedText(), u"xxx"_s);
}

void QMultiLineEditTest::insertReplacesTheMarkedText()
{
    QMultiLineEdit edit;
    DrawnText::load(edit, u"a[bc|d"_s);
    edit.insert(u"x\ny"_s);
    QCOMPARE(DrawnText::draw(edit), u"ax\ny|d"_s);
    QCOMPARE(undoSteps(edit.history()), 1);
    edit.undo();
    QCOMPARE(edit.text(), u"abcd"_s);
    DrawnText::load(edit, u"a[bc|d"_s);
    edit.insert(QString());
    QCOMPARE(DrawnText::draw(edit), u"a|d"_s);
}

void QMultiLineEditTest::selectAllKeepsTheView()
{
    QMultiLineEdit edit;
    edit.resize(100, 100);
    edit.setText(u"line\n"_s.repeated(100));
    edit.setTopRow(RowIndex(10));
    edit.selectAll();
    QCOMPARE(edit.topRow(), RowIndex(10));
    QCOMPARE(edit.markedText(), edit.text());
    QCOMPARE(edit.cursorOffset(), edit.store().end());
}

void QMultiLineEditTest::wrapWidths_data()
{
    QTest::addColumn<QMultiLineEdit::WordWrap>("mode");
    QTest::addColumn<int>("value");
    QTest::addColumn<qint64>("rows");
    QTest::newRow("none") << QMultiLineEdit::NoWrap << 5 << 1LL;
    QTest::newRow("a pixel, narrower than a character") << QMultiLineEdit::FixedPixelWidth << 1 << 20LL;
    QTest::newRow("no pixel") << QMultiLineEdit::FixedPixelWidth << 0 << 20LL;
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

void QMultiLineEditTest::defaultTabStopIsEverybodys()
{
    QMultiLineEdit one, other;
    one.setText(u"\tx"_s);
    const int before = QMultiLineEdit::defaultTabStop();
    const Subpixels x = one.store().xAt({ RowIndex(0), 1 });
    QMultiLineEdit::setDefaultTabStop(before * 2);
    QCOMPARE(one.store().xAt({ RowIndex(0), 1 }), x * 2);
    QCOMPARE(other.layoutRule().tabStop, x * 2);
    QMultiLineEdit::setDefaultTabStop(0);
    QCOMPARE(QMultiLineEdit::defaultTabStop(), 1);
    QMultiLineEdit::setDefaultTabStop(before);
}

void QMultiLineEditTest::cursorSurvivesWrapping()
{
    QMultiLineEdit edit;
    DrawnText::load(edit, u"xxxxxxxxxx[xxx|xxxx\nxxx"_s);
    for (const int columns : { 5, 3, 100, 1 }) {
        wrapAt(edit, columns);
        QCOMPARE(DrawnText::draw(edit), u"xxxxxxxxxx[xxx|xxxx\nxxx"_s);
    }
    QCOMPARE(edit.cursorPosition(), (RowCol{ RowIndex(13), 0 }));
}

REGISTER_TEST(runWindowTest<QMultiLineEditTest>)
#include "qmultilineedit_test.moc"
