#include "app/frmrecovery.h"

#include "files/filename.h"
#include "platform/digitgrouping.h"
#include "platform/formparts.h"
#include "platform/messagebox.h"
#include "platform/screenclass.h"
#include "platform/scrolledform.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

frmRecovery::frmRecovery(QWidget *parent, const QList<UnsavedText> &texts)
    : QDialog(parent)
    , m_list(new QListWidget(this))
{
    setModal(true);
    setWindowTitle(tr("Texts That Were Not Saved"));
    m_list->setAccessibleName(windowTitle());
    m_list->setMinimumSize(forScreen(QSize(220, 180), QSize(440, 280)));
    m_list->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setTextElideMode(Qt::ElideNone);
    m_list->setSpacing(2);
    for (const UnsavedText &text : texts)
        addRow(text);
    m_list->setCurrentRow(0);
    connect(m_list, &QListWidget::itemChanged, this, &frmRecovery::showWhetherAnyIsChosen);

    auto *rows = new QVBoxLayout(this);
    setSpaces(rows, forScreen(5, 10), forScreen(4, 8));
    rows->addWidget(m_list, 1);
    const auto [restore, later] = createEndButtons(this, tr("Restore"), tr("Later"));
    m_restore = restore;
    m_discard = new QPushButton(tr("Discard"), this);
    connect(m_discard, &QPushButton::clicked, this, &frmRecovery::askAndDiscard);
    const QList<QPushButton *> buttons{ m_restore, m_discard, later };
    for (QPushButton *button : buttons)
        button->setFixedSize(forScreen(QSize(68, 17), QSize(130, 28)));
    rows->addWidget(createRowOfButtons(buttons, forScreen(4, 8)));
    setTabOrder(m_list, m_restore);
    setTabOrder(m_restore, m_discard);
    setTabOrder(m_discard, later);
    m_list->setFocus();
    resize(minimumSizeHint());
    scrollWhereTooLarge(this);
}

void frmRecovery::addRow(const UnsavedText &text)
{
    const QString folder = text.folder.isEmpty() ? tr("never saved") : FileName::forDisplay(text.folder);
    const QString time = text.time.toString(u"yyyy/MM/dd hh:mm:ss");
    QStringList lines{ FileName::forDisplay(text.name), folder, time };
    if (text.size >= 0)
        lines << tr("Characters: %1").arg(groupDigits(text.size));
    auto *item = new QListWidgetItem(lines.join(u'\n'));
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(Qt::Checked);
    m_list->addItem(item);
}

QList<int> frmRecovery::chosen() const
{
    QList<int> rows;
    for (int row = 0; row < m_list->count(); ++row) {
        if (m_list->item(row)->checkState() == Qt::Checked)
            rows << row;
    }
    return rows;
}

void frmRecovery::showWhetherAnyIsChosen()
{
    const bool isAnyChosen = !chosen().isEmpty();
    m_restore->setEnabled(isAnyChosen);
    m_discard->setEnabled(isAnyChosen);
}

void frmRecovery::askAndDiscard()
{
    const int count = int(chosen().size());
    const QString question = count == 1
        ? tr("The chosen text was not saved anywhere else.\nDelete it for ever?")
        : tr("The %n chosen texts were not saved anywhere else.\nDelete them for ever?", nullptr, count);
    if (MessageBox::question(this, windowTitle(), question, { tr("Delete"), tr("Cancel") }, 1, 1) == 0)
        done(Discard);
}
