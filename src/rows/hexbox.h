#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <vector>

/// The box that stands for a character no font shows: its code in small digits, or for an escaped byte
/// (a lone surrogate, see TextCodec) the byte's value. Drawn from dots, so that it is sharp at every size and
/// needs no font.
///
/// Lengths are device pixels.

/// Size of a character's box in a row of `height`.
QSize hexBoxSize(char32_t codePoint, int height);

/// Adds the box's strokes and dots to `rects`; `topLeft` is the row's top at the character's left edge.
void addHexBox(char32_t codePoint, QPoint topLeft, int height, std::vector<QRect> &rects);
