#include "widget/qmultilineedit.h"

#include "widget/clampedint.h"
#include "widget/editorparts.h"
#include "widget/textaccessible.h"
#include "widget/viewscrollbar.h"

#include <QInputMethodEvent>

namespace {

QList<QMultiLineEdit *> &instances()
{
    static QList<QMultiLineEdit *> all;
    return all;
}

Selecting selecting(bool mark)
{
    return mark ? Selecting::Extend : Selecting::Drop;
}

} // namespace

QMultiLineEdit::Batch::Batch(QMultiLineEdit &edit)
    : m_edit(edit)
{
    m_edit.laidOut().edits.beginOperation();
}

QMultiLineEdit::Batch::~Batch()
{
    m_edit.laidOut().edits.endOperation();
}

QMultiLineEdit::QMultiLineEdit(QWidget *parent)
    : QAbstractScrollArea(parent)
    , m_verticalBar(new ViewScrollBar(Qt::Vertical, this))
    , m_horizontalBar(new ViewScrollBar(Qt::Horizontal, this))
    , d(std::make_unique<Parts>(*this, *m_verticalBar, *m_horizontalBar))
{
    TextAccessible::install();
    instances().append(this);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    setAttribute(Qt::WA_KeyCompression);
    setAcceptDrops(true);
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setAttribute(Qt::WA_AcceptTouchEvents);
    viewport()->setCursor(Qt::IBeamCursor);
    setVerticalScrollBar(m_verticalBar);
    setHorizontalScrollBar(m_horizontalBar);
    nameScrollBars();
    connect(m_horizontalBar, &QAbstractSlider::actionTriggered, this,
        [this](int action) { laidOut().scroller.stepSideways(action); });
    d->clipboard.setShortageTeller([this] { emit tooLittleMemory(); });
    connect(&d->document, &TextDocument::saved, &d->followers, &CursorFollowers::tellAvailability);
    connect(&d->edits, &TextEdits::textChanged, this, &QMultiLineEdit::textChanged);
    connect(&d->followers, &CursorFollowers::undoAvailable, this, &QMultiLineEdit::undoAvailable);
    connect(&d->followers, &CursorFollowers::redoAvailable, this, &QMultiLineEdit::redoAvailable);
    connect(&d->followers, &CursorFollowers::copyAvailable, this, &QMultiLineEdit::copyAvailable);
}

QMultiLineEdit::~QMultiLineEdit()
{
    instances().removeOne(this);
}

QMultiLineEdit::Parts &QMultiLineEdit::laidOut() const
{
    d->layout.update();
    return *d;
}

QMultiLineEdit::Parts &QMultiLineEdit::viewLaidOut() const
{
    d->layout.followView();
    return *d;
}

void QMultiLineEdit::nameScrollBars()
{
    m_verticalBar->setAccessibleName(tr("Vertical scroll bar"));
    m_horizontalBar->setAccessibleName(tr("Horizontal scroll bar"));
}

// The text.

QString QMultiLineEdit::text() const
{
    return d->document.store().text();
}

qint64 QMultiLineEdit::numLines() const
{
    return store().rowCount();
}

TextDocument &QMultiLineEdit::document()
{
    return d->document;
}

const TextDocument &QMultiLineEdit::document() const
{
    return d->document;
}

const TextStore &QMultiLineEdit::store() const
{
    return laidOut().document.store();
}

TextDocument &QMultiLineEdit::laidOutDocument()
{
    return laidOut().document;
}

const UndoHistory &QMultiLineEdit::history() const
{
    return d->document.history();
}

void QMultiLineEdit::setText(TextStore &&store)
{
    if (const LayoutRule rule = layoutRule(); store.layoutRule() != rule)
        store.setLayoutRule(rule);
    document().setText(std::move(store));
}

void QMultiLineEdit::setText(const QString &text)
{
    if (!document().requestChange())
        return;
    TextStore::Builder builder(layoutRule());
    builder.append(text);
    setText(builder.finish());
}

void QMultiLineEdit::clear()
{
    setText(QString());
}

void QMultiLineEdit::insert(const QString &text)
{
    laidOut().edits.insert(text, TextEdits::Joining::Never);
}

void QMultiLineEdit::insert(const TextPiece &text)
{
    laidOut().edits.insert(text);
}

void QMultiLineEdit::setLongInserter(std::function<bool(const BroughtText &brought)> inserter)
{
    d->clipboard.setLongInserter(std::move(inserter));
}

void QMultiLineEdit::replace(TextRange range, const QString &text)
{
    laidOut().edits.replaceRange(range, text);
}

void QMultiLineEdit::cut()
{
    if (document().requestChange())
        laidOut().clipboard.cut();
}

