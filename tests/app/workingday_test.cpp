#include "tests/app/testwindow.h"
#include "tests/messageboxes.h"
#include "tests/testprogram.h"

#include <QDir>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// "日本語" and "あいう" in each code, as its tables have them.
struct Coded {
    const char *name;
    int code;
    QByteArray kanji;
    QByteArray kana;
};

const QList<Coded> &codes()
{
    static const QList<Coded> all{
        { "sjis", int(CharCode::ShiftJis), "\x93\xFA\x96\x7B\x8C\xEA", "\x82\xA0\x82\xA2\x82\xA4" },
        { "euc", int(CharCode::Euc), "\xC6\xFC\xCB\xDC\xB8\xEC", "\xA4\xA2\xA4\xA4\xA4\xA6" },
        { "jis", int(CharCode::Jis), "\x1B$BF|K\\8l\x1B(B", "\x1B$B$\"$$$&\x1B(B" },
        { "utf8", int(CharCode::Utf8), "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E",
            "\xE3\x81\x82\xE3\x81\x84\xE3\x81\x86" },
        { "unicode", int(CharCode::Unicode), QByteArray("\xE5\x65\x2C\x67\x9E\x8A", 6),
            QByteArray("\x42\x30\x44\x30\x46\x30", 6) },
    };
    return all;
}

struct LineEnd {
    const char *name;
    int code;
    QByteArray bytes;
};

const QList<LineEnd> &lineEnds()
{
    static const QList<LineEnd> all{ { "cr", int(ReturnCode::Cr), "\r" },
        { "crlf", int(ReturnCode::CrLf), "\r\n" }, { "lf", int(ReturnCode::Lf), "\n" } };
    return all;
}

/// Two lines, the first with `before` in front of it; in UTF-16 they are one.
QByteArray content(const Coded &code, const QByteArray &end, const QByteArray &before = {})
{
    if (code.code == int(CharCode::Unicode))
        return "\xFF\xFE" + code.kanji + code.kana;
    return before + code.kanji + end + code.kana + end;
}

/// What an "x" typed in front makes of it; UTF-16 is written as UTF-8.
QByteArray edited(const Coded &code, const QByteArray &end)
{
    if (code.code == int(CharCode::Unicode))
        return content(codes().at(3), {}, "x");
    return content(code, end, "x");
}

} // namespace

/// A whole day's work through the window: many files of every code are opened, edited, saved as other codes,
/// closed, found again among the recent ones, and the program is left with questions to answer.
class WorkingDayTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void endsWithTheBytesExpected();

private:
    void openAll();
    void editAll();
    void saveAllInPlace();
    void saveAsOtherCodes();
    void closeAndReopen();
    void quitWithQuestions();
    void compareFiles();
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    ctlEditer *editorOf(const QString &name) const;

    std::unique_ptr<TestFiles> m_files;
    std::unique_ptr<TestWindow> m_window;
    QMap<QString, QByteArray> m_expected;
};

void WorkingDayTest::init()
{
    resetSettings();
    m_files = std::make_unique<TestFiles>();
    m_window = std::make_unique<TestWindow>();
    QVERIFY(m_window->open());
}

ctlEditer *WorkingDayTest::editorOf(const QString &name) const
{
    for (ctlEditer *editor : m_window->tabBar()->editors()) {
        if (editor->name() == name)
            return editor;
    }
    return nullptr;
}

/// 15 files of all codes and line ends, 5 of plain ASCII; the first by the command into the empty document.
void WorkingDayTest::openAll()
{
    const auto open = [this](const QString &name, const QByteArray &bytes, int code, int lineEnd) {
        m_files->write(name, bytes);
        m_expected[name] = bytes;
        m_window->choices << FileChoice{ m_files->folder(), name };
        press(Qt::Key_O, Qt::ControlModifier);
        QCOMPARE(m_window->currentEditor()->name(), name);
        QCOMPARE(m_window->currentEditor()->charCode(), code);
        QCOMPARE(m_window->currentEditor()->returnCode(), lineEnd);
    };
    for (const Coded &code : codes()) {
        for (const LineEnd &end : lineEnds()) {
            open(QString::fromLatin1(code.name) + u'.' + QLatin1StringView(end.name),
                content(code, end.bytes), code.code,
                code.code == int(CharCode::Unicode) ? int(ReturnCode::CrLf) : end.code);
            QCOMPARE(m_window->currentEditor()->text().remove(u'\n'), u"日本語あいう"_s);
        }
        open(u"ascii."_s + QLatin1StringView(code.name), "plain text", int(CharCode::Ascii),
            int(ReturnCode::CrLf));
    }
    QCOMPARE(m_window->tabBar()->count(), 20);
}

