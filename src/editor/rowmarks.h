#pragma once

class FontMeasure;
class RowPainter;

/// The marks that stand for characters without a shape of their own, drawn over a row's text.

/// What stands behind the last character of a logical line.
enum class LineEndMark { None, Arrow, EndOfFile };

void drawLineEndMark(RowPainter &row, const FontMeasure &measure, LineEndMark mark);
/// Arrow heads at the start of the visible TABs.
void drawTabMarks(RowPainter &row);
/// Dotted boxes in the visible full-width spaces.
void drawFullWidthSpaceMarks(RowPainter &row, const FontMeasure &measure);
