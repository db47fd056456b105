#include "app/recovery.h"

#include "app/documentarea.h"
#include "app/documentfile.h"
#include "app/documentloader.h"
#include "app/frmrecovery.h"
#include "editor/noticequeue.h"
#include "files/filename.h"
#include "platform/keypause.h"
#include "platform/messagebox.h"
#include "recovery/recoveryjournals.h"

#include <QWidget>
#include <QWindow>

#include <utility>

namespace {

QString nameOf(const LeftBehind &text)
{
    return text.name.isEmpty() ? ctlEditer::nameOfUnnamed() : text.name;
}

UnsavedText shown(const LeftBehind &text)
{
    return { nameOf(text), text.path, QDateTime::fromMSecsSinceEpoch(text.time), text.length };
}

/// Cursor, selection and view, which are within the text.
void showPlace(ctlEditer &editor, const ViewPlace &place)
{
    if (place.anchor)
        editor.select({ *place.anchor }, place.cursor);
    else
        editor.setCursorPlace(place.cursor);
    editor.setTopRow(editor.store().rowColAt(place.top).row);
    editor.setXOffset(place.left);
}

/// Whatever has become of the file's times.
bool hasRead(const ctlEditer &editor, std::optional<quint64> contentHash)
{
    const FileVersion &file = editor.document().file().version();
    return contentHash && file.stamp().inode != 0 && file.content().value() == *contentHash;
}

std::function<QString()> whyApart(bool isWhole, bool isFileThere)
{
    if (!isWhole)
        return [] { return Recovery::tr("Parts are missing; a line with dots stands for each"); };
    if (isFileThere)
        return [] { return Recovery::tr("The file has changed; this text is in no file yet"); };
    return [] { return Recovery::tr("The file is gone; this text is in no file yet"); };
}

} // namespace

Recovery::Recovery(
    QWidget &window, DocumentArea &documents, DocumentLoader &loader, RecoveryJournals &journals)
    : m_window(window)
    , m_documents(documents)
    , m_loader(loader)
    , m_journals(journals)
{
    connect(&journals, &RecoveryJournals::leftBehindChanged, &journals, &RecoveryJournals::lookForLeftBehind);
    connect(&journals, &RecoveryJournals::foundLeftBehind, this, &Recovery::tell);
}

void Recovery::lookWhenShown()
{
    if (QWindow *const shown = m_window.windowHandle(); shown && !std::exchange(m_hasLooked, true))
        shown->installEventFilter(this);
}

bool Recovery::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Expose && m_window.windowHandle()->isExposed()) {
        object->removeEventFilter(this);
        m_journals.lookForLeftBehind();
    }
    return false;
}

void Recovery::tell(const std::vector<LeftBehind> &found)
{
    m_found = found;
    NoticeQueue &notices = m_documents.notices();
    if (m_found.empty()) {
        notices.withdraw(NoticeKind::Unsaved);
        return;
    }
    const int count = int(m_found.size());
    Notice notice{ NoticeKind::Unsaved, nullptr,
        [count] {
            return count == 1 ? tr("1 document was not saved")
                              : tr("%n documents were not saved", nullptr, count);
        },
        {} };
    notice.offers.push_back({ [] { return tr("Restore"); }, [this] { ask(); } });
    notice.offers.push_back(
        { [] { return tr("Later"); }, [this] { m_documents.notices().withdraw(NoticeKind::Unsaved); } });
    notice.isDismissable = false; // "Later" says it
    notices.put(std::move(notice));
}

void Recovery::ask()
{
    const std::vector<LeftBehind> found = m_found; // meanwhile there may be more
    QList<UnsavedText> texts;
    for (const LeftBehind &text : found)
        texts << shown(text);
    frmRecovery form(&m_window, texts);
    const int result = form.exec();
    m_window.activateWindow();
    m_documents.notices().withdraw(NoticeKind::Unsaved);
    if (result == frmRecovery::Later)
        return;
    std::vector<LeftBehind> chosen;
    for (const int row : form.chosen())
        chosen.push_back(found[size_t(row)]);
    result == frmRecovery::Restore ? restoreAll(chosen) : discardAll(chosen);
    m_journals.lookForLeftBehind();
}

