#include "app/statusline.h"

#include "app/documentarea.h"
#include "app/documentfile.h"
#include "app/documentsaver.h"
#include "app/reopenchoices.h"
#include "filedialog/filechoices.h"
#include "files/writeobstacle.h"
#include "platform/menu.h"
#include "platform/tooltiptext.h"
#include "settings/moresettings.h"
#include "text/graphemes.h"

#include <QEvent>
#include <QLabel>
#include <QToolButton>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int space = 2; ///< between fields, in platform pixels
constexpr int leastOfFile = 40; ///< of a file's name that is worth showing, in platform pixels
constexpr qint64 mostCounted = 10000; ///< units of a selection whose characters are counted

qint64 charactersIn(const QString &text)
{
    return qint64(graphemeBoundaries(text).size()) - 1;
}

} // namespace

StatusLine::StatusLine(
    DocumentArea &documents, DocumentLoader &loader, DocumentSaver &saver, const FileCalls &calls)
    : QWidget(&documents)
    , m_documents(documents)
    , m_loader(loader)
    , m_saver(saver)
    , m_calls(calls)
    , m_place(createButton())
    , m_code(createMenuButton(&StatusLine::fillCodes))
    , m_lineEnd(createMenuButton(&StatusLine::fillLineEnds))
    , m_typing(createButton())
    , m_readOnly(new QLabel(this))
    , m_file(new QLabel(this))
{
    for (QLabel *const label : { m_readOnly, m_file })
        label->setTextFormat(Qt::PlainText);
    nameControls();
    connect(m_place, &QToolButton::clicked, this, &StatusLine::jumpWanted);
    connect(m_typing, &QToolButton::clicked, this, &StatusLine::toggleOverwriting);
    connect(&documents, &DocumentArea::currentChanged, this, &StatusLine::follow);
    connect(&documents, &DocumentArea::refreshed, this, &StatusLine::lookAtFile);
    applySettings();
}

QToolButton *StatusLine::createButton()
{
    auto *const button = new QToolButton(this);
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus); // the keys stay in the text
    return button;
}

QToolButton *StatusLine::createMenuButton(void (StatusLine::*fill)(QMenu &menu))
{
    QToolButton *const button = createButton();
    auto *const menu = new Menu(button);
    connect(menu, &QMenu::aboutToShow, this, [this, menu, fill] {
        menu->clear();
        if (m_editor)
            (this->*fill)(*menu);
    });
    button->setMenu(menu);
    button->setPopupMode(QToolButton::InstantPopup);
    return button;
}

void StatusLine::applySettings()
{
    setVisible(moreSettings().StatusLine != 0);
    follow(m_documents.current());
    m_documents.arrange();
}

QSize StatusLine::sizeHint() const
{
    return { 0, m_code->sizeHint().height() };
}

void StatusLine::follow(ctlEditer *editor)
{
    if (m_editor)
        m_editor->viewport()->removeEventFilter(this);
    m_editor = editor;
    if (m_editor && !isHidden())
        m_editor->viewport()->installEventFilter(this);
    lookAtFile();
}

bool StatusLine::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Paint)
        QMetaObject::invokeMethod(this, &StatusLine::look, Qt::QueuedConnection);
    return false;
}

/// Two calls of the system, which are not for each repaint.
void StatusLine::lookAtFile()
{
    if (isHidden())
        return;
    const bool isOfFile = m_editor && hasFile(*m_editor);
    const auto obstacle =
        isOfFile ? writeObstacle(FileName::toBytes(fullName(*m_editor)), m_calls) : std::nullopt;
    m_canWrite = !obstacle || obstacle == WriteObstacle::FullDisk;
    look();
}

void StatusLine::look()
{
    if (isHidden())
        return;
    if (m_editor) {
        const ctlEditer &editor = *m_editor;
        showPlace(editor);
        setField(*m_code, editor.charCodeName(), tr("Character code"));
        setField(*m_lineEnd, editor.returnCodeName(), tr("Line end"));
        setField(*m_typing, editor.isOverwriteMode() ? tr("OVR") : tr("INS"), tr("Overwrite, or insert"));
        setField(*m_readOnly, m_canWrite ? QString() : tr("RO"), tr("Read only"));
        m_fileName = FileName::forDisplay(fullName(editor));
    } else {
        nameControls();
        m_fileName.clear();
    }
    layOut();
}

