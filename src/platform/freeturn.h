#pragma once

#include <QObject>

#include <functional>

/// Calls a function from the event loop when no dialog and no run of replacements is in the way
/// (QPEApplication::isBusy()). While one is, the event loop sleeps all the same.
class FreeTurn : public QObject {
public:
    /// `act` may destroy this.
    explicit FreeTurn(std::function<void()> act, QObject *parent = nullptr);
    /// Without one that is kept: calls `act` once, unless `context` is destroyed before.
    static void once(QObject *context, const std::function<void()> &act);

    /// Calls it once, as soon as that can be.
    void await();
    /// Not any more.
    void cancel();

private:
    void look();
    void call();

    std::function<void()> m_act;
    bool m_isAwaited = false;
};
