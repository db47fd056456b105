#include "filedialog/documentsfolder.h"
#include "tests/filedialog/boxanswer.h"
#include "tests/filedialog/showndialog.h"
#include "tests/filedialog/testfolder.h"
#include "tests/testprogram.h"

#include <QMenu>
#include <QScreen>

namespace {

QString noneOfType()
{
    return latin1("There is no file of this type here. For others choose a File Type below.");
}

} // namespace

/// What taps, keys, buttons and favourites do: a file is taken, another folder is shown, the dialog goes
/// away.
class FileDialogInputTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void selectionFillsTheName();
    void tapOnTheSelectedFileAccepts();
    void openedFileIsTheOneMeant();
    void openingARefusedFileKeepsTheDialog();
    void returnInTheListOpensOnly();
    void returnLeadsFromTheListToTheNameToSave();
    void returnInAListToOpenStays();
    void returnInTheFolderComboDoesNothing();
    void returnInTheNamePressesOk();
    void typingInTheListNamesTheFile_data();
    void typingInTheListNamesTheFile();
    void typingInTheListFindsTheFileToOpen();
    void commandsInTheListAreNoName();
    void listGrowsWithTheDialog_data();
    void listGrowsWithTheDialog();
    void folderThatASaveMakesIsTold();
    void fileInTheFoldersPlaceIsTold_data();
    void fileInTheFoldersPlaceIsTold();
    void folderWithoutFilesOfTheTypeSaysSo();
    void documentsAreAtHome_data();
    void documentsAreAtHome();
    void escapeRejects();
    void noCompletion();
    void showsTheFolder();
    void upAndRefresh();
    void favourites();
    void favouritesStayOnTheScreen();
    void emptyFavourites();
    void walksFromHomeToACardAndBack();
};

void FileDialogInputTest::init()
{
    resetDialogs();
}

void FileDialogInputTest::selectionFillsTheName()
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

void FileDialogInputTest::tapOnTheSelectedFileAccepts()
{
    const TestFolder folder;
    folder.file("a.txt");
    const ShownDialog shown(frmFileDialog::Open, folder.path(), latin1(".txt"));
    const QPoint row = shown.list->visualRect(shown.list->rows().index(0, 0)).center();
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, {}, row);
    QVERIFY(shown.dialog.isVisible());
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, {}, row);
    QVERIFY(shown.isAccepted());
    QCOMPARE(shown.dialog.fileName, latin1("a.txt"));
}

void FileDialogInputTest::openedFileIsTheOneMeant()
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

void FileDialogInputTest::openingARefusedFileKeepsTheDialog()
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

void FileDialogInputTest::returnInTheListOpensOnly()
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

/// Nothing is saved before its user has seen where the keys are.
void FileDialogInputTest::returnLeadsFromTheListToTheNameToSave()
{
    const TestFolder folder;
    folder.file("a.txt");
    const ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("new.txt"));
    QTest::keyClick(shown.list, Qt::Key_Return);
    QVERIFY(shown.dialog.isVisible());
    QCOMPARE(shown.dialog.focusWidget(), shown.name());
    QCOMPARE(shown.name()->text(), latin1("new.txt"));
    QCOMPARE(shown.name()->selectedText(), latin1("new"));
    QTest::keyClick(shown.name(), Qt::Key_Return);
    QVERIFY(shown.isAccepted());
    QCOMPARE(shown.dialog.fileName, latin1("new.txt"));
}

void FileDialogInputTest::returnInAListToOpenStays()
{
    const TestFolder folder;
    folder.file("a.txt");
    const ShownDialog shown(frmFileDialog::Open, folder.path(), latin1(".txt"));
    QTest::keyClick(shown.list, Qt::Key_Return);
    QVERIFY(shown.dialog.isVisible());
    QCOMPARE(shown.dialog.focusWidget(), shown.list);
}

void FileDialogInputTest::typingInTheListNamesTheFile_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("typed");
    const auto row = [](const char *name, const char *start, const char *typed) {
        QTest::newRow(name) << latin1(start) << latin1(typed);
    };
    row("a new document", ".txt", "memo.txt");
    row("another name", "mine.txt", "memo.txt");
    row("two endings", "a.tar.gz", "memo.gz");
    row("no ending", "mine", "memo");
    row("no name", "", "memo");
}

/// A row that begins so would be overwritten by the next two Returns.
void FileDialogInputTest::typingInTheListNamesTheFile()
{
    QFETCH(QString, start);
    QFETCH(QString, typed);
    const TestFolder folder;
    folder.file("mine.txt");
    const ShownDialog shown(frmFileDialog::SaveAs, folder.path(), start);
    QCOMPARE(shown.dialog.focusWidget(), shown.list);
    QTest::keyClick(shown.list, 'm');
    QCOMPARE(shown.dialog.focusWidget(), shown.name());
    QTest::keyClicks(shown.name(), latin1("emo"));
    QCOMPARE(shown.name()->text(), typed);
    QVERIFY(!shown.list->selectedItem());
    QTest::keyClick(shown.name(), Qt::Key_Return);
    QVERIFY(shown.isAccepted());
    QCOMPARE(shown.dialog.fileName, typed);
}

