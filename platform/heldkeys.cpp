#include "platform/heldkeys.h"

#include <QCoreApplication>
#include <QKeyEvent>

#include <xcb/xcb.h>

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
    return s_instance && press.timestamp() != 0 && press.nativeScanCode() < keyCount
        && s_instance->m_repeated[press.nativeScanCode()] == press.timestamp();
}

bool HeldKeys::nativeEventFilter(const QByteArray &type, void *message, qintptr *)
{
    if (type != "xcb_generic_event_t")
        return false;
    const auto &key = *static_cast<const xcb_key_press_event_t *>(message);
    if (key.response_type == XCB_KEY_RELEASE)
        m_released[key.detail] = key.time;
    else if (key.response_type == XCB_KEY_PRESS && key.time == m_released[key.detail])
        m_repeated[key.detail] = key.time;
    return false;
}
