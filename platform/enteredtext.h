#pragma once

#include <QString>

/// Text that enters a document from outside, fit for it. Line ends (CR+LF, CR) become LF.

/// Pasted or dropped text: without NUL, and with U+FFFD for lone surrogates.
QString pastedText(const QString &text);
/// Typed or composed text: as pasted text, but no control character other than LF and TAB.
QString typedText(const QString &text);
