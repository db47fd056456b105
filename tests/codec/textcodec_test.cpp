#include "codec/textcodec.h"

#include "tests/codec/codecnamed.h"
#include "tests/codec/shorttexts.h"
#include "tests/codec/storedbytes.h"
#include "tests/testprogram.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct BlockRecorder : TextCodec::TextSink {
    QString text;
    QStringList kinds; ///< "latin1" or "utf16" for each block
    qsizetype longest = 0;

    void latin1(QByteArrayView characters) override
    {
        text += QLatin1StringView(characters);
        kinds << u"latin1"_s;
        longest = std::max(longest, characters.size());
    }
    void utf16(QStringView block) override
    {
        text += block;
        kinds << u"utf16"_s;
        longest = std::max(longest, block.size());
    }
};

QByteArray bytesOf(const char *hex)
{
    return QByteArray::fromHex(hex);
}

/// Gives a text in runs of `length` units, each one byte a unit where that is possible.
class RunReader {
public:
    RunReader(const QString &text, qsizetype length)
        : m_text(text)
        , m_length(length)
    {
    }

    TextChunk operator()()
    {
        TextChunk chunk;
        chunk.offset = Offset(m_at);
        const QStringView run = QStringView(m_text).sliced(m_at, std::min(m_length, m_text.size() - m_at));
        m_at += run.size();
        const bool isLatin1 =
            std::all_of(run.begin(), run.end(), [](QChar c) { return c.unicode() < 0x100; });
        m_latin1 = run.toLatin1();
        if (isLatin1)
            chunk.latin1 = m_latin1;
        else
            chunk.utf16 = run;
        return chunk;
    }

private:
    const QString &m_text;
    qsizetype m_length;
    qsizetype m_at = 0;
    QByteArray m_latin1;
};

QByteArray encodeInRuns(const TextCodec &codec, const QString &text, qsizetype runLength)
{
    QByteArray bytes;
    const auto collect = [&bytes](QByteArrayView block) {
        bytes += block;
        return true;
    };
    codec.encode(RunReader(text, runLength), collect, TextCodec::AsRead::UndecodableBytes);
    return bytes;
}

/// Some of everything a codec meets, ASCII runs of several lengths among it.
QByteArray mixedBytes(const TextCodec &codec)
{
    QString text =
        u"ab\n漢字かな①ｱｲｳ\tpadding of ASCII, longer than two words of eight bytes\r\n\U0001F600é"_s;
    text += u"x漢y字z"_s + QString(70, u'q') + u"終"_s;
    QByteArray bytes = encoded(codec, text);
    bytes += "\x81\x8F\xE3\x81\x1B$B30!\x1B(I1~\x1B(B\xFF\x80";
    return bytes + bytes;
}

void addCodecRows()
{
    QTest::addColumn<QByteArray>("codec");
    for (const NamedCodec &codec : namedCodecs)
        QTest::newRow(codec.name) << QByteArray(codec.name);
}

} // namespace

/// Each code byte for byte, and how text comes in blocks.
class TextCodecTest : public QObject {
    Q_OBJECT

private slots:
    void contentFindsCodec_data();
    void contentFindsCodec();
    void convertsBothWays_data();
    void convertsBothWays();
    void readsSecondCodes_data();
    void readsSecondCodes();
    void encodes_data();
    void encodes();
    void anyBlockSizeGivesTheSameText_data();
    void anyBlockSizeGivesTheSameText();
    void anyRunLengthGivesTheSameBytes_data();
    void anyRunLengthGivesTheSameBytes();
    void asciiIsWrittenAsItIs();
    void longTextsSurviveFullBuffers_data();
    void longTextsSurviveFullBuffers();
    void asciiComesAsOneByteBlocks();
    void shortAsciiRunsStayInTheirBlock();
    void blocksAreBounded_data();
    void blocksAreBounded();
    void encodesStore();
    void refusedBytesStopEncoding();
    void knowsWhatItCannotWrite_data();
    void knowsWhatItCannotWrite();
};

