#include "editor/ctlediter.h"
#include "tests/jobs/scarcememory.h"
#include "tests/messageboxes.h"
#include "tests/testprogram.h"
#include "tests/widget/hugemimedata.h"

#include <QClipboard>
#include <QDropEvent>
#include <QTest>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

enum class How { Pasted, Dropped };

void dropOn(const ctlEditer &editor, const QMimeData &data)
{
    const QPoint place = editor.characterRect(Offset(1)).topLeft() + QPoint(1, 1);
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(editor.viewport(), &enter);
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(editor.viewport(), &drop);
}

} // namespace

/// Text that other programs bring, where there is too little memory for it.
class BroughtTextTest : public QObject {
    Q_OBJECT

private slots:
    void isNotTaken_data();
    void isNotTaken();
};

void BroughtTextTest::isNotTaken_data()
{
    QTest::addColumn<How>("how");
    QTest::addColumn<int>("question"); // at which no more memory is left
    for (const auto &[how, name] : { std::pair(How::Pasted, "pasted"), std::pair(How::Dropped, "dropped") }) {
        QTest::addRow("%s, too large", name) << how << 0;
        QTest::addRow("%s, no more left behind it", name) << how << 1;
        QTest::addRow("%s, too large to be made fit", name) << how << 2;
    }
}

/// The user is told, and the text is as it was.
void BroughtTextTest::isNotTaken()
{
    QFETCH(How, how);
    QFETCH(int, question);
    ctlEditer editor(nullptr);
    editor.show();
    editor.setText(u"text"_s);
    editor.setEdited(false);
    editor.select({ Offset(1) }, { Offset(3) });
    const MessageBoxes boxes;
    std::unique_ptr<QMimeData> data =
        question == 0 ? std::make_unique<HugeMimeData>() : std::make_unique<QMimeData>();
    if (question != 0)
        data->setText(u"brought"_s);
    {
        const ScarceMemory scarce(question);
        if (how == How::Dropped) {
            dropOn(editor, *data);
        } else {
            QGuiApplication::clipboard()->setMimeData(data.release());
            editor.paste();
        }
        QVERIFY(scarce.wasMet());
    }
    QTRY_COMPARE(boxes.texts(), QStringList{ u"Error|There is not enough memory for this!"_s });
    QCOMPARE(editor.text(), u"text"_s);
    QCOMPARE(editor.markedText(), u"ex"_s);
    QVERIFY(!editor.edited() && editor.document().requestChange());
    QGuiApplication::clipboard()->setText(u"less"_s);
    editor.paste();
    QCOMPARE(editor.text(), u"tlesst"_s);
}

REGISTER_TEST(runWindowTest<BroughtTextTest>)
#include "broughttext_test.moc"
