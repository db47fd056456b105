#pragma once

class QWidget;
class ctlEditer;

/// Scrolls sideways so that the whole selected hit is in view, where it is not wider than the view. The end
/// that the cursor is at is in view already.
void showHit(ctlEditer &editor);

/// Keeps a hit from being covered by the search panel: by scrolling, or else, near the ends of the document
/// and under a panel as high as the view, by moving the panel to an end of the view or of the screen.
///
/// Where the system does not tell where a window stands, the panel is taken to be in the middle of the window
/// it belongs to, as dialogs are placed there, and is not moved.
void uncoverHit(ctlEditer &editor, QWidget &panel);
