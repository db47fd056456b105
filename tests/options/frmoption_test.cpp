#include "tests/mnemonics.h"
#include "tests/options/optionsform.h"
#include "tests/screenclass.h"
#include "tests/testprogram.h"

#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace OptionsForm;

namespace {

QPushButton *button(const frmOption &dialog, const QString &text)
{
    for (QPushButton *found : dialog.findChildren<QPushButton *>()) {
        if (found->text().remove(u'&') == text)
            return found;
    }
    qFatal("no button %s", qPrintable(text));
}

/// Every control with another value than the settings have.
void changeEverything(const frmOption &dialog)
{
    for (QCheckBox *box : dialog.findChildren<QCheckBox *>())
        box->click();
    for (QComboBox *combo : dialog.findChildren<QComboBox *>()) {
        if (!combo->isEditable())
            choose(combo, (combo->currentIndex() + 1) % combo->count());
    }
    setNumber(dialog, u"FontName"_s, u"some font"_s);
    setNumber(dialog, u"FontSize"_s, u"21"_s);
    setNumber(dialog, u"WrapLen"_s, u"77"_s);
    setNumber(dialog, u"TabLen"_s, u"9"_s);
    setNumber(dialog, u"RecentViewCnt"_s, u"3"_s);
}

} // namespace

/// The options dialog as a whole: its frame, OK and Cancel, and its use by keyboard.
class FrmOptionTest : public QObject {
    Q_OBJECT

private slots:
    void init() { resetSettings(); }
    void cleanup() { setVga(false); }

    void pagesAndButtons();
    void colorsAreAppended();
    void sizesFollowTheScreenClass();

    void okStoresEverything();
    void okWithoutChangesChangesNothing();
    void cancelChangesNothing();
    void firstFailureIsReported_data();
    void firstFailureIsReported();
    void refusedInputStaysAsTyped();
    void refusedFieldComesToTheFront_data();
    void refusedFieldComesToTheFront();

    void labelsLeadToTheirControls();
    void mnemonicsAreUnique();
    void mnemonicsReachEveryControl_data();
    void mnemonicsReachEveryControl();
    void tabGoesThroughThePageInOrder_data();
    void tabGoesThroughThePageInOrder();
    void pagesAreTurnedByKeys();
    void returnAndEscape();
    void returnAcceptsWhereverTheFocusWas();
};

void FrmOptionTest::pagesAndButtons()
{
    frmOption dialog(nullptr);
    QCOMPARE(dialog.windowTitle(), u"Options"_s);
    QVERIFY(dialog.isModal());
    const auto *pages = dialog.findChild<QTabWidget *>();
    QStringList titles;
    for (int i = 0; i < pages->count(); ++i)
        titles << pages->tabText(i).remove(u'&');
    QCOMPARE(titles, QStringList({ u"View1"_s, u"View2"_s, u"Detail"_s }));
    QCOMPARE(pages->currentIndex(), 0);
    dialog.show();
    QVERIFY(areSideBySide(dialog, { button(dialog, u"OK"_s), button(dialog, u"Cancel"_s) }));
    QVERIFY(button(dialog, u"OK"_s)->mapTo(&dialog, QPoint()).y() >= pages->geometry().bottom());
    QVERIFY(button(dialog, u"OK"_s)->isDefault());
}

void FrmOptionTest::colorsAreAppended()
{
    QComboBox combo;
    combo.addItem(u"before"_s);
    frmOption::setComboColorItem(&combo);
    QCOMPARE(itemsOf(&combo), QStringList{ u"before"_s } + colors);
}

void FrmOptionTest::sizesFollowTheScreenClass()
{
    const auto sizeOf = [] {
        frmOption dialog(nullptr);
        dialog.show();
        return button(dialog, u"OK"_s)->size();
    };
    const QSize small = sizeOf();
    QVERIFY2(small.width() >= 60 && small.height() >= 17, "small");
    setVga(true);
    const QSize vga = sizeOf();
    QVERIFY2(vga.width() >= 120 && vga.height() >= 28, "VGA");
    QVERIFY(small.width() < vga.width());
}

/// By their buttons, into the records and the file.
void FrmOptionTest::okStoresEverything()
{
    const QStringList before = allSettings();
    frmOption dialog(nullptr);
    dialog.show();
    changeEverything(dialog);
    QCOMPARE(allSettings(), before);
    button(dialog, u"OK"_s)->click();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QVERIFY(!dialog.isVisible());
    const QStringList stored = allSettings();
    QCOMPARE(stored,
        QStringList({ u"some font"_s, u"1"_s, u"0"_s, u"0"_s, u"0"_s, u"0"_s, u"21"_s, u"0"_s, u"1"_s,
            u"77"_s, u"9"_s, u"0"_s, u"2"_s, u"9"_s, u"4"_s, u"3"_s, u"3"_s, u"2"_s, u"1"_s, u"3"_s }));
    appSettings() = {};
    recentFiles() = {};
    readSettings();
    QCOMPARE(allSettings(), stored);
}

