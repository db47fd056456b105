#include "search/frmreplaceprogress.h"
#include "search/frmsearchdialog.h"
#include "tests/app/atprogress.h"
#include "tests/app/testwindow.h"
#include "tests/search/searchforms.h"
#include "tests/testprogram.h"
#include "tests/widget/drawntext.h"
#include "tests/widget/rows.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>

namespace {

QList<QComboBox *> fieldsOf(const QWidget &panel)
{
    return panel.findChildren<QComboBox *>(Qt::FindDirectChildrenOnly);
}

} // namespace

class SearchTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void searchesOverlapping();
    void searchesAcrossRows();
    void staysWithoutAHit();
    void replacesWithTheMenu();
    void replacesBackwards();
    void replacesAll_data();
    void replacesAll();
    void replacementHoldsNoEscapedByte();
    void undoesOneReplacement();
    void stopsAndSpeedsUp();
    void speedingUpLeavesItEdited();
    void lettingNothingIn();
    void nothingToDo();
    void requestOutlivesPanelAndDocument();
    void menuDoesNothingBeforeTheFirstRequest();
    void panelOffersHistory();
    void panelKeys();
    void historySurvives();

private:
    frmSearchDialog *panel(int mode)
    {
        mode == 1 ? m_window->slotCmdViewReplace() : m_window->slotCmdViewSearch();
        return m_window->findChild<frmSearchDialog *>();
    }
    /// Fills the panel's fields.
    frmSearchDialog *ask(int mode, const QString &find, const QString &replace = {}, bool cs = true)
    {
        frmSearchDialog *const asked = panel(mode);
        fieldsOf(*asked).at(0)->setEditText(find);
        fieldsOf(*asked).at(1)->setEditText(replace);
        asked->findChild<QCheckBox *>()->setChecked(cs);
        return asked;
    }
    ctlEditer &editor() { return *m_window->currentEditor(); }

    std::unique_ptr<TestWindow> m_window;
};

void SearchTest::init()
{
    m_window.reset();
    resetSettings();
    QFile::remove(historyFileName());
    m_window = std::make_unique<TestWindow>();
    QVERIFY(m_window->open());
}

void SearchTest::searchesOverlapping()
{
    editor().setText(QStringLiteral("aaaa"));
    ask(0, QStringLiteral("aa"))->slotBtnNext();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("[aa|aa"));
    m_window->slotCmdViewSrchNext();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("a[aa|a"));
    m_window->slotCmdViewSrchNext();
    m_window->slotCmdViewSrchNext();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("aa[aa|"));
    m_window->slotCmdViewSrchBefo();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("a|aa]a"));
}

void SearchTest::searchesAcrossRows()
{
    editor().setText(QStringLiteral("0123456789abcdef"));
    wrapAt(editor(), 4);
    QVERIFY(editor().numLines() > 2);
    const qint64 rowEnd = editor().store().row(RowIndex(0)).length;
    const QString find = editor().text().mid(rowEnd - 1, 2);
    ask(0, find)->slotBtnNext();
    QCOMPARE(editor().markedText(), find);
    qint64 row1, column1, row2, column2;
    QVERIFY(editor().getMarkedRegion(&row1, &column1, &row2, &column2));
    QCOMPARE((QList<qint64>{ row1, column1, row2, column2 }), (QList<qint64>{ 0, rowEnd - 1, 1, 1 }));
}

void SearchTest::staysWithoutAHit()
{
    editor().setText(QStringLiteral("one two"));
    ask(0, QStringLiteral("two"))->slotBtnNext();
    m_window->slotCmdViewSrchNext();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("one [two|"));
    ask(0, QStringLiteral("ONE"))->slotBtnBefo();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("one [two|"));
    ask(0, QStringLiteral("ONE"), {}, false)->slotBtnBefo();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("|one] two"));
}

void SearchTest::replacesWithTheMenu()
{
    editor().setText(QStringLiteral("x x x"));
    ask(1, QStringLiteral("x"), QStringLiteral("xy"))->slotBtnNext();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("xy| x x"));
    m_window->slotCmdViewSrchNext();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("xy xy| x"));
}

void SearchTest::replacesBackwards()
{
    editor().setText(QStringLiteral("x x x"));
    ask(1, QStringLiteral("x"), QStringLiteral("yx"))->slotBtnNext();
    editor().setCursorPosition(0, 6);
    m_window->slotCmdViewSrchBefo();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("yx x |yx"));
    m_window->slotCmdViewSrchBefo();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("yx |yx yx"));
}

