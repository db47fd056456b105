#include "platform/screenscale.h"

#include "platform/framebuffer.h"
#include "platform/toolkitplatform.h"
#include "platform/waylandscreen.h"
#include "platform/windowsystem.h"

#include <QList>

#include <xcb/xcb.h>

#include <algorithm>

namespace {

constexpr double pointsPerInch = 72;
constexpr double usualDensity = 96;
constexpr double leastScale = 1; ///< below it the toolkit leaves parts of windows unpainted
constexpr int titleBar = 24; ///< of a usual window manager, in device pixels

struct Screen {
    double density = usualDensity;
    QSize size; ///< in device pixels, on Wayland over the screen's own scale
};

QByteArray resourcesOf(xcb_connection_t *server, xcb_window_t root)
{
    constexpr uint32_t most = 256 * 1024; // in units of four bytes
    const auto cookie =
        xcb_get_property(server, 0, root, XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, 0, most);
    const auto reply = xReply(xcb_get_property_reply(server, cookie, nullptr));
    if (!reply)
        return {};
    return { static_cast<const char *>(xcb_get_property_value(reply.get())),
        xcb_get_property_value_length(reply.get()) };
}

// The resource database is the first screen's, as all X toolkits take it.
Screen xScreen()
{
    const XConnection server = connectToX();
    if (xcb_connection_has_error(server.get()))
        return {};
    const xcb_screen_t &first = *xcb_setup_roots_iterator(xcb_get_setup(server.get())).data;
    return { densityFromResources(resourcesOf(server.get(), first.root)).value_or(usualDensity),
        { first.width_in_pixels, first.height_in_pixels } };
}

QSize sizeOn(const QByteArray &platform)
{
    const QByteArray name = platform.split(':').front();
    if (name.startsWith("wayland"))
        return waylandScreenSize();
    return name == "linuxfb" ? frameBufferSize(platform) : QSize();
}

// Wayland multiplies by the screen's own scale.
Screen screenOf(const QByteArray &platform)
{
    if (platform.split(':').front() == "xcb")
        return xScreen();
    return { usualDensity, sizeOn(platform) };
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

double scaleThatFits(double scale, const QSize &screen, const QSize &window)
{
    if (screen.isEmpty() || window.isEmpty())
        return scale;
    return std::min({ scale, double(screen.width()) / window.width(),
        double(qMax(1, screen.height() - titleBar)) / window.height() });
}

double platformPixelScale(const QSize &largestWindow)
{
    const QByteArray platform = wantedPlatforms().front();
    if (platform.startsWith("offscreen") || platform.startsWith("minimal"))
        return 1;
    const Screen screen = screenOf(platform);
    return std::max(leastScale, scaleThatFits(screen.density / pointsPerInch, screen.size, largestWindow));
}