void WorkingDayTest::editAll()
{
    for (int i = 0; i < 20; ++i) {
        press(Qt::Key_Tab, Qt::ControlModifier);
        press(Qt::Key_X);
        press(Qt::Key_Y);
        press(Qt::Key_Backspace);
    }
    for (const QString &text : m_window->tabTexts())
        QVERIFY(text.startsWith(u"* "));
    for (const QString &name : m_expected.keys())
        QCOMPARE(m_files->read(name), m_expected[name]);
}

void WorkingDayTest::saveAllInPlace()
{
    m_window->item(FileCommand::SaveAll)->trigger();
    for (const Coded &code : codes()) {
        for (const LineEnd &end : lineEnds())
            m_expected[QString::fromLatin1(code.name) + u'.' + QLatin1StringView(end.name)] =
                edited(code, end.bytes);
        m_expected[u"ascii."_s + QLatin1StringView(code.name)] = "xplain text";
    }
    compareFiles();
}

/// Each of the files with CR goes to the next code and to LF, under another name.
void WorkingDayTest::saveAsOtherCodes()
{
    constexpr int writable = 4;
    for (int i = 0; i < writable; ++i) {
        const Coded &from = codes().at(i), &to = codes().at((i + 1) % writable);
        m_window->tabBar()->setCurrentTab(editorOf(QString::fromLatin1(from.name) + u".cr"_s));
        const QString name = QString::fromLatin1(from.name) + u".to."_s + QLatin1StringView(to.name);
        m_window->choices << FileChoice{ m_files->folder(), name, CharCode(to.code), ReturnCode::Lf };
        m_window->item(FileCommand::SaveAs)->trigger();
        m_expected[name] = content(to, "\n", "x");
    }
    compareFiles();
}

void WorkingDayTest::closeAndReopen()
{
    MessageBoxes boxes;
    while (m_window->tabBar()->count() > 0)
        press(Qt::Key_Escape);
    QCOMPARE(boxes.count(), 0);
    m_window->slotCmdFileNew();
    for (int row = 0; row < 10; ++row) {
        const RecentEntry entry = recentFiles().entries[size_t(row)];
        m_window->recentMenu()->actions().at(row)->trigger();
        QCOMPARE(m_window->currentEditor()->name(), entry.name);
        QCOMPARE(m_window->currentEditor()->cursorPosition().column, 1);
    }
    QCOMPARE(m_window->tabBar()->count(), 10);
    compareFiles();
}

/// The last tab is asked about first: "Yes" saves it, "No" forgets, in turn.
void WorkingDayTest::quitWithQuestions()
{
    QStringList answers;
    QList<ctlEditer *> editors = m_window->tabBar()->editors();
    std::reverse(editors.begin(), editors.end());
    for (ctlEditer *editor : editors) {
        m_window->tabBar()->setCurrentTab(editor);
        press(Qt::Key_End, Qt::ControlModifier);
        editor->setCursorPosition(0, 1);
        press(Qt::Key_Z);
        answers << (answers.size() % 2 == 0 ? u"Yes"_s : u"No"_s);
        if (answers.constLast() == u"Yes")
            m_expected[editor->name()].insert(m_expected[editor->name()].indexOf('x') + 1, 'z');
    }
    MessageBoxes boxes(answers);
    press(Qt::Key_Q, Qt::ControlModifier);
    QCOMPARE(boxes.count(), 10);
    QVERIFY(!m_window->isVisible());
    compareFiles();
}

void WorkingDayTest::compareFiles()
{
    for (const QString &name : m_expected.keys())
        QVERIFY2(m_files->read(name) == m_expected[name],
            (name.toUtf8() + ": " + m_files->read(name).toHex(' ') + " is not "
                + m_expected[name].toHex(' ')));
    QCOMPARE(QDir(m_files->folder()).entryList(QDir::Files | QDir::Hidden), m_expected.keys());
}

void WorkingDayTest::endsWithTheBytesExpected()
{
    using Hours = void (WorkingDayTest::*)();
    static constexpr Hours day[] = { &WorkingDayTest::openAll, &WorkingDayTest::editAll,
        &WorkingDayTest::saveAllInPlace, &WorkingDayTest::saveAsOtherCodes, &WorkingDayTest::closeAndReopen,
        &WorkingDayTest::quitWithQuestions };
    for (const Hours hours : day) {
        (this->*hours)();
        if (QTest::currentTestFailed())
            return;
    }
}

REGISTER_TEST(runWindowTest<WorkingDayTest>)
#include "workingday_test.moc"