void SearchTest::replacesAll_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("find");
    QTest::addColumn<QString>("replace");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<int>("count");

    const auto row = [](const char *name, const char *text, const char *find, const char *replace,
                         const char *expected, int count) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(find)
                            << QString::fromUtf8(replace) << QString::fromUtf8(expected) << count;
    };
    row("replacement holds the text", "a b a", "a", "aa", "aa b aa", 2);
    row("with nothing", "xaxbx\nx", "x", "", "ab\n", 4);
    row("no hit", "abc", "x", "y", "abc", 0);
    row("no overlap", "aaaaa", "aa", "b", "bba", 2);
    row("several lines", "1\n1\n1", "1", "2", "2\n2\n2", 3);
    row("empty document", "", "x", "y", "", 0);
    row("the whole document", "x", "x", "yy", "yy", 1);
    row("first and last character", "x.x", "x", "y", "y.y", 2);
    row("a tab by a tab and more", "\ta\t", "\t", "\t\t", "\t\ta\t\t", 2);
    row("a mark of a combined character", "e\u0301a\u0301", "\u0301", "x", "exax", 2);
    row("the letter under a mark", "e\u0301e", "e", "", "\u0301", 2);
}

void SearchTest::replacesAll()
{
    QFETCH(QString, text);
    QFETCH(QString, find);
    QFETCH(QString, replace);
    QFETCH(QString, expected);
    QFETCH(int, count);

    editor().setText(text);
    editor().setCursorPosition(100, 0);
    MessageBoxes boxes;
    frmSearchDialog *const asked = ask(1, find, replace);
    asked->slotBtnAll();
    QVERIFY(!asked->isVisible());
    QCOMPARE(editor().text(), expected);
    QCOMPARE(boxes.texts(), QStringList{ QStringLiteral("Replace All|%1 items was Replaced.").arg(count) });
    QVERIFY(editor().updatesEnabled());
    QVERIFY(!editor().signalsBlocked());
    QVERIFY(!m_window->findChild<frmReplaceProgress *>());
}

/// It can come from a document by way of the clipboard, where it stands for an undecodable byte.
void SearchTest::replacementHoldsNoEscapedByte()
{
    editor().setText(QStringLiteral("x"));
    const MessageBoxes boxes;
    ask(1, QStringLiteral("x"), QChar(0xdc80) + QStringLiteral("\U0001f600"))->slotBtnAll();
    QCOMPARE(editor().text(), QStringLiteral("\ufffd\U0001f600"));
}

void SearchTest::undoesOneReplacement()
{
    editor().setText(QStringLiteral("x x x"));
    const MessageBoxes boxes;
    ask(1, QStringLiteral("x"), QStringLiteral("y"))->slotBtnAll();
    m_window->slotCmdEditUndo();
    QCOMPARE(editor().text(), QStringLiteral("y y x"));
    m_window->slotCmdEditUndo();
    m_window->slotCmdEditUndo();
    QCOMPARE(editor().text(), QStringLiteral("x x x"));
}

void SearchTest::stopsAndSpeedsUp()
{
    editor().setText(QStringLiteral("x").repeated(1000));
    MessageBoxes boxes;
    {
        const AtProgress stop([](frmReplaceProgress &progress) {
            buttonOf(progress, QStringLiteral("Speed up"))->click();
            QVERIFY(progress.speedUp);
            QVERIFY(!buttonOf(progress, QStringLiteral("Speed up"))->isEnabled());
            buttonOf(progress, QStringLiteral("Stop"))->click();
            QVERIFY(progress.stopRequested);
        });
        ask(1, QStringLiteral("x"), QStringLiteral("y"))->slotBtnAll();
    }
    const qsizetype done = editor().text().count(u'y');
    QVERIFY(done >= 1 && done < 1000);
    QCOMPARE(boxes.texts(), QStringList{ QStringLiteral("Replace All|%1 items was Replaced.").arg(done) });
    {
        const AtProgress hurry([](frmReplaceProgress &progress) { progress.slotClickHiSpeed(); });
        ask(1, QStringLiteral("x"), QStringLiteral("y"))->slotBtnAll();
    }
    QCOMPARE(editor().text(), QStringLiteral("y").repeated(1000));
    QVERIFY(editor().updatesEnabled());
    QVERIFY(!editor().signalsBlocked());
}

/// Also when it is told at the first replacement, whose signals are the last.
void SearchTest::speedingUpLeavesItEdited()
{
    editor().setText(QStringLiteral("x").repeated(1000));
    editor().setEdited(false);
    QCOMPARE(m_window->editStates(), QStringLiteral("----"));
    const MessageBoxes boxes;
    const AtProgress hurry([](frmReplaceProgress &progress) { progress.slotClickHiSpeed(); });
    ask(1, QStringLiteral("x"), QStringLiteral("y"))->slotBtnAll();
    QCOMPARE(m_window->editStates(), QStringLiteral("u---"));
    QCOMPARE(m_window->tabTexts(), QStringList{ QStringLiteral("* (new document)") });
}

void SearchTest::lettingNothingIn()
{
    editor().setText(QStringLiteral("x").repeated(1000));
    const MessageBoxes boxes;
    const AtProgress disturb([this](frmReplaceProgress &progress) {
        QTest::keyClick(&editor(), Qt::Key_A);
        QTest::keyClick(m_window.get(), Qt::Key_Escape);
        m_window->close();
        progress.close();
    });
    ask(1, QStringLiteral("x"), QStringLiteral("y"))->slotBtnAll();
    QVERIFY(m_window->isVisible());
    QCOMPARE(m_window->tabBar()->count(), 1);
    QCOMPARE(editor().text().size(), 1000);
    QVERIFY(editor().text().contains(u'x'));
}

