#include "text/graphemes.h"
#include "text/textstore.h"

#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/modelstore.h"
#include "tests/text/storecompare.h"
#include "tests/text/textalphabet.h"
#include "tests/text/tinynodes.h"

#include <QTest>

namespace {

LayoutRule ruleOf(Subpixels limitPixels)
{
    static const AdvanceTable widths(hurtingWidth);
    return { &widths, 3 * subpixelsPerPixel, limitPixels * subpixelsPerPixel };
}

void compare(const TextStore &store, const ModelStore &model)
{
    store.checkInvariants();
    QCOMPARE(store.text(), model.text());
    QCOMPARE(store.rowCount(), qint64(model.rows().size()));
    for (RowIndex row; row <= store.lastRow(); ++row) {
        const TextStore::Row place = store.row(row);
        QCOMPARE(place.start, model.row(row).start);
        QCOMPARE(place.length, model.row(row).length);
        QCOMPARE(store.rowColAt(place.start).row, row);
        const qint64 step = row.value() % 8 == 0 ? 1 : qMax<qint64>(1, place.length);
        for (qint64 column = 0; column <= place.length; column += step)
            QCOMPARE(store.xAt({ row, column }), model.xAt({ row, column }));
    }
    const Subpixels exact = model.widestRow();
    QVERIFY(store.widestRow() >= exact);
    QVERIFY(store.widestRow() <= qMax(exact, qMax(model.layoutRule().limit, model.layoutRule().tabStop)));
}

/// A store and its model, changed alike.
struct WrappedPair {
    WrappedPair(const LayoutRule &rule, const NodeSizes &sizes)
        : store(rule, sizes)
        , model(rule)
    {
    }
    void replace(qint64 offset, qint64 removed, const QString &inserted)
    {
        store.replace(Offset(offset), removed, inserted);
        model.replace(Offset(offset), removed, inserted);
    }
    /// Cuts what is longer than a leaf must keep whole: characters, and flags in a row.
    void shorten(qint64 longest)
    {
        const std::vector<qsizetype> boundaries = graphemeBoundaries(model.text());
        qsizetype start = 0;
        for (std::size_t i = 1; i < boundaries.size(); ++i) {
            const char16_t unit = model.text().at(boundaries[i - 1]).unicode();
            const bool isFlag = unit == 0xd83c;
            if (!isFlag)
                start = boundaries[i - 1];
            if (boundaries[i] - start > longest) {
                replace(start, boundaries[i] - start, QStringLiteral("a"));
                return shorten(longest);
            }
            if (!isFlag)
                start = boundaries[i];
        }
    }

    TextStore store;
    ModelStore model;
};

} // namespace

class TextWrappingTest : public QObject {
    Q_OBJECT

private slots:
    void rows_data();
    void rows();
    void plainLines_data();
    void plainLines();
    void randomEdits_data();
    void randomEdits();
    void builderCuts();
    void seams_data();
    void seams();
    void endlessCharacters_data();
    void endlessCharacters();
};

void TextWrappingTest::rows_data()
{
    QTest::addColumn<Subpixels>("limit");
    QTest::addColumn<QString>("drawn");

    QTest::newRow("spacing mark takes its letter along") << Subpixels(3) << "aa/a\ua823a/a";
    QTest::newRow("several marks") << Subpixels(3) << "aa/b\ua823\u0301\ua823/a";
    QTest::newRow("Devanagari") << Subpixels(3) << "\u0939\u093f/\u0928\u094d/\u0926\u0940";
    QTest::newRow("Thai AM") << Subpixels(3) << "\u0e01\u0e01/\u0e19\u0e33\u0e01";
    QTest::newRow("flags") << Subpixels(3)
                           << "a\U0001f1eb\U0001f1f7\U0001f1ef\U0001f1f5/\U0001f1eb\U0001f1f7a";
    QTest::newRow("family is as wide as its first member")
        << Subpixels(4) << "aa\U0001f600\u200d\U0001f600\u200d\U0001f600/\U0001f600";
    QTest::newRow("couple with a heart")
        << Subpixels(3) << "aa/\U0001f600\u200d\u2764\ufe0f\u200d\U0001f600a";
    QTest::newRow("syllable of parts") << Subpixels(3) << "aa/\u1100\u1161\u11a8/\u1100";
    QTest::newRow("number sign and digit") << Subpixels(3) << "aa/\u06001a";
    QTest::newRow("character wider than a row") << Subpixels(2) << "a/b\ua823\ua823/a";
    QTest::newRow("mark begins a line") << Subpixels(2) << "aa|\ua823/a\ua823";
    QTest::newRow("mark behind a tab") << Subpixels(4) << "a\t\ua823/a";
}

