#include "app/searchruns.h"

#include "app/documentarea.h"
#include "app/windowjobs.h"
#include "editor/ctlediter.h"
#include "search/frmsearchdialog.h"
#include "tests/app/testwindow.h"
#include "tests/search/searchforms.h"
#include "tests/testprogram.h"

#include <QComboBox>

#include <algorithm>

using namespace Qt::StringLiterals;

/// Searches in the current document, without a main window.
class SearchRunsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_window.reset(); }

    void makesThePanelWhenItIsNeeded();
    void offersTheSelection_data();
    void offersTheSelection();
    void repeatsNothingBeforeTheFirstSearch();
    void searchesAndRepeats();
    void replacesOneByOne();
    void replacesAll();
    void searchesInTheCurrentDocument();
    void doesNothingWithoutADocument();
    void thePanelsButtonsSearch();

private:
    struct Window : QWidget {
        DocumentArea *documents = new DocumentArea(this);
        WindowJobs jobs;
        SearchRuns search{ *this, *documents, jobs };
    };

    ctlEditer &editor() const { return *m_window->documents->current(); }
    SearchRuns &search() { return m_window->search; }
    frmSearchDialog *panel() const { return m_window->findChild<frmSearchDialog *>(); }
    void want(int mode, const QString &text, const QString &replacement = {})
    {
        search().showPanel(mode);
        panel()->findText = text;
        panel()->replaceText = replacement;
    }
    /// From where to where, wherever the cursor is.
    QList<qint64> selection() const
    {
        const auto [from, to] = std::minmax({ editor().anchorOffset(), editor().cursorOffset() });
        return { from.value(), to.value() };
    }

    std::unique_ptr<Window> m_window;
};

void SearchRunsTest::init()
{
    resetSettings();
    QFile::remove(historyFileName());
    m_window = std::make_unique<Window>();
    m_window->show();
    m_window->documents->add()->setText(u"ab AB\nab\n"_s);
}

void SearchRunsTest::makesThePanelWhenItIsNeeded()
{
    QVERIFY(!panel());
    search().showPanel(0);
    frmSearchDialog *const first = panel();
    QVERIFY(first && first->isVisible());
    search().showPanel(1);
    QCOMPARE(panel(), first);
    QCOMPARE(first->searchMode, 1);
}

void SearchRunsTest::offersTheSelection_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("offered");
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("a word") << u"word"_s << u"word"_s;
    QTest::newRow("what no field could show") << u"x"_s.repeated(65537) << QString();
}

void SearchRunsTest::offersTheSelection()
{
    QFETCH(QString, text);
    editor().setText(text);
    editor().selectAll();
    search().showPanel(0);
    QTEST(findField(*panel())->currentText(), "offered");
}

void SearchRunsTest::repeatsNothingBeforeTheFirstSearch()
{
    search().repeatForward();
    search().repeatBackward();
    QVERIFY(!panel());
    QCOMPARE(selection(), QList<qint64>({ 0, 0 }));
}

void SearchRunsTest::searchesAndRepeats()
{
    want(0, u"ab"_s);
    search().searchForward();
    QCOMPARE(selection(), QList<qint64>({ 0, 2 }));
    panel()->findText = u"other"_s; // was not asked for
    search().repeatForward();
    QCOMPARE(selection(), QList<qint64>({ 3, 5 }));
    search().repeatForward();
    QCOMPARE(selection(), QList<qint64>({ 6, 8 }));
    search().repeatBackward();
    QCOMPARE(selection(), QList<qint64>({ 3, 5 }));
    want(0, u"ab"_s);
    panel()->caseSensitive = true;
    search().searchBackward();
    QCOMPARE(selection(), QList<qint64>({ 0, 2 }));
}

void SearchRunsTest::replacesOneByOne()
{
    want(1, u"ab"_s, u"x"_s);
    search().searchForward();
    QCOMPARE(editor().text(), u"x AB\nab\n"_s);
    search().repeatForward();
    QCOMPARE(editor().text(), u"x x\nab\n"_s);
}

void SearchRunsTest::replacesAll()
{
    editor().setCursorPosition(1, 1);
    want(1, u"ab"_s, u"x"_s);
    const MessageBoxes boxes;
    search().replaceAll();
    QCOMPARE(boxes.texts(), QStringList{ u"Replace All|3 items was Replaced."_s });
    QCOMPARE(editor().text(), u"x x\nx\n"_s);
    QVERIFY(!panel()->isVisible());
}

void SearchRunsTest::searchesInTheCurrentDocument()
{
    want(0, u"ab"_s);
    search().searchForward();
    ctlEditer *const other = m_window->documents->add();
    other->setText(u"  ab"_s);
    m_window->documents->setCurrent(other);
    search().repeatForward();
    QCOMPARE(selection(), QList<qint64>({ 2, 4 }));
}

void SearchRunsTest::doesNothingWithoutADocument()
{
    m_window->documents->close(&editor());
    want(1, u"ab"_s);
    const MessageBoxes boxes;
    search().searchForward();
    search().repeatBackward();
    search().replaceAll();
    QCOMPARE(boxes.count(), 0);
}

void SearchRunsTest::thePanelsButtonsSearch()
{
    search().showPanel(0);
    findField(*panel())->setEditText(u"ab"_s);
    panel()->slotBtnNext();
    QCOMPARE(selection(), QList<qint64>({ 0, 2 }));
    panel()->slotBtnNext();
    panel()->slotBtnBefo();
    QCOMPARE(selection(), QList<qint64>({ 0, 2 }));
}

REGISTER_TEST(runWindowTest<SearchRunsTest>)
#include "searchruns_test.moc"
