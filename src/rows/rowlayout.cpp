#include "rows/rowlayout.h"

#include "rows/displayedrow.h"
#include "rows/hexbox.h"
#include "rows/rowruns.h"
#include "rows/shapedrun.h"

#include <QGlyphRun>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr qint64 farthest = std::numeric_limits<qint64>::max();

/// Device pixels by which shaped text of one segment may cover the next one, and that one character takes.
constexpr qint64 farthestOverlap = 4096;
constexpr qint64 largestCharacter = 256;

const QColor hexBoxColor(160, 160, 160);

} // namespace

/// Columns first..last of a row, laid out. All lengths are device pixels from the row's start.
struct RowLayout::Private {
    struct Column {
        qint64 left = 0; ///< the edges of the character
        qint64 right = 0;
        qint64 cursor = 0;
        bool isStop = false;
    };
    struct Shaped {
        qint64 x = 0;
        std::shared_ptr<const ShapedRun> run;
    };
    struct FontGlyphs {
        int font = 0;
        QList<quint32> indexes;
        QList<QPointF> positions; ///< from `left`, on the baseline
    };
    struct HexBox {
        qint64 x = 0;
        char32_t codePoint = 0;
    };

    explicit Private(DisplayedRow displayed)
        : row(std::move(displayed))
    {
    }
    /// From the segment that holds `left` to the first character right of `right`.
    void layOutBetween(qint64 from, qint64 to);
    void layOutSegment(qint64 segment);
    /// Whether shaped text of the segment before reaches to `left`, which the store has behind it.
    bool isReachedFromBefore(qint64 segment) const;
    /// The segment that holds a column, all of it.
    Private around(qint64 column) const;
    bool holds(qint64 column) const { return column >= first && column <= last; }
    const Column &column(qint64 at) const { return columns[std::size_t(at - first)]; }

    void startSegment(qint64 segment);
    void addSingle(char32_t codePoint);
    void addTab();
    void addShaped(const QString &run);
    void addGlyph(const FontMeasure::Glyph &glyph, qint64 x);
    void end();

    qint64 nearestStop(qreal x) const;
    void draw(QPainter &painter, QPoint start, const QColor &color) const;

    qreal scale() const { return row.measure().devicePixelRatio(); }

    DisplayedRow row;
    qint64 left = 0;
    qint64 right = 0;
    qint64 first = 0;
    qint64 last = 0;
    qint64 pen = 0; ///< where the store has the next character
    qint64 shift = 0; ///< how far left of the pen it stands
    QString text;
    std::vector<Column> columns;
    std::vector<Shaped> shaped;
    std::vector<FontGlyphs> glyphs;
    std::vector<HexBox> hexBoxes;
};

void RowLayout::Private::layOutBetween(qint64 from, qint64 to)
{
    left = qMax<qint64>(0, from);
    right = qMax(left, to);
    qint64 segment = row.segmentOf(row.nominalColumn(left));
    if (isReachedFromBefore(segment))
        segment = row.segmentOf(row.segmentStart(segment) - 1);
    startSegment(segment);
    first = last;
    do {
        layOutSegment(segment++);
    } while (last < row.length() && pen - shift <= right);
    end();
}

bool RowLayout::Private::isReachedFromBefore(qint64 segment) const
{
    if (segment == 0 || left - row.nominalX(row.segmentStart(segment)) > farthestOverlap)
        return false;
    const Private before = around(row.segmentStart(segment) - 1);
    return std::any_of(before.columns.begin(), before.columns.end() - 1,
        [this](const Column &column) { return column.right > left - largestCharacter; });
}

RowLayout::Private RowLayout::Private::around(qint64 column) const
{
    Private result(row);
    const qint64 segment = row.segmentOf(column);
    result.startSegment(segment);
    result.first = result.last;
    result.left = result.right = farthest;
    result.layOutSegment(segment);
    result.end();
    return result;
}

void RowLayout::Private::startSegment(qint64 segment)
{
    last = row.segmentStart(segment);
    pen = row.nominalX(last);
    shift = segment > 0 && row.hasTabAtStart() ? 0 : row.bearing();
}

