#include "text/layoutchange.h"

#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/storecompare.h"
#include "text/textsnapshot.h"
#include "text/undohistory.h"

using namespace Qt::StringLiterals;

namespace {

/// A node a call.
const QDeadlineTimer oneNode(0);
const QDeadlineTimer all(QDeadlineTimer::Forever);

NodeSizes tinyNodes(RandomText &random)
{
    return nodesOf(4 + int(random.below(8)));
}

} // namespace

/// A text that is measured by another rule, some of it at a time, and edited meanwhile.
class LayoutChangeTest : public QObject {
    Q_OBJECT

private slots:
    void isAsLaidOutAtOnce_data() { addSeeds(150); }
    void isAsLaidOutAtOnce();
    void keepsTheRowsOfBeforeUntilItIsWhole();
    void measuresNothingTwice();
    void whatWasEditedIsMeasuredAgain();
    void shortTextTakesNoTime();
    void whatIsMeasuredStaysSo();
    void keptTextStaysAsItWas();
    void whatUndoingPutsBackIsMeasured_data() { addSeeds(100); }
    void whatUndoingPutsBackIsMeasured();
    void whatIsKeptGoesOnBeingShared();
};

void LayoutChangeTest::isAsLaidOutAtOnce()
{
    QFETCH(quint32, seed);
    RandomText random(seed, hurtingCharacters());
    const NodeSizes sizes = tinyNodes(random);
    const LayoutRule before = ruleOf(Widths::Hurting, random.chance(2) ? 0 : 3 + random.below(9));
    const LayoutRule after = ruleOf(
        random.chance(2) ? Widths::Hurting : Widths::None, random.chance(2) ? 0 : 3 + random.below(9), 4);
    const QString text = random.text(random.below(400));
    TextStore store = storeOf(text, before, sizes);
    ModelStore model(before);
    model.replace({}, 0, text);
    LayoutChange change(after, sizes);
    while (!store.setLayout(change, oneNode)) {
        QCOMPARE(store.layoutRule(), before);
        if (random.chance(3)) {
            const Offset at(random.below(model.length() + 1));
            const qint64 removed = random.below(qMin<qint64>(20, model.end() - at + 1));
            const QString inserted = random.text(random.below(6));
            store.replace(at, removed, inserted);
            model.replace(at, removed, inserted);
        }
        compareSome(store, model, random, 3);
        if (QTest::currentTestFailed())
            return;
    }
    model.setLayoutRule(after);
    QCOMPARE(store.layoutRule(), after);
    compareSome(store, model, random, 50);
    store.replace({}, 0, u"a\n");
    model.replace({}, 0, u"a\n"_s);
    compareSome(store, model, random, 50);
}

void LayoutChangeTest::keepsTheRowsOfBeforeUntilItIsWhole()
{
    const NodeSizes sizes = nodesOf(4);
    TextStore store = storeOf(u"abcdef"_s.repeated(20), ruleOf(Widths::None, 6), sizes);
    const QString before = drawRows(store);
    LayoutChange change(ruleOf(Widths::None, 40), sizes);
    int calls = 0;
    qint64 measured = 0;
    for (; !store.setLayout(change, oneNode); ++calls) {
        QCOMPARE(drawRows(store), before);
        QVERIFY(change.measured() >= measured);
        measured = change.measured();
    }
    QVERIFY(calls > 10);
    QVERIFY(measured > 60);
    QCOMPARE(change.measured(), store.length());
    QCOMPARE(store.rowCount(), 3);
}

void LayoutChangeTest::measuresNothingTwice()
{
    const NodeSizes sizes = nodesOf(4);
    int measured = 0;
    const AdvanceTable counting([&measured](char32_t) {
        ++measured;
        return int(subpixelsPerPixel);
    });
    QString text;
    for (char16_t unit = 0x3041; unit < 0x3041 + 80; ++unit) // of which no two are the same
        text += QChar(unit);
    TextStore store = storeOf(text, {}, sizes);
    LayoutChange change({ .advances = &counting }, sizes);
    measured = 0;
    while (!store.setLayout(change, oneNode))
        QVERIFY(measured <= 80);
    QCOMPARE(measured, 80);
}

/// The leaves beside it, and no others: that is all that is left to be done at the end.
void LayoutChangeTest::whatWasEditedIsMeasuredAgain()
{
    const NodeSizes sizes = nodesOf(4);
    TextStore store = storeOf(u"abcdef"_s.repeated(100), ruleOf(Widths::None, 6), sizes);
    LayoutChange change(ruleOf(Widths::None, 40), sizes);
    int calls = 0;
    for (; !store.setLayout(change, oneNode); ++calls) {
        if (calls == 20)
            store.replace({}, 1, u"x");
    }
    LayoutChange another(ruleOf(Widths::None, 6), sizes);
    int without = 0;
    while (!store.setLayout(another, oneNode))
        ++without;
    QVERIFY(calls > without);
    QVERIFY(calls <= without + 10);
    QVERIFY(store.text().startsWith(u"xbcdef"_s));
    store.checkInvariants();
}

