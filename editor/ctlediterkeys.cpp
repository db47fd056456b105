#include "editor/ctlediter.h"

#include "app/settings.h"
#include "editor/updatesoff.h"

#include <QKeyEvent>

namespace {

constexpr QChar tab = u'\t';
constexpr QChar fullWidthSpace = u'\u3000';

bool isIndentation(QChar character, int autoIndent)
{
    return character == u' ' || character == tab || (character == fullWidthSpace && autoIndent != 1);
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

/// Appends a run of text; each line that begins in it and is not empty gets a TAB, or loses the one it begins
/// with. `atLineStart` tells whether a line begins with the run, and afterwards with what follows.
template <typename View>
void appendIndented(QString &text, View run, Indentation direction, bool *atLineStart)
{
    while (!run.isEmpty()) {
        const QChar first = run.front();
        if (*atLineStart && first != u'\n' && direction == Indentation::In)
            text += tab;
        else if (*atLineStart && first == tab && direction == Indentation::Out)
            run = run.sliced(1);
        const qsizetype lineEnd = run.indexOf(u'\n');
        const qsizetype size = lineEnd == -1 ? run.size() : lineEnd + 1;
        text += run.first(size);
        *atLineStart = lineEnd != -1;
        run = run.sliced(size);
    }
}

} // namespace

void ctlEditer::keyPressEvent(QKeyEvent *event)
{
    const bool mayEdit = !isReadOnly() && !isComposing();
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
    const QString block = indented(begin, store().row(row2).start, direction);
    setCursorPosition(row1, 0);
    setCursorPosition(row2, 0, true);
    insert(block);
    // Longer lines may have wrapped into more rows, so the block's end is looked up anew.
    const RowCol end = store().rowColAt(begin + block.size());
    setCursorPosition(row1, 0);
    setCursorPosition(end.row, end.column, true);
}

QString ctlEditer::indented(qint64 begin, qint64 end, Indentation direction) const
{
    QString text;
    text.reserve(end - begin + store().lineAt(end) - store().lineAt(begin) + 1);
    bool atLineStart = begin == 0 || store().at(begin - 1) == u'\n';
    for (qint64 at = begin; at < end;) {
        const TextChunk run = store().chunkAt(at);
        const qint64 size = qMin(run.size(), end - at);
        if (run.isLatin1())
            appendIndented(text, QLatin1StringView(run.latin1.first(size)), direction, &atLineStart);
        else
            appendIndented(text, run.utf16.first(size), direction, &atLineStart);
        at += size;
    }
    return text;
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
