#include "app/documentjournals.h"
#include "app/recovery.h"
#include "files/oldcopy.h"
#include "tests/app/brokenreading.h"
#include "tests/app/documentparts.h"
#include "tests/app/unsavedlist.h"
#include "tests/app/unsavedtexts.h"
#include "tests/filedialog/formtest.h"
#include "tests/jobs/scarcememory.h"
#include "tests/testprogram.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qint64 nothingIsLong = qint64{ 1 } << 40;

/// In several blocks.
QByteArray manyLines()
{
    return QByteArray("a line of a long text\r\n").repeated(30'000);
}

QString textOfNoFile()
{
    return QString::fromLatin1(manyLines()).replace(5, 2, u"xyz"_s);
}

std::optional<int> percentIn(const QString &text)
{
    const auto match = QRegularExpression(u": (\\d+)%$"_s).match(text);
    return match.hasMatch() ? std::optional(match.captured(1).toInt()) : std::nullopt;
}

} // namespace

/// Texts that come back while their files are read behind the window, step by step.
class RestoringBehindTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void isAsRestoredAtOnce_data();
    void isAsRestoredAtOnce();
    void savedTextIsOpened_data();
    void savedTextIsOpened();
    void textOfNoFileComesBack();
    void otherDocumentsAreEditedMeanwhile();
    void openFileKeepsItsTextUntilThen();
    void oneComesAfterTheOther();
    void whatIsGivenUpIsOfferedAgain_data();
    void whatIsGivenUpIsOfferedAgain();
    void fileThatShrinksMeanwhile_data();
    void fileThatShrinksMeanwhile();
    void unreadableFileIsToldAsLost();
    void programThatEndsLosesNothing_data();
    void programThatEndsLosesNothing();
    void givenUpAmidTheTurns_data();
    void givenUpAmidTheTurns();
    void tellsHowFarItIs();
    void tooLittleMemoryIsTold_data();
    void tooLittleMemoryIsTold();
    void readErrorOfTheJournalIsTold();

private:
    /// A program that was killed has put "x" in front of a file's text, with the cursor behind it.
    void leave(const QString &name, const QByteArray &content);
    /// A program that was killed had a long text of no file.
    static void leaveUnnamed();
    /// Begins with the text of no file, and makes all steps and so many turns, each as short as can be.
    ctlEditer *restoreUpToTurn(int turns);
    /// A save was about to write over the file in place.
    void leaveCopy(const QString &name);
    /// All that the strip offers.
    void restoreAllOffered();
    /// All steps and turns of what is restored.
    void restoreToTheEnd();
    DocumentArea &documents() { return m_parts->documents; }
    bool isOffered() { return documents().notices().has(NoticeKind::Unsaved, nullptr); }
    QString offer() { return isOffered() ? documents().notices().heaviest(nullptr)->text() : QString(); }
    QString folder() const { return m_parts->files.folder(); }

    std::unique_ptr<DocumentParts> m_parts;
    std::unique_ptr<RecoveryJournals> m_journals;
    std::unique_ptr<DocumentJournals> m_attached;
    std::unique_ptr<Recovery> m_recovery;
};

void RestoringBehindTest::init()
{
    UnsavedTexts::removeAll();
    m_parts = std::make_unique<DocumentParts>();
    m_parts->jobs.fewest = 1;
    m_journals = std::make_unique<RecoveryJournals>();
    m_attached = std::make_unique<DocumentJournals>(documents(), *m_journals);
    m_recovery =
        std::make_unique<Recovery>(m_parts->window, documents(), m_parts->loader, *m_journals, m_parts->jobs);
}

void RestoringBehindTest::cleanup()
{
    m_recovery.reset();
    m_parts.reset();
    m_attached.reset();
    m_journals.reset();
}

