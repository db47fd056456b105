#include "tests/testprogram.h"
#include "tests/widget/drawntext.h"
#include "tests/widget/keyboardasked.h"
#include "tests/widget/rows.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QElapsedTimer>
#include <QInputMethodEvent>
#include <QMenu>
#include <QScrollBar>
#include <QScroller>
#include <QStyleHints>

using namespace Qt::StringLiterals;

/// Selecting and scrolling with mouse and finger.
class QMultiLineEditPointerTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void clickPlacesTheCursor();
    void dragSelects();
    void shiftClickExtends();
    void doubleClickSelectsAWord_data();
    void doubleClickSelectsAWord();
    void doubleClickAndDragSelectsWords();
    void tripleClickSelectsALine_data();
    void tripleClickSelectsALine();
    void tripleClickAndDragSelectsLines();
    void lateThirdClickPlacesTheCursor();
    void clickInSelectedTextPlacesTheCursor();
    void otherButtonsKeepTheMarkedText();
    void draggingBeyondTheEdgeScrolls();
    void clickAtAWrappedRowsEndStaysOnIt();
    void tapPlacesTheCursor();
    void tapAsksForTheKeyboard();
    void tapEndsComposing();
    void fingerScrolls();
    void flickGoesOn();
    void twoFingersScroll();
    void twoFingersDoNotTap();
    void fingerHeldStillOpensTheMenu();

private:
    QPoint at(qint64 row, qint64 column) const;
    void drag(QPoint from, QPoint to);

    std::unique_ptr<QMultiLineEdit> m_edit;
    int m_flashTime = 0;
};

void QMultiLineEditPointerTest::init()
{
    m_flashTime = QApplication::cursorFlashTime();
    QApplication::setCursorFlashTime(0);
    QApplication::styleHints()->setMousePressAndHoldInterval(60);
    m_edit = std::make_unique<QMultiLineEdit>();
    m_edit->resize(300, 300);
    m_edit->show();
    QVERIFY(QTest::qWaitForWindowActive(m_edit.get()));
}

void QMultiLineEditPointerTest::cleanup()
{
    m_edit.reset();
    QApplication::setCursorFlashTime(m_flashTime);
}

/// A point on the left edge of a character.
QPoint QMultiLineEditPointerTest::at(qint64 row, qint64 column) const
{
    const QRectF cell = m_edit->cellRect(RowIndex(row));
    const auto x = m_edit->store().xAt({ RowIndex(row), column }) / subpixelsPerPixel;
    return { int(cell.x()) + m_edit->hMargin() + int(x), int(cell.center().y()) };
}

void QMultiLineEditPointerTest::drag(QPoint from, QPoint to)
{
    QWidget *const view = m_edit->viewport();
    QTest::mousePress(view, Qt::LeftButton, {}, from);
    QMouseEvent move(QEvent::MouseMove, QPointF(to), view->mapToGlobal(QPointF(to)), Qt::NoButton,
        Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view, &move);
    QTest::mouseRelease(view, Qt::LeftButton, {}, to);
}

void QMultiLineEditPointerTest::clickPlacesTheCursor()
{
    m_edit->setText(u"hello\nworld\n"_s);
    QTest::mouseClick(m_edit->viewport(), Qt::LeftButton, {}, at(1, 2));
    QCOMPARE(DrawnText::draw(*m_edit), u"hello\nwo|rld\n"_s);
    QTest::mouseClick(m_edit->viewport(), Qt::LeftButton, {}, at(0, 4) - QPoint(1, 0));
    QCOMPARE(DrawnText::draw(*m_edit), u"hell|o\nworld\n"_s);
    QTest::mouseClick(m_edit->viewport(), Qt::LeftButton, {}, QPoint(290, at(0, 0).y()));
    QCOMPARE(DrawnText::draw(*m_edit), u"hello|\nworld\n"_s);
    QTest::mouseClick(m_edit->viewport(), Qt::LeftButton, {}, QPoint(100, 290));
    QCOMPARE(DrawnText::draw(*m_edit), u"hello\nworld\n|"_s);
    QVERIFY(!hasTimers(*m_edit));
}

