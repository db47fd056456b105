#include "tests/testprogram.h"
#include "tests/text/chunktext.h"
#include "tests/text/storecompare.h"

using namespace Qt::StringLiterals;

class TextStoreTest : public QObject {
    Q_OBJECT

private slots:
    void emptyStore();
    void rows_data();
    void rows();
    void columnAt_data();
    void columnAt();
    void builderCuts();
    void builderStartsAnew();
    void narrowLeaves();
    void chunks();
    void pairsStayWhole_data();
    void pairsStayWhole();
    void sharedPiecesKeepTheirText();
    void manyPiecesJoined();
    void billionsOfRows();
    void billionsOfColumns();
    void movedStore();
};

void TextStoreTest::emptyStore()
{
    const TextStore store(ruleOf(Widths::Hurting, 3));
    compareAll(store, ModelStore(ruleOf(Widths::Hurting, 3)));
    QCOMPARE(store.rowCount(), 1);
    QVERIFY(store.row(RowIndex(0)).endsLine);
    QCOMPARE(store.text(), QString());
}

void TextStoreTest::rows_data()
{
    QTest::addColumn<Subpixels>("limit");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("drawn");

    QTest::newRow("no wrap, two lines") << Subpixels(0) << "aaaa\nbb"
                                        << "aaaa|bb";
    QTest::newRow("LF at the end makes an empty last row") << Subpixels(0) << "a\n"
                                                           << "a|";
    QTest::newRow("aaa/aaa/a") << Subpixels(3) << "aaaaaaa"
                               << "aaa/aaa/a";
    QTest::newRow("full row, then LF: no row more") << Subpixels(3) << "aaa\nb"
                                                    << "aaa|b";
    QTest::newRow("full row at the end: no row more") << Subpixels(3) << "aaaaaa"
                                                      << "aaa/aaa";
    QTest::newRow("a wide one does not fit the rest") << Subpixels(3) << "aaWWa"
                                                      << "aa/W/Wa";
    QTest::newRow("at least one character") << Subpixels(1) << "WaW"
                                            << "W/a/W";
    QTest::newRow("pair stays whole") << Subpixels(3) << "aa\U0001f600a"
                                      << "aa/\U0001f600a";
    QTest::newRow("pair wider than the row") << Subpixels(1) << "\U0001f600\U0001f600"
                                             << "\U0001f600/\U0001f600";
    QTest::newRow("mark stays with a full row") << Subpixels(3) << "aaa\u0301a"
                                                << "aaa\u0301/a";
    QTest::newRow("mark stays with a character too wide") << Subpixels(1) << "W\u0301a"
                                                          << "W\u0301/a";
    QTest::newRow("mark first takes no place") << Subpixels(1) << "\u0301Wa"
                                               << "\u0301W/a";
    QTest::newRow("tab beyond the limit") << Subpixels(3) << "a\tb"
                                          << "a/\t/b";
    QTest::newRow("tab to the limit") << Subpixels(8) << "a\tb"
                                      << "a\t/b";
    QTest::newRow("tab counts from the row's start") << Subpixels(10) << "aaaaaaaaaaaa\tb"
                                                     << "aaaaaaaaaa/aa\tb";
}

void TextStoreTest::rows()
{
    QFETCH(const Subpixels, limit);
    QFETCH(const QString, text);
    QFETCH(const QString, drawn);
    for (const int capacity : { 4, 5, 4096 }) {
        const TextStore store = storeOf(text, ruleOf(Widths::Hurting, limit), nodesOf(capacity));
        QCOMPARE(drawRows(store), drawn);
        ModelStore model(ruleOf(Widths::Hurting, limit));
        model.setText(text);
        compareAll(store, model);
    }
}

void TextStoreTest::columnAt_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Subpixels>("x");
    QTest::addColumn<qint64>("column");

    QTest::newRow("left of the row") << "aWa" << Subpixels(-1) << qint64(0);
    QTest::newRow("first pixel") << "aWa" << Subpixels(0) << qint64(0);
    QTest::newRow("last part of the first") << "aWa" << Subpixels(63) << qint64(0);
    QTest::newRow("edge belongs to the next") << "aWa" << Subpixels(64) << qint64(1);
    QTest::newRow("behind the row") << "aWa" << Subpixels(999) << qint64(3);
    QTest::newRow("inside a tab") << "a\tb" << Subpixels(8 * 64 - 1) << qint64(1);
    QTest::newRow("at the tab stop") << "a\tb" << Subpixels(8 * 64) << qint64(2);
    QTest::newRow("right half of a pair") << "\U0001f600a" << Subpixels(100) << qint64(0);
    QTest::newRow("behind a pair") << "\U0001f600a" << Subpixels(128) << qint64(2);
    QTest::newRow("behind a mark") << "a\u0301b" << Subpixels(64) << qint64(2);
}

