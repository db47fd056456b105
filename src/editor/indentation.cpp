#include "editor/indentation.h"

#include "editor/indentedblock.h"

#include <QThread>

TextPiece indented(const TextStore &store, TextRange range, Indentation direction)
{
    IndentedBlock block(store, range, direction);
    while (!block.isWhole())
        block.makeNext(QThread::idealThreadCount(), spreadOverThreads);
    return block.take();
}
