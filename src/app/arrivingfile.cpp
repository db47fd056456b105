#include "app/arrivingfile.h"

#include "app/windowjobs.h"
#include "document/inputwork.h"
#include "editor/ctlediter.h"
#include "editor/noticequeue.h"
#include "settings/settings.h"

#include <utility>

namespace {

FileCodes codesOfSilent()
{
    return { appSettings().defaultCharCode(), appSettings().defaultReturnCode() };
}

FileReading::Request requestFor(const FileChoice &file, const ArrivingFile::As &as)
{
    return { file.fullName(), as.code, codesOfSilent(), as.utf16 };
}

} // namespace

ArrivingFile::ArrivingFile(
    ctlEditer &editor, const Source &source, Shown shown, NoticeQueue &notices, const WindowJobs &jobs)
    : m_editor(editor)
    , m_document(editor.document())
    , m_source(source)
    , m_shown(shown)
    , m_codesBefore{ m_document.charCode(), m_document.returnCode() }
    , m_jobs(jobs)
    , m_taking(
          this, jobs.turn, [this](QDeadlineTimer end) { return takeSome(end); }, [this] { noteTaken(); },
          [this] { fail(); })
{
    m_sign.emplace(
        notices, &m_editor, WorkNotice::Work::Loading, [this] { isComingIn() ? endInput() : stop(); });
    connect(&m_document, &TextDocument::refused, this, [this] { m_sign->refuse(); });
    connect(&m_document, &TextDocument::awaited, this, [this](auto what) { m_sign->promise(what); });
    m_document.setHeld(true);
    if (isComingIn())
        beginInput();
    else
        begin({ source.file.charCode, source.utf16 });
}

ArrivingFile::~ArrivingFile() = default;

void ArrivingFile::begin(const As &as)
{
    beginText(m_codesBefore);
    beginReading(
        std::make_unique<ReadWork>(requestFor(m_source.file, as), LayoutCopy(text())), *m_jobs.runner);
}

void ArrivingFile::beginInput()
{
    beginText(m_codesBefore);
    beginReading(std::make_unique<InputWork>(
                     m_source.input, m_source.file.charCode, codesOfSilent(), LayoutCopy(text())),
        *m_jobs.inputRunner);
}

void ArrivingFile::beginReading(std::unique_ptr<ReadWork> work, JobRunner &runner)
{
    m_isRead = false;
    m_work = work.get();
    m_layoutGiven = text().layout().stamp();
    m_job.emplace(std::move(work), runner);
    connect(&*m_job, &Job::progressed, this, &ArrivingFile::note);
    connect(&*m_job, &Job::partReady, this, &ArrivingFile::collect);
    connect(&*m_job, &Job::finished, this, &ArrivingFile::endReading);
}

/// Of the document, while its text comes.
QString ArrivingFile::folder() const
{
    return m_source.nameApart ? QString() : m_source.file.folder;
}

QString ArrivingFile::name() const
{
    return m_source.nameApart.value_or(m_source.file.name);
}

void ArrivingFile::note(const JobProgress &progress)
{
    if (progress.total > 0)
        m_sign->setProgress(int(qMin<qint64>(100, progress.done * 100 / progress.total)));
}

void ArrivingFile::collect()
{
    for (ReadWork::Part &part : m_work->take())
        m_waiting.push_back(std::move(part));
    m_taking.goOn();
}

bool ArrivingFile::takeSome(QDeadlineTimer end)
{
    bool isLaidOut = updateLayout(end);
    while (isLaidOut && !m_waiting.empty()) {
        takePart(std::move(m_waiting.front()));
        m_waiting.pop_front();
        isLaidOut = updateLayout(end);
        if (end.hasExpired())
            break;
    }
    return isLaidOut && m_waiting.empty();
}

void ArrivingFile::noteTaken()
{
    if (m_isRead)
        showWhole();
    else
        emit came();
}

/// Where what has come goes.
const TextStore &ArrivingFile::text() const
{
    return m_shown == Shown::WhenWhole ? m_aside : std::as_const(m_document).store();
}

