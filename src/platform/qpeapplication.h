#pragma once

#include "platform/filerequest.h"
#include "platform/heldkeys.h"

#include <QApplication>
#include <QPointer>

class DesktopChannel;
class EndSignals;
class LauncherChannel;
class QWidget;
class RequestQueue;

/// The application object: the folder of the program's data, and the requests of the launcher.
class QPEApplication : public QApplication {
    Q_OBJECT
public:
    /// The arguments are for the toolkit.
    QPEApplication(int &argc, char **argv);
    ~QPEApplication() override;

    /// The folder of translations and pictures: $QPEDIR, else the installation's, else the build's. No "/" at
    /// the end.
    static QString qpeDir();

    /// Offers the files of the command line to a running instance, which also shows its window: true when it
    /// took them (the caller then exits with 0). Else this process becomes the instance that others hand
    /// their files to, at once or when the other one is gone, and opens in its window what the other one has
    /// not taken. Without a session bus, when the other does not answer within two seconds, or when its user
    /// ends it and no other start has taken its place: false. Waits as long as that user is asked.
    bool handOver(const FileRequests &requests = {});

    /// Shows the window (maximised) as the one that receives requests through its slots, see RequestQueue:
    /// first the files of the command line, then each that arrives. A request
    /// waits while a modal dialog or a menu is open or `holdRequests(true)` is in force, and is then
    /// delivered once, from the event loop. The window is not owned.
    void showMainWidget(QWidget *window, bool noMaximize = false);

    /// Keeps requests waiting during a long operation that runs the event loop.
    void holdRequests(bool hold);
    /// Whether a modal dialog is open or requests are held: nobody may act on the window behind that. Keys
    /// and mouse do not get there anyway; what assistive technology asks for does, and has to be refused.
    static bool isBusy();
    /// Whether files wait to be opened, requests or others that stand before them.
    static bool hasRequests();

    /// Whether it is open if the program ends, because its user is being asked; each true has its false.
    /// Files that other processes hand over meanwhile wait with their answers: they are opened when the
    /// window is still there afterwards, and refused when it was closed, so that who gave them opens them.
    void setEndOpen(bool open);

    /// A file to open, absolute.
    void request(const QString &fileName) { request(FileRequest{ fileName }); }
    void request(const FileRequest &request);
    /// Requests wait until others have been opened, which stand before them.
    void postponeRequests(bool postpone);
    /// None of the requests that wait is delivered.
    void dropRequests();
    /// Ends the process from wherever it is, without a question and without closing a window, whatever is
    /// open or under way. Does nothing in threads other than the application's. The signals that tell a
    /// process to end (EndSignals) do this once the main window is shown, and so does a session manager.
    void endAtOnce();

signals:
    /// A request was delivered; so many wait.
    void requestDelivered(qsizetype waiting);
    /// The session manager ends the program, after it has let it save (commitDataRequest); endingAtOnce()
    /// comes next.
    void sessionEnded();
    /// The process ends when this signal has been delivered: what is to be kept is written now, and nothing
    /// asked.
    void endingAtOnce();

protected:
    bool event(QEvent *event) override;
    /// The end of the process.
    virtual void leave();

private:
    bool handGivenOver();
    void requestAll(const FileRequests &requests);
    void raiseWindow();
    void endWithSession();
    void settleEnd();

    HeldKeys m_heldKeys;
    FileRequests m_given; ///< until there is a window
    RequestQueue *m_requests;
    LauncherChannel *m_channel;
    DesktopChannel *m_desktop;
    int m_endQuestions = 0; ///< that are open
    EndSignals *m_endSignals = nullptr;
    bool m_isEnding = false;
    QPointer<QWidget> m_window;
};
