#include "tests/options/optionsform.h"
#include "tests/testprogram.h"

#include <QFontDatabase>
#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace OptionsForm;

/// Page "View1" of the options: signs, font, colours, wrapping.
class View1PageTest : public QObject {
    Q_OBJECT

private slots:
    void init() { resetSettings(); }
    void cleanup() { QLocale::setDefault(QLocale::system()); }

    void labels();
    void places();
    void checks_data();
    void checks();
    void choices_data();
    void choices();
    void foreignValues_data();
    void foreignValues();

    void fontsAreThoseOfTheLocale_data();
    void fontsAreThoseOfTheLocale();
    void firstEqualFontIsCurrent();
    void fontOfNoListStays_data();
    void fontOfNoListStays();
    void chosenFontIsStored();

    void fontSizes();
    void fontSizeIsChecked_data();
    void fontSizeIsChecked();
    void typedFontSizeIsStored();

    void wrapColumnsAreChecked_data();
    void wrapColumnsAreChecked();
    void columnsAreNotCheckedUnlessFixed_data();
    void columnsAreNotCheckedUnlessFixed();
    void columnFieldFollowsWrapMode_data();
    void columnFieldFollowsWrapMode();
    void columnFieldFollowsKeys();
    void columnFieldAtStart_data();
    void columnFieldAtStart();
};

void View1PageTest::labels()
{
    const frmOption dialog(nullptr);
    QCOMPARE(labelsOf(dialog, 0),
        QStringList({ u"Return code -> ShowKAI"_s, u"Tab character -> ShowTAB"_s,
            u"Multi-byte space -> ShowZEN"_s, u"EOF -> ShowEOF"_s, u"Font : -> FontName"_s,
            u"Font size : -> FontSize"_s, u"ForeColor : -> ForeColor"_s, u"BackColor : -> BackColor"_s,
            u"Wrap mode : -> WrapMode"_s }));
    QCOMPARE(pageOf(dialog, 0)->findChild<QGroupBox *>()->title(), u"Mark display"_s);
}

/// The signs two by two in their group, the column count beside the wrap mode, one control below the other.
void View1PageTest::places()
{
    frmOption dialog(nullptr);
    dialog.show();
    const auto at = [&dialog](const char *name) { return control(dialog, QLatin1StringView(name)); };
    for (const char *name : { "ShowKAI", "ShowTAB", "ShowZEN", "ShowEOF" })
        QVERIFY2(qobject_cast<QGroupBox *>(at(name)->parentWidget()), name);
    QVERIFY(areSideBySide(dialog, { at("ShowKAI"), at("ShowTAB") }));
    QVERIFY(areSideBySide(dialog, { at("ShowZEN"), at("ShowEOF") }));
    QCOMPARE(at("ShowKAI")->x(), at("ShowZEN")->x());
    QCOMPARE(at("ShowTAB")->x(), at("ShowEOF")->x());
    QVERIFY(at("ShowKAI")->y() < at("ShowZEN")->y());
    QVERIFY(areSideBySide(dialog, { at("WrapMode"), at("WrapLen") }));
    int y = 0, x = -1;
    for (const char *name : { "FontName", "FontSize", "ForeColor", "BackColor", "WrapMode" }) {
        const QPoint place = at(name)->mapTo(&dialog, QPoint(0, 0));
        QVERIFY2(place.y() > y, name);
        QVERIFY2(x < 0 || place.x() == x, name);
        y = place.y();
        x = place.x();
    }
}

void View1PageTest::checks_data()
{
    QTest::addColumn<Setting>("setting");
    QTest::newRow("ShowKAI") << &AppSettings::ShowKAI;
    QTest::newRow("ShowTAB") << &AppSettings::ShowTAB;
    QTest::newRow("ShowZEN") << &AppSettings::ShowZEN;
    QTest::newRow("ShowEOF") << &AppSettings::ShowEOF;
}

void View1PageTest::checks()
{
    QFETCH(Setting, setting);
    checkBoxShowsAndStores(QString::fromLatin1(QTest::currentDataTag()), setting);
}

void View1PageTest::choices_data()
{
    QTest::addColumn<Setting>("setting");
    QTest::addColumn<int>("first");
    QTest::addColumn<QStringList>("items");
    QTest::newRow("ForeColor") << &AppSettings::ForeColor << 1 << colors;
    QTest::newRow("BackColor") << &AppSettings::BackColor << 1 << colors;
    QTest::newRow("WrapMode") << &AppSettings::WrapMode << 0
                              << QStringList{ u"None"_s, u"Auto"_s, u"Fixed column"_s };
}

void View1PageTest::choices()
{
    QFETCH(Setting, setting);
    QFETCH(int, first);
    QFETCH(QStringList, items);
    choiceShowsAndStores(QString::fromLatin1(QTest::currentDataTag()), setting, first, items);
}

