#include "app/documentsaver.h"

#include "files/endorder.h"
#include "platform/requesthold.h"
#include "tests/app/documentparts.h"
#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

namespace {

/// A text that is written in several steps.
QByteArray longContent()
{
    return QByteArray("a line of a long text\n").repeated(120'000);
}

constexpr int allSteps = 5; ///< of writing it

} // namespace

/// Long texts on their way into files, while the window goes on.
class SavingBehindTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<ctlEditer *>(); }
    void init();
    void cleanup();

    void isWrittenWhileTheWindowGoesOn();
    void signalsComeInTheirOrder();
    void editsAreRefusedWithAWord();
    void secondSaveIsRefused();
    void stopped_data() { addSteps(); }
    void stopped();
    void failureIsTold();
    void failureWaitsForWhatIsInTheWay();
    void failedSaveAsAsksAgain();
    void closingWaits_data() { addSteps(); }
    void closingWaits();
    void closingPausesTheKeys();
    void closingStaysAfterAStop();
    void closingWithSaveWaits();
    void quittingWaits_data();
    void quittingWaits();
    void quittingEndsWhereItIsStopped();
    void closedOtherwiseIsGivenUp();
    void savesAllInTheirOrder();
    void savingAllEndsWhereItIsStopped();
    void signalGivesItUp_data() { addSteps(); }
    void signalGivesItUp();
    void fileChangedBefore();
    void openedAgainMeanwhile();
    void reloadThatIsAskedFor();
    void twoAtOnce();

private:
    static void addSteps();
    static bool takesKeys(ctlEditer &editor)
    {
        QInputMethodQueryEvent query(Qt::ImEnabled);
        return QCoreApplication::sendEvent(&editor, &query) && query.value(Qt::ImEnabled).toBool();
    }
    ctlEditer *edited(const QString &name)
    {
        ctlEditer *const editor = m_parts->open(m_parts->files.write(name, longContent()));
        m_parts->steps.runAll(); // it is read behind the window too
        editor->insert(u"new "_s);
        m_parts->documents.refresh(editor);
        return editor;
    }
    QByteArray read(const QString &name) const { return m_parts->files.read(name); }

    const QByteArray m_old = longContent();
    const QByteArray m_new = "new " + longContent();
    std::unique_ptr<DocumentParts> m_parts;
};

void SavingBehindTest::addSteps()
{
    QTest::addColumn<int>("steps");
    for (int steps = 0; steps < allSteps; ++steps)
        QTest::addRow("after %d", steps) << steps;
}

void SavingBehindTest::init()
{
    m_parts = std::make_unique<DocumentParts>();
    m_parts->jobs.fewest = 1 << 20;
}

void SavingBehindTest::cleanup()
{
    EndOrder::withdraw();
    m_parts.reset();
}

void SavingBehindTest::isWrittenWhileTheWindowGoesOn()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    m_parts->saver.beginSave(editor);
    QVERIFY(m_parts->saver.isSaving(editor));
    QCOMPARE(read(u"a.txt"_s), m_old);
    ctlEditer *const other = m_parts->open(m_parts->files.write(u"b.txt"_s, "b"));
    other->insert(u"typed "_s);
    QCOMPARE(other->text(), u"typed b"_s);
    QCOMPARE(m_parts->steps.runAll(), allSteps);
    QCOMPARE(read(u"a.txt"_s), m_new);
    QVERIFY(!m_parts->saver.isSaving(editor));
    QVERIFY(!editor->edited());
    QCOMPARE(m_parts->tabTexts().first(), u"a.txt"_s);
    editor->insert(u"and "_s);
    QVERIFY(editor->edited());
}

void SavingBehindTest::signalsComeInTheirOrder()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    QStringList told;
    connect(&editor->document(), &TextDocument::codesChanged, this, [&] { told << u"codes"_s; });
    connect(&editor->document(), &TextDocument::saved, this, [&] { told << u"saved"_s; });
    connect(&m_parts->documents, &DocumentArea::refreshed, this, [&] { told << u"refreshed"_s; });
    FileChoice file{ m_parts->files.folder(), u"b.txt"_s };
    file.returnCode = ReturnCode::CrLf;
    m_parts->saver.beginSaveTo(editor, file, [&](bool isSaved) { told << (isSaved ? u"then"_s : u"not"_s); });
    QCOMPARE(told, QStringList({ u"codes"_s, u"refreshed"_s }));
    m_parts->steps.runAll();
    QCOMPARE(told.mid(2), QStringList({ u"saved"_s, u"refreshed"_s, u"then"_s }));
    QCOMPARE(editor->name(), u"b.txt"_s);
    QCOMPARE(read(u"a.txt"_s), m_old);
}