void FileDialogInputTest::typingInTheListFindsTheFileToOpen()
{
    const TestFolder folder;
    folder.file("a.txt");
    folder.file("mine.txt");
    const ShownDialog shown(frmFileDialog::Open, folder.path(), latin1(".txt"));
    QTest::keyClick(shown.list, 'm');
    QCOMPARE(shown.dialog.focusWidget(), shown.list);
    QCOMPARE(shown.name()->text(), latin1("mine.txt"));
}

void FileDialogInputTest::commandsInTheListAreNoName()
{
    const TestFolder folder;
    folder.file("a.txt");
    const ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("x.txt"));
    QTest::keyClick(shown.list, Qt::Key_2, Qt::ControlModifier);
    QTest::keyClick(shown.list, Qt::Key_Down);
    QTest::keyClick(shown.list, Qt::Key_Space);
    QTest::keyClick(shown.list, Qt::Key_Backspace);
    QCOMPARE(shown.dialog.focusWidget(), shown.list);
    QCOMPARE(shown.name()->text(), latin1("a.txt"));
}

void FileDialogInputTest::listGrowsWithTheDialog_data()
{
    QTest::addColumn<bool>("vga");
    QTest::newRow("small") << false;
    QTest::newRow("VGA") << true;
}

void FileDialogInputTest::listGrowsWithTheDialog()
{
    QFETCH(bool, vga);
    setScreenClass(vga);
    const TestFolder folder;
    ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("x.txt"));
    const QSize opened = shown.dialog.size();
    const QSize list = shown.list->size();
    QCOMPARE(list, vga ? QSize(380, 210) : QSize(210, 130));
    const int names = shown.list->columnWidth(0);
    const QSize more(120, 90);
    shown.dialog.resize(opened + more);
    QTRY_COMPARE(shown.list->size(), list + more);
    QCOMPARE(shown.list->columnWidth(0), names + more.width());
    shown.dialog.resize(opened);
    QTRY_COMPARE(shown.list->size(), list);
    QCOMPARE(shown.list->columnWidth(0), names);
}

/// As long as it is not there; in no other folder, and not where files are opened.
void FileDialogInputTest::folderThatASaveMakesIsTold()
{
    const TestFolder home;
    const QByteArray homeBefore = qgetenv("HOME");
    qputenv("HOME", QFile::encodeName(home.path().chopped(1)));
    const QString documents = home.path("Documents/");
    const auto told = [](frmFileDialog::Mode mode, const QString &folder) {
        const ShownDialog shown(mode, folder, latin1(".txt"));
        return shown.list->emptyText;
    };
    QCOMPARE(told(frmFileDialog::SaveAs, documents),
        latin1("This folder is not there yet. It is made when you save."));
    QCOMPARE(told(frmFileDialog::Open, documents), noneOfType());
    QCOMPARE(told(frmFileDialog::SaveAs, home.path("Elsewhere/")), noneOfType());
    home.folder("Documents");
    QCOMPARE(told(frmFileDialog::SaveAs, documents), noneOfType());
    qputenv("HOME", QFile::encodeName(home.path("gone"))); // nothing can be made there
    QCOMPARE(told(frmFileDialog::SaveAs, home.path("gone/Documents/")), noneOfType());
    qputenv("HOME", homeBefore);
}

void FileDialogInputTest::fileInTheFoldersPlaceIsTold_data()
{
    QTest::addColumn<frmFileDialog::Mode>("mode");
    QTest::addColumn<bool>("isLink");
    QTest::newRow("to save") << frmFileDialog::SaveAs << false;
    QTest::newRow("to open") << frmFileDialog::Open << false;
    QTest::newRow("by a link") << frmFileDialog::SaveAs << true;
}

/// Until it is renamed.
void FileDialogInputTest::fileInTheFoldersPlaceIsTold()
{
    QFETCH(frmFileDialog::Mode, mode);
    QFETCH(bool, isLink);
    const TestFolder home;
    const QByteArray homeBefore = qgetenv("HOME");
    qputenv("HOME", QFile::encodeName(home.path().chopped(1)));
    home.file(isLink ? "notes" : "Documents");
    if (isLink)
        home.link("notes", "Documents");
    const ShownDialog shown(mode, home.path("Documents/"), latin1(".txt"));
    const QString text =
        latin1("A file stands where this folder should be. Rename that file, or choose another folder.");
    QCOMPARE(shown.list->emptyText, text);
    QCOMPARE(shown.list->accessibleDescription(), text);
    home.remove("Documents");
    home.folder("Documents");
    shown.tool("Refresh")->click();
    QCOMPARE(shown.list->emptyText, noneOfType());
    qputenv("HOME", homeBefore);
}

