#include "widget/selectionhandles.h"

#include "widget/cursormoves.h"
#include "widget/textview.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <utility>

/// A drop that hangs from its tip, which is at the right for the beginning of the selection and at the left
/// for its end. Fingers come as the mouse's events that the toolkit makes of them.
class SelectionHandles::Handle : public QWidget {
public:
    Handle(SelectionHandles &owner, bool isBegin)
        : QWidget(&owner.m_editor)
        , m_owner(owner)
        , m_isBegin(isBegin)
    {
        setObjectName(isBegin ? u"selectionBegin" : u"selectionEnd");
        setAttribute(Qt::WA_NoMousePropagation);
        setCursor(Qt::SizeAllCursor);
        setFixedSize(side, side);
        hide();
    }

    bool isBegin() const { return m_isBegin; }
    /// Points are the editor's.
    void moveTip(QPoint to) { move(to - tip()); }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(palette().color(QPalette::HighlightedText));
        painter.setBrush(palette().color(QPalette::Highlight));
        const QRectF drop = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        QPainterPath path;
        path.setFillRule(Qt::WindingFill);
        path.addEllipse(drop);
        const QPointF corner(m_isBegin ? drop.center().x() : drop.left(), drop.top());
        path.addRect(QRectF(corner, drop.size() / 2));
        painter.drawPath(path.simplified());
    }
    void mousePressEvent(QMouseEvent *event) override
    {
        m_grip = pos() + tip() - event->globalPosition().toPoint();
        m_owner.beginDrag(*this);
    }
    void mouseMoveEvent(QMouseEvent *event) override
    {
        m_owner.dragTo(event->globalPosition().toPoint() + m_grip);
    }
    void mouseReleaseEvent(QMouseEvent *) override { m_owner.endDrag(); }

private:
    static constexpr int side = 24; ///< in platform pixels; a fingertip finds it

    QPoint tip() const { return { m_isBegin ? width() : 0, 0 }; }

    SelectionHandles &m_owner;
    const bool m_isBegin;
    QPoint m_grip; ///< from where it is held on the screen to its tip
};

SelectionHandles::SelectionHandles(QWidget &editor, QWidget &viewport, const TextStore &store,
    const TextCursor &cursor, const TextView &view, CursorMoves &moves, std::function<void()> bringUpToDate)
    : m_editor(editor)
    , m_viewport(viewport)
    , m_store(store)
    , m_cursor(cursor)
    , m_view(view)
    , m_moves(moves)
    , m_bringUpToDate(std::move(bringUpToDate))
{
}

SelectionHandles::~SelectionHandles() = default;

void SelectionHandles::show()
{
    if (!m_begin) {
        m_begin = new Handle(*this, true);
        m_end = new Handle(*this, false);
    }
    m_viewport.installEventFilter(this);
    m_areShown = true;
    place();
}

void SelectionHandles::hide()
{
    m_viewport.removeEventFilter(this);
    m_areShown = false;
    m_dragged = nullptr;
    m_begin->hide();
    m_end->hide();
}

bool SelectionHandles::eventFilter(QObject *viewport, QEvent *event)
{
    const bool moves = event->type() == QEvent::Paint || event->type() == QEvent::Resize;
    if (moves && !std::exchange(m_isDue, true))
        QMetaObject::invokeMethod(
            this, [this] { place(); }, Qt::QueuedConnection);
    return QObject::eventFilter(viewport, event);
}

void SelectionHandles::place()
{
    m_isDue = false;
    if (!m_areShown)
        return;
    if (!m_cursor.hasSelection()) {
        hide();
        return;
    }
    m_bringUpToDate();
    put(*m_begin);
    put(*m_end);
}

/// While one of them is dragged it may pass the other one.
CursorPlace SelectionHandles::placeOf(const Handle &handle) const
{
    if (m_dragged)
        return &handle == m_dragged ? m_cursor.place() : m_cursor.anchor();
    return handle.isBegin() ? m_cursor.selectionBegin() : m_cursor.selectionEnd();
}

/// Below its place, and inside the editor; hidden where the place is not in view.
void SelectionHandles::put(Handle &handle)
{
    const RowCol place = m_store.rowColAt(placeOf(handle));
    const QRectF box = m_view.boxAt(place.row, m_view.xOf(place));
    QPoint tip = m_viewport.mapTo(&m_editor, box.bottomLeft().toPoint());
    tip.setY(qMin(tip.y(), m_editor.height() - handle.height()));
    handle.moveTip(tip);
    // A hidden one would be let go of.
    handle.setVisible(&handle == m_dragged || box.intersects(QRectF(m_viewport.rect())));
    handle.raise();
}

void SelectionHandles::beginDrag(Handle &handle)
{
    m_bringUpToDate();
    m_moves.select(handle.isBegin() ? m_cursor.selectionEnd() : m_cursor.selectionBegin(),
        handle.isBegin() ? m_cursor.selectionBegin() : m_cursor.selectionEnd());
    m_dragged = &handle;
}

/// The tip hangs from its row.
void SelectionHandles::dragTo(QPoint tip)
{
    if (!m_dragged)
        return;
    m_bringUpToDate();
    const QPointF row(0, m_view.rowHeight() / 2);
    const CursorPlace place = m_view.placeAt(QPointF(m_viewport.mapFrom(&m_editor, tip)) - row);
    if (place.offset != m_cursor.anchor().offset)
        m_moves.select(m_cursor.anchor(), place);
}

void SelectionHandles::endDrag()
{
    m_dragged = nullptr;
    place();
}
