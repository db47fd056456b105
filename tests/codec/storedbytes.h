#pragma once

#include "codec/textcodec.h"

/// What a store of these bytes, unedited, would be saved as.
inline QByteArray storedBytes(
    const TextCodec &codec, const TextStore &store, TextCodec::AsRead asRead = TextCodec::AsRead::Everything)
{
    QByteArray bytes;
    const auto collect = [&bytes](QByteArrayView block) {
        bytes += block;
        return true;
    };
    codec.encode(store, collect, asRead);
    return bytes;
}

/// How text is cut on its way into a store, and there.
struct TextCuts {
    NodeSizes sizes;
    qsizetype blockUnits = 65536;
};

class BuilderSink : public TextCodec::TextSink {
public:
    explicit BuilderSink(const TextCuts &cuts)
        : m_builder({}, cuts.sizes)
    {
        blockUnits = cuts.blockUnits;
    }
    void latin1(QByteArrayView characters) override { m_builder.append(characters); }
    void utf16(QStringView text) override { m_builder.append(text); }
    void spelling(QByteArrayView bytes) override { m_builder.spell(bytes); }
    TextStore finish() { return m_builder.finish(); }

private:
    TextStore::Builder m_builder;
};

inline TextStore storeOf(const TextCodec &codec, QByteArrayView bytes, const TextCuts &cuts)
{
    BuilderSink sink(cuts);
    codec.decode(bytes, sink);
    return sink.finish();
}

inline TextStore storeOf(const TextCodec &codec, QByteArrayView bytes)
{
    return codec.decode(bytes, LayoutRule{});
}

inline QByteArray savedUnedited(const TextCodec &codec, QByteArrayView bytes)
{
    return storedBytes(codec, storeOf(codec, bytes));
}
