#pragma once

#include <QBasicTimer>
#include <QDeadlineTimer>
#include <QObject>

#include <chrono>

class QKeyEvent;

/// Drops the keys that are pressed while the program cannot answer them and changes what they would go to:
/// the window system keeps them until then, and they would come to something that was not on the screen.
class KeyPause : public QObject {
    Q_OBJECT
public:
    /// To be called before such work, in the thread of the windows. What the window system has of keys by the
    /// time the event loop has shown the result goes nowhere, input methods included; a key that is still
    /// held then goes nowhere until a key is pressed anew. Ends by itself; called again meanwhile, it starts
    /// again, and is not shorter for that.
    static void begin() { begin({}); }
    /// For so long more, where what the keys go to has changed by itself: who did not expect that needs some
    /// time to see it.
    static void begin(std::chrono::milliseconds longer);
    static constexpr std::chrono::milliseconds untilNoticed{ 500 };
    /// The one of the program, for who wants to hear of it. Goes with the application.
    static KeyPause &instance();

    bool eventFilter(QObject *receiver, QEvent *event) override;

signals:
    /// A key was pressed and goes nowhere.
    void dropped(const QKeyEvent &press);

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    using QObject::QObject;

    void start(std::chrono::milliseconds longer);
    bool isDropped(const QObject &receiver, const QEvent &event);
    bool isDropped(const QKeyEvent &press);

    QDeadlineTimer m_noticed; ///< what has changed
    QBasicTimer m_turn; ///< runs while all keys are dropped; at the end once in each turn of the event loop
    int m_turns = 0; ///< still to come
};
