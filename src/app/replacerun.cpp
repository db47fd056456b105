#include "app/replacerun.h"

#include "app/searchrequest.h"
#include "editor/ctlediter.h"
#include "jobs/memoryleft.h"
#include "search/frmreplaceprogress.h"

#include <QApplication>
#include <QEvent>

namespace {

constexpr std::chrono::milliseconds frameTime{ 16 };

/// What is searched in a few milliseconds.
constexpr qint64 unitsBetweenEvents = qint64{ 4 } << 20;

bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::Close:
    case QEvent::ContextMenu:
    case QEvent::Drop:
    case QEvent::InputMethod:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::TabletMove:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
    case QEvent::TouchBegin:
    case QEvent::TouchEnd:
    case QEvent::TouchUpdate:
    case QEvent::Wheel:
        return true;
    default:
        return false;
    }
}

} // namespace

ReplaceGuard::ReplaceGuard()
{
    if (QWidget *const menu = QApplication::activePopupWidget())
        menu->close();
    qApp->installEventFilter(this);
}

bool ReplaceGuard::eventFilter(QObject *object, QEvent *event)
{
    auto *widget = qobject_cast<QWidget *>(object);
    if (!widget || qobject_cast<frmReplaceProgress *>(widget->window()))
        return false;
    // It would get what is meant for the panel. Assistive technology can open one.
    if (event->type() == QEvent::Show && widget->windowType() == Qt::Popup)
        QMetaObject::invokeMethod(widget, &QWidget::hide, Qt::QueuedConnection);
    if (!isInput(event->type()))
        return false;
    event->ignore();
    return true;
}

ReplaceRun::ReplaceRun(ctlEditer &editor, const SearchRequest &request, frmReplaceProgress &progress)
    : m_editor(editor)
    , m_request(request)
    , m_progress(progress)
    , m_search(editor)
{
    m_search.setPattern(request.findText, request.caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive);
}

int ReplaceRun::run()
{
    while (hasMemory() && runFrame()) {
        m_progress.setCount(m_count);
        m_frameEnd = PendingEvents::Clock::now() + frameTime;
        if (m_progress.speedUp)
            hurry();
    }
    showResult();
    return m_count;
}

/// Each replacement that is far from the one before copies the text around it.
bool ReplaceRun::hasMemory()
{
    constexpr qint64 mostOfFrame = qint64{ 64 } << 20;
    constexpr qint64 least = qint64{ 8 } << 20;
    constexpr qint64 bytesOfUnit = 8;
    const qint64 length = m_editor.store().length();
    m_hasTooLittleMemory = !MemoryLeft::has(qMin(mostOfFrame, least + length * bytesOfUnit));
    return !m_hasTooLittleMemory;
}

/// Replaces until it is time to show something; false when the run is over.
bool ReplaceRun::runFrame()
{
    const QMultiLineEdit::Batch batch(m_editor);
    do {
        if (!replaceNext())
            return false;
    } while (m_now < m_frameEnd);
    return true;
}

bool ReplaceRun::replaceNext()
{
    const bool replaces = m_request.searchMode == 1;
    const auto hit = findNext();
    if (!hit || (replaces && !m_editor.document().requestChange()))
        return false;
    if (replaces)
        m_search.replace(SearchDirection::Forward, *hit, m_request.replaceText);
    else
        m_search.select(SearchDirection::Forward, *hit);
    ++m_count;
    processEvents();
    return !m_progress.stopRequested;
}

std::optional<SearchHit> ReplaceRun::findNext()
{
    constexpr auto forward = SearchDirection::Forward;
    const TextStore &text = m_editor.store();
    const TextPattern &pattern = m_search.pattern();
    const CursorPlace start = m_search.start(forward);
    TextRange rest = searchedRange(text, pattern, forward, start);
    while (true) {
        const TextRange next = takeFirst(rest, forward, unitsBetweenEvents);
        if (const auto begin = beginOfHit(text, pattern, forward, next))
            return hitAt(text, pattern, forward, start, *begin);
        if (rest.isEmpty())
            return std::nullopt;
        processEvents();
        if (m_progress.stopRequested)
            return std::nullopt;
    }
}

/// Not before a frame has ended: its signals tell that there is something to undo.
void ReplaceRun::hurry()
{
    m_editor.setUpdatesEnabled(false);
    m_editor.blockSignals(true);
}

void ReplaceRun::showResult()
{
    if (m_count > 0 && !m_progress.stopRequested)
        m_progress.setCount(m_count);
    m_editor.blockSignals(false);
    m_editor.setUpdatesEnabled(true);
    m_editor.viewport()->repaint();
}