void QMultiLineEdit::copy()
{
    laidOut().clipboard.copy();
}

void QMultiLineEdit::paste()
{
    laidOut().clipboard.paste();
}

void QMultiLineEdit::undo()
{
    commitPreedit();
    if (history().canUndo())
        laidOut().edits.undo();
}

void QMultiLineEdit::redo()
{
    commitPreedit();
    if (history().canRedo())
        laidOut().edits.redo();
}

bool QMultiLineEdit::isUndoEnabled() const
{
    return history().isEnabled();
}

void QMultiLineEdit::setUndoEnabled(bool enabled)
{
    d->document.history().setEnabled(enabled);
    d->followers.tellAvailability();
}

int QMultiLineEdit::undoDepth() const
{
    return history().depth();
}

void QMultiLineEdit::setUndoDepth(int steps)
{
    d->document.history().setDepth(steps);
    d->followers.tellAvailability();
}

Availability &QMultiLineEdit::announced() const
{
    return d->followers.told();
}

bool QMultiLineEdit::edited() const
{
    return d->document.isEdited();
}

void QMultiLineEdit::setEdited(bool edited)
{
    d->document.setEdited(edited);
}

// The cursor and the selection.

void QMultiLineEdit::getCursorPosition(qint64 *row, qint64 *column) const
{
    const RowCol position = cursorPosition();
    *row = position.row.value();
    *column = position.column;
}

void QMultiLineEdit::getCursorPosition(int *row, int *column) const
{
    const RowCol position = cursorPosition();
    *row = clampedInt(position.row);
    *column = clampedInt(position.column);
}

void QMultiLineEdit::setCursorPosition(qint64 row, qint64 column, bool mark)
{
    setCursorPosition({ RowIndex(row), column }, mark);
}

RowCol QMultiLineEdit::cursorPosition() const
{
    return laidOut().cursor.position();
}

void QMultiLineEdit::setCursorPosition(RowCol position, bool mark)
{
    Parts &parts = laidOut();
    parts.moves.moveTo(parts.cursor.nearest(position), selecting(mark));
}

Offset QMultiLineEdit::cursorOffset() const
{
    return d->cursor.place().offset;
}

CursorPlace QMultiLineEdit::cursorPlace() const
{
    return d->cursor.place();
}

void QMultiLineEdit::setCursorPlace(CursorPlace place)
{
    Q_ASSERT(place.offset >= Offset() && place.offset <= store().end());
    laidOut().moves.moveTo(place, Selecting::Drop);
}

void QMultiLineEdit::extendSelection(CursorPlace to)
{
    Q_ASSERT(to.offset >= Offset() && to.offset <= store().end());
    laidOut().moves.moveTo(to, Selecting::Extend);
}

Offset QMultiLineEdit::anchorOffset() const
{
    return d->cursor.anchor().offset;
}

CursorPlace QMultiLineEdit::anchorPlace() const
{
    return d->cursor.anchor();
}

CursorPlace QMultiLineEdit::selectionBegin() const
{
    return d->cursor.selectionBegin();
}

CursorPlace QMultiLineEdit::selectionEnd() const
{
    return d->cursor.selectionEnd();
}

bool QMultiLineEdit::hasMarkedText() const
{
    return d->cursor.hasSelection();
}

QString QMultiLineEdit::markedText() const
{
    return d->document.store().text(d->cursor.selection());
}

bool QMultiLineEdit::getMarkedRegion(qint64 *row1, qint64 *column1, qint64 *row2, qint64 *column2) const
{
    if (!hasMarkedText())
        return false;
    const RowCol first = store().rowColAt(selectionBegin());
    const RowCol last = store().rowColAt(selectionEnd());
    *row1 = first.row.value();
    *column1 = first.column;
    *row2 = last.row.value();
    *column2 = last.column;
    return true;
}

void QMultiLineEdit::select(CursorPlace from, CursorPlace to)
{
    laidOut().moves.select(from, to);
}

void QMultiLineEdit::selectAll()
{
    laidOut().moves.selectAll();
}

void QMultiLineEdit::deselect()
{
    laidOut().moves.moveTo(cursorPlace(), Selecting::Drop);
}

bool QMultiLineEdit::isOverwriteMode() const
{
    return d->cursor.overwrites();
}

void QMultiLineEdit::setOverwriteMode(bool on)
{
    Parts &parts = laidOut();
    parts.cursor.setOverwrites(on);
    parts.blink.restart();
    parts.updates.updateCursorRow();
}

// How rows are set.

