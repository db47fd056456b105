#include "codec/charcode.h"
#include "codec/textcodec.h"
#include "document/lineends.h"
#include "search/frmreplaceprogress.h"
#include "search/frmsearchdialog.h"
#include "tests/app/stayingapplication.h"
#include "tests/app/testwindow.h"
#include "tests/codec/shorttexts.h"
#include "tests/jobs/steppedrunner.h"
#include "tests/testprogram.h"

#include <QClipboard>
#include <QMessageBox>
#include <QPushButton>
#include <QRandomGenerator>
#include <QStackedWidget>
#include <QTimer>

#include <memory>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

/// Answers every message box by one of its buttons, or by Escape, and hurries or stops some replace-all runs.
class RandomAnswers : public QObject {
public:
    explicit RandomAnswers(QRandomGenerator &random)
        : m_random(random)
    {
        qApp->installEventFilter(this);
    }
    int count() const { return m_count; }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() != QEvent::Show)
            return false;
        if (auto *box = qobject_cast<QMessageBox *>(object))
            QTimer::singleShot(0, box, [this, box] { answer(box); });
        if (auto *progress = qobject_cast<frmReplaceProgress *>(object))
            QTimer::singleShot(0, progress, [this, progress] { disturb(progress); });
        return false;
    }

private:
    void disturb(frmReplaceProgress *progress)
    {
        if (m_random.bounded(3) == 0)
            progress->slotClickHiSpeed();
        if (m_random.bounded(3) == 0)
            progress->close();
    }
    void answer(QMessageBox *box)
    {
        ++m_count;
        const QList<QAbstractButton *> buttons = box->buttons();
        const int choice = m_random.bounded(int(buttons.size()) + (box->escapeButton() ? 1 : 0));
        if (choice < buttons.size())
            buttons.at(choice)->click();
        else
            QTest::keyClick(box, Qt::Key_Escape);
    }

    NoTimeToRead m_noTimeToRead;
    QRandomGenerator &m_random;
    int m_count = 0;
};

QPEApplication *application()
{
    return static_cast<QPEApplication *>(qApp);
}

/// The text that a file's bytes are in the code and with the line ends of a document.
QString decoded(QByteArray bytes, const ctlEditer &editor)
{
    normalizeLineEnds(bytes, ReturnCode(editor.returnCode()));
    return decoded(codecToRead(CharCode(editor.charCode()), bytes), bytes);
}

} // namespace

/// Opening, editing, replacing, saving as other codes, reloading, closing, switching and ending in any order,
/// every question answered by chance; also while files are read and written by jobs, whose steps come by
/// chance.
class AnyOrderTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void holdsInAnyOrder_data();
    void holdsInAnyOrder();

private:
    using Step = void (AnyOrderTest::*)();

    void restart();
    void makeStepByChance();
    void makeAllSteps();
    void act();
    void check();
    void checkEditor(const ctlEditer *editor);
    void checkRows(const ctlEditer *editor);
    ctlEditer *current() const { return m_window->currentEditor(); }
    int below(int limit) { return int(m_random.bounded(limit)); }
    QString anyFile();
    bool isFileOfItsOwn(const QString &name) const;
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {});

    void openFile();
    void openMissingFile();
    void openByCommand();
    void openRecent();
    void type();
    void pressEditKey();
    void pressCommandKey();
    void saveAs();
    void replaceAll();
    void search();
    void showProperties();
    void reload();
    void changeOutside();
    void changeLook();
    void chooseTab();
    void closeTab();
    void request();
    void quit();
    void endSession();

    QRandomGenerator m_random;
    std::unique_ptr<TestFiles> m_files;
    bool m_isByJobs = false; ///< what can be done behind the window is
    SteppedRunner *m_runner = nullptr; ///< the window's
    QRandomGenerator m_pace; ///< of the jobs' steps
    QTimer m_stepping; ///< while a command is carried out, which may wait for a job
    std::unique_ptr<TestWindow> m_window;
    QStringList m_names; ///< of the files there are
    QStringList m_changedOutside; ///< no document needs to have their content
};

void AnyOrderTest::initTestCase()
{
    m_stepping.callOnTimeout(this, &AnyOrderTest::makeStepByChance);
}

