#include "app/guidebrowser.h"

#include "app/fittedpictures.h"
#include "app/keystext.h"
#include "app/translation.h"
#include "platform/keypause.h"
#include "platform/qpeapplication.h"
#include "settings/settings.h"

#include <QAbstractTextDocumentLayout>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextTable>

using namespace Qt::StringLiterals;

namespace {

// Between them stands the table of keys, as a first start has it.
constexpr QLatin1StringView keysBegin("<!-- keys -->");
constexpr QLatin1StringView keysEnd("<!-- end of keys -->");

bool isInPresentLanguage()
{
    return appSettings().Lang == Japanese || appSettings().Lang == English;
}

QString guideFile()
{
    const auto code = appSettings().Lang == Japanese ? "ja"_L1 : "en"_L1;
    return QDir::cleanPath(QPEApplication::qpeDir() + u"/../doc/marlopad/guide."_s + code + u".md"_s);
}

/// For who opens it at the keys, which are in the present language.
QString languageNote()
{
    return isInPresentLanguage()
        ? QString()
        : u'*' + QCoreApplication::translate("GuideBrowser", "The guide is in English.") + u"*\n\n"_s;
}

/// In Japanese no space stands between words: a line's end within a sentence is none.
QString withoutEndsInSentences(QString page)
{
    static const QRegularExpression end(
        u"(?<=[\\x{3000}-\\x{9FFF}\\x{FF00}-\\x{FFEF}])\\n *(?=\\*?[\\x{3000}-\\x{9FFF}\\x{FF00}-\\x{FFEF}])"_s);
    return page.remove(end);
}

/// Whether a link of the page at `base` leads to a page that is there; the tree of the sources has more files
/// than are installed, and others than pages.
bool isPage(const QUrl &base, const QString &link)
{
    const QString file = base.resolved(QUrl(link)).toLocalFile();
    return file.endsWith(u".md") && QFileInfo::exists(file);
}

/// Their words stay.
QString withoutOtherLinks(const QString &page, const QUrl &base)
{
    static const QRegularExpression link(u"(?<!!)\\[([^\\[\\]]*)\\]\\(([^()]*)\\)"_s);
    QString shown;
    qsizetype end = 0;
    for (auto match = link.globalMatch(page); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        shown += QStringView(page).sliced(end, found.capturedStart() - end);
        shown += isPage(base, found.captured(2)) ? found.captured() : found.captured(1);
        end = found.capturedEnd();
    }
    shown += QStringView(page).sliced(end);
    return shown;
}

QString withPresentKeys(const QString &page)
{
    const qsizetype begin = page.indexOf(keysBegin);
    const qsizetype end = page.indexOf(keysEnd, begin);
    if (begin < 0 || end < 0)
        return page;
    return page.first(begin) + languageNote() + keysTable() + page.sliced(end + keysEnd.size());
}

} // namespace

GuideBrowser::GuideBrowser(QWidget *parent)
    : QTextBrowser(parent)
{
    // What the toolkit's own menu offers is for links of other kinds.
    setContextMenuPolicy(Qt::NoContextMenu);
    new FittedPictures(this);
    connect(this, &QTextBrowser::sourceChanged, this, [this] { document()->setLayoutEnabled(true); });
    verticalScrollBar()->setAccessibleName(
        QCoreApplication::translate("QMultiLineEdit", "Vertical scroll bar"));
    horizontalScrollBar()->setAccessibleName(
        QCoreApplication::translate("QMultiLineEdit", "Horizontal scroll bar"));
    connect(horizontalScrollBar(), &QScrollBar::rangeChanged, this, &GuideBrowser::showBarBelow);
}

void GuideBrowser::showGuide()
{
    const QString file = guideFile();
    if (QFileInfo::exists(file))
        setSource(QUrl::fromLocalFile(file));
    else
        setMarkdown(keysTable());
}

void GuideBrowser::showKeys()
{
    QTextTable *const table = keys();
    if (!table)
        return;
    QTextBlock title = table->firstCursorPosition().block();
    while (title.isValid() && title.blockFormat().headingLevel() == 0)
        title = title.previous();
    verticalScrollBar()->setValue(int(placeOf(title).top() - document()->documentMargin()));
}

/// Known by its first cell.
QTextTable *GuideBrowser::keys() const
{
    const QString head = keysTable().section(u" | "_s, 0, 0).mid(2);
    for (QTextFrame *const frame : document()->rootFrame()->childFrames()) {
        auto *const table = qobject_cast<QTextTable *>(frame);
        if (table && table->cellAt(0, 0).firstCursorPosition().block().text() == head)
            return table;
    }
    return nullptr;
}

bool GuideBrowser::event(QEvent *event)
{
    return event->type() == QEvent::Resize ? resized(event) : QTextBrowser::event(event);
}

/// The text above what is shown first has another height then, as has that itself. The viewport's resizes
/// come within this one, and within the layout of the text.
bool GuideBrowser::resized(QEvent *event)
{
    QScrollBar &bar = *verticalScrollBar();
    const QTextBlock first = firstShown();
    const QRectF before = placeOf(first);
    const qreal part = (bar.value() - before.top()) / qMax(1.0, before.height());
    const bool done = QTextBrowser::event(event);
    const QRectF now = placeOf(first);
    bar.setValue(qRound(now.top() + part * now.height()));
    return done;
}

/// Not for lines of Japanese that the toolkit breaks a little into the margin.
void GuideBrowser::showBarBelow()
{
    const bool isNeeded = horizontalScrollBar()->maximum() > document()->documentMargin();
    setHorizontalScrollBarPolicy(isNeeded ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
}

QRectF GuideBrowser::placeOf(const QTextBlock &block) const
{
    return document()->documentLayout()->blockBoundingRect(block);
}

QTextBlock GuideBrowser::firstShown() const
{
    QTextBlock block = document()->begin();
    while (block.next().isValid() && placeOf(block).bottom() <= verticalScrollBar()->value())
        block = block.next();
    return block;
}

void GuideBrowser::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::MoveToStartOfDocument))
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMinimum);
    else if (event->matches(QKeySequence::MoveToEndOfDocument))
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMaximum);
    else
        QTextBrowser::keyPressEvent(event);
}

void GuideBrowser::doSetSource(const QUrl &name, QTextDocument::ResourceType type)
{
    if (isPage(source(), name.toString()))
        QTextBrowser::doSetSource(name, type);
}

/// Whoever leads to a page begins with this, "Back" too.
QVariant GuideBrowser::loadResource(int type, const QUrl &name)
{
    const QVariant loaded = QTextBrowser::loadResource(type, name);
    if (type != QTextDocument::MarkdownResource)
        return loaded;
    KeyPause::begin();
    document()->setLayoutEnabled(false); // else made anew for each row of a table
    return withPresentKeys(withoutOtherLinks(
        withoutEndsInSentences(QString::fromUtf8(loaded.toByteArray())), source().resolved(name)));
}
