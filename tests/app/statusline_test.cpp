#include "app/statusline.h"

#include "tests/app/documentparts.h"
#include "tests/testprogram.h"

#include <QLabel>
#include <QSignalSpy>
#include <QToolButton>

using namespace Qt::StringLiterals;

/// The line below the tabs, without a main window.
class StatusLineTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_parts.reset(); }

    void isOffAtFirst();
    void saysWhereTheCursorIs_data();
    void saysWhereTheCursorIs();
    void saysWhatIsSelected_data();
    void saysWhatIsSelected();
    void followsTheCursor();
    void saysCodeAndLineEnd();
    void saysWhoseFileMayNotBeWritten();
    void switchesOverwriting();
    void hasTheFile();
    void tipShowsMarkUpAsItIs();
    void asksForALine();
    void reopensWithACode();
    void savesWithACode();
    void savesWithALineEnd();
    void leavesOutWhatHasNoRoom();
    void isEmptyWithoutDocuments();

private:
    void turnOn()
    {
        moreSettings().StatusLine = 1;
        m_line->applySettings();
    }
    ctlEditer *open(const QByteArray &text) { return m_parts->open(m_parts->files.write(u"a.txt"_s, text)); }
    /// The texts of what is shown, from the left; that of the file comes last.
    QStringList fields() const
    {
        QMap<int, QString> texts;
        for (const QWidget *const field : m_line->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
            if (field->isVisible() && !field->inherits("QMenu"))
                texts[field->x()] = field->property("text").toString();
        }
        return texts.values();
    }
    QToolButton *button(const QString &text) const
    {
        for (QToolButton *const each : m_line->findChildren<QToolButton *>()) {
            if (each->text() == text)
                return each;
        }
        return nullptr;
    }
    /// Chooses an item of a field's menu; its texts while it was open.
    QStringList choose(const QString &field, const QString &item) const
    {
        QMenu *const menu = button(field)->menu();
        emit menu->aboutToShow();
        QStringList texts;
        QAction *chosen = nullptr;
        for (QAction *const action : menu->actions()) {
            if (!action->isSeparator())
                texts << action->text();
            chosen = action->text() == item ? action : chosen;
        }
        if (chosen)
            chosen->trigger();
        return texts;
    }

    std::unique_ptr<DocumentParts> m_parts;
    StatusLine *m_line = nullptr;
    FileCalls m_calls = FileCalls::system();
    int m_accessError = 0;
};

void StatusLineTest::init()
{
    m_parts = std::make_unique<DocumentParts>();
    m_accessError = 0;
    m_calls.access = [this](const char *, int, int) {
        errno = m_accessError;
        return m_accessError == 0 ? 0 : -1;
    };
    m_line = new StatusLine(m_parts->documents, m_parts->loader, m_parts->saver, m_calls);
    m_parts->documents.setFooter(m_line);
}

void StatusLineTest::isOffAtFirst()
{
    open("text\n");
    QVERIFY(!m_line->isVisible());
    const int bottom = m_parts->documents.tabBar()->geometry().bottom();
    turnOn();
    QVERIFY(m_line->isVisible());
    QCOMPARE(m_line->geometry().bottom(), m_parts->documents.height() - 1);
    QCOMPARE(m_parts->documents.tabBar()->geometry().bottom(), bottom - m_line->height());
    moreSettings().StatusLine = 0;
    m_line->applySettings();
    QVERIFY(!m_line->isVisible());
    QCOMPARE(m_parts->documents.tabBar()->geometry().bottom(), bottom);
}

void StatusLineTest::saysWhereTheCursorIs_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<QString>("place");
    QTest::newRow("|one two.three.") << 0 << u"1:1"_s;
    QTest::newRow("one two|.three.") << 7 << u"1:8"_s;
    QTest::newRow("one two.|three.") << 8 << u"2:1"_s;
    QTest::newRow("one two.three.|") << 14 << u"3:1"_s;
}

void StatusLineTest::saysWhereTheCursorIs()
{
    QFETCH(int, offset);
    turnOn();
    ctlEditer *const editor = open("one two\nthree\n");
    appSettings().WrapMode = 2; // rows are not lines
    appSettings().WrapLen = 10;
    editor->applySettings();
    editor->setCursorPlace({ Offset(offset) });
    QFETCH(QString, place);
    QTRY_COMPARE(fields().first(), place);
}

