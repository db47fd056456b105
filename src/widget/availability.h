#pragma once

/// What an editor has said that can be done now; see its signals of these names.
struct Availability {
    bool undo = false;
    bool redo = false;
    bool copy = false;
};
