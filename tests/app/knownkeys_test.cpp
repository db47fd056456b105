#include "tests/app/testwindow.h"
#include "tests/testprogram.h"

#include <QDialog>
#include <QTimer>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

/// Keys that other programs have, where they do more than a menu's item.
class KnownKeysTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_window.reset(); }

    void textSize_data();
    void textSize();
    void textSizeEditsNothing();
    void textSizeByWheel();
    void wheelAloneScrolls();
    void tabsByPageKeys();
    void saveAsByKeys();
    void menusOpen();
    void fullScreen();
    void guideIsShown();

private:
    void press(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(m_window->currentEditor(), Qt::Key(key), modifiers);
    }

    void turnWheel(int angle, Qt::KeyboardModifiers modifiers) const;

    std::unique_ptr<TestWindow> m_window;
};

void KnownKeysTest::init()
{
    resetSettings();
    m_window = std::make_unique<TestWindow>();
    QVERIFY(m_window->open());
}

void KnownKeysTest::textSize_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("after");
    QTest::newRow("larger") << 18 << int(Qt::Key_Plus) << 19;
    QTest::newRow("smaller") << 18 << int(Qt::Key_Minus) << 17;
    QTest::newRow("as usual") << 30 << int(Qt::Key_0) << 18;
    QTest::newRow("the largest") << 100 << int(Qt::Key_Plus) << 100;
    QTest::newRow("the smallest") << 10 << int(Qt::Key_Minus) << 10;
}

void KnownKeysTest::textSize()
{
    QFETCH(int, before);
    QFETCH(int, key);
    QFETCH(int, after);
    appSettings().FontSize = before;
    m_window->applySettings();
    m_window->slotCmdFileNew();
    press(key, Qt::ControlModifier);
    QCOMPARE(appSettings().FontSize, after);
    for (const ctlEditer *editor : m_window->tabBar()->editors())
        QCOMPARE(editor->font().pointSize(), after);
}

void KnownKeysTest::textSizeEditsNothing()
{
    press(Qt::Key_Plus, Qt::ControlModifier);
    QCOMPARE(m_window->tabTexts(), QStringList{ u"(new document)"_s });
    QCOMPARE(m_window->currentEditor()->text(), QString());
}

void KnownKeysTest::turnWheel(int angle, Qt::KeyboardModifiers modifiers) const
{
    QWidget *const view = m_window->currentEditor()->viewport();
    const QPointF place = view->rect().center();
    QWheelEvent event(place, view->mapToGlobal(place), {}, QPoint(0, angle), Qt::NoButton, modifiers,
        Qt::NoScrollPhase, false);
    QApplication::sendEvent(view, &event);
}

void KnownKeysTest::textSizeByWheel()
{
    m_window->slotCmdFileNew();
    turnWheel(240, Qt::ControlModifier);
    QCOMPARE(appSettings().FontSize, 20);
    for (const int index : { 0, 1 })
        QCOMPARE(m_window->editorAt(index)->font().pointSize(), 20);
    turnWheel(-60, Qt::ControlModifier);
    QCOMPARE(appSettings().FontSize, 20); // half a notch
    turnWheel(-60, Qt::ControlModifier);
    QCOMPARE(appSettings().FontSize, 19);
    turnWheel(-120 * 100, Qt::ControlModifier);
    QCOMPARE(appSettings().FontSize, AppSettings::smallestFontSize);
    moreSettings().WheelTextSize = 0;
    turnWheel(240, Qt::ControlModifier);
    QCOMPARE(appSettings().FontSize, AppSettings::smallestFontSize);
    QVERIFY(!m_window->currentEditor()->edited());
}

void KnownKeysTest::wheelAloneScrolls()
{
    m_window->currentEditor()->setText(QString(200, u'\n'));
    turnWheel(-120, {});
    QVERIFY(m_window->currentEditor()->topRow() > RowIndex());
    QCOMPARE(appSettings().FontSize, 18);
    const RowIndex top = m_window->currentEditor()->topRow();
    turnWheel(-120, Qt::ControlModifier);
    QCOMPARE(m_window->currentEditor()->topRow(), top);
    m_window->currentEditor()->setEdited(false);
}

void KnownKeysTest::tabsByPageKeys()
{
    m_window->slotCmdFileNew();
    m_window->slotCmdFileNew();
    press(Qt::Key_PageUp, Qt::ControlModifier);
    QCOMPARE(m_window->currentEditor(), m_window->editorAt(1));
    press(Qt::Key_PageDown, Qt::ControlModifier);
    QCOMPARE(m_window->currentEditor(), m_window->editorAt(2));
    press(Qt::Key_T, Qt::ControlModifier);
    QCOMPARE(m_window->tabBar()->count(), 4);
    press(Qt::Key_W, Qt::ControlModifier);
    QCOMPARE(m_window->tabBar()->count(), 3);
}

void KnownKeysTest::saveAsByKeys()
{
    press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(m_window->requests.size(), 1);
    QCOMPARE(m_window->requests[0].mode, frmFileDialog::SaveAs);
}

void KnownKeysTest::menusOpen()
{
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    press(Qt::Key_F10);
    QTRY_VERIFY(m_window->menu(MenuId::File)->isVisible());
    QTest::keyClick(m_window->menu(MenuId::File), Qt::Key_Escape);
    QTRY_VERIFY(!m_window->menu(MenuId::File)->isVisible());
    QTest::keyClicks(m_window->currentEditor(), u"x"_s);
    QCOMPARE(m_window->currentEditor()->text(), u"x"_s);
}

void KnownKeysTest::fullScreen()
{
    press(Qt::Key_F11);
    QVERIFY(m_window->isCoveringScreen());
    press(Qt::Key_F11);
    QVERIFY(!m_window->isCoveringScreen());
}

void KnownKeysTest::guideIsShown()
{
    QString title;
    QTimer::singleShot(0, this, [&title] {
        auto *const dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        title = dialog->windowTitle();
        dialog->reject();
    });
    press(Qt::Key_F1);
    QCOMPARE(title, u"Guide"_s);
}

REGISTER_TEST(runWindowTest<KnownKeysTest>)
#include "knownkeys_test.moc"
