#include "platform/menu.h"

#include "files/filename.h"
#include "platform/shortenedpath.h"

#include <QApplication>
#include <QPointer>
#include <QProxyStyle>
#include <QRegularExpression>
#include <QScreen>
#include <QStyleOptionMenuItem>

using namespace Qt::StringLiterals;

namespace {

/// The text of an item as it is read: without the "&" of its letter, with those that stand for themselves.
QString plainText(QString text)
{
    static const QRegularExpression mnemonic(u"&(.)"_s);
    return text.replace(mnemonic, u"\\1"_s);
}

/// What an item shows of its text; behind a tab stand its keys.
QString shownText(const QString &text, const QFontMetrics &metrics, int room)
{
    const QString name = text.section(u'\t', 0, 0);
    if (metrics.size(Qt::TextSingleLine | Qt::TextShowMnemonic, name).width() <= room)
        return text;
    return shortenedPath(plainText(name), metrics, room).replace(u'&', u"&&"_s) + text.sliced(name.size());
}

class MenuStyle : public QProxyStyle {
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
        QStyleHintReturn *returnData) const override
    {
        // A menu that does not scroll goes on in columns beside the screen.
        return hint == SH_Menu_Scrollable ? 1 : QProxyStyle::styleHint(hint, option, widget, returnData);
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
        const QWidget *widget) const override
    {
        if (type != CT_MenuItem)
            return QProxyStyle::sizeFromContents(type, option, contents, widget);
        const QSize size = wholeItem(option, contents, widget);
        return { qMin(size.width(), widestItem(widget)), size.height() };
    }

    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget) const override
    {
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (element != CE_MenuItem || !item) {
            QProxyStyle::drawControl(element, option, painter, widget);
            return;
        }
        QStyleOptionMenuItem shown = *item;
        shown.text = shownText(item->text, item->fontMetrics, roomForText(*item, widget));
        QProxyStyle::drawControl(element, &shown, painter, widget);
    }

private:
    /// When the toolkit draws an item it counts the "&" within its text, and a column for icons that grows
    /// with the font; when it makes room for the item it does not. The longest text would lose its middle.
    QSize wholeItem(const QStyleOption *option, const QSize &contents, const QWidget *menu) const
    {
        const int uncounted = 2 * option->fontMetrics.horizontalAdvance(u'&');
        return QProxyStyle::sizeFromContents(CT_MenuItem, option, contents, menu) + QSize(uncounted, 0);
    }

    int widestItem(const QWidget *menu) const
    {
        int border = 0;
        for (const PixelMetric metric : { PM_MenuPanelWidth, PM_MenuHMargin, PM_MenuDesktopFrameWidth })
            border += pixelMetric(metric, nullptr, menu);
        // Until it is open the menu is on the screen where it was last.
        const QWidget *opener = menu->parentWidget() ? menu->parentWidget() : menu;
        return opener->screen()->availableGeometry().width() - 2 * border;
    }

    int roomForText(const QStyleOptionMenuItem &item, const QWidget *menu) const
    {
        QStyleOptionMenuItem withoutKeys = item;
        withoutKeys.reservedShortcutWidth = 0;
        // Around wide contents: an item has a least width.
        const int around = wholeItem(&withoutKeys, item.rect.size(), menu).width() - item.rect.width();
        return item.rect.width() - around - item.reservedShortcutWidth;
    }
};

/// One for all menus; lives as long as the application.
QStyle *menuStyle()
{
    static QPointer<QStyle> style;
    if (!style) {
        style = new MenuStyle;
        style->setParent(qApp);
    }
    return style;
}

} // namespace

Menu::Menu(QWidget *parent)
    : QMenu(parent)
{
    setStyle(menuStyle());
    // The toolkit keeps the places of the items until they or the font change, also on another screen.
    connect(this, &QMenu::aboutToShow, this, [this] {
        QEvent measureAgain(QEvent::FontChange);
        QCoreApplication::sendEvent(this, &measureAgain);
    });
}

QString Menu::textFor(const QString &name)
{
    return FileName::forDisplay(name).replace(u'&', u"&&"_s);
}
