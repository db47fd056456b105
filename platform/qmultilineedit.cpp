#include "platform/qmultilineedit.h"
