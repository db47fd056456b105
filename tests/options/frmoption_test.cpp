#include "options/frmoption.h"

#include "tests/messageboxes.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QTabWidget>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QStringList colors = { u"Black"_s, u"White"_s, u"DarkGray"_s, u"Gray"_s, u"LightGray"_s, u"Red"_s,
    u"Green"_s, u"Blue"_s, u"Cyan"_s, u"Magenta"_s, u"Yellow"_s, u"DarkRed"_s, u"DarkGreen"_s, u"DarkBlue"_s,
    u"DarkCyan"_s, u"DarkMagenta"_s, u"DarkYellow"_s };

QString settingsFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/marlopad.conf"_s;
}

template <typename Control> Control *control(const QWidget &dialog, const char *name)
{
    auto *found = dialog.findChild<Control *>(QLatin1StringView(name));
    if (!found)
        qFatal("no control %s", name);
    return found;
}

/// Types into the number of that name, a field or an editable list.
void setNumber(const QWidget &dialog, const QString &name, const QString &text)
{
    if (auto *combo = dialog.findChild<QComboBox *>(name))
        combo->setEditText(text);
    else
        dialog.findChild<QLineEdit *>(name)->setText(text);
}

void choose(QComboBox *combo, int index)
{
    combo->setCurrentIndex(index);
    emit combo->activated(index);
}

/// All settings in one line each, for comparing records.
QStringList allSettings()
{
    const AppSettings &s = appSettings();
    QStringList texts{ s.FontName };
    for (const int number : { s.Lang, s.ShowKAI, s.ShowTAB, s.ShowZEN, s.ShowEOF, s.FontSize, s.AutoIndent,
             s.WrapMode, s.WrapLen, s.TabLen, s.RestoreScroll, s.RowNo, s.ActiveHLine, s.DefCodec, s.DefCRLF,
             s.BackColor, s.ForeColor, s.RowNoColor, recentFiles().RecentViewCnt })
        texts << QString::number(number);
    return texts;
}

} // namespace

Q_DECLARE_METATYPE(int AppSettings::*)

/// The options dialog.
class FrmOptionTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void pagesAndTexts();
    void lists_data();
    void lists();
    void fontListIsTheDatabase();
    void showsAndStoresChecks_data();
    void showsAndStoresChecks();
    void showsAndStoresChoices_data();
    void showsAndStoresChoices();
    void valueOutsideTheListStays_data();
    void valueOutsideTheListStays();
    void foreignValueIsShownUntilReplaced();
    void unknownFontStays_data();
    void unknownFontStays();
    void typedFontSizeIsStored();
    void numbersAreShownAndStored();
    void okWithoutChangesChangesNothing();

    void numbersAreChecked_data();
    void numbersAreChecked();
    void firstFailureIsReported();
    void refusedInputStaysAsTyped();
    void refusedFieldComesToTheFront();
    void columnsAreNotCheckedUnlessFixed_data();
    void columnsAreNotCheckedUnlessFixed();
    void columnFieldFollowsWrapMode_data();
    void columnFieldFollowsWrapMode();
    void columnFieldAtStart_data();
    void columnFieldAtStart();

    void okWritesTheFile();
    void cancelChangesNothing();
    void clearingRecentFiles_data();
    void clearingRecentFiles();
    void clearingSurvivesCancel();

    void labelsLeadToTheirControls();
    void mnemonicsAreUnique();
    void everyControlIsReachedByTab();
    void returnAndEscape();
};

void FrmOptionTest::init()
{
    appSettings() = {};
    recentFiles() = {};
    QFile::remove(settingsFile());
}

void FrmOptionTest::pagesAndTexts()
{
    const frmOption dialog(nullptr);
    QCOMPARE(dialog.windowTitle(), u"Options"_s);
    QVERIFY(dialog.isModal());
    const auto *pages = dialog.findChild<QTabWidget *>();
    QStringList titles;
    for (int i = 0; i < pages->count(); ++i)
        titles << pages->tabText(i).remove(u'&');
    QCOMPARE(titles, QStringList({ u"View1"_s, u"View2"_s, u"Detail"_s }));

    QStringList labels;
    for (const QLabel *label : dialog.findChildren<QLabel *>())
        labels << label->text().remove(u'&');
    labels.sort();
    QCOMPARE(labels,
        QStringList(
            { u"(0-15)"_s, u"Active Line :"_s, u"Auto indent :"_s, u"BackColor :"_s, u"Default char code:"_s,
                u"Font :"_s, u"Font size :"_s, u"ForeColor :"_s, u"Recent Files count:"_s, u"Row No :"_s,
                u"Row No Color :"_s, u"Tab size :"_s, u"Wrap mode :"_s }));
    QStringList buttons;
    for (const QAbstractButton *button : dialog.findChildren<QAbstractButton *>()) {
        if (!button->text().isEmpty())
            buttons << button->text().remove(u'&');
    }
    buttons.sort();
    QCOMPARE(buttons,
        QStringList({ u"A cursor position is restored when opens"_s, u"Cancel"_s, u"Clear Recent Files"_s,
            u"EOF"_s, u"Multi-byte space"_s, u"OK"_s, u"Return code"_s, u"Tab character"_s }));
}

