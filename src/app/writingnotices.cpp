#include "app/writingnotices.h"

#include "app/documentarea.h"
#include "app/writingnotice.h"
#include "editor/ctlediter.h"

WritingNotices::WritingNotices(DocumentArea &documents, DocumentSaver &saver)
    : QObject(&documents)
    , m_documents(documents)
    , m_saver(saver)
{
    connect(&documents, &DocumentArea::added, this, &WritingNotices::add);
    connect(&documents, &DocumentArea::currentChanged, this, &WritingNotices::setShown);
    connect(&documents, &DocumentArea::closed, this, &WritingNotices::remove);
}

void WritingNotices::add(ctlEditer *editor)
{
    auto *const notice = new WritingNotice(*editor, m_documents, m_saver, this);
    connect(notice, &WritingNotice::substituted, this, [=, this] { emit substituted(editor); });
    connect(notice, &WritingNotice::settled, this, [=, this] { emit settled(editor); });
    m_notices.insert(editor, notice);
}

void WritingNotices::remove(const ctlEditer *editor)
{
    delete m_notices.take(editor);
}

void WritingNotices::setShown(const ctlEditer *editor)
{
    if (m_shown)
        m_shown->setShown(false);
    m_shown = m_notices.value(editor);
    if (m_shown)
        m_shown->setShown(true);
}
