#include "app/documentloader.h"

#include "app/documentarea.h"
#include "document/inputwork.h"
#include "document/utf16text.h"
#include "files/filename.h"
#include "platform/keypause.h"

#include <QPointer>

// Texts that have no file: what comes from a pipe, and what is opened under a name of its own.

namespace {

/// A text without a file cannot be read again: it is read at once as notices would offer.
std::optional<ArrivingFile::As> asItFits(const ReadFindings &found)
{
    if (found.utf16)
        return ArrivingFile::As{ {}, found.utf16 };
    if (found.fittingCode)
        return ArrivingFile::As{ found.fittingCode };
    return std::nullopt;
}

} // namespace

void DocumentLoader::openUnsaved(
    const QString &path, const QString &name, std::optional<CharCode> charCode, const Opened &opened)
{
    m_documents.commitComposition();
    const QPointer<ctlEditer> before = m_documents.current();
    ctlEditer *const editor = m_documents.add(FileName::forDisplay(name));
    const FileChoice file = fileOf(path, charCode);
    const auto end = [this, before, opened, document = QPointer(editor)](bool isOpen) {
        if (document && !endUnsaved(document, isOpen) && before)
            m_documents.present(before);
        if (document && opened)
            opened(isOpen);
    };
    readUnsaved(editor, file, name, end);
}

void DocumentLoader::readUnsaved(
    ctlEditer *editor, const FileChoice &file, const QString &name, const Opened &ended)
{
    KeyPause::begin();
    if (isLarge(file)) {
        loadUnsavedBehind(editor, file, name, ended);
        m_documents.present(editor);
        return;
    }
    const bool isLoaded = loadUnsaved(editor, file, name);
    if (isLoaded)
        m_documents.present(editor);
    ended(isLoaded);
}

void DocumentLoader::openInput(const SharedFd &input, std::optional<CharCode> charCode)
{
    m_documents.commitComposition();
    KeyPause::begin();
    ctlEditer *const editor = m_documents.add();
    const auto reading = std::make_shared<InputReading>(input);
    const auto ended = [this, editor, reading, makeFresh = freshAgain(editor)](ArrivingFile::End end) {
        m_documents.notices().withdrawAllAbout(editor); // they are about the file
        if (std::as_const(*editor).document().store().length() == 0)
            makeFresh();
        else if (const auto other = asItFits(editor->document().findings()))
            readInputAgain(editor, reading, *other);
        m_documents.refresh(editor);
        if (end == ArrivingFile::End::Whole && reading->isBroken())
            tellFailure(editor, ReadFailure::BrokenOff);
    };
    const ArrivingFile &arriving =
        begin(editor, { fileOf(InputWork::fileOf(*reading), charCode), {}, QString(), {}, reading },
            ArrivingFile::Shown::PartByPart, ended);
    connect(&editor->document(), &TextDocument::codesChanged, &arriving,
        [=, this] { m_documents.refresh(editor); });
    m_documents.refresh(editor);
    m_documents.present(editor);
}

/// Its user may look at the text, and copy of it, meanwhile.
void DocumentLoader::readInputAgain(
    ctlEditer *editor, const std::shared_ptr<InputReading> &input, const ArrivingFile::As &as)
{
    const FileChoice file = fileOf(InputWork::fileOf(*input), as.code);
    const auto view = std::make_shared<KeptView>(*editor);
    const auto ended = [this, editor, view](ArrivingFile::End end) {
        m_documents.notices().withdrawAllAbout(editor); // they are about the file
        m_documents.refresh(editor);
        if (end == ArrivingFile::End::Whole)
            view->show(*editor, CursorAtEnd::StaysInRow);
    };
    const ArrivingFile &arriving =
        begin(editor, { file, as.utf16, QString(), {}, input }, ArrivingFile::Shown::WhenWhole, ended);
    KeptView::renewBeforeReplacing(view, *editor, arriving);
}

bool DocumentLoader::isInputComing(const ctlEditer *editor) const
{
    const auto arriving = m_arriving.find(editor);
    return arriving != m_arriving.end() && arriving->second->isOfInput();
}

void DocumentLoader::endInput(const ctlEditer *editor, const std::function<void(bool isThere)> &then)
{
    m_inputEnds[editor].push_back(then);
    m_arriving.at(editor)->endInput();
}

void DocumentLoader::tellInputEnded(const ctlEditer *editor, bool isThere)
{
    const auto waiting = m_inputEnds.extract(editor);
    if (!waiting)
        return;
    for (const auto &then : waiting.mapped())
        then(isThere);
}

/// Before what is not saved is kept for the next start.
void DocumentLoader::settleInputs()
{
    for (const auto &[editor, arriving] : m_arriving) {
        if (arriving->isOfInput() && arriving->isShownInParts())
            arriving->settle();
    }
}

/// False: the document was shown, and has gone.
bool DocumentLoader::endUnsaved(ctlEditer *editor, bool isOpen)
{
    if (isOpen) {
        m_documents.notices().withdrawAllAbout(editor); // they are about the file
        m_documents.refresh(editor);
        return true;
    }
    const bool isShown = m_documents.current() == editor;
    pauseKeysOf(editor);
    m_documents.close(editor);
    return !isShown;
}

bool DocumentLoader::loadUnsaved(ctlEditer *editor, const FileChoice &file, const QString &name)
{
    if (!editor->loadFile(file.folder, file.name, file.charCode))
        return false;
    if (const auto other = asItFits(editor->document().findings())) {
        if (other->utf16)
            editor->loadUtf16(file.folder, file.name, *other->utf16);
        else
            editor->loadFile(file.folder, file.name, other->code);
    }
    editor->document().detachFromFile(name);
    return true;
}

void DocumentLoader::loadUnsavedBehind(
    ctlEditer *editor, const FileChoice &file, const QString &name, const Opened &ended)
{
    begin(editor, { file, {}, name, asItFits }, ArrivingFile::Shown::PartByPart,
        [ended](ArrivingFile::End end) { ended(end == ArrivingFile::End::Whole); });
    m_documents.refresh(editor);
}
