#include "app/documentcloser.h"

#include "app/documentarea.h"
#include "app/documentsaver.h"
#include "app/recentplaces.h"
#include "editor/ctlediter.h"
#include "files/filename.h"
#include "platform/endquestion.h"
#include "platform/messagebox.h"

DocumentCloser::DocumentCloser(
    QWidget &window, DocumentArea &documents, DocumentSaver &saver, RecentPlaces &places)
    : m_window(window)
    , m_documents(documents)
    , m_saver(saver)
    , m_places(places)
{
}

bool DocumentCloser::saveIfWanted(ctlEditer *editor)
{
    if (!editor->edited())
        return true;
    switch (askToSave(*editor)) {
    case Answer::Yes:
        return m_saver.save(editor);
    case Answer::No:
        return true;
    case Answer::Cancel:
        return false;
    }
    Q_UNREACHABLE();
}

void DocumentCloser::askAndClose()
{
    ctlEditer *editor = m_documents.current();
    if (editor && saveIfWanted(editor))
        close(editor);
}

bool DocumentCloser::closeAll(EditsAtClosing edits)
{
    const EndQuestion question;
    m_documents.commitComposition();
    for (closeUneditedFromTheLast(); m_documents.current(); closeUneditedFromTheLast()) {
        ctlEditer *editor = m_documents.editors().constLast();
        if (editor->edited() && edits == EditsAtClosing::Save && !m_saver.save(editor))
            return false;
        if (editor->edited()) {
            m_documents.setCurrent(editor);
            if (!saveIfWanted(editor))
                return false;
        }
        close(editor);
    }
    return true;
}

/// Each document that is current for a moment would have every widget of all others told that painting waits.
void DocumentCloser::closeUneditedFromTheLast()
{
    m_documents.setUpdatesEnabled(false);
    while (m_documents.current() && !m_documents.editors().constLast()->edited())
        close(m_documents.editors().constLast());
    m_documents.setUpdatesEnabled(true);
}

void DocumentCloser::close(ctlEditer *editor)
{
    m_places.add(*editor);
    m_documents.close(editor);
}

DocumentCloser::Answer DocumentCloser::askToSave(const ctlEditer &editor)
{
    const QString question =
        tr("\"%1\" is edited.\n Would you want to save this file?").arg(FileName::forMessage(editor.name()));
    const QStringList buttons{ tr("Yes"), tr("No"), tr("Cancel") };
    return Answer(MessageBox::question(
        &m_window, tr("Confirm File Save"), question, buttons, int(Answer::Yes), int(Answer::Cancel)));
}
