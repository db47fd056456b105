#include "rows/hexbox.h"

#include <QString>

#include <array>

namespace {

constexpr int digitWidth = 3;
constexpr int digitHeight = 5;
constexpr int border = 2; ///< the box's stroke and the space inside it
constexpr int heightOfTwoRows = 2 * digitHeight + 1 + 2 * border;

// Five rows of three dots each, the leftmost one the highest bit.
constexpr std::array<std::array<quint8, digitHeight>, 16> digits = { {
    { 7, 5, 5, 5, 7 },
    { 2, 6, 2, 2, 7 },
    { 7, 1, 7, 4, 7 },
    { 7, 1, 7, 1, 7 },
    { 5, 5, 7, 1, 1 },
    { 7, 4, 7, 1, 7 },
    { 7, 4, 7, 5, 7 },
    { 7, 1, 2, 2, 2 },
    { 7, 5, 7, 5, 7 },
    { 7, 5, 7, 1, 7 },
    { 7, 5, 7, 5, 5 },
    { 6, 5, 6, 5, 6 },
    { 7, 4, 4, 4, 7 },
    { 6, 5, 5, 5, 6 },
    { 7, 4, 7, 4, 7 },
    { 7, 4, 7, 4, 4 },
} };

/// A code as digits in one or two rows, in dots of `dot` pixels.
struct Shape {
    std::array<int, 6> digits{};
    int count = 2;
    int rows = 1;
    int dot = 1;

    Shape(char32_t codePoint, int height)
    {
        const bool isByte = codePoint >= 0xdc80 && codePoint <= 0xdfff;
        const char32_t code = isByte ? codePoint & 0xff : codePoint;
        while (count < int(digits.size()) && code >> (4 * count))
            count += 2;
        for (int i = 0; i < count; ++i)
            digits[std::size_t(i)] = int(code >> (4 * (count - 1 - i)) & 0xf);
        rows = count > 2 && height >= heightOfTwoRows ? 2 : 1;
        dot = qMax(1, height / (heightOfTwoRows + 1));
    }
    int perRow() const { return count / rows; }
    QSize size() const
    {
        return QSize(perRow() * (digitWidth + 1) - 1 + 2 * border, rows * (digitHeight + 1) - 1 + 2 * border)
            * dot;
    }
};

void addDigit(int digit, QPoint at, int dot, std::vector<QRect> &rects)
{
    for (int y = 0; y < digitHeight; ++y) {
        for (int x = 0; x < digitWidth; ++x) {
            if (digits[std::size_t(digit)][std::size_t(y)] & (4 >> x))
                rects.emplace_back(at.x() + x * dot, at.y() + y * dot, dot, dot);
        }
    }
}

} // namespace

QSize hexBoxSize(char32_t codePoint, int height)
{
    return Shape(codePoint, height).size();
}

void addHexBox(char32_t codePoint, QPoint topLeft, int height, std::vector<QRect> &rects)
{
    const Shape shape(codePoint, height);
    const QRect box(topLeft + QPoint(0, qMax(0, (height - shape.size().height()) / 2)), shape.size());
    const int dot = shape.dot;
    rects.emplace_back(box.left(), box.top(), box.width(), dot);
    rects.emplace_back(box.left(), box.bottom() + 1 - dot, box.width(), dot);
    rects.emplace_back(box.left(), box.top(), dot, box.height());
    rects.emplace_back(box.right() + 1 - dot, box.top(), dot, box.height());
    for (int i = 0; i < shape.count; ++i) {
        const QPoint cell(i % shape.perRow() * (digitWidth + 1), i / shape.perRow() * (digitHeight + 1));
        addDigit(
            shape.digits[std::size_t(i)], box.topLeft() + (QPoint(border, border) + cell) * dot, dot, rects);
    }
}
