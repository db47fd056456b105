#include "app/frmmain.h"

#include "editor/ctlediter.h"
#include "platform/menu.h"
#include "platform/resource.h"
#include "settings/settings.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isSaved(const ctlEditer *editor)
{
    return !editor->path().isEmpty() && !editor->name().isEmpty();
}

auto isEntryOf(const ctlEditer *editor)
{
    return [path = editor->path(), name = editor->name()](
               const RecentEntry &entry) { return entry.path == path && entry.name == name; };
}

RecentEntry entryFor(const ctlEditer *editor)
{
    const RowCol cursor = editor->cursorPosition();
    return { editor->path(), editor->name(), cursor.row, cursor.column, editor->xOffset(),
        editor->topRow() * editor->cellHeight() };
}

} // namespace

void frmMain::rebuildRecentMenu()
{
    item(FileCommand::RecentFiles)->setEnabled(recentFiles().RecentViewCnt > 0);
    m_recentMenu->clear();
    const QIcon icon = Resource::loadIcon(u"corvex/menu/recent"_s);
    for (int row = 0; row < qMin(recentFiles().RecentViewCnt, recentEntryCount); ++row) {
        const RecentEntry &entry = recentFiles().entries[std::size_t(row)];
        if (entry.isUsed())
            m_recentMenu->addAction(icon, Menu::textFor(entry.path + entry.name))->setData(row);
    }
    if (m_recentMenu->isEmpty())
        m_recentMenu->addAction(tr("(no item)"))->setEnabled(false);
}

void frmMain::slotCmdMnuRecent(int id)
{
    if (!currentEditor() || id < 0 || id >= recentEntryCount)
        return;
    const RecentEntry entry = recentFiles().entries[std::size_t(id)];
    if (entry.isUsed())
        openChosen(currentEditor(), { entry.path, entry.name, 0, 0 });
}

void frmMain::addRecent(ctlEditer *editor)
{
    if (!isSaved(editor))
        return;
    auto &entries = recentFiles().entries;
    const auto oldest = entries.end() - 1;
    const auto place = std::find_if(entries.begin(), oldest, isEntryOf(editor));
    std::rotate(entries.begin(), place, place + 1);
    entries.front() = m_carriedPlaces.contains(editor) ? m_carriedPlaces.take(editor) : entryFor(editor);
    rebuildRecentMenu();
}

std::optional<RecentEntry> frmMain::rememberedPlace(const ctlEditer *editor) const
{
    const auto carried = m_carriedPlaces.constFind(editor);
    if (carried != m_carriedPlaces.cend())
        return *carried;
    const auto &entries = recentFiles().entries;
    const auto entry = std::find_if(entries.begin(), entries.end(), isEntryOf(editor));
    return entry == entries.end() ? std::nullopt : std::optional(*entry);
}

void frmMain::restorePosition(ctlEditer *editor)
{
    if (appSettings().RestoreScroll != 1 || !isSaved(editor))
        return;
    const std::optional<RecentEntry> entry = rememberedPlace(editor);
    if (!entry)
        return;
    // The cursor first: setting it scrolls to it, and it may have been out of view.
    editor->setCursorPosition(qMax<qint64>(0, entry->cursorRow), qMax<qint64>(0, entry->cursorColumn));
    editor->setXOffset(entry->scrollX);
    editor->setTopRow(qMax<qint64>(0, entry->scrollY) / qMax(1, editor->cellHeight()));
}
