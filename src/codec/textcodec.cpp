#include "codec/textcodec.h"

namespace {

struct StringSink : TextCodec::TextSink {
    QString text;
    void latin1(QByteArrayView characters) override { text += QLatin1StringView(characters); }
    void utf16(QStringView block) override { text += block; }
};

/// Hands decoded blocks on to the store that is being built.
class StoreSink : public TextCodec::TextSink {
public:
    explicit StoreSink(const LayoutRule &rule)
        : m_builder(rule)
    {
    }
    void latin1(QByteArrayView characters) override { m_builder.append(characters); }
    void utf16(QStringView text) override { m_builder.append(text); }
    void spelling(QByteArrayView bytes) override { m_builder.spell(bytes); }
    TextStore finish() { return m_builder.finish(); }

private:
    TextStore::Builder m_builder;
};

} // namespace

TextCodec::~TextCodec() = default;

void TextCodec::TextSink::spelling(QByteArrayView bytes)
{
    Q_UNUSED(bytes)
}

TextStore TextCodec::decode(QByteArrayView bytes, const LayoutRule &rule) const
{
    StoreSink sink(rule);
    decode(bytes, sink);
    return sink.finish();
}

bool TextCodec::encode(const TextStore &store, const ByteSink &sink, AsRead asRead) const
{
    qint64 offset = 0;
    const auto next = [&store, &offset] {
        const TextChunk chunk = store.spelledChunkAt(offset);
        offset += chunk.size();
        return chunk;
    };
    return encode(next, sink, asRead);
}

QString TextCodec::toUnicode(QByteArrayView bytes) const
{
    StringSink sink;
    decode(bytes, sink);
    return sink.text;
}

QByteArray TextCodec::fromUnicode(QStringView text) const
{
    QByteArray bytes;
    bool given = false;
    const auto next = [text, &given] {
        TextChunk chunk;
        if (!std::exchange(given, true))
            chunk.utf16 = text;
        return chunk;
    };
    const auto collect = [&bytes](QByteArrayView block) {
        bytes += block;
        return true;
    };
    encode(next, collect, AsRead::UndecodableBytes);
    return bytes;
}
