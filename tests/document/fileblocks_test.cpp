#include "document/fileblocks.h"

#include "codec/codecs.h"
#include "tests/codec/everycharcode.h"
#include "tests/codec/nastybytes.h"
#include "tests/document/mixedbytes.h"
#include "tests/document/rewrittenbytes.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"

#include <algorithm>

namespace {

/// The text of parts that are decoded one after the other.
QString decodedParts(const TextCodec &codec, const QByteArrayList &parts, ReturnCode returnCode)
{
    const TextStore empty;
    const LayoutCopy layout(empty);
    const std::unique_ptr<TextCodec::Decoding> decoding = codec.decoding();
    QString text;
    qint64 undecodable = 0;
    for (QByteArray part : parts) {
        normalizeLineEnds(part, returnCode);
        text += decoding
            ? TextCodec::decode(*decoding, part, TextCodec::Part::Inner, layout, {}, undecodable).text()
            : codec.decode(part, layout, {}, undecodable).text();
    }
    if (decoding)
        text += TextCodec::decode(*decoding, {}, TextCodec::Part::Last, layout, {}, undecodable).text();
    return text;
}

QByteArray someBytes(QRandomGenerator &random)
{
    const int kind = random.bounded(3);
    return kind == 0 ? mixedBytes(random) : kind == 1 ? nastyBytes(random) : nastyHighBytes(random);
}

} // namespace

/// Where the bytes of a file may be cut, and what they tell however they are.
class FileBlocksTest : public QObject {
    Q_OBJECT

private slots:
    void cutsAreWhereBothSidesStandAlone_data();
    void cutsAreWhereBothSidesStandAlone();
    void zerosCanBeCut_data() { cutsAreWhereBothSidesStandAlone_data(); }
    void zerosCanBeCut();
    void textWithoutAsciiCanBeCut_data();
    void textWithoutAsciiCanBeCut();
    void factsDoNotDependOnCuts_data() { addSeeds(200); }
    void factsDoNotDependOnCuts();
};

void FileBlocksTest::cutsAreWhereBothSidesStandAlone_data()
{
    QTest::addColumn<CharCode>("code");
    for (const CharCode code : everyCharCode())
        QTest::addRow("%d, %s", int(code), infoOf(code).name.data()) << code;
}

/// Of a code with a state: as soon as the first one was decoded.
void FileBlocksTest::cutsAreWhereBothSidesStandAlone()
{
    QFETCH(CharCode, code);
    QRandomGenerator random(seedOr(1));
    const TextCodec &codec = code == CharCode::Unicode ? utf16LittleEndianCodec() : infoOf(code).codec();
    for (int i = 0; i < 1500; ++i) {
        const QByteArray bytes = someBytes(random);
        for (const ReturnCode returnCode : { ReturnCode::Cr, ReturnCode::CrLf, ReturnCode::Lf }) {
            const qsizetype size = random.bounded(int(bytes.size()) + 1);
            const qsizetype cut = cutOf(QByteArrayView(bytes).first(size), code);
            QVERIFY(cut <= size);
            if (decodedParts(codec, { bytes.first(cut), bytes.sliced(cut) }, returnCode)
                != decodedParts(codec, { bytes }, returnCode))
                QFAIL(bytes.first(cut).toHex(' ') + " | " + bytes.sliced(cut).toHex(' '));
        }
    }
}

/// A gigabyte of them, as a disk leaves them in a log when the power fails, is to be read in parts.
void FileBlocksTest::zerosCanBeCut()
{
    QFETCH(CharCode, code);
    const QByteArray zeros(4096, '\0');
    QVERIFY(cutOf(zeros, code) >= zeros.size() - 1);
}

void FileBlocksTest::textWithoutAsciiCanBeCut_data()
{
    using namespace Qt::StringLiterals;
    QTest::addColumn<CharCode>("code");
    QTest::addColumn<QByteArray>("text");
    using enum CharCode;
    QTest::newRow("EUC") << Euc << "\xB4\xC1\xBB\xFA"_ba;
    QTest::newRow("EUC, half-width") << Euc << "\x8E\xB6\x8E\xC5"_ba;
    QTest::newRow("EUC, three bytes") << Euc << "\x8F\xB0\xA1"_ba;
    QTest::newRow("EUC, of all kinds") << Euc << "\xB4\xC1\x8E\xB6\x8F\xB0\xA1"_ba;
    QTest::newRow("EUC, with a byte too few") << Euc << "\xB4\xC1\xF4\xFE\xFE\xBB\xFA"_ba;
    QTest::newRow("EUC, lines that CR ends") << Euc << "\xB4\xC1\xBB\xFA\r"_ba;
    QTest::newRow("Shift-JIS") << ShiftJis << "\x8A\xF0\x8E\x9A"_ba;
    QTest::newRow("Shift-JIS, lines that CR ends") << ShiftJis << "\x8A\xF0\x8E\x9A\r"_ba;
    QTest::newRow("ASCII, as it is read at first") << Ascii << "\x8A\xF0\x8E\x9A"_ba;
    QTest::newRow("UTF-8") << Utf8 << "\xE6\xBC\xA2\xE5\xAD\x97"_ba;
    QTest::newRow("UTF-8, the rests of characters") << Utf8 << "\x80\xBF\xA0"_ba;
    QTest::newRow("UTF-8, their starts") << Utf8 << "\xC3"_ba;
}

/// A long line of it is to be read in parts.
void FileBlocksTest::textWithoutAsciiCanBeCut()
{
    QFETCH(CharCode, code);
    QFETCH(QByteArray, text);
    const QByteArray bytes = text.repeated(100);
    constexpr qsizetype longest = 3; // and what it may take of the next one
    for (qsizetype size = longest + 1; size <= bytes.size(); ++size) {
        const qsizetype cut = cutOf(QByteArrayView(bytes).first(size), code);
        QVERIFY2(cut >= size - longest, qPrintable(QStringLiteral("%1 of %2").arg(cut).arg(size)));
    }
}

void FileBlocksTest::factsDoNotDependOnCuts()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const QByteArray bytes = mixedBytes(random);
    FileFacts facts;
    for (qsizetype from = 0; from < bytes.size();) {
        const qsizetype size = qMin<qsizetype>(bytes.size() - from, random.bounded(9));
        facts.add(QByteArrayView(bytes).sliced(from, size));
        from += size;
    }
    QCOMPARE(facts.code().code(CharCode::Jis), detectCharCode(bytes, CharCode::Jis));
    QCOMPARE(facts.lineEnd().found().value_or(ReturnCode::None), detectReturnCode(bytes, ReturnCode::None));
    for (const ReturnCode returnCode : { ReturnCode::Cr, ReturnCode::CrLf, ReturnCode::Lf }) {
        const RewrittenBytes found = facts.rewritten().with(returnCode);
        const RewrittenBytes expected = countRewritten(bytes, returnCode);
        QCOMPARE(found.nul, expected.nul);
        QCOMPARE(found.lf, expected.lf);
        QCOMPARE(found.cr, expected.cr);
    }
    QCOMPARE(facts.start(), QByteArrayView(bytes));
    const bool isAscii = std::ranges::all_of(bytes, [](char byte) { return byte > 0; });
    QVERIFY(facts.code().isAscii() == isAscii);
}

REGISTER_TEST(runPlainTest<FileBlocksTest>)
#include "fileblocks_test.moc"
