#include "jobs/workturns.h"

#include "jobs/memoryleft.h"

#include <new>
#include <utility>

WorkTurns::WorkTurns(QObject *parent, std::chrono::milliseconds length, Turn turn, Then done, Then failed)
    : m_length(length)
    , m_turn(std::move(turn))
    , m_done(std::move(done))
    , m_failed(std::move(failed))
    , m_timer(parent)
{
    m_timer.callOnTimeout([this] { goOn(); });
}

void WorkTurns::start()
{
    if (!m_timer.isActive())
        m_timer.start(0);
}

void WorkTurns::goOn()
{
    start();
    const std::optional<bool> isDone = tryTurn();
    if (isDone == false)
        return;
    stop();
    const Then then = isDone ? m_done : m_failed;
    then();
}

/// Nothing: there was too little memory.
std::optional<bool> WorkTurns::tryTurn() const
{
    try {
        MemoryLeft::require();
        return m_turn(QDeadlineTimer(m_length));
    } catch (const std::bad_alloc &) {
        return std::nullopt;
    }
}
