#pragma once

#include "text/textstore.h"

/// The next and the previous place the cursor may stand at in a whole text; stays at the ends. Looks at no
/// more than the characters around `offset`.
qint64 nextCursorStop(const TextStore &store, qint64 offset);
qint64 previousCursorStop(const TextStore &store, qint64 offset);
