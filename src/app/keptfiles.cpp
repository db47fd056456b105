#include "app/keptfiles.h"

#include "app/documentarea.h"
#include "app/documentloader.h"
#include "editor/ctlediter.h"
#include "files/filename.h"
#include "files/untoldcopy.h"

KeptFiles::KeptFiles(DocumentArea &documents, DocumentLoader &loader)
    : m_documents(documents)
    , m_loader(loader)
{
    connect(&documents, &DocumentArea::added, this,
        [this](ctlEditer *editor) { connect(editor, &ctlEditer::fileKept, this, &KeptFiles::add); });
}

void KeptFiles::tell()
{
    for (const QByteArray &copy : untoldCopies())
        m_copies << FileName::fromBytes(copy);
    tellNext();
}

void KeptFiles::add(const QString &copy)
{
    m_copies.prepend(copy);
    tellNext();
}

void KeptFiles::tellNext()
{
    m_documents.notices().withdraw(NoticeKind::KeptFile);
    if (m_copies.isEmpty())
        return;
    const QString copy = m_copies.first();
    Notice notice{ NoticeKind::KeptFile, nullptr,
        [copy] { return tr("The file as it was is kept as %1").arg(FileName::forMessage(copy)); }, {} };
    notice.offers.push_back({ [] { return tr("Open it"); }, [this] { open(); } });
    notice.dismissed = [this] { goOn(); };
    m_documents.notices().put(std::move(notice));
}

/// As a document that was never saved: the copy stays as it is.
void KeptFiles::open()
{
    const QString copy = m_copies.first();
    m_loader.openUnsaved(copy, copy.sliced(copy.lastIndexOf(u'/') + 1), {}, [this, copy](bool isOpen) {
        if (isOpen && !m_copies.isEmpty() && m_copies.first() == copy)
            goOn();
    });
}

void KeptFiles::goOn()
{
    noteTold(FileName::toBytes(m_copies.takeFirst()));
    tellNext();
}
