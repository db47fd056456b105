#include "text/undohistory.h"

#include "tests/codec/codecnamed.h"
#include "tests/codec/nastybytes.h"
#include "tests/codec/shorttexts.h"
#include "tests/codec/storedbytes.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/tinynodes.h"
#include "text/textlayout.h"

#include <QRandomGenerator>
#include <QTest>

#include <vector>

namespace {

/// The text of `units` units from `from` on, written alone: what those units were read from, in codes whose
/// characters have the same bytes everywhere.
QByteArray partOf(const TextCodec &codec, const TextStore &store, qint64 from, qint64 units)
{
    TextStore part({}, store.layout().sizes());
    part.insert(Offset(0), store.piece(Offset(from), units));
    return storedBytes(codec, part);
}

/// One unit of ISO-2022-JP: the designations before it and its bytes.
struct JisUnit {
    QByteArray designations;
    QByteArray code;
    bool dependsOnSet = false;
};

/// A reader of ISO-2022-JP for comparison, as simple as it can be.
class JisReader {
public:
    explicit JisReader(const QByteArray &bytes)
        : m_rest(bytes)
    {
        while (!m_rest.isEmpty())
            m_units.push_back(next());
    }
    const std::vector<JisUnit> &units() const { return m_units; }

private:
    JisUnit next()
    {
        JisUnit unit;
        while (takeDesignation(unit))
            m_half = false;
        if (m_rest.isEmpty())
            return unit;
        const auto isGraphic = [this](qsizetype i) {
            return i < m_rest.size() && m_rest[i] >= 0x21 && m_rest[i] <= 0x7E;
        };
        const bool hasPairs = m_set == 'B' + 256 || m_set == 'D' + 256;
        unit.dependsOnSet = isGraphic(0) && (hasPairs || m_set == 'I');
        qsizetype size = 1;
        if (isGraphic(0) && hasPairs && !m_half && isGraphic(1)) {
            const QByteArray shift(m_set == 'B' + 256 ? "\x1B$B" : "\x1B$(D");
            const QString alone = decoded(codecNamed("JIS7"), shift + m_rest.first(2));
            size = alone.size() == 1 ? 2 : 1;
        }
        m_half = isGraphic(0) && hasPairs && size == 1 && !m_half;
        unit.code = m_rest.first(size);
        m_rest = m_rest.sliced(size);
        return unit;
    }

    bool takeDesignation(JisUnit &unit)
    {
        static constexpr std::pair<const char *, int> known[] = { { "\x1B(B", 'B' }, { "\x1B(J", 'B' },
            { "\x1B(H", 'B' }, { "\x1B(I", 'I' }, { "\x1B$B", 'B' + 256 }, { "\x1B$@", 'B' + 256 },
            { "\x1B$(B", 'B' + 256 }, { "\x1B$(@", 'B' + 256 }, { "\x1B$(D", 'D' + 256 } };
        for (const auto &[sequence, set] : known) {
            if (m_rest.startsWith(sequence)) {
                unit.designations += sequence;
                m_rest = m_rest.sliced(qsizetype(strlen(sequence)));
                m_set = set;
                return true;
            }
        }
        return false;
    }

    QByteArray m_rest;
    int m_set = 'B';
    bool m_half = false;
    std::vector<JisUnit> m_units;
};

QByteArray joined(const std::vector<JisUnit> &units, size_t from, size_t to)
{
    QByteArray bytes;
    for (size_t i = from; i < to; ++i)
        bytes += units[i].designations + units[i].code;
    return bytes;
}

QByteArrayList codesOf(const std::vector<JisUnit> &units, size_t from)
{
    QByteArrayList codes;
    for (size_t i = from; i < units.size(); ++i) {
        if (!units[i].code.isEmpty())
            codes << units[i].code;
    }
    return codes;
}

bool cutsPair(const TextStore &store, qint64 offset)
{
    return offset > 0 && offset < store.length() && QChar::isHighSurrogate(store.at(Offset(offset - 1)))
        && QChar::isLowSurrogate(store.at(Offset(offset)));
}

QString typedText(QRandomGenerator &random)
{
    static const QString typed[] = { QString(), QStringLiteral("x"), QStringLiteral("漢字"),
        QStringLiteral("ｱ\n"), QStringLiteral("\t"), QStringLiteral("丂"), QStringLiteral("¥"),
        QStringLiteral("B"), QStringLiteral("(") };
    return typed[random.bounded(int{ std::size(typed) })];
}

const TextCuts tiny{ .sizes = nodesOf(8) };

quint32 spellingsSeed()
{
    return seedOr(20040229);
}

} // namespace

