#include "platform/toolkitplatform.h"

#include "platform/framebuffer.h"
#include "platform/waylandscreen.h"
#include "platform/windowsystem.h"

#include <xcb/xcb.h>

#include <algorithm>

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