void QMultiLineEditPointerTest::dragSelects()
{
    m_edit->setText(u"hello\nworld"_s);
    drag(at(0, 1), at(1, 3));
    QCOMPARE(DrawnText::draw(*m_edit), u"h[ello\nwor|ld"_s);
    m_edit->deselect();
    drag(at(1, 3), at(0, 1));
    QCOMPARE(DrawnText::draw(*m_edit), u"h|ello\nwor]ld"_s);
    QTest::mouseMove(m_edit->viewport(), at(0, 4));
    QCOMPARE(DrawnText::draw(*m_edit), u"h|ello\nwor]ld"_s);
}

void QMultiLineEditPointerTest::shiftClickExtends()
{
    DrawnText::load(*m_edit, u"he|llo world"_s);
    QTest::mouseClick(m_edit->viewport(), Qt::LeftButton, Qt::ShiftModifier, at(0, 8));
    QCOMPARE(DrawnText::draw(*m_edit), u"he[llo wo|rld"_s);
    QTest::mouseClick(m_edit->viewport(), Qt::LeftButton, Qt::ShiftModifier, at(0, 4));
    QCOMPARE(DrawnText::draw(*m_edit), u"he[ll|o world"_s);
    QTest::mouseClick(m_edit->viewport(), Qt::LeftButton, Qt::ShiftModifier, at(0, 0));
    QCOMPARE(DrawnText::draw(*m_edit), u"|he]llo world"_s);
}

void QMultiLineEditPointerTest::doubleClickSelectsAWord_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("after");
    QTest::newRow("in a word") << 5 << u"one [two|, 漢字とkana"_s;
    QTest::newRow("at its first character") << 4 << u"one [two|, 漢字とkana"_s;
    QTest::newRow("blanks") << 3 << u"one[ |two, 漢字とkana"_s;
    QTest::newRow("punctuation") << 7 << u"one two[,| 漢字とkana"_s;
    QTest::newRow("kanji") << 9 << u"one two, [漢字|とkana"_s;
}

void QMultiLineEditPointerTest::doubleClickSelectsAWord()
{
    QFETCH(int, column);
    m_edit->setText(u"one two, 漢字とkana"_s);
    QTest::mouseDClick(m_edit->viewport(), Qt::LeftButton, {}, at(0, column));
    QTEST(DrawnText::draw(*m_edit), "after");
}

void QMultiLineEditPointerTest::doubleClickAndDragSelectsWords()
{
    m_edit->setText(u"one two three four"_s);
    QWidget *const view = m_edit->viewport();
    const auto dragTo = [view](QPoint to) {
        QMouseEvent move(QEvent::MouseMove, QPointF(to), view->mapToGlobal(QPointF(to)), Qt::NoButton,
            Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view, &move);
    };
    QMouseEvent second(QEvent::MouseButtonDblClick, at(0, 5), view->mapToGlobal(QPointF(at(0, 5))),
        Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view, &second);
    dragTo(at(0, 10));
    QCOMPARE(DrawnText::draw(*m_edit), u"one [two three| four"_s);
    dragTo(at(0, 1));
    QCOMPARE(DrawnText::draw(*m_edit), u"|one two] three four"_s);
    dragTo(at(0, 5));
    QCOMPARE(DrawnText::draw(*m_edit), u"one [two| three four"_s);
    QTest::mouseRelease(view, Qt::LeftButton, {}, at(0, 5));
}

void QMultiLineEditPointerTest::tripleClickSelectsALine_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("after");
    QTest::newRow("with its line end") << 0 << u"[one two\n|three\nfour"_s;
    QTest::newRow("middle") << 1 << u"one two\n[three\n|four"_s;
    QTest::newRow("last, without one") << 2 << u"one two\nthree\n[four|"_s;
}

