#include "widget/qmultilineedit_p.h"

#include "widget/viewscrollbar.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <QScrollEvent>
#include <QShowEvent>
#include <QStyleHints>
#include <QTabletEvent>
#include <QTouchEvent>

#include <limits>

namespace {

int defaultTabStopCharacters = 8;

QList<QMultiLineEdit *> &instances()
{
    static QList<QMultiLineEdit *> all;
    return all;
}

int toInt(qint64 value)
{
    return int(qMin<qint64>(value, std::numeric_limits<int>::max()));
}

} // namespace

QMultiLineEdit::Private::Private(QMultiLineEdit *edit)
    : q(edit)
    , verticalBar(new ViewScrollBar(Qt::Vertical, edit))
    , horizontalBar(new ViewScrollBar(Qt::Horizontal, edit))
    , announcer(edit)
{
}

QMultiLineEdit::Private::~Private()
{
    freezePrimary();
}

LayoutRule QMultiLineEdit::Private::layoutRule() const
{
    const qreal character = measure->xWidth();
    qreal limit = 0;
    switch (wrap) {
    case NoWrap:
        break;
    case WidgetWidth:
        limit = qMax(1, q->viewport()->width() - margin - 2);
        break;
    case FixedPixelWidth:
        limit = qMax(1, wrapValue);
        break;
    case FixedColumnWidth:
        limit = qMax(1, wrapValue) * character;
        break;
    }
    return { .advances = &measure->advances(),
        .tabStop = qMax<Subpixels>(1, measure->toSubpixels(defaultTabStopCharacters * character)),
        .limit = limit > 0 ? qMax<Subpixels>(1, measure->toSubpixels(limit)) : 0 };
}

void QMultiLineEdit::Private::layoutChanged()
{
    if (std::exchange(isLaidOut, false) && q->isVisible())
        QCoreApplication::postEvent(q, new QEvent(QEvent::LayoutRequest));
}

void QMultiLineEdit::Private::layOut()
{
    if (std::exchange(isLaidOut, true))
        return;
    // The old measure holds the widths that the text is laid out by until the new rule is set.
    const auto old = std::exchange(measure, FontMeasure::forFont(q->font(), q->devicePixelRatioF()));
    if (const LayoutRule rule = layoutRule(); rule != store.layoutRule())
        layOutBy(rule);
    else
        updateScrollBars();
    updateView();
    tellInputMethod();
}

void QMultiLineEdit::Private::layOutBy(const LayoutRule &rule)
{
    const qint64 topOffset = store.row(qMin(top, store.rowCount() - 1)).start;
    store.setLayoutRule(rule);
    top = store.rowColAt(topOffset).row;
    goalX.reset();
    updateScrollBars();
    if (isCursorRowVisible(q->viewport()->height()))
        makeCursorVisible(); // which may be beside the view now
}

void QMultiLineEdit::Private::nameScrollBars()
{
    q->verticalScrollBar()->setAccessibleName(QMultiLineEdit::tr("Vertical scroll bar"));
    q->horizontalScrollBar()->setAccessibleName(QMultiLineEdit::tr("Horizontal scroll bar"));
}

QMultiLineEdit::Parts::Parts(QMultiLineEdit *edit)
    : m_parts(std::make_unique<Private>(edit))
{
}

QMultiLineEdit::Parts::~Parts() = default;

QMultiLineEdit::QMultiLineEdit(QWidget *parent)
    : QAbstractScrollArea(parent)
    , d(this)
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
    setVerticalScrollBar(d.asTheyAre().verticalBar);
    setHorizontalScrollBar(d.asTheyAre().horizontalBar);
    d.asTheyAre().nameScrollBars();
    connect(d.asTheyAre().horizontalBar, &QAbstractSlider::actionTriggered, this,
        [this](int action) { d->stepSideways(action); });
    connect(QGuiApplication::styleHints(), &QStyleHints::cursorFlashTimeChanged, this,
        [this] { d->restartBlink(); });
}

QMultiLineEdit::~QMultiLineEdit()
{
    instances().removeOne(this);
}

QString QMultiLineEdit::text() const
{
    return d->store.text();
}

qint64 QMultiLineEdit::numLines() const
{
    return d->store.rowCount();
}

QString QMultiLineEdit::textLine(qint64 row) const
{
    if (row < 0 || row >= numLines())
        return {};
    const TextStore::Row found = d->store.row(row);
    const QString text = d->store.text(found.start, found.length);
    return text.isNull() ? QStringLiteral("") : text;
}

bool QMultiLineEdit::isEndOfParagraph(qint64 row) const
{
    return row >= 0 && row < numLines() && d->store.row(row).endsLine;
}

const TextStore &QMultiLineEdit::store() const
{
    return d->store;
}