/// It would look as if it had no files at all.
void FileDialogInputTest::folderWithoutFilesOfTheTypeSaysSo()
{
    const TestFolder folder;
    folder.file("a.md");
    const ShownDialog shown(frmFileDialog::Open, folder.path(), latin1(".txt"));
    QCOMPARE(shown.names(), QStringList());
    QCOMPARE(shown.list->emptyText, noneOfType());
    QCOMPARE(shown.list->accessibleDescription(), noneOfType());
    shown.pick(shown.types(), shown.types()->findText(latin1("all files (*.*)")));
    QCOMPARE(shown.names(), QStringList{ latin1("a.md") });
    QCOMPARE(shown.list->emptyText, QString());
}

void FileDialogInputTest::documentsAreAtHome_data()
{
    QTest::addColumn<QByteArray>("home");
    QTest::addColumn<QString>("folder");
    QTest::newRow("an account's") << QByteArray("/home/someone") << latin1("/home/someone/Documents/");
    QTest::newRow("the root, as containers have it") << QByteArray("/") << latin1("/Documents/");
    QTest::newRow("none") << QByteArray() << latin1("/Documents/");
}

void FileDialogInputTest::documentsAreAtHome()
{
    QFETCH(QByteArray, home);
    const QByteArray homeBefore = qgetenv("HOME");
    qputenv("HOME", home);
    QTEST(DocumentsFolder::path(), "folder");
    qputenv("HOME", homeBefore);
}

void FileDialogInputTest::returnInTheFolderComboDoesNothing()
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

void FileDialogInputTest::returnInTheNamePressesOk()
{
    const TestFolder folder;
    const ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("new.txt"));
    shown.name()->setFocus();
    QTest::keyClick(shown.name(), Qt::Key_Return);
    QVERIFY(shown.isAccepted());
}

void FileDialogInputTest::escapeRejects()
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

void FileDialogInputTest::noCompletion()
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

void FileDialogInputTest::showsTheFolder()
{
    const TestFolder folder;
    folder.folder("sub");
    ShownDialog shown(frmFileDialog::Open, folder.path("sub/"), {});
    QCOMPARE(shown.folders()->currentText(), folder.path("sub"));
    shown.dialog.slotLvListRefreshed(latin1("/"));
    QCOMPARE(shown.folders()->currentText(), latin1("/"));
}

void FileDialogInputTest::upAndRefresh()
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

static void writeFavourites(const QList<QByteArray> &paths)
{
    QFile settings(
        QStandardPaths::writableLocation(QStandardPaths::ConfigLocation) + QStringLiteral("/corvex.conf"));
    QVERIFY(settings.open(QFile::WriteOnly));
    settings.write("[favorites]\n");
    for (qsizetype n = 0; n < paths.size(); ++n)
        settings.write("Item" + QByteArray::number(n) + " = " + paths.at(n) + '\n');
}

void FileDialogInputTest::favourites()
{
    const TestFolder folder;
    folder.folder("fav");
    folder.file("fav/inside.txt");
    writeFavourites({ "/", folder.path("fav").toUtf8(), "/missing/card", folder.path("fav/").toUtf8() });
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

/// As many as there can be, and paths wider than the screen: the last one is chosen there.
void FileDialogInputTest::favouritesStayOnTheScreen()
{
    const TestFolder folder;
    folder.folder("fav");
    QList<QByteArray> paths(19, QByteArray("/missing") + QByteArray("/and far away").repeated(20));
    writeFavourites(paths << folder.path("fav").toUtf8());
    ShownDialog shown(frmFileDialog::Open, folder.path(), {});
    auto *menu = shown.tool("Favorites")->menu();
    QFont font = menu->font();
    font.setPixelSize(shown.dialog.screen()->size().height() / 12);
    menu->setFont(font);
    menu->popup(shown.dialog.geometry().center());
    QTest::keyClick(menu, Qt::Key_End);
    const QRect first = menu->actionGeometry(menu->actions().constFirst());
    const QRect last = menu->actionGeometry(menu->actions().constLast());
    QCOMPARE(first.left(), last.left());
    QVERIFY(last.right() < shown.dialog.screen()->size().width());
    QTest::keyClick(menu, Qt::Key_Return);
    QCOMPARE(shown.list->currentPath, folder.path("fav/"));
}

void FileDialogInputTest::emptyFavourites()
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
void FileDialogInputTest::walksFromHomeToACardAndBack()
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

REGISTER_TEST(runFormTest<FileDialogInputTest>)
#include "frmfiledialoginput_test.moc"
