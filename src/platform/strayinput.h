#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QPointF>
#include <QPointer>

class QKeyEvent;
class QPointerEvent;
class QWidget;

/// Keeps input from a window that has come in the place of the one it was meant for.
///
/// The second press of a double click whose first one opened or closed a window, and a key that is still held
/// from before, would act on whatever stands there now. Neither is delivered: a double click belongs to the
/// window of its first press, and a key to the window in which it was pressed, until it was really released.
/// What is a held key, HeldKeys knows. Menus and other popups are left alone, since their input comes by way
/// of the window below them.
///
/// One object for the program. What comes from assistive technology is no input in this sense.
class StrayInput : public QObject {
    Q_OBJECT
public:
    /// Made when first asked for, and owned by the application.
    static StrayInput &instance();

    /// `window`, which is about to be shown, is there to be read first: it answers to no press before the
    /// time of a double click has passed since it came onto the screen, and to no repeated key.
    void letBeRead(QWidget *window);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    struct Press {
        QPointer<const QObject> window;
        QPointF position; ///< on the screen
        quint64 time = 0; ///< ms of the platform's clock; 0: unknown
    };

    explicit StrayInput(QObject *parent);

    bool isToBeRead(const QObject *window) const;
    bool isUnread(const QObject *window) const;
    bool isStray(const QPointerEvent &event, const QObject *window);
    bool isStray(const QKeyEvent &event, const QObject *window);

    /// Where each key was pressed last; null where nobody was to have it.
    QHash<quint64, QPointer<const QObject>> m_pressedIn;
    Press m_press;
    QPointer<const QWidget> m_read; ///< the window that is to be read
    QElapsedTimer m_shown; ///< since it is on the screen
    bool m_isPainted = false;
};
