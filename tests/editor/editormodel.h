#pragma once

#include "editor/ctlediter.h"

#include <QList>
#include <QString>

#include <utility>

/// What random tests hold an editor against.
namespace EditorModel {

struct Row {
    qsizetype start;
    qsizetype length;
    bool endsLine;
};

/// The rows an editor shows; that they are cut where they should is tested with the text store.
inline QList<Row> rowsOf(const ctlEditer &editor)
{
    QList<Row> rows;
    qsizetype start = 0;
    for (qint64 row = 0; row < editor.numLines(); ++row) {
        const TextStore::Row found = editor.store().row(RowIndex(row));
        rows.append({ start, qsizetype(found.length), found.endsLine });
        start += qsizetype(found.length) + (found.endsLine ? 1 : 0);
    }
    return rows;
}

enum class Joining { Never, Typing, Erasing };

/// The editor as one would write it on a plain string: what each key does to text, cursor, selection and
/// history.
class Model {
public:
    QString text;
    qsizetype cursor = 0;
    qsizetype anchor = 0;
    bool atRowEnd = false;
    bool anchorAtRowEnd = false;
    bool overwrites = false;
    QString clip;

    bool hasSelection() const { return cursor != anchor; }
    qsizetype from() const { return qMin(cursor, anchor); }
    qsizetype to() const { return qMax(cursor, anchor); }

    // Moves.

    void moveTo(qsizetype offset, bool selects, bool toRowEnd = false)
    {
        cursor = offset;
        atRowEnd = toRowEnd;
        if (!selects) {
            anchor = offset;
            anchorAtRowEnd = toRowEnd;
        }
        m_joining = Joining::Never;
    }
    void step(bool forwards, bool selects)
    {
        if (!selects && hasSelection())
            moveTo(forwards ? to() : from(), false);
        else
            moveTo(forwards ? next(cursor) : previous(cursor), selects);
    }
    void stepWord(bool forwards, bool selects)
    {
        moveTo(forwards ? nextWord(cursor) : previousWord(cursor), selects);
    }
    void toRowEdge(const QList<Row> &rows, bool end, bool selects)
    {
        const Row row = rows[rowOfCursor(rows)];
        moveTo(end ? row.start + row.length : row.start, selects, end && !row.endsLine);
    }
    qsizetype rowOfCursor(const QList<Row> &rows) const { return rowOf(rows, cursor, atRowEnd); }

    // Edits.

    void type(const QString &typed)
    {
        if (overwrites && !hasSelection() && cursor < text.size() && text[cursor] != u'\n')
            replace(cursor, next(cursor), typed, Joining::Typing);
        else
            replace(from(), to(), typed, Joining::Typing);
    }
    void typeTab() { replace(from(), to(), QStringLiteral("\t"), Joining::Typing); }
    void insert(const QString &inserted) { replace(from(), to(), inserted, Joining::Never); }
    void erase(bool forwards)
    {
        if (hasSelection())
            replace(from(), to(), {}, Joining::Never);
        else if (forwards)
            replace(cursor, next(cursor), {}, Joining::Erasing);
        else
            replace(previous(cursor), cursor, {}, Joining::Erasing);
    }
    void eraseWord(bool forwards)
    {
        if (hasSelection())
            replace(from(), to(), {}, Joining::Never);
        else if (forwards)
            replace(cursor, nextWord(cursor), {}, Joining::Never);
        else
            replace(previousWord(cursor), cursor, {}, Joining::Never);
    }
    void breakLine(const QList<Row> &rows, int autoIndent)
    {
        if (autoIndent == 0)
            return insert(QStringLiteral("\n"));
        const qsizetype start = rows[rowOfCursor(rows)].start;
        qsizetype end = start;
        while (end < cursor
            && (QStringLiteral(" \t").contains(text[end]) || (autoIndent == 2 && text[end] == u'\u3000')))
            ++end;
        insert(u'\n' + text.mid(start, end - start));
    }
    void copy()
    {
        if (!hasSelection())
            return;
        clip = text.mid(from(), to() - from());
        moveTo(cursor, false, atRowEnd);
    }
    void cut()
    {
        if (!hasSelection())
            return;
        clip = text.mid(from(), to() - from());
        insert({});
    }
    bool selectsLines() const { return text.mid(from(), to() - from()).contains(u'\n'); }
    void indent(const QList<Row> &rows, bool out)
    {
        const qsizetype cursorRow = rowOfCursor(rows);
        const qsizetype anchorRow = rowOf(rows, anchor, anchorAtRowEnd);
        const qsizetype first = qMin(cursorRow, anchorRow);
        const qsizetype last = qMax(cursorRow, anchorRow);
        QString block;
        for (qsizetype row = first; row < last; ++row) {
            QString line = text.mid(rows[row].start, rows[row].length);
            const bool begins = row == 0 || rows[row - 1].endsLine;
            if (begins && !line.isEmpty())
                line = !out ? u'\t' + line : line.startsWith(u'\t') ? line.sliced(1) : line;
            block += line + (rows[row].endsLine ? QStringLiteral("\n") : QString());
        }
        const qsizetype begin = rows[first].start;
        replace(begin, rows[last].start, block, Joining::Never);
        moveTo(begin, false);
        moveTo(begin + block.size(), true);
    }