/// The bytes of what is not edited stay, whatever is edited beside it.
class SpellingsTest : public QObject {
    Q_OBJECT

private slots:
    void plainTextHasNone();
    void surviveEditsBeside_data();
    void surviveEditsBeside();
    void singleEdits_data();
    void singleEdits();
    void singleEditsInJis();
    void undoAndRedo_data();
    void undoAndRedo();
    void cutAndPaste_data();
    void cutAndPaste();
    void anotherCodeGetsNoBytes_data();
    void anotherCodeGetsNoBytes();
};

void SpellingsTest::plainTextHasNone()
{
    const TextCodec &codec = codecNamed("JIS7");
    const QByteArray bytes = QByteArray("plain \x1B$B0!0!\x1B(B\n").repeated(50);
    const TextStore store = storeOf(codec, bytes);
    qint64 chunks = 0;
    for (qint64 at = 0; at < store.length(); ++chunks) {
        const TextChunk chunk = store.spelledChunkAt(Offset(at));
        QVERIFY(!chunk.spelling);
        at += chunk.size();
    }
    QCOMPARE(chunks, 1);
    QVERIFY(!store.spelledChunkAt(store.end()).spelling);
}

void SpellingsTest::surviveEditsBeside_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("removed");
    QTest::addColumn<QString>("inserted");
    QTest::addColumn<QByteArray>("result");
    const auto add = [](const char *codec, const char *name, const char *bytes, int offset, int removed,
                         const QString &inserted, const char *result) {
        QTest::addRow("%s %s", codec, name)
            << QByteArray(codec) << QByteArray(bytes) << offset << removed << inserted << QByteArray(result);
    };
    const QString x = QStringLiteral("x");
    add("SJIS", "row 92 behind the edit", "a\xEE\xF9z", 0, 1, x, "x\xEE\xF9z");
    add("SJIS", "row 92 before the edit", "a\xEE\xF9z", 2, 1, x, "a\xEE\xF9x");
    add("SJIS", "right before it", "\xFA\x54", 0, 0, x, "x\xFA\x54");
    add("SJIS", "right behind it", "\xFA\x54", 1, 0, x, "\xFA\x54x");
    add("SJIS", "the character itself", "\xFA\x54", 0, 1, QStringLiteral("￢"), "\x81\xCA");
    add("SJIS", "a byte put before it", "\x81 \xEE\xEB", 1, 1, {}, "\x81\xEE\xEB");
    add("eucJP", "third set for a kanji", "a\x8F\xD4\xE3z", 2, 1, x, "a\x8F\xD4\xE3x");
    add("JIS7", "older kanji stays before them", "a\x1B$@0!0!\x1B(Bz", 0, 1, x, "x\x1B$@0!0!\x1B(Bz");
    add("JIS7", "older kanji, cut by a letter", "\x1B$@0!0!\x1B(B", 1, 0, x, "\x1B$@0!\x1B(Bx\x1B$B0!\x1B(B");
    add("JIS7", "older kanji, the first gone", "\x1B$@0!0!\x1B(B", 0, 1, {}, "\x1B$B0!\x1B(B");
    add("JIS7", "a terminal's resets", "\x1B[1mx\x1B(B\x1B[m y\x1B(B\x1B[m\n", 4, 1, QStringLiteral("w"),
        "\x1B[1mw\x1B(B\x1B[m y\x1B(B\x1B[m\n");
    add("JIS7", "line end without a designation", "\x1B$B0!\n0!\x1B(B", 2, 1, QStringLiteral("亜"),
        "\x1B$B0!\n0!\x1B(B");
    add("JIS7", "line end behind a letter now", "\x1B$B0!\n0!\x1B(B", 0, 1, x, "x\n\x1B$B0!\x1B(B");
    add("JIS7", "second code behind a letter now", "\x1B$B0!-p\x1B(B", 0, 1, x, "x\x1B$B-p\x1B(B");
    add("JIS7", "Roman letters", "\x1B$B0!\x1B(Ja\\b", 1, 0, x, "\x1B$B0!\x1B(Bx\x1B(Ja\\b");
    add("JIS7", "Roman letters end before the edit", "\x1B(Ja\x1B$B0!\x1B(Bb\\", 1, 1, {},
        "\x1B(Ja\x1B(Bb\\");
    add("JIS7", "yen sign among letters", "ab", 1, 0, QStringLiteral("¥"), "a\x1B(J\\\x1B(Bb");
    add("JIS7", "end without ASCII", "\x1B$B0!", 0, 0, x, "x\x1B$B0!");
    add("JIS7", "shift out and in", "a\x0E\x31\x0F\x1B(B", 0, 1, x, "x\x0E\x31\x0F\x1B(B");
    add("JIS7", "half that would take in a kanji", "\x1B$B)\n0!\x1B(B", 1, 1, {}, "\x1B$B)\x1B$B0!\x1B(B");
}

