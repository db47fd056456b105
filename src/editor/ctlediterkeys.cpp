#include "editor/ctlediter.h"

#include "settings/settings.h"
#include "widget/updatesoff.h"

#include <QKeyEvent>

namespace {

bool isIndentation(QChar character, int autoIndent)
{
    return character == u' ' || character == u'\t' || (character == u'\u3000' && autoIndent != 1);
}

bool isReturn(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

/// Tab as the editor's own; with Control held it is the main window's. Tab with Shift arrives as Backtab.
bool isTab(const QKeyEvent &event)
{
    return (event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab)
        && !event.modifiers().testFlag(Qt::ControlModifier);
}

bool isExactlyShift(const QKeyEvent &event)
{
    return (event.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier)) == Qt::ShiftModifier;
}

/// Builds the lines of a block anew; each that is not empty gets a TAB, or loses the one it begins with.
class IndentedText {
public:
    IndentedText(Indentation direction, bool atLineStart)
        : m_text(LayoutRule{})
        , m_direction(direction)
        , m_atLineStart(atLineStart)
    {
    }

    void append(const TextChunk &run)
    {
        if (run.isLatin1())
            appendRun(run.latin1, '\n', '\t', run.spelling);
        else
            appendRun(run.utf16, u'\n', u'\t', run.spelling);
    }

    TextPiece finish()
    {
        const TextStore text = m_text.finish();
        return text.piece(0, text.length());
    }

private:
    template <typename View, typename Unit>
    void appendRun(View run, Unit lineFeed, Unit tabulator, std::optional<QByteArrayView> spelling)
    {
        while (!run.isEmpty()) {
            const bool isTab = run.front() == tabulator;
            if (m_atLineStart && run.front() != lineFeed && m_direction == Indentation::In)
                m_text.append(u"\t");
            else if (m_atLineStart && isTab && m_direction == Indentation::Out)
                run = run.sliced(1);
            m_atLineStart = appendLine(run, lineFeed, spelling);
        }
    }

    /// Up to a line end, which it tells of, or to the run's end.
    template <typename View, typename Unit>
    bool appendLine(View &run, Unit lineFeed, std::optional<QByteArrayView> spelling)
    {
        if (run.isEmpty())
            return false;
        const qsizetype lineEnd = run.indexOf(lineFeed);
        const qsizetype size = lineEnd == -1 ? run.size() : lineEnd + 1;
        if (spelling)
            m_text.spell(*spelling);
        m_text.append(run.first(size));
        run = run.sliced(size);
        return lineEnd != -1;
    }

    TextStore::Builder m_text;
    const Indentation m_direction;
    bool m_atLineStart;
};

} // namespace

void ctlEditer::keyPressEvent(QKeyEvent *event)
{
    const bool mayEdit = !isComposing();
    if (mayEdit && appSettings().AutoIndent != 0 && isReturn(*event))
        breakLine();
    else if (mayEdit && isTab(*event) && marksSeveralLines())
        indentBlock(isExactlyShift(*event) ? Indentation::Out : Indentation::In);
    else
        pressOtherKey(event);
}

void ctlEditer::breakLine()
{
    insert(u'\n' + indentationBeforeCursor());
}

QString ctlEditer::indentationBeforeCursor() const
{
    const qint64 cursor = cursorOffset();
    const qint64 rowStart = cursor - cursorPosition().column;
    qint64 end = rowStart;
    while (end < cursor && isIndentation(store().at(end), appSettings().AutoIndent))
        ++end;
    return store().text(rowStart, end - rowStart);
}

bool ctlEditer::marksSeveralLines() const
{
    qint64 row1, column1, row2, column2;
    return getMarkedRegion(&row1, &column1, &row2, &column2)
        && store().lineOfRow(row1) != store().lineOfRow(row2);
}

void ctlEditer::indentBlock(Indentation direction)
{
    const UpdatesOff quiet(*this);
    qint64 row1, column1, row2, column2;
    getMarkedRegion(&row1, &column1, &row2, &column2);
    const qint64 begin = store().row(row1).start;
    const TextPiece block = indented(begin, store().row(row2).start, direction);
    setCursorPosition(row1, 0);
    setCursorPosition(row2, 0, true);
    insert(block);
    // Longer lines may have wrapped into more rows, so the block's end is looked up anew.
    const RowCol end = store().rowColAt(begin + block.length());
    setCursorPosition(row1, 0);
    setCursorPosition(end.row, end.column, true);
}

TextPiece ctlEditer::indented(qint64 begin, qint64 end, Indentation direction) const
{
    IndentedText text(direction, begin == 0 || store().at(begin - 1) == u'\n');
    for (qint64 at = begin; at < end;) {
        TextChunk run = store().spelledChunkAt(at);
        run.truncate(qMin(run.size(), end - at));
        text.append(run);
        at += run.size();
    }
    return text.finish();
}

void ctlEditer::pressOtherKey(QKeyEvent *event)
{
    const RowCol before = cursorPosition();
    QMultiLineEdit::keyPressEvent(event);
    const RowCol after = cursorPosition();
    if (after.column == 0 && before.column != 0)
        setXOffset(0);
    if (event->key() == Qt::Key_Right && after.column == 0 && hasMarkedText())
        updateRow(before.row);
}
