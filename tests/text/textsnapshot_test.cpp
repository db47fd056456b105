#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/chunktext.h"
#include "tests/text/textalphabet.h"
#include "tests/text/tinynodes.h"
#include "text/textchange.h"
#include "text/textsnapshot.h"

#include <QTest>

#include <atomic>
#include <thread>

namespace {

QString textOf(const TextSnapshot &snapshot)
{
    QString text;
    for (TextChunk chunk = snapshot.spelledChunkAt(Offset()); chunk.size() > 0;
         chunk = snapshot.spelledChunkAt(Offset(text.size()))) {
        if (chunk.isLatin1())
            text += QLatin1StringView(chunk.latin1);
        else
            text += chunk.utf16;
    }
    return text;
}

/// The text that parts of a text and of a source tell.
QString joined(const std::vector<TextPart> &parts, const QString &text, const QString &source)
{
    QString all;
    for (const TextPart &part : parts)
        all += (part.source == TextPart::ownText ? text : source).sliced(part.offset.value(), part.length);
    return all;
}

} // namespace

/// Texts as they were, and what two of them share.
class TextSnapshotTest : public QObject {
    Q_OBJECT

private slots:
    void staysAsItWas_data() { addSeeds(10); }
    void staysAsItWas();
    void editIsAllThatIsNotShared();
    void isWalkedBothWays();
    void keepsSpellings();
    void isReadWhileTheTextIsEdited();
};

void TextSnapshotTest::staysAsItWas()
{
    QFETCH(quint32, seed);
    RandomText random(seed);
    TextStore store(LayoutRule(), nodesOf(8));
    store.replace({}, 0, random.text(200));
    QString text = store.text();
    for (int round = 0; round < 100; ++round) {
        const TextSnapshot before(store);
        const QString textBefore = text;
        TextChange sum;
        for (int i = 0; i < 3; ++i) {
            const qint64 at = random.below(text.size() + 1);
            const qint64 removed = random.below(qMin<qint64>(6, text.size() - at) + 1);
            const QString inserted = random.text(random.below(6) + 1);
            store.replace(Offset(at), removed, inserted);
            text.replace(at, removed, inserted);
            const TextChange change{ Offset(at), removed, inserted.size() };
            sum = i == 0 ? change : sum.then(change);
        }
        const TextSnapshot after(store);
        QCOMPARE(textOf(before), textBefore);
        QCOMPARE(textOf(after), text);
        const Offset end = sum.offset + sum.inserted;
        const auto parts =
            partsOf({ after, { sum.offset, end } }, { { before, { sum.offset, sum.offset + sum.removed } } });
        QCOMPARE(joined(parts, text, textBefore), text.sliced(sum.offset.value(), sum.inserted));
        const auto all = partsOf({ after, { {}, after.end() } }, { { before, { {}, before.end() } } });
        QCOMPARE(joined(all, text, textBefore), text);
    }
}

void TextSnapshotTest::editIsAllThatIsNotShared()
{
    TextStore store;
    store.replace({}, 0, QString(1000000, u'a'));
    const TextSnapshot before(store);
    const Offset typedAt(500000);
    store.replace(typedAt, 0, u"b");
    const TextSnapshot after(store);
    qint64 own = 0;
    for (const TextPart &part : partsOf({ after, { {}, after.end() } }, { { before, { {}, before.end() } } }))
        own += part.source == TextPart::ownText ? part.length : 0;
    QVERIFY(own > 0 && own <= qint64{ 8 } * NodeSizes().leafUnits);
    const auto typed = partsOf({ after, { typedAt, typedAt + 1 } }, { { before, { typedAt, typedAt } } });
    QCOMPARE(typed, (std::vector<TextPart>{ { TextPart::ownText, typedAt, 1 } }));
}

/// From every place, in chunks that a leaf or less of the store has.
void TextSnapshotTest::isWalkedBothWays()
{
    TextStore store(LayoutRule(), nodesOf(8));
    store.replace({}, 0, QStringLiteral("a text of ASCII, and \u304b\u306a in it").repeated(5));
    const TextSnapshot snapshot(store);
    const QString text = store.text();
    for (Offset at; at < store.end(); ++at) {
        QCOMPARE(snapshot.at(at), store.at(at));
        const QString behind = textOf(snapshot.chunkAt(at));
        QVERIFY(!behind.isEmpty() && text.sliced(at.value()).startsWith(behind));
        const TextChunk before = snapshot.chunkBefore(at + 1);
        QCOMPARE(before.offset + before.size(), at + 1);
        QVERIFY(before.size() > 0 && text.first(at.value() + 1).endsWith(textOf(before)));
    }
}

void TextSnapshotTest::keepsSpellings()
{
    TextStore::Builder builder{ LayoutRule() };
    builder.append(u"ab");
    builder.spell("spelled");
    builder.append(u"c");
    builder.spell("behind");
    const TextStore store = builder.finish();
    const TextSnapshot snapshot(store);
    for (Offset offset; offset <= store.end(); ++offset) {
        const TextChunk expected = store.spelledChunkAt(offset);
        const TextChunk found = snapshot.spelledChunkAt(offset);
        QCOMPARE(found.size(), expected.size());
        QCOMPARE(found.spelling.has_value(), expected.spelling.has_value());
        QCOMPARE(found.spelling.value_or(QByteArrayView()), expected.spelling.value_or(QByteArrayView()));
    }
}

/// Another thread reads the same text again and again.
void TextSnapshotTest::isReadWhileTheTextIsEdited()
{
    RandomText random(seedOr(1));
    TextStore store(LayoutRule(), nodesOf(8));
    store.replace({}, 0, random.text(500));
    const QString text = store.text();
    const TextSnapshot snapshot(store);
    std::atomic<bool> isEnding = false;
    std::atomic<int> readings = 0;
    std::atomic<int> wrong = 0;
    std::thread reader([&] {
        while (!isEnding || readings == 0) {
            wrong += textOf(snapshot) == text ? 0 : 1;
            ++readings;
        }
    });
    for (int i = 0; i < 2000; ++i) {
        const qint64 at = random.below(store.length() + 1);
        const TextPiece piece = store.piece({}, at);
        store.exchange(Offset(at), random.below(store.length() - at + 1), random.text(5));
        if (store.length() < 2000)
            store.insert({}, piece);
    }
    isEnding = true;
    reader.join();
    QCOMPARE(wrong.load(), 0);
}

REGISTER_TEST(runPlainTest<TextSnapshotTest>)
#include "textsnapshot_test.moc"
