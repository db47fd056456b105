#include "app/documentarea.h"

#include "editor/ctlediter.h"
#include "editor/ctltabbar.h"
#include "settings/settings.h"
#include "tests/testprogram.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

ctlEditer *editorIn(const QList<QVariant> &arguments)
{
    return arguments.at(0).value<ctlEditer *>();
}

} // namespace

/// The open documents without a main window around them.
class DocumentAreaTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<ctlEditer *>(); }
    void init();
    void cleanup() { m_documents.reset(); }

    void holdsNoneAtFirst();
    void theFirstOneIsCurrent();
    void announcesWhoIsCurrent();
    void tabsMakeCurrent();
    void goesRound();
    void goesNowhereFromTheOnlyOne();
    void theNeighbourComesAfterAClosedOne();
    void nobodyIsCurrentAfterTheLastOne();
    void manyGoBesideTheCurrentOne();
    void manyGoWithTheCurrentOne();
    void closedEditorsGo();
    void findsFiles();
    void refreshShowsNameAndEdits();

private:
    QString tabText(int index) const { return m_documents->tabBar()->tabText(index); }

    std::unique_ptr<DocumentArea> m_documents;
};

void DocumentAreaTest::init()
{
    appSettings() = {};
    m_documents = std::make_unique<DocumentArea>(nullptr);
}

void DocumentAreaTest::holdsNoneAtFirst()
{
    QCOMPARE(m_documents->current(), nullptr);
    QVERIFY(m_documents->editors().isEmpty());
}

void DocumentAreaTest::theFirstOneIsCurrent()
{
    const QSignalSpy added(m_documents.get(), &DocumentArea::added);
    ctlEditer *first = m_documents->add();
    ctlEditer *second = m_documents->add(u"name"_s);
    QCOMPARE(m_documents->current(), first);
    QCOMPARE(m_documents->editors(), QList<ctlEditer *>({ first, second }));
    QCOMPARE(added.count(), 2);
    QCOMPARE(editorIn(added.at(1)), second);
    QCOMPARE(tabText(0), first->name());
    QCOMPARE(tabText(1), u"name"_s);
}

void DocumentAreaTest::announcesWhoIsCurrent()
{
    m_documents->add();
    ctlEditer *second = m_documents->add();
    const QSignalSpy changed(m_documents.get(), &DocumentArea::currentChanged);
    m_documents->setCurrent(second);
    QCOMPARE(m_documents->current(), second);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(editorIn(changed.at(0)), second);
}

void DocumentAreaTest::tabsMakeCurrent()
{
    m_documents->add();
    ctlEditer *second = m_documents->add();
    m_documents->resize(400, 300);
    const QPoint onTab = m_documents->tabBar()->tabRect(1).center();
    QTest::mouseClick(m_documents->tabBar(), Qt::LeftButton, {}, onTab);
    QCOMPARE(m_documents->current(), second);
}

void DocumentAreaTest::goesRound()
{
    const QList<ctlEditer *> editors{ m_documents->add(), m_documents->add(), m_documents->add() };
    for (const int index : { 1, 2, 0 }) {
        m_documents->showNext();
        QCOMPARE(m_documents->current(), editors.at(index));
    }
    for (const int index : { 2, 1, 0 }) {
        m_documents->showPrevious();
        QCOMPARE(m_documents->current(), editors.at(index));
    }
}

void DocumentAreaTest::goesNowhereFromTheOnlyOne()
{
    m_documents->showNext();
    m_documents->add();
    const QSignalSpy changed(m_documents.get(), &DocumentArea::currentChanged);
    m_documents->showNext();
    m_documents->showPrevious();
    QCOMPARE(changed.count(), 0);
}

