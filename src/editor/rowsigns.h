#pragma once

class FontMeasure;
class RowPainter;

/// The signs that stand for characters without a shape of their own, drawn over a row's text.

/// What stands behind the last character of a logical line.
enum class LineEndSign { None, Arrow, EndOfFile };

void drawLineEndSign(RowPainter &row, const FontMeasure &measure, LineEndSign sign);
/// Arrow heads at the start of the visible TABs.
void drawTabSigns(RowPainter &row);
/// Dotted boxes in the visible full-width spaces.
void drawFullWidthSpaceSigns(RowPainter &row, const FontMeasure &measure);
