#include "text/undohistory.h"

#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/textalphabet.h"
#include "tests/text/tinynodes.h"
#include "tests/text/undosteps.h"

#include <QTest>

#include <vector>

namespace {

using Joining = UndoHistory::Joining;
using Kind = UndoCommand::Kind;

/// A text whose edits are recorded.
struct Document {
    TextStore store;
    UndoHistory history;

    explicit Document(const QString &text = {}, int depth = 256, const NodeSizes &sizes = {})
        : store({}, sizes)
        , history(depth)
    {
        store.replace(Offset(0), 0, text);
    }
    void insert(qint64 offset, const QString &text, Joining joining = Joining::Never)
    {
        history.replace(store, Offset(offset), 0, text, joining);
    }
    void erase(qint64 offset, qint64 length, Joining joining = Joining::Never)
    {
        history.replace(store, Offset(offset), length, QStringView(), joining);
    }
    void type(qint64 offset, const QString &text)
    {
        for (const QChar character : text)
            insert(offset++, character, Joining::Typing);
    }
    /// The commands, oldest first: "+offset:text", "-offset:text", "(" and ")".
    QString drawn() const
    {
        QStringList drawnOnes;
        for (const UndoCommand *const command : history.commands())
            drawnOnes += drawn(*command);
        return drawnOnes.join(u' ');
    }

private:
    static QString drawn(const UndoCommand &command)
    {
        if (command.isStepBoundary())
            return command.kind == Kind::BeginStep ? QStringLiteral("(") : QStringLiteral(")");
        const QChar sign = command.kind == Kind::Insert ? u'+' : u'-';
        return sign + QString::number(command.offset.value()) + u':' + command.text.text();
    }
};

/// Edits at random, and the texts between them.
class RandomHistory {
public:
    RandomHistory(quint32 seed, int depth)
        : m_document(QStringLiteral("begin"), depth, nodesOf(4))
        , m_random(seed)
        , m_depth(depth)
    {
        m_texts.push_back(m_document.store.text());
    }

    void step()
    {
        switch (m_random.below(8)) {
        case 0:
        case 1:
            return undo();
        case 2:
            return redo();
        case 3:
            return group();
        case 4:
            return m_document.history.setDepth(m_depth);
        default:
            return edit();
        }
    }
    void undoEverything()
    {
        while (m_document.history.canUndo())
            m_document.history.undo(m_document.store);
        QCOMPARE(m_document.store.text(), m_texts.front());
        while (m_document.history.canRedo())
            m_document.history.redo(m_document.store);
        QCOMPARE(m_document.store.text(), m_texts.back());
    }
    void check() const
    {
        m_document.store.checkInvariants();
        QCOMPARE(m_document.store.text(), m_texts[m_now]);
        QCOMPARE(m_document.history.canUndo(), m_now > 0);
        QCOMPARE(m_document.history.canRedo(), m_now + 1 < m_texts.size());
        QCOMPARE(undoSteps(m_document.history), qint64(m_now));
    }

private:
    void undo()
    {
        if (!m_document.history.canUndo())
            return;
        QString followed = m_document.store.text();
        m_document.history.undo(m_document.store, follower(followed));
        compareFollowed(followed);
        --m_now;
    }
    void redo()
    {
        if (!m_document.history.canRedo())
            return;
        QString followed = m_document.store.text();
        m_document.history.redo(m_document.store, follower(followed));
        compareFollowed(followed);
        ++m_now;
    }
    /// What was told to have changed is "?", everything else as it was.
    void compareFollowed(const QString &followed) const
    {
        const QString text = m_document.store.text();
        QCOMPARE(followed.size(), text.size());
        for (qsizetype i = 0; i < text.size(); ++i)
            QVERIFY(followed.at(i) == u'?' || followed.at(i) == text.at(i));
    }
    static UndoHistory::Changed follower(QString &text)
    {
        return [&text](const TextChange &change) {
            QVERIFY(change.offset >= Offset() && change.removed >= 0);
            QVERIFY(change.offset + change.removed <= Offset(text.size()));
            text.replace(change.offset.value(), change.removed, QString(change.inserted, u'?'));
        };
    }
    void edit()
    {
        change();
        remember();
    }
    void change()
    {
        const qint64 length = m_document.store.length();
        const qint64 offset = m_random.below(length + 1);
        if (m_random.chance(2) || offset == length)
            m_document.insert(offset, m_random.text(1 + m_random.below(5)));
        else
            m_document.erase(offset, 1 + m_random.below(length - offset));
    }
    void group()
    {
        const qint64 edits = m_random.below(4);
        m_document.history.beginGroup();
        for (qint64 i = 0; i < edits; ++i) {
            m_document.history.beginGroup();
            change();
            m_document.history.endGroup();
        }
        m_document.history.endGroup();
        if (edits > 0)
            remember();
    }
    /// The text is a new step; of too many the oldest but the first is given up.
    void remember()
    {
        m_texts.resize(m_now + 1);
        m_texts.push_back(m_document.store.text());
        if (m_texts.size() > size_t(m_depth) + 1)
            m_texts.erase(m_texts.begin() + 1);
        m_now = m_texts.size() - 1;
    }