/// Each in a document of its own, of which the first is shown.
void Recovery::restoreAll(const std::vector<LeftBehind> &texts)
{
    m_documents.commitComposition();
    ctlEditer *first = nullptr;
    QStringList lost;
    for (const LeftBehind &text : texts) {
        ctlEditer *const editor = restore(text);
        first = first ? first : editor;
        if (!editor)
            lost << FileName::forMessage(nameOf(text));
    }
    if (first)
        m_documents.present(first);
    if (!lost.isEmpty())
        MessageBox::critical(
            &m_window, tr("Restore"), tr("These texts could not be restored:\n%1").arg(lost.join(u'\n')));
}

/// The document that has it then; null when it could not be restored.
ctlEditer *Recovery::restore(const LeftBehind &text)
{
    KeyPause::begin();
    const QString file = text.path + text.name;
    ctlEditer *const ofFile = m_documents.editorOfFile(file);
    ctlEditer *const there = documentFor(text);
    ctlEditer *const editor = there ? there : m_documents.add(FileName::forDisplay(text.name));
    Restored restored;
    {
        const QMultiLineEdit::Batch batch(*editor);
        restored = m_journals.restore(text, editor->document());
    }
    if (!restored.isRestored()) {
        if (!there)
            m_documents.close(editor);
        return nullptr;
    }
    showPlace(*editor, restored.place);
    using Outcome = Restored::Outcome;
    const bool isOfFile = !editor->path().isEmpty();
    const bool isOneTooMany = isOfFile && ofFile && ofFile != editor;
    if (isOneTooMany)
        editor->document().detachFromFile(tr("%1 (other edits)").arg(text.name));
    m_documents.refresh(editor);
    if (isOneTooMany)
        tellApart(
            *editor, [] { return tr("The file has other edits in its tab; these are in no file yet"); },
            file);
    else if (restored.outcome != Outcome::Edited && !isOfFile && !text.path.isEmpty())
        tellApart(*editor, whyApart(restored.outcome == Outcome::New, FileName::exists(file)), file);
    return editor;
}

/// Until it is saved.
void Recovery::tellApart(ctlEditer &editor, const std::function<QString()> &why, const QString &file)
{
    Notice notice{ NoticeKind::RestoredApart, &editor, why, {} };
    if (FileName::exists(file))
        notice.offers.push_back({ [] { return tr("Open the file"); }, [this, file] { showFile(file); } });
    m_documents.notices().put(std::move(notice));
    connect(
        &std::as_const(editor).document(), &TextDocument::saved, &editor,
        [this, &editor] { m_documents.notices().withdraw(NoticeKind::RestoredApart, &editor); },
        Qt::SingleShotConnection);
}

/// What is edited in its tab stays as it is.
void Recovery::showFile(const QString &file)
{
    if (ctlEditer *const open = m_documents.editorOfFile(file))
        m_documents.present(open);
    else
        m_loader.open(file, {});
}

/// One that is open and has nothing to lose: that of the same file, or one that nobody would miss. Null for
/// none.
ctlEditer *Recovery::documentFor(const LeftBehind &text) const
{
    ctlEditer *const ofFile = m_documents.editorOfFile(text.path + text.name);
    if (ofFile && !ofFile->edited() && (text.isFileUnchanged || hasRead(*ofFile, text.contentHash)))
        return ofFile;
    if (ofFile && !ofFile->edited() && std::as_const(*ofFile).document().file().isNew())
        return ofFile;
    ctlEditer *const current = m_documents.current();
    return current && isFresh(*current) ? current : nullptr;
}

void Recovery::discardAll(const std::vector<LeftBehind> &texts)
{
    for (const LeftBehind &text : texts)
        m_journals.discard(text);
}