void AnyOrderTest::init()
{
    resetSettings();
    QApplication::clipboard()->setText(u"pasted あ\n"_s);
    m_files = std::make_unique<TestFiles>();
    m_names.clear();
    m_changedOutside.clear();
    for (int i = 0; i < 6; ++i) {
        m_names << u"file%1.txt"_s.arg(i);
        m_files->write(m_names.constLast(), QByteArray("line of text\n").repeated(i));
    }
}

void AnyOrderTest::restart()
{
    m_window.reset();
    m_runner = nullptr;
    WindowJobs jobs;
    if (m_isByJobs) {
        auto runner = std::make_unique<SteppedRunner>();
        m_runner = runner.get();
        jobs = { std::move(runner), 1 };
    }
    m_window = std::make_unique<TestWindow>(std::move(jobs));
    application()->showMainWidget(m_window.get());
    QVERIFY(m_window->open());
}

/// The documents may be told of it in the middle of a command that asks or waits.
void AnyOrderTest::makeStepByChance()
{
    if (m_runner && m_pace.bounded(3) == 0)
        m_runner->step();
}

void AnyOrderTest::makeAllSteps()
{
    do {
        while (m_runner && m_runner->step()) { }
        settle();
    } while (m_runner && !m_runner->isIdle());
}

/// What is still being written has no file yet: a document of its name would be of a missing one.
QString AnyOrderTest::anyFile()
{
    QStringList there = m_names;
    if (m_isByJobs)
        there.removeIf([this](const QString &name) { return !QFile::exists(m_files->folder() + name); });
    return there.at(below(int(there.size())));
}

void AnyOrderTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QWidget *focus = QApplication::focusWidget();
    QTest::keyClick(focus ? focus : m_window.get(), key, modifiers);
}

void AnyOrderTest::openFile()
{
    m_window->setDocument(m_files->folder() + anyFile());
}

void AnyOrderTest::openMissingFile()
{
    m_window->setDocument(m_files->folder() + u"missing%1.txt"_s.arg(below(3)));
}

void AnyOrderTest::openByCommand()
{
    if (below(4) != 0)
        m_window->choices << FileChoice{ m_files->folder(), anyFile() };
    press(Qt::Key_O, Qt::ControlModifier);
}

void AnyOrderTest::openRecent()
{
    m_window->slotCmdMnuRecent(below(22) - 1);
}

void AnyOrderTest::type()
{
    for (int count = 1 + below(8); count > 0; --count)
        press(Qt::Key(Qt::Key_A + below(26)));
    if (current() && current()->store().length() > 1000) {
        current()->selectAll();
        press(Qt::Key_Delete);
    }
}

void AnyOrderTest::pressEditKey()
{
    static constexpr Qt::Key keys[] = { Qt::Key_Return, Qt::Key_Tab, Qt::Key_Backspace, Qt::Key_Delete,
        Qt::Key_Up, Qt::Key_Down, Qt::Key_End, Qt::Key_Home };
    press(keys[below(int(std::size(keys)))], below(4) == 0 ? Qt::ShiftModifier : Qt::NoModifier);
}

void AnyOrderTest::pressCommandKey()
{
    static constexpr Qt::Key keys[] = { Qt::Key_Z, Qt::Key_Z, Qt::Key_Z, Qt::Key_X, Qt::Key_C, Qt::Key_V,
        Qt::Key_A, Qt::Key_S, Qt::Key_Tab };
    press(keys[below(int(std::size(keys)))], Qt::ControlModifier);
    if (below(4) == 0)
        m_window->item(EditCommand::Redo)->trigger();
    if (below(8) == 0)
        m_window->slotCmdFileSaveAll();
    if (below(12) == 0)
        m_window->applySettings();
}

void AnyOrderTest::saveAs()
{
    if (below(4) != 0) {
        m_names << u"new%1.txt"_s.arg(m_names.size());
        m_window->choices << FileChoice{ m_files->folder(), m_names.constLast(),
            CharCode(int(CharCode::Utf8) + below(int(CharCode::Jis) - int(CharCode::Utf8) + 1)),
            requestedReturnCode(below(int(ReturnCode::Lf) + 1)) };
    }
    m_window->slotCmdFileSaveAs();
}

