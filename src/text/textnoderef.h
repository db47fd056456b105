#pragma once

#include <QtGlobal>

#include <utility>

/// The nodes of the text tree. A node is shared by counting references: pieces cut out of a store and the
/// store itself may own the same leaves, and whoever changes a shared node copies it first. Not for several
/// threads.
struct TextNode {
    qint32 references = 0;
    const qint16 height; ///< 0: a TextLeaf, else a TextInner
    explicit TextNode(int nodeHeight)
        : height(qint16(nodeHeight))
    {
    }
};

/// Counted reference to a node; null for an empty text.
class TextNodeRef {
public:
    TextNodeRef() = default;
    explicit TextNodeRef(TextNode *node)
        : m_node(node)
    {
        acquire();
    }
    TextNodeRef(const TextNodeRef &other)
        : m_node(other.m_node)
    {
        acquire();
    }
    TextNodeRef(TextNodeRef &&other) noexcept
        : m_node(std::exchange(other.m_node, nullptr))
    {
    }
    TextNodeRef &operator=(TextNodeRef other) noexcept
    {
        std::swap(m_node, other.m_node);
        return *this;
    }
    ~TextNodeRef()
    {
        // The analyser does not follow a tree through both halves of a pair.
        // NOLINTNEXTLINE(clang-analyzer-core.uninitialized.Branch)
        if (m_node && --m_node->references == 0)
            destroy(m_node);
    }

    TextNode *get() const { return m_node; }
    explicit operator bool() const { return m_node; }
    bool isShared() const { return m_node->references > 1; }

private:
    void acquire()
    {
        if (m_node)
            ++m_node->references;
    }
    static void destroy(TextNode *node);

    TextNode *m_node = nullptr;
};
