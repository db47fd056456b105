#include "search/frmsearchdialog.h"

#include "platform/formparts.h"
#include "platform/messagebox.h"
#include "platform/picture.h"
#include "platform/qpeapplication.h"
#include "platform/resource.h"
#include "platform/screenclass.h"
#include "platform/scrolledform.h"
#include "platform/windowsystem.h"
#include "rows/narrowfont.h"
#include "settings/config.h"
#include "settings/moresettings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QValidator>
#include <QWindow>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int formMargin = 6;
constexpr int formSpacing = 4;
constexpr int buttonSpacing = 10;
constexpr QPoint firstPlace{ 20, 40 };

constexpr auto historyFile = "marlopad_fr"_L1;
constexpr auto historyGroup = "history"_L1;
constexpr auto searchKey = "Search"_L1;
constexpr auto replaceKey = "Replace"_L1;

/// Takes the first of several lines that are put in at once: up to the cursor, which stands behind them, the
/// others are left out.
class FirstLine : public QValidator {
public:
    using QValidator::QValidator;
    State validate(QString &text, int &cursor) const override
    {
        const auto isLineEnd = [](QChar unit) { return unit == u'\n' || unit == u'\r'; };
        const auto found = std::find_if(text.cbegin(), text.cend(), isLineEnd);
        if (found == text.cend())
            return Acceptable;
        const auto lineEnd = int(found - text.cbegin());
        const int end = qMax(cursor, lineEnd + 1);
        text.remove(lineEnd, end - lineEnd);
        text.removeIf(isLineEnd);
        cursor = lineEnd;
        return Acceptable;
    }
};

} // namespace

frmSearchDialog::frmSearchDialog(QWidget *parent)
    : QWidget(parent, Qt::Dialog)
    , m_find(createField())
    , m_arrow(new QLabel)
    , m_replace(createField())
    , m_caseSensitive(new QCheckBox)
    , m_next(createButton(usualButtonSize(), &frmSearchDialog::slotBtnNext))
    , m_before(createButton(usualButtonSize(), &frmSearchDialog::slotBtnBefo))
    , m_all(createButton(usualButtonSize(), &frmSearchDialog::slotBtnAll))
    , m_close(createButton(forScreen(QSize(40, 17), QSize(80, 28)), &frmSearchDialog::slotBtnClose))
{
    const QString arrow = u"corvex/replace_to"_s;
    m_arrow->setPixmap(Resource::loadPixmap(arrow));
    layOut();
    scrollWhereTooLarge(this);
    for (QAbstractButton *button : findChildren<QAbstractButton *>())
        button->installEventFilter(this);
    move(firstPlace);
    Config config(historyFile);
    config.setGroup(historyGroup);
    searchHistory.read(config, searchKey);
    replaceHistory.read(config, replaceKey);
}

frmSearchDialog::~frmSearchDialog()
{
    writeHistory();
}

QComboBox *frmSearchDialog::createField()
{
    auto *field = new QComboBox;
    makeTypable(field);
    field->setDuplicatesEnabled(true);
    field->lineEdit()->setMaxLength(std::numeric_limits<int>::max());
    field->setValidator(new FirstLine(field));
    field->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    field->setMinimumWidth(forScreen(180, 320));
    field->setFixedHeight(forScreen(19, 28));
    return field;
}

QPushButton *frmSearchDialog::createButton(const QSize &size, void (frmSearchDialog::*slot)())
{
    auto *button = new QPushButton;
    button->setFixedSize(size);
    connect(button, &QPushButton::clicked, this, slot);
    return button;
}

void frmSearchDialog::layOut()
{
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(buttonSpacing);
    buttons->addStretch();
    for (QPushButton *button : { m_next, m_before, m_all, m_close })
        buttons->addWidget(button);
    auto *grid = new QGridLayout(this);
    setSpaces(grid, formMargin, formSpacing);
    grid->addWidget(m_find, 0, 0, 1, 2);
    grid->addWidget(m_arrow, 1, 0, 1, 2, Qt::AlignHCenter);
    grid->addWidget(m_replace, 2, 0, 1, 2);
    grid->addWidget(m_caseSensitive, 3, 0);
    grid->addLayout(buttons, 4, 0, 1, 2);
}

void frmSearchDialog::setVisible(bool visible)
{
    if (visible)
        rebuild();
    keepPlace(visible);
    QWidget::setVisible(visible);
    if (!visible)
        return;
    raise();
    WindowSystem::activate(*this);
    m_find->setFocus();
}

/// Window managers that take the frame away from a hidden window move the window to where the frame was, and
/// so further up with each time it is shown again.
void frmSearchDialog::keepPlace(bool visible)
{
    if (visible == isVisible())
        return;
    if (visible) {
        standClear();
        if (m_place)
            setGeometry(QRect(*m_place, size()));
    } else {
        m_place = geometry().topLeft();
        m_margins = windowHandle()->frameMargins();
    }
}

void frmSearchDialog::keepClearOf(const QRect &line)
{
    m_clear = line;
    if (isVisible())
        standClear();
}

/// Hidden, and shown for the first time, without the frame that it does not have yet.
QRect frmSearchDialog::frame() const
{
    return isVisible() || !m_place ? frameGeometry() : QRect(*m_place, size()).marginsAdded(m_margins);
}

