#pragma once

/// What lays out the windows of all programs: it decides about their sizes and states, is asked and not told,
/// and answers when it gets to it.
namespace WindowManager {

/// Whether there is one. Without, on a bare X server, a frame buffer or no screen at all, a program does with
/// its windows what it likes, at once, and has to do everything itself. Cost: two questions to an X server,
/// nothing elsewhere.
bool isPresent();

} // namespace WindowManager
