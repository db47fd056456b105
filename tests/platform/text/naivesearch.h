#pragma once

#include "platform/text/textsearch.h"

#include <QStringList>

/// The rules of searching as they are told, row by row, on a list of rows.
class NaiveSearch {
public:
    explicit NaiveSearch(const TextStore &store)
    {
        for (qint64 i = 0; i < store.rowCount(); ++i) {
            const TextStore::Row row = store.row(i);
            m_texts << store.text(row.start, row.length);
            m_ends << row.endsLine;
        }
    }

    std::optional<SearchHit> forward(const QString &find, Qt::CaseSensitivity cs, RowCol start) const
    {
        for (qint64 row = start.row, column = start.column; row < m_texts.size(); ++row, column = 0) {
            QString joined = m_texts.at(row);
            const qint64 length = joined.size();
            for (qint64 i = row; !m_ends.at(i) && i + 1 < m_texts.size();)
                joined += m_texts.at(++i);
            const qint64 hit = column > joined.size() ? -1 : joined.indexOf(find, column, cs);
            if (hit < 0 || hit > length)
                continue;
            const qint64 end = hit + find.size();
            if (end > length)
                return SearchHit{ { row, hit }, { row + 1, end - length } };
            return SearchHit{ { row, hit }, { row, end } };
        }
        return std::nullopt;
    }

    std::optional<SearchHit> backward(const QString &find, Qt::CaseSensitivity cs, RowCol start) const
    {
        for (qint64 row = start.row, column = start.column; row >= 0; --row) {
            if (row != start.row)
                column = m_texts.at(row).size();
            QString joined = m_texts.at(row);
            const qint64 length = joined.size();
            qint64 first = row;
            while (first > 0 && !m_ends.at(first - 1))
                joined.prepend(m_texts.at(--first));
            const qint64 before = joined.size() - length;
            const qint64 from = before + column;
            if (from == 0)
                continue;
            const qint64 hit = joined.lastIndexOf(find, from - 1, cs);
            if (hit < 0 || hit + find.size() <= before)
                continue;
            const RowCol end{ row, hit + find.size() - joined.size() + length };
            if (hit >= before)
                return SearchHit{ { row, hit - before }, end };
            qint64 rest = hit;
            for (qint64 i = first; m_texts.at(i).size() < rest; ++i)
                rest -= m_texts.at(i).size();
            return SearchHit{ { row - 1, rest }, end };
        }
        return std::nullopt;
    }

private:
    QStringList m_texts;
    QList<bool> m_ends;
};
