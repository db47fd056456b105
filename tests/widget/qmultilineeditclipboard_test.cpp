#include "tests/testprogram.h"
#include "tests/text/undosteps.h"
#include "tests/widget/drawntext.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QSignalSpy>
#include <QTimer>

using namespace Qt::StringLiterals;

/// Clipboard, primary selection, dropped and dragged text, and the context menu that leads to them.
class QMultiLineEditClipboardTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void copyAndCut();
    void nothingSelectedKeepsTheClipboard();
    void pastedTextIsCleaned_data();
    void pastedTextIsCleaned();
    void ownTextIsPastedLetterForLetter();
    void copiedTextOutlivesTheEditor();
    void pasteIsOneStep();
    void droppedTextGoesWhereItIsDropped();
    void dropShowsItsPlace();
    void dragNearAnEdgeScrolls_data();
    void dragNearAnEdgeScrolls();
    void dropsThatAreRefused_data();
    void dropsThatAreRefused();
    void draggedTextMoves_data();
    void draggedTextMoves();
    void primarySelection();
    void menuTellsWhatIsPossible_data();
    void menuTellsWhatIsPossible();
    void menuActs();
    void menuOpensByKey_data();
    void menuOpensByKey();

private:
    QPoint at(qint64 row, qint64 column) const;
    static QString clip() { return QApplication::clipboard()->text(); }

    std::unique_ptr<QMultiLineEdit> m_edit;
};

namespace {

class MenuEdit : public QMultiLineEdit {
public:
    using QMultiLineEdit::createContextMenu;
};

QString described(const QMenu &menu)
{
    QStringList words;
    for (const QAction *const action : menu.actions()) {
        if (!action->isSeparator())
            words.append(action->isEnabled() ? action->text() : u'(' + action->text() + u')');
    }
    return words.join(u' ').remove(u'&');
}

QMenu *openMenu()
{
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

} // namespace

void QMultiLineEditClipboardTest::init()
{
    QApplication::clipboard()->clear();
    m_edit = std::make_unique<QMultiLineEdit>();
    m_edit->resize(300, 200);
    m_edit->show();
    QVERIFY(QTest::qWaitForWindowActive(m_edit.get()));
}

QPoint QMultiLineEditClipboardTest::at(qint64 row, qint64 column) const
{
    const QRectF cell = m_edit->cellRect(RowIndex(row));
    const auto x = m_edit->store().xAt({ RowIndex(row), column }) / subpixelsPerPixel;
    return { int(cell.x()) + m_edit->hMargin() + int(x), int(cell.center().y()) };
}

void QMultiLineEditClipboardTest::copyAndCut()
{
    DrawnText::load(*m_edit, u"a[b\nc|d"_s);
    m_edit->copy();
    QCOMPARE(clip(), u"b\nc"_s);
    QCOMPARE(DrawnText::draw(*m_edit), u"a[b\nc|d"_s);
    QVERIFY(!m_edit->history().canUndo());
    QApplication::clipboard()->clear();
    m_edit->cut();
    QCOMPARE(clip(), u"b\nc"_s);
    QCOMPARE(DrawnText::draw(*m_edit), u"a|d"_s);
    m_edit->undo();
    QCOMPARE(m_edit->text(), u"ab\ncd"_s);
    QCOMPARE(QApplication::clipboard()->mimeData()->data(u"text/plain"_s), QByteArray("b\nc"));
    QVERIFY(!QApplication::clipboard()->mimeData()->hasFormat(u"text/html"_s));
}

void QMultiLineEditClipboardTest::nothingSelectedKeepsTheClipboard()
{
    QApplication::clipboard()->setText(u"kept"_s);
    DrawnText::load(*m_edit, u"a|b"_s);
    m_edit->copy();
    m_edit->cut();
    QCOMPARE(clip(), u"kept"_s);
    QCOMPARE(DrawnText::draw(*m_edit), u"a|b"_s);
}

void QMultiLineEditClipboardTest::pastedTextIsCleaned_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("after");
    QTest::newRow("plain") << u"XY"_s << u"aXY|b"_s;
    QTest::newRow("NUL") << u"X\0Y"_s << u"aXY|b"_s;
    QTest::newRow("CR+LF") << u"X\r\nY\r\n"_s << u"aX\nY\n|b"_s;
    QTest::newRow("CR") << u"X\rY"_s << u"aX\nY|b"_s;
    QTest::newRow("LF") << u"X\nY"_s << u"aX\nY|b"_s;
    QTest::newRow("lone surrogate") << u"X"_s + QChar(0xdc80) << u"aX\uFFFD|b"_s;
    QTest::newRow("surrogate pair") << u"\U0001F600"_s << u"a\U0001F600|b"_s;
    QTest::newRow("form feed") << u"X\fY"_s << u"aX\fY|b"_s;
    QTest::newRow("nothing") << u""_s << u"a|b"_s;
    QTest::newRow("only NUL") << u"\0"_s << u"a|b"_s;
}

