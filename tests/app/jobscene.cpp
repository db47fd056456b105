#include "tests/app/jobscene.h"

#include "app/qpeapplicationesc.h"
#include "codec/charcode.h"
#include "codec/codecs.h"
#include "document/detection.h"
#include "document/lineends.h"
#include "recovery/recoveryjournals.h"
#include "search/frmsearchdialog.h"
#include "tests/app/unsavedlist.h"
#include "tests/codec/shorttexts.h"

#include <QClipboard>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qint64 fewestInScene = qint64{ 1 } << 20; ///< of what is done behind the window
constexpr int timesInLong = 6; ///< is measured in many turns
constexpr qint64 mostBrought = 50'000; ///< at once; less than a pipe takes

QByteArray utf16Text()
{
    return encoded(utf16LittleEndianCodec(), QString::fromUtf8(JobScene::text()));
}

/// As what is no text: its line ends, too, are looked for byte by byte.
QString readByBytes(QByteArray bytes)
{
    normalizeLineEnds(bytes, detectReturnCode(bytes, ReturnCode::Lf));
    return decoded(utf16LittleEndianCodec(), bytes);
}

} // namespace

const std::vector<JobScene::Job> &JobScene::jobs()
{
    static const std::vector<Job> all{
        { "load", Kind::Load, &JobScene::load, 2, Content::Text, Content::NoDocument, Content::Empty },
        { "load into a fresh document", Kind::Load, &JobScene::loadIntoFreshDocument, 2, Content::Text,
            Content::Empty, Content::Empty },
        { "load UTF-16", Kind::Load, &JobScene::loadUtf16, 2, Content::Utf16, Content::NoDocument,
            Content::Empty },
        { "reload", Kind::Reload, &JobScene::reload, 2, Content::Text, Content::Small, Content::Small, 1 },
        { "reopen in another code", Kind::Reload, &JobScene::reopen, 2, Content::TextAsShiftJis,
            Content::Text, Content::Text },
        { "read as UTF-16", Kind::Reload, &JobScene::readAsUtf16, 2, Content::Text, Content::Utf16,
            Content::Utf16 },
        { "save", Kind::Save, &JobScene::save, 4, Content::Edited, Content::Edited, Content::Edited },
        { "save as", Kind::Save, &JobScene::saveAs, 4, Content::Edited, Content::Edited, Content::Edited, 0,
            0, "b.txt" },
        { "search forward", Kind::Search, &JobScene::searchForward, 2, Content::Text, Content::Text,
            Content::Text },
        { "search backward", Kind::Search, &JobScene::searchBackward, 2, Content::Text, Content::Text,
            Content::Text },
        { "replace the next one", Kind::Search, &JobScene::replaceNext, 2, Content::Replaced, Content::Text,
            Content::Text },
        { "properties", Kind::Count, &JobScene::count, 2, Content::Text, Content::Text, Content::Text, 0, 1 },
        { "new layout", Kind::Layout, &JobScene::layOut, 0, Content::Long, Content::Long, Content::Long },
        { "move a block", Kind::Edit, &JobScene::indentBlock, 5, Content::Indented, Content::Text,
            Content::Text },
        { "paste", Kind::Edit, &JobScene::paste, 5, Content::Pasted, Content::Small, Content::Small },
        { "follow", Kind::Follow, &JobScene::follow, 2, Content::FollowedOn, Content::Followed,
            Content::Followed },
        { "restore", Kind::Restore, &JobScene::restore, 6, Content::Edited, Content::NoDocument,
            Content::NoDocument, 0, 0, "a.txt", &JobScene::leaveBehind },
        { "standard input", Kind::Input, &JobScene::readInput, 87, Content::Text, Content::Come,
            Content::Come, 0, 0, "b.txt" },
        { "standard input in another code", Kind::InputAgain, &JobScene::readInputAgain, 2, Content::Text,
            Content::Utf16, Content::Utf16, 0, 0, "b.txt" },
    };
    return all;
}

