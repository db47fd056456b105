#include "editor/partwisework.h"

#include <utility>

PartwiseWork::PartwiseWork(PartwiseText text)
    : m_text(std::move(text))
    , m_units(m_text.left())
{
}

JobWork::Step PartwiseWork::step(JobTurn &turn)
{
    m_text.makeNext(turn.threads(),
        [&turn](int count, const std::function<void(int)> &part) { turn.spread(count, part); });
    turn.tellProgress({ m_units - m_text.left(), m_units });
    return m_text.isWhole() ? Step::Done : Step::More;
}

void PartwiseWork::giveUp()
{
    m_text.drop();
}
