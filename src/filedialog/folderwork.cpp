#include "filedialog/folderwork.h"

#include <QDeadlineTimer>

#include <chrono>
#include <utility>

FolderWork::FolderWork(const QString &folder, const NameFilter &filter, const Surroundings &surroundings,
    FileOrder order, OldRows oldRows)
    : m_reader(folder, filter)
    , m_surroundings(surroundings)
    , m_oldRows(std::move(oldRows))
    , m_order(order)
{
}

JobWork::Step FolderWork::step(JobTurn &turn)
{
    constexpr int most = 256;
    constexpr std::chrono::milliseconds longest{ 50 }; // of a slow disk
    m_oldRows.clear();
    const QDeadlineTimer end(longest);
    for (int count = 0; count < most && !end.hasExpired() && !turn.isStopped(); ++count) {
        std::optional<FileEntry> entry = m_reader.next();
        if (!entry) {
            handOver(turn);
            m_entries.clear();
            return Step::Done;
        }
        read(std::move(*entry));
    }
    if (!turn.isStopped() && m_isPartWanted.exchange(false))
        handOver(turn);
    return Step::More;
}

void FolderWork::read(FileEntry &&entry)
{
    m_fresh.push_back(std::make_unique<ctlFileListViewItem>(std::move(entry), m_surroundings));
    m_entries.push_back(m_fresh.back()->sharedInfo());
}

void FolderWork::handOver(JobTurn &turn)
{
    const FileOrder order = m_order;
    parts.put({ std::exchange(m_fresh, {}), sortedRows(m_entries, order), order });
    turn.tellPart();
}

void FolderWork::giveUp()
{
    parts.take();
    m_fresh.clear();
    m_oldRows.clear();
}