void QMultiLineEditPointerTest::tripleClickSelectsALine()
{
    QFETCH(int, row);
    m_edit->setText(u"one two\nthree\nfour"_s);
    QTest::mouseDClick(m_edit->viewport(), Qt::LeftButton, {}, at(row, 2));
    QTest::mouseClick(m_edit->viewport(), Qt::LeftButton, {}, at(row, 2));
    QTEST(DrawnText::draw(*m_edit), "after");
}

void QMultiLineEditPointerTest::tripleClickAndDragSelectsLines()
{
    m_edit->setText(u"one\ntwo\nthree\nfour"_s);
    QTest::mouseDClick(m_edit->viewport(), Qt::LeftButton, {}, at(1, 1));
    drag(at(1, 1), at(2, 2));
    QCOMPARE(DrawnText::draw(*m_edit), u"one\n[two\nthree\n|four"_s);
}

void QMultiLineEditPointerTest::lateThirdClickPlacesTheCursor()
{
    m_edit->setText(u"one two\nthree"_s);
    QTest::mouseDClick(m_edit->viewport(), Qt::LeftButton, {}, at(0, 1));
    QTRY_VERIFY_WITH_TIMEOUT(!hasTimers(*m_edit), 10 * QApplication::doubleClickInterval());
    QTest::mouseClick(m_edit->viewport(), Qt::LeftButton, {}, at(0, 1));
    QCOMPARE(DrawnText::draw(*m_edit), u"o|ne two\nthree"_s);

    QTest::mouseDClick(m_edit->viewport(), Qt::LeftButton, {}, at(0, 1));
    QTest::mouseClick(m_edit->viewport(), Qt::LeftButton, {}, at(1, 3));
    QCOMPARE(DrawnText::draw(*m_edit), u"one two\nthr|ee"_s);
}

void QMultiLineEditPointerTest::clickInSelectedTextPlacesTheCursor()
{
    DrawnText::load(*m_edit, u"on[e two thr|ee"_s);
    QTest::mousePress(m_edit->viewport(), Qt::LeftButton, {}, at(0, 5));
    QCOMPARE(DrawnText::draw(*m_edit), u"on[e two thr|ee"_s);
    QTest::mouseRelease(m_edit->viewport(), Qt::LeftButton, {}, at(0, 5));
    QCOMPARE(DrawnText::draw(*m_edit), u"one t|wo three"_s);
}

void QMultiLineEditPointerTest::otherButtonsKeepTheMarkedText()
{
    DrawnText::load(*m_edit, u"on[e two thr|ee"_s);
    for (const Qt::MouseButton button : { Qt::RightButton, Qt::BackButton })
        QTest::mouseClick(m_edit->viewport(), button, {}, at(0, 1));
    QCOMPARE(DrawnText::draw(*m_edit), u"on[e two thr|ee"_s);
}

void QMultiLineEditPointerTest::draggingBeyondTheEdgeScrolls()
{
    m_edit->setText(
        u"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx\n"_s.repeated(100));
    QWidget *const view = m_edit->viewport();
    QTest::mousePress(view, Qt::LeftButton, {}, at(2, 2));
    const auto dragTo = [view](QPointF to) {
        QMouseEvent move(
            QEvent::MouseMove, to, view->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view, &move);
    };
    QVERIFY(!hasTimers(*m_edit));
    dragTo({ 50, 320 });
    QTRY_VERIFY(m_edit->topRow() > RowIndex(10));
    QVERIFY(m_edit->cursorPosition().row > RowIndex(12));
    dragTo({ 400, 100 });
    QTRY_VERIFY(m_edit->xOffset() > 100);
    const RowIndex top = m_edit->topRow();
    dragTo({ -30, -30 });
    QTRY_VERIFY(m_edit->topRow() < top);
    QTRY_COMPARE(m_edit->xOffset(), 0);
    dragTo({ 100, 100 });
    QVERIFY(!hasTimers(*m_edit));
    dragTo({ 50, 320 });
    QVERIFY(hasTimers(*m_edit));
    QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(50, 320));
    QVERIFY(!hasTimers(*m_edit));
    QCOMPARE(m_edit->anchorOffset(), m_edit->store().placeAt({ RowIndex(2), 2 }).offset);
}

