#pragma once

#include "jobs/threadstart.h"

#include <memory>

/// A system that gives no more threads than it is told to.
class FewThreads {
public:
    explicit FewThreads(int left)
        : m_left(std::make_shared<int>(left))
    {
    }

    void give(int more) { *m_left += more; }

    ThreadStart start() const
    {
        return [left = m_left](const std::function<void()> &run) {
            if (*left == 0)
                return std::thread();
            --*left;
            return startThread(run);
        };
    }

private:
    std::shared_ptr<int> m_left; ///< whoever starts threads has a lock
};
