#include "editor/ctlediter.h"

#include "text/textsearch.h"

namespace {

Qt::CaseSensitivity caseSensitivity(bool isSensitive)
{
    return isSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

} // namespace

/// The earlier end of the marked text, or the cursor.
CursorPlace ctlEditer::markedBegin() const
{
    return anchorOffset() < cursorOffset() ? anchorPlace() : cursorPlace();
}

/// The pattern is kept from one search to the next, which mostly looks for the same.
const TextPattern &ctlEditer::patternFor(const QString &text, bool caseSensitive)
{
    if (!m_pattern.isFor(text, caseSensitivity(caseSensitive)))
        m_pattern = TextPattern(text, caseSensitivity(caseSensitive));
    return m_pattern;
}

bool ctlEditer::searchForward(
    int mode, bool caseSensitive, const QString &findText, const QString &replaceText)
{
    const CursorPlace start = hasMarkedText() ? nextColumn(store(), markedBegin()) : cursorPlace();
    const auto hit = ::searchForward(store(), patternFor(findText, caseSensitive), start);
    if (!hit)
        return false;
    // What is replaced is never shown as marked before.
    const std::optional<Batch> batch = mode == 1 ? std::optional<Batch>(std::in_place, *this) : std::nullopt;
    setCursorPlace(hit->begin);
    setCursorPlace(hit->end, true);
    if (mode == 1)
        insert(replaceText);
    return true;
}

bool ctlEditer::searchBackward(
    int mode, bool caseSensitive, const QString &findText, const QString &replaceText)
{
    const auto hit = ::searchBackward(store(), patternFor(findText, caseSensitive), markedBegin());
    if (!hit)
        return false;
    const std::optional<Batch> batch = mode == 1 ? std::optional<Batch>(std::in_place, *this) : std::nullopt;
    const RowCol begin = store().rowColAt(hit->begin);
    setCursorPlace(hit->end);
    setCursorPlace(hit->begin, true);
    if (mode == 1) {
        insert(replaceText);
        setCursorPosition(begin.row, begin.column);
    }
    return true;
}

void ctlEditer::jumpToLine(qint64 number)
{
    if (number >= 1 && number <= store().lineCount())
        setCursorPosition(store().rowOfLine(LineIndex(number - 1)), 0);
}

void ctlEditer::jumpToLastEdit()
{
    for (qint64 i = history().commandCount(); i-- > 0;) {
        const UndoCommand &command = history().command(i);
        if (command.isStepBoundary())
            continue;
        const RowCol place = store().rowColAt(command.offset);
        setCursorPosition(place.row, place.column);
        return;
    }
}
