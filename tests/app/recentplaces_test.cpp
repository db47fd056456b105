#include "app/recentplaces.h"

#include "editor/ctlediter.h"
#include "tests/messageboxes.h"
#include "tests/testprogram.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

/// The table of recent files as closed and loaded documents change it, without a window.
class RecentPlacesTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void neverSavedIsLeftOut();
    void closedOnesComeOnTop();
    void manyComeOnTopAtOnce();
    void aPlaceComesBack_data();
    void aPlaceComesBack();
    void anUnreadFileKeepsItsPlace();
    void aReadFileHasItsCarriedPlace();
    void aSavedFileHasAPlaceOfItsOwn();

private:
    QString folder() const { return m_folder->path() + u'/'; }
    void write(const QString &name) const;
    QStringList names() const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void RecentPlacesTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    appSettings() = {};
    recentFiles() = {};
}

void RecentPlacesTest::write(const QString &name) const
{
    QFile file(folder() + name);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("some\ntext\n") > 0);
}

QStringList RecentPlacesTest::names() const
{
    QStringList names;
    for (const RecentEntry &entry : recentFiles().entries) {
        if (entry.isUsed())
            names << entry.name;
    }
    return names;
}

void RecentPlacesTest::neverSavedIsLeftOut()
{
    RecentPlaces places;
    const QSignalSpy changed(&places, &RecentPlaces::changed);
    const ctlEditer editor(nullptr);
    places.add(editor);
    QCOMPARE(names(), QStringList());
    QCOMPARE(changed.count(), 0);
}

void RecentPlacesTest::closedOnesComeOnTop()
{
    RecentPlaces places;
    const QSignalSpy changed(&places, &RecentPlaces::changed);
    ctlEditer editor(nullptr);
    for (const auto &name : { u"a"_s, u"b"_s, u"c"_s, u"a"_s }) {
        QVERIFY(editor.saveFile(folder(), name));
        places.add(editor);
    }
    QCOMPARE(names(), QStringList({ u"a"_s, u"c"_s, u"b"_s }));
    QCOMPARE(changed.count(), 4);
}

/// The last of them is the uppermost.
void RecentPlacesTest::manyComeOnTopAtOnce()
{
    RecentPlaces places;
    ctlEditer first(nullptr);
    ctlEditer second(nullptr);
    ctlEditer neverSaved(nullptr);
    QVERIFY(first.saveFile(folder(), u"a"_s) && second.saveFile(folder(), u"b"_s));
    const QSignalSpy changed(&places, &RecentPlaces::changed);
    places.add(QList{ &first, &second, &neverSaved });
    QCOMPARE(names(), QStringList({ u"b"_s, u"a"_s }));
    places.add(QList{ &neverSaved });
    QCOMPARE(changed.count(), 1);
}

void RecentPlacesTest::aPlaceComesBack_data()
{
    QTest::addColumn<int>("wanted");
    QTest::addColumn<RowCol>("cursor");
    QTest::newRow("wanted") << 1 << RowCol{ RowIndex(1), 2 };
    QTest::newRow("not wanted") << 0 << RowCol{ RowIndex(0), 0 };
}

void RecentPlacesTest::aPlaceComesBack()
{
    QFETCH(int, wanted);
    appSettings().RestoreScroll = wanted;
    write(u"a.txt"_s);
    RecentPlaces places;
    ctlEditer closed(nullptr);
    QVERIFY(closed.loadFile(folder(), u"a.txt"_s, 0));
    closed.setCursorPosition(1, 2);
    places.add(closed);
    ctlEditer opened(nullptr);
    QVERIFY(opened.loadFile(folder(), u"a.txt"_s, 0));
    places.restore(opened);
    QTEST(opened.cursorPosition(), "cursor");
}

void RecentPlacesTest::anUnreadFileKeepsItsPlace()
{
    recentFiles().entries[0] = { folder(), u"a.txt"_s, 1, 2, 0, 0 };
    RecentPlaces places;
    ctlEditer editor(nullptr);
    const MessageBoxes boxes;
    QVERIFY(!editor.loadFile(folder(), u"a.txt"_s, 0));
    places.carry(editor);
    recentFiles() = {};
    places.add(editor);
    QCOMPARE(recentFiles().entries[0], RecentEntry({ folder(), u"a.txt"_s, 1, 2, 0, 0 }));
}

void RecentPlacesTest::aReadFileHasItsCarriedPlace()
{
    recentFiles().entries[0] = { folder(), u"a.txt"_s, 1, 2, 0, 0 };
    RecentPlaces places;
    ctlEditer editor(nullptr);
    const MessageBoxes boxes;
    QVERIFY(!editor.loadFile(folder(), u"a.txt"_s, 0));
    places.carry(editor);
    recentFiles() = {};
    write(u"a.txt"_s);
    QVERIFY(editor.loadFile(folder(), u"a.txt"_s, 0));
    places.restoreCarried(editor);
    QCOMPARE(editor.cursorPosition(), RowCol({ RowIndex(1), 2 }));
    editor.setCursorPosition(0, 0);
    places.restoreCarried(editor);
    QCOMPARE(editor.cursorPosition(), RowCol({ RowIndex(0), 0 }));
}

void RecentPlacesTest::aSavedFileHasAPlaceOfItsOwn()
{
    recentFiles().entries[0] = { folder(), u"a.txt"_s, 1, 2, 0, 0 };
    RecentPlaces places;
    ctlEditer editor(nullptr);
    const MessageBoxes boxes;
    QVERIFY(!editor.loadFile(folder(), u"a.txt"_s, 0));
    places.carry(editor);
    QVERIFY(editor.saveFile(folder(), u"a.txt"_s));
    places.dropCarried(editor);
    places.add(editor);
    QCOMPARE(recentFiles().entries[0], RecentEntry({ folder(), u"a.txt"_s, 0, 0, 0, 0 }));
}

REGISTER_TEST(runWindowTest<RecentPlacesTest>)
#include "recentplaces_test.moc"
