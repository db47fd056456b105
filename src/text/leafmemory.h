#pragma once

#include <QtGlobal>

#include <cstddef>

/// Memory for the leaves of a long text that is built at once.
///
/// The heap grows by pages of 4 KiB, and to be given one takes the system as long as it takes to decode what
/// comes to stand there. Here memory comes in pieces of 2 MiB, each of which the system may give as one large
/// page. A piece goes back when all that was allocated in it has been freed, and none of it is used again
/// before. So this is for what goes together: what comes by edits is better in the heap.
///
/// Threads: one at a time allocates; what was allocated may be freed in any.
class LeafMemory {
public:
    LeafMemory() = default;
    /// What it has allocated stays. The rest of the last piece goes back.
    ~LeafMemory();
    Q_DISABLE_COPY(LeafMemory)
    LeafMemory(LeafMemory &&other) noexcept;

    /// Aligned like a leaf; null where the system gives no memory. `size` is that of a leaf.
    void *allocate(size_t size);
    static void free(void *memory);

private:
    struct Piece;

    void leavePiece();

    Piece *m_piece = nullptr; ///< the one that is allocated from
};