void TextCodecTest::contentFindsCodec_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("codec");
    QTest::newRow("empty") << QByteArray() << QByteArray("ISO-8859-1");
    QTest::newRow("ASCII") << QByteArray("abc") << QByteArray("ISO-8859-1");
    QTest::newRow("FF FE") << bytesOf("FFFE6100") << QByteArray("UTF-16LE");
    QTest::newRow("FF FE alone") << bytesOf("FFFE") << QByteArray("UTF-16LE");
    QTest::newRow("FE FF") << bytesOf("FEFF0061") << QByteArray("UTF-16BE");
    QTest::newRow("EF BB BF") << bytesOf("EFBBBF61") << QByteArray("UTF8");
    QTest::newRow("half a mark") << bytesOf("FF") << QByteArray("ISO-8859-1");
}

void TextCodecTest::contentFindsCodec()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, codec);
    QCOMPARE(&codecForContent(content), &codecNamed(codec));
}

void TextCodecTest::convertsBothWays_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    const auto add = [](const char *codec, const char *name, const char *hex, const QString &text) {
        QTest::addRow("%s %s", codec, name) << QByteArray(codec) << bytesOf(hex) << text;
    };
    for (const char *name : { "SJIS", "eucJP", "JIS7", "UTF8", "ISO-8859-1" }) {
        add(name, "empty", "", QString());
        add(name, "ASCII", "61 0A 5C 7E 09 7F", u"a\n\\~\t\x7F"_s);
        add(name, "NUL", "61 00 62", QString::fromLatin1("a\0b", 3));
    }

    add("SJIS", "hiragana", "82A0 82F1", u"あん"_s);
    add("SJIS", "katakana", "8340 8396", u"ァヶ"_s);
    add("SJIS", "half-width katakana", "A1 B1 DF", u"｡ｱﾟ"_s);
    add("SJIS", "first and last kanji of each level", "889F 9872 989F EAA4", u"亜腕弌熙"_s);
    add("SJIS", "second byte 5C", "835C 945C 955C", u"ソ能表"_s);
    add("SJIS", "full-width signs", "815F 8160 8161 817C 8191 8192 81CA 815C", u"＼～∥－￠￡￢―"_s);
    add("SJIS", "row 13", "8740 8754 8782 878A", u"①Ⅰ№㈱"_s);
    add("SJIS", "last rows", "FA40 FA55 FA5C FC4B", u"ⅰ￤纊黑"_s);
    add("SJIS", "user-defined", "F040 F9FC", u"\uE000\uE757"_s);
    add("SJIS", "no lead bytes", "80 A0 FD FE FF", u"\xDC80\xDCA0\xDCFD\xDCFE\xDCFF"_s);
    add("SJIS", "cut at the end", "82A0 82", u"あ\xDC82"_s);
    add("SJIS", "cut by a line end", "82 0A", u"\xDC82\n"_s);
    add("SJIS", "unassigned pair", "81AD", u"\xDC81ｭ"_s);
    add("SJIS", "unassigned pair with ASCII", "8541",
        u"\xDC85"
        u"A"_s);
    add("SJIS", "unassigned pair, then sound", "8582A0", u"\xDC85あ"_s);

    add("eucJP", "hiragana", "A4A2 A4F3", u"あん"_s);
    add("eucJP", "half-width katakana", "8EA1 8EB1 8EDF", u"｡ｱﾟ"_s);
    add("eucJP", "first and last kanji of each level", "B0A1 CFD3 D0A1 F4A6", u"亜腕弌熙"_s);
    add("eucJP", "row 13", "ADA1 ADB5", u"①Ⅰ"_s);
    add("eucJP", "JIS X 0212", "8FB0A1 8FEDE3", u"丂龥"_s);
    add("eucJP", "JIS X 0212 broken bar", "8FA2C3", u"¦"_s);
    add("eucJP", "row 89 beyond JIS X 0212", "FCE2", u"髙"_s);
    add("eucJP", "user-defined", "F5A1 F8FE FDA1 FEFE", u"\uE000\uE177\uE2F0\uE3AB"_s);
    add("eucJP", "user-defined of JIS X 0212", "8FF5A1 8FFEFE", u"\uE3AC\uE757"_s);
    add("eucJP", "no lead bytes", "80 90 A0 FF", u"\xDC80\xDC90\xDCA0\xDCFF"_s);
    add("eucJP", "cut at the end", "A4", u"\xDCA4"_s);
    add("eucJP", "shift cut at the end", "8E", u"\xDC8E"_s);
    add("eucJP", "JIS X 0212 cut at the end", "8FB0", u"\xDC8F\xDCB0"_s);
    add("eucJP", "JIS X 0212 cut by ASCII", "8FB0 41",
        u"\xDC8F\xDCB0"
        u"A"_s);
    add("eucJP", "no katakana", "8EE0 41",
        u"\xDC8E\xDCE0"
        u"A"_s);
    add("eucJP", "unassigned, then sound", "8FA1A1", u"\xDC8F\u3000"_s);

    add("JIS7", "kanji", "1B2442 3021 4F53 1B2842", u"亜腕"_s);
    add("JIS7", "half-width katakana", "1B2849 21 31 5F 1B2842", u"｡ｱﾟ"_s);
    add("JIS7", "JIS X 0212", "1B242844 3021 1B2842", u"丂"_s);
    add("JIS7", "ASCII at the line end", "1B2442 3021 1B2842 0A 1B2442 3021 1B2842", u"亜\n亜"_s);
    add("JIS7", "each set after another", "61 1B2442 3021 1B2849 31 1B242844 3021 1B2842 62", u"a亜ｱ丂b"_s);
    add("JIS7", "row 13", "1B2442 2D21 1B2842", u"①"_s);
    add("JIS7", "bytes above 7F", "61 82A0 FF", u"a\xDC82\xDCA0\xDCFF"_s);
    add("JIS7", "bytes above 7F among kanji", "1B2442 3021 FF 3021 1B2842", u"亜\xDCFF亜"_s);
    add("JIS7", "unassigned pair", "1B2442 2921 1B2842", u"\xDD29\xDD21"_s);
    add("JIS7", "unassigned pair of JIS X 0212", "1B242844 2121 1B2842", u"\xDE21\xDE21"_s);
    add("JIS7", "no half-width katakana", "1B2849 607E 1B2842", u"\xDF60\xDF7E"_s);
    add("JIS7", "half a kanji", "1B2442 3021 30 1B2842", u"亜\xDD30"_s);
    add("JIS7", "half a kanji, then a byte above 7F", "1B2442 30 80 3021 1B2842", u"\xDD30\xDC80亜"_s);
    add("JIS7", "half a kanji, redesignated", "1B2442 30 1B2442 3021 1B2842", u"\xDD30亜"_s);
    add("JIS7", "no escape sequence", "1B 2441 1B5B316D", u"\x1B$A\x1B[1m"_s);
    add("JIS7", "escape at the end", "61 1B", u"a\x1B"_s);
    add("JIS7", "sequence cut at the end", "61 1B24", u"a\x1B$"_s);
    add("JIS7", "escape before kanji", "1B 1B2442 3021 1B2842", u"\x1B亜"_s);
    add("JIS7", "shift characters", "0E 31 0F",
        u"\x0E"
        u"1\x0F"_s);

    add("UTF8", "two, three, four bytes", "C3A9 E6BCA2 F09F9880", u"é漢\U0001F600"_s);
    add("UTF8", "first and last of each length", "C280 DFBF E0A080 EFBFBF F0908080 F48FBFBF",
        u"\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF"_s);
    add("UTF8", "low half in the range of escapes", "F09F9280", u"\U0001F480"_s);
    add("UTF8", "byte-order mark", "EFBBBF 61",
        u"\uFEFF"
        u"a"_s);
    add("UTF8", "overlong", "C0AF E080AF F08080AF",
        u"\xDCC0\xDCAF\xDCE0\xDC80\xDCAF\xDCF0\xDC80\xDC80\xDCAF"_s);
    add("UTF8", "surrogates", "EDA080 EDB2A0 EDBFBF",
        u"\xDCED\xDCA0\xDC80\xDCED\xDCB2\xDCA0\xDCED\xDCBF\xDCBF"_s);
    add("UTF8", "beyond U+10FFFF", "F4908080 F5808080",
        u"\xDCF4\xDC90\xDC80\xDC80\xDCF5\xDC80\xDC80\xDC80"_s);
    add("UTF8", "stray continuation", "80 BF 61",
        u"\xDC80\xDCBF"
        u"a"_s);
    add("UTF8", "never used", "FE FF", u"\xDCFE\xDCFF"_s);
    add("UTF8", "cut in two bytes", "C3", u"\xDCC3"_s);
    add("UTF8", "cut in three bytes", "61 E6BC", u"a\xDCE6\xDCBC"_s);
    add("UTF8", "cut in four bytes", "F09F98", u"\xDCF0\xDC9F\xDC98"_s);
    add("UTF8", "cut by ASCII", "E6BC 7A", u"\xDCE6\xDCBCz"_s);
    add("UTF8", "cut by another character", "E6 E6BCA2", u"\xDCE6漢"_s);

    add("ISO-8859-1", "all kinds", "80 A0 FF", u"\u0080\u00A0\u00FF"_s);

    add("UTF-16LE", "mark only", "FFFE", QString());
    add("UTF-16LE", "text", "FFFE 6100 226F 0A00", u"a漢\n"_s);
    add("UTF-16LE", "pair", "FFFE 3DD8 80DC", u"\U0001F480"_s);
    add("UTF-16LE", "lone low half is no escape", "FFFE 81DC 6100",
        u"\xDCED\xDCB2\xDC81"
        u"a"_s);
    add("UTF-16LE", "lone high half", "FFFE 00D8 6100",
        u"\xDCED\xDCA0\xDC80"
        u"a"_s);
    add("UTF-16LE", "high half at the end", "FFFE 00D8", u"\xDCED\xDCA0\xDC80"_s);
    add("UTF-16LE", "halves the wrong way round", "FFFE 00DC 00D8",
        u"\xDCED\xDCB0\xDC80\xDCED\xDCA0\xDC80"_s);
    add("UTF-16LE", "odd last byte", "FFFE 6100 E9", u"a\xDCE9"_s);
    add("UTF-16LE", "lone half, then an odd byte", "FFFE 00D8 E9", u"\xDCED\xDCA0\xDC80\xDCE9"_s);
    add("UTF-16LE", "second mark", "FFFE FFFE", u"\uFEFF"_s);
    add("UTF-16BE", "text", "FEFF 0061 6F22", u"a漢"_s);
    add("UTF-16BE", "pair", "FEFF D83D DC80", u"\U0001F480"_s);
    add("UTF-16BE", "lone half", "FEFF DC80", u"\xDCED\xDCB2\xDC80"_s);
}

