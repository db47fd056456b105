#include "search/frmsearchdialog.h"
#include "tests/app/atprogress.h"
#include "tests/app/testwindow.h"
#include "tests/search/searchforms.h"
#include "tests/testprogram.h"

#include <QAccessible>
#include <QClipboard>
#include <QMenuBar>

using namespace Qt::StringLiterals;

namespace {

constexpr int hits = 100;

void press(QAccessibleInterface *control)
{
    control->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
}

/// Waits for the button to come up again, which is when it acts.
void pressButton(QAbstractButton *button)
{
    press(QAccessible::queryAccessibleInterface(button));
    QTRY_VERIFY(!button->isDown());
}

/// An item as its menu or menu bar has it for assistive technology.
QAccessibleInterface *itemIn(QWidget *menu, QAction *item)
{
    return QAccessible::queryAccessibleInterface(menu)->child(int(menu->actions().indexOf(item)));
}

void popUpMenu(const TestWindow &window, MenuId menu)
{
    QAccessibleInterface *const title =
        itemIn(window.findChild<QMenuBar *>(), window.menu(menu)->menuAction());
    title->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
}

QAccessibleInterface *textOf(const TestWindow &window)
{
    return QAccessible::queryAccessibleInterface(window.currentEditor());
}

using Action = std::function<void(TestWindow &)>;

/// While it lives: acts once at each message box that is shown.
class AtBox : public QObject {
public:
    explicit AtBox(std::function<void(QMessageBox &)> action)
        : m_action(std::move(action))
    {
        qApp->installEventFilter(this);
    }
    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *box = qobject_cast<QMessageBox *>(object);
        if (box && event->type() == QEvent::Show)
            QMetaObject::invokeMethod(
                box, [this, box] { m_action(*box); }, Qt::QueuedConnection);
        return false;
    }

private:
    std::function<void(QMessageBox &)> m_action;
};

/// While it lives: keeps the classes of dialogs that are shown, and cancels them.
class Cancelled : public QObject {
public:
    Cancelled() { qApp->installEventFilter(this); }
    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *dialog = qobject_cast<QDialog *>(object);
        if (dialog && !qobject_cast<QMessageBox *>(dialog) && event->type() == QEvent::Show) {
            classes << QString::fromLatin1(dialog->metaObject()->className());
            QMetaObject::invokeMethod(dialog, &QDialog::reject, Qt::QueuedConnection);
        }
        return false;
    }
    QStringList classes;
};

} // namespace

/// What assistive technology does to the window, past what keeps keys and mouse from it: a replace-all that
/// runs, or a dialog.
class HeldBackTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void runIsLeftAlone_data();
    void runIsLeftAlone();
    void dialogIsLeftAlone_data();
    void dialogIsLeftAlone();
    void menuDoesNotStayOpen_data();
    void menuDoesNotStayOpen();
    void openMenuIsClosed();
    void panelWorks_data();
    void panelWorks();
    void everythingWorksAgain();

private:
    ctlEditer &editor() { return *m_window->currentEditor(); }
    frmSearchDialog *panel() { return m_window->findChild<frmSearchDialog *>(); }
    void prepare();
    void addCommands();
    QString state();

    std::unique_ptr<TestWindow> m_window;
    TestFiles m_files;
};

void HeldBackTest::initTestCase()
{
    QVERIFY(!static_cast<QPEApplication *>(qApp)->handOver());
}

void HeldBackTest::init()
{
    failOnWarnings();
    m_window.reset();
    resetSettings();
    QFile::remove(historyFileName());
    recentFiles().entries[0] = { m_files.folder(), u"recent.txt"_s, 0, 0, 0, 0 };
    recentFiles().RecentViewCnt = 1;
    m_files.write(u"recent.txt"_s, "recent");
    m_files.write(u"own.txt"_s, QByteArray("x\n").repeated(hits));
    writeSettings();
    m_window = std::make_unique<TestWindow>();
    static_cast<QPEApplication *>(qApp)->showMainWidget(m_window.get());
    QVERIFY(m_window->open());
    m_window->setDocument(m_files.folder() + u"own.txt"_s);
    prepare();
}

