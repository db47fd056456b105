#pragma once

#include <QtGlobal>

/// Memory that the program has free or the system would still give.
///
/// What takes much of it asks before each of its steps and turns. So it fails there, where nothing is half
/// done, and leaves some to the window, which could not go on without any.
namespace MemoryLeft {

/// Whether there are so many bytes. In any thread. Cost: two calls to the system.
bool has(qint64 bytes);
/// Throws std::bad_alloc where there is less than a step or a turn may take.
void require();

/// Who is asked instead of the system, in a test; null: nobody.
using Answer = bool (*)(qint64 bytes);
void setAnswer(Answer answer);

} // namespace MemoryLeft
