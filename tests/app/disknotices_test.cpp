#include "app/disknotices.h"

#include "app/documentarea.h"
#include "files/statefolder.h"
#include "tests/app/diskscene.h"
#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"

#include <QSignalSpy>

#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString changedText = u"Another program has changed this file."_s;
const QString replacedText = u"Another program has replaced this file."_s;
const QString madeText = u"Another program has made this file."_s;
const QString deletedText = u"This file was deleted. Saving makes it again."_s;

} // namespace

/// What the window tells of other programs, as its user meets it.
class DiskNoticesTest : public QObject, private DiskScene {
    Q_OBJECT

private slots:
    void init() { beginScene(); }
    void cleanup() { endScene(); }

    void tellsOfAWrite();
    void tellsOfAnotherFileUnderTheName();
    void tellsOfANewFileThatOthersMake_data();
    void tellsOfANewFileThatOthersMake();
    void tellsOfADeletion();
    void tellsThatTheFolderIsGone();
    void takesItBack();
    void largeTouchedFileIsReadInTheBackground();
    void saysNothingOfOwnSaves();
    void reloads();
    void asksBeforeEditsGo();
    void keepsMine();
    void showsBoth();
    void showsBothAsItIsRead_data();
    void showsBothAsItIsRead();
    void showsUtf16AsText();
    void reloadsUtf16AsText_data();
    void reloadsUtf16AsText();
    void reloadsUtf16ThatWasSavedAsUtf8();
    void saveOverAChangedFileKeepsIt();
    void savingByClosingTellsOfTheKeptFile_data();
    void savingByClosingTellsOfTheKeptFile();
    void savesADeletedFileAgain();
    void looksWhenTheTabIsShown();
    void looksWhenTheWindowIsActive();
    void watchesTwoFilesOfMany();
    void tellsOfAnInterruptedSave();
    void interruptedSavesAreToldOneAfterTheOther();
    void fitsASmallScreen_data();
    void fitsASmallScreen();

private:
    QByteArray leaveCopy(const QByteArray &digits, const QByteArray &of, const QByteArray &content) const;
};

QByteArray DiskNoticesTest::leaveCopy(
    const QByteArray &digits, const QByteArray &of, const QByteArray &content) const
{
    makePrivateFolder(FileCalls::system(), stateFolder());
    const QByteArray name = stateFolder() + ".marlopad-copy-" + digits;
    for (const auto &[file, bytes] : { std::pair(name, content), std::pair(name + ".of", of + '\0') }) {
        QFile written(QFile::decodeName(file));
        if (!written.open(QIODevice::WriteOnly) || written.write(bytes) != bytes.size())
            return {};
    }
    return name;
}

void DiskNoticesTest::tellsOfAWrite()
{
    QVERIFY(!m_strip->isShown());
    m_files->write(u"a.txt"_s, "new\n");
    QTRY_COMPARE(m_strip->text(), changedText);
    QCOMPARE(m_strip->offers(), QStringList({ u"Reload"_s, u"Keep mine"_s, u"Show both"_s }));
    QCOMPARE(editor().text(), u"old\n"_s);
    QVERIFY(!editor().edited());
}

void DiskNoticesTest::tellsOfAnotherFileUnderTheName()
{
    const QString other = m_files->write(u"other"_s, "new\n");
    QCOMPARE(::rename(other.toUtf8().constData(), (m_files->folder() + u"a.txt"_s).toUtf8().constData()), 0);
    QTRY_COMPARE(m_strip->text(), replacedText);
    QVERIFY(m_strip->click(u"Reload"_s));
    QCOMPARE(editor().text(), u"new\n"_s);
    m_files->write(u"a.txt"_s, "written into the new one\n");
    QTRY_COMPARE(m_strip->text(), changedText);
}

void DiskNoticesTest::tellsOfANewFileThatOthersMake_data()
{
    QTest::addColumn<QString>("offer");
    QTest::addColumn<QString>("text");
    QTest::newRow("read") << u"Reload"_s << u"theirs\n"_s;
    QTest::newRow("left alone") << u"Keep mine"_s << QString();
}

