#include "search/frmjumpto.h"
#include "tests/messageboxes.h"
#include "tests/search/searchforms.h"
#include "tests/testprogram.h"

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::StringLiterals;

class FrmJumpToTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void sizes_data();
    void sizes();
    void layoutAsInAForm();
    void refuses_data();
    void refuses();
    void accepts_data();
    void accepts();
    void isCancelled_data();
    void isCancelled();
    void takesTypedNumberAfterARefusal();
};

void FrmJumpToTest::init()
{
    failOnWarnings();
    setScreenClass(false);
}

void FrmJumpToTest::sizes_data()
{
    QTest::addColumn<bool>("vga");
    QTest::addColumn<int>("field");
    QTest::addColumn<QSize>("button");
    QTest::newRow("small") << false << 40 << QSize(60, 17);
    QTest::newRow("VGA") << true << 80 << QSize(100, 27);
}

void FrmJumpToTest::sizes()
{
    QFETCH(bool, vga);
    setScreenClass(vga);
    frmJumpTo dialog(nullptr);
    dialog.show();
    QTEST(dialog.findChild<QLineEdit *>()->minimumWidth(), "field");
    QTEST(dialog.findChild<QLineEdit *>()->maximumWidth(), "field");
    for (const char16_t *text : { u"Jump", u"Cancel" }) {
        QTEST(buttonOf(dialog, QString::fromUtf16(text))->minimumSize(), "button");
        QTEST(buttonOf(dialog, QString::fromUtf16(text))->maximumSize(), "button");
    }
}

void FrmJumpToTest::layoutAsInAForm()
{
    QWidget window;
    const frmJumpTo dialog(&window);
    QVERIFY(dialog.isModal());
    QCOMPARE(dialog.parentWidget(), &window);
    QCOMPARE(dialog.windowTitle(), u"Jump to"_s);
    const auto *rows = qobject_cast<const QVBoxLayout *>(dialog.layout());
    QVERIFY(rows);
    QCOMPARE(rows->contentsMargins(), QMargins(10, 10, 10, 10));
    QCOMPARE(rows->spacing(), 10);
    QCOMPARE(rows->count(), 2);
    const auto *label = dialog.findChild<QLabel *>();
    QCOMPARE(label->text(), u"Line No:"_s);
    auto *field = dialog.findChild<QLineEdit *>();
    QCOMPARE(field->text(), QString());
    const QList<QList<QWidget *>> expected{ { const_cast<QLabel *>(label), field },
        { buttonOf(dialog, u"Jump"_s), buttonOf(dialog, u"Cancel"_s) } };
    for (int row = 0; row < 2; ++row) {
        const QLayout *const inRow = rows->itemAt(row)->layout();
        QCOMPARE(inRow->spacing(), 10);
        QCOMPARE(inRow->count(), 2);
        for (int column = 0; column < 2; ++column)
            QCOMPARE(inRow->itemAt(column)->widget(), expected.at(row).at(column));
    }
    QVERIFY(buttonOf(dialog, u"Jump"_s)->isDefault());
}

void FrmJumpToTest::refuses_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("letters") << u" ten "_s;
    QTest::newRow("a number beyond 64 bits") << u"99999999999999999999"_s;
    QTest::newRow("digits that the options do not take either") << u"\u0661\u0662"_s;
}

void FrmJumpToTest::refuses()
{
    QFETCH(QString, text);
    frmJumpTo dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto *field = dialog.findChild<QLineEdit *>();
    QVERIFY(field->hasFocus());
    field->insert(text);
    MessageBoxes boxes;
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(boxes.texts(), QStringList{ u"Input Error|Input a number."_s });
    QCOMPARE(boxes.shown().at(0).icon, QMessageBox::Critical);
    QVERIFY(dialog.isVisible());
    QCOMPARE(field->text(), text);
    QCOMPARE(field->selectedText(), text);
    QCOMPARE(dialog.focusWidget(), field);
    QCOMPARE(dialog.lineNo, 0);
}

void FrmJumpToTest::accepts_data()
{
    QTest::addColumn<QString>("by");
    QTest::newRow("the Jump button") << u"Jump"_s;
    QTest::newRow("Return in the field") << u"Return"_s;
    QTest::newRow("Enter in the field") << u"Enter"_s;
}

void FrmJumpToTest::accepts()
{
    QFETCH(QString, by);
    frmJumpTo dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto *field = dialog.findChild<QLineEdit *>();
    QTest::keyClicks(field, u"-12"_s);
    if (by == u"Jump"_s)
        QTest::mouseClick(buttonOf(dialog, by), Qt::LeftButton);
    else
        QTest::keyClick(field, by == u"Return"_s ? Qt::Key_Return : Qt::Key_Enter);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.lineNo, -12);
}

void FrmJumpToTest::isCancelled_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("the Cancel button") << false;
    QTest::newRow("Escape") << true;
}

void FrmJumpToTest::isCancelled()
{
    QFETCH(bool, byKey);
    frmJumpTo dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    dialog.findChild<QLineEdit *>()->setText(u"no number"_s);
    if (byKey)
        QTest::keyClick(&dialog, Qt::Key_Escape);
    else
        buttonOf(dialog, u"Cancel"_s)->click();
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QVERIFY(!dialog.isVisible());
}

void FrmJumpToTest::takesTypedNumberAfterARefusal()
{
    frmJumpTo dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    auto *field = dialog.findChild<QLineEdit *>();
    MessageBoxes boxes;
    QTest::keyClicks(field, u"x"_s);
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(boxes.count(), 1);
    QCOMPARE(dialog.focusWidget(), field);
    field->insert(u"\u2212４２９４９６７２９７"_s);
    QTest::keyClick(field, Qt::Key_Return);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.lineNo, -4294967297);
}

REGISTER_TEST(runFormTest<FrmJumpToTest>)
#include "frmjumpto_test.moc"