void FrmOptionTest::lists_data()
{
    QTest::addColumn<QStringList>("items");
    QTest::newRow("FontSize") << QStringList{ u"10"_s, u"12"_s, u"16"_s, u"18"_s, u"20"_s, u"24"_s, u"32"_s };
    QTest::newRow("ForeColor") << colors;
    QTest::newRow("BackColor") << colors;
    QTest::newRow("WrapMode") << QStringList{ u"None"_s, u"Auto"_s, u"Fixed column"_s };
    QTest::newRow("RowNo") << QStringList{ u"None"_s, u"Small size"_s, u"Large size"_s };
    QTest::newRow("RowNoColor") << QStringList{ u"(Same ForeColor)"_s } + colors;
    QTest::newRow("ActiveHLine") << QStringList{ u"None"_s } + colors;
    QTest::newRow("AutoIndent") << QStringList{ u"None"_s, u"Tab & space"_s, u"Tab & space & MultiSpace"_s };
    QTest::newRow("DefCodec") << QStringList{ u"UTF-8"_s, u"Shift-JIS"_s, u"EUC"_s, u"JIS"_s };
    QTest::newRow("DefCRLF") << QStringList{ u"CR"_s, u"CR+LF"_s, u"LF"_s };
}

void FrmOptionTest::lists()
{
    const frmOption dialog(nullptr);
    const auto *combo = control<QComboBox>(dialog, QTest::currentDataTag());
    QStringList items;
    for (int i = 0; i < combo->count(); ++i)
        items << combo->itemText(i);
    QTEST(items, "items");
}

void FrmOptionTest::fontListIsTheDatabase()
{
    const frmOption dialog(nullptr);
    const auto *combo = control<QComboBox>(dialog, "FontName");
    QVERIFY(combo->isEditable());
    const QStringList all = QFontDatabase::families();
    QVERIFY(combo->count() > 0);
    for (int i = 0; i < combo->count(); ++i)
        QVERIFY2(all.contains(combo->itemText(i)), qPrintable(combo->itemText(i)));
    const QString family = combo->itemText(combo->count() - 1);
    appSettings().FontName = family;
    const frmOption again(nullptr);
    QCOMPARE(control<QComboBox>(again, "FontName")->currentIndex(), combo->findText(family));
}

void FrmOptionTest::showsAndStoresChecks_data()
{
    QTest::addColumn<int AppSettings::*>("setting");
    QTest::newRow("ShowKAI") << &AppSettings::ShowKAI;
    QTest::newRow("ShowTAB") << &AppSettings::ShowTAB;
    QTest::newRow("ShowZEN") << &AppSettings::ShowZEN;
    QTest::newRow("ShowEOF") << &AppSettings::ShowEOF;
    QTest::newRow("RestoreScroll") << &AppSettings::RestoreScroll;
}

void FrmOptionTest::showsAndStoresChecks()
{
    QFETCH(int AppSettings::*, setting);
    for (const auto &[stored, isChecked] : { std::pair(0, false), { 1, true }, { 2, false } }) {
        appSettings().*setting = stored;
        frmOption dialog(nullptr);
        auto *box = control<QCheckBox>(dialog, QTest::currentDataTag());
        QCOMPARE(box->isChecked(), isChecked);
        box->click();
        dialog.accept();
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(appSettings().*setting, isChecked ? 0 : 1);
    }
}

