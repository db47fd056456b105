#include "text/leafmemory.h"

#include "text/textnode.h"

#include <atomic>
#include <new>
#include <utility>

#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr size_t pieceSize = size_t{ 2 } << 20; ///< of the system's large pages

/// Null where there is none.
char *mapped(size_t size)
{
    void *const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<char *>(memory);
}

quintptr behindBoundary(const void *memory)
{
    return reinterpret_cast<quintptr>(memory) % pieceSize;
}

/// Starts at a multiple of its size.
char *mappedPiece()
{
    char *memory = mapped(pieceSize); // mostly below the one before
    if (!memory || behindBoundary(memory) == 0)
        return memory;
    munmap(memory, pieceSize);
    memory = mapped(2 * pieceSize);
    if (!memory)
        return nullptr;
    const size_t before = pieceSize - behindBoundary(memory);
    munmap(memory, before);
    munmap(memory + before + pieceSize, pieceSize - before);
    return memory + before;
}

} // namespace

/// Stands at the start of its memory.
struct alignas(TextLeaf) LeafMemory::Piece {
    std::atomic<int> users = 1; ///< what was allocated, and who allocates from it
    size_t used = sizeof(Piece);

    char *at(size_t place) { return reinterpret_cast<char *>(this) + place; }
    void release()
    {
        if (users.fetch_sub(1, std::memory_order_acq_rel) == 1)
            munmap(this, pieceSize);
    }
};

LeafMemory::LeafMemory(LeafMemory &&other) noexcept
    : m_piece(std::exchange(other.m_piece, nullptr))
{
}

LeafMemory::~LeafMemory()
{
    if (!m_piece)
        return;
    const auto page = size_t(sysconf(_SC_PAGESIZE));
    const size_t rest = (m_piece->used + page - 1) / page * page;
    madvise(m_piece->at(rest), pieceSize - rest, MADV_DONTNEED);
    leavePiece();
}

void LeafMemory::leavePiece()
{
    if (m_piece)
        std::exchange(m_piece, nullptr)->release();
}

void *LeafMemory::allocate(size_t size)
{
    constexpr size_t alignment = alignof(TextLeaf);
    const size_t needed = (size + alignment - 1) / alignment * alignment;
    Q_ASSERT(needed <= pieceSize - sizeof(Piece));
    if (!m_piece || needed > pieceSize - m_piece->used) {
        leavePiece();
        char *const memory = mappedPiece();
        if (!memory)
            return nullptr;
        madvise(memory, pieceSize, MADV_HUGEPAGE);
        m_piece = new (memory) Piece;
    }
    m_piece->users.fetch_add(1, std::memory_order_relaxed);
    return m_piece->at(std::exchange(m_piece->used, m_piece->used + needed));
}

void LeafMemory::free(void *memory)
{
    auto *const first = static_cast<char *>(memory) - behindBoundary(memory);
    std::launder(reinterpret_cast<Piece *>(first))->release();
}
