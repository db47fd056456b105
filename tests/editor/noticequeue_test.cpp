#include "editor/noticequeue.h"

#include "settings/moresettings.h"
#include "tests/testprogram.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

constexpr NoticeKind heavy = NoticeKind::CannotWrite;

Notice notice(NoticeKind kind, const QObject *about, const QString &text)
{
    return { kind, about, [=] { return text; }, {} };
}

QString textOf(const Notice *notice)
{
    return notice ? notice->text() : u"(none)"_s;
}

} // namespace

class NoticeQueueTest : public QObject {
    Q_OBJECT

private slots:
    void isEmptyAtFirst();
    void keepsOneOfAKindForEachDocument();
    void showsThoseOfTheDocumentAndTheProgram();
    void equalOnesStayInTheirOrder();
    void whatIsAtRiskNowGoesBeforeWhatWasKept();
    void unwantedOnesAreNotShown();
    void withdrawnAndDismissedOnesGo();
    void thoseOfADestroyedDocumentGo();
};

void NoticeQueueTest::isEmptyAtFirst()
{
    NoticeQueue queue;
    const QSignalSpy changed(&queue, &NoticeQueue::changed);
    QCOMPARE(queue.heaviest(nullptr), nullptr);
    queue.withdraw(heavy);
    queue.dismiss(heavy, this);
    queue.withdrawAllAbout(this);
    QCOMPARE(changed.count(), 0);
}

void NoticeQueueTest::keepsOneOfAKindForEachDocument()
{
    NoticeQueue queue;
    const QSignalSpy changed(&queue, &NoticeQueue::changed);
    const QObject one;
    const QObject other;
    queue.put(notice(heavy, &one, u"before"_s));
    queue.put(notice(heavy, &other, u"other"_s));
    queue.put(notice(heavy, &one, u"after"_s));
    QCOMPARE(textOf(queue.heaviest(&one)), u"after"_s);
    QCOMPARE(textOf(queue.heaviest(&other)), u"other"_s);
    QCOMPARE(changed.count(), 3);
    queue.withdraw(heavy, &one);
    QVERIFY(!queue.has(heavy, &one));
    QVERIFY(queue.has(heavy, &other));
}

void NoticeQueueTest::showsThoseOfTheDocumentAndTheProgram()
{
    NoticeQueue queue;
    const QObject document;
    queue.put(notice(heavy, &document, u"document"_s));
    QCOMPARE(textOf(queue.heaviest(nullptr)), u"(none)"_s);
    queue.put(notice(heavy, nullptr, u"program"_s));
    QCOMPARE(textOf(queue.heaviest(nullptr)), u"program"_s);
    QCOMPARE(textOf(queue.heaviest(this)), u"program"_s);
}

void NoticeQueueTest::equalOnesStayInTheirOrder()
{
    NoticeQueue queue;
    const QObject document;
    queue.put(notice(heavy, nullptr, u"program"_s));
    queue.put(notice(heavy, &document, u"document"_s));
    QCOMPARE(textOf(queue.heaviest(&document)), u"program"_s);
}

/// The offer to restore comes again when the other notice has gone.
void NoticeQueueTest::whatIsAtRiskNowGoesBeforeWhatWasKept()
{
    NoticeQueue queue;
    const QObject document;
    queue.put(notice(NoticeKind::Unsaved, nullptr, u"kept"_s));
    for (const NoticeKind kind : { NoticeKind::ChangedOnDisk, NoticeKind::CannotWrite }) {
        queue.put(notice(kind, &document, u"now"_s));
        QCOMPARE(textOf(queue.heaviest(&document)), u"now"_s);
        QCOMPARE(textOf(queue.heaviest(nullptr)), u"kept"_s);
        queue.dismiss(kind, &document);
        QCOMPARE(textOf(queue.heaviest(&document)), u"kept"_s);
    }
    for (const NoticeKind kind : { NoticeKind::NotWritable, NoticeKind::WrongCode }) {
        queue.put(notice(kind, &document, u"lasting"_s));
        QCOMPARE(textOf(queue.heaviest(&document)), u"kept"_s);
    }
}

void NoticeQueueTest::unwantedOnesAreNotShown()
{
    NoticeQueue queue;
    const QSignalSpy changed(&queue, &NoticeQueue::changed);
    queue.put(notice(NoticeKind::ChangedOnDisk, nullptr, u"disk"_s));
    queue.put(notice(NoticeKind::CannotWrite, nullptr, u"text"_s));
    queue.put(notice(NoticeKind::NoRecovery, nullptr, u"recovery"_s));
    moreSettings().NoticesOfDisk = 0;
    queue.applySettings();
    QCOMPARE(changed.count(), 4);
    QCOMPARE(textOf(queue.heaviest(nullptr)), u"text"_s);
    moreSettings().NoticesOfText = 0;
    QCOMPARE(textOf(queue.heaviest(nullptr)), u"recovery"_s);
    QVERIFY(queue.has(NoticeKind::ChangedOnDisk)); // for when it is wanted again
    moreSettings() = {};
    QCOMPARE(textOf(queue.heaviest(nullptr)), u"disk"_s);
}

void NoticeQueueTest::withdrawnAndDismissedOnesGo()
{
    NoticeQueue queue;
    int dismissals = 0;
    const auto put = [&] {
        Notice told = notice(heavy, nullptr, u"text"_s);
        told.dismissed = [&] {
            QVERIFY(!queue.has(heavy));
            ++dismissals;
        };
        queue.put(told);
    };
    put();
    queue.withdraw(heavy);
    QCOMPARE(dismissals, 0);
    put();
    queue.dismiss(heavy, nullptr);
    QCOMPARE(dismissals, 1);
    QCOMPARE(queue.heaviest(nullptr), nullptr);
}

void NoticeQueueTest::thoseOfADestroyedDocumentGo()
{
    NoticeQueue queue;
    auto document = std::make_unique<QObject>();
    const QObject *const address = document.get();
    queue.put(notice(heavy, address, u"text"_s));
    queue.put(notice(heavy, address, u"again"_s));
    document->blockSignals(true);
    document.reset();
    QVERIFY(!queue.has(heavy, address));
}

REGISTER_TEST(runCoreTest<NoticeQueueTest>)
#include "noticequeue_test.moc"
