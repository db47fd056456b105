// Decoding and encoding of 100 MB of mixed Japanese in each code, beside iconv(3) on the same text; and what
// happens to a file's bytes before decoding.
#include "codec/codecs.h"
#include "document/detection.h"
#include "document/lineends.h"

#include <benchmark/benchmark.h>

#include <iconv.h>

namespace {

struct Code {
    const char *name;
    const TextCodec &(*codec)();
    const char *system;
};
constexpr Code codes[] = {
    { "UTF8", utf8Codec, "UTF-8" },
    { "SJIS", shiftJisCodec, "CP932" },
    { "eucJP", eucCodec, "EUC-JP-MS" },
    { "JIS7", jisCodec, "ISO-2022-JP" },
    { "UTF-16LE", utf16LittleEndianCodec, "UTF-16" },
};

/// About 100 MB in UTF-8: prose, a log and a table, as documents have them.
const QString &mixedText()
{
    static const QString text =
        QStringLiteral("吾輩は猫である。名前はまだ無い。どこで生れたかとんと見当がつかぬ。\r\n"
                       "2003-04-05 12:34:56 [info] ファイル「報告書.txt」を開きました (size=12345)\r\n"
                       "項目\tvalue\t単価¥1,200\t数量 3\r\n"
                       "\tfor (int i = 0; i < count; ++i) // 行ごとに処理する\r\n")
            .replace(u'¥', u'￥')
            .repeated(330000);
    return text;
}

QByteArray encoded(const TextCodec &(*codec)())
{
    TextStore store;
    store.replace(Offset(0), 0, mixedText());
    QByteArray bytes;
    const auto collect = [&bytes](QByteArrayView block) {
        bytes += block;
        return true;
    };
    codec().encode(store, collect);
    return bytes;
}

constexpr qsizetype runLength = 2048; // as a store gives them

struct CountingSink : TextCodec::TextSink {
    qsizetype units = 0;
    void latin1(QByteArrayView characters) override { units += characters.size(); }
    void utf16(QStringView text) override { units += text.size(); }
};

void setBytes(benchmark::State &state, qsizetype bytes)
{
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * bytes);
}

void decode(benchmark::State &state, Code code)
{
    const QByteArray bytes = encoded(code.codec);
    for (auto _ : state) {
        CountingSink sink;
        code.codec().decode(bytes, sink);
        benchmark::DoNotOptimize(sink.units);
    }
    setBytes(state, bytes.size());
}

void encode(benchmark::State &state, Code code)
{
    const QStringView text = mixedText();
    qsizetype written = 0;
    for (auto _ : state) {
        written = 0;
        qsizetype at = 0;
        const auto next = [&at, text] {
            TextChunk chunk;
            chunk.utf16 = text.sliced(at, std::min(runLength, text.size() - at));
            at += chunk.utf16.size();
            return chunk;
        };
        const auto count = [&written](QByteArrayView block) {
            written += block.size();
            return true;
        };
        code.codec().encode(next, count, TextCodec::AsRead::Everything);
    }
    setBytes(state, written);
}

qsizetype convertBySystem(const char *to, const char *from, const char *bytes, qsizetype size)
{
    static char block[1 << 16];
    const iconv_t converter = iconv_open(to, from);
    char *in = const_cast<char *>(bytes);
    auto inLeft = static_cast<size_t>(size);
    qsizetype written = 0;
    while (inLeft > 0) {
        char *out = block;
        size_t outLeft = sizeof block;
        if (iconv(converter, &in, &inLeft, &out, &outLeft) == static_cast<size_t>(-1) && errno != E2BIG)
            break;
        written += out - block;
    }
    iconv_close(converter);
    return inLeft == 0 ? written : -1;
}

void systemDecode(benchmark::State &state, Code code)
{
    const QByteArray bytes = encoded(code.codec);
    for (auto _ : state) {
        if (convertBySystem("UTF-16LE", code.system, bytes.constData(), bytes.size()) < 0)
            state.SkipWithError("iconv failed");
    }
    setBytes(state, bytes.size());
}

void systemEncode(benchmark::State &state, Code code)
{
    const QString &text = mixedText();
    qsizetype written = 0;
    for (auto _ : state) {
        written = convertBySystem(
            code.system, "UTF-16LE", reinterpret_cast<const char *>(text.constData()), text.size() * 2);
        if (written < 0)
            state.SkipWithError("iconv failed");
    }
    setBytes(state, written);
}

void detect(benchmark::State &state, const TextCodec &(*codec)())
{
    const QByteArray bytes = encoded(codec);
    for (auto _ : state)
        benchmark::DoNotOptimize(detectCharCode(bytes, CharCode::ShiftJis));
    setBytes(state, bytes.size());
}

void detectAscii(benchmark::State &state)
{
    const QByteArray bytes =
        QByteArray("2003-04-05 12:34:56 [info] one line of a log of plain ASCII\n").repeated(1700000);
    for (auto _ : state)
        benchmark::DoNotOptimize(detectCharCode(bytes, CharCode::ShiftJis));
    setBytes(state, bytes.size());
}

void detectLineEnd(benchmark::State &state)
{
    const QByteArray bytes(100000000, 'a');
    for (auto _ : state)
        benchmark::DoNotOptimize(detectReturnCode(bytes, ReturnCode::Lf));
    setBytes(state, bytes.size());
}

void normalize(benchmark::State &state, ReturnCode returnCode)
{
    const QByteArray bytes = encoded(shiftJisCodec);
    for (auto _ : state) {
        state.PauseTiming();
        QByteArray copy(bytes.constData(), bytes.size());
        state.ResumeTiming();
        normalizeLineEnds(copy, returnCode);
    }
    setBytes(state, bytes.size());
}

using Body = void (*)(benchmark::State &, Code);

void addForEachCode(const char *name, Body body)
{
    for (const Code &code : codes) {
        const std::string fullName = std::string(name) + '/' + code.name;
        benchmark::RegisterBenchmark(fullName.c_str(), body, code)->Unit(benchmark::kMillisecond);
    }
}

const bool added = [] {
    addForEachCode("decode", decode);
    addForEachCode("iconvDecode", systemDecode);
    addForEachCode("encode", encode);
    addForEachCode("iconvEncode", systemEncode);
    return true;
}();

BENCHMARK_CAPTURE(detect, UTF8, utf8Codec)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(detect, SJIS, shiftJisCodec)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(detect, eucJP, eucCodec)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(detect, JIS7, jisCodec)->Unit(benchmark::kMillisecond);
BENCHMARK(detectAscii)->Unit(benchmark::kMillisecond);
BENCHMARK(detectLineEnd)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(normalize, CrLf, ReturnCode::CrLf)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(normalize, Cr, ReturnCode::Cr)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(normalize, Lf, ReturnCode::Lf)->Unit(benchmark::kMillisecond);

} // namespace
