#include "text/texttree.h"

#include "text/codepoint.h"
#include "text/graphemes.h"
#include "text/leaflayout.h"
#include "text/rowflow.h"

#include <algorithm>
#include <iterator>

namespace {

/// Whether a node is large enough to have neighbours.
bool isFull(const TextTree &tree, const NodeSizes &sizes)
{
    return tree.isLeaf() ? tree.units() >= sizes.fewestUnits()
                         : innerOf(tree).count >= sizes.fewestChildren();
}

TextTree innerTree(TextTree *begin, TextTree *end, const TextLayout &layout)
{
    auto *node = new TextInner(begin->height() + 1, layout.stamp());
    node->count = qint32(end - begin);
    std::move(begin, end, node->children.begin());
    TextTree tree{ TextNodeRef(node), {} };
    summarise(tree, layout);
    return tree;
}

/// Appends some of a node's children, moved out where nobody else holds the node.
void takeChildren(TextTrees &list, TextTree &tree, qint32 from, qint32 to)
{
    TextInner &node = innerOf(tree);
    const bool shared = tree.node.isShared();
    for (qint32 i = from; i < to; ++i) {
        TextTree &child = node.children[size_t(i)];
        if (shared)
            list.append(child);
        else
            list.append(std::move(child));
    }
}

TextTrees childrenOf(TextTree &&tree)
{
    TextTrees list;
    const qint32 count = innerOf(tree).count;
    takeChildren(list, tree, 0, count);
    return list;
}

/// One leaf, or as few of about one size as hold units `from`..`to` of a text.
void appendLeaves(TextTrees &list, const LeafText &text, qint64 from, qint64 to, const TextLayout &layout)
{
    const qint64 size = to - from;
    if (size <= layout.sizes().leafUnits) {
        list.append(leafTree(TextLeaf::fromText(text, from, to, size), layout));
        return;
    }
    const qint64 middle = from + cutPlace(text.view().sliced(from, size), size / 2, layout.sizes());
    appendLeaves(list, text, from, middle, layout);
    appendLeaves(list, text, middle, to, layout);
}

void copyLeaf(const TextLeaf &leaf, LeafText &text, qint64 to)
{
    leaf.copyTo(text.units.data() + to, 0, leaf.size);
    if (leaf.spellings)
        text.spellings.append(*leaf.spellings, 0, leaf.size, to);
}

/// The text of two leaves cut anew.
TextTree mergeLeaves(const TextTree &left, const TextTree &right, const TextLayout &layout)
{
    LeafText text(left.units() + right.units());
    copyLeaf(leafOf(left), text, 0);
    copyLeaf(leafOf(right), text, left.units());
    TextTrees list;
    appendLeaves(list, text, 0, text.units.size(), layout);
    return parentOf(std::move(list), layout);
}

TextTree join(TextTree &&left, TextTree &&right, const TextLayout &layout);

TextTree joinEqual(TextTree &&left, TextTree &&right, const TextLayout &layout)
{
    TextTrees list;
    if (isFull(left, layout.sizes()) && isFull(right, layout.sizes())) {
        list.append(std::move(left));
        list.append(std::move(right));
        return parentOf(std::move(list), layout);
    }
    if (left.isLeaf())
        return mergeLeaves(left, right, layout);
    list = childrenOf(std::move(left));
    const qint32 count = innerOf(right).count;
    takeChildren(list, right, 0, count);
    return parentOf(std::move(list), layout);
}

/// Hangs a tree into the side of a higher one. `seam` is the child it is joined with.
TextTree joinLower(TextTree &&higher, TextTree &&lower, bool lowerIsLeft, const TextLayout &layout)
{
    const int childHeight = higher.height() - 1;
    TextTrees list = childrenOf(std::move(higher));
    const qsizetype outer = lowerIsLeft ? 0 : list.size();
    if (lower.height() == childHeight && isFull(lower, layout.sizes())) {
        list.insert(outer, std::move(lower));
        return parentOf(std::move(list), layout);
    }
    const qsizetype seam = lowerIsLeft ? 0 : list.size() - 1;
    TextTree joined = lowerIsLeft ? join(std::move(lower), std::move(list[seam]), layout)
                                  : join(std::move(list[seam]), std::move(lower), layout);
    if (joined.height() == childHeight) {
        list[seam] = std::move(joined);
        return parentOf(std::move(list), layout);
    }
    TextTrees pair = childrenOf(std::move(joined));
    list[seam] = std::move(pair[0]);
    list.insert(seam + 1, std::move(pair[1]));
    return parentOf(std::move(list), layout);
}

/// Both in a row; no character may be cut between them.
TextTree join(TextTree &&left, TextTree &&right, const TextLayout &layout)
{
    if (left.isEmpty() || right.isEmpty())
        return left.isEmpty() ? std::move(right) : std::move(left);
    if (left.height() == right.height())
        return joinEqual(std::move(left), std::move(right), layout);
    if (left.height() > right.height())
        return joinLower(std::move(left), std::move(right), false, layout);
    return joinLower(std::move(right), std::move(left), true, layout);
}

Offset leafStartAt(const TextTree &tree, Offset offset)
{
    Offset start;
    leafAt(tree, offset, start);
    return start;
}

/// The two leaves beside a cut character become one text, which is then cut elsewhere.
TextTree joinAtCharacter(TextTree &&left, TextTree &&right, const TextLayout &layout)
{
    const Offset lastLeaf = leafStartAt(left, left.end() - 1);
    Offset start;
    const Offset firstLeaf(leafAt(right, {}, start).size);
    auto [before, last] = split(std::move(left), lastLeaf, layout);
    auto [first, behind] = split(std::move(right), firstLeaf, layout);
    TextTree middle = mergeLeaves(last, first, layout);
    return join(join(std::move(before), std::move(middle), layout), std::move(behind), layout);
}

std::pair<TextTree, TextTree> splitLeaf(const TextTree &tree, qint64 place, const TextLayout &layout)
{
    const TextLeaf &leaf = leafOf(tree);
    return { leafTree(leaf.part(0, place), layout), leafTree(leaf.part(place, leaf.size - place), layout) };
}

} // namespace

