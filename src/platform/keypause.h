#pragma once

#include <QBasicTimer>
#include <QObject>

class QKeyEvent;

/// Drops the keys that are pressed while the program cannot answer them and changes what they would go to:
/// the window system keeps them until then, and they would come to something that was not on the screen.
class KeyPause : public QObject {
    Q_OBJECT
public:
    /// To be called before such work, in the thread of the windows. What the window system has of keys by the
    /// time the event loop has shown the result goes nowhere, input methods included; a key that is still
    /// held then goes nowhere until a key is pressed anew. Ends by itself; called again meanwhile, it starts
    /// again.
    static void begin();
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

    void start();
    bool isDropped(const QObject &receiver, const QEvent &event);
    bool isDropped(const QKeyEvent &press);

    QBasicTimer m_turn; ///< runs while all keys are dropped, once in each turn of the event loop
    int m_turns = 0; ///< still to come
};
