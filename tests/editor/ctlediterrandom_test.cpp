#include "tests/editor/editormodel.h"

#include "settings/settings.h"
#include "tests/seeds.h"
#include "tests/testprogram.h"
#include "tests/text/undosteps.h"
#include "tests/widget/drawntext.h"

#include <QApplication>
#include <QClipboard>
#include <QRandomGenerator>

#include <memory>

using namespace Qt::StringLiterals;
using namespace EditorModel;

/// Long runs of random keys with all that the editor adds to them, held against a plain string.
class CtlEditerRandomTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void keys_data();
    void keys();

private:
    void pressSomething();
    void pressMove();
    void pressVertical(Qt::Key key, bool selects);
    void pressEdit();
    void pressReturn();
    void pressTab();
    void pressClipboardKey();
    void undoOrRedo();
    void changeSettings();
    void compare();
    int below(int bound) { return m_random.bounded(bound); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        m_keys << QKeySequence(modifiers | key).toString(QKeySequence::PortableText);
        QTest::keyClick(m_editor, key, modifiers);
    }

    QRandomGenerator m_random;
    std::unique_ptr<QWidget> m_window;
    ctlEditer *m_editor = nullptr;
    Model m_model;
    QStringList m_keys; ///< pressed so far, to be told when they lead astray
};

void CtlEditerRandomTest::init()
{
    appSettings() = AppSettings();
    appSettings().FontName = u"monospace"_s;
    m_window = std::make_unique<QWidget>();
    m_window->resize(240, 200);
    m_editor = new ctlEditer(m_window.get());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_editor->setFocus();
}

void CtlEditerRandomTest::cleanup()
{
    if (QTest::currentTestFailed())
        qWarning("keys: %s", qPrintable(m_keys.join(u' ')));
    m_window.reset();
}

void CtlEditerRandomTest::keys_data()
{
    addSeeds(16);
}

void CtlEditerRandomTest::keys()
{
    QFETCH(uint, seed);
    m_random.seed(seed);
    m_keys.clear();
    m_model = {};
    QApplication::clipboard()->clear();
    m_model.text =
        u"\tfirst line\n\n  \u3000second, a longer one that wraps\n\t\t\U00020B9F\U00020B9F words\n"_s;
    m_editor->setText(m_model.text);
    const QString start = m_model.text;
    for (int i = 0; i < 700 && !QTest::currentTestFailed(); ++i) {
        pressSomething();
        compare();
    }
    while (m_editor->history().canUndo())
        m_editor->undo();
    QCOMPARE(m_editor->text(), start);
    m_editor->store().checkInvariants();
}

void CtlEditerRandomTest::pressSomething()
{
    switch (below(16)) {
    case 0:
    case 1:
    case 2:
    case 3:
    case 4:
        return pressMove();
    case 5:
    case 6:
    case 7:
    case 8:
    case 9:
        return pressEdit();
    case 10:
        return pressReturn();
    case 11:
    case 12:
        return pressTab();
    case 13:
        return pressClipboardKey();
    case 14:
        return undoOrRedo();
    default:
        return changeSettings();
    }
}

void CtlEditerRandomTest::pressMove()
{
    const bool selects = below(2) == 0;
    const Qt::KeyboardModifiers shift = selects ? Qt::ShiftModifier : Qt::NoModifier;
    const QList<Row> rows = rowsOf(*m_editor);
    switch (below(9)) {
    case 0:
        press(Qt::Key_Left, shift);
        return m_model.step(false, selects);
    case 1:
        press(Qt::Key_Right, shift);
        return m_model.step(true, selects);
    case 2:
        press(Qt::Key_Left, shift | Qt::ControlModifier);
        return m_model.stepWord(false, selects);
    case 3:
        press(Qt::Key_Right, shift | Qt::ControlModifier);
        return m_model.stepWord(true, selects);
    case 4:
        press(Qt::Key_Home, shift);
        return m_model.toRowEdge(rows, false, selects);
    case 5:
        press(Qt::Key_End, shift);
        return m_model.toRowEdge(rows, true, selects);
    case 6:
        if (below(3) == 0) {
            press(Qt::Key_Home, shift | Qt::ControlModifier);
            return m_model.moveTo(0, selects);
        }
        return pressVertical(Qt::Key_PageUp, selects);
    case 7:
        return pressVertical(Qt::Key_Up, selects);
    default:
        return pressVertical(Qt::Key_Down, selects);
    }
}

