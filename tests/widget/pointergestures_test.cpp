#include "widget/pointergestures.h"

#include "tests/testprogram.h"
#include "tests/widget/inputparts.h"

#include <QMouseEvent>
#include <QPointingDevice>
#include <QTabletEvent>

using namespace Qt::StringLiterals;

using Gesture = PressedPointer::Gesture;

namespace {

/// A mouse and a pen that do what a word of a script says.
class Hand {
public:
    explicit Hand(InputParts &parts)
        : m_parts(parts)
    {
    }

    /// Words: "p3" presses at offset 3, "s3" the same with Shift, "d3" double-clicks, "m3" moves there, "r3"
    /// releases; "P3", "M3" and "R3" are the pen's.
    void play(const QString &script)
    {
        for (const QString &word : script.split(u' '))
            act(word.front().toLatin1(), m_parts.at(word.sliced(1).toLongLong()));
    }
    void act(char what, QPointF at)
    {
        PointerGestures &pointer = m_parts.pointer;
        switch (what) {
        case 'p':
            return pointer.press(mouse(QEvent::MouseButtonPress, at, {}));
        case 's':
            return pointer.press(mouse(QEvent::MouseButtonPress, at, Qt::ShiftModifier));
        case 'd':
            return pointer.doubleClick(mouse(QEvent::MouseButtonDblClick, at, {}));
        case 'm':
            return pointer.move(at);
        case 'r':
            return pointer.release(at);
        case 'P':
            isTaken = pointer.tablet(penEvent(QEvent::TabletPress, at, Qt::LeftButton));
            return;
        case 'M':
            isTaken = pointer.tablet(penEvent(QEvent::TabletMove, at, Qt::NoButton));
            return;
        case 'R':
            isTaken = pointer.tablet(penEvent(QEvent::TabletRelease, at, Qt::LeftButton));
            return;
        default:
            QFAIL("no such act");
        }
    }
    QTabletEvent penEvent(QEvent::Type type, QPointF at, Qt::MouseButton button) const
    {
        const Qt::MouseButtons held = type == QEvent::TabletRelease ? Qt::NoButton : Qt::LeftButton;
        return { type, &m_pen, at, at, 1, 0, 0, 0, 0, 0, {}, button, held };
    }

    bool isTaken = false;

private:
    static QMouseEvent mouse(QEvent::Type type, QPointF at, Qt::KeyboardModifiers modifiers)
    {
        return { type, at, at, Qt::LeftButton, Qt::LeftButton, modifiers };
    }

    InputParts &m_parts;
    const QPointingDevice m_pen{ u"pen"_s, 1, QInputDevice::DeviceType::Stylus,
        QPointingDevice::PointerType::Pen, QInputDevice::Capability::Position, 1, 1 };
};

} // namespace

/// What a mouse and a pen select, without an editor and a toolkit that leads them.
class PointerGesturesTest : public QObject {
    Q_OBJECT

private slots:
    void selecting_data();
    void selecting();
    void aPressInTheSelectionKeepsIt();
    void pressingEndsComposing();
    void beyondTheEdgeTheViewGoesOn();
    void aPenThatHasNothingToDoIsTheToolkits();
    void aHeldPenAsksForTheMenu();
};

void PointerGesturesTest::selecting_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const QString &script, const QString &after) {
        QTest::newRow(name) << script << after;
    };
    row("click", u"p5 r5"_s, u"one t|wo\nfour five"_s);
    row("drag", u"p1 m5 r5"_s, u"o[ne t|wo\nfour five"_s);
    row("drag back", u"p5 m1 r1"_s, u"o|ne t]wo\nfour five"_s);
    row("moving behind the release", u"p1 r1 m5"_s, u"o|ne two\nfour five"_s);
    row("Shift and click", u"p1 r1 s5 r5"_s, u"o[ne t|wo\nfour five"_s);
    row("Shift and click in the selection", u"p1 m7 r7 s3 r3"_s, u"o[ne| two\nfour five"_s);
    row("double click", u"p5 r5 d5 r5"_s, u"one [two|\nfour five"_s);
    row("double click and drag", u"d5 m9 r9"_s, u"one [two\nfour| five"_s);
    row("double click and drag back", u"d5 m1 r1"_s, u"|one two]\nfour five"_s);
    row("and to its word again", u"d5 m1 m6 r6"_s, u"one [two|\nfour five"_s);
    row("triple click", u"d5 r5 p5 r5"_s, u"[one two\n|four five"_s);
    row("triple click and drag", u"d5 r5 p5 m10 r10"_s, u"[one two\nfour five|"_s);
    row("third click elsewhere", u"d1 r1 p14 r14"_s, u"one two\nfour f|ive"_s);
    row("fourth click", u"d5 r5 p5 r5 p1 r1"_s, u"o|ne two\nfour five"_s);
    row("pen", u"P1 M5 R5"_s, u"o[ne t|wo\nfour five"_s);
    row("pen, twice", u"P5 R5 P5 R5"_s, u"one [two|\nfour five"_s);
    row("pen, three times", u"P5 R5 P5 R5 P5 R5"_s, u"[one two\n|four five"_s);
    row("pen, elsewhere the second time", u"P1 R1 P14 R14"_s, u"one two\nfour f|ive"_s);
    row("pen, far moved between", u"P1 M14 M1 R1 P1 R1"_s, u"o|ne two\nfour five"_s);
}