void RowLayout::Private::layOutSegment(qint64 segment)
{
    const qint64 end = row.segmentStart(segment + 1);
    const QString part = row.text(last, end - last);
    const std::vector<RunKind> kinds = runKinds(part, row.measure());
    qsizetype at = 0;
    while (at < part.size() && pen - shift <= right) {
        const auto kind = kinds.begin() + at;
        if (*kind != RunKind::Single) {
            const auto runEnd = std::find_if(kind, kinds.end(), [kind](RunKind k) { return k != *kind; });
            addShaped(part.mid(at, runEnd - kind));
            at += runEnd - kind;
        } else if (part[at] == u'\t') {
            addTab();
            ++at;
        } else {
            const char32_t codePoint = codePointAt(part, at);
            addSingle(codePoint);
            at += unitsOf(codePoint);
        }
    }
    text += QStringView(part).first(at);
    last += at;
    if (last == end && last < row.length())
        startSegment(segment + 1);
}

void RowLayout::Private::addSingle(char32_t codePoint)
{
    const qint64 x = pen - shift;
    const qint64 width = row.advance(codePoint);
    pen += width;
    columns.push_back({ .left = x, .right = x + width, .cursor = x, .isStop = true });
    if (QChar::requiresSurrogates(codePoint))
        columns.push_back({ .left = x, .right = x + width, .cursor = x, .isStop = false });
    if (x + width < left || x > right)
        return;
    const FontMeasure::Glyph &glyph = row.measure().glyph(codePoint);
    if (!glyph.isShown)
        hexBoxes.push_back({ .x = x, .codePoint = codePoint });
    else
        addGlyph(glyph, x);
}

void RowLayout::Private::addGlyph(const FontMeasure::Glyph &glyph, qint64 x)
{
    auto list =
        std::find_if(glyphs.begin(), glyphs.end(), [&](const FontGlyphs &g) { return g.font == glyph.font; });
    if (list == glyphs.end())
        list = glyphs.insert(glyphs.end(), FontGlyphs{ .font = glyph.font, .indexes = {}, .positions = {} });
    list->indexes.append(glyph.index);
    list->positions.append(QPointF(qreal(x - left + glyph.offset), 0));
}

void RowLayout::Private::addTab()
{
    const qint64 x = pen - shift;
    pen = row.afterTab(pen);
    if (row.hasTabAtStart())
        shift = 0;
    columns.push_back({ .left = x, .right = qMax(x, pen - shift), .cursor = x, .isStop = true });
}

void RowLayout::Private::addShaped(const QString &run)
{
    const qint64 x = pen - shift;
    const std::shared_ptr<const ShapedRun> made = row.measure().shaped(run);
    for (qsizetype at = 0; at < run.size(); ++at) {
        const ShapedRun::Place &place = made->place(at);
        columns.push_back({ .left = x + place.left,
            .right = x + place.right,
            .cursor = x + place.cursor,
            .isStop = place.isStop });
    }
    pen += made->width();
    if (x + made->width() >= left && x <= right)
        shaped.push_back({ .x = x, .run = made });
}

void RowLayout::Private::end()
{
    const qint64 x = pen - shift;
    columns.push_back({ .left = x, .right = x, .cursor = x, .isStop = true });
}

RowLayout::RowLayout(const TextStore &store, RowIndex row, const FontMeasure &measure, qreal left,
    qreal right, const InsertedText &inserted)
    : d(std::make_unique<Private>(DisplayedRow(store, row, measure, inserted)))
{
    d->layOutBetween(qint64(std::floor(left * d->scale())), qint64(std::ceil(right * d->scale())));
}

RowLayout::~RowLayout() = default;
RowLayout::RowLayout(RowLayout &&) noexcept = default;

RowIndex RowLayout::row() const
{
    return d->row.row();
}

qint64 RowLayout::length() const
{
    return d->row.length();
}

bool RowLayout::endsLine() const
{
    return d->row.endsLine();
}

qint64 RowLayout::firstColumn() const
{
    return d->first;
}

qint64 RowLayout::lastColumn() const
{
    return d->last;
}

char16_t RowLayout::at(qint64 column) const
{
    Q_ASSERT(column >= 0 && column < length());
    if (column >= d->first && column < d->last)
        return d->text[column - d->first].unicode();
    return d->row.text(column, 1)[0].unicode();
}