    Document m_document;
    RandomText m_random;
    int m_depth;
    std::vector<QString> m_texts;
    size_t m_now = 0;
};

} // namespace

class UndoHistoryTest : public QObject {
    Q_OBJECT

private slots:
    void nothingAtFirst();
    void cursorGoesWhereTheEditWas();
    void typingJoins();
    void erasingJoins_data();
    void erasingJoins();
    void joiningStops_data();
    void joiningStops();
    void emptyEditsLeaveNoTrace();
    void groupsNest();
    void emptyGroupLeavesNoTrace();
    void typingJoinsInsideAGroup();
    void recordingForgetsRedo();
    void oldestStepsAreJoined();
    void joinedGroupsKeepOnePairOfStepBoundaries();
    void smallerDepthJoins();
    void clearForgets();
    void changesAreTold();
    void hugeGroupsJoinQuickly();
    void bigDeletionComesBack();
    void joinedStepsShareTheText();
    void joinedStepsTellOneChange();
    void randomHistory_data();
    void randomHistory();
};

void UndoHistoryTest::nothingAtFirst()
{
    const UndoHistory history;
    QCOMPARE(history.depth(), 256);
    QVERIFY(!history.canUndo());
    QVERIFY(!history.canRedo());
    QCOMPARE(undoSteps(history), 0);
    QVERIFY(history.commands().empty());
}

void UndoHistoryTest::cursorGoesWhereTheEditWas()
{
    Document document(QStringLiteral("abcdef"));
    document.insert(2, QStringLiteral("XY"));
    document.erase(5, 2);
    QCOMPARE(document.store.text(), QStringLiteral("abXYcf"));
    QCOMPARE(document.history.undo(document.store), Offset(7));
    QCOMPARE(document.history.undo(document.store), Offset(2));
    QCOMPARE(document.store.text(), QStringLiteral("abcdef"));
    QCOMPARE(document.history.redo(document.store), Offset(4));
    QCOMPARE(document.history.redo(document.store), Offset(5));
    QCOMPARE(document.store.text(), QStringLiteral("abXYcf"));
}

void UndoHistoryTest::typingJoins()
{
    Document document(QStringLiteral("[]"));
    document.type(1, QStringLiteral("word"));
    QCOMPARE(document.drawn(), QStringLiteral("+1:word"));
    document.history.breakJoining();
    document.type(5, QStringLiteral("s"));
    QCOMPARE(document.drawn(), QStringLiteral("+1:word +5:s"));
    document.type(1, QStringLiteral("s"));
    QCOMPARE(document.drawn(), QStringLiteral("+1:word +5:s +1:s"));
}

