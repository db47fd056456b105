#include "document/inputwork.h"

using namespace Qt::StringLiterals;

InputWork::InputWork(std::shared_ptr<InputReading> input, std::optional<CharCode> code,
    FileCodes codesOfSilent, LayoutCopy layout)
    : ReadWork({ fileOf(*input), code, codesOfSilent, {}, true }, std::move(layout))
    , m_input(std::move(input))
{
}

QString InputWork::fileOf(const InputReading &input)
{
    return input.kept() ? u"/proc/self/fd/%1"_s.arg(input.kept()->number()) : QString();
}

ReadFailure InputWork::failure() const
{
    return m_input->kept() ? ReadWork::failure() : ReadFailure::BrokenOff;
}

JobWork::Step InputWork::step(JobTurn &turn)
{
    if (!m_isWhole && !reading().hasMore(m_input->size()))
        readInput();
    return m_isWhole || reading().hasMore(m_input->size()) ? readOn(turn) : Step::More;
}

void InputWork::readInput()
{
    m_isWhole = m_input->step() != InputReading::Step::More;
    if (m_isWhole)
        reading().endGrowth();
}
