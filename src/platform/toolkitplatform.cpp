#include "platform/toolkitplatform.h"

#include "files/sharedfd.h"
#include "platform/framebuffer.h"
#include "platform/windowsystem.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>

namespace {

struct PlatformWord {
    QByteArrayView option;
    const char *variable;
};
constexpr PlatformWord platformWords[] = {
    { "-platform", "QT_QPA_PLATFORM" },
    { "-display", "DISPLAY" },
};

bool hasXServer()
{
    const XConnection server = connectToX();
    return xcb_connection_has_error(server.get()) == 0;
}

bool isAnswered(const QByteArray &socketName)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (socketName.size() >= qsizetype(sizeof address.sun_path))
        return false;
    std::memcpy(address.sun_path, socketName.constData(), size_t(socketName.size()));
    const OpenFd end(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    return end.number() != -1
        && ::connect(end.number(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
}

/// As the library of Wayland finds it.
bool hasCompositor()
{
    if (!qEnvironmentVariableIsEmpty("WAYLAND_SOCKET"))
        return true;
    const QByteArray given = qgetenv("WAYLAND_DISPLAY");
    const QByteArray name = given.isEmpty() ? QByteArray("wayland-0") : given;
    return isAnswered(name.startsWith('/') ? name : qgetenv("XDG_RUNTIME_DIR") + '/' + name);
}

bool isThere(const QByteArray &platform)
{
    const QByteArray name = platform.split(':').front();
    if (name == "xcb")
        return hasXServer();
    if (name.startsWith("wayland"))
        return hasCompositor();
    return name != "linuxfb" || hasFrameBuffer(platform);
}

} // namespace

void takePlatformWords(const QList<QByteArray> &toolkitWords)
{
    for (qsizetype i = 0; i + 1 < toolkitWords.size(); ++i) {
        for (const auto &[option, variable] : platformWords) {
            if (toolkitWords[i] == option || toolkitWords[i] == '-' + option.toByteArray())
                qputenv(variable, toolkitWords[i + 1]);
        }
    }
}

QList<QByteArray> wantedPlatforms()
{
    const QByteArray asked = qgetenv("QT_QPA_PLATFORM");
    if (!asked.isEmpty())
        return asked.split(';');
    const QByteArray desktop = (qgetenv("XDG_CURRENT_DESKTOP") + qgetenv("XDG_SESSION_DESKTOP")).toLower();
    const bool isWayland = qgetenv("XDG_SESSION_TYPE") == "wayland" && !desktop.contains("gnome");
    return isWayland ? QList<QByteArray>{ "wayland", "xcb" } : QList<QByteArray>{ "xcb", "wayland" };
}

bool hasDisplay()
{
    return std::ranges::any_of(wantedPlatforms(), isThere);
}