void TextWrappingTest::rows()
{
    QFETCH(const Subpixels, limit);
    QFETCH(const QString, drawn);
    QString text = drawn;
    text.remove(u'/').replace(u'|', u'\n');
    for (const int capacity : { 64, 4096 }) {
        QCOMPARE(drawRows(storeOf(text, ruleOf(limit), nodesOf(capacity))), drawn);
        const QString before = QString(61, u'a') + u'\n';
        QCOMPARE(drawRows(storeOf(before + text, ruleOf(limit), nodesOf(capacity))).section(u'|', 1), drawn);
    }
}

void TextWrappingTest::plainLines_data()
{
    QTest::addColumn<Subpixels>("limit");
    QTest::addColumn<int>("leafUnits");
    for (const Subpixels limit : { 0, 1, 7, 80 }) {
        for (const int leafUnits : { 64, 4096 })
            QTest::addRow("limit %lld, leaf %d", limit, leafUnits) << limit << leafUnits;
    }
}

/// Letters of one width and LFs, about as many as there is room for in a row, or in several.
void TextWrappingTest::plainLines()
{
    QFETCH(const Subpixels, limit);
    QFETCH(const int, leafUnits);
    QRandomGenerator random(seedOr(20261123));
    const LayoutRule rule{ nullptr, 3 * subpixelsPerPixel, limit * subpixelsPerPixel };
    WrappedPair pair(rule, nodesOf(leafUnits));
    const qint64 room = qMax<qint64>(limit, 5);
    for (int edit = 0; edit < 30; ++edit) {
        QString lines;
        for (int line = 0; line < 10; ++line) {
            const qint64 length = room * random.bounded(3) + random.bounded(-1, 2);
            lines += QString(qMax<qint64>(0, length), u'a') + u'\n';
        }
        if (edit == 20)
            lines += QString(leafUnits, u'\n') + QString(2 * leafUnits, u'b');
        pair.replace(random.bounded(pair.store.length() + 1), 0, lines);
    }
    compare(pair.store, pair.model);
    compare(storeOf(pair.model.text(), rule, nodesOf(leafUnits)), pair.model);
}

void TextWrappingTest::randomEdits_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("capacity");
    QTest::addColumn<Subpixels>("limit");

    quint32 seed = 1;
    for (const int capacity : { 32, 64 }) {
        for (const Subpixels limit : { 1, 3, 7, 80 }) {
            for (int i = 0; i < 4; ++i, ++seed)
                QTest::addRow("seed %u, leaf %d, limit %lld", seedOr(seed), capacity, limit)
                    << seedOr(seed) << capacity << limit;
        }
    }
}

void TextWrappingTest::randomEdits()
{
    QFETCH(const quint32, seed);
    QFETCH(const int, capacity);
    QFETCH(const Subpixels, limit);

    RandomText random(seed, joiningCharacters() + hurtingCharacters() + hurtingCharacters());
    WrappedPair pair(ruleOf(limit), nodesOf(capacity));
    for (int step = 0; step < 60 && !QTest::currentTestFailed(); ++step) {
        const bool isLarge = random.chance(6);
        const qint64 offset = random.below(pair.model.length() + 1);
        const qint64 most = isLarge && pair.model.length() > 400 ? 300 : random.below(5);
        pair.replace(
            offset, qMin(most, pair.model.length() - offset), random.text(random.below(isLarge ? 120 : 4)));
        pair.shorten(capacity / 4);
        compare(pair.store, pair.model);
    }
    if (QTest::currentTestFailed())
        return;
    compare(storeOf(pair.model.text(), pair.model.layoutRule(), nodesOf(capacity)), pair.model);
}

/// A text comes in blocks, in bytes where it can, and is cut anywhere.
void TextWrappingTest::builderCuts()
{
    const QString text =
        QStringLiteral("abcdefghijklmno\u0301qrstuvwxyzabcde\u0301\U0001f600\u200d\u2764ab\n"
                       "\U0001f1eb\U0001f1f7\U0001f1eb\U0001f1f7\U0001f1eb\U0001f1f7aa\ua823b");
    ModelStore model(ruleOf(5));
    model.setText(text);
    for (qsizetype first = 0; first <= text.size(); ++first) {
        TextStore::Builder builder(ruleOf(5), nodesOf(16));
        const auto append = [&](QStringView part) {
            const QByteArray bytes = part.toLatin1();
            QLatin1StringView(bytes) == part ? builder.append(QByteArrayView(bytes)) : builder.append(part);
        };
        append(QStringView(text).first(first));
        append(QStringView(text).sliced(first));
        const TextStore store = builder.finish();
        compare(store, model);
    }
}

