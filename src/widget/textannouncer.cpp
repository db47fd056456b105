#include "widget/textannouncer.h"

#include "widget/clampedint.h"
#include "widget/textaccessible.h"

namespace {

/// The beginning of a text, as long as one announcement may be; no surrogate pair is cut.
template <typename Text> QString beginning(const Text &text, Offset offset, qint64 length)
{
    QString shown = text.text(offset, qMin(length, TextAccessible::longestUnit));
    if (shown.size() < length && shown.back().isHighSurrogate())
        shown.chop(1);
    return shown;
}

} // namespace

TextAnnouncer::TextAnnouncer(QObject &editor)
    : m_editor(editor)
{
}

void TextAnnouncer::keep(const TextStore &store)
{
    m_keeps = QAccessible::isActive();
    if (m_keeps)
        m_before = store.piece({}, store.length());
}

void TextAnnouncer::announceChange(const TextStore &store, const TextChange &change)
{
    if (!m_keeps)
        return;
    const auto [offset, removed, inserted] = change;
    if (removed > 0) {
        QAccessibleTextRemoveEvent event(&m_editor, clampedInt(offset), beginning(m_before, offset, removed));
        QAccessible::updateAccessibility(&event);
    }
    if (inserted > 0) {
        QAccessibleTextInsertEvent event(&m_editor, clampedInt(offset), beginning(store, offset, inserted));
        QAccessible::updateAccessibility(&event);
    }
    m_before = {};
    m_keeps = false;
}

void TextAnnouncer::announceCursor(Offset cursor, Offset anchor)
{
    const bool moved = m_cursor != cursor;
    const bool selects = (m_cursor != m_anchor || cursor != anchor) && (moved || m_anchor != anchor);
    m_cursor = cursor;
    m_anchor = anchor;
    if (!QAccessible::isActive())
        return;
    if (moved) {
        QAccessibleTextCursorEvent event(&m_editor, clampedInt(cursor));
        QAccessible::updateAccessibility(&event);
    }
    if (selects) {
        QAccessibleTextSelectionEvent event(
            &m_editor, clampedInt(qMin(cursor, anchor)), clampedInt(qMax(cursor, anchor)));
        event.setCursorPosition(clampedInt(cursor));
        QAccessible::updateAccessibility(&event);
    }
}
