#pragma once

/// Whether the screen is of the large class, for which every form has a second set of sizes. The environment
/// says so in QWS_DISPLAY, for as long as the program runs.
bool isVga();

/// Of a measure's two values the one for this screen.
template <typename Measure> const Measure &forScreen(const Measure &small, const Measure &vga)
{
    return isVga() ? vga : small;
}
