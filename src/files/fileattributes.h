#pragma once

#include "files/filecalls.h"

/// Of a mode, what chmod() sets.
inline constexpr mode_t permissionBits = 07777;

/// Gives the open file `to` the owner, group, rights, access lists and extended attributes of the open file
/// `from`. False when it cannot have one of them; it may then have some of the others.
bool copyAttributes(const FileCalls &calls, int from, int to);

/// The rights a new file in the open folder `folder` (-1: not known) is to have: those of the folder's
/// default access list where it has one, else all that the process's file mask leaves.
mode_t modeOfNewFile(const FileCalls &calls, int folder);
