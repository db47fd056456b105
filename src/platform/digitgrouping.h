#pragma once

#include <QString>

/// A number in decimal with "," before every three digits counted from the right: 1,234 for 1234, whatever
/// the user's locale.
QString groupDigits(qint64 number);
