#include "filedialog/frmfiledialog.h"

#include "filedialog/ctlfilelistview.h"
#include "filedialog/documentsfolder.h"
#include "filedialog/filechoices.h"
#include "files/filename.h"
#include "platform/formparts.h"
#include "platform/menu.h"
#include "platform/messagebox.h"
#include "platform/picture.h"
#include "platform/resource.h"
#include "platform/screenclass.h"
#include "platform/scrolledform.h"
#include "settings/settings.h"

#include <QAction>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

#include <algorithm>

namespace {

constexpr int formMargin = 7;
constexpr int formSpacing = 5;
constexpr int startDelay = 100; // ms

QSize listSize()
{
    return forScreen(QSize(210, 130), QSize(380, 210));
}

/// Shows the folder; what is typed there has no effect, so Return does not press "OK" either.
class FolderCombo : public QComboBox {
public:
    using QComboBox::QComboBox;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
            QComboBox::keyPressEvent(event);
    }
};

/// Nothing for the first row.
template <typename Code, std::size_t count>
std::optional<Code> chosen(const std::array<Code, count> &choices, const QComboBox &combo)
{
    const int row = combo.currentIndex();
    return row > 0 ? std::optional(choices.at(size_t(row - 1))) : std::nullopt;
}

void nameControl(QWidget *control, const QString &name)
{
    control->setAccessibleName(name);
    control->setToolTip(name);
}

} // namespace

frmFileDialog::frmFileDialog(
    QWidget *parent, Mode mode, const QString &folder, const QString &name, const FolderJobs &jobs)
    : QDialog(parent)
    , dirPath(folder)
    , fileName(name)
    , m_mode(mode)
    , m_folder(new FolderCombo)
    , m_favorites(new Menu(this))
    , m_list(new ctlFileListView(nullptr, userSurroundings(), jobs))
    , m_name(new QLineEdit(name))
    , m_type(createChoice(forScreen(18, 31)))
    , m_charCode(createChoice(forScreen(18, 31)))
    , m_returnCode(createChoice(forScreen(18, 30)))
{
    setModal(true);
    setWindowTitle(mode == Open ? tr("Open") : tr("Save as"));
    createList();
    createFileTypes();
    layOut();
    scrollWhereTooLarge(this);
    m_list->setFocus();
    QTimer::singleShot(startDelay, this, &frmFileDialog::initTimer);
}

QWidget *frmFileDialog::createTopRow()
{
    connect(m_favorites, &QMenu::triggered, this,
        [this](const QAction *action) { slotCmdMnuFavor(action->data().toInt()); });
    makeTypable(m_folder);
    m_folder->setFixedHeight(forScreen(20, 28));
    m_folder->setToolTip(tr("Folder"));
    nameTypable(m_folder, m_folder->toolTip());

    QToolButton *up = createToolButton("corvex/menu/upper", tr("Up"));
    connect(up, &QToolButton::clicked, this, &frmFileDialog::slotCmdEtcUpperDir);
    QToolButton *refresh = createToolButton("corvex/menu/reload", tr("Refresh"));
    connect(refresh, &QToolButton::clicked, this, &frmFileDialog::slotCmdEtcRefresh);
    QToolButton *favorites = createToolButton("corvex/menu/favor2", tr("Favorites"));
    favorites->setMenu(m_favorites);
    favorites->setPopupMode(QToolButton::InstantPopup);

    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    setSpaces(layout, 0, 0);
    layout->addWidget(m_folder, 1);
    for (QToolButton *button : { up, refresh, favorites })
        layout->addWidget(button);
    return row;
}

QToolButton *frmFileDialog::createToolButton(const char *icon, const QString &text)
{
    auto *button = new QToolButton;
    button->setAutoRaise(true);
    button->setIcon(Resource::loadIcon(QString::fromLatin1(icon)));
    button->setIconSize(Picture::named(QString::fromLatin1(icon)).size());
    nameControl(button, text);
    return button;
}

