#include "platform/text/textstore.h"
