#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QAction>
#include <QClipboard>
#include <QDateTime>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

/// The edit commands, and the keys of commands.
class EditCommandsTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void editCommands();
    void editCommandsWithoutDocument();
    void dateAndTime();
    void dateAndTimeText();
    void dateAndTimeReplacesTheMarkedText();
    void helpDoesNothing();
    void viewCommandsNeedNoDocument();

    void keysActOnce();
    void keysWithTheTabBarFocused();
    void typographicCharactersAreTyped();
    void tabKeysStayInTheEditor();
};

void EditCommandsTest::init()
{
    resetSettings();
    QApplication::clipboard()->clear();
}

void EditCommandsTest::editCommands()
{
    TestWindow window;
    QVERIFY(window.open());
    ctlEditer *editor = window.currentEditor();
    QTest::keyClicks(editor, u"abc"_s);
    window.item(EditCommand::SelectAll)->trigger();
    QCOMPARE(editor->markedText(), u"abc"_s);
    window.item(EditCommand::Copy)->trigger();
    QVERIFY(!editor->hasMarkedText());
    QCOMPARE(window.editStates(), u"u---"_s);
    QCOMPARE(QApplication::clipboard()->text(), u"abc"_s);
    window.item(EditCommand::Paste)->trigger();
    QCOMPARE(editor->text(), u"abcabc"_s);
    window.item(EditCommand::SelectAll)->trigger();
    window.item(EditCommand::Cut)->trigger();
    QCOMPARE(editor->text(), QString());
    QCOMPARE(QApplication::clipboard()->text(), u"abcabc"_s);
    window.item(EditCommand::Undo)->trigger();
    QCOMPARE(editor->text(), u"abcabc"_s);
    window.item(EditCommand::Redo)->trigger();
    QCOMPARE(editor->text(), QString());
}

void EditCommandsTest::editCommandsWithoutDocument()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileCloseTab();
    MessageBoxes boxes;
    for (const MenuId menu : { MenuId::File, MenuId::Edit, MenuId::View }) {
        for (const Command &command : commandsOf(menu)) {
            const bool needsNone = command.slot == &frmMain::slotCmdFileNew
                || command.slot == &frmMain::slotCmdFileQuitSave
                || command.slot == &frmMain::slotCmdFileQuitNoSave
                || command.slot == &frmMain::slotCmdViewFull || command.slot == &frmMain::slotCmdViewAbout;
            if (command.slot && !needsNone)
                (window.*command.slot)();
        }
    }
    QCOMPARE(window.tabBar()->count(), 0);
    QCOMPARE(boxes.count(), 0);
    QVERIFY(window.isVisible());
}

void EditCommandsTest::dateAndTime()
{
    TestWindow window;
    QVERIFY(window.open());
    ctlEditer *editor = window.currentEditor();
    const QString before = frmMain::dateTimeText(QDateTime::currentDateTime());
    window.item(EditCommand::DateAndTime)->trigger();
    const QString after = frmMain::dateTimeText(QDateTime::currentDateTime());
    QVERIFY(editor->text() == before || editor->text() == after);
    QVERIFY(
        QRegularExpression(u"^\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d\\n$"_s).match(editor->text()).hasMatch());
    QCOMPARE(editor->cursorPosition().row, RowIndex(1));
    QCOMPARE(editor->cursorPosition().column, 0);
}

void EditCommandsTest::dateAndTimeText()
{
    const QDateTime time(QDate(2005, 2, 3), QTime(9, 5, 59));
    QCOMPARE(frmMain::dateTimeText(time), u"2005/02/03 09:05\n"_s);
    // Plain digits and this calendar, whatever the user's language has.
    for (const auto *name : { "ar_EG", "fa_IR", "th_TH", "ja_JP" }) {
        QLocale::setDefault(QLocale(QLatin1StringView(name)));
        QCOMPARE(frmMain::dateTimeText(time), u"2005/02/03 09:05\n"_s);
    }
    QLocale::setDefault(QLocale::c());
}

void EditCommandsTest::dateAndTimeReplacesTheMarkedText()
{
    TestWindow window;
    QVERIFY(window.open());
    ctlEditer *editor = window.currentEditor();
    QTest::keyClicks(editor, u"ab"_s);
    editor->setCursorPosition(0, 1);
    editor->setCursorPosition(0, 2, true);
    window.slotCmdEditDateTime();
    QVERIFY(
        QRegularExpression(u"^a\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d\\n$"_s).match(editor->text()).hasMatch());
    QCOMPARE(editor->cursorPosition(), (RowCol{ RowIndex(1), 0 }));
    window.slotCmdEditUndo();
    QCOMPARE(editor->text(), u"ab"_s);
    editor->setEdited(false);
}

void EditCommandsTest::helpDoesNothing()
{
    TestWindow window;
    QVERIFY(window.open());
    MessageBoxes boxes;
    window.slotCmdViewHelp();
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(window.editStates(), u"----"_s);
    QVERIFY(!window.isItemEnabled(ViewCommand::Help));
}

