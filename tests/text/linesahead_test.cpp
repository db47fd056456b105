#include "text/linesahead.h"

#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/storecompare.h"
#include "text/layoutchange.h"
#include "text/textlayout.h"
#include "text/undohistory.h"

#include <vector>

using namespace Qt::StringLiterals;

namespace {

TextRange rangeOfLines(const TextStore &store, LineIndex first, LineIndex last)
{
    return { store.lineStart(first), store.lineEnd(last) };
}

/// Whole lines, drawn at random.
TextRange someLines(const TextStore &store, RandomText &random)
{
    const LineIndex first(random.below(store.lineCount()));
    const LineIndex last = first + random.below(qMin<qint64>(5, store.lastLine() - first + 1));
    return rangeOfLines(store, first, last);
}

/// The plain reference: three texts, each laid out by itself, of which the second one stands ahead.
class ThreeTexts {
public:
    ThreeTexts(const QString &text, TextRange ahead, const LayoutRule &rule, const LayoutRule &aheadRule)
        : m_text(text)
        , m_ahead(ahead)
        , m_rule(rule)
        , m_aheadRule(aheadRule)
    {
        if (ahead.start > Offset())
            add({}, ahead.start - 1, rule);
        add(ahead.start, ahead.end, aheadRule);
        if (ahead.end < Offset(text.size()))
            add(ahead.end + 1, Offset(text.size()), rule);
    }

    void compare(const TextStore &store) const
    {
        store.checkInvariants();
        QCOMPARE(store.text(), m_text);
        QVERIFY(store.linesAhead() == m_ahead);
        RowIndex row;
        for (const Part &part : m_parts) {
            for (RowIndex at; at <= part.model.lastRow() && !QTest::currentTestFailed(); ++at, ++row)
                compareRowOf(store, part, at, row);
        }
        QCOMPARE(store.rowCount(), row.value());
        compareWidth(store);
    }

private:
    struct Part {
        Offset start;
        ModelStore model;
    };

    void add(Offset from, Offset to, const LayoutRule &rule)
    {
        Part part{ from, ModelStore(rule) };
        part.model.setText(m_text.sliced(from.value(), to - from));
        m_parts.push_back(part);
    }

    void compareRowOf(const TextStore &store, const Part &part, RowIndex inPart, RowIndex row) const
    {
        TextStore::Row expected = part.model.row(inPart);
        const LineIndex line = part.model.lineAt(expected.start);
        expected.start += part.start.value();
        compareRow(store.row(row), expected);
        const LineIndex lineOfAll = store.lineAt(part.start) + line.value();
        QCOMPARE(lineOfRow(store, row), lineOfAll);
        const RowIndex lineRow = part.model.rowAt(part.model.lineStart(line));
        QCOMPARE(rowOfLine(store, lineOfAll), row - (inPart - lineRow));
        const bool isRowsEnd = expected.endsLine;
        for (qint64 column = 0; column < expected.length + (isRowsEnd ? 1 : 0); ++column)
            compareColumnOf(store, part, inPart, { row, column });
        for (Subpixels x = -64; x < 1024; x += 96)
            QCOMPARE(store.columnAt(row, x), part.model.columnAt(inPart, x));
    }

    void compareColumnOf(const TextStore &store, const Part &part, RowIndex inPart, RowCol place) const
    {
        const Offset offset = store.row(place.row).start + place.column;
        QCOMPARE(store.rowColAt(offset), place);
        QCOMPARE(store.placeAt(place).offset, offset);
        QCOMPARE(store.xAt(place), part.model.xAt({ inPart, place.column }));
        QCOMPARE(store.layoutAt(offset).rule(), part.model.layoutRule());
    }

    /// Where nothing is wrapped, that of the rows before counts too.
    void compareWidth(const TextStore &store) const
    {
        ModelStore ahead(m_aheadRule);
        ahead.setText(m_text.sliced(m_ahead.start.value(), m_ahead.length()));
        if (m_aheadRule.limit > 0)
            return compareWidest(store, ahead);
        ModelStore before(m_rule);
        before.setText(m_text);
        if (m_rule.limit == 0)
            QCOMPARE(store.widestRow(), qMax(ahead.widestRow(), before.widestRow()));
    }

