#include "app/documentloader.h"

#include "app/documentarea.h"
#include "app/documentfile.h"
#include "app/recentplaces.h"
#include "document/utf16text.h"
#include "files/filename.h"
#include "platform/keypause.h"
#include "platform/messagebox.h"

#include <QDir>
#include <QFileInfo>
#include <QScopedValueRollback>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Plain ASCII is no choice of the user's and would be wrong as soon as the file holds more: detected again.
/// So is what was read as UTF-16 text, which may have been saved as UTF-8 since.
std::optional<CharCode> codeToReload(const ctlEditer &editor)
{
    const TextDocument &document = editor.document();
    const CharCode code = document.charCode();
    const bool isDetected = code == CharCode::Ascii || code == CharCode::Binary || document.isUtf16();
    return isDetected ? std::nullopt : std::optional(code);
}

bool isReadWith(const ctlEditer &editor, CharCode code)
{
    return &infoOf(editor.document().charCode()).codec() == &infoOf(code).codec();
}

/// Folder and name of a file, without looking at the disk. A "/" at the end is not part of the name.
FileChoice fileOf(const QString &path, std::optional<CharCode> charCode)
{
    const QFileInfo info(QDir::cleanPath(path));
    const QString folder = info.absolutePath();
    return { folder.endsWith(u'/') ? folder : folder + u'/', info.fileName(), charCode };
}

/// A text without a file cannot be read again: it is read at once as notices would offer.
void loadAsItFits(ctlEditer &editor, const FileChoice &file)
{
    const ReadFindings found = editor.document().findings();
    if (found.utf16)
        editor.loadUtf16(file.folder, file.name, *found.utf16);
    else if (found.fittingCode)
        editor.loadFile(file.folder, file.name, found.fittingCode);
}

} // namespace

DocumentLoader::DocumentLoader(
    QWidget &window, const WindowDialogs &dialogs, DocumentArea &documents, RecentPlaces &places)
    : m_window(window)
    , m_dialogs(dialogs)
    , m_documents(documents)
    , m_places(places)
{
}

void DocumentLoader::open(const QString &path, std::optional<CharCode> charCode)
{
    m_documents.commitComposition();
    const FileChoice file = fileOf(path, charCode);
    if (ctlEditer *editor = m_documents.editorOfFile(file.fullName())) {
        m_documents.setCurrent(editor);
        const QString question =
            tr("File named '%1' already opens.\nCancel edit and reload?").arg(FileName::forMessage(path));
        if (editor->edited() && isReloadWanted(tr("Existing File"), question)) {
            if (loadInto(editor, file))
                m_places.restore(*editor);
        } else if (charCode && !isReadWith(*editor, *charCode)) {
            offerCode(editor, *charCode);
        }
        return;
    }
    ctlEditer *editor = m_documents.add(FileName::forDisplay(file.name));
    load(editor, file);
    m_documents.present(editor);
    m_places.restore(*editor);
}

void DocumentLoader::openChosen(ctlEditer *editor, const FileChoice &file)
{
    if (!editor || !isFresh(*editor) || m_documents.editorOfFile(file.fullName())) {
        open(file.fullName(), file.charCode);
        return;
    }
    if (loadInto(editor, file))
        m_places.restore(*editor);
    editor->setFocus();
}

void DocumentLoader::askAndOpen()
{
    askAndOpen(startFor(m_documents.current()));
}

void DocumentLoader::askAndOpenIn(const QString &folder)
{
    askAndOpen({ folder, u".txt"_s });
}

void DocumentLoader::askAndOpen(const FileChoice &start)
{
    ctlEditer *editor = m_documents.current();
    if (const auto file = m_dialogs.chooseFile(&m_window, frmFileDialog::Open, start))
        openChosen(editor, *file);
}

void DocumentLoader::openNew(const QString &path, std::optional<CharCode> charCode)
{
    const FileChoice file = fileOf(path, charCode);
    if (m_documents.editorOfFile(file.fullName())) {
        open(path, charCode);
        return;
    }
    m_documents.commitComposition();
    KeyPause::begin();
    ctlEditer *const editor = m_documents.add(FileName::forDisplay(file.name));
    editor->startFile(file.folder, file.name, file.charCode);
    m_documents.refresh(editor);
    m_documents.present(editor);
}

void DocumentLoader::askAndReload()
{
    ctlEditer *editor = m_documents.current();
    if (!editor || !hasFile(*editor) || editor->name().isEmpty())
        return;
    if (isReloadWanted(*editor))
        loadAgain(editor);
}

