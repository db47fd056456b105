#include "text/leafchunk.h"

TextChunk chunkOf(const TextLeaf &leaf, Offset offset, Offset start)
{
    if (leaf.wide)
        return { offset, {}, leaf.utf16().sliced(offset - start) };
    return { offset, leaf.latin1().sliced(offset - start), {} };
}

TextChunk spelledChunkOf(const TextLeaf &leaf, Offset offset, Offset start)
{
    TextChunk chunk = chunkOf(leaf, offset, start);
    const qsizetype next = leaf.spellings ? leaf.spellings->firstFrom(offset - start) : 0;
    if (!leaf.spellings || next == leaf.spellings->count())
        return chunk;
    const qint64 before = leaf.spellings->place(next) - (offset - start);
    if (before == 0)
        chunk.spelling = leaf.spellings->bytes(next);
    chunk.truncate(qMax<qint64>(1, before));
    return chunk;
}

TextChunk endChunk(Offset offset, const std::optional<QByteArray> &spelling)
{
    TextChunk end;
    end.offset = offset;
    if (spelling)
        end.spelling = QByteArrayView(*spelling);
    return end;
}
