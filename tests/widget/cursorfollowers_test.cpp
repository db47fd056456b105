#include "tests/testprogram.h"
#include "tests/widget/viewparts.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

/// Who is told of the cursor, and of what can be done.
class CursorFollowersTest : public QObject {
    Q_OBJECT

private slots:
    void nothingIsToldTwice();
    void everyFollowerIsToldOfUndo();
    void theCursorShowsAgain();
};

void CursorFollowersTest::nothingIsToldTwice()
{
    ViewParts parts(u"text"_s);
    QSignalSpy copy(&parts.followers, &CursorFollowers::copyAvailable);
    parts.followers.tell();
    QVERIFY(copy.isEmpty());
    parts.select(0, 2);
    parts.followers.tell();
    parts.select(1, 2);
    parts.followers.tell();
    QCOMPARE(copy.size(), 1);
    QVERIFY(copy[0][0].toBool() && parts.followers.told().copy);
    parts.setCursor(0);
    parts.followers.tellAvailability();
    QCOMPARE(copy.size(), 2);
    QVERIFY(!copy[1][0].toBool() && !parts.followers.told().copy);
}

void CursorFollowersTest::everyFollowerIsToldOfUndo()
{
    ViewParts parts(u"text"_s);
    QSignalSpy undo(&parts.followers, &CursorFollowers::undoAvailable);
    QSignalSpy redo(&parts.followers, &CursorFollowers::redoAvailable);
    parts.edits.type(u"a"_s);
    QCOMPARE(undo.takeFirst()[0].toBool(), true);
    QVERIFY(redo.isEmpty());
    parts.edits.undo();
    QCOMPARE(undo.takeFirst()[0].toBool(), false);
    QCOMPARE(redo.takeFirst()[0].toBool(), true);
    parts.edits.redo();
    QCOMPARE(undo.takeFirst()[0].toBool(), true);
    QCOMPARE(redo.takeFirst()[0].toBool(), false);
}

/// Without the focus it does not blink.
void CursorFollowersTest::theCursorShowsAgain()
{
    ViewParts parts(u"text"_s);
    QApplication::setCursorFlashTime(2);
    parts.editor.setFocusPolicy(Qt::StrongFocus);
    parts.editor.show();
    parts.editor.setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&parts.editor));
    parts.followers.tell();
    QTRY_VERIFY(!parts.blink.isOn());
    parts.followers.tell();
    QVERIFY(parts.blink.isOn());
    QTRY_VERIFY(!parts.blink.isOn());
    parts.editor.clearFocus();
    parts.blink.stop();
    QVERIFY(parts.blink.isOn());
}

REGISTER_TEST(runWindowTest<CursorFollowersTest>)
#include "cursorfollowers_test.moc"
