#include "tests/app/forms.h"
#include "tests/app/testwindow.h"
#include "tests/mnemonics.h"
#include "tests/testprogram.h"

#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

/// Closes every form that opens over another window while it lives by Escape, and keeps its class.
class DialogWatch : public QObject {
public:
    DialogWatch() { qApp->installEventFilter(this); }
    QStringList opened;

    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *dialog = qobject_cast<QWidget *>(object);
        if (event->type() != QEvent::Show || !dialog || !dialog->isWindow() || !dialog->parentWidget()
            || dialog->windowType() == Qt::Popup)
            return false;
        opened << QString::fromLatin1(dialog->metaObject()->className());
        QTimer::singleShot(0, dialog, [dialog] { QTest::keyClick(dialog, Qt::Key_Escape); });
        return false;
    }

private:
    NoTimeToRead m_noTimeToRead;
};

/// Alt and the letter of its title opens a menu of the bar.
QMenu *openMenu(const frmMain &window, MenuId id)
{
    const auto *bar = window.findChild<QMenuBar *>();
    const QMenu *menu = window.menu(id);
    const QString title = menu->menuAction()->text();
    const QChar letter = title.at(title.indexOf(u'&') + 1);
    QTest::keyClick(bar->window(), letter.toLower().toLatin1(), Qt::AltModifier);
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

/// Goes down until the action is the current one. False when it is passed by.
bool goDownTo(QMenu *menu, const QAction *action)
{
    for (qsizetype step = 0; step <= menu->actions().size() && menu->activeAction() != action; ++step)
        QTest::keyClick(menu, Qt::Key_Down);
    return menu->activeAction() == action;
}

/// Goes to an item of the menu bar, in its submenu where it has one of its own.
QMenu *goTo(const frmMain &window, MenuId id, const QAction *action)
{
    if (id != MenuId::Language) {
        QMenu *menu = openMenu(window, id);
        return menu && goDownTo(menu, action) ? menu : nullptr;
    }
    QMenu *view = openMenu(window, MenuId::View);
    if (!view || !goDownTo(view, window.item(ViewCommand::Language)))
        return nullptr;
    QTest::keyClick(view, Qt::Key_Right);
    auto *languages = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    return languages && languages != view && goDownTo(languages, action) ? languages : nullptr;
}

/// A document in which all of Undo, Redo, Cut and Copy can be done.
void prepareDocument(ctlEditer *editor)
{
    editor->insert(u"some"_s);
    editor->insert(u" text"_s);
    editor->undo();
    editor->setCursorPosition(0, 0, true);
}

/// The dialog that a command opens for a document that was never saved and has edits.
QString dialogOf(CommandId command)
{
    const auto isOf = [command](std::initializer_list<CommandId> commands) {
        return std::find(commands.begin(), commands.end(), command) != commands.end();
    };
    if (isOf({ FileCommand::Open, FileCommand::Save, FileCommand::SaveAs, FileCommand::SaveAll,
            FileCommand::QuitWithSave }))
        return u"frmFileDialog"_s;
    if (isOf({ FileCommand::Properties, FileCommand::Close, FileCommand::Quit, ViewCommand::About }))
        return u"QMessageBox"_s;
    if (command == EditCommand::Options)
        return u"frmOption"_s;
    if (isOf({ ViewCommand::Search, ViewCommand::Replace }))
        return u"frmSearchDialog"_s;
    return command == ViewCommand::LineJump ? u"frmJumpTo"_s : QString();
}

/// Shows a form over the window; null when it does not become the active one.
std::unique_ptr<QWidget> openForm(Form form, TestWindow &window)
{
    std::unique_ptr<QWidget> dialog = ::dialogOf(form, &window);
    dialog->show();
    dialog->activateWindow();
    const auto isActive = [&] { return QApplication::activeWindow() == dialog.get(); };
    return waitUntil(isActive) ? std::move(dialog) : nullptr;
}

} // namespace

/// Everything that the menus offer is done without a pointer.
class MenuKeysTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void commands_data();
    void commands();
    void arrowsGoFromMenuToMenu();
    void barGivesTheKeysBackWithoutADocument();
    void recentFilesAreReached();
    void lettersOfFormsAreUnique_data();
    void lettersOfFormsAreUnique();
    void tabReachesEveryControl_data();
    void tabReachesEveryControl();
    void defaultButtonComesBack_data();
    void defaultButtonComesBack();
};

