#pragma once

#include <functional>

/// Calls a function with 0 to `count` - 1, in several threads at once, and returns when all have returned.
using Spread = std::function<void(int count, const std::function<void(int)> &part)>;

/// Such a one: by this thread and up to `helpers` others, which `post` gives what they are to do; false:
/// there is no helper. Parts that nobody has begun when this thread comes to them are its own, so that it
/// never waits for a busy helper. What a part throws is thrown here when the others have returned; parts that
/// were not begun are left.
void spreadOver(int helpers, const std::function<bool(const std::function<void()> &help)> &post, int count,
    const std::function<void(int)> &part);
/// By this thread alone.
void makeOneByOne(int count, const std::function<void(int)> &part);
/// By this thread and others that end with it, as many as there are processors.
void spreadOverThreads(int count, const std::function<void(int)> &part);
