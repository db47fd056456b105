#pragma once

/// Returns to the system what the program has freed and the C library keeps for later: a large text is many
/// small blocks, which it would keep for good. Does nothing where the library cannot. Cost: a walk over the
/// free blocks, some milliseconds at most; and a quarter of a millisecond for each megabyte that is returned.
void giveBackFreeMemory();
