#include "widget/viewlayout.h"

#include "tests/testprogram.h"
#include "tests/widget/drawntext.h"
#include "tests/widget/heldlayout.h"
#include "tests/widget/rows.h"
#include "text/textlayout.h"

#include <QScrollBar>
#include <QSignalSpy>
#include <QWheelEvent>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// Lines of every length, with tabs, many of which wrap, at its start, in its middle and at its end; and
/// between them so many others that measuring all takes turns.
const QString &textOfAllLines()
{
    static const QString text = [] {
        QString some;
        for (int line = 0; line < 120; ++line)
            some += u"ab\tcde 漢字\tghijklmnop "_s.repeated(line % 9) + QString::number(line) + u'\n';
        const QString others = (u"0123456789"_s.repeated(11) + u'\n').repeated(19'000);
        return some + others + some.repeated(4) + others + some;
    }();
    return text;
}

class LongEdit : public QMultiLineEdit {
public:
    LongEdit()
    {
        resize(250, 200);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        viewLayout().setBarPolicy(Qt::ScrollBarAlwaysOff);
    }
    /// Painted.
    QImage shown() { return viewport()->grab().toImage(); }
    Offset topOffset() const { return store().row(topRow()).start; }
    void wheel(int turned)
    {
        const QPointF middle = viewport()->rect().center();
        QWheelEvent event(middle, viewport()->mapToGlobal(middle), QPoint(), QPoint(0, turned), Qt::NoButton,
            Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(viewport(), &event);
    }
};

using LayoutAction = std::function<void(LongEdit &)>;

void useFontSize(QMultiLineEdit &edit, int size)
{
    QFont font = edit.font();
    font.setPointSize(size);
    edit.setFont(font);
}

void useFewerColumns(LongEdit &edit)
{
    wrapAt(edit, 20);
    useFontSize(edit, 10);
}

void wrapWithoutBar(LongEdit &edit)
{
    wrapAt(edit, 20);
    edit.viewLayout().setBarPolicy(Qt::ScrollBarAlwaysOff);
}

void doNotWrap(LongEdit &edit)
{
    edit.setWordWrap(QMultiLineEdit::NoWrap);
    edit.viewLayout().setBarPolicy(Qt::ScrollBarAsNeeded);
}

/// The same text, with the same text at the top and the same selection.
void showAs(LongEdit &edit, Offset top, CursorPlace anchor, CursorPlace cursor)
{
    edit.select(anchor, cursor);
    edit.setTopRow(edit.store().rowColAt(top).row);
}

/// The start of a line that may be in the middle of the text, or near its start or end.
Offset lineStartNear(const LongEdit &edit, Offset offset)
{
    return edit.store().lineStart(edit.store().lineAt(offset));
}

const Offset middleOfText(textOfAllLines().size() / 2);

void prepareAt(LongEdit &edit, Offset place)
{
    edit.setText(textOfAllLines());
    const LineIndex line = edit.store().lineAt(place);
    const Offset top = edit.store().lineStart(line);
    showAs(edit, top, { top + 9 }, { edit.store().lineStart(line + 2) });
}

LayoutRule ruleInView(const LongEdit &edit, qreal y)
{
    const Offset place = edit.offsetAt({ 5, int(y) });
    return edit.store().layoutAt(place).rule();
}

} // namespace

/// What is seen of a long text while it is laid out anew: what is in view is laid out first.
class ViewLayoutTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void showsWhatIsInViewFirst_data();
    void showsWhatIsInViewFirst();
    void keysActOnWhatIsShown_data();
    void keysActOnWhatIsShown();
    void pointersActOnWhatIsShown_data();
    void pointersActOnWhatIsShown();
    void barLeadsToRowsOfTheNewLayout_data();
    void barLeadsToRowsOfTheNewLayout();
    void everyStepOfTheFontIsShown();
    void farPlaceIsShown();
    void sideStays();
    void stopShowsWhatWasThere_data();
    void stopShowsWhatWasThere();
    void settingItAgainBeginsWhatWasStopped();
    void barGoesWithTheRowsThatAreShown();
    void barReachesTheRowsInView();
    void largerViewIsFilled();
    void tooLongLineIsShownAsItWas();
    void newTextsComeByTheRuleOfTheText();
};

void ViewLayoutTest::init()
{
    QMultiLineEdit::setDefaultTabStop(8);
}

