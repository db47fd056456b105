#pragma once

#include "app/qpeapplicationesc.h"

/// Goes on where the program would have ended.
class StayingApplication : public QPEApplicationEsc {
public:
    using QPEApplicationEsc::QPEApplicationEsc;

protected:
    void leave() override { }
};