void PointerGesturesTest::selecting()
{
    QFETCH(QString, script);
    InputParts parts(u"one two\nfour five"_s);
    Hand(parts).play(script);
    QTEST(parts.drawn(), "after");
    QCOMPARE(parts.pressed.gesture(), Gesture::None);
}

void PointerGesturesTest::aPressInTheSelectionKeepsIt()
{
    InputParts parts(u"one two"_s);
    Hand hand(parts);
    parts.select(1, 6);
    hand.play(u"p3"_s);
    QCOMPARE(parts.drawn(), u"o[ne tw|o"_s);
    QCOMPARE(parts.pressed.gesture(), Gesture::MaybeDrag);
    hand.act('m', parts.at(3) + QPointF(1, 0)); // trembling
    QCOMPARE(parts.pressed.gesture(), Gesture::MaybeDrag);
    hand.play(u"r3"_s);
    QCOMPARE(parts.drawn(), u"one| two"_s);
}

void PointerGesturesTest::pressingEndsComposing()
{
    InputParts parts(u"one"_s);
    const Passing passing(parts);
    parts.composer.compose(QInputMethodEvent(u"か"_s, {}));
    Hand(parts).act('p', QPointF(200, 5));
    QCOMPARE(parts.drawn(), u"かone|"_s);
}

void PointerGesturesTest::beyondTheEdgeTheViewGoesOn()
{
    InputParts parts(u"x\n"_s.repeated(99));
    Hand hand(parts);
    hand.play(u"p0"_s);
    hand.act('m', QPointF(5, parts.viewport.height() + 30));
    const Offset first = parts.cursor.place().offset;
    QTRY_VERIFY(parts.view.top() > RowIndex(3));
    QVERIFY(parts.cursor.place().offset > first);
    QCOMPARE(parts.cursor.anchor().offset, Offset(0));
    hand.act('m', QPointF(5, 50));
    const RowIndex top = parts.view.top();
    hand.act('r', QPointF(5, 50));
    QCoreApplication::processEvents();
    QCOMPARE(parts.view.top(), top);
}

void PointerGesturesTest::aPenThatHasNothingToDoIsTheToolkits()
{
    InputParts parts(u"one"_s);
    Hand hand(parts);
    hand.play(u"M1"_s);
    QVERIFY(!hand.isTaken);
    hand.play(u"R1"_s);
    QVERIFY(!hand.isTaken);
    QVERIFY(!parts.pointer.tablet(hand.penEvent(QEvent::TabletPress, parts.at(1), Qt::RightButton)));
    hand.play(u"P1"_s);
    QVERIFY(hand.isTaken);
    parts.pressed.setGesture(Gesture::Drag); // which mouse events of the toolkit's lead
    hand.play(u"M2"_s);
    QVERIFY(!hand.isTaken);
}

void PointerGesturesTest::aHeldPenAsksForTheMenu()
{
    InputParts parts(u"one two"_s);
    Hand hand(parts);
    hand.play(u"P1"_s);
    QVERIFY(parts.pressed.isAwaitingLongPress());
    hand.act('M', parts.at(1) + QPointF(1, 1));
    QVERIFY(parts.pressed.isAwaitingLongPress());
    hand.play(u"M6"_s);
    QVERIFY(!parts.pressed.isAwaitingLongPress());
    hand.play(u"R6 P1 R1"_s);
    QVERIFY(!parts.pressed.isAwaitingLongPress());
}

REGISTER_TEST(runWindowTest<PointerGesturesTest>)
#include "pointergestures_test.moc"
