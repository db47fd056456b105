#include "app/filedrops.h"
#include "tests/app/requestscene.h"

#include <QDropEvent>
#include <QMimeData>
#include <QRubberBand>

#include <functional>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

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

/// Files that are dropped on the window, from a file manager or the like.
class DroppedFilesTest : public QObject, private RequestScene {
    Q_OBJECT

private slots:
    void init() { beginScene(); }
    void cleanup() { m_window.reset(); }

    void filesAreDropped_data();
    void filesAreDropped();
    void namesOfAnyBytesAreDropped();
    void folderOffersItsFiles_data();
    void folderOffersItsFiles();
    void windowIsMarkedWhileFilesAreHeld();
    void whatIsNoFileHereIsTold_data();
    void whatIsNoFileHereIsTold();
    void otherThingsAreNotDropped();
    void nothingIsDroppedBehindADialog();
    void textIsStillDropped();
};

void DroppedFilesTest::filesAreDropped_data()
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

void DroppedFilesTest::filesAreDropped()
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

void DroppedFilesTest::namesOfAnyBytesAreDropped()
{
    const QByteArray name = QFile::encodeName(m_files->folder()) + "\203e.txt";
    const int file = ::open(name.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    QCOMPARE(::write(file, "x", 1), 1);
    ::close(file);
    QVERIFY(dropAddresses(*editor().viewport(), "file://" + name.toPercentEncoding("/") + "\r\n"));
    QTRY_COMPARE(editor().text(), u"x"_s);
    QCOMPARE(editor().name(), QChar(0xDC83) + u"e.txt"_s);
}

void DroppedFilesTest::folderOffersItsFiles_data()
{
    QTest::addColumn<std::function<bool(TestWindow &, const QString &)>>("give");
    const auto row = [](const char *name, const std::function<bool(TestWindow &, const QString &)> &give) {
        QTest::newRow(name) << give;
    };
    row("dropped", [](TestWindow &window, const QString &folder) {
        return dropAddresses(*window.currentEditor()->viewport(), "file://" + folder.toUtf8());
    });
    row("from the shell", [](TestWindow &, const QString &folder) {
        theApplication().request({ folder, FileRequest::From::Shell });
        return true;
    });
}

void DroppedFilesTest::folderOffersItsFiles()
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

void DroppedFilesTest::windowIsMarkedWhileFilesAreHeld()
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

void DroppedFilesTest::whatIsNoFileHereIsTold_data()
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
void DroppedFilesTest::whatIsNoFileHereIsTold()
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

void DroppedFilesTest::otherThingsAreNotDropped()
{
    QVERIFY(!dropAddresses(*m_window, "https://x.example/a.txt\r\n"));
    QVERIFY(!dropAddresses(*m_window, "file://elsewhere.example/a.txt\r\n"));
    QMimeData nothing;
    QVERIFY(!drop(*m_window, nothing));
}

void DroppedFilesTest::nothingIsDroppedBehindADialog()
{
    const QByteArray address = "file://" + m_files->write(u"a.txt"_s, "a").toUtf8();
    theApplication().holdRequests(true);
    QVERIFY(!dropAddresses(*m_window, address));
    theApplication().holdRequests(false);
    QVERIFY(dropAddresses(*m_window, address));
    QTRY_COMPARE(openFiles(), u"a.txt"_s); // before the next test's files
}

void DroppedFilesTest::textIsStillDropped()
{
    QMimeData text;
    text.setText(u"dropped"_s);
    QVERIFY(drop(*editor().viewport(), text));
    QCOMPARE(editor().text(), u"dropped"_s);
}

REGISTER_TEST(runRequestTest<DroppedFilesTest>)
#include "droppedfiles_test.moc"