void TextCodecTest::convertsBothWays()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    const TextCodec *c = &codecNamed(codec);
    QCOMPARE(decoded(*c, bytes), text);
    QCOMPARE(encoded(*c, text).toHex(' '), bytes.toHex(' '));
}

void TextCodecTest::readsSecondCodes_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("usual");
    const auto add = [](const char *codec, const char *name, const char *hex, const QString &text,
                         const char *usual) {
        QTest::addRow("%s %s", codec, name) << QByteArray(codec) << bytesOf(hex) << text << bytesOf(usual);
    };
    add("SJIS", "row 13 for JIS X 0208", "8790 8791 8792 8795 8796 8797 879A 879B 879C", u"≒≡∫√⊥∠∵∩∪"_s,
        "81E0 81DF 81E7 81E3 81DB 81DA 81E6 81BF 81BE");
    add("SJIS", "last rows for row 13", "FA4A FA53 FA58 FA59 FA5A", u"ⅠⅩ㈱№℡"_s, "8754 875D 878A 8782 8784");
    add("SJIS", "last rows for JIS X 0208", "FA54 FA5B", u"￢∵"_s, "81CA 81E6");
    add("SJIS", "rows 89 to 92 for the last rows", "ED40 EEEC EEEF EEFA EEFC", u"纊黑ⅰ￤＂"_s,
        "FA5C FC4B FA40 FA55 FA57");
    add("SJIS", "row 92 for JIS X 0208", "EEF9", u"￢"_s, "81CA");
    add("eucJP", "row 13 for JIS X 0208", "ADF0", u"≒"_s, "A2E2");
    add("eucJP", "JIS X 0212 for row 89", "8FD4E3", u"纊"_s, "F9A1");
    add("eucJP", "JIS X 0212 for JIS X 0208", "8FA2B7", u"～"_s, "A1C1");
    add("eucJP", "rows 83 and 84 for row 13", "8FF3FD 8FF4AB", u"Ⅰ㈱"_s, "ADB5 ADEA");
    add("eucJP", "row 84 for row 92", "8FF4FB", u"髙"_s, "FCE2");
    add("JIS7", "JIS X 0212 for row 89", "1B242844 5463 1B2842", u"纊"_s, "1B2442 7921 1B2842");
    add("JIS7", "older kanji", "1B2440 3021 1B2842", u"亜"_s, "1B2442 3021 1B2842");
    add("JIS7", "four-byte designations", "1B242842 3021 1B242840 3021 1B2842", u"亜亜"_s,
        "1B2442 3021 3021 1B2842");
    add("JIS7", "Roman set", "1B284A 5C7E 1B2848 61", u"\\~a"_s, "5C7E61");
    add("JIS7", "not closed", "1B2442 3021", u"亜"_s, "1B2442 3021 1B2842");
    add("JIS7", "cut in the middle of a kanji", "1B2442 3021 30", u"亜\xDD30"_s, "1B2442 3021 30 1B2842");
    add("JIS7", "over the line end", "1B2442 3021 0A 3021 1B2842", u"亜\n亜"_s,
        "1B2442 3021 1B2842 0A 1B2442 3021 1B2842");
    add("JIS7", "blank among kanji", "1B2442 3021 20 3021 1B2842", u"亜 亜"_s,
        "1B2442 3021 1B2842 20 1B2442 3021 1B2842");
    add("JIS7", "redundant", "1B2842 61 1B2842", u"a"_s, "61");
    add("JIS7", "sequence once cut by another", "1B 1B2842 2442", u"\x1B$B"_s, "1B24 1B2842 42");
    add("JIS7", "longer sequence once cut", "1B2428 1B2842 44", u"\x1B$(D"_s, "1B2428 1B2842 44");
    add("UTF-16LE", "odd ASCII byte", "FFFE 61", u"a"_s, "FFFE 6100");
    add("UTF-16LE", "without a mark", "6100", u"a"_s, "FFFE 6100");
}

