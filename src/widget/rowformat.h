#pragma once

#include "rows/fontmeasure.h"
#include "text/textstore.h"

#include <memory>
#include <utility>

/// How the rows of one editor are set: font, wrap and margin. Lengths are logical pixels.
class RowFormat {
public:
    /// The widths and glyphs of the font; there is none before the first setFont(), as an editor gets its
    /// font after it is made.
    const FontMeasure &measure() const { return *m_measure; }
    std::shared_ptr<const FontMeasure> sharedMeasure() const { return m_measure; }
    /// The one before is to be held as long as a text is laid out by it.
    void setMeasure(std::shared_ptr<const FontMeasure> measure) { m_measure = std::move(measure); }
    void setFont(const QFont &font, qreal devicePixelRatio)
    {
        setMeasure(FontMeasure::forFont(font, devicePixelRatio));
    }

    bool wraps() const { return m_wraps; }
    void setWraps(bool on) { m_wraps = on; }
    /// Where rows end at the latest that are wrapped, from their start; >= 1.
    int wrapWidth() const { return m_wrapWidth; }
    void setWrapWidth(int pixels) { m_wrapWidth = pixels; }
    /// Between the view's edge and the text.
    int margin() const { return m_margin; }
    void setMargin(int pixels) { m_margin = pixels; }

    /// Tab width of all editors of the process, in characters; below 1 counts as 1.
    static int defaultTabStop();
    static void setDefaultTabStop(int characters);

    /// The rule that a text is to be laid out by. It points into the measure.
    LayoutRule layoutRule() const;

private:
    std::shared_ptr<const FontMeasure> m_measure;
    bool m_wraps = false;
    int m_wrapWidth = 80;
    int m_margin = 2;
};
