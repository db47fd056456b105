#include "filedialog/ctlfilelistview.h"
#include "filedialog/frmfiledialog.h"
#include "tests/filedialog/boxanswer.h"
#include "tests/filedialog/formtest.h"
#include "tests/filedialog/testfolder.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QToolButton>

namespace {

using Item = ctlFileListViewItem;

QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

/// A dialog that is shown and filled, and its controls.
struct ShownDialog {
    ShownDialog(frmFileDialog::Mode mode, const QString &folder, const QString &name)
        : dialog(nullptr, mode, folder, name)
        , list(dialog.findChild<ctlFileListView *>())
        , combos(dialog.findChildren<QComboBox *>())
    {
        dialog.show();
        dialog.activateWindow();
        dialog.initTimer();
    }

    QComboBox *combo(const char *lastRow) const
    {
        for (QComboBox *box : combos) {
            if (box->count() > 0 && box->itemText(box->count() - 1) == latin1(lastRow))
                return box;
        }
        return nullptr;
    }
    QComboBox *types() const { return combo("all files (*.*)"); }
    QComboBox *charCodes() const { return combo("UTF-8"); }
    QComboBox *returnCodes() const { return combo("CR"); }
    QComboBox *folders() const
    {
        for (QComboBox *box : combos) {
            if (box->isEditable())
                return box;
        }
        return nullptr;
    }
    QLineEdit *name() const
    {
        for (QLineEdit *edit : dialog.findChildren<QLineEdit *>()) {
            if (!qobject_cast<QComboBox *>(edit->parentWidget()))
                return edit;
        }
        return nullptr;
    }
    QPushButton *button(const char *text) const
    {
        for (QPushButton *push : dialog.findChildren<QPushButton *>()) {
            if (push->text() == latin1(text))
                return push;
        }
        return nullptr;
    }
    QToolButton *tool(const char *accessibleName) const
    {
        for (QToolButton *push : dialog.findChildren<QToolButton *>()) {
            if (push->accessibleName() == latin1(accessibleName))
                return push;
        }
        return nullptr;
    }
    QStringList names() const
    {
        QStringList result;
        for (int row = 0; row < list->topLevelItemCount(); ++row)
            result += list->topLevelItem(row)->text(Item::NameColumn);
        return result;
    }
    void select(const QString &file) const
    {
        list->setCurrentItem(list->findItems(file, Qt::MatchExactly).value(0));
    }
    void pick(QComboBox *box, int row) const
    {
        box->setCurrentIndex(row);
        emit box->activated(row);
    }
    bool isAccepted() const { return !dialog.isVisible() && dialog.result() == QDialog::Accepted; }

    frmFileDialog dialog;
    ctlFileListView *list;
    QList<QComboBox *> combos;
};

} // namespace

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

    void codes_data();
    void codes();
    void emptyName();
    void forbiddenNames_data();
    void forbiddenNames();
    void usableNames_data();
    void usableNames();
    void missingFile();
    void replaceRefused();
    void replaceRefusedByEscape();
    void replaceConfirmed();
    void newNameAsksNothing();
    void folderNamedAsTheFile();
    void namesAreShownAsTheyAre();
    void acceptBeforeTheListIsFilled();
    void missingStartFolder();
    void undecodableNames();

    void selectionFillsTheName();
    void tapOnTheSelectedFileAccepts();
    void openedFileIsTheOneMeant();
    void openingARefusedFileKeepsTheDialog();
    void returnInTheListOpensOnly();
    void returnInTheFolderComboDoesNothing();
    void returnInTheNamePressesOk();
    void escapeRejects();
    void noCompletion();
    void showsTheFolder();
    void upAndRefresh();
    void favourites();
    void emptyFavourites();
    void walksFromHomeToACardAndBack();
};

