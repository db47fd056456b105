#include "codec/codecs.h"
#include "document/textdocument.h"
#include "tests/jobs/scarcememory.h"
#include "tests/testprogram.h"
#include "tests/widget/hugemimedata.h"
#include "widget/textcursor.h"
#include "widget/textexchange.h"
#include "widget/textmimedata.h"

#include <memory>
#include <new>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// A document whose whole text is selected.
struct Exchanging {
    explicit Exchanging(const QString &text, CharCode code = CharCode::Utf8)
        : document({ code, ReturnCode::Lf })
    {
        document.replace({}, 0, text);
        cursor.set({ document.store().end() }, {});
    }
    std::unique_ptr<TextMimeData> data() const
    {
        return std::unique_ptr<TextMimeData>(exchange.selectionData());
    }
    TextPiece brought(const QMimeData &data) const
    {
        return TextExchange::pieceOf(exchange.textOf(data).value()).value();
    }

    QObject editor;
    TextDocument document;
    TextCursor cursor{ document.store() };
    TextExchange exchange{ editor, document, cursor };
};

constexpr char16_t undecodable = 0xdcff; // of a byte that is no text

} // namespace

/// Text on its way from one document to another.
class TextExchangeTest : public QObject {
    Q_OBJECT

private slots:
    void escapesStayInOneCode();
    void carriageReturnsComeBackAlone();
    void textOfOtherProgramsIsCleaned();
    void dataKeepTheTextOrFollowIt();
    void isMadeAStringOnDemand();
    void othersGetTheBytesOfTheString();
    void othersGetNothingWhereMemoryIsShort();
    void othersBringNothingWhereMemoryIsShort();
};

void TextExchangeTest::escapesStayInOneCode()
{
    const QString text = u"a"_s + QChar(undecodable);
    const Exchanging from(text);
    const auto data = from.data();
    QCOMPARE(Exchanging({}).brought(*data).text(), text);
    QVERIFY(!Exchanging({}, CharCode::Euc).brought(*data).text().contains(QChar(undecodable)));
}

/// In another document they would be line ends that show as something else.
void TextExchangeTest::carriageReturnsComeBackAlone()
{
    const Exchanging from(u"a\r\nb\rc"_s);
    const auto data = from.data();
    QCOMPARE(from.brought(*data).text(), u"a\r\nb\rc"_s);
    QCOMPARE(Exchanging({}).brought(*data).text(), u"a\nb\nc"_s);
}

void TextExchangeTest::textOfOtherProgramsIsCleaned()
{
    QMimeData data;
    data.setText(u"a\r\nb"_s + QChar(undecodable));
    const QString text = Exchanging({}).brought(data).text();
    QVERIFY(text.startsWith(u"a\nb"_s));
    QVERIFY(!text.contains(QChar(undecodable)));
}

void TextExchangeTest::dataKeepTheTextOrFollowIt()
{
    Exchanging from(u"abc"_s);
    const std::unique_ptr<TextMimeData> kept = from.data();
    const std::unique_ptr<TextMimeData> following(from.exchange.followingSelectionData());
    from.document.replace({}, 1, u"X");
    from.cursor.set({ Offset(2) }, {});
    QCOMPARE(kept->text(), u"abc"_s);
    QCOMPARE(following->text(), u"Xb"_s);
    QCOMPARE(from.exchange.selectedPiece().text(), u"Xb"_s);
}

void TextExchangeTest::isMadeAStringOnDemand()
{
    int asked = 0;
    const QObject editor;
    TextMimeData data(
        [&asked] {
            ++asked;
            return TextPiece(u"text");
        },
        utf8Codec(), &editor);
    QVERIFY(data.hasText() && data.isFrom(&editor) && !data.isFrom(this));
    QCOMPARE(asked, 0);
    QCOMPARE(data.text(), u"text"_s);
    QVERIFY(asked > 0);
    data.setSource([] { return TextPiece(u"other"); });
    QCOMPARE(data.text(), u"other"_s);
}

/// Of a text of several leaves, narrow and wide ones.
void TextExchangeTest::othersGetTheBytesOfTheString()
{
    const QString text = u"plain \xE9 "_s.repeated(1000) + u"\u6F22\U0001F600"_s.repeated(3000)
        + QChar(undecodable) + u"plain"_s.repeated(2000) + QChar(undecodable);
    const Exchanging from(text);
    const auto data = from.data();
    QCOMPARE(data->data(u"text/plain"_s), text.toUtf8());
    QCOMPARE(data->text(), text);
    QVERIFY(data->data(u"text/html"_s).isEmpty());
}

/// An exception would end the program in the toolkit.
void TextExchangeTest::othersGetNothingWhereMemoryIsShort()
{
    const QObject editor;
    const TextMimeData data([]() -> TextPiece { throw std::bad_alloc(); }, utf8Codec(), &editor);
    QVERIFY(data.data(u"text/plain"_s).isEmpty());
    QVERIFY(data.text().isEmpty());
}

void TextExchangeTest::othersBringNothingWhereMemoryIsShort()
{
    const Exchanging into({});
    QVERIFY(!into.exchange.textOf(HugeMimeData()));
    QMimeData data;
    data.setText(u"text"_s);
    const ScarceMemory scarce(2);
    const std::optional<BroughtText> brought = into.exchange.textOf(data);
    QVERIFY(brought);
    QVERIFY(!TextExchange::pieceOf(*brought));
    QVERIFY(TextExchange::pieceOf(*brought));
}

REGISTER_TEST(runWindowTest<TextExchangeTest>)
#include "textexchange_test.moc"
