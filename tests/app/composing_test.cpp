#include "app/qpeapplicationesc.h"
#include "codec/charcode.h"
#include "search/frmsearchdialog.h"
#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QAction>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

using Way = std::function<void(TestWindow &, const TestFiles &)>;

/// What an input method shows that answers nothing it is asked.
void compose(QWidget *widget, const QString &text)
{
    QInputMethodEvent event(text, {});
    QApplication::sendEvent(widget, &event);
}

void pressWithControl(const TestWindow &window, Qt::Key key)
{
    QTest::keyClick(window.currentEditor(), key, Qt::ControlModifier);
}

void clickTool(const TestWindow &window, FileCommand command)
{
    QAction *const action = window.item(command);
    QTest::mouseClick(window.toolBar()->widgetForAction(action), Qt::LeftButton);
}

void clickTab(const TestWindow &window, int index)
{
    QTest::mouseClick(window.tabBar(), Qt::LeftButton, {}, window.tabBar()->tabRect(index).center());
}

} // namespace

/// Text that an input method is still composing when a command comes.
class ComposingTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void isSaved_data();
    void isSaved();
    void isAskedAbout_data();
    void isAskedAbout();
    void staysInItsDocument_data();
    void staysInItsDocument();
    void isFound();
    void isCounted();
    void escapeClosesNothing();
    void escapeOfTheInputMethodClosesNothing();
    void escapeInAFieldClosesNothing();
    void escapeClosesAfterwards_data();
    void escapeClosesAfterwards();

private:
    /// The second tab has the file a.txt with "old", and "か" is being composed in front of it.
    static bool open(TestWindow &window, const TestFiles &files);
};

void ComposingTest::init()
{
    resetSettings();
}

bool ComposingTest::open(TestWindow &window, const TestFiles &files)
{
    if (!window.open())
        return false;
    QTest::keyClicks(window.currentEditor(), u"first"_s);
    window.setDocument(files.write(u"a.txt"_s, "old"));
    // Nothing is taken from an input method before the document is on the screen.
    if (!waitUntil(takesKeys))
        return false;
    compose(window.currentEditor(), u"か"_s);
    return window.currentEditor()->text() == u"old"_s && window.tabTexts().at(1) == u"a.txt"_s;
}

void ComposingTest::isSaved_data()
{
    QTest::addColumn<Way>("save");
    QTest::newRow("key") << Way(
        [](TestWindow &window, const TestFiles &) { pressWithControl(window, Qt::Key_S); });
    QTest::newRow("tool button") << Way(
        [](TestWindow &window, const TestFiles &) { clickTool(window, FileCommand::Save); });
    QTest::newRow("menu") << Way(
        [](TestWindow &window, const TestFiles &) { window.item(FileCommand::Save)->trigger(); });
    QTest::newRow("Save As") << Way([](TestWindow &window, const TestFiles &files) {
        window.choices << FileChoice{ files.folder(), u"a.txt"_s, CharCode::Utf8 };
        window.item(FileCommand::SaveAs)->trigger();
    });
    QTest::newRow("Save All") << Way([](TestWindow &window, const TestFiles &files) {
        window.editorAt(0)->setEdited(false);
        window.item(FileCommand::SaveAll)->trigger();
        Q_UNUSED(files)
    });
    QTest::newRow("Quit with Save") << Way([](TestWindow &window, const TestFiles &files) {
        window.choices << FileChoice{ files.folder(), u"first.txt"_s };
        window.item(FileCommand::QuitWithSave)->trigger();
    });
}

void ComposingTest::isSaved()
{
    QFETCH(Way, save);
    const TestFiles files;
    TestWindow window;
    appSettings().DefCodec = int(CharCode::Utf8);
    QVERIFY(open(window, files));
    const MessageBoxes boxes;
    save(window, files);
    QCOMPARE(boxes.count(), 0);
    const QByteArray saved = files.read(u"a.txt"_s);
    QVERIFY2(saved == "かold" || saved == "\x82\xA9old", saved);
    if (ctlEditer *editor = window.currentEditor())
        QVERIFY(!editor->edited());
}