void SpellingsTest::surviveEditsBeside()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, bytes);
    QFETCH(int, offset);
    QFETCH(int, removed);
    QFETCH(QString, inserted);
    QFETCH(QByteArray, result);
    const TextCodec &c = codecNamed(codec);
    TextStore store = storeOf(c, bytes, tiny);
    QCOMPARE(storedBytes(c, store).toPercentEncoding(), bytes.toPercentEncoding());
    store.replace(Offset(offset), removed, inserted);
    QCOMPARE(storedBytes(c, store).toPercentEncoding(), result.toPercentEncoding());
}

void SpellingsTest::singleEdits_data()
{
    QTest::addColumn<QByteArray>("codec");
    for (const char *name : { "SJIS", "eucJP", "UTF8" })
        QTest::addRow("%s seed %u", name, spellingsSeed()) << QByteArray(name);
}

/// What stands before and behind the edit is that part of the file to the byte.
void SpellingsTest::singleEdits()
{
    QFETCH(QByteArray, codec);
    const TextCodec &c = codecNamed(codec);
    QRandomGenerator random(spellingsSeed());
    for (int i = 0; i < 4000; ++i) {
        const QByteArray bytes = nastyBytes(random);
        TextStore store = storeOf(c, bytes, tiny);
        const qint64 offset = random.bounded(int(store.length()) + 1);
        const qint64 removed = random.bounded(qMin(5, int(store.length() - offset) + 1));
        if (cutsPair(store, offset) || cutsPair(store, offset + removed))
            continue;
        const QString inserted = typedText(random);
        const QByteArray before = partOf(c, store, 0, offset);
        const QByteArray behind = partOf(c, store, offset + removed, store.length() - offset - removed);
        QVERIFY2(bytes.startsWith(before) && bytes.endsWith(behind), bytes.toHex(' '));
        QVERIFY(before.size() + behind.size() + (removed == 0 ? 0 : 1) <= bytes.size());
        store.replace(Offset(offset), removed, inserted);
        store.checkInvariants();
        QCOMPARE(storedBytes(c, store).toHex(' '), (before + encoded(c, inserted) + behind).toHex(' '));
    }
}

/// The designations next to the edit may change, and the first ones of the file behind it, which may not be
/// needed any more; nothing else does, and the text read back is the edited text.
void SpellingsTest::singleEditsInJis()
{
    const TextCodec &c = codecNamed("JIS7");
    QRandomGenerator random(spellingsSeed());
    for (int i = 0; i < 20000; ++i) {
        const QByteArray bytes = nastyBytes(random);
        TextStore store = storeOf(c, bytes, tiny);
        const JisReader reader(bytes);
        const auto &units = reader.units();
        QVERIFY(qint64(units.size()) == store.length() || units.back().code.isEmpty());
        const qint64 offset = random.bounded(int(store.length()) + 1);
        const qint64 removed = random.bounded(qMin(5, int(store.length() - offset) + 1));
        store.replace(Offset(offset), removed, typedText(random));
        const QByteArray result = storedBytes(c, store);
        // JIS reads the yen sign as a backslash.
        QCOMPARE(decoded(c, result), store.text().replace(u'¥', u'\\'));
        const QByteArray before = joined(units, 0, size_t(offset));
        QVERIFY2(result.startsWith(before), bytes.toHex(' '));
        const QByteArrayList kept = codesOf(units, size_t(offset + removed));
        const JisReader again(result);
        QCOMPARE(codesOf(again.units(), 0).last(kept.size()), kept);
        size_t same = size_t(offset + removed);
        while (same < units.size() && units[same].designations.isEmpty())
            ++same;
        if (same < units.size())
            QVERIFY2(
                result.endsWith(units[same].code + joined(units, same + 1, units.size())), bytes.toHex(' '));
    }
}

void SpellingsTest::undoAndRedo_data()
{
    QTest::addColumn<QByteArray>("codec");
    for (const char *name : { "SJIS", "eucJP", "JIS7" })
        QTest::addRow("%s seed %u", name, spellingsSeed()) << QByteArray(name);
}

