#include "filedialog/sortwork.h"

SortWork::SortWork(FileEntries entries, FileOrder order)
    : m_entries(std::move(entries))
    , m_order(order)
{
}

JobWork::Step SortWork::step(JobTurn & /*turn*/)
{
    rows = resortedRows(m_entries, m_order);
    m_entries.clear();
    return Step::Done;
}
