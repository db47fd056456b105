#pragma once

#include "files/filecalls.h"

#include <QByteArray>

#include <optional>

/// Why a save of a file that is there would fail, as far as can be told before.
enum class WriteObstacle {
    NotAllowed, ///< to this user, or to anybody
    ReadOnlyDisk,
    FullDisk, ///< or nearly so: another file of that size has no room
};

/// Two calls; nothing is opened. Nothing also where the disk does not say.
std::optional<WriteObstacle> writeObstacle(
    const QByteArray &name, const FileCalls &calls = FileCalls::system());