const UndoHistory &QMultiLineEdit::history() const
{
    return d->history;
}

void QMultiLineEdit::getCursorPosition(qint64 *row, qint64 *column) const
{
    const RowCol position = cursorPosition();
    *row = position.row;
    *column = position.column;
}

void QMultiLineEdit::getCursorPosition(int *row, int *column) const
{
    const RowCol position = cursorPosition();
    *row = toInt(position.row);
    *column = toInt(position.column);
}

void QMultiLineEdit::setCursorPosition(qint64 row, qint64 column, bool mark)
{
    d->moveTo(d->clamped(row, column), mark ? Marking::Extend : Marking::Drop);
}

RowCol QMultiLineEdit::cursorPosition() const
{
    return d->rowColOf(d->cursor);
}

qint64 QMultiLineEdit::cursorOffset() const
{
    return d->cursor.offset;
}

CursorPlace QMultiLineEdit::cursorPlace() const
{
    return d->cursor;
}

void QMultiLineEdit::setCursorPlace(CursorPlace place, bool mark)
{
    Q_ASSERT(place.offset >= 0 && place.offset <= d->store.length());
    d->moveTo(place, mark ? Marking::Extend : Marking::Drop);
}

qint64 QMultiLineEdit::anchorOffset() const
{
    return d->anchor.offset;
}

CursorPlace QMultiLineEdit::anchorPlace() const
{
    return d->anchor;
}

bool QMultiLineEdit::hasMarkedText() const
{
    return d->hasMarked();
}

QString QMultiLineEdit::markedText() const
{
    const TextRange range = d->marked();
    return d->store.text(range.start, range.end - range.start);
}

bool QMultiLineEdit::getMarkedRegion(qint64 *row1, qint64 *column1, qint64 *row2, qint64 *column2) const
{
    if (!hasMarkedText())
        return false;
    const bool forwards = d->anchor.offset < d->cursor.offset;
    const RowCol first = d->rowColOf(forwards ? d->anchor : d->cursor);
    const RowCol last = d->rowColOf(forwards ? d->cursor : d->anchor);
    *row1 = first.row;
    *column1 = first.column;
    *row2 = last.row;
    *column2 = last.column;
    return true;
}

bool QMultiLineEdit::isUndoEnabled() const
{
    return d->undoEnabled;
}

void QMultiLineEdit::setUndoEnabled(bool enabled)
{
    if (enabled == d->undoEnabled)
        return;
    d->undoEnabled = enabled;
    d->history.clear();
    d->reportAvailability();
}

int QMultiLineEdit::undoDepth() const
{
    return d->history.depth();
}

void QMultiLineEdit::setUndoDepth(int steps)
{
    d->history.setDepth(qMax(1, steps));
    d->reportAvailability();
}

bool QMultiLineEdit::edited() const
{
    return d.asTheyAre().edited;
}

void QMultiLineEdit::setEdited(bool edited)
{
    d.asTheyAre().edited = edited;
}

bool QMultiLineEdit::isOverwriteMode() const
{
    return d->overwrite;
}

bool QMultiLineEdit::isReadOnly() const
{
    return d->readOnly;
}

void QMultiLineEdit::setReadOnly(bool readOnly)
{
    commitPreedit();
    d->readOnly = readOnly;
    setAttribute(Qt::WA_InputMethodEnabled, !readOnly);
    d->tellInputMethod();
}

QMultiLineEdit::WordWrap QMultiLineEdit::wordWrap() const
{
    return d.asTheyAre().wrap;
}

void QMultiLineEdit::setWordWrap(WordWrap mode)
{
    d.asTheyAre().wrap = mode;
    d.asTheyAre().layoutChanged();
}

void QMultiLineEdit::setWrapColumnOrWidth(int value)
{
    d.asTheyAre().wrapValue = qMax(1, value);
    d.asTheyAre().layoutChanged();
}

int QMultiLineEdit::wrapColumnOrWidth() const
{
    return d.asTheyAre().wrapValue;
}

void QMultiLineEdit::setWrapPolicy(WrapPolicy policy)
{
    d.asTheyAre().wrapPolicy = policy;
}

QMultiLineEdit::WrapPolicy QMultiLineEdit::wrapPolicy() const
{
    return d.asTheyAre().wrapPolicy;
}

void QMultiLineEdit::setHMargin(int pixels)
{
    d.asTheyAre().margin = qMax(0, pixels);
    d.asTheyAre().layoutChanged();
}

int QMultiLineEdit::hMargin() const
{
    return d.asTheyAre().margin;
}

void QMultiLineEdit::setDefaultTabStop(int characters)
{
    defaultTabStopCharacters = qMax(1, characters);
    for (QMultiLineEdit *const edit : std::as_const(instances()))
        edit->d.asTheyAre().layoutChanged();
}

