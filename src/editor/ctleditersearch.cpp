#include "editor/ctlediter.h"

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
    if (mode == replaceMode && !document().requestChange())
        return false;
    m_search.setPattern(findText, caseSensitivity(caseSensitive));
    return mode == replaceMode ? m_search.replaceNext(replaceText) : m_search.selectNext();
}

bool ctlEditer::searchBackward(
    int mode, bool caseSensitive, const QString &findText, const QString &replaceText)
{
    if (mode == replaceMode && !document().requestChange())
        return false;
    m_search.setPattern(findText, caseSensitivity(caseSensitive));
    return mode == replaceMode ? m_search.replacePrevious(replaceText) : m_search.selectPrevious();
}

void ctlEditer::jumpToLine(qint64 number)
{
    if (number >= 1 && number <= store().lineCount())
        setCursorPosition({ store().rowOfLine(LineIndex(number - 1)), 0 });
}

void ctlEditer::jumpToLastEdit()
{
    for (qint64 i = history().commandCount(); i-- > 0;) {
        const UndoCommand &command = history().command(i);
        if (command.isStepBoundary())
            continue;
        setCursorPosition(store().rowColAt(command.offset));
        return;
    }
}
