#pragma once

#include "codec/blockcodec.h"

/// The codec of a decoder and an encoder in whose code every character stands for itself. Beside what
/// BlockDecoder wants of the decoder, it tells:
///
///     static int mostBytes(uchar first)    of a character that begins with this byte
///     int bytesAt(const uchar *in) const    of the character there; as many as it may have are there
template <typename Decoder, typename Encoder> class StatelessCodec : public BlockCodec<Decoder, Encoder> {
public:
    qsizetype wholeCharacters(QByteArrayView bytes) const override
    {
        const Decoder decoder;
        const auto *const begin = reinterpret_cast<const uchar *>(bytes.data());
        const uchar *const end = begin + bytes.size();
        const uchar *in = begin;
        while (in != end && end - in >= Decoder::mostBytes(*in))
            in += decoder.bytesAt(in);
        return in - begin;
    }
};