void SavingBehindTest::editsAreRefusedWithAWord()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    m_parts->saver.beginSave(editor);
    QVERIFY(!m_parts->isStrip(editor)); // what is over soon needs no sign
    m_parts->steps.step();
    QTest::keyClicks(editor, u"x"_s);
    editor->undo();
    editor->cut();
    QVERIFY(m_parts->isStrip(editor));
    QCOMPARE(m_parts->documents.notices().heaviest(editor)->text().section(u':', 0, 0),
        u"Not while it is being saved"_s);
    m_parts->steps.runAll();
    QVERIFY(!m_parts->isStrip(editor));
    QCOMPARE(read(u"a.txt"_s), m_new);
    QVERIFY(!editor->edited());
}

void SavingBehindTest::secondSaveIsRefused()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    m_parts->saver.beginSave(editor);
    m_parts->steps.step();
    bool isSaved = true;
    m_parts->saver.beginSave(editor, [&](bool saved) { isSaved = saved; });
    QVERIFY(!isSaved);
    m_parts->saver.beginSaveAs(editor);
    QVERIFY(m_parts->starts.isEmpty());
    m_parts->steps.runAll();
    QCOMPARE(read(u"a.txt"_s), m_new);
}

void SavingBehindTest::stopped()
{
    QFETCH(int, steps);
    ctlEditer *const editor = edited(u"a.txt"_s);
    const MessageBoxes boxes;
    bool isSaved = true;
    m_parts->saver.beginSave(editor, [&](bool saved) { isSaved = saved; });
    m_parts->makeSteps(steps);
    QTRY_VERIFY(m_parts->isStrip(editor));
    m_parts->pressStop(editor);
    m_parts->steps.runAll();
    QVERIFY(!isSaved);
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(read(u"a.txt"_s), m_old);
    QCOMPARE(QDir(m_parts->files.folder()).entryList(QDir::Files | QDir::Hidden), QStringList{ u"a.txt"_s });
    QVERIFY(editor->edited());
    QVERIFY(!m_parts->isStrip(editor));
    editor->undo();
    QCOMPARE(editor->text().size(), m_old.size());
}

void SavingBehindTest::failureIsTold()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    breakSaving(editor);
    const MessageBoxes boxes;
    m_parts->open(m_parts->files.write(u"b.txt"_s, "b"));
    m_parts->saver.beginSave(editor);
    m_parts->steps.runAll();
    QCOMPARE(boxes.count(), 1);
    QVERIFY(editor->edited());
    editor->insert(u"more "_s);
    QVERIFY(editor->text().startsWith(u"new more "_s));
}

void SavingBehindTest::failureWaitsForWhatIsInTheWay()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    breakSaving(editor);
    const MessageBoxes boxes;
    m_parts->saver.beginSave(editor);
    {
        const RequestHold hold;
        m_parts->steps.runAll();
        settle();
        QCOMPARE(boxes.count(), 0);
    }
    QTRY_COMPARE(boxes.count(), 1);
    QTRY_VERIFY(!m_parts->saver.isSaving(editor));
}

void SavingBehindTest::failedSaveAsAsksAgain()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    QVERIFY(QDir(m_parts->files.folder()).mkdir(u"folder"_s));
    const auto choice = [this](const QString &name) { return FileChoice{ m_parts->files.folder(), name }; };
    m_parts->choices << choice(u"folder"_s) << choice(u"b.txt"_s);
    const MessageBoxes boxes;
    m_parts->saver.beginSaveAs(editor);
    QCOMPARE(m_parts->starts.size(), 1);
    m_parts->steps.runAll();
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(m_parts->starts.size(), 2);
    QCOMPARE(read(u"b.txt"_s), m_new);
    QCOMPARE(editor->name(), u"b.txt"_s);
}

void SavingBehindTest::closingWaits()
{
    QFETCH(int, steps);
    const MessageBoxes boxes;
    ctlEditer *const editor = edited(u"a.txt"_s);
    m_parts->saver.beginSave(editor);
    m_parts->makeSteps(steps);
    m_parts->closer.askAndClose();
    QCOMPARE(m_parts->documents.current(), editor);
    m_parts->steps.runAll();
    QVERIFY(m_parts->documents.editors().isEmpty());
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(read(u"a.txt"_s), m_new);
}

