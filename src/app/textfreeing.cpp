#include "app/textfreeing.h"

#include "platform/freememory.h"

#include <chrono>

using namespace std::chrono_literals;

namespace {

/// The event loop is not kept for longer while there is more to free.
constexpr auto longestFreeing = 8ms;

} // namespace

TextFreeing::TextFreeing()
{
    m_turns.callOnTimeout([this] { goOn(); });
    m_givingBack.setSingleShot(true);
    m_givingBack.callOnTimeout(giveBackFreeMemory);
}

/// One turn.
void TextFreeing::goOn()
{
    if (!m_bin.empty(QDeadlineTimer(longestFreeing)))
        return;
    m_turns.stop();
    giveBackSoon();
}