/// The row is the model's; where in it the nearest place is depends on the font.
void CtlEditerRandomTest::pressVertical(Qt::Key key, bool selects)
{
    const QList<Row> rows = rowsOf(*m_editor);
    const qsizetype page =
        qMax<qsizetype>(1, qsizetype(m_editor->viewport()->height() / m_editor->rowHeight()) - 1);
    const qsizetype by = key == Qt::Key_PageUp ? -page : key == Qt::Key_Up ? -1 : 1;
    const qsizetype row = m_model.rowOfCursor(rows);
    const qsizetype target = qBound<qsizetype>(0, row + by, rows.size() - 1);
    press(key, selects ? Qt::ShiftModifier : Qt::NoModifier);
    if (target == row)
        return m_model.moveTo(m_model.cursor, selects, m_model.atRowEnd);
    const RowCol now = m_editor->cursorPosition();
    QCOMPARE(now.row, RowIndex(target));
    const Row &to = rows[target];
    QVERIFY(now.column >= 0 && now.column <= to.length);
    m_model.moveTo(to.start + now.column, selects, now.column == to.length && !to.endsLine);
}

void CtlEditerRandomTest::pressEdit()
{
    switch (below(8)) {
    case 0:
        press(Qt::Key_Backspace);
        return m_model.erase(false);
    case 1:
        press(Qt::Key_Delete);
        return m_model.erase(true);
    case 2:
        press(Qt::Key_Backspace, Qt::ControlModifier);
        return m_model.eraseWord(false);
    case 3:
        press(Qt::Key_Delete, Qt::ControlModifier);
        return m_model.eraseWord(true);
    case 4:
        press(Qt::Key_Insert);
        m_model.overwrites = !m_model.overwrites;
        return;
    default:
        for (int left = 1 + below(5); left > 0; --left) {
            const QString typed =
                QStringList{ u"x"_s, u" "_s, u"語"_s, u"\u3000"_s, u"\U00020B9F"_s }.at(below(5));
            m_keys << u'\'' + typed + u'\'';
            QTest::sendKeyEvent(QTest::Click, m_editor, Qt::Key_unknown, typed, Qt::NoModifier);
            m_model.type(typed);
        }
    }
}

void CtlEditerRandomTest::pressReturn()
{
    const QList<Row> rows = rowsOf(*m_editor);
    const Qt::KeyboardModifiers modifiers[] = { {}, {}, Qt::ShiftModifier, Qt::ControlModifier };
    press(below(4) ? Qt::Key_Return : Qt::Key_Enter, modifiers[below(4)]);
    m_model.breakLine(rows, appSettings().AutoIndent);
}

void CtlEditerRandomTest::pressTab()
{
    const QList<Row> rows = rowsOf(*m_editor);
    const bool out = below(2) == 0;
    const bool indents = m_model.selectsLines();
    press(out ? Qt::Key_Backtab : Qt::Key_Tab, out ? Qt::ShiftModifier : Qt::NoModifier);
    if (indents)
        m_model.indent(rows, out);
    else if (!out)
        m_model.typeTab();
}

void CtlEditerRandomTest::pressClipboardKey()
{
    switch (below(3)) {
    case 0:
        press(Qt::Key_Insert, Qt::ControlModifier);
        return m_model.copy();
    case 1:
        press(Qt::Key_Delete, Qt::ShiftModifier);
        return m_model.cut();
    default:
        press(Qt::Key_Insert, Qt::ShiftModifier);
        if (!m_model.clip.isEmpty())
            m_model.insert(m_model.clip);
    }
}

void CtlEditerRandomTest::undoOrRedo()
{
    for (int left = 1 + below(4); left > 0; --left) {
        if (below(3) > 0) {
            m_keys << u"undo"_s;
            m_editor->undo();
            if (m_model.canUndo())
                m_model.undo();
        } else {
            press(Qt::Key_Y, Qt::ControlModifier);
            if (m_model.canRedo())
                m_model.redo();
        }
    }
}

void CtlEditerRandomTest::changeSettings()
{
    appSettings().AutoIndent = below(3);
    if (below(2))
        return;
    appSettings().WrapMode = below(2) * 2;
    appSettings().WrapLen = 1 + below(20);
    m_keys << u"(wrap %1, %2)"_s.arg(appSettings().WrapMode).arg(appSettings().WrapLen);
    m_editor->applyWrapMode();
    m_editor->showPlace(m_editor->cursorPlace()); // it is the text at the top that stays in the view
}

void CtlEditerRandomTest::compare()
{
    QCOMPARE(m_editor->text(), m_model.text);
    QCOMPARE(m_editor->cursorOffset(), Offset(m_model.cursor));
    QCOMPARE(m_editor->anchorOffset(), Offset(m_model.anchor));
    const QList<Row> rows = rowsOf(*m_editor);
    QCOMPARE(m_editor->cursorPosition().row, RowIndex(m_model.rowOfCursor(rows)));
    QCOMPARE(undoSteps(m_editor->history()), m_model.undoSteps());
    QCOMPARE(m_editor->history().canRedo(), m_model.canRedo());
    QCOMPARE(m_editor->undoAvailable(), m_model.canUndo());
    QVERIFY(m_editor->viewport()->rect().intersects(m_editor->cursorRect()));
}

REGISTER_TEST(runWindowTest<CtlEditerRandomTest>)
#include "ctlediterrandom_test.moc"
