#include "platform/windowmanager.h"

#include "platform/windowsystem.h"

#include <QByteArrayView>

#include <xcb/xcb.h>

namespace {

xcb_atom_t atomOf(xcb_connection_t *server, QByteArrayView name)
{
    const auto cookie = xcb_intern_atom(server, true, uint16_t(name.size()), name.data());
    const auto reply = xReply(xcb_intern_atom_reply(server, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

/// The window that the property of a window names; none where there is no such property.
xcb_window_t namedWindow(xcb_connection_t *server, xcb_window_t window, xcb_atom_t property)
{
    const auto cookie = xcb_get_property(server, 0, window, property, XCB_ATOM_WINDOW, 0, 1);
    const auto reply = xReply(xcb_get_property_reply(server, cookie, nullptr));
    if (!reply || xcb_get_property_value_length(reply.get()) != sizeof(xcb_window_t))
        return XCB_WINDOW_NONE;
    return *static_cast<const xcb_window_t *>(xcb_get_property_value(reply.get()));
}

/// One that has died leaves its name at the root window, but not at its own.
bool hasManager(xcb_connection_t *server)
{
    const xcb_atom_t check = atomOf(server, "_NET_SUPPORTING_WM_CHECK");
    if (check == XCB_ATOM_NONE)
        return false;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
    const xcb_window_t manager = namedWindow(server, root, check);
    return manager != XCB_WINDOW_NONE && namedWindow(server, manager, check) == manager;
}

} // namespace

bool WindowManager::isPresent()
{
    xcb_connection_t *const server = WindowSystem::xServer();
    return server ? hasManager(server) : WindowSystem::isWayland();
}
