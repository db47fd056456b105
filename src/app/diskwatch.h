#pragma once

#include <QFileSystemWatcher>
#include <QSet>
#include <QTimer>

#include <chrono>

/// Tells when another program may have done something to files of documents.
///
/// The system tells of it, nobody asks it again and again. Of all documents the folders are watched, for
/// files that go or others that take their names. Of the one which is shown the file is watched too, for what
/// is written into it. So there is one watch more than there are folders, however many documents are open. A
/// disk of another machine tells nothing of what is done there.
class DiskWatch : public QObject {
    Q_OBJECT
public:
    /// What happens in this time is told as one; a program may write in many small steps.
    static constexpr std::chrono::milliseconds gatheringTime{ 100 };

    DiskWatch();

    /// The file that is shown; an empty name: none. To be called again when there may be another file of that
    /// name.
    void setFile(const QString &fileName);
    /// Those of all files. Folders that are watched already, or are not there, cost next to nothing.
    void setFolders(const QSet<QString> &folders);
    /// One more of them.
    void addFolder(const QString &folder);

signals:
    /// To the file that is shown, or in its folder.
    void happened();
    /// In these folders, by the names that were set.
    void happenedIn(const QSet<QString> &folders);

private:
    void gather(const QString &path);
    void tell();
    void update();

    QFileSystemWatcher m_watcher;
    QTimer m_gathering;
    QString m_file;
    QSet<QString> m_folders;
    QSet<QString> m_happened; ///< files and folders
};
