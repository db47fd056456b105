#pragma once

#include "editor/partwisetext.h"

struct BroughtText;

/// What a text that is brought from elsewhere becomes in a store: see TextExchange.
PartwiseText pasting(const TextStore &store, const BroughtText &brought);
