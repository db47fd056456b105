#pragma once

#include "files/sharedfd.h"

/// A start that returns to its shell when the documents it named have been closed: what EDITOR is to do.
///
/// The program goes on in a process of its own, in which it opens the documents or hands them over as ever.
/// Whoever has a document holds one end of a connection for it, and the first process waits at the other: so
/// it comes to know of every end, a crash too, with and without a message bus.
namespace WaitingStart {

/// Comes back in the new process, with what each of so many documents is to be given as
/// FileRequest::waiting; null when there can be none. The caller's process is 0 for its shell when all of
/// them have been closed, and 1 when the program ended before. To be called before there is a thread, or
/// anything that must not be there twice.
SharedFd begin(qsizetype documents);
/// A document was closed.
void tellClosed(const SharedFd &waiting);

} // namespace WaitingStart
