#pragma once

#include <QByteArray>

#include <memory>
#include <vector>

/// The bytes that some characters of a text were read from: those whose code would write others.
///
/// A code may have several sequences of bytes for one character, and ISO-2022-JP may switch its sets where it
/// need not. What is written for a character that was not edited is what was read, so the sequences that are
/// not the usual ones stand here, beside the text. Most texts have none.
///
/// Places count UTF-16 units from the start of the text and only ascend. Each spelling belongs to the one
/// unit at its place. Cost: places are found in O(log count()).
class Spellings {
public:
    bool isEmpty() const { return m_spots.empty(); }
    qsizetype count() const { return qsizetype(m_spots.size()); }
    qint64 place(qsizetype index) const { return m_spots[size_t(index)].place; }
    QByteArrayView bytes(qsizetype index) const;
    /// Index of the first one at `place` or behind it; count() if there is none.
    qsizetype firstFrom(qint64 place) const;

    /// Behind all others.
    void append(qint64 place, QByteArrayView bytes);
    /// Those of another text at `from` <= place < `to`, which move by `shift`; behind all others.
    void append(const Spellings &other, qint64 from, qint64 to, qint64 shift);
    /// Those at `from` <= place < `to`, counted from `from`.
    Spellings part(qint64 from, qint64 to) const;
    /// What is left when `removed` units at `offset` have given way to `inserted` others.
    Spellings edited(qint64 offset, qint64 removed, qint64 inserted) const;

private:
    struct Spot {
        qint64 place;
        qsizetype end; ///< of its bytes in m_bytes; they begin where those of the spot before end
    };
    std::vector<Spot> m_spots;
    QByteArray m_bytes;
};
