#include "tests/platform/programrole.h"
#include "tests/testprogram.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// As a desktop calls the program, with an empty account of itself.
QDBusMessage desktopCall(const QString &method, QVariantList arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(u"example.marlopad.marlopad"_s,
        u"/example/marlopad/marlopad"_s, u"org.freedesktop.Application"_s, method);
    call.setArguments(arguments << QVariantMap());
    return call;
}

bool callFromDesktop(const QString &method, const QVariantList &arguments = {})
{
    const QDBusMessage call = desktopCall(method, arguments);
    return QDBusConnection::sessionBus().call(call).type() == QDBusMessage::ReplyMessage;
}

} // namespace

/// What a desktop asks of the program that runs, over the session bus.
class DesktopChannelTest : public QObject {
    Q_OBJECT
private slots:
    void opensFiles();
    void showsTheWindow();
    void hasActions_data();
    void hasActions();
    void duringTheQuestion_waits();
};

void DesktopChannelTest::opensFiles()
{
    Role role({ u"run"_s });
    QVERIFY(role.startsAndPrints("ready"));
    const QStringList addresses{ u"file:///a%20b.txt"_s, u"https://x.example/"_s, u"file:///%83e"_s };
    QVERIFY(callFromDesktop(u"Open"_s, { addresses }));
    QVERIFY(role.prints("document /a b.txt"));
    QVERIFY(role.prints("document /\\udc83e"));
    QVERIFY(role.prints("elsewhere https://x.example/"));
}

void DesktopChannelTest::showsTheWindow()
{
    Role role({ u"run"_s, u"minimized"_s });
    QVERIFY(role.startsAndPrints("ready"));
    QVERIFY(callFromDesktop(u"Activate"_s));
    QVERIFY(role.prints("shown"));
}

void DesktopChannelTest::hasActions_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QByteArray>("printed"); // empty: there is no such action
    QTest::newRow("new document") << u"new-document"_s << QByteArray("document");
    QTest::newRow("recent files") << u"recent-files"_s << QByteArray("recent");
    QTest::newRow("another") << u"other"_s << QByteArray();
}

void DesktopChannelTest::hasActions()
{
    QFETCH(QString, action);
    QFETCH(QByteArray, printed);
    Role role({ u"run"_s });
    QVERIFY(role.startsAndPrints("ready"));
    QCOMPARE(callFromDesktop(u"ActivateAction"_s, { action, QVariantList() }), !printed.isEmpty());
    QVERIFY(printed.isEmpty() || role.prints(printed));
}

/// The desktop hears what became of its files, as every giver does.
void DesktopChannelTest::duringTheQuestion_waits()
{
    Role role({ u"ask"_s });
    QVERIFY(role.startsAndPrints("ready"));
    const QDBusPendingCall answer = QDBusConnection::sessionBus().asyncCall(
        desktopCall(u"Open"_s, { QStringList{ u"file:///a"_s, u"file:///b"_s } }));
    QVERIFY(role.prints("shown"));
    QVERIFY(!answer.isFinished());
    QVERIFY(role.tells("stay\n"));
    QVERIFY(role.prints("document /a"));
    QVERIFY(role.prints("document /b"));
    QTRY_VERIFY(answer.isFinished());
    QVERIFY(!answer.isError());
}

REGISTER_TEST(runCoreTest<DesktopChannelTest>)

#include "desktopchannel_test.moc"
