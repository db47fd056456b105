#include "document/readwork.h"

ReadWork::ReadWork(FileReading::Request request, LayoutCopy layout, const FileCalls &calls)
    : m_reading(std::move(request), std::move(layout), calls)
{
}

JobWork::Step ReadWork::step(JobTurn &turn)
{
    const Step made = readOn(turn);
    turn.tellProgress({ m_reading.bytesDone(), m_reading.bytesInAll() });
    return made;
}

JobWork::Step ReadWork::readOn(JobTurn &turn)
{
    const FileReading::Step made = m_reading.step(
        [&turn](int count, const std::function<void(int)> &part) { turn.spread(count, part); });
    if (auto part = m_reading.takePart()) {
        m_parts.put({ std::move(*part), m_reading.codes() });
        turn.tellPart();
    }
    switch (made) {
    case FileReading::Step::More:
        return Step::More;
    case FileReading::Step::Done:
        return Step::Done;
    case FileReading::Step::Failed:
        return Step::Failed;
    }
    Q_UNREACHABLE();
}