int QMultiLineEdit::defaultTabStop()
{
    return defaultTabStopCharacters;
}

LayoutRule QMultiLineEdit::layoutRule() const
{
    return d->layoutRule();
}

std::shared_ptr<const FontMeasure> QMultiLineEdit::fontMeasure() const
{
    return d->measure;
}

void QMultiLineEdit::setText(TextStore &&store)
{
    d->startAnew(std::move(store));
}

void QMultiLineEdit::setText(const QString &text)
{
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
    d->insertText(text, UndoHistory::Joining::Never);
}

void QMultiLineEdit::insert(const TextPiece &text)
{
    d->insertPiece(text);
}

void QMultiLineEdit::setByteCode(const QByteArray &code)
{
    d->byteCode = code;
}

/// Where a place goes when `length` units are put in at `offset`.
static CursorPlace shifted(CursorPlace place, qint64 offset, qint64 length)
{
    return place.offset > offset ? CursorPlace{ place.offset + length } : place;
}

void QMultiLineEdit::insertAt(const QString &text, qint64 row, qint64 column, bool mark)
{
    Private::Operation operation(*d);
    const qint64 offset = d->clamped(row, column).offset;
    d->replace(offset, 0, text);
    d->cursor = mark ? CursorPlace{ offset + text.size() } : shifted(d->cursor, offset, text.size());
    d->anchor = mark ? CursorPlace{ offset } : shifted(d->anchor, offset, text.size());
}

void QMultiLineEdit::removeLine(qint64 row)
{
    if (row < 0 || row >= numLines())
        return;
    const TextStore::Row gone = d->store.row(row);
    const bool isLast = row + 1 == numLines();
    const bool followsLine = row > 0 && d->store.row(row - 1).endsLine;
    const qint64 from = isLast && followsLine ? gone.start - 1 : gone.start;
    const qint64 to = gone.start + gone.length + (gone.endsLine && !isLast ? 1 : 0);
    const auto kept = [from, to](CursorPlace place) {
        return CursorPlace{ place.offset <= from ? place.offset : qMax(from, place.offset - (to - from)) };
    };
    Private::Operation operation(*d);
    d->replace(from, to - from, {});
    d->cursor = kept(d->cursor);
    d->anchor = kept(d->anchor);
}

void QMultiLineEdit::selectAll()
{
    d->setCursorAndAnchor({ d->store.length() }, {});
    d->offerPrimary();
}

void QMultiLineEdit::deselect()
{
    d->moveTo(d->cursor, Marking::Drop);
}

void QMultiLineEdit::cut()
{
    if (d->readOnly || !hasMarkedText())
        return;
    d->copyMarked();
    d->eraseMarked();
}

void QMultiLineEdit::copy()
{
    d->copyMarked();
}

void QMultiLineEdit::undo()
{
    commitPreedit();
    if (!d->readOnly && d->history.canUndo())
        d->applyHistory(&UndoHistory::undo);
}

void QMultiLineEdit::redo()
{
    commitPreedit();
    if (!d->readOnly && d->history.canRedo())
        d->applyHistory(&UndoHistory::redo);
}

void QMultiLineEdit::setOverwriteMode(bool on)
{
    d->overwrite = on;
    d->restartBlink();
    d->updateRow(d->rowColOf(d->cursor).row);
}

bool QMultiLineEdit::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride && d->handles(*static_cast<QKeyEvent *>(event))) {
        event->accept();
        return true;
    }
    if (event->type() == QEvent::ScreenChangeInternal)
        d.asTheyAre().layoutChanged();
    if (event->type() == QEvent::LayoutRequest)
        d.asTheyAre().layOut();
    return QAbstractScrollArea::event(event);
}

bool QMultiLineEdit::viewportEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
        event->setAccepted(d->tablet(*static_cast<QTabletEvent *>(event)));
        return event->isAccepted();
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
        event->setAccepted(d->touch(*static_cast<QTouchEvent *>(event)));
        return event->isAccepted();
    case QEvent::ScrollPrepare:
        return d->scrollPrepare(*static_cast<QScrollPrepareEvent *>(event));
    case QEvent::Scroll:
        return d->scrollTo(*static_cast<QScrollEvent *>(event));
    default:
        return QAbstractScrollArea::viewportEvent(event);
    }
}

void QMultiLineEdit::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    updateView();
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        d.asTheyAre().layoutChanged();
    else if (event->type() == QEvent::LanguageChange)
        d.asTheyAre().nameScrollBars();
}

void QMultiLineEdit::showEvent(QShowEvent *event)
{
    QAbstractScrollArea::showEvent(event);
    // It may be another screen.
    d.asTheyAre().layoutChanged();
    d.asTheyAre().layOut();
}
