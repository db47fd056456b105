#include "app/largestdialog.h"
#include "app/translation.h"
#include "editor/readfailurebox.h"
#include "files/filecalls.h"
#include "platform/messagebox.h"
#include "tests/app/forms.h"
#include "tests/app/testwindow.h"
#include "tests/filedialog/formtest.h"
#include "tests/testprogram.h"
#include "tests/textfit.h"

#include <QComboBox>
#include <QLayout>
#include <QLineEdit>
#include <QScreen>
#include <QSet>
#include <QTemporaryFile>

#include <cerrno>
#include <functional>
#include <limits>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *smallScreenSetup =
    R"({"screens": [{"name": "small", "x": 0, "y": 0, "width": 240, "height": 320,
    "logicalDpi": 72, "logicalBaseDpi": 72, "dpr": 1}]})";
constexpr const char *vgaScreenSetup =
    R"({"screens": [{"name": "VGA", "x": 0, "y": 0, "width": 480, "height": 640,
    "logicalDpi": 72, "logicalBaseDpi": 72, "dpr": 1}]})";

/// The platform has one screen, of the class that the environment asks for.
bool isVgaRun()
{
    return qEnvironmentVariable("SCREEN_CLASS") == u"VGA";
}

/// But About, which has names and numbers only.
bool isJapanese(const QString &text)
{
    static const QRegularExpression kana(u"[\\x{3040}-\\x{30ff}]"_s);
    return kana.match(text).hasMatch() || text.startsWith(u"Marlo!Pad QT Ver");
}

bool isWithin(const QSize &size, const QSize &room)
{
    return size.boundedTo(room) == size;
}

QString textOf(const QRect &place)
{
    return u"%1 x %2 at %3, %4"_s.arg(place.width()).arg(place.height()).arg(place.x()).arg(place.y());
}

/// With MARLOPAD_PICTURES a folder: a picture of the window.
void savePicture(QWidget &window, const QString &name)
{
    const QString folder = qEnvironmentVariable("MARLOPAD_PICTURES");
    const QString file = window.screen()->name() + u'-' + QString(name).replace(u' ', u'_').remove(u',');
    if (!folder.isEmpty())
        window.grab().save(folder + u'/' + file + u".png"_s);
}

/// Looks at every message box that appears while it lives, and closes it.
class BoxInspector : public QObject {
public:
    BoxInspector() { qApp->installEventFilter(this); }

    QString name; ///< of the box that comes next
    QStringList faults;
    QSet<QString> seen; ///< title and text of each box

    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *box = qobject_cast<QMessageBox *>(object);
        if (box && event->type() == QEvent::Show)
            QTimer::singleShot(0, box, [this, box] { inspect(*box); });
        return false;
    }

private:
    void inspect(QMessageBox &box)
    {
        seen << box.windowTitle() + u'\n' + box.text();
        for (const QString &fault : TextFit(box).faults())
            faults << name + u": "_s + fault;
        if (appSettings().Lang == Japanese && !isJapanese(box.text()))
            faults << name + u": "_s + box.text();
        const QSize room = box.screen()->size();
        if (box.width() > room.width() || box.height() > room.height())
            faults << u"%1: %2 x %3"_s.arg(name).arg(box.width()).arg(box.height());
        savePicture(box, QLatin1StringView(QTest::currentDataTag()) + u"-box "_s + name);
        box.buttons().constLast()->click();
    }
};

/// One message box of the program and how a user meets it.
struct Occasion {
    const char *name;
    int boxes; ///< that appear, each with a text of its own
    std::function<void(TestWindow &, const TestFiles &)> meet;
};

/// A field of an options page with a text that is refused.
auto refusedOption(int page, const char *field, const char *text)
{
    return [=](TestWindow &window, const TestFiles &) {
        frmOption options(&window);
        options.show();
        options.findChild<QTabWidget *>()->setCurrentIndex(page);
        options.findChild<QComboBox *>(u"WrapMode"_s)->setCurrentIndex(2);
        const QString name = QLatin1StringView(field);
        auto *combo = options.findChild<QComboBox *>(name);
        (combo ? combo->lineEdit() : options.findChild<QLineEdit *>(name))->setText(QLatin1StringView(text));
        options.accept();
    };
}