    QString m_text;
    TextRange m_ahead;
    LayoutRule m_rule;
    LayoutRule m_aheadRule;
    std::vector<Part> m_parts;
};

/// Where the lines ahead are after an edit that `text` comes of: those that it touches are.
TextRange rangeAfter(TextRange ahead, const TextChange &change, const QString &text)
{
    const qint64 growth = change.inserted - change.removed;
    const Offset changeEnd = change.offset + change.removed;
    if (change.offset > ahead.end)
        return ahead;
    if (changeEnd < ahead.start)
        return { ahead.start + growth, ahead.end + growth };
    const Offset from = qMin(ahead.start, change.offset);
    const Offset to = qMax(ahead.end, changeEnd) + growth;
    const qint64 lineEnd = text.indexOf(u'\n', to.value());
    return { from == Offset() ? from : Offset(text.lastIndexOf(u'\n', from.value() - 1) + 1),
        Offset(lineEnd < 0 ? text.size() : lineEnd) };
}

LayoutRule someRule(RandomText &random)
{
    return ruleOf(random.chance(2) ? Widths::Hurting : Widths::None,
        random.chance(3) ? 0 : 3 + random.below(9), 2 + random.below(8));
}

} // namespace

/// Lines that have another layout than the rest of the text.
class LinesAheadTest : public QObject {
    Q_OBJECT

private slots:
    void isShownAmongTheOthers_data();
    void isShownAmongTheOthers();
    void goesAlongWithAnEdit_data();
    void goesAlongWithAnEdit();
    void isAsThreeTexts_data() { addSeeds(80); }
    void isAsThreeTexts();
    void isNoMoreWhenAllIsLaidOut_data() { addSeeds(50); }
    void isNoMoreWhenAllIsLaidOut();
    void isNoMoreWhereItGrowsTooLong_data();
    void isNoMoreWhereItGrowsTooLong();
    void saysHowWideItIsWhereItWraps();
};

void LinesAheadTest::isShownAmongTheOthers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("firstLine");
    QTest::addColumn<int>("lastLine");
    QTest::addColumn<int>("limit");
    QTest::addColumn<int>("limitAhead");
    QTest::addColumn<QString>("rows");
    const QString three = u"abcdef\nghijkl\nmnopqr"_s;
    QTest::newRow("at the start") << three << 0 << 0 << 4 << 3 << u"abc/def|ghij/kl|mnop/qr"_s;
    QTest::newRow("in the middle") << three << 1 << 1 << 4 << 3 << u"abcd/ef|ghi/jkl|mnop/qr"_s;
    QTest::newRow("at the end") << three << 2 << 2 << 4 << 3 << u"abcd/ef|ghij/kl|mno/pqr"_s;
    QTest::newRow("the whole text") << three << 0 << 2 << 4 << 2 << u"ab/cd/ef|gh/ij/kl|mn/op/qr"_s;
    QTest::newRow("wrapped among rows that are not")
        << three << 1 << 1 << 0 << 3 << u"abcdef|ghi/jkl|mnopqr"_s;
    QTest::newRow("not wrapped among rows that are")
        << three << 1 << 1 << 4 << 0 << u"abcd/ef|ghijkl|mnop/qr"_s;
    QTest::newRow("an empty last line") << u"abcdef\n"_s << 1 << 1 << 4 << 3 << u"abcd/ef|"_s;
    QTest::newRow("before an empty last line") << u"abcdef\n"_s << 0 << 0 << 4 << 3 << u"abc/def|"_s;
    QTest::newRow("empty lines") << u"\n\n\n"_s << 1 << 2 << 4 << 3 << u"|||"_s;
    QTest::newRow("an empty text") << QString() << 0 << 0 << 4 << 3 << QString();
    QTest::newRow("one long line") << u"abcdefghij"_s << 0 << 0 << 4 << 3 << u"abc/def/ghi/j"_s;
}

void LinesAheadTest::isShownAmongTheOthers()
{
    QFETCH(QString, text);
    QFETCH(int, firstLine);
    QFETCH(int, lastLine);
    QFETCH(int, limit);
    QFETCH(int, limitAhead);
    for (const int leafUnits : { 4, 64 }) {
        const NodeSizes sizes = nodesOf(leafUnits);
        const LayoutRule rule = ruleOf(Widths::None, limit);
        const LayoutRule aheadRule = ruleOf(Widths::None, limitAhead);
        TextStore store = storeOf(text, rule, sizes);
        const QString before = drawRows(store);
        const TextRange lines = rangeOfLines(store, LineIndex(firstLine), LineIndex(lastLine));
        store.layOutAhead(lines, TextLayout(aheadRule, sizes));
        QTEST(drawRows(store), "rows");
        QCOMPARE(store.layoutRule(), rule);
        ThreeTexts(text, lines, rule, aheadRule).compare(store);
        store.dropAhead();
        QCOMPARE(drawRows(store), before);
        QVERIFY(!store.linesAhead());
    }
}

