#include "tests/testprogram.h"
#include "tests/text/storecompare.h"
#include "text/wordbounds.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Where words begin and end; cuts are drawn as "/".
class WordBoundsTest : public QObject {
    Q_OBJECT

private slots:
    void words_data();
    void words();
    void wordAround_data();
    void wordAround();
    void aWordWithoutEndIsCut();
};

void WordBoundsTest::words_data()
{
    QTest::addColumn<QString>("forwards");
    QTest::addColumn<QString>("backwards");
    const auto row = [](const char *name, const QString &forwards, const QString &backwards = {}) {
        QTest::newRow(name) << forwards << (backwards.isNull() ? forwards : backwards);
    };
    row("empty", u""_s);
    row("one word", u"word"_s);
    row("two words", u"two /words"_s);
    row("blanks before", u"  /word"_s);
    row("blanks behind", u"word  "_s);
    row("only blanks", u"   "_s);
    row("full-width blank", u"漢字\u3000/漢字"_s);
    row("punctuation", u"one/, /two/(/3/)"_s);
    row("line ends", u"one/\n/two"_s);
    row("empty lines", u"/\n/\n/x"_s, u"/\n/\n/x"_s);
    row("blanks at a line's end", u"one  /\n/two"_s);
    row("blanks at a line's start", u"one/\n/  /two"_s);
    row("digits and underscore", u"a_1 /b2"_s);
    row("kanji and kana", u"漢字/とかな/カタカナ/abc"_s);
    row("prolonged sound", u"コーヒー/らーめん"_s);
    row("half-width katakana", u"ｺｰﾋｰ/abc"_s);
    row("iteration mark", u"人々/は"_s);
    row("combining mark", u"cafe\u0301 /au"_s);
    row("supplementary ideograph", u"\U00020B9Fる"_s.insert(2, u'/'));
    row("emoji", u"a/\U0001F600 /b"_s);
    row("Arabic", u"\u0645\u0631\u062D\u0628\u0627 /\u0643"_s);
}

void WordBoundsTest::words()
{
    QFETCH(QString, forwards);
    QFETCH(QString, backwards);
    const QString text = QString(forwards).remove(u'/');
    const TextStore store = storeOf(text);
    const auto draw = [&text](QList<qint64> cuts) {
        std::ranges::sort(cuts, std::ranges::greater());
        QString drawn = text;
        for (const qint64 cut : std::as_const(cuts))
            drawn.insert(cut, u'/');
        return drawn;
    };
    QList<qint64> cuts;
    for (Offset at = nextWordStart(store, {}); at < store.end(); at = nextWordStart(store, at))
        cuts.append(at.value());
    if (text.startsWith(u'\n'))
        cuts.append(0);
    QCOMPARE(draw(cuts), forwards);
    QCOMPARE(nextWordStart(store, store.end()), store.end());

    cuts.clear();
    for (Offset at = previousWordStart(store, store.end()); at > Offset(); at = previousWordStart(store, at))
        cuts.append(at.value());
    if (text.startsWith(u'\n'))
        cuts.append(0);
    QCOMPARE(draw(cuts), backwards);
    QCOMPARE(previousWordStart(store, Offset(0)), Offset(0));
}

void WordBoundsTest::wordAround_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<QString>("word");
    QTest::newRow("inside") << u"one two"_s << 5LL << u"two"_s;
    QTest::newRow("at its start") << u"one two"_s << 4LL << u"two"_s;
    QTest::newRow("blanks") << u"one  two"_s << 3LL << u"  "_s;
    QTest::newRow("behind the last of a line") << u"one\ntwo"_s << 3LL << u"one"_s;
    QTest::newRow("behind the last of the text") << u"one"_s << 3LL << u"one"_s;
    QTest::newRow("empty line") << u"a\n\nb"_s << 2LL << u""_s;
    QTest::newRow("empty text") << u""_s << 0LL << u""_s;
    QTest::newRow("punctuation") << u"f(a);"_s << 4LL << u");"_s;
    QTest::newRow("kanji") << u"と漢字を"_s << 2LL << u"漢字"_s;
    QTest::newRow("low surrogate") << u"a\U00020B9Fb"_s << 2LL << u"\U00020B9F"_s;
}

void WordBoundsTest::wordAround()
{
    QFETCH(QString, text);
    QFETCH(qint64, offset);
    const TextRange range = wordAt(storeOf(text), Offset(offset));
    QTEST(text.mid(range.start.value(), range.length()), "word");
}

void WordBoundsTest::aWordWithoutEndIsCut()
{
    const TextStore store = storeOf(u"x"_s.repeated(100'000));
    const Offset end = nextWordStart(store, Offset(0));
    QVERIFY(end > Offset(1000) && end < Offset(50'000));
    QCOMPARE(store.end() - previousWordStart(store, store.end()), end - Offset());
    const TextRange range = wordAt(store, Offset(50'000));
    QVERIFY(range.start < Offset(50'000) && range.end > Offset(50'000));
}

REGISTER_TEST(runCoreTest<WordBoundsTest>)
#include "wordbounds_test.moc"
