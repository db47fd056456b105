#include "app/requestedfiles.h"

#include "app/awaiteddocuments.h"
#include "app/documentarea.h"
#include "app/linejump.h"
#include "app/openingfiles.h"
#include "app/recentmenu.h"
#include "editor/ctlediter.h"
#include "files/filename.h"
#include "platform/messagebox.h"

#include <algorithm>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostTold = 5;
constexpr qsizetype longestTold = 60; ///< characters of an address

/// Another reason why a file cannot be looked at is for the loading to tell.
bool isMissing(const QString &fileName)
{
    struct stat info;
    return ::stat(FileName::toBytes(fileName).constData(), &info) != 0 && errno == ENOENT;
}

bool isFolder(const QString &fileName)
{
    struct stat info;
    return ::stat(FileName::toBytes(fileName).constData(), &info) == 0 && S_ISDIR(info.st_mode);
}

} // namespace

RequestedFiles::RequestedFiles(DocumentArea &documents, DocumentLoader &loader, RecentMenu &recentMenu,
    LineJump &lineJump, AwaitedDocuments &awaited, const OpeningFiles &opening)
    : m_documents(documents)
    , m_loader(loader)
    , m_recentMenu(recentMenu)
    , m_lineJump(lineJump)
    , m_awaited(awaited)
    , m_opening(opening)
{
}

void RequestedFiles::open(const FileRequest &request)
{
    const OpenedIn chosen = where();
    open(request, chosen);
    if (chosen == OpenedIn::View)
        m_shown = m_documents.current();
}

OpenedIn RequestedFiles::where() const
{
    const bool isElsewhere = m_documents.current() != m_shown || m_documents.hasNoticeKeys();
    return m_opening.isUnderWay() && isElsewhere ? OpenedIn::Background : OpenedIn::View;
}

void RequestedFiles::open(const FileRequest &request, OpenedIn where)
{
    switch (request.from) {
    case FileRequest::From::Launcher:
        m_loader.open(request.fileName, request.charCode, where);
        break;
    case FileRequest::From::Shell:
        openFromShell(request, where);
        break;
    case FileRequest::From::Desktop:
        openFromDesktop(request.fileName, where);
        break;
    case FileRequest::From::Elsewhere:
        tellOfElsewhere(request.fileName.split(u'\n'));
        break;
    }
}

void RequestedFiles::openFromShell(const FileRequest &request, OpenedIn where)
{
    if (request.isRecent) {
        offerRecent();
        return;
    }
    // Who waits for a document is told that a folder is none.
    if (!request.waiting && isFolder(request.fileName)) {
        openFromDesktop(request.fileName, where);
        return;
    }
    ctlEditer *const editor =
        request.fileName.isEmpty() ? openWithoutName(request) : openNamed(request, where);
    if (request.place)
        m_lineJump.go(*editor, *request.place);
    if (request.waiting)
        m_awaited.add(editor, request.waiting);
}

ctlEditer *RequestedFiles::openNamed(const FileRequest &request, OpenedIn where)
{
    return isMissing(request.fileName) ? m_loader.openNew(request.fileName, request.charCode, where)
                                       : m_loader.openChosen(request.fileName, request.charCode, where);
}

ctlEditer *RequestedFiles::openWithoutName(const FileRequest &request)
{
    if (request.input)
        m_loader.openInput(request.input, request.charCode);
    else
        m_documents.present(m_documents.add());
    return m_documents.current();
}

/// Behind this call, which a menu would keep from its end. Whoever chooses needs a document to be current.
void RequestedFiles::offerRecent()
{
    if (!m_documents.current())
        m_documents.present(m_documents.add());
    QMetaObject::invokeMethod(
        &m_recentMenu, [this] { m_recentMenu.popup(m_documents.mapToGlobal(QPoint())); },
        Qt::QueuedConnection);
}

void RequestedFiles::openFromDesktop(const QString &fileName, OpenedIn where)
{
    if (isFolder(fileName))
        m_loader.askAndOpenIn(fileName.endsWith(u'/') ? fileName : fileName + u'/');
    else
        m_loader.openChosen(fileName, {}, where);
}

/// The message has room for some. It comes behind this call, when no request is under way any more.
void RequestedFiles::tellOfElsewhere(const QStringList &addresses) const
{
    QStringList told;
    for (const QString &address : addresses.first(std::min(addresses.size(), mostTold)))
        told << (address.size() > longestTold ? address.first(longestTold) + u'…' : address);
    if (addresses.size() > mostTold)
        told << u"…"_s;
    const QString text = tr("Only files of this computer can be opened. These are none:\n%1")
                             .arg(FileName::forMessage(told.join(u'\n')));
    QMetaObject::invokeMethod(
        &m_documents, [this, text] { MessageBox::critical(&m_documents, tr("Error"), text); },
        Qt::QueuedConnection);
}
