#pragma once

#include <QDBusConnection>
#include <QVariantList>

#include <optional>

/// The session bus, connected to at the first call; nothing where no bus runs. Never starts a bus, as the bus
/// library would where no address is given: that takes long and leaves a bus behind that nobody else is on.
std::optional<QDBusConnection> sessionBus();

/// What to do about a name that another process has.
enum class WhenTaken { GiveUp, Wait };
/// Takes a name on the bus. False when another process has it; it comes to this one when that is gone, where
/// it is waited for. Blocks half a second at most; the toolkit's own function has no end.
bool ownBusName(const QDBusConnection &bus, const QString &name, WhenTaken whenTaken);

/// Gives a name up that this process has or waits for. Blocks half a second at most.
void giveUpBusName(const QDBusConnection &bus, const QString &name);

/// Asks the bus itself, as about the owner of a name: the arguments of its answer, none where it does not
/// answer within half a second. Blocks so long.
QVariantList askBus(const QDBusConnection &bus, const QString &method, const QVariantList &arguments = {});
