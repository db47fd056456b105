#include "app/recentplaces.h"

#include "app/documentfile.h"

#include <algorithm>

namespace {

bool isRecorded(const ctlEditer &editor)
{
    return hasFile(editor) && !editor.name().isEmpty() && !editor.document().file().isNew();
}

auto isEntryOf(const ctlEditer &editor)
{
    return [path = editor.path(), name = editor.name()](
               const RecentEntry &entry) { return entry.path == path && entry.name == name; };
}

bool hasMoved(const ctlEditer &editor)
{
    return editor.cursorOffset() != Offset() || editor.topRow() != RowIndex() || editor.xOffset() != 0;
}

} // namespace

void RecentPlaces::add(const ctlEditer &editor)
{
    if (enter(editor))
        emit changed();
}

void RecentPlaces::add(const QList<ctlEditer *> &editors)
{
    bool isAny = false;
    for (const ctlEditer *const editor : editors)
        isAny = enter(*editor) || isAny;
    if (isAny)
        emit changed();
}

/// False for one that is left out.
bool RecentPlaces::enter(const ctlEditer &editor)
{
    if (!isRecorded(editor))
        return false;
    auto &entries = recentFiles().entries;
    const auto oldest = entries.end() - 1;
    const auto place = std::find_if(entries.begin(), oldest, isEntryOf(editor));
    std::rotate(entries.begin(), place, place + 1);
    entries.front() = m_carried.contains(&editor) ? m_carried.take(&editor) : entryFor(editor);
    return true;
}

void RecentPlaces::restore(ctlEditer &editor) const
{
    if (appSettings().RestoreScroll != 1 || !isRecorded(editor))
        return;
    const std::optional<RecentEntry> entry = placeOf(editor);
    if (entry)
        show(editor, *entry);
}

RecentEntry RecentPlaces::entryFor(const ctlEditer &editor)
{
    const RowCol cursor = editor.cursorPosition();
    return { editor.path(), editor.name(), cursor.row.value(), cursor.column, editor.xOffset(),
        editor.yOffset() };
}

void RecentPlaces::show(ctlEditer &editor, const RecentEntry &entry)
{
    // The cursor first: setting it scrolls to it, and it may have been out of view.
    editor.setCursorPosition(qMax<qint64>(0, entry.cursorRow), qMax<qint64>(0, entry.cursorColumn));
    editor.setXOffset(entry.scrollX);
    editor.setYOffset(entry.scrollY);
}

void RecentPlaces::carry(const ctlEditer &editor)
{
    if (const std::optional<RecentEntry> place = placeOf(editor))
        m_carried.insert(&editor, *place);
}

void RecentPlaces::restoreCarried(ctlEditer &editor)
{
    if (!m_carried.contains(&editor))
        return;
    restore(editor);
    m_carried.remove(&editor);
}

void RecentPlaces::restoreCarriedIfThere(ctlEditer &editor)
{
    const auto carried = m_carried.constFind(&editor);
    if (carried == m_carried.cend() || hasMoved(editor))
        return;
    const qint64 shown = editor.viewport()->height() / editor.cellHeight() + 1;
    const qint64 lastShown = carried->scrollY / editor.cellHeight() + shown;
    if (editor.numLines() > qMax<qint64>(carried->cursorRow, lastShown) + 1)
        restoreCarried(editor);
}

void RecentPlaces::settleCarried(ctlEditer &editor)
{
    if (hasMoved(editor))
        dropCarried(editor);
    else
        restoreCarried(editor);
}

void RecentPlaces::dropCarried(const ctlEditer &editor)
{
    m_carried.remove(&editor);
}

std::optional<RecentEntry> RecentPlaces::placeOf(const ctlEditer &editor) const
{
    const auto carried = m_carried.constFind(&editor);
    if (carried != m_carried.cend())
        return *carried;
    const auto &entries = recentFiles().entries;
    const auto entry = std::find_if(entries.begin(), entries.end(), isEntryOf(editor));
    return entry == entries.end() ? std::nullopt : std::optional(*entry);
}
