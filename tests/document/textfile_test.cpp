#include "document/textfile.h"

#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int defaultCharCode = 77; ///< nothing else gives it
constexpr int defaultReturnCode = 78;

/// The rules one by one and byte by byte, for comparison.
namespace literal {

enum class Utf8End { Binary, Stopped, Through };

struct Utf8Result {
    Utf8End end;
    qsizetype plain = 0;
    qsizetype escapes = 0;
};

Utf8Result utf8Pass(const QByteArray &bytes)
{
    Utf8Result result{ Utf8End::Through };
    int owed = 0;
    for (const char byte : bytes) {
        const auto b = static_cast<uchar>(byte);
        if (b == 0) {
            result.end = Utf8End::Binary;
            return result;
        }
        if (owed > 0) {
            if (b < 0x80 || b > 0xBF) {
                result.end = Utf8End::Stopped;
                return result;
            }
            --owed;
            continue;
        }
        if (b >= 28 && b <= 127)
            ++result.plain;
        if (b == 27)
            ++result.escapes;
        if (b < 128)
            continue;
        if (b >= 0xC0 && b <= 0xDF) {
            owed = 1;
        } else if (b >= 0xE0 && b <= 0xEF) {
            owed = 2;
        } else {
            result.end = Utf8End::Stopped;
            return result;
        }
    }
    return result;
}

bool hasJisEscape(const QByteArray &bytes)
{
    int state = 0;
    for (const char b : bytes) {
        switch (state) {
        case 0:
            state = b == 27 ? 3 : 0;
            break;
        case 3:
            state = b == '$' ? 2 : b == '(' ? 1 : 0;
            break;
        case 2:
            if (b == 'B' || b == '@')
                return true;
            state = 0;
            break;
        default:
            if (b == 'I' || b == 'B' || b == 'J')
                return true;
            state = 0;
        }
    }
    return false;
}

int detectCharCode(const QByteArray &bytes)
{
    if (bytes.isEmpty())
        return defaultCharCode;
    if (bytes.size() >= 2 && static_cast<uchar>(bytes[0]) == 0xFF && static_cast<uchar>(bytes[1]) == 0xFE)
        return 1;
    const Utf8Result pass = utf8Pass(bytes);
    if (pass.end == Utf8End::Binary)
        return 0;
    if (pass.end == Utf8End::Through && pass.escapes == 0)
        return pass.plain == bytes.size() ? 6 : 2;
    if (hasJisEscape(bytes))
        return 5;
    for (const char byte : bytes) {
        const auto b = static_cast<uchar>(byte);
        if (b >= 0x81 && b <= 0x9F && b != 0x8E && b != 0x9F)
            return 3;
    }
    return 4;
}

int detectReturnCode(const QByteArray &bytes)
{
    bool sawCr = false;
    for (const char b : bytes) {
        if (b == 13)
            sawCr = true;
        else if (b == 10)
            return sawCr ? 2 : 3;
        else if (sawCr)
            return 1;
    }
    return defaultReturnCode;
}

QByteArray normalized(const QByteArray &bytes, int returnCode)
{
    QByteArray result;
    for (const char b : bytes) {
        if (b == 0)
            result += '\xFF';
        else if (b == 13 && returnCode == 1)
            result += '\n';
        else if (b != 13 || returnCode != 2)
            result += b;
    }
    return result;
}

} // namespace literal

QByteArray hex(const char *digits)
{
    return QByteArray::fromHex(digits);
}

quint32 seed()
{
    return seedOr(20020311);
}

/// Long stretches of the ordinary with few of the bytes that decide, and short ones with nothing else.
QByteArray randomBytes(QRandomGenerator &random)
{
    constexpr uchar deciding[] = { 0, 9, 10, 13, 27, 27, 28, '$', '(', 'B', '@', 'I', 'J', 0x7F, 0x80, 0x81,
        0x8E, 0x8F, 0x9E, 0x9F, 0xA0, 0xA1, 0xBF, 0xC0, 0xC3, 0xDF, 0xE0, 0xE3, 0xEF, 0xF0, 0xFF, 0xFE };
    const int kinds = 1 + random.bounded(int{ std::size(deciding) });
    const int first = random.bounded(int{ std::size(deciding) });
    const int rarity = 1 << random.bounded(8);
    QByteArray bytes(random.bounded(200), 'a');
    for (char &byte : bytes) {
        if (random.bounded(rarity) == 0)
            byte = static_cast<char>(deciding[(first + random.bounded(kinds)) % int{ std::size(deciding) }]);
    }
    return bytes;
}

} // namespace

