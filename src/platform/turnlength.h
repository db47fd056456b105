#pragma once

#include <chrono>

/// For work in the window's thread that goes on in turns: the event loop is not kept for longer by one of
/// them. With what it leaves to be painted that is half a frame of a screen of 60 Hz.
constexpr std::chrono::milliseconds longestTurn{ 5 };

/// The same where each of the turns shows another document: the whole window is to be painted then.
constexpr std::chrono::milliseconds longestTurnOfShowing{ 3 };
