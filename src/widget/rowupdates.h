#pragma once

#include "rows/rowpictures.h"
#include "widget/slotink.h"

#include <QRegion>

#include <functional>

class QPainter;
class QWidget;
class RowFormat;
class RowLayout;
class TextCursor;
class TextStore;
class TextView;

/// Which rows of a view are to be painted anew, and which pictures of rows are good still.
///
/// Whatever changes how a row looks is told here: a row that nobody told of may be shown as it was. A repaint
/// is asked for at most once a frame. Nothing here costs more than the rows of a view.
class RowUpdates {
public:
    RowUpdates(QWidget &viewport, const TextStore &store, const RowFormat &format, const TextCursor &cursor,
        const TextView &view);

    /// These look different now: a row, the rows first..last, those of the selection, all.
    void updateRow(RowIndex row) { updateRows(row, row); }
    void updateRows(RowIndex first, RowIndex last);
    void updateCursorRow();
    void updateSelection();
    void updateAll();
    /// The view has gone that many rows down in the text. Moves what is painted already, or repaints.
    void viewMoved(qint64 rowsDown);

    /// Paints the part `update` of one row at `cell`, both in the viewport's coordinates.
    using PaintCell = std::function<void(RowIndex row, const QRectF &cell, const QRect &update)>;
    /// Paints an area of the view: rows whose pictures are good are copied, for the others `paintCell` is
    /// called, and what is below the text is filled with `background`.
    void paint(QPainter &painter, const QRegion &area, const QBrush &background, const PaintCell &paintCell);
    /// Device pixels of the shared picture that a row is to be drawn in; what was there is lost.
    int takePicture(RowIndex row) { return m_pictures.take(row); }
    /// A row is painted as it is laid out. Behind its text that are a line end's signs; only the cursor's row
    /// may show more.
    void rowPainted(const RowLayout &layout);

private:
    QRect slotsRect(qint64 slot, qint64 count, int width) const;
    QRegion inkRegion() const;
    RowIndex lastShownRow() const;
    void preparePictures(const QRect &area);
    void paintRow(QPainter &painter, RowIndex row, const QRegion &area, const PaintCell &paintCell);

    QWidget &m_viewport;
    const TextStore &m_store;
    const RowFormat &m_format;
    const TextCursor &m_cursor;
    const TextView &m_view;
    SlotInk m_ink;
    RowPictures m_pictures;
    bool m_hasMoved = false; ///< the view, since it was painted last
};
