#include "document/textdocument.h"
#include "rows/fontmeasure.h"
#include "tests/testprogram.h"
#include "tests/widget/drawntext.h"
#include "tests/widget/heldlayout.h"
#include "tests/widget/rows.h"
#include "text/textlayout.h"
#include "widget/viewlayout.h"

#include <QAccessible>
#include <QScrollBar>
#include <QSignalSpy>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr auto gridRow = "ab\tcde 漢字\tghijklmnop ";

/// Lines of every length, with tabs, some of which wrap to many rows.
QString longText()
{
    QString text;
    for (int line = 0; line < 120; ++line)
        text += QString::fromUtf8(gridRow).repeated(line % 9) + QString::number(line) + u'\n';
    return text;
}

/// A row number is one of the present layout: it is asked for at the moment of use.
qint64 lastRow(const QMultiLineEdit &edit)
{
    return edit.numLines() - 1;
}

void setFontSize(QMultiLineEdit &edit, int size)
{
    QFont font = edit.font();
    font.setPointSize(size);
    edit.setFont(font);
}

using Change = std::function<void(QMultiLineEdit &)>;
using Question = std::function<QVariant(QMultiLineEdit &)>;

const Change changes[] = {
    [](QMultiLineEdit &edit) { setFontSize(edit, 17); },
    [](QMultiLineEdit &edit) { edit.setHMargin(36); },
    [](QMultiLineEdit &edit) { edit.setWordWrap(QMultiLineEdit::FixedPixelWidth); },
    [](QMultiLineEdit &edit) { edit.setWrapColumnOrWidth(200); },
    [](QMultiLineEdit &) { QMultiLineEdit::setDefaultTabStop(3); },
};

/// Everything that rows matter to.
QVariantList stateOf(const QMultiLineEdit &edit)
{
    const RowCol cursor = edit.cursorPosition();
    const QScrollBar *bars[] = { edit.verticalScrollBar(), edit.horizontalScrollBar() };
    QVariantList state{ edit.text(), edit.numLines(), cursor.row.value(), cursor.column,
        edit.cursorOffset().value(), edit.anchorOffset().value(), edit.topRow().value(), edit.xOffset(),
        edit.cellWidth(), edit.rowHeight() };
    for (const QScrollBar *bar : bars)
        state << bar->value() << bar->maximum() << bar->pageStep();
    for (qint64 row = 0; row < edit.numLines(); ++row)
        state << rowText(edit, row);
    return state;
}

QVariant inputMethodAnswer(const QMultiLineEdit &edit, Qt::InputMethodQuery query)
{
    return edit.inputMethodQuery(query);
}

/// Lets the protected questions be asked.
class LaidOutEdit : public QMultiLineEdit {
public:
    int paints = 0;
    qint64 rowsWhenPainted = 0;
    using QMultiLineEdit::fontMeasure;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        ++paints;
        rowsWhenPainted = store().rowCount();
        QMultiLineEdit::paintEvent(event);
    }
};

/// What is told of the layout of a long text.
struct LayoutSpies {
    explicit LayoutSpies(const QMultiLineEdit &edit)
        : begun(&edit.viewLayout(), &ViewLayout::begun)
        , progressed(&edit.viewLayout(), &ViewLayout::progressed)
        , ended(&edit.viewLayout(), &ViewLayout::ended)
    {
    }

    QSignalSpy begun, progressed, ended;
};

/// Of which measuring takes several turns of the event loop.
void prepareLong(LaidOutEdit &edit)
{
    edit.resize(250, 200);
    wrapAt(edit, 20);
    edit.setText(longText().repeated(ViewLayout::longText / longText().size() + 1));
    edit.setCursorPosition(70, 5);
    edit.setTopRow(RowIndex(66));
}

void prepare(LaidOutEdit &edit)
{
    QMultiLineEdit::setDefaultTabStop(8);
    edit.resize(250, 200);
    edit.setText(longText());
    edit.setCursorPosition(70, 5);
    edit.setCursorPosition(72, 9, true);
    edit.setTopRow(RowIndex(66));
}

} // namespace

