#include "widget/cursorblink.h"

#include "widget/rowupdates.h"

#include <QGuiApplication>
#include <QStyleHints>
#include <QWidget>

CursorBlink::CursorBlink(QWidget &editor, RowUpdates &updates)
    : m_editor(editor)
    , m_updates(updates)
    , m_timer(&editor)
{
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { show(!m_isOn); });
    QObject::connect(
        QGuiApplication::styleHints(), &QStyleHints::cursorFlashTimeChanged, &m_timer, [this] { restart(); });
}

void CursorBlink::restart()
{
    const int flash = QGuiApplication::styleHints()->cursorFlashTime();
    if (m_editor.hasFocus() && flash > 1)
        m_timer.start(flash / 2);
    else
        m_timer.stop();
    if (!m_isOn)
        show(true);
}

void CursorBlink::stop()
{
    m_timer.stop();
    show(true);
}

void CursorBlink::show(bool on)
{
    m_isOn = on;
    m_updates.updateCursorRow();
}