void MenuKeysTest::init()
{
    resetSettings();
    qputenv("QPEDIR", BUILT_QPE_DIR);
}

void MenuKeysTest::commands_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<CommandId>("command");
    for (const auto &[language, name] : languages) {
        for (const MenuId menu : { MenuId::File, MenuId::Edit, MenuId::View, MenuId::Language }) {
            for (const Command &command : commandsOf(menu)) {
                if (command.slot && command.slot != &frmMain::slotCmdViewHelp)
                    QTest::addRow("%s, %s", name, command.text) << language << command.id;
            }
        }
    }
}

/// Alt and a letter, arrows and Return.
void MenuKeysTest::commands()
{
    QFETCH(int, language);
    QFETCH(CommandId, command);
    appSettings().Lang = language;
    writeSettings();
    frmMain window;
    window.showMaximized();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.slotEtcFirstNewDoc();
    prepareDocument(window.currentEditor());
    QAction *action = window.item(command);
    QVERIFY(action->isEnabled());
    QMenu *popup = goTo(window, command.menu, action);
    QVERIFY(popup);
    const QSignalSpy triggered(action, &QAction::triggered);
    DialogWatch dialogs;
    QTest::keyClick(popup, Qt::Key_Return);
    QTRY_COMPARE(triggered.count(), 1);
    QVERIFY(!QApplication::activePopupWidget());
    const QString dialog = dialogOf(command);
    QCOMPARE(dialogs.opened.value(0), dialog);
    for (ctlEditer *editor : window.tabBar()->editors())
        editor->setEdited(false);
}

void MenuKeysTest::arrowsGoFromMenuToMenu()
{
    TestWindow window;
    QVERIFY(window.open());
    QMenu *menu = openMenu(window, MenuId::File);
    for (const MenuId id : { MenuId::File, MenuId::Edit, MenuId::View, MenuId::File }) {
        QCOMPARE(menu, window.menu(id));
        QTest::keyClick(menu, Qt::Key_Right);
        menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    }
    QTest::keyClick(menu, Qt::Key_Escape);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QTRY_VERIFY(!QApplication::activePopupWidget());
    QTRY_COMPARE(QApplication::focusWidget(), window.currentEditor());
    QCOMPARE(window.tabBar()->count(), 1);
}

/// Escape in full screen came to the bar.
void MenuKeysTest::barGivesTheKeysBackWithoutADocument()
{
    TestWindow window;
    QVERIFY(window.open());
    window.slotCmdFileCloseTab();
    QTRY_COMPARE(window.tabBar()->count(), 0);
    window.slotCmdViewFull();
    QTRY_VERIFY(window.isFullScreen());
    QMenu *const menu = openMenu(window, MenuId::File);
    QVERIFY(menu);
    QTest::keyClick(menu, Qt::Key_Escape);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QTRY_VERIFY(!QApplication::activePopupWidget());
    QVERIFY(window.isFullScreen());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QTRY_VERIFY(!window.isFullScreen());
}

void MenuKeysTest::recentFilesAreReached()
{
    const TestFiles files;
    const QString name = files.write(u"a.txt"_s, "text");
    recentFiles().entries[0] = { files.folder(), u"a.txt"_s };
    writeSettings();
    TestWindow window;
    QVERIFY(window.open());
    QMenu *file = openMenu(window, MenuId::File);
    QVERIFY(goDownTo(file, window.item(FileCommand::RecentFiles)));
    QTest::keyClick(file, Qt::Key_Right);
    QCOMPARE(QApplication::activePopupWidget(), window.recentMenu());
    QVERIFY(goDownTo(window.recentMenu(), window.recentMenu()->actions().constFirst()));
    QTest::keyClick(window.recentMenu(), Qt::Key_Return);
    QCOMPARE(window.currentEditor()->text(), u"text"_s);
}