void RestoringBehindTest::leave(const QString &name, const QByteArray &content)
{
    m_parts->files.write(name, content);
    TextDocument document;
    RecoveryJournals journals;
    journals.attach(document, [] { return ViewPlace{ { Offset(1) }, {}, {}, 0 }; });
    QVERIFY(!document.load(folder(), name, {}, {}));
    document.replace(Offset(0), 0, u"x"_s);
    QVERIFY(journals.flush(10s));
}

void RestoringBehindTest::leaveCopy(const QString &name)
{
    OldCopy copy(FileCalls::system());
    QVERIFY(copy.make(QFile::encodeName(folder() + name)));
    copy.leave();
}

void RestoringBehindTest::restoreAllOffered()
{
    m_journals->lookForLeftBehind();
    QTRY_VERIFY(isOffered());
    const InList restoring([](frmRecovery &form) { press(form, u"Restore"_s); });
    const auto act = documents().notices().heaviest(documents().current())->offers.front().act;
    act();
}

void RestoringBehindTest::restoreToTheEnd()
{
    const auto isHeld = [](const ctlEditer *editor) { return editor->document().isHeld(); };
    do {
        m_parts->steps.runAll();
        QCoreApplication::processEvents();
    } while (!m_parts->steps.isIdle() || std::ranges::any_of(documents().editors(), isHeld));
}

