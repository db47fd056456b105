#pragma once

#include <QObject>
#include <QTimer>

class DocumentArea;

/// The document that a window begins with: it is made some time after the window was shown, so that a file
/// which is opened by then stays the only one, and not before the window is active.
class FirstDocument : public QObject {
    Q_OBJECT
public:
    FirstDocument(const QWidget &window, DocumentArea &documents);

    /// The window was shown: the time begins.
    void wait();
    /// The window became active, or another one did.
    void noteActivation();
    /// Makes the document when the window is active and has none; there is no more to wait for then.
    void make();

private:
    void makeIfNothingComes();

    const QWidget &m_window;
    DocumentArea &m_documents;
    QTimer m_timer;
    bool m_isDue = false; ///< the time is over, but the window was not active and had none
};