/// Something to undo, to redo and to cut, and a search that goes on.
void HeldBackTest::prepare()
{
    editor().insert(u"12"_s);
    editor().undo();
    editor().insert(u"1"_s);
    editor().insert(u"2"_s);
    editor().undo();
    m_window->slotCmdViewReplace();
    findField(*panel())->setEditText(u"x"_s);
    replaceField(*panel())->setEditText(u"y"_s);
    panel()->slotBtnNext();
    panel()->slotBtnNext();
    QGuiApplication::clipboard()->setText(u"pasted"_s);
}

QString HeldBackTest::state()
{
    if (!m_window->currentEditor())
        return u"no document"_s;
    const QStringList numbers{ QString::number(editor().cursorOffset().value()),
        QString::number(editor().anchorOffset().value()), QString::number(appSettings().Lang),
        QString::number(m_window->isCoveringScreen()), QString::number(m_window->requests.size()),
        QString::number(panel()->isVisible()) };
    return QStringList{ editor().name(), numbers.join(u' '), m_window->tabTexts().join(u' '),
        QGuiApplication::clipboard()->text(), editor().text() }
        .join(u'|');
}

void HeldBackTest::addCommands()
{
    QTest::addColumn<Action>("act");
    for (const MenuId menu : { MenuId::File, MenuId::Edit, MenuId::View, MenuId::Language }) {
        for (const Command &command : commandsOf(menu)) {
            if (command.slot && command.slot != &frmMain::slotCmdViewHelp)
                QTest::newRow(command.text) << Action([menu, id = command.id](TestWindow &window) {
                    press(itemIn(window.menu(menu), window.item(id)));
                });
        }
    }
    for (const ToolButton &button : toolButtons())
        QTest::addRow("button %s", button.label) << Action([button](TestWindow &window) {
            press(QAccessible::queryAccessibleInterface(
                window.toolBar()->widgetForAction(window.item(button.command))));
        });
    const auto row = [](const char *name, const Action &act) { QTest::newRow(name) << act; };
    row("a recent file",
        [](TestWindow &window) { press(itemIn(window.recentMenu(), window.recentMenu()->actions().at(0))); });
    row("another tab",
        [](TestWindow &window) { press(QAccessible::queryAccessibleInterface(window.tabBar())->child(0)); });
    for (const char *label : { "Replace Next", "Replace ALL" })
        QTest::addRow("the hidden panel's %s", label) << Action([label](TestWindow &window) {
            pressButton(buttonOf(*window.findChild<frmSearchDialog *>(), QString::fromLatin1(label)));
        });
    row("inserting",
        [](TestWindow &window) { textOf(window)->editableTextInterface()->insertText(0, u"in"_s); });
    row("deleting", [](TestWindow &window) { textOf(window)->editableTextInterface()->deleteText(0, 1); });
    row("replacing",
        [](TestWindow &window) { textOf(window)->editableTextInterface()->replaceText(0, 1, u"re"_s); });
    row("the cursor", [](TestWindow &window) { textOf(window)->textInterface()->setCursorPosition(150); });
    row("selecting", [](TestWindow &window) { textOf(window)->textInterface()->addSelection(150, 160); });
    row("selecting else",
        [](TestWindow &window) { textOf(window)->textInterface()->setSelection(0, 150, 160); });
    row("deselecting", [](TestWindow &window) { textOf(window)->textInterface()->removeSelection(0); });
}

void HeldBackTest::runIsLeftAlone_data()
{
    addCommands();
}

void HeldBackTest::runIsLeftAlone()
{
    QFETCH(Action, act);
    int acted = 0;
    QString before;
    QString after;
    const AtProgress intrude([&](frmReplaceProgress &) {
        before = state();
        act(*m_window);
        after = state();
        ++acted;
    });
    const Cancelled dialogs;
    bool options = false;
    m_window->options = [&options] { return options = true; };
    MessageBoxes boxes;
    panel()->slotBtnAll();
    QCOMPARE(acted, 1);
    QCOMPARE(after, before);
    QVERIFY(!options);
    QCOMPARE(dialogs.classes, QStringList());
    QCOMPARE(boxes.titles(), QStringList{ u"Replace All"_s });
    QVERIFY(editor().text().endsWith(QString(u"y\n"_s).repeated(hits - 1)));
    QVERIFY(!editor().text().contains(u'x'));
    QVERIFY(m_window->isVisible());
}

