#include "app/disknotices.h"

#include "app/documentarea.h"
#include "app/documentfile.h"
#include "app/documentloader.h"
#include "app/documentsaver.h"
#include "app/windowjobs.h"
#include "editor/readfailurebox.h"
#include "platform/qpeapplication.h"

#include <QEvent>
#include <QFileInfo>
#include <QPointer>

#include <chrono>
#include <utility>

namespace {

/// In which documents come and go: longer than from one of many to the next.
constexpr std::chrono::milliseconds gathering{ 100 };

/// Without a "/" at its end.
QString folderName(const ctlEditer &editor)
{
    return QFileInfo(fullName(editor)).path();
}

} // namespace

DiskNotices::DiskNotices(QWidget &window, DocumentArea &documents, DocumentLoader &loader,
    DocumentSaver &saver, const WindowJobs &jobs)
    : m_documents(documents)
    , m_loader(loader)
    , m_saver(saver)
    , m_jobs(jobs)
    , m_reader(*jobs.runner)
{
    window.installEventFilter(this);
    connect(&documents, &DocumentArea::added, this, &DiskNotices::listenTo);
    m_shownTurn.setSingleShot(true);
    connect(&documents, &DocumentArea::currentChanged, &m_shownTurn, qOverload<>(&QTimer::start));
    connect(&m_shownTurn, &QTimer::timeout, this, [this] { showDocument(m_documents.current()); });
    connect(&documents, &DocumentArea::closed, this, &DiskNotices::forget);
    connect(&m_watch, &DiskWatch::happened, this, [this] { showDocument(m_documents.current()); });
    connect(&m_watch, &DiskWatch::happenedIn, this, &DiskNotices::noteFolders);
    connect(&m_hiddenTurn, &QTimer::timeout, this, &DiskNotices::checkNextHidden);
    m_foldersTurn.setSingleShot(true);
    m_foldersTurn.setInterval(gathering);
    connect(&m_foldersTurn, &QTimer::timeout, this, &DiskNotices::watchFolders);
    connect(&m_reader, &ContentReader::seen, this,
        [this](ctlEditer *editor, const SeenContent &content) { check(editor, content); });
}

bool DiskNotices::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::WindowActivate)
        showDocument(m_documents.current());
    return QObject::eventFilter(watched, event);
}

void DiskNotices::listenTo(ctlEditer *editor)
{
    const TextDocument &document = editor->document();
    const auto note = [this, editor] { noteFile(editor); };
    connect(&document, &TextDocument::replaced, this, note);
    connect(&document, &TextDocument::saved, this, note);
    connect(&document, &TextDocument::released, this, [this, editor] { noteRelease(editor); });
    connect(&document, &TextDocument::changed, this, [this, editor] {
        if (!editor->edited())
            return;
        stopFollowing(editor);
        if (m_canFollow.remove(editor))
            check(editor);
    });
}

/// Another file may have the name since, which the watch does not know.
void DiskNotices::showDocument(ctlEditer *editor)
{
    m_watch.setFile(editor && hasFile(*editor) ? fullName(*editor) : QString());
    if (editor)
        check(editor);
}

void DiskNotices::watchFolders()
{
    QSet<QString> folders;
    for (const ctlEditer *const editor : m_documents.editors()) {
        if (hasFile(*editor))
            folders << folderName(*editor);
    }
    m_watch.setFolders(folders);
}

/// In a folder there may be much going on that is no matter of a document's.
void DiskNotices::noteFolders(const QSet<QString> &folders)
{
    for (ctlEditer *const editor : m_documents.editors()) {
        if (editor == m_documents.current() || !hasFile(*editor) || !folders.contains(folderName(*editor)))
            continue;
        const FileStamp &known = std::as_const(*editor).document().file().version().stamp();
        const bool isInPlace = fileNow(*editor).isSameFile(known);
        if (!isInPlace && !m_hidden.contains(editor))
            m_hidden << editor;
    }
    watchFolders(); // one may have been made again
    if (!m_hidden.isEmpty())
        m_hiddenTurn.start(0);
}

void DiskNotices::checkNextHidden()
{
    if (!m_hidden.isEmpty())
        check(m_hidden.takeFirst());
    if (m_hidden.isEmpty())
        m_hiddenTurn.stop();
}

/// It was read or written.
void DiskNotices::noteFile(ctlEditer *editor)
{
    m_behind.remove(editor);
    m_documents.notices().withdraw(NoticeKind::ChangedOnDisk, editor);
    if (editor == m_documents.current() && hasFile(*editor))
        m_watch.setFile(fullName(*editor));
    if (hasFile(*editor))
        m_watch.addFolder(folderName(*editor));
    m_foldersTurn.start();
}

void DiskNotices::noteRelease(ctlEditer *editor)
{
    if (!m_unlooked.remove(editor) || m_hidden.contains(editor))
        return;
    m_hidden << editor;
    m_hiddenTurn.start(0);
}

void DiskNotices::forget(ctlEditer *editor)
{
    m_unlooked.remove(editor);
    stopFollowing(editor);
    m_canFollow.remove(editor);
    m_hidden.removeOne(editor);
    m_foldersTurn.start();
}

