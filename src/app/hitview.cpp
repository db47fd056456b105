#include "app/hitview.h"

#include "editor/ctlediter.h"
#include "platform/windowsystem.h"

#include <QScreen>

#include <optional>
#include <utility>

namespace {

/// The cursor's place at the other end of the hit, in viewport coordinates.
QRect anchorRect(const ctlEditer &editor)
{
    const QRectF rect = editor.inputMethodQuery(Qt::ImAnchorRectangle).toRectF();
    return rect.translated(-editor.viewport()->pos()).toAlignedRect();
}

/// In viewport coordinates. A hit in two rows is taken to be as wide as the view.
QRect hitRect(const ctlEditer &editor)
{
    const QRect ends[] = { editor.cursorRect(), anchorRect(editor) };
    const QRect hit = ends[0] | ends[1];
    const bool isInOneRow = ends[0].top() == ends[1].top();
    return isInOneRow ? hit : QRect(0, hit.top(), editor.viewport()->width(), hit.height());
}

/// In the coordinates of the editor's viewport.
QRect coverRect(const ctlEditer &editor, const QWidget &panel)
{
    QRect cover = panel.frameGeometry();
    if (WindowSystem::isWayland()) {
        const QWidget *const window = panel.parentWidget();
        cover.moveCenter(window->mapToGlobal(window->rect().center()));
    }
    cover.moveTopLeft(editor.viewport()->mapFromGlobal(cover.topLeft()));
    return cover;
}

bool isFree(const ctlEditer &editor, const QRect &cover)
{
    const QRect hit = hitRect(editor);
    return hit.top() >= 0 && hit.bottom() <= editor.viewport()->rect().bottom() && !hit.intersects(cover);
}

/// Puts the hit into the middle of the view's part from `top` to `bottom`, as far as the document's ends let.
void scrollHitBetween(ctlEditer &editor, int top, int bottom)
{
    const QRect hit = hitRect(editor);
    const qreal wanted = (top + bottom - hit.height()) / 2.0;
    const auto rows = qint64((hit.top() - wanted) / editor.rowHeight());
    editor.setTopRow(editor.topRow() + rows);
}

/// False, with the view as it was, when no scrolling helps.
bool scrollAside(ctlEditer &editor, const QRect &cover)
{
    const RowIndex before = editor.topRow();
    const int height = editor.viewport()->height();
    std::pair larger(0, cover.top());
    std::pair smaller(cover.bottom() + 1, height);
    if (larger.second - larger.first < smaller.second - smaller.first)
        std::swap(larger, smaller);
    for (const auto &[top, bottom] : { larger, smaller }) {
        scrollHitBetween(editor, top, bottom);
        if (isFree(editor, cover))
            return true;
    }
    editor.setTopRow(before);
    return false;
}

/// Where a window that is moved stays longest: at the view's lower or upper end, not close to the hit, or it
/// would be in the way of the next one. All in screen coordinates.
std::optional<QPoint> freePlace(const QRect &hit, const QRect &window, const QRect &view, const QRect &screen)
{
    const QRect limits(screen.topLeft(), screen.size() - window.size() + QSize(1, 1));
    const QPoint places[] = { { window.x(), view.bottom() + 1 - window.height() }, { window.x(), view.top() },
        { window.x(), limits.bottom() }, { window.x(), limits.top() }, { hit.right() + 1, window.y() },
        { hit.left() - window.width(), window.y() } };
    for (const QPoint &wanted : places) {
        const QPoint place(qMax(limits.left(), qMin(wanted.x(), limits.right())),
            qMax(limits.top(), qMin(wanted.y(), limits.bottom())));
        if (!QRect(place, window.size()).intersects(hit))
            return place;
    }
    return std::nullopt;
}

QRect onScreen(const QWidget &widget, const QRect &rect)
{
    return { widget.mapToGlobal(rect.topLeft()), rect.size() };
}

void moveAside(const ctlEditer &editor, QWidget &panel)
{
    const QWidget &view = *editor.viewport();
    const auto place = freePlace(onScreen(view, hitRect(editor)), panel.frameGeometry(),
        onScreen(view, view.rect()), editor.screen()->availableGeometry());
    if (place)
        panel.move(*place);
}

} // namespace

void showHit(ctlEditer &editor)
{
    const int width = editor.viewport()->width() - editor.hMargin();
    const QRect hit = editor.cursorRect() | anchorRect(editor);
    if (hit.width() > width)
        return;
    const int hiddenLeft = editor.hMargin() - 1 - hit.left();
    const int hiddenRight = hit.right() - editor.viewport()->rect().right();
    if (hiddenLeft > 0)
        editor.setXOffset(editor.xOffset() - hiddenLeft);
    else if (hiddenRight > 0)
        editor.setXOffset(editor.xOffset() + hiddenRight);
}

void uncoverHit(ctlEditer &editor, QWidget &panel)
{
    const QRect cover = coverRect(editor, panel);
    if (hitRect(editor).intersects(cover) && !scrollAside(editor, cover) && !WindowSystem::isWayland())
        moveAside(editor, panel);
}
