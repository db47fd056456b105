#include "options/frmoption.h"

#include "options/choicecombo.h"
#include "platform/decimalnumber.h"
#include "platform/formparts.h"
#include "platform/messagebox.h"
#include "platform/screenclass.h"
#include "platform/scrolledform.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

namespace {

constexpr int fixedWrap = 2; // item of the wrap modes, and what is stored for it

} // namespace

/// One number as typed and what it may be.
struct frmOption::NumberCheck {
    QLineEdit *field;
    int least;
    int most;
    QString notNumeric;
    QString outOfBounds;
};

frmOption::frmOption(QWidget *parent)
    : QDialog(parent)
    , m_pages(new QTabWidget)
{
    setModal(true);
    setWindowTitle(tr("Options"));
    m_pages->setAccessibleName(windowTitle());
    m_pages->addTab(createView1Page(), tr("View&1"));
    m_pages->addTab(createView2Page(), tr("View&2"));
    m_pages->addTab(createDetailPage(), tr("&Detail"));

    auto *layout = new QVBoxLayout(this);
    setSpaces(layout, forScreen(2, 7), forScreen(4, 7));
    layout->addWidget(m_pages, 1);
    const auto [ok, cancel] = createEndButtons(this, tr("OK"), tr("Cancel"));
    for (QPushButton *button : { ok, cancel })
        button->setMinimumSize(usualButtonSize());
    layout->addWidget(createRowOfButtons({ ok, cancel }));
    scrollWhereTooLarge(this);
}

void frmOption::slotWrapModeActivated(int index)
{
    m_wrapLen->setEnabled(index == fixedWrap);
}

void frmOption::slotRecentClear()
{
    const int answer = MessageBox::question(this, tr("Clear Recent Files"),
        tr("Are you sure you want to clear the Recent Files?"), { tr("OK"), tr("Cancel") }, 0, 1);
    if (answer != 0)
        return;
    for (RecentEntry &entry : recentFiles().entries) {
        entry.path.clear();
        entry.name.clear();
    }
}

void frmOption::accept()
{
    if (!areNumbersUsable())
        return;
    store();
    writeSettings();
    QDialog::accept();
}

bool frmOption::isWrapFixed() const
{
    return m_wrapMode->currentIndex() == fixedWrap;
}

/// Tells about the first number that is not usable.
bool frmOption::areNumbersUsable()
{
    const NumberCheck wrapColumns{ m_wrapLen, 10, std::numeric_limits<int>::max(),
        tr("The Wrap columns must be numeric."), tr("The Wrap columns must be more than 10 numbers.") };
    // Two bounds are not what their texts say: 10 columns are enough, and 100 points are not too many.
    const NumberCheck others[] = {
        { m_tabLen, 1, 12, tr("The Tab size must be numeric."),
            tr("The Tab size must be between 1 and 12.") },
        { m_fontSize->lineEdit(), 1, 100, tr("The Font size must be numeric."),
            tr("The Font size must be between 1 and 99.") },
        { m_recentViewCnt, 0, 15, tr("The Recent Files count must be numeric."),
            tr("The Recent Files count must be between 0 and 15.") },
    };
    if (isWrapFixed() && !isUsable(wrapColumns))
        return false;
    return std::all_of(
        std::begin(others), std::end(others), [this](const NumberCheck &check) { return isUsable(check); });
}

bool frmOption::isUsable(const NumberCheck &check)
{
    const std::optional<int> number = decimalNumberAs<int>(check.field->text());
    if (number && *number >= check.least && *number <= check.most)
        return true;
    showField(check.field);
    MessageBox::critical(this, tr("Error"), number ? check.outOfBounds : check.notNumeric);
    return false;
}

/// Brings the field to the front, ready to be typed over.
void frmOption::showField(QLineEdit *field)
{
    for (int page = 0; page < m_pages->count(); ++page) {
        if (m_pages->widget(page)->isAncestorOf(field))
            m_pages->setCurrentIndex(page);
    }
    field->setFocus();
    field->selectAll();
}

void frmOption::store() const
{
    AppSettings &settings = appSettings();
    for (const Check &check : m_checks)
        settings.*check.setting = check.box->isChecked() ? 1 : 0;
    for (const Choice &choice : m_choices)
        settings.*choice.setting = choice.combo->value();
    settings.FontName = m_fontName->currentText();
    settings.FontSize = decimalNumberAs<int>(m_fontSize->currentText()).value_or(0);
    settings.WrapLen = decimalNumberAs<int>(m_wrapLen->text()).value_or(0);
    settings.TabLen = decimalNumberAs<int>(m_tabLen->text()).value_or(0);
    recentFiles().RecentViewCnt = decimalNumberAs<int>(m_recentViewCnt->text()).value_or(0);
}
