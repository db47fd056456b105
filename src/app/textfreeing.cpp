#include "app/textfreeing.h"

#include "platform/freememory.h"
#include "platform/turnlength.h"

#include <chrono>

using namespace std::chrono_literals;

TextFreeing::TextFreeing()
{
    m_turns.callOnTimeout([this] { goOn(); });
    m_givingBack.setSingleShot(true);
    m_givingBack.callOnTimeout(giveBackFreeMemory);
}

/// One turn.
void TextFreeing::goOn()
{
    if (!m_bin.empty(QDeadlineTimer(longestTurn)))
        return;
    m_turns.stop();
    giveBackSoon();
}
