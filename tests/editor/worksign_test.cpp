#include "editor/worksign.h"

#include "editor/noticequeue.h"
#include "tests/testprogram.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

/// The sign of a work that takes long.
class WorkSignTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        m_sign.emplace(m_queue, &m_document, WorkNotice::Work::Searching, [] {});
    }
    void cleanup() { m_sign.reset(); }

    void comesLater();
    void comesAtOnceWhereItRefuses();
    void neverComesForWhatIsShort();
    void searchesAndCountsHaveTheirOwn();

private:
    QString text() const
    {
        const Notice *const notice = m_queue.heaviest(&m_document);
        return notice ? notice->text() : QString();
    }

    NoticeQueue m_queue;
    QObject m_document;
    std::optional<WorkSign> m_sign;
};

void WorkSignTest::comesLater()
{
    QCOMPARE(text(), QString());
    m_sign->setProgress(7);
    QTRY_COMPARE(text(), u"Searching: 7%"_s);
    m_sign->setProgress(8);
    QCOMPARE(text(), u"Searching: 8%"_s);
    m_sign.reset();
    QCOMPARE(text(), QString());
}

void WorkSignTest::comesAtOnceWhereItRefuses()
{
    m_sign->setProgress(7);
    m_sign->refuse();
    QCOMPARE(text(), u"Not while it is being searched: 7%"_s);
}

void WorkSignTest::neverComesForWhatIsShort()
{
    const QSignalSpy changed(&m_queue, &NoticeQueue::changed);
    m_sign.reset();
    QCOMPARE(changed.count(), 0);
}

/// The heaviest is shown: what is done to the file itself.
void WorkSignTest::searchesAndCountsHaveTheirOwn()
{
    WorkSign counting(m_queue, &m_document, WorkNotice::Work::Counting, [] {});
    counting.refuse();
    QCOMPARE(text(), u"Not while it is being counted…"_s);
    m_sign->refuse();
    QCOMPARE(text(), u"Not while it is being searched…"_s);
    {
        WorkSign loading(m_queue, &m_document, WorkNotice::Work::Loading, [] {});
        loading.refuse();
        QCOMPARE(text(), u"Not while it is loading…"_s);
    }
    m_sign.reset();
    QCOMPARE(text(), u"Not while it is being counted…"_s);
}

REGISTER_TEST(runWindowTest<WorkSignTest>)
#include "worksign_test.moc"
