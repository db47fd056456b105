#include "app/tabmenu.h"

#include "tests/app/documentparts.h"
#include "tests/testprogram.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QPointer>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

/// What a document's tab offers, without a main window.
class TabMenuTest : public QObject {
    Q_OBJECT

public slots:
    void noteFolder(const QUrl &address) { m_folders << address; }

private slots:
    void init();
    void cleanup();

    void showsWhatThereIs_data();
    void showsWhatThereIs();
    void closesItsDocumentAndNoOther();
    void asksBeforeItCloses();
    void middleButtonCloses();
    void tabsStayWhereTheyAreScrolledTo();
    void closesTheOthers();
    void closesOthersUntilItIsCancelled();
    void copiesThePath();
    void opensTheFolder();
    void showsTheFolderWhereNothingElseDoes();
    void reloadsItsDocument();
    void reopensWithACode();
    void heldDocumentsStay();
    void forgetsAClosedDocument();
    void asksForMoreOptions();
    void opensAtTheCurrentTab();

private:
    ctlEditer *open(const QString &name, const QByteArray &text = "text")
    {
        return m_parts->open(m_parts->files.write(name, text));
    }
    QMenu *menuOf(ctlEditer *editor);
    /// Opens the menu of a document and chooses the item with that text.
    bool choose(ctlEditer *editor, const QString &text);
    static QList<QAction *> itemsOf(const QMenu &menu);

    std::unique_ptr<DocumentParts> m_parts;
    TabMenu *m_menu = nullptr;
    QList<QUrl> m_folders;
};

void TabMenuTest::init()
{
    m_parts = std::make_unique<DocumentParts>();
    m_menu = new TabMenu(m_parts->documents, m_parts->loader, m_parts->closer);
    m_folders.clear();
}

void TabMenuTest::cleanup()
{
    QDesktopServices::unsetUrlHandler(u"file"_s);
    m_parts.reset();
}

/// Those of its submenus too, and no separators.
QList<QAction *> TabMenuTest::itemsOf(const QMenu &menu)
{
    QList<QAction *> items;
    for (QAction *const item : menu.actions()) {
        if (!item->isSeparator())
            items << item;
        if (item->menu())
            items << itemsOf(*item->menu());
    }
    return items;
}