void ComposingTest::isAskedAbout_data()
{
    QTest::addColumn<Way>("close");
    QTest::newRow("Close") << Way(
        [](TestWindow &window, const TestFiles &) { window.item(FileCommand::Close)->trigger(); });
    QTest::newRow("Quit") << Way(
        [](TestWindow &window, const TestFiles &) { pressWithControl(window, Qt::Key_Q); });
    QTest::newRow("window closed") << Way([](TestWindow &window, const TestFiles &) { window.close(); });
    QTest::newRow("opened again") << Way(
        [](TestWindow &window, const TestFiles &files) { window.setDocument(files.folder() + u"a.txt"_s); });
    QTest::newRow("chosen again from the recent files")
        << Way([](TestWindow &window, const TestFiles &files) {
               recentFiles().entries[0] = { files.folder(), u"a.txt"_s };
               window.rebuildRecentMenu();
               window.recentMenu()->actions().constFirst()->trigger();
           });
}

void ComposingTest::isAskedAbout()
{
    QFETCH(Way, close);
    const TestFiles files;
    TestWindow window;
    QVERIFY(open(window, files));
    const QPointer<ctlEditer> editor = window.currentEditor();
    MessageBoxes boxes({ qstrcmp(QTest::currentDataTag(), "opened again") == 0
                || QByteArray(QTest::currentDataTag()).startsWith("chosen")
            ? u"No"_s
            : u"Cancel"_s });
    close(window, files);
    QCOMPARE(boxes.count(), 1);
    QVERIFY(editor);
    QCOMPARE(editor->text(), u"かold"_s);
    QCOMPARE(window.tabTexts().at(1), u"* a.txt"_s);
}

void ComposingTest::staysInItsDocument_data()
{
    QTest::addColumn<Way>("change");
    QTest::newRow("click on a tab") << Way(
        [](TestWindow &window, const TestFiles &) { clickTab(window, 0); });
    QTest::newRow("key") << Way(
        [](TestWindow &window, const TestFiles &) { pressWithControl(window, Qt::Key_Tab); });
    QTest::newRow("menu") << Way(
        [](TestWindow &window, const TestFiles &) { window.item(ViewCommand::PrevWindow)->trigger(); });
    QTest::newRow("assistive technology")
        << Way([](TestWindow &window, const TestFiles &) { window.tabBar()->setCurrentIndex(0); });
    QTest::newRow("New") << Way(
        [](TestWindow &window, const TestFiles &) { clickTool(window, FileCommand::New); });
    QTest::newRow("a file from outside") << Way(
        [](TestWindow &window, const TestFiles &files) { window.setDocument(files.write(u"b.txt"_s, "b")); });
    QTest::newRow("reloaded, but not")
        << Way([](TestWindow &window, const TestFiles &) { window.item(FileCommand::Reload)->trigger(); });
    QTest::newRow("full screen") << Way(
        [](TestWindow &window, const TestFiles &) { window.item(ViewCommand::FullScreen)->trigger(); });
}

void ComposingTest::staysInItsDocument()
{
    QFETCH(Way, change);
    const TestFiles files;
    TestWindow window;
    QVERIFY(open(window, files));
    const ctlEditer *const editor = window.currentEditor();
    const MessageBoxes boxes({ u"No"_s });
    change(window, files);
    QCOMPARE(editor->text(), u"かold"_s);
    QCOMPARE(window.tabTexts().at(1), u"* a.txt"_s);
    QCOMPARE(window.editorAt(0)->text(), u"first"_s);
}

