#pragma once

#include <mutex>
#include <utility>
#include <vector>

/// Passes what one thread has made to another one, in order.
template <class Part> class HandOver {
public:
    void put(Part &&part)
    {
        const std::lock_guard lock(m_mutex);
        m_parts.push_back(std::move(part));
    }

    /// All that was put since the last call.
    std::vector<Part> take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_parts, {});
    }

private:
    std::mutex m_mutex;
    std::vector<Part> m_parts;
};
