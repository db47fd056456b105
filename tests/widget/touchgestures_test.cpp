#include "widget/touchgestures.h"

#include "tests/testprogram.h"
#include "tests/widget/inputparts.h"

#include <QContextMenuEvent>
#include <QPointingDevice>
#include <QStyleHints>
#include <QTouchEvent>

#include <private/qeventpoint_p.h>

using namespace Qt::StringLiterals;

using Gesture = PressedPointer::Gesture;

namespace {

QEventPoint finger(int id, QEventPoint::State state, QPointF at)
{
    return QMutableEventPoint::withTimeStamp(0, id, state, at, at, at);
}

/// Fingers on a view, whose points are given to it as the toolkit would.
class Fingers {
public:
    explicit Fingers(InputParts &parts)
        : m_parts(parts)
    {
    }

    /// `time` in ms.
    void send(QEvent::Type type, const QList<QEventPoint> &points, int time = 0) const
    {
        QTouchEvent event(type, &m_screen, {}, points);
        event.setTimestamp(quint64(time));
        m_parts.touch.touch(event);
    }
    void press(QPointF at) const { send(QEvent::TouchBegin, { finger(1, QEventPoint::Pressed, at) }); }
    void move(QPointF at) const { send(QEvent::TouchUpdate, { finger(1, QEventPoint::Updated, at) }); }
    void release(QPointF at) const { send(QEvent::TouchEnd, { finger(1, QEventPoint::Released, at) }); }

private:
    InputParts &m_parts;
    const QPointingDevice m_screen{ u"screen"_s, 2, QInputDevice::DeviceType::TouchScreen,
        QPointingDevice::PointerType::Finger, QInputDevice::Capability::Position, 10, 0 };
};

/// Counts what asks for a context menu, and where.
class MenuAsked : public QObject {
public:
    explicit MenuAsked(QWidget &widget) { widget.installEventFilter(this); }
    QList<QPoint> at;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::ContextMenu)
            at << static_cast<QContextMenuEvent *>(event)->pos();
        return false;
    }
};

} // namespace

/// What fingers do to a view, and when what is pressed is far, held or pressed again.
class TouchGesturesTest : public QObject {
    Q_OBJECT

private slots:
    void aTapPlacesTheCursor();
    void whatMovesIsNoTap();
    void twoFingersAreNoTap();
    void anotherFingerThatStaysScrollsNothing();
    void aCancelledTouchIsNoTap();
    void whatIsHeldAsksForTheMenu();
    void whatIsHeldSelectsTheWord();
    void whatIsHeldSelectsMoreAsItMoves();
    void tremblingSelectsNoMore();
    void whatIsHeldInASelectionKeepsIt();
    void whatIsHeldAndCancelledAsksForNothing();
    void tapsAtOnePlaceSelectMore();
    void tapsThatAreNoDoubleTap_data();
    void tapsThatAreNoDoubleTap();
    void nearIsNotFar_data();
    void nearIsNotFar();
};

void TouchGesturesTest::aTapPlacesTheCursor()
{
    InputParts parts(u"one two"_s);
    const Fingers fingers(parts);
    parts.select(1, 6);
    fingers.press(parts.at(4));
    QCOMPARE(parts.drawn(), u"o[ne tw|o"_s); // it may scroll still
    fingers.move(parts.at(4) + QPointF(1, 1));
    fingers.release(parts.at(4) + QPointF(1, 1));
    QCOMPARE(parts.drawn(), u"one |two"_s);
    QCOMPARE(parts.pressed.gesture(), Gesture::None);
}

void TouchGesturesTest::whatMovesIsNoTap()
{
    InputParts parts(u"one two"_s);
    const Fingers fingers(parts);
    fingers.press(parts.at(4));
    fingers.move(parts.at(4) + QPointF(0, 60));
    fingers.move(parts.at(4));
    fingers.release(parts.at(4));
    QCOMPARE(parts.drawn(), u"|one two"_s);
}

void TouchGesturesTest::twoFingersAreNoTap()
{
    InputParts parts(u"one two"_s);
    const Fingers fingers(parts);
    const QPointF at = parts.at(4);
    fingers.press(at);
    fingers.send(QEvent::TouchUpdate,
        { finger(1, QEventPoint::Stationary, at), finger(2, QEventPoint::Pressed, at + QPointF(50, 0)) });
    QVERIFY(!parts.pressed.isAwaitingLongPress());
    fingers.send(QEvent::TouchEnd,
        { finger(1, QEventPoint::Released, at), finger(2, QEventPoint::Released, at + QPointF(50, 0)) });
    QCOMPARE(parts.drawn(), u"|one two"_s);
}

