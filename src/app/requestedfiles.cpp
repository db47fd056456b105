#include "app/requestedfiles.h"

#include "app/awaiteddocuments.h"
#include "app/documentarea.h"
#include "app/documentloader.h"
#include "editor/ctlediter.h"
#include "files/filename.h"

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

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

bool isEmpty(const OpenFd &file)
{
    struct stat info;
    return ::fstat(file.number(), &info) == 0 && info.st_size == 0;
}

} // namespace

RequestedFiles::RequestedFiles(DocumentArea &documents, DocumentLoader &loader, AwaitedDocuments &awaited)
    : m_documents(documents)
    , m_loader(loader)
    , m_awaited(awaited)
{
}

void RequestedFiles::open(const FileRequest &request)
{
    switch (request.from) {
    case FileRequest::From::Launcher:
        m_loader.open(request.fileName, request.charCode);
        break;
    case FileRequest::From::Shell:
        openFromShell(request);
        break;
    case FileRequest::From::Drop:
        openDropped(request.fileName);
        break;
    }
}

void RequestedFiles::openFromShell(const FileRequest &request)
{
    if (request.input)
        openInput(request);
    else if (isMissing(request.fileName))
        m_loader.openNew(request.fileName, request.charCode);
    else
        m_loader.open(request.fileName, request.charCode);
    ctlEditer *const editor = m_documents.current();
    if (request.place)
        editor->jumpTo(request.place->line, request.place->column);
    if (request.waiting)
        m_awaited.add(editor, request.waiting);
}

void RequestedFiles::openInput(const FileRequest &request)
{
    const QString file = u"/proc/self/fd/%1"_s.arg(request.input->number());
    if (isEmpty(*request.input) || !m_loader.openUnsaved(file, {}, request.charCode))
        m_documents.present(m_documents.add());
}

void RequestedFiles::openDropped(const QString &fileName)
{
    if (isFolder(fileName))
        m_loader.askAndOpenIn(fileName.endsWith(u'/') ? fileName : fileName + u'/');
    else
        m_loader.open(fileName, {});
}