void UndoHistoryTest::erasingJoins_data()
{
    QTest::addColumn<QList<qint64>>("offsets");
    QTest::addColumn<QString>("drawn");
    QTest::newRow("Delete Delete Delete") << QList<qint64>{ 2, 2, 2 } << "-2:cde";
    QTest::newRow("Backspace Backspace Backspace") << QList<qint64>{ 3, 2, 1 } << "-1:bcd";
    QTest::newRow("Backspace then Delete") << QList<qint64>{ 3, 3 } << "-3:de";
    QTest::newRow("elsewhere") << QList<qint64>{ 1, 4 } << "-1:b -4:f";
}

void UndoHistoryTest::erasingJoins()
{
    QFETCH(const QList<qint64>, offsets);
    QFETCH(const QString, drawn);
    Document document(QStringLiteral("abcdef"));
    for (const qint64 offset : offsets)
        document.erase(offset, 1, Joining::Erasing);
    QCOMPARE(document.drawn(), drawn);
    while (document.history.canUndo())
        document.history.undo(document.store);
    QCOMPARE(document.store.text(), QStringLiteral("abcdef"));
}

void UndoHistoryTest::joiningStops_data()
{
    QTest::addColumn<Joining>("first");
    QTest::addColumn<Joining>("second");
    QTest::addColumn<bool>("group");
    QTest::addColumn<bool>("undoBetween");
    QTest::newRow("the second never joins") << Joining::Typing << Joining::Never << false << false;
    QTest::newRow("the first never joins") << Joining::Never << Joining::Typing << false << false;
    QTest::newRow("a group between") << Joining::Typing << Joining::Typing << true << false;
    QTest::newRow("undo and redo between") << Joining::Typing << Joining::Typing << false << true;
}

void UndoHistoryTest::joiningStops()
{
    QFETCH(const Joining, first);
    QFETCH(const Joining, second);
    QFETCH(const bool, group);
    QFETCH(const bool, undoBetween);
    Document document;
    document.insert(0, QStringLiteral("a"), first);
    if (group) {
        document.history.beginGroup();
        document.history.endGroup();
    }
    if (undoBetween) {
        document.history.undo(document.store);
        document.history.redo(document.store);
    }
    document.insert(1, QStringLiteral("b"), second);
    QCOMPARE(document.drawn(), QStringLiteral("+0:a +1:b"));
}

void UndoHistoryTest::emptyEditsLeaveNoTrace()
{
    Document document(QStringLiteral("a"));
    document.insert(0, QString());
    document.erase(0, 0);
    QVERIFY(!document.history.canUndo());
}

void UndoHistoryTest::groupsNest()
{
    Document document(QStringLiteral("abc"));
    document.history.beginGroup();
    document.erase(0, 1);
    document.history.beginGroup();
    document.insert(0, QStringLiteral("X"));
    document.history.endGroup();
    document.insert(3, QStringLiteral("Y"));
    document.history.endGroup();
    QCOMPARE(document.drawn(), QStringLiteral("( -0:a +0:X +3:Y )"));
    QCOMPARE(undoSteps(document.history), 1);
    document.history.undo(document.store);
    QCOMPARE(document.store.text(), QStringLiteral("abc"));
    QCOMPARE(document.drawn(), QString());
    document.history.redo(document.store);
    QCOMPARE(document.store.text(), QStringLiteral("XbcY"));
}

void UndoHistoryTest::emptyGroupLeavesNoTrace()
{
    Document document(QStringLiteral("abc"));
    document.insert(0, QStringLiteral("x"));
    document.history.undo(document.store);
    document.history.beginGroup();
    document.history.beginGroup();
    document.history.endGroup();
    document.history.endGroup();
    QVERIFY(!document.history.canUndo());
    QVERIFY(document.history.canRedo());
    QVERIFY(document.history.commands().empty());
}

void UndoHistoryTest::typingJoinsInsideAGroup()
{
    Document document;
    document.history.beginGroup();
    document.type(0, QStringLiteral("ab"));
    document.history.endGroup();
    document.type(2, QStringLiteral("cd"));
    QCOMPARE(document.drawn(), QStringLiteral("( +0:ab ) +2:cd"));
}

