#include "recovery/texthash.h"
#include "tests/recovery/journalbytes.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/textalphabet.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Outcome = Restored::Outcome;

namespace {

/// A text with its spellings.
struct KnownText {
    QString text;
    quint64 hash = 0;
    FileCodes codes;
};

KnownText textOf(const TextDocument &document)
{
    const TextStore &store = document.store();
    return { store.text(), textHashOf(store, store.length()),
        { document.charCode(), document.returnCode() } };
}

QByteArray randomBytes(RandomText &random, CharCode code)
{
    static const QList<QByteArray> jis{ "\x1b$B", "\x1b(B", "\x1b(J", "\x1b$@", "$\"", "$$", "a", "\n",
        "\x1b" };
    static const QList<QByteArray> others{ "a", "b", "\n", "\r\n", "\x82\xa0", "\x81\x45", "\x87\x90",
        "\x81\xe0", "\xfa\x54", "\x80", "\xff", "\xe3\x81\x82", "\xe3\x81", "\xa4\xa2" };
    const QList<QByteArray> &parts = code == CharCode::Jis ? jis : others;
    QByteArray bytes;
    for (qint64 count = random.below(60); count > 0; --count)
        bytes += parts.at(random.below(parts.size()));
    return bytes;
}

/// Where the first record ends.
qint64 endOfBase(QByteArrayView journal)
{
    const qsizetype magic = journalMagic().size();
    return magic + recordSize(journal.sliced(magic));
}

} // namespace

/// Random documents, edited, saved and killed, and journals cut and damaged anywhere.
class JournalRandomTest : public QObject {
    Q_OBJECT

private slots:
    void lastWholeCommitComesBack_data();
    void lastWholeCommitComesBack();
    void everyByteMayBeTheLast();
    void grownJournalIsMadeAnew();

private:
    void edit(TextDocument &document, RandomText &random) const;
    void noteWrite(const Run &run);
    /// What comes back in turns is the same.
    static void checkTurns(const LeftBehind &left, Outcome outcome, const TextDocument &expected);
    void checkCut(qsizetype size, const QByteArray &bytes);
    void checkDamaged(const QByteArray &bytes, RandomText &random);
    QList<KnownText> m_texts; ///< by the commits in the journal
    std::unique_ptr<RecoveryFolder> m_folder;
};

void JournalRandomTest::lastWholeCommitComesBack_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<quint32>("seed");
    const std::pair<const char *, CharCode> codes[] = { { "UTF-8", CharCode::Utf8 },
        { "Shift-JIS", CharCode::ShiftJis }, { "EUC", CharCode::Euc }, { "JIS", CharCode::Jis } };
    for (const auto &[name, code] : codes) {
        for (quint32 seed = seedOr(1); seed < seedOr(1) + 3; ++seed)
            QTest::addRow("%s, seed %u", name, seed) << int(code) << seed;
    }
}

void JournalRandomTest::edit(TextDocument &document, RandomText &random) const
{
    const TextStore &store = document.store();
    const qint64 at = random.below(store.length() + 1);
    const qint64 removed = random.below(qMin<qint64>(9, store.length() - at) + 1);
    switch (random.below(8)) {
    case 0:
        if (document.history().canUndo())
            document.undo();
        break;
    case 1:
        if (document.history().canRedo())
            document.redo();
        break;
    case 2:
    case 3: {
        const qint64 from = random.below(store.length() + 1);
        const TextPiece piece = store.piece(Offset(from), random.below(store.length() - from + 1));
        if (store.length() < 2000)
            document.replace(Offset(at), removed, piece);
        break;
    }
    default:
        document.replace(Offset(at), removed, random.text(random.below(6)), TextDocument::Joining::Never);
    }
}

void JournalRandomTest::noteWrite(const Run &run)
{
    const qsizetype commits = JournalBytes::commitsIn(JournalBytes::only(*m_folder));
    if (commits == 0)
        m_texts.clear();
    else if (commits > m_texts.size() || commits == 1) {
        m_texts.resize(commits - 1);
        m_texts.append(textOf(run.document));
    }
}

void JournalRandomTest::lastWholeCommitComesBack()
{
    QFETCH(int, code);
    QFETCH(quint32, seed);
    RandomText random(seed);
    for (int life = 0; life < 2; ++life) {
        m_folder = std::make_unique<RecoveryFolder>();
        m_texts.clear();
        QByteArray bytes;
        {
            Run run(*m_folder);
            const QString path = m_folder->documents().path();
            QVERIFY(m_folder->documents().write(u"file"_s, randomBytes(random, CharCode(code))));
            if (!random.chance(4))
                QVERIFY(
                    !run.document.load(path, u"file"_s, CharCode(code), { CharCode(code), ReturnCode::Lf }));
            for (int step = 0; step < 60; ++step) {
                edit(run.document, random);
                if (random.chance(20)) {
                    run.document.save(path, u"file"_s, CharCode(code));
                    run.document.replace({}, 0, u"x");
                }
                if (random.chance(4)) {
                    QVERIFY(run.pause());
                    noteWrite(run);
                }
            }
            bytes = JournalBytes::only(*m_folder);
        }
        if (m_texts.isEmpty())
            continue;
        for (int cut = 0; cut < 6; ++cut)
            checkCut(random.below(bytes.size() + 1), bytes);
        checkCut(bytes.size(), bytes);
        for (int damage = 0; damage < 6; ++damage)
            checkDamaged(bytes, random);
    }
}

