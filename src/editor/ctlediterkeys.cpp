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

} // namespace

void ctlEditer::keyPressEvent(QKeyEvent *event)
{
    const bool mayEdit = !isComposing();
    if (mayEdit && appSettings().AutoIndent != 0 && isReturn(*event))
        breakLine();
    else if (mayEdit && isTab(*event) && selectsSeveralLines())
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
    const Offset cursor = cursorOffset();
    const Offset rowStart = cursor - cursorPosition().column;
    Offset end = rowStart;
    while (end < cursor && isIndentation(store().at(end), appSettings().AutoIndent))
        ++end;
    return store().text({ rowStart, end });
}

bool ctlEditer::selectsSeveralLines() const
{
    return store().lineAt(selectionBegin().offset) != store().lineAt(selectionEnd().offset);
}

void ctlEditer::indentBlock(Indentation direction)
{
    if (!document().requestChange())
        return;
    const TextRange lines = { store().row(store().rowColAt(selectionBegin()).row).start,
        store().row(store().rowColAt(selectionEnd()).row).start };
    if (!m_indentBlock(lines, direction))
        takeBlock(lines, indented(store(), lines, direction));
}

void ctlEditer::takeBlock(TextRange lines, const TextPiece &block)
{
    const UpdatesOff quiet(*this);
    const auto selectRows = [this](Offset from, Offset to) {
        setCursorPlace({ from });
        extendSelection({ to });
    };
    selectRows(lines.start, lines.end);
    insert(block);
    selectRows(lines.start, lines.start + block.length());
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
