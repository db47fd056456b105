#pragma once

#include "text/codepoint.h"
#include "text/textstore.h"

#include "tests/text/toolkitgraphemes.h"

#include <QList>

/// The plain reference for TextStore: one string, all rows computed anew for every question. What is one
/// character it asks the toolkit.
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
        forget();
    }
    void replace(qint64 offset, qint64 removed, QStringView inserted)
    {
        m_text.replace(offset, removed, inserted.toString());
        forget();
    }
    void setLayoutRule(const LayoutRule &rule)
    {
        m_rule = rule;
        forget();
    }
    const LayoutRule &layoutRule() const { return m_rule; }

    qint64 lineCount() const { return m_text.count(u'\n') + 1; }
    LineIndex lineAt(qint64 offset) const
    {
        return LineIndex(QStringView(m_text).first(offset).count(u'\n'));
    }
    qint64 lineEnd(LineIndex line) const
    {
        const qint64 end = m_text.indexOf(u'\n', lineStart(line));
        return end < 0 ? m_text.size() : end;
    }
    qint64 lineStart(LineIndex line) const
    {
        qint64 start = 0;
        for (; line > LineIndex(); line = line - 1)
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
    void forget()
    {
        m_rows.clear();
        m_widths.clear();
    }
    Subpixels advance(char32_t codePoint) const
    {
        if (m_rule.advances)
            return m_rule.advances->advanceOf(codePoint);
        return QChar::category(codePoint) == QChar::Mark_NonSpacing ? 0 : subpixelsPerPixel;
    }
    /// Flags have two letters, emoji are joined by U+200D: one of them says how wide the whole is.
    Subpixels characterWidth(QStringView character) const
    {
        const auto isLetterOfFlag = [](char32_t c) { return c >= 0x1f1e6 && c <= 0x1f1ff; };
        Subpixels width = 0;
        char32_t before = 0;
        for (qsizetype i = 0; i < character.size(); i += unitsOf(before)) {
            const char32_t c = codePointAt(character, i);
            if (before != 0x200d && !(isLetterOfFlag(before) && isLetterOfFlag(c)))
                width += advance(c);
            before = c;
        }
        return width;
    }
    Subpixels widthOf(qint64 i) const
    {
        if (m_widths.isEmpty()) {
            m_widths.resize(m_text.size());
            const std::vector<qsizetype> places = toolkitGraphemes(m_text);
            for (std::size_t k = 0; k + 1 < places.size(); ++k) {
                const QStringView character = QStringView(m_text).first(places[k + 1]).sliced(places[k]);
                m_widths[places[k]] = characterWidth(character);
            }
        }
        return m_widths[i];
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
    mutable QList<Subpixels> m_widths; ///< of units: a character's first one has the width of it all
};
