#include "search/frmsearchdialog.h"
#include "tests/search/searchforms.h"
#include "tests/testprogram.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMimeData>

using namespace Qt::StringLiterals;

namespace {

void paste(QLineEdit *field, const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
    QTest::keyClick(field, Qt::Key_V, Qt::ControlModifier);
}

void drop(QLineEdit *field, const QString &text)
{
    QMimeData data;
    data.setText(text);
    const QPoint place = field->inputMethodQuery(Qt::ImCursorRectangle).toRectF().center().toPoint();
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(field, &enter);
    QDropEvent dropped(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(field, &dropped);
}

void commit(QLineEdit *field, const QString &text)
{
    QInputMethodEvent event;
    event.setCommitString(text);
    QCoreApplication::sendEvent(field, &event);
}

using Putting = void (*)(QLineEdit *, const QString &);

constexpr std::pair<const char *, Putting> ways[] = { { "paste", paste }, { "drop", drop },
    { "input method", commit } };

} // namespace

/// What the panel's two fields take, and what they do not do by themselves.
class SearchFieldsTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void takeAnyText_data();
    void takeAnyText();
    void takeTheFirstOfSeveralLines_data();
    void takeTheFirstOfSeveralLines();
    void pasteReplacesWhatIsSelected();
    void takeSelectedTextOfSeveralLines();
    void completeNothing_data();
    void completeNothing();
    void insertNothingIntoTheirLists();
    void takeAChosenEntry();
    void downKeyGetsTheMostRecent();

private:
    QLineEdit *field() { return findField(*m_panel)->lineEdit(); }

    std::unique_ptr<frmSearchDialog> m_panel;
};

void SearchFieldsTest::init()
{
    failOnWarnings();
    setScreenClass(false);
    m_panel.reset();
    writeHistoryFile("[history]\nSearch0 = Hello world\nSearch1 = hell\nReplace0 = Hello you\n");
    m_panel = std::make_unique<frmSearchDialog>(nullptr);
    m_panel->searchMode = 1;
    m_panel->show();
    QVERIFY(QTest::qWaitForWindowActive(m_panel.get()));
}

void SearchFieldsTest::takeAnyText_data()
{
    QTest::addColumn<QString>("text");
    for (const char16_t *text : { u" a ", u"   ", u",\"';", u"a\\b\\", u"\\n", u"\u3000", u"a=b [c]",
             u"%1 %n", u"\t", u"全角と半角ｶﾅ", u"\u212a\U0001f600", u"e\u0301", u"&File" })
        QTest::newRow(qPrintable(u'<' + QString::fromUtf16(text) + u'>')) << QString::fromUtf16(text);
    QTest::newRow("100,000 characters") << QString(100000, u'x');
}

/// By every way in, and out again to the signal, the history and the history file.
void SearchFieldsTest::takeAnyText()
{
    QFETCH(QString, text);
    for (const auto &[name, put] : ways) {
        field()->clear();
        put(field(), text);
        QCOMPARE(field()->text(), text);
        m_panel->slotBtnNext();
        QCOMPARE(m_panel->findText, text);
        QCOMPARE(m_panel->searchHistory.texts().front(), text);
    }
    // A second panel reads what was written while the first one still lives.
    frmSearchDialog other(nullptr);
    other.show();
    QCOMPARE(findField(other)->itemText(0), text);
}

void SearchFieldsTest::takeTheFirstOfSeveralLines_data()
{
    QTest::addColumn<Putting>("put");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    constexpr std::tuple<const char *, const char16_t *, const char16_t *> texts[] = {
        { "three lines", u"one\ntwo\nthree", u"one" },
        { "CR+LF", u"one\r\ntwo", u"one" },
        { "CR", u"one\rtwo", u"one" },
        { "one line with its end", u"one\n", u"one" },
        { "blanks around", u" one \n two", u" one " },
        { "an empty first line", u"\ntwo", u"" },
    };
    for (const auto &[wayName, put] : ways) {
        for (const auto &[textName, text, expected] : texts)
            QTest::addRow("%s, %s", wayName, textName)
                << put << QString::fromUtf16(text) << QString::fromUtf16(expected);
    }
}

