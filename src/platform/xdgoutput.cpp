#include "platform/xdgoutput.h"

#include <string_view>

namespace {

// The first version. A message has its name, a letter for the type of each argument, and the interfaces of
// those that are objects.
constexpr uint32_t version = 1;

const wl_interface *noObjects[] = { nullptr, nullptr };

const wl_message outputRequests[] = { { "destroy", "", noObjects } };
const wl_message outputEvents[] = {
    { "logical_position", "ii", noObjects },
    { "logical_size", "ii", noObjects },
    { "done", "", noObjects },
};
const wl_interface outputInterface = { "zxdg_output_v1", version, 1, outputRequests, 3, outputEvents };

const wl_interface *outputOfOutput[] = { &outputInterface, &wl_output_interface };
const wl_message managerRequests[] = {
    { "destroy", "", noObjects },
    { "get_xdg_output", "no", outputOfOutput },
};
constexpr uint32_t getOutput = 1;
const wl_interface managerInterface = { "zxdg_output_manager_v1", version, 2, managerRequests, 0, nullptr };

struct OutputListener {
    void (*position)(void *size, wl_proxy *output, int32_t x, int32_t y);
    void (*size)(void *size, wl_proxy *output, int32_t width, int32_t height);
    void (*done)(void *size, wl_proxy *output);
};

void takeSize(void *size, wl_proxy *, int32_t width, int32_t height)
{
    *static_cast<QSize *>(size) = QSize(width, height);
}

OutputListener listener = {
    [](void *, wl_proxy *, int32_t, int32_t) {},
    takeSize,
    [](void *, wl_proxy *) {},
};

} // namespace

WaylandProxy xdgOutputManager(wl_registry *registry, uint32_t name, const char *interface)
{
    void *const manager = interface == std::string_view(managerInterface.name)
        ? wl_registry_bind(registry, name, &managerInterface, version)
        : nullptr;
    return { static_cast<wl_proxy *>(manager), wl_proxy_destroy };
}

WaylandProxy askLogicalSize(wl_proxy *manager, wl_output *output, QSize &size)
{
    wl_proxy *const asked =
        wl_proxy_marshal_flags(manager, getOutput, &outputInterface, version, 0, nullptr, output);
    // The library takes functions of any type, in the order of the events.
    wl_proxy_add_listener(asked, reinterpret_cast<void (**)()>(&listener), &size);
    return { asked, wl_proxy_destroy };
}
