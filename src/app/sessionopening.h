#pragma once

#include "editor/worksign.h"
#include "platform/freeturn.h"
#include "settings/sessionfiles.h"

#include <QPointer>
#include <QTimer>

class DocumentArea;
class DocumentLoader;
class ctlEditer;

/// Opens the files of a session in their order, each where its cursor and view were, and in the code that its
/// user has chosen. Where they are many the event loop has its turns in between, and the strip says how far
/// it is and offers to stop; who goes to another document meanwhile stays there. Requests wait as long as
/// this lives, because they come behind.
class SessionOpening {
public:
    /// `ended` is called when all are open, which may be at once, or it was stopped; it may destroy this.
    SessionOpening(
        SessionFiles session, DocumentArea &documents, DocumentLoader &loader, std::function<void()> ended);
    ~SessionOpening();
    Q_DISABLE_COPY_MOVE(SessionOpening)

    /// Opens what one turn has time for, and the others behind this call.
    void begin() { openSome(); }
    /// The document that is to be in view, of those that are open.
    ctlEditer *current() const;
    /// Adds the files that are still to be opened to those that are open.
    void addRest(SessionFiles &session) const;
    void setPaused(bool paused);

private:
    void openSome();
    void open(const SessionFile &file);
    bool isInTheLast() const;
    void end();

    const SessionFiles m_session;
    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    const std::function<void()> m_ended;
    qsizetype m_next = 0; ///< the file that is opened next
    QPointer<ctlEditer> m_last; ///< that was brought into view
    QPointer<ctlEditer> m_current; ///< that was in view
    WorkSign m_sign;
    QTimer m_turns;
    FreeTurn m_free{ [this] { m_turns.start(); } }; ///< behind what is in the way
};
