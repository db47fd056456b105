#pragma once

#include <QTimer>

class QWidget;
class RowUpdates;

/// The blinking of the cursor: while its editor has the focus, at the desktop's rate; elsewhere it rests in
/// its visible phase.
class CursorBlink {
public:
    CursorBlink(QWidget &editor, RowUpdates &updates);

    bool isOn() const { return m_isOn; }
    /// Begins a visible phase: the cursor was moved, or the editor got the focus.
    void restart();
    void stop();

private:
    void show(bool on);

    const QWidget &m_editor;
    RowUpdates &m_updates;
    QTimer m_timer;
    bool m_isOn = true;
};