void SearchFieldsTest::takeTheFirstOfSeveralLines()
{
    QFETCH(Putting, put);
    QFETCH(QString, text);
    QFETCH(QString, expected);
    for (QLineEdit *field : { this->field(), replaceField(*m_panel)->lineEdit() }) {
        field->setText(u"<>"_s);
        field->setFocus();
        field->setCursorPosition(1);
        put(field, text);
        QCOMPARE(field->text(), u'<' + expected + u'>');
        QCOMPARE(field->cursorPosition(), 1 + expected.size());
    }
}

void SearchFieldsTest::pasteReplacesWhatIsSelected()
{
    field()->setText(u"a selected b"_s);
    field()->setSelection(2, 8);
    paste(field(), u"new\nlines"_s);
    QCOMPARE(field()->text(), u"a new b"_s);
}

void SearchFieldsTest::takeSelectedTextOfSeveralLines()
{
    m_panel->findText = u"one\ntwo"_s;
    m_panel->hide();
    m_panel->show();
    QCOMPARE(field()->text(), u"one"_s);
    QCOMPARE(field()->selectedText(), u"one"_s);
}

void SearchFieldsTest::completeNothing_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("start of an entry") << u"Hell"_s;
    QTest::newRow("start of an entry in other case") << u"HELLO"_s;
    QTest::newRow("an entry in other case") << u"hello WORLD"_s;
    QTest::newRow("an entry") << u"hell"_s;
}

void SearchFieldsTest::completeNothing()
{
    QFETCH(QString, typed);
    for (QComboBox *combo : { findField(*m_panel), replaceField(*m_panel) }) {
        QCOMPARE(combo->completer(), nullptr);
        combo->setFocus();
        combo->lineEdit()->selectAll();
        QTest::keyClicks(combo, typed);
        QCOMPARE(combo->currentText(), typed);
        QVERIFY(!combo->view()->isVisible());
        QTest::keyClick(combo, Qt::Key_Return);
        QTest::keyClick(combo, Qt::Key_Tab);
        QCOMPARE(combo->currentText(), typed);
    }
    QCOMPARE(m_panel->replaceText, typed);
}

void SearchFieldsTest::insertNothingIntoTheirLists()
{
    for (QComboBox *combo : { findField(*m_panel), replaceField(*m_panel) }) {
        const int count = combo->count();
        combo->setFocus();
        combo->setEditText({});
        QTest::keyClicks(combo, u"something else"_s);
        QTest::keyClick(combo, Qt::Key_Tab);
        findField(*m_panel)->setEditText(u"x"_s);
        QTest::keyClick(combo, Qt::Key_Return);
        QCOMPARE(combo->count(), count);
        QCOMPARE(combo->findText(u"something else"_s), -1);
    }
}

void SearchFieldsTest::takeAChosenEntry()
{
    QComboBox *const combo = findField(*m_panel);
    combo->showPopup();
    QTRY_VERIFY(combo->view()->isVisible());
    QTest::keyClick(combo->view(), Qt::Key_End);
    QTest::keyClick(combo->view(), Qt::Key_Return);
    QTRY_VERIFY(!combo->view()->isVisible());
    QCOMPARE(combo->currentText(), u"hell"_s);
    QVERIFY(m_panel->isVisible());
    combo->showPopup();
    QTRY_VERIFY(combo->view()->isVisible());
    QTest::keyClick(combo->view(), Qt::Key_Escape);
    QTRY_VERIFY(!combo->view()->isVisible());
    QVERIFY(m_panel->isVisible());
}

void SearchFieldsTest::downKeyGetsTheMostRecent()
{
    QComboBox *const find = findField(*m_panel);
    for (const char16_t *expected : { u"Hello world", u"hell" }) {
        QTest::keyClick(find, Qt::Key_Down);
        QCOMPARE(find->currentText(), QString::fromUtf16(expected));
    }
    QTest::keyClick(find, Qt::Key_Up);
    QCOMPARE(find->currentText(), u"Hello world"_s);
    QCOMPARE(replaceField(*m_panel)->currentText(), u"Hello you"_s);
}

REGISTER_TEST(runFormTest<SearchFieldsTest>)
#include "searchfields_test.moc"
