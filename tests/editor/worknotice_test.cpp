#include "editor/worknotice.h"

#include "editor/noticequeue.h"
#include "editor/noticestrip.h"
#include "tests/testprogram.h"

#include <QAccessible>
#include <QLabel>
#include <QToolButton>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QStringList toldOfWork; ///< what assistive tools were told

void hearOfWork(QAccessibleEvent *event)
{
    if (event->type() == QAccessible::Alert)
        toldOfWork << event->accessibleInterface()->text(QAccessible::Name);
}

void setTold(bool told)
{
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(told);
}

} // namespace

/// How far work for a document is, in the strip.
class WorkNoticeTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void saysHowFarItIs();
    void isOnlyAboutItsDocument();
    void isHeavierThanOthers();
    void saysWhatHasToWait();
    void saysWhatFollowsIt_data();
    void saysWhatFollowsIt();
    void saysAgainHowFarItIs();
    void refusesWhileItIsBeingStopped();
    void buttonStops();
    void escapeStops();
    void saysThatItIsBeingStopped();
    void tellsQuartersAlone();

private:
    void begin(WorkNotice::Work work = WorkNotice::Work::Loading);
    QString text() const { return m_strip->findChild<QLabel *>()->text(); }

    std::unique_ptr<NoticeQueue> m_queue;
    std::unique_ptr<QWidget> m_window;
    NoticeStrip *m_strip = nullptr;
    QObject m_document;
    std::unique_ptr<WorkNotice> m_notice;
    int m_stops = 0;
};