/// Hidden, it will be placed there: while the system places it, nobody knows where it is.
void frmSearchDialog::standClear()
{
    const QRect place = frame();
    const int below = m_clear.bottom() + 1;
    const int lowest = screen()->availableGeometry().bottom() + 1 - place.height();
    if (!place.intersects(m_clear) || below > lowest || WindowSystem::isWayland())
        return;
    if (isVisible() || !m_place)
        move(place.x(), below);
    else
        m_place->setY(below + m_margins.top());
}

void frmSearchDialog::rebuild()
{
    fillFields();
    const bool replaces = searchMode == 1;
    m_arrow->setVisible(replaces);
    m_replace->setVisible(replaces);
    m_before->setVisible(!replaces);
    m_all->setVisible(replaces);
    m_caseSensitive->setChecked(caseSensitive);
    setTexts();
    layout()->activate();
    adjustSize();
}

void frmSearchDialog::fillFields()
{
    m_find->clear();
    m_replace->clear();
    for (const QString &text : searchHistory.texts()) {
        if (!text.isEmpty() && text != findText)
            m_find->addItem(text);
    }
    for (const QString &text : replaceHistory.texts()) {
        if (!text.isEmpty())
            m_replace->addItem(text);
    }
    // No entry is the current one, so that the Down key gets the most recent.
    m_find->setCurrentIndex(-1);
    m_find->setEditText(findText);
    m_find->lineEdit()->selectAll();
    m_replace->setEditText(m_replace->itemText(0));
}

/// The buttons have fixed sizes: in a wide font their texts are set narrower, to stay whole.
void frmSearchDialog::fitButtonTexts()
{
    constexpr int frame = 3;
    constexpr int narrowest = 75; // per cent
    for (QPushButton *button : { m_next, m_before, m_all, m_close }) {
        button->setFont(narrowToFit(font(), narrowest, [button](const QFont &narrow) {
            button->setFont(narrow);
            return button->fontMetrics().horizontalAdvance(button->text()) + 2 * frame <= button->width();
        }));
    }
}

void frmSearchDialog::setTexts()
{
    const bool replaces = searchMode == 1;
    setWindowTitle(replaces ? tr("Replace") : tr("Search"));
    m_next->setText(replaces ? tr("Replace Next") : tr("Search Next"));
    m_caseSensitive->setText(tr("Case sensitive"));
    m_before->setText(tr("Search Prev"));
    m_all->setText(tr("Replace ALL"));
    m_close->setText(tr("Close"));
    fitButtonTexts();
    nameTypable(m_find, tr("Search"));
    nameTypable(m_replace, tr("Replace"));
}

void frmSearchDialog::act(void (frmSearchDialog::*signal)())
{
    if (QPEApplication::isBusy())
        return;
    QGuiApplication::inputMethod()->commit();
    if (m_find->currentText().isEmpty()) {
        MessageBox::critical(this, tr("Error"), tr("Input the characters."));
        return;
    }
    findText = m_find->currentText();
    replaceText = m_replace->currentText();
    caseSensitive = m_caseSensitive->isChecked();
    updateHistory();
    emit(this->*signal)();
}

void frmSearchDialog::updateHistory()
{
    const auto before = std::pair(searchHistory.texts(), replaceHistory.texts());
    searchHistory.add(m_find->currentText());
    replaceHistory.add(m_replace->currentText());
    // At once: the program may not come to a regular end.
    if (before != std::pair(searchHistory.texts(), replaceHistory.texts()))
        writeHistory();
}

void frmSearchDialog::writeHistory()
{
    Config config(historyFile, Config::User, Config::Change);
    config.setGroup(historyGroup);
    searchHistory.takeOver(config, searchKey);
    replaceHistory.takeOver(config, replaceKey);
    searchHistory.write(config, searchKey);
    replaceHistory.write(config, replaceKey);
    if (!config.write())
        return;
    searchHistory.setWritten();
    replaceHistory.setWritten();
}

void frmSearchDialog::slotBtnNext()
{
    act(&frmSearchDialog::nextClicked);
}

void frmSearchDialog::slotBtnBefo()
{
    act(&frmSearchDialog::befoClicked);
}

void frmSearchDialog::slotBtnAll()
{
    act(&frmSearchDialog::allClicked);
}

void frmSearchDialog::slotBtnClose()
{
    hide();
}

void frmSearchDialog::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        setTexts();
}

/// On some desktops Return presses the button that has the focus; here it searches wherever the focus is.
bool frmSearchDialog::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter)
        return QWidget::eventFilter(watched, event);
    slotBtnNext();
    return true;
}

void frmSearchDialog::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Escape:
        hide();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        slotBtnNext();
        break;
    default:
        if (!searchesByKnownKey(*event))
            QWidget::keyPressEvent(event);
    }
}

/// As in the text, which has not the focus here.
bool frmSearchDialog::searchesByKnownKey(const QKeyEvent &press)
{
    const bool isBackward = press.modifiers() == Qt::ShiftModifier;
    if (moreSettings().KnownKeys == 0 || press.key() != Qt::Key_F3
        || (press.modifiers() != Qt::NoModifier && !isBackward))
        return false;
    if (isBackward)
        slotBtnBefo();
    else
        slotBtnNext();
    return true;
}
