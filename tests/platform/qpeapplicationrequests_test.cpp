#include "platform/qcop.h"
#include "tests/platform/programrole.h"
#include "tests/testprogram.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusUnixFileDescriptor>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

const QString ownChannel = u"QPE/Application/marlopad"_s;

bool callOwnChannel(const QString &method, const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"QPE.Application.marlopad"_s, u"/QPE/Application/marlopad"_s, u"QPE.Application"_s, method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call).type() == QDBusMessage::ReplyMessage;
}

} // namespace

/// What comes to the application from outside: second starts, and messages of other programs.
class QPEApplicationRequestsTest : public QObject {
    Q_OBJECT
private slots:
    void secondStart_handsOver_data();
    void secondStart_handsOver();
    void secondStart_withManyFiles_handsThemOverAtOnce();
    void secondStart_withUndecodableName_handsOver();
    void secondStart_handsOverWhatComesBesideTheName();
    void secondStart_withoutFile_showsTheWindow();
    void secondStart_duringTheQuestion_waits_data();
    void secondStart_duringTheQuestion_waits();
    void secondStart_refused_takesTheChannel();
    void secondStarts_refused_areOneProgram();
    void secondStarts_besideDyingInstance_areOneProgram();
    void start_besideEndedInstance_takesTheChannel();
    void start_opensItsOwnFiles();
    void start_withoutBus_runs();
    void start_besideHungInstance_runs();
    void start_afterTheOtherEnded_takesTheChannel();
    void message_opensTheDocument_data();
    void message_opensTheDocument();
    void message_followsLinks();
    void message_ofSeveralDocuments_isTakenAsAWhole();
};

void QPEApplicationRequestsTest::secondStart_handsOver_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QList<QByteArray>>("received"); // "." for the folder of the second start
    QTest::newRow("absolute") << QStringList{ u"/a b.txt"_s } << QList<QByteArray>{ "/a b.txt" };
    QTest::newRow("relative") << QStringList{ u"b.txt"_s } << QList<QByteArray>{ "./b.txt" };
    QTest::newRow("dots") << QStringList{ u"./sub/../c.txt"_s } << QList<QByteArray>{ "./c.txt" };
    QTest::newRow("through a link's folder")
        << QStringList{ u"link/../d.txt"_s } << QList<QByteArray>{ "./far/d.txt" };
    QTest::newRow("several") << QStringList{ u"1"_s, u"2"_s, u"1"_s }
                             << QList<QByteArray>{ "./1", "./2", "./1" };
    QTest::newRow("Japanese") << QStringList{ u"あ"_s } << QList<QByteArray>{ "./\\u3042" };
    QTest::newRow("looks like an address") << QStringList{ u"file:"_s } << QList<QByteArray>{ "./file:" };
    QTest::newRow("percent") << QStringList{ u"50%41"_s } << QList<QByteArray>{ "./50%41" };
    QTest::newRow("begins with a dash") << QStringList{ u"-x"_s } << QList<QByteArray>{ "./-x" };
}

void QPEApplicationRequestsTest::secondStart_handsOver()
{
    QFETCH(QStringList, arguments);
    QFETCH(QList<QByteArray>, received);
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath(u"sub"_s) && QDir(folder.path()).mkpath(u"far/target"_s));
    QVERIFY(QFile::link(folder.filePath(u"far/target"_s), folder.filePath(u"link"_s)));
    Role first({ u"run"_s });
    QVERIFY(first.startsAndPrints("ready"));
    Role second(QStringList{ u"run"_s } + arguments, folder.path());
    QCOMPARE(second.run(), 0);
    QCOMPARE(second.readAllStandardOutput(), QByteArray("handed over\n"));
    for (const QByteArray &name : received) {
        const QByteArray full =
            name.startsWith('.') ? QFile::encodeName(folder.path()) + name.sliced(1) : name;
        QVERIFY2(first.prints("document " + full), full.constData());
    }
}

/// All of them wait before the first is opened, as those of a first start do.
void QPEApplicationRequestsTest::secondStart_withManyFiles_handsThemOverAtOnce()
{
    Role first({ u"run"_s });
    QVERIFY(first.startsAndPrints("ready"));
    QStringList arguments{ u"run"_s };
    QByteArray expected = "\n";
    constexpr int many = 200;
    for (int number = 1; number <= many; ++number) {
        arguments << u"/%1"_s.arg(number);
        expected += QStringLiteral("document /%1\nwaiting %2\n").arg(number).arg(many - number).toLatin1();
    }
    Role second(arguments);
    QCOMPARE(second.run(), 0);
    QVERIFY(first.prints(expected.trimmed()));
}

void QPEApplicationRequestsTest::secondStart_withUndecodableName_handsOver()
{
    Role first({ u"run"_s });
    QVERIFY(first.startsAndPrints("ready"));
    Role second({});
    second.setArguments(
        { u"-c"_s, u"exec \"$0\" qpeapplication_test run /caf\351.txt \"$(printf '/%%\\203e\\300\\212')\""_s,
            QCoreApplication::applicationFilePath() });
    second.setProgram(u"/bin/sh"_s);
    QCOMPARE(second.run(), 0);
    QVERIFY(first.prints("document /caf\\ue9.txt"));
    QVERIFY(first.prints("document /%\\udc83e\\udcc0\\udc8a"));
}