void TextStoreTest::columnAt()
{
    QFETCH(const QString, text);
    QFETCH(const Subpixels, x);
    QFETCH(const qint64, column);
    QCOMPARE(storeOf(text, ruleOf(Widths::Hurting, 0)).columnAt(RowIndex(0), x), column);
}

void TextStoreTest::builderCuts()
{
    const QString text = QStringLiteral("ab\U0001f600\nc\U0001f600\U0001f600W\u3042\u00ff\tx");
    const LayoutRule rule = ruleOf(Widths::Hurting, 3);
    ModelStore model(rule);
    model.setText(text);
    for (qsizetype first = 0; first <= text.size(); ++first) {
        for (qsizetype second = first; second <= text.size(); ++second) {
            TextStore::Builder builder(rule, nodesOf(4));
            builder.append(QStringView(text).first(first));
            builder.append(QStringView(text).sliced(first, second - first));
            builder.append(QStringView(text).sliced(second));
            const TextStore store = builder.finish();
            compareTotals(store, model);
            compareOffset(store, model, Offset(second));
        }
    }
}

void TextStoreTest::builderStartsAnew()
{
    TextStore::Builder builder(ruleOf(Widths::None, 3));
    builder.append(QByteArrayView("one\xff"));
    const TextStore first = builder.finish();
    QCOMPARE(first.text(), QStringLiteral("one\u00ff"));
    builder.append(QStringView(u"two"));
    builder.append(QByteArrayView("three"));
    const TextStore second = builder.finish();
    QCOMPARE(second.text(), QStringLiteral("twothree"));
    QCOMPARE(second.layoutRule(), ruleOf(Widths::None, 3));
    QCOMPARE(second.rowCount(), 3);
    QCOMPARE(first.text(), QStringLiteral("one\u00ff"));
}

void TextStoreTest::narrowLeaves()
{
    TextStore store({}, nodesOf(8));
    store.replace(Offset(0), 0, QString(20, u'a'));
    QVERIFY(store.chunkAt(Offset(0)).isLatin1());
    store.replace(Offset(3), 0, u"\u3042");
    QVERIFY(!store.chunkAt(Offset(3)).isLatin1());
    store.replace(Offset(3), 1, u"\u00ff");
    store.checkInvariants();
    for (qint64 offset = 0; offset < store.length(); ++offset)
        QVERIFY(store.chunkAt(Offset(offset)).isLatin1());
}

void TextStoreTest::chunks()
{
    RandomText random(11);
    const QString text = random.text(100);
    const TextStore store = storeOf(text, {}, nodesOf(4));
    QString forwards;
    for (Offset offset; offset < store.end();) {
        const TextChunk chunk = store.chunkAt(offset);
        QCOMPARE(chunk.offset, offset);
        QVERIFY(chunk.size() > 0);
        forwards += textOf(chunk);
        offset += chunk.size();
    }
    QCOMPARE(forwards, text);
    QString backwards;
    for (Offset end = store.end(); end > Offset();) {
        const TextChunk chunk = store.chunkBefore(end);
        QCOMPARE(chunk.offset + chunk.size(), end);
        backwards.prepend(textOf(chunk));
        end = chunk.offset;
    }
    QCOMPARE(backwards, text);
    QCOMPARE(textOf(store.chunkAt(Offset(1))).at(0), text.at(1));
}

void TextStoreTest::pairsStayWhole_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<qint64>("removed");
    QTest::addColumn<QString>("inserted");

    const QString pair = QStringLiteral("\U0001f600");
    QTest::newRow("text into a pair") << pair.repeated(6) << qint64(5) << qint64(0) << "abcde";
    QTest::newRow("pair out of two halves")
        << pair.first(1) + QStringLiteral("abcdef") + pair.last(1) << qint64(1) << qint64(6) << QString();
    QTest::newRow("half of a pair removed") << pair.repeated(6) << qint64(3) << qint64(1) << QString();
    QTest::newRow("halves of two pairs meet") << pair.repeated(8) << qint64(3) << qint64(8) << QString();
    QTest::newRow("second half typed") << QStringLiteral("abc") + pair.first(1) + QStringLiteral("efgh")
                                       << qint64(4) << qint64(0) << pair.last(1);
    QTest::newRow("first half typed") << QStringLiteral("abcd") + pair.last(1) + QStringLiteral("fgh")
                                      << qint64(4) << qint64(0) << pair.first(1);
}

