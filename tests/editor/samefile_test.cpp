#include "editor/ctlediter.h"

#include "settings/settings.h"
#include "tests/document/documentfolder.h"
#include "tests/messageboxes.h"
#include "tests/testprogram.h"

#include <QTest>

#include <memory>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString keptNotice = u"Confirm File Save|Another document was saved as this file since. "
                           "Its old content is kept in the file\n"_s;

} // namespace

/// Two documents that are one file: neither loses what the other one has saved.
class SameFileTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void otherVersionIsKept_data();
    void otherVersionIsKept();
    void ownVersionIsNotKept_data();
    void ownVersionIsNotKept();
    void chosenOverAFileThatAnotherDocumentWrote();
    void nothingIsWrittenWhereNothingCanBeKept();

private:
    std::unique_ptr<ctlEditer> open(const QString &name);
    /// Types a text in front of the document's and saves it; whether that went well.
    static bool edit(ctlEditer &editor, const QString &text, const QString &name = {});
    /// The content of the file that the only box tells of; a description of the boxes if it does not.
    static QByteArray keptContent(const MessageBoxes &boxes);

    std::unique_ptr<DocumentFolder> m_folder;
};

void SameFileTest::init()
{
    appSettings() = AppSettings();
    appSettings().FontName = u"monospace"_s;
    m_folder = std::make_unique<DocumentFolder>();
    QVERIFY(m_folder->write(u"a.txt"_s, "old"));
    QVERIFY(m_folder->write(u"other.txt"_s, "other"));
    const QByteArray folder = m_folder->path().toUtf8();
    QCOMPARE(::symlink("a.txt", (folder + "link.txt").constData()), 0);
    QVERIFY(m_folder->write(u"hard.txt"_s, "old"));
    QCOMPARE(::link((folder + "hard.txt").constData(), (folder + "hardlink.txt").constData()), 0);
}

std::unique_ptr<ctlEditer> SameFileTest::open(const QString &name)
{
    auto editor = std::make_unique<ctlEditer>(nullptr);
    if (!name.isEmpty())
        editor->loadFile(m_folder->path(), name, 0);
    return editor;
}

bool SameFileTest::edit(ctlEditer &editor, const QString &text, const QString &name)
{
    editor.setCursorPosition(0, 0);
    editor.insert(text);
    return editor.saveFile(editor.path(), name.isEmpty() ? editor.name() : name);
}

QByteArray SameFileTest::keptContent(const MessageBoxes &boxes)
{
    const QString texts = boxes.texts().join(u" / ");
    QFile file(texts.mid(keptNotice.size()));
    return texts.startsWith(keptNotice) && file.open(QIODevice::ReadOnly) ? file.readAll() : texts.toUtf8();
}

void SameFileTest::otherVersionIsKept_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::newRow("a link opened behind the file") << u"a.txt"_s << u"link.txt"_s;
    QTest::newRow("the file opened behind a link") << u"link.txt"_s << u"a.txt"_s;
    QTest::newRow("hard links") << u"hard.txt"_s << u"hardlink.txt"_s;
    QTest::newRow("one name") << u"a.txt"_s << u"a.txt"_s;
}

void SameFileTest::otherVersionIsKept()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    const auto one = open(first);
    auto two = open(second);
    {
        const MessageBoxes boxes;
        QVERIFY(edit(*two, u"two "_s));
        QVERIFY(edit(*two, u"again "_s));
        QCOMPARE(boxes.texts(), QStringList());
    }
    {
        const MessageBoxes boxes;
        QVERIFY(edit(*one, u"one "_s));
        QCOMPARE(keptContent(boxes), QByteArray("again two old"));
        QCOMPARE(m_folder->read(second), QByteArray("one old"));
    }
    {
        const MessageBoxes boxes;
        QVERIFY(edit(*one, u"more "_s));
        QCOMPARE(boxes.texts(), QStringList());
    }
    {
        const MessageBoxes boxes;
        QVERIFY(edit(*two, u"last "_s));
        QCOMPARE(keptContent(boxes), QByteArray("more one old"));
        two.reset();
    }
    const MessageBoxes boxes;
    QVERIFY(edit(*one, u"end "_s));
    QCOMPARE(keptContent(boxes), QByteArray("last again two old"));
}

