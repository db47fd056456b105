#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/drawnhits.h"
#include "tests/text/textalphabet.h"
#include "tests/text/tinynodes.h"
#include "text/textsearch.h"
#include "text/textsnapshot.h"

#include <QTest>

namespace {

QStringList fewLetters()
{
    return { QStringLiteral("a"), QStringLiteral("A"), QStringLiteral("b") };
}

QStringList latinLetters()
{
    return { QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("\u00e9"),
        QStringLiteral("\u00c9"), QStringLiteral("d"), QStringLiteral("e"), QStringLiteral("f") };
}

TextStore storeInSmallLeaves(const QString &text, const LayoutRule &rule = {})
{
    TextStore store(rule, nodesOf(100));
    store.replace(Offset(0), 0, text);
    return store;
}

/// As QString::indexOf() has it: -1 where there is none.
qint64 firstHit(const TextPattern &pattern, const TextStore &store, qint64 from)
{
    return pattern.indexIn(store, { Offset(from), store.end() }).value_or(Offset(-1)).value();
}

qint64 lastHit(const TextPattern &pattern, const TextStore &store, qint64 from)
{
    return pattern.lastIndexIn(store, { {}, Offset(from) + 1 }).value_or(Offset(-1)).value();
}

} // namespace

class TextSearchTest : public QObject {
    Q_OBJECT
private slots:
    void foldsAsTheToolkit_data();
    void foldsAsTheToolkit();
    void findsWhatStringsFind_data();
    void findsWhatStringsFind();
    void findsLongPatterns_data();
    void findsLongPatterns();
    void emptyAndSeveralLines();
    void followsTheRowRules_data();
    void followsTheRowRules();
    void selectsRows_data();
    void selectsRows();
    void partsFindWhatTheWholeFinds_data();
    void partsFindWhatTheWholeFinds();
};

void TextSearchTest::foldsAsTheToolkit_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("find");
    QTest::addColumn<qint64>("at");

    const auto row = [](const char *name, const char16_t *text, const char16_t *find, qint64 at) {
        QTest::newRow(name) << QString::fromUtf16(text) << QString::fromUtf16(find) << at;
    };
    row("ascii", u"xABC", u"abc", 1);
    row("full-width letters", u"あＡＢ", u"ａｂ", 1);
    row("full width is not half width", u"ＡＢ", u"ab", -1);
    row("Kelvin sign by k", u"x\u212a", u"k", 1);
    row("k by Kelvin sign", u"xK", u"\u212a", 1);
    row("dotted capital I is not i", u"\u0130", u"i", -1);
    row("dotted capital I is itself", u"x\u0130", u"\u0130", 1);
    row("dotless i is not I", u"I", u"\u0131", -1);
    row("sharp s is not ss", u"stra\u00dfe", u"SS", -1);
    row("sharp s is itself", u"Stra\u00dfe", u"RA\u00dfE", 2);
    row("capital sharp s is sharp s", u"\u1e9e", u"\u00df", 0);
    row("micro sign by mu", u"x\u00b5", u"\u039c", 1);
    row("y with diaeresis", u"\u00ff", u"\u0178", 0);
    row("pair", u"x\U00010400", u"\U00010428", 1);
    row("half of a pair", u"x\xD801\xDC00", u"\xDC00", 2);
    row("other half", u"x\xD801\xDC00", u"\xDC28", -1);
}

void TextSearchTest::foldsAsTheToolkit()
{
    QFETCH(QString, text);
    QFETCH(QString, find);
    QFETCH(qint64, at);

    QCOMPARE(firstHit(TextPattern(find, Qt::CaseInsensitive), storeInSmallLeaves(text), 0), at);
    QCOMPARE(lastHit(TextPattern(find, Qt::CaseInsensitive), storeInSmallLeaves(text), text.size()), at);
    QCOMPARE(text.indexOf(find, 0, Qt::CaseInsensitive), at);
}

