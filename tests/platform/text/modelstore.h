#pragma once

#include "platform/text/textstore.h"

#include <QList>

/// The plain reference for TextStore: one string, all rows computed anew for every question.
class ModelStore {
public:
    explicit ModelStore(const LayoutRule &rule = {})
        : m_rule(rule)
    {
    }

    const QString &text() const { return m_text; }
    qint64 length() const { return m_text.size(); }
    void setText(const QString &text)
    {
        m_text = text;
        m_rows.clear();
    }
    void replace(qint64 offset, qint64 removed, QStringView inserted)
    {
        m_text.replace(offset, removed, inserted.toString());
        m_rows.clear();
    }
    void setLayoutRule(const LayoutRule &rule)
    {
        m_rule = rule;
        m_rows.clear();
    }
    const LayoutRule &layoutRule() const { return m_rule; }

    qint64 lineCount() const { return lineAt(length()) + 1; }
    qint64 lineAt(qint64 offset) const { return QStringView(m_text).first(offset).count(u'\n'); }
    qint64 lineStart(qint64 line) const
    {
        qint64 start = 0;
        for (; line > 0; --line)
            start = m_text.indexOf(u'\n', start) + 1;
        return start;
    }
    const QList<TextStore::Row> &rows() const
    {
        if (m_rows.isEmpty())
            layOut();
        return m_rows;
    }
    qint64 rowAt(qint64 offset) const
    {
        qint64 row = 0;
        while (row + 1 < rows().size() && rows().at(row + 1).start <= offset)
            ++row;
        return row;
    }
    Subpixels xAt(RowCol position) const
    {
        const qint64 start = rows().at(position.row).start;
        Subpixels x = 0;
        for (qint64 i = start; i < start + position.column; ++i)
            x = after(x, i);
        return x;
    }
    qint64 columnAt(qint64 row, Subpixels x) const
    {
        const TextStore::Row &r = rows().at(row);
        qint64 column = 0;
        Subpixels edge = 0;
        while (column < r.length && (edge = after(edge, r.start + column)) <= x)
            ++column;
        return column;
    }
    Subpixels widestRow() const
    {
        Subpixels widest = 0;
        for (qint64 row = 0; row < rows().size(); ++row)
            widest = qMax(widest, xAt({ row, rows().at(row).length }));
        return widest;
    }

private:
    bool isPair(qint64 i) const
    {
        return i >= 0 && i + 1 < m_text.size() && m_text.at(i).isHighSurrogate()
            && m_text.at(i + 1).isLowSurrogate();
    }
    Subpixels widthOf(qint64 i) const
    {
        if (isPair(i - 1))
            return 0;
        if (!m_rule.advances)
            return subpixelsPerPixel;
        return isPair(i) ? m_rule.advances->advanceOf(QChar::surrogateToUcs4(m_text.at(i), m_text.at(i + 1)))
                         : m_rule.advances->advanceOf(m_text.at(i).unicode());
    }
    Subpixels after(Subpixels x, qint64 i) const
    {
        return m_text.at(i) == u'\t' ? (x / m_rule.tabStop + 1) * m_rule.tabStop : x + widthOf(i);
    }
    void layOut() const
    {
        TextStore::Row row;
        Subpixels x = 0;
        for (qint64 i = 0; i < m_text.size(); ++i) {
            if (m_text.at(i) == u'\n') {
                finish(row, i, true, i + 1);
                x = 0;
                continue;
            }
            const bool widens = after(x, i) > x;
            if (m_rule.limit > 0 && x > 0 && widens && after(x, i) > m_rule.limit) {
                finish(row, i, false, i);
                x = 0;
            }
            x = after(x, i);
        }
        finish(row, m_text.size(), true, m_text.size());
    }
    void finish(TextStore::Row &row, qint64 end, bool endsLine, qint64 next) const
    {
        row.length = end - row.start;
        row.endsLine = endsLine;
        m_rows.append(row);
        row.start = next;
    }

    QString m_text;
    LayoutRule m_rule;
    mutable QList<TextStore::Row> m_rows;
};
