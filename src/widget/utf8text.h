#pragma once

#include "jobs/spread.h"

class QByteArray;
class TextPiece;

/// The bytes that QString::toUtf8() gives for a text, without the string. The threads of `spread` read its
/// leaves at the same time; the text is not changed meanwhile.
///
/// Memory: the bytes, and a few for each leaf. Throws std::bad_alloc.
QByteArray utf8Of(const TextPiece &text, const Spread &spread);
