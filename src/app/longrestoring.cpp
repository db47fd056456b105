#include "app/longrestoring.h"

#include "app/documentarea.h"
#include "app/documentloader.h"
#include "app/windowjobs.h"
#include "editor/ctlediter.h"
#include "files/filename.h"
#include "files/statefolder.h"
#include "jobs/memoryleft.h"
#include "recovery/recoveryjournals.h"

#include <utility>

LongRestoring::LongRestoring(ctlEditer &editor, LongText &&text, const Parts &parts)
    : m_editor(editor)
    , m_document(editor.document())
    , m_text(std::move(text))
    , m_parts(parts)
    , m_turns(
          this, parts.jobs.turn, [this](QDeadlineTimer end) { return prepare(end); }, [this] { endTurns(); },
          [this] { fail(); })
{
    if (m_text.found.readAs)
        readFile();
    else
        look({});
}

LongRestoring::~LongRestoring() = default;

void LongRestoring::readFile()
{
    readBehind({ m_text.found.path, m_text.found.name }, &LongRestoring::endReading);
}

void LongRestoring::readBehind(const FileChoice &file, void (LongRestoring::*next)(ArrivingFile::End end))
{
    ArrivingFile::Source source{ file, m_text.found.readAs->utf16 };
    source.file.charCode = m_text.found.readAs->code;
    m_arriving = &m_parts.loader.readBehind(
        &m_editor, source, [this, next](ArrivingFile::End end) { (this->*next)(end); });
}

/// Without its file a text would come back as another one.
bool LongRestoring::hasFailedForMemory(ArrivingFile::End end) const
{
    return end == ArrivingFile::End::Failed && m_arriving->failure() == ReadFailure::TooLarge;
}

void LongRestoring::endReading(ArrivingFile::End end)
{
    m_isFileRead = end == ArrivingFile::End::Whole;
    if (end == ArrivingFile::End::Stopped)
        emit stopped();
    else if (hasFailedForMemory(end))
        emit failed();
    else
        look(m_isFileRead ? TextSnapshot(std::as_const(m_document).store()) : TextSnapshot());
}

void LongRestoring::readNextCopy()
{
    const QByteArray copy = m_copies.takeFirst();
    const QByteArray folder = folderOf(copy);
    release();
    readBehind({ FileName::fromBytes(folder), FileName::fromBytes(copy.sliced(folder.size())) },
        &LongRestoring::endReadingCopy);
}

void LongRestoring::endReadingCopy(ArrivingFile::End end)
{
    if (end == ArrivingFile::End::Stopped) {
        emit stopped();
    } else if (hasFailedForMemory(end)) {
        emit failed();
    } else if (end == ArrivingFile::End::Whole) {
        look(TextSnapshot(std::as_const(m_document).store()));
    } else {
        hold(WorkNotice::Work::Loading);
        goOn();
    }
}

/// How far that is would go back to nothing when the text is restored.
void LongRestoring::look(TextSnapshot text)
{
    hold(WorkNotice::Work::Restoring);
    auto work = std::make_unique<JournalLook>(m_text.journal, std::move(text));
    m_look = work.get();
    m_job.emplace(std::move(work), *m_parts.jobs.runner);
    connect(&*m_job, &Job::finished, this, &LongRestoring::endLook);
}

void LongRestoring::note(const JobProgress &progress)
{
    if (progress.total > 0)
        m_sign->setProgress(int(qMin<qint64>(100, progress.done * 100 / progress.total)));
}

void LongRestoring::endLook(JobOutcome outcome)
{
    if (outcome != JobOutcome::Done)
        return fail();
    if (m_restoring) {
        if (m_restoring->lookInCopy(m_look->hash()))
            m_copies.clear();
    } else {
        m_restoring.emplace(std::move(m_text.claimed), m_text.journal, m_document);
        if (m_isFileRead)
            m_restoring->lookInFile(m_look->hash());
    }
    goOn();
}

void LongRestoring::goOn()
{
    if (!m_copies.isEmpty())
        return readNextCopy();
    hold(WorkNotice::Work::Restoring);
    m_turns.goOn();
}

/// What comes behind the last turn cannot fail.
bool LongRestoring::prepare(QDeadlineTimer end)
{
    const bool isPrepared = m_restoring->prepare(end);
    if (isPrepared)
        MemoryLeft::require();
    else
        note(m_restoring->progress());
    return isPrepared;
}

/// Copies of interrupted saves are read where the file does not say enough.
void LongRestoring::endTurns()
{
    if (!std::exchange(m_areCopiesKnown, true))
        m_copies = m_restoring->copies();
    if (m_copies.isEmpty())
        finish();
    else
        readNextCopy();
}

void LongRestoring::finish()
{
    release();
    Restored restored;
    {
        const QMultiLineEdit::Batch batch(m_editor);
        restored = m_parts.journals.takeRestored(m_restoring->finish(), m_document);
    }
    restored.journal = {}; // what stays of it is to be found again
    emit ended(restored);
}

void LongRestoring::hold(WorkNotice::Work work)
{
    m_document.disconnect(this);
    m_sign.emplace(
        m_parts.documents.notices(), &m_editor, work, [this] { stop(); }, m_begun);
    connect(&m_document, &TextDocument::refused, this, [this] { m_sign->refuse(); });
    m_document.setHeld(true);
}

void LongRestoring::release()
{
    m_document.disconnect(this);
    m_sign.reset();
    m_document.setHeld(false);
}

void LongRestoring::giveUp()
{
    m_job->disconnect(this);
    m_job->stop();
    m_turns.stop();
    release();
}

void LongRestoring::stop()
{
    giveUp();
    emit stopped();
}

void LongRestoring::fail()
{
    giveUp();
    emit failed();
}
