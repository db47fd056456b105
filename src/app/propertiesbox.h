#pragma once

#include <QCoreApplication>

#include <memory>

class AwaitedAnswer;
class DocumentArea;
class QWidget;
class ctlEditer;
struct TextCounts;
struct WindowJobs;

/// Shows the properties of the current document. A long text is counted behind the window before; whoever
/// edits it or goes to another one meanwhile gets no box.
class PropertiesBox : public QObject {
    Q_DECLARE_TR_FUNCTIONS(frmMain)
public:
    /// `jobs` is not owned.
    PropertiesBox(QWidget &window, DocumentArea &documents, const WindowJobs &jobs);
    ~PropertiesBox() override;

    void show();

private:
    void count(ctlEditer &editor);
    void showCounted(const ctlEditer &editor, const TextCounts &counts);

    QWidget &m_window;
    DocumentArea &m_documents;
    const WindowJobs &m_jobs;
    std::unique_ptr<AwaitedAnswer> m_counting; ///< for the current document, which nobody has left since
};
