#pragma once

#include <QObject>
#include <QStringList>

#include <memory>

/// A session manager for one program: it speaks the X session management protocol, asks for a logout, lets
/// the program ask its user, and ends it. What the program answers is told in a log, in words.
class SessionManager : public QObject {
public:
    SessionManager();
    ~SessionManager() override;

    /// What a program finds in its variable SESSION_MANAGER; empty when there is no manager.
    QString address() const;
    /// Whether a program has registered and has answered the first request to save itself.
    bool hasClient() const;

    enum class Interaction { None, Any };
    /// Begins a logout.
    void requestShutdown(Interaction interaction);
    /// Asks the program to save itself without an end of the session.
    void requestCheckpoint();
    /// The logout does not take place: somebody has cancelled it.
    void cancelShutdown();
    /// The logout takes place: the program is to end.
    void endProgram();

    /// "asks": it wants to ask its user, which it may; "done" or "cancels": it has asked; "saved" or "not
    /// saved": it has answered the request; "left": it has closed the connection.
    QStringList log;

    struct Private;

private:
    std::unique_ptr<Private> d;
};
