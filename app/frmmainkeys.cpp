#include "app/frmmain.h"

#include <QKeyEvent>

namespace {

/// A key event as the key map sees it.
struct KeyPress {
    int key;
    Qt::KeyboardModifiers modifiers;
    bool hasText;
};

/// The keypad's keys count as the others do, and Shift+Tab is Tab with Shift, however it arrives.
KeyPress normalized(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const bool hasText = !event.text().isEmpty();
    if (event.key() == Qt::Key_Backtab)
        return { Qt::Key_Tab, modifiers | Qt::ShiftModifier, hasText };
    return { event.key(), modifiers, hasText };
}

/// The device's key codes are characters (quotation marks, dashes) on other keyboards: those carry a text.
bool matches(const KeyBinding &binding, const KeyPress &press)
{
    if (press.key == binding.key && (press.modifiers & binding.mask) == binding.modifiers)
        return true;
    return binding.deviceKey != 0 && press.key == binding.deviceKey && !press.hasText;
}

} // namespace

void frmMain::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        // A key that is held down must not go on to close the document after leaving full screen.
        if (event->isAutoRepeat())
            return;
        m_fullScreen ? slotCmdViewFull() : slotCmdFileCloseTab();
        return;
    }
    const KeyPress press = normalized(*event);
    for (const KeyBinding &binding : keyBindings()) {
        if (matches(binding, press))
            (this->*binding.slot)();
    }
    QWidget::keyPressEvent(event);
}
