#include "widget/textdrag.h"

#include "platform/requesthold.h"
#include "widget/rowformat.h"
#include "widget/rowupdates.h"
#include "widget/textclipboard.h"
#include "widget/textcursor.h"
#include "widget/textedits.h"
#include "widget/textexchange.h"
#include "widget/textmimedata.h"
#include "widget/textview.h"
#include "widget/viewscroller.h"

#include <QApplication>
#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QPointer>
#include <QWidget>

#include <utility>

namespace {

/// How near the view's edge dragged text makes it scroll, and how long it takes for each row.
constexpr int scrollMargin = 16;
constexpr int scrollInterval = 60; ///< ms

/// Which edges of a view a point is near: -1 left or top, 1 right or bottom, 0 neither.
QPoint edgeNear(QPointF point, QSize view)
{
    const auto side = [](qreal at, int length) {
        const int margin = qMin(scrollMargin, length / 4);
        return at < margin ? -1 : at >= length - margin ? 1 : 0;
    };
    return { side(point.x(), view.width()), side(point.y(), view.height()) };
}

} // namespace

TextDrag::TextDrag(QWidget &editor, QWidget &viewport, const TextStore &store, const RowFormat &format,
    const TextCursor &cursor, const TextView &view, RowUpdates &updates, ViewScroller &scroller,
    const TextExchange &exchange, const TextClipboard &clipboard, TextEdits &edits)
    : m_editor(editor)
    , m_viewport(viewport)
    , m_store(store)
    , m_format(format)
    , m_cursor(cursor)
    , m_view(view)
    , m_updates(updates)
    , m_scroller(scroller)
    , m_exchange(exchange)
    , m_clipboard(clipboard)
    , m_edits(edits)
    , m_scrolling(&editor)
{
    m_scrolling.setInterval(scrollInterval);
    QObject::connect(&m_scrolling, &QTimer::timeout, &m_scrolling, [this] { scroll(); });
}

/// The drag is not the editor's child, which may be closed before it ends.
bool TextDrag::start()
{
    const RequestHold requestsWait;
    const QPointer<QWidget> editor(&m_editor);
    m_drag = new QDrag(qApp);
    m_drag->setMimeData(m_exchange.selectionData());
    const Qt::DropAction done = m_drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
    if (!editor)
        return false;
    const QDrag *const finished = std::exchange(m_drag, nullptr);
    // A drop inside this editor has moved the text itself.
    if (done == Qt::MoveAction && finished->target() != &m_viewport && finished->target() != &m_editor)
        m_edits.eraseSelection();
    return true;
}

bool TextDrag::accepts(const QDropEvent &event)
{
    return event.mimeData()->hasText() && !event.mimeData()->hasUrls();
}

Qt::DropAction TextDrag::actionOf(const QDropEvent &event) const
{
    const bool copies = event.modifiers().testFlag(Qt::ControlModifier) || !m_drag;
    return copies ? Qt::CopyAction : Qt::MoveAction;
}

void TextDrag::setDropOffset(std::optional<Offset> offset)
{
    if (offset == m_dropOffset)
        return;
    for (const std::optional<Offset> place : { m_dropOffset, offset }) {
        if (place)
            m_updates.updateRow(m_store.rowColAt(*place).row);
    }
    m_dropOffset = offset;
}

void TextDrag::moveOver(QPointF point)
{
    m_dropPoint = point;
    setDropOffset(m_view.placeAt(point).offset);
    if (edgeNear(point, m_viewport.size()).isNull())
        m_scrolling.stop();
    else if (!m_scrolling.isActive())
        m_scrolling.start();
}

void TextDrag::leave()
{
    m_scrolling.stop();
    setDropOffset(std::nullopt);
}

/// One row, or the width of a character, towards the edge that the text is held near.
void TextDrag::scroll()
{
    const QPoint direction = edgeNear(m_dropPoint, m_viewport.size());
    const RowIndex oldTop = m_view.top();
    const qint64 oldLeft = m_view.left();
    m_scroller.setTop(oldTop + direction.y());
    m_scroller.setLeft(oldLeft + qint64{ direction.x() } * qCeil(m_format.measure().xWidth()));
    if (m_view.top() == oldTop && m_view.left() == oldLeft)
        m_scrolling.stop();
    setDropOffset(m_view.placeAt(m_dropPoint).offset);
}

void TextDrag::drop(const QDropEvent &event)
{
    std::optional<BroughtText> brought = m_exchange.textOf(*event.mimeData());
    if (!brought)
        return m_clipboard.tellShortage();
    const Offset to = m_view.placeAt(event.position()).offset;
    const bool moves = m_drag && event.dropAction() == Qt::MoveAction;
    const TextRange selected = m_cursor.selection();
    if (moves && to >= selected.start && to <= selected.end)
        return;
    brought->droppedAt = to;
    if (!moves && m_clipboard.insertLong(*brought))
        return;
    if (const std::optional<TextPiece> text = TextExchange::pieceOf(*brought))
        m_edits.drop(*text, to, moves);
    else
        m_clipboard.tellShortage();
}

void TextDrag::paintDropPlace(QPainter &painter, const QColor &color) const
{
    if (!m_dropOffset)
        return;
    const RowCol place = m_store.rowColAt(*m_dropOffset);
    painter.fillRect(m_view.cursorBoxAt(place.row, m_view.xOf(place)), color);
}
