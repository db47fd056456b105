#include "tests/testprogram.h"
#include "tests/widget/keyboard.h"

#include <QKeyEvent>
#include <QTest>

namespace {

/// What the toolkit makes of the press.
bool isHeld(quint32 time, bool isMarked = false)
{
    QKeyEvent press(
        QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, Keyboard::escapeCode, 0, 0, {}, isMarked);
    press.setTimestamp(time);
    return HeldKeys::isHeld(press);
}

} // namespace

class HeldKeysTest : public QObject {
    Q_OBJECT

private slots:
    void repetitionThatWasNotMarked();
    void markedRepetition();
    void pressAfterARelease();
    void otherKeysRelease();
    void pressWithoutATime();
    void pressThatComesLater();
    void repetitionThatComesLater();
    void repetitionWhoseTimeIsLost();
    void keyThatWentDownElsewhere();
    void withoutAKeyboardToWatch();
};

void HeldKeysTest::repetitionThatWasNotMarked()
{
    Keyboard keyboard;
    keyboard.press(100);
    QVERIFY(!isHeld(100));
    for (const quint32 time : { 760U, 800U, 840U }) {
        keyboard.repeat(time);
        QVERIFY(isHeld(time));
    }
    keyboard.release(873);
    keyboard.press(950);
    QVERIFY(!isHeld(950));
}

void HeldKeysTest::markedRepetition()
{
    Keyboard keyboard;
    keyboard.press(100);
    QVERIFY(isHeld(100, true));
}

void HeldKeysTest::pressAfterARelease()
{
    Keyboard keyboard;
    keyboard.release(100);
    keyboard.press(101);
    QVERIFY(!isHeld(101));
}

void HeldKeysTest::otherKeysRelease()
{
    Keyboard keyboard;
    keyboard.release(100, 36);
    keyboard.press(100);
    QVERIFY(!isHeld(100));
}

// As programs make them up.
void HeldKeysTest::pressWithoutATime()
{
    Keyboard keyboard;
    keyboard.repeat(0);
    QVERIFY(!isHeld(0));
}

/// An input method may let a key through when the key has moved on.
void HeldKeysTest::pressThatComesLater()
{
    Keyboard keyboard;
    keyboard.press(100);
    keyboard.repeat(760);
    keyboard.release(790);
    QVERIFY(!isHeld(100));
    QVERIFY(isHeld(760));
}

void HeldKeysTest::repetitionThatComesLater()
{
    Keyboard keyboard;
    keyboard.press(100);
    for (const quint32 time : { 760U, 800U, 840U })
        keyboard.repeat(time);
    QVERIFY(!isHeld(100));
    QVERIFY(isHeld(760));
    QVERIFY(isHeld(800));
    QVERIFY(isHeld(840));
}

void HeldKeysTest::repetitionWhoseTimeIsLost()
{
    Keyboard keyboard;
    keyboard.press(100);
    QVERIFY(!isHeld(0));
    keyboard.repeat(760);
    QVERIFY(isHeld(0));
    keyboard.release(790);
    QVERIFY(isHeld(0));
    keyboard.press(950);
    QVERIFY(!isHeld(0));
}

void HeldKeysTest::keyThatWentDownElsewhere()
{
    Keyboard keyboard;
    keyboard.repeat(760);
    QVERIFY(isHeld(760));
    keyboard.release(790);
    keyboard.press(950);
    QVERIFY(!isHeld(950));
}

void HeldKeysTest::withoutAKeyboardToWatch()
{
    QVERIFY(!isHeld(100));
    QVERIFY(isHeld(100, true));
}

REGISTER_TEST(runWindowTest<HeldKeysTest>)
#include "heldkeys_test.moc"