/// Who has waited for it presses the key once more, just as it goes.
void SavingBehindTest::closingPausesTheKeys()
{
    ctlEditer *const other = m_parts->open(m_parts->files.write(u"b.txt"_s, "b"));
    ctlEditer *const editor = edited(u"a.txt"_s);
    m_parts->saver.beginSave(editor);
    m_parts->closer.askAndClose();
    const NoticeQueue &notices = m_parts->documents.notices();
    QVERIFY(notices.heaviest(editor)->text().startsWith(u"To be closed when it is done"_s));
    QTRY_VERIFY(takesKeys(*other));
    m_parts->steps.runAll();
    QCOMPARE(m_parts->documents.editors(), QList{ other });
    QVERIFY(!takesKeys(*other));
}

void SavingBehindTest::closingStaysAfterAStop()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    m_parts->saver.beginSave(editor);
    m_parts->closer.askAndClose();
    QTRY_VERIFY(m_parts->isStrip(editor));
    m_parts->pressStop(editor);
    m_parts->steps.runAll();
    QCOMPARE(m_parts->documents.current(), editor);
    QVERIFY(editor->edited());
}

void SavingBehindTest::closingWithSaveWaits()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    const MessageBoxes boxes({ u"Yes"_s });
    m_parts->closer.askAndClose();
    QVERIFY(m_parts->saver.isSaving(editor));
    ctlEditer *const other = m_parts->open(m_parts->files.write(u"b.txt"_s, "b"));
    m_parts->steps.runAll();
    QCOMPARE(m_parts->documents.editors(), QList<ctlEditer *>{ other });
    QCOMPARE(read(u"a.txt"_s), m_new);
}

void SavingBehindTest::quittingWaits_data()
{
    QTest::addColumn<EditsAtClosing>("edits");
    QTest::addColumn<bool>("isBegun");
    QTest::newRow("asking, while it is saved") << EditsAtClosing::Ask << true;
    QTest::newRow("asking") << EditsAtClosing::Ask << false;
    QTest::newRow("saving, while it is saved") << EditsAtClosing::Save << true;
    QTest::newRow("saving") << EditsAtClosing::Save << false;
}

void SavingBehindTest::quittingWaits()
{
    QFETCH(EditsAtClosing, edits);
    QFETCH(bool, isBegun);
    const MessageBoxes boxes({ u"Yes"_s });
    edited(u"a.txt"_s);
    ctlEditer *const editor = edited(u"b.txt"_s);
    if (isBegun)
        m_parts->saver.beginSave(editor);
    m_parts->documents.editors().first()->undo();
    m_parts->makeStepsInTheLoop();
    QVERIFY(m_parts->closer.closeAll(edits));
    QVERIFY(m_parts->documents.editors().isEmpty());
    QCOMPARE(boxes.count(), edits == EditsAtClosing::Ask && !isBegun ? 1 : 0);
    QCOMPARE(read(u"b.txt"_s), m_new);
}

void SavingBehindTest::quittingEndsWhereItIsStopped()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    m_parts->saver.beginSave(editor);
    QTRY_VERIFY(m_parts->isStrip(editor));
    QMetaObject::invokeMethod(
        this, [&] { m_parts->pressStop(editor); }, Qt::QueuedConnection);
    m_parts->makeStepsInTheLoop();
    QVERIFY(!m_parts->closer.closeAll(EditsAtClosing::Ask));
    QCOMPARE(m_parts->documents.current(), editor);
    QCOMPARE(read(u"a.txt"_s), m_old);
}

void SavingBehindTest::closedOtherwiseIsGivenUp()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    bool isSaved = true;
    m_parts->saver.beginSave(editor, [&](bool saved) { isSaved = saved; });
    m_parts->steps.step();
    m_parts->closer.close(editor);
    QVERIFY(!isSaved);
    settle();
    m_parts->steps.runAll();
    QCOMPARE(read(u"a.txt"_s), m_old);
}