void FrmOptionTest::showsAndStoresChoices_data()
{
    QTest::addColumn<int AppSettings::*>("setting");
    QTest::addColumn<int>("first");
    QTest::newRow("ForeColor") << &AppSettings::ForeColor << 1;
    QTest::newRow("BackColor") << &AppSettings::BackColor << 1;
    QTest::newRow("WrapMode") << &AppSettings::WrapMode << 0;
    QTest::newRow("RowNo") << &AppSettings::RowNo << 0;
    QTest::newRow("RowNoColor") << &AppSettings::RowNoColor << 0;
    QTest::newRow("ActiveHLine") << &AppSettings::ActiveHLine << 0;
    QTest::newRow("AutoIndent") << &AppSettings::AutoIndent << 0;
    QTest::newRow("DefCodec") << &AppSettings::DefCodec << 2;
    QTest::newRow("DefCRLF") << &AppSettings::DefCRLF << 1;
}

void FrmOptionTest::showsAndStoresChoices()
{
    QFETCH(int AppSettings::*, setting);
    QFETCH(int, first);
    const int count = control<QComboBox>(frmOption(nullptr), QTest::currentDataTag())->count();
    for (int index = 0; index < count; ++index) {
        appSettings().*setting = first + index;
        frmOption dialog(nullptr);
        auto *combo = control<QComboBox>(dialog, QTest::currentDataTag());
        QCOMPARE(combo->currentIndex(), index);
        combo->setCurrentIndex((index + 1) % count);
        dialog.accept();
        QCOMPARE(appSettings().*setting, first + (index + 1) % count);
    }
}

void FrmOptionTest::valueOutsideTheListStays_data()
{
    QTest::addColumn<int AppSettings::*>("setting");
    QTest::addColumn<int>("value");
    const std::tuple<const char *, int AppSettings::*, QList<int>> rows[] = {
        { "ForeColor", &AppSettings::ForeColor, { 0, 18, -1 } },
        { "BackColor", &AppSettings::BackColor, { 0, 18 } },
        { "WrapMode", &AppSettings::WrapMode, { 3, -1 } },
        { "RowNo", &AppSettings::RowNo, { 3, -1 } },
        { "RowNoColor", &AppSettings::RowNoColor, { 18, -1 } },
        { "ActiveHLine", &AppSettings::ActiveHLine, { 18, -1 } },
        { "AutoIndent", &AppSettings::AutoIndent, { 3, -1 } },
        { "DefCodec", &AppSettings::DefCodec, { 6, 1, 0, std::numeric_limits<int>::min() } },
        { "DefCRLF", &AppSettings::DefCRLF, { 0, 4, std::numeric_limits<int>::max() } },
    };
    for (const auto &[name, setting, values] : rows) {
        for (const int value : values)
            QTest::addRow("%s %d", name, value) << setting << value;
    }
}

void FrmOptionTest::valueOutsideTheListStays()
{
    QFETCH(int AppSettings::*, setting);
    QFETCH(int, value);
    appSettings().*setting = value;
    frmOption dialog(nullptr);
    const QString name = QString::fromLatin1(QTest::currentDataTag()).section(u' ', 0, 0);
    const auto *combo = dialog.findChild<QComboBox *>(name);
    QCOMPARE(combo->currentIndex(), -1);
    QCOMPARE(combo->placeholderText(), QString::number(value));
    dialog.accept();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(appSettings().*setting, value);
}

void FrmOptionTest::foreignValueIsShownUntilReplaced()
{
    appSettings().DefCodec = 6;
    frmOption dialog(nullptr);
    dialog.show();
    QTest::keyClick(control<QComboBox>(dialog, "DefCodec"), Qt::Key_Down);
    dialog.accept();
    QCOMPARE(appSettings().DefCodec, 2);
}

void FrmOptionTest::unknownFontStays_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("lcfont") << u"lcfont"_s;
    QTest::newRow("not installed") << u"No such font at all"_s;
    QTest::newRow("empty") << QString();
    QTest::newRow("a listed one in other letters") << QFontDatabase::families().constFirst().toUpper();
}

void FrmOptionTest::unknownFontStays()
{
    QFETCH(QString, name);
    appSettings().FontName = name;
    frmOption dialog(nullptr);
    dialog.show();
    auto *combo = control<QComboBox>(dialog, "FontName");
    QCOMPARE(combo->currentText(), name);
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Tab);
    dialog.accept();
    QCOMPARE(appSettings().FontName, name);
}

void FrmOptionTest::typedFontSizeIsStored()
{
    frmOption dialog(nullptr);
    dialog.show();
    auto *combo = control<QComboBox>(dialog, "FontSize");
    QCOMPARE(combo->currentText(), u"18"_s);
    QVERIFY(combo->isEditable());
    combo->lineEdit()->selectAll();
    QTest::keyClicks(combo, u"14"_s);
    dialog.accept();
    QCOMPARE(appSettings().FontSize, 14);
    QCOMPARE(control<QComboBox>(frmOption(nullptr), "FontSize")->currentText(), u"14"_s);
}