void FrmOptionTest::okWithoutChangesChangesNothing()
{
    const QStringList before = allSettings();
    frmOption dialog(nullptr);
    dialog.show();
    dialog.accept();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(allSettings(), before);
    QVERIFY(QFile::exists(settingsFile()));
}

void FrmOptionTest::cancelChangesNothing()
{
    const QStringList before = allSettings();
    frmOption dialog(nullptr);
    dialog.show();
    changeEverything(dialog);
    button(dialog, u"Cancel"_s)->click();
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QVERIFY(!dialog.isVisible());
    QCOMPARE(allSettings(), before);
    QVERIFY(!QFile::exists(settingsFile()));
}

void FrmOptionTest::firstFailureIsReported_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("messages");
    QTest::newRow("not numeric") << u"x"_s
                                 << QStringList{ u"The Wrap columns must be numeric."_s,
                                        u"The Tab size must be numeric."_s,
                                        u"The Font size must be numeric."_s,
                                        u"The Recent Files count must be numeric."_s };
    QTest::newRow("out of bounds") << u"-1"_s
                                   << QStringList{ u"The Wrap columns must be more than 10 numbers."_s,
                                          u"The Tab size must be between 1 and 12."_s,
                                          u"The Font size must be between 1 and 99."_s,
                                          u"The Recent Files count must be between 0 and 15."_s };
}

void FrmOptionTest::firstFailureIsReported()
{
    QFETCH(QString, text);
    QFETCH(QStringList, messages);
    appSettings().WrapMode = 2;
    frmOption dialog(nullptr);
    dialog.show();
    const QStringList inOrder{ u"WrapLen"_s, u"TabLen"_s, u"FontSize"_s, u"RecentViewCnt"_s };
    for (const QString &name : inOrder)
        setNumber(dialog, name, text);
    MessageBoxes boxes;
    for (qsizetype i = 0; i < inOrder.size(); ++i) {
        dialog.accept();
        QCOMPARE(boxes.count(), i + 1);
        QCOMPARE(boxes.texts().constLast(), u"Error|"_s + messages.at(i));
        QVERIFY(dialog.isVisible());
        setNumber(dialog, inOrder.at(i), u"12"_s);
    }
    dialog.accept();
    QCOMPARE(boxes.count(), 4);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void FrmOptionTest::refusedInputStaysAsTyped()
{
    frmOption dialog(nullptr);
    dialog.show();
    changeEverything(dialog);
    setNumber(dialog, u"TabLen"_s, u" 13"_s);
    MessageBoxes boxes;
    dialog.accept();
    QCOMPARE(boxes.count(), 1);
    QVERIFY(!control<QCheckBox>(dialog, u"ShowEOF"_s)->isChecked());
    QCOMPARE(control<QComboBox>(dialog, u"ForeColor"_s)->currentIndex(), 1);
    QCOMPARE(control<QComboBox>(dialog, u"FontName"_s)->currentText(), u"some font"_s);
    QCOMPARE(control<QLineEdit>(dialog, u"TabLen"_s)->text(), u" 13"_s);
    QCOMPARE(control<QLineEdit>(dialog, u"WrapLen"_s)->text(), u"77"_s);
}

void FrmOptionTest::refusedFieldComesToTheFront_data()
{
    QTest::addColumn<int>("page");
    QTest::newRow("WrapLen") << 0;
    QTest::newRow("FontSize") << 0;
    QTest::newRow("TabLen") << 1;
    QTest::newRow("RecentViewCnt") << 2;
}

void FrmOptionTest::refusedFieldComesToTheFront()
{
    QFETCH(int, page);
    appSettings().WrapMode = 2;
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    frmOption dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto *pages = dialog.findChild<QTabWidget *>();
    pages->setCurrentIndex((page + 1) % 3);
    setNumber(dialog, name, u"9999x"_s);
    MessageBoxes boxes;
    dialog.accept();
    QCOMPARE(pages->currentIndex(), page);
    const auto *combo = dialog.findChild<QComboBox *>(name);
    const auto *field = combo ? combo->lineEdit() : control<QLineEdit>(dialog, name);
    QVERIFY(dialog.focusWidget() == field || dialog.focusWidget() == combo);
    QCOMPARE(field->selectedText(), u"9999x"_s);
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
        const QStringList texts = textsWithPage(*pages, i);
        QVERIFY2(mnemonicsOf(texts).removeDuplicates() == 0, qPrintable(texts.join(u'|')));
    }
}

void FrmOptionTest::mnemonicsReachEveryControl_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<QString>("letters");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("View1") << 0 << u"RTMEFSOBW"_s
                           << QStringList{ u"ShowKAI"_s, u"ShowTAB"_s, u"ShowZEN"_s, u"ShowEOF"_s,
                                  u"FontName"_s, u"FontSize"_s, u"ForeColor"_s, u"BackColor"_s,
                                  u"WrapMode"_s };
    QTest::newRow("View2") << 1 << u"RCAT"_s
                           << QStringList{ u"RowNo"_s, u"RowNoColor"_s, u"ActiveHLine"_s, u"TabLen"_s };
    QTest::newRow("Detail") << 2 << u"PAHR"_s
                            << QStringList{ u"RestoreScroll"_s, u"AutoIndent"_s, u"DefCodec"_s,
                                   u"RecentViewCnt"_s };
}

