#include "editor/ctlediter.h"