/// When text is laid out, after what rows depend on has changed.
class QMultiLineEditLayoutTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void hiddenEditorWaitsUntilItIsShown();
    void hiddenEditorIsAsIfLaidOutAtOnce_data();
    void hiddenEditorIsAsIfLaidOutAtOnce();
    void theDocumentIsAskedWithoutLayingOut();
    void visibleEditorIsLaidOutOnceBeforeItIsPainted();
    void topTextStays_data();
    void topTextStays();
    void showingAgainScrollsNothing();
    void outlivesManyFonts();
    void longTextKeepsItsRowsUntilOthersAreMeasured();
    void longTextGetsTheLastLayoutThatWasWanted();
    void longTextKeepsItsRowsWhereNothingElseIsWanted();
    void longTextIsGoneToTheEndOfMeanwhile();
    void longTextTellsHowFarItsLayoutIs();
    void shortTextTellsNothing();
    void stoppedLayoutKeepsTheRows();
    void stoppedLayoutIsBegunByTheNextChange_data();
    void stoppedLayoutIsBegunByTheNextChange();
    void stoppedLayoutIsNoMoreThatOfAnotherText_data();
    void stoppedLayoutIsNoMoreThatOfAnotherText();
};

void QMultiLineEditLayoutTest::init()
{
    QMultiLineEdit::setDefaultTabStop(8);
}

void QMultiLineEditLayoutTest::hiddenEditorWaitsUntilItIsShown()
{
    LaidOutEdit edit;
    prepare(edit);
    const int rowsBefore = edit.verticalScrollBar()->maximum();
    for (const Change &change : changes)
        change(edit);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(edit.verticalScrollBar()->maximum(), rowsBefore);
    edit.show();
    const int shown = edit.verticalScrollBar()->maximum();
    QVERIFY2(shown > 2 * rowsBefore, qPrintable(QString::number(shown)));
    QCOMPARE(shown, int(edit.numLines() - qint64(edit.viewport()->height() / edit.rowHeight())));
}