void LinesAheadTest::goesAlongWithAnEdit_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("removed");
    QTest::addColumn<QString>("inserted");
    QTest::addColumn<QString>("rows");
    // Of "abcdef|ghi/jkl|mnopqr", the middle line of which is ahead.
    QTest::newRow("in it") << 9 << 1 << u"x\ny"_s << u"abcdef|ghx|yjk/l|mnopqr"_s;
    QTest::newRow("at its start") << 7 << 0 << u"xy"_s << u"abcdef|xyg/hij/kl|mnopqr"_s;
    QTest::newRow("at its end") << 13 << 0 << u"xy"_s << u"abcdef|ghi/jkl/xy|mnopqr"_s;
    QTest::newRow("all of it") << 7 << 6 << QString() << u"abcdef||mnopqr"_s;
    QTest::newRow("before it") << 2 << 1 << u"x\ny"_s << u"abx|ydef|ghi/jkl|mnopqr"_s;
    QTest::newRow("behind it") << 14 << 2 << u"x\nyyyy"_s << u"abcdef|ghi/jkl|x|yyyyopqr"_s;
    QTest::newRow("before the LF before it") << 6 << 0 << u"xy"_s << u"abcdefxy|ghi/jkl|mnopqr"_s;
    QTest::newRow("the LF before it") << 6 << 1 << QString() << u"abc/def/ghi/jkl|mnopqr"_s;
    QTest::newRow("the LF at its end") << 13 << 1 << QString() << u"abcdef|ghi/jkl/mno/pqr"_s;
    QTest::newRow("from before it") << 4 << 5 << u"x"_s << u"abc/dxi/jkl|mnopqr"_s;
    QTest::newRow("to behind it") << 11 << 5 << u"x"_s << u"abcdef|ghi/jxo/pqr"_s;
    QTest::newRow("more than it") << 4 << 12 << u"x\ny"_s << u"abc/dx|yop/qr"_s;
    QTest::newRow("everything") << 0 << 20 << QString() << QString();
}

void LinesAheadTest::goesAlongWithAnEdit()
{
    QFETCH(int, offset);
    QFETCH(int, removed);
    QFETCH(QString, inserted);
    const NodeSizes sizes = nodesOf(4);
    TextStore store = storeOf(u"abcdef\nghijkl\nmnopqr"_s, {}, sizes);
    const LayoutRule aheadRule = ruleOf(Widths::None, 3);
    store.layOutAhead({ Offset(7), Offset(13) }, TextLayout(aheadRule, sizes));
    store.replace(Offset(offset), removed, inserted);
    QTEST(drawRows(store), "rows");
    const TextRange lines =
        rangeAfter({ Offset(7), Offset(13) }, { Offset(offset), removed, inserted.size() }, store.text());
    ThreeTexts(store.text(), lines, {}, aheadRule).compare(store);
}

