#include "editor/textfile.h"
