#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

/// Which files a list shows: a name passes when one of the patterns matches all of it.
///
/// In a pattern "*" stands for any number of characters and "?" for one; every other character stands for
/// itself, in its own case. A toolkit's pattern classes ignore case or refuse names that hold undecodable
/// bytes.
class NameFilter {
public:
    /// Patterns separated by ";", such as "*.txt;*.ini"; none at all let every name pass.
    explicit NameFilter(const QString &patterns);

    bool matches(QStringView name) const;

private:
    QStringList m_patterns;
};
