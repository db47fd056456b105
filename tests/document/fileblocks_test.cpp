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

} // namespace

/// Where the bytes of a file may be cut, and what they tell however they are.
class FileBlocksTest : public QObject {
    Q_OBJECT

private slots:
    void cutsAreWhereBothSidesStandAlone_data();
    void cutsAreWhereBothSidesStandAlone();
    void zerosCanBeCut_data() { cutsAreWhereBothSidesStandAlone_data(); }
    void zerosCanBeCut();
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
        const QByteArray bytes = random.bounded(2) == 0 ? mixedBytes(random) : nastyBytes(random);
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