void detach(TextTree &tree)
{
    if (!tree.node.isShared())
        return;
    const TextInner &shared = innerOf(tree);
    auto *copy = new TextInner(shared.height, shared.stamp);
    copy->count = shared.count;
    std::copy(shared.begin(), shared.end(), copy->children.begin());
    tree.node = TextNodeRef(copy);
}

TextTree &childAt(const TextTree &tree, Offset &offset)
{
    return firstNotPassed(
        innerOf(tree), [&offset](const TextTree &child) { return passUnits(child, offset); });
}

void summarise(TextTree &tree, const TextLayout &layout)
{
    const TextInner &node = innerOf(tree);
    TextSummary summary = node.children[0].summary;
    for (const TextTree *child = node.begin() + 1; child != node.end(); ++child)
        appendSummary(summary, *child, layout);
    summary.askedFill = -1;
    tree.summary = summary;
}

TextTree leafTree(TextNodeRef leaf, const TextLayout &layout)
{
    TextTree tree{ std::move(leaf), {} };
    if (leafOf(tree).size == 0)
        return {};
    tree.summary = summaryOf(leafOf(tree), layout);
    return tree;
}

TextTree looseTreeUnder(TextNodeRef node, const TextLayout &layout)
{
    if (!node || node.get()->height == 0)
        return node ? leafTree(std::move(node), layout) : TextTree{};
    TextTree tree{ std::move(node), {} };
    summarise(tree, layout);
    return tree;
}

TextTree treeUnder(TextNodeRef node, const TextLayout &layout)
{
    if (!node)
        return {};
    if (node.get()->height == 0 || static_cast<TextInner *>(node.get())->stamp == layout.stamp())
        return looseTreeUnder(std::move(node), layout);
    TextTree tree{ std::move(node), {} };
    layOut(tree, layout);
    return tree;
}

TextTree parentOf(TextTrees &&children, const TextLayout &layout)
{
    const qsizetype count = children.size();
    if (count == 1)
        return std::move(children[0]);
    if (count <= layout.sizes().children)
        return innerTree(children.begin(), children.end(), layout);
    Q_ASSERT(count <= qsizetype{ 2 } * layout.sizes().children);
    TextTree *middle = children.begin() + count / 2;
    std::array<TextTree, 2> both{ innerTree(children.begin(), middle, layout),
        innerTree(middle, children.end(), layout) };
    return innerTree(both.begin(), both.end(), layout);
}

TextTree concatenate(TextTree &&left, TextTree &&right, const TextLayout &layout)
{
    const bool isCut = !left.isEmpty() && !right.isEmpty() && joinsAcross(left, right);
    return isCut ? joinAtCharacter(std::move(left), std::move(right), layout)
                 : join(std::move(left), std::move(right), layout);
}

