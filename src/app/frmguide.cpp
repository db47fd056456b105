#include "app/frmguide.h"

#include "app/guidebrowser.h"
#include "app/largestdialog.h"
#include "platform/formparts.h"
#include "platform/screenclass.h"
#include "platform/scrolledform.h"

#include <QPushButton>
#include <QScreen>
#include <QShowEvent>
#include <QVBoxLayout>

namespace {

constexpr QSize mostComfortable(480, 400); ///< platform pixels: lines that are still easy to read
constexpr QSize besideOnScreen(0, 50); ///< the form's title, and what the desktop has there

QSize fitted(QSize size, const QScreen &screen)
{
    return size.boundedTo(screen.availableSize() - besideOnScreen);
}

} // namespace

frmGuide::frmGuide(QWidget *parent)
    : QDialog(parent)
    , m_browser(new GuideBrowser(this))
{
    setModal(true);
    setWindowTitle(tr("Guide"));
    m_browser->setAccessibleName(windowTitle());
    auto *const back = new QPushButton(tr("Back"), this);
    back->setEnabled(false);
    auto *const close = new QPushButton(tr("Close"), this);
    close->setDefault(true);
    for (QPushButton *const button : { back, close })
        button->setMinimumSize(usualButtonSize());
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_browser, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
    connect(back, &QPushButton::clicked, m_browser, &QTextBrowser::backward);

    auto *rows = new QVBoxLayout(this);
    setSpaces(rows, forScreen(2, 7), forScreen(4, 7));
    rows->addWidget(m_browser, 1);
    rows->addWidget(createRowOfButtons({ back, close }));
    m_browser->setFocus();
    resize(fitted(largestDialog(), *screen()));
    scrollWhereTooLarge(this);
}

void frmGuide::enlarge()
{
    resize(fitted(mostComfortable, *screen()).expandedTo(size()));
}

void frmGuide::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    if (event->spontaneous())
        return;
    m_browser->showGuide();
    m_browser->showKeys();
}