void UndoHistoryTest::recordingForgetsRedo()
{
    Document document;
    document.insert(0, QStringLiteral("a"));
    document.insert(1, QStringLiteral("b"));
    document.history.undo(document.store);
    document.insert(1, QStringLiteral("c"));
    QVERIFY(!document.history.canRedo());
    QCOMPARE(document.drawn(), QStringLiteral("+0:a +1:c"));
}

void UndoHistoryTest::oldestStepsAreJoined()
{
    Document document(QString(), 3);
    for (int i = 0; i < 5; ++i)
        document.insert(i, QString::number(i));
    QCOMPARE(document.drawn(), QStringLiteral("( +2:2 ) +3:3 +4:4"));
    QCOMPARE(undoSteps(document.history), 3);
    document.history.undo(document.store);
    document.history.undo(document.store);
    QCOMPARE(document.store.text(), QStringLiteral("012"));
    document.history.undo(document.store);
    QCOMPARE(document.store.text(), QString());
}

void UndoHistoryTest::joinedGroupsKeepOnePairOfStepBoundaries()
{
    Document document(QString(), 1);
    for (int i = 0; i < 3; ++i) {
        document.history.beginGroup();
        document.insert(0, QStringLiteral("a"));
        document.insert(0, QStringLiteral("b"));
        document.history.endGroup();
    }
    QCOMPARE(document.drawn(), QStringLiteral("( +0:b )"));
    document.history.undo(document.store);
    QCOMPARE(document.store.length(), 0);
}

void UndoHistoryTest::smallerDepthJoins()
{
    Document document;
    for (int i = 0; i < 4; ++i)
        document.insert(i, QString::number(i));
    document.history.undo(document.store);
    document.history.setDepth(2);
    QCOMPARE(document.drawn(), QStringLiteral("( +1:1 ) +2:2"));
    QVERIFY(document.history.canRedo());
    document.history.redo(document.store);
    QCOMPARE(document.store.text(), QStringLiteral("0123"));
    document.history.setDepth(0);
    QCOMPARE(document.history.depth(), 1);
    QCOMPARE(undoSteps(document.history), 1);
}

void UndoHistoryTest::clearForgets()
{
    Document document;
    document.type(0, QStringLiteral("ab"));
    document.insert(2, QStringLiteral("c"));
    document.history.undo(document.store);
    document.history.clear();
    QVERIFY(!document.history.canUndo());
    QVERIFY(!document.history.canRedo());
    QVERIFY(document.history.commands().empty());
    document.type(2, QStringLiteral("d"));
    QCOMPARE(document.drawn(), QStringLiteral("+2:d"));
}

void UndoHistoryTest::changesAreTold()
{
    Document document(QStringLiteral("abc"));
    document.history.beginGroup();
    document.erase(0, 2);
    document.insert(1, QStringLiteral("xyz"));
    document.history.endGroup();
    QStringList told;
    const auto tell = [&told](const TextChange &change) {
        told +=
            QStringLiteral("%1-%2+%3").arg(change.offset.value()).arg(change.removed).arg(change.inserted);
    };
    document.history.undo(document.store, tell);
    QCOMPARE(told.join(u' '), QStringLiteral("1-3+0 0-0+2"));
    told.clear();
    document.history.redo(document.store, tell);
    QCOMPARE(told.join(u' '), QStringLiteral("0-2+0 1-0+3"));
}

/// Each group beyond the depth joins the same long oldest step: no work may grow with its length.
void UndoHistoryTest::hugeGroupsJoinQuickly()
{
    Document document(QString(), 2);
    for (int group = 0; group < 2000; ++group) {
        document.history.beginGroup();
        for (int edit = 0; edit < 20; ++edit)
            document.insert(document.store.length(), QStringLiteral("x"));
        document.history.endGroup();
    }
    const std::vector<const UndoCommand *> commands = document.history.commands();
    QCOMPARE(commands.size(), size_t{ 3 + 20 + 2 });
    QCOMPARE(commands.at(0)->kind, Kind::BeginStep);
    QCOMPARE(commands.at(1)->offset, Offset(1999 * 20 - 1));
    QCOMPARE(commands.at(commands.size() - 2)->offset, Offset(2000 * 20 - 1));
    document.history.undo(document.store);
    document.history.undo(document.store);
    QCOMPARE(document.store.length(), 0);
}

