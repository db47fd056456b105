#pragma once

#include "codec/textcodec.h"
#include "text/textsnapshot.h"

/// Whether a range of a text, or what stands behind the text, has undecodable bytes or spellings.
bool hasBytes(const TextSnapshot &text, TextRange range);

/// The code that a text was read in: the one that its undecodable bytes and spellings are of.
class ReadCode {
public:
    explicit ReadCode(const TextCodec &codec);

    const TextCodec &codec() const { return *m_codec; }
    /// What is written as it was read when the text is written in a code.
    TextCodec::AsRead writtenAsReadIn(const TextCodec &codec) const;
    /// The text was written in a code. Bytes of another one stay what they are, so that it may be written in
    /// their own code again, but spellings are forgotten; a text that has neither is of the code written.
    /// `hasBytes` says whether it has; it does not matter where the code is that of codec().
    void setWritten(const TextCodec &codec, bool hasBytes);

private:
    const TextCodec *m_codec;
    bool m_keepsSpellings = true; ///< until the text was written in another code
};
