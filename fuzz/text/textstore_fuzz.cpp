// Edits told by bytes, undone and redone, on a store of tiny leaves and on the plain reference.

#include "fuzz/bytes.h"
#include "tests/text/modelstore.h"
#include "tests/text/textalphabet.h"
#include "tests/text/tinynodes.h"
#include "text/undohistory.h"

namespace {

/// A store with its history, and the model, edited alike.
class Session {
public:
    Session(Bytes &bytes, const LayoutRule &rule, const NodeSizes &sizes)
        : m_bytes(bytes)
        , m_store(rule, sizes)
        , m_model(rule)
    {
    }

    void step()
    {
        switch (m_bytes.below(8)) {
        case 0:
            undo();
            break;
        case 1:
            redo();
            break;
        default:
            edit();
        }
    }
    void check()
    {
        m_store.checkInvariants();
        require(m_store.text() == m_model.text());
        require(m_store.rowCount() == m_model.rows().size());
        const RowIndex row(m_bytes.below(m_model.rows().size()));
        const TextStore::Row place = m_model.row(row);
        require(m_store.row(row).start == place.start && m_store.row(row).length == place.length);
        require(m_store.rowColAt(place.start) == RowCol{ row, 0 });
        const RowCol end{ row, place.length };
        require(m_store.xAt(end) == m_model.xAt(end));
        const Subpixels x = m_bytes.below(255) * 4;
        require(m_store.columnAt(row, x) == m_model.columnAt(row, x));
    }
    void undoEverything()
    {
        while (m_history.canUndo())
            undo();
        require(m_done == 0 && m_store.length() == 0);
    }

private:
    void edit()
    {
        const qint64 offset = m_bytes.below(m_model.length() + 1);
        const qint64 removed = m_bytes.below(qMin<qint64>(40, m_model.length() - offset + 1));
        const QString inserted = text();
        m_history.replace(m_store, Offset(offset), removed, inserted);
        m_model.replace(Offset(offset), removed, inserted);
        if (removed == 0 && inserted.isEmpty())
            return;
        m_texts.resize(++m_done);
        m_texts.append(m_model.text());
        if (m_done <= depth)
            return;
        m_texts.removeAt(1); // the two oldest steps became one
        --m_done;
    }
    void undo()
    {
        require(m_history.canUndo() == (m_done > 0));
        if (m_done == 0)
            return;
        m_history.undo(m_store);
        m_model.setText(m_texts.at(--m_done));
        require(m_store.text() == m_model.text());
    }
    void redo()
    {
        require(m_history.canRedo() == (m_done + 1 < m_texts.size()));
        if (!m_history.canRedo())
            return;
        m_history.redo(m_store);
        m_model.setText(m_texts.at(++m_done));
        require(m_store.text() == m_model.text());
    }
    QString text()
    {
        static const QStringList characters = hurtingCharacters();
        QString text;
        for (qint64 count = m_bytes.below(24); count > 0; --count)
            text += characters.at(m_bytes.below(characters.size()));
        return text;
    }

    static constexpr int depth = 3; ///< few, so that steps become one

    Bytes &m_bytes;
    TextStore m_store;
    ModelStore m_model;
    UndoHistory m_history{ depth };
    QStringList m_texts{ QString() }; ///< before the oldest step and behind each
    qsizetype m_done = 0; ///< which of them the store has
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const AdvanceTable table(hurtingWidth);
    Bytes bytes(data, size);
    const NodeSizes sizes = nodesOf(int(4 + bytes.below(8)));
    const Subpixels limit = bytes.below(10) * subpixelsPerPixel;
    Session session(bytes, { &table, 4 * subpixelsPerPixel, limit }, sizes);
    for (int step = 0; step < 60 && !bytes.atEnd(); ++step) {
        session.step();
        session.check();
    }
    session.undoEverything();
    return 0;
}
