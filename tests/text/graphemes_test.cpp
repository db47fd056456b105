#include "text/graphemes.h"

#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/textalphabet.h"
#include "tests/text/toolkitgraphemes.h"

#include <QTest>

namespace {

QString drawn(QStringView text)
{
    QStringList characters;
    const std::vector<qsizetype> boundaries = graphemeBoundaries(text);
    for (std::size_t i = 1; i < boundaries.size(); ++i)
        characters += text.sliced(boundaries[i - 1], boundaries[i] - boundaries[i - 1]).toString();
    return characters.join(u'|');
}

} // namespace

class GraphemesTest : public QObject {
    Q_OBJECT

private slots:
    void boundaries_data();
    void boundaries();
    void asTheToolkit_data();
    void asTheToolkit();
    void everyCodePoint();
    void everyPlaceOfRandomTexts();
};

void GraphemesTest::boundaries_data()
{
    QTest::addColumn<QString>("characters");

    QTest::newRow("letters") << "a|b|\u3042|\u00ff";
    QTest::newRow("line end and tab take no mark") << "a|\t|\u0301|\n|\u0301\u0302|b";
    QTest::newRow("combining marks") << "e\u0301\u0302|\u304b\u3099|x";
    QTest::newRow("half-width voiced marks have a cell of their own") << "\uff76|\uff9e|\uff8a|\uff9f";
    QTest::newRow("surrogate pairs") << "\U0001f600|\U00020bb7\U000e0100|a";
    QTest::newRow("family") << "\U0001f468\u200d\U0001f469\u200d\U0001f467\u200d\U0001f466|\U0001f600";
    QTest::newRow("heart with its variant in a couple")
        << "\U0001f469\U0001f3fd\u200d\u2764\ufe0f\u200d\U0001f468\U0001f3ff|a";
    QTest::newRow("arrow joined to a head") << "\U0001f642\u200d\u2194\ufe0f";
    QTest::newRow("letters are not joined like emoji") << "a\u200d|b|\U0001f600\u200d|b|a\u200d|\U0001f600";
    QTest::newRow("skin tone") << "\U0001f44d\U0001f3fd|\U0001f44d";
    QTest::newRow("flags pair by pair") << "\U0001f1eb\U0001f1f7|\U0001f1ef\U0001f1f5|\U0001f1eb|a";
    QTest::newRow("flags behind an emoji")
        << "\u2764|\U0001f1eb\U0001f1f7|\U0001f600|\U0001f1ef\U0001f1f5|\U0001f1eb|a";
    QTest::newRow("flag of a part, spelled in tags") << "\U0001f3f4\U000e0067\U000e0062\U000e007f|a";
    QTest::newRow("keycap") << "1\ufe0f\u20e3|2";
    QTest::newRow("Thai AM and vowels") << "\u0e19\u0e49\u0e33|\u0e01\u0e33|\u0e01\u0e34\u0e48|\u0e40|\u0e01";
    QTest::newRow("Lao AM") << "\u0e99\u0ec9\u0eb3|\u0e81";
    QTest::newRow("Devanagari vowel signs") << "\u0939\u093f|\u0928\u094d|\u0926\u0940";
    QTest::newRow("Tamil vowel signs") << "\u0ba8\u0bbf|\u0b95\u0bca|\u0b95";
    QTest::newRow("emoji behind Devanagari") << "\u0939\u093f|\U0001f468\u200d\U0001f469";
    QTest::newRow("Hangul of parts")
        << "\u1100\u1161\u11a8|\u1100\u1100\u1161|\uac00\u11a8|\uac01\u11a8|\uac01";
    QTest::newRow("vowel behind a closed syllable") << "\uac01|\u1161|a|\u11a8";
    QTest::newRow("number sign before its digits") << "\u06001|2";
    QTest::newRow("undecodable bytes") << QString(QChar(0xdc80)) + u'|' + QChar(0xdc81) + u'|' + QChar(0x301);
    QTest::newRow("half a pair") << QString(QChar(0xd83d)) + u'|' + QChar(0x301) + QStringLiteral("|a");
}

void GraphemesTest::boundaries()
{
    QFETCH(const QString, characters);
    QString text = characters;
    text.remove(u'|');
    QCOMPARE(drawn(text), characters);
    for (const qsizetype boundary : graphemeBoundaries(text)) {
        if (boundary < text.size())
            QCOMPARE(graphemeStart(text, graphemeEnd(text, boundary) - 1), boundary);
    }
}

void GraphemesTest::asTheToolkit_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 20; ++seed)
        QTest::addRow("seed %u", seedOr(seed)) << seedOr(seed);
}

void GraphemesTest::asTheToolkit()
{
    QFETCH(const quint32, seed);
    RandomText random(
        seed, joiningCharacters() + QStringList{ u"a"_qs, u"\n"_qs, u"\U0001f600"_qs, u"\u3042"_qs });
    for (int i = 0; i < 50; ++i) {
        const QString text = random.text(30);
        QCOMPARE(graphemeBoundaries(text), toolkitGraphemes(text));
    }
}

/// Each beside letters, a Hangul vowel and itself: every class of characters is told by that.
void GraphemesTest::everyCodePoint()
{
    // Scripts that the toolkit has rules of its own for; half-width voiced marks, which are to stand alone.
    const auto differs = [](char32_t c) {
        return (c >= 0x0900 && c <= 0x109f) || (c >= 0x1780 && c <= 0x17ff) || c == 0xff9e || c == 0xff9f;
    };
    QStringList differing;
    for (char32_t c = 0; c < 0x20000; ++c) {
        if (c == '\r' || QChar::isSurrogate(c) || differs(c))
            continue;
        const QString character = QString::fromUcs4(&c, 1);
        const QString text = QStringLiteral("a%1b%1%1\u1161").arg(character);
        if (graphemeBoundaries(text) != toolkitGraphemes(text))
            differing += QString::number(c, 16);
    }
    QCOMPARE(differing.join(u' '), QString());
}

void GraphemesTest::everyPlaceOfRandomTexts()
{
    RandomText random(seedOr(1), joiningCharacters() + hurtingCharacters());
    for (int i = 0; i < 200; ++i) {
        const QString text = random.text(20);
        const std::vector<qsizetype> boundaries = graphemeBoundaries(text);
        for (qsizetype at = 0; at < text.size(); ++at) {
            const auto behind = std::upper_bound(boundaries.begin(), boundaries.end(), at);
            QCOMPARE(graphemeStart(text, at), *std::prev(behind));
        }
        QCOMPARE(graphemeStart(text, text.size()), text.size());
    }
}

REGISTER_TEST(runCoreTest<GraphemesTest>)
#include "graphemes_test.moc"