void WorkNoticeTest::init()
{
    m_stops = 0;
    m_queue = std::make_unique<NoticeQueue>();
    m_window = std::make_unique<QWidget>();
    m_strip = new NoticeStrip(*m_queue, m_window.get());
    m_strip->setDocument(&m_document);
    connect(m_strip, &NoticeStrip::chosen, this, [](const std::function<void()> &act) { act(); });
    m_window->resize(640, 100);
    m_strip->resize(640, m_strip->sizeHint().height());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void WorkNoticeTest::cleanup()
{
    m_notice.reset();
    m_window.reset();
    m_queue.reset();
}

void WorkNoticeTest::begin(WorkNotice::Work work)
{
    m_notice = std::make_unique<WorkNotice>(*m_queue, &m_document, work, [this] {
        ++m_stops;
        m_notice.reset();
    });
}

void WorkNoticeTest::saysHowFarItIs()
{
    begin();
    QVERIFY(m_strip->isVisible());
    QCOMPARE(text(), u"Loading…"_s);
    m_notice->setProgress(43);
    QCOMPARE(text(), u"Loading: 43%"_s);
    m_notice->setProgress({});
    QCOMPARE(text(), u"Loading…"_s);
    m_notice.reset();
    QVERIFY(m_strip->isHidden());
    begin(WorkNotice::Work::Saving);
    m_notice->setProgress(7);
    QCOMPARE(text(), u"Saving: 7%"_s);
    m_notice.reset();
    begin(WorkNotice::Work::Indenting);
    QCOMPARE(text(), u"Indenting…"_s);
}

void WorkNoticeTest::isOnlyAboutItsDocument()
{
    const QObject other;
    begin();
    m_strip->setDocument(&other);
    QVERIFY(m_strip->isHidden());
}

void WorkNoticeTest::isHeavierThanOthers()
{
    m_queue->put({ NoticeKind::Unsaved, nullptr, [] { return u"text"_s; }, {} });
    begin();
    QCOMPARE(text(), u"Loading…"_s);
    m_notice.reset();
    QCOMPARE(text(), u"text"_s);
}

void WorkNoticeTest::saysWhatHasToWait()
{
    begin();
    m_notice->setProgress(10);
    m_notice->refuse();
    QCOMPARE(text(), u"Not while it is loading: 10%"_s);
    m_notice->setProgress(11);
    QCOMPARE(text(), u"Not while it is loading: 11%"_s);
}

void WorkNoticeTest::saysWhatFollowsIt_data()
{
    QTest::addColumn<WorkNotice::Work>("work");
    QTest::addColumn<EditableText::Awaited>("awaited");
    QTest::addColumn<QString>("said");
    using Work = WorkNotice::Work;
    using Awaited = EditableText::Awaited;
    const QString closing = u"To be closed when it is done…"_s;
    QTest::newRow("a jump behind a load")
        << Work::Loading << Awaited::Jump << u"To be gone to when it is loaded…"_s;
    QTest::newRow("closing behind a save") << Work::Saving << Awaited::Closing << closing;
    QTest::newRow("closing behind an indent") << Work::Indenting << Awaited::Closing << closing;
    QTest::newRow("closing behind a paste") << Work::Pasting << Awaited::Closing << closing;
    QTest::newRow("a jump behind a save") << Work::Saving << Awaited::Jump << u"Saving…"_s;
}

void WorkNoticeTest::saysWhatFollowsIt()
{
    QFETCH(WorkNotice::Work, work);
    QFETCH(EditableText::Awaited, awaited);
    begin(work);
    const QString begun = text();
    m_notice->promise(awaited, 0ms);
    QTEST(text(), "said");
    QTRY_COMPARE(text(), begun);
}

/// For some time behind the last of them.
void WorkNoticeTest::saysAgainHowFarItIs()
{
    for (const WorkNotice::Work work : { WorkNotice::Work::Loading, WorkNotice::Work::Saving }) {
        begin(work);
        const QString begun = text();
        m_notice->refuse(0ms);
        QVERIFY(text() != begun);
        QTRY_COMPARE(text(), begun);
        m_notice->refuse(0ms);
        m_notice->refuse();
        QCoreApplication::processEvents();
        QVERIFY(text() != begun);
        m_notice.reset();
    }
}

/// What was pressed is told of while it is being stopped, too, and then that it is.
void WorkNoticeTest::refusesWhileItIsBeingStopped()
{
    m_notice =
        std::make_unique<WorkNotice>(*m_queue, &m_document, WorkNotice::Work::Saving, [this] { ++m_stops; });
    m_notice->refuse();
    m_strip->takeKeys();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QCOMPARE(text(), u"Stopping…"_s);
    m_notice->refuse(0ms);
    QCOMPARE(text(), u"Not while it is being saved…"_s);
    QTRY_COMPARE(text(), u"Stopping…"_s);
}

void WorkNoticeTest::buttonStops()
{
    begin();
    const QList<QToolButton *> buttons = m_strip->findChildren<QToolButton *>();
    const auto stop = std::ranges::find(buttons, u"Stop"_s, &QToolButton::text);
    QVERIFY(stop != buttons.end());
    QTest::mouseClick(*stop, Qt::LeftButton);
    QCOMPARE(m_stops, 1);
    QVERIFY(m_strip->isHidden());
}

/// As long as that takes, and no more how far it was.
void WorkNoticeTest::saysThatItIsBeingStopped()
{
    m_notice =
        std::make_unique<WorkNotice>(*m_queue, &m_document, WorkNotice::Work::Saving, [this] { ++m_stops; });
    m_notice->setProgress(43);
    m_strip->takeKeys();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QCOMPARE(m_stops, 1);
    QCOMPARE(text(), u"Stopping…"_s);
    m_notice->setProgress(44);
    QCOMPARE(text(), u"Stopping…"_s);
    m_notice.reset();
    QVERIFY(m_strip->isHidden());
}

void WorkNoticeTest::escapeStops()
{
    const QSignalSpy givenBack(m_strip, &NoticeStrip::keysGivenBack);
    begin();
    m_strip->takeKeys();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QCOMPARE(m_stops, 1);
    QVERIFY(givenBack.count() >= 1);
    QVERIFY(m_strip->isHidden());
}

void WorkNoticeTest::tellsQuartersAlone()
{
    toldOfWork.clear();
    const QAccessible::UpdateHandler before = QAccessible::installUpdateHandler(hearOfWork);
    setTold(true);
    begin();
    for (int percent = 0; percent <= 100; ++percent)
        m_notice->setProgress(percent);
    m_notice.reset();
    setTold(false);
    QAccessible::installUpdateHandler(before);
    QCOMPARE(toldOfWork,
        QStringList({ u"Loading…"_s, u"Loading: 0%"_s, u"Loading: 25%"_s, u"Loading: 50%"_s,
            u"Loading: 75%"_s, u"Loading: 100%"_s, u"Loading has ended"_s }));
}

REGISTER_TEST(runWindowTest<WorkNoticeTest>)
#include "worknotice_test.moc"