void FileDialogTest::init()
{
    failOnWarnings();
    setScreenClass(false);
    QFile::remove(
        QStandardPaths::writableLocation(QStandardPaths::ConfigLocation) + QStringLiteral("/corvex.conf"));
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
    frmFileDialog dialog(nullptr, frmFileDialog::Open, folder.path(), latin1("x.txt"));
    auto *list = dialog.findChild<ctlFileListView *>();
    dialog.show();
    QCOMPARE(list->topLevelItemCount(), 0);
    QVERIFY(list->currentPath.isEmpty());
    dialog.slotCmdEtcRefresh();
    dialog.slotCmbFilActivated(0);
    dialog.slotCmdEtcUpperDir();
    QVERIFY(list->currentPath.isEmpty());
    QTRY_COMPARE(list->topLevelItemCount(), 1);
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

void FileDialogTest::codes_data()
{
    QTest::addColumn<int>("charRow");
    QTest::addColumn<int>("charCode");
    QTest::addColumn<int>("returnRow");
    QTest::addColumn<int>("returnCode");
    QTest::newRow("Auto, Auto") << 0 << 0 << 0 << 0;
    QTest::newRow("Shift-JIS, CR+LF") << 1 << 3 << 1 << 2;
    QTest::newRow("EUC, LF") << 2 << 4 << 2 << 3;
    QTest::newRow("JIS, CR") << 3 << 5 << 3 << 1;
    QTest::newRow("UTF-8, Auto") << 4 << 2 << 0 << 0;
}

void FileDialogTest::codes()
{
    QFETCH(int, charRow);
    QFETCH(int, returnRow);
    const TestFolder folder;
    ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("new.txt"));
    shown.pick(shown.charCodes(), charRow);
    shown.pick(shown.returnCodes(), returnRow);
    shown.dialog.accept();
    QVERIFY(shown.isAccepted());
    QTEST(int(shown.dialog.charCode), "charCode");
    QTEST(int(shown.dialog.returnCode), "returnCode");
    QCOMPARE(shown.dialog.dirPath, folder.path());
    QCOMPARE(shown.dialog.fileName, latin1("new.txt"));

    folder.file("new.txt");
    ShownDialog open(frmFileDialog::Open, folder.path(), latin1("new.txt"));
    open.pick(open.charCodes(), charRow);
    open.dialog.accept();
    QVERIFY(open.isAccepted());
    QTEST(int(open.dialog.charCode), "charCode");
    QCOMPARE(int(open.dialog.returnCode), 0);
}

void FileDialogTest::emptyName()
{
    const TestFolder folder;
    folder.file("a.txt");
    for (const frmFileDialog::Mode mode : { frmFileDialog::Open, frmFileDialog::SaveAs }) {
        const ShownDialog shown(mode, folder.path(), {});
        const BoxAnswer answer(latin1("OK"));
        QTest::mouseClick(shown.button("OK"), Qt::LeftButton);
        QCOMPARE(answer.count, 1);
        QCOMPARE(answer.icon, QMessageBox::Critical);
        QCOMPARE(answer.title, latin1("Error"));
        QCOMPARE(answer.text, latin1("Enter the file name."));
        QCOMPARE(answer.buttons.size(), 1);
        QVERIFY(shown.dialog.isVisible());
        QCOMPARE(shown.list->currentPath, folder.path());
    }
}

void FileDialogTest::forbiddenNames_data()
{
    QTest::addColumn<QString>("name");
    for (const char forbidden : QByteArray("/\\:,;*?\"<>|"))
        QTest::addRow("a%cb.txt", forbidden) << QStringLiteral("a%1b.txt").arg(QLatin1Char(forbidden));
    QTest::newRow("alone") << latin1("*");
    QTest::newRow("first") << latin1("?a");
    QTest::newRow("last") << latin1("a|");
}

void FileDialogTest::forbiddenNames()
{
    QFETCH(QString, name);
    const TestFolder folder;
    for (const frmFileDialog::Mode mode : { frmFileDialog::Open, frmFileDialog::SaveAs }) {
        ShownDialog shown(mode, folder.path(), name);
        const BoxAnswer answer(latin1("OK"));
        shown.dialog.accept();
        QCOMPARE(answer.count, 1);
        QCOMPARE(answer.icon, QMessageBox::Critical);
        QCOMPARE(answer.title, latin1("Error"));
        QCOMPARE(answer.text,
            latin1("A file name cannot contain any of the following characters;\n"
                   "\\ / : , ; * ? \" < > |"));
        QVERIFY(shown.dialog.isVisible());
        QCOMPARE(shown.name()->text(), name);
    }
}

