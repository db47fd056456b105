#pragma once

#include "files/fileversion.h"

#include <QObject>
#include <QSet>
#include <QThreadPool>

#include <atomic>

class ctlEditer;

/// Reads through files of documents that are too large to be read in passing, one after the other, in a
/// thread of its own: whether they are still what they were.
class ContentReader : public QObject {
    Q_OBJECT
public:
    ContentReader();
    /// What is read by then is given up.
    ~ContentReader() override;

    /// Nothing where its file is read already. What cannot be read, or is written meanwhile, is not told of.
    void read(ctlEditer *editor);

signals:
    /// Of a document that has the same file as when it was asked for, and is open.
    void seen(ctlEditer *editor, const SeenContent &content);

private:
    QSet<QObject *> m_asked; ///< documents whose files are read, or wait for it
    std::atomic<bool> m_isEnding = false;
    QThreadPool m_thread;
};