void FrmOptionTest::numbersAreShownAndStored()
{
    appSettings().WrapMode = 2;
    appSettings().WrapLen = 72;
    appSettings().TabLen = 8;
    recentFiles().RecentViewCnt = 5;
    frmOption dialog(nullptr);
    QCOMPARE(control<QLineEdit>(dialog, "WrapLen")->text(), u"72"_s);
    QCOMPARE(control<QLineEdit>(dialog, "TabLen")->text(), u"8"_s);
    QCOMPARE(control<QLineEdit>(dialog, "RecentViewCnt")->text(), u"5"_s);
    setNumber(dialog, u"WrapLen"_s, u"\uFF18\uFF10"_s);
    setNumber(dialog, u"TabLen"_s, u"2"_s);
    setNumber(dialog, u"RecentViewCnt"_s, u"\uFF11\uFF15"_s);
    dialog.accept();
    QCOMPARE(appSettings().WrapLen, 80);
    QCOMPARE(appSettings().TabLen, 2);
    QCOMPARE(recentFiles().RecentViewCnt, 15);
}

void FrmOptionTest::okWithoutChangesChangesNothing()
{
    const QStringList before = allSettings();
    frmOption dialog(nullptr);
    dialog.show();
    dialog.accept();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(allSettings(), before);
}

void FrmOptionTest::numbersAreChecked_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("message");
    const QString accepted;
    struct Bounds {
        const char *field;
        const char *notNumeric;
        const char *outOfBounds;
        QStringList good;
        QStringList bad;
    };
    const Bounds all[] = {
        { "WrapLen", "The Wrap columns must be numeric.", "The Wrap columns must be more than 10 numbers.",
            { u"10"_s, u"100000"_s, u"\uFF11\uFF10"_s }, { u"9"_s, u"0"_s, u"-10"_s } },
        { "TabLen", "The Tab size must be numeric.", "The Tab size must be between 1 and 12.",
            { u"1"_s, u"12"_s }, { u"0"_s, u"13"_s, u"-1"_s } },
        { "FontSize", "The Font size must be numeric.", "The Font size must be between 1 and 99.",
            { u"1"_s, u"14"_s, u"99"_s, u"100"_s }, { u"0"_s, u"101"_s, u"-5"_s } },
        { "RecentViewCnt", "The Recent Files count must be numeric.",
            "The Recent Files count must be between 0 and 15.", { u"0"_s, u"15"_s }, { u"-1"_s, u"16"_s } },
    };
    for (const Bounds &bounds : all) {
        const QString field = QString::fromLatin1(bounds.field);
        for (const QString &text : bounds.good)
            QTest::addRow("%s %s", bounds.field, qPrintable(text)) << field << text << accepted;
        for (const QString &text : bounds.bad)
            QTest::addRow("%s %s", bounds.field, qPrintable(text))
                << field << text << QString::fromLatin1(bounds.outOfBounds);
        for (const QString &text : { u""_s, u"x"_s, u"1x"_s, u"2147483648"_s, u"1.5"_s })
            QTest::addRow("%s \"%s\"", bounds.field, qPrintable(text))
                << field << text << QString::fromLatin1(bounds.notNumeric);
    }
}

void FrmOptionTest::numbersAreChecked()
{
    QFETCH(QString, field);
    QFETCH(QString, text);
    QFETCH(QString, message);
    appSettings().WrapMode = 2;
    const QStringList before = allSettings();
    frmOption dialog(nullptr);
    setNumber(dialog, field, text);
    MessageBoxes boxes;
    dialog.show();
    dialog.accept();
    if (message.isEmpty()) {
        QCOMPARE(boxes.texts(), QStringList());
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        return;
    }
    QCOMPARE(boxes.texts(), QStringList{ u"Error|"_s + message });
    QCOMPARE(boxes.shown().at(0).icon, QMessageBox::Critical);
    QVERIFY(dialog.isVisible());
    QCOMPARE(allSettings(), before);
    QVERIFY(!QFile::exists(settingsFile()));
}

