#pragma once

#include "tests/text/modelstore.h"
#include "text/textsearch.h"

#include <QStringList>

#include <optional>

/// A hit in display rows. A column may lie behind the last one of its row.
struct RowHit {
    RowCol begin;
    RowCol end;
};

/// The rules of searching as they are told, row by row, on the rows of a model, which must outlive it.
class NaiveSearch {
public:
    explicit NaiveSearch(const ModelStore &model)
        : m_model(model)
    {
    }

    std::optional<RowHit> forward(const QString &find, Qt::CaseSensitivity cs, RowCol start) const
    {
        qint64 column = start.column;
        for (RowIndex row = start.row; row <= m_model.lastRow(); ++row, column = 0) {
            QString joined = textOf(row);
            const qint64 length = joined.size();
            for (RowIndex i = row; !m_model.row(i).endsLine && i < m_model.lastRow();)
                joined += textOf(++i);
            const qint64 hit = column > joined.size() ? -1 : joined.indexOf(find, column, cs);
            if (hit < 0 || hit > length)
                continue;
            const qint64 end = hit + find.size();
            if (end > length)
                return RowHit{ { row, hit }, { row + 1, end - length } };
            return RowHit{ { row, hit }, { row, end } };
        }
        return std::nullopt;
    }

    std::optional<RowHit> backward(const QString &find, Qt::CaseSensitivity cs, RowCol start) const
    {
        qint64 column = start.column;
        for (RowIndex row = start.row; row >= RowIndex(); --row) {
            if (row != start.row)
                column = textOf(row).size();
            QString joined = textOf(row);
            const qint64 length = joined.size();
            RowIndex first = row;
            while (first > RowIndex() && !m_model.row(first - 1).endsLine)
                joined.prepend(textOf(--first));
            const qint64 before = joined.size() - length;
            const qint64 from = before + column;
            if (from == 0)
                continue;
            const qint64 hit = lastIndexOf(joined, find, from - 1, cs);
            if (hit < 0 || hit + find.size() <= before)
                continue;
            const RowCol end{ row, hit + find.size() - joined.size() + length };
            if (hit >= before)
                return RowHit{ { row, hit - before }, end };
            qint64 rest = hit;
            for (RowIndex i = first; textOf(i).size() < rest; ++i)
                rest -= textOf(i).size();
            return RowHit{ { row - 1, rest }, end };
        }
        return std::nullopt;
    }

private:
    QString textOf(RowIndex row) const
    {
        const TextStore::Row &place = m_model.row(row);
        return m_model.text().mid(place.start.value(), place.length);
    }

    /// A string's own search backwards folds halves of surrogate pairs; the search forwards is the measure.
    static qint64 lastIndexOf(const QString &text, const QString &find, qint64 from, Qt::CaseSensitivity cs)
    {
        qint64 last = -1;
        for (qint64 at = -1; (at = text.indexOf(find, at + 1, cs)) >= 0 && at <= from;)
            last = at;
        return last;
    }

    const ModelStore &m_model;
};

/// An editor that searches and replaces by these rules, with its cursor in rows and columns.
class NaiveEditor {
public:
    explicit NaiveEditor(const LayoutRule &rule, const QString &text)
        : m_model(rule)
    {
        m_model.setText(text);
    }

    const ModelStore &model() const { return m_model; }
    RowCol cursor() const { return m_cursor; }
    RowCol anchor() const { return m_anchor; }
    void setCursor(RowCol place, bool selects = false)
    {
        m_cursor = clamped(place);
        if (!selects)
            m_anchor = m_cursor;
    }

    bool searchForward(int mode, Qt::CaseSensitivity cs, const QString &find, const QString &replace)
    {
        RowCol start = m_cursor;
        if (hasSelection())
            start = { first().row, first().column + 1 };
        const auto hit = NaiveSearch(m_model).forward(find, cs, start);
        if (!hit)
            return false;
        setCursor(hit->begin);
        setCursor(hit->end, true);
        if (mode == 1)
            insert(replace);
        return true;
    }
    bool searchBackward(int mode, Qt::CaseSensitivity cs, const QString &find, const QString &replace)
    {
        const auto hit = NaiveSearch(m_model).backward(find, cs, hasSelection() ? first() : m_cursor);
        if (!hit)
            return false;
        setCursor(hit->end);
        setCursor(hit->begin, true);
        if (mode == 1) {
            const RowCol begin = m_cursor;
            insert(replace);
            setCursor(begin);
        }
        return true;
    }
    /// Gives the text before the first replacement and behind each one.
    QStringList replaceAll(Qt::CaseSensitivity cs, const QString &find, const QString &replace)
    {
        setCursor({});
        QStringList texts{ m_model.text() };
        while (searchForward(1, cs, find, replace))
            texts << m_model.text();
        return texts;
    }

private:
    Offset offsetOf(RowCol place) const { return m_model.row(place.row).start + place.column; }
    bool hasSelection() const { return offsetOf(m_cursor) != offsetOf(m_anchor); }
    RowCol first() const { return offsetOf(m_anchor) < offsetOf(m_cursor) ? m_anchor : m_cursor; }
    RowCol clamped(RowCol place) const
    {
        const RowIndex row = qBound(RowIndex(), place.row, m_model.lastRow());
        return { row, qBound<qint64>(0, place.column, m_model.row(row).length) };
    }
    void insert(const QString &text)
    {
        const Offset begin = qMin(offsetOf(m_cursor), offsetOf(m_anchor));
        const Offset end = qMax(offsetOf(m_cursor), offsetOf(m_anchor));
        m_model.replace(begin, end - begin, text);
        const RowIndex row = m_model.rowAt(begin + text.size());
        m_cursor = m_anchor = { row, begin + text.size() - m_model.row(row).start };
    }

    ModelStore m_model;
    RowCol m_cursor;
    RowCol m_anchor;
};
