#pragma once

#include <QString>

/// All keys of the window and of the text, as a table in Markdown with a row for each command, in the present
/// language. The window's are those of the key map, so none is missing or too many.
QString keysTable();