std::pair<TextTree, TextTree> split(TextTree &&tree, Offset offset, const TextLayout &layout)
{
    if (offset == Offset())
        return { TextTree{}, std::move(tree) };
    if (offset == tree.end())
        return { std::move(tree), TextTree{} };
    if (tree.isLeaf())
        return splitLeaf(tree, offset.value(), layout);
    const qint32 at = qint32(&childAt(tree, offset) - innerOf(tree).begin());
    const qint32 count = innerOf(tree).count;
    TextTrees before;
    TextTrees cut;
    TextTrees behind;
    TextTree whole = std::move(tree);
    takeChildren(before, whole, 0, at);
    takeChildren(cut, whole, at, at + 1);
    takeChildren(behind, whole, at + 1, count);
    auto [left, right] = split(std::move(cut[0]), offset, layout);
    TextTree first = before.isEmpty() ? TextTree{} : parentOf(std::move(before), layout);
    TextTree last = behind.isEmpty() ? TextTree{} : parentOf(std::move(behind), layout);
    return { join(std::move(first), std::move(left), layout),
        join(std::move(right), std::move(last), layout) };
}

void forgetLayout(TextTree &tree)
{
    if (tree.isEmpty() || tree.isLeaf())
        return;
    TextInner &node = innerOf(tree);
    node.stamp = 0;
    for (TextTree &child : node)
        forgetLayout(child);
}

void layOut(TextTree &tree, const TextLayout &layout)
{
    if (tree.isEmpty())
        return;
    if (tree.isLeaf()) {
        tree.summary = summaryOf(leafOf(tree), layout);
        return;
    }
    if (innerOf(tree).stamp == layout.stamp())
        return;
    detach(tree);
    TextInner &node = innerOf(tree);
    node.forgetTable();
    node.stamp = layout.stamp();
    for (TextTree &child : node)
        layOut(child, layout);
    summarise(tree, layout);
    prepareTable(tree, layout);
}

/// Calls `visit(leaf, first, count, done)` with the units of each leaf that are among `from`..`from + count`,
/// `done` of which lie before it.
template <typename Visit>
static void visitLeaves(const TextTree &tree, Offset from, qint64 count, const Visit &visit)
{
    for (qint64 done = 0; done < count;) {
        Offset start;
        const TextLeaf &leaf = leafAt(tree, from + done, start);
        const qint64 first = from + done - start;
        const qint64 part = qMin(count - done, leaf.size - first);
        visit(leaf, first, part, done);
        done += part;
    }
}

void copyUnits(const TextTree &tree, Offset from, qint64 count, char16_t *to)
{
    visitLeaves(tree, from, count, [to](const TextLeaf &leaf, qint64 first, qint64 part, qint64 done) {
        leaf.copyTo(to + done, first, part);
    });
}

TextNodeRef copyOf(const TextTree &tree, Offset from, qint64 count)
{
    LeafText text(count);
    visitLeaves(tree, from, count, [&text](const TextLeaf &leaf, qint64 first, qint64 part, qint64 done) {
        leaf.copyTo(text.units.data() + done, first, part);
        if (leaf.spellings)
            text.spellings.append(*leaf.spellings, first, first + part, done - first);
    });
    return TextLeaf::fromText(text, 0, count, count);
}

const TextLeaf &leafAt(const TextTree &tree, Offset offset, Offset &leafStart)
{
    const Offset wanted = offset;
    const TextTree &leaf =
        descend(tree, [&offset](const TextTree &child) { return passUnits(child, offset); });
    leafStart = wanted - offset.value();
    return leafOf(leaf);
}

char32_t codePointAt(const TextTree &tree, Offset offset)
{
    return codePointFrom(offset, tree.end(), [&](Offset i) { return unitAt(tree, i); });
}

char32_t codePointBefore(const TextTree &tree, Offset offset)
{
    return codePointUpTo(offset, [&](Offset i) { return unitAt(tree, i); });
}

qint64 cutPlace(QStringView text, qint64 wanted, const NodeSizes &sizes)
{
    const qint64 start = graphemeStart(text, wanted);
    if (wanted - start <= sizes.fewestUnits())
        return start;
    return isPair(text[wanted - 1].unicode(), text[wanted].unicode()) ? wanted - 1 : wanted;
}

bool joinsAcross(const TextTree &left, const TextTree &right)
{
    const char16_t last = unitAt(left, left.end() - 1);
    const char16_t first = unitAt(right, {});
    if (standsAlone(last) && standsAlone(first))
        return false;
    return isPair(last, first) || mayJoin(codePointBefore(left, left.end()), codePointAt(right, {}));
}

char16_t unitAt(const TextTree &tree, Offset offset)
{
    Offset start;
    const TextLeaf &leaf = leafAt(tree, offset, start);
    return leaf.at(offset - start);
}
