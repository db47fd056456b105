#pragma once

#include "app/documentloader.h"
#include "platform/filerequest.h"

#include <QCoreApplication>
#include <QPointer>

class AwaitedDocuments;
class DocumentArea;
class LineJump;
class OpeningFiles;
class RecentMenu;

/// Opens what is wanted from outside of the window, each in the way of where it comes from.
///
/// What came last is in view. While many are opened, its user may have gone elsewhere by then: they come in
/// the background from there on.
class RequestedFiles {
    Q_DECLARE_TR_FUNCTIONS(RequestedFiles)
public:
    RequestedFiles(DocumentArea &documents, DocumentLoader &loader, RecentMenu &recentMenu,
        LineJump &lineJump, AwaitedDocuments &awaited, const OpeningFiles &opening);

    void open(const FileRequest &request);

private:
    OpenedIn where() const;
    void open(const FileRequest &request, OpenedIn where);
    void openFromShell(const FileRequest &request, OpenedIn where);
    ctlEditer *openNamed(const FileRequest &request, OpenedIn where);
    void openFromDesktop(const QString &fileName, OpenedIn where);
    void tellOfElsewhere(const QStringList &addresses) const;
    ctlEditer *openWithoutName(const FileRequest &request);
    void offerRecent();

    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    RecentMenu &m_recentMenu;
    LineJump &m_lineJump;
    AwaitedDocuments &m_awaited;
    const OpeningFiles &m_opening;
    QPointer<ctlEditer> m_shown; ///< by the last request that has brought something into view
};
