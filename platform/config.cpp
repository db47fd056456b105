#include "platform/config.h"
