#include "platform/resource.h"
