#pragma once

#include <QString>

class ctlEditer;

/// What the properties box says of a document, in the present language: its file, its codes, and its size as
/// it would be written now. Walks the whole text once.
QString propertiesOf(const ctlEditer &editor);
