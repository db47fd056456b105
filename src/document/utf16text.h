#pragma once

#include "codec/textcodec.h"
#include "document/readfindings.h"

#include <QByteArray>

#include <memory>

class TextDocument;

/// UTF-16 as text, beside the rules that go by bytes.

/// Whether a file is text in UTF-16: by its mark, or else by its start, where nearly all units must be common
/// characters in one order, and some of such bytes as no text in another code has. A few characters without
/// ASCII may not be recognised. Cost: a look at its start.
std::optional<Utf16Form> utf16FormOf(QByteArrayView bytes);
/// The same by the first 4096 bytes, or all, of a file of `size` bytes.
std::optional<Utf16Form> utf16FormOf(QByteArrayView start, qint64 size);
/// What reads and writes such a text; the encoder writes a mark if there was one.
const TextCodec &codecOf(Utf16Form form);
/// The same text in UTF-8, of one that comes in blocks, cut anywhere. A lone surrogate becomes the three
/// bytes that it would have, as it does when it is decoded (see the codec), and so is not lost.
class Utf8FromUtf16 {
public:
    explicit Utf8FromUtf16(Utf16Form form);
    /// What is known by now: half a character waits for its other half.
    QByteArray add(QByteArrayView bytes);
    /// What waits, when nothing follows.
    QByteArray finish();

private:
    std::unique_ptr<TextCodec::Decoding> m_decoding;
};
/// The same for a text that is there at once.
QByteArray utf8FromUtf16(QByteArrayView bytes, Utf16Form form);
/// In which form a document's file was read as such a text; nothing where it was not.
std::optional<Utf16Form> utf16FormOf(const TextDocument &document);
/// Whether it is saved in that form.
bool keepsUtf16(const TextDocument &document);
