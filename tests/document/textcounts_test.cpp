#include "document/textcounts.h"

#include "codec/charcode.h"
#include "codec/returncode.h"
#include "tests/testprogram.h"
#include "tests/text/storecompare.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Counts and sizes of the properties box.
class TextCountsTest : public QObject {
    Q_OBJECT

private slots:
    void counts_data();
    void counts();
    void sizes_data();
    void sizes();
};

void TextCountsTest::counts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("lineFeeds");
    QTest::addColumn<int>("single");
    QTest::addColumn<int>("doubles");
    QTest::newRow("empty") << u""_s << 0 << 0 << 0;
    QTest::newRow("ASCII on three lines") << u"ab\ncd\n"_s << 2 << 4 << 0;
    QTest::newRow("U+0000 and U+007F") << QString(QChar(0)) + u'\x7F' << 0 << 2 << 0;
    QTest::newRow("U+0080 and U+00FF") << u"\x80\xFF"_s << 0 << 0 << 2;
    QTest::newRow("kanji") << u"漢字\n"_s << 1 << 0 << 2;
    QTest::newRow("first half-width U+FF61") << u"\uFF61"_s << 0 << 1 << 0;
    QTest::newRow("last half-width U+FF9E") << u"\uFF9E"_s << 0 << 1 << 0;
    QTest::newRow("before the half-width ones U+FF60") << u"\uFF60"_s << 0 << 0 << 1;
    QTest::newRow("outside of them U+FF9F") << u"\uFF9F"_s << 0 << 0 << 1;
    QTest::newRow("full-width space") << u"\u3000"_s << 0 << 0 << 1;
    QTest::newRow("surrogate pair") << u"\U0001F600"_s << 0 << 0 << 2;
    QTest::newRow("over many leaves") << u"aア\n"_s.repeated(100000) << 100000 << 100000 << 100000;
}

void TextCountsTest::counts()
{
    QFETCH(QString, text);
    const TextCounts counts = countText(storeOf(text));
    QTEST(int(counts.lineFeeds), "lineFeeds");
    QTEST(int(counts.singleByteChars), "single");
    QTEST(int(counts.doubleByteChars), "doubles");
}

void TextCountsTest::sizes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<CharCode>("charCode");
    QTest::addColumn<ReturnCode>("returnCode");
    QTest::addColumn<int>("size");
    constexpr auto shiftJis = CharCode::ShiftJis;
    constexpr auto utf8 = CharCode::Utf8;
    constexpr auto crLf = ReturnCode::CrLf;
    constexpr auto lf = ReturnCode::Lf;
    QTest::newRow("nothing") << u""_s << shiftJis << crLf << 0;
    QTest::newRow("Shift-JIS CR+LF") << u"abc漢\n"_s << shiftJis << crLf << 7;
    QTest::newRow("Shift-JIS LF") << u"abc漢\n"_s << shiftJis << lf << 6;
    QTest::newRow("UTF-8 LF") << u"abc漢\n"_s << utf8 << lf << 7;
    QTest::newRow("UTF-8 CR+LF") << u"abc漢\n"_s << utf8 << crLf << 8;
    QTest::newRow("Unicode CR+LF") << u"abc漢\n"_s << CharCode::Unicode << crLf << 12;
    QTest::newRow("Unicode LF") << u"abc漢\n"_s << CharCode::Unicode << lf << 10;
    QTest::newRow("EUC CR") << u"abc漢\n"_s << CharCode::Euc << ReturnCode::Cr << 6;
    QTest::newRow("JIS counts no escapes") << u"abc漢\n"_s << CharCode::Jis << crLf << 7;
    QTest::newRow("half-width katakana in UTF-8 as one byte") << u"ｱ"_s << utf8 << lf << 1;
    QTest::newRow("U+FF9F in EUC as two") << u"\uFF9F"_s << CharCode::Euc << lf << 2;
    QTest::newRow("unknown codes") << u"漢\n"_s << CharCode(99) << ReturnCode(99) << 3;
}

void TextCountsTest::sizes()
{
    QFETCH(QString, text);
    QFETCH(CharCode, charCode);
    QFETCH(ReturnCode, returnCode);
    QTEST(int(fileSize(countText(storeOf(text)), charCode, returnCode)), "size");
}

REGISTER_TEST(runCoreTest<TextCountsTest>)
#include "textcounts_test.moc"