void FileDialogTest::usableNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("dots") << latin1("a.b.txt");
    QTest::newRow("no extension") << latin1("README");
    QTest::newRow("hidden") << latin1(".profile");
    QTest::newRow("leading blank") << latin1(" a.txt");
    QTest::newRow("trailing blank") << latin1("a.txt ");
    QTest::newRow("blank alone") << latin1(" ");
    QTest::newRow("full width") << QStringLiteral(u"\u30E1\u30E2\uFF1A\uFF0A.txt");
    QTest::newRow("percent one") << latin1("%1.txt");
    QTest::newRow("mark-up") << latin1("a&b'c'.txt");
    QTest::newRow("beyond the basic plane") << QStringLiteral(u"\U0001F600.txt");
    QTest::newRow("255 bytes") << QString(255, u'n');
    QTest::newRow("longer than any file's") << QString(300, u'n');
}

void FileDialogTest::usableNames()
{
    QFETCH(QString, name);
    const TestFolder folder;
    ShownDialog shown(frmFileDialog::SaveAs, folder.path(), {});
    const BoxAnswer answer(latin1("OK"));
    shown.name()->setText(name);
    shown.dialog.accept();
    QCOMPARE(answer.count, 0);
    QVERIFY(shown.isAccepted());
    QCOMPARE(shown.dialog.fileName, name);
}

void FileDialogTest::missingFile()
{
    const TestFolder folder;
    ShownDialog shown(frmFileDialog::Open, folder.path(), latin1("%1.txt"));
    const BoxAnswer answer(latin1("OK"));
    shown.dialog.accept();
    QCOMPARE(answer.count, 1);
    QCOMPARE(answer.icon, QMessageBox::Critical);
    QCOMPARE(answer.title, latin1("error"));
    QCOMPARE(answer.text, latin1("%1.txt\nThis file does not exists."));
    QVERIFY(shown.dialog.isVisible());
    folder.link("nowhere", "dangling");
    shown.name()->setText(latin1("dangling"));
    shown.dialog.accept();
    QCOMPARE(answer.count, 2);
}

void FileDialogTest::replaceRefused()
{
    const TestFolder folder;
    folder.file("notes.txt");
    ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("notes.txt"));
    const BoxAnswer answer(latin1("No"));
    shown.dialog.accept();
    QCOMPARE(answer.count, 1);
    QCOMPARE(answer.icon, QMessageBox::Information);
    QCOMPARE(answer.title, latin1("Replace confirm"));
    QCOMPARE(answer.text, latin1("notes.txt\nThis file already exists.\nReplace existing file?"));
    QCOMPARE(answer.buttons, QStringList({ latin1("Yes"), latin1("No") }));
    QCOMPARE(answer.defaultButton, latin1("Yes"));
    QVERIFY(shown.dialog.isVisible());
    QCOMPARE(shown.name()->text(), latin1("notes.txt"));
}

void FileDialogTest::replaceRefusedByEscape()
{
    const TestFolder folder;
    folder.file("notes.txt");
    ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("notes.txt"));
    const BoxAnswer answer(BoxAnswer::escape());
    shown.dialog.accept();
    QCOMPARE(answer.count, 1);
    QVERIFY(shown.dialog.isVisible());
}

void FileDialogTest::replaceConfirmed()
{
    const TestFolder folder;
    folder.file("notes.txt", 10);
    ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("notes.txt"));
    const BoxAnswer answer(latin1("Yes"));
    shown.dialog.accept();
    QCOMPARE(answer.count, 1);
    QVERIFY(shown.isAccepted());
    QCOMPARE(QFile(folder.path("notes.txt")).size(), 10);
}

void FileDialogTest::newNameAsksNothing()
{
    const TestFolder folder;
    folder.file("notes.txt");
    ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("Notes.txt"));
    const BoxAnswer answer(latin1("No"));
    shown.dialog.accept();
    QCOMPARE(answer.count, 0);
    QVERIFY(shown.isAccepted());
}

/// It cannot be replaced, so nothing is asked: reading or writing the file refuses it.
void FileDialogTest::folderNamedAsTheFile()
{
    const TestFolder folder;
    folder.folder("notes.txt");
    for (const frmFileDialog::Mode mode : { frmFileDialog::Open, frmFileDialog::SaveAs }) {
        ShownDialog shown(mode, folder.path(), latin1("notes.txt"));
        const BoxAnswer answer(latin1("No"));
        shown.dialog.accept();
        QCOMPARE(answer.count, 0);
        QVERIFY(shown.isAccepted());
        QCOMPARE(shown.dialog.fileName, latin1("notes.txt"));
    }
}

