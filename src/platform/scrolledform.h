#pragma once

class QScrollArea;
class QWidget;

/// From now on the form is never larger than its screen when it is shown: where its layout needs more, all of
/// it scrolls, and what has the focus is brought into view. A form that places itself is moved into the
/// screen. Elsewhere nothing is changed. Call when the form has its layout; QMessageBox has one of its own.
void scrollWhereTooLarge(QWidget *form);

/// From now on what gets the focus in an area is brought into view: all of a control, or the beginning of one
/// that has no room.
void showFocusIn(QScrollArea *area);
