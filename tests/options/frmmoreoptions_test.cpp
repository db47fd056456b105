#include "options/frmmoreoptions.h"

#include "settings/moresettings.h"
#include "settings/settings.h"
#include "tests/testprogram.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QScrollArea>
#include <QTest>

using namespace Qt::StringLiterals;

/// The dialog with the switches of what was added to the handheld's program.
class FrmMoreOptionsTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        moreSettings() = {};
        writeSettings();
    }

    void showsEverySwitchWithItsDefault();
    void storesWhatIsChosen();
    void cancelChangesNothing();
    void fitsASmallScreen();
    void everySwitchIsReachedByKeys();

private:
    static QCheckBox *box(const QDialog &dialog, const MoreSwitch &each)
    {
        return dialog.findChild<QCheckBox *>(QString::fromLatin1(each.key));
    }
};

void FrmMoreOptionsTest::showsEverySwitchWithItsDefault()
{
    moreSettings().TabsByMouse = 0;
    moreSettings().KnownKeys = 0;
    moreSettings().KeepTexts = 5; // from some file
    const frmMoreOptions dialog(nullptr);
    QStringList texts;
    for (const QLabel *const label : dialog.findChildren<QLabel *>())
        texts << label->text();
    for (const MoreSwitch &each : moreSwitches()) {
        const QCheckBox *const shown = box(dialog, each);
        QVERIFY2(shown, each.key);
        QCOMPARE(shown->text(), QString::fromLatin1(each.label));
        QCOMPARE(shown->isChecked(), moreSettings().*each.setting != 0);
        const bool isOnAtFirst = MoreSettings().*each.setting != 0;
        const QString sentence =
            QString::fromLatin1(each.sentence) + (isOnAtFirst ? u" On at first."_s : u" Off at first."_s);
        QCOMPARE(shown->accessibleDescription(), sentence);
        QVERIFY2(texts.contains(sentence), each.key);
    }
}

void FrmMoreOptionsTest::storesWhatIsChosen()
{
    frmMoreOptions dialog(nullptr);
    for (const MoreSwitch &each : moreSwitches())
        box(dialog, each)->toggle();
    dialog.accept();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    moreSettings() = {};
    readSettings(); // they are in the file
    for (const MoreSwitch &each : moreSwitches())
        QVERIFY2(moreSettings().*each.setting == 1 - MoreSettings().*each.setting, each.key);
}

void FrmMoreOptionsTest::cancelChangesNothing()
{
    frmMoreOptions dialog(nullptr);
    box(dialog, moreSwitches().front())->toggle();
    dialog.reject();
    QCOMPARE(moreSettings().*moreSwitches().front().setting, 0);
}

void FrmMoreOptionsTest::fitsASmallScreen()
{
    frmMoreOptions dialog(nullptr);
    QVERIFY(dialog.sizeHint().width() <= 240);
    QVERIFY(dialog.sizeHint().height() <= 270);
    dialog.show();
    dialog.resize(240, 270);
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const auto *const area = dialog.findChild<QScrollArea *>();
    QVERIFY(area->widget()->width() <= area->viewport()->width()); // nothing is cut at the side
    for (const QCheckBox *const each : dialog.findChildren<QCheckBox *>())
        QVERIFY2(each->sizeHint().width() <= each->width(), qPrintable(each->text()));
}

void FrmMoreOptionsTest::everySwitchIsReachedByKeys()
{
    frmMoreOptions dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    const auto *const area = dialog.findChild<QScrollArea *>();
    for (const MoreSwitch &each : moreSwitches()) {
        const QCheckBox *const shown = box(dialog, each);
        QVERIFY2(shown->hasFocus(), each.key);
        const QRect place(shown->mapTo(area->viewport(), QPoint()), shown->size());
        QVERIFY2(area->viewport()->rect().contains(place), each.key);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
}

REGISTER_TEST(runWindowTest<FrmMoreOptionsTest>)
#include "frmmoreoptions_test.moc"