/// What is decided about a file from its bytes.
class TextFileTest : public QObject {
    Q_OBJECT

private slots:
    void namesCodes();
    void detectsCharCode_data();
    void detectsCharCode();
    void detectsReturnCode_data();
    void detectsReturnCode();
    void normalizesLineEnds_data();
    void normalizesLineEnds();
    void normalizingKeepsOtherCopies();
    void shortFilesFollowTheRules_data();
    void shortFilesFollowTheRules();
    void randomFilesFollowTheRules_data();
    void randomFilesFollowTheRules();
};

void TextFileTest::namesCodes()
{
    const QStringList charCodes{ u"Binary"_s, u"Unicode"_s, u"UTF8"_s, u"Shift-JIS"_s, u"EUC"_s, u"JIS"_s,
        u"Shift-JIS"_s };
    for (int code = 0; code < charCodes.size(); ++code)
        QCOMPARE(charCodeName(code), charCodes[code]);
    for (const int code : { -1, 7, 400 })
        QCOMPARE(charCodeName(code), u"????"_s);
    const QStringList returnCodes{ u"??"_s, u"CR"_s, u"CR+LF"_s, u"LF"_s };
    for (int code = 0; code < returnCodes.size(); ++code)
        QCOMPARE(returnCodeName(code), returnCodes[code]);
    for (const int code : { -1, 4, 400 })
        QCOMPARE(returnCodeName(code), u"??"_s);
}

void TextFileTest::detectsCharCode_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("code");
    const auto add = [](const char *name, const char *digits, int code) {
        QTest::newRow(name) << hex(digits) << code;
    };
    add("empty", "", defaultCharCode);
    add("abc", "616263", CharCodeAscii);
    add("abc LF", "6162630A", CharCodeUtf8);
    add("lowest and highest plain byte", "1C7F", CharCodeAscii);
    add("TAB", "6109", CharCodeUtf8);
    add("ESC is below plain", "1B61", CharCodeEuc);
    add("FF FE whatever follows", "FFFE008182", CharCodeUnicode);
    add("FF FE alone", "FFFE", CharCodeUnicode);
    add("FF alone", "FF", CharCodeEuc);
    add("FE FF", "FEFF6161", CharCodeEuc);
    add("FE FF 00", "FEFF0061", CharCodeEuc);
    add("UTF-8 mark", "EFBBBF61", CharCodeUtf8);
    add("NUL first", "00", CharCodeBinary);
    add("NUL in ASCII", "616200", CharCodeBinary);
    add("NUL far in ASCII", "6161616161616161616161616161616161616100", CharCodeBinary);
    add("NUL where a continuation byte is owed", "E38100", CharCodeBinary);
    add("NUL behind the end of the pass", "80 00", CharCodeEuc);
    add("two bytes", "C3A9", CharCodeUtf8);
    add("three bytes", "E6BCA2", CharCodeUtf8);
    add("four bytes are not UTF-8", "F09F9880", CharCodeShiftJis);
    add("cut behind one of three", "E6", CharCodeUtf8);
    add("cut behind two of three", "61 E6BC", CharCodeUtf8);
    add("cut behind one of two", "C3", CharCodeUtf8);
    add("overlong and surrogates pass", "C080 E08080 EDA080", CharCodeUtf8);
    add("stray continuation", "61BF", CharCodeEuc);
    add("cut by ASCII", "E6BC61", CharCodeEuc);
    add("ESC in UTF-8", "E6BCA2 1B5B", CharCodeEuc);
    add("JIS kanji", "1B2442", CharCodeJis);
    add("JIS kanji of 1978", "1B2440", CharCodeJis);
    add("JIS ASCII", "1B2842", CharCodeJis);
    add("JIS Roman", "1B284A", CharCodeJis);
    add("JIS katakana", "1B2849", CharCodeJis);
    add("JIS among high bytes", "82A0 1B2442 3021", CharCodeJis);
    add("ESC $ (", "1B2428", CharCodeEuc);
    add("ESC $ ( D", "1B242844", CharCodeEuc);
    add("ESC ( @", "1B2840", CharCodeEuc);
    add("ESC $ J", "1B244A", CharCodeEuc);
    add("ESC ESC $ B", "1B1B2442", CharCodeEuc);
    add("ESC $ ESC $ B", "1B241B2442", CharCodeEuc);
    add("ESC x ESC $ B", "1B781B2442", CharCodeJis);
    add("ESC $ cut", "1B24", CharCodeEuc);
    add("ESC cut", "611B", CharCodeEuc);
    add("NUL in JIS", "1B2442 00", CharCodeBinary);
    add("EUC kanji", "B0A1 FEFE", CharCodeEuc);
    add("82 among EUC", "B0A1 82", CharCodeShiftJis);
    add("8E alone", "8EB1 A4A2", CharCodeEuc);
    add("8F", "8FB0A1", CharCodeShiftJis);
    add("9E", "A1A1 9E", CharCodeShiftJis);
    add("9F alone", "A1A1 9F", CharCodeEuc);
    add("80 alone", "A1A1 80", CharCodeEuc);
    add("A0 alone", "A1A1 A0", CharCodeEuc);
    add("Shift-JIS kanji", "8ABF 8E9A", CharCodeShiftJis);
    QTest::newRow("82 behind 10000 bytes")
        << QByteArray("\xB0\xA1").repeated(5000) + '\x82' << int{ CharCodeShiftJis };
    QTest::newRow("NUL behind 10000 bytes") << QByteArray("\xE6\xBC\xA2"
                                                          "a")
                                                   .repeated(2500)
            + '\0' << int{ CharCodeBinary };
}

