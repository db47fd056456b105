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

qint64 rowsBefore(const TextTree &leaf, const TextLayout &layout, Subpixels fill, qint64 unit)
{
    return scanRows(leaf, layout, 0, fill, [&](auto &scan) {
        using Event = typename std::remove_reference_t<decltype(scan)>::Event;
        qint64 rows = 0;
        while (scan.next() != Event::None && scan.position() <= unit)
            ++rows;
        return rows;
    });
}

/// The end of the row behind the first `rowsBefore` that end in a leaf.
RowEnd endBehind(const TextTree &leaf, const TextLayout &layout, Subpixels fill, qint64 rowsBefore)
{
    return scanRows(leaf, layout, 0, fill, [&](auto &scan) {
        using Event = typename std::remove_reference_t<decltype(scan)>::Event;
        Event event = scan.next();
        for (; rowsBefore > 0; --rowsBefore)
            event = scan.next();
        Q_ASSERT(event != Event::None);
        return RowEnd{ Offset(scan.position()), event == Event::LineEnd };
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
        return RowEnd{ Offset(scan.position()), event == Event::LineEnd };
    });
}

/// Looks for the last place at which x is not beyond `target`, from the left; `x` moves along.
Offset placeAcross(
    const TextTree &tree, const TextLayout &layout, Offset from, Offset to, Subpixels &x, Subpixels target)
{
    if (from == Offset() && to == tree.end()) {
        const Subpixels exit = tree.summary.head.from(x, layout.tabStop());
        if (exit <= target) {
            x = exit;
            return to;
        }
    }
    if (tree.isLeaf())
        return Offset(unitAcross(tree, layout, from.value(), to.value(), x, target));
    qint64 before = 0;
    for (const TextTree &child : std::as_const(innerOf(tree))) {
        const Offset first = qMax(Offset(), from - before);
        const Offset last = qMin(child.end(), to - before);
        if (first < last) {
            const Offset place = placeAcross(child, layout, first, last, x, target);
            if (place < last)
                return place + before;
        }
        before += child.units();
        if (to <= Offset(before))
            break;
    }
    return to;
}

} // namespace

RowIndex rowAt(const TextTree &tree, const TextLayout &layout, Offset offset)
{
    RowIndex row;
    Subpixels fill = 0;
    const TextTree &leaf = descend(tree, [&](const TextTree &child) {
        if (!passUnits(child, offset))
            return false;
        const RowFlow passed = rowsIn(child, layout, fill);
        row += passed.breaks;
        fill = passed.exit;
        return true;
    });
    return row + rowsBefore(leaf, layout, fill, offset.value());
}

RowEnd rowEnd(const TextTree &tree, const TextLayout &layout, RowIndex row)
{
    qint64 rowsBefore = row.value();
    qint64 unitsBefore = 0;
    Subpixels fill = 0;
    const TextTree &leaf = descend(tree, [&](const TextTree &child) {
        const RowFlow rows = rowsIn(child, layout, fill);
        if (rowsBefore < rows.breaks)
            return false;
        rowsBefore -= rows.breaks;
        fill = rows.exit;
        unitsBefore += child.units();
        return true;
    });
    RowEnd end = endBehind(leaf, layout, fill, rowsBefore);
    end.next += unitsBefore;
    return end;
}

RowEnd rowEnd(const TextTree &tree, const TextLayout &layout, RowIndex row, Offset start)
{
    Offset unit = start;
    const TextTree &leaf = descend(tree, [&unit](const TextTree &child) { return passUnits(child, unit); });
    const std::optional<RowEnd> end = endOfRowFrom(leaf, layout, unit.value());
    return end ? RowEnd{ start + (end->next - unit), end->isLineEnd } : rowEnd(tree, layout, row);
}

LineIndex lineAt(const TextTree &tree, Offset offset)
{
    LineIndex line;
    const TextTree &leaf = descend(tree, [&](const TextTree &child) {
        const bool isBefore = passUnits(child, offset);
        line += isBefore ? child.summary.lineEnds : 0;
        return isBefore;
    });
    return line + lineEndsBefore(leafOf(leaf), offset.value());
}

Offset lineStart(const TextTree &tree, LineIndex line)
{
    qint64 linesBefore = line.value();
    if (linesBefore == 0)
        return {};
    Offset start;
    const TextTree &leaf = descend(tree, [&](const TextTree &child) {
        if (linesBefore <= child.summary.lineEnds)
            return false;
        linesBefore -= child.summary.lineEnds;
        start += child.units();
        return true;
    });
    return start + behindLineEnd(leafOf(leaf), linesBefore);
}

Subpixels xAcross(const TextTree &tree, const TextLayout &layout, Offset from, Offset to, Subpixels x)
{
    placeAcross(tree, layout, from, to, x, std::numeric_limits<Subpixels>::max());
    return x;
}

Offset offsetAcross(const TextTree &tree, const TextLayout &layout, Offset from, Offset to, Subpixels target)
{
    Subpixels x = 0;
    return placeAcross(tree, layout, from, to, x, target);
}