void DiskNotices::check(ctlEditer *editor, const std::optional<SeenContent> &seen)
{
    if (editor->document().isHeld()) {
        m_unlooked.insert(editor);
        return;
    }
    if (!hasFile(*editor))
        return;
    const FileChange change = editor->document().file().change(seen);
    if (change == FileChange::Grown && m_followed.contains(editor))
        readOn(editor);
    else if (change == FileChange::Unsure)
        m_reader.read(editor);
    else if (change != FileChange::None)
        tell(editor, change);
    else
        m_documents.notices().withdraw(NoticeKind::ChangedOnDisk, editor);
    emit looked(editor, change);
}

QString DiskNotices::textOf(FileChange change, bool hasFolder)
{
    switch (change) {
    case FileChange::Grown:
        return tr("Another program has added to this file.");
    case FileChange::Changed:
        return tr("Another program has changed this file.");
    case FileChange::Replaced:
        return tr("Another program has replaced this file.");
    case FileChange::Deleted:
        return hasFolder ? tr("This file was deleted. Saving makes it again.")
                         : tr("This file and its folder are gone.");
    case FileChange::None:
    case FileChange::Unsure:
        break;
    }
    return {};
}

/// Only what TextDocument::readGrowth() can read on.
bool DiskNotices::canFollow(const ctlEditer &editor)
{
    return !editor.edited() && editor.document().charCode() != CharCode::Unicode;
}

void DiskNotices::tell(ctlEditer *editor, FileChange change)
{
    const bool hasFolder = change != FileChange::Deleted || FileName::exists(folderName(*editor));
    const bool isMade = editor->document().file().isNew();
    Notice notice{ NoticeKind::ChangedOnDisk, editor,
        [=] { return isMade ? tr("Another program has made this file.") : textOf(change, hasFolder); }, {} };
    const auto offer = [&notice](auto text, auto act) { notice.offers.push_back({ text, act }); };
    m_canFollow.remove(editor);
    if (change == FileChange::Grown && canFollow(*editor)) {
        m_canFollow.insert(editor);
        offer([] { return tr("Follow"); }, [this, editor] { follow(editor); });
    }
    if (change != FileChange::Deleted) {
        offer([] { return tr("Reload"); }, [this, editor] { reload(editor); });
        offer([] { return tr("Keep mine"); }, [this, editor] { keep(editor); });
        offer([] { return tr("Show both"); }, [this, editor] { showBoth(editor); });
    } else {
        if (hasFolder)
            offer([] { return tr("Save"); }, [this, editor] { m_saver.beginSave(editor); });
        else
            offer([] { return tr("Save As…"); }, [this, editor] { m_saver.beginSaveAs(editor); });
        offer([] { return tr("Keep mine"); }, [this, editor] { keep(editor); });
    }
    notice.dismissed = [this, editor] { keep(editor); };
    m_documents.notices().put(std::move(notice));
}

void DiskNotices::reload(ctlEditer *editor)
{
    m_loader.reload(editor);
    check(editor);
}

void DiskNotices::keep(ctlEditer *editor)
{
    editor->document().file().acknowledge();
    m_documents.notices().withdraw(NoticeKind::ChangedOnDisk, editor);
}

void DiskNotices::showBoth(ctlEditer *editor)
{
    m_loader.openFromDisk(
        *editor, tr("%1 on disk").arg(editor->name()), [this, shown = QPointer(editor)](bool isOpen) {
            if (isOpen && shown)
                keep(shown);
        });
}

void DiskNotices::follow(ctlEditer *editor)
{
    m_followed.insert(editor);
    m_documents.notices().withdraw(NoticeKind::ChangedOnDisk, editor);
    Notice notice{ NoticeKind::Following, editor,
        [] { return tr("What is added to this file comes into the text."); }, {} };
    notice.offers.push_back({ [] { return tr("Stop"); }, [this, editor] { stopFollowing(editor); } });
    notice.dismissed = [this, editor] { stopFollowing(editor); };
    m_documents.notices().put(std::move(notice));
    check(editor);
}

/// While a dialog is open, or replacements run, the text waits; the next look comes when that has gone.
void DiskNotices::readOn(ctlEditer *editor)
{
    if (QPEApplication::isBusy())
        return;
    if (isGrowthLong(*editor))
        return readOnBehind(editor);
    const std::optional<ReadFailure> failure = editor->readGrowth().failure;
    if (!failure || failure == ReadFailure::Missing) // which the next look tells
        return;
    giveUpFollowing(editor);
    tellReadFailure(editor, *failure);
}

/// Codes in which a text depends on what stands before it are read as a whole.
bool DiskNotices::isGrowthLong(const ctlEditer &editor) const
{
    const TextDocument &document = editor.document();
    const bool isReadWhole = infoOf(document.charCode()).hasState;
    const qint64 known = isReadWhole ? 0 : document.file().version().stamp().size;
    return fileNow(editor).size - known >= m_jobs.fewest;
}

/// What was to be read so before and was not read was stopped, or cannot be read.
void DiskNotices::readOnBehind(ctlEditer *editor)
{
    if (m_behind.contains(editor))
        return giveUpFollowing(editor);
    m_behind.insert(editor);
    m_loader.reload(editor, CursorAtEnd::Follows);
    if (editor->document().isHeld())
        connect(
            &editor->document(), &TextDocument::released, editor, [this, editor] { check(editor); },
            Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
}

/// Whoever wants may begin again.
void DiskNotices::giveUpFollowing(ctlEditer *editor)
{
    stopFollowing(editor);
    tell(editor, FileChange::Grown);
}

void DiskNotices::stopFollowing(ctlEditer *editor)
{
    m_behind.remove(editor);
    if (m_followed.remove(editor))
        m_documents.notices().withdraw(NoticeKind::Following, editor);
}
