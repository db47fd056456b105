#include "app/textfreeing.h"

#include "platform/freeturn.h"
#include "platform/turnlength.h"

namespace {

/// Of nodes, with 16 MB of text or 32. Returning them takes the system about as long as a turn is.
constexpr qint64 portion = 128;

} // namespace

TextFreeing::TextFreeing(const std::function<void()> &giveBack)
    : m_giveBack(giveBack)
{
    m_turns.callOnTimeout([this] { goOn(); });
    m_givingBack.setSingleShot(true);
    m_givingBack.callOnTimeout([turn = new FreeTurn(giveBack, this)] { turn->await(); });
}

/// One turn.
void TextFreeing::goOn()
{
    const bool isEmpty = m_bin.empty(QDeadlineTimer(longestTurn), portion);
    givePortionBack();
    if (!isEmpty)
        return;
    m_turns.stop();
    giveBackSoon();
}

void TextFreeing::givePortionBack()
{
    if (m_bin.freedNodes() - m_nodesBefore < portion)
        return;
    m_nodesBefore = m_bin.freedNodes();
    m_giveBack();
}