void TextCodecTest::readsSecondCodes()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QFETCH(QByteArray, usual);
    const TextCodec *c = &codecNamed(codec);
    QCOMPARE(decoded(*c, bytes), text);
    QCOMPARE(encoded(*c, text).toHex(' '), usual.toHex(' '));
    QCOMPARE(decoded(*c, usual), text);
    if (!bytes.startsWith("a"))
        QCOMPARE(savedUnedited(*c, bytes).toHex(' '), bytes.toHex(' '));
}

void TextCodecTest::encodes_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");
    const auto add = [](const char *codec, const char *name, const QString &text, const char *hex) {
        QTest::addRow("%s %s", codec, name) << QByteArray(codec) << text << bytesOf(hex);
    };
    const QString twins = u"\u301C\u2212\u2016\u2014\u00A2\u00A3\u00AC\u00A6"_s;
    add("SJIS", "twins", twins, "8160 817C 8161 815C 8191 8192 81CA FA55");
    add("eucJP", "twins", twins, "A1C1 A1DD A1C2 A1BD A1F1 A1F2 A2CC 8FA2C3");
    add("JIS7", "twins", twins, "1B2442 2141 215D 2142 213D 2171 2172 224C 1B242844 2243 1B2842");
    for (const char *name : { "SJIS", "eucJP", "JIS7", "ISO-8859-1" }) {
        add(name, "character without a code", u"a\u0E01b"_s, "61 3F 62");
        add(name, "pair without a code", u"a\U0001F480b"_s, "61 3F 62");
        add(name, "lone high half",
            u"a\xD800"
            u"b"_s,
            "61 3F 62");
        add(name, "high half at the end", u"a\xD800"_s, "61 3F");
        add(name, "two high halves", u"\xD83D\xD83D\xDC80"_s, "3F 3F");
        add(name, "low half that is no escape",
            u"a\xDFFF"
            u"b"_s,
            "61 3F 62");
        add(name, "escape after a high half that waits",
            u"\xD83D"
            u"a\xDC80"_s,
            "3F 61 80");
    }
    add("UTF8", "lone halves",
        u"a\xD800"
        u"b\xDFFF"_s,
        "61 EFBFBD 62 EFBFBD");
    add("UTF8", "high half at the end", u"\xD800"_s, "EFBFBD");
    add("UTF-16LE", "lone halves",
        u"\xD800"
        u"a\xDFFF"_s,
        "FFFE FDFF 6100 FDFF");
    add("UTF-16LE", "escapes that are no surrogate",
        u"\xDC80\xDC81\xDC82\xDC83"
        u"a"_s,
        "FFFE 80 81 82 83 6100");
    add("JIS7", "half a kanji goes behind a fresh designation", u"\xDD30\xDD21"_s,
        "1B2442 30 1B2442 21 1B2842");
    add("JIS7", "set escapes out of their range", u"\xDD20\xDD7F\xDE00\xDF30"_s, "3F3F3F3F");
    add("SJIS", "set escapes", u"\xDD30"_s, "3F");
    add("SJIS", "the bytes win over a typed character",
        u"\xDC81"
        u"A"_s,
        "81 41");
    add("SJIS", "the bytes win over a character behind them", u"\xDC81\u9E19"_s, "81 FC4A");
    add("eucJP", "the bytes win over a character behind them", u"\xDCA4\u3042"_s, "A4 A4A2");
    const QString yen = u"\u00A5a\\\u203E"_s;
    add("SJIS", "yen sign and overline", yen, "5C 61 5C 7E");
    add("eucJP", "yen sign and overline", yen, "5C 61 5C 7E");
    add("JIS7", "yen sign and overline", yen, "1B284A 5C 1B2842 61 5C 1B284A 7E 1B2842");
    for (const char *name : { "SJIS", "eucJP", "JIS7" }) {
        add(name, "byte-order mark", u"\uFEFFa"_s, "61");
        add(name, "byte-order mark alone", u"\uFEFF"_s, "");
        add(name, "no byte-order mark inside", u"a\uFEFF"_s, "61 3F");
    }
    add("UTF8", "byte-order mark", u"\uFEFFa"_s, "EFBBBF 61");
    // Characters of the rows 89 to 92: three bytes behind 8F would make other programs, and the next opening,
    // take the file for another code.
    add("eucJP", "rows 89 to 92", u"彅濵昻"_s, "F9AC FAF0 FAB6");
    add("JIS7", "rows 89 to 92", u"彅濵昻"_s, "1B2442 792C 7A70 7A36 1B2842");
}

