#include "filedialog/ctlfilelistview.h"
#include "filedialog/filelistdelegate.h"
#include "tests/filedialog/formtest.h"
#include "tests/filedialog/testfolder.h"
#include "tests/testprogram.h"

#include <QImage>
#include <QStyle>
#include <QTranslator>

namespace {

/// Sizes have another unit in other languages.
class UnitTranslator : public QTranslator {
public:
    explicit UnitTranslator(const QString &unit)
        : m_unit(unit)
    {
    }
    bool isEmpty() const override { return false; }
    QString translate(const char *, const char *text, const char *, int) const override
    {
        return qstrcmp(text, "%1 KB") == 0 ? QStringLiteral(u"%1\u00a0") + m_unit : QString();
    }

private:
    QString m_unit;
};

} // namespace

/// Pictures and emblems, with pictures of one plain colour each.
class DelegateTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void sizesOfTheScreenClass_data();
    void sizesOfTheScreenClass();
    void paintsEmblems_data();
    void paintsEmblems();
    void showsUndecodableBytes();
    void narrowsNumbersThatDoNotFit_data();
    void narrowsNumbersThatDoNotFit();

private:
    void makePicture(const char *name, QSize size, Qt::GlobalColor color);

    TestFolder m_data;
};

void DelegateTest::initTestCase()
{
    for (const char *name : { "pics", "pics/corvex", "pics/corvex/tree", "pics/corvex/list" })
        m_data.folder(name);
    makePicture("tree/folder1", { 30, 30 }, Qt::gray);
    makePicture("list/fileetc", { 20, 20 }, Qt::yellow);
    makePicture("tree/mark_link", { 9, 9 }, Qt::red);
    makePicture("tree/mark_lock", { 7, 7 }, Qt::green);
    makePicture("tree/mark_exec", { 8, 8 }, Qt::blue);
    qputenv("QPEDIR", m_data.path().toUtf8());
}

void DelegateTest::makePicture(const char *name, QSize size, Qt::GlobalColor color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QVERIFY(image.save(m_data.path((QByteArray("pics/corvex/") + name + ".png").constData())));
}

void DelegateTest::sizesOfTheScreenClass_data()
{
    QTest::addColumn<bool>("vga");
    QTest::newRow("small") << false;
    QTest::newRow("VGA") << true;
}

void DelegateTest::sizesOfTheScreenClass()
{
    QFETCH(bool, vga);
    setScreenClass(vga);
    loadFileIcons();
    QCOMPARE(filePicture(FileIcon::Folder).size, vga ? QSize(30, 30) : QSize(14, 14));
    QCOMPARE(filePicture(FileIcon::Other).size, vga ? QSize(20, 20) : QSize(14, 14));
    QCOMPARE(filePicture(FileIcon::LinkEmblem).size, vga ? QSize(9, 9) : QSize(5, 5));
    QCOMPARE(filePicture(FileIcon::LockEmblem).size, vga ? QSize(7, 7) : QSize(5, 5));
    QCOMPARE(filePicture(FileIcon::ExecEmblem).size, vga ? QSize(8, 8) : QSize(5, 5));
}

void DelegateTest::paintsEmblems_data()
{
    QTest::addColumn<bool>("vga");
    QTest::addColumn<bool>("isLink");
    QTest::addColumn<bool>("isLocked");
    QTest::addColumn<bool>("isExec");
    for (const bool vga : { false, true }) {
        const char *const screen = vga ? "VGA" : "small";
        QTest::addRow("none, %s", screen) << vga << false << false << false;
        QTest::addRow("link, %s", screen) << vga << true << false << false;
        QTest::addRow("lock, %s", screen) << vga << false << true << false;
        QTest::addRow("exec, %s", screen) << vga << false << false << true;
        QTest::addRow("all, %s", screen) << vga << true << true << true;
    }
}

