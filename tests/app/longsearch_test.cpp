#include "app/longsearch.h"

#include "app/searchruns.h"
#include "files/endorder.h"
#include "platform/requesthold.h"
#include "search/frmsearchdialog.h"
#include "tests/app/documentparts.h"
#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 nearUnits = qint64{ 1 } << 19;
constexpr int allSearchSteps = 3; ///< of searching what is not near

/// "needle" near both ends, and another one in the middle.
QString textToSearch()
{
    const QString filling =
        u"a line of a text that is too long to be searched in one go\n"_s.repeated(30'000);
    return u"needle\n"_s + filling + u"Needle\n"_s + filling + u"needle\n"_s;
}

enum class Interruption { Stop, Edit, Undo, NewText, Move, Close, Quit };

} // namespace

/// Searches of long texts, while the window goes on.
class LongSearchTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<ctlEditer *>(); }
    void init();
    void cleanup();

    void whatIsNearIsFoundAtOnce();
    void doesAsInOneGo_data();
    void doesAsInOneGo();
    void vainSearchLeavesAll();
    void ended_data();
    void ended();
    void tellsHowFarItIs();
    void secondSearchIsRefusedWithAWord();
    void eachDocumentHasItsOwn();
    void hitWaitsForWhatIsInTheWay();
    void composedTextEndsIt();
    void replacesNothingInAHeldDocument();
    void searchesWhatHasBeenLoaded();
    void endOrderWaitsForNothing_data() { addSearchSteps(); }
    void endOrderWaitsForNothing();
    void fileChangedMeanwhile();

private:
    struct Parts : DocumentParts {
        SearchRuns search{ window, documents, jobs };
    };
    using Selection = std::pair<qint64, qint64>; ///< anchor and cursor

    static void addSearchSteps();
    ctlEditer &editor() const { return *m_parts->documents.current(); }
    ctlEditer &add(const QString &text)
    {
        ctlEditer &added = *m_parts->documents.add();
        added.setText(text);
        m_parts->documents.present(&added);
        return added;
    }
    void search(SearchDirection direction, const QString &text, int mode = 0)
    {
        m_parts->search.showPanel(mode);
        auto *const panel = m_parts->window.findChild<frmSearchDialog *>();
        panel->findText = text;
        panel->replaceText = u"x"_s;
        panel->caseSensitive = true;
        panel->hide();
        if (direction == SearchDirection::Forward)
            m_parts->search.searchForward();
        else
            m_parts->search.searchBackward();
    }
    static Selection selectionIn(const ctlEditer &editor)
    {
        return { editor.anchorOffset().value(), editor.cursorOffset().value() };
    }
    bool isStrip(const ctlEditer &editor) const
    {
        return m_parts->documents.notices().has(NoticeKind::Searching, &editor);
    }
    QString stripText() const { return m_parts->documents.notices().heaviest(&editor())->text(); }
    void makeSteps(int steps)
    {
        while (steps-- > 0)
            QVERIFY(m_parts->steps.step());
    }
    void interrupt(Interruption how);

    const QString m_text = textToSearch();
    std::unique_ptr<Parts> m_parts;
};

void LongSearchTest::addSearchSteps()
{
    QTest::addColumn<int>("steps");
    for (int steps = 0; steps < allSearchSteps; ++steps)
        QTest::addRow("after %d", steps) << steps;
}

void LongSearchTest::init()
{
    m_parts = std::make_unique<Parts>();
    m_parts->jobs.fewest = nearUnits;
    add(m_text);
}

void LongSearchTest::cleanup()
{
    EndOrder::withdraw();
    m_parts.reset();
}

void LongSearchTest::whatIsNearIsFoundAtOnce()
{
    search(SearchDirection::Forward, u"needle"_s);
    QCOMPARE(selectionIn(editor()), Selection(0, 6));
    editor().setCursorPlace({ editor().store().end() });
    search(SearchDirection::Backward, u"needle"_s);
    QCOMPARE(selectionIn(editor()), Selection(m_text.size() - 1, m_text.size() - 7));
    QVERIFY(m_parts->steps.isIdle());
}

void LongSearchTest::doesAsInOneGo_data()
{
    QTest::addColumn<SearchDirection>("direction");
    QTest::addColumn<int>("mode");
    QTest::newRow("next") << SearchDirection::Forward << 0;
    QTest::newRow("previous") << SearchDirection::Backward << 0;
    QTest::newRow("replace next") << SearchDirection::Forward << 1;
    QTest::newRow("replace previous") << SearchDirection::Backward << 1;
}