void SavingBehindTest::savesAllInTheirOrder()
{
    QStringList saved;
    for (const QString &name : { u"a.txt"_s, u"b.txt"_s }) {
        const ctlEditer *const editor = edited(name);
        connect(&editor->document(), &TextDocument::saved, this, [&saved, name] { saved << name; });
    }
    ctlEditer *const small = m_parts->open(m_parts->files.write(u"c.txt"_s, "c"));
    small->insert(u"new "_s);
    m_parts->saver.saveAll();
    m_parts->makeSteps(allSteps);
    QCOMPARE(saved, QStringList{ u"a.txt"_s });
    QVERIFY(small->edited());
    m_parts->documents.setCurrent(m_parts->documents.editors().first());
    m_parts->steps.runAll();
    QCOMPARE(saved, QStringList({ u"a.txt"_s, u"b.txt"_s }));
    QVERIFY(!small->edited());
    QCOMPARE(m_parts->documents.current(), m_parts->documents.editors().first());
}

void SavingBehindTest::savingAllEndsWhereItIsStopped()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    ctlEditer *const small = m_parts->open(m_parts->files.write(u"c.txt"_s, "c"));
    small->insert(u"new "_s);
    m_parts->saver.saveAll();
    QTRY_VERIFY(m_parts->isStrip(editor));
    m_parts->pressStop(editor);
    m_parts->steps.runAll();
    QVERIFY(editor->edited());
    QVERIFY(small->edited());
}

void SavingBehindTest::signalGivesItUp()
{
    QFETCH(int, steps);
    ctlEditer *const editor = edited(u"a.txt"_s);
    const MessageBoxes boxes;
    m_parts->saver.beginSave(editor, [](bool) { QFAIL("told although the program ends"); });
    m_parts->makeSteps(steps);
    EndOrder::give();
    m_parts->saver.giveUp(QDeadlineTimer(QDeadlineTimer::Forever));
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(read(u"a.txt"_s), m_old);
    QCOMPARE(QDir(m_parts->files.folder()).entryList(QDir::Files | QDir::Hidden), QStringList{ u"a.txt"_s });
}

/// What another program has written is kept, as by a save in one go.
void SavingBehindTest::fileChangedBefore()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    const QSignalSpy kept(editor, &ctlEditer::fileKept);
    m_parts->files.write(u"a.txt"_s, "others");
    m_parts->saver.beginSave(editor);
    m_parts->steps.runAll();
    QCOMPARE(read(u"a.txt"_s), m_new);
    QCOMPARE(kept.size(), 1);
    QFile copy(kept.first().first().toString());
    QVERIFY(copy.open(QIODevice::ReadOnly));
    QCOMPARE(copy.readAll(), "others"_ba);
}

/// What is being written is not replaced by what was there before.
void SavingBehindTest::openedAgainMeanwhile()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    const MessageBoxes boxes({ u"Yes"_s });
    m_parts->saver.beginSave(editor);
    m_parts->makeSteps(1);
    m_parts->loader.open(editor->path() + editor->name(), {});
    QCOMPARE(boxes.count(), 0);
    QVERIFY(m_parts->isStrip(editor));
    m_parts->steps.runAll();
    QCOMPARE(read(u"a.txt"_s), m_new);
    QCOMPARE(editor->text(), QString::fromLatin1(m_new));
    QVERIFY(!editor->edited());
}

/// The question is on the screen when the document's turn comes to be saved with all others.
void SavingBehindTest::reloadThatIsAskedFor()
{
    ctlEditer *const editor = edited(u"a.txt"_s);
    QTimer::singleShot(0, this, [this, editor] { m_parts->saver.beginSave(editor); });
    const MessageBoxes boxes({ u"Yes"_s });
    m_parts->loader.open(editor->path() + editor->name(), {});
    QCOMPARE(boxes.count(), 1);
    QVERIFY(m_parts->saver.isSaving(editor));
    m_parts->steps.runAll();
    QCOMPARE(read(u"a.txt"_s), m_new);
    QCOMPARE(editor->text(), QString::fromLatin1(m_new));
}

void SavingBehindTest::twoAtOnce()
{
    ctlEditer *const a = edited(u"a.txt"_s);
    ctlEditer *const b = edited(u"b.txt"_s);
    m_parts->saver.beginSave(a);
    m_parts->saver.beginSave(b);
    m_parts->makeSteps(2);
    QTRY_VERIFY(m_parts->isStrip(a) && m_parts->isStrip(b));
    m_parts->pressStop(a);
    m_parts->steps.runAll();
    QCOMPARE(read(u"a.txt"_s), m_old);
    QCOMPARE(read(u"b.txt"_s), m_new);
}

REGISTER_TEST(runFormTest<SavingBehindTest>)
#include "savingbehind_test.moc"
