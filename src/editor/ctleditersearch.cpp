#include "editor/ctlediter.h"

#include <algorithm>

namespace {

constexpr int replaceMode = 1;

Qt::CaseSensitivity caseSensitivity(bool isSensitive)
{
    return isSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

} // namespace

bool ctlEditer::searchForward(
    int mode, bool caseSensitive, const QString &findText, const QString &replaceText)
{
    return search(SearchDirection::Forward, mode, caseSensitive, findText, replaceText);
}

bool ctlEditer::searchBackward(
    int mode, bool caseSensitive, const QString &findText, const QString &replaceText)
{
    return search(SearchDirection::Backward, mode, caseSensitive, findText, replaceText);
}

bool ctlEditer::search(SearchDirection direction, int mode, bool caseSensitive, const QString &findText,
    const QString &replaceText)
{
    if (mode == replaceMode && !document().requestChange())
        return false;
    m_search.setPattern(findText, caseSensitivity(caseSensitive));
    return mode == replaceMode ? m_search.replaceHit(direction, replaceText) : m_search.selectHit(direction);
}

void ctlEditer::jumpToLine(qint64 number)
{
    if (number >= 1 && number <= store().lineCount())
        setCursorPosition({ rowOfLine(store(), LineIndex(number - 1)), 0 });
}

void ctlEditer::jumpTo(qint64 line, qint64 column)
{
    const LineIndex there = qMin(LineIndex(line - 1), store().lastLine());
    const Offset start = store().lineStart(there);
    const qint64 length = store().lineEnd(there) - start;
    setCursorPosition(store().rowColAt(start + qMin(column - 1, length)));
}

void ctlEditer::jumpToLastEdit()
{
    const std::vector<const UndoCommand *> commands = history().commands();
    const auto last = std::find_if(commands.rbegin(), commands.rend(),
        [](const UndoCommand *command) { return !command->isStepBoundary(); });
    if (last != commands.rend())
        setCursorPosition(store().rowColAt((*last)->offset));
}