void TouchGesturesTest::anotherFingerThatStaysScrollsNothing()
{
    InputParts parts(u"one two"_s);
    const Fingers fingers(parts);
    const QPointF at = parts.at(4);
    fingers.press(at);
    QCOMPARE(parts.pressed.gesture(), Gesture::Scroll);
    fingers.send(QEvent::TouchUpdate,
        { finger(1, QEventPoint::Released, at), finger(2, QEventPoint::Stationary, at + QPointF(50, 0)) });
    QCOMPARE(parts.pressed.gesture(), Gesture::Done);
    fingers.send(QEvent::TouchUpdate, { finger(2, QEventPoint::Updated, at + QPointF(50, 50)) });
    QCOMPARE(parts.pressed.gesture(), Gesture::Done);
    fingers.send(QEvent::TouchEnd, { finger(2, QEventPoint::Released, at + QPointF(50, 50)) });
    QCOMPARE(parts.pressed.gesture(), Gesture::None);
    QCOMPARE(parts.drawn(), u"|one two"_s);
}

void TouchGesturesTest::aCancelledTouchIsNoTap()
{
    InputParts parts(u"one two"_s);
    const Fingers fingers(parts);
    fingers.press(parts.at(4));
    fingers.send(QEvent::TouchCancel, { finger(1, QEventPoint::Released, parts.at(4)) });
    QCOMPARE(parts.drawn(), u"|one two"_s);
    QCOMPARE(parts.pressed.gesture(), Gesture::None);
    QVERIFY(!parts.pressed.isAwaitingLongPress());
}

void TouchGesturesTest::whatIsHeldAsksForTheMenu()
{
    InputParts parts(u"one two"_s);
    MenuAsked asked(parts.viewport);
    parts.pressed.awaitNextPress();
    parts.pressed.press({ 20, 10 });
    parts.pressed.moveTo({ 22, 11 });
    parts.pressed.awaitLongPress();
    QTRY_COMPARE(asked.at, QList<QPoint>{ QPoint(22, 11) });
    QCOMPARE(parts.pressed.gesture(), Gesture::Done);
    QVERIFY(!parts.pressed.isNextPress({ 20, 10 }));
    parts.pressed.awaitLongPress();
    parts.pressed.endLongPress();
    QVERIFY(!parts.pressed.isAwaitingLongPress());
}

/// It asks for the menu as it goes, and scrolls nothing.
void TouchGesturesTest::whatIsHeldSelectsTheWord()
{
    InputParts parts(u"one two three"_s);
    const Fingers fingers(parts);
    const MenuAsked asked(parts.viewport);
    fingers.press(parts.at(5));
    QTRY_COMPARE(parts.drawn(), u"one [two| three"_s);
    QCOMPARE(asked.at.size(), 0);
    fingers.release(parts.at(5));
    QCOMPARE(asked.at.size(), 1);
    QCOMPARE(parts.drawn(), u"one [two| three"_s);
    QCOMPARE(parts.pressed.gesture(), Gesture::None);
}

void TouchGesturesTest::whatIsHeldSelectsMoreAsItMoves()
{
    InputParts parts(u"one two three four"_s);
    const Fingers fingers(parts);
    const MenuAsked asked(parts.viewport);
    fingers.press(parts.at(5));
    QTRY_COMPARE(parts.drawn(), u"one [two| three four"_s);
    fingers.move(parts.at(10));
    QCOMPARE(parts.drawn(), u"one [two three| four"_s);
    fingers.move(parts.at(1));
    QCOMPARE(parts.drawn(), u"|one two] three four"_s);
    fingers.release(parts.at(1));
    QCOMPARE(parts.drawn(), u"|one two] three four"_s);
    QCOMPARE(asked.at.size(), 0);
}

