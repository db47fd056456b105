#include "app/lastwrites.h"

#include "app/documentjournals.h"
#include "files/endorder.h"
#include "recovery/recoveryjournals.h"
#include "tests/app/documentparts.h"
#include "tests/app/stayingapplication.h"
#include "tests/app/unsavedtexts.h"

using namespace Qt::StringLiterals;

/// What is written when a signal ends the program, and what the next start finds, which may come before the
/// memory of this one is free.
class LastWritesTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<ctlEditer *>(); }
    void init();
    void cleanup();

    void nextStartFindsTheTexts();

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

REGISTER_TEST(runStayingTest<LastWritesTest>)
#include "lastwrites_test.moc"
