#include "app/documentcloser.h"

#include "app/documentarea.h"
#include "app/documentloader.h"
#include "app/documentsaver.h"
#include "app/editruns.h"
#include "app/recentplaces.h"
#include "editor/ctlediter.h"
#include "editor/ctltabbar.h"
#include "files/filename.h"
#include "platform/endquestion.h"
#include "platform/keypause.h"
#include "platform/messagebox.h"

#include <QPointer>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

DocumentCloser::DocumentCloser(QWidget &window, DocumentArea &documents, DocumentLoader &loader,
    DocumentSaver &saver, EditRuns &edits, RecentPlaces &places)
    : m_window(window)
    , m_documents(documents)
    , m_loader(loader)
    , m_saver(saver)
    , m_edits(edits)
    , m_places(places)
{
}

bool DocumentCloser::saveIfWanted(ctlEditer *editor)
{
    return DocumentSaver::wait([this, editor](const auto &then) { saveIfWanted(editor, then); });
}

void DocumentCloser::saveIfWanted(ctlEditer *editor, const std::function<void(bool)> &then)
{
    if (m_saver.isSaving(editor)) {
        editor->document().await(EditableText::Awaited::Closing);
        return m_saver.whenSaved(editor, then);
    }
    if (isInputToLose(editor))
        return saveInputIfWanted(editor, then);
    if (isTextComing(editor)) {
        editor->document().await(EditableText::Awaited::Closing);
        return whenTextIsThere(editor, [this, editor, then](bool isThere) {
            // Whoever was told before may have closed it.
            if (!isThere || !m_documents.editors().contains(editor))
                return then(false);
            m_documents.setCurrent(editor);
            saveIfWanted(editor, then);
        });
    }
    if (!editor->edited())
        return then(true);
    switch (askToSave(*editor)) {
    case Answer::Yes:
        m_loader.stopReplacing(editor);
        return m_saver.beginSave(editor, then);
    case Answer::No:
        return then(true);
    case Answer::Cancel:
        return then(false);
    }
    Q_UNREACHABLE();
}

bool DocumentCloser::isInputToLose(const ctlEditer *editor) const
{
    return m_loader.isInputComing(editor) && editor->store().length() > 0;
}

/// It goes on coming until that is answered: nobody could bring back what does not.
void DocumentCloser::saveInputIfWanted(ctlEditer *editor, const std::function<void(bool)> &then)
{
    switch (askToSave(*editor)) {
    case Answer::Yes:
        return saveInput(editor, then);
    case Answer::No:
        return then(true);
    case Answer::Cancel:
        return then(false);
    }
    Q_UNREACHABLE();
}

/// It goes on coming until it has a name, too.
void DocumentCloser::saveInput(ctlEditer *editor, const std::function<void(bool)> &then)
{
    const QPointer<ctlEditer> asked = editor;
    const std::optional<FileChoice> file = m_saver.askForName(editor);
    if (!file || !asked)
        return then(false);
    if (!isTextComing(editor))
        return m_saver.beginSaveUnder(editor, *file, then);
    whenTextIsThere(editor, [this, editor, file = *file, then](bool isThere) {
        if (isThere && m_documents.editors().contains(editor))
            m_saver.beginSaveUnder(editor, file, then);
        else
            then(false);
    });
}

bool DocumentCloser::isTextComing() const
{
    return std::ranges::any_of(
        m_documents.editors(), [this](const ctlEditer *editor) { return isTextComing(editor); });
}

bool DocumentCloser::isTextComing(const ctlEditer *editor) const
{
    return m_edits.isUnderWay(editor) || m_loader.isInputComing(editor);
}

void DocumentCloser::whenTextIsThere(ctlEditer *editor, const std::function<void(bool isThere)> &then)
{
    if (m_edits.isUnderWay(editor))
        m_edits.whenEnded(editor, then);
    else
        m_loader.endInput(editor, then);
}

void DocumentCloser::waitForWork()
{
    for (ctlEditer *const editor : m_documents.editors())
        waitForText(editor);
    m_saver.waitForAll();
}

void DocumentCloser::askAndClose()
{
    if (ctlEditer *const editor = m_documents.current())
        askAndClose(editor);
}

/// What is asked about is shown. Who has gone elsewhere while a long text was written stays there; who waited
/// for it sees another document all at once.
void DocumentCloser::askAndClose(ctlEditer *editor)
{
    const QPointer<ctlEditer> before = m_documents.current();
    if (!mayGo(*editor))
        m_documents.setCurrent(editor);
    const auto isLate = std::make_shared<bool>(false);
    saveIfWanted(editor, [this, editor, before, isLate](bool mayClose) {
        if (!mayClose)
            return;
        if (*isLate && m_documents.current() == editor)
            KeyPause::begin(KeyPause::untilNoticed);
        const QPointer<ctlEditer> next =
            m_documents.current() == editor ? before.data() : m_documents.current();
        if (next && next != editor)
            closeBehind(editor, next);
        else
            close(editor);
    });
    *isLate = true;
}

