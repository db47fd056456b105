#pragma once

#include "text/advancetable.h"

#include <QRandomGenerator>
#include <QStringList>

/// Characters that hurt: line ends, tabs, wide and flat ones, surrogates in pairs and alone.
inline QStringList hurtingCharacters()
{
    return { QStringLiteral("\n"), QStringLiteral("\t"), QStringLiteral("a"), QStringLiteral("b"),
        QStringLiteral("W"), QStringLiteral("\u0301"), QStringLiteral("\u00ff"), QStringLiteral("\u3042"),
        QStringLiteral("\U0001f600"), QString(QChar(0xdc80)), QString(QChar(0xd83d)) };
}

/// Characters that join others: marks with and without width, parts of emoji and flags, Hangul, a number
/// sign.
inline QStringList joiningCharacters()
{
    return { QStringLiteral("\u0301"), QStringLiteral("\ua823"), QStringLiteral("\u200d"),
        QStringLiteral("\ufe0f"), QStringLiteral("\u2764"), QStringLiteral("\U0001f3fd"),
        QStringLiteral("\U0001f1eb"), QStringLiteral("\U0001f1f7"), QStringLiteral("\u1100"),
        QStringLiteral("\u1161"), QStringLiteral("\u11a8"), QStringLiteral("\uac00"),
        QStringLiteral("\uac01"), QStringLiteral("\u0600") };
}

/// Letters whose case is a trap: the Kelvin sign, dotted and dotless i, sharp s, long s, final sigma, micro
/// and mu, full-width letters, letters outside the basic plane, halves of them.
inline QStringList trickyLetters()
{
    return { QStringLiteral("k"), QStringLiteral("K"), QStringLiteral("\u212a"), QStringLiteral("i"),
        QStringLiteral("I"), QStringLiteral("\u0130"), QStringLiteral("\u0131"), QStringLiteral("s"),
        QStringLiteral("\u017f"), QStringLiteral("\u00df"), QStringLiteral("\u1e9e"),
        QStringLiteral("\u03c3"), QStringLiteral("\u03c2"), QStringLiteral("\u03a3"),
        QStringLiteral("\u00b5"), QStringLiteral("\u03bc"), QStringLiteral("\u00ff"),
        QStringLiteral("\u0178"), QStringLiteral("\uff21"), QStringLiteral("\uff41"),
        QStringLiteral("\U00010400"), QStringLiteral("\U00010428"), QString(QChar(0xd801)),
        QString(QChar(0xdc00)), QString(QChar(0xdc28)), QStringLiteral("\u3042") };
}

/// W, Hiragana and pairs are two pixels wide, the combining mark is flat, a lone low surrogate three, a lone
/// high one one.
inline int hurtingWidth(char32_t codePoint)
{
    switch (codePoint) {
    case U'W':
    case U'\u3042':
    case U'\U0001f600':
        return 128;
    case U'\u0301':
    case U'\u200d':
    case U'\ufe0f':
        return 0;
    case 0xdc80:
        return 192;
    default:
        return 64;
    }
}

/// The same, but all of ASCII is one pixel wide as in a fixed-pitch font.
inline int fixedPitchWidth(char32_t codePoint)
{
    return codePoint == U'W' ? 64 : hurtingWidth(codePoint);
}

/// Random numbers and texts from one seed.
class RandomText {
public:
    explicit RandomText(quint32 seed, QStringList characters = hurtingCharacters())
        : m_random(seed)
        , m_characters(std::move(characters))
    {
    }
    /// 0..bound - 1.
    qint64 below(qint64 bound) { return m_random.bounded(bound); }
    bool chance(int oneIn) { return below(oneIn) == 0; }
    QString text(qint64 characters)
    {
        QString text;
        for (; characters > 0; --characters)
            text += m_characters.at(below(m_characters.size()));
        return text;
    }

private:
    QRandomGenerator m_random;
    QStringList m_characters;
};
