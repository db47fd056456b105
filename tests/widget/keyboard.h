#pragma once

#include "platform/heldkeys.h"

#include <xcb/xcb.h>

/// The keyboard of an X server that tells of its events one by one, so that the toolkit marks no repetition.
/// What the toolkit makes of them is sent by the test.
class Keyboard {
public:
    static constexpr quint8 escapeCode = 9;

    void press(quint32 time, quint8 code = escapeCode) { tell(XCB_KEY_PRESS, code, time); }
    void release(quint32 time, quint8 code = escapeCode) { tell(XCB_KEY_RELEASE, code, time); }
    void repeat(quint32 time, quint8 code = escapeCode)
    {
        release(time, code);
        press(time, code);
    }

private:
    void tell(quint8 type, quint8 code, quint32 time)
    {
        xcb_key_press_event_t event{};
        event.response_type = type;
        event.detail = code;
        event.time = time;
        m_keys.nativeEventFilter("xcb_generic_event_t", &event, nullptr);
    }

    HeldKeys m_keys;
};
