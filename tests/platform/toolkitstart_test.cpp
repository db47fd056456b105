#include "platform/toolkitstart.h"

#include "tests/testprogram.h"

#include <QDir>
#include <QThreadPool>

#include <latch>

using namespace Qt::StringLiterals;

namespace {

qsizetype threadsOfProcess()
{
    return QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

} // namespace

/// What the toolkit is told at the start.
class ToolkitStartTest : public QObject {
    Q_OBJECT

private slots:
    void paintingStartsNoThreadLater();
};

void ToolkitStartTest::paintingStartsNoThreadLater()
{
    startPaintingThreads();
    QThreadPool &pool = *QThreadPool::globalInstance();
    const int count = pool.maxThreadCount();
    const qsizetype before = threadsOfProcess();
    QVERIFY(before > count);
    std::latch areRunning(count + 1);
    for (int i = 0; i < count; ++i)
        pool.start([&areRunning] { areRunning.arrive_and_wait(); });
    areRunning.arrive_and_wait();
    QCOMPARE(threadsOfProcess(), before);
    QVERIFY(pool.expiryTimeout() < 0);
    pool.waitForDone();
}

REGISTER_TEST(runPlainTest<ToolkitStartTest>)
#include "toolkitstart_test.moc"