void AnyOrderTest::replaceAll()
{
    const QStringList texts{ u"e"_s, u"あ"_s, u"\n"_s, u"text"_s, u"ab"_s, QString() };
    m_window->slotCmdViewReplace();
    auto *panel = m_window->findChild<frmSearchDialog *>();
    panel->findText = texts.at(below(4));
    panel->replaceText = texts.at(below(int(texts.size())));
    panel->caseSensitive = below(2) == 0;
    m_window->slotEtcReplaceAll();
}

void AnyOrderTest::search()
{
    const QStringList texts{ u"e"_s, u"あ"_s, u"text"_s, u"a"_s };
    m_window->slotCmdViewSearch();
    auto *panel = m_window->findChild<frmSearchDialog *>();
    panel->searchMode = below(2);
    panel->findText = texts.at(below(int(texts.size())));
    panel->replaceText = u"あb"_s;
    panel->caseSensitive = below(2) == 0;
    panel->hide();
    m_window->activateWindow();
    if (below(2) == 0)
        m_window->slotEtcSearchNext();
    else
        m_window->slotEtcSearchBefo();
    if (below(4) == 0)
        m_window->slotCmdViewSrchNext();
}

void AnyOrderTest::showProperties()
{
    m_window->slotCmdFileProp();
}

void AnyOrderTest::reload()
{
    m_window->slotCmdFileReload();
}

void AnyOrderTest::changeOutside()
{
    const QString name = anyFile();
    m_changedOutside << name;
    m_files->write(name, QByteArray("changed outside\n").repeated(below(4)));
}

/// Of what is being read or edited behind the window too.
void AnyOrderTest::changeLook()
{
    AppSettings &settings = appSettings();
    switch (below(3)) {
    case 0:
        settings.FontSize = AppSettings::smallestFontSize + below(12);
        break;
    case 1:
        settings.TabLen = 1 + below(12);
        break;
    default:
        settings.WrapMode = below(3);
        settings.WrapLen = 2 + below(20);
        break;
    }
    m_window->applySettings();
}

void AnyOrderTest::chooseTab()
{
    if (m_window->tabBar()->count() > 0)
        m_window->tabBar()->setCurrentIndex(below(m_window->tabBar()->count()));
}

void AnyOrderTest::closeTab()
{
    press(Qt::Key_Escape);
}

/// Taken when the event loop comes to it, which may be in another step. A program that ends at once gives up
/// what is being written, and nobody is told any more.
void AnyOrderTest::request()
{
    if (below(8) != 0) {
        application()->request(m_files->folder() + anyFile());
        return;
    }
    application()->endAtOnce();
    if (m_isByJobs)
        restart();
}

void AnyOrderTest::quit()
{
    if (below(2) == 0)
        m_window->slotCmdFileQuitSave();
    else
        m_window->close();
}

/// The session manager asks to save, and gives the order to end some time later, or never.
void AnyOrderTest::endSession()
{
    if (below(2) == 0)
        m_window->endSession(below(4) != 0);
    else {
        emit application()->sessionEnded();
        m_window->close();
    }
}

void AnyOrderTest::act()
{
    static constexpr struct {
        int weight;
        Step step;
    } steps[] = { { 10, &AnyOrderTest::openFile }, { 2, &AnyOrderTest::openMissingFile },
        { 5, &AnyOrderTest::openByCommand }, { 5, &AnyOrderTest::openRecent }, { 25, &AnyOrderTest::type },
        { 20, &AnyOrderTest::pressEditKey }, { 30, &AnyOrderTest::pressCommandKey },
        { 4, &AnyOrderTest::saveAs }, { 4, &AnyOrderTest::replaceAll }, { 6, &AnyOrderTest::search },
        { 3, &AnyOrderTest::showProperties }, { 4, &AnyOrderTest::reload }, { 3, &AnyOrderTest::request },
        { 2, &AnyOrderTest::endSession }, { 2, &AnyOrderTest::changeOutside },
        { 5, &AnyOrderTest::changeLook }, { 8, &AnyOrderTest::chooseTab }, { 8, &AnyOrderTest::closeTab },
        { 1, &AnyOrderTest::quit } };
    int choice = below(std::accumulate(
        std::begin(steps), std::end(steps), 0, [](int sum, const auto &step) { return sum + step.weight; }));
    const auto *step = std::begin(steps);
    for (; choice >= step->weight; ++step)
        choice -= step->weight;
    m_window->choices.clear();
    if (m_isByJobs)
        m_stepping.start(0);
    (this->*step->step)();
    if (below(3) == 0)
        QCoreApplication::processEvents();
    m_stepping.stop();
    if (!m_window->isVisible())
        restart();
}

