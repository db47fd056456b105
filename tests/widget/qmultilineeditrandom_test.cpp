#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/widget/drawntext.h"
#include "tests/widget/rows.h"

#include <QRandomGenerator>
#include <QScrollBar>
#include <QSignalSpy>

#include <algorithm>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// The editor as one would write it for a few letters: a string, and rows cut anew for every question. Every
/// character is one unit and one column wide.
class Model {
public:
    QString text;
    qsizetype cursor = 0;
    qsizetype anchor = 0;
    bool atRowEnd = false;
    qsizetype wrap = 0; ///< characters a row holds; 0: any number

    void move(qsizetype to, bool selects, bool toRowEnd = false)
    {
        cursor = to;
        atRowEnd = toRowEnd;
        if (!selects)
            anchor = to;
        m_goal.reset();
    }
    void step(int by, bool selects)
    {
        if (!selects && cursor != anchor)
            move(by < 0 ? qMin(cursor, anchor) : qMax(cursor, anchor), false);
        else
            move(qBound<qsizetype>(0, cursor + by, text.size()), selects);
    }
    void stepRows(qsizetype by, bool selects)
    {
        const QList<Row> all = rows();
        const qsizetype row = rowOfCursor();
        const qsizetype goal = m_goal.value_or(cursor - all[row].start);
        const qsizetype target = qBound<qsizetype>(0, row + by, all.size() - 1);
        if (target == row) {
            if (!selects)
                anchor = cursor;
        } else {
            const Row &to = all[target];
            const qsizetype column = qMin(goal, to.length);
            move(to.start + column, selects, column == to.length && !to.endsLine);
        }
        m_goal = goal;
    }
    void toRowEdge(bool end, bool selects)
    {
        const Row row = rows()[rowOfCursor()];
        move(end ? row.start + row.length : row.start, selects, end && !row.endsLine);
    }
    void replaceSelection(const QString &with)
    {
        const qsizetype from = qMin(cursor, anchor);
        text.replace(from, qAbs(cursor - anchor), with);
        move(from + with.size(), false);
    }
    void erase(int by)
    {
        if (cursor == anchor)
            anchor = qBound<qsizetype>(0, cursor + by, text.size());
        replaceSelection(QString());
    }
    RowCol position() const
    {
        const qsizetype row = rowOfCursor();
        return { RowIndex(row), cursor - rows()[row].start };
    }
    qsizetype rowCount() const { return rows().size(); }
    RowIndex lastRow() const { return RowIndex(rowCount() - 1); }
    QString row(qsizetype index) const { return text.mid(rows()[index].start, rows()[index].length); }

private:
    struct Row {
        qsizetype start;
        qsizetype length;
        bool endsLine;
    };
    QList<Row> rows() const
    {
        QList<Row> result;
        qsizetype start = 0;
        for (const QString &line : text.split(u'\n')) {
            qsizetype left = line.size();
            while (wrap > 0 && left > wrap) {
                result.append({ start, wrap, false });
                start += wrap;
                left -= wrap;
            }
            result.append({ start, left, true });
            start += left + 1;
        }
        return result;
    }
    qsizetype rowOfCursor() const
    {
        const QList<Row> all = rows();
        qsizetype row = all.size() - 1;
        while (row > 0 && all[row].start > cursor)
            --row;
        const bool isSeam = row > 0 && all[row].start == cursor && !all[row - 1].endsLine;
        return isSeam && atRowEnd ? row - 1 : row;
    }

    std::optional<qsizetype> m_goal;
};

/// Whether the last row is the lowest one in view.
bool isAtEnd(const QMultiLineEdit &edit)
{
    return edit.verticalScrollBar()->value() == edit.verticalScrollBar()->maximum();
}

} // namespace

/// Long runs of random keys, held against a plain string.
class QMultiLineEditRandomTest : public QObject {
    Q_OBJECT

private slots:
    void keys_data();
    void keys();

private:
    void pressSomething();
    void undoOrRedo(bool back);
    void compare();
    int below(int bound) { return m_random.bounded(bound); }

    QRandomGenerator m_random;
    std::unique_ptr<QMultiLineEdit> m_edit;
    Model m_model;
    QStringList m_seen; ///< texts after each edit that can be undone, oldest first
};

void QMultiLineEditRandomTest::keys_data()
{
    addSeeds(16);
}

void QMultiLineEditRandomTest::keys()
{
    QFETCH(uint, seed);
    m_random.seed(seed);
    m_edit = std::make_unique<QMultiLineEdit>();
    m_edit->resize(120, 100);
    m_model = {};
    const QString start = u"xxxxxxx\nxx\n\nxxxxxxxxxxxxxxxxxxxx"_s;
    m_edit->setText(start);
    m_model.text = start;
    m_seen = { start };
    for (int step = 0; step < 400 && !QTest::currentTestFailed(); ++step) {
        pressSomething();
        compare();
    }
    while (m_edit->history().canUndo())
        m_edit->undo();
    QCOMPARE(m_edit->text(), start);
    m_edit->store().checkInvariants();
}

