#include "editor/indentwork.h"

IndentWork::IndentWork(const TextStore &store, TextRange range, Indentation direction)
    : m_block(store, range, direction)
    , m_units(range.length())
{
}

JobWork::Step IndentWork::step(JobTurn &turn)
{
    m_block.makeNext(turn.threads(),
        [&turn](int count, const std::function<void(int)> &part) { turn.spread(count, part); });
    turn.tellProgress({ m_units - m_block.left(), m_units });
    return m_block.isWhole() ? Step::Done : Step::More;
}

void IndentWork::giveUp()
{
    m_block.drop();
}
