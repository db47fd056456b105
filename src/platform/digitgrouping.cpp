#include "platform/digitgrouping.h"

#include <QLocale>

QString groupDigits(qint64 number)
{
    QLocale locale = QLocale::c();
    locale.setNumberOptions(QLocale::DefaultNumberOptions);
    return locale.toString(number);
}
