#include "editor/indentation.h"
#include "editor/partwisework.h"
#include "editor/pasting.h"
#include "jobs/job.h"
#include "jobs/poolrunner.h"
#include "tests/testprogram.h"
#include "tests/text/editedstore.h"
#include "widget/textexchange.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Of several steps.
QString linesToMove()
{
    QString lines;
    for (int i = 0; i < 60'000; ++i)
        lines += (i % 3 == 0 ? u"\tかな %1\r\n"_s : u"a line of a block, number %1\n"_s).arg(i);
    return lines;
}

} // namespace

/// The texts of long edits, made by jobs in threads while this one edits the text that they are made of.
class EditsInThreadsTest : public QObject {
    Q_OBJECT

private slots:
    void blockIsMoved_data();
    void blockIsMoved();
    void textIsPasted_data();
    void textIsPasted();
    void givenUp_data();
    void givenUp();

private:
    void makeWhileEditing(TextStore &store, PartwiseText wanted, const QString &expected);

    const QString m_lines = linesToMove();
    PoolRunner m_runner;
};

void EditsInThreadsTest::makeWhileEditing(TextStore &store, PartwiseText wanted, const QString &expected)
{
    auto owned = std::make_unique<PartwiseWork>(std::move(wanted));
    PartwiseWork &work = *owned;
    Job job(std::move(owned), m_runner);
    const QSignalSpy finished(&job, &Job::finished);
    for (int round = 0; finished.isEmpty(); ++round) {
        editAllOver(store, round);
        QCoreApplication::processEvents();
    }
    QCOMPARE(finished[0][0].value<JobOutcome>(), JobOutcome::Done);
    QVERIFY(work.text().take().text() == expected);
    store.checkInvariants();
}

void EditsInThreadsTest::blockIsMoved_data()
{
    QTest::addColumn<Indentation>("direction");
    QTest::newRow("in") << Indentation::In;
    QTest::newRow("out") << Indentation::Out;
}

void EditsInThreadsTest::blockIsMoved()
{
    QFETCH(Indentation, direction);
    TextStore store = storeWith(m_lines);
    const TextRange all{ {}, store.end() };
    PartwiseText alone = indenting(store, all, direction);
    while (!alone.isWhole())
        alone.makeNext(1, makeOneByOne);
    const QString expected = alone.take().text();
    makeWhileEditing(store, indenting(store, all, direction), expected);
}

void EditsInThreadsTest::textIsPasted_data()
{
    QTest::addColumn<BroughtText::From>("from");
    QTest::addColumn<bool>("isPiece");
    QTest::newRow("of the document") << BroughtText::From::Document << true;
    QTest::newRow("of one in the same code") << BroughtText::From::SameCode << true;
    QTest::newRow("of one in another code") << BroughtText::From::Elsewhere << true;
    QTest::newRow("of another program") << BroughtText::From::Elsewhere << false;
}

/// What comes from elsewhere gets the line ends that every text has here.
void EditsInThreadsTest::textIsPasted()
{
    QFETCH(BroughtText::From, from);
    QFETCH(bool, isPiece);
    TextStore store = storeWith(m_lines);
    BroughtText brought{ from };
    if (isPiece)
        brought.piece = store.piece({}, store.length());
    else
        brought.string = m_lines;
    QString expected = m_lines;
    if (from != BroughtText::From::Document)
        expected.replace(u"\r\n"_s, u"\n"_s);
    makeWhileEditing(store, pasting(store, brought), expected);
}

void EditsInThreadsTest::givenUp_data()
{
    QTest::addColumn<bool>("isBegun");
    QTest::newRow("at its start") << false;
    QTest::newRow("in the middle") << true;
}

void EditsInThreadsTest::givenUp()
{
    QFETCH(bool, isBegun);
    TextStore store = storeWith(m_lines);
    for (int round = 0; round < 5; ++round) {
        const Job job(
            std::make_unique<PartwiseWork>(indenting(store, { {}, store.end() }, Indentation::In)), m_runner);
        const QSignalSpy begun(&job, &Job::progressed);
        if (isBegun)
            QTRY_VERIFY(!begun.isEmpty());
        editAllOver(store, round);
    }
    store.checkInvariants();
}

REGISTER_TEST(runCoreTest<EditsInThreadsTest>)
#include "editsinthreads_test.moc"
