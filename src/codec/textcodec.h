#pragma once

#include "text/layoutcopy.h"
#include "text/textstore.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <functional>
#include <memory>

/// Converts between bytes and text without losing a byte: encode(decode(b)) = b for any bytes b, by way of a
/// store (UTF-16 wants its byte-order mark). An edit between the two changes the bytes of what was edited
/// and, in JIS, the escape sequences beside it.
///
/// A byte that cannot be decoded travels as the lone surrogate U+DC80..U+DCFF and is written back as that
/// byte; JIS, where also 7-bit bytes can be undecodable, uses U+DD21..U+DF7E besides (see jiscodec.cpp). What
/// a target has no code for is written as "?", in UTF-8 as U+FFFD; a byte-order mark, at the start of a text,
/// as nothing. Bytes that the encoder would not write for their character, such as a second code, go beside
/// the text (see Spellings).
///
/// The bytes win: an escaped byte is written as it is also where an edit has put it before something that
/// makes a character of the two (81 before a typed "A" in Shift-JIS). The text read back then differs.
///
/// Instances live for the whole program and are not owned by the caller. No state is kept between calls.
class TextCodec {
public:
    /// What is written as it was read: when a text is written in another code than it was read in, nothing;
    /// its undecodable bytes become what stands for an unknown character.
    enum class AsRead { Nothing, UndecodableBytes, Everything };

    /// Receives decoded text in order; each call brings one kind of block. A surrogate pair is never cut.
    struct TextSink {
        virtual ~TextSink() = default;
        virtual void latin1(QByteArrayView characters) = 0; ///< each byte one character U+0000..U+00FF
        virtual void utf16(QStringView text) = 0;
        /// The bytes of the unit that comes next, where the encoder would write others; if none comes, what
        /// stands behind the text. Lost, unless a sink keeps it.
        virtual void spelling(QByteArrayView bytes);
        /// Units that a block holds, about.
        qsizetype blockUnits = 65536;
    };
    /// Gives the next chunk of a text, of any length and cut anywhere, or one unit with its spelling; an
    /// empty one at its end.
    using TextReader = std::function<TextChunk()>;
    /// Receives encoded bytes in order, in blocks of about 64 KiB; false stops the encoding.
    using ByteSink = std::function<bool(QByteArrayView bytes)>;

    virtual ~TextCodec();

    /// Decodes the whole of `bytes` into blocks of a bounded size: what loading uses. Long sequences of ASCII
    /// come as latin1() blocks that lie in `bytes` itself. UTF-16 loses its byte-order mark, UTF-8 keeps it
    /// as U+FEFF. Cost: O(n), at memory speed for ASCII.
    virtual void decode(QByteArrayView bytes, TextSink &sink) const = 0;
    /// The same, into a store; tells, if wanted, how many bytes could not be decoded.
    TextStore decode(QByteArrayView bytes, const LayoutRule &rule, qint64 *undecodable = nullptr) const;
    /// The same, into a part of a store: in any thread, see TextStore::Builder.
    TextStore decode(
        QByteArrayView bytes, const LayoutCopy &layout, LeafMemory *memory, qint64 &undecodable) const;
    /// Decodes a text in parts, one after the other, cut anywhere, in any thread: together they give what the
    /// whole text gives.
    class Decoding {
    public:
        virtual ~Decoding();
        /// What is not known before more bytes have come is told then.
        virtual void add(QByteArrayView bytes, TextSink &sink) = 0;
        /// The rest. `sink` is that of the last part.
        virtual void finish(TextSink &sink) = 0;
    };
    /// Null where each part can be decoded by itself, if it is cut between two characters.
    virtual std::unique_ptr<Decoding> decoding() const;
    /// Decodes a part into one of a store, as above.
    enum class Part { Inner, Last };
    static TextStore decode(Decoding &decoding, QByteArrayView bytes, Part part, const LayoutCopy &layout,
        LeafMemory *memory, qint64 &undecodable);
    /// How many bytes at the start of some that begin with a character make whole ones, whatever follows
    /// them. All of them where a text may be cut anywhere: in codes with a state, which are decoded in order,
    /// and where each byte is a character. Cost: O(n), less than decoding.
    virtual qsizetype wholeCharacters(QByteArrayView bytes) const;
    /// Encodes a text chunk by chunk, in any thread. False where the sink refused: nothing more may come.
    class Encoding {
    public:
        virtual ~Encoding();
        virtual bool add(const TextChunk &chunk) = 0;
        /// `end` is what a TextReader gives at the end of the text.
        virtual bool finish(const TextChunk &end) = 0;
    };
    virtual std::unique_ptr<Encoding> encoding(ByteSink sink, AsRead asRead) const = 0;
    /// Encodes the text that `next` gives; false when the sink refused.
    bool encode(const TextReader &next, const ByteSink &sink, AsRead asRead) const;
    /// Which of the chunk's units, at `from` or behind it, begins the first character that has no code and is
    /// written as another one; -1 for none. Whatever stands before and behind the chunk, and its spelling, do
    /// not matter: half a surrogate pair counts as one alone, a byte-order mark as any other character.
    virtual qint64 findWithoutCode(const TextChunk &chunk, qint64 from, AsRead asRead) const = 0;
    /// Encodes the whole text of a store, leaf by leaf; false when the sink refused.
    bool encode(const TextStore &store, const ByteSink &sink, AsRead asRead = AsRead::Everything) const;
};