void AnyOrderTest::check()
{
    const QList<ctlEditer *> editors = m_window->tabBar()->editors();
    QCOMPARE(m_window->findChild<QStackedWidget *>()->count(), editors.size());
    QCOMPARE(current(),
        editors.isEmpty() ? nullptr : m_window->tabBar()->editorOf(m_window->tabBar()->currentTab()));
    if (!current() || !current()->document().isHeld()) // what is held refuses Undo
        QCOMPARE(m_window->isItemEnabled(EditCommand::Undo), current() && current()->history().canUndo());
    for (const ctlEditer *editor : editors) {
        checkEditor(editor);
        if (QTest::currentTestFailed())
            return;
    }
}

bool AnyOrderTest::isFileOfItsOwn(const QString &name) const
{
    return !m_changedOutside.contains(name) && QFile::exists(m_files->folder() + name);
}

/// The star in the tab is there exactly while there is something to undo; without it the text is the file's.
/// While it is held it has a part of the text, or the code that the file is going to have.
void AnyOrderTest::checkEditor(const ctlEditer *editor)
{
    const int index = int(m_window->tabBar()->editors().indexOf(editor));
    if (editor->name().startsWith(u"kept-")) // a text of no file, to be saved without having been edited
        QVERIFY(editor->edited() || !editor->history().canUndo());
    else
        QCOMPARE(editor->edited(), editor->history().canUndo());
    QCOMPARE(m_window->tabBar()->tabText(index).startsWith(u"* "), editor->edited());
    if (editor->edited() || editor->document().isHeld())
        return;
    if (editor->path().isEmpty())
        QCOMPARE(editor->text(), QString());
    else if (isFileOfItsOwn(editor->name()))
        QCOMPARE(editor->text(), decoded(m_files->read(editor->name()), *editor));
}

/// They are those of the look it has now.
void AnyOrderTest::checkRows(const ctlEditer *editor)
{
    TextStore::Builder fresh(editor->layoutRule());
    fresh.append(editor->text());
    QCOMPARE(editor->numLines(), fresh.finish().rowCount());
    editor->store().checkInvariants();
}

void AnyOrderTest::holdsInAnyOrder_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<bool>("isByJobs");
    const quint32 first = qMax(1u, quint32(qEnvironmentVariableIntValue("SEED")));
    for (quint32 seed = first; seed < first + 6; ++seed) {
        QTest::addRow("seed %u", seed) << seed << false;
        if (seed < first + 3)
            QTest::addRow("seed %u, by jobs", seed) << seed << true;
    }
}

void AnyOrderTest::holdsInAnyOrder()
{
    QFETCH(quint32, seed);
    QFETCH(bool, isByJobs);
    const int stepCount = isByJobs ? 400 : 800;
    m_isByJobs = isByJobs;
    m_random.seed(seed);
    RandomAnswers answers(m_random);
    m_pace.seed(seed);
    restart();
    for (int step = 0; step < stepCount; ++step) {
        act();
        check();
        for (int steps = isByJobs ? below(4) : 0; steps > 0; --steps)
            makeStepByChance();
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(u"in step %1"_s.arg(step)));
    }
    makeAllSteps();
    QVERIFY(std::ranges::none_of(
        m_window->tabBar()->editors(), [](const ctlEditer *editor) { return editor->document().isHeld(); }));
    check();
    for (const ctlEditer *const editor : m_window->tabBar()->editors())
        checkRows(editor);
    QVERIFY(answers.count() > 0);
    m_window.reset();
}

REGISTER_TEST(runStayingTest<AnyOrderTest>)
#include "anyorder_test.moc"