void ViewLayoutTest::showsWhatIsInViewFirst_data()
{
    QTest::addColumn<LayoutAction>("before");
    QTest::addColumn<LayoutAction>("change");
    QTest::addColumn<qint64>("place");
    const auto row = [](const char *name, const LayoutAction &before, const LayoutAction &change,
                         qint64 place = middleOfText.value()) {
        QTest::newRow(name) << before << change << place;
    };
    const LayoutAction unwrapped = [](LongEdit &edit) { edit.setWordWrap(QMultiLineEdit::NoWrap); };
    const LayoutAction larger = [](LongEdit &edit) { useFontSize(edit, 17); };
    row("larger font", useFewerColumns, larger);
    row("larger font, not wrapped", unwrapped, larger);
    row("larger font, start of the text", useFewerColumns, larger, 0);
    row("larger font, end of the text", useFewerColumns, larger, textOfAllLines().size() - 900);
    row("smaller font", useFewerColumns, [](LongEdit &edit) { useFontSize(edit, 6); });
    row("tab width", useFewerColumns, [](LongEdit &) { QMultiLineEdit::setDefaultTabStop(3); });
    row("tab width, not wrapped", unwrapped, [](LongEdit &) { QMultiLineEdit::setDefaultTabStop(3); });
    row("narrower rows", useFewerColumns, [](LongEdit &edit) { wrapAt(edit, 9); });
    row("wider rows", useFewerColumns, [](LongEdit &edit) { wrapAt(edit, 33); });
    row("wrap", unwrapped, useFewerColumns);
    row("no wrap", useFewerColumns, unwrapped);
}

/// The end changes nothing of it.
void ViewLayoutTest::showsWhatIsInViewFirst()
{
    QFETCH(LayoutAction, before);
    QFETCH(LayoutAction, change);
    QFETCH(qint64, place);
    LongEdit edit, laidOut;
    before(edit);
    prepareAt(edit, Offset(place));
    const QImage old = edit.shown();
    const QSignalSpy ended(&edit.viewLayout(), &ViewLayout::ended);
    std::optional<HeldLayout> held(std::in_place);
    change(edit);
    const QImage amid = edit.shown();
    QVERIFY(amid != old);
    QVERIFY(edit.store().linesAhead());
    before(laidOut);
    change(laidOut);
    laidOut.setText(textOfAllLines());
    showAs(laidOut, edit.topOffset(), edit.anchorPlace(), edit.cursorPlace());
    QCOMPARE(amid, laidOut.shown());
    held.reset();
    QTRY_COMPARE(ended.count(), 1);
    QVERIFY(!edit.store().linesAhead());
    QCOMPARE(edit.shown(), amid);
    QCOMPARE(edit.topRow(), laidOut.topRow());
    QCOMPARE(edit.cursorPosition(), laidOut.cursorPosition());
}

void ViewLayoutTest::keysActOnWhatIsShown_data()
{
    QTest::addColumn<QString>("keys");
    for (const QString &keys : { u"Down*30"_s, u"PgDown*6"_s, u"PgUp*6 Up*9"_s, u"Ctrl+End PgUp*3"_s,
             u"Ctrl+Home PgDown*3"_s, u"End Home Right*9 Up*3"_s, u"'abc' Return*3 Backspace*2 'x'"_s,
             u"Shift+PgDown*5 Del"_s, u"Shift+PgUp*8 Backspace 'x'"_s, u"Ctrl+Shift+End Del PgUp*2"_s,
             u"Ctrl+A Del 'abc'"_s, u"Ctrl+A Del Ctrl+Z PgUp*2"_s, u"Left Shift+Down Del Ctrl+Z PgDown"_s })
        QTest::newRow(qPrintable(keys)) << keys;
}

/// Whether it was painted meanwhile or not.
void ViewLayoutTest::keysActOnWhatIsShown()
{
    QFETCH(QString, keys);
    LongEdit edit, laidOut;
    useFewerColumns(edit);
    prepareAt(edit, middleOfText);
    useFewerColumns(laidOut);
    useFontSize(laidOut, 17);
    laidOut.setText(textOfAllLines());
    const QSignalSpy ended(&edit.viewLayout(), &ViewLayout::ended);
    std::optional<HeldLayout> held(std::in_place);
    useFontSize(edit, 17);
    edit.numLines();
    showAs(laidOut, edit.topOffset(), edit.anchorPlace(), edit.cursorPlace());
    for (LongEdit *const one : { &edit, &laidOut })
        DrawnText::press(*one, keys);
    QCOMPARE(edit.cursorOffset(), laidOut.cursorOffset());
    QCOMPARE(edit.anchorOffset(), laidOut.anchorOffset());
    const QImage amid = edit.shown();
    QCOMPARE(amid, laidOut.shown());
    edit.store().checkInvariants();
    held.reset();
    QTRY_COMPARE(ended.count(), 1);
    QCOMPARE(edit.text(), laidOut.text());
    QCOMPARE(edit.shown(), amid);
    edit.store().checkInvariants();
}

