#include "document/textdocument.h"
#include "tests/testprogram.h"
#include "widget/qmultilineedit.h"
#include "widget/textmimedata.h"

#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QScrollBar>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

TextStore linesFrom(int first, int count)
{
    TextStore::Builder builder{ LayoutRule() };
    for (int line = first; line < first + count; ++line)
        builder.append(QStringView(u"line %1\n"_s.arg(line)));
    return builder.finish();
}

ReadResult whatWasRead()
{
    return { { CharCode::Utf8, ReturnCode::Lf }, &infoOf(CharCode::Utf8).codec(), {}, {} };
}

} // namespace

/// An editor whose document may not be changed, as all of it is still to come, or is being saved.
class HeldTextTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void nothingIsEdited_data();
    void nothingIsEdited();
    void isMovedInSelectedAndCopied();
    void grows();
    void viewAndCursorStayWhereTheyWent();
    void anotherTextIsShownFromItsStart();

private:
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(m_edit.get(), key, modifiers);
    }
    void begin()
    {
        m_edit->document().beginArrival(
            u"/f/"_s, u"n"_s, { CharCode::Utf8, ReturnCode::Lf }, TextStore(m_edit->layoutRule()));
    }

    std::unique_ptr<QMultiLineEdit> m_edit;
};

void HeldTextTest::init()
{
    m_edit = std::make_unique<QMultiLineEdit>();
    m_edit->resize(200, 100);
    m_edit->show();
    QVERIFY(QTest::qWaitForWindowActive(m_edit.get()));
    m_edit->setFocus();
}

void HeldTextTest::cleanup()
{
    m_edit.reset();
}

