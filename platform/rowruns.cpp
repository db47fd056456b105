#include "platform/rowruns.h"

#include <algorithm>

namespace {

constexpr char16_t zeroWidthJoiner = 0x200d;

bool needsShaping(CharClass charClass)
{
    return charClass != CharClass::Plain && charClass != CharClass::Mark;
}

/// Classes unit by unit; empty when every character stands by itself.
std::vector<CharClass> unitClasses(QStringView text, const FontMeasure &measure)
{
    std::vector<CharClass> classes(std::size_t(text.size()), CharClass::Plain);
    bool shaping = false;
    for (qsizetype at = 0; at < text.size();) {
        const char32_t codePoint = codePointAt(text, at);
        const CharClass found = codePoint == u'\t' ? CharClass::Mark : measure.glyph(codePoint).charClass;
        shaping = shaping || needsShaping(found);
        for (int i = unitsOf(codePoint); i > 0; --i)
            classes[std::size_t(at++)] = found;
    }
    if (!shaping)
        classes.clear();
    return classes;
}

/// Makes what extends a character and what follows a joiner part of that character's stretch.
void joinClusters(QStringView text, const std::vector<CharClass> &classes, std::vector<RunKind> &kinds)
{
    qsizetype base = 0;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype next = at + unitsOf(codePointAt(text, at));
        const bool joined =
            at > 0 && text[at - 1] == zeroWidthJoiner && classes[std::size_t(at)] != CharClass::Mark;
        if (classes[std::size_t(at)] != CharClass::Extend && !joined) {
            base = at;
        } else {
            if (base < at && classes[std::size_t(base)] == CharClass::Mark)
                base = at;
            const RunKind kind =
                kinds[std::size_t(base)] == RunKind::Single ? RunKind::LeftToRight : kinds[std::size_t(base)];
            std::fill(kinds.begin() + base, kinds.begin() + next, kind);
        }
        at = next;
    }
}

/// Makes the blanks, punctuation and digits between right-to-left characters, and digits right after them,
/// part of their stretch.
void carryNeutrals(QStringView text, const std::vector<CharClass> &classes, std::vector<RunKind> &kinds)
{
    qsizetype end = -1; // of the right-to-left stretch that neutral characters may still continue
    for (qsizetype at = 0; at < text.size();) {
        const char32_t codePoint = codePointAt(text, at);
        const qsizetype next = at + unitsOf(codePoint);
        const bool isRtl = kinds[std::size_t(at)] == RunKind::RightToLeft;
        if (end >= 0 && (isRtl || QChar::isDigit(codePoint)))
            std::fill(kinds.begin() + end, kinds.begin() + next, RunKind::RightToLeft);
        if (isRtl || (end >= 0 && QChar::isDigit(codePoint)))
            end = next;
        else if (classes[std::size_t(at)] == CharClass::Mark || !isNeutral(codePoint))
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
    for (std::size_t i = 0; i < classes.size(); ++i) {
        if (classes[i] == CharClass::RightToLeft)
            kinds[i] = RunKind::RightToLeft;
        else if (classes[i] == CharClass::Complex)
            kinds[i] = RunKind::LeftToRight;
    }
    joinClusters(text, classes, kinds);
    carryNeutrals(text, classes, kinds);
    return kinds;
}
