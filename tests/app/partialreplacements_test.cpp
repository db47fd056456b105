#include "app/partialreplacements.h"

#include "search/frmsearchdialog.h"
#include "tests/app/stripinwindow.h"
#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

namespace {

const QString line = u"one two three four five six seven"_s;
const QString inPart = u"one Xive six seven"_s;

} // namespace

/// Hits that were replaced in part only, as the user is told of them.
class PartialReplacementsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void wholeHitsAreNoNews();
    void areCounted();
    void oneByOneToo();
    void goesToEachInTurn();
    void undoesAll();
    void undoesMoreThanTheHistoryKeepsApart();
    void undoesNothingElse();
    void goWithWhatTheyAreAbout();

private:
    ctlEditer &editor() const { return *m_window->currentEditor(); }
    void replaceAll(const QString &text, const QString &replacement)
    {
        MessageBoxes boxes;
        setRequest(text, replacement);
        m_window->slotEtcReplaceAll();
        QCOMPARE(boxes.titles(), QStringList{ u"Replace All"_s });
    }
    void setRequest(const QString &text, const QString &replacement)
    {
        m_window->slotCmdViewReplace();
        auto *const panel = m_window->findChild<frmSearchDialog *>();
        panel->findText = text;
        panel->replaceText = replacement;
    }

    std::unique_ptr<TestWindow> m_window;
    std::optional<StripInWindow> m_strip;
};

void PartialReplacementsTest::init()
{
    resetSettings();
    appSettings().WrapMode = 2;
    appSettings().WrapLen = 10;
    writeSettings();
    m_window = std::make_unique<TestWindow>();
    m_strip.emplace(*m_window);
    QVERIFY(m_window->open());
    editor().insert(line);
    editor().setCursorPosition(0, 0);
}

void PartialReplacementsTest::cleanup()
{
    for (ctlEditer *editor : m_window->tabBar()->editors())
        editor->setEdited(false);
    m_window.reset();
}

void PartialReplacementsTest::wholeHitsAreNoNews()
{
    replaceAll(u"three"_s, u"3"_s);
    QCOMPARE(editor().text(), u"one two 3 four five six seven"_s);
    QVERIFY(!m_strip->isShown());
}

void PartialReplacementsTest::areCounted()
{
    replaceAll(u"two three four five six"_s, u"X"_s);
    QCOMPARE(editor().text(), inPart);
    QCOMPARE(m_strip->text(), u"Replaced in part only: 1"_s);
    QCOMPARE(m_strip->offers(), QStringList({ u"Go to it"_s, u"Undo all"_s }));
}

void PartialReplacementsTest::oneByOneToo()
{
    setRequest(u"two three four five six"_s, u"X"_s);
    m_window->slotEtcSearchNext();
    QCOMPARE(editor().text(), inPart);
    QCOMPARE(m_strip->text(), u"Replaced in part only: 1"_s);
    QVERIFY(m_strip->click(u"Undo all"_s));
    QCOMPARE(editor().text(), line);
}

void PartialReplacementsTest::goesToEachInTurn()
{
    editor().clear();
    editor().insert(line + u'\n' + line);
    replaceAll(u"two three four five six"_s, u"XYZ"_s);
    QCOMPARE(m_strip->text(), u"Replaced in part only: 2"_s);
    QList<qint64> places;
    for (int i = 0; i < 3; ++i) {
        QVERIFY(m_strip->click(u"Go to it"_s));
        QCOMPARE(editor().markedText(), u"XYZ"_s);
        places << editor().anchorOffset().value();
    }
    QVERIFY(places[0] != places[1]);
    QCOMPARE(places[0], places[2]);
    QVERIFY(editor().hasFocus());
}

void PartialReplacementsTest::undoesAll()
{
    const bool before = editor().undoAvailable();
    replaceAll(u"two three four five six"_s, u"X"_s);
    QVERIFY(m_strip->click(u"Undo all"_s));
    QCOMPARE(editor().text(), line);
    QCOMPARE(editor().undoAvailable(), before);
    QVERIFY(editor().redoAvailable());
    QVERIFY(!m_strip->isShown());
}

void PartialReplacementsTest::undoesMoreThanTheHistoryKeepsApart()
{
    editor().clear();
    const QString text = (line + u'\n').repeated(300);
    editor().insert(text);
    replaceAll(u"two three four five six"_s, u"X"_s);
    QCOMPARE(m_strip->text(), u"Replaced in part only: 300"_s);
    QVERIFY(m_strip->click(u"Undo all"_s));
    QCOMPARE(editor().text(), text);
    QVERIFY(!m_strip->isShown());
}

void PartialReplacementsTest::undoesNothingElse()
{
    replaceAll(u"two three four five six"_s, u"X"_s);
    editor().insert(u"!"_s);
    QCOMPARE(m_strip->offers(), QStringList{ u"Go to it"_s });
    QCOMPARE(m_strip->text(), u"Replaced in part only: 1"_s);
    QVERIFY(m_strip->click(u"Go to it"_s));
    QCOMPARE(editor().markedText(), u"X"_s);
}

void PartialReplacementsTest::goWithWhatTheyAreAbout()
{
    for (const QString &replacement : { u"X"_s, QString() }) {
        replaceAll(u"two three four five six"_s, replacement);
        QVERIFY(m_strip->isShown());
        m_window->slotCmdEditUndo();
        QCOMPARE(editor().text(), line);
        QVERIFY(!m_strip->isShown());
    }
    replaceAll(u"two three four five six"_s, u"X"_s);
    QVERIFY(m_strip->click(u"×"_s));
    QVERIFY(!m_strip->isShown());
    editor().insert(u"!"_s);
    QVERIFY(!m_strip->isShown());
}

REGISTER_TEST(runFormTest<PartialReplacementsTest>)
#include "partialreplacements_test.moc"