auto refusedFile(frmFileDialog::Mode mode, const QString &name)
{
    return [mode, name](TestWindow &window, const TestFiles &files) {
        files.write(u"a.txt"_s, {});
        frmFileDialog dialog(&window, mode, files.folder(), name);
        dialog.show();
        dialog.accept();
    };
}

auto unreadableFile(const FileCalls &calls, const char *path)
{
    return [calls, path](TestWindow &window, const TestFiles &) {
        QByteArray bytes;
        FileStamp stamp;
        if (const auto failure = readFileFrom(QString::fromLatin1(path), 0, bytes, stamp, calls))
            tellReadFailure(&window, *failure);
    };
}

FileCalls withHugeSize()
{
    FileCalls calls = FileCalls::system();
    calls.stat = [](const char *, struct stat *status) {
        status->st_mode = S_IFREG;
        status->st_size = std::numeric_limits<off_t>::max();
        return 0;
    };
    return calls;
}

FileCalls withoutRight()
{
    FileCalls calls = FileCalls::system();
    calls.stat = [](const char *, struct stat *) {
        errno = EACCES;
        return -1;
    };
    return calls;
}

FileCalls withBrokenReading()
{
    FileCalls calls = FileCalls::system();
    calls.pread = [](int, void *, size_t, off_t) -> ssize_t {
        errno = EIO;
        return -1;
    };
    return calls;
}

/// What the save commands tell, which cannot be made to happen from outside.
void tellOfKeptCopy(TestWindow &window, const TestFiles &files)
{
    const QString text = QCoreApplication::translate(
        "ctlEditer", "The file may be damaged. Its old content is kept in the file\n%1");
    MessageBox::critical(&window, QCoreApplication::translate("ctlEditer", "File Write Error"),
        text.arg(files.folder() + u".marlopad-a8Fk21"_s));
}

void saveOverUnread(TestWindow &window, const TestFiles &files)
{
    window.setDocument(files.folder() + u"unread.txt"_s);
    files.write(u"unread.txt"_s, "there by now");
    window.slotCmdFileSave();
}

void saveWhereNothingCanBeKept(TestWindow &window, const TestFiles &files)
{
    const QString file = files.write(u"two names.txt"_s, "old");
    window.setDocument(file);
    if (::link(QFile::encodeName(file).constData(), QFile::encodeName(file + u"2"_s).constData()) != 0)
        qFatal("no second name");
    const QByteArray state = qgetenv("XDG_STATE_HOME");
    qputenv("XDG_STATE_HOME", "/dev/null/some/where");
    window.slotCmdFileSave();
    qputenv("XDG_STATE_HOME", state);
}

void saveBinary(TestWindow &window, const TestFiles &files)
{
    window.setDocument(files.write(u"binary"_s, QByteArray(9, '\0')));
    window.slotCmdFileSave();
}

void openEditedAgain(TestWindow &window, const TestFiles &files)
{
    const QString file = files.write(u"report of 2005.txt"_s, "text");
    window.setDocument(file);
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.setDocument(file);
    window.currentEditor()->setEdited(false);
}

void closeEdited(TestWindow &window, const TestFiles &files)
{
    window.setDocument(files.write(u"report of 2006.txt"_s, "text"));
    QTest::keyClicks(window.currentEditor(), u"x"_s);
    window.slotCmdFileCloseTab();
    window.currentEditor()->setEdited(false);
}

void replaceAll(TestWindow &window, const TestFiles &)
{
    window.slotCmdViewReplace();
    auto *panel = window.findChild<frmSearchDialog *>();
    panel->findText = u"x"_s;
    window.slotEtcReplaceAll();
    panel->hide();
}

void searchNothing(TestWindow &window, const TestFiles &)
{
    frmSearchDialog panel(&window);
    panel.show();
    panel.slotBtnNext();
}

void jumpNowhere(TestWindow &window, const TestFiles &)
{
    frmJumpTo jump(&window);
    jump.show();
    jump.accept();
}

void clearRecent(TestWindow &window, const TestFiles &)
{
    frmOption options(&window);
    options.show();
    options.slotRecentClear();
}