void TextWrappingTest::seams_data()
{
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("inserted");
    QTest::addColumn<QString>("right");

    QTest::newRow("mark meets a letter") << "a" << QString() << "\ua823";
    QTest::newRow("joiner between two emoji") << "\U0001f600"
                                              << "\u200d"
                                              << "\U0001f600";
    QTest::newRow("emoji behind a joiner") << "\U0001f600\u200d"
                                           << "\U0001f600" << QString();
    QTest::newRow("letter of a flag") << "\U0001f1eb"
                                      << "\U0001f1f7"
                                      << "\U0001f1eb";
    QTest::newRow("letters of flags change partners") << "\U0001f1eb\U0001f1f7"
                                                      << "\U0001f1eb"
                                                      << "\U0001f1eb\U0001f1f7";
    QTest::newRow("syllable put together") << "\u1100" << QString() << "\u1161\u11a8";
    QTest::newRow("number sign put before a digit") << QString() << "\u0600"
                                                    << "1";
    QTest::newRow("skin tone") << "\U0001f44d"
                               << "\U0001f3fd"
                               << "a";
}

/// Wherever leaves end, an edit that makes or parts a character is seen by the rows; undoing it as well.
void TextWrappingTest::seams()
{
    QFETCH(const QString, left);
    QFETCH(const QString, inserted);
    QFETCH(const QString, right);
    for (int before = 8; before < 40; ++before) {
        const QString text = QString(before, u'a') + left + QStringLiteral("--") + right + QString(30, u'b');
        const qint64 at = before + left.size();
        WrappedPair pair(ruleOf(3), nodesOf(16));
        pair.replace(0, 0, text);
        pair.replace(at, 2, inserted);
        compare(pair.store, pair.model);
        pair.replace(at, inserted.size(), QStringLiteral("-"));
        compare(pair.store, pair.model);
        pair.replace(at, 1, {});
        compare(pair.store, pair.model);
    }
}

void TextWrappingTest::endlessCharacters_data()
{
    QTest::addColumn<QString>("unit");
    QTest::newRow("combining marks") << "\u0301";
    QTest::newRow("spacing marks") << "\ua823";
    QTest::newRow("joiners") << "\u200d";
    QTest::newRow("joined emoji") << "\u200d\U0001f600";
    QTest::newRow("letters of flags") << "\U0001f1eb";
    QTest::newRow("consonants without a vowel") << "\u1100";
}

/// Leaves keep their size and edits their cost however long one character is; nothing but pairs is kept whole
/// then.
void TextWrappingTest::endlessCharacters()
{
    QFETCH(const QString, unit);
    constexpr int count = 100000;
    const QString text = QStringLiteral("a") + unit.repeated(count) + QStringLiteral("b\nc");
    TextStore store = storeOf(text, ruleOf(10));
    for (int i = 0; i < 200; ++i) {
        store.replace(Offset(1 + i * unit.size()), 0, unit);
        store.replace(Offset(store.length() / 2), 0, u"x");
        store.replace(Offset(store.length() / 2), 1, {});
    }
    store.checkInvariants();
    QCOMPARE(store.length(), text.size() + 200 * unit.size());
    QCOMPARE(store.text(Offset(1), 200 * unit.size()), unit.repeated(200));
    for (Offset offset; offset < store.end();) {
        const TextChunk chunk = store.chunkAt(offset);
        QVERIFY(chunk.size() <= 4096);
        QVERIFY(chunk.isLatin1() || !chunk.utf16.front().isLowSurrogate());
        offset += chunk.size();
    }
    Offset next;
    for (RowIndex row; row <= store.lastRow(); ++row) {
        QCOMPARE(store.row(row).start, next);
        next += store.row(row).length + (store.row(row).endsLine ? 1 : 0);
    }
    QCOMPARE(next - 1, store.end());
}

REGISTER_TEST(runCoreTest<TextWrappingTest>)
#include "textwrapping_test.moc"
