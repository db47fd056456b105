#include "app/longindent.h"

#include "app/searchruns.h"
#include "files/endorder.h"
#include "platform/requesthold.h"
#include "tests/app/documentparts.h"
#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"

#include <QSignalSpy>
#include <QTest>

#include <new>

using namespace Qt::StringLiterals;

namespace {

constexpr int allIndentSteps = 3; ///< of moving the block

const QString indentedLine = u"\ta line of a block that is too long to be moved in one go\n"_s;

/// Lines with and without a TAB and empty ones; the last one is in no block.
QString textToIndent()
{
    return (indentedLine + u"one without\n\n"_s).repeated(18'000) + u"end"_s;
}

enum class IndentEnd { Stop, Escape, Close, CloseSaved, CloseUnsaved, Quit, QuitSaved };

/// There is no memory for what its threads should make.
class PoorRunner : public SteppedRunner {
public:
    void spread(int, const std::function<void(int)> &) override { throw std::bad_alloc(); }
};

} // namespace

/// Long blocks whose lines are moved while the window goes on.
class LongIndentTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<ctlEditer *>(); }
    void init();
    void cleanup();

    void doesAsInOneGo_data();
    void doesAsInOneGo();
    void shortBlocksAreMovedAtOnce();
    void keysAreRefusedWithAWord();
    void tellsHowFarItIs();
    void stopped_data();
    void stopped();
    void staysWhereClosingIsCancelled();
    void cursorThatWasMovedStays_data();
    void cursorThatWasMovedStays();
    void endsInADocumentThatIsNotShown();
    void waitsForWhatIsInTheWay();
    void measuresAnewInAnotherFont();
    void searchesMeanwhile();
    void endOrderWaitsForNothing_data() { addSteps(); }
    void endOrderWaitsForNothing();
    void fileChangedMeanwhile_data() { addSteps(); }
    void fileChangedMeanwhile();
    void openedAgainMeanwhile();
    void tooLittleMemoryIsTold();

private:
    static void addSteps();
    ctlEditer &editor() const { return *m_parts->documents.current(); }
    QString fileName() const { return m_parts->files.folder() + u"a.txt"_s; }
    void press(Indentation direction)
    {
        QTest::keyClick(
            &editor(), Qt::Key_Tab, direction == Indentation::In ? Qt::NoModifier : Qt::ShiftModifier);
    }
    void selectBlock(ctlEditer &in)
    {
        in.setCursorPlace({ Offset(5) });
        in.extendSelection({ in.store().end() - 1 });
    }
    void begin(Indentation direction = Indentation::In)
    {
        selectBlock(editor());
        press(direction);
    }
    bool isStrip() const { return m_parts->documents.notices().has(NoticeKind::Work, &editor()); }
    QString stripText() const { return m_parts->documents.notices().heaviest(&editor())->text(); }
    void makeSteps(int steps)
    {
        while (steps-- > 0)
            QVERIFY(m_parts->steps.step());
    }
    void end(IndentEnd how);
    bool isAsBefore() const { return editor().text() == m_text && !editor().document().isHeld(); }

    const QString m_text = textToIndent();
    std::unique_ptr<DocumentParts> m_parts;
};

void LongIndentTest::addSteps()
{
    QTest::addColumn<int>("steps");
    for (int steps = 0; steps < allIndentSteps; ++steps)
        QTest::addRow("after %d", steps) << steps;
}

void LongIndentTest::init()
{
    m_parts = std::make_unique<DocumentParts>();
    m_parts->open(m_parts->files.write(u"a.txt"_s, m_text.toLatin1()));
    m_parts->jobs.fewest = qint64{ 1 } << 19;
}

void LongIndentTest::cleanup()
{
    EndOrder::withdraw();
    m_parts.reset();
}

void LongIndentTest::doesAsInOneGo_data()
{
    QTest::addColumn<Indentation>("direction");
    QTest::addColumn<bool>("isWrapped");
    QTest::newRow("in") << Indentation::In << false;
    QTest::newRow("out") << Indentation::Out << false;
    QTest::newRow("in, wrapped") << Indentation::In << true;
    QTest::newRow("out, wrapped") << Indentation::Out << true;
}

