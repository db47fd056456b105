#include "app/documentarea.h"
#include "app/filedrops.h"
#include "app/qpeapplicationesc.h"
#include "app/requestedfiles.h"
#include "tests/app/stripinwindow.h"
#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QDropEvent>
#include <QMimeData>
#include <QRubberBand>

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

/// Holds data over a widget, which takes them or not, and drops what it takes.
bool drop(QWidget &on, const QMimeData &data)
{
    const QPoint place(1, 1);
    QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&on, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent event(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&on, &event);
    return event.isAccepted() && event.dropAction() == Qt::CopyAction;
}

bool dropAddresses(QWidget &on, const QByteArray &addresses)
{
    QMimeData data;
    data.setData(u"text/uri-list"_s, addresses);
    return drop(on, data);
}

} // namespace

/// What comes from a shell and what is dropped on the window.
class RequestedFilesTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

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

    void filesAreDropped_data();
    void filesAreDropped();
    void onlyAFreshDocumentGivesWay_data();
    void onlyAFreshDocumentGivesWay();
    void nothingGivesWayToTheLauncher();
    void namesOfAnyBytesAreDropped();
    void folderOffersItsFiles_data();
    void folderOffersItsFiles();
    void folderThatIsWaitedForIsRefused();
    void windowIsMarkedWhileFilesAreHeld();
    void whatIsNoFileHereIsTold_data();
    void whatIsNoFileHereIsTold();
    void otherThingsAreNotDropped();
    void nothingIsDroppedBehindADialog();
    void textIsStillDropped();

    void manyComeInTheirOrder();
    void whoeverGoesElsewhereStays();
    void keysElsewhereAreTaken();
    void whoeverComesBackIsTakenAlong();
    void nextFilesAreShownAgain();
    void keyThatHasToWaitIsToldOf();
    void keysLeadToTheSignThatStopsThem();

private:
    ctlEditer &editor() const { return *m_window->currentEditor(); }
    QString openFiles() const { return m_window->tabTexts().join(u' '); }
    void requestMany();
    void makeTurns(int fewestOpen);
    bool areManyOpen() const
    {
        return QTest::qWaitFor([this] { return m_window->tabBar()->count() == 1 + many; }, 60'000);
    }
    static QString numbered(int number) { return u"%1.txt"_s.arg(number); }

    static constexpr int many = 100; ///< too many for one turn

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<TestWindow> m_window;
};

void RequestedFilesTest::init()
{
    resetSettings();
    m_files = std::make_unique<TestFiles>();
    m_window = std::make_unique<TestWindow>();
    theApplication().showMainWidget(m_window.get());
    QVERIFY(m_window->open());
}

void RequestedFilesTest::cleanup()
{
    m_window.reset();
}

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

void RequestedFilesTest::filesAreDropped_data()
{
    QTest::addColumn<std::function<QWidget *(TestWindow &)>>("on");
    const auto row = [](const char *name, const std::function<QWidget *(TestWindow &)> &on) {
        QTest::newRow(name) << on;
    };
    row("text", [](TestWindow &window) { return window.currentEditor()->viewport(); });
    row("tab bar", [](TestWindow &window) { return window.tabBar(); });
    row("tool bar", [](TestWindow &window) { return window.toolBar(); });
    row("window", [](TestWindow &window) { return &window; });
}

