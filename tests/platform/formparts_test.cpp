#include "platform/formparts.h"
#include "tests/screenclass.h"
#include "tests/testprogram.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

class FormPartsTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { setVga(false); }
    void buttonsFollowTheScreenClass();
    void endButtonsEndTheDialog();
    void buttonsStandAtTheRight();
    void spacesAreTheSameOnAllSides();
    void labelsLeadToControlsAndNameThem();
    void typableCombosKeepWhatIsTyped();
};

void FormPartsTest::buttonsFollowTheScreenClass()
{
    QCOMPARE(usualButtonSize(), QSize(60, 17));
    setVga(true);
    QCOMPARE(usualButtonSize(), QSize(120, 28));
}

void FormPartsTest::endButtonsEndTheDialog()
{
    QDialog dialog;
    const auto [accept, reject] = createEndButtons(&dialog, u"Jump"_s, u"Cancel"_s);
    QCOMPARE(accept->text(), u"Jump"_s);
    QCOMPARE(reject->text(), u"Cancel"_s);
    QVERIFY(accept->isDefault());
    accept->click();
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    reject->click();
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
}

void FormPartsTest::buttonsStandAtTheRight()
{
    QDialog dialog;
    auto *layout = new QVBoxLayout(&dialog);
    setSpaces(layout, 0, 0);
    const auto [accept, reject] = createEndButtons(&dialog, u"OK"_s, u"Cancel"_s);
    for (QPushButton *button : { accept, reject })
        button->setFixedSize(usualButtonSize());
    layout->addWidget(createRowOfButtons({ accept, reject }, 5));
    dialog.resize(300, 100);
    dialog.show();
    QCOMPARE(reject->mapTo(&dialog, QPoint(reject->width(), 0)).x(), 300);
    QCOMPARE(reject->x() - accept->geometry().right() - 1, 5);
}

void FormPartsTest::spacesAreTheSameOnAllSides()
{
    QVBoxLayout layout;
    setSpaces(&layout, 7, 4);
    QCOMPARE(layout.contentsMargins(), QMargins(7, 7, 7, 7));
    QCOMPARE(layout.spacing(), 4);
}

void FormPartsTest::labelsLeadToControlsAndNameThem()
{
    QLineEdit field;
    const std::unique_ptr<QLabel> label(createLabel(u"&Line:"_s, &field));
    QCOMPARE(label->buddy(), &field);

    QComboBox combo;
    makeTypable(&combo);
    const std::unique_ptr<QLabel> sizeLabel(createLabel(u"Font &size :"_s, &combo));
    QCOMPARE(sizeLabel->buddy(), &combo);
    QCOMPARE(combo.lineEdit()->accessibleName(), u"Font size :"_s);
}

void FormPartsTest::typableCombosKeepWhatIsTyped()
{
    QComboBox combo;
    combo.addItem(u"abc"_s);
    makeTypable(&combo);
    nameTypable(&combo, u"Search"_s);
    QCOMPARE(combo.accessibleName(), u"Search"_s);
    QCOMPARE(combo.lineEdit()->accessibleName(), u"Search"_s);
    combo.show();
    combo.clearEditText();
    QTest::keyClicks(combo.lineEdit(), u"ab"_s);
    QCOMPARE(combo.currentText(), u"ab"_s);
    QTest::keyClick(combo.lineEdit(), Qt::Key_Return);
    QCOMPARE(combo.count(), 1);
}

REGISTER_TEST(runWindowTest<FormPartsTest>)
#include "formparts_test.moc"
