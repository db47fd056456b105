#include "app/longedit.h"

#include "app/searchruns.h"
#include "files/endorder.h"
#include "platform/requesthold.h"
#include "tests/app/documentparts.h"
#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"

#include <QClipboard>
#include <QDropEvent>
#include <QMimeData>
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

enum class PasteSource { Program, Document, OtherCode };
enum class StopBy { Button, Escape };

/// There is no memory for what its threads should make.
class PoorRunner : public SteppedRunner {
public:
    void spread(int, const std::function<void(int)> &) override { throw std::bad_alloc(); }
};

} // namespace

/// Long blocks whose lines are moved, and long texts that are pasted, while the window goes on.
class LongEditTest : public QObject {
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
    void pastesFromOthers_data();
    void pastesFromOthers();
    void pastesItsOwnTextAtOnce();
    void pastesItsOwnTextInAnotherFont();
    void measuresNewCharactersBehindTheWindow_data();
    void measuresNewCharactersBehindTheWindow();
    void pasteTakesThePlaceOfTheSelection();
    void longTextIsDropped();
    void stoppedPasteLeavesTheText_data() { addSteps(); }
    void stoppedPasteLeavesTheText();
    void cursorThatWasMovedStaysBesideAPaste_data();
    void cursorThatWasMovedStaysBesideAPaste();

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
    void pressStop(StopBy how);
    bool isAsBefore() const { return editor().text() == m_text && !editor().document().isHeld(); }

    const QString m_text = textToIndent();
    std::unique_ptr<DocumentParts> m_parts;
};

void LongEditTest::addSteps()
{
    QTest::addColumn<int>("steps");
    for (int steps = 0; steps < allIndentSteps; ++steps)
        QTest::addRow("after %d", steps) << steps;
}

void LongEditTest::init()
{
    m_parts = std::make_unique<DocumentParts>();
    m_parts->open(m_parts->files.write(u"a.txt"_s, m_text.toLatin1()));
    m_parts->jobs.fewest = qint64{ 1 } << 19;
}

void LongEditTest::cleanup()
{
    EndOrder::withdraw();
    m_parts.reset();
}

void LongEditTest::doesAsInOneGo_data()
{
    QTest::addColumn<Indentation>("direction");
    QTest::addColumn<bool>("isWrapped");
    QTest::newRow("in") << Indentation::In << false;
    QTest::newRow("out") << Indentation::Out << false;
    QTest::newRow("in, wrapped") << Indentation::In << true;
    QTest::newRow("out, wrapped") << Indentation::Out << true;
}

void LongEditTest::doesAsInOneGo()
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

void LongEditTest::shortBlocksAreMovedAtOnce()
{
    editor().setCursorPlace({});
    editor().extendSelection({ editor().store().lineStart(LineIndex(2)) });
    press(Indentation::Out);
    QVERIFY(m_parts->steps.isIdle());
    QVERIFY(editor().store().text({}, 70).startsWith(indentedLine.sliced(1) + u"one without\n"_s));
}

void LongEditTest::keysAreRefusedWithAWord()
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

void LongEditTest::tellsHowFarItIs()
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

void LongEditTest::stopped_data()
{
    QTest::addColumn<StopBy>("how");
    QTest::addColumn<int>("steps");
    QTest::addColumn<bool>("isEdited");
    for (int steps = 0; steps < allIndentSteps; ++steps) {
        QTest::addRow("stopped after %d", steps) << StopBy::Button << steps << false;
        QTest::addRow("Escape in the strip after %d", steps) << StopBy::Escape << steps << true;
    }
}

void LongEditTest::pressStop(StopBy how)
{
    QTRY_VERIFY(isStrip());
    const Notice &notice = *m_parts->documents.notices().heaviest(&editor());
    const auto act = how == StopBy::Button ? notice.offers.front().act : notice.escaped;
    act();
}

/// Nothing comes later.
void LongEditTest::stopped()
{
    QFETCH(StopBy, how);
    QFETCH(int, steps);
    QFETCH(bool, isEdited);
    if (isEdited)
        editor().insert(u"new "_s);
    const QString before = editor().text();
    begin();
    makeSteps(steps);
    pressStop(how);
    m_parts->steps.runAll();
    settle();
    QVERIFY(editor().text() == before);
    QVERIFY(!editor().document().isHeld());
    QVERIFY(!isStrip());
    QCOMPARE(editor().edited(), isEdited);
    m_parts->jobs.fewest = qint64{ 1 } << 40;
    press(Indentation::In); // the block is still selected
    QVERIFY(editor().text() != before);
}