/// The document's own first save would have made it.
void DiskNoticesTest::tellsOfANewFileThatOthersMake()
{
    QFETCH(QString, offer);
    m_window->slotCmdFileNew();
    editor().startFile(m_files->folder(), u"new.txt"_s, {});
    m_files->write(u"new.txt"_s, "theirs\n");
    QTRY_COMPARE(m_strip->text(), madeText);
    QCOMPARE(m_strip->offers(), QStringList({ u"Reload"_s, u"Keep mine"_s, u"Show both"_s }));
    QVERIFY(m_strip->click(offer));
    QVERIFY(!m_strip->isShown());
    QTEST(editor().text(), "text");
    m_window->slotCmdViewWinPrev();
    m_window->slotCmdViewWinNext();
    QVERIFY(!m_strip->isShown());
}

void DiskNoticesTest::tellsOfADeletion()
{
    QVERIFY(QFile::remove(m_files->folder() + u"a.txt"_s));
    QTRY_COMPARE(m_strip->text(), deletedText);
    QCOMPARE(m_strip->offers(), QStringList({ u"Save"_s, u"Keep mine"_s }));
    QVERIFY(m_strip->click(u"Keep mine"_s));
    QVERIFY(!m_strip->isShown());
    QCOMPARE(editor().text(), u"old\n"_s);
}

/// A save under the name would fail there.
void DiskNoticesTest::tellsThatTheFolderIsGone()
{
    QVERIFY(QDir(m_files->folder()).mkdir(u"sub"_s));
    m_window->setDocument(m_files->write(u"sub/b.txt"_s, "b\n"));
    QVERIFY(QDir(m_files->folder() + u"sub"_s).removeRecursively());
    QTRY_COMPARE(m_strip->text(), u"This file and its folder are gone."_s);
    QCOMPARE(m_strip->offers(), QStringList({ u"Save As…"_s, u"Keep mine"_s }));
    m_window->choices << FileChoice{ m_files->folder(), u"c.txt"_s };
    QVERIFY(m_strip->click(u"Save As…"_s));
    QCOMPARE(m_files->read(u"c.txt"_s), QByteArray("b\n"));
    QVERIFY(!m_strip->isShown());
}

void DiskNoticesTest::takesItBack()
{
    m_files->write(u"a.txt"_s, "new\n");
    QTRY_COMPARE(m_strip->text(), changedText);
    m_files->write(u"a.txt"_s, "old\n");
    QTRY_VERIFY(!m_strip->isShown());
}

/// And nothing is said of it before.
void DiskNoticesTest::largeTouchedFileIsReadInTheBackground()
{
    const QString name =
        m_files->write(u"b.txt"_s, QByteArray("line\n").repeated(FileVersion::mostCompared / 4));
    m_window->setDocument(name);
    QTRY_VERIFY(!editor().document().isHeld());
    const timespec times[] = { { 1000, 0 }, { 1000, 0 } };
    QCOMPARE(::utimensat(AT_FDCWD, name.toUtf8().constData(), times, 0), 0);
    const auto knownTime = [this] {
        return std::as_const(editor()).document().file().version().stamp().modified;
    };
    QTRY_COMPARE(knownTime(), qint64{ 1000 } * 1'000'000'000);
    QVERIFY(!m_strip->isShown());
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadWrite) && file.putChar('L'));
    file.close();
    QTRY_COMPARE(m_strip->text(), changedText);
}

void DiskNoticesTest::saysNothingOfOwnSaves()
{
    QTest::keyClicks(&editor(), u"x"_s);
    m_window->slotCmdFileSave();
    DiskWatch probe;
    probe.setFile(m_files->folder() + u"a.txt"_s);
    QSignalSpy happened(&probe, &DiskWatch::happened);
    QTest::keyClicks(&editor(), u"y"_s);
    m_window->slotCmdFileSave();
    QTRY_COMPARE(happened.count(), 1); // the window's own watch came first
    QVERIFY(!m_strip->isShown());
    QVERIFY(!editor().edited());
}

void DiskNoticesTest::reloads()
{
    m_files->write(u"a.txt"_s, "1\n2\n3\n4\n");
    QTRY_VERIFY(m_strip->isShown());
    QVERIFY(m_strip->click(u"Reload"_s));
    editor().setCursorPosition(2, 1);
    m_files->write(u"a.txt"_s, "1\n2\nthree\n");
    QTRY_COMPARE(m_strip->text(), changedText);
    QVERIFY(m_strip->click(u"Reload"_s));
    QCOMPARE(editor().text(), u"1\n2\nthree\n"_s);
    QCOMPARE(editor().cursorPosition(), (RowCol{ RowIndex(2), 1 }));
    QVERIFY(!m_strip->isShown());
}