void QMultiLineEditPointerTest::clickAtAWrappedRowsEndStaysOnIt()
{
    wrapAt(*m_edit, 4);
    m_edit->setText(u"xxxxxxxx"_s);
    QTest::mouseClick(m_edit->viewport(), Qt::LeftButton, {}, QPoint(250, at(0, 0).y()));
    QCOMPARE(m_edit->cursorPosition(), (RowCol{ RowIndex(0), 4 }));
    QTest::mouseClick(m_edit->viewport(), Qt::LeftButton, {}, at(1, 0));
    QCOMPARE(m_edit->cursorPosition(), (RowCol{ RowIndex(1), 0 }));
}

static QPointingDevice *touchScreen()
{
    static QPointingDevice *const device = QTest::createTouchDevice();
    return device;
}

void QMultiLineEditPointerTest::tapPlacesTheCursor()
{
    DrawnText::load(*m_edit, u"h[ello\nwor|ld"_s);
    QWidget *const view = m_edit->viewport();
    QTest::touchEvent(view, touchScreen()).press(0, at(0, 3), view);
    QTest::touchEvent(view, touchScreen()).release(0, at(0, 3), view);
    QCOMPARE(DrawnText::draw(*m_edit), u"hel|lo\nworld"_s);
    QVERIFY(m_edit->hasFocus());
    QVERIFY(!hasTimers(*m_edit));
}

void QMultiLineEditPointerTest::tapAsksForTheKeyboard()
{
    const KeyboardAsked keyboard;
    QWidget *const view = m_edit->viewport();
    const auto tap = [view] {
        QTest::touchEvent(view, touchScreen()).press(0, QPoint(20, 20), view);
        QTest::touchEvent(view, touchScreen()).release(0, QPoint(20, 20), view);
    };
    m_edit->setText(u"hello\n"_s.repeated(200));
    QTest::mouseClick(view, Qt::LeftButton, {}, QPoint(20, 20));
    QCOMPARE(keyboard.times, 0);
    tap();
    QCOMPARE(keyboard.times, 1);
    tap();
    QCOMPARE(keyboard.times, 2);
    QTest::touchEvent(view, touchScreen()).press(0, QPoint(20, 180), view);
    QTest::touchEvent(view, touchScreen()).move(0, QPoint(20, 20), view);
    QTest::touchEvent(view, touchScreen()).release(0, QPoint(20, 20), view);
    QCOMPARE(keyboard.times, 2);
}

void QMultiLineEditPointerTest::tapEndsComposing()
{
    DrawnText::load(*m_edit, u"ab|"_s);
    QInputMethodEvent composing(u"かな"_s, {});
    QCoreApplication::sendEvent(m_edit.get(), &composing);
    QWidget *const view = m_edit->viewport();
    QTest::touchEvent(view, touchScreen()).press(0, at(0, 0), view);
    QTest::touchEvent(view, touchScreen()).release(0, at(0, 0), view);
    QCOMPARE(DrawnText::draw(*m_edit), u"|abかな"_s);
}