void FileDialogTest::namesAreShownAsTheyAre()
{
    const TestFolder folder;
    ShownDialog shown(frmFileDialog::Open, folder.path(), latin1("%2 & %1\n%3"));
    const BoxAnswer answer(latin1("OK"));
    shown.dialog.accept();
    QCOMPARE(answer.text, latin1("%2 & %1\n%3\nThis file does not exists."));
}

void FileDialogTest::acceptBeforeTheListIsFilled()
{
    const TestFolder folder;
    folder.file("a.txt");
    frmFileDialog dialog(nullptr, frmFileDialog::Open, folder.path(), latin1("a.txt"));
    dialog.show();
    dialog.accept();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.dirPath, folder.path());
}

void FileDialogTest::missingStartFolder()
{
    const TestFolder folder;
    ShownDialog shown(frmFileDialog::SaveAs, folder.path("missing/"), {});
    QCOMPARE(shown.names(), QStringList());
    QCOMPARE(shown.folders()->currentText(), folder.path("missing"));
    shown.name()->setText(latin1("new.txt"));
    shown.dialog.accept();
    QVERIFY(shown.isAccepted());
    QCOMPARE(shown.dialog.dirPath, folder.path("missing/"));
}

void FileDialogTest::undecodableNames()
{
    const TestFolder folder;
    folder.folder("\x83\x41");
    folder.file("\x83\x41/\x8A\xBF.txt", 5);
    ShownDialog shown(frmFileDialog::Open, folder.path("\x83\x41/"), latin1(".txt"));
    QTest::keyClick(shown.list, Qt::Key_Down);
    shown.dialog.accept();
    QVERIFY(shown.isAccepted());
    const QByteArray file = FileName::toBytes(shown.dialog.dirPath + shown.dialog.fileName);
    QVERIFY(file.endsWith("/\x83\x41/\x8A\xBF.txt"));
    QCOMPARE(::access(file.constData(), F_OK), 0);

    ShownDialog save(frmFileDialog::SaveAs, shown.dialog.dirPath, shown.dialog.fileName);
    const BoxAnswer answer(latin1("Yes"));
    save.dialog.accept();
    QCOMPARE(answer.count, 1);
    QCOMPARE(
        answer.text, QStringLiteral(u"\uFFFD\uFFFD.txt\nThis file already exists.\nReplace existing file?"));
    QCOMPARE(save.dialog.fileName, QStringLiteral(u"\xDC8A\xDCBF.txt"));
}

void FileDialogTest::selectionFillsTheName()
{
    const TestFolder folder;
    folder.folder("sub");
    folder.file("a.txt");
    const ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("typed.txt"));
    shown.select(latin1("sub"));
    QCOMPARE(shown.name()->text(), latin1("typed.txt"));
    shown.select(latin1("a.txt"));
    QCOMPARE(shown.name()->text(), latin1("a.txt"));
}

void FileDialogTest::tapOnTheSelectedFileAccepts()
{
    const TestFolder folder;
    folder.file("a.txt");
    const ShownDialog shown(frmFileDialog::Open, folder.path(), latin1(".txt"));
    const QPoint row = shown.list->visualItemRect(shown.list->topLevelItem(0)).center();
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, {}, row);
    QVERIFY(shown.dialog.isVisible());
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, {}, row);
    QVERIFY(shown.isAccepted());
    QCOMPARE(shown.dialog.fileName, latin1("a.txt"));
}

void FileDialogTest::openedFileIsTheOneMeant()
{
    const TestFolder folder;
    folder.file("a.txt");
    const ShownDialog shown(frmFileDialog::Open, folder.path(), latin1(".txt"));
    shown.select(latin1("a.txt"));
    shown.name()->setText(latin1("other.txt"));
    QTest::keyClick(shown.list, Qt::Key_Return);
    QVERIFY(shown.isAccepted());
    QCOMPARE(shown.dialog.fileName, latin1("a.txt"));
}

void FileDialogTest::openingARefusedFileKeepsTheDialog()
{
    const TestFolder folder;
    folder.file("a;b.txt");
    folder.file("gone.txt");
    const ShownDialog shown(frmFileDialog::Open, folder.path(), latin1(".txt"));
    const BoxAnswer answer(latin1("OK"));
    shown.select(latin1("a;b.txt"));
    QTest::keyClick(shown.list, Qt::Key_Return);
    QCOMPARE(answer.title, latin1("Error"));
    folder.remove("gone.txt");
    shown.select(latin1("gone.txt"));
    QTest::keyClick(shown.list, Qt::Key_Return);
    QCOMPARE(answer.title, latin1("error"));
    QCOMPARE(answer.count, 2);
    QVERIFY(shown.dialog.isVisible());
}

