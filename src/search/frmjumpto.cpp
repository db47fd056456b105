#include "search/frmjumpto.h"

#include "platform/decimalnumber.h"
#include "platform/formparts.h"
#include "platform/messagebox.h"
#include "platform/screenclass.h"
#include "platform/scrolledform.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int formSpace = 10;

QHBoxLayout *rowOf(std::initializer_list<QWidget *> controls)
{
    auto *row = new QHBoxLayout;
    row->setSpacing(formSpace);
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
    m_line->setFixedWidth(forScreen(40, 80));
    auto *rows = new QVBoxLayout(this);
    setSpaces(rows, formSpace, formSpace);
    rows->addLayout(rowOf({ createLabel(tr("Line No:"), m_line), m_line }));
    const auto [jump, cancel] = createEndButtons(this, tr("Jump"), tr("Cancel"));
    for (QPushButton *button : { jump, cancel })
        button->setFixedSize(forScreen(QSize(60, 17), QSize(100, 27)));
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
