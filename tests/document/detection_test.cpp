#include "document/detection.h"
#include "document/lineends.h"

#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr CharCode defaultCharCode{ 77 }; ///< nothing else gives it
constexpr ReturnCode defaultReturnCode{ 78 };

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

CharCode detectCharCode(const QByteArray &bytes)
{
    if (bytes.isEmpty())
        return defaultCharCode;
    if (bytes.size() >= 2 && static_cast<uchar>(bytes[0]) == 0xFF && static_cast<uchar>(bytes[1]) == 0xFE)
        return CharCode::Unicode;
    const Utf8Result pass = utf8Pass(bytes);
    if (pass.end == Utf8End::Binary)
        return CharCode::Binary;
    if (pass.end == Utf8End::Through && pass.escapes == 0)
        return pass.plain == bytes.size() ? CharCode::Ascii : CharCode::Utf8;
    if (hasJisEscape(bytes))
        return CharCode::Jis;
    for (const char byte : bytes) {
        const auto b = static_cast<uchar>(byte);
        if (b >= 0x81 && b <= 0x9F && b != 0x8E && b != 0x9F)
            return CharCode::ShiftJis;
    }
    return CharCode::Euc;
}

ReturnCode detectReturnCode(const QByteArray &bytes)
{
    bool sawCr = false;
    for (const char b : bytes) {
        if (b == 13)
            sawCr = true;
        else if (b == 10)
            return sawCr ? ReturnCode::CrLf : ReturnCode::Lf;
        else if (sawCr)
            return ReturnCode::Cr;
    }
    return defaultReturnCode;
}