void TextSearchTest::findsWhatStringsFind_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<QStringList>("letters");
    QTest::addColumn<bool>("caseSensitive");

    for (const quint32 seed : { seedOr(1), seedOr(2) }) {
        for (const bool cs : { true, false }) {
            const auto row = [&](const char *name, const QStringList &letters) {
                QTest::addRow("%s %s case, seed %u", name, cs ? "with" : "without", seed)
                    << seed << letters << cs;
            };
            row("tricky letters", trickyLetters());
            row("few letters", fewLetters());
            row("latin letters", latinLetters());
            row("hurting characters", hurtingCharacters());
        }
    }
}

void TextSearchTest::findsWhatStringsFind()
{
    QFETCH(quint32, seed);
    QFETCH(QStringList, letters);
    QFETCH(bool, caseSensitive);
    const Qt::CaseSensitivity cs = caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive;

    RandomText random(seed, letters);
    for (int round = 0; round < 150; ++round) {
        const QString text = random.text(random.below(600));
        const TextStore store = storeInSmallLeaves(text);
        QString find = random.text(1 + random.below(5));
        if (random.chance(3) && text.size() > 200)
            find = text.mid(random.below(100), 1 + random.below(100));
        find.remove(u'\n');
        // Strings are of two minds about a text that begins with half a pair: it depends on the lengths.
        while (find.size() > 1 && find.front().isLowSurrogate())
            find.remove(0, 1);
        if (find.isEmpty())
            continue;
        const TextPattern pattern(find, cs);
        for (qint64 from = 0; from <= text.size(); from += 1 + random.below(80)) {
            QCOMPARE(firstHit(pattern, store, from), text.indexOf(find, from, cs));
            // The string's own search backwards folds halves of pairs; the last hit forwards is the measure.
            qint64 last = -1;
            for (qint64 at = -1; (at = text.indexOf(find, at + 1, cs)) >= 0 && at <= from;)
                last = at;
            QCOMPARE(lastHit(pattern, store, from), last);
        }
    }
}

void TextSearchTest::findsLongPatterns_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("find");

    const QString a(20000, u'a');
    const QString wide(20000, u'\u3042');
    QTest::newRow("a…ab in a…ab") << a + u'b' << a.left(9000) + u'b';
    QTest::newRow("a…ab in a…a") << a << a.left(9000) + u'b';
    QTest::newRow("ba…a in a…a") << a << u'b' + a.left(9000);
    QTest::newRow("ba…a in ba…a") << u'b' + a << u'b' + a.left(9000);
    QTest::newRow("a…aba…a") << a + u'b' + a << a.left(5000) + u'b' + a.left(5000);
    QTest::newRow("ab…ab") << QStringLiteral("ab").repeated(10000) + u'c'
                           << QStringLiteral("ab").repeated(3000) + u'c';
    QTest::newRow("wide") << wide + u'b' + wide << wide.left(5000) + u'b' + wide.left(5000);
    QTest::newRow("mixed") << a + wide + u'b' + a << wide.left(5000) + u'b' + a.left(5000);
    QTest::newRow("longer than the text") << a << a + u'a';
    QTest::newRow("the whole text") << a << a;
}

void TextSearchTest::findsLongPatterns()
{
    QFETCH(QString, text);
    QFETCH(QString, find);

    const TextStore store = storeInSmallLeaves(text);
    for (const auto cs : { Qt::CaseSensitive, Qt::CaseInsensitive }) {
        const TextPattern pattern(cs == Qt::CaseSensitive ? find : find.toUpper(), cs);
        QCOMPARE(firstHit(pattern, store, 0), text.indexOf(find));
        QCOMPARE(lastHit(pattern, store, text.size()), text.lastIndexOf(find));
    }
}

void TextSearchTest::emptyAndSeveralLines()
{
    const TextStore store = storeInSmallLeaves(QStringLiteral("a\nb"));
    QCOMPARE(firstHit(TextPattern(), store, 0), -1);
    for (const QString &find : { QString(), QStringLiteral("a\nb"), QStringLiteral("\n") }) {
        const TextPattern pattern(find, Qt::CaseSensitive);
        QCOMPARE(firstHit(pattern, store, 0), -1);
        QCOMPARE(lastHit(pattern, store, 3), -1);
    }
    const TextStore empty;
    QCOMPARE(firstHit(TextPattern(QStringLiteral("a"), Qt::CaseSensitive), empty, 0), -1);
    QCOMPARE(lastHit(TextPattern(QStringLiteral("a"), Qt::CaseSensitive), empty, 0), -1);
}