void ArrivingFile::beginText(FileCodes codes)
{
    m_layoutChange.reset();
    TextStore empty(m_editor.layoutRule());
    if (m_shown == Shown::WhenWhole)
        m_aside = std::move(empty);
    else
        m_document.beginArrival(folder(), name(), codes, std::move(empty));
}

/// The font may be another one by now. False: what has come is still to be measured by it.
bool ArrivingFile::updateLayout(QDeadlineTimer end)
{
    const LayoutRule rule = m_editor.layoutRule();
    if (m_shown != Shown::WhenWhole || m_aside.layoutRule() == rule)
        return true;
    if (!m_layoutChange || m_layoutChange->layout().rule() != rule)
        m_layoutChange.emplace(rule);
    if (!m_aside.setLayout(*m_layoutChange, end))
        return false;
    m_layoutChange.reset();
    giveLayout();
    return true;
}

void ArrivingFile::giveLayout()
{
    m_work->setLayout(LayoutCopy(text()));
    m_layoutGiven = text().layout().stamp();
}

void ArrivingFile::takePart(ReadWork::Part &&part)
{
    if (part.startsOver)
        beginText(part.codes);
    if (m_shown == Shown::WhenWhole) {
        m_aside.append(std::move(part.text));
    } else {
        noteCodes(part.codes);
        m_document.takePart(std::move(part.text));
    }
    if (!part.isMeasured || text().layout().stamp() != m_layoutGiven)
        giveLayout();
}

/// As far as is known by now.
void ArrivingFile::noteCodes(FileCodes codes)
{
    if (m_document.charCode() != codes.charCode || m_document.returnCode() != codes.returnCode)
        m_document.setCodes(codes);
}

void ArrivingFile::endReading(JobOutcome outcome)
{
    if (outcome != JobOutcome::Done) {
        end(outcome == JobOutcome::Failed ? End::Failed : End::Stopped);
        return;
    }
    m_isRead = true;
    m_taking.goOn();
}

void ArrivingFile::showWhole()
{
    const ReadResult result = m_work->result();
    const auto again = std::exchange(m_source.again, {});
    if (const std::optional<As> other = again ? again(result.findings) : std::nullopt) {
        begin(*other);
        return;
    }
    if (m_shown == Shown::WhenWhole) {
        emit aboutToReplace();
        m_document.beginArrival(folder(), name(), result.codes, std::move(m_aside));
    }
    m_document.endArrival(result);
    detach();
    end(End::Whole);
}

void ArrivingFile::detach()
{
    if (m_source.nameApart)
        m_document.detachFromFile(*m_source.nameApart);
}

/// As it was read so far.
void ArrivingFile::keepWhatCame()
{
    for (ReadWork::Part &part : m_work->take())
        m_waiting.push_back(std::move(part));
    for (ReadWork::Part &part : m_waiting)
        takePart(std::move(part));
    ReadResult known;
    known.codes = { m_document.charCode(), m_document.returnCode() };
    known.codec = &m_document.byteCodec();
    m_document.endArrival(known);
    if (text().length() > 0)
        detach();
}

void ArrivingFile::endInput()
{
    m_source.input->end();
}

void ArrivingFile::settle()
{
    keepWhatCame();
    forgetWork();
}

void ArrivingFile::stop()
{
    m_job->stop();
    end(End::Stopped);
}

ReadFailure ArrivingFile::failure() const
{
    return m_hasTooLittleMemory ? ReadFailure::TooLarge : m_work->failure();
}

void ArrivingFile::fail()
{
    m_hasTooLittleMemory = true;
    m_job->stop();
    end(End::Failed);
}

/// Whoever is told may destroy this.
void ArrivingFile::end(End how)
{
    if (how == End::Failed && isComingIn())
        keepWhatCame();
    forgetWork();
    m_document.setHeld(false);
    if (how == End::Failed && !isComingIn())
        m_document.failArrival(folder(), name(), m_codesBefore);
    emit ended(how);
}

void ArrivingFile::forgetWork()
{
    m_job->disconnect(this);
    m_document.disconnect(this);
    m_taking.stop();
    m_waiting.clear();
    m_aside = TextStore();
    m_layoutChange.reset();
    m_sign.reset();
}
