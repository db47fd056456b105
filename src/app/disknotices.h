#pragma once

#include "app/contentreader.h"
#include "app/diskwatch.h"

#include <QCoreApplication>
#include <QSet>

class DocumentArea;
class DocumentLoader;
class DocumentSaver;
struct WindowJobs;
class ctlEditer;

/// Tells the user what other programs do to the files of documents, and offers to read it, to keep what the
/// document has, to see both, or to follow a file that grows.
///
/// A document's file is looked at when the system tells of something, when the window or the document's tab
/// gets to the front, and before it is saved (see DocumentVersion::beginWriting). Of documents that are not
/// shown it is only when their files are gone or others have taken their names, one after the other.
class DiskNotices : public QObject {
    Q_OBJECT
public:
    /// `window` is the one whose coming to the front counts.
    DiskNotices(QWidget &window, DocumentArea &documents, DocumentLoader &loader, DocumentSaver &saver,
        const WindowJobs &jobs);

signals:
    /// The document's file was looked at, and has come to this.
    void looked(ctlEditer *editor, FileChange change);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void listenTo(ctlEditer *editor);
    void showDocument(ctlEditer *editor);
    void noteFile(ctlEditer *editor);
    void noteRelease(ctlEditer *editor);
    void forget(ctlEditer *editor);
    void watchFolders();
    void noteFolders(const QSet<QString> &folders);
    void checkNextHidden();
    void check(ctlEditer *editor, const std::optional<SeenContent> &seen = {});
    void tell(ctlEditer *editor, FileChange change);
    static QString textOf(FileChange change, bool hasFolder);
    static bool canFollow(const ctlEditer &editor);

    void reload(ctlEditer *editor);
    void keep(ctlEditer *editor);
    void showBoth(ctlEditer *editor);

    void follow(ctlEditer *editor);
    void readOn(ctlEditer *editor);
    bool isGrowthLong(const ctlEditer &editor) const;
    void readOnBehind(ctlEditer *editor);
    void giveUpFollowing(ctlEditer *editor);
    void stopFollowing(ctlEditer *editor);

    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    DocumentSaver &m_saver;
    const WindowJobs &m_jobs;
    DiskWatch m_watch;
    ContentReader m_reader;
    QSet<const ctlEditer *> m_canFollow; ///< those whose notice offers it
    QSet<const ctlEditer *> m_followed;
    QSet<const ctlEditer *> m_behind; ///< those of them that are read behind the window, or were to be
    QSet<const ctlEditer *> m_unlooked; ///< to be looked at when they are held no more
    QList<ctlEditer *> m_hidden; ///< to be looked at, without being shown
    QTimer m_hiddenTurn;
    QTimer m_foldersTurn; ///< puts off what many documents at once would do again and again
    QTimer m_shownTurn; ///< likewise
};
