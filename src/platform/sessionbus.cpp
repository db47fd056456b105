#include "platform/sessionbus.h"

#include <QDBusMessage>
#include <QFileInfo>

namespace {

constexpr int busTimeout = 500; // ms
constexpr uint queued = 0;
constexpr uint doNotQueue = 4;
constexpr uint primaryOwner = 1;

bool hasAddress()
{
    if (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS"))
        return true;
    const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtimeFolder.isEmpty() && QFileInfo::exists(runtimeFolder + QLatin1String("/bus"));
}

} // namespace

std::optional<QDBusConnection> sessionBus()
{
    if (!hasAddress())
        return std::nullopt;
    QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

QVariantList askBus(const QDBusConnection &bus, const QString &method, const QVariantList &arguments)
{
    const QString busName = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage question =
        QDBusMessage::createMethodCall(busName, QStringLiteral("/org/freedesktop/DBus"), busName, method);
    question.setArguments(arguments);
    const QDBusMessage answer = bus.call(question, QDBus::Block, busTimeout);
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments() : QVariantList();
}

bool ownBusName(const QDBusConnection &bus, const QString &name, WhenTaken whenTaken)
{
    const uint flags = whenTaken == WhenTaken::Wait ? queued : doNotQueue;
    return askBus(bus, QStringLiteral("RequestName"), { name, flags }).value(0) == primaryOwner;
}

void giveUpBusName(const QDBusConnection &bus, const QString &name)
{
    askBus(bus, QStringLiteral("ReleaseName"), { name });
}