void MenuKeysTest::lettersOfFormsAreUnique_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<Form>("form");
    for (const auto &[language, languageName] : languages) {
        for (const auto &[form, formName] : forms)
            QTest::addRow("%s, %s", languageName, formName) << language << form;
    }
}

/// Among what is seen at the same time.
void MenuKeysTest::lettersOfFormsAreUnique()
{
    QFETCH(int, language);
    QFETCH(Form, form);
    appSettings().Lang = language;
    writeSettings();
    TestWindow window;
    QVERIFY(window.open());
    const std::unique_ptr<QWidget> dialog = ::dialogOf(form, &window);
    QWidget &shown = dialog ? *dialog : window;
    shown.show();
    QStringList texts;
    for (const QWidget *widget : shown.findChildren<QWidget *>()) {
        if (!widget->isVisible() || widget->window() != &shown)
            continue;
        if (const auto *label = qobject_cast<const QLabel *>(widget); label && label->buddy())
            texts << label->text();
        else if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
            texts << button->text();
        else if (const auto *tabs = qobject_cast<const QTabBar *>(widget); tabs && form != Form::Main)
            for (int i = 0; i < tabs->count(); ++i)
                texts << tabs->tabText(i);
        else if (const auto *bar = qobject_cast<const QMenuBar *>(widget))
            for (const QAction *action : bar->actions())
                texts << action->text();
    }
    QVERIFY2(mnemonicsOf(texts).removeDuplicates() == 0, qPrintable(texts.join(u'|')));
}

void MenuKeysTest::tabReachesEveryControl_data()
{
    QTest::addColumn<Form>("form");
    for (const auto &[form, name] : forms) {
        if (form != Form::Main)
            QTest::newRow(name) << form;
    }
}

/// And comes back to where it began.
void MenuKeysTest::tabReachesEveryControl()
{
    QFETCH(Form, form);
    TestWindow window;
    QVERIFY(window.open());
    const std::unique_ptr<QWidget> dialog = openForm(form, window);
    QVERIFY(dialog);
    QList<const QWidget *> expected;
    for (const QWidget *widget : dialog->findChildren<QWidget *>()) {
        if (widget->isVisible() && widget->isEnabled() && widget->focusPolicy() & Qt::TabFocus
            && !widget->focusProxy() && widget->window() == dialog.get())
            expected << widget;
    }
    QVERIFY(!expected.isEmpty());
    QSet<const QWidget *> reached;
    for (int step = 0; step < 60; ++step) {
        QTest::keyClick(
            QApplication::focusWidget() ? QApplication::focusWidget() : dialog.get(), Qt::Key_Tab);
        const QWidget *focused = QApplication::focusWidget();
        reached << focused << (focused ? focused->parentWidget() : nullptr);
    }
    for (const QWidget *widget : expected)
        QVERIFY2(reached.contains(widget),
            qPrintable(widget->objectName() + u' ' + QLatin1StringView(widget->metaObject()->className())));
}

void MenuKeysTest::defaultButtonComesBack_data()
{
    QTest::addColumn<Form>("form");
    for (const auto &[form, name] : forms) {
        if (form != Form::Main && form != Form::Search && form != Form::Replace && form != Form::Progress)
            QTest::newRow(name) << form;
    }
}

/// A button that has the focus is the one that Return presses; then it is again the dialog's own.
void MenuKeysTest::defaultButtonComesBack()
{
    QFETCH(Form, form);
    TestWindow window;
    QVERIFY(window.open());
    const std::unique_ptr<QWidget> dialog = openForm(form, window);
    QVERIFY(dialog);
    QPushButton *own = nullptr;
    QPushButton *other = nullptr;
    for (QPushButton *button : dialog->findChildren<QPushButton *>()) {
        if (button->isDefault())
            own = button;
        else if (button->autoDefault() && button->isVisible())
            other = button;
    }
    QVERIFY(own && other);
    other->setEnabled(true); // as Back is in the guide, once there is somewhere to go
    QWidget *start = dialog->focusWidget();
    QVERIFY(start && start != other);
    other->setFocus();
    QVERIFY(!own->isDefault());
    start->setFocus();
    QVERIFY(own->isDefault());
}

REGISTER_TEST(runWindowTest<MenuKeysTest>)
#include "menukeys_test.moc"