void FileDialogTest::returnInTheListOpensOnly()
{
    const TestFolder folder;
    folder.folder("sub");
    folder.folder("sub/inner");
    const ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("new.txt"));
    const BoxAnswer answer(latin1("OK"));
    QTest::keyClick(shown.list, Qt::Key_Return); // nothing selected
    QVERIFY(shown.dialog.isVisible());
    QTest::keyClick(shown.list, Qt::Key_Down);
    QTest::keyClick(shown.list, Qt::Key_Return);
    QCOMPARE(shown.list->currentPath, folder.path("sub/"));
    QVERIFY(shown.dialog.isVisible());
    QCOMPARE(answer.count, 0);
}

void FileDialogTest::returnInTheFolderComboDoesNothing()
{
    const TestFolder folder;
    ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("new.txt"));
    QLineEdit *edit = shown.folders()->lineEdit();
    edit->setFocus();
    edit->setText(latin1("/typed"));
    for (const Qt::Key key : { Qt::Key_Return, Qt::Key_Enter })
        QTest::keyClick(edit, key);
    QVERIFY(shown.dialog.isVisible());
    QCOMPARE(shown.list->currentPath, folder.path());
    QCOMPARE(shown.folders()->count(), 0);
    shown.dialog.accept();
    QCOMPARE(shown.dialog.dirPath, folder.path());
}

void FileDialogTest::returnInTheNamePressesOk()
{
    const TestFolder folder;
    const ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("new.txt"));
    shown.name()->setFocus();
    QTest::keyClick(shown.name(), Qt::Key_Return);
    QVERIFY(shown.isAccepted());
}

void FileDialogTest::escapeRejects()
{
    const TestFolder folder;
    const ShownDialog byKey(frmFileDialog::SaveAs, folder.path(), latin1("new.txt"));
    QTest::keyClick(byKey.list, Qt::Key_Escape);
    QVERIFY(!byKey.dialog.isVisible());
    QCOMPARE(byKey.dialog.result(), int(QDialog::Rejected));
    QCOMPARE(byKey.dialog.dirPath, folder.path());
    QCOMPARE(byKey.dialog.fileName, latin1("new.txt"));
    const ShownDialog byButton(frmFileDialog::SaveAs, folder.path(), latin1("new.txt"));
    QTest::mouseClick(byButton.button("Cancel"), Qt::LeftButton);
    QVERIFY(!byButton.dialog.isVisible());
    QCOMPARE(byButton.dialog.result(), int(QDialog::Rejected));
}

void FileDialogTest::noCompletion()
{
    const TestFolder folder;
    folder.file("notes.txt");
    const ShownDialog shown(frmFileDialog::SaveAs, folder.path(), {});
    QCOMPARE(shown.name()->completer(), nullptr);
    QCOMPARE(shown.folders()->completer(), nullptr);
    shown.name()->setFocus();
    QTest::keyClicks(shown.name(), latin1("no"));
    QCOMPARE(shown.name()->text(), latin1("no"));
    QCOMPARE(QApplication::activePopupWidget(), nullptr);
}

void FileDialogTest::showsTheFolder()
{
    const TestFolder folder;
    folder.folder("sub");
    ShownDialog shown(frmFileDialog::Open, folder.path("sub/"), {});
    QCOMPARE(shown.folders()->currentText(), folder.path("sub"));
    shown.dialog.slotLvListRefreshed(latin1("/"));
    QCOMPARE(shown.folders()->currentText(), latin1("/"));
}

void FileDialogTest::upAndRefresh()
{
    const TestFolder folder;
    folder.folder("sub");
    const ShownDialog shown(frmFileDialog::Open, folder.path("sub/"), latin1("typed"));
    folder.file("sub/late.txt");
    QTest::mouseClick(shown.tool("Refresh"), Qt::LeftButton);
    QCOMPARE(shown.names(), QStringList({ latin1("late.txt") }));
    QTest::mouseClick(shown.tool("Up"), Qt::LeftButton);
    QCOMPARE(shown.list->currentPath, folder.path());
    QCOMPARE(shown.list->selectedItem()->fileInfo().name, latin1("sub"));
    QCOMPARE(shown.name()->text(), latin1("typed"));
}