/// The tabs stay where they were scrolled to, for who closes one after the other.
void DocumentCloser::closeBehind(ctlEditer *editor, ctlEditer *shown)
{
    ctlTabBar &tabs = *m_documents.tabBar();
    const int scrolled = tabs.scrolled();
    close(editor);
    if (shown != m_documents.current())
        m_documents.present(shown);
    tabs.scrollTo(scrolled);
}

void DocumentCloser::closeOthers(ctlEditer *kept)
{
    const QPointer<ctlEditer> stays = kept;
    const QList<ctlEditer *> all = m_documents.editors();
    QList<ctlEditer *> going; // unedited ones, one behind the other
    for (auto editor = all.rbegin(); editor != all.rend(); ++editor) {
        // Its user may have closed it while another one was saved.
        if (*editor == kept || !m_documents.editors().contains(*editor))
            continue;
        if (mayGo(**editor)) {
            going << *editor;
            continue;
        }
        closeUnedited(std::exchange(going, {}));
        if (!mayCloseShown(*editor))
            return;
        if (m_documents.editors().contains(*editor))
            close(*editor);
    }
    closeUnedited(going);
    if (stays)
        m_documents.present(stays);
}

bool DocumentCloser::mayCloseShown(ctlEditer *editor)
{
    m_documents.setCurrent(editor);
    return saveIfWanted(editor);
}

bool DocumentCloser::closeAll(EditsAtClosing edits)
{
    const EndQuestion question;
    m_documents.commitComposition();
    for (closeUneditedFromTheLast(); m_documents.current(); closeUneditedFromTheLast()) {
        ctlEditer *const editor = m_documents.editors().constLast();
        const bool mayClose = mayCloseLast(editor, edits);
        // Its user may have closed it while it was saved.
        const bool isOpen = m_documents.editors().contains(editor);
        if (isOpen && !mayClose)
            return false;
        if (isOpen)
            close(editor);
    }
    return true;
}

bool DocumentCloser::mayCloseLast(ctlEditer *editor, EditsAtClosing edits)
{
    m_loader.stopReplacing(editor);
    if (isTextComing(editor))
        m_documents.setCurrent(editor);
    const bool isAsked = edits == EditsAtClosing::Ask && isInputToLose(editor);
    if (!isAsked && !waitForText(editor))
        return false;
    if (!m_documents.editors().contains(editor))
        return false;
    if (edits == EditsAtClosing::Save && editor->edited() && !m_saver.isSaving(editor)
        && !m_saver.save(editor))
        return false;
    if (!m_documents.editors().contains(editor))
        return false;
    if (editor->edited() && !m_saver.isSaving(editor))
        m_documents.setCurrent(editor);
    return saveIfWanted(editor);
}

/// False where it is not made: its user has stopped it, and looks at the document.
bool DocumentCloser::waitForText(ctlEditer *editor)
{
    return !isTextComing(editor)
        || DocumentSaver::wait([this, editor](const auto &then) { whenTextIsThere(editor, then); });
}

bool DocumentCloser::mayGo(const ctlEditer &editor) const
{
    return !editor.edited() && !m_saver.isSaving(&editor) && !isTextComing(&editor);
}

/// What stays is shown first: otherwise each that goes would be, for a moment.
void DocumentCloser::closeUneditedFromTheLast()
{
    const QList<ctlEditer *> all = m_documents.editors();
    const auto kept = std::find_if_not(
        all.rbegin(), all.rend(), [this](const ctlEditer *editor) { return mayGo(*editor); });
    const QList<ctlEditer *> going(all.rbegin(), kept);
    if (going.isEmpty())
        return;
    m_documents.setCurrent(kept == all.rend() ? all.first() : *kept);
    closeUnedited(going);
}

void DocumentCloser::closeUnedited(const QList<ctlEditer *> &editors)
{
    if (editors.isEmpty())
        return;
    m_places.add(editors);
    m_documents.close(editors);
}

void DocumentCloser::close(ctlEditer *editor)
{
    m_edits.stop(editor);
    m_places.add(*editor);
    m_documents.close(editor);
}

DocumentCloser::Answer DocumentCloser::askToSave(const ctlEditer &editor)
{
    const QString question =
        tr("\"%1\" is edited.\n Would you want to save this file?").arg(FileName::forMessage(editor.name()));
    const QStringList buttons{ tr("Yes"), tr("No"), tr("Cancel") };
    return Answer(MessageBox::question(
        &m_window, tr("Confirm File Save"), question, buttons, int(Answer::Yes), int(Answer::Cancel)));
}
