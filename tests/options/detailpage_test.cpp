#include "tests/options/optionsform.h"
#include "tests/testprogram.h"

#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace OptionsForm;

/// Page "Detail" of the options: positions, indenting, codes, recent files.
class DetailPageTest : public QObject {
    Q_OBJECT

private slots:
    void init() { resetSettings(); }

    void labels();
    void places();
    void cursorRestoring();
    void choices_data();
    void choices();
    void foreignValues_data();
    void foreignValues();
    void recentCountIsChecked_data();
    void recentCountIsChecked();

    void clearingRecentFiles_data();
    void clearingRecentFiles();
    void clearingSurvivesCancel();
    void returnPressesTheButton_data();
    void returnPressesTheButton();
};

static QPushButton *clearButton(const frmOption &dialog)
{
    return pageOf(dialog, 2)->findChild<QPushButton *>();
}

void DetailPageTest::labels()
{
    const frmOption dialog(nullptr);
    QCOMPARE(labelsOf(dialog, 2),
        QStringList({ u"A cursor position is restored when opens -> RestoreScroll"_s,
            u"Auto indent : -> AutoIndent"_s, u"Default char code: -> DefCodec"_s,
            u"Recent Files count: -> RecentViewCnt"_s }));
    QCOMPARE(clearButton(dialog)->text().remove(u'&'), u"Clear Recent Files"_s);
}

/// Both codes share a row; the bounds stand behind the count.
void DetailPageTest::places()
{
    frmOption dialog(nullptr);
    dialog.show();
    dialog.findChild<QTabWidget *>()->setCurrentIndex(2);
    const auto at = [&dialog](const char *name) { return control(dialog, QLatin1StringView(name)); };
    QVERIFY(areSideBySide(dialog, { at("DefCodec"), at("DefCRLF") }));
    const QList<QLabel *> labels = pageOf(dialog, 2)->findChildren<QLabel *>();
    QCOMPARE(labels.constLast()->text(), u"(0-15)"_s);
    QVERIFY(areSideBySide(dialog, { at("RecentViewCnt"), labels.constLast() }));
    for (const QLabel *label : labels) {
        if (label->buddy())
            QVERIFY2(areSideBySide(dialog, { label, label->buddy() }), qPrintable(label->text()));
    }
    int y = 0;
    for (const QWidget *widget : { at("RestoreScroll"), at("AutoIndent"), at("DefCodec"), at("RecentViewCnt"),
             static_cast<QWidget *>(clearButton(dialog)) }) {
        const int top = widget->mapTo(&dialog, QPoint(0, 0)).y();
        QVERIFY2(top > y, qPrintable(widget->objectName()));
        y = top;
    }
}

void DetailPageTest::cursorRestoring()
{
    checkBoxShowsAndStores(u"RestoreScroll"_s, &AppSettings::RestoreScroll);
}

void DetailPageTest::choices_data()
{
    QTest::addColumn<Setting>("setting");
    QTest::addColumn<QList<int>>("values");
    QTest::addColumn<QStringList>("items");
    QTest::newRow("AutoIndent") << &AppSettings::AutoIndent << QList{ 0, 1, 2 }
                                << QStringList{ u"None"_s, u"Tab & space"_s, u"Tab & space & MultiSpace"_s };
    QTest::newRow("DefCodec") << &AppSettings::DefCodec << QList{ 2, 3, 4, 5 }
                              << QStringList{ u"UTF-8"_s, u"Shift-JIS"_s, u"EUC"_s, u"JIS"_s };
    QTest::newRow("DefCRLF") << &AppSettings::DefCRLF << QList{ 1, 2, 3 }
                             << QStringList{ u"CR"_s, u"CR+LF"_s, u"LF"_s };
}

void DetailPageTest::choices()
{
    QFETCH(Setting, setting);
    QFETCH(QList<int>, values);
    QFETCH(QStringList, items);
    choiceShowsAndStores(QString::fromLatin1(QTest::currentDataTag()), setting, values, items);
}

void DetailPageTest::foreignValues_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Setting>("setting");
    QTest::addColumn<int>("value");
    for (const int value : { 3, -1 })
        QTest::addRow("AutoIndent %d", value) << u"AutoIndent"_s << &AppSettings::AutoIndent << value;
    for (const int value : { 6, 1, 0, std::numeric_limits<int>::min() })
        QTest::addRow("DefCodec %d", value) << u"DefCodec"_s << &AppSettings::DefCodec << value;
    for (const int value : { 0, 4, std::numeric_limits<int>::max() })
        QTest::addRow("DefCRLF %d", value) << u"DefCRLF"_s << &AppSettings::DefCRLF << value;
}

