#include "rows/rowruns.h"

#include "text/graphemes.h"

#include <algorithm>

namespace {

bool needsShaping(CharClass charClass)
{
    return charClass != CharClass::Plain && charClass != CharClass::HexBox;
}

/// Classes unit by unit; empty when every character stands by itself.
std::vector<CharClass> unitClasses(QStringView text, const FontMeasure &measure)
{
    std::vector<CharClass> classes(std::size_t(text.size()), CharClass::Plain);
    bool shaping = false;
    for (qsizetype at = 0; at < text.size();) {
        const char32_t codePoint = codePointAt(text, at);
        const CharClass found = codePoint == u'\t' ? CharClass::HexBox : measure.charClass(codePoint);
        shaping = shaping || needsShaping(found);
        for (int i = unitsOf(codePoint); i > 0; --i)
            classes[std::size_t(at++)] = found;
    }
    if (!shaping)
        classes.clear();
    return classes;
}

/// Makes every combined character, and every one whose form depends on its neighbours, part of a run.
void joinClusters(QStringView text, const std::vector<CharClass> &classes, std::vector<RunKind> &kinds)
{
    const std::vector<qsizetype> boundaries = graphemeBoundaries(text);
    for (std::size_t i = 0; i + 1 < boundaries.size(); ++i) {
        const auto begin = classes.begin() + boundaries[i];
        const auto end = classes.begin() + boundaries[i + 1];
        const bool isOne = boundaries[i + 1] - boundaries[i] == unitsOf(codePointAt(text, boundaries[i]));
        if (isOne && !needsShaping(*begin))
            continue;
        const bool isRtl = std::find(begin, end, CharClass::RightToLeft) != end;
        std::fill(kinds.begin() + boundaries[i], kinds.begin() + boundaries[i + 1],
            isRtl ? RunKind::RightToLeft : RunKind::LeftToRight);
    }
}

/// Makes the blanks, punctuation and digits between right-to-left characters, and digits right after them,
/// part of their run.
void carryNeutrals(QStringView text, const std::vector<CharClass> &classes, std::vector<RunKind> &kinds)
{
    qsizetype end = -1; // of the right-to-left run that neutral characters may still continue
    for (qsizetype at = 0; at < text.size();) {
        const char32_t codePoint = codePointAt(text, at);
        const qsizetype next = at + unitsOf(codePoint);
        const bool isRtl = kinds[std::size_t(at)] == RunKind::RightToLeft;
        if (end >= 0 && (isRtl || QChar::isDigit(codePoint)))
            std::fill(kinds.begin() + end, kinds.begin() + next, RunKind::RightToLeft);
        if (isRtl || (end >= 0 && QChar::isDigit(codePoint)))
            end = next;
        else if (classes[std::size_t(at)] == CharClass::HexBox || !isNeutral(codePoint))
            end = -1;
        at = next;
    }
}

} // namespace

std::vector<RunKind> runKinds(QStringView text, const FontMeasure &measure)
{
    std::vector<RunKind> kinds(std::size_t(text.size()), RunKind::Single);
    const std::vector<CharClass> classes = unitClasses(text, measure);
    if (classes.empty())
        return kinds;
    joinClusters(text, classes, kinds);
    carryNeutrals(text, classes, kinds);
    return kinds;
}
