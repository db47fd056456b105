#include "widget/cursorfollowers.h"

#include "text/undohistory.h"
#include "widget/cursorblink.h"
#include "widget/textannouncer.h"
#include "widget/textcursor.h"

#include <QGuiApplication>
#include <QInputMethod>
#include <QWidget>

#include <utility>

CursorFollowers::CursorFollowers(QWidget &editor, const TextCursor &cursor, const UndoHistory &history,
    CursorBlink &blink, TextAnnouncer &announcer)
    : m_editor(editor)
    , m_cursor(cursor)
    , m_history(history)
    , m_blink(blink)
    , m_announcer(announcer)
{
}

void CursorFollowers::tell()
{
    m_blink.restart();
    tellInputMethod();
    m_announcer.announceCursor(m_cursor.place().offset, m_cursor.anchor().offset);
    tellAvailability();
}

void CursorFollowers::tellInputMethod() const
{
    if (QGuiApplication::focusObject() == &m_editor)
        QGuiApplication::inputMethod()->update(Qt::ImQueryInput);
}

void CursorFollowers::tellAvailability()
{
    if (const bool can = m_history.canUndo(); std::exchange(m_told.undo, can) != can)
        emit undoAvailable(can);
    if (const bool can = m_history.canRedo(); std::exchange(m_told.redo, can) != can)
        emit redoAvailable(can);
    if (const bool can = m_cursor.hasSelection(); std::exchange(m_told.copy, can) != can)
        emit copyAvailable(can);
}
