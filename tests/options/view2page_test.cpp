#include "tests/options/optionsform.h"
#include "tests/testprogram.h"

using namespace Qt::StringLiterals;
using namespace OptionsForm;

/// Page "View2" of the options: row numbers, the active line, tabs.
class View2PageTest : public QObject {
    Q_OBJECT

private slots:
    void init() { resetSettings(); }

    void labels();
    void places();
    void choices_data();
    void choices();
    void foreignValues_data();
    void foreignValues();
    void tabSizeIsChecked_data();
    void tabSizeIsChecked();
};

void View2PageTest::labels()
{
    QCOMPARE(labelsOf(frmOption(nullptr), 1),
        QStringList({ u"Row No : -> RowNo"_s, u"Row No Color : -> RowNoColor"_s,
            u"Active Line : -> ActiveHLine"_s, u"Tab size : -> TabLen"_s }));
}

/// One below the other, each beside its label; the lists are equally wide, to the page's edge.
void View2PageTest::places()
{
    frmOption dialog(nullptr);
    dialog.show();
    dialog.findChild<QTabWidget *>()->setCurrentIndex(1);
    int y = 0;
    for (const QLabel *label : pageOf(dialog, 1)->findChildren<QLabel *>()) {
        QVERIFY2(areSideBySide(dialog, { label, label->buddy() }), qPrintable(label->text()));
        const QPoint place = label->buddy()->mapTo(&dialog, QPoint());
        QVERIFY2(place.y() > y, qPrintable(label->text()));
        QCOMPARE(place.x(), control(dialog, u"RowNo"_s)->mapTo(&dialog, QPoint()).x());
        y = place.y();
    }
    QCOMPARE(control(dialog, u"ActiveHLine"_s)->width(), control(dialog, u"RowNo"_s)->width());
    QVERIFY(pageOf(dialog, 1)->width() - control(dialog, u"RowNo"_s)->geometry().right() < 10);
    QVERIFY(control(dialog, u"RowNo"_s)->x() < pageOf(dialog, 1)->width() / 2);
}

void View2PageTest::choices_data()
{
    QTest::addColumn<Setting>("setting");
    QTest::addColumn<QStringList>("items");
    QTest::newRow("RowNo") << &AppSettings::RowNo
                           << QStringList{ u"None"_s, u"Small size"_s, u"Large size"_s };
    QTest::newRow("RowNoColor") << &AppSettings::RowNoColor << QStringList{ u"(Same ForeColor)"_s } + colors;
    QTest::newRow("ActiveHLine") << &AppSettings::ActiveHLine << QStringList{ u"None"_s } + colors;
}

void View2PageTest::choices()
{
    QFETCH(Setting, setting);
    QFETCH(QStringList, items);
    choiceShowsAndStores(QString::fromLatin1(QTest::currentDataTag()), setting, 0, items);
}

void View2PageTest::foreignValues_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Setting>("setting");
    QTest::addColumn<int>("value");
    for (const int value : { 3, -1 })
        QTest::addRow("RowNo %d", value) << u"RowNo"_s << &AppSettings::RowNo << value;
    for (const int value : { 18, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max() }) {
        QTest::addRow("RowNoColor %d", value) << u"RowNoColor"_s << &AppSettings::RowNoColor << value;
        QTest::addRow("ActiveHLine %d", value) << u"ActiveHLine"_s << &AppSettings::ActiveHLine << value;
    }
}

void View2PageTest::foreignValues()
{
    QFETCH(QString, name);
    QFETCH(Setting, setting);
    QFETCH(int, value);
    foreignValueStays(name, setting, value);
}

void View2PageTest::tabSizeIsChecked_data()
{
    addNumbers(u"The Tab size must be numeric."_s);
    addAccepted({ 1, 4, 11 });
    addRefused({ 0, 13, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min() },
        u"The Tab size must be between 1 and 12."_s);
}

void View2PageTest::tabSizeIsChecked()
{
    QFETCH(QString, text);
    QFETCH(QString, message);
    QFETCH(int, stored);
    numberIsCheckedAndStored(u"TabLen"_s, text, message, stored);
}

REGISTER_TEST(runWindowTest<View2PageTest>)
#include "view2page_test.moc"
