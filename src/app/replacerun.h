#pragma once

#include "editor/editorsearch.h"
#include "platform/pendingevents.h"
#include "platform/requesthold.h"

#include <QObject>

class ctlEditer;
class frmReplaceProgress;
struct SearchRequest;

/// While it lives nothing but the progress panel gets input, no window can be closed, no menu stays open, and
/// requests of the launcher wait: for a run that lets the event loop go on.
class ReplaceGuard : public QObject {
public:
    ReplaceGuard();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    RequestHold m_hold;
};

/// Replaces all hits from the cursor on.
///
/// Events are processed after every replacement, and now and then where the next hit is far; what it changes
/// is shown once a frame, or at the end when the panel was told to speed up. Each replacement is one step of
/// the undo history.
class ReplaceRun {
public:
    ReplaceRun(ctlEditer &editor, const SearchRequest &request, frmReplaceProgress &progress);
    /// Runs until there is no hit left or the panel was told to stop; gives the number of replacements.
    int run();
    /// It ended before, for want of memory.
    bool hadTooLittleMemory() const { return m_hasTooLittleMemory; }

private:
    bool hasMemory();
    bool runFrame();
    bool replaceNext();
    std::optional<SearchHit> findNext();
    void processEvents() { m_now = m_events.process(); }
    void hurry();
    void showResult();

    ctlEditer &m_editor;
    const SearchRequest &m_request;
    frmReplaceProgress &m_progress;
    EditorSearch m_search;
    PendingEvents m_events;
    int m_count = 0;
    bool m_hasTooLittleMemory = false;
    PendingEvents::Clock::time_point m_now; ///< as of when events were processed
    PendingEvents::Clock::time_point m_frameEnd; ///< long ago: the first replacement is shown at once
};
