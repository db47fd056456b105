#pragma once

#include <QObject>

#include <functional>
#include <memory>

class CursorMoves;
class QWidget;
class TextCursor;
class TextStore;
class TextView;
struct CursorPlace;

/// Two handles under the ends of the selection, which a finger drags to where they shall be. They appear when
/// fingers have selected something, and are there as long as anything is selected.
///
/// Cost: nothing while they are hidden.
class SelectionHandles : public QObject {
public:
    /// `bringUpToDate` lays out what the view needs to tell where places stand.
    SelectionHandles(QWidget &editor, QWidget &viewport, const TextStore &store, const TextCursor &cursor,
        const TextView &view, CursorMoves &moves, std::function<void()> bringUpToDate);
    ~SelectionHandles() override;

    /// Nothing without a selection.
    void show();

protected:
    /// Whatever moves the selection or the view has the viewport painted.
    bool eventFilter(QObject *viewport, QEvent *event) override;

private:
    class Handle;

    void hide();
    void place();
    CursorPlace placeOf(const Handle &handle) const;
    void put(Handle &handle);
    void beginDrag(Handle &handle);
    void dragTo(QPoint tip);
    void endDrag();

    QWidget &m_editor;
    QWidget &m_viewport;
    const TextStore &m_store;
    const TextCursor &m_cursor;
    const TextView &m_view;
    CursorMoves &m_moves;
    const std::function<void()> m_bringUpToDate;
    Handle *m_begin = nullptr; ///< the editor's children, made when they are needed
    Handle *m_end = nullptr;
    const Handle *m_dragged = nullptr;
    bool m_areShown = false; ///< as far as their places are in view
    bool m_isDue = false; ///< placing them
};