void TextSearchTest::followsTheRowRules_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("columns");

    for (const int columns : { 0, 1, 2, 3, 5, 8 }) {
        for (const quint32 seed : { seedOr(1), seedOr(2) })
            QTest::addRow("%d columns, seed %u", columns, seed) << seed << columns;
    }
}

void TextSearchTest::followsTheRowRules()
{
    QFETCH(quint32, seed);
    QFETCH(int, columns);

    const AdvanceTable advances(hurtingWidth);
    const LayoutRule rule{ &advances, 4 * subpixelsPerPixel, columns * subpixelsPerPixel };
    RandomText random(seed,
        { QStringLiteral("a"), QStringLiteral("A"), QStringLiteral("b"), QStringLiteral("a"),
            QStringLiteral("\u3042"), QStringLiteral("\U0001f600"), QStringLiteral("\n") });
    for (int round = 0; round < 100; ++round) {
        const QString text = random.text(random.below(40));
        const TextStore store = storeInSmallLeaves(text, rule);
        ModelStore model(rule);
        model.setText(text);
        const NaiveSearch naive(model);
        const QString find = random.text(1 + random.below(random.chance(4) ? 9 : 3)).remove(u'\n');
        if (find.isEmpty())
            continue;
        const auto cs = random.chance(2) ? Qt::CaseSensitive : Qt::CaseInsensitive;
        const TextPattern pattern(find, cs);
        for (RowIndex row; row <= store.lastRow(); ++row) {
            for (qint64 column = 0; column <= store.row(row).length; ++column) {
                const RowCol at{ row, column };
                const CursorPlace place = store.placeAt(at);
                QCOMPARE(drawn(store, findHit(store, pattern, SearchDirection::Forward, place)),
                    drawn(model, naive.forward(find, cs, at)));
                QCOMPARE(drawn(store, findHit(store, pattern, SearchDirection::Backward, place)),
                    drawn(model, naive.backward(find, cs, at)));
                if (place.offset < store.end())
                    QCOMPARE(drawn(store,
                                 findHit(store, pattern, SearchDirection::Forward, nextColumn(store, place))),
                        drawn(model, naive.forward(find, cs, { row, column + 1 })));
            }
        }
    }
}

void TextSearchTest::selectsRows_data()
{
    QTest::addColumn<bool>("backwards");
    QTest::addColumn<QString>("find");
    QTest::addColumn<qint64>("row");
    QTest::addColumn<qint64>("column");
    QTest::addColumn<QString>("expected");

    // Rows of four: 0123 4567 89ab c
    QTest::newRow("within a row") << false << "12" << qint64(0) << qint64(0) << "0,1-0,3";
    QTest::newRow("over a row end") << false << "345" << qint64(0) << qint64(0) << "0,3-1,2";
    QTest::newRow("over two row ends") << false << "345678" << qint64(0) << qint64(0) << "0,3-1,4";
    QTest::newRow("at a row start") << false << "45" << qint64(0) << qint64(0) << "0,4-1,2";
    QTest::newRow("at a row start, from there") << false << "45" << qint64(1) << qint64(0) << "1,0-1,2";
    QTest::newRow("behind a row's end") << false << "45" << qint64(0) << qint64(5) << "1,0-1,2";
    QTest::newRow("to a row's end") << false << "23" << qint64(0) << qint64(0) << "0,2-0,4";
    QTest::newRow("no hit") << false << "0" << qint64(0) << qint64(1) << "none";
    QTest::newRow("back within a row") << true << "45" << qint64(1) << qint64(4) << "1,0-1,2";
    QTest::newRow("back over a row end") << true << "345" << qint64(3) << qint64(1) << "0,3-1,2";
    QTest::newRow("back over two row ends") << true << "345678" << qint64(3) << qint64(1) << "1,3-2,1";
    QTest::newRow("back to a row's end") << true << "23" << qint64(1) << qint64(0) << "0,2-0,4";
    QTest::newRow("back from the hit's start") << true << "45" << qint64(1) << qint64(0) << "none";
    QTest::newRow("back from inside the hit") << true << "45" << qint64(1) << qint64(1) << "1,0-1,2";
    QTest::newRow("back where the hit goes on below") << true << "345" << qint64(0) << qint64(4) << "none";
    QTest::newRow("back from the start") << true << "0" << qint64(0) << qint64(0) << "none";
}