void FrmOptionTest::firstFailureIsReported()
{
    appSettings().WrapMode = 2;
    frmOption dialog(nullptr);
    for (const char *name : { "WrapLen", "TabLen", "FontSize", "RecentViewCnt" })
        setNumber(dialog, QString::fromLatin1(name), u"x"_s);
    MessageBoxes boxes;
    const std::pair<const char *, const char *> order[] = { { "WrapLen",
                                                                "The Wrap columns must be numeric." },
        { "TabLen", "The Tab size must be numeric." }, { "FontSize", "The Font size must be numeric." },
        { "RecentViewCnt", "The Recent Files count must be numeric." } };
    for (const auto &[name, message] : order) {
        dialog.accept();
        QCOMPARE(boxes.shown().constLast().text, QString::fromLatin1(message));
        setNumber(dialog, QString::fromLatin1(name), u"12"_s);
    }
    dialog.accept();
    QCOMPARE(boxes.count(), 4);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void FrmOptionTest::refusedInputStaysAsTyped()
{
    frmOption dialog(nullptr);
    dialog.show();
    control<QCheckBox>(dialog, "ShowEOF")->click();
    control<QComboBox>(dialog, "ForeColor")->setCurrentIndex(5);
    control<QComboBox>(dialog, "FontName")->setEditText(u"some font"_s);
    setNumber(dialog, u"TabLen"_s, u" 13"_s);
    MessageBoxes boxes;
    dialog.accept();
    QCOMPARE(boxes.count(), 1);
    QVERIFY(!control<QCheckBox>(dialog, "ShowEOF")->isChecked());
    QCOMPARE(control<QComboBox>(dialog, "ForeColor")->currentIndex(), 5);
    QCOMPARE(control<QComboBox>(dialog, "FontName")->currentText(), u"some font"_s);
    QCOMPARE(control<QLineEdit>(dialog, "TabLen")->text(), u" 13"_s);
}

void FrmOptionTest::refusedFieldComesToTheFront()
{
    frmOption dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    setNumber(dialog, u"RecentViewCnt"_s, u"16"_s);
    MessageBoxes boxes;
    dialog.accept();
    QCOMPARE(dialog.findChild<QTabWidget *>()->currentIndex(), 2);
    QCOMPARE(dialog.focusWidget(), control<QLineEdit>(dialog, "RecentViewCnt"));
    QCOMPARE(control<QLineEdit>(dialog, "RecentViewCnt")->selectedText(), u"16"_s);
}

void FrmOptionTest::columnsAreNotCheckedUnlessFixed_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("stored");
    QTest::newRow("None, letters") << 0 << u"abc"_s << 0;
    QTest::newRow("Auto, letters") << 1 << u"abc"_s << 0;
    QTest::newRow("Auto, empty") << 1 << QString() << 0;
    QTest::newRow("Auto, overflow") << 1 << u"2147483648"_s << 0;
    QTest::newRow("None, 3") << 0 << u"3"_s << 3;
    QTest::newRow("Auto, -5") << 1 << u"-5"_s << -5;
    QTest::newRow("mode 3, 7") << 3 << u"7"_s << 7;
}

void FrmOptionTest::columnsAreNotCheckedUnlessFixed()
{
    QFETCH(int, mode);
    QFETCH(QString, text);
    appSettings().WrapMode = mode;
    frmOption dialog(nullptr);
    setNumber(dialog, u"WrapLen"_s, text);
    MessageBoxes boxes;
    dialog.accept();
    QCOMPARE(boxes.count(), 0);
    QTEST(appSettings().WrapLen, "stored");
}

void FrmOptionTest::columnFieldFollowsWrapMode_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("None") << 0 << false;
    QTest::newRow("Auto") << 1 << false;
    QTest::newRow("Fixed column") << 2 << true;
}

void FrmOptionTest::columnFieldFollowsWrapMode()
{
    QFETCH(int, index);
    for (const int before : { 0, 1, 2 }) {
        appSettings().WrapMode = before;
        const frmOption dialog(nullptr);
        choose(control<QComboBox>(dialog, "WrapMode"), index);
        QTEST(control<QLineEdit>(dialog, "WrapLen")->isEnabled(), "enabled");
    }
}

void FrmOptionTest::columnFieldAtStart_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::newRow("-1") << false;
    QTest::newRow("0") << false;
    QTest::newRow("1") << false;
    QTest::newRow("2") << true;
    QTest::newRow("3") << false;
}

void FrmOptionTest::columnFieldAtStart()
{
    appSettings().WrapMode = QByteArray(QTest::currentDataTag()).toInt();
    QTEST(control<QLineEdit>(frmOption(nullptr), "WrapLen")->isEnabled(), "enabled");
}