void LinesAheadTest::isAsThreeTexts()
{
    QFETCH(quint32, seed);
    RandomText random(seed, hurtingCharacters());
    const NodeSizes sizes = nodesOf(4 + int(random.below(8)));
    const LayoutRule rule = someRule(random), aheadRule = someRule(random);
    const TextLayout aheadLayout(aheadRule, sizes);
    TextStore store = storeOf(random.text(random.below(200)), rule, sizes);
    UndoHistory history(4); // further steps become one
    TextRange ahead;
    const auto layOutSome = [&] {
        ahead = someLines(store, random);
        store.layOutAhead(ahead, aheadLayout);
    };
    const auto follow = [&](const TextChange &change) { ahead = rangeAfter(ahead, change, store.text()); };
    const auto edit = [&] {
        const Offset at(random.below(store.length() + 1));
        const qint64 removed = random.below(qMin<qint64>(30, store.end() - at) + 1);
        const QString typed = random.text(random.below(8));
        const Offset from(random.below(store.length() + 1));
        const TextPiece piece = store.piece(from, random.below(qMin<qint64>(60, store.end() - from) + 1));
        const bool isTyped = random.chance(2);
        if (isTyped)
            history.replace(store, at, removed, typed);
        else
            history.replace(store, at, removed, piece);
        follow({ at, removed, isTyped ? typed.size() : piece.length() });
    };
    layOutSome();
    for (int step = 0; step < 40 && !QTest::currentTestFailed(); ++step) {
        if (random.chance(6)) {
            layOutSome();
        } else if (random.chance(5) && history.canUndo()) {
            history.undo(store);
            layOutSome(); // a step may be several edits, and steps that became one exchange all of the text
        } else if (random.chance(5) && history.canRedo()) {
            history.redo(store);
            layOutSome();
        } else {
            edit();
        }
        if (random.chance(3))
            ThreeTexts(store.text(), ahead, rule, aheadRule).compare(store);
    }
    history.clear();
    const Offset seam = store.end();
    TextStore more = storeOf(random.text(random.below(50)), rule, sizes);
    const qint64 added = more.length();
    store.append(std::move(more));
    follow({ seam, 0, added });
    ThreeTexts(store.text(), ahead, rule, aheadRule).compare(store);
}

/// Edited and undone meanwhile.
void LinesAheadTest::isNoMoreWhenAllIsLaidOut()
{
    QFETCH(quint32, seed);
    RandomText random(seed, hurtingCharacters());
    const NodeSizes sizes = nodesOf(4 + int(random.below(8)));
    const LayoutRule after = someRule(random);
    TextStore store = storeOf(random.text(300), someRule(random), sizes);
    UndoHistory history(3);
    LayoutChange change(after, sizes);
    const QDeadlineTimer oneNode(0);
    const auto goOn = [&] { return history.measure(change, oneNode) && store.setLayout(change, oneNode); };
    while (!goOn()) {
        if (random.chance(3))
            store.layOutAhead(someLines(store, random), change.layout());
        if (random.chance(4)) {
            const Offset at(random.below(store.length() + 1));
            history.replace(store, at, random.below(qMin<qint64>(60, store.end() - at) + 1), random.text(9));
        }
        if (random.chance(8) && history.canUndo())
            history.undo(store);
    }
    history.setLayout(change);
    QVERIFY(!store.linesAhead());
    ModelStore model(after);
    model.setText(store.text());
    compareSome(store, model, random, 20);
}

void LinesAheadTest::isNoMoreWhereItGrowsTooLong_data()
{
    QTest::addColumn<bool>("isTyped");
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("removed");
    QTest::newRow("typed in it") << true << 2 << 1;
    QTest::newRow("pasted in it") << false << 2 << 1;
    QTest::newRow("typed across its end") << true << 2 << 3;
    QTest::newRow("pasted at its end") << false << 3 << 0;
}

/// The bound is that of what may be laid out at once.
void LinesAheadTest::isNoMoreWhereItGrowsTooLong()
{
    QFETCH(bool, isTyped);
    QFETCH(int, offset);
    QFETCH(int, removed);
    TextStore store = storeOf(u"abc\ndef"_s);
    const TextLayout layout(ruleOf(Widths::None, 3), store.layout().sizes());
    const QString longLine(TextStore::mostAhead, u'x');
    store.layOutAhead({ {}, Offset(3) }, layout);
    if (isTyped)
        store.replace(Offset(offset), removed, longLine);
    else
        store.exchange(Offset(offset), removed, TextPiece(longLine));
    QVERIFY(!store.linesAhead());
    QCOMPARE(store.rowCount(), store.lineCount());
    store.checkInvariants();
}

/// The others, which are not wrapped yet, say nothing of how wide the text will be.
void LinesAheadTest::saysHowWideItIsWhereItWraps()
{
    TextStore store = storeOf(u"abcdefghij\nabcdef\nab"_s);
    const NodeSizes sizes = store.layout().sizes();
    const auto widest = [&](Subpixels limit) {
        store.layOutAhead({ Offset(11), Offset(17) }, TextLayout(ruleOf(Widths::None, limit), sizes));
        return store.widestRow() / subpixelsPerPixel;
    };
    QCOMPARE(widest(3), 3);
    QCOMPARE(widest(0), 10);
}

REGISTER_TEST(runPlainTest<LinesAheadTest>)
#include "linesahead_test.moc"