void TextFileTest::detectsCharCode()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, code);
    QCOMPARE(detectCharCode(bytes, defaultCharCode), code);
    QCOMPARE(literal::detectCharCode(bytes), code);
}

void TextFileTest::detectsReturnCode_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("code");
    QTest::newRow("empty") << QByteArray() << defaultReturnCode;
    QTest::newRow("no line end") << QByteArray("abc") << defaultReturnCode;
    QTest::newRow("LF") << QByteArray("a\nb\r\n") << int{ ReturnCodeLf };
    QTest::newRow("CR LF") << QByteArray("a\r\nb\n") << int{ ReturnCodeCrLf };
    QTest::newRow("CR") << QByteArray("a\rb\r\n") << int{ ReturnCodeCr };
    QTest::newRow("CR NUL") << QByteArray("a\r\0", 3) << int{ ReturnCodeCr };
    QTest::newRow("CR CR LF") << QByteArray("a\r\r\n") << int{ ReturnCodeCrLf };
    QTest::newRow("CR CR a") << QByteArray("\r\ra\n") << int{ ReturnCodeCr };
    QTest::newRow("CR as the last byte") << QByteArray("abc\r") << defaultReturnCode;
    QTest::newRow("CRs as the last bytes") << QByteArray("abc\r\r") << defaultReturnCode;
    QTest::newRow("LF first") << QByteArray("\n") << int{ ReturnCodeLf };
}

void TextFileTest::detectsReturnCode()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, code);
    QCOMPARE(detectReturnCode(bytes, defaultReturnCode), code);
    QCOMPARE(literal::detectReturnCode(bytes), code);
}

