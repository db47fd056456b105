#pragma once

#include "platform/filerequest.h"

class AwaitedDocuments;
class DocumentArea;
class DocumentLoader;

/// Opens what is wanted from outside of the window, each in the way of where it comes from.
class RequestedFiles {
public:
    RequestedFiles(DocumentArea &documents, DocumentLoader &loader, AwaitedDocuments &awaited);

    void open(const FileRequest &request);

private:
    void openFromShell(const FileRequest &request);
    void openDropped(const QString &fileName);
    void openInput(const FileRequest &request);

    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    AwaitedDocuments &m_awaited;
};
