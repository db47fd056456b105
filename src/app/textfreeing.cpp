#include "app/textfreeing.h"

#include "platform/freeturn.h"
#include "platform/turnlength.h"

TextFreeing::TextFreeing(const std::function<void()> &giveBack)
{
    m_turns.callOnTimeout([this] { goOn(); });
    m_givingBack.setSingleShot(true);
    m_givingBack.callOnTimeout([turn = new FreeTurn(giveBack, this)] { turn->await(); });
}

/// One turn.
void TextFreeing::goOn()
{
    if (!m_bin.empty(QDeadlineTimer(longestTurn)))
        return;
    m_turns.stop();
    giveBackSoon();
}
