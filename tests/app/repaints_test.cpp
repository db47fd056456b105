#include "tests/app/testwindow.h"
#include "tests/testprogram.h"
#include "tests/widget/rows.h"

#include <QPaintEvent>

namespace {

/// Notes what is painted in any window.
class Paints : public QObject {
public:
    Paints() { qApp->installEventFilter(this); }

    /// Lets what is asked for be painted; gives what was, and forgets it.
    QHash<QWidget *, QRegion> take()
    {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        return std::exchange(m_painted, {});
    }
    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && object->isWidgetType())
            m_painted[static_cast<QWidget *>(object)] += static_cast<QPaintEvent *>(event)->region();
        return false;
    }

private:
    QHash<QWidget *, QRegion> m_painted;
};

} // namespace

/// How little of the window a key repaints, whatever its size and the document's.
class RepaintsTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void controlAlonePaintsNothing();
    void letterPaintsItsRow();
    void undoThatIsNotTheLastPaintsItsRow();
    void returnAtTheBottomLeavesTheBarsAlone();

private:
    QList<QWidget *> paintedBy(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    std::unique_ptr<TestWindow> m_window;
    ctlEditer *m_editor = nullptr;
    Paints m_paints;
    int m_paintedHeight = 0; ///< of the view, by the last key
};

void RepaintsTest::init()
{
    QApplication::setCursorFlashTime(0);
    m_window = std::make_unique<TestWindow>();
    QVERIFY(m_window->open());
    m_editor = m_window->currentEditor();
    QTRY_VERIFY(m_editor->hasFocus());
    m_editor->setText(QString(100000, u'\n'));
    QTRY_VERIFY(m_paints.take().isEmpty());
}

void RepaintsTest::cleanup()
{
    m_window.reset();
}

/// The widgets that a key and what it led to have painted.
QList<QWidget *> RepaintsTest::paintedBy(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    m_paints.take();
    QTest::keyClick(m_editor, key, modifiers);
    const QHash<QWidget *, QRegion> painted = m_paints.take();
    m_paintedHeight = painted.value(m_editor->viewport()).boundingRect().height();
    return painted.keys();
}

void RepaintsTest::controlAlonePaintsNothing()
{
    QCOMPARE(paintedBy(Qt::Key_Control), QList<QWidget *>());
}

void RepaintsTest::letterPaintsItsRow()
{
    paintedBy(Qt::Key_A); // which makes Undo available and puts the star into the tab
    QCOMPARE(paintedBy(Qt::Key_A), QList<QWidget *>{ m_editor->viewport() });
    QVERIFY(m_paintedHeight < 2 * m_editor->rowHeight());
}

void RepaintsTest::undoThatIsNotTheLastPaintsItsRow()
{
    for (const Qt::Key key : { Qt::Key_A, Qt::Key_Home, Qt::Key_B, Qt::Key_Home, Qt::Key_C, Qt::Key_Home })
        paintedBy(key);
    for (const QString &left : { QStringLiteral("ba"), QStringLiteral("a") }) {
        QCOMPARE(paintedBy(Qt::Key_Z, Qt::ControlModifier), QList<QWidget *>{ m_editor->viewport() });
        QCOMPARE(rowText(*m_editor, 0), left);
        QVERIFY(m_paintedHeight < 2 * m_editor->rowHeight());
    }
}

void RepaintsTest::returnAtTheBottomLeavesTheBarsAlone()
{
    paintedBy(Qt::Key_End, Qt::ControlModifier);
    paintedBy(Qt::Key_Return);
    QCOMPARE(paintedBy(Qt::Key_Return), QList<QWidget *>{ m_editor->viewport() });
}

REGISTER_TEST(runWindowTest<RepaintsTest>)
#include "repaints_test.moc"
