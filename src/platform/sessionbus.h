#pragma once

#include <QDBusConnection>

#include <optional>

/// The session bus, connected to at the first call; nothing where no bus runs. Never starts a bus, as the bus
/// library would where no address is given: that takes long and leaves a bus behind that nobody else is on.
std::optional<QDBusConnection> sessionBus();
