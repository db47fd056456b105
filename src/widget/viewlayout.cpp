#include "widget/viewlayout.h"

#include "document/editabletext.h"
#include "widget/cursorfollowers.h"
#include "widget/rowformat.h"
#include "widget/rowupdates.h"
#include "widget/textcursor.h"
#include "widget/textview.h"
#include "widget/viewscroller.h"

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

#include <utility>

ViewLayout::ViewLayout(QWidget &editor, EditableText &document, RowFormat &format, TextCursor &cursor,
    TextView &view, RowUpdates &updates, ViewScroller &scroller, CursorFollowers &followers)
    : m_editor(editor)
    , m_document(document)
    , m_format(format)
    , m_cursor(cursor)
    , m_view(view)
    , m_updates(updates)
    , m_scroller(scroller)
    , m_followers(followers)
{
}

void ViewLayout::setStale()
{
    if (!std::exchange(m_isStale, true) && m_editor.isVisible())
        QCoreApplication::postEvent(&m_editor, new QEvent(QEvent::LayoutRequest));
}

void ViewLayout::update()
{
    if (!std::exchange(m_isStale, false))
        return;
    // The old measure holds the widths that the text is laid out by until the new rule is set.
    const auto old = m_format.setFont(m_editor.font(), m_editor.devicePixelRatioF());
    if (const LayoutRule rule = m_format.layoutRule(); rule != m_document.store().layoutRule())
        layOut(rule);
    else
        m_scroller.updateBars();
    m_updates.updateAll();
    m_followers.tellInputMethod();
}

void ViewLayout::layOut(const LayoutRule &rule)
{
    const TextStore &store = m_document.store();
    const Offset topOffset = store.row(qMin(m_view.top(), store.lastRow())).start;
    m_document.layOut(rule);
    m_cursor.setGoalX(std::nullopt);
    m_view.updateLast();
    m_view.setTop(store.rowColAt(topOffset).row);
    m_scroller.updateBars();
    if (m_view.isCursorRowVisible(m_view.height()))
        m_scroller.showCursor(); // which may be beside the view now
}
