#include "app/openingfiles.h"

#include "app/qpeapplicationesc.h"
#include "editor/noticequeue.h"
#include "tests/testprogram.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

QPEApplicationEsc &openingApplication()
{
    return *static_cast<QPEApplicationEsc *>(qApp);
}

} // namespace

/// The sign of many files that are opened.
class OpeningFilesTest : public QObject {
    Q_OBJECT

private slots:
    void saysHowFarItIs();
    void oneFileHasNone();
    void stopKeepsTheOthersAway();
    void endsWithTheWindow();

private:
    QString text() const
    {
        const Notice *const notice = m_queue.heaviest(nullptr);
        return notice ? notice->text() : QString();
    }

    NoticeQueue m_queue;
};

void OpeningFilesTest::saysHowFarItIs()
{
    const OpeningFiles files(m_queue);
    emit openingApplication().requestDelivered(3);
    QTRY_COMPARE(text(), u"Opening files: 25%"_s);
    emit openingApplication().requestDelivered(2);
    QCOMPARE(text(), u"Opening files: 50%"_s);
    emit openingApplication().requestDelivered(6); // a second start has brought more
    QCOMPARE(text(), u"Opening files: 33%"_s);
    emit openingApplication().requestDelivered(0);
    QCOMPARE(text(), QString());
    emit openingApplication().requestDelivered(1);
    QTRY_COMPARE(text(), u"Opening files: 50%"_s);
}

void OpeningFilesTest::oneFileHasNone()
{
    const OpeningFiles files(m_queue);
    const QSignalSpy changed(&m_queue, &NoticeQueue::changed);
    emit openingApplication().requestDelivered(0);
    QCOMPARE(changed.size(), 0);
}

void OpeningFilesTest::stopKeepsTheOthersAway()
{
    const OpeningFiles files(m_queue);
    openingApplication().request(u"/a"_s);
    openingApplication().request(u"/b"_s);
    QVERIFY(QPEApplication::hasRequests());
    emit openingApplication().requestDelivered(2);
    QTRY_VERIFY(m_queue.has(NoticeKind::Opening));
    const auto stop = m_queue.heaviest(nullptr)->escaped;
    stop();
    QVERIFY(!QPEApplication::hasRequests());
    QVERIFY(!m_queue.has(NoticeKind::Opening));
}

void OpeningFilesTest::endsWithTheWindow()
{
    OpeningFiles files(m_queue);
    openingApplication().request(u"/a"_s);
    files.end();
    QVERIFY(!QPEApplication::hasRequests());
}

namespace {

int runOpeningFilesTest(int argc, char **argv)
{
    const QPEApplicationEsc app(argc, argv);
    return runPlainTest<OpeningFilesTest>(argc, argv);
}

} // namespace

REGISTER_TEST(runOpeningFilesTest)
#include "openingfiles_test.moc"
