#pragma once

#include <QSize>

#include <memory>

#include <wayland-client.h>

/// What a Wayland compositor tells of its screens as windows see them: of its protocol "xdg_output" what is
/// asked here.

using WaylandProxy = std::unique_ptr<wl_proxy, decltype(&wl_proxy_destroy)>;

/// Whom to ask, where a registry announces it: `interface` under the number `name`. Null where that is
/// another.
WaylandProxy xdgOutputManager(wl_registry *registry, uint32_t name, const char *interface);

/// Asks for the size of a screen in the units of its windows. The answer goes to `size`, until what is
/// returned goes.
WaylandProxy askLogicalSize(wl_proxy *manager, wl_output *output, QSize &size);
