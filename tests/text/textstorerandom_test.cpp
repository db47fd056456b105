#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/storecompare.h"
#include "text/textlayout.h"

namespace {

/// One store and its model, changed alike at random.
class Pair {
public:
    Pair(quint32 seed, const LayoutRule &rule, const NodeSizes &sizes, const QStringList &alphabet)
        : store(rule, sizes)
        , model(rule)
        , random(seed, alphabet)
    {
    }

    void change()
    {
        switch (random.below(12)) {
        case 0:
            return replace(random.below(60), random.below(60));
        case 1:
            return move();
        case 2:
            return copy();
        case 3:
            return rebuild();
        case 4:
            return lengthen();
        default:
            return replace(random.below(4), random.below(5));
        }
    }

    TextStore store;
    ModelStore model;
    RandomText random;

private:
    void replace(qint64 removed, qint64 inserted)
    {
        const qint64 offset = random.below(model.length() + 1);
        const qint64 count = qMin(removed, model.length() - offset);
        const QString text = random.text(inserted);
        store.replace(Offset(offset), count, text);
        model.replace(Offset(offset), count, text);
    }
    void lengthen()
    {
        if (model.length() > 400)
            return replace(random.below(400), 0);
        replace(0, 40 + random.below(100));
    }
    void move()
    {
        const qint64 offset = random.below(model.length() + 1);
        const qint64 count = random.below(model.length() - offset + 1);
        const QString text = model.text().mid(offset, count);
        const TextPiece piece = store.exchange(Offset(offset), count, QStringView());
        model.replace(Offset(offset), count, {});
        QCOMPARE(piece.text(), text);
        QCOMPARE(piece.length(), count);
        insert(piece);
    }
    void copy()
    {
        const qint64 offset = random.below(model.length() + 1);
        TextPiece piece =
            store.piece(Offset(offset), random.below(qMin<qint64>(100, model.length() - offset + 1)));
        const QString text = random.text(random.below(6));
        if (random.chance(2))
            piece.append(TextPiece(text, store.layout().sizes()));
        else
            piece.prepend(TextPiece(text, store.layout().sizes()));
        insert(piece);
        insert(piece);
    }
    void insert(const TextPiece &piece)
    {
        const qint64 at = random.below(model.length() + 1);
        store.insert(Offset(at), piece);
        model.replace(Offset(at), 0, piece.text());
    }
    void rebuild()
    {
        if (!random.chance(3))
            return store.setLayoutRule(model.layoutRule());
        store = storeOf(model.text(), model.layoutRule(), store.layout().sizes());
    }
};

QStringList without(const QStringList &characters)
{
    QStringList rest = hurtingCharacters();
    for (const QString &character : characters)
        rest.removeAll(character);
    return rest;
}

} // namespace

/// A store changed at random, and its model the same way.
class TextStoreRandomTest : public QObject {
    Q_OBJECT

private slots:
    void randomEdits_data();
    void randomEdits();
    void longLines_data();
    void longLines();
    void ruleChangesWhilePiecesLive();
};

void TextStoreRandomTest::randomEdits_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("capacity");
    QTest::addColumn<int>("widths");
    QTest::addColumn<Subpixels>("limit");
    QTest::addColumn<QStringList>("alphabet");

    const QList<std::pair<const char *, QStringList>> alphabets{
        { "all", hurtingCharacters() },
        { "no LF", without({ QStringLiteral("\n") }) },
        { "plain", { QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("W"), QStringLiteral("\t") } },
        { "two widths", { QStringLiteral("a"), QStringLiteral("a"), QStringLiteral("\u3042") } },
    };
    quint32 seed = 1;
    for (const int capacity : { 4, 7, 32 }) {
        for (const Widths widths : { Widths::None, Widths::Hurting, Widths::FixedPitch }) {
            for (const Subpixels limit : { 0, 1, 3, 7, 80 }) {
                for (const auto &[name, alphabet] : alphabets) {
                    const quint32 used = seedOr(seed++);
                    QTest::addRow("seed %u, leaf %d, widths %d, limit %lld, %s", used, capacity, int(widths),
                        limit, name)
                        << used << capacity << int(widths) << limit << alphabet;
                }
            }
        }
    }
}

