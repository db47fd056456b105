#include "tests/app/typist.h"

#include "app/documentarea.h"
#include "editor/ctlediter.h"
#include "recovery/recoveryjournals.h"
#include "tests/app/stripinwindow.h"
#include "tests/app/unsavedlist.h"
#include "tests/waiting.h"

#include <QClipboard>
#include <QWindow>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

const QList<Typist::Document> &Typist::documents()
{
    static const QList<Document> all{
        { u"sjis.txt"_s, CharCode::ShiftJis, ReturnCode::CrLf,
            QByteArray("\x93\xFA\x96\x7B\x8C\xEA\r\n").repeated(9), u"日本語"_s },
        { u"euc.txt"_s, CharCode::Euc, ReturnCode::Cr,
            QByteArray("\xC6\xFC\xCB\xDC\xB8\xEC, \xA4\xA2\xA4\xA4\xA4\xA6\r").repeated(5), u"あいう\n"_s },
        { u"utf8.txt"_s, CharCode::Utf8, ReturnCode::Lf,
            QByteArray("na\xC3\xAFve \xE2\x82\xAC\n").repeated(3), u"🙂é\n\n"_s },
        { QString(), CharCode::ShiftJis, ReturnCode::CrLf, {}, u"two\nlines"_s },
    };
    return all;
}

Typist::Typist(frmMain &window, Writes writes, quint32 seed, int pipe)
    : m_window(window)
    , m_journals(*window.findChild<RecoveryJournals *>())
    , m_writes(writes)
    , m_random(seed)
    , m_pipe(pipe)
{
}

void Typist::type(const QString &folder)
{
    show();
    open(folder);
    typeOn();
}

void Typist::restoreAndType()
{
    const bool isAnyLeft = !findLeftBehind(journalFolder()).empty();
    show();
    if (isAnyLeft)
        restore();
    typeOn();
}

void Typist::typeOn()
{
    if (!waitUntil([] { return takesKeys(); }))
        qFatal("no keys");
    while (true) {
        act();
        noteText(Told::Kind::Changed, *m_window.currentEditor());
        if (m_writes == Writes::AtOnce)
            letJournalsWrite();
        else
            rest();
    }
}

void Typist::show()
{
    m_window.showMaximized();
    if (!QTest::qWaitForWindowActive(&m_window))
        qFatal("no window");
    m_window.slotEtcFirstNewDoc();
}

void Typist::open(const QString &folder)
{
    noteText(Told::Kind::Opened, *m_window.currentEditor());
    for (const Document &document : documents()) {
        if (document.name.isEmpty())
            continue;
        m_window.setDocument(folder + document.name);
        noteText(Told::Kind::Opened, *m_window.currentEditor());
    }
}

/// Tells every step, so that each can be the last one.
void Typist::restore()
{
    const auto tellStep = [this] { tell(m_pipe, Told::of(Told::Kind::Restoring)); };
    const StripInWindow strip(m_window);
    if (!waitUntil([&strip] { return strip.isShown(); }))
        qFatal("no strip");
    tellStep();
    QObject::connect(m_window.findChild<DocumentArea *>(), &DocumentArea::added, tellStep);
    const InList restoring([&tellStep](frmRecovery &form) {
        tellStep();
        ::press(form, u"Restore"_s);
    });
    if (!strip.click(u"Restore"_s))
        qFatal("nothing to be restored");
    for (const ctlEditer *const editor : m_window.findChild<DocumentArea *>()->editors())
        noteText(Told::Kind::Opened, *editor);
}

int Typist::numberOf(const QString &name)
{
    int number = 0;
    while (!documents()[number].name.isEmpty() && documents()[number].name != name)
        ++number;
    return number;
}

int Typist::current() const
{
    return numberOf(m_window.currentEditor()->name());
}

/// One thing of all that a user does.
void Typist::act()
{
    constexpr int longestText = 600;
    if (m_window.currentEditor()->store().length() > longestText) {
        m_window.slotCmdEditSelAll();
        return press(Qt::Key_Delete);
    }
    static constexpr Qt::Key moves[] = { Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_Home,
        Qt::Key_End, Qt::Key_PageDown };
    switch (below(40)) {
    case 0:
        return save();
    case 1:
    case 2:
        return m_window.slotEtcChangeTab(below(2));
    case 3:
    case 4:
        QGuiApplication::clipboard()->setText(documents()[current()].words);
        return m_window.slotCmdEditPast();
    case 5:
        return m_window.slotCmdEditUndo();
    case 6:
        return m_window.slotCmdEditRedo();
    case 7:
        press(Qt::Key_Right, Qt::ShiftModifier);
        return m_window.slotCmdEditCut();
    case 8:
    case 9:
        return press(Qt::Key_Return);
    case 10:
    case 11:
        return press(Qt::Key_Backspace);
    case 12:
        return press(Qt::Key_Delete);
    case 13:
    case 14:
    case 15:
        return press(moves[below(int(std::size(moves)))]);
    default:
        return press(Qt::Key(Qt::Key_A + below(26)));
    }
}

/// As the window system does it.
void Typist::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(m_window.windowHandle(), key, modifiers);
}

void Typist::save()
{
    if (m_window.currentEditor()->path().isEmpty())
        return;
    if (!m_window.slotCmdFileSave(m_window.currentEditor()))
        qFatal("not saved");
    tell(m_pipe, Told::of(Told::Kind::Saved, current()));
}

/// Told before the event loop runs again, and with that before it can be written.
void Typist::noteText(Told::Kind kind, const ctlEditer &editor)
{
    const int document = numberOf(editor.name());
    const QString text = editor.store().text();
    if (const auto told = m_texts.find(document); told != m_texts.end() && told->second == text)
        return;
    m_texts[document] = text;
    tell(m_pipe, Told::ofText(kind, document, text));
}

void Typist::letJournalsWrite()
{
    QCoreApplication::processEvents();
    const int whim = below(8);
    if (whim > 2)
        return;
    tell(m_pipe, Told::of(Told::Kind::Writing));
    if (m_journals.flush(whim == 0 ? 10s : 0s))
        tell(m_pipe, Told::of(Told::Kind::Written));
}

/// As long as hands do: mostly shorter than the program waits for, now and then longer.
void Typist::rest()
{
    constexpr int betweenKeys = 200;
    constexpr int toThink = 1500;
    QTest::qWait(below(15) == 0 ? below(toThink) : below(betweenKeys));
}
