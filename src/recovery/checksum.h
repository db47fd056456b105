#pragma once

#include <QByteArrayView>

/// Tells bytes that were changed or cut off; no guard against somebody who means to deceive. `seed` makes one
/// of what was before. Cost: memory speed.
quint64 checksumOf(QByteArrayView bytes, quint64 seed = 0);