void QMultiLineEditPointerTest::flickGoesOn()
{
    m_edit->setText(u"line\n"_s.repeated(2000));
    QWidget *const view = m_edit->viewport();
    QPoint finger(100, 280);
    QElapsedTimer clock;
    clock.start();
    QTest::touchEvent(view, touchScreen()).press(0, finger, view);
    while (finger.y() > 80) {
        finger.setY(280 - int(clock.elapsed()));
        QTest::touchEvent(view, touchScreen()).move(0, finger, view);
    }
    QTest::touchEvent(view, touchScreen()).release(0, finger, view);
    const RowIndex released = m_edit->topRow();
    QTRY_VERIFY(m_edit->topRow() > released + 3);
    QScroller::scroller(view)->stop();
}

void QMultiLineEditPointerTest::twoFingersScroll()
{
    m_edit->setText(u"line\n"_s.repeated(200));
    QWidget *const view = m_edit->viewport();
    QPoint left(100, 280);
    QPoint right(150, 270);
    QTest::touchEvent(view, touchScreen()).press(0, left, view);
    QTest::touchEvent(view, touchScreen()).move(0, left, view).press(1, right, view);
    for (int step = 0; step < 20; ++step) {
        left.ry() -= 10;
        right.ry() -= 10;
        QTest::touchEvent(view, touchScreen()).move(0, left, view).move(1, right, view);
    }
    QTRY_VERIFY(m_edit->topRow() > RowIndex(3));
    QTest::touchEvent(view, touchScreen()).release(0, left, view).move(1, right, view);
    QTRY_VERIFY(QScroller::scroller(view)->state() != QScroller::Dragging);
    QScroller::scroller(view)->stop();
    const RowIndex top = m_edit->topRow();
    right.ry() -= 100;
    QTest::touchEvent(view, touchScreen()).move(1, right, view);
    QTest::touchEvent(view, touchScreen()).release(1, right, view);
    QCOMPARE(m_edit->topRow(), top);
    QCOMPARE(m_edit->cursorOffset(), Offset(0));
    QVERIFY(!hasTimers(*m_edit));
}

void QMultiLineEditPointerTest::twoFingersDoNotTap()
{
    m_edit->setText(u"hello"_s);
    QWidget *const view = m_edit->viewport();
    QTest::touchEvent(view, touchScreen()).press(0, at(0, 3), view).press(1, at(0, 5), view);
    QTest::touchEvent(view, touchScreen()).release(0, at(0, 3), view).release(1, at(0, 5), view);
    QCOMPARE(m_edit->cursorOffset(), Offset(0));
    QVERIFY(!hasTimers(*m_edit));
}

void QMultiLineEditPointerTest::fingerScrolls()
{
    m_edit->setText(u"line\n"_s.repeated(200));
    QWidget *const view = m_edit->viewport();
    QPoint finger(100, 280);
    QTest::touchEvent(view, touchScreen()).press(0, finger, view);
    for (int step = 0; step < 20; ++step) {
        finger.ry() -= 10;
        QTest::touchEvent(view, touchScreen()).move(0, finger, view);
    }
    QTRY_VERIFY(m_edit->topRow() > RowIndex(3));
    QTest::touchEvent(view, touchScreen()).release(0, finger, view);
    QCOMPARE(m_edit->cursorOffset(), Offset(0));
    QVERIFY(!m_edit->hasMarkedText());
}

void QMultiLineEditPointerTest::fingerHeldStillOpensTheMenu()
{
    DrawnText::load(*m_edit, u"h[ello\nwor|ld"_s);
    QWidget *const view = m_edit->viewport();
    QTest::touchEvent(view, touchScreen()).press(0, at(0, 3), view);
    QTRY_VERIFY(!hasTimers(*m_edit)); // that of the long press
    QTest::touchEvent(view, touchScreen()).release(0, at(0, 3), view);
    QVERIFY(qobject_cast<QMenu *>(QApplication::activePopupWidget()));
    QApplication::activePopupWidget()->close();
    QCOMPARE(DrawnText::draw(*m_edit), u"h[ello\nwor|ld"_s);
}

REGISTER_TEST(runWindowTest<QMultiLineEditPointerTest>)
#include "qmultilineeditpointer_test.moc"
