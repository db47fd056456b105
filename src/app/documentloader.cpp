#include "app/documentloader.h"

#include "app/documentarea.h"
#include "app/documentfile.h"
#include "app/recentplaces.h"
#include "app/windowjobs.h"
#include "document/utf16text.h"
#include "editor/readfailurebox.h"
#include "files/filename.h"
#include "platform/freeturn.h"
#include "platform/keypause.h"
#include "platform/messagebox.h"
#include "platform/qpeapplication.h"

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

/// As which UTF-16 text a file is read that was one; nothing where it is none any more.
std::optional<Utf16Form> asUtf16Still(const ReadFindings &found, Utf16Form form)
{
    return found.utf16 || found.undecodableBytes > 0 ? std::optional(found.utf16.value_or(form))
                                                     : std::nullopt;
}

} // namespace

DocumentLoader::DocumentLoader(QWidget &window, const WindowDialogs &dialogs, DocumentArea &documents,
    RecentPlaces &places, const WindowJobs &jobs)
    : m_window(window)
    , m_dialogs(dialogs)
    , m_documents(documents)
    , m_places(places)
    , m_jobs(jobs)
{
    connect(&documents, &DocumentArea::closed, this, [this](ctlEditer *editor) {
        m_arriving.erase(editor);
        tellInputEnded(editor, false);
    });
    if (auto *application = qobject_cast<QPEApplication *>(qApp))
        connect(application, &QPEApplication::endingAtOnce, this, &DocumentLoader::settleInputs);
}

DocumentLoader::~DocumentLoader() = default;

FileChoice DocumentLoader::fileOf(const QString &path, std::optional<CharCode> charCode)
{
    const QFileInfo info(QDir::cleanPath(path));
    const QString folder = info.absolutePath();
    return { folder.endsWith(u'/') ? folder : folder + u'/', info.fileName(), charCode };
}

ctlEditer *DocumentLoader::open(const QString &path, std::optional<CharCode> charCode, OpenedIn where)
{
    if (where == OpenedIn::View)
        m_documents.commitComposition();
    const FileChoice file = fileOf(path, charCode);
    if (ctlEditer *const there = m_documents.editorOfFile(file.fullName())) {
        openAgain(there, file, path, where);
        return there;
    }
    if (where == OpenedIn::View)
        KeyPause::begin();
    ctlEditer *const editor = m_documents.add(FileName::forDisplay(file.name));
    if (isLarge(file)) {
        openBehind(editor, file);
        show(editor, where);
        return editor;
    }
    load(editor, file);
    show(editor, where);
    m_places.restore(*editor);
    return editor;
}

/// A document is in view when its user is asked about it.
void DocumentLoader::openAgain(ctlEditer *editor, const FileChoice &file, const QString &path, OpenedIn where)
{
    if (where == OpenedIn::View || editor->edited())
        m_documents.setCurrent(editor);
    const QString question =
        tr("File named '%1' already opens.\nCancel edit and reload?").arg(FileName::forMessage(path));
    if (editor->edited() && !editor->document().requestChange())
        return;
    if (editor->edited() && isReloadWanted(tr("Existing File"), question))
        loadInto(editor, file, [this, editor] { m_places.restore(*editor); });
    else if (file.charCode && !isReadWith(*editor, *file.charCode))
        offerCode(editor, *file.charCode);
}

void DocumentLoader::show(ctlEditer *editor, OpenedIn where)
{
    if (where == OpenedIn::View)
        m_documents.present(editor);
    else
        m_documents.arrange();
}

bool DocumentLoader::isLarge(const FileChoice &file) const
{
    return stampOf(FileName::toBytes(file.fullName()), FileCalls::system()).size >= m_jobs.fewest;
}

void DocumentLoader::openBehind(ctlEditer *editor, const FileChoice &file)
{
    fillBehind(editor, file, [this, editor] { m_documents.close(editor); });
}

void DocumentLoader::openChosen(ctlEditer *editor, const FileChoice &file)
{
    if (!editor || !isFresh(*editor) || m_documents.editorOfFile(file.fullName())) {
        open(file.fullName(), file.charCode);
        return;
    }
    if (isLarge(file))
        fillFreshBehind(editor, file);
    else
        loadInto(editor, file, [this, editor] { m_places.restore(*editor); });
    editor->setFocus();
}

ctlEditer *DocumentLoader::openChosen(const QString &path, std::optional<CharCode> charCode, OpenedIn where)
{
    if (where == OpenedIn::Background)
        return open(path, charCode, where);
    m_documents.commitComposition();
    openChosen(m_documents.current(), fileOf(path, charCode));
    return m_documents.current();
}

std::function<void()> DocumentLoader::freshAgain(ctlEditer *editor)
{
    const TextDocument &document = editor->document();
    return [this, editor, name = document.name(), codec = &document.byteCodec(),
               codes = FileCodes{ document.charCode(), document.returnCode() }] {
        editor->document().startNew(name, codes, *codec);
        m_documents.refresh(editor);
    };
}

