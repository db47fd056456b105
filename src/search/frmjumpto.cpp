#include "search/frmjumpto.h"

#include "settings/settings.h"
#include "platform/decimalnumber.h"
#include "platform/messagebox.h"
#include "platform/scrolledform.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

struct FormSizes {
    int fieldWidth;
    QSize button;
};
constexpr FormSizes smallSizes{ 40, { 60, 17 } };
constexpr FormSizes vgaSizes{ 80, { 100, 27 } };
constexpr int formMargin = 10;
constexpr int formSpacing = 10;

const FormSizes &formSizes()
{
    return isVga() ? vgaSizes : smallSizes;
}

QHBoxLayout *rowOf(std::initializer_list<QWidget *> controls)
{
    auto *row = new QHBoxLayout;
    row->setSpacing(formSpacing);
    for (QWidget *control : controls)
        row->addWidget(control);
    return row;
}

} // namespace

frmJumpTo::frmJumpTo(QWidget *parent)
    : QDialog(parent)
    , m_line(new QLineEdit)
{
    setModal(true);
    setWindowTitle(tr("Jump to"));
    m_line->setFixedWidth(formSizes().fieldWidth);
    auto *label = new QLabel(tr("Line No:"));
    label->setBuddy(m_line);
    auto *jump = new QPushButton(tr("Jump"));
    jump->setDefault(true);
    connect(jump, &QPushButton::clicked, this, &frmJumpTo::accept);
    auto *cancel = new QPushButton(tr("Cancel"));
    connect(cancel, &QPushButton::clicked, this, &frmJumpTo::reject);
    for (QPushButton *button : { jump, cancel })
        button->setFixedSize(formSizes().button);

    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(formMargin, formMargin, formMargin, formMargin);
    rows->setSpacing(formSpacing);
    rows->addLayout(rowOf({ label, m_line }));
    rows->addLayout(rowOf({ jump, cancel }));
    m_line->setFocus();
    scrollWhereTooLarge(this);
}

void frmJumpTo::accept()
{
    const std::optional<qint64> number = decimalNumber(m_line->text());
    if (!number) {
        m_line->setFocus();
        m_line->selectAll();
        MessageBox::critical(this, tr("Input Error"), tr("Input a number."));
        return;
    }
    lineNo = *number;
    QDialog::accept();
}