void QMultiLineEditRandomTest::pressSomething()
{
    const bool selects = below(3) == 0;
    const Qt::KeyboardModifiers modifiers = selects ? Qt::ShiftModifier : Qt::NoModifier;
    const auto key = [this](Qt::Key code, Qt::KeyboardModifiers with) {
        QTest::keyClick(m_edit.get(), code, with);
    };
    switch (below(18)) {
    case 0:
    case 1:
        key(Qt::Key_Left, modifiers);
        return m_model.step(-1, selects);
    case 2:
    case 3:
        key(Qt::Key_Right, modifiers);
        return m_model.step(1, selects);
    case 4:
        key(Qt::Key_Up, modifiers);
        return m_model.stepRows(-1, selects);
    case 5:
        key(Qt::Key_Down, modifiers);
        return m_model.stepRows(1, selects);
    case 6:
        key(Qt::Key_Home, modifiers);
        return m_model.toRowEdge(false, selects);
    case 7:
        key(Qt::Key_End, modifiers);
        return m_model.toRowEdge(true, selects);
    case 8:
        key(Qt::Key_Home, modifiers | Qt::ControlModifier);
        return m_model.move(0, selects);
    case 9:
        key(Qt::Key_Backspace, Qt::NoModifier);
        m_model.erase(-1);
        break;
    case 10:
        key(Qt::Key_Delete, Qt::NoModifier);
        m_model.erase(1);
        break;
    case 11:
        key(Qt::Key_Return, Qt::NoModifier);
        m_model.replaceSelection(u"\n"_s);
        break;
    case 12:
    case 13:
        for (int left = 1 + below(6); left > 0; --left) {
            DrawnText::press(*m_edit, u"'x'"_s);
            m_model.replaceSelection(u"x"_s);
            m_seen.append(m_model.text);
        }
        return;
    case 14: {
        const qsizetype before = std::exchange(m_model.wrap, below(2) * (1 + below(9)));
        const Offset topOffset = m_edit->store().row(m_edit->topRow()).start;
        if (m_model.wrap)
            wrapAt(*m_edit, m_model.wrap);
        else
            m_edit->setWordWrap(QMultiLineEdit::NoWrap);
        // The text at the top stays there, and so the cursor may be below the view.
        QVERIFY(m_edit->topRow() <= m_edit->store().rowColAt(topOffset).row);
        QVERIFY(m_edit->topRow() == m_edit->store().rowColAt(topOffset).row || isAtEnd(*m_edit));
        m_edit->showPlace(m_edit->cursorPlace());
        if (m_model.wrap != before)
            m_model.move(m_model.cursor, true, m_model.atRowEnd);
        return;
    }
    case 15: {
        const RowCol at{ RowIndex(below(12) - 1), below(12) - 1 };
        m_edit->setCursorPosition(at.row.value(), at.column, selects);
        const RowCol now = m_edit->cursorPosition();
        QVERIFY(now.row == qBound(RowIndex(), at.row, m_model.lastRow()));
        QVERIFY(now.column == qBound<qint64>(0, at.column, m_model.row(now.row.value()).size()));
        const bool atEnd =
            now.column == rowText(*m_edit, now.row.value()).size() && !m_edit->store().row(now.row).endsLine;
        return m_model.move(m_edit->cursorOffset().value(), selects, atEnd);
    }
    default:
        return undoOrRedo(below(3) > 0);
    }
    m_seen.append(m_model.text);
}

/// Which keys make one step is the history's affair; each step leads to a text that was there before.
void QMultiLineEditRandomTest::undoOrRedo(bool back)
{
    const bool possible = back ? m_edit->history().canUndo() : m_edit->history().canRedo();
    if (back)
        m_edit->undo();
    else
        m_edit->redo();
    if (!possible)
        return;
    const QString text = m_edit->text();
    QVERIFY2(m_seen.contains(text), qPrintable(text));
    m_model.text = text;
    m_model.move(m_edit->cursorOffset().value(), false);
}

void QMultiLineEditRandomTest::compare()
{
    QCOMPARE(m_edit->text(), m_model.text);
    QCOMPARE(m_edit->cursorOffset(), Offset(m_model.cursor));
    QCOMPARE(m_edit->anchorOffset(), Offset(m_model.anchor));
    QCOMPARE(m_edit->numLines(), m_model.rowCount());
    QCOMPARE(m_edit->cursorPosition(), m_model.position());
    const qsizetype row = below(int(m_model.rowCount()));
    QCOMPARE(rowText(*m_edit, row), m_model.row(row));
    QVERIFY(m_edit->viewport()->rect().intersects(m_edit->cursorRect()));
}

REGISTER_TEST(runWindowTest<QMultiLineEditRandomTest>)
#include "qmultilineeditrandom_test.moc"
