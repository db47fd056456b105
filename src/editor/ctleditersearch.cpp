#include "editor/ctlediter.h"

namespace {

Qt::CaseSensitivity caseSensitivity(bool isSensitive)
{
    return isSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

} // namespace

/// The earlier end of the selection, or the cursor.
CursorPlace ctlEditer::selectionBegin() const
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
    const CursorPlace start = hasMarkedText() ? nextColumn(store(), selectionBegin()) : cursorPlace();
    const auto hit = ::searchForward(store(), patternFor(findText, caseSensitive), start);
    if (!hit)
        return false;
    if (mode == 1) {
        replace(*hit, replaceText);
        return true;
    }
    setCursorPlace(hit->begin);
    setCursorPlace(hit->end, true);
    return true;
}

bool ctlEditer::searchBackward(
    int mode, bool caseSensitive, const QString &findText, const QString &replaceText)
{
    const auto hit = ::searchBackward(store(), patternFor(findText, caseSensitive), selectionBegin());
    if (!hit)
        return false;
    if (mode == 1) {
        const Batch batch(*this);
        const RowCol begin = store().rowColAt(hit->begin);
        replace(*hit, replaceText);
        setCursorPosition(begin.row, begin.column);
        return true;
    }
    setCursorPlace(hit->end);
    setCursorPlace(hit->begin, true);
    return true;
}

/// The cursor goes behind the text. What is replaced is never shown as selected before.
void ctlEditer::replace(const SearchHit &hit, const QString &text)
{
    const Batch batch(*this);
    const qint64 begin = hit.begin.offset;
    document().replace(begin, hit.end.offset - begin, text);
    setCursorPlace({ begin + text.size() });
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