QByteArray normalized(const QByteArray &bytes, ReturnCode returnCode)
{
    QByteArray result;
    for (const char b : bytes) {
        if (b == 0)
            result += '\xFF';
        else if (b == 13 && returnCode == ReturnCode::Cr)
            result += '\n';
        else if (b != 13 || returnCode != ReturnCode::CrLf)
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

/// Many ordinary bytes with few of those that decide among them, or a few with nothing else.
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
class DetectionTest : public QObject {
    Q_OBJECT

private slots:
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

void DetectionTest::detectsCharCode_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<CharCode>("code");
    const auto add = [](const char *name, const char *digits, CharCode code) {
        QTest::newRow(name) << hex(digits) << code;
    };
    add("empty", "", defaultCharCode);
    add("abc", "616263", CharCode::Ascii);
    add("abc LF", "6162630A", CharCode::Utf8);
    add("lowest and highest plain byte", "1C7F", CharCode::Ascii);
    add("TAB", "6109", CharCode::Utf8);
    add("ESC is below plain", "1B61", CharCode::Euc);
    add("FF FE whatever follows", "FFFE008182", CharCode::Unicode);
    add("FF FE alone", "FFFE", CharCode::Unicode);
    add("FF alone", "FF", CharCode::Euc);
    add("FE FF", "FEFF6161", CharCode::Euc);
    add("FE FF 00", "FEFF0061", CharCode::Euc);
    add("UTF-8 mark", "EFBBBF61", CharCode::Utf8);
    add("NUL first", "00", CharCode::Binary);
    add("NUL in ASCII", "616200", CharCode::Binary);
    add("NUL far in ASCII", "6161616161616161616161616161616161616100", CharCode::Binary);
    add("NUL where a continuation byte is owed", "E38100", CharCode::Binary);
    add("NUL behind the end of the pass", "80 00", CharCode::Euc);
    add("two bytes", "C3A9", CharCode::Utf8);
    add("three bytes", "E6BCA2", CharCode::Utf8);
    add("four bytes are not UTF-8", "F09F9880", CharCode::ShiftJis);
    add("cut behind one of three", "E6", CharCode::Utf8);
    add("cut behind two of three", "61 E6BC", CharCode::Utf8);
    add("cut behind one of two", "C3", CharCode::Utf8);
    add("overlong and surrogates pass", "C080 E08080 EDA080", CharCode::Utf8);
    add("stray continuation", "61BF", CharCode::Euc);
    add("cut by ASCII", "E6BC61", CharCode::Euc);
    add("ESC in UTF-8", "E6BCA2 1B5B", CharCode::Euc);
    add("JIS kanji", "1B2442", CharCode::Jis);
    add("JIS kanji of 1978", "1B2440", CharCode::Jis);
    add("JIS ASCII", "1B2842", CharCode::Jis);
    add("JIS Roman", "1B284A", CharCode::Jis);
    add("JIS katakana", "1B2849", CharCode::Jis);
    add("JIS among high bytes", "82A0 1B2442 3021", CharCode::Jis);
    add("ESC $ (", "1B2428", CharCode::Euc);
    add("ESC $ ( D", "1B242844", CharCode::Euc);
    add("ESC ( @", "1B2840", CharCode::Euc);
    add("ESC $ J", "1B244A", CharCode::Euc);
    add("ESC ESC $ B", "1B1B2442", CharCode::Euc);
    add("ESC $ ESC $ B", "1B241B2442", CharCode::Euc);
    add("ESC x ESC $ B", "1B781B2442", CharCode::Jis);
    add("ESC $ cut", "1B24", CharCode::Euc);
    add("ESC cut", "611B", CharCode::Euc);
    add("NUL in JIS", "1B2442 00", CharCode::Binary);
    add("EUC kanji", "B0A1 FEFE", CharCode::Euc);
    add("82 among EUC", "B0A1 82", CharCode::ShiftJis);
    add("8E alone", "8EB1 A4A2", CharCode::Euc);
    add("8F", "8FB0A1", CharCode::ShiftJis);
    add("9E", "A1A1 9E", CharCode::ShiftJis);
    add("9F alone", "A1A1 9F", CharCode::Euc);
    add("80 alone", "A1A1 80", CharCode::Euc);
    add("A0 alone", "A1A1 A0", CharCode::Euc);
    add("Shift-JIS kanji", "8ABF 8E9A", CharCode::ShiftJis);
    QTest::newRow("82 behind 10000 bytes")
        << QByteArray("\xB0\xA1").repeated(5000) + '\x82' << CharCode::ShiftJis;
    QTest::newRow("NUL behind 10000 bytes") << QByteArray("\xE6\xBC\xA2"
                                                          "a")
                                                   .repeated(2500)
            + '\0' << CharCode::Binary;
}

void DetectionTest::detectsCharCode()
{
    QFETCH(QByteArray, bytes);
    QFETCH(CharCode, code);
    QCOMPARE(detectCharCode(bytes, defaultCharCode), code);
    QCOMPARE(literal::detectCharCode(bytes), code);
}

void DetectionTest::detectsReturnCode_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<ReturnCode>("code");
    QTest::newRow("empty") << QByteArray() << defaultReturnCode;
    QTest::newRow("no line end") << QByteArray("abc") << defaultReturnCode;
    QTest::newRow("LF") << QByteArray("a\nb\r\n") << ReturnCode::Lf;
    QTest::newRow("CR LF") << QByteArray("a\r\nb\n") << ReturnCode::CrLf;
    QTest::newRow("CR") << QByteArray("a\rb\r\n") << ReturnCode::Cr;
    QTest::newRow("CR NUL") << QByteArray("a\r\0", 3) << ReturnCode::Cr;
    QTest::newRow("CR CR LF") << QByteArray("a\r\r\n") << ReturnCode::CrLf;
    QTest::newRow("CR CR a") << QByteArray("\r\ra\n") << ReturnCode::Cr;
    QTest::newRow("CR as the last byte") << QByteArray("abc\r") << defaultReturnCode;
    QTest::newRow("CRs as the last bytes") << QByteArray("abc\r\r") << defaultReturnCode;
    QTest::newRow("LF first") << QByteArray("\n") << ReturnCode::Lf;
}

void DetectionTest::detectsReturnCode()
{
    QFETCH(QByteArray, bytes);
    QFETCH(ReturnCode, code);
    QCOMPARE(detectReturnCode(bytes, defaultReturnCode), code);
    QCOMPARE(literal::detectReturnCode(bytes), code);
}

void DetectionTest::normalizesLineEnds_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<ReturnCode>("returnCode");
    QTest::addColumn<QByteArray>("normalized");
    QTest::newRow("empty") << QByteArray() << ReturnCode::CrLf << QByteArray();
    QTest::newRow("CR+LF") << QByteArray("a\r\nb\r\n") << ReturnCode::CrLf << QByteArray("a\nb\n");
    QTest::newRow("CR+LF loses a lone CR")
        << QByteArray("a\r\nb\rc") << ReturnCode::CrLf << QByteArray("a\nbc");
    QTest::newRow("CR+LF keeps a lone LF")
        << QByteArray("a\r\nb\nc") << ReturnCode::CrLf << QByteArray("a\nb\nc");
    QTest::newRow("nothing but CR") << QByteArray("\r\r\r") << ReturnCode::CrLf << QByteArray();
    QTest::newRow("CR") << QByteArray("a\rb\r") << ReturnCode::Cr << QByteArray("a\nb\n");
    QTest::newRow("CR doubles CR LF") << QByteArray("a\rb\r\n") << ReturnCode::Cr << QByteArray("a\nb\n\n");
    QTest::newRow("LF") << QByteArray("a\nb\rc") << ReturnCode::Lf << QByteArray("a\nb\rc");
    QTest::newRow("none") << QByteArray("a\r\nb") << ReturnCode::None << QByteArray("a\r\nb");
    for (const ReturnCode code : { ReturnCode::None, ReturnCode::Cr, ReturnCode::CrLf, ReturnCode::Lf })
        QTest::addRow("NUL with %d", int(code)) << QByteArray("\0a\0", 3) << code
                                                << QByteArray("\xFF"
                                                              "a\xFF");
    QTest::newRow("UTF-16 like any other")
        << hex("FFFE 6100 0D00 0A00") << ReturnCode::Cr << hex("FFFE 61FF 0AFF 0AFF");
    QTest::newRow("UTF-16 becomes odd")
        << hex("FFFE 6100 0D00 0A00") << ReturnCode::CrLf << hex("FFFE 61FF FF 0AFF");
}

