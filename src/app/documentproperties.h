#pragma once

#include <QString>

class ctlEditer;
struct TextCounts;

/// What the properties box says of a document, in the present language: its file, its codes, and its size as
/// it would be written now, by the counts of its text.
QString propertiesOf(const ctlEditer &editor, const TextCounts &counts);
