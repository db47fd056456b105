#include "tests/app/diskscene.h"

#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString grownText = u"Another program has added to this file."_s;
const QString followingText = u"What is added to this file comes into the text."_s;

} // namespace

/// Following a file that another program adds to, as its user meets it.
class FollowingTest : public QObject, private DiskScene {
    Q_OBJECT

private slots:
    void init() { beginScene(); }
    void cleanup() { endScene(); }

    void follows();
    void truncatedFileIsTold_data();
    void truncatedFileIsTold();
    void followingEndsWithAReadError();
    void followingStopsWithAnEdit();
    void editedTextFollowsNothing();
    void followingIsStopped();
    void viewInTheMiddleStays();

private:
    bool append(const QString &name, const QByteArray &bytes) const
    {
        QFile file(m_files->folder() + name);
        return file.open(QIODevice::Append) && file.write(bytes) == bytes.size();
    }
};

void FollowingTest::follows()
{
    QVERIFY(append(u"a.txt"_s, "1\n"));
    QTRY_COMPARE(m_strip->text(), grownText);
    QCOMPARE(m_strip->offers().constFirst(), u"Follow"_s);
    QVERIFY(m_strip->click(u"Follow"_s));
    QCOMPARE(editor().text(), u"old\n1\n"_s);
    QCOMPARE(m_strip->text(), followingText);
    editor().setCursorPlace({ editor().store().end() });
    for (int line = 2; line < 100; ++line)
        QVERIFY(append(u"a.txt"_s, QByteArray::number(line) + "\n"));
    QTRY_VERIFY(editor().text().endsWith(u"\n99\n"));
    QVERIFY(!editor().edited());
    QCOMPARE(editor().cursorOffset(), editor().store().end());
    QVERIFY(editor().topRow() > RowIndex(50));
}

void FollowingTest::truncatedFileIsTold_data()
{
    QTest::addColumn<qint64>("left");
    QTest::newRow("to nothing") << qint64(0);
    QTest::newRow("to its start") << qint64(2);
}

/// The text stays until its user wants the other one, which is followed on.
void FollowingTest::truncatedFileIsTold()
{
    QFETCH(qint64, left);
    QVERIFY(append(u"a.txt"_s, "1\n"));
    QTRY_COMPARE(m_strip->text(), grownText);
    QVERIFY(m_strip->click(u"Follow"_s));
    QVERIFY(QFile::resize(m_files->folder() + u"a.txt"_s, left));
    QTRY_COMPARE(m_strip->text(), u"Another program has changed this file."_s);
    QCOMPARE(editor().text(), u"old\n1\n"_s);
    QVERIFY(append(u"a.txt"_s, "2\n"));
    QVERIFY(m_strip->click(u"Reload"_s));
    QCOMPARE(editor().text(), u"old"_s.first(left) + u"2\n"_s);
    QTRY_COMPARE(m_strip->text(), followingText);
    QVERIFY(append(u"a.txt"_s, "3\n"));
    QTRY_VERIFY(editor().text().endsWith(u"2\n3\n"));
}

void FollowingTest::followingEndsWithAReadError()
{
    WindowJobs jobs;
    jobs.fewest = std::numeric_limits<qint64>::max(); // all of it is read at once
    remake(std::move(jobs));
    m_window->setDocument(m_files->folder() + u"a.txt"_s);
    QVERIFY(append(u"a.txt"_s, "1\n"));
    QTRY_COMPARE(m_strip->text(), grownText);
    QVERIFY(m_strip->click(u"Follow"_s));
    QCOMPARE(editor().text(), u"old\n1\n"_s);
    const MessageBoxes boxes;
    QFile file(m_files->folder() + u"a.txt"_s);
    QVERIFY(file.resize(qint64{ 8 } << 40));
    QTRY_COMPARE(
        boxes.texts(), QStringList{ u"File Load Error!|There is not enough memory for this file!"_s });
    QCOMPARE(m_strip->text(), grownText);
    QVERIFY(m_strip->offers().contains(u"Follow"_s));
    QCOMPARE(editor().text(), u"old\n1\n"_s);
    QVERIFY(file.resize(6) && append(u"a.txt"_s, "2\n"));
    QVERIFY(m_strip->click(u"Follow"_s));
    QTRY_COMPARE(editor().text(), u"old\n1\n2\n"_s);
    QCOMPARE(m_strip->text(), followingText);
    QCOMPARE(boxes.count(), 1);
}

void FollowingTest::followingStopsWithAnEdit()
{
    QVERIFY(append(u"a.txt"_s, "1\n"));
    QTRY_COMPARE(m_strip->text(), grownText);
    QVERIFY(m_strip->click(u"Follow"_s));
    QTest::keyClicks(&editor(), u"x"_s);
    QVERIFY(!m_strip->isShown());
    QVERIFY(append(u"a.txt"_s, "2\n"));
    QTRY_COMPARE(m_strip->text(), grownText);
    QVERIFY(!m_strip->offers().contains(u"Follow"_s));
    QCOMPARE(editor().text(), u"xold\n1\n"_s);
}

void FollowingTest::editedTextFollowsNothing()
{
    QVERIFY(append(u"a.txt"_s, "1\n"));
    QTRY_COMPARE(m_strip->text(), grownText);
    QVERIFY(m_strip->offers().contains(u"Follow"_s));
    QTest::keyClicks(&editor(), u"x"_s);
    QCOMPARE(m_strip->text(), grownText);
    QVERIFY(!m_strip->offers().contains(u"Follow"_s));
}

void FollowingTest::followingIsStopped()
{
    QVERIFY(append(u"a.txt"_s, "1\n"));
    QTRY_COMPARE(m_strip->text(), grownText);
    QVERIFY(m_strip->click(u"Follow"_s));
    QVERIFY(m_strip->click(u"Stop"_s));
    QVERIFY(append(u"a.txt"_s, "2\n"));
    QTRY_COMPARE(m_strip->text(), grownText);
    QCOMPARE(editor().text(), u"old\n1\n"_s);
}

void FollowingTest::viewInTheMiddleStays()
{
    QVERIFY(append(u"a.txt"_s, QByteArray("line\n").repeated(200)));
    QTRY_COMPARE(m_strip->text(), grownText);
    QVERIFY(m_strip->click(u"Follow"_s));
    editor().setCursorPosition(0, 2);
    editor().setTopRow(RowIndex(50));
    QVERIFY(append(u"a.txt"_s, "last\n"));
    QTRY_VERIFY(editor().text().endsWith(u"last\n"));
    QCOMPARE(editor().topRow(), RowIndex(50));
    QCOMPARE(editor().cursorPosition(), (RowCol{ RowIndex(0), 2 }));
}

REGISTER_TEST(runWindowTest<FollowingTest>)
#include "following_test.moc"
