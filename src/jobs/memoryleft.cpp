#include "jobs/memoryleft.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include <sys/mman.h>

namespace {

std::atomic<MemoryLeft::Answer> otherAnswer = nullptr;

/// Memory that is mapped and not touched costs nothing, and is counted where it is limited.
bool hasSystem(size_t size)
{
    void *const memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        return false;
    ::munmap(memory, size);
    return true;
}

/// Of what was freed, and is not given back yet. Asked first it would grow.
bool hasHeap(size_t size)
{
    void *volatile const memory = std::malloc(size);
    std::free(memory);
    return memory;
}

} // namespace

bool MemoryLeft::has(qint64 bytes)
{
    if (const Answer answer = otherAnswer)
        return answer(bytes);
    return hasSystem(size_t(bytes)) || hasHeap(size_t(bytes));
}

void MemoryLeft::require()
{
    constexpr qint64 mostOfTurn = qint64{ 8 } << 20;
    if (!has(mostOfTurn))
        throw std::bad_alloc();
}

void MemoryLeft::setAnswer(Answer answer)
{
    otherAnswer = answer;
}