void QMultiLineEditClipboardTest::pastedTextIsCleaned()
{
    QFETCH(QString, text);
    DrawnText::load(*m_edit, u"a|b"_s);
    QApplication::clipboard()->setText(text);
    m_edit->paste();
    QTEST(DrawnText::draw(*m_edit), "after");
}

void QMultiLineEditClipboardTest::ownTextIsPastedLetterForLetter()
{
    const QString escaped = u"a"_s + QChar(0xdc80) + u"b"_s;
    m_edit->setText(escaped);
    m_edit->selectAll();
    m_edit->cut();
    QCOMPARE(m_edit->text(), QString());
    m_edit->paste();
    QCOMPARE(m_edit->text(), escaped);
}

void QMultiLineEditClipboardTest::copiedTextOutlivesTheEditor()
{
    DrawnText::load(*m_edit, u"a[bc|d"_s);
    m_edit->copy();
    m_edit->setText(u"other"_s);
    m_edit.reset();
    QCOMPARE(clip(), u"bc"_s);
}

void QMultiLineEditClipboardTest::pasteIsOneStep()
{
    DrawnText::load(*m_edit, u"a[bc|d"_s);
    QApplication::clipboard()->setText(u"XY"_s);
    m_edit->paste();
    QCOMPARE(DrawnText::draw(*m_edit), u"aXY|d"_s);
    QCOMPARE(undoSteps(m_edit->history()), 1);
}

