#include "widget/textaccessible.h"

#include "platform/qpeapplication.h"
#include "text/cursorstops.h"
#include "text/enteredtext.h"
#include "widget/clampedint.h"
#include "widget/qmultilineedit.h"
#include "widget/textcursor.h"

#include <QFontInfo>
#include <QTextBoundaryFinder>

using namespace Qt::StringLiterals;

namespace {

QAccessibleInterface *makeInterface(const QString &, QObject *object)
{
    auto *const edit = qobject_cast<QMultiLineEdit *>(object);
    return edit ? new TextAccessible(edit) : nullptr;
}

} // namespace

void TextAccessible::install()
{
    QAccessible::installFactory(makeInterface);
}

TextAccessible::TextAccessible(QMultiLineEdit *edit)
    : QAccessibleWidget(edit, QAccessible::EditableText)
{
}

QMultiLineEdit *TextAccessible::edit() const
{
    return static_cast<QMultiLineEdit *>(widget());
}

const TextStore &TextAccessible::store() const
{
    return edit()->store();
}

QAccessible::State TextAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.multiLine = true;
    state.selectableText = true;
    state.editable = true;
    return state;
}

void *TextAccessible::interface_cast(QAccessible::InterfaceType type)
{
    switch (type) {
    case QAccessible::TextInterface:
        return static_cast<QAccessibleTextInterface *>(this);
    case QAccessible::EditableTextInterface:
        return static_cast<QAccessibleEditableTextInterface *>(this);
    default:
        return QAccessibleWidget::interface_cast(type);
    }
}

int TextAccessible::characterCount() const
{
    return clampedInt(store().end());
}

int TextAccessible::cursorPosition() const
{
    return clampedInt(edit()->cursorOffset());
}

void TextAccessible::setCursorPosition(int position)
{
    setSelection(0, position, position);
}

int TextAccessible::selectionCount() const
{
    return edit()->hasMarkedText() ? 1 : 0;
}

void TextAccessible::selection(int index, int *start, int *end) const
{
    const Offset cursor = index == 0 ? edit()->cursorOffset() : Offset();
    const Offset anchor = index == 0 ? edit()->anchorOffset() : Offset();
    *start = clampedInt(qMin(cursor, anchor));
    *end = clampedInt(qMax(cursor, anchor));
}

void TextAccessible::addSelection(int start, int end)
{
    setSelection(0, start, end);
}

void TextAccessible::removeSelection(int index)
{
    if (index == 0 && !QPEApplication::isBusy())
        edit()->deselect();
}

void TextAccessible::setSelection(int index, int start, int end)
{
    if (index == 0 && !QPEApplication::isBusy())
        edit()->select({ place(start) }, { place(end) });
}

Offset TextAccessible::place(int offset) const
{
    const Offset inside = qBound(Offset(), Offset(offset), store().end());
    return inside < store().end() ? previousCursorStop(store(), inside + 1) : inside;
}

QString TextAccessible::text(int start, int end) const
{
    const Offset from = qBound(Offset(), Offset(qMin(start, end)), store().end());
    const Offset to = qBound(from, Offset(qMax(start, end)), store().end());
    return store().text(from, qMin(to - from, longestText));
}

TextRange TextAccessible::wholeUnit(Offset offset, QAccessible::TextBoundaryType boundary) const
{
    const TextStore &text = store();
    switch (boundary) {
    case QAccessible::CharBoundary:
        return offset < text.end()
            ? TextRange{ previousCursorStop(text, offset + 1), nextCursorStop(text, offset) }
            : TextRange{ offset, offset };
    case QAccessible::WordBoundary:
        if (offset < text.end() && text.at(offset) == u'\n')
            return { offset, offset + 1 };
        return wordAt(text, offset);
    case QAccessible::SentenceBoundary:
        return sentence(offset);
    case QAccessible::LineBoundary: {
        const RowIndex row = text.rowColAt(offset).row;
        const TextStore::Row found = text.row(row);
        return { found.start, row < text.lastRow() ? text.row(row + 1).start : text.end() };
    }
    case QAccessible::ParagraphBoundary:
        return wholeLineAt(text, offset);
    case QAccessible::NoBoundary:
        break;
    }
    return { {}, text.end() };
}

