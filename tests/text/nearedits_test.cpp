#include "text/textstore.h"

#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/chunktext.h"
#include "tests/text/modelstore.h"
#include "tests/text/textalphabet.h"
#include "tests/text/tinynodes.h"

#include <QTest>

namespace {

/// A store that is edited here and there in runs of edits near one another, as replacing and typing do, and
/// asked for nothing but text in between; and its model.
class NearEdits {
public:
    NearEdits(quint32 seed, const LayoutRule &rule, const NodeSizes &sizes, const QStringList &alphabet)
        : m_store(rule, sizes)
        , m_model(rule)
        , m_random(seed, alphabet)
    {
        const QString text = m_random.text(200);
        m_store.replace(Offset(0), 0, text);
        m_model.setText(text);
    }

    void run()
    {
        m_at = Offset(m_random.below(m_model.length() + 1));
        for (qint64 edits = m_random.below(30); edits > 0 && !QTest::currentTestFailed(); --edits) {
            edit();
            compareText();
        }
        between();
    }
    /// Everything that has to do with rows and lines.
    void compareRows() const
    {
        m_store.checkInvariants();
        QCOMPARE(m_store.text(), m_model.text());
        QCOMPARE(m_store.lineCount(), m_model.lineCount());
        QCOMPARE(m_store.rowCount(), qint64(m_model.rows().size()));
        for (RowIndex row; row <= m_store.lastRow(); ++row) {
            const TextStore::Row &expected = m_model.row(row);
            QCOMPARE(m_store.row(row).start, expected.start);
            QCOMPARE(m_store.row(row).length, expected.length);
            QCOMPARE(m_store.row(row).endsLine, expected.endsLine);
        }
    }
    qint64 length() const { return m_model.length(); }

private:
    void edit()
    {
        const qint64 removed = qMin(m_random.below(4), m_model.end() - m_at);
        const QString inserted = m_random.text(m_random.below(m_model.length() > 600 ? 2 : 5));
        const QString gone = m_model.text().mid(m_at.value(), removed);
        if (m_random.chance(2))
            QCOMPARE(m_store.exchange(m_at, removed, inserted).text(), gone);
        else
            m_store.replace(m_at, removed, inserted);
        m_model.replace(m_at, removed, inserted);
        m_at = qBound(Offset(), m_at + inserted.size() + m_random.below(5) - 2, m_model.end());
    }
    void compareText()
    {
        QCOMPARE(m_store.length(), m_model.length());
        if (m_at < m_model.end()) {
            QCOMPARE(m_store.at(m_at), m_model.text().at(m_at.value()).unicode());
            const QString behind = textOf(m_store.chunkAt(m_at));
            QVERIFY(!behind.isEmpty());
            QCOMPARE(behind, m_model.text().mid(m_at.value(), behind.size()));
        }
        if (m_at > Offset()) {
            const QString before = textOf(m_store.chunkBefore(m_at));
            QVERIFY(!before.isEmpty());
            QCOMPARE(before, m_model.text().mid(m_at.value() - before.size(), before.size()));
        }
        const qint64 count = qMin(m_random.below(9), m_model.end() - m_at);
        QCOMPARE(m_store.text(m_at, count), m_model.text().mid(m_at.value(), count));
        QCOMPARE(m_store.piece(m_at, count).text(), m_model.text().mid(m_at.value(), count));
    }
    /// What happens to the store with the last edit still fresh.
    void between()
    {
        switch (m_random.below(8)) {
        case 0:
            return m_store.setLayoutRule(m_model.layoutRule());
        case 1: {
            TextStore moved = std::move(m_store);
            m_store = std::move(moved);
            return;
        }
        case 2: {
            m_kept = m_store.piece(Offset(0), m_store.length());
            m_keptText = m_model.text();
            return;
        }
        case 3: {
            QCOMPARE(m_kept.text(), m_keptText);
            m_store.replace(Offset(0), m_store.length(), {});
            m_store.insert(Offset(0), m_kept);
            m_model.setText(m_keptText);
            return;
        }
        case 4:
            return compareRows();
        default:
            return;
        }
    }

    TextStore m_store;
    ModelStore m_model;
    RandomText m_random;
    TextPiece m_kept;
    QString m_keptText;
    Offset m_at;
};

} // namespace

