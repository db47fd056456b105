#include "document/editabletext.h"

#include "text/layoutchange.h"

#include <utility>

void EditableText::replace(Offset offset, qint64 removed, QStringView inserted, Joining joining)
{
    if (removed == 0 && inserted.isEmpty())
        return;
    m_history.replace(m_store, offset, removed, inserted, joining);
    noteEdit({ offset, removed, inserted.size() });
}

void EditableText::replace(Offset offset, qint64 removed, const TextPiece &inserted)
{
    if (removed == 0 && inserted.isEmpty())
        return;
    m_history.replace(m_store, offset, removed, inserted);
    noteEdit({ offset, removed, inserted.length() });
}

void EditableText::noteEdit(const TextChange &change)
{
    Q_ASSERT(!m_isHeld);
    m_isEdited = true;
    emit changed(change);
}

Offset EditableText::undo()
{
    return applyStep(&UndoHistory::undo);
}

Offset EditableText::redo()
{
    return applyStep(&UndoHistory::redo);
}

Offset EditableText::applyStep(Offset (UndoHistory::*step)(TextStore &, const UndoHistory::Changed &))
{
    return (m_history.*step)(m_store, [this](const TextChange &change) {
        m_isEdited = m_history.canUndo();
        emit changed(change);
    });
}

bool EditableText::layOut(LayoutChange &change, QDeadlineTimer end)
{
    if (!m_history.measure(change, end) || !m_store.setLayout(change, end))
        return false;
    m_history.setLayout(change);
    return true;
}

void EditableText::layOutAhead(TextRange lines, const LayoutChange &change)
{
    m_store.layOutAhead(lines, change.layout());
}

bool EditableText::requestChange()
{
    if (m_isHeld)
        emit refused();
    return !m_isHeld;
}

void EditableText::seekEnd()
{
    if (m_isHeld)
        emit endSought();
}

void EditableText::setHeld(bool held)
{
    if (std::exchange(m_isHeld, held) && !held)
        emit released();
}

void EditableText::dropText()
{
    emit aboutToReplace();
    m_dropped = m_store.length();
    m_history.clear();
    m_store = TextStore(m_store.layoutRule());
}

void EditableText::setText(TextStore &&text, bool isEdited)
{
    m_store = std::move(text);
    m_isEdited = isEdited;
    tellReplaced();
}

void EditableText::beginParts(TextStore &&start)
{
    m_isHeld = true;
    m_isEdited = false;
    m_store = std::move(start);
    if (m_store.length() > 0)
        emit grew({ {}, 0, m_store.length() });
}

void EditableText::takePart(TextStore &&part)
{
    Q_ASSERT(m_isHeld);
    const Offset before = m_store.end();
    m_store.append(std::move(part));
    emit grew({ before, 0, m_store.end() - before });
}

void EditableText::endParts()
{
    m_isHeld = false;
    tellReplaced();
    emit released();
}

void EditableText::tellReplaced()
{
    Q_ASSERT(m_dropped);
    emit replaced({ {}, *std::exchange(m_dropped, std::nullopt), m_store.length() });
}

void EditableText::appendUnedited(qint64 removed, const TextPiece &added)
{
    m_history.clear();
    m_store.exchange(m_store.end() - removed, removed, added);
    emit changed({ m_store.end() - added.length(), removed, added.length() });
}
