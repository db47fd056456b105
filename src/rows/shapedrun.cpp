#include "rows/shapedrun.h"

#include "text/graphemes.h"

#include <QTextLayout>

#include <algorithm>

namespace {

constexpr qreal widestLine = 1 << 24;

/// Characters that share their glyphs: one combined character, or all those of a ligature.
struct Cluster {
    qreal left = 0;
    bool isReversed = false;
};

Cluster clusterAt(const QTextLayout &layout, qsizetype at, qsizetype length, const Cluster &before)
{
    Cluster cluster = before;
    bool found = false;
    for (const QGlyphRun &run : layout.glyphRuns(int(at), int(length))) {
        const QList<QPointF> positions = run.positions();
        const QList<QPointF> advances = run.rawFont().advancesForGlyphIndexes(run.glyphIndexes());
        for (qsizetype i = 0; i < positions.size(); ++i) {
            // Combining marks stand anywhere around the character they belong to.
            if (advances[i].x() <= 0 || (found && positions[i].x() >= cluster.left))
                continue;
            cluster = { .left = positions[i].x(), .isReversed = run.isRightToLeft() };
            found = true;
        }
    }
    return cluster;
}

/// A letter with its combining marks as the one character that has them, where there is one: most fonts have
/// it, and few the marks.
QString composed(const QString &character)
{
    const QString one = character.normalized(QString::NormalizationForm_C);
    return one.size() < character.size() ? one : character;
}

/// A text as it is drawn, and where its characters are in it.
struct Drawn {
    QString text;
    std::vector<qsizetype> stops = { 0 };

    Drawn(const QString &typed, const std::vector<qsizetype> &typedStops)
    {
        for (std::size_t i = 1; i < typedStops.size(); ++i) {
            text += composed(typed.sliced(typedStops[i - 1], typedStops[i] - typedStops[i - 1]));
            stops.push_back(text.size());
        }
    }
};

} // namespace

ShapedRun::ShapedRun(const QString &text, const QFont &deviceFont)
    : m_places(std::size_t(text.size()) + 1)
{
    const std::vector<qsizetype> stops = graphemeBoundaries(text);
    const Drawn drawn(text, stops);
    QTextLayout layout(drawn.text, deviceFont);
    QTextOption option;
    option.setTextDirection(Qt::LeftToRight);
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(widestLine);
    line.setPosition(QPointF(0, -line.ascent()));
    layout.endLayout();

    m_glyphRuns = layout.glyphRuns();
    m_width = qMax(1, qRound(line.naturalTextWidth()));
    placeCharacters(layout, drawn.stops, stops);
    placeCursor(stops);
}

void ShapedRun::placeCharacters(
    const QTextLayout &layout, const std::vector<qsizetype> &drawnStops, const std::vector<qsizetype> &stops)
{
    const std::size_t count = stops.size() - 1;
    std::vector<Cluster> clusters(count);
    std::vector<int> edges = { m_width };
    Cluster before;
    for (std::size_t i = 0; i < count; ++i) {
        before = clusters[i] = clusterAt(layout, drawnStops[i], drawnStops[i + 1] - drawnStops[i], before);
        edges.push_back(qRound(before.left));
    }
    std::sort(edges.begin(), edges.end());
    for (std::size_t i = 0, next = 0; i < count; i = next) {
        while (next < count && clusters[next].left == clusters[i].left)
            ++next;
        const int left = qRound(clusters[i].left);
        const int width = *std::upper_bound(edges.begin(), edges.end() - 1, left) - left;
        const int sharers = int(next - i);
        for (int k = 0; k < sharers; ++k) {
            const int part = clusters[i].isReversed ? sharers - 1 - k : k;
            Place place = { .left = left + width * part / sharers,
                .right = left + width * (part + 1) / sharers };
            place.isReversed = clusters[i].isReversed;
            std::fill(m_places.begin() + stops[i + std::size_t(k)],
                m_places.begin() + stops[i + std::size_t(k) + 1], place);
        }
    }
}

void ShapedRun::placeCursor(const std::vector<qsizetype> &stops)
{
    Place before;
    for (const qsizetype stop : stops) {
        Place &place = m_places[std::size_t(stop)];
        // Where the direction changes, the cursor keeps to the edge of the character that is read in the
        // outer direction: so each stop has an edge of its own.
        const bool entersNumber = before.isReversed && !place.isReversed;
        place.cursor = entersNumber ? before.left : place.isReversed ? place.right : place.left;
        place.isStop = true;
        before = place;
    }
    m_places.front().cursor = 0;
    m_places.back() = { .left = m_width, .right = m_width, .cursor = m_width, .isStop = true };
}