void LongSearchTest::doesAsInOneGo()
{
    QFETCH(SearchDirection, direction);
    QFETCH(int, mode);
    const bool isForward = direction == SearchDirection::Forward;
    const Offset start = isForward ? Offset(3) : editor().store().end() - 7;
    ctlEditer other(nullptr);
    other.setText(m_text);
    other.setCursorPlace({ start });
    QVERIFY(isForward ? other.searchForward(mode, true, u"needle"_s, u"x"_s)
                      : other.searchBackward(mode, true, u"needle"_s, u"x"_s));

    editor().setCursorPlace({ start });
    const QSignalSpy copyable(&editor(), &QMultiLineEdit::copyAvailable);
    const QSignalSpy changed(&editor(), &QMultiLineEdit::textChanged);
    search(direction, u"needle"_s, mode);
    QCOMPARE(selectionIn(editor()), Selection(start.value(), start.value()));
    QCOMPARE(m_parts->steps.runAll(), allSearchSteps);
    QCOMPARE(selectionIn(editor()), selectionIn(other));
    QVERIFY(editor().text() == other.text());
    QCOMPARE(copyable.count(), mode == 0 ? 1 : 0);
    QCOMPARE(changed.count(), mode);
}

void LongSearchTest::vainSearchLeavesAll()
{
    editor().setCursorPlace({ Offset(5) });
    editor().extendSelection({ Offset(2) });
    search(SearchDirection::Forward, u"haystack"_s);
    m_parts->steps.runAll();
    QCOMPARE(selectionIn(editor()), Selection(5, 2));
    QVERIFY(!isStrip(editor()));
}

void LongSearchTest::ended_data()
{
    QTest::addColumn<Interruption>("how");
    QTest::addColumn<int>("steps");
    QTest::addColumn<int>("mode");
    const auto rows = [](Interruption how, const char *name) {
        for (int steps = 0; steps < allSearchSteps; ++steps) {
            QTest::addRow("%s after %d", name, steps) << how << steps << 0;
        }
        QTest::addRow("%s, replacing", name) << how << 1 << 1;
    };
    rows(Interruption::Stop, "stopped");
    rows(Interruption::Edit, "edited");
    rows(Interruption::Undo, "undone");
    rows(Interruption::NewText, "another text");
    rows(Interruption::Move, "cursor moved");
    rows(Interruption::Close, "closed");
    rows(Interruption::Quit, "quit");
}

void LongSearchTest::interrupt(Interruption how)
{
    switch (how) {
    case Interruption::Stop: {
        QTRY_VERIFY(isStrip(editor()));
        const auto act = m_parts->documents.notices().heaviest(&editor())->offers.front().act;
        act();
        break;
    }
    case Interruption::Edit:
        QTest::keyClicks(&editor(), u"y"_s);
        break;
    case Interruption::Undo:
        editor().undo();
        break;
    case Interruption::NewText:
        editor().setText(m_text);
        break;
    case Interruption::Move:
        QTest::keyClick(&editor(), Qt::Key_Right);
        break;
    case Interruption::Close:
        m_parts->closer.close(&editor());
        break;
    case Interruption::Quit:
        editor().document().setEdited(false);
        QVERIFY(m_parts->closer.closeAll(EditsAtClosing::Ask));
        break;
    }
}

/// Whoever does something else does not want the hit any more, and it does not come later.
void LongSearchTest::ended()
{
    QFETCH(Interruption, how);
    QFETCH(int, steps);
    QFETCH(int, mode);
    editor().setCursorPlace({ Offset(3) });
    editor().insert(u"z"_s);
    const bool goes = how == Interruption::Close || how == Interruption::Quit;
    search(SearchDirection::Forward, u"needle"_s, mode);
    makeSteps(steps);
    interrupt(how);
    const Selection after = goes ? Selection() : selectionIn(editor());
    const qint64 length = goes ? 0 : editor().store().length();
    settle();
    m_parts->steps.runAll();
    QCOMPARE(m_parts->documents.editors().isEmpty(), goes);
    if (goes)
        return;
    QCOMPARE(selectionIn(editor()), after);
    QVERIFY(!editor().hasMarkedText());
    QCOMPARE(editor().store().length(), length);
    QVERIFY(!isStrip(editor()));
    search(SearchDirection::Forward, u"needle"_s);
    m_parts->steps.runAll();
    QCOMPARE(editor().markedText(), u"needle"_s);
}

void LongSearchTest::tellsHowFarItIs()
{
    editor().setCursorPlace({ Offset(3) });
    search(SearchDirection::Forward, u"needle"_s);
    QVERIFY(!isStrip(editor())); // what is over soon needs no sign
    QTRY_VERIFY(isStrip(editor()));
    QCOMPARE(stripText(), u"Searching…"_s);
    makeSteps(1);
    QVERIFY(stripText().startsWith(u"Searching: "_s));
    m_parts->steps.runAll();
    QVERIFY(!isStrip(editor()));
}