void frmFileDialog::createList()
{
    m_list->setFixedSize(listSize());
    m_list->isTypingName = m_mode == SaveAs;
    connect(m_list, &ctlFileListView::typed, this, &frmFileDialog::typeName);
    m_list->setAccessibleName(tr("Files"));
    connect(m_list, &ctlFileListView::fileSelected, this, &frmFileDialog::slotLvFileSelected);
    connect(m_list, &ctlFileListView::listRefreshed, this, &frmFileDialog::slotLvListRefreshed);
    connect(m_list, &ctlFileListView::execItem, this, &frmFileDialog::slotLvExecItem);
    connect(m_list, &ctlFileListView::notSorted, this, &frmFileDialog::slotLvNotSorted);
}

void frmFileDialog::createFileTypes()
{
    for (const FileType &type : fileTypes)
        m_type->addItem(tr(type.text));
    chooseStartType();
    connect(m_type, &QComboBox::activated, this, &frmFileDialog::slotCmbFilActivated);
}

void frmFileDialog::chooseStartType()
{
    const int row = fileTypeRow(fileName);
    m_type->setCurrentIndex(row);
    m_list->nameFilter = QLatin1StringView(fileTypes.at(size_t(row)).startPattern);
}

QComboBox *frmFileDialog::createChoice(int height)
{
    auto *choice = new QComboBox;
    choice->setFixedHeight(height);
    return choice;
}

QWidget *frmFileDialog::createCodeRow()
{
    for (QComboBox *codes : { m_charCode, m_returnCode })
        codes->addItem(tr("Auto"));
    for (const CharCode code : charCodeChoices)
        m_charCode->addItem(infoOf(code).label);
    for (const ReturnCode code : returnCodeChoices)
        m_returnCode->addItem(infoOf(code).name);
    nameControl(m_returnCode, tr("Line end"));

    auto *row = new QWidget;
    auto *layout = new QHBoxLayout(row);
    setSpaces(layout, 0, formSpacing);
    layout->addWidget(m_charCode);
    layout->addWidget(m_returnCode);
    layout->addStretch();
    m_returnCode->setVisible(m_mode != Open);
    return row;
}

QWidget *frmFileDialog::createButtonRow()
{
    const auto [ok, cancel] = createEndButtons(this, QStringLiteral("OK"), tr("Cancel"));
    for (QPushButton *button : { ok, cancel })
        button->setFixedSize(usualButtonSize());
    return createRowOfButtons({ ok, cancel }, formSpacing);
}

void frmFileDialog::layOut()
{
    auto *grid = new QGridLayout(this);
    setSpaces(grid, formMargin, formSpacing);
    grid->addWidget(createTopRow(), 0, 0, 1, 2);
    grid->addWidget(m_list, 1, 0, 1, 2);
    grid->setRowStretch(1, 1);
    const auto addLabelled = [grid](int row, const QString &text, QWidget *control, QWidget *cell) {
        grid->addWidget(createLabel(text, control), row, 0);
        grid->addWidget(cell, row, 1);
    };
    addLabelled(2, tr("File Name:"), m_name, m_name);
    addLabelled(3, tr("File Type:"), m_type, m_type);
    addLabelled(4, tr("Char code:"), m_charCode, createCodeRow());
    grid->addWidget(createButtonRow(), 5, 0, 1, 2);
}

void frmFileDialog::showCodes(std::optional<CharCode> code, std::optional<ReturnCode> lineEnd)
{
    const auto show = [](QComboBox *combo, const auto &choices, auto wanted) {
        const auto found = wanted ? std::ranges::find(choices, *wanted) : choices.end();
        if (!wanted)
            combo->setCurrentIndex(0);
        else if (found != choices.end())
            combo->setCurrentIndex(int(found - choices.begin()) + 1);
    };
    show(m_charCode, charCodeChoices, code);
    show(m_returnCode, returnCodeChoices, lineEnd);
}

void frmFileDialog::initTimer()
{
    loadFileIcons();
    readFavorites(favoritePaths, favoriteNames);
    fillFavoritesMenu(m_favorites, favoritePaths, favoriteNames, userSurroundings());
    refreshFileList();
}

void frmFileDialog::refreshFileList()
{
    m_list->showFolder(dirPath);
}

void frmFileDialog::slotLvFileSelected(const QString &name)
{
    m_name->setText(name);
}

