#include "rows/lcfont.h"

#include <QStringList>

namespace {

constexpr int wholeSize = 10; // from here on every size is legible as it is

// What asking for less than wholeSize gives.
constexpr int stepSizes[wholeSize] = { 8, 8, 8, 8, 8, 9, 10, 10, 10, 10 };

QString family()
{
    return QStringLiteral("lcfont");
}

} // namespace

// The order is by legibility at 10 to 18 pixels, backslash and quotation marks that look like themselves, and
// half-width characters of exactly half the full width.
void registerLcFont()
{
    if (!QFont::substitutes(family()).isEmpty())
        return;
    const QStringList candidates = { QStringLiteral("VL Gothic"), QStringLiteral("Noto Sans Mono CJK JP"),
        QStringLiteral("IPAGothic"), QStringLiteral("TakaoGothic"), QStringLiteral("Sazanami Gothic"),
        QStringLiteral("WenQuanYi Zen Hei Mono"), QStringLiteral("monospace") };
    QFont::insertSubstitutions(family(), candidates);
}

QFont lcFont(int pointSize)
{
    registerLcFont();
    return { family(), pointSize < wholeSize ? stepSizes[qMax(pointSize, 0)] : pointSize };
}