QMenu *TabMenuTest::menuOf(ctlEditer *editor)
{
    m_menu->show(editor, m_parts->documents.mapToGlobal(QPoint(5, 5)));
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

bool TabMenuTest::choose(ctlEditer *editor, const QString &text)
{
    QMenu *const menu = menuOf(editor);
    for (QAction *const item : menu ? itemsOf(*menu) : QList<QAction *>()) {
        if (item->text().remove(u'&') == text && item->isEnabled()) {
            menu->close();
            item->trigger();
            return true;
        }
    }
    return false;
}

void TabMenuTest::showsWhatThereIs_data()
{
    QTest::addColumn<bool>("hasFile");
    QTest::addColumn<bool>("hasOthers");
    QTest::addColumn<QStringList>("disabled");
    QTest::newRow("a file, another document") << true << true << QStringList();
    QTest::newRow("a file alone") << true << false << QStringList{ u"Close others"_s };
    QTest::newRow("never saved") << false << true
                                 << QStringList{ u"Copy path"_s, u"Open folder"_s, u"Reload"_s,
                                        u"Reopen as"_s };
}

void TabMenuTest::showsWhatThereIs()
{
    QFETCH(bool, hasFile);
    QFETCH(bool, hasOthers);
    ctlEditer *const editor = hasFile ? open(u"a.txt"_s) : m_parts->documents.add();
    if (hasOthers)
        m_parts->documents.add();
    const QMenu *const menu = menuOf(editor);
    QVERIFY(menu);
    QStringList texts, disabled;
    for (const QAction *const item : itemsOf(*menu)) {
        texts << item->text().remove(u'&');
        if (!item->isEnabled())
            disabled << texts.last();
    }
    QCOMPARE(texts,
        QStringList({ u"Close"_s, u"Close others"_s, u"Copy path"_s, u"Open folder"_s, u"Reload"_s,
            u"Reopen as"_s, u"Shift-JIS"_s, u"EUC"_s, u"JIS"_s, u"UTF-8"_s, u"UTF-16LE"_s, u"UTF-16BE"_s,
            u"More options"_s }));
    QTEST(disabled, "disabled");
}

void TabMenuTest::closesItsDocumentAndNoOther()
{
    ctlEditer *const first = open(u"a.txt"_s);
    ctlEditer *const second = open(u"b.txt"_s);
    ctlEditer *const third = open(u"c.txt"_s);
    QVERIFY(choose(first, u"Close"_s));
    QCOMPARE(m_parts->documents.editors(), QList({ second, third }));
    QCOMPARE(m_parts->documents.current(), third); // as before
    QVERIFY(choose(third, u"Close"_s));
    QCOMPARE(m_parts->documents.current(), second);
}

void TabMenuTest::asksBeforeItCloses()
{
    ctlEditer *const first = open(u"a.txt"_s);
    ctlEditer *const second = open(u"b.txt"_s);
    first->insert(u"x"_s);
    const MessageBoxes boxes({ u"Cancel"_s, u"No"_s });
    QVERIFY(choose(first, u"Close"_s));
    QCOMPARE(boxes.titles(), QStringList{ u"Confirm File Save"_s });
    QCOMPARE(m_parts->documents.current(), first); // which is asked about
    m_parts->documents.setCurrent(second);
    QVERIFY(choose(first, u"Close"_s));
    QCOMPARE(m_parts->documents.editors(), QList{ second });
    QCOMPARE(m_parts->documents.current(), second);
}

void TabMenuTest::middleButtonCloses()
{
    ctlEditer *const first = open(u"a.txt"_s);
    ctlEditer *const second = open(u"b.txt"_s);
    first->insert(u"x"_s);
    const MessageBoxes boxes({ u"No"_s });
    const QPoint middle = m_parts->documents.tabBar()->tabRect(0).center();
    QTest::mouseClick(m_parts->documents.tabBar(), Qt::MiddleButton, {}, middle);
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(m_parts->documents.editors(), QList{ second });
}

/// Behind the one that is shown and before it, with and without a question.
void TabMenuTest::tabsStayWhereTheyAreScrolledTo()
{
    ctlTabBar &tabs = *m_parts->documents.tabBar();
    for (int i = 0; i < 40; ++i)
        open(QString::number(i) + u".txt"_s);
    ctlEditer *const edited = m_parts->documents.editors().at(25);
    edited->insert(u"x"_s);
    const MessageBoxes boxes({ u"No"_s });
    for (const int shown : { 0, 36 }) {
        ctlEditer *const current = m_parts->documents.editors().at(shown);
        m_parts->documents.present(current);
        const int scrolled = tabs.scrolled() + tabs.tabRect(24).left() - 20;
        tabs.scrollTo(scrolled);
        for (int i = 0; i < 2; ++i) {
            ctlEditer *const closed = m_parts->documents.editors().at(25);
            QTest::mouseClick(&tabs, Qt::MiddleButton, {}, tabs.tabRect(25).center());
            QVERIFY(!m_parts->documents.editors().contains(closed));
            QCOMPARE(m_parts->documents.current(), current);
            QCOMPARE(tabs.scrolled(), scrolled);
        }
    }
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(m_parts->documents.editors().size(), 36);
}

void TabMenuTest::closesTheOthers()
{
    open(u"a.txt"_s);
    ctlEditer *const kept = open(u"b.txt"_s);
    open(u"c.txt"_s)->insert(u"x"_s);
    open(u"d.txt"_s);
    const MessageBoxes boxes({ u"Yes"_s });
    QVERIFY(choose(kept, u"Close others"_s));
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(m_parts->files.read(u"c.txt"_s), "xtext"_ba);
    QCOMPARE(m_parts->documents.editors(), QList{ kept });
    QCOMPARE(m_parts->documents.current(), kept);
}

void TabMenuTest::closesOthersUntilItIsCancelled()
{
    ctlEditer *const kept = open(u"a.txt"_s);
    ctlEditer *const edited = open(u"b.txt"_s);
    edited->insert(u"x"_s);
    open(u"c.txt"_s);
    const MessageBoxes boxes({ u"Cancel"_s });
    QVERIFY(choose(kept, u"Close others"_s));
    QCOMPARE(m_parts->documents.editors(), QList({ kept, edited }));
    QCOMPARE(m_parts->documents.current(), edited);
}

void TabMenuTest::copiesThePath()
{
    ctlEditer *const editor = open(u"a & b.txt"_s);
    QVERIFY(choose(editor, u"Copy path"_s));
    QCOMPARE(QGuiApplication::clipboard()->text(), m_parts->files.folder() + u"a & b.txt"_s);
}

void TabMenuTest::opensTheFolder()
{
    QDesktopServices::setUrlHandler(u"file"_s, this, "noteFolder");
    ctlEditer *const editor = open(u"a.txt"_s);
    QVERIFY(choose(editor, u"Open folder"_s));
    QCOMPARE(m_folders, QList{ QUrl::fromLocalFile(m_parts->files.folder()) });
    QVERIFY(m_parts->starts.isEmpty());
}

/// Nothing opens an address on the platform of the tests.
void TabMenuTest::showsTheFolderWhereNothingElseDoes()
{
    ctlEditer *const editor = open(u"a.txt"_s);
    static QStringList said;
    said.clear();
    const QtMessageHandler before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &text) { said << text; });
    QVERIFY(choose(editor, u"Open folder"_s));
    qInstallMessageHandler(before);
    QCOMPARE(said.filter(u"openUrl"_s), QStringList());
    QCOMPARE(m_parts->starts.size(), 1);
    QCOMPARE(m_parts->starts[0].folder, m_parts->files.folder());
}

