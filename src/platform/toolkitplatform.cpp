#include "platform/toolkitplatform.h"

#include "platform/framebuffer.h"
#include "platform/waylandscreen.h"

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

DisplayProbe::DisplayProbe()
    : m_xServer(nullptr, xcb_disconnect)
    , m_isThere(std::ranges::any_of(wantedPlatforms(), [this](const QByteArray &one) { return has(one); }))
{
}

bool DisplayProbe::hasXServer()
{
    m_xServer = connectToX();
    return xcb_connection_has_error(m_xServer.get()) == 0;
}

bool DisplayProbe::has(const QByteArray &platform)
{
    const QByteArray name = platform.split(':').front();
    if (name == "xcb")
        return hasXServer();
    if (name.startsWith("wayland"))
        return hasCompositor();
    return name != "linuxfb" || hasFrameBuffer(platform);
}