/// A file to be read and somebody who waits go over the bus as what they are.
void QPEApplicationRequestsTest::secondStart_handsOverWhatComesBesideTheName()
{
    Role first({ u"run"_s });
    QVERIFY(first.startsAndPrints("ready"));
    Role second({ u"rich"_s });
    QCOMPARE(second.run(), 0);
    QCOMPARE(second.readAllStandardOutput(), QByteArray("handed over\ntold\n"));
    QVERIFY(first.prints("document /a"));
    QVERIFY(first.prints("with 7 3 2 "));
    QVERIFY(first.prints("with 1 1 0 input"));
}

void QPEApplicationRequestsTest::secondStart_withoutFile_showsTheWindow()
{
    Role first({ u"run"_s, u"minimized"_s });
    QVERIFY(first.startsAndPrints("ready"));
    Role second({ u"run"_s });
    QCOMPARE(second.run(), 0);
    QVERIFY(first.prints("shown"));
}

void QPEApplicationRequestsTest::secondStart_duringTheQuestion_waits_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("the program stays") << QByteArray("stay\n") << true;
    QTest::newRow("the program ends") << QByteArray("end\n") << false;
    QTest::newRow("the program is killed") << QByteArray() << false;
}

/// One process opens each file, whatever the user answers.
void QPEApplicationRequestsTest::secondStart_duringTheQuestion_waits()
{
    QFETCH(QByteArray, answer);
    QFETCH(bool, isTaken);
    Role first({ u"ask"_s });
    QVERIFY(first.startsAndPrints("ready"));
    Role second({ u"run"_s, u"/a"_s, u"/b"_s });
    second.start();
    QVERIFY(second.waitForStarted());
    QVERIFY(first.prints("shown"));
    if (answer.isEmpty())
        first.kill();
    else
        QVERIFY(first.tells(answer));
    Role &opening = isTaken ? first : second;
    QVERIFY(opening.prints("document /a"));
    QVERIFY(opening.prints("document /b"));
    if (!isTaken) {
        QVERIFY(!first.prints("document /a"));
        QCOMPARE(first.state(), QProcess::NotRunning);
        return;
    }
    QVERIFY(second.prints("handed over"));
    QVERIFY(second.waitForFinished());
    QCOMPARE(second.exitCode(), 0);
}

void QPEApplicationRequestsTest::secondStart_refused_takesTheChannel()
{
    Role first({ u"ask"_s });
    QVERIFY(first.startsAndPrints("ready"));
    Role second({ u"run"_s, u"/a"_s });
    second.start();
    QVERIFY(second.waitForStarted());
    QVERIFY(first.prints("shown"));
    QVERIFY(first.tells("end\n"));
    QVERIFY(second.prints("document /a"));
    QVERIFY(first.waitForFinished());
    Role third({ u"run"_s, u"/c"_s });
    QCOMPARE(third.run(), 0);
    QVERIFY(second.prints("document /c"));
}

/// Whichever is the first takes the others' files.
void QPEApplicationRequestsTest::secondStarts_refused_areOneProgram()
{
    Role first({ u"ask"_s });
    QVERIFY(first.startsAndPrints("ready"));
    Role second({ u"run"_s, u"/a"_s });
    Role third({ u"run"_s, u"/b"_s });
    for (Role *const role : { &second, &third })
        role->start();
    QVERIFY(first.prints("shown"));
    QVERIFY(first.prints("asked twice"));
    QVERIFY(first.tells("end\n"));
    QTRY_VERIFY(second.state() == QProcess::NotRunning || third.state() == QProcess::NotRunning);
    Role &opening = second.state() == QProcess::NotRunning ? third : second;
    QVERIFY(opening.prints("document /a"));
    QVERIFY(opening.prints("document /b"));
    QCOMPARE(opening.state(), QProcess::Running);
}

/// Who is killed answers nobody while the system frees its memory.
void QPEApplicationRequestsTest::secondStarts_besideDyingInstance_areOneProgram()
{
    Role first({ u"mute"_s });
    QVERIFY(first.startsAndPrints("ready"));
    Role second({ u"run"_s });
    Role third({ u"run"_s, u"/b"_s });
    for (Role *const role : { &second, &third })
        role->start();
    QVERIFY(first.prints("asked twice"));
    first.kill();
    QTRY_VERIFY(second.state() == QProcess::NotRunning || third.state() == QProcess::NotRunning);
    Role &opening = second.state() == QProcess::NotRunning ? third : second;
    QVERIFY(opening.prints("document /b"));
    QCOMPARE(opening.state(), QProcess::Running);
}