void DiskNoticesTest::asksBeforeEditsGo()
{
    QTest::keyClicks(&editor(), u"mine "_s);
    m_files->write(u"a.txt"_s, "new\n");
    QTRY_COMPARE(m_strip->text(), changedText);
    {
        const MessageBoxes boxes({ u"No"_s });
        QVERIFY(m_strip->click(u"Reload"_s));
        QCOMPARE(boxes.titles(), QStringList{ u"Confirm Reload"_s });
    }
    QCOMPARE(editor().text(), u"mine old\n"_s);
    QCOMPARE(m_strip->text(), changedText);
}

void DiskNoticesTest::keepsMine()
{
    m_files->write(u"a.txt"_s, "new\n");
    QTRY_COMPARE(m_strip->text(), changedText);
    QVERIFY(m_strip->click(u"Keep mine"_s));
    QVERIFY(!m_strip->isShown());
    m_window->slotCmdFileNew();
    m_window->slotCmdViewWinPrev();
    QVERIFY(!m_strip->isShown());
    m_files->write(u"a.txt"_s, "newer\n");
    QTRY_COMPARE(m_strip->text(), changedText);
}

void DiskNoticesTest::showsBoth()
{
    m_files->write(u"a.txt"_s, "\xe3\x81\x82\r\n");
    QTRY_COMPARE(m_strip->text(), changedText);
    QVERIFY(m_strip->click(u"Show both"_s));
    QCOMPARE(m_window->tabTexts(), QStringList({ u"a.txt"_s, u"* a.txt on disk"_s }));
    QCOMPARE(editor().text(), u"あ\n"_s);
    QCOMPARE(editor().path(), QString());
    QCOMPARE(editor().charCodeName(), u"UTF8"_s);
    QCOMPARE(editor().returnCodeName(), u"CR+LF"_s);
    QVERIFY(!m_strip->isShown());
    m_window->slotCmdViewLangJa();
    QCOMPARE(m_window->tabTexts(), QStringList({ u"a.txt"_s, u"* a.txt on disk"_s }));
    m_window->slotCmdViewLangEn();
    m_window->slotCmdViewWinPrev();
    QCOMPARE(editor().text(), u"old\n"_s);
    QVERIFY(!m_strip->isShown());
}

void DiskNoticesTest::showsBothAsItIsRead_data()
{
    QTest::addColumn<CharCode>("code");
    QTest::addColumn<QByteArray>("theirs");
    QTest::addColumn<QString>("text");
    QTest::newRow("the code that was chosen") << CharCode::Euc << QByteArray("\xB1\xB2\n") << u"渦\n"_s;
    QTest::newRow("the code that fits")
        << CharCode::ShiftJis << QByteArray("\xF0\x9F\x98\x80\n") << u"\U0001F600\n"_s;
}

/// It has no file that it could be read from again.
void DiskNoticesTest::showsBothAsItIsRead()
{
    QFETCH(CharCode, code);
    QFETCH(QByteArray, theirs);
    const QString name = m_files->write(u"b.txt"_s, "\xB1\n");
    m_window->openDocument(name, int(code));
    m_files->write(u"b.txt"_s, theirs);
    QTRY_COMPARE(m_strip->text(), changedText);
    QVERIFY(m_strip->click(u"Show both"_s));
    QTEST(editor().text(), "text");
    QVERIFY(!m_strip->isShown());
}

void DiskNoticesTest::showsUtf16AsText()
{
    m_files->write(u"a.txt"_s, QByteArray("\xFF\xFE\x22\x6F\n\0", 6));
    QTRY_COMPARE(m_strip->text(), changedText);
    QVERIFY(m_strip->click(u"Show both"_s));
    QCOMPARE(editor().text(), u"漢\n"_s);
}

void DiskNoticesTest::reloadsUtf16AsText_data()
{
    QTest::addColumn<QString>("offer");
    QTest::addColumn<QByteArray>("saved");
    const QByteArray marked("\xFF\xFE"
                            "b\0\x22\x6F\n\0",
        8);
    QTest::newRow("to be saved as UTF-8") << u"Read it as text"_s << QByteArray("b\xE6\xBC\xA2\n");
    QTest::newRow("to be saved as UTF-16") << u"Keep UTF-16"_s << marked;
}

