#pragma once

#include "text/textstore.h"

#include <initializer_list>
#include <vector>

/// A text as it was at one moment, which another thread may read while the store is edited on.
///
/// The nodes of a text count their references for one thread. So a snapshot is made and destroyed in the
/// store's thread, and whoever reads it counts nothing: what a snapshot holds is not changed meanwhile,
/// because whoever changes a shared node copies it first.
///
/// Cost: O(log n) to make; its memory is that of the leaves edited since.
class TextSnapshot {
public:
    TextSnapshot() = default;
    explicit TextSnapshot(const TextStore &store);
    /// Of a text that there was; with what stood behind it.
    TextSnapshot(TextPiece text, std::optional<QByteArray> endSpelling);

    qint64 length() const { return m_length; }
    Offset end() const { return Offset(m_length); }
    /// As those of TextStore; likewise the next.
    char16_t at(Offset offset) const;
    TextChunk chunkAt(Offset offset) const;
    TextChunk chunkBefore(Offset end) const;
    TextChunk spelledChunkAt(Offset offset) const;
    const TextNode *root() const { return m_text.root(); }

private:
    TextPiece m_text;
    qint64 m_length = 0;
    std::optional<QByteArray> m_endSpelling;
};

/// What stood behind a text in its file, as TextSnapshot has it.
std::optional<QByteArray> endSpellingOf(const TextStore &store);

/// Where a part of a text is to be had.
struct TextPart {
    static constexpr int ownText = -1;

    int source = ownText; ///< which of other texts has it
    Offset offset; ///< in that text, or in its own
    qint64 length = 0;
    friend bool operator==(const TextPart &, const TextPart &) = default;
};

/// A part of a text.
struct TextExtract {
    const TextSnapshot &text;
    TextRange range;
};

/// What an extract consists of, in order: nodes that it shares with one of the sources are had there, the
/// rest is its own. Of a text that was edited that is what was edited, in leaves. Cost: the leaves of the
/// sources and of what is not shared.
std::vector<TextPart> partsOf(const TextExtract &extract, std::initializer_list<TextExtract> sources);
