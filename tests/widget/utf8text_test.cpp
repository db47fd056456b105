#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/textalphabet.h"
#include "tests/text/tinynodes.h"
#include "text/textstore.h"
#include "widget/utf8text.h"

#include <QTest>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

/// As threads that overtake one another.
void makeFromTheEnd(int count, const std::function<void(int)> &part)
{
    while (--count >= 0)
        part(count);
}

void makeByTwoThreads(int count, const std::function<void(int)> &part)
{
    std::atomic<int> next = 0;
    const auto make = [&] {
        for (int i = next++; i < count; i = next++)
            part(i);
    };
    std::thread other(make);
    make();
    other.join();
}

const QString loneHigh(QChar(0xd83d));
const QString loneLow(QChar(0xdc80));

} // namespace

class Utf8TextTest : public QObject {
    Q_OBJECT

private slots:
    void bytesAreThoseOfTheString_data();
    void bytesAreThoseOfTheString();
    void whateverTheTextIs_data() { addSeeds(50); }
    void whateverTheTextIs();
    void longTextIsMadeInParts();
    void isMadeByThreads();
};

void Utf8TextTest::bytesAreThoseOfTheString_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("NUL") << QString(QChar());
    QTest::newRow("ASCII") << u"plain\n"_s;
    QTest::newRow("ends of what has one byte a unit") << u"\x7f\x80\xff"_s;
    QTest::newRow("ends of two bytes") << u"\u0080\u07ff\u0800"_s;
    QTest::newRow("ends of three bytes") << u"\u0800\ud7ff\ue000\uffff"_s;
    QTest::newRow("pair") << u"a\U0001f600\U0010ffff"_s;
    QTest::newRow("low one") << u"\u3042"_s + loneLow + u"a"_s;
    QTest::newRow("high one") << u"\u3042"_s + loneHigh + u"a"_s;
    QTest::newRow("high, high, low") << loneHigh + loneHigh + loneLow;
    QTest::newRow("high, low, low") << loneHigh + loneLow + loneLow;
    QTest::newRow("low, high") << loneLow + loneHigh;
    QTest::newRow("leaves of each kind") << u"plain"_s.repeated(1000) + u"caf\xe9"_s.repeated(2000)
            + u"\u6f22\U0001f600"_s.repeated(2000) + loneLow + u"plain"_s.repeated(1000) + loneHigh;
}

void Utf8TextTest::bytesAreThoseOfTheString()
{
    QFETCH(QString, text);
    QCOMPARE(utf8Of(TextPiece(text), makeOneByOne), text.toUtf8());
}

/// Its parts begin where those before them end, whichever is made first.
void Utf8TextTest::whateverTheTextIs()
{
    QFETCH(quint32, seed);
    RandomText random(seed);
    const QString text = random.text(random.below(4000));
    QCOMPARE(utf8Of(TextPiece(text, nodesOf(4)), makeFromTheEnd), text.toUtf8());
}

void Utf8TextTest::longTextIsMadeInParts()
{
    int most = 0;
    const Spread counting = [&most](int count, const std::function<void(int)> &part) {
        most = qMax(most, count);
        makeOneByOne(count, part);
    };
    const QString text = u"0123456789ABCDEF"_s.repeated(400000);
    QCOMPARE(utf8Of(TextPiece(text), counting), text.toUtf8());
    QVERIFY(most > 4);
}

/// Of a text that was removed meanwhile.
void Utf8TextTest::isMadeByThreads()
{
    const QString text = u"0123456789\u6f22\xe9"_s.repeated(200000);
    TextStore store;
    store.replace({}, 0, text);
    const TextPiece piece = store.piece({}, store.length());
    store.replace({}, store.length(), {});
    QCOMPARE(utf8Of(piece, makeByTwoThreads), text.toUtf8());
}

REGISTER_TEST(runPlainTest<Utf8TextTest>)
#include "utf8text_test.moc"
