#pragma once

#include "app/searchrequest.h"
#include "editor/editorsearch.h"

#include <QObject>

#include <memory>

class AwaitedAnswer;
class DocumentArea;
class JobRunner;
class SearchWork;
class ctlEditer;

/// One search of a text that is too long to be searched in one go. What is near the cursor is found at once,
/// the rest is searched behind the window; a cursor that was moved meanwhile ends it.
class LongSearch : public QObject {
    Q_OBJECT
public:
    LongSearch(ctlEditer &editor, const SearchRequest &request, SearchDirection direction);
    ~LongSearch() override;

    const SearchRequest &request() const { return m_request; }
    /// Searches the next so many units; whether that was all there is to do.
    bool searchNear(qint64 units);
    /// Searches the rest; ended() comes at the end.
    void searchRest(DocumentArea &documents, JobRunner &runner);
    /// Another one was asked for meanwhile.
    void refuse();
    bool isFound() const { return m_begin.has_value(); }
    /// Selects or replaces the hit, that is found. False where it may not be replaced.
    bool takeHit();

signals:
    /// The last signal.
    void ended();

private:
    ctlEditer &m_editor;
    const SearchRequest m_request;
    const SearchDirection m_direction;
    EditorSearch m_search;
    const CursorPlace m_start;
    TextRange m_rest; ///< where the hit may begin
    std::optional<Offset> m_begin;
    std::unique_ptr<AwaitedAnswer> m_answer;
};