void JournalRandomTest::everyByteMayBeTheLast()
{
    m_folder = std::make_unique<RecoveryFolder>();
    m_texts.clear();
    {
        Run run(*m_folder);
        QVERIFY(m_folder->documents().write(u"file"_s, "\x82\xa0 \x81\x45\n"));
        QVERIFY(!run.document.load(m_folder->documents().path(), u"file"_s, CharCode::ShiftJis, {}));
        for (const QString &text : { u"a"_s, u"\u3042"_s }) {
            run.document.replace(Offset(1), 0, text);
            QVERIFY(run.pause());
            noteWrite(run);
        }
    }
    const QByteArray bytes = JournalBytes::only(*m_folder);
    QCOMPARE(m_texts.size(), 2);
    for (qsizetype cut = 0; cut <= bytes.size(); ++cut)
        checkCut(cut, bytes);
}

void JournalRandomTest::checkCut(qsizetype size, const QByteArray &bytes)
{
    RecoveryFolder other;
    const LeftBehind left = JournalBytes::put(other, bytes.first(size));
    const std::vector<LeftBehind> found = findLeftBehind(other.journals());
    const qsizetype commits = JournalBytes::commitsIn(bytes.first(size));
    TextDocument document;
    Restored restored = restore(left.journal, document);
    restored.journal = {};
    if (commits == 0) { // without its base it is gone
        const bool hasBase = size >= endOfBase(bytes);
        QCOMPARE(QFile::exists(QFile::decodeName(left.journal)), hasBase);
        QCOMPARE(restored.outcome, hasBase ? Outcome::NotPossible : Outcome::InUse);
        return;
    }
    QVERIFY(restored.outcome == Outcome::Edited || restored.outcome == Outcome::New);
    const KnownText expected = m_texts.at(commits - 1);
    const KnownText restoredText = textOf(document);
    QCOMPARE(restoredText.text, expected.text);
    QCOMPARE(restoredText.hash, expected.hash);
    QCOMPARE(restoredText.codes.charCode, expected.codes.charCode);
    QCOMPARE(restoredText.codes.returnCode, expected.codes.returnCode);
    checkTurns(found.at(0), restored.outcome, document);
}

void JournalRandomTest::checkTurns(const LeftBehind &left, Outcome outcome, const TextDocument &expected)
{
    ClaimedJournal claimed = ClaimedJournal::claim(left.journal, FileCalls::system());
    QVERIFY(claimed);
    const SharedJournal journal = openAgain(claimed);
    TextDocument document;
    bool isRead = false;
    if (left.readAs)
        isRead = !document.load(left.path, left.name, left.readAs->code, { left.readAs->code });
    JournalLook look(journal, TextSnapshot(std::as_const(document).store()));
    while (look.lookOn()) { }
    Restoring restoring(std::move(claimed), journal, document);
    if (isRead)
        restoring.lookInFile(look.hash());
    while (!restoring.prepare(QDeadlineTimer(0))) { }
    QCOMPARE(restoring.finish().outcome, outcome);
    QCOMPARE(textOf(document).text, textOf(expected).text);
    QCOMPARE(textOf(document).hash, textOf(expected).hash);
    document.store().checkInvariants();
    QCOMPARE(document.history().canUndo(), expected.history().canUndo());
}

/// Bytes that another program wrote, or a bad disk: what is before them comes back, and all of it where only
/// the record is lost that says what it is of.
void JournalRandomTest::checkDamaged(const QByteArray &bytes, RandomText &random)
{
    QByteArray damaged = bytes;
    const qint64 at = random.below(bytes.size());
    damaged[at] = char(damaged[at] ^ (1 + random.below(255)));
    RecoveryFolder other;
    const LeftBehind left = JournalBytes::put(other, damaged);
    TextDocument document;
    const Restored restored = restore(left.journal, document);
    const bool isStartLost = at < endOfBase(bytes);
    const qsizetype commits = JournalBytes::commitsIn(isStartLost ? bytes : damaged);
    if (commits == 0) {
        QCOMPARE(restored.outcome, Outcome::NotPossible);
        return;
    }
    QVERIFY(!isStartLost || restored.outcome == Outcome::Edited || restored.outcome == Outcome::New);
    if (restored.outcome == Outcome::Parts) // the base cannot be known
        return;
    QCOMPARE(document.store().text(), m_texts.at(commits - 1).text);
}

void JournalRandomTest::grownJournalIsMadeAnew()
{
    m_folder = std::make_unique<RecoveryFolder>();
    QString expected;
    {
        Run run(*m_folder);
        QVERIFY(m_folder->documents().write(u"file"_s, QByteArray(100000, 'a')));
        QVERIFY(!run.document.load(m_folder->documents().path(), u"file"_s, {}, {}));
        for (char16_t letter = u'b'; letter < u'm'; ++letter) {
            run.document.replace({}, run.document.store().length() - 500, QString(1 << 20, letter));
            QVERIFY(run.pause());
            QVERIFY(JournalBytes::only(*m_folder).size() < qsizetype{ 12 } << 20);
        }
        QVERIFY(JournalBytes::commitsIn(JournalBytes::only(*m_folder)) < 11);
        expected = run.text();
    }
    QVERIFY(m_folder->documents().write(u"file"_s, "another"));
    TextDocument document;
    QCOMPARE(restore(m_folder->leftBehind().at(0).journal, document).outcome, Outcome::New);
    QCOMPARE(document.store().text(), expected);
}

REGISTER_TEST(runCoreTest<JournalRandomTest>)
#include "journalrandom_test.moc"