void DocumentAreaTest::theNeighbourComesAfterAClosedOne()
{
    m_documents->add();
    ctlEditer *second = m_documents->add();
    ctlEditer *third = m_documents->add();
    m_documents->setCurrent(second);
    const QSignalSpy closed(m_documents.get(), &DocumentArea::closed);
    m_documents->close(second);
    QCOMPARE(closed.count(), 1);
    QCOMPARE(editorIn(closed.at(0)), second);
    QCOMPARE(m_documents->current(), third);
    QVERIFY(!m_documents->editors().contains(second));
}

void DocumentAreaTest::nobodyIsCurrentAfterTheLastOne()
{
    ctlEditer *editor = m_documents->add();
    const QSignalSpy changed(m_documents.get(), &DocumentArea::currentChanged);
    m_documents->close(editor);
    QCOMPARE(m_documents->current(), nullptr);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(editorIn(changed.at(0)), nullptr);
}

void DocumentAreaTest::manyGoBesideTheCurrentOne()
{
    QList<ctlEditer *> editors;
    while (editors.size() < 5)
        editors << m_documents->add();
    m_documents->setCurrent(editors.at(1));
    const QSignalSpy changed(m_documents.get(), &DocumentArea::currentChanged);
    const QSignalSpy closed(m_documents.get(), &DocumentArea::closed);
    m_documents->close(QList{ editors.at(4), editors.at(2), editors.at(0) });
    QCOMPARE(changed.count(), 0);
    QCOMPARE(m_documents->current(), editors.at(1));
    QCOMPARE(m_documents->editors(), QList<ctlEditer *>({ editors.at(1), editors.at(3) }));
    QCOMPARE(closed.count(), 3);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(editorIn(closed.at(i)), editors.at(4 - 2 * i));
}

void DocumentAreaTest::manyGoWithTheCurrentOne()
{
    QList<ctlEditer *> editors;
    while (editors.size() < 4)
        editors << m_documents->add();
    m_documents->setCurrent(editors.at(2));
    const QSignalSpy changed(m_documents.get(), &DocumentArea::currentChanged);
    m_documents->close(QList{ editors.at(3), editors.at(2), editors.at(1) });
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_documents->current(), editors.at(0));
    m_documents->close(QList{ editors.at(0) });
    QCOMPARE(changed.count(), 2);
    QCOMPARE(editorIn(changed.at(1)), nullptr);
    QVERIFY(m_documents->editors().isEmpty());
}

void DocumentAreaTest::closedEditorsGo()
{
    const QPointer<ctlEditer> editor = m_documents->add();
    const QSignalSpy changed(editor.data(), &ctlEditer::textChanged);
    m_documents->close(editor);
    editor->insert(u"text"_s);
    QCOMPARE(changed.count(), 0);
    QTRY_VERIFY(!editor);
}

void DocumentAreaTest::findsFiles()
{
    const QTemporaryDir folder;
    m_documents->add();
    ctlEditer *second = m_documents->add();
    QVERIFY(second->saveFile(folder.path() + u'/', u"a.txt"_s));
    QCOMPARE(m_documents->editorOfFile(folder.filePath(u"a.txt"_s)), second);
    QCOMPARE(m_documents->editorOfFile(folder.filePath(u"b.txt"_s)), nullptr);
    QCOMPARE(m_documents->editorOfFile(m_documents->current()->name()), nullptr);
}

void DocumentAreaTest::refreshShowsNameAndEdits()
{
    const QTemporaryDir folder;
    ctlEditer *editor = m_documents->add();
    const QSignalSpy refreshed(m_documents.get(), &DocumentArea::refreshed);
    QVERIFY(editor->saveFile(folder.path() + u'/', u"a.txt"_s));
    m_documents->refresh(editor);
    QCOMPARE(tabText(0), u"a.txt"_s);
    QCOMPARE(editor->accessibleName(), u"a.txt"_s);
    editor->insert(u"text"_s);
    m_documents->refresh(editor);
    QCOMPARE(tabText(0), u"* a.txt"_s);
    QCOMPARE(refreshed.count(), 2);
}

REGISTER_TEST(runWindowTest<DocumentAreaTest>)
#include "documentarea_test.moc"
