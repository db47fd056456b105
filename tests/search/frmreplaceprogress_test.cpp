#include "search/frmreplaceprogress.h"
#include "tests/search/searchforms.h"
#include "tests/testprogram.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace {

QLabel *countOf(const frmReplaceProgress &progress)
{
    return progress.findChild<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
}

void hideAsMinimised(QWidget &widget)
{
    QHideEvent minimised;
    QSpontaneKeyEvent::setSpontaneous(&minimised);
    qApp->notify(&widget, &minimised);
}

} // namespace

class FrmReplaceProgressTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void showsItself();
    void sizes_data();
    void sizes();
    void grid();
    void counts_data();
    void counts();
    void isStopped_data();
    void isStopped();
    void minimisingStopsNothing();
    void isSpedUpOnce();
    void stopsAfterSpeedingUp();
};

void FrmReplaceProgressTest::init()
{
    failOnWarnings();
    setScreenClass(false);
}

void FrmReplaceProgressTest::showsItself()
{
    QWidget window;
    window.show();
    const frmReplaceProgress progress(&window);
    QVERIFY(progress.isVisible());
    QVERIFY(progress.isWindow());
    QCOMPARE(progress.windowType(), Qt::Dialog);
    QVERIFY(progress.isModal());
    QCOMPARE(progress.parentWidget(), &window);
    QCOMPARE(progress.windowTitle(), u"Replace All"_s);
    QCOMPARE(progress.pos(), QPoint(30, 60));
    QCOMPARE(progress.size(), progress.sizeHint());
    QVERIFY(!progress.stopRequested);
    QVERIFY(!progress.speedUp);
    QCOMPARE(countOf(progress)->text(), QString());
}

void FrmReplaceProgressTest::sizes_data()
{
    QTest::addColumn<bool>("vga");
    QTest::addColumn<QSize>("speedUp");
    QTest::addColumn<QSize>("stop");
    QTest::newRow("small") << false << QSize(80, 17) << QSize(50, 17);
    QTest::newRow("VGA") << true << QSize(140, 28) << QSize(80, 28);
}

void FrmReplaceProgressTest::sizes()
{
    QFETCH(bool, vga);
    setScreenClass(vga);
    const frmReplaceProgress progress(nullptr);
    QTEST(buttonOf(progress, u"Speed up"_s)->size(), "speedUp");
    QTEST(buttonOf(progress, u"Speed up"_s)->minimumSize(), "speedUp");
    QTEST(buttonOf(progress, u"Speed up"_s)->maximumSize(), "speedUp");
    QTEST(buttonOf(progress, u"Stop"_s)->minimumSize(), "stop");
    QTEST(buttonOf(progress, u"Stop"_s)->maximumSize(), "stop");
}

void FrmReplaceProgressTest::grid()
{
    const frmReplaceProgress progress(nullptr);
    const auto *rows = qobject_cast<const QGridLayout *>(progress.layout());
    QVERIFY(rows);
    QCOMPARE(rows->contentsMargins(), QMargins(5, 5, 5, 5));
    QCOMPARE(rows->spacing(), 5);
    QCOMPARE(rows->rowCount(), 2);
    QCOMPARE(rows->columnCount(), 2);
    QCOMPARE(rows->itemAtPosition(0, 0)->widget(), countOf(progress));
    QCOMPARE(rows->itemAtPosition(0, 1)->widget(), countOf(progress));
    QCOMPARE(rows->itemAtPosition(0, 0)->alignment(), Qt::AlignHCenter);
    QCOMPARE(rows->itemAtPosition(1, 0)->widget(), buttonOf(progress, u"Speed up"_s));
    QCOMPARE(rows->itemAtPosition(1, 1)->widget(), buttonOf(progress, u"Stop"_s));
}

void FrmReplaceProgressTest::counts_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("text");
    QTest::newRow("the first") << 1 << u"replaced :   1"_s;
    QTest::newRow("thousands are not grouped") << 12345 << u"replaced :   12345"_s;
    QTest::newRow("the most") << 2147483647 << u"replaced :   2147483647"_s;
}

void FrmReplaceProgressTest::counts()
{
    QFETCH(int, count);
    frmReplaceProgress progress(nullptr);
    progress.setCount(count);
    QTEST(countOf(progress)->text(), "text");
    QTRY_VERIFY(countOf(progress)->width() >= countOf(progress)->sizeHint().width());
}

void FrmReplaceProgressTest::isStopped_data()
{
    QTest::addColumn<void (*)(frmReplaceProgress &)>("stop");
    const auto row = [](const char *name, void (*stop)(frmReplaceProgress &)) {
        QTest::newRow(name) << stop;
    };
    row("the button", [](frmReplaceProgress &progress) { buttonOf(progress, u"Stop"_s)->click(); });
    row("closing", [](frmReplaceProgress &progress) { progress.close(); });
    row("hiding", [](frmReplaceProgress &progress) { progress.hide(); });
    row("the Escape key", [](frmReplaceProgress &progress) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        Q_UNUSED(progress);
    });
    row("the Stop button by keyboard", [](frmReplaceProgress &progress) {
        buttonOf(progress, u"Stop"_s)->setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    });
}

void FrmReplaceProgressTest::isStopped()
{
    using Stop = void (*)(frmReplaceProgress &);
    QFETCH(Stop, stop);
    frmReplaceProgress progress(nullptr);
    QVERIFY(QTest::qWaitForWindowActive(&progress));
    stop(progress);
    QVERIFY(!progress.isVisible());
    QVERIFY(progress.stopRequested);
    QVERIFY(!progress.speedUp);
}

void FrmReplaceProgressTest::minimisingStopsNothing()
{
    frmReplaceProgress progress(nullptr);
    hideAsMinimised(progress);
    QVERIFY(!progress.stopRequested);
    progress.hide();
    QVERIFY(progress.stopRequested);
}

void FrmReplaceProgressTest::isSpedUpOnce()
{
    frmReplaceProgress progress(nullptr);
    QPushButton *const speedUp = buttonOf(progress, u"Speed up"_s);
    QTest::mouseClick(speedUp, Qt::LeftButton);
    QVERIFY(progress.speedUp);
    QVERIFY(!speedUp->isEnabled());
    progress.speedUp = false;
    QTest::mouseClick(speedUp, Qt::LeftButton);
    QVERIFY(!progress.speedUp);
    QVERIFY(!progress.stopRequested);
}

void FrmReplaceProgressTest::stopsAfterSpeedingUp()
{
    frmReplaceProgress progress(nullptr);
    buttonOf(progress, u"Speed up"_s)->click();
    buttonOf(progress, u"Stop"_s)->click();
    QVERIFY(progress.speedUp);
    QVERIFY(progress.stopRequested);
}

REGISTER_TEST(runFormTest<FrmReplaceProgressTest>)
#include "frmreplaceprogress_test.moc"
