#include "app/requestedfiles.h"
#include "tests/app/requestscene.h"

#include <QSignalSpy>

#include <array>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>

using namespace Qt::StringLiterals;

namespace {

using From = FileRequest::From;

SharedFd fileWith(const QByteArray &content)
{
    const int number = ::memfd_create("content", MFD_CLOEXEC);
    if (::write(number, content.constData(), size_t(content.size())) != content.size())
        qFatal("cannot write");
    ::lseek(number, 0, SEEK_SET);
    return std::make_shared<OpenFd>(number);
}

std::array<int, 2> connectedFds()
{
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends.data()) != 0)
        qFatal("no sockets");
    return ends;
}

} // namespace

/// What a shell, the desktop or the launcher asks the window to open.
class RequestedFilesTest : public QObject, private RequestScene {
    Q_OBJECT

private slots:
    void init() { beginScene(); }
    void cleanup() { m_window.reset(); }

    void goesToThePlace_data();
    void goesToThePlace();
    void goesToThePlaceInAnOpenFile();
    void readsInTheCharset();
    void missingFileIsNew();
    void newFileIsMadeByItsFirstSave();
    void newFileHasTheCharset();
    void newFileOfAFolderThatIsMissing();
    void newFileThatSomebodyMadeMeanwhileIsKept();
    void newFileIsNoRecentOne();
    void missingFileOfTheLauncherIsTold();
    void inputIsANewDocument();
    void emptyInputIsAnEmptyDocument();
    void newDocumentIsBegun();
    void recentFilesAreOffered();
    void closedDocumentIsTold();
    void killedProgramTellsNothing();

    void onlyAFreshDocumentGivesWay_data();
    void onlyAFreshDocumentGivesWay();
    void nothingGivesWayToTheLauncher();
    void folderThatIsWaitedForIsRefused();
};

void RequestedFilesTest::goesToThePlace_data()
{
    QTest::addColumn<LineColumn>("place");
    QTest::addColumn<QString>("text"); // "|" is where the cursor is
    const auto row = [](const char *name, LineColumn place, const QString &text) {
        QTest::newRow(name) << place << text;
    };
    row("the start", { 1, 1 }, u"|ab\nあい\n\nd"_s);
    row("a line", { 2, 1 }, u"ab\n|あい\n\nd"_s);
    row("a column", { 2, 2 }, u"ab\nあ|い\n\nd"_s);
    row("behind a line's end", { 2, 9 }, u"ab\nあい|\n\nd"_s);
    row("an empty line", { 3, 2 }, u"ab\nあい\n|\nd"_s);
    row("behind the last line", { 9, 1 }, u"ab\nあい\n\n|d"_s);
    constexpr qint64 most = std::numeric_limits<qint64>::max();
    row("far behind", { most, most }, u"ab\nあい\n\nd|"_s);
}

void RequestedFilesTest::goesToThePlace()
{
    QFETCH(LineColumn, place);
    QFETCH(QString, text);
    const QString file = m_files->write(u"a.txt"_s, "ab\n\343\201\202\343\201\204\n\nd");
    m_window->openRequested({ file, From::Shell, place });
    QString drawn = editor().text();
    drawn.insert(editor().cursorPlace().offset.value(), u'|');
    QCOMPARE(drawn, text);
}

void RequestedFilesTest::goesToThePlaceInAnOpenFile()
{
    const QString file = m_files->write(u"a.txt"_s, "a\nb\nc\n");
    m_window->openRequested({ file, From::Shell });
    m_window->slotCmdFileNew();
    m_window->openRequested({ file, From::Shell, LineColumn{ 3, 1 } });
    QCOMPARE(editor().name(), u"a.txt"_s);
    QCOMPARE(editor().cursorPosition(), (RowCol{ RowIndex(2), 0 }));
    QCOMPARE(openFiles(), u"a.txt (new document)"_s);
}

void RequestedFilesTest::readsInTheCharset()
{
    const QString file = m_files->write(u"a.txt"_s, "\244\242");
    m_window->openRequested({ file, From::Shell, {}, CharCode::ShiftJis });
    QCOMPARE(editor().text(), u"､｢"_s);
}

