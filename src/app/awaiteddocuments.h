#pragma once

#include "files/sharedfd.h"

#include <QMultiHash>
#include <QObject>

class DocumentArea;
class ctlEditer;

/// The documents whose end a shell waits for, which is told when they are closed.
class AwaitedDocuments : public QObject {
    Q_OBJECT
public:
    explicit AwaitedDocuments(const DocumentArea &documents);

    void add(const ctlEditer *editor, const SharedFd &waiting);

private:
    void tellClosed(const ctlEditer *editor);

    QMultiHash<const ctlEditer *, SharedFd> m_waiting;
};
