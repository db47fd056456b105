#include "filedialog/namefilter.h"

#include <algorithm>

namespace {

/// Units of the character at `at`: 2 for a surrogate pair.
qsizetype characterLength(QStringView text, qsizetype at)
{
    const bool isPair = text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
    return isPair ? 2 : 1;
}

/// Goes back to the last "*" only: an earlier one can always stay as short as it was.
bool matchesPattern(QStringView pattern, QStringView name)
{
    qsizetype inPattern = 0;
    qsizetype inName = 0;
    qsizetype afterStar = -1;
    qsizetype starEnd = 0; // where in the name the text of the last "*" ends
    while (inName < name.size()) {
        const QChar wanted = inPattern < pattern.size() ? pattern[inPattern] : QChar();
        if (inPattern < pattern.size() && wanted == u'*') {
            afterStar = ++inPattern;
            starEnd = inName;
        } else if (inPattern < pattern.size() && wanted == u'?') {
            ++inPattern;
            inName += characterLength(name, inName);
        } else if (inPattern < pattern.size() && wanted == name[inName]) {
            ++inPattern;
            ++inName;
        } else if (afterStar >= 0) {
            inPattern = afterStar;
            inName = starEnd += characterLength(name, starEnd);
        } else {
            return false;
        }
    }
    const QStringView rest = pattern.sliced(inPattern);
    return std::all_of(rest.begin(), rest.end(), [](QChar unit) { return unit == u'*'; });
}

} // namespace

NameFilter::NameFilter(const QString &patterns)
    : m_patterns(patterns.split(u';', Qt::SkipEmptyParts))
{
}

bool NameFilter::matches(QStringView name) const
{
    return m_patterns.isEmpty()
        || std::any_of(m_patterns.begin(), m_patterns.end(),
            [name](const QString &pattern) { return matchesPattern(pattern, name); });
}