void TextStoreTest::pairsStayWhole()
{
    QFETCH(QString, text);
    QFETCH(const qint64, offset);
    QFETCH(const qint64, removed);
    QFETCH(const QString, inserted);
    for (const Subpixels limit : { 0, 1, 3 }) {
        const LayoutRule rule = ruleOf(Widths::Hurting, limit);
        TextStore store = storeOf(text, rule, nodesOf(4));
        ModelStore model(rule);
        model.setText(text);
        store.replace(Offset(offset), removed, inserted);
        model.replace(Offset(offset), removed, inserted);
        compareAll(store, model);
    }
}

void TextStoreTest::sharedPiecesKeepTheirText()
{
    RandomText random(3);
    const QString text = random.text(200);
    TextStore store = storeOf(text, ruleOf(Widths::Hurting, 7), nodesOf(4));
    const TextPiece all = store.piece(Offset(0), store.length());
    for (int step = 0; step < 100; ++step)
        store.replace(Offset(random.below(store.length())), 1, random.text(1));
    QVERIFY(store.text() != text);
    QCOMPARE(all.text(), text);
    store = TextStore(ruleOf(Widths::Hurting, 7), nodesOf(4));
    store.insert(Offset(0), all);
    QCOMPARE(store.text(), text);
    store.checkInvariants();
}

void TextStoreTest::manyPiecesJoined()
{
    TextPiece piece;
    QCOMPARE(piece.length(), 0);
    QString text;
    for (int i = 0; i < 200; ++i) {
        const QString typed(QChar(i % 3 ? u'a' : u'\u3042'));
        if (i % 2) {
            piece.append(TextPiece(typed, nodesOf(4)));
            text.append(typed);
        } else {
            piece.prepend(TextPiece(typed, nodesOf(4)));
            text.prepend(typed);
        }
    }
    QCOMPARE(piece.text(), text);
    TextStore store(ruleOf(Widths::Hurting, 3), nodesOf(4));
    store.insert(Offset(0), piece);
    ModelStore model(ruleOf(Widths::Hurting, 3));
    model.setText(text);
    compareAll(store, model);
}

namespace {

constexpr qint64 billions = qint64(1) << 31;

/// Puts the text behind itself until it is there `billions` times; the copies share their leaves.
void multiply(TextStore &store)
{
    for (qint64 copies = 1; copies < billions; copies *= 2)
        store.insert(store.end(), store.piece(Offset(0), store.length()));
}

} // namespace

void TextStoreTest::billionsOfRows()
{
    TextStore store = storeOf(u"aaaaaa\n"_s, ruleOf(Widths::Hurting, 3));
    multiply(store);
    QCOMPARE(store.length(), 7 * billions);
    QCOMPARE(store.lineCount(), billions + 1);
    QCOMPARE(store.rowCount(), 2 * billions + 1);
    const qint64 line = billions - 2;
    QCOMPARE(store.lineStart(LineIndex(line)), Offset(7 * line));
    QCOMPARE(rowOfLine(store, LineIndex(line)), RowIndex(2 * line));
    QCOMPARE(lineOfRow(store, RowIndex(2 * line + 1)), LineIndex(line));
    QCOMPARE(store.row(RowIndex(2 * line + 1)).start, Offset(7 * line + 3));
    QCOMPARE(store.placeAt({ RowIndex(2 * line + 1), 2 }).offset, Offset(7 * line + 5));
    store.replace(Offset(7 * line + 1), 0, u"\n");
    QCOMPARE(store.rowCount(), 2 * billions + 2);
    QCOMPARE(store.text(Offset(7 * line), 8), u"a\naaaaa\n"_s);
}

void TextStoreTest::billionsOfColumns()
{
    TextStore store = storeOf(u"aaa"_s, ruleOf(Widths::Hurting, 0));
    multiply(store);
    const qint64 column = 3 * billions - 2;
    QCOMPARE(store.rowColAt(Offset(column)).column, column);
    QCOMPARE(store.xAt({ RowIndex(0), column }), subpixelsPerPixel * column);
    QCOMPARE(store.columnAt(RowIndex(0), subpixelsPerPixel * column), column);
    store.replace(Offset(column), 1, u"W");
    QCOMPARE(store.widestRow(), subpixelsPerPixel * (3 * billions + 1));
    QCOMPARE(store.text(Offset(column - 1), 3), u"aWa"_s);
}

void TextStoreTest::movedStore()
{
    TextStore store = storeOf(QStringLiteral("one\ntwo"));
    TextStore other = std::move(store);
    QCOMPARE(other.text(), QStringLiteral("one\ntwo"));
    store = TextStore();
    store.replace(Offset(0), 0, u"three");
    std::swap(store, other);
    QCOMPARE(store.lineCount(), 2);
    QCOMPARE(other.text(), QStringLiteral("three"));
}

REGISTER_TEST(runCoreTest<TextStoreTest>)
#include "textstore_test.moc"
