#pragma once

#include <QString>

/// What a tool tip is given to show a text as it is: what looks like mark-up is shown as text by real
/// mark-up, in unbroken lines.
QString toolTipText(const QString &text);