class NearEditsTest : public QObject {
    Q_OBJECT

private slots:
    void randomRuns_data();
    void randomRuns();
    void leavesDivide_data();
    void leavesDivide();
    void narrowsAndWidens();
};

void NearEditsTest::randomRuns_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("capacity");
    QTest::addColumn<Subpixels>("limit");
    QTest::addColumn<QStringList>("alphabet");

    const QList<std::pair<const char *, QStringList>> alphabets{
        { "all", hurtingCharacters() },
        { "plain", { QStringLiteral("a"), QStringLiteral("W"), QStringLiteral("\t"), QStringLiteral("\n") } },
        { "pairs", { QStringLiteral("a"), QStringLiteral("\U0001f600") } },
    };
    quint32 seed = 1;
    for (const int capacity : { 4, 5, 8, 33, 4096 }) {
        for (const Subpixels limit : { 0, 1, 5, 40 }) {
            for (const auto &[name, alphabet] : alphabets) {
                const quint32 used = seedOr(seed++);
                QTest::addRow("seed %u, leaf %d, limit %lld, %s", used, capacity, limit, name)
                    << used << capacity << limit << alphabet;
            }
        }
    }
}

void NearEditsTest::randomRuns()
{
    QFETCH(const quint32, seed);
    QFETCH(const int, capacity);
    QFETCH(const Subpixels, limit);
    QFETCH(const QStringList, alphabet);

    static const AdvanceTable table(hurtingWidth);
    NearEdits edits(
        seed, { &table, 4 * subpixelsPerPixel, limit * subpixelsPerPixel }, nodesOf(capacity), alphabet);
    for (int run = 0; run < 40 && !QTest::currentTestFailed(); ++run)
        edits.run();
    if (!QTest::currentTestFailed())
        edits.compareRows();
}

void NearEditsTest::leavesDivide_data()
{
    QTest::addColumn<QString>("inserted");
    QTest::addColumn<int>("step");

    for (const int step : { -1, 0, 1, 2 }) {
        QTest::addRow("letters, step %d", step) << QStringLiteral("a") << step;
        QTest::addRow("pairs, step %d", step) << QStringLiteral("\U0001f600") << step;
        QTest::addRow("three leaves full, step %d", step) << QString(24, u'\u3042') << step;
    }
}

/// One leaf after another grows until it has to be two, and its parent until it is full.
void NearEditsTest::leavesDivide()
{
    QFETCH(const QString, inserted);
    QFETCH(const int, step);

    TextStore store({ nullptr, 8 * subpixelsPerPixel, 10 * subpixelsPerPixel }, nodesOf(8));
    QString text;
    qint64 at = 0;
    for (int i = 0; i < 300; ++i) {
        store.replace(Offset(at), 0, inserted);
        text.insert(at, inserted);
        QCOMPARE(store.length(), text.size());
        at = qBound<qint64>(0, at + step * inserted.size(), text.size());
        if (i % 50 == 49)
            store.checkInvariants();
    }
    QCOMPARE(store.text(), text);
}

/// A leaf is as wide as its text needs, edit by edit.
void NearEditsTest::narrowsAndWidens()
{
    TextStore store;
    store.replace(Offset(0), 0, QStringLiteral("abcdef"));
    QVERIFY(store.chunkAt(Offset(0)).isLatin1());
    store.replace(Offset(2), 1, QStringLiteral("\u3042"));
    QVERIFY(!store.chunkAt(Offset(0)).isLatin1());
    store.replace(Offset(2), 1, QStringLiteral("\u3044x"));
    QVERIFY(!store.chunkAt(Offset(0)).isLatin1());
    store.replace(Offset(4), 1, QStringLiteral("\u3046"));
    store.replace(Offset(2), 1, QStringLiteral("c"));
    QVERIFY(!store.chunkAt(Offset(0)).isLatin1());
    store.replace(Offset(4), 1, QStringLiteral("e"));
    QVERIFY(store.chunkAt(Offset(0)).isLatin1());
    QCOMPARE(store.text(), QStringLiteral("abcxeef"));
    store.checkInvariants();
}

REGISTER_TEST(runPlainTest<NearEditsTest>)
#include "nearedits_test.moc"