void View1PageTest::foreignValues_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Setting>("setting");
    QTest::addColumn<int>("value");
    for (const int value : { 0, 18, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max() }) {
        QTest::addRow("ForeColor %d", value) << u"ForeColor"_s << &AppSettings::ForeColor << value;
        QTest::addRow("BackColor %d", value) << u"BackColor"_s << &AppSettings::BackColor << value;
    }
    for (const int value : { 3, -1 })
        QTest::addRow("WrapMode %d", value) << u"WrapMode"_s << &AppSettings::WrapMode << value;
}

void View1PageTest::foreignValues()
{
    QFETCH(QString, name);
    QFETCH(Setting, setting);
    QFETCH(int, value);
    foreignValueStays(name, setting, value);
}

void View1PageTest::fontsAreThoseOfTheLocale_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QFontDatabase::WritingSystem>("script");
    QTest::newRow("Japanese") << QLocale(u"ja_JP"_s) << QFontDatabase::Japanese;
    QTest::newRow("French") << QLocale(u"fr_FR"_s) << QFontDatabase::Latin;
    QTest::newRow("Russian") << QLocale(u"ru_RU"_s) << QFontDatabase::Cyrillic;
    QTest::newRow("Greek") << QLocale(u"el_GR"_s) << QFontDatabase::Greek;
    QTest::newRow("Korean") << QLocale(u"ko_KR"_s) << QFontDatabase::Korean;
    QTest::newRow("Chinese") << QLocale(u"zh_CN"_s) << QFontDatabase::SimplifiedChinese;
    QTest::newRow("Chinese of Taiwan") << QLocale(u"zh_TW"_s) << QFontDatabase::TraditionalChinese;
    QTest::newRow("none") << QLocale::c() << QFontDatabase::Any;
}

void View1PageTest::fontsAreThoseOfTheLocale()
{
    QFETCH(QLocale, locale);
    QFETCH(QFontDatabase::WritingSystem, script);
    QLocale::setDefault(locale);
    const frmOption dialog(nullptr);
    const auto *combo = control<QComboBox>(dialog, u"FontName"_s);
    QVERIFY(combo->isEditable());
    QStringList expected = QFontDatabase::families(script);
    expected.removeIf(&QFontDatabase::isPrivateFamily);
    QCOMPARE(itemsOf(combo), expected);
}

void View1PageTest::firstEqualFontIsCurrent()
{
    const QStringList families = itemsOf(control<QComboBox>(frmOption(nullptr), u"FontName"_s));
    QVERIFY(families.size() > 1);
    for (const QString &family : families) {
        appSettings().FontName = family;
        const frmOption dialog(nullptr);
        QCOMPARE(control<QComboBox>(dialog, u"FontName"_s)->currentIndex(), families.indexOf(family));
        QCOMPARE(control<QComboBox>(dialog, u"FontName"_s)->currentText(), family);
    }
}

void View1PageTest::fontOfNoListStays_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("lcfont") << u"lcfont"_s;
    QTest::newRow("not installed") << u"No such font at all"_s;
    QTest::newRow("empty") << QString();
    QTest::newRow("blanks around") << u" monospace "_s;
    const QStringList families = QFontDatabase::families();
    const auto hasSmallLetters = [](const QString &name) {
        return name.size() > 2 && name != name.toUpper();
    };
    const auto listed = std::find_if(families.begin(), families.end(), hasSmallLetters);
    QVERIFY(listed != families.end());
    QTest::newRow("a listed one in other letters") << listed->toUpper();
    QTest::newRow("beginning of a listed one") << listed->first(2);
}

void View1PageTest::fontOfNoListStays()
{
    QFETCH(QString, name);
    appSettings().FontName = name;
    const QStringList before = allSettings();
    frmOption dialog(nullptr);
    dialog.show();
    auto *combo = control<QComboBox>(dialog, u"FontName"_s);
    QCOMPARE(combo->currentText(), name);
    QCOMPARE(combo->currentIndex(), -1);
    QCOMPARE(combo->lineEdit()->cursorPosition(), 0);
    combo->setFocus();
    QTest::keyClick(combo, Qt::Key_Tab);
    dialog.accept();
    QCOMPARE(allSettings(), before);
}

void View1PageTest::chosenFontIsStored()
{
    frmOption dialog(nullptr);
    auto *combo = control<QComboBox>(dialog, u"FontName"_s);
    choose(combo, combo->count() - 1);
    const QString chosen = combo->itemText(combo->count() - 1);
    dialog.accept();
    QCOMPARE(appSettings().FontName, chosen);
}

void View1PageTest::fontSizes()
{
    const frmOption dialog(nullptr);
    const auto *combo = control<QComboBox>(dialog, u"FontSize"_s);
    QCOMPARE(itemsOf(combo), QStringList({ u"10"_s, u"12"_s, u"16"_s, u"18"_s, u"20"_s, u"24"_s, u"32"_s }));
    QVERIFY(combo->isEditable());
    QCOMPARE(combo->currentIndex(), 3);
    appSettings().FontSize = 14;
    QCOMPARE(control<QComboBox>(frmOption(nullptr), u"FontSize"_s)->currentText(), u"14"_s);
}

