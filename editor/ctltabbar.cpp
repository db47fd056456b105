#include "editor/ctltabbar.h"
