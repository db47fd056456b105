#include "platform/waylandscreen.h"

#include "files/sharedfd.h"
#include "platform/xdgoutput.h"

#include <QByteArray>

#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

#include <sys/socket.h>
#include <sys/un.h>
#include <wayland-client.h>

namespace {

using WaylandConnection = std::unique_ptr<wl_display, decltype(&wl_display_disconnect)>;
using WaylandRegistry = std::unique_ptr<wl_registry, decltype(&wl_registry_destroy)>;
using WaylandOutput = std::unique_ptr<wl_output, decltype(&wl_output_destroy)>;

struct Output {
    WaylandOutput handle{ nullptr, wl_output_destroy };
    QSize mode; ///< in device pixels, as the device has them
    bool isTurned = false; ///< by a quarter
    int scale = 1;
    WaylandProxy logical{ nullptr, wl_proxy_destroy };
    QSize logicalSize; ///< as the compositor tells it, with scales that are no integers
};

struct Screens {
    std::vector<std::unique_ptr<Output>> outputs; // the listeners hold their addresses
    WaylandProxy manager{ nullptr, wl_proxy_destroy };
};

Output &outputOf(void *output)
{
    return *static_cast<Output *>(output);
}

bool isQuarterTurn(int transform)
{
    return transform == WL_OUTPUT_TRANSFORM_90 || transform == WL_OUTPUT_TRANSFORM_270
        || transform == WL_OUTPUT_TRANSFORM_FLIPPED_90 || transform == WL_OUTPUT_TRANSFORM_FLIPPED_270;
}

void takeGeometry(void *output, wl_output *, int32_t, int32_t, int32_t, int32_t, int32_t, const char *,
    const char *, int32_t transform)
{
    outputOf(output).isTurned = isQuarterTurn(transform);
}

void takeMode(void *output, wl_output *, uint32_t flags, int32_t width, int32_t height, int32_t)
{
    if (flags & WL_OUTPUT_MODE_CURRENT)
        outputOf(output).mode = QSize(width, height);
}

void takeScale(void *output, wl_output *, int32_t scale)
{
    outputOf(output).scale = qMax(1, scale);
}

constexpr uint32_t outputVersion = 2; // the first that tells the scale

// What later versions tell does not come.
wl_output_listener outputListener()
{
    wl_output_listener told{};
    told.geometry = takeGeometry;
    told.mode = takeMode;
    told.done = [](void *, wl_output *) {};
    told.scale = takeScale;
    return told;
}

void addOutput(Screens &screens, wl_registry *registry, uint32_t name, uint32_t version)
{
    static const wl_output_listener told = outputListener();
    auto output = std::make_unique<Output>();
    void *const handle = wl_registry_bind(registry, name, &wl_output_interface, qMin(version, outputVersion));
    output->handle.reset(static_cast<wl_output *>(handle));
    wl_output_add_listener(output->handle.get(), &told, output.get());
    screens.outputs.push_back(std::move(output));
}

void takeGlobal(void *screens, wl_registry *registry, uint32_t name, const char *interface, uint32_t version)
{
    auto &found = *static_cast<Screens *>(screens);
    if (interface == std::string_view(wl_output_interface.name))
        addOutput(found, registry, name, version);
    else if (WaylandProxy manager = xdgOutputManager(registry, name, interface))
        found.manager = std::move(manager);
}

void askLogicalSizes(const Screens &screens)
{
    for (const auto &output : screens.outputs)
        output->logical = askLogicalSize(screens.manager.get(), output->handle.get(), output->logicalSize);
}

QSize sizeOf(const Output &output)
{
    if (!output.logicalSize.isEmpty())
        return output.logicalSize;
    return (output.isTurned ? output.mode.transposed() : output.mode) / output.scale;
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

bool isConnectionHandedOver()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_SOCKET");
}

} // namespace

QSize waylandScreenSize()
{
    // The library speaks up on standard error where there is none.
    if (isConnectionHandedOver() || !hasCompositor())
        return {};
    const WaylandConnection compositor(wl_display_connect(nullptr), wl_display_disconnect);
    if (!compositor)
        return {};
    const WaylandRegistry registry(wl_display_get_registry(compositor.get()), wl_registry_destroy);
    Screens screens;
    const wl_registry_listener told{ takeGlobal, [](void *, wl_registry *, uint32_t) {} };
    wl_registry_add_listener(registry.get(), &told, &screens);
    wl_display_roundtrip(compositor.get());
    if (screens.manager)
        askLogicalSizes(screens);
    wl_display_roundtrip(compositor.get());
    QSize room;
    for (const auto &output : screens.outputs) {
        const QSize size = sizeOf(*output);
        if (!size.isEmpty())
            room = room.isEmpty() ? size : room.boundedTo(size);
    }
    return room;
}

// As the library of Wayland finds it.
bool hasCompositor()
{
    if (isConnectionHandedOver())
        return true;
    const QByteArray given = qgetenv("WAYLAND_DISPLAY");
    const QByteArray name = given.isEmpty() ? QByteArray("wayland-0") : given;
    return isAnswered(name.startsWith('/') ? name : qgetenv("XDG_RUNTIME_DIR") + '/' + name);
}
