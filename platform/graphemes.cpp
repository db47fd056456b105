#include "platform/graphemes.h"

#include <QString>
#include <QTextBoundaryFinder>

namespace {

// What the boundary finder is shown in place of characters that it would join wrongly, of the same kind.
constexpr QChar control(1);
constexpr QChar letter(u'a');
constexpr QChar combiningMark(0x0301);
constexpr QChar spacingMark(0xa823);

/// Indic scripts, Thai, Tibetan, Myanmar, Khmer: the finder has rules of its own for them, which then cut the
/// surrogate pairs of emoji that follow them.
bool hasOwnRules(QChar unit)
{
    return (unit >= QChar(0x0900) && unit <= QChar(0x109f))
        || (unit >= QChar(0x1780) && unit <= QChar(0x17ff));
}

QChar standIn(QChar unit)
{
    constexpr QChar thaiAm(0x0e33);
    constexpr QChar laoAm(0x0eb3);
    switch (unit.category()) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
        return combiningMark;
    case QChar::Mark_SpacingCombining:
        return spacingMark;
    default:
        return unit == thaiAm || unit == laoAm ? spacingMark : letter;
    }
}

QString shownToFinder(QStringView text)
{
    QString result = text.toString();
    for (qsizetype at = 0; at < text.size(); ++at) {
        const bool isPair =
            text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
        if (isPair)
            ++at;
        else if (text[at].isSurrogate())
            result[at] = control;
        else if (hasOwnRules(text[at]))
            result[at] = standIn(text[at]);
    }
    return result;
}

} // namespace

std::vector<qsizetype> graphemeBoundaries(QStringView text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, shownToFinder(text));
    std::vector<qsizetype> boundaries;
    for (qsizetype at = 0; at >= 0; at = finder.toNextBoundary())
        boundaries.push_back(at);
    if (boundaries.back() != text.size())
        boundaries.push_back(text.size());
    return boundaries;
}
