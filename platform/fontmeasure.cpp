#include "platform/fontmeasure.h"