void SpellingsTest::undoAndRedo()
{
    QFETCH(QByteArray, codec);
    const TextCodec &c = codecNamed(codec);
    QRandomGenerator random(spellingsSeed());
    for (int i = 0; i < 150; ++i) {
        const QByteArray bytes = nastyBytes(random, 200);
        TextStore store = storeOf(c, bytes, tiny);
        UndoHistory history(4); // so that some steps become one
        QByteArrayList written{ bytes };
        for (int step = 0; step < 8; ++step) {
            const qint64 offset = random.bounded(int(store.length()) + 1);
            const qint64 removed = random.bounded(qMin(20, int(store.length() - offset) + 1));
            history.replace(store, Offset(offset), removed, typedText(random));
            store.checkInvariants();
            if (written.last() != storedBytes(c, store))
                written << storedBytes(c, store);
        }
        const QByteArray last = storedBytes(c, store);
        while (history.canUndo()) {
            history.undo(store);
            QVERIFY(written.contains(storedBytes(c, store)));
        }
        QCOMPARE(storedBytes(c, store).toHex(' '), bytes.toHex(' '));
        while (history.canRedo())
            history.redo(store);
        QCOMPARE(storedBytes(c, store).toHex(' '), last.toHex(' '));
    }
}

void SpellingsTest::cutAndPaste_data()
{
    undoAndRedo_data();
}

/// A part that is cut out and put back where it was leaves no trace.
void SpellingsTest::cutAndPaste()
{
    QFETCH(QByteArray, codec);
    const TextCodec &c = codecNamed(codec);
    QRandomGenerator random(spellingsSeed());
    for (int i = 0; i < 1000; ++i) {
        const QByteArray bytes = nastyBytes(random, 200);
        TextStore store = storeOf(c, bytes, tiny);
        const qint64 offset = random.bounded(int(store.length()) + 1);
        const qint64 length = random.bounded(int(store.length() - offset) + 1);
        const TextPiece piece = store.exchange(Offset(offset), length, QStringView());
        store.checkInvariants();
        store.insert(Offset(offset), piece);
        store.checkInvariants();
        QCOMPARE(storedBytes(c, store).toHex(' '), bytes.toHex(' '));
    }
}

void SpellingsTest::anotherCodeGetsNoBytes_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("other");
    QTest::addColumn<QByteArray>("result");
    const auto add = [](const char *codec, const char *bytes, const char *other, const char *result) {
        QTest::addRow("%s %s to %s", codec, QByteArray(bytes).toPercentEncoding().constData(), other)
            << QByteArray(codec) << QByteArray(bytes) << QByteArray(other) << QByteArray(result);
    };
    add("SJIS", "a\xFF\xFA\x54z", "UTF8", "a\xEF\xBF\xBD\xEF\xBF\xA2z");
    add("SJIS", "a\xFF\xFA\x54z", "eucJP", "a?\xA2\xCCz");
    add("SJIS", "a\x81", "JIS7", "a?");
    add("UTF8", "\xEF\xBB\xBF\xE6\xBCz", "SJIS", "??z");
    add("JIS7", "a\x1B(B\x1B$B)!\x1B(B\x80z", "UTF8", "a\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBDz");
    // The bytes of half a surrogate pair are one character, unless some of them are missing.
    add("UTF8", "a\xED\xA0\xBDz", "SJIS", "a?z");
    add("UTF8", "\xED\xA0\xBD\xED\xBF\xBF", "eucJP", "??");
    add("UTF8", "\xED\xA0z\xED", "JIS7", "??z?");
    add("UTF8", "\xED\xA0\xF0\x9F\x98\x80", "SJIS", "???");
    add("UTF8", "\xED\xA0", "SJIS", "??");
    add("UTF8", "\xED\x9F\xED\xED\xA0\xBD\xBD", "SJIS", "?????");
    add("UTF8", "\xED\xA0\xED\xA0\x80\xA0", "SJIS", "????");
}

void SpellingsTest::anotherCodeGetsNoBytes()
{
    QFETCH(QByteArray, codec);
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, other);
    QFETCH(QByteArray, result);
    const TextStore store = storeOf(codecNamed(codec), bytes, tiny);
    const TextCodec &to = codecNamed(other);
    QCOMPARE(
        storedBytes(to, store, TextCodec::AsRead::Nothing).toPercentEncoding(), result.toPercentEncoding());
}

REGISTER_TEST(runPlainTest<SpellingsTest>)
#include "spellings_test.moc"