void TextStoreRandomTest::randomEdits()
{
    QFETCH(const quint32, seed);
    QFETCH(const int, capacity);
    QFETCH(const int, widths);
    QFETCH(const Subpixels, limit);
    QFETCH(const QStringList, alphabet);

    Pair pair(seed, ruleOf(Widths(widths), limit, limit == 80 ? 3 : 8), nodesOf(capacity), alphabet);
    for (int step = 0; step < 60 && !QTest::currentTestFailed(); ++step) {
        pair.change();
        compareSome(pair.store, pair.model, pair.random, 5);
    }
    if (!QTest::currentTestFailed() && pair.model.length() < 500)
        compareAll(pair.store, pair.model);
}

void TextStoreRandomTest::longLines_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("capacity");
    QTest::addColumn<Subpixels>("limit");
    QTest::addColumn<int>("lineEvery");

    quint32 seed = 1000;
    for (const int capacity : { 8, 16, 64 }) {
        for (const Subpixels limit : { 2, 5, 9 }) {
            for (const int lineEvery : { 0, 2000 }) {
                const quint32 used = seedOr(seed++);
                QTest::addRow("seed %u, leaf %d, limit %lld, LF every %d", used, capacity, limit, lineEvery)
                    << used << capacity << limit << lineEvery;
            }
        }
    }
}

/// Lines over many nodes: edits at the start of the line ask the tables of all the nodes behind.
void TextStoreRandomTest::longLines()
{
    QFETCH(const quint32, seed);
    QFETCH(const int, capacity);
    QFETCH(const Subpixels, limit);
    QFETCH(const int, lineEvery);

    RandomText random(seed, without({ QStringLiteral("\n") }));
    QString text = random.text(3000);
    for (qsizetype at = lineEvery; lineEvery > 0 && at < text.size(); at += lineEvery)
        text.insert(at, u'\n');
    const LayoutRule rule = ruleOf(Widths::Hurting, limit);
    TextStore store = storeOf(text, rule, nodesOf(capacity));
    ModelStore model(rule);
    model.setText(text);
    compareSome(store, model, random, 20);
    for (int step = 0; step < 25 && !QTest::currentTestFailed(); ++step) {
        const qint64 offset = random.chance(2) ? random.below(10) : random.below(model.length() - 3);
        const qint64 removed = random.below(3);
        const QString inserted = random.text(random.below(3));
        store.replace(Offset(offset), removed, inserted);
        model.replace(Offset(offset), removed, inserted);
        compareSome(store, model, random, 3);
    }
}

/// What was cut out under one rule is put in under another.
void TextStoreRandomTest::ruleChangesWhilePiecesLive()
{
    RandomText random(7);
    QString text = random.text(300);
    TextStore store = storeOf(text, ruleOf(Widths::Hurting, 3), nodesOf(4));
    ModelStore model;
    model.setText(text);
    const TextPiece copied = store.piece(Offset(20), 150);
    TextPiece cut = store.exchange(Offset(100), 90, QStringView());
    model.replace(Offset(100), 90, {});
    for (const Subpixels limit : { 5, 0, 3, 7 }) {
        const LayoutRule rule = ruleOf(Widths::FixedPitch, limit, 4);
        store.setLayoutRule(rule);
        model.setLayoutRule(rule);
        QCOMPARE(store.layoutRule(), rule);
        cut.append(TextPiece(u"ab\nW", nodesOf(4)));
        store.insert(Offset(33), cut);
        model.replace(Offset(33), 0, cut.text());
        store.insert(Offset(7), copied);
        model.replace(Offset(7), 0, copied.text());
        compareSome(store, model, random, 40);
    }
}

REGISTER_TEST(runCoreTest<TextStoreRandomTest>)
#include "textstorerandom_test.moc"