    // History.

    bool canUndo() const { return m_done > 0; }
    bool canRedo() const { return m_done < m_steps.size(); }
    qsizetype undoSteps() const { return m_done; }
    void undo()
    {
        const QList<Edit> edits = m_steps[--m_done];
        for (auto edit = edits.rbegin(); edit != edits.rend(); ++edit) {
            text.replace(edit->offset, edit->inserted.size(), edit->removed);
            moveTo(edit->offset + edit->removed.size(), false);
        }
    }
    void redo()
    {
        for (const Edit &edit : std::as_const(m_steps[m_done++])) {
            text.replace(edit.offset, edit.removed.size(), edit.inserted);
            moveTo(edit.offset + edit.inserted.size(), false);
        }
    }

private:
    struct Edit {
        qsizetype offset;
        QString removed;
        QString inserted;
    };
    static constexpr qsizetype depth = 256;

    static qsizetype rowOf(const QList<Row> &rows, qsizetype offset, bool rowEnd)
    {
        qsizetype row = rows.size() - 1;
        while (row > 0 && rows[row].start > offset)
            --row;
        const bool isSeam = row > 0 && rows[row].start == offset && !rows[row - 1].endsLine;
        return isSeam && rowEnd ? row - 1 : row;
    }

    void replace(qsizetype begin, qsizetype end, const QString &inserted, Joining joining)
    {
        const QString removed = text.mid(begin, end - begin);
        text.replace(begin, removed.size(), inserted);
        cursor = anchor = begin + inserted.size();
        atRowEnd = anchorAtRowEnd = false;
        if (!removed.isEmpty() || !inserted.isEmpty())
            record({ begin, removed, inserted }, joining);
    }
    void record(const Edit &edit, Joining joining)
    {
        m_steps.resize(m_done);
        const bool isPlain = edit.removed.isEmpty() != edit.inserted.isEmpty();
        const bool follows = joining != Joining::Never && joining == m_joining;
        const bool joins = follows && (isPlain || !m_steps.last().last().removed.isEmpty());
        m_joining = joining;
        if (joins) {
            Edit &last = m_steps.last().last();
            const bool before = edit.offset < last.offset;
            last.removed = before ? edit.removed + last.removed : last.removed + edit.removed;
            last.inserted += edit.inserted;
            last.offset = qMin(last.offset, edit.offset);
            return;
        }
        m_steps.append({ edit });
        if (++m_done > depth) {
            m_steps[1] = m_steps[0] + m_steps[1];
            m_steps.removeFirst();
            --m_done;
        }
    }

    qsizetype next(qsizetype offset) const
    {
        const bool isPair = offset + 1 < text.size() && text[offset].isHighSurrogate();
        return qMin(offset + (isPair ? 2 : 1), text.size());
    }
    qsizetype previous(qsizetype offset) const
    {
        const bool isPair = offset > 1 && text[offset - 1].isLowSurrogate();
        return qMax<qsizetype>(0, offset - (isPair ? 2 : 1));
    }
    enum Kind { LineEnd, Blank, Ideograph, Punctuation, Letter };
    static Kind kindOf(QChar unit)
    {
        if (unit == u'\n')
            return LineEnd;
        if (QStringLiteral(" \t\u3000").contains(unit))
            return Blank;
        if (unit.isSurrogate() || unit == u'語')
            return Ideograph;
        return unit == u',' ? Punctuation : Letter;
    }
    qsizetype skip(qsizetype offset, Kind kind, int by) const
    {
        const auto unit = [&] { return text[by > 0 ? offset : offset - 1]; };
        while ((by > 0 ? offset < text.size() : offset > 0) && kindOf(unit()) == kind)
            offset += by;
        return offset;
    }
    qsizetype nextWord(qsizetype offset) const
    {
        if (offset == text.size() || text[offset] == u'\n')
            return qMin(offset + 1, text.size());
        return skip(skip(offset, kindOf(text[offset]), 1), Blank, 1);
    }
    qsizetype previousWord(qsizetype offset) const
    {
        if (offset == 0 || text[offset - 1] == u'\n')
            return qMax<qsizetype>(0, offset - 1);
        const qsizetype word = skip(offset, Blank, -1);
        return word == 0 || text[word - 1] == u'\n' ? word : skip(word, kindOf(text[word - 1]), -1);
    }

    QList<QList<Edit>> m_steps; ///< oldest first; from m_done on they can be redone
    qsizetype m_done = 0;
    Joining m_joining = Joining::Never; ///< how the newest edit may be joined
};

} // namespace EditorModel
