#pragma once

#include "document/unwritabletext.h"
#include "editor/notice.h"

#include <chrono>

class DocumentArea;
class DocumentSaver;
class ctlEditer;

/// The notice of one document that it has characters which its code cannot write.
///
/// It stays until the text is mended or the user puts it away; then it comes back after a save that wrote
/// other characters, or when the text had none in between. A long text that is not shown is looked at when it
/// is, or has been saved.
class WritingNotice : public QObject {
    Q_OBJECT
public:
    /// From an edit until the notice says what it has changed; a long text takes longer.
    static constexpr std::chrono::milliseconds longestWait{ 16 };

    /// The editor lives longer, and is not the parent: the toolkit goes through all that editors have at
    /// every change of the tab.
    WritingNotice(ctlEditer &editor, DocumentArea &documents, DocumentSaver &saver, QObject *parent);

    /// Whether its document is the current one. At first it is not.
    void setShown(bool isShown);

signals:
    /// See WritingNotices.
    void substituted();
    void settled();

private:
    void noteSaved();
    void update();
    bool isOfLastSave() const;
    void tell();
    void withdraw();
    void takeBack(NoticeKind kind);
    void settle();
    void setSubstituted(bool isSubstituted);

    QString text() const;
    QString listed() const;
    void goToNext();
    void saveAsUtf8();

    ctlEditer &m_editor;
    DocumentArea &m_documents;
    DocumentSaver &m_saver;
    UnwritableText m_unwritable;
    QTimer m_soon; ///< what many edits in a row change is told once
    bool m_isShown = false;
    bool m_isDismissed = false;
    bool m_isSubstituted = false; ///< in the file are other characters
};
