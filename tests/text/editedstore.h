#pragma once

#include "text/textstore.h"

/// For tests in which threads read a text while this one edits it.

inline TextStore storeWith(const QString &text)
{
    TextStore store;
    store.replace({}, 0, text);
    return store;
}

/// Edits that are made while a job works: they copy, join and free the nodes that it reads. As much goes as
/// comes.
inline void editAllOver(TextStore &store, int round)
{
    const qint64 length = store.length();
    const TextPiece piece = store.piece(Offset(length / 3), 5000);
    store.insert(Offset(length / 2 + qint64{ round } * 7919 % (length / 2)), piece);
    store.replace(Offset(qint64{ round } * 104'729 % length), 3, u"edited");
    store.replace(Offset(length / 4), store.length() - length, u"");
}
