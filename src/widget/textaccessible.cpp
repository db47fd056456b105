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
    return clampedInt(store().length());
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
    const qint64 cursor = index == 0 ? edit()->cursorOffset() : 0;
    const qint64 anchor = index == 0 ? edit()->anchorOffset() : 0;
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

qint64 TextAccessible::place(int offset) const
{
    const qint64 inside = qBound(qint64(0), qint64(offset), store().length());
    return inside < store().length() ? previousCursorStop(store(), inside + 1) : inside;
}

QString TextAccessible::text(int start, int end) const
{
    const qint64 from = qBound(qint64(0), qint64(qMin(start, end)), store().length());
    const qint64 to = qBound(from, qint64(qMax(start, end)), store().length());
    return store().text(from, qMin(to - from, longestText));
}

TextAccessible::Unit TextAccessible::wholeUnit(qint64 offset, QAccessible::TextBoundaryType boundary) const
{
    const TextStore &text = store();
    switch (boundary) {
    case QAccessible::CharBoundary:
        return offset < text.length()
            ? Unit{ previousCursorStop(text, offset + 1), nextCursorStop(text, offset) }
            : Unit{ offset, offset };
    case QAccessible::WordBoundary: {
        if (offset < text.length() && text.at(offset) == u'\n')
            return { offset, offset + 1 };
        const TextRange word = wordAt(text, offset);
        return { word.start, word.end };
    }
    case QAccessible::SentenceBoundary:
        return sentence(offset);
    case QAccessible::LineBoundary: {
        const qint64 row = text.rowColAt(offset).row;
        const TextStore::Row found = text.row(row);
        return { found.start, row + 1 < text.rowCount() ? text.row(row + 1).start : text.length() };
    }
    case QAccessible::ParagraphBoundary: {
        const TextRange line = wholeLineAt(text, offset);
        return { line.start, line.end };
    }
    case QAccessible::NoBoundary:
        break;
    }
    return { 0, text.length() };
}

TextAccessible::Unit TextAccessible::unit(qint64 offset, QAccessible::TextBoundaryType boundary) const
{
    const Unit whole = wholeUnit(offset, boundary);
    if (boundary == QAccessible::NoBoundary || whole.end - whole.start <= longestUnit)
        return whole;
    const qint64 start = qMax(whole.start, offset - longestUnit / 2);
    return { start, qMin(whole.end, start + longestUnit) };
}

TextAccessible::Unit TextAccessible::sentence(qint64 offset) const
{
    const Unit line = unit(offset, QAccessible::ParagraphBoundary);
    QTextBoundaryFinder finder(
        QTextBoundaryFinder::Sentence, store().text(line.start, line.end - line.start));
    finder.setPosition(offset - line.start);
    const qsizetype start = finder.isAtBoundary() ? finder.position() : finder.toPreviousBoundary();
    finder.setPosition(offset - line.start);
    const qsizetype end = finder.toNextBoundary();
    return { line.start + qMax<qsizetype>(0, start), end < 0 ? line.end : line.start + end };
}

QString TextAccessible::give(Unit unit, int *start, int *end) const
{
    *start = clampedInt(unit.start);
    *end = clampedInt(unit.end);
    return unit.start < 0 ? QString() : text(*start, *end);
}

QString TextAccessible::textAtOffset(
    int offset, QAccessible::TextBoundaryType boundary, int *start, int *end) const
{
    const qint64 at = offset == -1 ? store().length() : offset == -2 ? edit()->cursorOffset() : offset;
    return give(at < 0 || at > store().length() ? Unit{} : unit(at, boundary), start, end);
}

QString TextAccessible::textBeforeOffset(
    int offset, QAccessible::TextBoundaryType boundary, int *start, int *end) const
{
    textAtOffset(offset, boundary, start, end);
    return give(*start > 0 ? unit(*start - 1, boundary) : Unit{}, start, end);
}

QString TextAccessible::textAfterOffset(
    int offset, QAccessible::TextBoundaryType boundary, int *start, int *end) const
{
    textAtOffset(offset, boundary, start, end);
    const bool more = *end >= 0 && *end < store().length();
    return give(more ? unit(*end, boundary) : Unit{}, start, end);
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
    if (offset < 0 || offset > store().length())
        return {};
    const QRect rect = edit()->characterRect(place(offset));
    return { edit()->viewport()->mapToGlobal(rect.topLeft()), rect.size() };
}

int TextAccessible::offsetAtPoint(const QPoint &point) const
{
    const QPoint inView = edit()->viewport()->mapFromGlobal(point);
    if (!edit()->viewport()->rect().contains(inView))
        return -1;
    const qint64 nearest = edit()->offsetAt(inView);
    const int left = characterRect(clampedInt(nearest)).left();
    return clampedInt(nearest > 0 && point.x() < left ? previousCursorStop(store(), nearest) : nearest);
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
    const qint64 from = place(qMin(start, end));
    const qint64 to = place(qMax(start, end));
    edit()->replace(from, to, typedText(text));
}