void View1PageTest::fontSizeIsChecked_data()
{
    const QString bounds = u"The Font size must be between 1 and 99."_s;
    addNumbers(u"The Font size must be numeric."_s);
    addAccepted({ 1, 14, 99, 100 });
    addRefused({ 0, 101, -5, std::numeric_limits<int>::max(), std::numeric_limits<int>::min() }, bounds);
}

void View1PageTest::fontSizeIsChecked()
{
    QFETCH(QString, text);
    QFETCH(QString, message);
    QFETCH(int, stored);
    numberIsCheckedAndStored(u"FontSize"_s, text, message, stored);
}

/// By keys, of which none completes a listed size.
void View1PageTest::typedFontSizeIsStored()
{
    for (const char *typed : { "14", "1", "3" }) {
        frmOption dialog(nullptr);
        dialog.show();
        auto *combo = control<QComboBox>(dialog, u"FontSize"_s);
        combo->lineEdit()->selectAll();
        QTest::keyClicks(combo, QString::fromLatin1(typed));
        QTest::keyClick(combo, Qt::Key_Return);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(appSettings().FontSize, QByteArray(typed).toInt());
    }
}

void View1PageTest::wrapColumnsAreChecked_data()
{
    const QString bounds = u"The Wrap columns must be more than 10 numbers."_s;
    addNumbers(u"The Wrap columns must be numeric."_s);
    addAccepted({ 10, 11, 100000, std::numeric_limits<int>::max() });
    addRefused({ 9, 0, -10, std::numeric_limits<int>::min() }, bounds);
}

void View1PageTest::wrapColumnsAreChecked()
{
    QFETCH(QString, text);
    QFETCH(QString, message);
    QFETCH(int, stored);
    appSettings().WrapMode = 2;
    numberIsCheckedAndStored(u"WrapLen"_s, text, message, stored);
}

void View1PageTest::columnsAreNotCheckedUnlessFixed_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("stored");
    QTest::newRow("None, letters") << 0 << u"abc"_s << 0;
    QTest::newRow("Auto, letters") << 1 << u"abc"_s << 0;
    QTest::newRow("Auto, empty") << 1 << QString() << 0;
    QTest::newRow("Auto, overflow") << 1 << u"2147483648"_s << 0;
    QTest::newRow("None, 3") << 0 << u"3"_s << 3;
    QTest::newRow("Auto, full width") << 1 << u"８０"_s << 80;
    QTest::newRow("Auto, -5") << 1 << u"-5"_s << -5;
    QTest::newRow("mode 3, 7") << 3 << u"7"_s << 7;
}

void View1PageTest::columnsAreNotCheckedUnlessFixed()
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

void View1PageTest::columnFieldFollowsWrapMode_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("enabled");
    QTest::newRow("None") << 0 << false;
    QTest::newRow("Auto") << 1 << false;
    QTest::newRow("Fixed column") << 2 << true;
}

void View1PageTest::columnFieldFollowsWrapMode()
{
    QFETCH(int, index);
    for (const int before : { 0, 1, 2, 3 }) {
        appSettings().WrapMode = before;
        const frmOption dialog(nullptr);
        choose(control<QComboBox>(dialog, u"WrapMode"_s), index);
        QTEST(control<QLineEdit>(dialog, u"WrapLen"_s)->isEnabled(), "enabled");
    }
}

void View1PageTest::columnFieldFollowsKeys()
{
    frmOption dialog(nullptr);
    dialog.show();
    auto *mode = control<QComboBox>(dialog, u"WrapMode"_s);
    const auto *columns = control<QLineEdit>(dialog, u"WrapLen"_s);
    for (const auto &[key, enabled] : { std::pair(Qt::Key_Down, false), { Qt::Key_Down, true },
             { Qt::Key_Up, false }, { Qt::Key_End, true }, { Qt::Key_Home, false } }) {
        QTest::keyClick(mode, key);
        QCOMPARE(columns->isEnabled(), enabled);
    }
}

void View1PageTest::columnFieldAtStart_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::newRow("-1") << false;
    QTest::newRow("0") << false;
    QTest::newRow("1") << false;
    QTest::newRow("2") << true;
    QTest::newRow("3") << false;
}

void View1PageTest::columnFieldAtStart()
{
    appSettings().WrapMode = QByteArray(QTest::currentDataTag()).toInt();
    QTEST(control<QLineEdit>(frmOption(nullptr), u"WrapLen"_s)->isEnabled(), "enabled");
}

REGISTER_TEST(runWindowTest<View1PageTest>)
#include "view1page_test.moc"