void TouchGesturesTest::tremblingSelectsNoMore()
{
    InputParts parts(u"one two three"_s);
    const Fingers fingers(parts);
    const MenuAsked asked(parts.viewport);
    fingers.press(parts.at(6));
    QTRY_COMPARE(parts.drawn(), u"one [two| three"_s);
    fingers.move(parts.at(6) + QPointF(QGuiApplication::styleHints()->startDragDistance() - 1, 0));
    QCOMPARE(parts.drawn(), u"one [two| three"_s);
    fingers.release(parts.at(6));
    QCOMPARE(asked.at.size(), 1);
}

void TouchGesturesTest::whatIsHeldInASelectionKeepsIt()
{
    InputParts parts(u"one two three"_s);
    const Fingers fingers(parts);
    const MenuAsked asked(parts.viewport);
    parts.select(1, 10);
    fingers.press(parts.at(5));
    QTRY_VERIFY(!parts.pressed.isAwaitingLongPress());
    fingers.release(parts.at(5));
    QCOMPARE(parts.drawn(), u"o[ne two th|ree"_s);
    QCOMPARE(asked.at.size(), 1);
}

void TouchGesturesTest::whatIsHeldAndCancelledAsksForNothing()
{
    InputParts parts(u"one two three"_s);
    const Fingers fingers(parts);
    const MenuAsked asked(parts.viewport);
    fingers.press(parts.at(5));
    QTRY_COMPARE(parts.drawn(), u"one [two| three"_s);
    fingers.send(QEvent::TouchCancel, { finger(1, QEventPoint::Released, parts.at(5)) });
    QCOMPARE(parts.pressed.gesture(), Gesture::None);
    fingers.press(parts.at(0)); // nothing is held still
    fingers.release(parts.at(0));
    QCOMPARE(asked.at.size(), 0);
    QCOMPARE(parts.drawn(), u"|one two three"_s);
}

void TouchGesturesTest::tapsAtOnePlaceSelectMore()
{
    InputParts parts(u"one two three\nfour"_s);
    const Fingers fingers(parts);
    for (const QString &drawing : { u"one t|wo three\nfour"_s, u"one [two| three\nfour"_s,
             u"[one two three\n|four"_s, u"one t|wo three\nfour"_s }) {
        fingers.press(parts.at(5) + QPointF(1, 1));
        fingers.release(parts.at(5) + QPointF(1, 1));
        QCOMPARE(parts.drawn(), drawing);
    }
}

void TouchGesturesTest::tapsThatAreNoDoubleTap_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("time");
    const int interval = QGuiApplication::styleHints()->mouseDoubleClickInterval();
    QTest::newRow("one elsewhere before") << 9 << 0;
    QTest::newRow("one long before") << 5 << interval;
}

void TouchGesturesTest::tapsThatAreNoDoubleTap()
{
    QFETCH(int, before);
    QFETCH(int, time);
    InputParts parts(u"one two three"_s);
    const Fingers fingers(parts);
    fingers.press(parts.at(before));
    fingers.release(parts.at(before));
    fingers.press(parts.at(5));
    fingers.send(QEvent::TouchEnd, { finger(1, QEventPoint::Released, parts.at(5)) }, time);
    QCOMPARE(parts.drawn(), u"one t|wo three"_s);
}

void TouchGesturesTest::nearIsNotFar_data()
{
    QTest::addColumn<QPointF>("moved");
    QTest::addColumn<bool>("isFar");
    const int distance = QGuiApplication::styleHints()->startDragDistance();
    QTest::newRow("not at all") << QPointF() << false;
    QTest::newRow("trembling") << QPointF(distance - 1, 0) << false;
    QTest::newRow("to the side") << QPointF(distance, 0) << true;
    QTest::newRow("up") << QPointF(0, -distance) << true;
    QTest::newRow("a bit of both") << QPointF(-distance / 2.0, distance / 2.0) << true;
}

void TouchGesturesTest::nearIsNotFar()
{
    QFETCH(QPointF, moved);
    QFETCH(bool, isFar);
    InputParts parts(u"one two"_s);
    const QPointF at(40, 40);
    parts.pressed.press(at);
    QCOMPARE(parts.pressed.lastAt(), at);
    QCOMPARE(parts.pressed.isFar(at + moved), isFar);
    parts.pressed.awaitNextPress();
    QCOMPARE(parts.pressed.isNextPress(at + moved), !isFar);
    parts.pressed.endNextPress();
    QVERIFY(!parts.pressed.isNextPress(at));
}

REGISTER_TEST(runWindowTest<TouchGesturesTest>)
#include "touchgestures_test.moc"
