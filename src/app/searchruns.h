#pragma once

#include "app/searchrequest.h"

#include <QCoreApplication>

class DocumentArea;
class QWidget;
class ctlEditer;
class frmSearchDialog;

/// Searches in the current document: the search panel, what it last asked for, and the runs.
class SearchRuns : public QObject {
    Q_DECLARE_TR_FUNCTIONS(frmMain)
public:
    /// The panel belongs to `window`.
    SearchRuns(QWidget &window, DocumentArea &documents);

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
    using Direction = bool (ctlEditer::*)(int, bool, const QString &, const QString &);

    frmSearchDialog *panel();
    void takeRequest();
    void search(Direction direction);
    void replaceAllIn(ctlEditer &editor);
    void beginReplacing(ctlEditer &editor);
    void endReplacing(ctlEditer &editor);

    QWidget &m_window;
    DocumentArea &m_documents;
    frmSearchDialog *m_panel = nullptr; ///< made when it is first needed
    SearchRequest m_request;
};
