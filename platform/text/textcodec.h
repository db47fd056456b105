#pragma once

#include "platform/text/textstore.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <functional>

/// Converts between bytes and text without losing a byte: decode(encode(decode(b))) = decode(b) for any bytes
/// b, and encode(decode(b)) = b unless b holds a second encoding of a character (or, in JIS, a redundant
/// escape).
///
/// A byte that cannot be decoded travels as the lone surrogate U+DC80..U+DCFF and is written back as that
/// byte. Instances live for the whole program and are not owned by the caller. No state is kept between calls
/// of decode() and encode(); long texts go block by block through a Decoder or an Encoder.
class TextCodec {
public:
    /// Receives decoded text in order; each call brings one kind of block.
    struct TextSink {
        virtual ~TextSink() = default;
        virtual void latin1(QByteArrayView characters) = 0; ///< each byte one character U+0000..U+00FF
        virtual void utf16(QStringView text) = 0;
    };
    /// Receives encoded bytes in order; false stops the encoding.
    using ByteSink = std::function<bool(QByteArrayView bytes)>;

    virtual ~TextCodec();

    /// "SJIS", "eucJP", "JIS7", "UTF8", "ISO-8859-1", "UTF-16LE"; null for a name not known.
    static const TextCodec *codecForName(QByteArrayView name);
    /// By the byte-order mark at the start: FF FE or FE FF give UTF-16, EF BB BF UTF-8, anything else
    /// Latin-1.
    static const TextCodec *codecForContent(QByteArrayView data);

    virtual QByteArrayView name() const = 0;

    /// Decodes the whole of `bytes` into blocks of a bounded size: what loading uses.
    virtual void decode(QByteArrayView bytes, TextSink &sink) const = 0;
    /// Encodes the whole text of a store, leaf by leaf; false when the sink refused.
    virtual bool encode(const TextStore &store, const ByteSink &sink) const = 0;

    QString toUnicode(QByteArrayView bytes) const;
    QByteArray fromUnicode(QStringView text) const;
};