void TextFileTest::normalizesLineEnds_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("returnCode");
    QTest::addColumn<QByteArray>("normalized");
    QTest::newRow("empty") << QByteArray() << int{ ReturnCodeCrLf } << QByteArray();
    QTest::newRow("CR+LF") << QByteArray("a\r\nb\r\n") << int{ ReturnCodeCrLf } << QByteArray("a\nb\n");
    QTest::newRow("CR+LF loses a lone CR")
        << QByteArray("a\r\nb\rc") << int{ ReturnCodeCrLf } << QByteArray("a\nbc");
    QTest::newRow("CR+LF keeps a lone LF")
        << QByteArray("a\r\nb\nc") << int{ ReturnCodeCrLf } << QByteArray("a\nb\nc");
    QTest::newRow("nothing but CR") << QByteArray("\r\r\r") << int{ ReturnCodeCrLf } << QByteArray();
    QTest::newRow("CR") << QByteArray("a\rb\r") << int{ ReturnCodeCr } << QByteArray("a\nb\n");
    QTest::newRow("CR doubles CR LF")
        << QByteArray("a\rb\r\n") << int{ ReturnCodeCr } << QByteArray("a\nb\n\n");
    QTest::newRow("LF") << QByteArray("a\nb\rc") << int{ ReturnCodeLf } << QByteArray("a\nb\rc");
    QTest::newRow("none") << QByteArray("a\r\nb") << int{ ReturnCodeNone } << QByteArray("a\r\nb");
    for (int code = ReturnCodeNone; code <= ReturnCodeLf; ++code)
        QTest::addRow("NUL with %d", code) << QByteArray("\0a\0", 3) << code
                                           << QByteArray("\xFF"
                                                         "a\xFF");
    QTest::newRow("UTF-16 like any other")
        << hex("FFFE 6100 0D00 0A00") << int{ ReturnCodeCr } << hex("FFFE 61FF 0AFF 0AFF");
    QTest::newRow("UTF-16 becomes odd")
        << hex("FFFE 6100 0D00 0A00") << int{ ReturnCodeCrLf } << hex("FFFE 61FF FF 0AFF");
}

void TextFileTest::normalizesLineEnds()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, returnCode);
    QFETCH(QByteArray, normalized);
    QCOMPARE(literal::normalized(bytes, returnCode), normalized);
    const char *const place = bytes.data();
    normalizeLineEnds(bytes, returnCode);
    QCOMPARE(bytes, normalized);
    if (!bytes.isEmpty())
        QCOMPARE(bytes.constData(), place);
}

void TextFileTest::normalizingKeepsOtherCopies()
{
    QByteArray bytes("a\r\n\0", 4);
    const QByteArray copy = bytes;
    normalizeLineEnds(bytes, ReturnCodeCrLf);
    QCOMPARE(copy, QByteArray("a\r\n\0", 4));
}

void TextFileTest::shortFilesFollowTheRules_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("behind");
    QTest::newRow("alone") << QByteArray() << QByteArray();
    QTest::newRow("behind a word") << QByteArray("abcdefgh") << QByteArray();
    QTest::newRow("between words") << QByteArray("abcdefgh") << QByteArray("abcdefghijkl");
    QTest::newRow("in a three-byte character") << QByteArray("\xE6\xBC") << QByteArray("\xA2");
}

/// Every pair of bytes.
void TextFileTest::shortFilesFollowTheRules()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, behind);
    for (int pair = 0; pair < 0x10000; ++pair) {
        QByteArray bytes = before;
        bytes += static_cast<char>(pair >> 8);
        bytes += static_cast<char>(pair & 0xFF);
        bytes += behind;
        if (detectCharCode(bytes, defaultCharCode) != literal::detectCharCode(bytes))
            QFAIL(bytes.toHex(' '));
        if (detectReturnCode(bytes, defaultReturnCode) != literal::detectReturnCode(bytes))
            QFAIL(bytes.toHex(' '));
    }
}

void TextFileTest::randomFilesFollowTheRules_data()
{
    QTest::addColumn<unsigned>("seed");
    QTest::addRow("seed %u", seed()) << seed();
}

void TextFileTest::randomFilesFollowTheRules()
{
    QFETCH(unsigned, seed);
    QRandomGenerator random(seed);
    for (int i = 0; i < 60000; ++i) {
        const QByteArray bytes = randomBytes(random);
        if (detectCharCode(bytes, defaultCharCode) != literal::detectCharCode(bytes))
            QFAIL(bytes.toHex(' '));
        if (detectReturnCode(bytes, defaultReturnCode) != literal::detectReturnCode(bytes))
            QFAIL(bytes.toHex(' '));
        const int returnCode = i % 4;
        QByteArray normalized = bytes;
        normalizeLineEnds(normalized, returnCode);
        if (normalized != literal::normalized(bytes, returnCode))
            QFAIL(bytes.toHex(' '));
    }
}

REGISTER_TEST(runCoreTest<TextFileTest>)
#include "textfile_test.moc"
