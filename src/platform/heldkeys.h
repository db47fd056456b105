#pragma once

#include <QAbstractNativeEventFilter>

#include <array>

class QKeyEvent;

/// Knows a key that is held down, from its first press to its release, whatever happens to windows meanwhile.
///
/// An X server repeats a held key as a release and a press of the same moment. The toolkit calls the press
/// a repetition only when it finds both in its queue together, and takes it for a new one otherwise: now and
/// then when the program or the machine is busy. A release and a press by hand are never of the same
/// millisecond. Input methods let presses through later, when the key may have been repeated some more times
/// or have come up, and without the time. Other platforms repeat keys themselves and tell of each repetition
/// that it is one.
///
/// One lives in the application object.
class HeldKeys : public QAbstractNativeEventFilter {
public:
    HeldKeys();
    ~HeldKeys() override;

    /// Whether the key of this press has been down before the press, be it in another window: it is repeated,
    /// not pressed. Without a HeldKeys in the program as far as the toolkit knows it.
    static bool isHeld(const QKeyEvent &press);

    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *result) override;

private:
    static constexpr int keyCount = 256;

    void notePress(quint8 key, quint32 time);

    static HeldKeys *s_instance;
    // In milliseconds of the server; 0 for never.
    std::array<quint32, keyCount> m_released{}; ///< when each key came up last, be it to be repeated
    std::array<quint32, keyCount> m_down{}; ///< when each key went down last; what comes later repeats it
    std::array<quint32, keyCount> m_pressed{}; ///< the last of these presses
};