void TextCodecTest::encodes()
{
    QFETCH(QByteArray, codec);
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    QCOMPARE(encoded(codecNamed(codec), text).toHex(' '), bytes.toHex(' '));
}

void TextCodecTest::anyBlockSizeGivesTheSameText_data()
{
    addCodecRows();
}

void TextCodecTest::anyBlockSizeGivesTheSameText()
{
    QFETCH(QByteArray, codec);
    const TextCodec *c = &codecNamed(codec);
    const QByteArray bytes = mixedBytes(*c);
    const QString text = decoded(*c, bytes);
    for (int units = 1; units < 300; ++units) {
        BlockRecorder blocks;
        blocks.blockUnits = units;
        c->decode(bytes, blocks);
        QCOMPARE(blocks.text, text);
    }
}

void TextCodecTest::anyRunLengthGivesTheSameBytes_data()
{
    addCodecRows();
}

void TextCodecTest::anyRunLengthGivesTheSameBytes()
{
    QFETCH(QByteArray, codec);
    const TextCodec *c = &codecNamed(codec);
    const QString text = decoded(*c, mixedBytes(*c))
        + u"\U0001F480\xD83D"
          u"a\xDC80\xD83D"_s;
    const QByteArray bytes = encoded(*c, text);
    for (qsizetype length = 1; length < 300; ++length)
        QCOMPARE(encodeInRuns(*c, text, length), bytes);
}