void ComposingTest::isFound()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(open(window, files));
    window.item(ViewCommand::Search)->trigger();
    auto *const panel = window.findChild<frmSearchDialog *>();
    panel->findChildren<QComboBox *>().constFirst()->setEditText(u"か"_s);
    compose(window.currentEditor(), u"かん"_s);
    panel->slotBtnBefo();
    QCOMPARE(window.currentEditor()->text(), u"かかんold"_s);
    QCOMPARE(window.currentEditor()->markedText(), u"か"_s);
}

void ComposingTest::isCounted()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(open(window, files));
    const MessageBoxes boxes;
    window.item(FileCommand::Properties)->trigger();
    QCOMPARE(boxes.count(), 1);
    QVERIFY2(boxes.texts().constFirst().contains(u"(5 byte)"_s), qPrintable(boxes.texts().constFirst()));
}

/// The input method lets the key through and goes on composing.
void ComposingTest::escapeClosesNothing()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(open(window, files));
    const MessageBoxes boxes;
    QTest::keyClick(window.currentEditor(), Qt::Key_Escape);
    QTest::keyClick(window.currentEditor(), Qt::Key_Escape);
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(window.tabBar()->count(), 2);
    QCOMPARE(window.currentEditor()->text(), u"old"_s);
}

/// The input method drops what it composed, and lets the key through all the same.
void ComposingTest::escapeOfTheInputMethodClosesNothing()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(open(window, files));
    compose(window.currentEditor(), {});
    QTest::keyPress(window.windowHandle(), Qt::Key_Escape);
    QCOMPARE(window.tabBar()->count(), 2);
    QTest::keyRelease(window.windowHandle(), Qt::Key_Escape);
    QTest::keyClick(window.windowHandle(), Qt::Key_Escape);
    QCOMPARE(window.tabBar()->count(), 1);
}

void ComposingTest::escapeInAFieldClosesNothing()
{
    const TestFiles files;
    TestWindow window;
    QVERIFY(open(window, files));
    window.item(ViewCommand::Search)->trigger();
    auto *const panel = window.findChild<frmSearchDialog *>();
    QVERIFY(QTest::qWaitForWindowActive(panel));
    auto *const field = panel->findChildren<QComboBox *>().constFirst();
    QTRY_COMPARE(QApplication::focusWidget(), field);
    compose(field, u"か"_s);
    QTest::keyClick(field, Qt::Key_Escape);
    QVERIFY(panel->isVisible());
    QTest::mouseClick(field->lineEdit(), Qt::LeftButton);
    QTest::keyClick(field, Qt::Key_Escape);
    QVERIFY(!panel->isVisible());
}

void ComposingTest::escapeClosesAfterwards_data()
{
    QTest::addColumn<Way>("end");
    QTest::newRow("the input method took Escape, and its release came")
        << Way([](TestWindow &window, const TestFiles &) {
               compose(window.currentEditor(), {});
               QTest::keyRelease(window.currentEditor(), Qt::Key_Escape);
           });
    QTest::newRow("committed, undone") << Way([](TestWindow &window, const TestFiles &) {
        QInputMethodEvent event;
        event.setCommitString(u"か"_s);
        QApplication::sendEvent(window.currentEditor(), &event);
        window.slotCmdEditUndo();
    });
    QTest::newRow("another key since") << Way([](TestWindow &window, const TestFiles &) {
        compose(window.currentEditor(), {});
        QTest::keyPress(window.currentEditor(), Qt::Key_Right);
    });
}

void ComposingTest::escapeClosesAfterwards()
{
    QFETCH(Way, end);
    const TestFiles files;
    TestWindow window;
    QVERIFY(open(window, files));
    end(window, files);
    QTest::keyPress(window.currentEditor(), Qt::Key_Escape);
    QCOMPARE(window.tabBar()->count(), 1);
}

namespace {

int runComposingTest(int argc, char **argv)
{
    int noFiles = 1;
    QPEApplicationEsc application(noFiles, argv);
    ComposingTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runComposingTest)

#include "composing_test.moc"
