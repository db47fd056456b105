#pragma once

#include "widget/availability.h"

#include <QObject>

class CursorBlink;
class QWidget;
class TextAnnouncer;
class TextCursor;
class UndoHistory;

/// Tells everybody who follows the cursor and the selection that these have moved: the blinking, the input
/// method, assistive technology, and whoever shows what can be undone or copied now.
class CursorFollowers : public QObject {
    Q_OBJECT
public:
    CursorFollowers(QWidget &editor, const TextCursor &cursor, const UndoHistory &history, CursorBlink &blink,
        TextAnnouncer &announcer);

    /// All of them.
    void tell();
    void tellInputMethod() const;
    /// Emits what has become available or unavailable since the last time.
    void tellAvailability();
    /// What the signals have said last.
    Availability &told() { return m_told; }

signals:
    /// Never twice the same.
    void undoAvailable(bool available);
    void redoAvailable(bool available);
    void copyAvailable(bool available);

private:
    const QWidget &m_editor;
    const TextCursor &m_cursor;
    const UndoHistory &m_history;
    CursorBlink &m_blink;
    TextAnnouncer &m_announcer;
    Availability m_told;
};
