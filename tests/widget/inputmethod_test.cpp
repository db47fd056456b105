#include "tests/japaneseinput.h"
#include "tests/testprogram.h"
#include "tests/text/undosteps.h"
#include "widget/preedit.h"
#include "widget/qmultilineedit.h"

#include <QApplication>
#include <QTest>
#include <QTextFormat>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = JapaneseInput::patience;

class InputMethodEdit : public QMultiLineEdit {
public:
    using QMultiLineEdit::isComposing;
    using QMultiLineEdit::preedit;
};

void press(const QString &keys)
{
    JapaneseInput::press(keys);
}

QString outputOf(const QString &program, const QStringList &arguments)
{
    return JapaneseInput::outputOf(program, arguments);
}

} // namespace

/// A Japanese input method, driven by keys from outside, writing into a text area in a real window.
class InputMethodTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void composesConvertsAndCommits();
    void candidatesStandAtTheCursor();
    void escapeLeavesTheText();
    void clickEndsComposing();
    void replacesMarkedText();

private:
    QRect candidates() const;

    JapaneseInput m_input;
    std::unique_ptr<InputMethodEdit> m_edit;
};

void InputMethodTest::initTestCase()
{
    QVERIFY(m_input.start());
}

void InputMethodTest::cleanupTestCase()
{
    m_input.stop();
}

void InputMethodTest::init()
{
    m_edit = std::make_unique<InputMethodEdit>();
    m_edit->resize(500, 300);
    m_edit->setText(u"abc\nsecond"_s);
    m_edit->setEdited(false);
    m_edit->show();
    QVERIFY(QTest::qWaitForWindowActive(m_edit.get()));
    m_edit->setFocus();
    QVERIFY(m_input.waitUntilOn());
}

void InputMethodTest::cleanup()
{
    m_edit.reset();
    QVERIFY(m_input.waitUntilOff());
}

/// Where the window with the candidates is; null as long as there is none.
QRect InputMethodTest::candidates() const
{
    const QString found =
        outputOf(u"xdotool"_s, { u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"Fcitx5 Input Window"_s });
    if (found.isEmpty())
        return {};
    const QStringList lines =
        outputOf(u"xdotool"_s, { u"getwindowgeometry"_s, u"--shell"_s, found.section(u'\n', 0, 0) })
            .split(u'\n');
    const auto value = [&lines](const QString &key) {
        return lines.filter(key + u'=').value(0).section(u'=', 1).toInt();
    };
    return { value(u"X"_s), value(u"Y"_s), value(u"WIDTH"_s), value(u"HEIGHT"_s) };
}

void InputMethodTest::composesConvertsAndCommits()
{
    press(u"n i h o n g o"_s);
    QTRY_COMPARE_WITH_TIMEOUT(m_edit->preedit().text, u"にほんご"_s, patience);
    QCOMPARE(m_edit->preedit().formats.size(), 1);
    QCOMPARE(m_edit->preedit().formats.constFirst().length, 4);
    QCOMPARE(m_edit->text(), u"abc\nsecond"_s);
    QVERIFY(!m_edit->edited());
    QVERIFY(!m_edit->history().canUndo());

    press(u"space"_s);
    const auto isConverting = [this] {
        const auto formats = m_edit->preedit().formats;
        return !formats.isEmpty()
            && formats[0].value.value<QTextFormat>().hasProperty(QTextFormat::BackgroundBrush);
    };
    QTRY_VERIFY_WITH_TIMEOUT(isConverting(), patience);
    QCOMPARE(m_edit->preedit().text, u"日本語"_s);
    QCOMPARE(m_edit->text(), u"abc\nsecond"_s);
    press(u"Return"_s);
    QTRY_COMPARE_WITH_TIMEOUT(m_edit->text(), u"日本語abc\nsecond"_s, patience);
    QVERIFY(!m_edit->isComposing());
    QCOMPARE(m_edit->cursorOffset(), Offset(3));
    QCOMPARE(undoSteps(m_edit->history()), 1);
    press(u"Return"_s);
    QTRY_COMPARE_WITH_TIMEOUT(m_edit->text(), u"日本語\nabc\nsecond"_s, patience);
}

void InputMethodTest::candidatesStandAtTheCursor()
{
    m_edit->setCursorPosition(1, 3);
    press(u"n i h o n g o space space"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!candidates().isNull(), patience);
    const QRect cursor = m_edit->cursorRect().translated(m_edit->viewport()->mapToGlobal(QPoint()));
    QTRY_VERIFY_WITH_TIMEOUT(qAbs(candidates().top() - cursor.bottom()) <= 5, patience);
    QTRY_VERIFY_WITH_TIMEOUT(qAbs(candidates().left() - cursor.left()) <= 5, patience);
    press(u"Return"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!m_edit->isComposing(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(candidates().isNull(), patience);
}

void InputMethodTest::escapeLeavesTheText()
{
    press(u"k a"_s);
    QTRY_COMPARE_WITH_TIMEOUT(m_edit->preedit().text, u"か"_s, patience);
    press(u"Escape"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!m_edit->isComposing(), patience);
    QCOMPARE(m_edit->text(), u"abc\nsecond"_s);
    QVERIFY(!m_edit->edited());
}

void InputMethodTest::clickEndsComposing()
{
    press(u"k a"_s);
    QTRY_COMPARE_WITH_TIMEOUT(m_edit->preedit().text, u"か"_s, patience);
    QTest::mouseClick(
        m_edit->viewport(), Qt::LeftButton, {}, m_edit->cellRect(RowIndex(1)).toRect().center());
    QTRY_COMPARE_WITH_TIMEOUT(m_edit->text(), u"かabc\nsecond"_s, patience);
    QVERIFY(!m_edit->isComposing());
    QCOMPARE(m_edit->cursorPosition().row, RowIndex(1));
    press(u"k i Return"_s);
    QTRY_COMPARE_WITH_TIMEOUT(m_edit->text(), u"かabc\nsecondき"_s, patience);
}

void InputMethodTest::replacesMarkedText()
{
    m_edit->setCursorPosition(0, 0);
    m_edit->setCursorPosition(0, 3, true);
    press(u"k a"_s);
    QTRY_COMPARE_WITH_TIMEOUT(m_edit->preedit().text, u"か"_s, patience);
    QCOMPARE(m_edit->markedText(), u"abc"_s);
    press(u"Return"_s);
    QTRY_COMPARE_WITH_TIMEOUT(m_edit->text(), u"か\nsecond"_s, patience);
    m_edit->undo();
    QCOMPARE(m_edit->text(), u"abc\nsecond"_s);
}

namespace {

int runInputMethodTest(int argc, char *argv[])
{
    qputenv("QT_IM_MODULE", "fcitx");
    QApplication application(argc, argv);
    InputMethodTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

REGISTER_TEST(runInputMethodTest)

#include "inputmethod_test.moc"