/// Alt and the page's letter, then Alt and the control's.
void FrmOptionTest::mnemonicsReachEveryControl()
{
    QFETCH(int, page);
    QFETCH(QString, letters);
    QFETCH(QStringList, names);
    frmOption dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClick(&dialog, u"12D"_s.at(page).toLatin1(), Qt::AltModifier);
    QCOMPARE(dialog.findChild<QTabWidget *>()->currentIndex(), page);
    for (qsizetype i = 0; i < names.size(); ++i) {
        auto *box = dialog.findChild<QCheckBox *>(names.at(i));
        const bool wasChecked = box && box->isChecked();
        QTest::keyClick(dialog.focusWidget(), letters.at(i).toLatin1(), Qt::AltModifier);
        QVERIFY2(dialog.focusWidget() == control(dialog, names.at(i)), qPrintable(names.at(i)));
        QTRY_VERIFY2(!box || box->isChecked() != wasChecked, qPrintable(names.at(i)));
    }
}

void FrmOptionTest::tabGoesThroughThePageInOrder_data()
{
    QTest::addColumn<int>("page");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("View1") << 0
                           << QStringList{ u"ShowKAI"_s, u"ShowTAB"_s, u"ShowZEN"_s, u"ShowEOF"_s,
                                  u"FontName"_s, u"FontSize"_s, u"ForeColor"_s, u"BackColor"_s, u"WrapMode"_s,
                                  u"WrapLen"_s };
    QTest::newRow("View2") << 1 << QStringList{ u"RowNo"_s, u"RowNoColor"_s, u"ActiveHLine"_s, u"TabLen"_s };
    QTest::newRow("Detail") << 2
                            << QStringList{ u"RestoreScroll"_s, u"AutoIndent"_s, u"DefCodec"_s, u"DefCRLF"_s,
                                   u"RecentViewCnt"_s, u"Clear Recent Files"_s };
}

/// From the tabs through the controls as they are read to OK and Cancel and round; and back.
void FrmOptionTest::tabGoesThroughThePageInOrder()
{
    QFETCH(int, page);
    QFETCH(QStringList, names);
    appSettings().WrapMode = 2;
    frmOption dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto *pages = dialog.findChild<QTabWidget *>();
    pages->setCurrentIndex(page);
    pages->tabBar()->setFocus();
    const auto focused = [] {
        const QWidget *widget = QApplication::focusWidget();
        const auto *button = qobject_cast<const QPushButton *>(widget);
        return button ? button->text().remove(u'&') : widget->objectName();
    };
    const QStringList expected = names + QStringList{ u"OK"_s, u"Cancel"_s };
    for (const QString &name : expected) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(focused(), name);
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), pages->tabBar());
    for (qsizetype i = expected.size() - 1; i >= 0; --i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(focused(), expected.at(i));
    }
}

void FrmOptionTest::pagesAreTurnedByKeys()
{
    frmOption dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    const auto *pages = dialog.findChild<QTabWidget *>();
    for (const int page : { 1, 2, 0 }) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(pages->currentIndex(), page);
    }
    pages->tabBar()->setFocus();
    QTest::keyClick(pages->tabBar(), Qt::Key_Right);
    QCOMPARE(pages->currentIndex(), 1);
}

void FrmOptionTest::returnAndEscape()
{
    for (const auto &[key, result] :
        { std::pair(Qt::Key_Return, QDialog::Accepted), { Qt::Key_Escape, QDialog::Rejected } }) {
        for (const QString &name : { u"FontName"_s, u"FontSize"_s, u"WrapMode"_s, u"ShowKAI"_s }) {
            frmOption dialog(nullptr);
            dialog.setResult(-1);
            dialog.show();
            control(dialog, name)->setFocus();
            QTest::keyClick(control(dialog, name), key);
            QCOMPARE(dialog.result(), int(result));
        }
    }
}

/// The focus goes to a button when the page it was on is turned, and leaves it again.
void FrmOptionTest::returnAcceptsWhereverTheFocusWas()
{
    frmOption dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    const auto press = [](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    };
    press(Qt::Key_W, Qt::AltModifier);
    press(Qt::Key_End);
    press(Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), control(dialog, u"WrapLen"_s));
    press(Qt::Key_2, Qt::AltModifier);
    press(Qt::Key_T, Qt::AltModifier);
    QCOMPARE(QApplication::focusWidget(), control(dialog, u"TabLen"_s));
    QVERIFY(button(dialog, u"OK"_s)->isDefault());
    press(Qt::Key_Return);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QVERIFY(!dialog.isVisible());
}

REGISTER_TEST(runWindowTest<FrmOptionTest>)
#include "frmoption_test.moc"