/// Lines as the row numbers count them, and units from the start of the line.
void StatusLine::showPlace(const ctlEditer &editor)
{
    const TextStore &store = std::as_const(editor).document().store();
    const Offset cursor = editor.cursorOffset();
    const LineIndex line = store.lineAt(cursor);
    const qint64 number = line.value() + 1;
    const qint64 column = cursor - store.lineStart(line) + 1;
    QString text = u"%1:%2"_s.arg(number).arg(column);
    QString tip = tr("Line %1, column %2").arg(number).arg(column);
    if (editor.hasMarkedText()) {
        const TextRange range{ editor.selectionBegin().offset, editor.selectionEnd().offset };
        const bool isCounted = range.length() <= mostCounted;
        const qint64 lines = store.lineAt(range.end) - store.lineAt(range.start) + 1;
        const qint64 count = isCounted ? charactersIn(store.text(range)) : lines;
        text += (isCounted ? u" (%1)"_s : u" (%1 ¶)"_s).arg(count);
        tip += u'\n' + (isCounted ? tr("Selected: %1") : tr("Selected lines: %1")).arg(count);
    }
    setField(*m_place, text, tip);
}

void StatusLine::setField(QWidget &field, const QString &text, const QString &tip)
{
    field.setProperty("text", text);
    const QString shown = toolTipText(tip);
    if (field.toolTip() == shown)
        return;
    field.setToolTip(shown);
    field.setAccessibleName(QString(tip).replace(u'\n', u' '));
}

/// Assistive tools come to them also while they say nothing.
void StatusLine::nameControls()
{
    setAccessibleName(tr("Status line"));
    setField(*m_place, {}, tr("Line and column"));
    setField(*m_code, {}, tr("Character code"));
    setField(*m_lineEnd, {}, tr("Line end"));
    setField(*m_typing, {}, tr("Overwrite, or insert"));
    setField(*m_readOnly, {}, tr("Read only"));
    setField(*m_file, {}, tr("File"));
}

/// One after the other from the left, as far as there is room; the file's name gets the rest.
void StatusLine::layOut()
{
    int x = 0;
    bool hasRoom = true;
    for (QWidget *const field :
        std::initializer_list<QWidget *>{ m_place, m_code, m_lineEnd, m_typing, m_readOnly }) {
        const int fieldWidth = field->sizeHint().width();
        const bool isUsed = m_editor && (field != m_readOnly || !m_canWrite);
        hasRoom = hasRoom && (!isUsed || x + fieldWidth <= width());
        const bool isShown = isUsed && hasRoom;
        field->setVisible(isShown);
        field->setGeometry(x, 0, fieldWidth, height());
        if (isShown)
            x += fieldWidth + space;
    }
    const int room = width() - x - space;
    m_file->setVisible(hasRoom && room >= leastOfFile);
    m_file->setGeometry(x, 0, room, height());
    setField(*m_file, fontMetrics().elidedText(m_fileName, Qt::ElideLeft, room),
        m_fileName.isEmpty() ? tr("File") : m_fileName);
}

void StatusLine::fillCodes(QMenu &menu)
{
    if (hasFile(*m_editor)) {
        for (const NoticeOffer &choice : reopenChoices(m_loader, m_editor))
            add(menu, tr("Reopen as %1").arg(choice.text()), choice.act);
        menu.addSeparator();
    }
    for (const CharCode code : charCodeChoices)
        add(menu, tr("Save as %1").arg(infoOf(code).label),
            [this, code] { m_saver.beginSaveAsIn(m_editor, code, {}); });
}

void StatusLine::fillLineEnds(QMenu &menu)
{
    for (const ReturnCode code : returnCodeChoices)
        add(menu, tr("Save as %1").arg(infoOf(code).name),
            [this, code] { m_saver.beginSaveAsIn(m_editor, {}, code); });
}

/// Another document may be current by the time it is chosen.
void StatusLine::add(QMenu &menu, const QString &text, const std::function<void()> &act)
{
    menu.addAction(text, this, [this, act, about = m_editor] {
        if (about && about == m_editor && m_documents.beginCommand())
            act();
    });
}

void StatusLine::toggleOverwriting()
{
    if (m_editor && m_documents.beginCommand())
        m_editor->setOverwriteMode(!m_editor->isOverwriteMode());
}

void StatusLine::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange) {
        nameControls();
        look();
    }
}

void StatusLine::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layOut();
}
