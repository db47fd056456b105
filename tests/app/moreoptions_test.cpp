#include "editor/noticestrip.h"
#include "recovery/journalfolder.h"
#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;

/// What was added to the handheld's program is switched on and off in the window.
class MoreOptionsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_window.reset(); }

    void openFromATab();
    void openFromTheStrip();
    void cancelledOnesAreNotApplied();
    void keysOfOtherProgramsMayBeOff();
    void noticesMayBeOff();
    void recoveryMayBeOff();
    void recoveryIsTurnedForOpenDocuments();

private:
    /// Has the dialog turn this setting.
    void turn(int MoreSettings::*setting)
    {
        m_window->moreOptions = [this, setting] {
            ++m_asked;
            moreSettings().*setting = 1 - moreSettings().*setting;
            return true;
        };
    }
    static void askForMenu(QWidget *widget, QPoint place)
    {
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, widget->mapToGlobal(place));
        QApplication::sendEvent(widget, &event);
    }
    /// Chooses the last item of the menu that is open.
    static bool chooseLast()
    {
        auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        if (!menu)
            return false;
        QAction *const last = menu->actions().constLast();
        menu->close();
        last->trigger();
        return last->text() == u"&More options";
    }
    NoticeStrip *strip() const { return m_window->findChild<NoticeStrip *>(); }

    TestFiles m_files;
    std::unique_ptr<TestWindow> m_window;
    int m_asked = 0;
};

void MoreOptionsTest::init()
{
    resetSettings();
    m_asked = 0;
    m_window = std::make_unique<TestWindow>();
    QVERIFY(m_window->open());
}

void MoreOptionsTest::openFromATab()
{
    turn(&MoreSettings::TabsByMouse);
    QVERIFY(m_window->tabBar()->isMovable());
    askForMenu(m_window->tabBar(), m_window->tabBar()->tabRect(0).center());
    QVERIFY(chooseLast());
    QCOMPARE(m_asked, 1);
    QVERIFY(!m_window->tabBar()->isMovable());
}

void MoreOptionsTest::openFromTheStrip()
{
    m_window->setDocument(m_files.write(u"a.txt"_s, "a\r\nb\n"));
    QTRY_VERIFY(strip()->isVisible());
    turn(&MoreSettings::NoticesOfText);
    askForMenu(strip(), QPoint(3, 3));
    QVERIFY(chooseLast());
    QCOMPARE(m_asked, 1);
    QVERIFY(!strip()->isVisible());
}

void MoreOptionsTest::cancelledOnesAreNotApplied()
{
    m_window->moreOptions = [] {
        moreSettings().TabsByMouse = 0;
        return false;
    };
    m_window->slotEtcMoreOptions();
    QVERIFY(m_window->tabBar()->isMovable());
}

void MoreOptionsTest::keysOfOtherProgramsMayBeOff()
{
    moreSettings().KnownKeys = 0;
    const MessageBoxes boxes;
    QTest::keyClick(m_window->currentEditor(), Qt::Key_T, Qt::ControlModifier);
    QTest::keyClick(m_window->currentEditor(), Qt::Key_F10);
    QTest::keyClick(m_window->currentEditor(), Qt::Key_Plus, Qt::ControlModifier);
    QCOMPARE(m_window->tabBar()->count(), 1);
    QCOMPARE(boxes.count(), 0);
    QCOMPARE(appSettings().FontSize, AppSettings().FontSize);
    QTest::keyClick(m_window->currentEditor(), Qt::Key_A);
    QTest::keyClick(m_window->currentEditor(), Qt::Key_Z, Qt::ControlModifier); // the handheld's stay
    QCOMPARE(m_window->currentEditor()->text(), QString());
}

void MoreOptionsTest::noticesMayBeOff()
{
    moreSettings().NoticesOfText = 0;
    m_window->setDocument(m_files.write(u"a.txt"_s, "a\r\nb\n"));
    settle();
    QVERIFY(!strip()->isVisible());
    turn(&MoreSettings::NoticesOfText);
    m_window->slotEtcMoreOptions();
    QTRY_VERIFY(strip()->isVisible()); // what there was to be told meanwhile
}

void MoreOptionsTest::recoveryMayBeOff()
{
    moreSettings().KeepTexts = 0;
    m_window->slotCmdFileNew();
    QTest::keyClicks(m_window->currentEditor(), u"not kept"_s);
    const QString folder = QFile::decodeName(journalFolder());
    m_window->endSession(false);
    QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList());
    moreSettings().KeepTexts = 1;
    m_window->slotCmdFileNew();
    QTest::keyClicks(m_window->currentEditor(), u"kept"_s);
    m_window->endSession(false);
    QCOMPARE(QDir(folder).entryList(QDir::Files).size(), 1);
    const MessageBoxes boxes({ u"No"_s, u"No"_s });
    m_window->confirmCloseAll(false);
}

/// What is edited already too.
void MoreOptionsTest::recoveryIsTurnedForOpenDocuments()
{
    const QDir folder(QFile::decodeName(journalFolder()));
    const auto journals = [&folder] { return folder.entryList(QDir::Files).size(); };
    turn(&MoreSettings::KeepTexts);
    m_window->slotEtcMoreOptions();
    QTest::keyClicks(m_window->currentEditor(), u"typed while it was off"_s);
    m_window->endSession(false);
    QCOMPARE(journals(), 0);

    m_window->slotEtcMoreOptions();
    m_window->endSession(false);
    QCOMPARE(journals(), 1);

    m_window->slotEtcMoreOptions();
    m_window->endSession(false);
    QTRY_COMPARE(journals(), 0);
    moreSettings().KeepTexts = 1;
    const MessageBoxes boxes({ u"No"_s });
    m_window->confirmCloseAll(false);
}

REGISTER_TEST(runWindowTest<MoreOptionsTest>)
#include "moreoptions_test.moc"