void RestoringBehindTest::isAsRestoredAtOnce_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<std::optional<QByteArray>>("now");
    QTest::addColumn<bool>("isCopied");
    using Bytes = std::optional<QByteArray>;
    const QByteArray lines = manyLines();
    QTest::newRow("same file") << lines << Bytes(lines) << false;
    QTest::newRow("grown") << lines << Bytes(lines + "more\r\n") << false;
    QTest::newRow("changed") << lines << Bytes("other " + lines) << false;
    QTest::newRow("gone") << lines << Bytes() << false;
    const QByteArray notKept =
        QByteArray("a line of a text that its journal does not keep\r\n").repeated(200'000);
    QTest::newRow("not kept, grown") << notKept << Bytes(notKept + "more\r\n") << false;
    QTest::newRow("not kept, changed") << notKept << Bytes("other " + notKept) << false;
    QTest::newRow("not kept, half written over") << notKept << Bytes("other " + lines) << true;
    const QByteArray sjis = QByteArray("\x93\xFA\x96\x7B\n").repeated(30'000);
    QTest::newRow("Shift-JIS") << sjis << Bytes(sjis) << false;
    QTest::newRow("Shift-JIS, now UTF-8")
        << sjis << Bytes(QString(u"日本\n"_s.repeated(30'000)).toUtf8()) << false;
}

void RestoringBehindTest::isAsRestoredAtOnce()
{
    QFETCH(QByteArray, before);
    QFETCH(std::optional<QByteArray>, now);
    QFETCH(bool, isCopied);
    QStringList results;
    for (const qint64 fewest : { nothingIsLong, qint64(1) }) {
        cleanup();
        init();
        m_parts->jobs.fewest = fewest;
        ctlEditer *const first = documents().add();
        documents().present(first);
        leave(u"a.txt"_s, before);
        if (isCopied)
            leaveCopy(u"a.txt"_s);
        if (now)
            m_parts->files.write(u"a.txt"_s, *now);
        else
            QVERIFY(QFile::remove(folder() + u"a.txt"_s));
        restoreAllOffered();
        restoreToTheEnd();
        QCOMPARE(documents().editors().size(), 1);
        ctlEditer &editor = *documents().current();
        QVERIFY(!editor.document().isHeld());
        const auto notice = documents().notices().heaviest(&editor);
        const QString text = editor.text();
        QVERIFY(text.startsWith(u'x'));
        QStringList result{ text, QString::number(editor.cursorOffset().value()), editor.charCodeName(),
            editor.returnCodeName(), editor.path().isEmpty() ? QString() : editor.name(),
            notice ? notice->text() : QString(), m_parts->tabTexts().join(u'|') };
        QVERIFY(editor.edited());
        editor.store().checkInvariants();
        editor.undo();
        result << editor.text() << QString::number(editor.edited()) << editor.charCodeName();
        results << result.join(u'\0');
    }
    QVERIFY(results[0] == results[1]);
}

void RestoringBehindTest::savedTextIsOpened_data()
{
    QTest::addColumn<bool>("isBehind");
    QTest::addColumn<bool>("isCopied");
    QTest::newRow("at once") << false << false;
    QTest::newRow("behind the window") << true << false;
    QTest::newRow("at once, the save's copy not removed") << false << true;
    QTest::newRow("behind the window, the save's copy not removed") << true << true;
}

/// Of a text that its journal does not keep.
void RestoringBehindTest::savedTextIsOpened()
{
    QFETCH(bool, isBehind);
    QFETCH(bool, isCopied);
    m_parts->jobs.fewest = isBehind ? 1 : nothingIsLong;
    const QByteArray content =
        QByteArray("a line of a text that its journal does not keep\r\n").repeated(200'000);
    leave(u"a.txt"_s, content);
    if (isCopied)
        leaveCopy(u"a.txt"_s);
    m_parts->files.write(u"a.txt"_s, 'x' + content);
    restoreAllOffered();
    restoreToTheEnd();
    const ctlEditer &editor = *documents().current();
    QVERIFY(editor.text() == u'x' + QString::fromLatin1(content).remove(u'\r'));
    QVERIFY(!editor.edited());
    QCOMPARE(editor.path() + editor.name(), folder() + u"a.txt"_s);
    QCOMPARE(documents().notices().heaviest(&editor)->text(),
        u"Nothing is missing; this text was saved already"_s);
    QCOMPARE(editor.cursorOffset(), Offset(1));
    QTRY_VERIFY(findLeftBehind(journalFolder()).empty());
    for (const LostCopy &copy : lostCopies())
        removeLostCopy(copy.name);
}

void RestoringBehindTest::textOfNoFileComesBack()
{
    leaveUnnamed();
    restoreAllOffered();
    ctlEditer *const editor = documents().current();
    QVERIFY(editor->document().isHeld());
    QCOMPARE(editor->text(), QString());
    restoreToTheEnd();
    QVERIFY(editor->text() == textOfNoFile());
    editor->store().checkInvariants();
    QVERIFY(editor->edited() && editor->path().isEmpty());
    editor->undo();
    QCOMPARE(editor->text(), QString());
    QTRY_COMPARE(UnsavedTexts::leftBehind(), QStringList());
}

void RestoringBehindTest::otherDocumentsAreEditedMeanwhile()
{
    ctlEditer *const other = documents().add();
    documents().present(other);
    other->insert(u"text"_s);
    leave(u"a.txt"_s, manyLines());
    restoreAllOffered();
    ctlEditer *const editor = documents().current();
    QVERIFY(editor != other);
    m_parts->makeSteps(1);
    QVERIFY(editor->document().isHeld());
    QTRY_VERIFY(m_parts->isStrip(editor));
    QTest::keyClicks(editor, u"y"_s);
    QVERIFY(!editor->edited());
    documents().present(other);
    QTest::keyClicks(other, u"typed"_s);
    restoreToTheEnd();
    QCOMPARE(documents().current(), other);
    QVERIFY(other->text().contains(u"typed"_s));
    QVERIFY(!editor->document().isHeld());
    QVERIFY(editor->text().startsWith(u"xa line"_s));
    QCOMPARE(editor->cursorOffset(), Offset(1));
    QTRY_COMPARE(UnsavedTexts::leftBehind(), QStringList());
    QVERIFY(!isOffered());
}

void RestoringBehindTest::openFileKeepsItsTextUntilThen()
{
    leave(u"a.txt"_s, manyLines());
    m_parts->jobs.fewest = nothingIsLong;
    ctlEditer *const editor = m_parts->open(folder() + u"a.txt"_s);
    m_parts->jobs.fewest = 1;
    const QString text = editor->text();
    restoreAllOffered();
    QCOMPARE(documents().editors(), QList<ctlEditer *>{ editor });
    m_parts->makeSteps(1);
    QVERIFY(editor->text() == text);
    restoreToTheEnd();
    QVERIFY(editor->text() == u'x' + text);
}

void RestoringBehindTest::oneComesAfterTheOther()
{
    for (const QString &name : { u"a.txt"_s, u"b.txt"_s })
        leave(name, manyLines());
    restoreAllOffered();
    QCOMPARE(documents().editors().size(), 1);
    QVERIFY(!isOffered());
    restoreToTheEnd();
    QCOMPARE(documents().editors().size(), 2);
    for (const ctlEditer *editor : documents().editors()) {
        QVERIFY(editor->edited());
        QVERIFY(editor->text().startsWith(u"xa line"_s));
    }
    QCOMPARE(documents().current(), documents().editors().front());
    QTRY_COMPARE(UnsavedTexts::leftBehind(), QStringList());
}

void RestoringBehindTest::whatIsGivenUpIsOfferedAgain_data()
{
    QTest::addColumn<bool>("isClosed");
    QTest::addColumn<int>("steps");
    for (const int steps : { 0, 1, 2, 3 }) {
        QTest::addRow("stopped after %d", steps) << false << steps;
        QTest::addRow("closed after %d", steps) << true << steps;
    }
}

void RestoringBehindTest::whatIsGivenUpIsOfferedAgain()
{
    QFETCH(bool, isClosed);
    QFETCH(int, steps);
    ctlEditer *const other = documents().add();
    documents().present(other);
    other->insert(u"text"_s);
    for (const QString &name : { u"a.txt"_s, u"b.txt"_s })
        leave(name, manyLines());
    restoreAllOffered();
    ctlEditer *const editor = documents().current();
    QVERIFY(editor != other);
    m_parts->makeSteps(steps);
    QTRY_VERIFY(m_parts->isStrip(editor));
    if (isClosed)
        m_parts->closer.close(editor);
    else
        m_parts->pressStop(editor);
    QCOMPARE(documents().editors(), QList<ctlEditer *>{ other });
    QTRY_COMPARE(offer(), u"2 documents were not saved"_s);
    restoreToTheEnd();
    QCOMPARE(documents().editors(), QList<ctlEditer *>{ other });
    QCOMPARE(UnsavedTexts::leftBehind().size(), 2);
    restoreAllOffered();
    restoreToTheEnd();
    QCOMPARE(documents().editors().size(), 3);
    QTRY_COMPARE(UnsavedTexts::leftBehind(), QStringList());
}

void RestoringBehindTest::fileThatShrinksMeanwhile_data()
{
    QTest::addColumn<bool>("isKept"); // in the journal
    QTest::addColumn<int>("steps");
    QTest::addColumn<qint64>("left");
    for (const int steps : { 0, 1, 2, 3 }) {
        for (const bool isKept : { true, false }) {
            for (const qint64 left : { 0, 1000, 400'000 }) {
                QTest::addRow("%s, to %lld bytes after %d steps", isKept ? "kept" : "not kept", left, steps)
                    << isKept << steps << left;
            }
        }
    }
}

/// All of the text comes back where the journal has it, else what was written; nothing is mixed with what is
/// left of the file.
void RestoringBehindTest::fileThatShrinksMeanwhile()
{
    QFETCH(bool, isKept);
    QFETCH(int, steps);
    QFETCH(qint64, left);
    const QByteArray line = "a line of a long text\r\n";
    const QByteArray content = line.repeated(isKept ? 30'000 : 400'000);
    leave(u"a.txt"_s, content);
    restoreAllOffered();
    m_parts->makeSteps(steps);
    QVERIFY(QFile::resize(folder() + u"a.txt"_s, left));
    const MessageBoxes boxes;
    restoreToTheEnd();
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(documents().editors().size(), 1);
    const ctlEditer &editor = *documents().current();
    QVERIFY(editor.edited());
    editor.store().checkInvariants();
    const QString whole = u'x' + QString::fromLatin1(content).remove(u'\r');
    const QString parts = editor.text().left(100);
    if (isKept)
        QVERIFY(editor.text() == whole);
    else
        QVERIFY2(editor.text() == whole || editor.text().contains(u"[...]"), qPrintable(parts));
    QVERIFY(editor.text().startsWith(u'x'));
    QTRY_COMPARE(UnsavedTexts::leftBehind(), QStringList());
}

/// Of the journal, cut off by then, nothing is left to play.
void RestoringBehindTest::unreadableFileIsToldAsLost()
{
    leave(u"a.txt"_s, manyLines());
    restoreAllOffered();
    m_parts->makeSteps(1);
    const QDir journals(UnsavedTexts::folder());
    const QStringList names = journals.entryList({ u"*.journal"_s }, QDir::Files);
    QCOMPARE(names.size(), 1);
    QVERIFY(QFile::resize(journals.filePath(names[0]), 20));
    const MessageBoxes boxes;
    restoreToTheEnd();
    QTRY_COMPARE(boxes.count(), 1);
    QVERIFY(documents().editors().isEmpty() || !documents().current()->edited());
}

void RestoringBehindTest::programThatEndsLosesNothing_data()
{
    QTest::addColumn<bool>("isPlaying");
    QTest::addColumn<bool>("isByOrder"); // whose memory may take long to be freed
    QTest::newRow("while it is read") << false << false;
    QTest::newRow("while its edits are made") << true << false;
    QTest::newRow("by an order, while it is read") << false << true;
    QTest::newRow("by an order, while its edits are made") << true << true;
}

void RestoringBehindTest::programThatEndsLosesNothing()
{
    QFETCH(bool, isPlaying);
    QFETCH(bool, isByOrder);
    if (isPlaying) {
        leaveUnnamed();
        restoreUpToTurn(3);
    } else {
        leave(u"a.txt"_s, manyLines());
        restoreAllOffered();
        m_parts->makeSteps(1);
    }
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList());
    if (isByOrder)
        emit static_cast<QPEApplication *>(qApp)->endingAtOnce();
    else
        cleanup();
    QCOMPARE(UnsavedTexts::leftBehind().size(), 1);
}

void RestoringBehindTest::leaveUnnamed()
{
    TextDocument document;
    RecoveryJournals journals;
    journals.attach(document);
    document.replace(Offset(0), 0, QString::fromLatin1(manyLines()));
    document.replace(Offset(5), 2, u"xyz"_s);
    QVERIFY(journals.flush(10s));
}

ctlEditer *RestoringBehindTest::restoreUpToTurn(int turns)
{
    m_parts->jobs.turn = 0ms;
    restoreAllOffered();
    ctlEditer *const editor = documents().current();
    m_parts->steps.runAll();
    for (int turn = 0; turn < turns; ++turn)
        QCoreApplication::processEvents();
    Q_ASSERT(editor->document().isHeld());
    return editor;
}

void RestoringBehindTest::givenUpAmidTheTurns_data()
{
    QTest::addColumn<bool>("isClosed");
    QTest::addColumn<int>("turns");
    for (const int turns : { 0, 1, 2, 5, 10 }) {
        QTest::addRow("stopped after %d", turns) << false << turns;
        QTest::addRow("closed after %d", turns) << true << turns;
    }
}

void RestoringBehindTest::givenUpAmidTheTurns()
{
    QFETCH(bool, isClosed);
    QFETCH(int, turns);
    leaveUnnamed();
    ctlEditer *const editor = restoreUpToTurn(turns);
    QVERIFY(!editor->document().requestChange());
    QVERIFY(m_parts->isStrip(editor));
    if (isClosed)
        m_parts->closer.close(editor);
    else
        m_parts->pressStop(editor);
    QVERIFY(documents().editors().isEmpty());
    QTRY_COMPARE(offer(), u"1 document was not saved"_s);
    QCOMPARE(UnsavedTexts::leftBehind(), QStringList{ textOfNoFile() });
    restoreAllOffered();
    restoreToTheEnd();
    QVERIFY(documents().current()->text() == textOfNoFile());
    QTRY_COMPARE(UnsavedTexts::leftBehind(), QStringList());
}

/// A refused change brings the strip at once.
void RestoringBehindTest::tellsHowFarItIs()
{
    leaveUnnamed();
    const ctlEditer *const editor = restoreUpToTurn(0);
    QVERIFY(!documents().current()->document().requestChange());
    QList<int> percents;
    while (editor->document().isHeld()) {
        const QString text = documents().notices().heaviest(editor)->text();
        QVERIFY2(text.startsWith(u"Not while it is being restored"), qPrintable(text));
        if (const auto percent = percentIn(text); percent && !percents.endsWith(*percent))
            percents << *percent;
        QCoreApplication::processEvents();
    }
    QVERIFY(percents.size() > 3);
    QVERIFY(std::ranges::is_sorted(percents));
    QVERIFY(percents.first() < 60 && percents.last() <= 100);
}

void RestoringBehindTest::tooLittleMemoryIsTold_data()
{
    QTest::addColumn<bool>("isOfFile");
    QTest::newRow("of a file") << true;
    QTest::newRow("of no file") << false;
}

/// In each of its steps, and now and then in its many turns.
void RestoringBehindTest::tooLittleMemoryIsTold()
{
    QFETCH(bool, isOfFile);
    bool wasMet = true;
    int question = 1;
    for (; wasMet; question += 1 + question / 4) {
        cleanup();
        init();
        m_parts->jobs.turn = 0ms;
        ctlEditer *const other = documents().add();
        documents().present(other);
        other->insert(u"text"_s);
        isOfFile ? leave(u"a.txt"_s, manyLines()) : leaveUnnamed();
        const MessageBoxes boxes;
        {
            const ScarceMemory scarce(question);
            restoreAllOffered();
            restoreToTheEnd();
            wasMet = scarce.wasMet();
        }
        if (wasMet) {
            const QString name = isOfFile ? u"a.txt"_s : ctlEditer::nameOfUnnamed();
            QTRY_COMPARE(boxes.texts(),
                QStringList{ u"Restore|There is not enough memory to restore these texts:\n"_s + name });
            QCOMPARE(documents().editors(), QList<ctlEditer *>{ other });
            QTRY_VERIFY(isOffered());
            restoreAllOffered();
            restoreToTheEnd();
        }
        QCOMPARE(other->text(), u"text"_s);
        QCOMPARE(documents().editors().size(), 2);
        QVERIFY(documents().editors().back()->text().startsWith(isOfFile ? u"xa line" : u"a linxyz"));
        QTRY_COMPARE(UnsavedTexts::leftBehind(), QStringList());
    }
    QVERIFY(question > 5);
}

void RestoringBehindTest::readErrorOfTheJournalIsTold()
{
    leave(u"a.txt"_s, manyLines());
    restoreAllOffered();
    m_parts->makeSteps(1);
    const QDir journals(UnsavedTexts::folder());
    QVERIFY(breakReading(journals.filePath(journals.entryList({ u"*.journal"_s }, QDir::Files).value(0))));
    const MessageBoxes boxes;
    restoreToTheEnd();
    QTRY_COMPARE(boxes.texts(), QStringList{ u"Restore|These texts could not be restored:\na.txt"_s });
    QTRY_VERIFY(isOffered());
    restoreAllOffered();
    restoreToTheEnd();
    QVERIFY(documents().current()->text().startsWith(u"xa line"));
}

REGISTER_TEST(runFormTest<RestoringBehindTest>)
#include "restoringbehind_test.moc"
