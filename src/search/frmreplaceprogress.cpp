#include "search/frmreplaceprogress.h"

#include "platform/formparts.h"
#include "platform/screenclass.h"
#include "platform/scrolledform.h"

#include <QGridLayout>
#include <QHideEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

namespace {

constexpr int progressSpace = 5;
constexpr QPoint place{ 30, 60 };

} // namespace

frmReplaceProgress::frmReplaceProgress(QWidget *parent)
    : QWidget(parent, Qt::Dialog)
    , m_count(new QLabel)
    , m_speedUp(new QPushButton(tr("Speed up")))
{
    setWindowModality(Qt::ApplicationModal);
    setWindowTitle(tr("Replace All"));
    m_speedUp->setFixedSize(forScreen(QSize(80, 17), QSize(140, 28)));
    connect(m_speedUp, &QPushButton::clicked, this, &frmReplaceProgress::slotClickHiSpeed);
    auto *stop = new QPushButton(tr("Stop"));
    stop->setFixedSize(forScreen(QSize(50, 17), QSize(80, 28)));
    connect(stop, &QPushButton::clicked, this, &QWidget::hide);

    auto *grid = new QGridLayout(this);
    setSpaces(grid, progressSpace, progressSpace);
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