void QMultiLineEditClipboardTest::droppedTextGoesWhereItIsDropped()
{
    DrawnText::load(*m_edit, u"a[b|cd"_s);
    QMimeData data;
    data.setText(u"X\0\r\nY"_s);
    QDragEnterEvent enter(at(0, 3), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_edit->viewport(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(at(0, 3), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_edit->viewport(), &drop);
    QVERIFY(drop.isAccepted());
    QCOMPARE(DrawnText::draw(*m_edit), u"abc[X\nY|d"_s);
    QCOMPARE(undoSteps(m_edit->history()), 1);
    m_edit->undo();
    QCOMPARE(m_edit->text(), u"abcd"_s);
}

void QMultiLineEditClipboardTest::dropShowsItsPlace()
{
    m_edit->setText(u"abcd\nefgh"_s);
    const QImage before = m_edit->grab().toImage();
    QMimeData data;
    data.setText(u"X"_s);
    QDragEnterEvent enter(at(1, 2), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_edit->viewport(), &enter);
    QVERIFY(m_edit->grab().toImage() != before);
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(m_edit->viewport(), &leave);
    QCOMPARE(m_edit->grab().toImage(), before);
    QCOMPARE(DrawnText::draw(*m_edit), u"|abcd\nefgh"_s);
}

void QMultiLineEditClipboardTest::dragNearAnEdgeScrolls_data()
{
    QTest::addColumn<QPoint>("edge");
    QTest::addColumn<QPoint>("scrolls");
    QTest::newRow("bottom") << QPoint(1, 2) << QPoint(0, 1);
    QTest::newRow("top") << QPoint(1, 0) << QPoint(0, -1);
    QTest::newRow("right") << QPoint(2, 1) << QPoint(1, 0);
    QTest::newRow("left") << QPoint(0, 1) << QPoint(-1, 0);
    QTest::newRow("corner") << QPoint(2, 2) << QPoint(1, 1);
    QTest::newRow("middle") << QPoint(1, 1) << QPoint(0, 0);
}

void QMultiLineEditClipboardTest::dragNearAnEdgeScrolls()
{
    QFETCH(const QPoint, edge);
    QFETCH(const QPoint, scrolls);
    m_edit->setText((u"0123456789"_s.repeated(20) + u'\n').repeated(200));
    m_edit->setTopRow(RowIndex(100));
    m_edit->setXOffset(500);
    const auto moved = [this] {
        const auto sign = [](qint64 value) { return int(value > 0) - int(value < 0); };
        return QPoint(sign(m_edit->xOffset() - 500), sign(m_edit->topRow() - RowIndex(100)));
    };
    const QSize view = m_edit->viewport()->size();
    const QPoint place((view.width() - 1) * edge.x() / 2, (view.height() - 1) * edge.y() / 2);
    QMimeData data;
    data.setText(u"XYZ"_s);
    QDragEnterEvent enter(QPoint(view.width(), view.height()) / 2, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(m_edit->viewport(), &enter);
    QDragMoveEvent move(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(m_edit->viewport(), &move);
    QCOMPARE(moved(), QPoint());
    QTRY_COMPARE(moved(), scrolls);

    // In the middle of the view again it stays where it is, which the next tick of another timer shows.
    QDragMoveEvent back(QPoint(view.width(), view.height()) / 2, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(m_edit->viewport(), &back);
    const std::pair rest(m_edit->xOffset(), m_edit->topRow());
    QTimer later;
    QSignalSpy ticks(&later, &QTimer::timeout);
    later.start(70);
    QTRY_COMPARE(ticks.size(), 2);
    QCOMPARE(std::pair(m_edit->xOffset(), m_edit->topRow()), rest);

    // What is dropped goes to the row that is under it now.
    QDropEvent drop(QPoint(view.width(), view.height()) / 2, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(m_edit->viewport(), &drop);
    QCOMPARE(m_edit->markedText(), u"XYZ"_s);
    qint64 row1, column1, row2, column2;
    m_edit->getMarkedRegion(&row1, &column1, &row2, &column2);
    QCOMPARE(RowIndex(row1), m_edit->topRow() + view.height() / 2 / m_edit->cellHeight());
}

void QMultiLineEditClipboardTest::dropsThatAreRefused_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("url");
    QTest::newRow("a file, which is the window's") << u"/home/me/a.txt"_s << u"file:///home/me/a.txt"_s;
    QTest::newRow("no text") << QString() << QString();
}

void QMultiLineEditClipboardTest::dropsThatAreRefused()
{
    QFETCH(QString, text);
    QFETCH(QString, url);
    m_edit->setText(u"abcd"_s);
    QMimeData data;
    if (!text.isNull())
        data.setText(text);
    if (!url.isNull())
        data.setUrls({ QUrl(url) });
    QDragEnterEvent enter(at(0, 3), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_edit->viewport(), &enter);
    QVERIFY(!enter.isAccepted());
    QDropEvent drop(at(0, 3), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_edit->viewport(), &drop);
    QVERIFY(!drop.isAccepted());
    QCOMPARE(m_edit->text(), u"abcd"_s);
}

void QMultiLineEditClipboardTest::draggedTextMoves_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("to");
    QTest::addColumn<bool>("copies");
    QTest::addColumn<QString>("after");
    QTest::newRow("forwards") << u"a[bc|defg"_s << 6 << false << u"adef[bc|g"_s;
    QTest::newRow("backwards") << u"abcd[ef|g"_s << 1 << false << u"a[ef|bcdg"_s;
    QTest::newRow("into itself") << u"a[bcde|fg"_s << 3 << false << u"a[bcde|fg"_s;
    QTest::newRow("to its own end") << u"a[bc|defg"_s << 3 << false << u"a[bc|defg"_s;
    QTest::newRow("copied") << u"a[bc|defg"_s << 6 << true << u"abcdef[bc|g"_s;
}

void QMultiLineEditClipboardTest::draggedTextMoves()
{
    QFETCH(QString, before);
    QFETCH(int, to);
    QFETCH(bool, copies);
    DrawnText::load(*m_edit, before);
    const QString text = m_edit->text();
    qint64 row1, column1, row2, column2;
    m_edit->getMarkedRegion(&row1, &column1, &row2, &column2);
    const QPoint from = at(0, column1 + 1);
    const QPoint target = at(0, to);
    const Qt::KeyboardModifiers modifiers = copies ? Qt::ControlModifier : Qt::NoModifier;
    QWindow *const window = m_edit->windowHandle();
    const auto inWindow = [this](QPoint point) { return m_edit->viewport()->mapTo(m_edit.get(), point); };
    QTimer steps;
    int step = 0;
    // The drag runs an event loop of its own: the moves and the release come from here.
    connect(&steps, &QTimer::timeout, this, [&] {
        if (step++ < 3)
            QTest::mouseMove(window, inWindow(target) + QPoint(0, step % 2));
        else
            QTest::mouseRelease(window, Qt::LeftButton, modifiers, inWindow(target));
    });
    QTest::mousePress(window, Qt::LeftButton, modifiers, inWindow(from));
    steps.start(10);
    QTest::mouseMove(window, inWindow(from) + QPoint(0, 40));
    QTRY_VERIFY(step > 3);
    steps.stop();
    QTEST(DrawnText::draw(*m_edit), "after");
    QCOMPARE(undoSteps(m_edit->history()), m_edit->text() == text ? 0 : 1);
}

void QMultiLineEditClipboardTest::primarySelection()
{
    QClipboard *const clipboard = QApplication::clipboard();
    QVERIFY(clipboard->supportsSelection());
    const auto primary = [clipboard] { return clipboard->text(QClipboard::Selection); };
    DrawnText::load(*m_edit, u"|abcdef"_s);
    DrawnText::press(*m_edit, u"Shift+Right*2"_s);
    QCOMPARE(primary(), u"ab"_s);
    QTest::mouseDClick(m_edit->viewport(), Qt::LeftButton, {}, at(0, 1));
    QCOMPARE(primary(), u"abcdef"_s);
    DrawnText::press(*m_edit, u"Ctrl+Home Shift+Right*3 Right"_s);
    QCOMPARE(primary(), u"abc"_s);
    m_edit->setText(u"1234"_s);
    QCOMPARE(primary(), u"abc"_s);
    QTest::mouseClick(m_edit->viewport(), Qt::MiddleButton, {}, at(0, 2));
    QCOMPARE(DrawnText::draw(*m_edit), u"12abc|34"_s);
    DrawnText::press(*m_edit, u"Shift+Home 'x'"_s);
    QCOMPARE(primary(), u"12abc"_s);
    m_edit->setText(u"x"_s.repeated(5'000'000));
    m_edit->selectAll();
    QCOMPARE(primary().size(), 5'000'000);
    m_edit->deselect();
    QCOMPARE(primary(), QString());
    m_edit->selectAll();
    m_edit.reset();
    QCOMPARE(primary(), QString());
}

void QMultiLineEditClipboardTest::menuTellsWhatIsPossible_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("clip");
    QTest::addColumn<QString>("menu");
    const auto row = [](const char *name, const QString &text, const QString &keys, const QString &clip,
                         const QString &menu) { QTest::newRow(name) << text << keys << clip << menu; };
    row("empty", u"|"_s, u""_s, u""_s, u"(Undo) (Redo) (Cut) (Copy) (Paste) (Select All)"_s);
    row("text", u"|abc"_s, u""_s, u"x"_s, u"(Undo) (Redo) (Cut) (Copy) Paste Select All"_s);
    row("selected", u"a[b|c"_s, u""_s, u""_s, u"(Undo) (Redo) Cut Copy (Paste) Select All"_s);
    row("typed", u"|"_s, u"'x'"_s, u""_s, u"Undo (Redo) (Cut) (Copy) (Paste) Select All"_s);
    row("undone", u"|"_s, u"'x' Undo"_s, u""_s, u"(Undo) Redo (Cut) (Copy) (Paste) (Select All)"_s);
}

void QMultiLineEditClipboardTest::menuTellsWhatIsPossible()
{
    QFETCH(QString, text);
    QFETCH(QString, keys);
    QFETCH(QString, clip);
    MenuEdit edit;
    DrawnText::load(edit, text);
    DrawnText::press(edit, keys);
    if (!clip.isEmpty())
        QApplication::clipboard()->setText(clip);
    const std::unique_ptr<QMenu> menu(edit.createContextMenu());
    QTEST(described(*menu), "menu");
}

void QMultiLineEditClipboardTest::menuActs()
{
    MenuEdit edit;
    DrawnText::load(edit, u"a[b|c"_s);
    const auto act = [&edit](int index) {
        const std::unique_ptr<QMenu> menu(edit.createContextMenu());
        QList<QAction *> actions = menu->actions();
        actions.removeIf([](const QAction *action) { return action->isSeparator(); });
        actions[index]->trigger();
    };
    act(2);
    QCOMPARE(DrawnText::draw(edit), u"a|c"_s);
    act(4);
    QCOMPARE(DrawnText::draw(edit), u"ab|c"_s);
    act(0);
    QCOMPARE(DrawnText::draw(edit), u"a|c"_s);
    act(1);
    QCOMPARE(DrawnText::draw(edit), u"ab|c"_s);
    act(5);
    QCOMPARE(DrawnText::draw(edit), u"[abc|"_s);
    act(3);
    QCOMPARE(clip(), u"abc"_s);
}

void QMultiLineEditClipboardTest::menuOpensByKey_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("Menu") << u"Menu"_s;
    QTest::newRow("Shift+F10") << u"Shift+F10"_s;
    QTest::newRow("right button") << QString();
}

void QMultiLineEditClipboardTest::menuOpensByKey()
{
    QFETCH(QString, key);
    DrawnText::load(*m_edit, u"a[b|c"_s);
    if (key.isNull()) {
        const QPoint point = at(0, 2);
        QContextMenuEvent event(QContextMenuEvent::Mouse, point, m_edit->viewport()->mapToGlobal(point));
        QCoreApplication::sendEvent(m_edit->viewport(), &event);
        QVERIFY(event.isAccepted());
    } else {
        DrawnText::press(*m_edit, key);
    }
    QTRY_VERIFY(openMenu());
    const QPointer<QMenu> menu = openMenu();
    menu->close();
    QTRY_VERIFY(!menu);
    QCOMPARE(DrawnText::draw(*m_edit), u"a[b|c"_s);
}

REGISTER_TEST(runWindowTest<QMultiLineEditClipboardTest>)
#include "qmultilineeditclipboard_test.moc"