void ViewLayoutTest::pointersActOnWhatIsShown_data()
{
    QTest::addColumn<LayoutAction>("action");
    const auto row = [](const char *name, const LayoutAction &action) { QTest::newRow(name) << action; };
    row("click", [](LongEdit &edit) {
        QTest::mouseClick(edit.viewport(), Qt::LeftButton, {}, { 120, 150 });
    });
    row("double click", [](LongEdit &edit) {
        QTest::mouseDClick(edit.viewport(), Qt::LeftButton, {}, { 40, 90 });
    });
    row("drag", [](LongEdit &edit) {
        QTest::mousePress(edit.viewport(), Qt::LeftButton, {}, { 40, 30 });
        QTest::mouseMove(edit.viewport(), { 130, 170 });
        QTest::mouseRelease(edit.viewport(), Qt::LeftButton, {}, { 130, 170 });
    });
    row("wheel", [](LongEdit &edit) {
        for (int turn = 0; turn < 20; ++turn)
            edit.wheel(-120);
        QTest::mouseClick(edit.viewport(), Qt::LeftButton, {}, { 120, 150 });
    });
}

void ViewLayoutTest::pointersActOnWhatIsShown()
{
    QFETCH(LayoutAction, action);
    LongEdit edit, laidOut;
    useFewerColumns(edit);
    prepareAt(edit, middleOfText);
    useFewerColumns(laidOut);
    useFontSize(laidOut, 17);
    laidOut.setText(textOfAllLines());
    const HeldLayout held;
    useFontSize(edit, 17);
    edit.numLines();
    showAs(laidOut, edit.topOffset(), edit.anchorPlace(), edit.cursorPlace());
    for (LongEdit *const one : { &edit, &laidOut })
        action(*one);
    QCOMPARE(edit.cursorOffset(), laidOut.cursorOffset());
    QCOMPARE(edit.anchorOffset(), laidOut.anchorOffset());
    QCOMPARE(edit.shown(), laidOut.shown());
}

void ViewLayoutTest::barLeadsToRowsOfTheNewLayout_data()
{
    QTest::addColumn<LayoutAction>("before");
    QTest::newRow("wrapped") << LayoutAction(useFewerColumns);
    QTest::newRow("not wrapped") << LayoutAction(
        [](LongEdit &edit) { edit.setWordWrap(QMultiLineEdit::NoWrap); });
}

void ViewLayoutTest::barLeadsToRowsOfTheNewLayout()
{
    QFETCH(LayoutAction, before);
    LongEdit edit, laidOut;
    before(edit);
    prepareAt(edit, {});
    before(laidOut);
    useFontSize(laidOut, 17);
    laidOut.setText(textOfAllLines());
    const HeldLayout held;
    useFontSize(edit, 17);
    edit.numLines();
    QScrollBar &bar = *edit.verticalScrollBar();
    for (const int part : { 3, 2, 1, 5, 1000, 4 }) {
        bar.setValue(bar.maximum() / part);
        const QImage amid = edit.shown();
        showAs(laidOut, edit.topOffset(), edit.anchorPlace(), edit.cursorPlace());
        QCOMPARE(amid, laidOut.shown());
        QVERIFY(qAbs(bar.value() - bar.maximum() / part) < bar.maximum() / 100);
    }
}

void ViewLayoutTest::everyStepOfTheFontIsShown()
{
    LongEdit edit, laidOut;
    edit.setWordWrap(QMultiLineEdit::NoWrap);
    laidOut.setWordWrap(QMultiLineEdit::NoWrap);
    prepareAt(edit, middleOfText);
    laidOut.setText(textOfAllLines());
    const HeldLayout held;
    for (const int size : { 12, 13, 14, 17, 9, 6 }) {
        useFontSize(edit, size);
        const QImage amid = edit.shown();
        useFontSize(laidOut, size);
        laidOut.setText(textOfAllLines());
        showAs(laidOut, edit.topOffset(), edit.anchorPlace(), edit.cursorPlace());
        QCOMPARE(edit.topOffset(), lineStartNear(edit, middleOfText));
        QCOMPARE(amid, laidOut.shown());
    }
}

