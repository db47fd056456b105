#include "platform/sessionbus.h"

#include <QFileInfo>

namespace {

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
