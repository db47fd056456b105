#include "options/frmoption.h"

#include "options/choicecombo.h"
#include "platform/decimalnumber.h"
#include "platform/formparts.h"
#include "platform/messagebox.h"
#include "platform/screenclass.h"
#include "platform/scrolledform.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

namespace {

constexpr int fixedWrap = 2; // item of the wrap modes, and what is stored for it

} // namespace

/// A number that is typed, where it is stored, and what it may be.
struct frmOption::Number {
    QLineEdit *field;
    int *stored;
    int least;
    int most;
    QString notNumeric;
    QString outOfBounds;
};

frmOption::frmOption(QWidget *parent)
    : QDialog(parent)
    , m_controls(appSettings())
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
    const QList<Number> typed = numbers();
    if (!std::all_of(typed.begin(), typed.end(), [this](const Number &number) { return isUsable(number); }))
        return;
    store();
    writeSettings();
    QDialog::accept();
}

bool frmOption::isWrapFixed() const
{
    return m_wrapMode->currentIndex() == fixedWrap;
}

/// In the order in which they are checked.
QList<frmOption::Number> frmOption::numbers() const
{
    AppSettings &settings = appSettings();
    // Two bounds are not what their texts say: 10 columns are enough, and 100 points are not too many.
    return {
        { m_wrapLen, &settings.WrapLen, 10, std::numeric_limits<int>::max(),
            tr("The Wrap columns must be numeric."), tr("The Wrap columns must be more than 10 numbers.") },
        { m_tabLen, &settings.TabLen, 1, 12, tr("The Tab size must be numeric."),
            tr("The Tab size must be between 1 and 12.") },
        { m_fontSize->lineEdit(), &settings.FontSize, 1, AppSettings::largestFontSize,
            tr("The Font size must be numeric."), tr("The Font size must be between 1 and 99.") },
        { m_recentViewCnt, &recentFiles().RecentViewCnt, 0, 15, tr("The Recent Files count must be numeric."),
            tr("The Recent Files count must be between 0 and 15.") },
    };
}

/// Tells what is wrong with a number that is not. The columns may be anything while they are not used.
bool frmOption::isUsable(const Number &number)
{
    if (number.field == m_wrapLen && !isWrapFixed())
        return true;
    const std::optional<int> typed = decimalNumberAs<int>(number.field->text());
    if (typed && *typed >= number.least && *typed <= number.most)
        return true;
    showField(number.field);
    MessageBox::critical(this, tr("Error"), typed ? number.outOfBounds : number.notNumeric);
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
    m_controls.store();
    appSettings().FontName = m_fontName->currentText();
    for (const Number &number : numbers())
        *number.stored = decimalNumberAs<int>(number.field->text()).value_or(0);
}
