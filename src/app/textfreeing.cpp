#include "app/textfreeing.h"

#include "platform/freeturn.h"

#include <chrono>

namespace {

/// Bytes. Returning them takes the system about as long as a turn is; and the C library a walk over all that
/// is free, however little of it is returned.
constexpr qint64 portion = qint64{ 16 } << 20;

/// Nobody waits for it, and other work goes on in the same turns.
constexpr std::chrono::milliseconds freeingTurn{ 2 };

} // namespace

TextFreeing::TextFreeing(const std::function<void()> &giveBack)
    : m_giveBack(giveBack)
{
    m_turns.callOnTimeout([this] { goOn(); });
    m_givingBack.setSingleShot(true);
    m_givingBack.callOnTimeout([turn = new FreeTurn(giveBack, this)] { turn->await(); });
}

/// One turn: to free takes one, and to give back another one.
void TextFreeing::goOn()
{
    if (m_bin.freedBytes() - m_bytesBefore >= portion) {
        m_bytesBefore = m_bin.freedBytes();
        m_giveBack();
    } else if (m_bin.empty(QDeadlineTimer(freeingTurn), portion)) {
        m_turns.stop();
        giveBackSoon();
    }
}