void missTranslations(TestWindow &window, const TestFiles &)
{
    qputenv("QPEDIR", "/nowhere");
    window.slotCmdViewLangJa();
    window.slotCmdViewLangFr();
    qputenv("QPEDIR", BUILT_QPE_DIR);
}

/// As long as a name may be, without a place to break it.
QString longName(QChar letter)
{
    return QString(250, letter) + u".txt"_s;
}

void propertiesOfLongName(TestWindow &window, const TestFiles &files)
{
    window.setDocument(files.write(longName(u'w'), "text"));
    window.slotCmdFileProp();
}

const Occasion occasions[] = {
    { "reload edited", 1, openEditedAgain },
    { "reload", 1, [](TestWindow &window, const TestFiles &) { window.slotCmdFileReload(); } },
    { "close edited", 1, closeEdited },
    { "properties", 1, [](TestWindow &window, const TestFiles &) { window.slotCmdFileProp(); } },
    { "properties of a long name", 1, propertiesOfLongName },
    { "about", 1, [](TestWindow &window, const TestFiles &) { window.slotCmdViewAbout(); } },
    { "no translations", 2, missTranslations },
    { "replaced all", 1, replaceAll },
    { "search nothing", 1, searchNothing },
    { "jump nowhere", 1, jumpNowhere },
    { "clear recent files", 1, clearRecent },
    { "wrap columns no number", 1, refusedOption(0, "WrapLen", "x") },
    { "wrap columns too few", 1, refusedOption(0, "WrapLen", "9") },
    { "font size no number", 1, refusedOption(0, "FontSize", "x") },
    { "font size too large", 1, refusedOption(0, "FontSize", "101") },
    { "tab size no number", 1, refusedOption(1, "TabLen", "x") },
    { "tab size too large", 1, refusedOption(1, "TabLen", "13") },
    { "recent count no number", 1, refusedOption(2, "RecentViewCnt", "x") },
    { "recent count too large", 1, refusedOption(2, "RecentViewCnt", "16") },
    { "no file name", 1, refusedFile(frmFileDialog::Open, {}) },
    { "forbidden file name", 1, refusedFile(frmFileDialog::SaveAs, u"a?.txt"_s) },
    { "open what is not there", 1, refusedFile(frmFileDialog::Open, u"none.txt"_s) },
    { "open a long name that is not there", 1, refusedFile(frmFileDialog::Open, longName(u'x')) },
    { "replace a file", 1, refusedFile(frmFileDialog::SaveAs, u"a.txt"_s) },
    { "forbidden file", 1, unreadableFile(withoutRight(), "/etc/passwd") },
    { "folder", 1, unreadableFile(FileCalls::system(), "/") },
    { "device", 1, unreadableFile(FileCalls::system(), "/dev/null") },
    { "huge file", 1, unreadableFile(withHugeSize(), "/etc/passwd") },
    { "reading breaks off", 1, unreadableFile(withBrokenReading(), "/etc/passwd") },
    { "save nowhere", 1,
        [](TestWindow &window, const TestFiles &) {
            window.slotCmdFileSave(window.currentEditor(), u"/nowhere/"_s, u"a.txt"_s, 3, 2);
        } },
    { "save a binary file", 1, saveBinary },
    { "damaged file", 1, tellOfKeptCopy },
    { "save over an unread file", 2, saveOverUnread },
    { "save where nothing can be kept", 1, saveWhereNothingCanBeKept },
};

} // namespace

/// Every message box and dialog of the program, in every language, on a screen of either class.
class BoxFitTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void everyBoxFits_data();
    void everyBoxFits();
    void everyFormFits_data();
    void everyFormFits();
    void scrolledFormShowsWhatHasTheFocus_data();
    void scrolledFormShowsWhatHasTheFocus();
};

void BoxFitTest::init()
{
    resetSettings();
    qputenv("QPEDIR", BUILT_QPE_DIR);
    if (isVgaRun())
        qputenv("QWS_DISPLAY", "QVFb:Vga:0");
}

void BoxFitTest::everyBoxFits_data()
{
    QTest::addColumn<int>("language");
    for (const auto &[language, name] : languages)
        QTest::newRow(name) << language;
}

