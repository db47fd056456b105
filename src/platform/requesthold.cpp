#include "platform/requesthold.h"

#include "platform/qpeapplication.h"

namespace {

void hold(bool holds)
{
    if (auto *application = qobject_cast<QPEApplication *>(qApp))
        application->holdRequests(holds);
}

} // namespace

RequestHold::RequestHold()
{
    hold(true);
}

RequestHold::~RequestHold()
{
    hold(false);
}
