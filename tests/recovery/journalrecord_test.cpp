#include "recovery/journalrecord.h"

#include "codec/codecs.h"
#include "tests/codec/everycharcode.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

namespace {

JournalBase someBase()
{
    return { u"/a/"_s, u"b\xdcff"_s, true, 1, 2, CharCode::Euc, ReturnCode::Cr, 3, Utf16Form{ true, false },
        4 };
}

JournalState someState()
{
    JournalState state;
    state.time = 1;
    state.length = 2;
    state.charCode = CharCode::Jis;
    state.returnCode = ReturnCode::Lf;
    state.byteCodec = 3;
    state.place = { { Offset(4), true }, Offset(5), Offset(6), 7 };
    state.keepsUtf16 = true;
    return state;
}

} // namespace

/// What the records of a journal say beside the text, which other versions of the program read too.
class JournalRecordTest : public QObject {
    Q_OBJECT

private slots:
    void basesComeBack();
    void basesOfEarlierVersionsHaveLess();
    void statesComeBack_data();
    void statesComeBack();
    void cutRecordsAreNone();
    void changedRecordsAreNone();
    void everyCodeHasItsNumber();
    void numbersOfCodecsStay();
};

void JournalRecordTest::basesComeBack()
{
    const auto base = baseIn(contentOf(someBase()));
    QVERIFY(base);
    QCOMPARE(base->path, u"/a/"_s);
    QCOMPARE(base->name, u"b\xdcff"_s);
    QVERIFY(base->isFromFile);
    QCOMPARE(base->size, 1);
    QCOMPARE(base->time, 2);
    QCOMPARE(base->charCode, CharCode::Euc);
    QCOMPARE(base->returnCode, ReturnCode::Cr);
    QCOMPARE(base->length, 3);
    QVERIFY(base->utf16 && base->utf16->isBigEndian && !base->utf16->hasMark);
    QVERIFY(base->contentHash == 4U);
    QVERIFY(!baseIn(contentOf(JournalBase()))->utf16);
    QVERIFY(!baseIn(contentOf(JournalBase()))->contentHash);
}

void JournalRecordTest::basesOfEarlierVersionsHaveLess()
{
    constexpr qsizetype hashBytes = 9;
    const QByteArray earlier = contentOf(someBase()).chopped(hashBytes);
    QVERIFY(baseIn(earlier) && baseIn(earlier)->utf16 && !baseIn(earlier)->contentHash);
    const auto base = baseIn(earlier.chopped(1));
    QVERIFY(base && !base->utf16 && !base->contentHash);
    QCOMPARE(base->length, 3);
    QVERIFY(!baseIn(earlier.chopped(2)));
    QVERIFY(!baseIn(contentOf(someBase()).chopped(1)));
    JournalBase odd = someBase();
    odd.length = -1;
    QVERIFY(!baseIn(contentOf(odd)));
}

void JournalRecordTest::statesComeBack_data()
{
    QTest::addColumn<bool>("atRowEnd");
    QTest::addColumn<qint64>("anchor");
    QTest::addColumn<bool>("keepsUtf16");
    QTest::newRow("cursor alone") << false << -1LL << false;
    QTest::newRow("at a row's end") << true << -1LL << false;
    QTest::newRow("selection from the start") << false << 0LL << false;
    QTest::newRow("UTF-16 kept") << false << 5LL << true;
}

void JournalRecordTest::statesComeBack()
{
    QFETCH(bool, atRowEnd);
    QFETCH(qint64, anchor);
    QFETCH(bool, keepsUtf16);
    JournalState written = someState();
    written.place.cursor.atRowEnd = atRowEnd;
    written.place.anchor = anchor < 0 ? std::nullopt : std::optional(Offset(anchor));
    written.keepsUtf16 = keepsUtf16;
    const QByteArray content = contentOf(written);
    QCOMPARE(content.size(), JournalState::bytes);
    const auto state = stateIn(content);
    QVERIFY(state);
    QCOMPARE(state->time, 1);
    QCOMPARE(state->length, 2);
    QCOMPARE(state->charCode, CharCode::Jis);
    QCOMPARE(state->returnCode, ReturnCode::Lf);
    QCOMPARE(int(state->byteCodec), 3);
    QVERIFY(state->place == written.place);
    QCOMPARE(state->keepsUtf16, keepsUtf16);
    for (qsizetype size = 0; size < content.size(); ++size)
        QVERIFY(!stateIn(content.first(size)));
}

void JournalRecordTest::cutRecordsAreNone()
{
    QByteArray bytes;
    appendRecord(bytes, RecordType::Edit, "content");
    const auto record = firstRecord(bytes);
    QVERIFY(record);
    QCOMPARE(record->type, RecordType::Edit);
    QCOMPARE(record->content, "content"_ba);
    QCOMPARE(recordSize(bytes), bytes.size());
    QVERIFY(firstRecord(bytes + "more"));
    for (qsizetype size = JournalRecord::headSize; size < bytes.size(); ++size)
        QVERIFY(!firstRecord(bytes.first(size)));
}

void JournalRecordTest::changedRecordsAreNone()
{
    QByteArray bytes;
    appendRecord(bytes, RecordType::Commit, "content");
    for (qsizetype at = 0; at < bytes.size(); ++at) {
        for (const char change : { '\x01', '\x80' }) {
            QByteArray changed = bytes;
            changed[at] = char(changed[at] ^ change);
            QVERIFY2(!firstRecord(changed), QByteArray::number(at));
        }
    }
}

/// Undecodable bytes and spellings would be taken for those of UTF-8 otherwise.
void JournalRecordTest::everyCodeHasItsNumber()
{
    for (const CharCode code : everyCharCode()) {
        const TextCodec &codec = infoOf(code).codec();
        QVERIFY2(&byteCodecOf(byteCodecNumber(codec)) == &codec, QByteArray::number(int(code)));
    }
    for (const TextCodec *codec : { &utf16LittleEndianCodec(), &utf16BigEndianCodec() })
        QCOMPARE(&byteCodecOf(byteCodecNumber(*codec)), codec);
}

void JournalRecordTest::numbersOfCodecsStay()
{
    QCOMPARE(int(byteCodecNumber(utf8Codec())), 0);
    QCOMPARE(int(byteCodecNumber(latin1Codec())), 3);
    QCOMPARE(int(byteCodecNumber(shiftJisCodec())), 4);
    QCOMPARE(int(byteCodecNumber(eucCodec())), 5);
    QCOMPARE(int(byteCodecNumber(jisCodec())), 6);
    QCOMPARE(&byteCodecOf(200), &utf8Codec());
}

REGISTER_TEST(runPlainTest<JournalRecordTest>)
#include "journalrecord_test.moc"