void BoxFitTest::everyBoxFits()
{
    failOnWarnings();
    QFETCH(int, language);
    appSettings().Lang = language;
    writeSettings();
    const TestFiles files;
    TestWindow window;
    QVERIFY(window.open());
    BoxInspector inspector;
    for (const Occasion &occasion : occasions) {
        inspector.name = QLatin1StringView(occasion.name);
        const qsizetype before = inspector.seen.size();
        occasion.meet(window, files);
        QVERIFY2(inspector.seen.size() == before + occasion.boxes, occasion.name);
    }
    QCOMPARE(inspector.faults.join(u'\n'), QString());
    for (ctlEditer *editor : window.tabBar()->editors())
        editor->setEdited(false);
}

void BoxFitTest::everyFormFits_data()
{
    QTest::addColumn<int>("language");
    QTest::addColumn<Form>("form");
    for (const auto &[language, languageName] : languages) {
        for (const auto &[form, formName] : forms)
            QTest::addRow("%s, %s", languageName, formName) << language << form;
    }
}

void BoxFitTest::everyFormFits()
{
    failOnWarnings();
    QFETCH(int, language);
    QFETCH(Form, form);
    appSettings().Lang = language;
    writeSettings();
    TestWindow window;
    QVERIFY(window.open());
    const std::unique_ptr<QWidget> dialog = dialogOf(form, &window);
    QWidget &shown = dialog ? *dialog : window;
    shown.show();
    QTRY_COMPARE(TextFit(shown).faults().join(u"; "), QString());
    const QRect place = shown.geometry();
    QVERIFY2(isWithin(place.size(), shown.screen()->size()), qPrintable(textOf(place)));
    const bool isScrolled = dialog && dialog->layout()->count() == 1
        && qobject_cast<QScrollArea *>(dialog->layout()->itemAt(0)->widget());
    if (shown.devicePixelRatioF() == 1) {
        QVERIFY2(!dialog || isWithin(place.size(), largestDialog()), qPrintable(textOf(place)));
        QVERIFY2(!isScrolled, qPrintable(textOf(place)));
    }
    savePicture(shown, QLatin1StringView(QTest::currentDataTag()));
}

void BoxFitTest::scrolledFormShowsWhatHasTheFocus_data()
{
    everyFormFits_data();
}

void BoxFitTest::scrolledFormShowsWhatHasTheFocus()
{
    QFETCH(int, language);
    QFETCH(Form, form);
    appSettings().Lang = language;
    writeSettings();
    TestWindow window;
    QVERIFY(window.open());
    const std::unique_ptr<QWidget> dialog = dialogOf(form, &window);
    QWidget &shown = dialog ? *dialog : window;
    shown.show();
    shown.activateWindow();
    QTRY_VERIFY(shown.isActiveWindow());
    const int bar = QScrollBar(Qt::Vertical).sizeHint().width();
    const QSize bars = bar * QSize(1, 1);
    for (QWidget *control : shown.findChildren<QWidget *>()) {
        const bool canHaveFocus = control->isVisible() && control->isEnabled()
            && control->focusPolicy() & Qt::TabFocus && !control->focusProxy();
        if (!canHaveFocus)
            continue;
        control->setFocus(Qt::TabFocusReason);
        QCOMPARE(QApplication::focusWidget(), control);
        const QRect seen = control->visibleRegion().boundingRect();
        // All of it, or of one that has no room the beginning.
        const QSize room = shown.size() - bars;
        const QRect wanted(QPoint(), control->size().boundedTo(room));
        QVERIFY2(seen.contains(wanted), qPrintable(control->accessibleName() + textOf(seen)));
    }
}

namespace {

int runBoxFitTest(int argc, char **argv)
{
    QTemporaryFile config;
    if (!config.open() || config.write(isVgaRun() ? vgaScreenSetup : smallScreenSetup) < 0 || !config.flush())
        return 1;
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + config.fileName().toUtf8());
    return runFormTest<BoxFitTest>(argc, argv);
}

} // namespace

REGISTER_TEST(runBoxFitTest)
#include "boxfit_test.moc"
