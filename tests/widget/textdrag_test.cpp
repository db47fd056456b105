#include "drawntext.h"
#include "platform/qpeapplication.h"
#include "tests/testprogram.h"

#include <QTest>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

/// A window with an editor, which notes its text when it is asked to open a file.
class DropWindow : public QWidget {
    Q_OBJECT
public:
    DropWindow()
        : edit(new QMultiLineEdit(this))
    {
        auto *const layout = new QVBoxLayout(this);
        layout->addWidget(edit);
        DrawnText::load(*edit, u"a[bc|defg"_s);
    }
    QMultiLineEdit *edit;
    QStringList textsThen;

public slots:
    void setDocument(const QString &) { textsThen << DrawnText::draw(*edit); }
};

QPEApplication *application()
{
    return static_cast<QPEApplication *>(qApp);
}

} // namespace

/// What happens while text is being dragged, which runs an event loop of its own.
class TextDragTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void requestWaitsForTheDrop();
    void editorMayBeClosedMeanwhile();

private:
    void drag(const std::function<void()> &meanwhile);
    QPoint at(qint64 column) const;

    std::unique_ptr<DropWindow> m_window;
};

void TextDragTest::init()
{
    m_window = std::make_unique<DropWindow>();
    application()->showMainWidget(m_window.get(), true);
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

QPoint TextDragTest::at(qint64 column) const
{
    const QMultiLineEdit &edit = *m_window->edit;
    const auto x = edit.store().xAt({ RowIndex(0), column }) / subpixelsPerPixel;
    return edit.viewport()->mapTo(
        m_window.get(), QPoint(edit.hMargin() + int(x), int(edit.cellRect(RowIndex(0)).center().y())));
}

/// Drags the selected text behind the "f" and does something before it is dropped, in the loop of the drag.
void TextDragTest::drag(const std::function<void()> &meanwhile)
{
    QWindow *const window = m_window->windowHandle();
    const QPoint from = at(2);
    const QPoint to = at(6);
    int step = 0;
    QTimer steps;
    connect(&steps, &QTimer::timeout, this, [&] {
        ++step;
        if (step == 3 && QThread::currentThread()->loopLevel() > 0)
            meanwhile();
        else if (step < 6)
            QTest::mouseMove(window, to + QPoint(0, step % 2));
        else
            QTest::mouseRelease(window, Qt::LeftButton, {}, to);
    });
    QTest::mousePress(window, Qt::LeftButton, {}, from);
    steps.start(10);
    QTest::mouseMove(window, from + QPoint(0, 40));
    QTRY_VERIFY(step >= 6);
}

void TextDragTest::requestWaitsForTheDrop()
{
    drag([] { application()->request(u"/a"_s); });
    QTRY_COMPARE(m_window->textsThen, QStringList{ u"adef[bc|g"_s });
}

void TextDragTest::editorMayBeClosedMeanwhile()
{
    const QPointer<QMultiLineEdit> edit = m_window->edit;
    drag([edit] {
        edit->hide();
        edit->deleteLater();
    });
    QTRY_VERIFY(!edit);
}

namespace {

int runTextDragTest(int argc, char **argv)
{
    QPEApplication app(argc, argv);
    TextDragTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runTextDragTest)

#include "textdrag_test.moc"
