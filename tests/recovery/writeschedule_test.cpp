#include "recovery/writeschedule.h"
#include "tests/testprogram.h"

/// When edits are written.
class WriteScheduleTest : public QObject {
    Q_OBJECT

private slots:
    void nothingIsDueWithoutEdits() { QVERIFY(!WriteSchedule().due()); }
    void waitsForAPause();
    void doesNotWaitForever();
    void triesAgainLaterAndLater();
    void triesAgainAtOnceWhenAsked();
};

void WriteScheduleTest::waitsForAPause()
{
    WriteSchedule schedule;
    schedule.noteEdit(100);
    QCOMPARE(schedule.due(), 100 + WriteSchedule::pause);
    schedule.noteEdit(300);
    QCOMPARE(schedule.due(), 300 + WriteSchedule::pause);
    schedule.noteBegun();
    QVERIFY(!schedule.due());
}

void WriteScheduleTest::doesNotWaitForever()
{
    WriteSchedule schedule;
    for (qint64 now = 1000; now < 9000; now += 100)
        schedule.noteEdit(now);
    QCOMPARE(schedule.due(), 1000 + WriteSchedule::longestWait);
    QVERIFY(WriteSchedule::longestWait < 2000);
}

void WriteScheduleTest::triesAgainLaterAndLater()
{
    WriteSchedule schedule;
    qint64 last = 0;
    for (int failure = 0; failure < 10; ++failure) {
        schedule.noteBegun();
        schedule.noteFailure(0);
        const qint64 due = schedule.due().value_or(-1);
        QVERIFY(due > last || due == WriteSchedule::longestRetry);
        last = due;
    }
    QCOMPARE(last, WriteSchedule::longestRetry);
    schedule.noteBegun();
    schedule.noteWritten();
    schedule.noteEdit(0);
    QCOMPARE(schedule.due(), WriteSchedule::pause);
}

void WriteScheduleTest::triesAgainAtOnceWhenAsked()
{
    WriteSchedule schedule;
    schedule.noteFailure(0);
    QCOMPARE(schedule.due(), WriteSchedule::firstRetry);
    schedule.forgetFailures();
    QCOMPARE(schedule.due(), WriteSchedule::pause);
}

REGISTER_TEST(runPlainTest<WriteScheduleTest>)
#include "writeschedule_test.moc"