/// What is typed takes the place of the name before its ending, as if the field had had the keys. Return,
/// which is not for a list without a selected row, leads to the name: "OK", which looks as if it were meant,
/// is pressed by the next one, when who saves has seen the name.
void frmFileDialog::typeName(const QString &text)
{
    const qsizetype ending = m_name->text().lastIndexOf(u'.');
    m_name->setFocus();
    m_name->setCursorPosition(0);
    m_name->cursorForward(true, int(ending < 0 ? m_name->text().size() : ending));
    if (!text.isEmpty())
        m_name->insert(text);
}

void frmFileDialog::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    m_openedSize = size();
}

void frmFileDialog::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    growList();
}

/// By as much as the dialog has grown since it was opened.
void frmFileDialog::growList()
{
    if (!m_openedSize.isValid())
        return;
    const QSize most = listSize() + (size() - m_openedSize).expandedTo(QSize(0, 0));
    m_list->widenNames(most.width() - m_list->maximumWidth());
    m_list->setMaximumSize(most);
}

/// Takes the name of the file that was opened, also when another one was typed since it was selected.
void frmFileDialog::slotLvExecItem(const ctlFileListViewItem *item)
{
    slotLvFileSelected(item->fileInfo().name);
    accept();
}

QString frmFileDialog::emptyText(const QString &path) const
{
    if (m_mode == SaveAs && DocumentsFolder::isMadeBySaving(path))
        return tr("This folder is not there yet. It is made when you save.");
    if (DocumentsFolder::isFileInstead(path))
        return tr("A file stands where this folder should be. Rename that file, or choose another folder.");
    if (m_list->nameFilter != u"*")
        return tr("There is no file of this type here. For others choose a File Type below.");
    return {};
}

void frmFileDialog::slotLvListRefreshed(const QString &path)
{
    m_list->emptyText = emptyText(path);
    const bool isRoot = path == u"/";
    m_folder->setEditText(FileName::forDisplay(isRoot || !path.endsWith(u'/') ? path : path.chopped(1)));
}

void frmFileDialog::slotLvNotSorted()
{
    MessageBox::critical(this, tr("Error"),
        tr("There is not enough memory to sort this folder.\nIts files stay in the order that they had."));
}

void frmFileDialog::slotCmbFilActivated(int row)
{
    if (row >= 0 && row < fileTypeCount)
        m_list->nameFilter = QLatin1StringView(fileTypes.at(size_t(row)).pickedPattern);
    slotCmdEtcRefresh();
}

void frmFileDialog::slotCmdEtcUpperDir()
{
    m_list->goUpFolder();
}

void frmFileDialog::slotCmdEtcRefresh()
{
    if (!m_list->currentPath.isEmpty())
        m_list->showFolder(m_list->currentPath);
}

void frmFileDialog::slotCmdMnuFavor(int id)
{
    const QString &path = favoritePaths.at(size_t(id));
    if (path.isEmpty())
        return;
    m_list->showFolder(path == u"/" ? path : path + u'/');
}

void frmFileDialog::accept()
{
    // Before the first folder is shown the start folder is the one meant.
    if (!m_list->currentPath.isEmpty())
        dirPath = m_list->currentPath;
    fileName = m_name->text();
    charCode = chosen(charCodeChoices, *m_charCode);
    returnCode = chosen(returnCodeChoices, *m_returnCode);
    if (isNameUsable() && isFileUsable())
        QDialog::accept();
}

bool frmFileDialog::isNameUsable()
{
    if (fileName.isEmpty()) {
        MessageBox::critical(this, tr("Error"), tr("Enter the file name."));
        return false;
    }
    if (hasForbiddenCharacter(fileName)) {
        MessageBox::critical(this, tr("Error"),
            tr("A file name cannot contain any of the following characters;\n\\ / : , ; * ? \" < > |"));
        return false;
    }
    return true;
}

bool frmFileDialog::isFileUsable()
{
    const QString path = dirPath + fileName;
    const QString shownName = FileName::forMessage(fileName);
    if (m_mode == Open && !FileName::exists(path)) {
        MessageBox::critical(this, tr("error"), tr("%1\nThis file does not exists.").arg(shownName));
        return false;
    }
    if (m_mode == Open || !FileName::exists(path))
        return true;
    const QString question = tr("%1\nThis file already exists.\nReplace existing file?").arg(shownName);
    return MessageBox::question(this, tr("Replace confirm"), question, { tr("Yes"), tr("No") }, 0, 1) == 0;
}
