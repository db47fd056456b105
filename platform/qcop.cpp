#include "platform/qcop.h"
