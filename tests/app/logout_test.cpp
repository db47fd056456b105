#include "tests/app/programwindow.h"
#include "tests/app/sessionmanager.h"
#include "tests/app/unsavedtexts.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

/// The program at the end of the session, told by a session manager.
class LogoutTest : public QObject, private ProgramWindow {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void withoutEditsNothingIsAsked();
    void answers_data();
    void answers();
    void cancelKeepsTheSession();
    void sessionThatGoesOnKeepsEverything();
    void editsAfterTheAnswerAreKept();
    void textIsKeptWhereNothingMayBeAsked();
    void checkpointAsksAndEndsNothing();

private:
    bool startInSession();
    /// The same, with an "x" typed in front of a.txt that is asked about.
    bool startAndLogOut();
    bool isAsked() const
    {
        return waitUntil([] { return activeTitle() == u"Confirm File Save"; });
    }

    std::unique_ptr<SessionManager> m_session;
};

void LogoutTest::init()
{
    QVERIFY(reset());
    m_session = std::make_unique<SessionManager>();
    QVERIFY(!m_session->address().isEmpty());
}

void LogoutTest::cleanup()
{
    const QByteArray messages = end();
    m_session.reset();
    QCOMPARE(messages, QByteArray());
}

/// With a.txt, "old" and LF, in front of other.txt with CR.
bool LogoutTest::startInSession()
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.insert(u"SESSION_MANAGER"_s, m_session->address());
    program().setProcessEnvironment(variables);
    return start({ write(u"other.txt"_s, "\rtext"), write(u"a.txt"_s, "old\n") })
        && waitUntil([this] { return lineEnd() == u"LF"; })
        && waitUntil([this] { return m_session->hasClient(); });
}

bool LogoutTest::startAndLogOut()
{
    if (!startInSession())
        return false;
    press({ u"x"_s });
    m_session->requestShutdown(SessionManager::Interaction::Any);
    return isAsked();
}

void LogoutTest::withoutEditsNothingIsAsked()
{
    QVERIFY(startInSession());
    m_session->requestShutdown(SessionManager::Interaction::Any);
    QTRY_COMPARE(m_session->log, QStringList{ u"saved"_s });
    QVERIFY(!hasEnded());
    m_session->endProgram();
    QTRY_VERIFY(hasEnded());
    QCOMPARE(program().exitStatus(), QProcess::NormalExit);
    QTRY_COMPARE(m_session->log, QStringList({ u"saved"_s, u"left"_s }));
}

void LogoutTest::answers_data()
{
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("Yes saves") << QStringList{ u"Return"_s } << QByteArray("xold\n");
    QTest::newRow("No loses") << QStringList{ u"Tab"_s, u"Return"_s } << QByteArray("old\n");
}

void LogoutTest::answers()
{
    QFETCH(QStringList, keys);
    QVERIFY(startAndLogOut());
    QCOMPARE(m_session->log, QStringList{ u"asks"_s });
    letBoxBeRead();
    press(keys);
    QTRY_COMPARE(m_session->log, QStringList({ u"asks"_s, u"done"_s, u"saved"_s }));
    QVERIFY(!hasEnded());
    m_session->endProgram();
    QTRY_VERIFY(hasEnded());
    QCOMPARE(program().exitStatus(), QProcess::NormalExit);
    QTEST(read(u"a.txt"_s), "content");
}

void LogoutTest::cancelKeepsTheSession()
{
    QVERIFY(startAndLogOut());
    QVERIFY(answer(u"Confirm File Save"_s, u"Escape"_s));
    QTRY_COMPARE(m_session->log.value(1), u"cancels"_s);
    m_session->cancelShutdown();
    QTRY_VERIFY(isActive());
    press({ u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("xold\n"));
}

/// Another program has cancelled: the "No" was for the end that did not come.
void LogoutTest::sessionThatGoesOnKeepsEverything()
{
    QVERIFY(startAndLogOut());
    letBoxBeRead();
    press({ u"Tab"_s, u"Return"_s });
    QTRY_COMPARE(m_session->log.value(2), u"saved"_s);
    m_session->cancelShutdown();
    QTRY_VERIFY(isActive());
    press({ u"ctrl+q"_s });
    QVERIFY(answer(u"Confirm File Save"_s, u"Return"_s));
    QTRY_VERIFY(hasEnded());
    QCOMPARE(read(u"a.txt"_s), QByteArray("xold\n"));
}

void LogoutTest::editsAfterTheAnswerAreKept()
{
    QVERIFY(startAndLogOut());
    letBoxBeRead();
    press({ u"Tab"_s, u"Return"_s });
    QTRY_COMPARE(m_session->log.value(2), u"saved"_s);
    QTRY_VERIFY(isActive());
    press({ u"y"_s, u"ctrl+Tab"_s });
    QTRY_COMPARE(lineEnd(), u"CR"_s);
    m_session->endProgram();
    QTRY_VERIFY(hasEnded());
    QCOMPARE(program().exitStatus(), QProcess::NormalExit);
    QCOMPARE(read(u"a.txt"_s), QByteArray("old\n"));
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList{ u"xyold\n"_s });
}

void LogoutTest::textIsKeptWhereNothingMayBeAsked()
{
    QVERIFY(startInSession());
    press({ u"x"_s });
    m_session->requestShutdown(SessionManager::Interaction::None);
    QTRY_COMPARE(m_session->log.size(), 1);
    QCOMPARE(m_session->log.constFirst(), u"saved"_s);
    m_session->endProgram();
    QTRY_VERIFY(hasEnded());
    QCOMPARE(program().exitStatus(), QProcess::NormalExit);
    QCOMPARE(read(u"a.txt"_s), QByteArray("old\n"));
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList{ u"xold\n"_s });
}

void LogoutTest::checkpointAsksAndEndsNothing()
{
    QVERIFY(startInSession());
    press({ u"x"_s });
    m_session->requestCheckpoint();
    QTRY_COMPARE(m_session->log.size(), 1);
    QVERIFY(isActive());
    press({ u"ctrl+s"_s });
    QTRY_COMPARE(read(u"a.txt"_s), QByteArray("xold\n"));
    QCOMPARE(m_session->log.size(), 1);
}

REGISTER_TEST(runCoreTest<LogoutTest>)
#include "logout_test.moc"
