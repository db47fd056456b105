#include "platform/freeturn.h"

#include "platform/qpeapplication.h"
#include "platform/requesthold.h"
#include "platform/toolkitstart.h"
#include "tests/testprogram.h"

#include <QAbstractEventDispatcher>
#include <QDialog>

#include <memory>
#include <optional>

namespace {

/// How many turns of the event loop there are before it would sleep.
int turnsUntilSleep()
{
    constexpr int endless = 100;
    int turns = 0;
    while (turns < endless && QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents))
        ++turns;
    return turns < endless ? turns : -1;
}

/// With the application and the event loop that the program has.
template <class Test> int runWithItsEventLoop(int argc, char **argv)
{
    prepareEventLoop();
    const QPEApplication application(argc, argv);
    return runPlainTest<Test>(argc, argv);
}

} // namespace

class FreeTurnTest : public QObject {
    Q_OBJECT

private slots:
    void comesInTheNextTurn();
    void waitsForARun();
    void waitsForADialog();
    void eventLoopSleepsMeanwhile();
    void comesOnceForEachTime();
    void isCancelled();
    void mayDestroyIt();
    void waitsForWhatComesInBetween();
    void onceNeedsNoObject();
};

void FreeTurnTest::comesInTheNextTurn()
{
    int calls = 0;
    FreeTurn turn([&calls] { ++calls; });
    turnsUntilSleep();
    QCOMPARE(calls, 0);
    turn.await();
    QCOMPARE(calls, 0);
    turnsUntilSleep();
    QCOMPARE(calls, 1);
}

void FreeTurnTest::waitsForARun()
{
    int calls = 0;
    FreeTurn turn([&calls] { ++calls; });
    {
        const RequestHold hold;
        turn.await();
        turnsUntilSleep();
        QCOMPARE(calls, 0);
    }
    turnsUntilSleep();
    QCOMPARE(calls, 1);
}

void FreeTurnTest::waitsForADialog()
{
    int calls = 0;
    FreeTurn turn([&calls] { ++calls; });
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    turn.await();
    turnsUntilSleep();
    QCOMPARE(calls, 0);
    dialog.hide();
    turnsUntilSleep();
    QCOMPARE(calls, 1);
}

void FreeTurnTest::eventLoopSleepsMeanwhile()
{
    FreeTurn turn([] {});
    const RequestHold hold;
    turn.await();
    QVERIFY(turnsUntilSleep() >= 0);
    QVERIFY(turnsUntilSleep() >= 0);
}

void FreeTurnTest::comesOnceForEachTime()
{
    int calls = 0;
    FreeTurn turn([&calls] { ++calls; });
    turn.await();
    turn.await();
    turnsUntilSleep();
    QCOMPARE(calls, 1);
    turn.await();
    turnsUntilSleep();
    QCOMPARE(calls, 2);
}

void FreeTurnTest::isCancelled()
{
    int calls = 0;
    FreeTurn turn([&calls] { ++calls; });
    turn.await();
    turn.cancel();
    turnsUntilSleep();
    QCOMPARE(calls, 0);
}

void FreeTurnTest::mayDestroyIt()
{
    std::unique_ptr<FreeTurn> turn;
    turn = std::make_unique<FreeTurn>([&turn] { turn.reset(); });
    turn->await();
    turnsUntilSleep();
    QVERIFY(!turn);
}

void FreeTurnTest::waitsForWhatComesInBetween()
{
    int calls = 0;
    FreeTurn turn([&calls] { ++calls; });
    turn.await();
    std::optional<RequestHold> hold;
    // Behind what looks, and before what that posts.
    const QObject context;
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &context, [&hold] {
        if (!hold)
            hold.emplace();
    });
    turnsUntilSleep();
    QVERIFY(hold);
    QCOMPARE(calls, 0);
    QAbstractEventDispatcher::instance()->disconnect(&context);
    hold.reset();
    turnsUntilSleep();
    QCOMPARE(calls, 1);
}

void FreeTurnTest::onceNeedsNoObject()
{
    int calls = 0;
    QObject context;
    auto gone = std::make_unique<QObject>();
    FreeTurn::once(&context, [&calls] { ++calls; });
    FreeTurn::once(gone.get(), [&calls] { calls += 10; });
    gone.reset();
    turnsUntilSleep();
    QCOMPARE(calls, 1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(context.children().isEmpty());
}

REGISTER_TEST(runWithItsEventLoop<FreeTurnTest>)
#include "freeturn_test.moc"
