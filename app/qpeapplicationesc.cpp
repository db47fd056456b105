#include "app/qpeapplicationesc.h"

QPEApplicationEsc::~QPEApplicationEsc() = default;
