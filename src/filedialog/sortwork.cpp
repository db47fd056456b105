#include "filedialog/sortwork.h"

SortWork::SortWork(FileRowList unsorted, FileOrder order)
    : rows(std::move(unsorted))
    , m_order(order)
{
}

JobWork::Step SortWork::step(JobTurn & /*turn*/)
{
    resortRows(rows, m_order);
    return Step::Done;
}
