#include "search/frmreplaceprogress.h"

#include "settings/settings.h"
#include "platform/scrolledform.h"

#include <QGridLayout>
#include <QHideEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

namespace {

struct FormSizes {
    QSize speedUp;
    QSize stop;
};
constexpr FormSizes smallSizes{ { 80, 17 }, { 50, 17 } };
constexpr FormSizes vgaSizes{ { 140, 28 }, { 80, 28 } };
constexpr int formMargin = 5;
constexpr int formSpacing = 5;
constexpr QPoint place{ 30, 60 };

const FormSizes &formSizes()
{
    return isVga() ? vgaSizes : smallSizes;
}

} // namespace

frmReplaceProgress::frmReplaceProgress(QWidget *parent)
    : QWidget(parent, Qt::Dialog)
    , m_count(new QLabel)
    , m_speedUp(new QPushButton(tr("Speed up")))
{
    setWindowModality(Qt::ApplicationModal);
    setWindowTitle(tr("Replace All"));
    m_speedUp->setFixedSize(formSizes().speedUp);
    connect(m_speedUp, &QPushButton::clicked, this, &frmReplaceProgress::slotClickHiSpeed);
    auto *stop = new QPushButton(tr("Stop"));
    stop->setFixedSize(formSizes().stop);
    connect(stop, &QPushButton::clicked, this, &QWidget::hide);

    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(formMargin, formMargin, formMargin, formMargin);
    grid->setSpacing(formSpacing);
    grid->addWidget(m_count, 0, 0, 1, 2, Qt::AlignHCenter);
    grid->addWidget(m_speedUp, 1, 0);
    grid->addWidget(stop, 1, 1);
    scrollWhereTooLarge(this);
    move(place);
    adjustSize();
    show();
}

void frmReplaceProgress::setCount(int count)
{
    m_count->setText(tr("replaced :   %1").arg(count));
}

void frmReplaceProgress::slotClickHiSpeed()
{
    speedUp = true;
    m_speedUp->setEnabled(false);
}

// The window system hides a minimised window, which is shown again with it.
void frmReplaceProgress::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous())
        stopRequested = true;
}

void frmReplaceProgress::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        hide();
    else
        QWidget::keyPressEvent(event);
}
