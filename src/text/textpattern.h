#pragma once

#include "text/textstore.h"

#include <QList>
#include <QString>

#include <array>
#include <optional>

/// A text to look for in others, made ready once. Several threads may search by it.
///
/// Texts are compared unit by unit. Without case two units are equal when the toolkit's simple case folding
/// makes the same of them, or of the characters they belong to where two surrogates make one: no character
/// counts as two, so "ß" is not "ss". The hits are those of QString::indexOf().
///
/// Cost: linear in the text that is searched and the pattern. Ordinary texts are searched by two units of
/// the pattern, many places at once; where too many places begin like the pattern, unit by unit.
class TextPattern {
public:
    /// Matches nothing; so does an empty text.
    TextPattern() = default;
    TextPattern(const QString &text, Qt::CaseSensitivity caseSensitivity);

    bool isFor(const QString &text, Qt::CaseSensitivity caseSensitivity) const
    {
        return m_caseSensitivity == caseSensitivity && m_text == text;
    }
    qint64 length() const { return m_folded.size(); }

    /// Offset of the first hit that begins in a range of a store or a snapshot; it may end behind that. The
    /// range may end anywhere.
    template <class Text> std::optional<Offset> indexIn(const Text &text, TextRange begins) const;
    /// The same for the last one.
    template <class Text> std::optional<Offset> lastIndexIn(const Text &text, TextRange begins) const;

private:
    template <class Text> friend class PatternSearch;

    /// The units that equal one of the pattern's, the first repeated until the array is full.
    template <typename Unit> struct Probe {
        /// By simple case folding at most so many units are equal: "k", "K" and the Kelvin sign, say, of
        /// which the last is not in Latin-1.
        static constexpr std::size_t most = sizeof(Unit) == 1 ? 2 : 4;
        std::array<Unit, most> values{};
        bool isPossible = false;
        bool has(Unit unit) const
        {
            bool found = false;
            for (const Unit value : values)
                found |= value == unit;
            return found;
        }
    };
    template <typename Unit> struct Probes {
        Probe<Unit> first;
        Probe<Unit> second; ///< `m_distance` units behind the first one
    };
    QList<char16_t> unitsEqualTo(qsizetype index) const;
    template <typename Unit> Probe<Unit> probeOf(qsizetype index) const;

    QString m_text;
    Qt::CaseSensitivity m_caseSensitivity = Qt::CaseSensitive;
    bool m_folds = false; ///< units are folded before they are compared
    QString m_folded;
    qsizetype m_distance = 0;
    Probes<uchar> m_latin1;
    Probes<char16_t> m_utf16;
};
