#pragma once

#include "widget/qmultilineedit.h"

#include <QKeySequence>
#include <QTest>

/// Text drawn with its cursor "|" and, where text is selected, the other end of it "[" or "]": "ab[cd|ef"
/// selects cd with the cursor behind it, "ab|cd]ef" selects the same with the cursor before it.
namespace DrawnText {

inline void place(QMultiLineEdit &edit, qint64 offset, bool selects)
{
    edit.setCursorPosition(edit.store().rowColAt(Offset(offset)), selects);
}

inline void load(QMultiLineEdit &edit, const QString &drawing)
{
    QString text = drawing;
    const auto takeOut = [&text](QChar sign) {
        const qsizetype at = text.indexOf(sign);
        if (at >= 0)
            text.remove(at, 1);
        return at;
    };
    const qsizetype opening = takeOut(u'[');
    const qsizetype cursor = takeOut(u'|');
    const qsizetype closing = takeOut(u']');
    Q_ASSERT(cursor >= 0);
    edit.setText(text);
    place(edit, opening >= 0 ? opening : closing >= 0 ? closing : cursor, false);
    place(edit, cursor, true);
}

inline QString draw(const QMultiLineEdit &edit)
{
    QString text = edit.text();
    const qint64 cursor = edit.cursorOffset().value();
    const qint64 anchor = edit.anchorOffset().value();
    if (anchor > cursor)
        text.insert(anchor, u']');
    text.insert(cursor, u'|');
    if (anchor < cursor)
        text.insert(anchor, u'[');
    return text;
}

inline void pressOnce(QWidget &widget, QKeyCombination keys)
{
    // The keys of multimedia keyboards are no characters, which is all that keyClick() knows.
    if (keys.key() >= Qt::Key_Back)
        QTest::sendKeyEvent(QTest::Click, &widget, keys.key(), QString(), keys.keyboardModifiers());
    else
        QTest::keyClick(&widget, keys.key(), keys.keyboardModifiers());
}

/// Presses keys written as "Shift+Right Del 'typed' Left*3".
inline void press(QWidget &widget, const QString &keys)
{
    for (const QString &word : keys.split(u' ', Qt::SkipEmptyParts)) {
        if (word.startsWith(u'\'')) {
            for (const QChar typed : word.sliced(1, word.size() - 2))
                QTest::sendKeyEvent(QTest::Click, &widget, Qt::Key_unknown, typed, Qt::NoModifier);
            continue;
        }
        const qsizetype star = word.indexOf(u'*');
        const int times = star < 0 ? 1 : word.sliced(star + 1).toInt();
        const QKeySequence sequence(star < 0 ? word : word.first(star), QKeySequence::PortableText);
        Q_ASSERT(sequence.count() == 1 && sequence[0].key() != Qt::Key_unknown);
        for (int i = 0; i < times; ++i)
            pressOnce(widget, sequence[0]);
    }
}

} // namespace DrawnText
