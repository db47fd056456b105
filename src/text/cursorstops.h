#pragma once

#include "text/textstore.h"

/// The next and the previous place the cursor may stand at in a whole text; stays at the ends. Looks at no
/// more than the characters around `offset`.
Offset nextCursorStop(const TextStore &store, Offset offset);
Offset previousCursorStop(const TextStore &store, Offset offset);
