#pragma once

#include "files/fileversion.h"

#include <QHash>
#include <QObject>
#include <QThreadPool>

#include <atomic>

class ctlEditer;

/// Reads through files of documents that are too large to be read in passing, one after the other, in a
/// thread of its own: whether they are still what they were.
class ContentReader : public QObject {
    Q_OBJECT
public:
    /// `calls` is not owned, and is used by the thread.
    explicit ContentReader(const FileCalls &calls = FileCalls::system());
    /// What is read by then is given up.
    ~ContentReader() override;

    /// A file that is read already is read once more if this reading comes to nothing: it may have been
    /// written meanwhile. What cannot be read is not told of.
    void read(ctlEditer *editor);

signals:
    /// Of a document that has the same file as when it was asked for, and is open.
    void seen(ctlEditer *editor, const SeenContent &content);

private:
    enum class Asked { Once, Again };
    void start(ctlEditer *editor);

    const FileCalls &m_calls;
    QHash<QObject *, Asked> m_asked; ///< documents whose files are read, or wait for it
    std::atomic<bool> m_isEnding = false;
    QThreadPool m_thread;
};