void EditCommandsTest::viewCommandsNeedNoDocument()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileCloseTab();
    MessageBoxes boxes;
    window.slotCmdViewAbout();
    QCOMPARE(boxes.titles(), QStringList{ u"Marlo!Pad QT"_s });
    window.slotCmdViewFull();
    QVERIFY(window.isFullScreen());
    window.slotCmdViewFull();
    QVERIFY(window.isMaximized());
    appSettings().Lang = 2;
    window.slotCmdViewLangEn();
    QCOMPARE(appSettings().Lang, 0);
    QCOMPARE(window.tabBar()->count(), 0);
}

void EditCommandsTest::keysActOnce()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    for (const auto *name : { "a.txt", "b.txt", "c.txt", "d.txt" })
        window.setDocument(files.write(QLatin1StringView(name), "one two\n"));
    QTRY_VERIFY(takesKeys());
    const auto press = [&window](int key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
        QTest::keyClick(window.windowHandle(), Qt::Key(key), modifiers);
    };
    const auto index = [&window] { return window.tabBar()->currentIndex(); };
    QCOMPARE(index(), 4);
    press(Qt::Key_Tab);
    QCOMPARE(index(), 0);
    press(Qt::Key_Tab);
    QCOMPARE(index(), 1);
    press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(index(), 0);
    press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(index(), 4);

    ctlEditer *editor = window.currentEditor();
    press(Qt::Key_A);
    QCOMPARE(editor->markedText(), u"one two\n"_s);
    press(Qt::Key_C);
    QVERIFY(!editor->hasMarkedText());
    press(Qt::Key_V);
    QCOMPARE(editor->text(), u"one two\none two\n"_s);
    press(Qt::Key_V);
    QCOMPARE(editor->text(), u"one two\n"_s.repeated(3));
    press(Qt::Key_Z);
    QCOMPARE(editor->text(), u"one two\n"_s.repeated(2));
    press(Qt::Key_A);
    press(Qt::Key_X);
    QCOMPARE(editor->text(), QString());
    press(Qt::Key_Z);
    QCOMPARE(editor->text(), u"one two\n"_s.repeated(2));
    QCOMPARE(window.tabTexts().at(4), u"* d.txt"_s);
    press(Qt::Key_S);
    QCOMPARE(files.read(u"d.txt"_s), QByteArray("one two\none two\n"));
    QCOMPARE(window.tabTexts().at(4), u"d.txt"_s);
    press(Qt::Key_O);
    QCOMPARE(window.requests.size(), 1);
    press(Qt::Key_Escape, Qt::NoModifier);
    QCOMPARE(window.tabBar()->count(), 4);
    press(Qt::Key_Q);
    QVERIFY(!window.isVisible());
    QCOMPARE(window.tabBar()->count(), 0);
}

void EditCommandsTest::keysWithTheTabBarFocused()
{
    TestWindow window;
    QVERIFY(window.open());
    QTest::keyClicks(window.currentEditor(), u"ab"_s);
    window.slotCmdFileNew();
    window.slotCmdFileNew();
    window.tabBar()->setFocusPolicy(Qt::StrongFocus);
    window.tabBar()->setFocus();
    QCOMPARE(QApplication::focusWidget(), window.tabBar());
    QTest::keyClick(window.windowHandle(), Qt::Key_Tab, Qt::ControlModifier);
    QCOMPARE(window.tabBar()->currentIndex(), 0);
    QTest::keyClick(window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(window.currentEditor()->text(), QString());
}

void EditCommandsTest::typographicCharactersAreTyped()
{
    TestWindow window;
    QVERIFY(window.open());
    QString typed;
    for (const int code : { 0x2019, 0x201A, 0x200F, 0x2010, 0x201B, 0x2015, 0x2018, 0x2014, 0x2017 }) {
        QKeyEvent press(QEvent::KeyPress, code, Qt::NoModifier, QString(QChar(code)));
        QApplication::sendEvent(window.currentEditor(), &press);
        typed += QChar(code);
    }
    QCOMPARE(window.currentEditor()->text(), typed);
    QVERIFY(window.isVisible());
    QCOMPARE(window.requests.size(), 0);

    QKeyEvent deviceOpen(QEvent::KeyPress, 0x2015, Qt::NoModifier);
    QApplication::sendEvent(window.currentEditor(), &deviceOpen);
    QCOMPARE(window.requests.size(), 1);
    QCOMPARE(window.currentEditor()->text(), typed);
}

void EditCommandsTest::tabKeysStayInTheEditor()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileNew();
    ctlEditer *editor = window.currentEditor();
    QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
    QCOMPARE(editor->text(), u"\t"_s);
    QTest::keyClick(window.windowHandle(), Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), editor);
    QCOMPARE(window.tabBar()->currentIndex(), 1);
}

REGISTER_TEST(runWindowTest<EditCommandsTest>)
#include "editcommands_test.moc"