void SearchTest::requestOutlivesPanelAndDocument()
{
    editor().setText(QStringLiteral("a b A b"));
    ask(0, QStringLiteral("A"))->slotBtnNext();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("a b [A| b"));
    m_window->findChild<frmSearchDialog *>()->hide();
    m_window->slotCmdFileNew();
    m_window->slotCmdFileNew();
    editor().setText(QStringLiteral("aA"));
    m_window->slotCmdViewSrchNext();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("a[A|"));
    editor().setEdited(false);
    m_window->slotCmdFileCloseTab();
    editor().setText(QStringLiteral("A|a"));
    editor().setCursorPosition(0, 3);
    m_window->slotCmdViewSrchBefo();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("|A]|a"));
    QVERIFY(!m_window->findChild<frmSearchDialog *>()->isVisible());
}

// What is typed in the panel and not asked for is no request either.
void SearchTest::menuDoesNothingBeforeTheFirstRequest()
{
    editor().setText(QStringLiteral("x x"));
    ask(0, QStringLiteral("x"));
    m_window->slotCmdViewSrchNext();
    m_window->slotCmdViewSrchBefo();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("|x x"));
}

void SearchTest::nothingToDo()
{
    m_window->slotCmdViewSrchNext();
    m_window->slotCmdViewSrchBefo();
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("|"));
    frmSearchDialog *const asked = ask(1, QStringLiteral("x"), QStringLiteral("y"));
    m_window->slotCmdFileCloseTab();
    QVERIFY(!m_window->currentEditor());
    asked->slotBtnNext();
    asked->slotBtnAll();
    m_window->slotCmdViewGyoJump();
    m_window->slotCmdViewLastEdit();
    QVERIFY(!m_window->findChild<frmReplaceProgress *>());
}

void SearchTest::panelOffersHistory()
{
    for (int i = 0; i < 22; ++i)
        ask(1, QStringLiteral("s%1").arg(i), QStringLiteral("r%1").arg(i % 2))->slotBtnNext();
    ask(1, QStringLiteral("s5"))->slotBtnNext();
    editor().setText(QStringLiteral("s21"));
    editor().selectAll();
    const frmSearchDialog *const shown = panel(1);
    const QComboBox *const find = fieldsOf(*shown).at(0);
    QCOMPARE(find->currentText(), QStringLiteral("s21"));
    QCOMPARE(find->lineEdit()->selectedText(), QStringLiteral("s21"));
    QCOMPARE(find->count(), 19);
    QCOMPARE(find->itemText(0), QStringLiteral("s5"));
    QCOMPARE(find->itemText(1), QStringLiteral("s20"));
    QCOMPARE(find->findText(QStringLiteral("s1")), -1);
    QCOMPARE(shown->searchHistory.texts().at(1), QStringLiteral("s21"));
    const QComboBox *const replace = fieldsOf(*shown).at(1);
    QCOMPARE(replace->count(), 2);
    QCOMPARE(replace->currentText(), QStringLiteral("r1"));
    editor().deselect();
    QCOMPARE(fieldsOf(*panel(0)).at(0)->currentText(), QString());
    QCOMPARE(find->count(), 20);
}

void SearchTest::panelKeys()
{
    editor().setText(QStringLiteral("a A a"));
    frmSearchDialog *const asked = ask(0, QStringLiteral("a"));
    QSignalSpy next(asked, &frmSearchDialog::nextClicked);
    QTest::keyClick(fieldsOf(*asked).at(0), Qt::Key_Return);
    QTest::keyClick(buttonOf(*asked, QStringLiteral("Close")), Qt::Key_Enter);
    QCOMPARE(next.count(), 2);
    QCOMPARE(DrawnText::draw(editor()), QStringLiteral("a A [a|"));
    QVERIFY(asked->isVisible());
    QTest::keyClick(fieldsOf(*asked).at(0), Qt::Key_Escape);
    QVERIFY(!asked->isVisible());
    QCOMPARE(m_window->tabBar()->count(), 1);
}

void SearchTest::historySurvives()
{
    ask(1, QStringLiteral(" a,b "), QStringLiteral("\"c\""))->slotBtnNext();
    m_window.reset();
    m_window = std::make_unique<TestWindow>();
    QVERIFY(m_window->open());
    const frmSearchDialog *const shown = panel(1);
    QCOMPARE(fieldsOf(*shown).at(0)->itemText(0), QStringLiteral(" a,b "));
    QCOMPARE(fieldsOf(*shown).at(1)->currentText(), QStringLiteral("\"c\""));
    QVERIFY(QFile::exists(historyFileName()));
}

REGISTER_TEST(runWindowTest<SearchTest>)
#include "search_test.moc"
