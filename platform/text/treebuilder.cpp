#include "platform/text/treebuilder.h"

#include "platform/text/rowflow.h"

void TreeBuilder::append(QByteArrayView latin1)
{
    const qint64 full = TextLeaf::maxSize();
    while (!latin1.isEmpty()) {
        if (pending() == 0 && latin1.size() >= full) {
            addLeaf(TextLeaf::fromText(latin1.first(full)));
            latin1 = latin1.sliced(full);
            continue;
        }
        const qint64 count = qMin<qint64>(latin1.size(), full - pending());
        if (m_wide)
            m_units.append(QLatin1StringView(latin1.first(count)));
        else
            m_bytes.append(latin1.first(count));
        latin1 = latin1.sliced(count);
        if (pending() == full)
            flush(false);
    }
}

void TreeBuilder::append(QStringView text)
{
    const qint64 full = TextLeaf::maxSize();
    while (!text.isEmpty()) {
        widen();
        const qint64 count = qMin<qint64>(text.size(), full - pending());
        if (m_units.isEmpty() && count == full && !text[full - 1].isHighSurrogate())
            addLeaf(TextLeaf::fromText(text.first(full)));
        else
            m_units.append(text.first(count));
        text = text.sliced(count);
        if (pending() == full)
            flush(false);
    }
}

/// From here on what is pending is held as UTF-16.
void TreeBuilder::widen()
{
    if (m_wide)
        return;
    m_wide = true;
    m_units.append(QLatin1StringView(m_bytes));
    m_bytes.resize(0);
}

/// Makes a leaf of what is pending, but for a high surrogate whose other half may be still to come.
void TreeBuilder::flush(bool atEnd)
{
    if (!m_wide) {
        addLeaf(TextLeaf::fromText(QByteArrayView(m_bytes)));
        m_bytes.resize(0);
        return;
    }
    const bool holdBack = !atEnd && m_units.back().isHighSurrogate();
    const QChar last = m_units.back();
    addLeaf(TextLeaf::fromText(QStringView(m_units).chopped(holdBack ? 1 : 0)));
    m_units.resize(0);
    if (holdBack)
        m_units.append(last);
    m_wide = holdBack;
}

void TreeBuilder::addLeaf(TextNodeRef leaf)
{
    if (!m_last.isEmpty())
        add(std::move(m_last), 0);
    m_last = leafTree(std::move(leaf), m_layout);
}

void TreeBuilder::add(TextTree &&tree, size_t height)
{
    if (m_levels.size() <= height)
        m_levels.resize(height + 1);
    m_levels[height].append(std::move(tree));
    if (m_levels[height].size() < TextInner::maxCount())
        return;
    TextTree parent = parentOf(std::move(m_levels[height]), m_layout);
    m_levels[height].clear();
    prepareTable(parent, m_layout);
    add(std::move(parent), height + 1);
}

TextTree TreeBuilder::finish()
{
    if (pending() > 0)
        flush(true);
    TextTree result;
    while (!m_levels.empty()) {
        if (!m_levels.back().isEmpty())
            result = concatenate(std::move(result), parentOf(std::move(m_levels.back()), m_layout), m_layout);
        m_levels.pop_back();
    }
    result = concatenate(std::move(result), std::move(m_last), m_layout);
    m_last = {};
    return result;
}

TextTree treeOf(QStringView text, const TextLayout &layout)
{
    TreeBuilder builder(layout);
    builder.append(text);
    return builder.finish();
}