/// From chunks of one byte a unit, wherever another character interrupts it, and where a block is full.
void TextCodecTest::asciiIsWrittenAsItIs()
{
    for (const char *name : { "SJIS", "eucJP", "JIS7", "UTF8", "ISO-8859-1" }) {
        const TextCodec &codec = codecNamed(name);
        for (const qsizetype before : { 0, 3, 65400 }) {
            for (qsizetype at = 0; at < 160; ++at) {
                QByteArray text(before + 200, 'a');
                text[before + at] = '\xA7';
                bool isDone = false;
                const auto next = [&] {
                    TextChunk chunk;
                    chunk.latin1 = std::exchange(isDone, true) ? QByteArrayView("", 0) : text;
                    return chunk;
                };
                QByteArray bytes;
                const auto collect = [&bytes](QByteArrayView block) { return bytes += block, true; };
                QVERIFY(codec.encode(next, collect, TextCodec::AsRead::Everything));
                QCOMPARE(decoded(codec, bytes), QString::fromLatin1(text));
            }
        }
    }
}

void TextCodecTest::longTextsSurviveFullBuffers_data()
{
    addCodecRows();
}

void TextCodecTest::longTextsSurviveFullBuffers()
{
    QFETCH(QByteArray, codec);
    const TextCodec *c = &codecNamed(codec);
    const QString unit = decoded(*c, mixedBytes(*c)).remove(u"\uFEFF"_s);
    for (int shift = 0; shift < 5; ++shift) {
        const QString text = QString(shift, u'.') + unit.repeated(300000 / unit.size());
        QByteArray bytes = encoded(*c, text);
        QVERIFY(decoded(*c, bytes) == text);
    }
}