void StatusLineTest::saysWhatIsSelected_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("selected");
    const QString family = u"\U0001F468\u200D\U0001F469"_s;
    QTest::newRow("letters") << u"abc"_s << u"1:4 (3)"_s;
    QTest::newRow("characters of several units") << u"e\u0301"_s + family << u"1:8 (2)"_s;
    QTest::newRow("a line end") << u"a\n"_s << u"2:1 (2)"_s;
    QTest::newRow("as many as are counted") << QString(10000, u'a') << u"1:10001 (10000)"_s;
    QTest::newRow("more") << QString(5001, u'\n') + QString(5000, u'a') << u"5002:5001 (5002 ¶)"_s;
}

void StatusLineTest::saysWhatIsSelected()
{
    QFETCH(QString, text);
    turnOn();
    ctlEditer *const editor = m_parts->documents.add();
    m_parts->documents.present(editor);
    editor->setText(text);
    editor->select({ Offset() }, { editor->document().store().end() });
    QFETCH(QString, selected);
    QTRY_COMPARE(fields().first(), selected);
    editor->deselect();
    QTRY_COMPARE(fields().first(), selected.section(u' ', 0, 0));
}

void StatusLineTest::followsTheCursor()
{
    turnOn();
    ctlEditer *const first = open("one\n");
    first->setFocus();
    QTRY_COMPARE(fields().first(), u"1:1"_s);
    QTest::keyClick(first, Qt::Key_Right);
    QTRY_COMPARE(fields().first(), u"1:2"_s);
    QTest::keyClicks(first, u"xy"_s);
    QTRY_COMPARE(fields().first(), u"1:4"_s);
    m_parts->documents.present(m_parts->documents.add());
    QTRY_COMPARE(fields().first(), u"1:1"_s);
    m_parts->documents.present(first);
    QTRY_COMPARE(fields().first(), u"1:4"_s);
}

void StatusLineTest::saysCodeAndLineEnd()
{
    turnOn();
    ctlEditer *const editor = open("\xe3\x81\x82\n");
    QCOMPARE(fields().mid(1, 2), QStringList({ u"UTF8"_s, u"LF"_s }));
    m_parts->saver.saveTo(editor, { editor->path(), editor->name(), CharCode::ShiftJis, ReturnCode::CrLf });
    QCOMPARE(fields().mid(1, 2), QStringList({ u"Shift-JIS"_s, u"CR+LF"_s }));
}

void StatusLineTest::saysWhoseFileMayNotBeWritten()
{
    turnOn();
    open("a\n");
    QVERIFY(!fields().contains(u"RO"_s));
    m_accessError = EACCES;
    m_parts->open(m_parts->files.write(u"b.txt"_s, "b\n"));
    QVERIFY(fields().contains(u"RO"_s));
    m_accessError = EROFS;
    open("a\n");
    QVERIFY(fields().contains(u"RO"_s));
    m_accessError = 0;
    open("a\n");
    QVERIFY(!fields().contains(u"RO"_s));
}

void StatusLineTest::switchesOverwriting()
{
    turnOn();
    ctlEditer *const editor = open("one\n");
    QTRY_VERIFY(button(u"INS"_s));
    QTest::keyClick(editor, Qt::Key_Insert);
    QTRY_VERIFY(button(u"OVR"_s));
    button(u"OVR"_s)->click();
    QVERIFY(!editor->isOverwriteMode());
    QTRY_VERIFY(button(u"INS"_s));
}

void StatusLineTest::hasTheFile()
{
    turnOn();
    m_parts->documents.resize(900, 300);
    open("a\n");
    QCOMPARE(fields().last(), m_parts->files.folder() + u"a.txt"_s);
    m_parts->documents.present(m_parts->documents.add());
    QTRY_COMPARE(fields().last(), ctlEditer::nameOfUnnamed());
}

