#pragma once

/// From now on the toolkit's complaint about each font that lacks the shaping rules of a script, written
/// while it looks for a font that has them, is not shown: a text in a script that no font here knows is no
/// fault of the program, and its characters are shown as boxes. All other messages go the way they went
/// before.
void hideFontMessages();