void DocumentLoader::fillFreshBehind(ctlEditer *editor, const FileChoice &file)
{
    KeyPause::begin();
    fillBehind(editor, file, freshAgain(editor));
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

ctlEditer *DocumentLoader::openNew(const QString &path, std::optional<CharCode> charCode, OpenedIn where)
{
    const FileChoice file = fileOf(path, charCode);
    if (m_documents.editorOfFile(file.fullName()))
        return open(path, charCode, where);
    if (where == OpenedIn::View) {
        m_documents.commitComposition();
        KeyPause::begin();
    }
    ctlEditer *const current = where == OpenedIn::View ? m_documents.current() : nullptr;
    ctlEditer *const editor =
        current && isFresh(*current) ? current : m_documents.add(FileName::forDisplay(file.name));
    editor->startFile(file.folder, file.name, file.charCode);
    m_documents.refresh(editor);
    show(editor, where);
    return editor;
}

void DocumentLoader::askAndReload()
{
    ctlEditer *editor = m_documents.current();
    if (!editor || !hasFile(*editor) || editor->name().isEmpty() || !editor->document().requestChange())
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

void DocumentLoader::reopenUtf16(ctlEditer *editor, Utf16Form form, const Then &read)
{
    if (!mayReopen(*editor))
        return;
    loadAsUtf16(editor, form, read);
    editor->setFocus();
}

void DocumentLoader::loadAsUtf16(ctlEditer *editor, Utf16Form form, const Then &loaded)
{
    const FileChoice file{ editor->path(), editor->name() };
    if (!editor->document().requestChange())
        return;
    if (isLarge(file)) {
        replaceBehind(editor, { file, form }, loaded);
        return;
    }
    KeyPause::begin();
    const bool isLoaded = editor->loadUtf16(editor->path(), editor->name(), form);
    m_documents.refresh(editor);
    if (isLoaded && loaded)
        loaded();
}

void DocumentLoader::stopReplacing(const ctlEditer *editor)
{
    if (isReplacing(editor))
        m_arriving.at(editor)->stop();
}

bool DocumentLoader::isReplacing(const ctlEditer *editor) const
{
    const auto arriving = m_arriving.find(editor);
    return arriving != m_arriving.end() && !arriving->second->isShownInParts()
        && !arriving->second->isOfInput();
}

bool DocumentLoader::mayReopen(ctlEditer &editor)
{
    return hasFile(editor) && editor.document().requestChange()
        && (!editor.edited() || isReloadWanted(editor));
}

void DocumentLoader::offerCode(ctlEditer *editor, CharCode charCode)
{
    const auto text = [readAs = editor->charCodeName()] {
        return tr("Open already, read as %1").arg(readAs);
    };
    const auto offer = [charCode] { return tr("Reopen as %1").arg(infoOf(charCode).label); };
    m_documents.notices().put(
        { NoticeKind::OtherCode, editor, text, { { offer, [=, this] { reopen(editor, charCode); } } } });
}

void DocumentLoader::openFromDisk(const ctlEditer &editor, const QString &name, const Opened &opened)
{
    openUnsaved(fullName(editor), name, codeToReload(editor), opened);
}

/// What its user does until a text that is read behind the window is there is done in the old one.
void DocumentLoader::reload(ctlEditer *editor, CursorAtEnd atEnd)
{
    if (!editor->document().requestChange() || (editor->edited() && !isReloadWanted(*editor)))
        return;
    const auto view = std::make_shared<KeptView>(*editor);
    loadAgain(editor, [editor, view, atEnd] { view->show(*editor, atEnd); });
    const auto arriving = m_arriving.find(editor);
    if (arriving != m_arriving.end())
        KeptView::renewBeforeReplacing(view, *editor, *arriving->second);
}

/// UTF-16 text as text again, unless a save or another program has made something else of the file.
void DocumentLoader::loadAgain(ctlEditer *editor, const Then &loaded)
{
    const TextDocument &document = std::as_const(*editor).document();
    const std::optional<Utf16Form> form = utf16FormOf(document);
    const FileChoice file{ editor->path(), editor->name(), codeToReload(*editor) };
    if (!form) {
        loadInto(editor, file, loaded);
        return;
    }
    if (!editor->document().requestChange())
        return;
    const auto again = [form = *form](const ReadFindings &found) {
        const auto still = asUtf16Still(found, form);
        return still ? std::optional(ArrivingFile::As{ {}, still }) : std::nullopt;
    };
    const auto keepAsBefore = [editor, isKept = keepsUtf16(document), loaded] {
        if (isKept && editor->document().isUtf16())
            editor->document().keepUtf16();
        if (loaded)
            loaded();
    };
    if (isLarge(file))
        replaceBehind(editor, { file, {}, {}, again }, keepAsBefore);
    else if (loadAgainAsUtf16(editor, file, *form))
        keepAsBefore();
}

bool DocumentLoader::loadAgainAsUtf16(ctlEditer *editor, const FileChoice &file, Utf16Form form)
{
    KeyPause::begin();
    const bool isLoaded = load(editor, file);
    m_documents.refresh(editor);
    if (!isLoaded)
        return false;
    if (const auto still = asUtf16Still(editor->document().findings(), form))
        loadAsUtf16(editor, *still);
    return true;
}

bool DocumentLoader::load(ctlEditer *editor, const FileChoice &file)
{
    const bool isAgain = fullName(*editor) == file.fullName();
    const QScopedValueRollback<const ctlEditer *> loading(m_loading, editor);
    const bool isLoaded = editor->loadFile(file.folder, file.name, file.charCode);
    if (isLoaded)
        m_places.restoreCarried(*editor);
    else if (!isAgain)
        m_places.carry(*editor);
    return isLoaded;
}

/// While its user was asked a save may have begun, of all documents in turn.
void DocumentLoader::loadInto(ctlEditer *editor, const FileChoice &file, const Then &loaded)
{
    if (!editor->document().requestChange())
        return;
    if (isLarge(file)) {
        replaceBehind(editor, { file }, loaded);
        return;
    }
    KeyPause::begin();
    const bool isLoaded = load(editor, file);
    m_documents.refresh(editor);
    if (isLoaded && loaded)
        loaded();
}

void DocumentLoader::fillBehind(ctlEditer *editor, const FileChoice &file, const Then &stopped)
{
    const auto ended = [this, editor, stopped](ArrivingFile::End end) {
        if (end != ArrivingFile::End::Stopped)
            return;
        pauseKeysOf(editor);
        stopped();
    };
    const ArrivingFile &arriving = begin(editor, { file }, ArrivingFile::Shown::PartByPart, ended);
    m_places.carry(*editor);
    m_documents.refresh(editor);
    connect(&editor->document(), &TextDocument::codesChanged, &arriving,
        [=, this] { m_documents.refresh(editor); });
    connect(&arriving, &ArrivingFile::came, this, [=, this] { m_places.restoreCarriedIfThere(*editor); });
}

void DocumentLoader::replaceBehind(ctlEditer *editor, const ArrivingFile::Source &source, const Then &loaded)
{
    KeyPause::begin();
    begin(editor, source, ArrivingFile::Shown::WhenWhole, [loaded](ArrivingFile::End end) {
        if (end == ArrivingFile::End::Whole && loaded)
            loaded();
    });
}

bool DocumentLoader::isLong(const QString &path) const
{
    return isLarge(fileOf(path, {}));
}

const ArrivingFile &DocumentLoader::readBehind(
    ctlEditer *editor, const ArrivingFile::Source &source, const Ended &ended)
{
    using Shown = ArrivingFile::Shown;
    const Shown shown = isFresh(*editor) ? Shown::PartByPart : Shown::WhenWhole;
    const ArrivingFile &arriving = begin(editor, source, shown, ended, Failure::IsNot);
    m_documents.refresh(editor);
    connect(&editor->document(), &TextDocument::codesChanged, &arriving,
        [=, this] { m_documents.refresh(editor); });
    return arriving;
}

/// The first to hear of its end is the loader itself, whose box may outlive the file's object.
ArrivingFile &DocumentLoader::begin(ctlEditer *editor, const ArrivingFile::Source &source,
    ArrivingFile::Shown shown, const Ended &ended, Failure failure)
{
    auto &arriving = m_arriving[editor];
    arriving = std::make_unique<ArrivingFile>(*editor, source, shown, m_documents.notices(), m_jobs);
    connect(arriving.get(), &ArrivingFile::ended, this, [=, this](ArrivingFile::End end) {
        noteEnd(editor, end, failure);
        ended(end);
        if (!isInputComing(editor))
            tellInputEnded(editor, true);
    });
    return *arriving;
}

void DocumentLoader::noteEnd(ctlEditer *editor, ArrivingFile::End end, Failure failure)
{
    ArrivingFile *const arriving = m_arriving.extract(editor).mapped().release();
    arriving->deleteLater();
    emit m_documents.workEnded();
    if (end == ArrivingFile::End::Stopped)
        return;
    if (end == ArrivingFile::End::Failed)
        KeyPause::begin();
    else if (!arriving->isShownInParts())
        pauseKeysOf(editor);
    m_documents.refresh(editor);
    if (end == ArrivingFile::End::Whole)
        m_places.settleCarried(*editor);
    else if (failure == Failure::IsTold)
        tellFailure(editor, arriving->failure());
}

void DocumentLoader::pauseKeysOf(const ctlEditer *editor) const
{
    if (m_documents.current() == editor)
        KeyPause::begin();
}

/// A box could not be answered during a run of replacements, which would not go on beneath it.
void DocumentLoader::tellFailure(ctlEditer *editor, ReadFailure failure)
{
    if (QPEApplication::isBusy())
        FreeTurn::once(editor, [=] { tellReadFailure(editor, failure); });
    else
        tellReadFailure(editor, failure);
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
