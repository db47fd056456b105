#include "codec/textcodec.h"

#include "files/endorder.h"
#include "text/lonesurrogates.h"

namespace {

/// Hands decoded blocks on to the store that is being built.
class StoreSink : public TextCodec::TextSink {
public:
    explicit StoreSink(TextStore::Builder &&builder)
        : m_builder(std::move(builder))
    {
    }
    void latin1(QByteArrayView characters) override { m_builder.append(characters); }
    void utf16(QStringView text) override
    {
        m_undecodable += loneSurrogates(text);
        m_builder.append(text);
    }
    void spelling(QByteArrayView bytes) override { m_builder.spell(bytes); }
    TextStore finish() { return m_builder.finish(); }
    qint64 undecodable() const { return m_undecodable; }

private:
    qint64 m_undecodable = 0;
    TextStore::Builder m_builder;
};

/// The same, where the process waits for it.
class AwaitedSink : public StoreSink {
public:
    using StoreSink::StoreSink;
    void latin1(QByteArrayView characters) override
    {
        EndOrder::obeyIfGiven();
        StoreSink::latin1(characters);
    }
    void utf16(QStringView text) override
    {
        EndOrder::obeyIfGiven();
        StoreSink::utf16(text);
    }
};

} // namespace

TextCodec::~TextCodec() = default;

TextCodec::Decoding::~Decoding() = default;

TextCodec::Encoding::~Encoding() = default;

void TextCodec::TextSink::spelling(QByteArrayView bytes)
{
    Q_UNUSED(bytes)
}

TextStore TextCodec::decode(QByteArrayView bytes, const LayoutRule &rule, qint64 *undecodable) const
{
    AwaitedSink sink{ TextStore::Builder(rule) };
    decode(bytes, sink);
    if (undecodable)
        *undecodable = sink.undecodable();
    return sink.finish();
}

TextStore TextCodec::decode(
    QByteArrayView bytes, const LayoutCopy &layout, LeafMemory *memory, qint64 &undecodable) const
{
    StoreSink sink{ TextStore::Builder(layout, memory) };
    decode(bytes, sink);
    undecodable = sink.undecodable();
    return sink.finish();
}

std::unique_ptr<TextCodec::Decoding> TextCodec::decoding() const
{
    return nullptr;
}

qsizetype TextCodec::wholeCharacters(QByteArrayView bytes) const
{
    return bytes.size();
}

TextStore TextCodec::decode(Decoding &decoding, QByteArrayView bytes, Part part, const LayoutCopy &layout,
    LeafMemory *memory, qint64 &undecodable)
{
    StoreSink sink{ TextStore::Builder(layout, memory) };
    decoding.add(bytes, sink);
    if (part == Part::Last)
        decoding.finish(sink);
    undecodable = sink.undecodable();
    return sink.finish();
}

bool TextCodec::encode(const TextReader &next, const ByteSink &sink, AsRead asRead) const
{
    const std::unique_ptr<Encoding> encoding = this->encoding(sink, asRead);
    TextChunk chunk = next();
    for (; chunk.size() > 0; chunk = next()) {
        if (!encoding->add(chunk))
            return false;
    }
    return encoding->finish(chunk);
}

bool TextCodec::encode(const TextStore &store, const ByteSink &sink, AsRead asRead) const
{
    Offset offset;
    const auto next = [&store, &offset] {
        const TextChunk chunk = store.spelledChunkAt(offset);
        offset += chunk.size();
        return chunk;
    };
    return encode(next, sink, asRead);
}
