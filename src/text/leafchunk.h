#pragma once

#include "text/textnode.h"

/// The chunk of a leaf, which begins at `start` in the whole text, from `offset` on.
TextChunk chunkOf(const TextLeaf &leaf, Offset offset, Offset start);
/// As far as it is free of spellings; or one unit with its spelling.
TextChunk spelledChunkOf(const TextLeaf &leaf, Offset offset, Offset start);
/// At the end of a text: what stood behind it.
TextChunk endChunk(Offset offset, const std::optional<QByteArray> &spelling);
