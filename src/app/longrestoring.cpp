#include "app/longrestoring.h"

#include "app/documentarea.h"
#include "app/documentloader.h"
#include "app/windowjobs.h"
#include "editor/ctlediter.h"
#include "files/filename.h"
#include "files/statefolder.h"
#include "recovery/recoveryjournals.h"

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

LongRestoring::LongRestoring(ctlEditer &editor, LongText &&text, const Parts &parts)
    : m_editor(editor)
    , m_document(editor.document())
    , m_text(std::move(text))
    , m_parts(parts)
{
    m_turns.callOnTimeout(this, &LongRestoring::takeTurn);
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
    m_parts.loader.readBehind(&m_editor, source, [this, next](ArrivingFile::End end) { (this->*next)(end); });
}

void LongRestoring::endReading(ArrivingFile::End end)
{
    m_isFileRead = end == ArrivingFile::End::Whole;
    if (end == ArrivingFile::End::Stopped)
        emit stopped();
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
    } else if (end == ArrivingFile::End::Whole) {
        look(TextSnapshot(std::as_const(m_document).store()));
    } else {
        hold();
        goOn();
    }
}

void LongRestoring::look(TextSnapshot text)
{
    hold();
    auto work = std::make_unique<JournalLook>(m_text.journal, std::move(text));
    m_look = work.get();
    m_job.emplace(std::move(work), *m_parts.jobs.runner);
    connect(&*m_job, &Job::progressed, this, &LongRestoring::note);
    connect(&*m_job, &Job::finished, this, &LongRestoring::endLook);
}

void LongRestoring::note(const JobProgress &progress)
{
    if (progress.total > 0)
        m_sign->setProgress(int(progress.done * 100 / progress.total));
}

void LongRestoring::endLook(JobOutcome outcome)
{
    if (outcome != JobOutcome::Done)
        return stop();
    if (m_restoring) {
        if (m_restoring->lookInCopy(m_look->hash()))
            m_copies.clear();
    } else {
        m_restoring.emplace(std::move(m_text.claimed), m_text.journal, m_document);
        if (m_isFileRead)
            m_restoring->lookInFile(m_look->hash());
        m_copies = m_restoring->copies();
    }
    goOn();
}

void LongRestoring::goOn()
{
    if (m_copies.isEmpty())
        takeTurn();
    else
        readNextCopy();
}

void LongRestoring::takeTurn()
{
    if (!m_restoring->prepare(QDeadlineTimer(m_parts.jobs.turn))) {
        m_turns.start(0ms);
        return;
    }
    m_turns.stop();
    finish();
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

void LongRestoring::hold()
{
    m_sign.emplace(m_parts.documents.notices(), &m_editor, WorkNotice::Work::Loading, [this] { stop(); });
    connect(&m_document, &TextDocument::refused, this, [this] { m_sign->refuse(); });
    m_document.setHeld(true);
}

void LongRestoring::release()
{
    m_document.disconnect(this);
    m_sign.reset();
    m_document.setHeld(false);
}

void LongRestoring::stop()
{
    m_job->disconnect(this);
    m_job->stop();
    m_turns.stop();
    release();
    emit stopped();
}