void LongIndentTest::doesAsInOneGo()
{
    QFETCH(Indentation, direction);
    QFETCH(bool, isWrapped);
    ctlEditer other(nullptr);
    other.setText(m_text);
    for (ctlEditer *const each : { &other, &editor() }) {
        each->setWrapColumnOrWidth(150);
        each->setWordWrap(isWrapped ? QMultiLineEdit::FixedPixelWidth : QMultiLineEdit::NoWrap);
        selectBlock(*each);
    }
    QTest::keyClick(&other, Qt::Key_Tab, direction == Indentation::In ? Qt::NoModifier : Qt::ShiftModifier);

    const QSignalSpy changed(&editor(), &QMultiLineEdit::textChanged);
    press(direction);
    QVERIFY(editor().document().isHeld());
    QVERIFY(editor().text() == m_text);
    QCOMPARE(m_parts->steps.runAll(), allIndentSteps);
    QVERIFY(!editor().document().isHeld());
    QVERIFY(editor().text() == other.text());
    editor().store().checkInvariants();
    QCOMPARE(editor().anchorPlace(), other.anchorPlace());
    QCOMPARE(editor().cursorPlace(), other.cursorPlace());
    QCOMPARE(editor().numLines(), other.numLines());
    QCOMPARE(changed.count(), 1);
    QVERIFY(editor().edited());
    editor().undo();
    QVERIFY(editor().text() == m_text);
    QVERIFY(!editor().edited());
    editor().redo();
    QVERIFY(editor().text() == other.text());
}

void LongIndentTest::shortBlocksAreMovedAtOnce()
{
    editor().setCursorPlace({});
    editor().extendSelection({ editor().store().lineStart(LineIndex(2)) });
    press(Indentation::Out);
    QVERIFY(m_parts->steps.isIdle());
    QVERIFY(editor().store().text({}, 70).startsWith(indentedLine.sliced(1) + u"one without\n"_s));
}

void LongIndentTest::keysAreRefusedWithAWord()
{
    begin();
    makeSteps(1);
    QTest::keyClicks(&editor(), u"y"_s);
    QVERIFY(stripText().startsWith(u"Not while it is being indented"_s));
    press(Indentation::Out); // the block again, and another time
    editor().undo();
    editor().paste();
    m_parts->saver.beginSave(&editor());
    QVERIFY(!m_parts->saver.isSaving(&editor()));
    QVERIFY(editor().text() == m_text);
    ctlEditer *const other = m_parts->documents.add();
    m_parts->documents.present(other);
    QTest::keyClicks(other, u"typed"_s);
    QCOMPARE(other->text(), u"typed"_s);
    QCOMPARE(m_parts->steps.runAll(), allIndentSteps - 1);
    m_parts->documents.present(m_parts->documents.editors().first());
    QVERIFY(editor().text().startsWith(u'\t' + indentedLine + u"\tone without\n\n"_s));
}

void LongIndentTest::tellsHowFarItIs()
{
    begin();
    QVERIFY(!isStrip()); // what is over soon needs no sign
    QTRY_VERIFY(isStrip());
    QCOMPARE(stripText(), u"Indenting…"_s);
    makeSteps(1);
    QVERIFY(stripText().startsWith(u"Indenting: "_s));
    m_parts->steps.runAll();
    QVERIFY(!isStrip());
}

void LongIndentTest::stopped_data()
{
    QTest::addColumn<IndentEnd>("how");
    QTest::addColumn<int>("steps");
    QTest::addColumn<bool>("isEdited");
    const auto rows = [](IndentEnd how, bool isEdited, const char *name) {
        for (int steps = 0; steps < allIndentSteps; ++steps)
            QTest::addRow("%s after %d", name, steps) << how << steps << isEdited;
    };
    rows(IndentEnd::Stop, false, "stopped");
    rows(IndentEnd::Escape, true, "Escape in the strip");
    rows(IndentEnd::Close, false, "closed");
    rows(IndentEnd::CloseSaved, true, "closed and saved");
    rows(IndentEnd::CloseUnsaved, true, "closed without being saved");
    rows(IndentEnd::Quit, false, "quit");
    rows(IndentEnd::QuitSaved, true, "quit and saved");
}