void FileDialogTest::favourites()
{
    const TestFolder folder;
    folder.folder("fav");
    folder.file("fav/inside.txt");
    QFile settings(
        QStandardPaths::writableLocation(QStandardPaths::ConfigLocation) + QStringLiteral("/corvex.conf"));
    QVERIFY(settings.open(QFile::WriteOnly));
    settings.write("[favorites]\nItem0 = /\nItem1 = " + folder.path("fav").toUtf8()
        + "\nItem2 = /missing/card\nItem3 = " + folder.path("fav/").toUtf8() + "\n");
    settings.close();
    ShownDialog shown(frmFileDialog::Open, folder.path(), latin1("x.txt"));
    auto *menu = shown.tool("Favorites")->menu();
    QCOMPARE(menu->actions().size(), 4);
    QCOMPARE(shown.tool("Favorites")->popupMode(), QToolButton::InstantPopup);
    shown.dialog.slotCmdMnuFavor(7);
    QCOMPARE(shown.list->currentPath, folder.path());
    menu->actions().at(1)->trigger();
    QCOMPARE(shown.list->currentPath, folder.path("fav/"));
    QCOMPARE(shown.names(), QStringList({ latin1("inside.txt") }));
    menu->actions().at(0)->trigger();
    QCOMPARE(shown.list->currentPath, latin1("/"));
    menu->actions().at(2)->trigger();
    QCOMPARE(shown.list->currentPath, latin1("/missing/card/"));
    QCOMPARE(shown.names(), QStringList());
    menu->actions().at(3)->trigger();
    QCOMPARE(shown.list->currentPath, folder.path("fav/"));
    QCOMPARE(shown.name()->text(), latin1("x.txt"));
    QCOMPARE(shown.types()->currentIndex(), 0);
}

void FileDialogTest::emptyFavourites()
{
    const TestFolder folder;
    const ShownDialog shown(frmFileDialog::Open, folder.path(), {});
    QVERIFY(shown.tool("Favorites")->menu()->actions().isEmpty());
    // The click returns when the menu was closed.
    bool wasOpen = false;
    const auto close = [&wasOpen] {
        wasOpen = qobject_cast<QMenu *>(QApplication::activePopupWidget()) != nullptr;
        if (wasOpen)
            QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
    };
    QMetaObject::invokeMethod(qApp, close, Qt::QueuedConnection);
    QTest::mouseClick(shown.tool("Favorites"), Qt::LeftButton);
    QVERIFY(wasOpen);
    QVERIFY(shown.dialog.isVisible());
}

/// Home, up to the root, down to a card, and back, with keys alone.
void FileDialogTest::walksFromHomeToACardAndBack()
{
    const TestFolder root;
    for (const char *name : { "home", "home/me", "mnt", "mnt/card" })
        root.folder(name);
    root.file("mnt/card/photo.txt");
    const ShownDialog shown(frmFileDialog::Open, root.path("home/me/"), latin1(".txt"));
    const auto press = [](std::initializer_list<Qt::Key> keys) {
        for (const Qt::Key key : keys)
            QTest::keyClick(QApplication::focusWidget(), key);
    };
    QTRY_COMPARE(QApplication::focusWidget(), shown.list);
    press({ Qt::Key_Backspace, Qt::Key_Backspace });
    QCOMPARE(shown.list->currentPath, root.path());
    press({ Qt::Key_Down, Qt::Key_Return, Qt::Key_Down, Qt::Key_Right });
    QCOMPARE(shown.list->currentPath, root.path("mnt/card/"));
    while (shown.list->currentPath != u"/")
        press({ Qt::Key_Left });
    for (const QString &name : root.path("home/me").split(u'/', Qt::SkipEmptyParts)) {
        QTest::keyClick(shown.list, Qt::Key_Home);
        while (shown.list->selectedItem()->fileInfo().name != name) {
            const auto *before = shown.list->selectedItem();
            press({ Qt::Key_Down });
            QVERIFY(shown.list->selectedItem() != before);
        }
        press({ Qt::Key_Return });
    }
    QCOMPARE(shown.list->currentPath, root.path("home/me/"));
}

int main(int argc, char **argv)
{
    return runFormTest<FileDialogTest>(argc, argv);
}
#include "frmfiledialog_test.moc"