qreal RowLayout::x(qint64 column) const
{
    Q_ASSERT(column >= 0 && column <= length());
    const qint64 x = d->holds(column) ? d->column(column).cursor : d->around(column).column(column).cursor;
    return qreal(x) / d->scale();
}

qreal RowLayout::rightEdge() const
{
    const auto isLess = [](const auto &a, const auto &b) { return a.right < b.right; };
    return qreal(std::max_element(d->columns.begin(), d->columns.end(), isLess)->right) / d->scale();
}

bool RowLayout::isCursorStop(qint64 column) const
{
    Q_ASSERT(column >= 0 && column <= length());
    return d->holds(column) ? d->column(column).isStop : d->around(column).column(column).isStop;
}

qint64 RowLayout::cursorAt(qreal x) const
{
    const qreal deviceX = x * d->scale();
    const bool isBefore = deviceX < qreal(d->left) && d->first > 0;
    const bool isBehind = deviceX > qreal(d->right) && d->last < length();
    if (!isBefore && !isBehind)
        return d->nearestStop(deviceX);
    Private there(d->row);
    there.layOutBetween(qint64(std::floor(deviceX)), qint64(std::ceil(deviceX)));
    return there.nearestStop(deviceX);
}

qint64 RowLayout::Private::nearestStop(qreal x) const
{
    qint64 nearest = first;
    qreal distance = std::numeric_limits<qreal>::max();
    for (qint64 at = first; at <= last; ++at) {
        const qreal found = std::abs(qreal(column(at).cursor) - x);
        if (column(at).isStop && found < distance) {
            nearest = at;
            distance = found;
        }
    }
    return nearest;
}

std::vector<RowLayout::Span> RowLayout::spans(qint64 begin, qint64 end) const
{
    std::vector<std::pair<qint64, qint64>> found;
    const qint64 to = qMin(end, d->last);
    for (qint64 at = qMax(begin, d->first); at < to; ++at)
        found.emplace_back(d->column(at).left, d->column(at).right);
    std::sort(found.begin(), found.end());
    std::vector<Span> spans;
    qint64 reached = std::numeric_limits<qint64>::min();
    for (const auto &[left, right] : found) {
        if (left > reached)
            spans.push_back({ .left = qreal(left) / d->scale() });
        reached = qMax(reached, right);
        spans.back().right = qreal(reached) / d->scale();
    }
    return spans;
}

/// The middle of a cursor's bar is one pixel left of where it stands.
qreal shownCursorX(qreal x)
{
    return x - 1 < -cursorOverhang ? 1 : x;
}

void RowLayout::draw(QPainter &painter, QPointF origin, const QColor &color) const
{
    const QTransform toDevice = painter.deviceTransform();
    const QPointF rowStart = toDevice.map(origin);
    const QPoint start(int(qRound64(rowStart.x()) + d->left), qRound(rowStart.y()));
    painter.save();
    painter.setWorldTransform(toDevice.inverted(), true);
    d->draw(painter, start, color);
    painter.restore();
}

void RowLayout::Private::draw(QPainter &painter, QPoint start, const QColor &color) const
{
    const FontMeasure &measure = row.measure();
    const QPointF baseline = start + QPointF(0, measure.ascent() * scale());
    painter.setPen(color);
    for (const FontGlyphs &list : glyphs) {
        QGlyphRun run;
        run.setRawFont(measure.rawFont(list.font));
        run.setRawData(list.indexes.constData(), list.positions.constData(), int(list.indexes.size()));
        painter.drawGlyphRun(baseline, run);
    }
    for (const Shaped &part : shaped) {
        for (const QGlyphRun &run : part.run->glyphRuns())
            painter.drawGlyphRun(baseline + QPointF(qreal(part.x - left), 0), run);
    }
    std::vector<QRect> rects;
    const int height = qRound(measure.height() * scale());
    for (const HexBox &box : hexBoxes)
        addHexBox(box.codePoint, start + QPoint(int(box.x - left), 0), height, rects);
    painter.setPen(Qt::NoPen);
    painter.setBrush(hexBoxColor);
    painter.drawRects(rects.data(), int(rects.size()));
}
