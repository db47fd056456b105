#include "text/rowflow.h"

#include "text/leaflayout.h"
#include "text/rowruler.h"

#include <limits>
#include <optional>

namespace {

/// Rows of more units than this have no table.
constexpr qint64 maxEntries = 4096;

RowFlow computeHeadFlow(const TextTree &tree, const TextLayout &layout, Subpixels fill);

/// Rows of equal units are a division.
RowFlow evenFlow(Subpixels width, int even, Subpixels limit, Subpixels fill)
{
    const qint64 count = width / even;
    const qint64 perRow = qMax<qint64>(1, limit / even);
    const qint64 room = fill == 0 ? perRow : qMax<qint64>(0, limit - fill) / even;
    if (count <= room)
        return { 0, fill + width };
    const qint64 breaks = (count - room + perRow - 1) / perRow;
    return { breaks, (count - room - (breaks - 1) * perRow) * even };
}

/// The answer if the summary alone gives it.
std::optional<RowFlow> summaryFlow(const TextSummary &summary, const TextLayout &layout, Subpixels fill)
{
    const Subpixels exit = summary.head.from(fill, layout.tabStop());
    if (exit <= layout.limit())
        return RowFlow{ 0, exit };
    if (summary.even > 0 && !summary.head.hasTab())
        return evenFlow(summary.head.before, summary.even, layout.limit(), fill);
    return std::nullopt;
}

RowFlow leafFlow(const TextTree &leaf, const TextLayout &layout, Subpixels fill)
{
    return scanRows(leaf, layout, 0, fill, [](auto &scan) {
        using Event = typename std::remove_reference_t<decltype(scan)>::Event;
        RowFlow result;
        while (scan.next() == Event::Break)
            ++result.breaks;
        result.exit = scan.x();
        return result;
    });
}

/// The unit of a tree inside one line before which the first break is, -1 if there is none; `x` becomes that
/// at the place where the search ended.
qint64 firstBreak(const TextTree &tree, const TextLayout &layout, Subpixels &x)
{
    const Subpixels exit = tree.summary.head.from(x, layout.tabStop());
    if (exit > layout.limit() && tree.isLeaf()) {
        const qint64 position = scanRows(tree, layout, 0, x, [](auto &scan) -> qint64 {
            using Event = typename std::remove_reference_t<decltype(scan)>::Event;
            return scan.next() == Event::Break ? scan.position() : -1;
        });
        if (position >= 0)
            return position;
    } else if (exit > layout.limit()) {
        qint64 before = 0;
        for (const TextTree &child : innerOf(tree)) {
            if (const qint64 position = firstBreak(child, layout, x); position >= 0)
                return before + position;
            before += child.units();
        }
    }
    x = exit;
    return -1;
}

/// Fills the table of one node, child by child: each entry is a row start that moves on through the node.
class TableMaker {
public:
    TableMaker(const TextInner &node, const TextLayout &layout)
        : m_node(node)
        , m_layout(layout)
    {
    }

    /// False if the node can have none.
    bool make(RowTable &table)
    {
        const TextTree &first = m_node.children[0];
        Subpixels x = 0;
        const qint64 last = firstBreak(first, m_layout, x);
        if (last < 0 || last > maxEntries)
            return false;
        table.entries.resize(size_t(last) + 1);
        if (!start(first, table.entries))
            return false;
        for (qint32 i = 1; i < m_node.count; ++i)
            advance(m_node.children[size_t(i)], table.entries);
        return true;
    }

private:
    using Entries = std::vector<RowTable::Entry>;

    static const RowTable *tableOf(const TextTree &tree, const TextLayout &layout)
    {
        prepareTable(tree, layout);
        return innerOf(tree).table.get();
    }
    static RowTable::Entry entry(const RowFlow &flow) { return { quint32(flow.breaks), qint32(flow.exit) }; }

    bool start(const TextTree &first, Entries &entries)
    {
        if (first.summary.even > 0 && !first.summary.head.hasTab()) {
            for (size_t k = 0; k < entries.size(); ++k)
                entries[k] = evenEntry(first, qint64(k));
        } else if (first.isLeaf()) {
            m_ruler.measure(first, m_layout, first.units());
            m_ruler.followRows(m_rows);
            for (size_t k = 0; k < entries.size(); ++k)
                entries[k] = { m_rows[k].breaks + 1, m_rows[k].exit };
        } else {
            const RowTable *table = tableOf(first, m_layout);
            if (!table || table->entries.size() < entries.size())
                return false;
            std::copy_n(table->entries.begin(), entries.size(), entries.begin());
        }
        return true;
    }
    RowTable::Entry evenEntry(const TextTree &first, qint64 k) const
    {
        const int even = first.summary.even;
        RowFlow flow = evenFlow(first.summary.head.before - k * even, even, m_layout.limit(), 0);
        ++flow.breaks;
        return entry(flow);
    }