void TextCodecTest::asciiComesAsOneByteBlocks()
{
    const QByteArray ascii(200003, 'a');
    for (const char *name : { "SJIS", "eucJP", "JIS7", "UTF8" }) {
        BlockRecorder recorder;
        codecNamed(name).decode(ascii, recorder);
        QCOMPARE(recorder.text, QString::fromLatin1(ascii));
        QVERIFY2(!recorder.kinds.contains(u"utf16"_s), name);
    }
}

void TextCodecTest::shortAsciiRunsStayInTheirBlock()
{
    QByteArray bytes;
    for (int i = 0; i < 20; ++i)
        bytes += "\xE6\xBC\xA2" + QByteArray(1000, 'a');
    BlockRecorder recorder;
    codecNamed("UTF8").decode(bytes, recorder);
    QCOMPARE(recorder.kinds, QStringList{ u"utf16"_s });

    BlockRecorder longRun;
    codecNamed("UTF8").decode("\xE6\xBC\xA2" + QByteArray(100000, 'a') + "\xE6\xBC\xA2", longRun);
    QCOMPARE(longRun.kinds.first(), u"utf16"_s);
    QCOMPARE(longRun.kinds.last(), u"utf16"_s);
    QVERIFY(longRun.kinds.contains(u"latin1"_s));
}

