#include "tests/testprogram.h"
#include "tests/widget/drawntext.h"
#include "tests/widget/keyboardasked.h"
#include "tests/widget/rows.h"
#include "tests/widget/twofields.h"

#include <QApplication>
#include <QMenu>
#include <QPointingDevice>
#include <QStyleHints>
#include <QTimer>

#include <functional>

#include <qpa/qwindowsysteminterface.h>
#include <qpa/qwindowsysteminterface_p.h>

using namespace Qt::StringLiterals;

/// Selecting, dragging and asking for the menu with a pen, whose events come in where the system's do.
class QMultiLineEditPenTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    void tapPlacesTheCursor();
    void tapTakesTheFocus();
    void tapAsksForTheKeyboard();
    void dragSelects();
    void dragBackwardsSelects();
    void shiftTapExtends();
    void tapsAtOnePlaceSelectMore();
    void doubleTapAndDragSelectsWords();
    void tapsThatAreNoDoubleTap_data();
    void tapsThatAreNoDoubleTap();
    void tapEndsComposing();
    void hoveringChangesNothing();
    void otherButtonsAreLeftToTheMouse();
    void heldStillOpensTheMenu();
    void movingOpensNoMenu();
    void tapBesideAMenuClosesIt();
    void dragsMarkedText();

