#pragma once

#include <span>

/// Settings of what was added to the handheld's program: group "more" of the same file, read and written with
/// the others. Field names are the keys; numbers are stored as they are and checked where they are used.
struct MoreSettings {
    int StatusLine = 0; ///< the line below the tabs
    int OpenSession = 0; ///< a start opens what was open at the end before
    int KnownKeys = 1; ///< the keys of other programs
    int TabsByMouse = 1; ///< middle click, dragging, wheel
    int WheelTextSize = 1; ///< Ctrl with the wheel changes the size of the text
    int NoticesOfText = 1; ///< notices about codes and bytes
    int NoticesOfDisk = 1; ///< notices about what others do to files
    int KeepTexts = 1; ///< recovery journals
    int KeepWindowSize = 1;
    int WindowWidth = 0; ///< platform pixels, of the window when it is not maximised; 0: none yet
    int WindowHeight = 0;
};

/// A switch that the user may turn, with everything about it. Texts are untranslated, for the context
/// "frmMoreOptions".
struct MoreSwitch {
    const char *key;
    int MoreSettings::*setting; ///< 0 off, 1 on; others count as on
    const char *label;
    const char *sentence; ///< what it does
};

/// In the order in which they are shown.
std::span<const MoreSwitch> moreSwitches();

MoreSettings &moreSettings();