void TextCodecTest::blocksAreBounded_data()
{
    addCodecRows();
}

void TextCodecTest::blocksAreBounded()
{
    QFETCH(QByteArray, codec);
    const TextCodec *c = &codecNamed(codec);
    BlockRecorder recorder;
    c->decode(mixedBytes(*c).repeated(2000) + QByteArray(300000, 'a') + QByteArray(300000, '\xFF'), recorder);
    QVERIFY(recorder.kinds.size() > 5);
    QVERIFY(recorder.longest >= 65536);
    QVERIFY(recorder.longest <= 65536 + 4096 + 64);
}

void TextCodecTest::encodesStore()
{
    TextStore store;
    const QString text =
        u"plain\n"_s.repeated(2000) + u"漢字\U0001F480\n"_s.repeated(2000) + u"é\n"_s.repeated(2000);
    store.replace(Offset(0), 0, text);
    for (const auto &[name, codecOfName] : namedCodecs) {
        const TextCodec &codec = codecOfName();
        QByteArray bytes;
        QVERIFY(codec.encode(store, [&bytes](QByteArrayView block) {
            bytes += block;
            return true;
        }));
        QVERIFY2(bytes == encoded(codec, text), name);
    }
}

void TextCodecTest::refusedBytesStopEncoding()
{
    TextStore store;
    store.replace(Offset(0), 0, u"漢字"_s.repeated(100000));
    for (const NamedCodec &named : namedCodecs) {
        int calls = 0;
        QVERIFY(!named.codec().encode(store, [&calls](QByteArrayView) {
            ++calls;
            return calls < 2;
        }));
        QCOMPARE(calls, 2);
    }
}

void TextCodecTest::knowsWhatItCannotWrite_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QString>("standIn");
    for (const char *codec : { "SJIS", "eucJP", "JIS7", "ISO-8859-1" })
        QTest::newRow(codec) << QByteArray(codec) << u"?"_s;
    for (const char *codec : { "UTF8", "UTF-16LE", "UTF-16BE" })
        QTest::newRow(codec) << QByteArray(codec) << u"\uFFFD"_s;
}

/// Every unit, and a character of two, behind another one.
void TextCodecTest::knowsWhatItCannotWrite()
{
    QFETCH(QByteArray, codec);
    QFETCH(QString, standIn);
    const TextCodec &tested = codecNamed(codec);
    const QByteArray lost = encodeInRuns(tested, u'a' + standIn, 2);
    const auto check = [&](const QString &character) {
        TextChunk chunk;
        const QString text = u'a' + character;
        chunk.utf16 = text;
        const qint64 found = tested.findWithoutCode(chunk, 0, TextCodec::AsRead::UndecodableBytes);
        const bool isLost = encodeInRuns(tested, text, 3) == lost && character != standIn;
        QVERIFY2(found == (isLost ? 1 : -1), qPrintable(QString::number(character[0].unicode(), 16)));
    };
    for (char32_t c = 0; c <= 0xFFFF; ++c)
        check(QString(QChar(char16_t(c))));
    check(u"\U0001F600"_s);
    const QByteArray latin1 = "a\xE9";
    TextChunk chunk;
    chunk.latin1 = latin1;
    const bool hasE = !encodeInRuns(tested, u"aé"_s, 2).endsWith('?');
    QCOMPARE(tested.findWithoutCode(chunk, 0, TextCodec::AsRead::Nothing), hasE ? -1 : 1);
}

REGISTER_TEST(runPlainTest<TextCodecTest>)
#include "textcodec_test.moc"