void QMultiLineEditLayoutTest::hiddenEditorIsAsIfLaidOutAtOnce_data()
{
    QTest::addColumn<Question>("question");
    const auto row = [](const char *name, const Question &question) { QTest::newRow(name) << question; };
    const auto act = [](const char *name, const std::function<void(LaidOutEdit &)> &action) {
        QTest::newRow(name) << Question([action](QMultiLineEdit &edit) {
            action(static_cast<LaidOutEdit &>(edit));
            return QVariant();
        });
    };
    row("count of rows", [](auto &edit) { return edit.numLines(); });
    row("text of a row", [](auto &edit) { return rowText(edit, 40); });
    row("end of a paragraph", [](auto &edit) { return edit.store().row(RowIndex(39)).endsLine; });
    row("rows of the store", [](auto &edit) { return edit.store().row(RowIndex(30)).start.value(); });
    row("cursor row", [](auto &edit) { return edit.cursorPosition().row.value(); });
    row("marked region", [](auto &edit) {
        qint64 rows[2], columns[2];
        edit.getMarkedRegion(&rows[0], &columns[0], &rows[1], &columns[1]);
        return QVariantList{ rows[0], columns[0], rows[1], columns[1] };
    });
    row("top row", [](auto &edit) { return edit.topRow().value(); });
    row("vertical offset", [](auto &edit) { return edit.yOffset(); });
    row("horizontal offset", [](auto &edit) { return edit.xOffset(); });
    row("width of the content", [](auto &edit) { return edit.cellWidth(); });
    row("height of a row", [](auto &edit) { return edit.rowHeight(); });
    row("height of a cell", [](auto &edit) { return edit.cellHeight(); });
    row("place of a row", [](auto &edit) { return edit.cellRect(RowIndex(50)); });
    row("place of the cursor", [](auto &edit) { return edit.cursorRect(); });
    row("offset at a point", [](auto &edit) { return edit.offsetAt({ 80, 60 }).value(); });
    row("rule for a new text",
        [](auto &edit) { return edit.layoutRule().limit + edit.layoutRule().tabStop; });
    row("measure", [](auto &edit) { return static_cast<LaidOutEdit &>(edit).fontMeasure()->xWidth(); });
    row("input method: cursor", [](auto &edit) { return inputMethodAnswer(edit, Qt::ImCursorRectangle); });
    row("input method: anchor", [](auto &edit) { return inputMethodAnswer(edit, Qt::ImAnchorRectangle); });
    row("accessible place", [](auto &edit) {
        return QAccessible::queryAccessibleInterface(&edit)->textInterface()->characterRect(900);
    });
    act("set the cursor", [](auto &edit) { edit.setCursorPosition(lastRow(edit) / 2, 4); });
    act("set the cursor to a given row", [](auto &edit) { edit.setCursorPosition(90, 4); });
    act("set the top row", [](auto &edit) { edit.setTopRow(RowIndex(150)); });
    act("set the vertical offset", [](auto &edit) { edit.setYOffset(1500); });
    act("set the horizontal offset", [](auto &edit) { edit.setXOffset(70); });
    act("scroll to the cursor", [](auto &edit) { edit.showPlace(edit.cursorPlace()); });
    act("scroll to a place", [](auto &edit) { edit.showPlace({ Offset(2000) }); });
    act("insert", [](auto &edit) { edit.insert(u"x\ty\nz"_s); });
    act("replace", [](auto &edit) { edit.replace({ Offset(900), Offset(1000) }, u"xyz"_s); });
    act("replace the row that is at a place now", [](auto &edit) { removeRow(edit, 60); });
    act("select everything", [](auto &edit) { edit.selectAll(); });
    act("select nothing", [](auto &edit) { edit.deselect(); });
    act("cut, and undo", [](auto &edit) {
        edit.cut();
        edit.undo();
    });
    act("move by rows", [](auto &edit) { DrawnText::press(edit, u"Down*3 Up End Shift+Home"_s); });
    act("move by a page", [](auto &edit) { DrawnText::press(edit, u"PgDown PgDown PgUp"_s); });
    act("type and erase", [](auto &edit) { DrawnText::press(edit, u"'abc' Backspace Return Del"_s); });
    act("press the mouse", [](auto &edit) {
        QTest::mouseClick(edit.viewport(), Qt::LeftButton, {}, { 60, 90 });
    });
    act("new text", [](auto &edit) { edit.setText(longText().first(2000)); });
    act("clear", [](auto &edit) { edit.clear(); });
    act("many edits at once", [](auto &edit) {
        const QMultiLineEdit::Batch batch(edit);
        for (int i = 0; i < 5; ++i)
            insertAt(edit, u"edit "_s, 20 * i, 0);
    });
    act("change again", [](auto &edit) { setFontSize(edit, 8); });
    act("resize", [](auto &edit) { edit.resize(300, 100); });
}

/// The one editor is asked after each change, the other only when all have been made.
void QMultiLineEditLayoutTest::hiddenEditorIsAsIfLaidOutAtOnce()
{
    QFETCH(Question, question);
    LaidOutEdit asked, unasked;
    prepare(asked);
    prepare(unasked);
    for (const Change &change : changes) {
        change(asked);
        asked.numLines();
        change(unasked);
    }
    const QVariant answer = question(unasked);
    QCOMPARE(answer, question(asked));
    QCOMPARE(stateOf(unasked), stateOf(asked));
    unasked.store().checkInvariants();
}