void TextSearchTest::selectsRows()
{
    QFETCH(bool, backwards);
    QFETCH(QString, find);
    QFETCH(qint64, row);
    QFETCH(qint64, column);
    QFETCH(QString, expected);

    const TextStore store = storeInSmallLeaves(
        QStringLiteral("0123456789abc"), { nullptr, 8 * subpixelsPerPixel, 4 * subpixelsPerPixel });
    QCOMPARE(store.rowCount(), 4);
    const TextPattern pattern(find, Qt::CaseSensitive);
    const bool isBehind = column > store.row(RowIndex(row)).length;
    const CursorPlace last = store.placeAt({ RowIndex(row), isBehind ? column - 1 : column });
    const CursorPlace start = isBehind ? nextColumn(store, last) : last;
    const auto direction = backwards ? SearchDirection::Backward : SearchDirection::Forward;
    const auto hit = findHit(store, pattern, direction, start);
    QCOMPARE(drawn(store, hit), expected);
}

void TextSearchTest::partsFindWhatTheWholeFinds_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<QStringList>("letters");
    QTest::addColumn<SearchDirection>("direction");
    for (const quint32 seed : { seedOr(1), seedOr(2) }) {
        for (const auto direction : { SearchDirection::Forward, SearchDirection::Backward }) {
            const char *const way = direction == SearchDirection::Forward ? "forward" : "backward";
            QTest::addRow("few letters %s, seed %u", way, seed) << seed << fewLetters() << direction;
            QTest::addRow("tricky letters %s, seed %u", way, seed) << seed << trickyLetters() << direction;
        }
    }
}

/// However the text is cut, and whether it is the store or a snapshot of it that is searched.
void TextSearchTest::partsFindWhatTheWholeFinds()
{
    QFETCH(quint32, seed);
    QFETCH(QStringList, letters);
    QFETCH(SearchDirection, direction);
    RandomText random(seed, letters);
    for (int round = 0; round < 60; ++round) {
        // Long ones of few letters have so many alike places that they are searched unit by unit.
        const QString text = random.text(random.below(random.chance(4) ? 9000 : 300));
        const TextStore store = storeInSmallLeaves(text);
        const TextSnapshot snapshot(store);
        const QString find = random.text(1 + random.below(random.chance(3) ? 60 : 4)).remove(u'\n');
        const auto cs = random.chance(2) ? Qt::CaseSensitive : Qt::CaseInsensitive;
        const TextPattern pattern(find, cs);
        const CursorPlace start{ Offset(random.below(text.size() + 1)) };
        const auto whole = findHit(store, pattern, direction, start);
        TextRange rest = searchedRange(store, pattern, direction, start);
        std::optional<Offset> begin;
        while (!begin && !rest.isEmpty()) {
            const TextRange part = takeFirst(rest, direction, 1 + random.below(150));
            begin = random.chance(2) ? beginOfHit(store, pattern, direction, part)
                                     : beginOfHit(snapshot, pattern, direction, part);
        }
        QCOMPARE(begin.has_value(), whole.has_value());
        if (begin)
            QCOMPARE(drawn(store, hitAt(store, pattern, direction, start, *begin)), drawn(store, whole));
    }
}

REGISTER_TEST(runPlainTest<TextSearchTest>)
#include "textsearch_test.moc"
