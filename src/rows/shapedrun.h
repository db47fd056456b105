#pragma once

#include <QGlyphRun>
#include <QString>

#include <vector>

class QTextLayout;

/// Text whose characters form each other, shaped by the toolkit on its own.
///
/// Lengths are device pixels from the run's left edge; places are UTF-16 units from its start. A run that is
/// read from right to left has its first place on the left edge and its last one on the right edge all the
/// same, as the text around it is read from left to right.
class ShapedRun {
public:
    ShapedRun(const QString &text, const QFont &deviceFont);

    int width() const { return m_width; }
    struct Place {
        int left = 0; ///< the edges of the character, the same ones for all its units
        int right = 0;
        int cursor = 0; ///< where the cursor stands before it; no two stops share one
        bool isReversed = false; ///< read from right to left
        bool isStop = false; ///< the cursor may stand there: not inside a combined character
    };
    /// Any place 0..length of the text.
    const Place &place(qsizetype at) const { return m_places[std::size_t(at)]; }
    /// Positions are relative to the left end of the baseline.
    const QList<QGlyphRun> &glyphRuns() const { return m_glyphRuns; }

private:
    void placeCharacters(const QTextLayout &layout, const std::vector<qsizetype> &drawnStops,
        const std::vector<qsizetype> &stops);
    void placeCursor(const std::vector<qsizetype> &stops);

    QList<QGlyphRun> m_glyphRuns;
    std::vector<Place> m_places;
    int m_width = 0;
};
