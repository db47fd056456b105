#pragma once

#include "app/qpeapplicationesc.h"
#include "tests/testprogram.h"

/// Goes on where the program would have ended.
class StayingApplication : public QPEApplicationEsc {
public:
    using QPEApplicationEsc::QPEApplicationEsc;

protected:
    void leave() override { }
};

/// For tests of what is done when the program ends.
template <class Test> int runStayingTest(int argc, char **argv)
{
    const StayingApplication application(argc, argv);
    return runPlainTest<Test>(argc, argv);
}
