#include "files/endorder.h"

#include <atomic>

namespace {

std::atomic<bool> isOrdered = false;
std::atomic<int> delays = 0;
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free,
    "signal handlers use them");

std::function<void()> &obedience()
{
    static std::function<void()> obey;
    return obey;
}

} // namespace

void EndOrder::give()
{
    isOrdered = true;
}

void EndOrder::withdraw()
{
    isOrdered = false;
}

bool EndOrder::isGiven()
{
    return isOrdered;
}

void EndOrder::setObedience(std::function<void()> obey)
{
    obedience() = std::move(obey);
}

void EndOrder::obeyIfGiven()
{
    if (isGiven() && obedience())
        obedience()();
}

EndOrder::Delay::Delay()
{
    ++delays;
}

EndOrder::Delay::~Delay()
{
    --delays;
}

bool EndOrder::isDelayed()
{
    return delays > 0;
}
