#include "platform/text/advancetable.h"