void UndoHistoryTest::bigDeletionComesBack()
{
    const QString text = QStringLiteral("line of ASCII\n").repeated(20000);
    Document document(text);
    document.erase(5, document.store.length() - 10);
    TextStore kept;
    kept.insert(Offset(0), document.history.commands().at(0)->text);
    qint64 leaves = 0;
    for (qint64 offset = 0; offset < kept.length(); ++leaves) {
        const TextChunk leaf = kept.chunkAt(Offset(offset));
        QVERIFY2(leaf.isLatin1(), "one byte a unit, as in the store");
        offset += leaf.size();
    }
    QVERIFY(leaves < text.size() / 2048);
    document.history.undo(document.store);
    QCOMPARE(document.store.text(), text);
    QVERIFY(document.store.chunkAt(Offset(1000)).isLatin1());
}

/// Of steps that became one the history holds the leaves that they changed, however many they were.
void UndoHistoryTest::joinedStepsShareTheText()
{
    const QString text = QStringLiteral("line of ASCII\n").repeated(20000);
    Document document(text, 2);
    for (int i = 0; i < 3000; ++i) {
        document.erase(70000, 4);
        document.insert(70000, QStringLiteral("LINE"));
    }
    QCOMPARE(undoSteps(document.history), 2);
    document.store.checkInvariants();
    for (int round = 0; round < 3; ++round) {
        while (document.history.canUndo())
            document.history.undo(document.store);
        document.store.checkInvariants();
        QCOMPARE(document.store.text(), text);
        while (document.history.canRedo())
            document.history.redo(document.store);
        document.store.checkInvariants();
        QCOMPARE(document.store.text(Offset(70000), 4), QStringLiteral("LINE"));
        QCOMPARE(document.store.length(), text.size());
    }
}

void UndoHistoryTest::joinedStepsTellOneChange()
{
    Document document(QStringLiteral("0123456789"), 1);
    document.erase(7, 2);
    document.insert(2, QStringLiteral("abc"));
    document.insert(4, QStringLiteral("X"));
    QCOMPARE(document.store.text(), QStringLiteral("01abXc234569"));
    QStringList told;
    const auto tell = [&told](const TextChange &change) {
        told +=
            QStringLiteral("%1-%2+%3").arg(change.offset.value()).arg(change.removed).arg(change.inserted);
    };
    QCOMPARE(document.history.undo(document.store, tell), Offset(9));
    QCOMPARE(document.store.text(), QStringLiteral("0123456789"));
    QCOMPARE(document.history.redo(document.store, tell), Offset(5));
    QCOMPARE(document.store.text(), QStringLiteral("01abXc234569"));
    QCOMPARE(told.join(u' '), QStringLiteral("2-9+7 2-7+9"));
}

void UndoHistoryTest::randomHistory_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("depth");
    quint32 seed = 1;
    for (const int depth : { 1, 2, 5, 256 }) {
        for (int round = 0; round < 5; ++round) {
            const quint32 used = seedOr(seed++);
            QTest::addRow("seed %u, depth %d", used, depth) << used << depth;
        }
    }
}

void UndoHistoryTest::randomHistory()
{
    QFETCH(const quint32, seed);
    QFETCH(const int, depth);
    RandomHistory history(seed, depth);
    for (int step = 0; step < 300 && !QTest::currentTestFailed(); ++step) {
        history.step();
        history.check();
    }
    if (!QTest::currentTestFailed())
        history.undoEverything();
}

REGISTER_TEST(runCoreTest<UndoHistoryTest>)
#include "undohistory_test.moc"
