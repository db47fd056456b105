#pragma once

#include <QGuiApplication>
#include <QInputMethod>

#include <private/qinputmethod_p.h>
#include <qpa/qplatforminputcontext.h>

/// Counts, while it lives, how often the keyboard on the screen is asked for, and may go.
class KeyboardAsked : public QPlatformInputContext {
public:
    KeyboardAsked() { QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = this; }
    ~KeyboardAsked() override
    {
        QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = nullptr;
    }
    Q_DISABLE_COPY_MOVE(KeyboardAsked)
    bool isValid() const override { return true; }
    void showInputPanel() override { ++times; }
    void hideInputPanel() override { ++timesGone; }
    int times = 0;
    int timesGone = 0; ///< how often it may go
};