void StatusLineTest::tipShowsMarkUpAsItIs()
{
    turnOn();
    m_parts->open(m_parts->files.write(u"<img src=a>.txt"_s, "text"));
    const QList<QLabel *> labels = m_line->findChildren<QLabel *>();
    const auto isOfFile = [](const QLabel *label) {
        return label->toolTip().contains(u"&lt;img src=a&gt;.txt"_s)
            && label->accessibleName().endsWith(u"/<img src=a>.txt"_s);
    };
    QTRY_COMPARE(std::count_if(labels.begin(), labels.end(), isOfFile), 1);
}

void StatusLineTest::asksForALine()
{
    turnOn();
    open("a\n");
    const QSignalSpy wanted(m_line, &StatusLine::jumpWanted);
    button(u"1:1"_s)->click();
    QCOMPARE(wanted.count(), 1);
}

void StatusLineTest::reopensWithACode()
{
    turnOn();
    ctlEditer *const editor = open("\xe3\x81\x82\n");
    const QStringList items = choose(u"UTF8"_s, u"Reopen as Shift-JIS"_s);
    QCOMPARE(items,
        QStringList({ u"Reopen as Shift-JIS"_s, u"Reopen as EUC"_s, u"Reopen as JIS"_s, u"Reopen as UTF-8"_s,
            u"Reopen as UTF-16LE"_s, u"Reopen as UTF-16BE"_s, u"Save as Shift-JIS"_s, u"Save as EUC"_s,
            u"Save as JIS"_s, u"Save as UTF-8"_s }));
    QCOMPARE(editor->charCode(), int(CharCode::ShiftJis));
    QTRY_VERIFY(button(u"Shift-JIS"_s));
}

void StatusLineTest::savesWithACode()
{
    turnOn();
    ctlEditer *const editor = open("\xe3\x81\x82\n");
    m_parts->choices = { { m_parts->files.folder(), u"b.txt"_s, CharCode::Euc } };
    choose(u"UTF8"_s, u"Save as EUC"_s);
    QCOMPARE(m_parts->starts.constLast().charCode, std::optional(CharCode::Euc));
    QCOMPARE(m_parts->starts.constLast().name, u"a.txt"_s);
    QCOMPARE(m_parts->files.read(u"b.txt"_s), "\xa4\xa2\n"_ba);
    editor->document().setHeld(true); // something is done to it behind the window
    const qsizetype before = m_parts->starts.size();
    choose(u"EUC"_s, u"Save as JIS"_s);
    choose(u"EUC"_s, u"Reopen as JIS"_s);
    QCOMPARE(m_parts->starts.size(), before);
    QCOMPARE(editor->charCode(), int(CharCode::Euc));
    editor->document().setHeld(false);
}

void StatusLineTest::savesWithALineEnd()
{
    turnOn();
    open("a\n");
    QCOMPARE(choose(u"LF"_s, u"Save as CR"_s),
        QStringList({ u"Save as CR+LF"_s, u"Save as LF"_s, u"Save as CR"_s }));
    QCOMPARE(m_parts->starts.constLast().returnCode, std::optional(ReturnCode::Cr));
    QCOMPARE(m_parts->files.read(u"a.txt"_s), "a\n"_ba); // which was cancelled
}

void StatusLineTest::leavesOutWhatHasNoRoom()
{
    turnOn();
    open("a\n");
    m_parts->documents.resize(240, 200);
    QTRY_COMPARE(m_line->width(), 240);
    QVERIFY(fields().size() >= 4);
    for (const QWidget *const field : m_line->findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
        QVERIFY2(!field->isVisible() || field->geometry().right() < 240, qPrintable(field->accessibleName()));
    m_parts->documents.resize(60, 200);
    QTRY_COMPARE(fields(), QStringList{ u"1:1"_s });
}

void StatusLineTest::isEmptyWithoutDocuments()
{
    turnOn();
    ctlEditer *const editor = open("a\n");
    m_parts->closer.close(editor);
    QTRY_COMPARE(fields(), QStringList({ QString() })); // where the name of a file would stand
    open("b\n");
    QTRY_VERIFY(fields().contains(u"LF"_s));
}

REGISTER_TEST(runWindowTest<StatusLineTest>)
#include "statusline_test.moc"
