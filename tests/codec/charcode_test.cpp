#include "codec/charcode.h"

#include "codec/codecs.h"
#include "codec/returncode.h"
#include "tests/codec/everycharcode.h"
#include "tests/testprogram.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// The tables of character codes and line ends.
class CharCodeTest : public QObject {
    Q_OBJECT

private slots:
    void valuesAreTheStoredOnes();
    void namesCodes();
    void namesLineEnds();
    void labelsWhatDialogsOffer();
    void decodesInOrderWhatHasAState();
    void unknownCodesAreShiftJis();
    void unicodeIsReadByItsMark();
    void unicodeIsCutByItsMark();
    void noRequestIsNoCode();
};

void CharCodeTest::valuesAreTheStoredOnes()
{
    QCOMPARE(everyCharCode(),
        QList({ CharCode::Binary, CharCode::Unicode, CharCode::Utf8, CharCode::ShiftJis, CharCode::Euc,
            CharCode::Jis, CharCode::Ascii }));
    for (int code = 0; code <= 3; ++code)
        QCOMPARE(int(infoOf(ReturnCode(code)).code), code);
}

void CharCodeTest::namesCodes()
{
    const QStringList names{ u"Binary"_s, u"Unicode"_s, u"UTF8"_s, u"Shift-JIS"_s, u"EUC"_s, u"JIS"_s,
        u"Shift-JIS"_s };
    for (int code = 0; code < names.size(); ++code)
        QCOMPARE(infoOf(CharCode(code)).name, names[code]);
    for (const int code : { -1, 7, 400 })
        QCOMPARE(infoOf(CharCode(code)).name, u"????"_s);
}

void CharCodeTest::namesLineEnds()
{
    const QStringList names{ u"??"_s, u"CR"_s, u"CR+LF"_s, u"LF"_s };
    for (int code = 0; code < names.size(); ++code)
        QCOMPARE(infoOf(ReturnCode(code)).name, names[code]);
    for (const int code : { -1, 4, 400 })
        QCOMPARE(infoOf(ReturnCode(code)).name, u"??"_s);
}

void CharCodeTest::labelsWhatDialogsOffer()
{
    QStringList labels;
    for (const CharCode code : everyCharCode())
        labels << infoOf(code).label;
    QCOMPARE(labels, QStringList({ {}, {}, u"UTF-8"_s, u"Shift-JIS"_s, u"EUC"_s, u"JIS"_s, {} }));
}

void CharCodeTest::decodesInOrderWhatHasAState()
{
    for (const CharCode code : everyCharCode())
        QCOMPARE(infoOf(code).hasState, code == CharCode::Unicode || code == CharCode::Jis);
}

void CharCodeTest::unknownCodesAreShiftJis()
{
    for (const CharCode code : { CharCode::ShiftJis, CharCode::Ascii, CharCode(-1), CharCode(99) }) {
        QCOMPARE(&infoOf(code).codec(), &shiftJisCodec());
        QCOMPARE(&codecToRead(code, "abc"), &shiftJisCodec());
    }
}

void CharCodeTest::unicodeIsReadByItsMark()
{
    QCOMPARE(&codecToRead(CharCode::Unicode, "\xFF\xFE"), &utf16LittleEndianCodec());
    QCOMPARE(&codecToRead(CharCode::Unicode, "abc"), &latin1Codec());
    QCOMPARE(&codecToRead(CharCode::Utf8, "\xFF\xFE"), &utf8Codec());
    QCOMPARE(&infoOf(CharCode::Unicode).codec(), &utf8Codec());
}

/// Without one of UTF-16 it is cut as another code.
void CharCodeTest::unicodeIsCutByItsMark()
{
    for (const char *mark : { "\xFF\xFE", "\xFE\xFF" })
        QCOMPARE(codeToRead(CharCode::Unicode, mark), CharCode::Unicode);
    QCOMPARE(codeToRead(CharCode::Unicode, "\xEF\xBB\xBF"), CharCode::Utf8);
    QCOMPARE(codeToRead(CharCode::Unicode, "abc"), CharCode::Binary);
    for (const CharCode code : everyCharCode()) {
        if (code != CharCode::Unicode)
            QCOMPARE(codeToRead(code, "\xFF\xFE"), code);
    }
}

void CharCodeTest::noRequestIsNoCode()
{
    QVERIFY(!requestedCharCode(0));
    QCOMPARE(requestedCharCode(4), std::optional(CharCode::Euc));
    QVERIFY(!requestedReturnCode(0));
    QCOMPARE(requestedReturnCode(1), std::optional(ReturnCode::Cr));
}

REGISTER_TEST(runPlainTest<CharCodeTest>)
#include "charcode_test.moc"
