#pragma once

#include "codec/textcodec.h"

/// The code that a text was read in: the one that its undecodable bytes and spellings are of.
class ReadCode {
public:
    explicit ReadCode(const TextCodec &codec);

    const TextCodec &codec() const { return *m_codec; }
    /// What is written as it was read when the text is written in a code.
    TextCodec::AsRead writtenAsReadIn(const TextCodec &codec) const;
    /// The text was written in a code. Bytes of another one stay what they are, so that it may be written in
    /// their own code again, but spellings are forgotten; a text that has neither is of the code written.
    void setWritten(const TextCodec &codec, const TextStore &store);

private:
    const TextCodec *m_codec;
    bool m_keepsSpellings = true; ///< until the text was written in another code
};