private:
    QPoint at(qint64 row, qint64 column) const;
    void pen(QPoint point, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void tap(QPoint point, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void drag(QPoint from, QPoint to);

    std::unique_ptr<TwoFields> m_window;
    QMultiLineEdit *m_edit = nullptr;
    int m_flashTime = 0;
};

void QMultiLineEditPenTest::initTestCase()
{
    m_flashTime = QApplication::cursorFlashTime();
    QApplication::setCursorFlashTime(0);
    QApplication::styleHints()->setMousePressAndHoldInterval(60);
    // As on X11 and Wayland: what nobody takes comes again as the mouse's.
    QWindowSystemInterfacePrivate::TabletEvent::setPlatformSynthesizesMouse(false);
}

void QMultiLineEditPenTest::cleanupTestCase()
{
    QApplication::setCursorFlashTime(m_flashTime);
}

void QMultiLineEditPenTest::init()
{
    m_window = std::make_unique<TwoFields>();
    m_edit = m_window->edit;
    QVERIFY(m_window->open());
}

void QMultiLineEditPenTest::cleanup()
{
    m_window.reset();
}

/// A point of the window: the left edge of a character.
QPoint QMultiLineEditPenTest::at(qint64 row, qint64 column) const
{
    const QRectF cell = m_edit->cellRect(RowIndex(row));
    const auto x = m_edit->store().xAt({ RowIndex(row), column }) / subpixelsPerPixel;
    const QPoint inView(int(cell.x()) + m_edit->hMargin() + int(x), int(cell.center().y()));
    return m_edit->viewport()->mapTo(m_window.get(), inView);
}

/// Moves, presses and releases are told by which buttons are down.
void QMultiLineEditPenTest::pen(QPoint point, Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers)
{
    static const QPointingDevice device(u"pen"_s, 7, QInputDevice::DeviceType::Stylus,
        QPointingDevice::PointerType::Pen, QInputDevice::Capability::Position, 1, 3);
    static ulong time = 0;
    QWindowSystemInterface::handleTabletEvent(m_window->windowHandle(), ++time, &device, QPointF(point),
        m_window->mapToGlobal(QPointF(point)), buttons, 0.5, 0, 0, 0, 0, 0, modifiers);
    QWindowSystemInterface::sendWindowSystemEvents(QEventLoop::AllEvents);
}

void QMultiLineEditPenTest::tap(QPoint point, Qt::KeyboardModifiers modifiers)
{
    pen(point, Qt::LeftButton, modifiers);
    pen(point, Qt::NoButton, modifiers);
}

void QMultiLineEditPenTest::drag(QPoint from, QPoint to)
{
    pen(from, Qt::LeftButton);
    pen(to, Qt::LeftButton);
    pen(to, Qt::NoButton);
}

void QMultiLineEditPenTest::tapPlacesTheCursor()
{
    DrawnText::load(*m_edit, u"h[ello\nwor|ld"_s);
    tap(at(0, 3));
    QCOMPARE(DrawnText::draw(*m_edit), u"hel|lo\nworld"_s);
    tap(at(1, 1));
    QCOMPARE(DrawnText::draw(*m_edit), u"hello\nw|orld"_s);
}

void QMultiLineEditPenTest::tapTakesTheFocus()
{
    m_edit->setText(u"hello"_s);
    m_window->other->setFocus();
    tap(at(0, 3));
    QVERIFY(m_edit->hasFocus());
}

void QMultiLineEditPenTest::tapAsksForTheKeyboard()
{
    const KeyboardAsked keyboard;
    m_edit->setText(u"hello\nworld"_s);
    tap(at(0, 3));
    QCOMPARE(keyboard.times, 1);
    tap(at(1, 3));
    QCOMPARE(keyboard.times, 2);
    drag(at(0, 1), at(1, 3));
    QCOMPARE(keyboard.times, 2);
}

void QMultiLineEditPenTest::dragSelects()
{
    m_edit->setText(u"hello\nworld"_s);
    pen(at(0, 1), Qt::LeftButton);
    QCOMPARE(DrawnText::draw(*m_edit), u"h|ello\nworld"_s);
    pen(at(1, 3), Qt::LeftButton);
    pen(at(1, 3), Qt::NoButton);
    QCOMPARE(DrawnText::draw(*m_edit), u"h[ello\nwor|ld"_s);
    pen(at(0, 4), Qt::NoButton);
    QCOMPARE(DrawnText::draw(*m_edit), u"h[ello\nwor|ld"_s);
}

void QMultiLineEditPenTest::dragBackwardsSelects()
{
    m_edit->setText(u"hello\nworld"_s);
    drag(at(1, 3), at(0, 1));
    QCOMPARE(DrawnText::draw(*m_edit), u"h|ello\nwor]ld"_s);
}

void QMultiLineEditPenTest::shiftTapExtends()
{
    DrawnText::load(*m_edit, u"h|ello\nworld"_s);
    tap(at(1, 3), Qt::ShiftModifier);
    QCOMPARE(DrawnText::draw(*m_edit), u"h[ello\nwor|ld"_s);
}

/// As clicks of the mouse do.
void QMultiLineEditPenTest::tapsAtOnePlaceSelectMore()
{
    DrawnText::load(*m_edit, u"one two three\nfour|"_s);
    const QPoint place = at(0, 5);
    const QString drawings[] = { u"one t|wo three\nfour"_s, u"one [two| three\nfour"_s,
        u"[one two three\n|four"_s, u"one t|wo three\nfour"_s };
    for (const QString &drawing : drawings) {
        tap(place + QPoint(1, 1));
        QCOMPARE(DrawnText::draw(*m_edit), drawing);
    }
}

void QMultiLineEditPenTest::doubleTapAndDragSelectsWords()
{
    DrawnText::load(*m_edit, u"one two three four|"_s);
    tap(at(0, 5));
    drag(at(0, 5), at(0, 10));
    QCOMPARE(DrawnText::draw(*m_edit), u"one [two three| four"_s);
}

void QMultiLineEditPenTest::tapsThatAreNoDoubleTap_data()
{
    using Step = std::function<void(QMultiLineEditPenTest & test)>;
    QTest::addColumn<Step>("first");
    const auto row = [](const char *name, const Step &first) { QTest::addRow("%s", name) << first; };
    row("one elsewhere before", [](auto &test) { test.tap(test.at(0, 9)); });
    row("one long before", [](auto &test) {
        test.tap(test.at(0, 5));
        QTRY_VERIFY(!hasTimers(*test.m_edit));
    });
    row("a drag back to the place before", [](auto &test) {
        test.pen(test.at(0, 5), Qt::LeftButton);
        test.pen(test.at(0, 9), Qt::LeftButton);
        test.pen(test.at(0, 5), Qt::LeftButton);
        test.pen(test.at(0, 5), Qt::NoButton);
    });
    row("the menu before", [](auto &test) {
        test.pen(test.at(0, 5), Qt::LeftButton);
        QTRY_VERIFY(QApplication::activePopupWidget());
        QApplication::activePopupWidget()->close();
        test.pen(test.at(0, 5), Qt::NoButton);
    });
}

void QMultiLineEditPenTest::tapsThatAreNoDoubleTap()
{
    QFETCH(const std::function<void(QMultiLineEditPenTest &)>, first);
    DrawnText::load(*m_edit, u"one two three|"_s);
    first(*this);
    tap(at(0, 5));
    QCOMPARE(DrawnText::draw(*m_edit), u"one t|wo three"_s);
    QTest::mouseClick(m_edit->viewport(), Qt::LeftButton, {},
        m_edit->viewport()->mapFrom(m_window.get(), at(0, 5) + QPoint(1, 1)));
    QCOMPARE(DrawnText::draw(*m_edit), u"one t|wo three"_s);
}

void QMultiLineEditPenTest::tapEndsComposing()
{
    DrawnText::load(*m_edit, u"ab|"_s);
    QInputMethodEvent composing(u"かな"_s, {});
    QCoreApplication::sendEvent(m_edit, &composing);
    tap(at(0, 0));
    QCOMPARE(DrawnText::draw(*m_edit), u"|abかな"_s);
}

void QMultiLineEditPenTest::hoveringChangesNothing()
{
    DrawnText::load(*m_edit, u"h[ello\nwor|ld"_s);
    pen(at(0, 0), Qt::NoButton);
    pen(at(1, 4), Qt::NoButton);
    QCOMPARE(DrawnText::draw(*m_edit), u"h[ello\nwor|ld"_s);
}

void QMultiLineEditPenTest::otherButtonsAreLeftToTheMouse()
{
    DrawnText::load(*m_edit, u"h[ello\nwor|ld"_s);
    pen(at(0, 1), Qt::RightButton);
    pen(at(0, 1), Qt::NoButton);
    QCOMPARE(DrawnText::draw(*m_edit), u"h[ello\nwor|ld"_s);
}

void QMultiLineEditPenTest::heldStillOpensTheMenu()
{
    DrawnText::load(*m_edit, u"h[ello\nwor|ld"_s);
    pen(at(0, 3), Qt::LeftButton);
    pen(at(0, 3) + QPoint(1, 1), Qt::LeftButton);
    QTRY_VERIFY(qobject_cast<QMenu *>(QApplication::activePopupWidget()));
    QApplication::activePopupWidget()->close();
    pen(at(0, 3), Qt::NoButton);
    QCOMPARE(DrawnText::draw(*m_edit), u"h[ello\nwor|ld"_s);
}

void QMultiLineEditPenTest::movingOpensNoMenu()
{
    m_edit->setText(u"hello\nworld"_s);
    pen(at(0, 1), Qt::LeftButton);
    QVERIFY(hasTimers(*m_edit));
    pen(at(1, 3), Qt::LeftButton);
    QVERIFY(!hasTimers(*m_edit));
    pen(at(1, 3), Qt::NoButton);
}

void QMultiLineEditPenTest::tapBesideAMenuClosesIt()
{
    DrawnText::load(*m_edit, u"h[ello\nwor|ld"_s);
    pen(at(0, 1), Qt::LeftButton);
    QTRY_VERIFY(QApplication::activePopupWidget());
    pen(at(0, 1), Qt::NoButton);
    const QPoint beside = m_window->rect().bottomRight() - QPoint(20, 60);
    QVERIFY(!QApplication::activePopupWidget()->geometry().contains(m_window->mapToGlobal(beside)));
    tap(beside);
    QTRY_VERIFY(!QApplication::activePopupWidget());
    QCOMPARE(DrawnText::draw(*m_edit), u"h[ello\nwor|ld"_s);
    tap(at(0, 3));
    QCOMPARE(DrawnText::draw(*m_edit), u"hel|lo\nworld"_s);
}

void QMultiLineEditPenTest::dragsMarkedText()
{
    DrawnText::load(*m_edit, u"a[bc|defgh"_s);
    const QPoint to = at(0, 6);
    // The drag has an event loop of its own, in which the pen goes on.
    QTimer::singleShot(0, m_edit, [this, to] {
        pen(to, Qt::LeftButton);
        pen(to, Qt::NoButton);
    });
    pen(at(0, 2), Qt::LeftButton);
    pen(at(0, 2) + QPoint(0, 50), Qt::LeftButton);
    QTRY_COMPARE(DrawnText::draw(*m_edit), u"adef[bc|gh"_s);
    pen(to, Qt::NoButton);
    tap(at(0, 1));
    QCOMPARE(DrawnText::draw(*m_edit), u"a|defbcgh"_s);
}

REGISTER_TEST(runWindowTest<QMultiLineEditPenTest>)
#include "qmultilineeditpen_test.moc"
