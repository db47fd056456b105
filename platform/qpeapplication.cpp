#include "platform/qpeapplication.h"