/// Whom a signal has ended is there until its memory is free.
void QPEApplicationRequestsTest::start_besideEndedInstance_takesTheChannel()
{
    Role first({ u"full"_s });
    QVERIFY(first.startsAndPrints("ready"));
    ::kill(static_cast<pid_t>(first.processId()), SIGTERM);
    QVERIFY(first.prints("leaves"));
    Role second({ u"run"_s, u"/a"_s });
    QVERIFY(second.startsAndPrints("document /a"));
    Role third({ u"run"_s, u"/b"_s });
    QCOMPARE(third.run(), 0);
    QVERIFY(second.prints("document /b"));
    const auto process = [](const QString &name) {
        return qint64(QDBusConnection::sessionBus().interface()->servicePid(name).value());
    };
    QCOMPARE(process(u"QPE.Application.marlopad"_s), second.processId());
    QCOMPARE(process(u"example.marlopad.marlopad"_s), second.processId());
    QCOMPARE(first.state(), QProcess::Running);
}

void QPEApplicationRequestsTest::start_opensItsOwnFiles()
{
    Role role({ u"run"_s, u"/a"_s, u"/b"_s });
    QVERIFY(role.startsAndPrints("document /a"));
    QVERIFY(role.prints("document /b"));
}

void QPEApplicationRequestsTest::start_withoutBus_runs()
{
    Role role({ u"run"_s, u"/a"_s });
    role.setVariable(u"DBUS_SESSION_BUS_ADDRESS"_s, QString());
    QVERIFY(role.startsAndPrints("document /a"));
    Role other({ u"run"_s, u"/b"_s });
    other.setVariable(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent/bus"_s);
    QVERIFY(other.startsAndPrints("document /b"));
}

void QPEApplicationRequestsTest::start_besideHungInstance_runs()
{
    Role first({ u"run"_s });
    QVERIFY(first.startsAndPrints("ready"));
    ::kill(static_cast<pid_t>(first.processId()), SIGSTOP);
    Role second({ u"run"_s, u"/a"_s });
    QVERIFY(second.startsAndPrints("document /a"));
    ::kill(static_cast<pid_t>(first.processId()), SIGCONT);
}

void QPEApplicationRequestsTest::start_afterTheOtherEnded_takesTheChannel()
{
    {
        Role first({ u"run"_s });
        QVERIFY(first.startsAndPrints("ready"));
    }
    Role second({ u"run"_s });
    QVERIFY(second.startsAndPrints("ready"));
    QVERIFY(QCopChannel::isRegistered(ownChannel));
}

void QPEApplicationRequestsTest::message_opensTheDocument_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("opened"); // empty: refused
    QTest::newRow("absolute") << u"/a.txt"_s << QByteArray("/a.txt");
    QTest::newRow("address") << u"file:///a%20b.txt"_s << QByteArray("/a b.txt");
    QTest::newRow("address of undecodable bytes") << u"file:///%83e"_s << QByteArray("/\\udc83e");
    QTest::newRow("relative") << u"a.txt"_s << QByteArray();
    QTest::newRow("empty") << QString() << QByteArray();
    QTest::newRow("other scheme") << u"http://host/a"_s << QByteArray();
    QTest::newRow("address on a host") << u"file://host/a"_s << QByteArray();
}

void QPEApplicationRequestsTest::message_opensTheDocument()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, opened);
    Role role({ u"run"_s });
    QVERIFY(role.startsAndPrints("ready"));
    QCOMPARE(callOwnChannel(u"setDocument"_s, { name }), !opened.isEmpty());
    QCopEnvelope(ownChannel, u"setDocument(QString)"_s) << u"/last"_s;
    QVERIFY(opened.isEmpty() || role.prints("document " + opened));
    QVERIFY(role.prints("document /last"));
}

void QPEApplicationRequestsTest::message_followsLinks()
{
    const QTemporaryDir made;
    const QString folder = QFileInfo(made.path()).canonicalFilePath();
    QVERIFY(QDir(folder).mkpath(u"a/b"_s));
    QVERIFY(QFile::link(folder + u"/a/b"_s, folder + u"/link"_s));
    Role role({ u"run"_s });
    QVERIFY(role.startsAndPrints("ready"));
    QVERIFY(callOwnChannel(u"setDocument"_s, { folder + u"/link/../x.txt"_s }));
    QVERIFY(role.prints("document " + folder.toUtf8() + "/a/x.txt"));
}

void QPEApplicationRequestsTest::message_ofSeveralDocuments_isTakenAsAWhole()
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
    Role role({ u"run"_s });
    QVERIFY(role.startsAndPrints("ready"));
    const auto isTaken = [](const QStringList &names) {
        QList<QVariantMap> documents;
        for (const QString &name : names)
            documents << QVariantMap{ { u"name"_s, name } };
        return callOwnChannel(u"openFromShell"_s,
            { QVariant::fromValue(documents), QVariant::fromValue(QList<QDBusUnixFileDescriptor>()) });
    };
    QVERIFY(!isTaken({ u"/a"_s, u"relative"_s }));
    QVERIFY(isTaken({ u"/b"_s, u"/c"_s }));
    QVERIFY(role.prints("ready\ndocument /b\nwaiting 1\ndocument /c\nwaiting 0"));
}

REGISTER_TEST(runCoreTest<QPEApplicationRequestsTest>)
#include "qpeapplicationrequests_test.moc"
