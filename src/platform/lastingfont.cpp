#include "platform/lastingfont.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

LastingFont::LastingFont(const QFont &font, QObject *parent)
    : QObject(parent)
    , m_font(font)
{
    install();
    qApp->installEventFilter(this);
}

/// This takes back the fonts of single kinds of widgets too.
void LastingFont::install()
{
    m_isInstalling = true;
    QApplication::setFont(m_font);
    m_isInstalling = false;
}

bool LastingFont::eventFilter(QObject *object, QEvent *event)
{
    const QEvent::Type type = event->type();
    const bool isThemeChange = type == QEvent::ThemeChange; // whatever kinds of widgets have another font now
    // Widgets that have not been shown yet are not told of a change.
    const bool mayBeNew = type == QEvent::ApplicationFontChange || type == QEvent::Polish;
    const auto isNew = [&] { return QApplication::font(qobject_cast<QWidget *>(object)) != m_font; };
    if (!m_isInstalling && (isThemeChange || (mayBeNew && isNew())))
        install();
    return false;
}