void LayoutChangeTest::shortTextTakesNoTime()
{
    const LayoutRule rule = ruleOf(Widths::None, 3);
    TextStore empty;
    LayoutChange ofNothing(rule);
    QVERIFY(empty.setLayout(ofNothing, oneNode));
    QCOMPARE(empty.rowCount(), 1);
    QCOMPARE(empty.layoutRule(), rule);
    TextStore store = storeOf(u"abcdefg"_s);
    LayoutChange change(rule);
    QVERIFY(store.setLayout(change, oneNode));
    QCOMPARE(drawRows(store), u"abc/def/g"_s);
}

/// In a text that comes back to the store it was made of, with other text between.
void LayoutChangeTest::whatIsMeasuredStaysSo()
{
    const NodeSizes sizes = nodesOf(4);
    int measured = 0;
    const AdvanceTable counting([&measured](char32_t) {
        ++measured;
        return int(subpixelsPerPixel);
    });
    const QString known = u"abcdef"_s.repeated(100);
    TextStore store = storeOf(known, { .advances = &counting, .limit = 7 * subpixelsPerPixel }, sizes);
    QString added;
    for (char16_t unit = 0x3041; unit < 0x3041 + 80; ++unit)
        added += QChar(unit);
    TextPiece text = store.piece({}, 300);
    text.append(TextPiece(added, sizes));
    text.append(store.piece(Offset(300), 300));
    LayoutChange change(store.layout());
    measured = 0;
    int calls = 0;
    for (; !text.measure(change, oneNode); ++calls) { }
    QVERIFY(calls > 5);
    QVERIFY(calls < 80); // of its more than a hundred nodes
    QCOMPARE(measured, 80);
    text.setLayout(change);
    QVERIFY(text.isMeasuredBy(store.layout()));
    store.exchange({}, store.length(), text);
    QCOMPARE(measured, 80);
    store.checkInvariants();
    QCOMPARE(store.text(), known.first(300) + added + known.sliced(300));
}

/// A piece of the text, of which undoing may be made, shares its nodes.
void LayoutChangeTest::keptTextStaysAsItWas()
{
    const NodeSizes sizes = nodesOf(4);
    TextStore store = storeOf(u"abcdef"_s.repeated(50), ruleOf(Widths::None, 6), sizes);
    const TextPiece piece = store.piece({}, store.length());
    LayoutChange change(ruleOf(Widths::None, 40), sizes);
    QVERIFY(store.setLayout(change, all));
    store.insert(store.end(), piece);
    QCOMPARE(store.text(), u"abcdef"_s.repeated(100));
    store.checkInvariants();
    QCOMPARE(store.rowCount(), 15);
}

/// Edited, undone and redone before, between and behind the turns of a change.
void LayoutChangeTest::whatUndoingPutsBackIsMeasured()
{
    QFETCH(quint32, seed);
    RandomText random(seed, hurtingCharacters());
    const NodeSizes sizes = tinyNodes(random);
    const LayoutRule rules[] = { ruleOf(Widths::Hurting, 3 + random.below(9)),
        ruleOf(Widths::None, 3 + random.below(9), 4), ruleOf(Widths::Hurting, 0) };
    TextStore store = storeOf(random.text(300), rules[0], sizes);
    UndoHistory history(4); // further steps become one
    const auto act = [&] {
        if (random.chance(3) && history.canUndo()) {
            history.undo(store);
        } else if (random.chance(3) && history.canRedo()) {
            history.redo(store);
        } else {
            const Offset at(random.below(store.length() + 1));
            const qint64 removed = random.below(qMin<qint64>(200, store.end() - at) + 1);
            history.replace(store, at, removed, random.text(random.below(40)));
        }
    };
    const auto showsItsRows = [&] {
        store.checkInvariants();
        ModelStore model(store.layoutRule());
        model.setText(store.text());
        compareSome(store, model, random, 5);
    };
    for (int round = 1; round < 4; ++round) {
        for (int i = 0; i < 12; ++i)
            act();
        LayoutChange change(rules[round % 3], sizes);
        while (!history.measure(change, oneNode) || !store.setLayout(change, oneNode)) {
            if (random.chance(4))
                act();
        }
        history.setLayout(change);
        showsItsRows();
        while (history.canUndo() && !random.chance(5))
            history.undo(store);
        showsItsRows();
    }
}

/// Or a step that changed little would hold a text of its own.
void LayoutChangeTest::whatIsKeptGoesOnBeingShared()
{
    const NodeSizes sizes = nodesOf(4);
    TextStore store = storeOf(u"abcdef"_s.repeated(300), ruleOf(Widths::None, 6), sizes);
    UndoHistory history;
    history.replace(store, Offset(900), 3, u"new");
    QCOMPARE(history.longestText(), 1800);
    LayoutChange change(ruleOf(Widths::None, 40), sizes);
    QVERIFY(history.measure(change, all));
    QVERIFY(store.setLayout(change, all));
    history.setLayout(change);
    const TextSnapshot origin(history.origin(), {});
    const TextSnapshot now(store);
    const std::vector<TextPart> parts =
        partsOf({ now, { {}, now.end() } }, { { origin, { {}, origin.end() } } });
    qint64 own = 0;
    for (const TextPart &part : parts)
        own += part.source == TextPart::ownText ? part.length : 0;
    QVERIFY(own < 50);
    history.undo(store);
    store.checkInvariants();
    QCOMPARE(store.rowCount(), 45);
}

REGISTER_TEST(runPlainTest<LayoutChangeTest>)
#include "layoutchange_test.moc"