void HeldTextTest::nothingIsEdited_data()
{
    using Edit = std::function<void(QMultiLineEdit &)>;
    QTest::addColumn<Edit>("edit");
    const auto add = [](const char *name, const Edit &edit) { QTest::addRow("%s", name) << edit; };
    add("letter", [](QMultiLineEdit &edit) { QTest::keyClicks(&edit, u"x"_s); });
    for (const auto key : { Qt::Key_Return, Qt::Key_Tab, Qt::Key_Backspace, Qt::Key_Delete })
        QTest::addRow("key %x", key) << Edit([key](QMultiLineEdit &edit) { QTest::keyClick(&edit, key); });
    add("overwritten letter", [](QMultiLineEdit &edit) {
        edit.deselect();
        edit.setOverwriteMode(true);
        QTest::keyClicks(&edit, u"x"_s);
    });
    add("cut", [](QMultiLineEdit &edit) { edit.cut(); });
    add("paste", [](QMultiLineEdit &edit) { edit.paste(); });
    add("insert", [](QMultiLineEdit &edit) { edit.insert(u"x"_s); });
    add("replace", [](QMultiLineEdit &edit) { edit.replace({ {}, Offset(2) }, u"x"_s); });
    add("setText", [](QMultiLineEdit &edit) { edit.setText(u"x"_s); });
    add("clear", [](QMultiLineEdit &edit) { edit.clear(); });
    add("undo", [](QMultiLineEdit &edit) { edit.undo(); });
    add("redo", [](QMultiLineEdit &edit) { edit.redo(); });
    add("composed", [](QMultiLineEdit &edit) {
        QInputMethodEvent event;
        event.setCommitString(u"x"_s);
        QCoreApplication::sendEvent(&edit, &event);
    });
    add("composed in place of others", [](QMultiLineEdit &edit) {
        QInputMethodEvent event;
        event.setCommitString(u"x"_s, -1, 1);
        QCoreApplication::sendEvent(&edit, &event);
    });
    add("drop", [](QMultiLineEdit &edit) {
        QMimeData data;
        data.setText(u"x"_s);
        QDragEnterEvent enter({ 150, 60 }, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(edit.viewport(), &enter);
        QDropEvent event({ 150, 60 }, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(edit.viewport(), &event);
    });
}

void HeldTextTest::nothingIsEdited()
{
    using Edit = std::function<void(QMultiLineEdit &)>;
    QFETCH(Edit, edit);
    m_edit->setText(u"abcdef\n"_s);
    m_edit->setCursorPosition(0, 1);
    m_edit->insert(u"1"_s);
    m_edit->insert(u"2"_s);
    m_edit->undo();
    m_edit->select({ Offset(1) }, { Offset(3) });
    QGuiApplication::clipboard()->setText(u"clip"_s);
    const QString text = m_edit->text();
    m_edit->document().setHeld(true);
    const QSignalSpy refused(&m_edit->document(), &TextDocument::refused);
    const QSignalSpy changed(m_edit.get(), &QMultiLineEdit::textChanged);
    edit(*m_edit);
    QCOMPARE(m_edit->text(), text);
    QCOMPARE(changed.count(), 0);
    QVERIFY(refused.count() > 0);
    QCOMPARE(QGuiApplication::clipboard()->text(), u"clip"_s);
    m_edit->document().setHeld(false);
    m_edit->insert(u"y"_s);
    QVERIFY(m_edit->text() != text);
}

void HeldTextTest::isMovedInSelectedAndCopied()
{
    m_edit->setText(u"abc\ndef"_s);
    m_edit->document().setHeld(true);
    const QSignalSpy refused(&m_edit->document(), &TextDocument::refused);
    press(Qt::Key_Down);
    press(Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(m_edit->markedText(), u"d"_s);
    m_edit->copy();
    QCOMPARE(QGuiApplication::clipboard()->text(), u"d"_s);
    QCOMPARE(refused.count(), 0);
}

void HeldTextTest::grows()
{
    begin();
    m_edit->document().takePart(linesFrom(0, 3));
    QCOMPARE(m_edit->verticalScrollBar()->maximum(), 0);
    m_edit->document().takePart(linesFrom(3, 1000));
    QCOMPARE(m_edit->numLines(), 1004);
    const int maximum = m_edit->verticalScrollBar()->maximum();
    QVERIFY(maximum > 900);
    m_edit->document().takePart(linesFrom(1003, 1000));
    QVERIFY(m_edit->verticalScrollBar()->maximum() > maximum);
    const QSignalSpy changed(m_edit.get(), &QMultiLineEdit::textChanged);
    m_edit->document().endArrival(whatWasRead());
    QCOMPARE(changed.count(), 1);
    QVERIFY(!m_edit->edited());
}

/// Its user may look around while more is coming.
void HeldTextTest::viewAndCursorStayWhereTheyWent()
{
    begin();
    m_edit->document().takePart(linesFrom(0, 1000));
    m_edit->setCursorPosition(500, 3);
    m_edit->setCursorPosition(501, 2, true);
    m_edit->setTopRow(RowIndex(499));
    const QString selected = m_edit->markedText();
    m_edit->document().takePart(linesFrom(1000, 1000));
    m_edit->document().endArrival(whatWasRead());
    QCOMPARE(m_edit->cursorPosition(), (RowCol{ RowIndex(501), 2 }));
    QCOMPARE(m_edit->markedText(), selected);
    QCOMPARE(m_edit->topRow(), RowIndex(499));
}

/// What has come turns out to be another text.
void HeldTextTest::anotherTextIsShownFromItsStart()
{
    begin();
    m_edit->document().takePart(linesFrom(0, 1000));
    m_edit->setCursorPosition(500, 3);
    begin();
    QCOMPARE(m_edit->cursorOffset(), Offset());
    m_edit->document().takePart(linesFrom(0, 900));
    QCOMPARE(m_edit->topRow(), RowIndex());
    m_edit->document().endArrival(whatWasRead());
    m_edit->setCursorPosition(800, 0);
    m_edit->setText(u"abc"_s);
    QCOMPARE(m_edit->topRow(), RowIndex());
    QCOMPARE(m_edit->cursorOffset(), Offset());
}

REGISTER_TEST(runWindowTest<HeldTextTest>)
#include "heldtext_test.moc"
