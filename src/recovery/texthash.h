#pragma once

#include "text/textsnapshot.h"

/// Says whether two texts are the same, with their spellings, however their stores keep them. What stood
/// behind the end is no part of it.
class TextHash {
public:
    /// Chunks in order, from the start of the text; one unit with its spelling, or none spelled.
    void add(const TextChunk &chunk);
    /// The same with a part of a text, of which the start was told before.
    void add(const TextSnapshot &text, TextRange range);
    quint64 result() const;

private:
    template <typename Unit> void add(const Unit *units, qint64 count);

    static constexpr qsizetype blockUnits = 2048;
    std::array<quint16, blockUnits> m_block{}; ///< little-endian
    qsizetype m_pending = 0;
    quint64 m_units = 0;
    quint64 m_spellings = 0;
};

/// Of the first `length` units of a store. O(length).
quint64 textHashOf(const TextStore &store, qint64 length);
