#include "platform/qcop.h"
#include "tests/testprogram.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Takes every message on its own connection to the bus, as another program would.
class Listener : public QDBusVirtualObject {
public:
    explicit Listener(const QString &service)
        : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, service))
        , m_service(service)
    {
        m_bus.registerVirtualObject(u"/"_s, this, QDBusConnection::SubPath);
        m_bus.registerService(service);
    }
    ~Listener() override
    {
        m_bus.unregisterService(m_service);
        QDBusConnection::disconnectFromBus(m_service);
    }
    Listener(const Listener &) = delete;
    Listener &operator=(const Listener &) = delete;

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        messages << message;
        return true;
    }

    QList<QDBusMessage> messages;

private:
    QDBusConnection m_bus;
    QString m_service;
};

const QString channel = u"QPE/Application/corvex"_s;
const QString service = u"QPE.Application.corvex"_s;

} // namespace

class QCopTest : public QObject {
    Q_OBJECT
private slots:
    void names()
    {
        QCOMPARE(QCopChannel::service(channel), service);
        QCOMPARE(QCopChannel::path(channel), u"/QPE/Application/corvex"_s);
    }

    void isRegistered_followsTheListener()
    {
        QVERIFY(!QCopChannel::isRegistered(channel));
        {
            const Listener listener(service);
            QVERIFY(QCopChannel::isRegistered(channel));
            QVERIFY(!QCopChannel::isRegistered(u"QPE/Application/other"_s));
        }
        QVERIFY(!QCopChannel::isRegistered(channel));
    }

    void isRegistered_isFalseForImpossibleNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("empty") << QString();
        QTest::newRow("one part") << u"corvex"_s;
        QTest::newRow("blank") << u"QPE/Application/a b"_s;
        QTest::newRow("Japanese") << u"QPE/Application/編集"_s;
        QTest::newRow("empty part") << u"QPE//corvex"_s;
    }

    void isRegistered_isFalseForImpossibleNames()
    {
        QFETCH(QString, name);
        QVERIFY(!QCopChannel::isRegistered(name));
        QCopEnvelope(name, u"m(QString)"_s) << u"a"_s;
    }

    void envelope_callsTheMethod_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("method");
        QTest::addColumn<QStringList>("received");
        QTest::newRow("two strings") << u"refreshListItem(QString,QString)"_s
                                     << QStringList{ u"/home/user/"_s, u"名前.txt"_s } << u"refreshListItem"_s
                                     << QStringList{ u"/home/user/"_s, u"名前.txt"_s };
        QTest::newRow("none") << u"raise()"_s << QStringList() << u"raise"_s << QStringList();
        QTest::newRow("empty string")
            << u"m(QString)"_s << QStringList{ u""_s } << u"m"_s << QStringList{ u""_s };
        QTest::newRow("no parentheses") << u"m"_s << QStringList() << u"m"_s << QStringList();
        QTest::newRow("beyond U+FFFF")
            << u"m(QString)"_s << QStringList{ u"🐟"_s } << u"m"_s << QStringList{ u"🐟"_s };
        QTest::newRow("undecodable bytes") << u"m(QString)"_s
                                           << QStringList{ u"a\xDC83"
                                                           "b"_s }
                                           << u"m"_s
                                           << QStringList{ u"a\xFFFD"
                                                           "b"_s };
    }

    void envelope_callsTheMethod()
    {
        QFETCH(QString, message);
        QFETCH(QStringList, arguments);
        QFETCH(QString, method);
        QFETCH(QStringList, received);
        const Listener listener(service);
        {
            QCopEnvelope envelope(channel, message);
            for (const QString &argument : arguments)
                envelope << argument;
            QVERIFY(listener.messages.isEmpty());
        }
        QTRY_COMPARE(listener.messages.size(), 1);
        const QDBusMessage &call = listener.messages.first();
        QCOMPARE(call.member(), method);
        QCOMPARE(call.interface(), u"QPE.Application"_s);
        QCOMPARE(call.path(), u"/QPE/Application/corvex"_s);
        QCOMPARE(QVariant(call.arguments()).toStringList(), received);
        QVERIFY(!call.isReplyRequired());
    }

    void envelope_withoutListener_sendsNothing()
    {
        QCopEnvelope(channel, u"m(QString)"_s) << u"a"_s;
        const Listener listener(service);
        QCopEnvelope(channel, u"last()"_s);
        QTRY_COMPARE(listener.messages.size(), 1);
        QCOMPARE(listener.messages.first().member(), u"last"_s);
    }

    // The last save of a run is told as well.
    void envelope_ofAProgramThatEnds_arrives()
    {
        const Listener listener(service);
        QCOMPARE(
            QProcess::execute(QCoreApplication::applicationFilePath(), { u"qcop_test"_s, u"send"_s }), 0);
        QTRY_COMPARE(listener.messages.size(), 1);
        QCOMPARE(listener.messages.first().arguments(), QVariantList{ u"from a process"_s });
    }

    void withoutBus_nothingHappens_data()
    {
        QTest::addColumn<QString>("address");
        QTest::newRow("none") << QString();
        QTest::newRow("no such socket") << u"unix:path=/nonexistent/bus"_s;
        QTest::newRow("rubbish") << u"rubbish"_s;
    }

    void withoutBus_nothingHappens()
    {
        QFETCH(QString, address);
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(u"DBUS_SESSION_BUS_ADDRESS"_s);
        if (!address.isEmpty())
            environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, address);
        process.setProcessEnvironment(environment);
        process.start(QCoreApplication::applicationFilePath(), { u"qcop_test"_s, u"send"_s });
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 1);
        QCOMPARE(process.readAllStandardError(), QByteArray());
    }
};

// 0 when somebody listens.
static int sendOne()
{
    const bool isHeard = QCopChannel::isRegistered(channel);
    QCopEnvelope(channel, u"m(QString)"_s) << u"from a process"_s;
    return isHeard ? 0 : 1;
}

namespace {

int runQCopTest(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (application.arguments().contains(u"send"_s))
        return sendOne();
    QCopTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runQCopTest)

#include "qcop_test.moc"