void QMultiLineEditLayoutTest::visibleEditorIsLaidOutOnceBeforeItIsPainted()
{
    LaidOutEdit edit;
    edit.viewLayout().setBarPolicy(Qt::ScrollBarAlwaysOff);
    prepare(edit);
    edit.show();
    QVERIFY(QTest::qWaitForWindowExposed(&edit));
    QTRY_VERIFY(edit.paints > 0);
    QCoreApplication::processEvents();
    edit.paints = 0;
    const qint64 rows = edit.numLines();
    const QSignalSpy moves(edit.verticalScrollBar(), &QScrollBar::valueChanged);
    for (const Change &change : changes)
        change(edit);
    QCOMPARE(moves.count(), 0);
    QTRY_VERIFY(edit.paints > 0);
    QCOMPARE(moves.count(), 1);
    QVERIFY(edit.rowsWhenPainted > 2 * rows);
    QCoreApplication::processEvents();
    QCOMPARE(edit.paints, 1);
    QCOMPARE(edit.numLines(), edit.rowsWhenPainted);
}

void QMultiLineEditLayoutTest::topTextStays_data()
{
    QTest::addColumn<bool>("isVisible");
    QTest::addColumn<int>("tabFrom");
    QTest::addColumn<int>("tabTo");
    for (const bool isVisible : { false, true }) {
        for (const auto &[from, to] : { std::pair(8, 2), { 2, 12 }, { 4, 5 } })
            QTest::addRow("%s, tab width %d to %d", isVisible ? "visible" : "hidden", from, to)
                << isVisible << from << to;
    }
}

/// In wrapped text a wider tab makes more rows of the lines above the view.
void QMultiLineEditLayoutTest::topTextStays()
{
    QFETCH(bool, isVisible);
    QFETCH(int, tabFrom);
    QFETCH(int, tabTo);
    QMultiLineEdit::setDefaultTabStop(tabFrom);
    LaidOutEdit edit;
    edit.resize(250, 200);
    wrapAt(edit, 20);
    edit.setText(longText());
    edit.setVisible(isVisible);
    edit.setCursorPosition({ rowOfLine(edit.store(), LineIndex(70)) + 2, 1 });
    edit.setTopRow(rowOfLine(edit.store(), LineIndex(70)) + 1);
    const TextStore::Row before = edit.store().row(edit.topRow());
    const RowIndex rowBefore = edit.topRow();
    const Offset cursor = edit.cursorOffset();
    QMultiLineEdit::setDefaultTabStop(tabTo);
    const TextStore::Row after = edit.store().row(edit.topRow());
    QVERIFY(after.start <= before.start && before.start < after.start + after.length);
    QVERIFY(edit.topRow() != rowBefore);
    QCOMPARE(edit.cursorOffset(), cursor);
}

/// The cursor stays out of sight when it was.
void QMultiLineEditLayoutTest::showingAgainScrollsNothing()
{
    LaidOutEdit edit;
    prepare(edit);
    edit.show();
    edit.setCursorPosition(70, 0);
    for (const RowIndex topRow : { RowIndex(69), RowIndex(10) }) {
        edit.setTopRow(topRow);
        edit.setXOffset(150);
        edit.hide();
        edit.show();
        QCOMPARE(edit.topRow(), topRow);
        QCOMPARE(edit.xOffset(), 150);
    }
}

void QMultiLineEditLayoutTest::theDocumentIsAskedWithoutLayingOut()
{
    LaidOutEdit edit;
    prepare(edit);
    edit.numLines();
    const LayoutRule before = edit.document().store().layoutRule();
    setFontSize(edit, 17);
    QCOMPARE(edit.document().store().layoutRule(), before);
    QVERIFY(edit.store().layoutRule() != before);
    QVERIFY(edit.document().store().layoutRule() != before);
}

/// Nobody but the editor keeps the widths its text is laid out by, once other fonts have been measured.
void QMultiLineEditLayoutTest::outlivesManyFonts()
{
    LaidOutEdit edit;
    wrapAt(edit, 80);
    edit.setText(longText());
    const QFont font = edit.font();
    for (int size = 5; size < 40; ++size) {
        setFontSize(edit, size);
        FontMeasure::forFont(edit.font(), 1);
    }
    edit.setFont(font);
    edit.setCursorPosition(50, 2);
    QCOMPARE(edit.cursorPosition().row, RowIndex(50));
    edit.store().checkInvariants();
}

