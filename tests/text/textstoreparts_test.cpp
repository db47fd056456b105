#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/storecompare.h"

using namespace Qt::StringLiterals;

namespace {

/// Units and, where they have one, their spellings.
struct SpelledText {
    QString text;
    QList<QByteArray> spellings; ///< of each unit, and of what stands behind them; null: none
};

SpelledText randomSpelledText(RandomText &random)
{
    SpelledText made{ random.text(random.below(120)), {} };
    for (qsizetype i = 0; i <= made.text.size(); ++i)
        made.spellings << (random.chance(9) ? "x"_ba + QByteArray::number(i) : QByteArray());
    return made;
}

/// Of the units `from` to `to`; the spelling behind them only where that is the end.
TextStore partOf(
    const SpelledText &whole, qsizetype from, qsizetype to, const LayoutRule &rule, const NodeSizes &sizes)
{
    TextStore::Builder builder(rule, sizes);
    const bool isEnd = to == whole.text.size();
    for (qsizetype i = from; i < to + (isEnd ? 1 : 0); ++i) {
        if (!whole.spellings.at(i).isNull())
            builder.spell(whole.spellings.at(i));
        if (i < to)
            builder.append(QStringView(whole.text).sliced(i, 1));
    }
    return builder.finish();
}

SpelledText spelledTextOf(const TextStore &store)
{
    SpelledText found{ store.text(), QList<QByteArray>(store.length() + 1) };
    for (Offset at; at < store.end();) {
        const TextChunk chunk = store.spelledChunkAt(at);
        if (chunk.spelling)
            found.spellings[at.value()] = chunk.spelling->toByteArray();
        at += chunk.size();
    }
    if (const auto end = store.spelledChunkAt(store.end()).spelling)
        found.spellings.last() = end->toByteArray();
    return found;
}

} // namespace

/// A text that is built in parts is the same as one that was built at once.
class TextStorePartsTest : public QObject {
    Q_OBJECT

private slots:
    void isTheWhole_data() { addSeeds(150); }
    void isTheWhole();
    void isTheWholeAfterAnExchange_data() { addSeeds(150); }
    void isTheWholeAfterAnExchange();
    void emptyPartsAreNothing();
    void partIsEmptyAfterwards();
};

/// Also where a part begins in the middle of a pair or of a character, and whatever rule it was laid out by.
void TextStorePartsTest::isTheWhole()
{
    QFETCH(quint32, seed);
    const bool joins = seed % 2 == 0; // then no character may be so long that its leaf is cut inside it
    RandomText random(seed, joins ? joiningCharacters() + hurtingCharacters() : hurtingCharacters());
    const NodeSizes sizes = nodesOf(joins ? 256 : 4 + int(random.below(8)));
    const LayoutRule rule = ruleOf(Widths::Hurting, random.chance(2) ? 0 : 3 + random.below(9));
    const SpelledText whole = randomSpelledText(random);
    TextStore store(rule, sizes);
    for (qsizetype from = 0; from <= whole.text.size();) {
        const qsizetype to = qMin<qsizetype>(whole.text.size(), from + random.below(40));
        store.append(partOf(whole, from, to, random.chance(2) ? rule : LayoutRule(), sizes));
        if (to == whole.text.size())
            break;
        from = to;
    }
    const TextStore atOnce = partOf(whole, 0, whole.text.size(), rule, sizes);
    store.checkInvariants();
    QCOMPARE(spelledTextOf(store).text, whole.text);
    QCOMPARE(spelledTextOf(store).spellings, spelledTextOf(atOnce).spellings);
    ModelStore model(rule);
    model.setText(whole.text);
    compareAll(store, model);
}

/// Whatever leaves it was taken out of.
void TextStorePartsTest::isTheWholeAfterAnExchange()
{
    QFETCH(quint32, seed);
    RandomText random(seed, hurtingCharacters());
    const NodeSizes sizes = nodesOf(4 + int(random.below(16)));
    const LayoutRule rule = ruleOf(Widths::Hurting, random.chance(2) ? 0 : 3 + random.below(9));
    SpelledText whole = randomSpelledText(random);
    whole.text += u'z';
    whole.spellings << QByteArray();
    TextStore store = partOf(whole, 0, whole.text.size(), rule, sizes);

    const qint64 offset = random.below(whole.text.size());
    const qint64 removed = random.below(qMin<qint64>(20, whole.text.size() - offset) + 1);
    const QString inserted = u'a' + random.text(random.below(9));
    SpelledText changed = whole;
    changed.text.replace(offset, removed, inserted);
    changed.spellings.remove(offset, removed);
    changed.spellings.insert(offset, inserted.size(), {});
    const TextPiece taken = store.exchange(Offset(offset), removed, TextPiece(inserted, sizes));
    QCOMPARE(taken.text(), whole.text.sliced(offset, removed));
    store.checkInvariants();
    QCOMPARE(spelledTextOf(store).text, changed.text);
    QCOMPARE(spelledTextOf(store).spellings, changed.spellings);

    QCOMPARE(store.exchange(Offset(offset), inserted.size(), taken).text(), inserted);
    store.checkInvariants();
    QCOMPARE(spelledTextOf(store).text, whole.text);
    QCOMPARE(spelledTextOf(store).spellings, whole.spellings);
    ModelStore model(rule);
    model.setText(whole.text);
    compareAll(store, model);
}

void TextStorePartsTest::emptyPartsAreNothing()
{
    TextStore store;
    store.append(TextStore());
    QCOMPARE(store.length(), 0);
    store.append(storeOf(u"ab"_s));
    store.append(TextStore());
    QCOMPARE(store.text(), u"ab"_s);
}

void TextStorePartsTest::partIsEmptyAfterwards()
{
    TextStore store;
    TextStore part = storeOf(u"ab\n"_s);
    store.append(std::move(part));
    QCOMPARE(store.lineCount(), 2);
    part = storeOf(u"c"_s);
    store.append(std::move(part));
    QCOMPARE(store.text(), u"ab\nc"_s);
}

REGISTER_TEST(runPlainTest<TextStorePartsTest>)
#include "textstoreparts_test.moc"