void DetailPageTest::foreignValues()
{
    QFETCH(QString, name);
    QFETCH(Setting, setting);
    QFETCH(int, value);
    foreignValueStays(name, setting, value);
}

void DetailPageTest::recentCountIsChecked_data()
{
    addNumbers(u"The Recent Files count must be numeric."_s);
    addAccepted({ 0, 1, 15 });
    addRefused({ -1, 16, std::numeric_limits<int>::max(), std::numeric_limits<int>::min() },
        u"The Recent Files count must be between 0 and 15."_s);
}

void DetailPageTest::recentCountIsChecked()
{
    QFETCH(QString, text);
    QFETCH(QString, message);
    QFETCH(int, stored);
    numberIsCheckedAndStored(u"RecentViewCnt"_s, text, message, stored);
}

void DetailPageTest::clearingRecentFiles_data()
{
    QTest::addColumn<bool>("cleared");
    QTest::newRow("OK") << true;
    QTest::newRow("Cancel") << false;
    QTest::newRow("Escape") << false;
}

void DetailPageTest::clearingRecentFiles()
{
    QFETCH(bool, cleared);
    for (RecentEntry &entry : recentFiles().entries)
        entry = { u"/folder/"_s, u"file"_s, 1, 2, 3, 4 };
    frmOption dialog(nullptr);
    MessageBoxes boxes({ QString::fromLatin1(QTest::currentDataTag()) });
    dialog.slotRecentClear();
    QCOMPARE(boxes.texts(),
        QStringList{ u"Clear Recent Files|Are you sure you want to clear the Recent Files?"_s });
    QCOMPARE(boxes.shown().at(0).icon, QMessageBox::Information);
    QCOMPARE(boxes.shown().at(0).buttons, QStringList({ u"OK"_s, u"Cancel"_s }));
    QCOMPARE(boxes.shown().at(0).defaultButton, u"OK"_s);
    QCOMPARE(recentFiles().RecentViewCnt, 10);
    for (const RecentEntry &entry : recentFiles().entries) {
        QCOMPARE(entry.path, cleared ? QString() : u"/folder/"_s);
        QCOMPARE(entry.name, cleared ? QString() : u"file"_s);
        QCOMPARE(entry.isUsed(), !cleared);
        QCOMPARE(entry.cursorRow, 1);
        QCOMPARE(entry.cursorColumn, 2);
        QCOMPARE(entry.scrollX, 3);
        QCOMPARE(entry.scrollY, 4);
    }
}

/// At once in memory; in the file with its next writing.
void DetailPageTest::clearingSurvivesCancel()
{
    recentFiles().entries[3] = { u"/folder/"_s, u"file"_s, 0, 0, 0, 0 };
    writeSettings();
    frmOption dialog(nullptr);
    MessageBoxes boxes;
    clearButton(dialog)->click();
    QCOMPARE(boxes.count(), 1);
    dialog.reject();
    QVERIFY(!recentFiles().entries[3].isUsed());
    readSettings();
    QVERIFY(recentFiles().entries[3].isUsed());
    recentFiles().entries[3] = {};
    writeSettings();
    readSettings();
    QVERIFY(!recentFiles().entries[3].isUsed());
}

void DetailPageTest::returnPressesTheButton_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
}

/// And not "OK", which is again the one that Return presses when the focus goes on.
void DetailPageTest::returnPressesTheButton()
{
    QFETCH(int, key);
    frmOption dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    dialog.findChild<QTabWidget *>()->setCurrentIndex(2);
    clearButton(dialog)->setFocus();
    MessageBoxes boxes({ u"Cancel"_s });
    QTest::keyClick(clearButton(dialog), Qt::Key(key));
    QCOMPARE(boxes.titles(), QStringList{ u"Clear Recent Files"_s });
    QVERIFY(dialog.isVisible());
    control(dialog, u"RecentViewCnt"_s)->setFocus();
    QTest::keyClick(control(dialog, u"RecentViewCnt"_s), Qt::Key(key));
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

REGISTER_TEST(runWindowTest<DetailPageTest>)
#include "detailpage_test.moc"