/// It is moved in and edited meanwhile. All but some rows are those of before.
void QMultiLineEditLayoutTest::longTextKeepsItsRowsUntilOthersAreMeasured()
{
    LaidOutEdit edit;
    prepareLong(edit);
    const LayoutSpies spies(edit);
    const qint64 rows = edit.numLines();
    const Offset top = edit.store().row(edit.topRow()).start;
    setFontSize(edit, 17);
    const qint64 rowsAmid = edit.numLines();
    QVERIFY(rowsAmid > rows);
    QVERIFY(rowsAmid - rows < rows / 50);
    edit.insert(u"typed\n"_s);
    QTRY_COMPARE(spies.ended.count(), 1);
    QVERIFY(edit.numLines() > rowsAmid + rows / 50);
    const TextStore::Row shown = edit.store().row(edit.topRow());
    QVERIFY(shown.start <= top && top < shown.start + shown.length);
    TextStore::Builder builder(edit.layoutRule());
    builder.append(QStringView(edit.text()));
    QCOMPARE(edit.numLines(), builder.finish().rowCount());
}

void QMultiLineEditLayoutTest::longTextGetsTheLastLayoutThatWasWanted()
{
    LaidOutEdit edit, shortOne;
    prepareLong(edit);
    wrapAt(shortOne, 20);
    for (const int size : { 17, 11, 14 }) {
        setFontSize(edit, size);
        edit.numLines();
        QCoreApplication::processEvents();
    }
    setFontSize(shortOne, 14);
    QTRY_COMPARE(edit.layoutRule(), shortOne.layoutRule());
}

void QMultiLineEditLayoutTest::longTextKeepsItsRowsWhereNothingElseIsWanted()
{
    LaidOutEdit edit;
    prepareLong(edit);
    const LayoutRule before = edit.layoutRule();
    const QFont font = edit.font();
    setFontSize(edit, 17);
    edit.numLines();
    edit.setFont(font);
    QCOMPARE(edit.layoutRule(), before);
    QCoreApplication::processEvents();
    QCOMPARE(edit.layoutRule(), before);
    setFontSize(edit, 17);
    edit.setWordWrap(QMultiLineEdit::NoWrap);
    QTRY_COMPARE(edit.numLines(), edit.store().lineCount());
}

void QMultiLineEditLayoutTest::longTextIsGoneToTheEndOfMeanwhile()
{
    LaidOutEdit edit;
    prepareLong(edit);
    const LayoutSpies spies(edit);
    setFontSize(edit, 17);
    edit.numLines();
    QTest::keyClick(&edit, Qt::Key_End, Qt::ControlModifier);
    QCOMPARE(edit.cursorOffset(), edit.store().end());
    QVERIFY(edit.viewport()->rect().intersects(edit.cursorRect()));
    const Offset top = edit.store().row(edit.topRow()).start;
    QCOMPARE(spies.ended.count(), 0);
    QTRY_COMPARE(spies.ended.count(), 1);
    QCOMPARE(edit.cursorOffset(), edit.store().end());
    QCOMPARE(edit.store().rowColAt(top).row, edit.topRow());
}

/// Also while nobody hears of anything else.
void QMultiLineEditLayoutTest::longTextTellsHowFarItsLayoutIs()
{
    LaidOutEdit edit;
    prepareLong(edit);
    const LayoutSpies spies(edit);
    const qreal height = edit.rowHeight();
    edit.blockSignals(true);
    setFontSize(edit, 17);
    QCOMPARE(spies.begun.count(), 0);
    edit.numLines();
    QCOMPARE(spies.begun.count(), 1);
    QTRY_COMPARE(spies.ended.count(), 1);
    QVERIFY(edit.rowHeight() > height);
    int before = 0;
    for (const QVariantList &told : spies.progressed) {
        const int percent = told[0].toInt();
        QVERIFY(percent >= before && percent <= 100);
        before = percent;
    }
}

