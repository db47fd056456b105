#pragma once

class QWidget;

/// Tells the user, in a message box above `parent`, that what was begun was given up for want of memory.
void tellTooLittleMemory(QWidget *parent);