/// As a search does it, which keeps the cursor in view.
void ViewLayoutTest::farPlaceIsShown()
{
    LongEdit edit;
    useFewerColumns(edit);
    prepareAt(edit, {});
    const HeldLayout held;
    useFontSize(edit, 17);
    edit.shown();
    const LayoutRule wanted = ruleInView(edit, 1);
    QVERIFY(wanted != edit.layoutRule());
    for (const qint64 place : { 1'000'000, 3'000'000, 3'001'000, 10 }) {
        edit.setCursorPlace({ Offset(place) });
        edit.shown();
        QCOMPARE(edit.cursorOffset(), Offset(place));
        QVERIFY(edit.viewport()->rect().contains(edit.cursorRect()));
        for (qreal y = 1; y < edit.viewport()->height(); y += edit.rowHeight())
            QCOMPARE(ruleInView(edit, y), wanted);
    }
}

/// Of a view that has gone away from its cursor, though not from its row.
void ViewLayoutTest::sideStays()
{
    LongEdit edit;
    edit.setWordWrap(QMultiLineEdit::NoWrap);
    prepareAt(edit, middleOfText);
    const QSignalSpy ended(&edit.viewLayout(), &ViewLayout::ended);
    std::optional<HeldLayout> held(std::in_place);
    useFontSize(edit, 17);
    edit.shown();
    edit.setXOffset(70);
    edit.setTopRow(edit.topRow() + 2000);
    edit.shown();
    QCOMPARE(edit.xOffset(), 70);
    for (int row = 0; row < 40; ++row) {
        edit.setCursorPlace({ edit.topOffset() });
        edit.setXOffset(70);
        edit.setTopRow(edit.topRow() - 1);
        edit.shown();
        QCOMPARE(edit.xOffset(), 70);
    }
    held.reset();
    QTRY_COMPARE(ended.count(), 1);
    QCOMPARE(edit.xOffset(), 70);
}

void ViewLayoutTest::stopShowsWhatWasThere_data()
{
    QTest::addColumn<LayoutAction>("before");
    QTest::addColumn<LayoutAction>("change");
    const LayoutAction larger = [](LongEdit &edit) { useFontSize(edit, 17); };
    QTest::newRow("font") << LayoutAction(doNotWrap) << larger;
    QTest::newRow("font, wrapped") << LayoutAction(wrapWithoutBar) << larger;
    QTest::newRow("wrap") << LayoutAction(doNotWrap) << LayoutAction(wrapWithoutBar);
    QTest::newRow("no wrap") << LayoutAction(wrapWithoutBar) << LayoutAction(doNotWrap);
}

void ViewLayoutTest::stopShowsWhatWasThere()
{
    QFETCH(LayoutAction, before);
    QFETCH(LayoutAction, change);
    LongEdit edit;
    before(edit);
    prepareAt(edit, middleOfText);
    edit.show();
    const QImage old = edit.shown();
    const Qt::ScrollBarPolicy oldPolicy = edit.horizontalScrollBarPolicy();
    const bool hadBar = edit.horizontalScrollBar()->isVisible();
    QCOMPARE(hadBar, edit.wordWrap() == QMultiLineEdit::NoWrap);
    const HeldLayout held;
    change(edit);
    QVERIFY(edit.shown() != old);
    QCOMPARE(edit.horizontalScrollBar()->isVisible(), edit.wordWrap() == QMultiLineEdit::NoWrap);
    edit.viewLayout().stop();
    QCOMPARE(edit.horizontalScrollBar()->isVisible(), hadBar);
    QCOMPARE(edit.horizontalScrollBarPolicy(), oldPolicy);
    QVERIFY(!edit.store().linesAhead());
    QCOMPARE(edit.shown(), old);
    DrawnText::press(edit, u"PgDown PgUp"_s);
    QVERIFY(!edit.store().linesAhead());
    QCOMPARE(edit.topOffset(), lineStartNear(edit, middleOfText));
}

