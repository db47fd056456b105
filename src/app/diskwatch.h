#pragma once

#include <QFileSystemWatcher>
#include <QTimer>

#include <chrono>

/// Tells when another program may have done something to one file: that of the document which is shown.
///
/// The system tells of it, nobody asks it again and again. Watched are the file, for what is written into it,
/// and its folder, for another file under its name. Two watches, however many documents are open: those not
/// shown are looked at when they are. A disk of another machine tells nothing of what is done there.
class DiskWatch : public QObject {
    Q_OBJECT
public:
    /// What happens in this time is told as one; a program may write in many small steps.
    static constexpr std::chrono::milliseconds gatheringTime{ 100 };

    DiskWatch();

    /// An empty name: none. To be called again when there may be another file of that name.
    void setFile(const QString &fileName);

signals:
    void happened();

private:
    QFileSystemWatcher m_watcher;
    QTimer m_gathering;
};
