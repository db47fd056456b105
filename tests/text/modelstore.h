#pragma once

#include "text/codepoint.h"
#include "text/textstore.h"

#include "tests/text/toolkitgraphemes.h"

#include <QHash>
#include <QList>

#include <algorithm>

/// The plain reference for TextStore: one string, whose rows are put together anew from its lines after every
/// edit. What is one character it asks the toolkit, and each line is laid out by itself, once.
class ModelStore {
public:
    explicit ModelStore(const LayoutRule &rule = {})
        : m_rule(rule)
    {
    }

    const QString &text() const { return m_text; }
    qint64 length() const { return m_text.size(); }
    Offset end() const { return Offset(m_text.size()); }
    void setText(const QString &text)
    {
        m_text = text;
        forget();
    }
    void replace(Offset offset, qint64 removed, QStringView inserted)
    {
        m_text.replace(offset.value(), removed, inserted.toString());
        forget();
    }
    void setLayoutRule(const LayoutRule &rule)
    {
        m_rule = rule;
        m_lines.clear();
        forget();
    }
    const LayoutRule &layoutRule() const { return m_rule; }

    qint64 lineCount() const { return m_text.count(u'\n') + 1; }
    LineIndex lineAt(Offset offset) const
    {
        return LineIndex(QStringView(m_text).first(offset.value()).count(u'\n'));
    }
    Offset lineEnd(LineIndex line) const
    {
        const qint64 end = m_text.indexOf(u'\n', lineStart(line).value());
        return end < 0 ? this->end() : Offset(end);
    }
    Offset lineStart(LineIndex line) const
    {
        qint64 start = 0;
        for (; line > LineIndex(); line = line - 1)
            start = m_text.indexOf(u'\n', start) + 1;
        return Offset(start);
    }
    const QList<TextStore::Row> &rows() const
    {
        if (m_rows.isEmpty())
            layOut();
        return m_rows;
    }
    const TextStore::Row &row(RowIndex row) const { return rows().at(row.value()); }
    RowIndex lastRow() const { return RowIndex(rows().size() - 1); }
    RowIndex rowAt(Offset offset) const
    {
        const auto behind = std::ranges::upper_bound(rows(), offset, {}, &TextStore::Row::start);
        return RowIndex(behind - rows().begin() - 1);
    }
    Subpixels xAt(RowCol position) const
    {
        const qint64 start = row(position.row).start.value();
        Subpixels x = 0;
        for (qint64 i = start; i < start + position.column; ++i)
            x = after(x, m_text.at(i), m_widths.at(i));
        return x;
    }
    qint64 columnAt(RowIndex row, Subpixels x) const
    {
        const TextStore::Row &r = this->row(row);
        const qint64 start = r.start.value();
        qint64 column = 0;
        Subpixels edge = 0;
        for (; column < r.length; ++column) {
            edge = after(edge, m_text.at(start + column), m_widths.at(start + column));
            if (edge > x)
                break;
        }
        return column;
    }
    Subpixels widestRow() const
    {
        Subpixels widest = 0;
        for (RowIndex row; row <= lastRow(); ++row)
            widest = qMax(widest, xAt({ row, this->row(row).length }));
        return widest;
    }

private:
    /// Rows stand where they would if the text began with their line.
    struct Line {
        QList<Subpixels> widths;
        QList<TextStore::Row> rows;
    };

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
    QList<Subpixels> widthsOf(const QString &line) const
    {
        QList<Subpixels> widths(line.size());
        const std::vector<qsizetype> places = toolkitGraphemes(line);
        for (std::size_t k = 0; k + 1 < places.size(); ++k)
            widths[places[k]] = characterWidth(QStringView(line).first(places[k + 1]).sliced(places[k]));
        return widths;
    }
    Subpixels after(Subpixels x, QChar unit, Subpixels width) const
    {
        return unit == u'\t' ? (x / m_rule.tabStop + 1) * m_rule.tabStop : x + width;
    }
    /// `text` ends with its LF if it has one.
    Line laidOut(const QString &text) const
    {
        Line line{ widthsOf(text), {} };
        const qint64 end = text.endsWith(u'\n') ? text.size() - 1 : text.size();
        TextStore::Row row;
        const auto finish = [&](qint64 at, bool endsLine) {
            row.length = at - row.start.value();
            row.endsLine = endsLine;
            line.rows.append(row);
            row.start = Offset(at);
        };
        Subpixels x = 0;
        for (qint64 i = 0; i < end; ++i) {
            const Subpixels edge = after(x, text.at(i), line.widths.at(i));
            const bool wraps = m_rule.limit > 0 && x > 0 && edge > x && edge > m_rule.limit;
            if (wraps)
                finish(i, false);
            x = wraps ? after(0, text.at(i), line.widths.at(i)) : edge;
        }
        finish(end, true);
        return line;
    }
    const Line &lineOf(const QString &text) const
    {
        auto known = m_lines.constFind(text);
        if (known == m_lines.constEnd())
            known = m_lines.insert(text, laidOut(text));
        return *known;
    }
    void layOut() const
    {
        for (qint64 start = 0, end = 0; end >= 0; start = end + 1) {
            end = m_text.indexOf(u'\n', start);
            const Line &line = lineOf(end < 0 ? m_text.sliced(start) : m_text.sliced(start, end + 1 - start));
            m_widths += line.widths;
            for (TextStore::Row row : line.rows) {
                row.start += start;
                m_rows.append(row);
            }
        }
    }

    QString m_text;
    LayoutRule m_rule;
    mutable QHash<QString, Line> m_lines; ///< those that were ever laid out by this rule
    mutable QList<TextStore::Row> m_rows;
    mutable QList<Subpixels> m_widths; ///< of units: a character's first one has the width of it all
};