void RequestedFilesTest::missingFileIsNew()
{
    MessageBoxes boxes;
    m_window->openRequested({ m_files->folder() + u"new.txt"_s, From::Shell, LineColumn{ 7, 1 } });
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(openFiles(), u"new.txt"_s);
    QCOMPARE(editor().path(), m_files->folder());
    QVERIFY(!editor().edited());
    m_window->openRequested({ m_files->folder() + u"new.txt"_s, From::Shell });
    QCOMPARE(openFiles(), u"new.txt"_s);
}

void RequestedFilesTest::newFileIsMadeByItsFirstSave()
{
    m_window->openRequested({ m_files->folder() + u"new.txt"_s, From::Shell });
    QTest::keyClicks(&editor(), u"x"_s);
    QCOMPARE(openFiles(), u"* new.txt"_s);
    QVERIFY(!QFile::exists(m_files->folder() + u"new.txt"_s));
    m_window->slotCmdFileSave();
    QVERIFY(m_window->requests.isEmpty());
    QCOMPARE(m_files->read(u"new.txt"_s), QByteArray("x"));
    QCOMPARE(openFiles(), u"new.txt"_s);
    m_window->slotCmdFileCloseTab();
    QCOMPARE(recentFiles().entries.front().name, u"new.txt"_s);
}

void RequestedFilesTest::newFileHasTheCharset()
{
    m_window->openRequested({ m_files->folder() + u"new.txt"_s, From::Shell, {}, CharCode::Euc });
    QCOMPARE(editor().charCodeName(), u"EUC"_s);
    QCOMPARE(editor().returnCodeName(), u"CR+LF"_s);
    editor().insert(u"あ"_s);
    m_window->slotCmdFileSave();
    QCOMPARE(m_files->read(u"new.txt"_s), QByteArray("\244\242"));
}

void RequestedFilesTest::newFileOfAFolderThatIsMissing()
{
    m_window->openRequested({ m_files->folder() + u"gone/new.txt"_s, From::Shell });
    QTest::keyClicks(&editor(), u"x"_s);
    const NoTimeToRead noTime;
    MessageBoxes boxes;
    m_window->slotCmdFileSave();
    QCOMPARE(boxes.titles(), QStringList{ u"File Write Error"_s });
    QVERIFY(editor().edited());
}

void RequestedFilesTest::newFileThatSomebodyMadeMeanwhileIsKept()
{
    m_window->openRequested({ m_files->folder() + u"new.txt"_s, From::Shell });
    QTest::keyClicks(&editor(), u"x"_s);
    m_files->write(u"new.txt"_s, "theirs");
    QSignalSpy kept(&editor(), &ctlEditer::fileKept);
    m_window->slotCmdFileSave();
    QCOMPARE(m_files->read(u"new.txt"_s), QByteArray("x"));
    QCOMPARE(kept.size(), 1);
    QFile copy(kept[0][0].toString());
    QVERIFY(copy.open(QIODevice::ReadOnly));
    QCOMPARE(copy.readAll(), QByteArray("theirs"));
}

void RequestedFilesTest::newFileIsNoRecentOne()
{
    m_window->openRequested({ m_files->folder() + u"new.txt"_s, From::Shell });
    m_window->slotCmdFileCloseTab();
    QVERIFY(!recentFiles().entries.front().isUsed());
}

void RequestedFilesTest::missingFileOfTheLauncherIsTold()
{
    const NoTimeToRead noTime;
    MessageBoxes boxes;
    m_window->setDocument(m_files->folder() + u"missing.txt"_s);
    QCOMPARE(boxes.count(), 1);
}

void RequestedFilesTest::inputIsANewDocument()
{
    m_window->openRequested(
        { {}, From::Shell, LineColumn{ 2, 1 }, {}, false, fileWith("\343\201\202\na\n\343\201\204\n") });
    QTRY_COMPARE(editor().text().left(3), u"あ\na"_s);
    QCOMPARE(openFiles(), u"(new document) * (new document)"_s);
    QVERIFY(editor().path().isEmpty());
    QVERIFY(editor().edited());
    QTRY_COMPARE(editor().cursorPosition(), (RowCol{ RowIndex(1), 0 }));
}

void RequestedFilesTest::emptyInputIsAnEmptyDocument()
{
    m_window->openRequested({ {}, From::Shell, {}, {}, false, fileWith({}) });
    QTRY_VERIFY(!editor().document().isHeld());
    QCOMPARE(openFiles(), u"(new document) (new document)"_s);
    QVERIFY(!editor().edited());
}