void LongEditTest::cursorThatWasMovedStays_data()
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
void LongEditTest::cursorThatWasMovedStays()
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

void LongEditTest::endsInADocumentThatIsNotShown()
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

void LongEditTest::waitsForWhatIsInTheWay()
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
void LongEditTest::measuresAnewInAnotherFont()
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

void LongEditTest::searchesMeanwhile()
{
    SearchRuns search(m_parts->window, m_parts->documents, m_parts->jobs);
    begin();
    QVERIFY(editor().searchForward(0, true, u"without"_s, {}));
    QCOMPARE(editor().markedText(), u"without"_s);
    m_parts->steps.runAll();
    QCOMPARE(editor().markedText(), u"without"_s);
    QVERIFY(editor().text().startsWith(u'\t' + indentedLine));
}

void LongEditTest::endOrderWaitsForNothing()
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
void LongEditTest::fileChangedMeanwhile()
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
void LongEditTest::openedAgainMeanwhile()
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

void LongEditTest::tooLittleMemoryIsTold()
{
    PoorRunner runner;
    selectBlock(editor());
    const auto text = [this] {
        return indenting(editor().store(), { {}, editor().store().end() - 3 }, Indentation::In);
    };
    const auto put = [](const TextPiece &) { QFAIL("there is nothing to be put"); };
    LongEdit edit(editor(), { WorkNotice::Work::Indenting, text, put }, m_parts->documents, runner);
    const QSignalSpy ended(&edit, &LongEdit::ended);
    const MessageBoxes boxes;
    runner.runAll();
    QCOMPARE(boxes.texts(), QStringList{ u"Error|There is not enough memory for this edit!"_s });
    QCOMPARE(ended.count(), 1);
    QVERIFY(isAsBefore());
}

void LongEditTest::pastesFromOthers_data()
{
    QTest::addColumn<PasteSource>("source");
    QTest::newRow("another program") << PasteSource::Program;
    QTest::newRow("a document of the code") << PasteSource::Document;
    QTest::newRow("a document of another code") << PasteSource::OtherCode;
}

