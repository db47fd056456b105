#include "widget/qmultilineedit_p.h"

#include "text/enteredtext.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QScopedValueRollback>

namespace {

/// Units before and behind the cursor that input methods see; and of marked text.
constexpr qint64 shownUnits = 1024;
constexpr qint64 shownMarked = qint64(64) << 10;

} // namespace

void QMultiLineEdit::Private::compose(const QInputMethodEvent &event)
{
    if (!event.commitString().isEmpty() || event.replacementLength() > 0)
        commit(event);
    setPreedit(event);
    for (const QInputMethodEvent::Attribute &attribute : event.attributes()) {
        if (attribute.type == QInputMethodEvent::Selection)
            select(attribute);
    }
}

/// What is composed goes away first, so that the text it becomes is not shown twice. It is a step of its own;
/// characters that come one by one, without being composed, are typing like any other.
void QMultiLineEdit::Private::commit(const QInputMethodEvent &event)
{
    if (q->isComposing())
        history.breakJoining();
    preedit = {};
    const QString text = typedText(event.commitString());
    if (event.replacementLength() == 0) {
        if (!text.isEmpty())
            typeText(text);
        return;
    }
    Operation operation(*this);
    history.beginGroup();
    const TextRange old = marked();
    replace(old.start, old.end - old.start, {});
    const qint64 from = qBound<qint64>(0, old.start + event.replacementStart(), store.length());
    replace(from, qMin<qint64>(event.replacementLength(), store.length() - from), text);
    history.endGroup();
    cursor = anchor = { from + text.size() };
}

void QMultiLineEdit::Private::setPreedit(const QInputMethodEvent &event)
{
    const bool changes = !preedit.text.isEmpty() || !event.preeditString().isEmpty();
    preedit = {};
    preedit.text = event.preeditString();
    preedit.cursor = int(preedit.text.size());
    for (const QInputMethodEvent::Attribute &attribute : event.attributes()) {
        if (attribute.type == QInputMethodEvent::TextFormat)
            preedit.formats.append(attribute);
        if (attribute.type != QInputMethodEvent::Cursor)
            continue;
        preedit.cursor = qBound(0, attribute.start, int(preedit.text.size()));
        preedit.cursorVisible = attribute.length != 0;
    }
    if (!changes)
        return;
    updateScrollBars();
    updateRow(rowColOf(cursor).row);
    makeCursorVisible();
    announceCursor();
}

/// `attribute` counts in the text that inputMethodQuery() shows around the cursor.
void QMultiLineEdit::Private::select(const QInputMethodEvent::Attribute &attribute)
{
    const TextRange shown = surroundings();
    const auto inside = [&shown](qint64 place) {
        return shown.start + qBound<qint64>(0, place, shown.end - shown.start);
    };
    mark(inside(attribute.start), inside(qint64(attribute.start) + attribute.length));
}

TextRange QMultiLineEdit::Private::surroundings() const
{
    const LineIndex line = store.lineAt(cursor.offset);
    TextRange range = { qMax(store.lineStart(line), cursor.offset - shownUnits),
        qMin(store.lineEnd(line), cursor.offset + shownUnits) };
    if (range.start < range.end && QChar::isLowSurrogate(store.at(range.start)))
        ++range.start;
    if (range.start < range.end && QChar::isHighSurrogate(store.at(range.end - 1)))
        --range.end;
    return range;
}

QVariant QMultiLineEdit::Private::query(Qt::InputMethodQuery query, const QVariant &argument) const
{
    switch (query) {
    case Qt::ImEnabled:
        return q->isEnabled() && !readOnly;
    case Qt::ImReadOnly:
        return readOnly;
    case Qt::ImHints:
        return int(q->inputMethodHints() | Qt::ImhMultiLine);
    case Qt::ImCursorRectangle:
        return cursorBox();
    case Qt::ImAnchorRectangle:
        return cursorBoxAt(rowColOf(anchor).row, xOf(rowColOf(anchor)));
    case Qt::ImInputItemClipRectangle:
        return QRectF(q->viewport()->rect());
    case Qt::ImFont:
        return q->font();
    case Qt::ImAbsolutePosition:
        return cursor.offset;
    case Qt::ImCurrentSelection:
        return store.text(marked().start, qMin(marked().end - marked().start, shownMarked));
    default:
        return querySurroundings(query, argument);
    }
}

QVariant QMultiLineEdit::Private::querySurroundings(
    Qt::InputMethodQuery query, const QVariant &argument) const
{
    const TextRange shown = surroundings();
    const auto inShown = [&shown](qint64 offset) {
        return int(qBound(shown.start, offset, shown.end) - shown.start);
    };
    const auto upTo = [&argument](qint64 most) {
        return argument.isValid() ? qBound<qint64>(0, qint64(argument.toInt()), most) : most;
    };
    switch (query) {
    case Qt::ImCursorPosition:
        return argument.isValid() ? inShown(placeAtPoint(argument.toPointF()).offset)
                                  : inShown(cursor.offset);
    case Qt::ImAnchorPosition:
        return inShown(anchor.offset);
    case Qt::ImSurroundingText:
        return store.text(shown.start, shown.end - shown.start);
    case Qt::ImTextBeforeCursor: {
        const qint64 length = upTo(cursor.offset - shown.start);
        return store.text(cursor.offset - length, length);
    }
    case Qt::ImTextAfterCursor:
        return store.text(cursor.offset, upTo(shown.end - cursor.offset));
    default:
        return {};
    }
}

void QMultiLineEdit::Private::tellInputMethod()
{
    q->updateMicroFocus(Qt::ImQueryInput);
}

const QMultiLineEdit::Preedit &QMultiLineEdit::preedit() const
{
    return d->preedit;
}

bool QMultiLineEdit::isComposing() const
{
    return !d->preedit.text.isEmpty();
}

void QMultiLineEdit::commitPreedit()
{
    if (!isComposing())
        return;
    QGuiApplication::inputMethod()->commit();
    if (!isComposing())
        return;
    // There are input methods that do not know this request, and they may have gone meanwhile. What was shown
    // is kept, and the input method is to forget it; some then commit it themselves.
    QInputMethodEvent event;
    event.setCommitString(d->preedit.text);
    QCoreApplication::sendEvent(this, &event);
    const QScopedValueRollback deaf(d->deafToInputMethod, true);
    QGuiApplication::inputMethod()->reset();
}

void QMultiLineEdit::inputMethodEvent(QInputMethodEvent *event)
{
    if (d->readOnly || d->deafToInputMethod) {
        event->ignore();
        return;
    }
    d->compose(*event);
    event->accept();
}

QVariant QMultiLineEdit::inputMethodQuery(Qt::InputMethodQuery query) const
{
    return inputMethodQuery(query, QVariant());
}

/// Rectangles are the viewport's; the input method counts from the widget's corner.
QVariant QMultiLineEdit::inputMethodQuery(Qt::InputMethodQuery query, const QVariant &argument) const
{
    const QVariant answer = d->query(query, argument);
    if (answer.typeId() == QMetaType::QRectF)
        return answer.toRectF().translated(viewport()->pos());
    return answer.isValid() ? answer : QAbstractScrollArea::inputMethodQuery(query);
}