void HeldBackTest::dialogIsLeftAlone_data()
{
    addCommands();
}

void HeldBackTest::dialogIsLeftAlone()
{
    QFETCH(Action, act);
    panel()->hide();
    editor().undo();
    editor().setCursorPosition(1, 0);
    editor().setCursorPosition(2, 1, true);
    const QString before = state();
    const Cancelled dialogs;
    bool options = false;
    m_window->options = [&options] { return options = true; };
    int boxes = 0;
    const AtBox intrude([&](QMessageBox &box) {
        if (++boxes == 1)
            act(*m_window);
        box.close();
    });
    m_window->slotCmdViewAbout();
    QCOMPARE(boxes, 1);
    QCOMPARE(state(), before);
    QVERIFY(!options);
    QCOMPARE(dialogs.classes, QStringList());
    QVERIFY(m_window->isVisible());
}

void HeldBackTest::menuDoesNotStayOpen_data()
{
    QTest::addColumn<MenuId>("menu");
    QTest::newRow("File") << MenuId::File;
    QTest::newRow("View") << MenuId::View;
}

/// It would get the keys and the mouse, which are for the progress panel.
void HeldBackTest::menuDoesNotStayOpen()
{
    QFETCH(MenuId, menu);
    bool isClosed = false;
    const AtProgress open([&](frmReplaceProgress &) {
        popUpMenu(*m_window, menu);
        QTRY_VERIFY(!m_window->menu(menu)->isVisible());
        isClosed = true;
    });
    const MessageBoxes boxes;
    panel()->slotBtnAll();
    QVERIFY(isClosed);
    popUpMenu(*m_window, menu);
    QVERIFY(m_window->menu(menu)->isVisible());
    m_window->menu(menu)->close();
}

void HeldBackTest::openMenuIsClosed()
{
    popUpMenu(*m_window, MenuId::Edit);
    QVERIFY(m_window->menu(MenuId::Edit)->isVisible());
    bool isOpen = true;
    const AtProgress look([&](frmReplaceProgress &) { isOpen = m_window->menu(MenuId::Edit)->isVisible(); });
    const MessageBoxes boxes;
    pressButton(buttonOf(*panel(), u"Replace ALL"_s));
    QVERIFY(!isOpen);
}

void HeldBackTest::panelWorks_data()
{
    QTest::addColumn<bool>("speedUp");
    QTest::newRow("Stop") << false;
    QTest::newRow("Speed up, Stop") << true;
}

void HeldBackTest::panelWorks()
{
    QFETCH(bool, speedUp);
    bool isSpedUp = false;
    bool isStopped = false;
    const AtProgress act([&](frmReplaceProgress &progress) {
        if (speedUp)
            pressButton(buttonOf(progress, u"Speed up"_s));
        isSpedUp = progress.speedUp;
        pressButton(buttonOf(progress, u"Stop"_s));
        isStopped = progress.stopRequested;
    });
    const MessageBoxes boxes;
    panel()->slotBtnAll();
    QCOMPARE(isSpedUp, speedUp);
    QVERIFY(isStopped);
    QVERIFY(editor().text().contains(u'x'));
}

void HeldBackTest::everythingWorksAgain()
{
    const MessageBoxes boxes;
    panel()->slotBtnAll();
    const QString replaced = editor().text();
    textOf(*m_window)->editableTextInterface()->insertText(0, u"in"_s);
    QCOMPARE(editor().text(), u"in"_s + replaced);
    press(itemIn(m_window->menu(MenuId::Edit), m_window->item(EditCommand::Undo)));
    QCOMPARE(editor().text(), replaced);
    textOf(*m_window)->textInterface()->setCursorPosition(3);
    QCOMPARE(editor().cursorOffset(), Offset(3));
    press(QAccessible::queryAccessibleInterface(m_window->tabBar())->child(0));
    QCOMPARE(m_window->currentEditor(), m_window->editorAt(0));
}

REGISTER_TEST(runFormTest<HeldBackTest>)
#include "heldback_test.moc"