void SameFileTest::ownVersionIsNotKept_data()
{
    using Steps = std::function<void(ctlEditer & one, ctlEditer & two)>;
    QTest::addColumn<Steps>("steps");
    QTest::newRow("read again") << Steps([](ctlEditer &one, ctlEditer &two) {
        QVERIFY(edit(two, u"two "_s));
        one.reload(one.path(), one.name());
    });
    QTest::newRow("another file") << Steps(
        [](ctlEditer &, ctlEditer &two) { QVERIFY(edit(two, u"two "_s, u"other.txt"_s)); });
    QTest::newRow("back to a file it wrote before") << Steps([](ctlEditer &one, ctlEditer &) {
        QVERIFY(edit(one, u"one "_s));
        QVERIFY(edit(one, u"one "_s, u"new.txt"_s));
        QVERIFY(edit(one, u"one "_s, u"a.txt"_s));
    });
    QTest::newRow("the file in the place of one that another document wrote")
        << Steps([this](ctlEditer &, ctlEditer &two) {
               QVERIFY(edit(two, u"two "_s));
               QVERIFY(QFile::remove(m_folder->path() + u"a.txt"_s));
           });
}

void SameFileTest::ownVersionIsNotKept()
{
    using Steps = std::function<void(ctlEditer & one, ctlEditer & two)>;
    QFETCH(Steps, steps);
    const auto one = open(u"a.txt"_s);
    const auto two = open(u"link.txt"_s);
    const MessageBoxes boxes;
    steps(*one, *two);
    QVERIFY(edit(*one, u"one "_s));
    QCOMPARE(boxes.texts(), QStringList());
}

/// The question whether to replace it cannot tell of a version that came while the document was open.
void SameFileTest::chosenOverAFileThatAnotherDocumentWrote()
{
    const auto one = open(u"a.txt"_s);
    const auto two = open(u"other.txt"_s);
    {
        const MessageBoxes boxes;
        QVERIFY(edit(*one, u"one "_s));
        QVERIFY(edit(*two, u"two "_s));
        QCOMPARE(boxes.texts(), QStringList());
        QVERIFY(edit(*two, u"x"_s, u"a.txt"_s));
        QCOMPARE(keptContent(boxes), QByteArray("one old"));
    }
    const auto later = open(u"other.txt"_s);
    const MessageBoxes boxes;
    QVERIFY(edit(*later, u"later "_s, u"a.txt"_s));
    QCOMPARE(boxes.texts(), QStringList());
    QVERIFY(edit(*one, u"more "_s));
    QCOMPARE(keptContent(boxes), QByteArray("later two other"));
}

void SameFileTest::nothingIsWrittenWhereNothingCanBeKept()
{
    const auto one = open(u"a.txt"_s);
    const auto two = open(u"link.txt"_s);
    const MessageBoxes boxes;
    QVERIFY(edit(*two, u"two "_s));
    const QByteArray before = qgetenv("XDG_STATE_HOME");
    qputenv("XDG_STATE_HOME", "/dev/null");
    const bool isSaved = edit(*one, u"one "_s);
    qputenv("XDG_STATE_HOME", before);
    QVERIFY(!isSaved);
    QCOMPARE(boxes.titles(), QStringList({ u"File Write Error"_s, u"File Write Error"_s }));
    QVERIFY(boxes.texts().last().contains(u"\n/dev/null/marlopad/\n"_s)); // what is in the way
    QCOMPARE(m_folder->read(u"a.txt"_s), QByteArray("two old"));
    QVERIFY(one->edited());
    QVERIFY(edit(*one, u""_s));
    QCOMPARE(boxes.count(), 3);
}

REGISTER_TEST(runWindowTest<SameFileTest>)
#include "samefile_test.moc"
