#include "app/awaiteddocuments.h"

#include "app/documentarea.h"
#include "editor/ctlediter.h"
#include "platform/waitingstart.h"

AwaitedDocuments::AwaitedDocuments(const DocumentArea &documents)
{
    connect(&documents, &DocumentArea::closed, this, &AwaitedDocuments::tellClosed);
}

void AwaitedDocuments::add(const ctlEditer *editor, const SharedFd &waiting)
{
    m_waiting.insert(editor, waiting);
}

void AwaitedDocuments::tellClosed(const ctlEditer *editor)
{
    for (const SharedFd &waiting : m_waiting.values(editor))
        WaitingStart::tellClosed(waiting);
    m_waiting.remove(editor);
}
