#include "tests/filedialog/boxanswer.h"
#include "tests/filedialog/showndialog.h"
#include "tests/filedialog/testfolder.h"
#include "tests/testprogram.h"

/// What OK does with a name and the codes: what is asked, refused and handed over.
class FileDialogAcceptTest : public QObject {
    Q_OBJECT

private slots:
    void init();

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
    void folderNamedAsTheFile_data();
    void folderNamedAsTheFile();
    void showsCodes_data();
    void showsCodes();
    void namesAreShownAsTheyAre();
    void acceptBeforeTheListIsFilled();
    void missingStartFolder();
    void undecodableNames();
};

void FileDialogAcceptTest::init()
{
    resetDialogs();
}

void FileDialogAcceptTest::codes_data()
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

void FileDialogAcceptTest::codes()
{
    QFETCH(int, charRow);
    QFETCH(int, returnRow);
    const TestFolder folder;
    ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("new.txt"));
    shown.pick(shown.charCodes(), charRow);
    shown.pick(shown.returnCodes(), returnRow);
    shown.dialog.accept();
    QVERIFY(shown.isAccepted());
    QTEST(int(shown.dialog.charCode.value_or(CharCode::Binary)), "charCode");
    QTEST(int(shown.dialog.returnCode.value_or(ReturnCode::None)), "returnCode");
    QCOMPARE(shown.dialog.dirPath, folder.path());
    QCOMPARE(shown.dialog.fileName, latin1("new.txt"));

    folder.file("new.txt");
    ShownDialog open(frmFileDialog::Open, folder.path(), latin1("new.txt"));
    open.pick(open.charCodes(), charRow);
    open.dialog.accept();
    QVERIFY(open.isAccepted());
    QTEST(int(open.dialog.charCode.value_or(CharCode::Binary)), "charCode");
    QVERIFY(!open.dialog.returnCode);
}

void FileDialogAcceptTest::emptyName()
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

void FileDialogAcceptTest::forbiddenNames_data()
{
    QTest::addColumn<QString>("name");
    for (const char forbidden : QByteArray("/\\:,;*?\"<>|"))
        QTest::addRow("a%cb.txt", forbidden) << QStringLiteral("a%1b.txt").arg(QLatin1Char(forbidden));
    QTest::newRow("alone") << latin1("*");
    QTest::newRow("first") << latin1("?a");
    QTest::newRow("last") << latin1("a|");
}

void FileDialogAcceptTest::forbiddenNames()
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

void FileDialogAcceptTest::usableNames_data()
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

void FileDialogAcceptTest::usableNames()
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

void FileDialogAcceptTest::missingFile()
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

void FileDialogAcceptTest::replaceRefused()
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

void FileDialogAcceptTest::replaceRefusedByEscape()
{
    const TestFolder folder;
    folder.file("notes.txt");
    ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("notes.txt"));
    const BoxAnswer answer(BoxAnswer::escape());
    shown.dialog.accept();
    QCOMPARE(answer.count, 1);
    QVERIFY(shown.dialog.isVisible());
}

void FileDialogAcceptTest::replaceConfirmed()
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

void FileDialogAcceptTest::newNameAsksNothing()
{
    const TestFolder folder;
    folder.file("notes.txt");
    ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("Notes.txt"));
    const BoxAnswer answer(latin1("No"));
    shown.dialog.accept();
    QCOMPARE(answer.count, 0);
    QVERIFY(shown.isAccepted());
}

void FileDialogAcceptTest::folderNamedAsTheFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a folder") << latin1("sub");
    QTest::newRow("this folder") << latin1(".");
    QTest::newRow("the folder above") << latin1("..");
}

/// It is asked about as a file is; reading or writing it is refused later.
void FileDialogAcceptTest::folderNamedAsTheFile()
{
    QFETCH(QString, name);
    const TestFolder folder;
    folder.folder("sub");
    ShownDialog open(frmFileDialog::Open, folder.path(), name);
    open.dialog.accept();
    QVERIFY(open.isAccepted());

    ShownDialog save(frmFileDialog::SaveAs, folder.path(), name);
    {
        const BoxAnswer answer(latin1("No"));
        save.dialog.accept();
        QCOMPARE(answer.text, name + latin1("\nThis file already exists.\nReplace existing file?"));
        QVERIFY(save.dialog.isVisible());
        QCOMPARE(save.name()->text(), name);
    }
    const BoxAnswer answer(latin1("Yes"));
    save.dialog.accept();
    QVERIFY(save.isAccepted());
    QCOMPARE(save.dialog.dirPath + save.dialog.fileName, folder.path() + name);
}

void FileDialogAcceptTest::showsCodes_data()
{
    QTest::addColumn<int>("charCode");
    QTest::addColumn<int>("charRow");
    QTest::addColumn<int>("returnCode");
    QTest::addColumn<int>("returnRow");
    QTest::newRow("Auto, Auto") << 0 << 0 << 0 << 0;
    QTest::newRow("Shift-JIS, CR+LF") << 3 << 1 << 2 << 1;
    QTest::newRow("UTF-8, CR") << 2 << 4 << 1 << 3;
    QTest::newRow("not in the lists") << 1 << 0 << 9 << 0;
}

void FileDialogAcceptTest::showsCodes()
{
    QFETCH(int, charCode);
    QFETCH(int, returnCode);
    const TestFolder folder;
    ShownDialog shown(frmFileDialog::SaveAs, folder.path(), latin1("new.txt"));
    shown.dialog.showCodes(requestedCharCode(charCode), requestedReturnCode(returnCode));
    QTEST(shown.charCodes()->currentIndex(), "charRow");
    QTEST(shown.returnCodes()->currentIndex(), "returnRow");
}

void FileDialogAcceptTest::namesAreShownAsTheyAre()
{
    const TestFolder folder;
    ShownDialog shown(frmFileDialog::Open, folder.path(), latin1("%2 & %1\n%3"));
    const BoxAnswer answer(latin1("OK"));
    shown.dialog.accept();
    QCOMPARE(answer.text, latin1("%2 & %1\n%3\nThis file does not exists."));
}

void FileDialogAcceptTest::acceptBeforeTheListIsFilled()
{
    const TestFolder folder;
    folder.file("a.txt");
    frmFileDialog dialog(nullptr, frmFileDialog::Open, folder.path(), latin1("a.txt"));
    dialog.show();
    dialog.accept();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.dirPath, folder.path());
}

void FileDialogAcceptTest::missingStartFolder()
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

void FileDialogAcceptTest::undecodableNames()
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

REGISTER_TEST(runFormTest<FileDialogAcceptTest>)
#include "frmfiledialogaccept_test.moc"