void TabMenuTest::reloadsItsDocument()
{
    ctlEditer *const first = open(u"a.txt"_s);
    open(u"b.txt"_s);
    m_parts->files.write(u"a.txt"_s, "another");
    const MessageBoxes boxes({ u"Yes"_s });
    QVERIFY(choose(first, u"Reload"_s));
    QCOMPARE(boxes.titles(), QStringList{ u"Confirm Reload"_s });
    QCOMPARE(first->text(), u"another"_s);
    QCOMPARE(m_parts->documents.current(), first);
}

void TabMenuTest::reopensWithACode()
{
    ctlEditer *const first = open(u"a.txt"_s, "\xe3\x81\x82\n");
    open(u"b.txt"_s);
    QVERIFY(choose(first, u"UTF-8"_s));
    QCOMPARE(first->text(), u"\u3042\n"_s);
    QVERIFY(choose(first, u"Shift-JIS"_s));
    QVERIFY(first->text() != u"\u3042\n"_s);
    QCOMPARE(first->charCode(), int(CharCode::ShiftJis));
    QCOMPARE(m_parts->documents.current(), first);
}

/// Something is done to its text behind the window.
void TabMenuTest::heldDocumentsStay()
{
    ctlEditer *const editor = open(u"a.txt"_s);
    const int before = editor->charCode();
    editor->document().setHeld(true);
    const MessageBoxes boxes;
    QVERIFY(choose(editor, u"Reload"_s));
    QVERIFY(choose(editor, u"EUC"_s));
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(editor->charCode(), before);
    editor->document().setHeld(false);
}

void TabMenuTest::forgetsAClosedDocument()
{
    ctlEditer *const first = open(u"a.txt"_s);
    ctlEditer *const second = open(u"b.txt"_s);
    const QMenu *const menu = menuOf(first);
    m_parts->closer.close(first);
    itemsOf(*menu).constFirst()->trigger();
    QCOMPARE(m_parts->documents.editors(), QList{ second });
}

void TabMenuTest::asksForMoreOptions()
{
    const QSignalSpy wanted(m_menu, &TabMenu::moreOptionsWanted);
    QVERIFY(choose(m_parts->documents.add(), u"More options"_s));
    QCOMPARE(wanted.count(), 1);
}

void TabMenuTest::opensAtTheCurrentTab()
{
    m_menu->showCurrent();
    QVERIFY(!QApplication::activePopupWidget()); // there is no document
    open(u"a.txt"_s);
    ctlEditer *const current = open(u"b.txt"_s);
    m_menu->showCurrent();
    auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu);
    const ctlTabBar &tabs = *m_parts->documents.tabBar();
    const QRect tab = tabs.tabRect(tabs.currentIndex()).translated(tabs.mapToGlobal(QPoint()));
    QVERIFY(!menu->geometry().intersects(tab));
    QCOMPARE(menu->geometry().left(), tab.left());
    menu->close();
    menu->actions().constFirst()->trigger();
    QVERIFY(!m_parts->documents.editors().contains(current));
}

REGISTER_TEST(runWindowTest<TabMenuTest>)
#include "tabmenu_test.moc"