void DocumentLoader::reopen(ctlEditer *editor, CharCode charCode)
{
    if (!mayReopen(*editor))
        return;
    loadInto(editor, { editor->path(), editor->name(), charCode });
    editor->setFocus();
}

void DocumentLoader::reopenUtf16(ctlEditer *editor, Utf16Form form)
{
    if (!mayReopen(*editor))
        return;
    loadAsUtf16(editor, form);
    editor->setFocus();
}

void DocumentLoader::loadAsUtf16(ctlEditer *editor, Utf16Form form)
{
    KeyPause::begin();
    editor->loadUtf16(editor->path(), editor->name(), form);
    m_documents.refresh(editor);
}

bool DocumentLoader::mayReopen(const ctlEditer &editor)
{
    return hasFile(editor) && (!editor.edited() || isReloadWanted(editor));
}

void DocumentLoader::offerCode(ctlEditer *editor, CharCode charCode)
{
    const auto text = [editor] { return tr("Open already, read as %1").arg(editor->charCodeName()); };
    const auto offer = [charCode] { return tr("Reopen as %1").arg(infoOf(charCode).label); };
    m_documents.notices().put(
        { NoticeKind::OtherCode, editor, text, { { offer, [=, this] { reopen(editor, charCode); } } } });
}

bool DocumentLoader::openUnsaved(const QString &path, const QString &name, std::optional<CharCode> charCode)
{
    m_documents.commitComposition();
    ctlEditer *const before = m_documents.current();
    ctlEditer *const editor = m_documents.add(FileName::forDisplay(name));
    KeyPause::begin();
    const FileChoice file = fileOf(path, charCode);
    if (!editor->loadFile(file.folder, file.name, file.charCode)) {
        m_documents.close(editor);
        if (before)
            m_documents.present(before);
        return false;
    }
    loadAsItFits(*editor, file);
    editor->document().detachFromFile(name);
    m_documents.notices().withdrawAllAbout(editor); // they are about the file
    m_documents.refresh(editor);
    m_documents.present(editor);
    return true;
}

bool DocumentLoader::openFromDisk(const ctlEditer &editor, const QString &name)
{
    return openUnsaved(fullName(editor), name, codeToReload(editor));
}

void DocumentLoader::reload(ctlEditer *editor)
{
    if (editor->edited() && !isReloadWanted(*editor))
        return;
    const RowCol cursor = editor->cursorPosition();
    const RowIndex top = editor->topRow();
    if (!loadAgain(editor))
        return;
    editor->setCursorPosition(cursor);
    editor->setTopRow(top);
}

/// UTF-16 text as text again, unless a save or another program has made something else of the file.
bool DocumentLoader::loadAgain(ctlEditer *editor)
{
    const TextDocument &document = std::as_const(*editor).document();
    const std::optional<Utf16Form> form = utf16FormOf(document);
    const bool isKept = keepsUtf16(document);
    if (!loadInto(editor, { editor->path(), editor->name(), codeToReload(*editor) }))
        return false;
    const ReadFindings found = document.findings();
    if (!form || (!found.utf16 && found.undecodableBytes == 0))
        return true;
    loadAsUtf16(editor, found.utf16.value_or(*form));
    if (isKept && document.isUtf16())
        editor->document().keepUtf16();
    return true;
}

/// Keys that are pressed meanwhile were not meant for what the document shows then.
bool DocumentLoader::load(ctlEditer *editor, const FileChoice &file)
{
    KeyPause::begin();
    const bool isAgain = fullName(*editor) == file.fullName();
    const QScopedValueRollback<const ctlEditer *> loading(m_loading, editor);
    const bool isLoaded = editor->loadFile(file.folder, file.name, file.charCode);
    if (isLoaded)
        m_places.restoreCarried(*editor);
    else if (!isAgain)
        m_places.carry(*editor);
    return isLoaded;
}

bool DocumentLoader::loadInto(ctlEditer *editor, const FileChoice &file)
{
    const bool isLoaded = load(editor, file);
    m_documents.refresh(editor);
    return isLoaded;
}

bool DocumentLoader::isReloadWanted(const ctlEditer &editor)
{
    const QString question = tr("Cancel edit and reload\n'%1'?").arg(FileName::forMessage(editor.name()));
    return isReloadWanted(tr("Confirm Reload"), question);
}

bool DocumentLoader::isReloadWanted(const QString &title, const QString &question)
{
    return MessageBox::question(&m_window, title, question, { tr("Yes"), tr("No") }, 0, MessageBox::noEscape)
        == 0;
}