/// Which neither a paint nor a view that is shown again does.
void ViewLayoutTest::settingItAgainBeginsWhatWasStopped()
{
    LongEdit edit;
    doNotWrap(edit);
    prepareAt(edit, middleOfText);
    edit.show();
    const QSignalSpy ended(&edit.viewLayout(), &ViewLayout::ended);
    std::optional<HeldLayout> held(std::in_place);
    wrapWithoutBar(edit);
    edit.shown();
    edit.viewLayout().stop();
    edit.hide();
    edit.show();
    edit.shown();
    QVERIFY(!edit.store().linesAhead());
    QCOMPARE(edit.horizontalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    wrapWithoutBar(edit);
    edit.shown();
    QVERIFY(edit.store().linesAhead());
    QCOMPARE(edit.horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    held.reset();
    QTRY_COMPARE(ended.count(), 2);
    QVERIFY(edit.store().layoutRule().limit > 0);
    QCOMPARE(edit.horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
}

/// Where the view comes to a line that is too long to be laid out ahead, these are not wrapped yet.
void ViewLayoutTest::barGoesWithTheRowsThatAreShown()
{
    LongEdit edit;
    doNotWrap(edit);
    edit.setText(
        u"line\n"_s.repeated(200) + QString(TextStore::mostAhead + 1, u'x') + u"\nline"_s.repeated(200));
    const Offset longLine(1000);
    edit.show();
    const QSignalSpy ended(&edit.viewLayout(), &ViewLayout::ended);
    std::optional<HeldLayout> held(std::in_place);
    wrapWithoutBar(edit);
    for (int time = 0; time < 2; ++time) {
        edit.setTopRow({});
        edit.shown();
        QCOMPARE(edit.horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
        edit.setTopRow(edit.store().rowColAt(longLine).row);
        edit.shown();
        QCOMPARE(edit.horizontalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
        QVERIFY(edit.horizontalScrollBar()->isVisible());
    }
    held.reset();
    QTRY_COMPARE(ended.count(), 1);
    QCOMPARE(edit.horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
}

/// In full, while all others are not measured yet.
void ViewLayoutTest::barReachesTheRowsInView()
{
    LongEdit edit;
    wrapWithoutBar(edit);
    prepareAt(edit, {});
    edit.show();
    QCOMPARE(edit.horizontalScrollBar()->maximum(), 0);
    const HeldLayout held;
    doNotWrap(edit);
    edit.shown();
    qint64 widest = 0;
    for (RowIndex row; row < RowIndex(10); row = row + 1) {
        const Offset end = edit.store().row(row).end();
        widest = qMax(widest, qint64(edit.characterRect(end).right()) + edit.xOffset());
    }
    QVERIFY(widest > 2 * edit.viewport()->width());
    QVERIFY(edit.horizontalScrollBar()->maximum() + edit.viewport()->width() >= widest);
}

void ViewLayoutTest::largerViewIsFilled()
{
    LongEdit edit, laidOut;
    useFewerColumns(edit);
    prepareAt(edit, middleOfText);
    useFewerColumns(laidOut);
    useFontSize(laidOut, 8);
    laidOut.setText(textOfAllLines());
    const HeldLayout held;
    useFontSize(edit, 8);
    edit.shown();
    for (LongEdit *const one : { &edit, &laidOut })
        one->resize(400, 1400);
    const QImage amid = edit.shown();
    showAs(laidOut, edit.topOffset(), edit.anchorPlace(), edit.cursorPlace());
    QCOMPARE(amid, laidOut.shown());
}

/// For as long as it is in view.
void ViewLayoutTest::tooLongLineIsShownAsItWas()
{
    LongEdit edit;
    wrapAt(edit, 20);
    edit.setText(
        u"line\n"_s.repeated(200) + QString(TextStore::mostAhead + 1, u'x') + u"\nline"_s.repeated(200));
    const Offset longLine(1000);
    const Offset behind = longLine + TextStore::mostAhead + 100;
    const qreal old = edit.rowHeight();
    const QSignalSpy ended(&edit.viewLayout(), &ViewLayout::ended);
    std::optional<HeldLayout> held(std::in_place);
    useFontSize(edit, 17);
    edit.shown();
    const qreal wanted = edit.rowHeight();
    QVERIFY(wanted > old);
    const std::pair<Offset, qreal> places[] = { { longLine + 2'000'000, old }, { behind, wanted },
        { longLine + 9, old }, { {}, wanted } };
    for (const auto &[place, height] : places) {
        edit.setTopRow(edit.store().rowColAt(place).row);
        edit.setCursorPlace({ place });
        edit.shown();
        QCOMPARE(edit.rowHeight(), height);
        edit.insert(u"y"_s);
        QVERIFY(edit.viewport()->rect().contains(edit.cursorRect()));
        edit.store().checkInvariants();
    }
    held.reset();
    QTRY_COMPARE(ended.count(), 1);
    QCOMPARE(edit.rowHeight(), wanted);
}

/// They are laid out with it then.
void ViewLayoutTest::newTextsComeByTheRuleOfTheText()
{
    LongEdit edit;
    prepareAt(edit, middleOfText);
    const LayoutRule old = edit.layoutRule();
    std::optional<HeldLayout> held(std::in_place);
    useFontSize(edit, 17);
    edit.shown();
    QCOMPARE(edit.layoutRule(), old);
    QCOMPARE(edit.store().layoutRule(), old);
    held.reset();
    QTRY_VERIFY(edit.layoutRule() != old);
    QCOMPARE(edit.store().layoutRule(), edit.layoutRule());
}

REGISTER_TEST(runWindowTest<ViewLayoutTest>)
#include "viewlayout_test.moc"