/// CR+LF, CR and lone surrogates stand at every distance from where the parts of a step begin.
void LongEditTest::pastesFromOthers()
{
    QFETCH(PasteSource, source);
    QString text = u"\xE9\r\n\u6F22\r\U0001F600\r\r\n-"_s.repeated(130'000);
    ctlEditer *const other = m_parts->documents.add();
    other->setText(text);
    other->document().setCodes({ CharCode::Utf8, ReturnCode::Lf });
    QGuiApplication::clipboard()->setText(text);
    if (source != PasteSource::Program) {
        other->selectAll();
        other->QMultiLineEdit::copy();
    }
    ctlEditer *const into = m_parts->documents.add();
    m_parts->documents.present(into);
    if (source == PasteSource::Document)
        into->document().setCodes({ CharCode::Utf8, ReturnCode::Lf });
    into->setText(u"ab"_s);
    into->setCursorPlace({ Offset(1) });
    into->paste();
    QVERIFY(into->document().isHeld());
    QCOMPARE(into->text(), u"ab"_s);
    QVERIFY(m_parts->steps.runAll() > 2);
    text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    QVERIFY(into->text() == u'a' + text + u'b');
    QCOMPARE(into->cursorOffset(), Offset(1 + text.size()));
    into->store().checkInvariants();
    into->undo();
    QCOMPARE(into->text(), u"ab"_s);
}

/// It shares the leaves of the text.
void LongEditTest::pastesItsOwnTextAtOnce()
{
    editor().selectAll();
    editor().QMultiLineEdit::copy();
    editor().paste();
    editor().paste();
    QVERIFY(m_parts->steps.isIdle());
    QVERIFY(editor().text() == m_text + m_text);
}

void LongEditTest::pastesItsOwnTextInAnotherFont()
{
    editor().selectAll();
    editor().QMultiLineEdit::copy();
    ++appSettings().FontSize;
    editor().applySettings();
    editor().deselect();
    editor().paste();
    QVERIFY(editor().text() == m_text);
    QVERIFY(m_parts->steps.runAll() > 0);
    QVERIFY(editor().text() == m_text + m_text);
    editor().store().checkInvariants();
}

void LongEditTest::measuresNewCharactersBehindTheWindow_data()
{
    QTest::addColumn<char16_t>("first");
    QTest::addColumn<int>("characters");
    QTest::newRow("some") << u'\x9F00' << 4;
    QTest::newRow("so many that the font is asked in turns") << u'\x8000' << 4000;
}

/// The font is asked for their widths once, and all is measured by them.
void LongEditTest::measuresNewCharactersBehindTheWindow()
{
    QFETCH(char16_t, first);
    QFETCH(int, characters);
    QString text;
    for (int i = 0; text.size() < 600'000; ++i)
        text += QChar(char16_t(first + i % characters));
    QGuiApplication::clipboard()->setText(text);
    const auto paste = [this] {
        editor().setCursorPlace({});
        editor().paste();
        int steps = 0;
        do {
            steps += m_parts->steps.runAll();
            QCoreApplication::processEvents();
        } while (editor().document().isHeld());
        return steps;
    };
    const int firstSteps = paste();
    QVERIFY(editor().text() == text + m_text);
    editor().undo();
    QCOMPARE(firstSteps, 2 * paste());
    QVERIFY(editor().text() == text + m_text);
    editor().store().checkInvariants();
}

void LongEditTest::pasteTakesThePlaceOfTheSelection()
{
    QGuiApplication::clipboard()->setText(m_text);
    editor().setCursorPlace({ Offset(9) });
    editor().extendSelection({ Offset(2) });
    const QSignalSpy changed(&editor(), &QMultiLineEdit::textChanged);
    editor().paste();
    QTest::keyClicks(&editor(), u"y"_s);
    QVERIFY(stripText().startsWith(u"Not while text is being pasted"_s));
    m_parts->steps.runAll();
    QVERIFY(editor().text() == m_text.first(2) + m_text + m_text.sliced(9));
    QCOMPARE(changed.count(), 1);
    QVERIFY(!editor().hasMarkedText());
    QCOMPARE(editor().cursorOffset(), Offset(2 + m_text.size()));
}

/// It goes where it was dropped, and is selected.
void LongEditTest::longTextIsDropped()
{
    QMimeData data;
    data.setText(m_text);
    editor().setCursorPlace({ Offset(9) });
    const QPoint place = editor().characterRect(Offset(3)).topLeft() + QPoint(1, 1);
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(editor().viewport(), &enter);
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(editor().viewport(), &drop);
    QVERIFY(editor().document().isHeld());
    QVERIFY(m_parts->steps.runAll() > 0);
    QVERIFY(editor().text() == m_text.first(3) + m_text + m_text.sliced(3));
    QCOMPARE(editor().anchorPlace().offset, Offset(3));
    QCOMPARE(editor().cursorOffset(), Offset(3 + m_text.size()));
    editor().undo();
    QVERIFY(isAsBefore());
}

void LongEditTest::stoppedPasteLeavesTheText()
{
    QFETCH(int, steps);
    QGuiApplication::clipboard()->setText(m_text);
    editor().selectAll();
    editor().paste();
    makeSteps(steps);
    pressStop(StopBy::Button);
    m_parts->steps.runAll();
    QVERIFY(isAsBefore());
    QCOMPARE(editor().selectionEnd().offset, editor().store().end());
    QVERIFY(!editor().edited());
}

void LongEditTest::cursorThatWasMovedStaysBesideAPaste_data()
{
    QTest::addColumn<qint64>("offset");
    QTest::addColumn<qint64>("shift");
    const qint64 pasted = m_text.size() - 200;
    QTest::newRow("before it") << 50LL << 0LL;
    QTest::newRow("in what it replaces") << 150LL << pasted + 150;
    QTest::newRow("behind it") << 1000LL << pasted;
}

void LongEditTest::cursorThatWasMovedStaysBesideAPaste()
{
    QFETCH(qint64, offset);
    QFETCH(qint64, shift);
    QGuiApplication::clipboard()->setText(m_text);
    editor().select({ Offset(100) }, { Offset(300) });
    editor().paste();
    editor().setCursorPlace({ Offset(offset) });
    m_parts->steps.runAll();
    QCOMPARE(editor().store().length(), 2 * m_text.size() - 200);
    QVERIFY(!editor().hasMarkedText());
    QCOMPARE(editor().cursorOffset(), Offset(offset + shift));
}

REGISTER_TEST(runFormTest<LongEditTest>)
#include "longedit_test.moc"