void RequestedFilesTest::newDocumentIsBegun()
{
    m_window->openRequested({ {}, From::Shell });
    QCOMPARE(openFiles(), u"(new document) (new document)"_s);
}

void RequestedFilesTest::recentFilesAreOffered()
{
    const QString file = m_files->write(u"a.txt"_s, "recent");
    m_window->setDocument(file);
    m_window->slotCmdFileCloseTab();
    m_window->slotCmdFileCloseTab();
    FileRequest request{ {}, From::Shell };
    request.isRecent = true;
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    m_window->openRequested(request);
    QTRY_VERIFY(m_window->recentMenu()->isVisible());
    QTest::keyClick(m_window->recentMenu(), Qt::Key_Down);
    QTest::keyClick(m_window->recentMenu(), Qt::Key_Return);
    QTRY_COMPARE(editor().text(), u"recent"_s);
    QCOMPARE(openFiles(), u"a.txt"_s);
}

void RequestedFilesTest::closedDocumentIsTold()
{
    const std::array<int, 2> ends = connectedFds();
    const QString file = m_files->write(u"a.txt"_s, "a");
    m_window->openRequested({ file, From::Shell, {}, {}, false, {}, std::make_shared<OpenFd>(ends[0]) });
    char told[8];
    QCOMPARE(::read(ends[1], told, sizeof told), -1);
    m_window->slotCmdFileNew();
    m_window->slotCmdFileCloseTab();
    QCOMPARE(::read(ends[1], told, sizeof told), -1);
    m_window->setDocument(file);
    m_window->slotCmdFileCloseTab();
    QCOMPARE(::read(ends[1], told, sizeof told), 1);
    QCOMPARE(::read(ends[1], told, sizeof told), 0);
    ::close(ends[1]);
}

void RequestedFilesTest::killedProgramTellsNothing()
{
    const std::array<int, 2> ends = connectedFds();
    const QString file = m_files->write(u"a.txt"_s, "a");
    m_window->openRequested({ file, From::Shell, {}, {}, false, {}, std::make_shared<OpenFd>(ends[0]) });
    m_window.reset();
    char told[8];
    QCOMPARE(::read(ends[1], told, sizeof told), 0);
    ::close(ends[1]);
}

void RequestedFilesTest::onlyAFreshDocumentGivesWay_data()
{
    QTest::addColumn<FileRequest>("request");
    QTest::addColumn<QString>("files");
    const auto row = [](const char *name, From from, const QString &file, const QString &files) {
        QTest::newRow(name) << FileRequest{ file, from } << files;
    };
    row("shell", From::Shell, u"a.txt"_s, u"* (new document) a.txt"_s);
    row("shell, missing", From::Shell, u"new.txt"_s, u"* (new document) new.txt"_s);
    row("desktop", From::Desktop, u"a.txt"_s, u"* (new document) a.txt"_s);
    row("launcher", From::Launcher, u"a.txt"_s, u"* (new document) a.txt"_s);
}

void RequestedFilesTest::onlyAFreshDocumentGivesWay()
{
    QFETCH(FileRequest, request);
    QFETCH(QString, files);
    m_files->write(u"a.txt"_s, "a");
    request.fileName.prepend(m_files->folder());
    QTest::keyClicks(&editor(), u"x"_s);
    theApplication().request(request);
    QTRY_COMPARE(openFiles(), files);
}

/// The launcher's files each have a tab.
void RequestedFilesTest::nothingGivesWayToTheLauncher()
{
    m_window->setDocument(m_files->write(u"a.txt"_s, "a"));
    QCOMPARE(openFiles(), u"(new document) a.txt"_s);
}

void RequestedFilesTest::folderThatIsWaitedForIsRefused()
{
    const std::array<int, 2> ends = connectedFds();
    const NoTimeToRead noTime;
    MessageBoxes boxes;
    m_window->openRequested(
        { m_files->folder().chopped(1), From::Shell, {}, {}, false, {}, std::make_shared<OpenFd>(ends[0]) });
    QCOMPARE(boxes.count(), 1);
    QVERIFY(m_window->requests.isEmpty());
    ::close(ends[1]);
}

REGISTER_TEST(runRequestTest<RequestedFilesTest>)
#include "requestedfiles_test.moc"
