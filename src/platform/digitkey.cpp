#include "platform/digitkey.h"

#include "platform/windowsystem.h"

#include <QKeyEvent>

#include <xcb/xcb.h>

#include <span>

namespace {

/// Scan codes of the keys "1" to "9" and "0": X's, which the toolkit counts by under Wayland and on the frame
/// buffer too.
constexpr quint32 firstDigitKey = 10;
constexpr quint32 lastDigitKey = 19;

std::optional<int> digitInPlace(quint32 scanCode)
{
    if (scanCode < firstDigitKey || scanCode > lastDigitKey)
        return std::nullopt;
    return int(scanCode - firstDigitKey + 1) % 10;
}

/// What a key gives with Shift in a layout of the keyboard, which an event's state tells in two bits; 0 where
/// the server does not say.
xcb_keysym_t symbolWithShift(xcb_connection_t *server, xcb_keycode_t key, quint32 state)
{
    const auto reply =
        xReply(xcb_get_keyboard_mapping_reply(server, xcb_get_keyboard_mapping(server, key, 1), nullptr));
    if (!reply)
        return 0;
    const std::span symbols(xcb_get_keyboard_mapping_keysyms(reply.get()),
        size_t(xcb_get_keyboard_mapping_keysyms_length(reply.get())));
    // The first two layouts stand in front, each without and with Shift.
    const quint32 layout = state >> 13 & 3;
    const size_t at = 2 * layout + 1;
    return layout < 2 && at < symbols.size() ? symbols[at] : 0;
}

} // namespace

std::optional<int> digitBehindShift(const QKeyEvent &press)
{
    const quint32 key = press.nativeScanCode();
    if (key == 0 || (press.key() >= Qt::Key_0 && press.key() <= Qt::Key_9))
        return std::nullopt;
    xcb_connection_t *const server = WindowSystem::xServer();
    const xcb_keysym_t symbol =
        server && key <= 0xff ? symbolWithShift(server, xcb_keycode_t(key), press.nativeModifiers()) : 0;
    if (symbol == 0)
        return digitInPlace(key);
    const bool isDigit = symbol >= '0' && symbol <= '9'; // they are their own symbols
    return isDigit ? std::optional(int(symbol - '0')) : std::nullopt;
}