QMultiLineEdit::WordWrap QMultiLineEdit::wordWrap() const
{
    return d->format.wraps() ? FixedPixelWidth : NoWrap;
}

void QMultiLineEdit::setWordWrap(WordWrap mode)
{
    d->format.setWraps(mode != NoWrap);
    d->layout.noteSetting();
}

void QMultiLineEdit::setWrapColumnOrWidth(int value)
{
    d->format.setWrapWidth(qMax(1, value));
    d->layout.noteSetting();
}

int QMultiLineEdit::wrapColumnOrWidth() const
{
    return d->format.wrapWidth();
}

/// There is but one.
void QMultiLineEdit::setWrapPolicy(WrapPolicy policy)
{
    Q_UNUSED(policy)
}

QMultiLineEdit::WrapPolicy QMultiLineEdit::wrapPolicy() const
{
    return Anywhere;
}

void QMultiLineEdit::setHMargin(int pixels)
{
    d->format.setMargin(qMax(0, pixels));
    d->layout.noteSetting();
}

int QMultiLineEdit::hMargin() const
{
    return d->format.margin();
}

void QMultiLineEdit::setDefaultTabStop(int characters)
{
    RowFormat::setDefaultTabStop(characters);
    for (const QMultiLineEdit *const edit : std::as_const(instances()))
        edit->d->layout.noteSetting();
}

int QMultiLineEdit::defaultTabStop()
{
    return RowFormat::defaultTabStop();
}

LayoutRule QMultiLineEdit::layoutRule() const
{
    return laidOut().layout.rule();
}

ViewLayout &QMultiLineEdit::viewLayout() const
{
    return d->layout;
}

std::shared_ptr<const FontMeasure> QMultiLineEdit::fontMeasure() const
{
    return laidOut().format.sharedMeasure();
}

// The view.

qint64 QMultiLineEdit::xOffset() const
{
    return laidOut().view.left();
}

qint64 QMultiLineEdit::yOffset() const
{
    return topRow().value() * cellHeight();
}

void QMultiLineEdit::setXOffset(qint64 pixels)
{
    laidOut().scroller.setLeft(pixels);
}

void QMultiLineEdit::setYOffset(qint64 pixels)
{
    setTopRow(RowIndex(pixels / cellHeight()));
}

RowIndex QMultiLineEdit::topRow() const
{
    return laidOut().view.top();
}

void QMultiLineEdit::setTopRow(RowIndex row)
{
    laidOut().scroller.setTop(row);
}

void QMultiLineEdit::showPlace(CursorPlace place)
{
    laidOut().scroller.showPlace(store().rowColAt(place));
}

qreal QMultiLineEdit::rowHeight() const
{
    return laidOut().view.rowHeight();
}

int QMultiLineEdit::cellHeight() const
{
    return qMax(1, qRound(rowHeight()));
}

qint64 QMultiLineEdit::cellWidth() const
{
    return laidOut().view.cellWidth();
}

QRectF QMultiLineEdit::cellRect(RowIndex row) const
{
    return laidOut().view.cellRect(row);
}

QRect QMultiLineEdit::cursorRect() const
{
    return laidOut().view.cursorBox().toAlignedRect();
}

QRect QMultiLineEdit::characterRect(Offset offset) const
{
    return laidOut().view.characterBox(offset).toAlignedRect();
}

Offset QMultiLineEdit::offsetAt(const QPoint &point) const
{
    return laidOut().view.placeAt(point).offset;
}

void QMultiLineEdit::updateRow(RowIndex row)
{
    laidOut().updates.updateRow(row);
}

void QMultiLineEdit::updateView()
{
    d->updates.updateAll();
}

// Input methods.

const Preedit &QMultiLineEdit::preedit() const
{
    return d->preedit;
}

bool QMultiLineEdit::isComposing() const
{
    return d->composer.isComposing();
}

void QMultiLineEdit::commitPreedit()
{
    d->composer.commit();
}

QVariant QMultiLineEdit::inputMethodQuery(Qt::InputMethodQuery query) const
{
    return inputMethodQuery(query, QVariant());
}

/// Rectangles are the viewport's; the input method counts from the widget's corner.
QVariant QMultiLineEdit::inputMethodQuery(Qt::InputMethodQuery query, const QVariant &argument) const
{
    const QVariant answer = laidOut().composer.answer(query, argument);
    if (answer.typeId() == QMetaType::QRectF)
        return answer.toRectF().translated(viewport()->pos());
    return answer.isValid() ? answer : QAbstractScrollArea::inputMethodQuery(query);
}

void QMultiLineEdit::inputMethodEvent(QInputMethodEvent *event)
{
    event->setAccepted(viewLaidOut().composer.compose(*event));
}
