#pragma once

#include "platform/filerequest.h"

class AwaitedDocuments;
class DocumentArea;
class DocumentLoader;
class RecentMenu;

/// Opens what is wanted from outside of the window, each in the way of where it comes from.
class RequestedFiles {
public:
    RequestedFiles(
        DocumentArea &documents, DocumentLoader &loader, RecentMenu &recentMenu, AwaitedDocuments &awaited);

    void open(const FileRequest &request);

private:
    void openFromShell(const FileRequest &request);
    void openDropped(const QString &fileName);
    void openWithoutName(const FileRequest &request);
    void openInput(const FileRequest &request);
    void offerRecent();

    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    RecentMenu &m_recentMenu;
    AwaitedDocuments &m_awaited;
};
