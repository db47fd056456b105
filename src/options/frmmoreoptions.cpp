#include "options/frmmoreoptions.h"

#include "platform/formparts.h"
#include "platform/screenclass.h"
#include "platform/scrolledform.h"
#include "settings/moresettings.h"
#include "settings/settings.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// What it does, and whether it does so at first.
QString sentenceOf(const MoreSwitch &each)
{
    const bool isOn = MoreSettings().*each.setting != 0;
    const QString shipped = isOn ? frmMoreOptions::tr("On at first.") : frmMoreOptions::tr("Off at first.");
    return frmMoreOptions::tr(each.sentence) + u' ' + shipped;
}

/// As high as some of the switches, which scroll in it.
class SwitchArea : public QScrollArea {
public:
    explicit SwitchArea(QWidget *switches)
    {
        setWidgetResizable(true);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setFocusPolicy(Qt::NoFocus);
        verticalScrollBar()->setAccessibleName(
            QCoreApplication::translate("QMultiLineEdit", "Vertical scroll bar"));
        setWidget(switches);
        showFocusIn(this);
    }

    QSize sizeHint() const override
    {
        return forScreen(QSize(220, 200), QSize(440, 320)).expandedTo(minimumSizeHint());
    }
    /// No switch is cut.
    QSize minimumSizeHint() const override
    {
        const int beside = verticalScrollBar()->sizeHint().width() + 2 * frameWidth();
        return { widget()->minimumSizeHint().width() + beside, QScrollArea::minimumSizeHint().height() };
    }
};

} // namespace

frmMoreOptions::frmMoreOptions(QWidget *parent)
    : QDialog(parent)
{
    setModal(true);
    setWindowTitle(tr("More options"));
    auto *layout = new QVBoxLayout(this);
    setSpaces(layout, forScreen(2, 7), forScreen(4, 7));
    layout->addWidget(new SwitchArea(createSwitches()), 1);
    const auto [ok, cancel] = createEndButtons(this, tr("OK"), tr("Cancel"));
    for (QPushButton *button : { ok, cancel })
        button->setMinimumSize(usualButtonSize());
    layout->addWidget(createRowOfButtons({ ok, cancel }));
    findChild<QCheckBox *>()->setFocus();
    scrollWhereTooLarge(this);
}

QWidget *frmMoreOptions::createSwitches()
{
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    setSpaces(layout, forScreen(3, 7), forScreen(2, 4));
    for (const MoreSwitch &each : moreSwitches()) {
        QCheckBox *const box = createSwitch(each);
        auto *const sentence = new QLabel(box->accessibleDescription());
        sentence->setWordWrap(true);
        sentence->setTextFormat(Qt::PlainText);
        sentence->setIndent(style()->pixelMetric(QStyle::PM_IndicatorWidth));
        layout->addWidget(box);
        layout->addWidget(sentence);
    }
    layout->addStretch();
    return page;
}

QCheckBox *frmMoreOptions::createSwitch(const MoreSwitch &each)
{
    auto *box = new QCheckBox(tr(each.label));
    box->setObjectName(QString::fromLatin1(each.key));
    box->setAccessibleDescription(sentenceOf(each));
    box->setChecked(moreSettings().*each.setting != 0);
    return box;
}

void frmMoreOptions::accept()
{
    for (const MoreSwitch &each : moreSwitches())
        moreSettings().*each.setting =
            findChild<QCheckBox *>(QString::fromLatin1(each.key))->isChecked() ? 1 : 0;
    writeSettings();
    QDialog::accept();
}
