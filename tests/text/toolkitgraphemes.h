#pragma once

#include <QString>
#include <QTextBoundaryFinder>

#include <vector>

/// Where characters begin in a text and where it ends, as the toolkit finds them; for scripts it has no rules
/// of its own for. What it does wrong elsewhere is put right: a lone surrogate is a character by itself, and
/// flags are pairs also behind an emoji.
inline std::vector<qsizetype> toolkitGraphemes(const QString &text)
{
    const auto isPair = [&](qsizetype i) {
        return i >= 0 && i + 1 < text.size() && text[i].isHighSurrogate() && text[i + 1].isLowSurrogate();
    };
    const auto isFlagLetter = [&](qsizetype i) {
        if (!isPair(i))
            return false;
        const char32_t letter = QChar::surrogateToUcs4(text[i], text[i + 1]);
        return letter >= 0x1f1e6 && letter <= 0x1f1ff;
    };
    constexpr QChar control(1);
    QString shown = text;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isSurrogate() && !isPair(i) && !isPair(i - 1))
            shown[i] = control;
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, shown);
    std::vector<qsizetype> boundaries;
    for (qsizetype i = 0, letters = 0; i <= text.size(); ++i) {
        finder.setPosition(i);
        const bool isSecondUnit = isPair(i - 1);
        if (!isSecondUnit)
            letters = isFlagLetter(i) ? letters + 1 : 0;
        const bool isBoundary = letters > 1 ? letters % 2 == 1 : finder.isAtBoundary();
        if (!isSecondUnit && (i == text.size() || isBoundary))
            boundaries.push_back(i);
    }
    return boundaries;
}