    void advance(const TextTree &child, Entries &entries)
    {
        prepare(child);
        std::optional<qint32> known;
        RowTable::Entry step{};
        for (RowTable::Entry &row : entries) {
            if (known != row.exit) {
                known = row.exit;
                step = entry(childFlow(child, row.exit));
            }
            row.breaks += step.breaks;
            row.exit = step.exit;
        }
    }
    void prepare(const TextTree &child)
    {
        m_table = nullptr;
        m_leafRows = false;
        if (child.summary.even > 0 && !child.summary.head.hasTab())
            return;
        if (child.isLeaf()) {
            m_ruler.measure(child, m_layout, child.units());
            m_ruler.followRows(m_rows);
            m_leafRows = true;
        } else if ((m_table = tableOf(child, m_layout))) {
            const TextTree *leaf = &child;
            while (!leaf->isLeaf())
                leaf = &innerOf(*leaf).children[0];
            m_ruler.measure(*leaf, m_layout, qMin(leaf->units(), qint64(m_table->entries.size())));
        }
    }
    RowFlow childFlow(const TextTree &child, Subpixels fill) const
    {
        if (const auto flow = summaryFlow(child.summary, m_layout, fill))
            return *flow;
        if (!m_leafRows && !m_table)
            return computeHeadFlow(child, m_layout, fill);
        const qint64 k = m_ruler.breakAfter(0, fill);
        if (m_leafRows) {
            return k < 0 ? RowFlow{ 0, child.summary.head.from(fill, m_layout.tabStop()) }
                         : RowFlow{ m_rows[size_t(k)].breaks + 1, m_rows[size_t(k)].exit };
        }
        if (k < 0)
            return computeHeadFlow(child, m_layout, fill);
        const RowTable::Entry &found = m_table->entries[size_t(k)];
        return { found.breaks, found.exit };
    }

    const TextInner &m_node;
    const TextLayout &m_layout;
    RowRuler m_ruler;
    std::vector<RowTable::Entry> m_rows;
    const RowTable *m_table = nullptr; ///< of the child at hand, if it is a node that has one
    bool m_leafRows = false; ///< the child at hand is a leaf, followed in m_rows
};

RowFlow innerFlow(const TextTree &tree, const TextLayout &layout, Subpixels fill)
{
    TextInner &node = innerOf(tree);
    if (node.tableState == TextInner::TableState::Unasked)
        node.tableState = TextInner::TableState::Asked;
    else
        prepareTable(tree, layout);
    if (node.table) {
        Subpixels x = fill;
        const qint64 k = firstBreak(node.children[0], layout, x);
        if (k >= 0) {
            const RowTable::Entry &found = node.table->entries[size_t(k)];
            return { found.breaks, found.exit };
        }
    }
    RowFlow result{ 0, fill };
    for (const TextTree &child : std::as_const(node)) {
        const RowFlow part = headFlow(child, layout, result.exit);
        result = { result.breaks + part.breaks, part.exit };
        if (child.summary.lineEnds > 0)
            break;
    }
    return result;
}

RowFlow computeHeadFlow(const TextTree &tree, const TextLayout &layout, Subpixels fill)
{
    if (const auto flow = summaryFlow(tree.summary, layout, fill))
        return *flow;
    return tree.isLeaf() ? leafFlow(tree, layout, fill) : innerFlow(tree, layout, fill);
}

bool canHaveTable(const TextTree &tree, const TextLayout &layout)
{
    const TextSummary &summary = tree.summary;
    return layout.wraps() && summary.lineEnds == 0 && (summary.even <= 0 || summary.head.hasTab());
}

} // namespace

RowFlow headFlow(const TextTree &tree, const TextLayout &layout, Subpixels fill)
{
    const TextSummary &summary = tree.summary;
    if (summary.askedFill == fill)
        return { summary.answeredBreaks, summary.answeredExit };
    const RowFlow answer = computeHeadFlow(tree, layout, fill);
    if (answer.breaks <= std::numeric_limits<quint32>::max()) {
        summary.askedFill = qint32(fill);
        summary.answeredBreaks = quint32(answer.breaks);
        summary.answeredExit = qint32(answer.exit);
    }
    return answer;
}

RowFlow flow(const TextTree &tree, const TextLayout &layout, Subpixels fill)
{
    const RowFlow head = headFlow(tree, layout, fill);
    if (tree.summary.lineEnds == 0)
        return head;
    return { head.breaks + tree.summary.breaks, tree.summary.tailFill };
}

void prepareTable(const TextTree &tree, const TextLayout &layout)
{
    using State = TextInner::TableState;
    if (tree.isLeaf() || innerOf(tree).tableState == State::Tried || !canHaveTable(tree, layout))
        return;
    TextInner &node = innerOf(tree);
    node.tableState = State::Tried;
    auto table = std::make_unique<RowTable>();
    if (TableMaker(node, layout).make(*table))
        node.table = std::move(table);
}

void appendSummary(TextSummary &summary, const TextTree &next, const TextLayout &layout)
{
    const TextSummary &added = next.summary;
    const Subpixels tabStop = layout.tabStop();
    if (summary.lineEnds == 0) {
        summary.head = summary.head.then(added.head, tabStop);
        summary.tail = added.tail;
        summary.widest = added.widest;
        summary.breaks = added.breaks;
        summary.tailFill = added.tailFill;
    } else {
        const Subpixels joint = added.head.from(summary.tail, tabStop);
        if (added.lineEnds > 0)
            summary.widest = qMax(summary.widest, qMax(joint, added.widest));
        summary.tail = added.lineEnds > 0 ? added.tail : joint;
        if (layout.wraps()) {
            const RowFlow part = flow(next, layout, summary.tailFill);
            summary.breaks += part.breaks;
            summary.tailFill = qint32(part.exit);
        }
    }
    summary.units += added.units;
    summary.lineEnds += added.lineEnds;
    summary.widestUnit = qMax(summary.widestUnit, added.widestUnit);
    if (summary.even == TextSummary::anyWidth)
        summary.even = added.even;
    else if (added.even != TextSummary::anyWidth && added.even != summary.even)
        summary.even = 0;
    summary.askedFill = -1;
}
