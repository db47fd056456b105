#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QHelpEvent>
#include <QTextDocumentFragment>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace {

/// What a tab or menu shows of its label.
QString shownLabel(QString label)
{
    return label.replace(u"&&"_s, u"&"_s);
}

/// What the tool tip of a tab shows.
QString toolTipOf(ctlTabBar &bar, int index)
{
    const QPoint place = bar.tabRect(index).center();
    QHelpEvent event(QEvent::ToolTip, place, bar.mapToGlobal(place));
    QApplication::sendEvent(&bar, &event);
    const QString text = QToolTip::text();
    return Qt::mightBeRichText(text) ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
}

} // namespace

/// File names of any characters, in every place that shows them.
class FileNamesTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void tabs_data();
    void tabs();
    void questions_data();
    void questions();
    void recentFilesOfTheNextStart_data();
    void recentFilesOfTheNextStart();

private:
    static void addNames();
    /// Opens a file of that name, alone.
    void open(const QString &name);

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<TestWindow> m_window;
};

void FileNamesTest::init()
{
    resetSettings();
    m_files = std::make_unique<TestFiles>();
}

void FileNamesTest::cleanup()
{
    QToolTip::hideText();
    m_window.reset();
}

void FileNamesTest::addNames()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown"); // in one line
    QTest::addColumn<QString>("shownInBox");
    const auto row = [](const char *title, const QString &name, const QString &shown) {
        QTest::newRow(title) << name << shown << shown;
    };
    const auto same = [&row](const char *title, const QString &name) { row(title, name, name); };
    same("ampersand", u"a&b&&c.txt"_s);
    same("mark-up", u"<b>x<br>&amp;.txt"_s);
    same("percent", u"%1 %2 %L1 %n.txt"_s);
    same("quotes", u"\"it's\".txt"_s);
    same("spaces", u" a  b .txt"_s);
    same("Japanese", u"日本語.txt"_s);
    same("emoji", u"😀.txt"_s);
    same("Hebrew", u"שלום.txt"_s);
    same("right-to-left mark", u"a\u200Fb.txt"_s);
    row("right-to-left override", u"a\u202Etxt.b"_s, u"a\uFFFDtxt.b"_s);
    row("tab and escape", u"a\tb\u001Bc.txt"_s, u"a\uFFFDb\uFFFDc.txt"_s);
    row("line separator", u"a\u2028b.txt"_s, u"a\uFFFDb.txt"_s);
    QTest::newRow("line feed") << u"a\nb.txt"_s << u"a\uFFFDb.txt"_s << u"a\nb.txt"_s;
}

void FileNamesTest::open(const QString &name)
{
    m_window = std::make_unique<TestWindow>();
    QVERIFY(m_window->open());
    m_window->slotCmdFileCloseTab();
    m_window->setDocument(m_files->write(name, "text"));
    QCOMPARE(m_window->currentEditor()->text(), u"text"_s);
    QCOMPARE(m_window->currentEditor()->name(), name);
}

void FileNamesTest::tabs_data()
{
    addNames();
}

void FileNamesTest::tabs()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    open(name);
    ctlTabBar &bar = *m_window->tabBar();
    QCOMPARE(shownLabel(bar.tabText(0)), shown);
    QCOMPARE(bar.accessibleTabName(0), shown);
    QCOMPARE(m_window->currentEditor()->accessibleName(), shown);
    QCOMPARE(toolTipOf(bar, 0), m_files->folder() + shown);
    QTest::keyClicks(m_window->currentEditor(), u"x"_s);
    QCOMPARE(shownLabel(bar.tabText(0)), u"* "_s + shown);
    QVERIFY(m_window->slotCmdFileSave(m_window->currentEditor()));
    QCOMPARE(shownLabel(bar.tabText(0)), shown);
    QCOMPARE(m_files->read(name), QByteArray("xtext"));
}

void FileNamesTest::questions_data()
{
    addNames();
}

void FileNamesTest::questions()
{
    QFETCH(QString, name);
    QFETCH(QString, shownInBox);
    open(name);
    QTest::keyClicks(m_window->currentEditor(), u"x"_s);
    MessageBoxes boxes({ u"No"_s, u"No"_s, u"Cancel"_s });
    m_window->setDocument(m_files->folder() + name);
    m_window->slotCmdFileReload();
    m_window->slotCmdFileCloseTab();
    m_window->slotCmdFileProp();
    QStringList texts = boxes.texts();
    texts.last() = texts.constLast().section(u"\n\n"_s, 0, 0);
    QCOMPARE(texts,
        QStringList({ u"Existing File|File named '"_s + m_files->folder() + shownInBox
                + u"' already opens.\nCancel edit and reload?"_s,
            u"Confirm Reload|Cancel edit and reload\n'"_s + shownInBox + u"'?"_s,
            u"Confirm File Save|\""_s + shownInBox + u"\" is edited.\n Would you want to save this file?"_s,
            u"Document properties|Path : "_s + m_files->folder() + u"\nName : "_s + shownInBox }));
    for (const MessageBoxes::Box &box : boxes.shown())
        QCOMPARE(box.format, Qt::PlainText);
}

void FileNamesTest::recentFilesOfTheNextStart_data()
{
    addNames();
}

void FileNamesTest::recentFilesOfTheNextStart()
{
    QFETCH(QString, name);
    QFETCH(QString, shown);
    open(name);
    QVERIFY(m_window->close());
    recentFiles() = {};
    TestWindow next;
    QVERIFY(next.open());
    QAction *entry = next.recentMenu()->actions().constFirst();
    QCOMPARE(shownLabel(entry->text()), m_files->folder() + shown);
    entry->trigger();
    QCOMPARE(next.currentEditor()->text(), u"text"_s);
    QCOMPARE(next.currentEditor()->name(), name);
}

REGISTER_TEST(runWindowTest<FileNamesTest>)
#include "filenames_test.moc"