void FrmOptionTest::okWritesTheFile()
{
    frmOption dialog(nullptr);
    setNumber(dialog, u"TabLen"_s, u"7"_s);
    dialog.accept();
    appSettings() = {};
    readSettings();
    QCOMPARE(appSettings().TabLen, 7);
}

void FrmOptionTest::cancelChangesNothing()
{
    const QStringList before = allSettings();
    frmOption dialog(nullptr);
    setNumber(dialog, u"TabLen"_s, u"7"_s);
    control<QCheckBox>(dialog, "ShowEOF")->click();
    dialog.reject();
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(allSettings(), before);
    QVERIFY(!QFile::exists(settingsFile()));
}

void FrmOptionTest::clearingRecentFiles_data()
{
    QTest::addColumn<bool>("cleared");
    QTest::newRow("OK") << true;
    QTest::newRow("Cancel") << false;
    QTest::newRow("Escape") << false;
}

void FrmOptionTest::clearingRecentFiles()
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

void FrmOptionTest::clearingSurvivesCancel()
{
    recentFiles().entries[3] = { u"/folder/"_s, u"file"_s, 0, 0, 0, 0 };
    frmOption dialog(nullptr);
    MessageBoxes boxes;
    for (QPushButton *button : dialog.findChildren<QPushButton *>()) {
        if (button->text() == u"&Clear Recent Files")
            button->click();
    }
    QCOMPARE(boxes.count(), 1);
    dialog.reject();
    QVERIFY(!recentFiles().entries[3].isUsed());
    QVERIFY(!QFile::exists(settingsFile()));
}

void FrmOptionTest::labelsLeadToTheirControls()
{
    const frmOption dialog(nullptr);
    for (const QLabel *label : dialog.findChildren<QLabel *>()) {
        if (label->text() != u"(0-15)")
            QVERIFY2(label->buddy() && label->text().contains(u'&'), qPrintable(label->text()));
    }
    for (const QCheckBox *box : dialog.findChildren<QCheckBox *>())
        QVERIFY2(box->text().contains(u'&'), qPrintable(box->text()));
}

void FrmOptionTest::mnemonicsAreUnique()
{
    const frmOption dialog(nullptr);
    const auto *pages = dialog.findChild<QTabWidget *>();
    for (int i = 0; i < pages->count(); ++i) {
        QStringList texts{ pages->tabText(0), pages->tabText(1), pages->tabText(2) };
        for (const QLabel *label : pages->widget(i)->findChildren<QLabel *>())
            texts << label->text();
        for (const QAbstractButton *button : pages->widget(i)->findChildren<QAbstractButton *>())
            texts << button->text();
        QStringList letters;
        for (const QString &text : texts) {
            if (const qsizetype at = text.indexOf(u'&'); at >= 0)
                letters << text.mid(at + 1, 1).toUpper();
        }
        QStringList unique = letters;
        unique.removeDuplicates();
        QCOMPARE(letters, unique);
    }
}

void FrmOptionTest::everyControlIsReachedByTab()
{
    appSettings().WrapMode = 2;
    frmOption dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto *pages = dialog.findChild<QTabWidget *>();
    for (int i = 0; i < pages->count(); ++i) {
        pages->setCurrentIndex(i);
        QSet<const QWidget *> reached;
        for (int step = 0; step < 40; ++step) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            reached << QApplication::focusWidget();
        }
        for (const char *kind : { "QComboBox", "QLineEdit", "QCheckBox", "QPushButton" }) {
            for (const QWidget *widget : pages->widget(i)->findChildren<QWidget *>()) {
                const bool isInside = widget->parentWidget()->inherits("QComboBox");
                if (widget->inherits(kind) && !isInside)
                    QVERIFY2(reached.contains(widget), qPrintable(widget->objectName()));
            }
        }
    }
}

void FrmOptionTest::returnAndEscape()
{
    for (const auto &[key, result] :
        { std::pair(Qt::Key_Return, QDialog::Accepted), { Qt::Key_Escape, QDialog::Rejected } }) {
        for (const char *name : { "FontName", "FontSize", "WrapMode" }) {
            frmOption dialog(nullptr);
            dialog.setResult(-1);
            dialog.show();
            auto *combo = control<QComboBox>(dialog, name);
            combo->setFocus();
            QTest::keyClick(combo, key);
            QCOMPARE(dialog.result(), int(result));
        }
    }
}

QTEST_MAIN(FrmOptionTest)
#include "frmoption_test.moc"
