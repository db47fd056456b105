#include "platform/rowlayout.h"