void RequestedFilesTest::filesAreDropped()
{
    QFETCH(std::function<QWidget *(TestWindow &)>, on);
    m_files->write(u"a b.txt"_s, "first");
    m_files->write(u"c.txt"_s, "second");
    const QByteArray folder = m_files->folder().toUtf8();
    QVERIFY(dropAddresses(
        *on(*m_window), "# comment\r\nfile://" + folder + "a%20b.txt\r\nfile://" + folder + "c.txt\r\n"));
    QCOMPARE(m_window->tabBar()->count(), 1);
    QTRY_COMPARE(openFiles(), u"a b.txt c.txt"_s);
    QCOMPARE(editor().text(), u"second"_s);
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

void RequestedFilesTest::namesOfAnyBytesAreDropped()
{
    const QByteArray name = QFile::encodeName(m_files->folder()) + "\203e.txt";
    const int file = ::open(name.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    QCOMPARE(::write(file, "x", 1), 1);
    ::close(file);
    QVERIFY(dropAddresses(*editor().viewport(), "file://" + name.toPercentEncoding("/") + "\r\n"));
    QTRY_COMPARE(editor().text(), u"x"_s);
    QCOMPARE(editor().name(), QChar(0xDC83) + u"e.txt"_s);
}

void RequestedFilesTest::folderOffersItsFiles_data()
{
    QTest::addColumn<std::function<bool(TestWindow &, const QString &)>>("give");
    const auto row = [](const char *name, const std::function<bool(TestWindow &, const QString &)> &give) {
        QTest::newRow(name) << give;
    };
    row("dropped", [](TestWindow &window, const QString &folder) {
        return dropAddresses(*window.currentEditor()->viewport(), "file://" + folder.toUtf8());
    });
    row("from the shell", [](TestWindow &, const QString &folder) {
        theApplication().request({ folder, From::Shell });
        return true;
    });
}

void RequestedFilesTest::folderOffersItsFiles()
{
    QFETCH(std::function<bool(TestWindow &, const QString &)>, give);
    m_files->write(u"a.txt"_s, "chosen");
    m_window->choices << FileChoice{ m_files->folder(), u"a.txt"_s };
    QVERIFY(give(*m_window, m_files->folder().chopped(1)));
    QTRY_COMPARE(m_window->requests.size(), 1);
    QCOMPARE(m_window->requests[0].mode, frmFileDialog::Open);
    QCOMPARE(m_window->requests[0].fullName(), m_files->folder() + u".txt"_s);
    QTRY_COMPARE(editor().text(), u"chosen"_s);
    QCOMPARE(openFiles(), u"a.txt"_s);
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

void RequestedFilesTest::windowIsMarkedWhileFilesAreHeld()
{
    const auto mark = [this] { return m_window->findChild<QRubberBand *>(); };
    QWidget &text = *editor().viewport();
    QMimeData file;
    file.setData(u"text/uri-list"_s, "file://" + m_files->write(u"a.txt"_s, "a").toUtf8());
    QMimeData address;
    address.setData(u"text/uri-list"_s, "https://x.example/");
    const auto hold = [&text](const QMimeData &data) {
        QDragEnterEvent enter({ 1, 1 }, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&text, &enter);
    };
    hold(address);
    QVERIFY(!mark());
    hold(file);
    QVERIFY(mark() && mark()->isVisible());
    QCOMPARE(mark()->geometry(), m_window->rect());
    QDragLeaveEvent leave;
    QApplication::sendEvent(&text, &leave);
    QVERIFY(!mark());
    QVERIFY(drop(text, file));
    QVERIFY(!mark());
    QTRY_COMPARE(openFiles(), u"a.txt"_s); // before the next test's files
}

void RequestedFilesTest::whatIsNoFileHereIsTold_data()
{
    QTest::addColumn<QByteArray>("addresses");
    QTest::addColumn<QString>("told");
    QTest::newRow("one") << QByteArray("https://x.example/") << u"https://x.example/"_s;
    QTest::newRow("of another computer")
        << QByteArray("file://elsewhere.example/a\r\nx") << u"file://elsewhere.example/a\nx"_s;
    QTest::newRow("many") << QByteArray("a:\r\nb:\r\nc:\r\nd:\r\ne:\r\nf:\r\ng:")
                          << u"a:\nb:\nc:\nd:\ne:\n…"_s;
    QTest::newRow("long") << "a:" + QByteArray(1'000'000, 'b') << u"a:"_s + QString(58, u'b') + u'…';
}

/// After the files that came with it are open.
void RequestedFilesTest::whatIsNoFileHereIsTold()
{
    QFETCH(QByteArray, addresses);
    QFETCH(QString, told);
    const QByteArray file = m_files->write(u"a.txt"_s, "a").toUtf8();
    const NoTimeToRead noTime;
    MessageBoxes boxes;
    QVERIFY(dropAddresses(*editor().viewport(), addresses + "\r\nfile://" + file));
    QTRY_COMPARE(boxes.count(), 1);
    QCOMPARE(openFiles(), u"a.txt"_s);
    // The box may break a long word anywhere.
    QString text = boxes.texts().constFirst();
    QCOMPARE(text.remove(QChar(0x200B)),
        u"Error|Only files of this computer can be opened. These are none:\n"_s + told);
}

void RequestedFilesTest::otherThingsAreNotDropped()
{
    QVERIFY(!dropAddresses(*m_window, "https://x.example/a.txt\r\n"));
    QVERIFY(!dropAddresses(*m_window, "file://elsewhere.example/a.txt\r\n"));
    QMimeData nothing;
    QVERIFY(!drop(*m_window, nothing));
}

void RequestedFilesTest::nothingIsDroppedBehindADialog()
{
    const QByteArray address = "file://" + m_files->write(u"a.txt"_s, "a").toUtf8();
    theApplication().holdRequests(true);
    QVERIFY(!dropAddresses(*m_window, address));
    theApplication().holdRequests(false);
    QVERIFY(dropAddresses(*m_window, address));
    QTRY_COMPARE(openFiles(), u"a.txt"_s); // before the next test's files
}

void RequestedFilesTest::textIsStillDropped()
{
    QMimeData text;
    text.setText(u"dropped"_s);
    QVERIFY(drop(*editor().viewport(), text));
    QCOMPARE(editor().text(), u"dropped"_s);
}

/// As a second start does, beside a document that does not give way.
void RequestedFilesTest::requestMany()
{
    QTest::keyClicks(&editor(), u"h"_s);
    for (int number = 1; number <= many; ++number)
        theApplication().request({ m_files->write(numbered(number), "text\n"), From::Shell });
}

/// Until so many of them are open, and not all.
void RequestedFilesTest::makeTurns(int fewestOpen)
{
    while (m_window->tabBar()->count() - 1 < fewestOpen)
        QCoreApplication::processEvents();
    QVERIFY(m_window->tabBar()->count() - 1 < many);
}

void RequestedFilesTest::manyComeInTheirOrder()
{
    QStringList expected{ u"* (new document)"_s };
    for (int number = 1; number <= many; ++number)
        expected << numbered(number);
    requestMany();
    makeTurns(1);
    QVERIFY(areManyOpen());
    QCOMPARE(m_window->tabTexts(), expected);
    QCOMPARE(editor().name(), numbered(many));
    QVERIFY(editor().hasFocus());
}

void RequestedFilesTest::whoeverGoesElsewhereStays()
{
    requestMany();
    makeTurns(1);
    m_window->tabBar()->setCurrentTab(m_window->editorAt(0));
    int changes = 0;
    const QObject here;
    connect(m_window->findChild<DocumentArea *>(), &DocumentArea::currentChanged, &here,
        [&changes] { ++changes; });
    QVERIFY(areManyOpen());
    QCOMPARE(changes, 0);
    QCOMPARE(m_window->currentEditor(), m_window->editorAt(0));
    QCOMPARE(m_window->editorAt(many)->text(), u"text\n"_s);
}

/// A key waits for nothing that is opened in the background.
void RequestedFilesTest::keysElsewhereAreTaken()
{
    requestMany();
    makeTurns(1);
    m_window->tabBar()->setCurrentTab(m_window->editorAt(0));
    editor().setFocus();
    while (!takesKeys())
        QCoreApplication::processEvents();
    QVERIFY(m_window->tabBar()->count() < many);
    QTest::keyClick(m_window->windowHandle(), Qt::Key_X);
    QCOMPARE(m_window->editorAt(0)->text(), u"hx"_s);
    QVERIFY(areManyOpen());
    QCOMPARE(m_window->editorAt(0)->text(), u"hx"_s);
}

void RequestedFilesTest::whoeverComesBackIsTakenAlong()
{
    requestMany();
    makeTurns(1);
    ctlEditer *const last = m_window->currentEditor();
    m_window->tabBar()->setCurrentTab(m_window->editorAt(0));
    makeTurns(m_window->tabBar()->count());
    m_window->tabBar()->setCurrentTab(last);
    QVERIFY(areManyOpen());
    QCOMPARE(editor().name(), numbered(many));
}

void RequestedFilesTest::nextFilesAreShownAgain()
{
    requestMany();
    makeTurns(1);
    m_window->tabBar()->setCurrentTab(m_window->editorAt(0));
    QVERIFY(areManyOpen());
    theApplication().request({ m_files->folder() + numbered(7), From::Shell });
    QTRY_COMPARE(editor().name(), numbered(7));
}

void RequestedFilesTest::keyThatHasToWaitIsToldOf()
{
    const StripInWindow strip(*m_window);
    requestMany();
    makeTurns(1);
    QTest::keyClick(m_window->windowHandle(), Qt::Key_X);
    QVERIFY(strip.text().startsWith(u"Not while files are being opened"_s));
    QVERIFY(areManyOpen());
    QCOMPARE(openFiles().count(u'*'), 1);
    QVERIFY(!strip.isShown());
}

/// The files that come then leave the keys there.
void RequestedFilesTest::keysLeadToTheSignThatStopsThem()
{
    const StripInWindow strip(*m_window);
    requestMany();
    makeTurns(1);
    QTest::keyClick(m_window->windowHandle(), Qt::Key_X); // at once shown then
    QTest::keyClick(m_window->windowHandle(), Qt::Key_F6);
    QVERIFY(strip.widget().hasKeys());
    const ctlEditer *const shown = m_window->currentEditor();
    makeTurns(m_window->tabBar()->count());
    QVERIFY(strip.widget().hasKeys());
    while (QPEApplication::hasRequests()) { // keys still wait for what was opened last
        QTest::keyClick(m_window->windowHandle(), Qt::Key_Escape);
        QCoreApplication::processEvents();
    }
    QVERIFY(m_window->tabBar()->count() <= many);
    QVERIFY(!strip.isShown());
    QCOMPARE(m_window->currentEditor(), shown);
    QVERIFY(shown->hasFocus());
}

namespace {

int runRequestedFilesTest(int argc, char **argv)
{
    QPEApplicationEsc app(argc, argv);
    RequestedFilesTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runRequestedFilesTest)
#include "requestedfiles_test.moc"
