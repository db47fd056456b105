#pragma once

#include <functional>
#include <thread>

/// Starts a thread that calls a function; a std::thread that is none where the system gives no more.
using ThreadStart = std::function<std::thread(std::function<void()> run)>;

/// Such a one.
std::thread startThread(std::function<void()> run);
