#include "tests/filedialog/showndialog.h"
#include "tests/filedialog/testfolder.h"
#include "tests/testprogram.h"

#include <QLabel>
#include <QSignalSpy>

/// What a dialog shows and offers.
class FileDialogTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void texts_data();
    void texts();
    void sizes_data();
    void sizes();
    void choices();
    void startTypes_data();
    void startTypes();
    void pickedTypes_data();
    void pickedTypes();
    void pickedHtmlShowsMore();
    void fillsAfterAMoment();
    void firstFocusIsTheList();
    void tabOrder();
    void controlsHaveNames();
};

void FileDialogTest::init()
{
    resetDialogs();
}

void FileDialogTest::texts_data()
{
    QTest::addColumn<frmFileDialog::Mode>("mode");
    QTest::addColumn<QString>("title");
    QTest::newRow("open") << frmFileDialog::Open << QStringLiteral("Open");
    QTest::newRow("save as") << frmFileDialog::SaveAs << QStringLiteral("Save as");
    QTest::newRow("any other mode") << frmFileDialog::Mode(7) << QStringLiteral("Save as");
}

void FileDialogTest::texts()
{
    QFETCH(frmFileDialog::Mode, mode);
    QFETCH(QString, title);
    const TestFolder folder;
    const ShownDialog shown(mode, folder.path(), latin1("a.txt"));
    QCOMPARE(shown.dialog.windowTitle(), title);
    QVERIFY(shown.dialog.isModal());
    QStringList labels;
    for (const QLabel *label : shown.dialog.findChildren<QLabel *>())
        labels += label->text();
    QCOMPARE(labels, QStringList({ latin1("File Name:"), latin1("File Type:"), latin1("Char code:") }));
    QVERIFY(shown.button("OK") && shown.button("Cancel"));
    QCOMPARE(shown.name()->text(), latin1("a.txt"));
    QCOMPARE(shown.returnCodes()->isVisible(), mode != frmFileDialog::Open);
}

void FileDialogTest::sizes_data()
{
    QTest::addColumn<bool>("vga");
    QTest::addColumn<QSize>("list");
    QTest::addColumn<QSize>("button");
    QTest::addColumn<QList<int>>("heights"); // folder, type, character code, line end
    QTest::newRow("small") << false << QSize(210, 130) << QSize(60, 17) << QList<int>{ 20, 18, 18, 18 };
    QTest::newRow("VGA") << true << QSize(380, 210) << QSize(120, 28) << QList<int>{ 28, 31, 31, 30 };
}

void FileDialogTest::sizes()
{
    QFETCH(bool, vga);
    QFETCH(QSize, list);
    QFETCH(QSize, button);
    QFETCH(QList<int>, heights);
    setScreenClass(vga);
    const TestFolder folder;
    const ShownDialog shown(frmFileDialog::SaveAs, folder.path(), {});
    QCOMPARE(shown.list->size(), list);
    QCOMPARE(shown.button("OK")->size(), button);
    QCOMPARE(shown.button("Cancel")->size(), button);
    QCOMPARE(QList<int>({ shown.folders()->height(), shown.types()->height(), shown.charCodes()->height(),
                 shown.returnCodes()->height() }),
        heights);
    QCOMPARE(shown.list->mapTo(&shown.dialog, QPoint()).x(), 7);
    const int right = shown.button("Cancel")->mapTo(&shown.dialog, QPoint(button.width(), 0)).x();
    QCOMPARE(right, shown.dialog.width() - 7);
    const QPoint ok = shown.button("OK")->mapTo(&shown.dialog, QPoint(button.width(), 0));
    QVERIFY(ok.x() < right);
}

void FileDialogTest::choices()
{
    const TestFolder folder;
    const ShownDialog shown(frmFileDialog::SaveAs, folder.path(), {});
    const auto rows = [](const QComboBox *box) {
        QStringList result;
        for (int row = 0; row < box->count(); ++row)
            result += box->itemText(row);
        return result.join(u'|');
    };
    QCOMPARE(rows(shown.types()),
        latin1("text files (*.txt;..)|Qtopia files (*.conf;..)|HTML files (*.htm;js;..)|Web files "
               "(*.cgi;pl;..)|C language (*.h;c;cpp;..)|Java language (*.java;..)|all files (*.*)"));
    QCOMPARE(rows(shown.charCodes()), latin1("Auto|Shift-JIS|EUC|JIS|UTF-8"));
    QCOMPARE(rows(shown.returnCodes()), latin1("Auto|CR+LF|LF|CR"));
    QCOMPARE(shown.charCodes()->currentIndex(), 0);
    QCOMPARE(shown.returnCodes()->currentIndex(), 0);
    for (const QComboBox *box : { shown.types(), shown.charCodes(), shown.returnCodes() })
        QVERIFY(!box->isEditable());
}

void FileDialogTest::startTypes_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("filter");
    const auto row = [](const char *name, int index, const char *filter) {
        QTest::newRow(name) << index << latin1(filter);
    };
    row("Readme.TXT", 0, "*.txt;*.ini;*.log");
    row(".txt", 0, "*.txt;*.ini;*.log");
    row("a.b.log", 0, "*.txt;*.ini;*.log");
    row("x.types", 1, "*.conf;*.desktop;*.sh;*.types");
    row("x.htm", 2, "*.htm;*.js;*.css");
    row("page.html", 6, "*");
    row("x.asp", 3, "*.cgi;*.pl;*.php;*.asp;*.cfm");
    row("x.pro", 4, "*.h;*.c;*.cpp;*.cs;*.pro");
    row("X.JSP", 5, "*.java;*.jsp");
    row("README", 6, "*");
    row("a.", 6, "*");
    row("a.tx", 6, "*");
    row("a.unknown", 6, "*");
}

