#pragma once

#include "text/textnode.h"

#include <QDeadlineTimer>

#include <unordered_map>

/// Measures a text by another layout rule, some of it at a time. Until all of it is measured, the store is
/// asked and edited as it is laid out now; then it takes the new layout at once, see TextStore::setLayout().
///
/// Pieces of the text that are kept for undoing it are measured by the same one: what they share with the
/// text, and with one another, they share afterwards.
///
/// Each inner node gets a twin of the same text with the new measures. An edit makes new nodes above the text
/// that it changes, and these alone have no twin then.
///
/// Memory: the inner nodes once more, a few bytes for a hundred units. Threads: the store's.
class LayoutChange {
public:
    /// For a store with nodes of these sizes.
    explicit LayoutChange(const LayoutRule &rule, const NodeSizes &sizes = {});
    /// For text that comes to a store laid out so. What was measured for that stays as it is, and costs
    /// nothing.
    explicit LayoutChange(const TextLayout &layout);
    LayoutChange(LayoutChange &&) noexcept = default;
    ~LayoutChange();

    const TextLayout &layout() const { return m_layout; }
    /// Units of text that are measured; what was edited since counts again.
    qint64 measured() const { return m_measured; }
    /// Goes on until all of the text is measured and time is left: true; or the time is over. A call gets on
    /// by a node at least.
    bool measure(const TextTree &tree, QDeadlineTimer end);
    /// A tree of the same text. Measures what is not measured yet.
    TextTree twinOf(const TextTree &tree) const;

private:
    struct Twin {
        TextNodeRef node; ///< whose twin it is: held, so that no other node comes to its address
        TextTree tree;
    };

    bool isMeasured(const TextTree &inner) const;

    TextLayout m_layout;
    std::unordered_map<const TextNode *, Twin> m_twins;
    qint64 m_measured = 0;
};
