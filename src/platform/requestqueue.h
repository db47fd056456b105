#pragma once

#include "platform/filerequest.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

class QWidget;

/// Files to open, in the order of their arrival, until the main window can take them.
///
/// The window takes the launcher's in its slot `setDocument(QString)` and all others in
/// `openRequested(FileRequest)`, called from the event loop, never from inside another call of the program:
/// not while a modal dialog or a menu is open, not while held, not before the window has been on the screen:
/// before that it has not the size that text may be laid out for. Each is delivered once. After some
/// milliseconds of them the event loop has a turn, and goes on with them then. Whether the time
/// has come is looked at only while something waits, each time the event loop has been woken or is about to
/// sleep.
class RequestQueue : public QObject {
    Q_OBJECT
public:
    explicit RequestQueue(QObject *parent);

    /// Not owned; may be destroyed while requests wait.
    void setReceiver(QWidget *window);
    void setHeld(bool held);
    /// They wait for others to be opened first; unlike when they are held nothing is in anybody's way.
    void setPostponed(bool postponed);
    /// Whether a modal dialog is open or requests are held.
    bool isBusy() const;
    void add(const FileRequest &request);
    bool isAwaitingFiles() const { return m_postponed || !m_requests.isEmpty(); }
    /// None of those that wait is delivered.
    void drop();

signals:
    /// One was; so many wait.
    void delivered(qsizetype waiting);

private:
    bool isReady();
    void watch();
    void stopWatching();
    void schedule();
    void deliver();
    void give(const FileRequest &request);

    QPointer<QWidget> m_receiver;
    FileRequests m_requests;
    QTimer m_nextTurn;
    bool m_wasOnScreen = false;
    bool m_held = false;
    bool m_postponed = false;
    bool m_scheduled = false;
    bool m_delivering = false;
};
