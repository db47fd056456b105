#include "text/rowlookup.h"

#include "text/leaflayout.h"
#include "text/rowflow.h"

#include <optional>

namespace {

/// Rows that end in a tree's text, and the x behind it.
RowFlow rowsIn(const TextTree &tree, const TextLayout &layout, Subpixels fill)
{
    if (!layout.wraps())
        return { tree.summary.lineEnds, 0 };
    const RowFlow wrapped = flow(tree, layout, fill);
    return { wrapped.breaks + tree.summary.lineEnds, wrapped.exit };
}

qint64 leafRowsBefore(const TextTree &leaf, const TextLayout &layout, Subpixels fill, qint64 offset)
{
    return scanRows(leaf, layout, 0, fill, [&](auto &scan) {
        using Event = typename std::remove_reference_t<decltype(scan)>::Event;
        qint64 rows = 0;
        while (scan.next() != Event::None && scan.position() <= offset)
            ++rows;
        return rows;
    });
}

RowEnd leafRowEnd(const TextTree &leaf, const TextLayout &layout, Subpixels fill, qint64 row)
{
    return scanRows(leaf, layout, 0, fill, [&](auto &scan) {
        using Event = typename std::remove_reference_t<decltype(scan)>::Event;
        Event event = scan.next();
        for (; row > 0; --row)
            event = scan.next();
        Q_ASSERT(event != Event::None);
        return RowEnd{ scan.position(), event == Event::LineEnd };
    });
}

/// The end of the row that begins at a unit of a leaf, if it is in that leaf.
std::optional<RowEnd> endOfRowFrom(const TextTree &leaf, const TextLayout &layout, qint64 unit)
{
    return scanRows(leaf, layout, unit, 0, [](auto &scan) -> std::optional<RowEnd> {
        using Event = typename std::remove_reference_t<decltype(scan)>::Event;
        const Event event = scan.next();
        if (event == Event::None)
            return std::nullopt;
        return RowEnd{ scan.position(), event == Event::LineEnd };
    });
}

/// Looks for the last place at which x is not beyond `target`, from the left; `x` moves along.
qint64 placeAcross(
    const TextTree &tree, const TextLayout &layout, qint64 from, qint64 to, Subpixels &x, Subpixels target)
{
    if (from == 0 && to == tree.units()) {
        const Subpixels exit = tree.summary.head.from(x, layout.tabStop());
        if (exit <= target) {
            x = exit;
            return to;
        }
    }
    if (tree.isLeaf())
        return unitAcross(tree, layout, from, to, x, target);
    qint64 start = 0;
    for (const TextTree &child : std::as_const(innerOf(tree))) {
        const qint64 first = qMax<qint64>(0, from - start);
        const qint64 last = qMin(child.units(), to - start);
        if (first < last) {
            const qint64 place = placeAcross(child, layout, first, last, x, target);
            if (place < last)
                return start + place;
        }
        start += child.units();
        if (start >= to)
            break;
    }
    return to;
}

} // namespace

qint64 rowsBefore(const TextTree &tree, const TextLayout &layout, qint64 offset)
{
    qint64 rows = 0;
    Subpixels fill = 0;
    const TextTree &leaf = descend(tree, [&](const TextTree &child) {
        if (!passUnits(child, offset))
            return false;
        const RowFlow passed = rowsIn(child, layout, fill);
        rows += passed.breaks;
        fill = passed.exit;
        return true;
    });
    return rows + leafRowsBefore(leaf, layout, fill, offset);
}

RowEnd rowEnd(const TextTree &tree, const TextLayout &layout, qint64 row)
{
    qint64 start = 0;
    Subpixels fill = 0;
    const TextTree &leaf = descend(tree, [&](const TextTree &child) {
        const RowFlow rows = rowsIn(child, layout, fill);
        if (row < rows.breaks)
            return false;
        row -= rows.breaks;
        fill = rows.exit;
        start += child.units();
        return true;
    });
    RowEnd end = leafRowEnd(leaf, layout, fill, row);
    end.next += start;
    return end;
}

RowEnd rowEnd(const TextTree &tree, const TextLayout &layout, qint64 row, qint64 start)
{
    qint64 unit = start;
    const TextTree &leaf = descend(tree, [&unit](const TextTree &child) { return passUnits(child, unit); });
    const std::optional<RowEnd> end = endOfRowFrom(leaf, layout, unit);
    return end ? RowEnd{ start - unit + end->next, end->isLineEnd } : rowEnd(tree, layout, row);
}

qint64 linesBefore(const TextTree &tree, qint64 offset)
{
    qint64 lines = 0;
    const TextTree &leaf = descend(tree, [&](const TextTree &child) {
        const bool isBefore = passUnits(child, offset);
        lines += isBefore ? child.summary.lineEnds : 0;
        return isBefore;
    });
    return lines + lineEndsBefore(leafOf(leaf), offset);
}

qint64 behindLine(const TextTree &tree, qint64 count)
{
    if (count == 0)
        return 0;
    qint64 start = 0;
    const TextTree &leaf = descend(tree, [&](const TextTree &child) {
        if (count <= child.summary.lineEnds)
            return false;
        count -= child.summary.lineEnds;
        start += child.units();
        return true;
    });
    return start + behindLineEnd(leafOf(leaf), count);
}

Subpixels xAcross(const TextTree &tree, const TextLayout &layout, qint64 from, qint64 to, Subpixels x)
{
    placeAcross(tree, layout, from, to, x, std::numeric_limits<Subpixels>::max());
    return x;
}

qint64 offsetAcross(const TextTree &tree, const TextLayout &layout, qint64 from, qint64 to, Subpixels target)
{
    Subpixels x = 0;
    return placeAcross(tree, layout, from, to, x, target);
}
