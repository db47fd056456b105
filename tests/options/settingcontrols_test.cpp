#include "options/choicecombo.h"
#include "options/settingcontrols.h"
#include "tests/testprogram.h"

#include <QCheckBox>
#include <QTest>

using namespace Qt::StringLiterals;

/// Controls without a dialog around them, of settings that are nobody's.
class SettingControlsTest : public QObject {
    Q_OBJECT

private slots:
    void showTheSettings();
    void storeWhatWasChosen();
    void valuesMayHaveGaps();
    void foreignNumbersStay();
    void nothingIsStoredBefore();
};

void SettingControlsTest::showTheSettings()
{
    AppSettings settings;
    settings.ShowTAB = 0;
    settings.ForeColor = 2;
    SettingControls controls(settings);
    const std::unique_ptr<QCheckBox> box(controls.createCheck(u"ShowTAB"_s, &AppSettings::ShowTAB, u"tab"_s));
    const std::unique_ptr<ChoiceCombo> combo(
        controls.createChoice(u"ForeColor"_s, &AppSettings::ForeColor, 1, { u"a"_s, u"b"_s }));
    QCOMPARE(box->objectName(), u"ShowTAB"_s);
    QCOMPARE(box->text(), u"tab"_s);
    QVERIFY(!box->isChecked());
    QCOMPARE(combo->objectName(), u"ForeColor"_s);
    QCOMPARE(combo->currentText(), u"b"_s);
}

void SettingControlsTest::storeWhatWasChosen()
{
    AppSettings settings;
    settings.ShowTAB = 0;
    SettingControls controls(settings);
    const std::unique_ptr<QCheckBox> box(controls.createCheck(u"ShowTAB"_s, &AppSettings::ShowTAB, u"tab"_s));
    const std::unique_ptr<ChoiceCombo> combo(
        controls.createChoice(u"ForeColor"_s, &AppSettings::ForeColor, 1, { u"a"_s, u"b"_s }));
    box->click();
    combo->setCurrentIndex(1);
    controls.store();
    QCOMPARE(settings.ShowTAB, 1);
    QCOMPARE(settings.ForeColor, 2);
}

void SettingControlsTest::valuesMayHaveGaps()
{
    AppSettings settings;
    settings.DefCodec = 7;
    SettingControls controls(settings);
    const std::unique_ptr<ChoiceCombo> combo(controls.createChoice(
        u"DefCodec"_s, &AppSettings::DefCodec, { { 5, u"a"_s }, { 7, u"b"_s }, { 3, u"c"_s } }));
    QCOMPARE(combo->currentText(), u"b"_s);
    combo->setCurrentIndex(2);
    controls.store();
    QCOMPARE(settings.DefCodec, 3);
}

void SettingControlsTest::foreignNumbersStay()
{
    AppSettings settings;
    settings.RowNo = 7;
    SettingControls controls(settings);
    const std::unique_ptr<ChoiceCombo> combo(
        controls.createChoice(u"RowNo"_s, &AppSettings::RowNo, 0, { u"a"_s, u"b"_s }));
    QCOMPARE(combo->currentIndex(), -1);
    controls.store();
    QCOMPARE(settings.RowNo, 7);
}

void SettingControlsTest::nothingIsStoredBefore()
{
    AppSettings settings;
    SettingControls controls(settings);
    const std::unique_ptr<QCheckBox> box(controls.createCheck(u"ShowTAB"_s, &AppSettings::ShowTAB, u"tab"_s));
    box->click();
    QCOMPARE(settings.ShowTAB, 1);
}

REGISTER_TEST(runWindowTest<SettingControlsTest>)
#include "settingcontrols_test.moc"