void QMultiLineEditLayoutTest::shortTextTellsNothing()
{
    LaidOutEdit edit;
    prepare(edit);
    edit.show();
    const LayoutSpies spies(edit);
    for (const Change &change : changes) {
        change(edit);
        edit.numLines();
    }
    edit.viewLayout().stop();
    QCOMPARE(spies.begun.count(), 0);
    QCOMPARE(spies.ended.count(), 0);
}

/// Edited, hidden and shown again.
void QMultiLineEditLayoutTest::stoppedLayoutKeepsTheRows()
{
    LaidOutEdit edit;
    prepareLong(edit);
    edit.show();
    const qreal height = edit.rowHeight();
    const LayoutRule before = edit.store().layoutRule();
    const LayoutSpies spies(edit);
    setFontSize(edit, 17);
    edit.numLines();
    edit.viewLayout().stop();
    QCOMPARE(spies.ended.count(), 1);
    edit.insert(u"typed\n"_s);
    edit.hide();
    edit.paints = 0;
    edit.show();
    QTRY_VERIFY(edit.paints > 0);
    QCoreApplication::processEvents();
    QCOMPARE(edit.store().layoutRule(), before);
    QCOMPARE(edit.rowHeight(), height);
    QCOMPARE(spies.begun.count(), 1);
    edit.store().checkInvariants();
}

void QMultiLineEditLayoutTest::stoppedLayoutIsBegunByTheNextChange_data()
{
    QTest::addColumn<Change>("change");
    QTest::newRow("another size") << Change([](QMultiLineEdit &edit) { setFontSize(edit, 16); });
    QTest::newRow("the size that it had, and again") << Change([](QMultiLineEdit &edit) {
        setFontSize(edit, 12);
        edit.numLines();
        setFontSize(edit, 17);
    });
    QTest::newRow("tab width") << Change([](QMultiLineEdit &) { QMultiLineEdit::setDefaultTabStop(3); });
    QTest::newRow("no wrap") << Change(
        [](QMultiLineEdit &edit) { edit.setWordWrap(QMultiLineEdit::NoWrap); });
    QTest::newRow("what it has, set again")
        << Change([](QMultiLineEdit &edit) { edit.setWordWrap(edit.wordWrap()); });
}

void QMultiLineEditLayoutTest::stoppedLayoutIsBegunByTheNextChange()
{
    QFETCH(Change, change);
    LaidOutEdit edit;
    setFontSize(edit, 12);
    prepareLong(edit);
    const qreal height = edit.rowHeight();
    const LayoutSpies spies(edit);
    setFontSize(edit, 17);
    edit.numLines();
    edit.viewLayout().stop();
    change(edit);
    edit.numLines();
    QCOMPARE(spies.begun.count(), 2);
    QTRY_COMPARE(spies.ended.count(), 2);
    QVERIFY(edit.rowHeight() > height);
    QCOMPARE(edit.store().layoutRule(), edit.layoutRule());
    edit.store().checkInvariants();
}

void QMultiLineEditLayoutTest::stoppedLayoutIsNoMoreThatOfAnotherText_data()
{
    QTest::addColumn<bool>("isStopped");
    QTest::newRow("stopped before") << true;
    QTest::newRow("in the middle") << false;
}

void QMultiLineEditLayoutTest::stoppedLayoutIsNoMoreThatOfAnotherText()
{
    QFETCH(bool, isStopped);
    LaidOutEdit edit;
    prepareLong(edit);
    const qreal height = edit.rowHeight();
    const LayoutSpies spies(edit);
    setFontSize(edit, 17);
    edit.numLines();
    if (isStopped)
        edit.viewLayout().stop();
    edit.setText(longText());
    QVERIFY(edit.rowHeight() > height);
    QTRY_COMPARE(spies.ended.count(), 1);
    edit.store().checkInvariants();
}

REGISTER_TEST(runWindowTest<QMultiLineEditLayoutTest>)
#include "qmultilineeditlayout_test.moc"
