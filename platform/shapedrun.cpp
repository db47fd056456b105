#include "platform/shapedrun.h"

#include <QTextBoundaryFinder>
#include <QTextLayout>

#include <algorithm>

namespace {

constexpr qreal widestLine = 1 << 24;

std::vector<qsizetype> cursorStops(const QString &text)
{
    std::vector<qsizetype> stops;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (qsizetype at = 0; at >= 0; at = finder.toNextBoundary())
        stops.push_back(at);
    return stops;
}

} // namespace

ShapedRun::ShapedRun(const QString &text, const QFont &deviceFont)
    : m_places(std::size_t(text.size()) + 1)
{
    QTextLayout layout(text, deviceFont);
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
    placeCharacters(line, cursorStops(text));
}

void ShapedRun::placeCharacters(const QTextLine &line, const std::vector<qsizetype> &stops)
{
    const auto edge = [&line](qsizetype place, QTextLine::Edge which) {
        int cursor = int(place);
        return qRound(line.cursorToX(&cursor, which));
    };
    Place before = { .right = 0, .isReversed = false };
    for (std::size_t i = 0; i + 1 < stops.size(); ++i) {
        const int leading = edge(stops[i], QTextLine::Leading);
        const int trailing = edge(stops[i], QTextLine::Trailing);
        Place place = { .left = qMin(leading, trailing), .right = qMax(leading, trailing) };
        place.isReversed = trailing < leading;
        // Where the direction changes, the cursor keeps to the edge of the character that is read in the
        // outer direction: so each stop has an edge of its own.
        const bool entersNumber = before.isReversed && !place.isReversed;
        place.cursor = entersNumber ? before.left : leading;
        if (i == 0)
            place.cursor = 0;
        std::fill(m_places.begin() + stops[i], m_places.begin() + stops[i + 1], place);
        m_places[std::size_t(stops[i])].isStop = true;
        before = place;
    }
    m_places.back() = { .left = m_width, .right = m_width, .cursor = m_width, .isStop = true };
}