void DiskNoticesTest::reloadsUtf16AsText()
{
    QFETCH(QString, offer);
    const QByteArray theirs("\xFF\xFE"
                            "b\0\x22\x6F\n\0",
        8);
    for (const bool isMenus : { false, true }) {
        m_window->setDocument(m_files->write(u"b.txt"_s,
            QByteArray("\xFF\xFE"
                       "a\0\n\0",
                6)));
        QVERIFY(m_strip->click(offer));
        m_files->write(u"b.txt"_s, theirs);
        QTRY_COMPARE(m_strip->text(), changedText);
        const MessageBoxes boxes({ u"Yes"_s });
        if (isMenus)
            m_window->slotCmdFileReload();
        else
            QVERIFY(m_strip->click(u"Reload"_s));
        QCOMPARE(editor().text(), u"b漢\n"_s);
        m_window->slotCmdFileSave();
        QTEST(m_files->read(u"b.txt"_s), "saved");
        m_window->slotCmdFileCloseTab();
    }
}

void DiskNoticesTest::reloadsUtf16ThatWasSavedAsUtf8()
{
    m_window->setDocument(m_files->write(u"b.txt"_s,
        QByteArray("\xFF\xFE"
                   "a\0\n\0",
            6)));
    QVERIFY(m_strip->click(u"Read it as text"_s));
    m_window->slotCmdFileSave();
    m_files->write(u"b.txt"_s, "b\xE6\xBC\xA2\n");
    QTRY_COMPARE(m_strip->text(), changedText);
    QVERIFY(m_strip->click(u"Reload"_s));
    QCOMPARE(editor().text(), u"b漢\n"_s);
}

void DiskNoticesTest::saveOverAChangedFileKeepsIt()
{
    QTest::keyClicks(&editor(), u"mine "_s);
    m_files->write(u"a.txt"_s, "theirs\n");
    const MessageBoxes boxes;
    m_window->slotCmdFileSave();
    QCOMPARE(boxes.count(), 0);
    const QString intro = u"The file as it was is kept as "_s;
    QVERIFY(m_strip->text().startsWith(intro));
    QFile kept(m_strip->text().sliced(intro.size()));
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), QByteArray("theirs\n"));
    QCOMPARE(m_files->read(u"a.txt"_s), QByteArray("mine old\n"));
    QVERIFY(m_strip->click(u"Open it"_s));
    QCOMPARE(editor().text(), u"theirs\n"_s);
    QVERIFY(editor().path().isEmpty());
    QVERIFY(!m_strip->isShown());
}

void DiskNoticesTest::savingByClosingTellsOfTheKeptFile_data()
{
    QTest::addColumn<bool>("isEnd");
    QTest::newRow("a tab is closed") << false;
    QTest::newRow("the program ends") << true;
}

/// Which the user finds in the strip of what is shown then.
void DiskNoticesTest::savingByClosingTellsOfTheKeptFile()
{
    QFETCH(bool, isEnd);
    for (const QString &name : { u"a.txt"_s, u"b.txt"_s }) {
        m_window->setDocument(m_files->write(name, "old\n"));
        QTest::keyClicks(&editor(), u"mine "_s);
        m_files->write(name, "theirs\n");
    }
    const MessageBoxes boxes({ u"Yes"_s, u"Yes"_s });
    if (isEnd) {
        m_window->close();
        remake();
    } else {
        m_window->slotCmdFileCloseTab();
        m_window->slotCmdFileCloseTab();
    }
    QCOMPARE(boxes.count(), 2);
    const QString intro = u"The file as it was is kept as "_s;
    QStringList ends;
    for (int kept = 0; kept < 2; ++kept) {
        QVERIFY(m_strip->text().startsWith(intro));
        ends << m_strip->text().last(5);
        QVERIFY(m_strip->click(u"×"_s));
    }
    ends.sort();
    QCOMPARE(ends, QStringList({ u"a.txt"_s, u"b.txt"_s }));
    QVERIFY(!m_strip->isShown());
    remake();
    QVERIFY(!m_strip->isShown());
}

void DiskNoticesTest::savesADeletedFileAgain()
{
    QVERIFY(QFile::remove(m_files->folder() + u"a.txt"_s));
    QTRY_COMPARE(m_strip->text(), deletedText);
    QVERIFY(m_strip->click(u"Save"_s));
    QCOMPARE(m_files->read(u"a.txt"_s), QByteArray("old\n"));
    QVERIFY(!m_strip->isShown());
}

void DiskNoticesTest::looksWhenTheTabIsShown()
{
    m_window->setDocument(m_files->write(u"b.txt"_s, "b\n"));
    m_files->write(u"a.txt"_s, "new\n");
    m_window->slotCmdViewWinPrev();
    QTRY_COMPARE(m_strip->text(), changedText);
    m_window->slotCmdViewWinNext();
    QVERIFY(!m_strip->isShown());
}

