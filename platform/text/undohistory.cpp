#include "platform/text/undohistory.h"
