#pragma once

#include "app/searchrequest.h"

#include <QCoreApplication>

#include <map>
#include <memory>

class DocumentArea;
class LongSearch;
class QWidget;
class ctlEditer;
class frmSearchDialog;
enum class SearchDirection;
struct WindowJobs;

/// Searches in the current document: the search panel, what it last asked for, and the runs.
///
/// A long text is searched behind the window, one search a document at a time.
class SearchRuns : public QObject {
    Q_DECLARE_TR_FUNCTIONS(frmMain)
public:
    /// The panel belongs to `window`. `jobs` is not owned.
    SearchRuns(QWidget &window, DocumentArea &documents, const WindowJobs &jobs);
    ~SearchRuns() override;

    /// Shows the panel in a search mode, with the selected text to search for.
    void showPanel(int mode);

    /// The last search once more; nothing before the first one. Likewise the next.
    void repeatForward();
    void repeatBackward();

    /// By the fields of the panel as they are; likewise the next.
    void searchForward();
    void searchBackward();
    /// Replaces every hit in the current document, from its top, and tells how many there were.
    void replaceAll();

private:
    frmSearchDialog *panel();
    void takeRequest();
    void search(SearchDirection direction);
    void searchShort(ctlEditer &editor, SearchDirection direction);
    void searchLong(ctlEditer &editor, SearchDirection direction);
    void endLong(ctlEditer &editor);
    void takeHit(ctlEditer &editor, LongSearch &search);
    void show(ctlEditer &editor);
    void replaceAllIn(ctlEditer &editor);
    void beginReplacing(ctlEditer &editor, const SearchRequest &request);
    void endReplacing(ctlEditer &editor, const SearchRequest &request);

    QWidget &m_window;
    DocumentArea &m_documents;
    const WindowJobs &m_jobs;
    frmSearchDialog *m_panel = nullptr; ///< made when it is first needed
    SearchRequest m_request;
    std::map<const ctlEditer *, std::unique_ptr<LongSearch>> m_long; ///< under way
};