void DetectionTest::normalizesLineEnds()
{
    QFETCH(QByteArray, bytes);
    QFETCH(ReturnCode, returnCode);
    QFETCH(QByteArray, normalized);
    QCOMPARE(literal::normalized(bytes, returnCode), normalized);
    const char *const place = bytes.data();
    normalizeLineEnds(bytes, returnCode);
    QCOMPARE(bytes, normalized);
    if (!bytes.isEmpty())
        QCOMPARE(bytes.constData(), place);
}

void DetectionTest::normalizingKeepsOtherCopies()
{
    QByteArray bytes("a\r\n\0", 4);
    const QByteArray copy = bytes;
    normalizeLineEnds(bytes, ReturnCode::CrLf);
    QCOMPARE(copy, QByteArray("a\r\n\0", 4));
}

void DetectionTest::shortFilesFollowTheRules_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("behind");
    QTest::newRow("alone") << QByteArray() << QByteArray();
    QTest::newRow("behind a word") << QByteArray("abcdefgh") << QByteArray();
    QTest::newRow("between words") << QByteArray("abcdefgh") << QByteArray("abcdefghijkl");
    QTest::newRow("in a three-byte character") << QByteArray("\xE6\xBC") << QByteArray("\xA2");
}

/// Every pair of bytes.
void DetectionTest::shortFilesFollowTheRules()
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

void DetectionTest::randomFilesFollowTheRules_data()
{
    QTest::addColumn<unsigned>("seed");
    QTest::addRow("seed %u", seed()) << seed();
}

void DetectionTest::randomFilesFollowTheRules()
{
    QFETCH(unsigned, seed);
    QRandomGenerator random(seed);
    for (int i = 0; i < 60000; ++i) {
        const QByteArray bytes = randomBytes(random);
        if (detectCharCode(bytes, defaultCharCode) != literal::detectCharCode(bytes))
            QFAIL(bytes.toHex(' '));
        if (detectReturnCode(bytes, defaultReturnCode) != literal::detectReturnCode(bytes))
            QFAIL(bytes.toHex(' '));
        const ReturnCode returnCode{ i % 4 };
        QByteArray normalized = bytes;
        normalizeLineEnds(normalized, returnCode);
        if (normalized != literal::normalized(bytes, returnCode))
            QFAIL(bytes.toHex(' '));
    }
}

REGISTER_TEST(runCoreTest<DetectionTest>)
#include "detection_test.moc"
