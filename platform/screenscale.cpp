#include "platform/screenscale.h"

#include <QList>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace {

constexpr double pointsPerInch = 72;
constexpr double usualDensity = 96;

// The resource database is the first screen's, as all X toolkits take it.
QByteArray readResources()
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> server(
        xcb_connect(nullptr, nullptr), xcb_disconnect);
    if (xcb_connection_has_error(server.get()))
        return {};
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server.get())).data->root;
    constexpr uint32_t most = 256 * 1024; // in units of four bytes
    const auto cookie =
        xcb_get_property(server.get(), 0, root, XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 0, most);
    const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
        xcb_get_property_reply(server.get(), cookie, nullptr), std::free);
    if (!reply)
        return {};
    return { static_cast<const char *>(xcb_get_property_value(reply.get())),
        xcb_get_property_value_length(reply.get()) };
}

// The toolkit's own choice: what is asked for, else Wayland in a Wayland session except GNOME's, else X.
QByteArray platformName()
{
    const QByteArray asked = qgetenv("QT_QPA_PLATFORM");
    if (!asked.isEmpty())
        return asked.split(';').front().split(':').front();
    const QByteArray desktop = (qgetenv("XDG_CURRENT_DESKTOP") + qgetenv("XDG_SESSION_DESKTOP")).toLower();
    const bool isWayland = qgetenv("XDG_SESSION_TYPE") == "wayland" && !desktop.contains("gnome");
    return isWayland ? "wayland" : "xcb";
}

} // namespace

std::optional<double> densityFromResources(const QByteArray &resources)
{
    constexpr QByteArrayView name = "Xft.dpi:";
    for (const QByteArray &line : resources.split('\n')) {
        if (!line.startsWith(name))
            continue;
        bool isNumber = false;
        const double density = line.sliced(name.size()).trimmed().toDouble(&isNumber);
        if (isNumber && density >= 24 && density <= 2400)
            return density;
    }
    return std::nullopt;
}

double platformPixelScale()
{
    const QByteArray platform = platformName();
    if (platform.startsWith("offscreen") || platform.startsWith("minimal"))
        return 1;
    // Wayland multiplies by the screen's own scale; the frame buffer has nobody to ask.
    const double density =
        platform == "xcb" ? densityFromResources(readResources()).value_or(usualDensity) : usualDensity;
    return density / pointsPerInch;
}
