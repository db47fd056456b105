#pragma once

#include <QString>

/// Text that enters a document from outside, fit for it. Line ends (CR+LF, CR) become LF.

/// Without U+0000, and with U+FFFD for each lone surrogate, so that none is taken for an escaped byte. Shares
/// `text` when it has neither U+0000 nor surrogates.
QString cleanInput(const QString &text);
/// Pasted or dropped text: without NUL, and with U+FFFD for lone surrogates.
QString pastedText(const QString &text);
/// Typed or composed text: as pasted text, but no control character other than LF and TAB.
QString typedText(const QString &text);
