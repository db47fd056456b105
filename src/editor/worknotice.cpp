#include "editor/worknotice.h"

#include "editor/noticequeue.h"

#include <QPointer>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

struct WorkTexts {
    NoticeKind kind; ///< a text that is loaded or saved can be searched meanwhile
    const char *begun;
    const char *refused; ///< null where nothing has to wait for it
    const char *ended;
    const char *jump = nullptr; ///< where places wait for it that are to be gone to
    const char *closing = nullptr; ///< where the document waits for it that is to be closed
};

constexpr const char *closingWords = QT_TRANSLATE_NOOP("WorkNotice", "To be closed when it is done");

/// In the order of WorkNotice::Work.
constexpr WorkTexts workTexts[] = {
    { NoticeKind::Work, QT_TRANSLATE_NOOP("WorkNotice", "Loading"),
        QT_TRANSLATE_NOOP("WorkNotice", "Not while it is loading"),
        QT_TRANSLATE_NOOP("WorkNotice", "Loading has ended"),
        QT_TRANSLATE_NOOP("WorkNotice", "To be gone to when it is loaded") },
    { NoticeKind::Work, QT_TRANSLATE_NOOP("WorkNotice", "Saving"),
        QT_TRANSLATE_NOOP("WorkNotice", "Not while it is being saved"),
        QT_TRANSLATE_NOOP("WorkNotice", "Saving has ended"), nullptr, closingWords },
    { NoticeKind::Searching, QT_TRANSLATE_NOOP("WorkNotice", "Searching"),
        QT_TRANSLATE_NOOP("WorkNotice", "Not while it is being searched"),
        QT_TRANSLATE_NOOP("WorkNotice", "Searching has ended") },
    { NoticeKind::Counting, QT_TRANSLATE_NOOP("WorkNotice", "Counting"),
        QT_TRANSLATE_NOOP("WorkNotice", "Not while it is being counted"),
        QT_TRANSLATE_NOOP("WorkNotice", "Counting has ended") },
    { NoticeKind::Opening, QT_TRANSLATE_NOOP("WorkNotice", "Opening files"),
        QT_TRANSLATE_NOOP("WorkNotice", "Not while files are being opened"),
        QT_TRANSLATE_NOOP("WorkNotice", "Opening files has ended") },
    { NoticeKind::Work, QT_TRANSLATE_NOOP("WorkNotice", "Indenting"),
        QT_TRANSLATE_NOOP("WorkNotice", "Not while it is being indented"),
        QT_TRANSLATE_NOOP("WorkNotice", "Indenting has ended"), nullptr, closingWords },
    { NoticeKind::Work, QT_TRANSLATE_NOOP("WorkNotice", "Pasting"),
        QT_TRANSLATE_NOOP("WorkNotice", "Not while text is being pasted"),
        QT_TRANSLATE_NOOP("WorkNotice", "Pasting has ended"), nullptr, closingWords },
    { NoticeKind::LayingOut, QT_TRANSLATE_NOOP("WorkNotice", "Laying out"), nullptr,
        QT_TRANSLATE_NOOP("WorkNotice", "Laying out has ended") },
    { NoticeKind::Work, QT_TRANSLATE_NOOP("WorkNotice", "Restoring"),
        QT_TRANSLATE_NOOP("WorkNotice", "Not while it is being restored"),
        QT_TRANSLATE_NOOP("WorkNotice", "Restoring has ended") },
};

const WorkTexts &textsOf(WorkNotice::Work work)
{
    return workTexts[std::size_t(work)];
}

} // namespace

WorkNotice::WorkNotice(NoticeQueue &notices, const QObject *document, Work work, std::function<void()> stop)
    : m_notices(notices)
    , m_document(document)
    , m_work(work)
    , m_stop(std::move(stop))
{
    m_answering.setSingleShot(true);
    m_answering.callOnTimeout([this] {
        m_state.answer = nullptr;
        show();
    });
    show();
}

/// Its end is said by the strip, which then goes.
WorkNotice::~WorkNotice()
{
    if (!m_notices.has(textsOf(m_work).kind, m_document))
        return;
    m_state.step = Step::Ended;
    show();
    m_notices.withdraw(textsOf(m_work).kind, m_document);
}

void WorkNotice::setProgress(std::optional<int> percent)
{
    if (percent == m_state.percent)
        return;
    m_state.percent = percent;
    show();
}

void WorkNotice::refuse(std::chrono::milliseconds time)
{
    Q_ASSERT(textsOf(m_work).refused);
    answer(textsOf(m_work).refused, time);
}

void WorkNotice::promise(EditableText::Awaited what, std::chrono::milliseconds time)
{
    const WorkTexts &texts = textsOf(m_work);
    if (const char *const words = what == EditableText::Awaited::Jump ? texts.jump : texts.closing)
        answer(words, time);
}

void WorkNotice::answer(const char *words, std::chrono::milliseconds time)
{
    m_answering.start(time);
    if (std::exchange(m_state.answer, words) != words)
        show();
}

void WorkNotice::show()
{
    constexpr int quarter = 25;
    const auto text = [work = m_work, state = m_state] { return textOf(work, state); };
    const auto spoken = [work = m_work, state = m_state] {
        State told = state;
        if (told.percent)
            told.percent = *told.percent / quarter * quarter;
        return textOf(work, told);
    };
    // To choose it is a command, and what a command ends may be this work.
    const auto stopWhatIsThere = [this, there = QPointer(&m_answering)] {
        if (there)
            stop();
    };
    Notice notice{ textsOf(m_work).kind, m_document, text, {} };
    notice.offers.push_back({ [] { return tr("Stop"); }, stopWhatIsThere });
    notice.isDismissable = false;
    notice.spoken = spoken;
    notice.escaped = stopWhatIsThere;
    m_notices.put(std::move(notice));
}

/// What is in the middle of a step, or waits for a disk, is stopped behind that.
void WorkNotice::stop()
{
    m_answering.stop();
    m_state.answer = nullptr;
    m_state.step = Step::Stopping;
    show();
    const auto stop = m_stop;
    stop();
}

QString WorkNotice::textOf(Work work, const State &state)
{
    const WorkTexts &texts = textsOf(work);
    if (state.step == Step::Ended)
        return tr(texts.ended);
    if (state.step == Step::Stopping && !state.answer)
        return tr("Stopping") + u"…"_s;
    const QString text = tr(state.answer ? state.answer : texts.begun);
    return state.percent ? tr("%1: %2%").arg(text).arg(*state.percent) : text + u"…"_s;
}