void LongSearchTest::secondSearchIsRefusedWithAWord()
{
    editor().setCursorPlace({ Offset(3) });
    search(SearchDirection::Forward, u"needle"_s);
    m_parts->search.repeatBackward();
    QCOMPARE(stripText(), u"Not while it is being searched…"_s);
    QCOMPARE(m_parts->steps.runAll(), allSearchSteps);
    QCOMPARE(editor().cursorOffset(), editor().store().end() - 1);
}

/// Each hit is selected in its own text; the keys stay where they are.
void LongSearchTest::eachDocumentHasItsOwn()
{
    ctlEditer &first = editor();
    first.setCursorPlace({ Offset(3) });
    search(SearchDirection::Forward, u"needle"_s);
    ctlEditer &second = add(m_text);
    second.setCursorPlace({ Offset(3) });
    search(SearchDirection::Forward, u"Needle"_s);
    ctlEditer &third = add(u"short needle"_s);
    QTest::keyClicks(&third, u"typed "_s);
    m_parts->steps.runAll();
    QCOMPARE(first.markedText(), u"needle"_s);
    QCOMPARE(second.markedText(), u"Needle"_s);
    QCOMPARE(third.text(), u"typed short needle"_s);
    QCOMPARE(&editor(), &third);
}

void LongSearchTest::hitWaitsForWhatIsInTheWay()
{
    editor().setCursorPlace({ Offset(3) });
    search(SearchDirection::Forward, u"needle"_s, 1);
    const qint64 length = editor().store().length();
    {
        const RequestHold hold;
        m_parts->steps.runAll();
        settle();
        QCOMPARE(editor().store().length(), length);
    }
    QTRY_COMPARE(editor().store().length(), length - 5);
}

/// What is being composed stands at the cursor, and is text before the hit would be selected.
void LongSearchTest::composedTextEndsIt()
{
    editor().setCursorPlace({ Offset(3) });
    search(SearchDirection::Forward, u"needle"_s);
    QInputMethodEvent composing(u"composed"_s, {});
    QCoreApplication::sendEvent(&editor(), &composing);
    m_parts->steps.runAll();
    QVERIFY(!editor().hasMarkedText());
    QVERIFY(editor().store().text({}, 20).startsWith(u"neecomposeddle"_s));
}

void LongSearchTest::replacesNothingInAHeldDocument()
{
    editor().setCursorPlace({ Offset(3) });
    search(SearchDirection::Forward, u"needle"_s, 1);
    editor().document().setHeld(true); // as while it is being saved
    m_parts->steps.runAll();
    QVERIFY(editor().text() == m_text);
    search(SearchDirection::Forward, u"needle"_s, 1);
    QVERIFY(m_parts->steps.isIdle());
    editor().document().setHeld(false);
}

void LongSearchTest::searchesWhatHasBeenLoaded()
{
    const QByteArray bytes = m_text.toLatin1();
    ctlEditer &loading = *m_parts->open(m_parts->files.write(u"a.txt"_s, bytes.repeated(3)));
    while (loading.store().length() < nearUnits * 3)
        QVERIFY(m_parts->steps.step());
    const qint64 there = loading.store().length();
    QVERIFY(loading.document().isHeld() && there < bytes.size() * 3);
    loading.setCursorPlace({ Offset(3) });
    search(SearchDirection::Forward, u"Needle"_s);
    m_parts->steps.runAll();
    const bool wasThere = there > m_text.indexOf(u"Needle"_s) + 6;
    QCOMPARE(loading.markedText(), wasThere ? u"Needle"_s : QString());
    QVERIFY(loading.text() == m_text.repeated(3));
}

void LongSearchTest::endOrderWaitsForNothing()
{
    QFETCH(int, steps);
    editor().setCursorPlace({ Offset(3) });
    search(SearchDirection::Forward, u"needle"_s, 1);
    makeSteps(steps);
    EndOrder::give();
    m_parts->saver.giveUp(QDeadlineTimer(QDeadlineTimer::Forever));
    QVERIFY(editor().text() == m_text);
    m_parts.reset();
}

/// The text of the window is what is searched, whatever becomes of its file.
void LongSearchTest::fileChangedMeanwhile()
{
    ctlEditer &opened = *m_parts->open(m_parts->files.write(u"a.txt"_s, m_text.toLatin1()));
    m_parts->steps.runAll();
    opened.setCursorPlace({ Offset(3) });
    search(SearchDirection::Forward, u"needle"_s);
    makeSteps(1);
    m_parts->files.write(u"a.txt"_s, "others");
    m_parts->steps.runAll();
    QCOMPARE(opened.markedText(), u"needle"_s);
    QCOMPARE(opened.cursorOffset(), opened.store().end() - 1);
}

REGISTER_TEST(runFormTest<LongSearchTest>)
#include "longsearch_test.moc"
