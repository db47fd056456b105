#include "files/contenthash.h"

#include <xxhash.h>
#ifdef __x86_64__
#include <xxh_x86dispatch.h> // takes the widest vectors that the processor has; the values are the same
#endif

#include <new>

namespace {

XXH3_state_t *newState()
{
    XXH3_state_t *const state = XXH3_createState();
    if (!state)
        throw std::bad_alloc();
    return state;
}

} // namespace

ContentHash::State::State()
    : m_state(newState())
{
    XXH3_64bits_reset(m_state.get());
}

ContentHash::State::State(const State &other)
    : m_state(newState())
{
    *this = other;
}

ContentHash::State &ContentHash::State::operator=(const State &other)
{
    if (this != &other)
        XXH3_copyState(m_state.get(), other.m_state.get());
    return *this;
}

ContentHash::State::~State() = default;

void ContentHash::State::Freed::operator()(XXH3_state_s *state) const
{
    XXH3_freeState(state);
}

void ContentHash::State::add(QByteArrayView bytes)
{
    XXH3_64bits_update(m_state.get(), bytes.data(), size_t(bytes.size()));
}

quint64 ContentHash::State::hash(quint64 before) const
{
    const quint64 own = XXH3_64bits_digest(m_state.get());
    return XXH3_64bits_withSeed(&own, sizeof own, before);
}

void ContentHash::add(QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const qint64 room = segment - m_size % segment;
        const qsizetype taken = qMin<qint64>(room, bytes.size());
        m_current.add(bytes.first(taken));
        m_size += taken;
        bytes = bytes.sliced(taken);
        if (taken == room)
            endSegment();
    }
}

void ContentHash::endSegment()
{
    m_segments = m_current.hash(m_segments);
    m_lastSegment = m_current.hash(noSegments);
    m_current = {};
}

quint64 ContentHash::endValue() const
{
    return m_current.hash(m_lastSegment);
}