void FileDialogTest::startTypes()
{
    QFETCH(int, row);
    QFETCH(QString, filter);
    const TestFolder folder;
    const ShownDialog shown(frmFileDialog::Open, folder.path(), latin1(QTest::currentDataTag()));
    QCOMPARE(shown.types()->currentIndex(), row);
    QCOMPARE(shown.list->nameFilter, filter);
    QCOMPARE(shown.name()->text(), latin1(QTest::currentDataTag()));
}

void FileDialogTest::pickedTypes_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("filter");
    QTest::newRow("text") << 0 << latin1("*.txt;*.ini;*.log");
    QTest::newRow("platform") << 1 << latin1("*.conf;*.desktop;*.sh;*.types");
    QTest::newRow("HTML") << 2 << latin1("*.htm;*.html;*.js;*.css");
    QTest::newRow("web") << 3 << latin1("*.cgi;*.pl;*.php;*.asp;*.cfm");
    QTest::newRow("C") << 4 << latin1("*.h;*.c;*.cpp;*.cs;*.pro");
    QTest::newRow("Java") << 5 << latin1("*.java;*.jsp");
    QTest::newRow("all") << 6 << latin1("*");
    QTest::newRow("no row before") << -1 << latin1("before");
    QTest::newRow("no row after") << 7 << latin1("before");
}

void FileDialogTest::pickedTypes()
{
    QFETCH(int, row);
    QFETCH(QString, filter);
    const TestFolder folder;
    ShownDialog shown(frmFileDialog::Open, folder.path(), {});
    shown.list->nameFilter = latin1("before");
    const QSignalSpy refreshed(shown.list, &ctlFileListView::listRefreshed);
    shown.dialog.slotCmbFilActivated(row);
    QCOMPARE(shown.list->nameFilter, filter);
    QCOMPARE(refreshed.size(), 1);
    QCOMPARE(shown.list->currentPath, folder.path());
}

void FileDialogTest::pickedHtmlShowsMore()
{
    const TestFolder folder;
    folder.file("x.htm");
    folder.file("y.html");
    folder.file("z.txt");
    const ShownDialog shown(frmFileDialog::Open, folder.path(), latin1("x.htm"));
    QCOMPARE(shown.names(), QStringList({ latin1("x.htm") }));
    shown.pick(shown.types(), 2);
    QCOMPARE(shown.names(), QStringList({ latin1("x.htm"), latin1("y.html") }));
    QCOMPARE(shown.name()->text(), latin1("x.htm"));
}

void FileDialogTest::fillsAfterAMoment()
{
    const TestFolder folder;
    folder.file("a.txt");
    frmFileDialog dialog(nullptr, frmFileDialog::Open, folder.path(), latin1("x.txt"), inOneGo());
    auto *list = dialog.findChild<ctlFileListView *>();
    dialog.show();
    QCOMPARE(list->rows().rowCount(), 0);
    QVERIFY(list->currentPath.isEmpty());
    dialog.slotCmdEtcRefresh();
    dialog.slotCmbFilActivated(0);
    dialog.slotCmdEtcUpperDir();
    QVERIFY(list->currentPath.isEmpty());
    QTRY_COMPARE(list->rows().rowCount(), 1);
    QCOMPARE(list->currentPath, folder.path());
}

void FileDialogTest::firstFocusIsTheList()
{
    const TestFolder folder;
    folder.file("a.txt");
    const ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("x.txt"));
    QTRY_COMPARE(QApplication::focusWidget(), shown.list);
}

void FileDialogTest::tabOrder()
{
    const TestFolder folder;
    ShownDialog shown(frmFileDialog::SaveAs, folder.path(), {});
    const QList<QWidget *> expected{ shown.list, shown.name(), shown.types(), shown.charCodes(),
        shown.returnCodes(), shown.button("OK"), shown.button("Cancel"), shown.folders()->lineEdit(),
        shown.tool("Up"), shown.tool("Refresh"), shown.tool("Favorites") };
    QTRY_COMPARE(QApplication::focusWidget(), shown.list);
    for (QWidget *widget : expected) {
        QWidget *focus = QApplication::focusWidget();
        QVERIFY2(focus == widget || focus->focusProxy() == widget || widget->parentWidget() == focus,
            focus->metaObject()->className());
        QTest::keyClick(focus, Qt::Key_Tab);
    }
    QCOMPARE(QApplication::focusWidget(), shown.list);
}

void FileDialogTest::controlsHaveNames()
{
    const TestFolder folder;
    const ShownDialog shown(frmFileDialog::SaveAs, folder.path(), {});
    for (const char *name : { "Up", "Refresh", "Favorites" }) {
        QVERIFY2(shown.tool(name), name);
        QCOMPARE(shown.tool(name)->toolTip(), latin1(name));
    }
    QVERIFY(!shown.list->accessibleName().isEmpty());
    QVERIFY(!shown.folders()->accessibleName().isEmpty());
    QVERIFY(!shown.returnCodes()->accessibleName().isEmpty());
    QList<QWidget *> buddies;
    for (const QLabel *label : shown.dialog.findChildren<QLabel *>())
        buddies += label->buddy();
    QCOMPARE(buddies, QList<QWidget *>({ shown.name(), shown.types(), shown.charCodes() }));
}

REGISTER_TEST(runFormTest<FileDialogTest>)
#include "frmfiledialog_test.moc"