void LongIndentTest::end(IndentEnd how)
{
    switch (how) {
    case IndentEnd::Stop:
    case IndentEnd::Escape: {
        QTRY_VERIFY(isStrip());
        const Notice &notice = *m_parts->documents.notices().heaviest(&editor());
        const auto act = how == IndentEnd::Stop ? notice.offers.front().act : notice.escaped;
        act();
        break;
    }
    case IndentEnd::Close:
        m_parts->closer.askAndClose();
        break;
    case IndentEnd::CloseSaved: {
        const MessageBoxes boxes({ u"Yes"_s });
        m_parts->closer.askAndClose();
        break;
    }
    case IndentEnd::CloseUnsaved: {
        const MessageBoxes boxes({ u"No"_s });
        m_parts->closer.askAndClose();
        break;
    }
    case IndentEnd::Quit:
        QVERIFY(m_parts->closer.closeAll(EditsAtClosing::Ask));
        break;
    case IndentEnd::QuitSaved:
        QVERIFY(m_parts->closer.closeAll(EditsAtClosing::Save));
        break;
    }
}

/// Nothing comes later, and what is saved is the text as it was.
void LongIndentTest::stopped()
{
    QFETCH(IndentEnd, how);
    QFETCH(int, steps);
    QFETCH(bool, isEdited);
    if (isEdited)
        editor().insert(u"new "_s);
    const QString before = editor().text();
    begin();
    makeSteps(steps);
    m_parts->jobs.fewest = qint64{ 1 } << 40; // a save is made in one go
    end(how);
    m_parts->steps.runAll();
    settle();
    const bool isSaved = how == IndentEnd::CloseSaved || how == IndentEnd::QuitSaved;
    QCOMPARE(m_parts->files.read(u"a.txt"_s), (isSaved ? before : m_text).toLatin1());
    const bool stays = how == IndentEnd::Stop || how == IndentEnd::Escape;
    QCOMPARE(m_parts->documents.editors().isEmpty(), !stays);
    if (!stays)
        return;
    QVERIFY(editor().text() == before);
    QVERIFY(!editor().document().isHeld());
    QVERIFY(!isStrip());
    QCOMPARE(editor().edited(), isEdited);
    press(Indentation::In); // the block is still selected
    QVERIFY(editor().text() != before);
}

/// What is asked meanwhile is about the text as it is; the block is moved when it was answered.
void LongIndentTest::staysWhereClosingIsCancelled()
{
    editor().insert(u"new "_s);
    begin();
    const MessageBoxes boxes({ u"Cancel"_s });
    m_parts->closer.askAndClose();
    QCOMPARE(boxes.count(), 1);
    m_parts->steps.runAll();
    QTRY_VERIFY(editor().text().startsWith(u"\tnew "_s));
}

void LongIndentTest::cursorThatWasMovedStays_data()
{
    QTest::addColumn<Indentation>("direction");
    QTest::addColumn<qint64>("line");
    QTest::addColumn<qint64>("column");
    QTest::addColumn<qint64>("columnBehind");
    QTest::newRow("in the block") << Indentation::In << 3LL << 10LL << 11LL;
    QTest::newRow("in a line that stays") << Indentation::Out << 4LL << 3LL << 3LL;
    QTest::newRow("before a TAB that goes") << Indentation::Out << 3LL << 0LL << 0LL;
    QTest::newRow("behind a TAB that goes") << Indentation::Out << 3LL << 1LL << 0LL;
    QTest::newRow("in an empty line") << Indentation::In << 5LL << 0LL << 0LL;
    QTest::newRow("behind the block") << Indentation::In << 54'000LL << 2LL << 2LL;
}

/// Whoever has turned to other text goes on there, and the next key replaces no block.
void LongIndentTest::cursorThatWasMovedStays()
{
    QFETCH(Indentation, direction);
    QFETCH(qint64, line);
    QFETCH(qint64, column);
    begin(direction);
    editor().setCursorPosition(line, column);
    const RowIndex top = editor().topRow();
    m_parts->steps.runAll();
    QVERIFY(editor().text() != m_text);
    QVERIFY(!editor().hasMarkedText());
    QCOMPARE(editor().cursorPosition().row, RowIndex(line));
    QTEST(editor().cursorPosition().column, "columnBehind");
    QCOMPARE(editor().topRow(), top);
}

