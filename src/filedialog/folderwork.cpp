#include "filedialog/folderwork.h"

#include <QDeadlineTimer>

#include <chrono>
#include <utility>

FolderWork::FolderWork(const QString &folder, const NameFilter &filter, const Surroundings &surroundings,
    FileOrder order, FileRowList oldRows)
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
            m_rows.clear();
            return Step::Done;
        }
        m_rows.add(std::make_shared<const ctlFileListViewItem>(std::move(*entry), m_surroundings));
    }
    if (!turn.isStopped() && m_isPartWanted.exchange(false))
        handOver(turn);
    return Step::More;
}

void FolderWork::handOver(JobTurn &turn)
{
    const FileOrder order = m_order;
    parts.put({ m_rows.inOrder(order), order });
    turn.tellPart();
}

void FolderWork::giveUp()
{
    parts.take();
    m_rows.clear();
    m_oldRows.clear();
}