JobScene::JobScene(const Job &job)
    : window(WindowJobs{ .runner = std::unique_ptr<JobRunner>(&runner),
        .fewest = fewestInScene,
        .inputRunner = std::unique_ptr<JobRunner>(&inputRunner) })
{
    if (job.prepare)
        job.prepare(files);
    static_cast<QPEApplication *>(qApp)->showMainWidget(&window);
    QVERIFY(window.open());
    window.slotCmdFileCloseTab();
    window.setDocument(files.write(u"other.txt"_s, "other"));
    other = window.currentEditor();
    QTest::keyClicks(other, u"typed "_s);
}

const QByteArray &JobScene::text()
{
    static const QByteArray text =
        "\xe3\x81\x82 first\n" + QByteArray("a line of a large text\n").repeated(95'000) + "last\n";
    return text;
}

QString JobScene::textOf(Content content, qint64 come)
{
    const QString whole = QString::fromUtf8(text());
    switch (content) {
    case Content::NoDocument:
    case Content::Empty:
        return {};
    case Content::Small:
        return QString::fromLatin1(smallText);
    case Content::Text:
        return whole;
    case Content::TextAsShiftJis:
        return infoOf(CharCode::ShiftJis).codec().decode(text(), LayoutRule()).text();
    case Content::Utf16:
        return readByBytes(utf16Text());
    case Content::Edited:
        return u'x' + whole;
    case Content::Replaced:
        return whole.chopped(5) + u"x\n"_s;
    case Content::Indented:
        return u'\t' + whole.chopped(1).replace(u'\n', u"\n\t"_s) + u'\n';
    case Content::Pasted:
        return whole + QString::fromLatin1(smallText);
    case Content::Long:
        return whole.repeated(timesInLong);
    case Content::Followed:
        return QString::fromLatin1(smallText) + u"x\n"_s;
    case Content::FollowedOn:
        return textOf(Content::Followed) + whole;
    case Content::Come:
        return QString::fromUtf8(text().first(come));
    }
    Q_UNREACHABLE();
}

void JobScene::press(Qt::Key key)
{
    QTRY_VERIFY(takesKeys());
    QTest::keyClick(QApplication::focusWidget(), key);
}

void JobScene::prepareSearch(const QString &text, bool replaces)
{
    if (replaces)
        window.slotCmdViewReplace();
    else
        window.slotCmdViewSearch();
    auto *const panel = window.findChild<frmSearchDialog *>();
    panel->findText = text;
    panel->replaceText = u"x"_s;
    panel->caseSensitive = true;
    panel->hide();
    window.activateWindow();
}

void JobScene::openWhole(const QByteArray &text)
{
    window.setDocument(files.write(u"a.txt"_s, text));
    makeAllSteps();
    QTRY_VERIFY(takesKeys());
}

void JobScene::bring()
{
    const qint64 size = qMin(mostBrought, incoming.size() - brought);
    if (size == 0)
        return pipe.close();
    pipe.put(incoming.sliced(brought, size));
    brought += size;
}

bool JobScene::bringAndStep()
{
    if (!input.expired() && pipe.isReadByAnybody() && pipe.isEmpty())
        bring();
    return step();
}

void JobScene::makeAllSteps()
{
    const auto isHeld = [](const ctlEditer *editor) { return editor->document().isHeld(); };
    do {
        while (bringAndStep()) { }
        settle();
    } while (!runner.isIdle() || std::ranges::any_of(window.tabBar()->editors(), isHeld));
}

bool JobScene::isUnderWay(const Job &job, const ctlEditer &editor) const
{
    switch (job.kind) {
    case Kind::Load:
    case Kind::Reload:
    case Kind::Save:
    case Kind::Edit:
    case Kind::Follow:
    case Kind::Restore:
    case Kind::Input:
    case Kind::InputAgain:
        return editor.document().isHeld();
    case Kind::Search:
    case Kind::Count:
        return !runner.isIdle();
    case Kind::Layout:
        return editor.store().linesAhead().has_value();
    }
    Q_UNREACHABLE();
}

void JobScene::load()
{
    window.setDocument(files.write(u"a.txt"_s, text()));
}

void JobScene::loadUtf16()
{
    window.setDocument(files.write(u"a.txt"_s, utf16Text()));
}

void JobScene::loadIntoFreshDocument()
{
    files.write(u"a.txt"_s, text());
    window.slotCmdFileNew();
    window.choices << FileChoice{ files.folder(), u"a.txt"_s };
    window.slotCmdFileOpen();
}

void JobScene::reload()
{
    openWhole(smallText);
    files.write(u"a.txt"_s, text());
    window.slotCmdFileReload();
}

void JobScene::reopen()
{
    openWhole(text());
    window.openDocument(fullName(u"a.txt"_s), int(CharCode::ShiftJis));
    QVERIFY(StripInWindow(window).click(u"Reopen as Shift-JIS"_s));
}

void JobScene::readAsUtf16()
{
    openWhole(utf16Text());
    QVERIFY(StripInWindow(window).click(u"Read it as text"_s));
}

void JobScene::save()
{
    openWhole(text());
    press(Qt::Key_X);
    window.slotCmdFileSave();
}

void JobScene::saveAs()
{
    openWhole(text());
    press(Qt::Key_X);
    window.choices << FileChoice{ files.folder(), u"b.txt"_s };
    window.slotCmdFileSaveAs();
}

void JobScene::searchForward()
{
    openWhole(text());
    window.currentEditor()->setCursorPlace({ Offset(3) });
    prepareSearch(u"last"_s);
    window.slotEtcSearchNext();
}

void JobScene::searchBackward()
{
    openWhole(text());
    window.currentEditor()->setCursorPlace({ window.currentEditor()->store().end() - 1 });
    prepareSearch(u"first"_s);
    window.slotEtcSearchBefo();
}

void JobScene::replaceNext()
{
    openWhole(text());
    window.currentEditor()->setCursorPlace({ Offset(3) });
    prepareSearch(u"last"_s, true);
    window.slotEtcSearchNext();
}

void JobScene::count()
{
    openWhole(text());
    window.slotCmdFileProp();
}

void JobScene::layOut()
{
    openWhole(text().repeated(timesInLong));
    rowHeight = window.currentEditor()->rowHeight();
    appSettings().FontSize += 5;
    window.applySettings();
    window.currentEditor()->numLines(); // asked about, it begins
}

void JobScene::indentBlock()
{
    openWhole(text());
    window.slotCmdEditSelAll();
    press(Qt::Key_Tab);
}

void JobScene::paste()
{
    openWhole(smallText);
    QGuiApplication::clipboard()->setText(QString::fromUtf8(text()));
    window.slotCmdEditPast();
}

void JobScene::appendToFile(const QByteArray &bytes) const
{
    QFile file(fullName(u"a.txt"_s));
    QVERIFY(file.open(QIODevice::Append) && file.write(bytes) == bytes.size());
}

/// Much is added at once.
void JobScene::follow()
{
    openWhole(smallText);
    appendToFile("x\n");
    const StripInWindow strip(window);
    QTRY_VERIFY(strip.button(u"Follow"_s));
    strip.click(u"Follow"_s);
    QTRY_COMPARE(window.currentEditor()->text(), textOf(Content::Followed));
    appendToFile(text());
    QTRY_VERIFY(strip.text().startsWith(u"Loading"_s));
    QVERIFY(window.currentEditor()->document().isHeld());
}

/// By a program that was killed when it had put an "x" in front.
void JobScene::leaveBehind(const TestFiles &files)
{
    files.write(u"a.txt"_s, text());
    TextDocument document;
    RecoveryJournals journals;
    journals.attach(document);
    QVERIFY(!document.load(files.folder(), u"a.txt"_s, {}, {}));
    document.replace({}, 0, u"x"_s);
    QVERIFY(journals.flush(10s));
}

void JobScene::restore()
{
    const StripInWindow strip(window);
    QTRY_VERIFY(strip.button(u"Restore"_s));
    QVERIFY(restoreAll(window));
}

/// It may be saved as its file.
void JobScene::readInput()
{
    const SharedFd itsEnd = pipe.takeInput();
    input = itsEnd;
    theApplication().request({ {}, FileRequest::From::Shell, {}, {}, false, itsEnd });
    QTRY_COMPARE(window.tabBar()->count(), 2);
    QTRY_VERIFY(takesKeys());
    window.choices << FileChoice{ files.folder(), u"b.txt"_s };
}

/// All of it has come, and fits another code than its first bytes.
void JobScene::readInputAgain()
{
    incoming = utf16Text();
    readInput();
    while (runner.isIdle() && bringAndStep()) { }
}