void LongIndentTest::endsInADocumentThatIsNotShown()
{
    ctlEditer &first = editor();
    const QSignalSpy ended(&m_parts->documents, &DocumentArea::workEnded);
    begin();
    ctlEditer *const second = m_parts->documents.add();
    m_parts->documents.present(second);
    m_parts->steps.runAll();
    QCOMPARE(&editor(), second);
    QVERIFY(first.text().startsWith(u'\t' + indentedLine));
    QCOMPARE(ended.count(), 1); // commands are those of the document that is shown
}

void LongIndentTest::waitsForWhatIsInTheWay()
{
    begin();
    {
        const RequestHold hold;
        m_parts->steps.runAll();
        settle();
        QVERIFY(editor().text() == m_text);
        QVERIFY(editor().document().isHeld());
    }
    QTRY_VERIFY(editor().text().startsWith(u'\t' + indentedLine));
}

/// The lines are measured by the threads that make them, and made again where that was in vain.
void LongIndentTest::measuresAnewInAnotherFont()
{
    begin();
    makeSteps(1);
    ++appSettings().FontSize;
    editor().applySettings();
    const LayoutRule rule = editor().layoutRule();
    QCOMPARE(m_parts->steps.runAll(), 2 * allIndentSteps - 1);
    QVERIFY(editor().text().startsWith(u'\t' + indentedLine));
    QCOMPARE(editor().store().layoutRule(), rule);
    editor().store().checkInvariants();
}

void LongIndentTest::searchesMeanwhile()
{
    SearchRuns search(m_parts->window, m_parts->documents, m_parts->jobs);
    begin();
    QVERIFY(editor().searchForward(0, true, u"without"_s, {}));
    QCOMPARE(editor().markedText(), u"without"_s);
    m_parts->steps.runAll();
    QCOMPARE(editor().markedText(), u"without"_s);
    QVERIFY(editor().text().startsWith(u'\t' + indentedLine));
}

void LongIndentTest::endOrderWaitsForNothing()
{
    QFETCH(int, steps);
    begin();
    makeSteps(steps);
    EndOrder::give();
    m_parts->saver.giveUp(QDeadlineTimer(QDeadlineTimer::Forever));
    QVERIFY(editor().text() == m_text);
    m_parts.reset();
}

/// It is the text of the window that is moved; a save finds out about the file.
void LongIndentTest::fileChangedMeanwhile()
{
    QFETCH(int, steps);
    begin(Indentation::Out);
    makeSteps(steps);
    m_parts->files.write(u"a.txt"_s, "others");
    m_parts->loader.reload(&editor());
    QVERIFY(stripText().startsWith(u"Not while it is being indented"_s));
    m_parts->steps.runAll();
    QVERIFY(editor().text() == QString(m_text).remove(u'\t'));
    QCOMPARE(m_parts->files.read(u"a.txt"_s), "others"_ba);
}

/// As a second start does.
void LongIndentTest::openedAgainMeanwhile()
{
    ctlEditer &first = editor();
    begin();
    makeSteps(1);
    m_parts->documents.present(m_parts->documents.add());
    m_parts->open(fileName());
    QCOMPARE(&editor(), &first);
    QVERIFY(editor().text() == m_text);
    m_parts->steps.runAll();
    QVERIFY(editor().text().startsWith(u'\t' + indentedLine));
}

void LongIndentTest::tooLittleMemoryIsTold()
{
    PoorRunner runner;
    selectBlock(editor());
    LongIndent indent(
        editor(), { {}, editor().store().end() - 3 }, Indentation::In, m_parts->documents, runner);
    const QSignalSpy ended(&indent, &LongIndent::ended);
    const MessageBoxes boxes;
    runner.runAll();
    QCOMPARE(boxes.texts(), QStringList{ u"Error|There is not enough memory to move these lines!"_s });
    QCOMPARE(ended.count(), 1);
    QVERIFY(isAsBefore());
}

REGISTER_TEST(runFormTest<LongIndentTest>)
#include "longindent_test.moc"
