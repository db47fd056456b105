#include "app/firstdocument.h"

#include "app/documentarea.h"
#include "settings/settings.h"
#include "tests/testprogram.h"

#include <QApplication>
#include <QVBoxLayout>

/// The document that a window begins with, without a main window.
class FirstDocumentTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void itIsMadeInAnActiveWindow();
    void itWaitsForTheWindow();
    void aDocumentThatIsThereStaysTheOnlyOne();
    void theTimeMakesIt();
    void activationBeforeTheTimeMakesNone();

private:
    struct Window : QWidget {
        Window()
        {
            auto *layout = new QVBoxLayout(this);
            layout->addWidget(documents);
        }
        bool showActive()
        {
            show();
            return QTest::qWaitForWindowActive(this);
        }
        DocumentArea *documents = new DocumentArea(this);
        FirstDocument first{ *this, *documents };
    };
};

void FirstDocumentTest::init()
{
    appSettings() = {};
}

void FirstDocumentTest::itIsMadeInAnActiveWindow()
{
    Window window;
    QVERIFY(window.showActive());
    window.first.make();
    QCOMPARE(window.documents->editors().size(), 1);
    QVERIFY(window.documents->current());
    window.first.make();
    window.first.noteActivation();
    QCOMPARE(window.documents->editors().size(), 1);
}

void FirstDocumentTest::itWaitsForTheWindow()
{
    Window window;
    window.first.make();
    QVERIFY(!window.documents->current());
    window.first.noteActivation(); // of another one
    QVERIFY(!window.documents->current());
    QVERIFY(window.showActive());
    window.first.noteActivation();
    QVERIFY(window.documents->current());
}

void FirstDocumentTest::aDocumentThatIsThereStaysTheOnlyOne()
{
    Window window;
    QVERIFY(window.showActive());
    ctlEditer *const editor = window.documents->add();
    window.first.make();
    QCOMPARE(window.documents->editors(), QList<ctlEditer *>{ editor });
    // And once there was one, no other is made when it goes.
    window.documents->close(editor);
    window.first.noteActivation();
    QVERIFY(!window.documents->current());
}

void FirstDocumentTest::theTimeMakesIt()
{
    Window window;
    QVERIFY(window.showActive());
    window.first.wait();
    QVERIFY(!window.documents->current());
    QTRY_VERIFY(window.documents->current());
}

void FirstDocumentTest::activationBeforeTheTimeMakesNone()
{
    Window window;
    QVERIFY(window.showActive());
    window.first.wait();
    window.first.noteActivation();
    QVERIFY(!window.documents->current());
}

REGISTER_TEST(runWindowTest<FirstDocumentTest>)
#include "firstdocument_test.moc"
