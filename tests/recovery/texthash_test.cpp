#include "recovery/texthash.h"
#include "tests/testprogram.h"
#include "tests/text/tinynodes.h"

using namespace Qt::StringLiterals;

/// Whether two texts are the same, by a number.
class TextHashTest : public QObject {
    Q_OBJECT

private slots:
    void doesNotDependOnHowATextIsKept();
    void everyUnitCounts();
    void aPartIsThatOfItsUnits();
    void spellingsCount();
};

namespace {

TextStore hashedStore(const QString &text, const NodeSizes &sizes = {})
{
    TextStore store({}, sizes);
    store.replace({}, 0, text);
    return store;
}

quint64 hashOf(const TextStore &store)
{
    return textHashOf(store, store.length());
}

/// Longer than a block of the hash, with leaves of one byte a unit and of two.
QString longText()
{
    return u"some ASCII, "_s.repeated(300) + u"日本語"_s.repeated(700) + u"é and the end"_s;
}

} // namespace

void TextHashTest::doesNotDependOnHowATextIsKept()
{
    const QString text = longText();
    const quint64 hash = hashOf(hashedStore(text));
    for (const int leafUnits : { 4, 7, 100 })
        QCOMPARE(hashOf(hashedStore(text, nodesOf(leafUnits))), hash);
    TextStore edited = hashedStore(text);
    edited.replace(Offset(1000), 0, u"日本");
    edited.replace(Offset(1000), 2, {});
    QCOMPARE(hashOf(edited), hash);
}

void TextHashTest::everyUnitCounts()
{
    const QString text = longText();
    const quint64 hash = hashOf(hashedStore(text));
    for (qsizetype at = 0; at < text.size(); at += 37) {
        QString other = text;
        other[at] = u'#';
        QVERIFY(hashOf(hashedStore(other)) != hash);
    }
    QVERIFY(hashOf(hashedStore(text + u'\0')) != hash);
    QVERIFY(hashOf(hashedStore({})) != hashOf(hashedStore(u"\0"_s)));
}

void TextHashTest::aPartIsThatOfItsUnits()
{
    const QString text = longText();
    const TextStore store = hashedStore(text, nodesOf(7));
    for (const qint64 length : { 0, 1, 2047, 2048, 2049, 5000 })
        QCOMPARE(textHashOf(store, length), hashOf(hashedStore(text.first(length))));
}

void TextHashTest::spellingsCount()
{
    const auto spelled = [](qsizetype at, QByteArrayView bytes) {
        TextStore::Builder builder((LayoutRule()));
        builder.append(QStringView(u"abc").first(at));
        builder.spell(bytes);
        builder.append(QStringView(u"abc").sliced(at));
        return hashOf(builder.finish());
    };
    QCOMPARE(spelled(1, "x"), spelled(1, "x"));
    QVERIFY(spelled(1, "x") != hashOf(hashedStore(u"abc"_s)));
    QVERIFY(spelled(1, "x") != spelled(1, "y"));
    QVERIFY(spelled(1, "x") != spelled(2, "x"));
}

REGISTER_TEST(runPlainTest<TextHashTest>)
#include "texthash_test.moc"
