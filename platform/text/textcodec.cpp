#include "platform/text/textcodec.h"
