#include "platform/tooltiptext.h"

#include <QTextDocument>

using namespace Qt::StringLiterals;

QString toolTipText(const QString &text)
{
    if (!Qt::mightBeRichText(text))
        return text;
    return u"<div style=\"white-space:pre\">"_s + text.toHtmlEscaped() + u"</div>"_s;
}