TextRange TextAccessible::unit(Offset offset, QAccessible::TextBoundaryType boundary) const
{
    const TextRange whole = wholeUnit(offset, boundary);
    if (boundary == QAccessible::NoBoundary || whole.length() <= longestUnit)
        return whole;
    const Offset start = qMax(whole.start, offset - longestUnit / 2);
    return { start, qMin(whole.end, start + longestUnit) };
}

TextRange TextAccessible::sentence(Offset offset) const
{
    const TextRange line = unit(offset, QAccessible::ParagraphBoundary);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Sentence, store().text(line));
    finder.setPosition(offset - line.start);
    const qsizetype start = finder.isAtBoundary() ? finder.position() : finder.toPreviousBoundary();
    finder.setPosition(offset - line.start);
    const qsizetype end = finder.toNextBoundary();
    return { line.start + qMax<qsizetype>(0, start), end < 0 ? line.end : line.start + end };
}

QString TextAccessible::give(std::optional<TextRange> unit, int *start, int *end) const
{
    *start = unit ? clampedInt(unit->start) : -1;
    *end = unit ? clampedInt(unit->end) : -1;
    return unit ? text(*start, *end) : QString();
}

QString TextAccessible::textAtOffset(
    int offset, QAccessible::TextBoundaryType boundary, int *start, int *end) const
{
    const Offset at = offset == -1 ? store().end() : offset == -2 ? edit()->cursorOffset() : Offset(offset);
    const bool isInside = at >= Offset() && at <= store().end();
    return give(isInside ? std::optional(unit(at, boundary)) : std::nullopt, start, end);
}

QString TextAccessible::textBeforeOffset(
    int offset, QAccessible::TextBoundaryType boundary, int *start, int *end) const
{
    textAtOffset(offset, boundary, start, end);
    const Offset last(*start - 1);
    return give(*start > 0 ? std::optional(unit(last, boundary)) : std::nullopt, start, end);
}

QString TextAccessible::textAfterOffset(
    int offset, QAccessible::TextBoundaryType boundary, int *start, int *end) const
{
    textAtOffset(offset, boundary, start, end);
    const Offset next(*end);
    const bool more = next >= Offset() && next < store().end();
    return give(more ? std::optional(unit(next, boundary)) : std::nullopt, start, end);
}

QString TextAccessible::attributes(int, int *start, int *end) const
{
    *start = 0;
    *end = characterCount();
    const QFontInfo font(edit()->font());
    return u"font-family:\"%1\";font-size:%2pt;"_s.arg(font.family()).arg(font.pointSizeF());
}

QRect TextAccessible::characterRect(int offset) const
{
    if (offset < 0 || Offset(offset) > store().end())
        return {};
    const QRect rect = edit()->characterRect(place(offset));
    return { edit()->viewport()->mapToGlobal(rect.topLeft()), rect.size() };
}

int TextAccessible::offsetAtPoint(const QPoint &point) const
{
    const QPoint inView = edit()->viewport()->mapFromGlobal(point);
    if (!edit()->viewport()->rect().contains(inView))
        return -1;
    const Offset nearest = edit()->offsetAt(inView);
    const int left = characterRect(clampedInt(nearest)).left();
    return clampedInt(
        nearest > Offset() && point.x() < left ? previousCursorStop(store(), nearest) : nearest);
}

void TextAccessible::scrollToSubstring(int start, int end)
{
    for (const int offset : { end, start })
        edit()->showPlace({ place(offset) });
}

void TextAccessible::deleteText(int start, int end)
{
    replaceText(start, end, {});
}

void TextAccessible::insertText(int offset, const QString &text)
{
    replaceText(offset, offset, text);
}

void TextAccessible::replaceText(int start, int end, const QString &text)
{
    if (QPEApplication::isBusy())
        return;
    edit()->commitPreedit();
    const Offset from = place(qMin(start, end));
    const Offset to = place(qMax(start, end));
    edit()->replace({ from, to }, typedText(text));
}
