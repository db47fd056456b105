#include "app/lastwrites.h"

#include "app/documentjournals.h"
#include "files/endorder.h"
#include "platform/requesthold.h"
#include "recovery/recoveryjournals.h"
#include "tests/app/documentparts.h"
#include "tests/app/stayingapplication.h"
#include "tests/app/unsavedtexts.h"

#include <optional>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// What is written when a signal ends the program, and what the next start finds, which may come before the
/// memory of this one is free.
class LastWritesTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<ctlEditer *>(); }
    void init();
    void cleanup();

    void nextStartFindsTheTexts();
    void savedTextIsNotKept_data();
    void savedTextIsNotKept();

private:
    struct Parts : DocumentParts {
        RecoveryJournals journals;
        DocumentJournals documentJournals{ documents, journals };
        LastWrites lastWrites{ documents, loader, saver, places, journals };
    };
    static void endAtOnce()
    {
        EndOrder::give();
        static_cast<QPEApplication *>(qApp)->endAtOnce();
        EndOrder::withdraw(); // what the test reads would obey it
    }

    std::unique_ptr<Parts> m_parts;
};

void LastWritesTest::init()
{
    UnsavedTexts::removeAll();
    m_parts = std::make_unique<Parts>();
}

void LastWritesTest::cleanup()
{
    EndOrder::withdraw();
    m_parts.reset();
}

void LastWritesTest::nextStartFindsTheTexts()
{
    for (const QString &name : { u"a.txt"_s, u"b.txt"_s })
        QTest::keyClicks(m_parts->open(m_parts->files.write(name, "text\n")), u"typed "_s);
    endAtOnce();
    const QString text = u"typed text\n"_s;
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList({ text, text }));
}

void LastWritesTest::savedTextIsNotKept_data()
{
    QTest::addColumn<bool>("isInPlace"); // as a file of two names is
    QTest::addColumn<bool>("isInTheWay"); // a dialog, of being told that it is saved
    QTest::addColumn<bool>("isComplete");
    for (const bool isInPlace : { false, true }) {
        const char *const how = isInPlace ? "in place" : "beside";
        QTest::addRow("%s, not told yet", how) << isInPlace << false << true;
        QTest::addRow("%s, behind a dialog", how) << isInPlace << true << true;
        QTest::addRow("%s, not complete", how) << isInPlace << false << false;
    }
}

/// Its file has it, though the window did not know when the order came.
void LastWritesTest::savedTextIsNotKept()
{
    QFETCH(bool, isInPlace);
    QFETCH(bool, isInTheWay);
    QFETCH(bool, isComplete);
    m_parts->jobs.fewest = 1;
    const QByteArray content = QByteArray("a line of a long text\n").repeated(120'000);
    const QString file = m_parts->files.write(u"a.txt"_s, content);
    if (isInPlace)
        QCOMPARE(::link(QFile::encodeName(file).constData(), QFile::encodeName(file + u'2').constData()), 0);
    ctlEditer *const editor = m_parts->open(file);
    m_parts->steps.runAll();
    editor->insert(u"typed "_s);
    QVERIFY(m_parts->journals.flush(10s));
    m_parts->saver.beginSave(editor, [](bool) { QFAIL("told although the program ends"); });
    std::optional<RequestHold> way;
    if (isInTheWay)
        way.emplace();
    constexpr int allSteps = 5;
    for (int step = isComplete ? 0 : 1; step < allSteps; ++step)
        QVERIFY(isInTheWay ? m_parts->steps.step() : m_parts->steps.stepUntold());
    QCOMPARE(m_parts->steps.isIdle(), isComplete);
    endAtOnce();
    QVERIFY(m_parts->files.read(u"a.txt"_s) == (isComplete ? "typed " + content : content));
    QCOMPARE(findLeftBehind(journalFolder()).size(), isComplete ? 0U : 1U);
    QCOMPARE(editor->edited(), !isComplete);
}

REGISTER_TEST(runStayingTest<LastWritesTest>)
#include "lastwrites_test.moc"