/// Where the disk tells nothing.
void DiskNoticesTest::looksWhenTheWindowIsActive()
{
    m_files->write(u"a.txt"_s, "new\n");
    QEvent activation(QEvent::WindowActivate);
    QCoreApplication::sendEvent(m_window.get(), &activation);
    QCOMPARE(m_strip->text(), changedText);
}

void DiskNoticesTest::watchesTwoFilesOfMany()
{
    for (int number = 0; number < 300; ++number)
        m_window->setDocument(m_files->write(u"%1.txt"_s.arg(number), "old\n"));
    QCOMPARE(m_window->tabBar()->count(), 301);
    qsizetype watched = 0;
    for (const QString &fd : QDir(u"/proc/self/fdinfo"_s).entryList(QDir::Files)) {
        QFile info(u"/proc/self/fdinfo/"_s + fd);
        if (info.open(QIODevice::ReadOnly))
            watched += info.readAll().count("inotify wd:");
    }
    QVERIFY2(watched > 0 && watched < 20, QByteArray::number(watched).constData());
    m_files->write(u"299.txt"_s, "new\n");
    QTRY_COMPARE(m_strip->text(), changedText);
}

void DiskNoticesTest::tellsOfAnInterruptedSave()
{
    const QByteArray file = (m_files->folder() + u"a.txt"_s).toUtf8();
    const QByteArray copy = leaveCopy("0123456789abc", file, "before\n");
    remake();
    QCOMPARE(m_strip->text(), u"Saving a.txt was interrupted. Its old text is kept."_s);
    QVERIFY(m_strip->click(u"Open both"_s));
    QCOMPARE(m_window->tabTexts().mid(1), QStringList({ u"a.txt"_s, u"* a.txt before"_s }));
    QCOMPARE(m_window->editorAt(1)->text(), u"old\n"_s);
    QCOMPARE(m_window->editorAt(2)->text(), u"before\n"_s);
    QCOMPARE(m_window->editorAt(2)->path(), QString());
    QVERIFY(QFile::exists(QFile::decodeName(copy)));
    QVERIFY(m_strip->click(u"Delete the copy"_s));
    QVERIFY(!QFile::exists(QFile::decodeName(copy)));
    QVERIFY(!m_strip->isShown());
}

void DiskNoticesTest::interruptedSavesAreToldOneAfterTheOther()
{
    leaveCopy("0123456789abc", "/gone/one.txt", "one");
    const QByteArray later = leaveCopy("0123456789abd", "/gone/two.txt", "two");
    const timespec times[2] = { { 1000, 0 }, { 1000, 0 } };
    QCOMPARE(::utimensat(AT_FDCWD, later.constData(), times, 0), 0);
    remake();
    QCOMPARE(m_strip->text(), u"Saving one.txt was interrupted. Its old text is kept."_s);
    QVERIFY(m_strip->click(u"Later"_s));
    QCOMPARE(m_strip->text(), u"Saving two.txt was interrupted. Its old text is kept."_s);
    QVERIFY(m_strip->click(u"Later"_s));
    QVERIFY(!m_strip->isShown());
    remake();
    QVERIFY(m_strip->isShown());
}

void DiskNoticesTest::fitsASmallScreen_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("reload");
    QTest::newRow("English") << 0 << u"Reload"_s;
    QTest::newRow("Japanese") << 1 << u"再読み込み"_s;
    QTest::newRow("French") << 2 << u"Recharger"_s;
}

/// The first offer has its room, the others are in the menu.
void DiskNoticesTest::fitsASmallScreen()
{
    QFETCH(int, language);
    QFETCH(QString, reload);
    if (language == 1)
        m_window->slotCmdViewLangJa();
    else if (language == 2)
        m_window->slotCmdViewLangFr();
    m_window->showNormal();
    m_window->resize(240, 320);
    m_files->write(u"a.txt"_s, "new\n");
    QTRY_VERIFY(m_strip->isShown());
    const QToolButton *const button = m_strip->button(reload);
    QVERIFY(button);
    QVERIFY(button->width() >= button->sizeHint().width());
    QVERIFY(m_strip->widget().rect().contains(button->geometry()));
}

REGISTER_TEST(runWindowTest<DiskNoticesTest>)
#include "disknotices_test.moc"
