#include "platform/heldkeys.h"

#include <QCoreApplication>
#include <QKeyEvent>

#include <xcb/xcb.h>

namespace {

constexpr int sentByAProgram = 0x80;

/// The server's clock begins anew after seven weeks.
bool isAfter(quint32 time, quint32 other)
{
    return qint32(time - other) > 0;
}

} // namespace

HeldKeys *HeldKeys::s_instance = nullptr;

HeldKeys::HeldKeys()
{
    s_instance = this;
    QCoreApplication::instance()->installNativeEventFilter(this);
}

HeldKeys::~HeldKeys()
{
    s_instance = nullptr;
}

bool HeldKeys::isHeld(const QKeyEvent &press)
{
    if (press.isAutoRepeat())
        return true;
    const quint32 key = press.nativeScanCode();
    if (!s_instance || key >= keyCount)
        return false;
    // The time is lost where an input method lets the press through.
    const quint32 down = s_instance->m_down[key];
    const quint32 time = press.timestamp() != 0 ? quint32(press.timestamp()) : s_instance->m_pressed[key];
    return down != 0 && isAfter(time, down);
}

bool HeldKeys::nativeEventFilter(const QByteArray &type, void *message, qintptr *)
{
    if (type != "xcb_generic_event_t")
        return false;
    const auto &key = *static_cast<const xcb_key_press_event_t *>(message);
    const int kind = key.response_type & ~sentByAProgram;
    if (kind == XCB_KEY_RELEASE)
        m_released[key.detail] = key.time;
    else if (kind == XCB_KEY_PRESS)
        notePress(key.detail, key.time);
    return false;
}

void HeldKeys::notePress(quint8 key, quint32 time)
{
    quint32 &down = m_down[key];
    if (time == 0 || time != m_released[key])
        down = time;
    else if (down == 0)
        down = time - 1; // It went down elsewhere.
    m_pressed[key] = time;
}
