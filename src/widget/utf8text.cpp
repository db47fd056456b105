#include "widget/utf8text.h"

#include "text/textnode.h"

#include <QByteArray>

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>
#include <vector>

namespace {

/// Of one part: about a megabyte.
constexpr size_t leavesOfPart = 256;

using Leaves = std::span<const TextLeaf *const>;

void addLeaves(const TextNode *node, std::vector<const TextLeaf *> &leaves)
{
    if (!node)
        return;
    if (node->height == 0)
        return leaves.push_back(static_cast<const TextLeaf *>(node));
    for (const TextTree &child : static_cast<const TextInner &>(*node))
        addLeaves(child.node.get(), leaves);
}

// What is counted is written so that the compiler counts many units at a time.

int sizeOf(QByteArrayView latin1)
{
    int size = int(latin1.size());
    for (const char c : latin1)
        size += uchar(c) >> 7;
    return size;
}

/// Each half of a pair counts as two bytes, a lone surrogate as the question mark that it becomes.
int sizeOf(QStringView text)
{
    const char16_t *const units = text.utf16();
    const int count = int(text.size());
    int size = 0;
    for (int i = 0; i < count; ++i) {
        const int isSurrogate = (units[i] & 0xf800) == 0xd800;
        size += 1 + (units[i] >= 0x80) + (units[i] >= 0x800) - 2 * isSurrogate;
    }
    for (int i = 1; i < count; ++i) {
        const int isBehindHigh = (units[i - 1] & 0xfc00) == 0xd800;
        const int isLow = (units[i] & 0xfc00) == 0xdc00;
        size += 2 * (isBehindHigh & isLow);
    }
    return size;
}

int sizeOf(const TextLeaf &leaf)
{
    return leaf.wide ? sizeOf(leaf.utf16()) : sizeOf(leaf.latin1());
}

qint64 sizeOf(Leaves leaves)
{
    qint64 size = 0;
    for (const TextLeaf *const leaf : leaves)
        size += sizeOf(*leaf);
    return size;
}

/// Returns the place behind it.
char *write(QByteArrayView bytes, char *to)
{
    std::memcpy(to, bytes.data(), size_t(bytes.size()));
    return to + bytes.size();
}

char *write(const TextLeaf &leaf, char *to)
{
    if (leaf.wide)
        return write(leaf.utf16().toUtf8(), to);
    const QByteArrayView latin1 = leaf.latin1();
    if (sizeOf(latin1) == latin1.size())
        return write(latin1, to);
    return write(QString::fromLatin1(latin1).toUtf8(), to);
}

struct Part {
    Leaves leaves;
    qint64 start = 0; ///< of its bytes
    qint64 size = 0; ///< of these
};

std::vector<Part> partsOf(Leaves leaves)
{
    std::vector<Part> parts;
    while (!leaves.empty()) {
        const size_t count = std::min(leaves.size(), leavesOfPart);
        parts.push_back({ leaves.first(count) });
        leaves = leaves.subspan(count);
    }
    return parts;
}

} // namespace

QByteArray utf8Of(const TextPiece &text, const Spread &spread)
{
    std::vector<const TextLeaf *> leaves;
    addLeaves(text.root(), leaves);
    std::vector<Part> parts = partsOf(leaves);
    const auto forEachPart = [&](const auto &make) {
        spread(int(parts.size()), [&](int number) { make(parts[size_t(number)]); });
    };
    forEachPart([](Part &part) { part.size = sizeOf(part.leaves); });
    qint64 size = 0;
    for (Part &part : parts)
        part.start = std::exchange(size, size + part.size);
    QByteArray bytes(size, Qt::Uninitialized);
    forEachPart([to = bytes.data()](const Part &part) {
        char *behind = to + part.start;
        for (const TextLeaf *const leaf : part.leaves)
            behind = write(*leaf, behind);
        Q_ASSERT(behind == to + part.start + part.size);
    });
    return bytes;
}