void DelegateTest::paintsEmblems()
{
    failOnWarnings();
    QFETCH(bool, vga);
    QFETCH(bool, isLink);
    QFETCH(bool, isLocked);
    QFETCH(bool, isExec);
    setScreenClass(vga);
    loadFileIcons();
    const TestFolder files;
    const TestFolder shown;
    files.file("file", 0, (isLocked ? 0444 : 0644) | (isExec ? 0100 : 0));
    if (isLink)
        shown.link(files.path("file").toUtf8(), "file");
    ctlFileListView list(nullptr, userSurroundings(), inOneGo());
    list.resize(400, 200);
    list.show();
    list.showFolder(isLink ? shown.path() : files.path());

    const QRect row = list.visualRect(list.rows().index(0, 0));
    const QImage image = list.viewport()->grab().toImage();
    const auto painted = [&](Qt::GlobalColor color) {
        QRect found;
        for (int y = row.top(); y <= row.bottom(); ++y) {
            for (int x = 0; x < list.columnWidth(0); ++x) {
                if (image.pixelColor(x, y) == QColor(color))
                    found |= QRect(x, y, 1, 1);
            }
        }
        return found;
    };
    const QRect icon = painted(Qt::yellow);
    QVERIFY(!icon.isEmpty());
    const int width = filePicture(FileIcon::Other).size.width();
    const int height = row.height();
    const auto expected = [&](bool isThere, FileIcon emblem, bool isRight, bool isBottom) {
        const QSize size = filePicture(emblem).size;
        const QPoint at(isRight ? width - size.width() - 1 : 1, isBottom ? height - size.height() - 1 : 1);
        return isThere ? QRect(at + QPoint(icon.left(), row.top()), size) : QRect();
    };
    QCOMPARE(painted(Qt::red), expected(isLink, FileIcon::LinkEmblem, false, true));
    QCOMPARE(painted(Qt::green), expected(isLocked, FileIcon::LockEmblem, true, false));
    QCOMPARE(painted(Qt::blue), expected(isExec, FileIcon::ExecEmblem, true, true));
}

void DelegateTest::showsUndecodableBytes()
{
    const FileListDelegate delegate;
    QCOMPARE(delegate.displayText(QStringLiteral(u"\xDC83\xDC83.txt"), QLocale::c()),
        QStringLiteral(u"\uFFFD\uFFFD.txt"));
    QCOMPARE(delegate.displayText(QStringLiteral("a\nb"), QLocale::c()), QStringLiteral(u"a\uFFFDb"));
}

void DelegateTest::narrowsNumbersThatDoNotFit_data()
{
    QTest::addColumn<bool>("vga");
    QTest::addColumn<qint64>("kilobytes");
    QTest::addColumn<QString>("unit");
    for (const bool vga : { false, true }) {
        for (const char *const unit : { "KB", "Ko", "kB" }) {
            for (const qint64 kilobytes : { 9LL, 999LL, 1'234LL, 9'999LL, 26'368LL, 99'999LL, 999'999LL })
                QTest::addRow("%lld %s, %s", kilobytes, unit, vga ? "VGA" : "small")
                    << vga << kilobytes << QString::fromLatin1(unit);
        }
    }
}

void DelegateTest::narrowsNumbersThatDoNotFit()
{
    /// What the style is given to paint.
    struct Probe : FileListDelegate {
        QStyleOptionViewItem optionOf(const ctlFileListView &list, const QModelIndex &index) const
        {
            QStyleOptionViewItem option;
            option.initFrom(&list);
            option.widget = &list;
            option.rect = list.visualRect(index);
            option.font = list.font();
            initStyleOption(&option, index);
            return option;
        }
    };
    QFETCH(bool, vga);
    QFETCH(qint64, kilobytes);
    QFETCH(QString, unit);
    UnitTranslator translator(unit);
    QCoreApplication::installTranslator(&translator);
    setScreenClass(vga);
    loadFileIcons();
    const TestFolder files;
    files.file("file", kilobytes * 1024);
    ctlFileListView list(nullptr, userSurroundings(), inOneGo());
    list.resize(600, 200);
    list.show();
    list.showFolder(files.path());
    for (const int column : { 1, 2 }) {
        const QModelIndex index = list.model()->index(0, column);
        const QStyleOptionViewItem option = Probe().optionOf(list, index);
        const int margin = list.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, &option, &list) + 1;
        const int room = option.rect.width() - 2 * margin;
        // A part of a pixel too much, and the style cuts the end off.
        QVERIFY(QFontMetricsF(option.font).horizontalAdvance(option.text) <= room);
        QCOMPARE(option.font.stretch() < QFont::Unstretched && option.font.stretch() > 0,
            QFontMetricsF(list.font()).horizontalAdvance(option.text) > room);
    }
}

REGISTER_TEST(runFormTest<DelegateTest>)
#include "filelistdelegate_test.moc"
