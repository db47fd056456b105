#include "app/writingnotice.h"

#include "app/charactershown.h"
#include "app/documentarea.h"
#include "app/documentsaver.h"
#include "app/hitview.h"
#include "codec/codecs.h"
#include "document/textdocument.h"
#include "editor/ctlediter.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

constexpr int charactersListed = 5;

QString translated(const char *text)
{
    return QCoreApplication::translate("frmMain", text);
}

/// What a code writes for a character that it lacks.
QString standInOf(const TextCodec &codec)
{
    return &codec == &utf8Codec() ? QString(QChar::ReplacementCharacter) : u"?"_s;
}

} // namespace

WritingNotice::WritingNotice(
    ctlEditer &editor, DocumentArea &documents, DocumentSaver &saver, QObject *parent)
    : QObject(parent)
    , m_editor(editor)
    , m_documents(documents)
    , m_saver(saver)
    , m_unwritable(editor.document())
{
    m_soon.setSingleShot(true);
    m_soon.setInterval(longestWait);
    connect(&m_soon, &QTimer::timeout, this, &WritingNotice::update);
    connect(&m_unwritable, &UnwritableText::changed, &m_soon, [this] {
        if (!m_soon.isActive())
            m_soon.start();
    });
    connect(&editor.document(), &TextDocument::saved, this, &WritingNotice::noteSaved);
    connect(&editor.document(), &TextDocument::replaced, this, &WritingNotice::settle);
    setShown(false);
}

void WritingNotice::setShown(bool isShown)
{
    m_isShown = isShown;
    m_unwritable.setLookingOn(m_isShown || m_isSubstituted);
}

/// A long text is looked at after this, and the notice withdrawn when it has none.
void WritingNotice::noteSaved()
{
    if (m_unwritable.count() == 0 && !m_unwritable.mayBeMore())
        return;
    m_isDismissed = false;
    setSubstituted(true);
    emit substituted();
    update();
}

void WritingNotice::update()
{
    const bool isBinary = m_editor.document().charCode() == CharCode::Binary;
    if (m_unwritable.count() > 0 && !isBinary)
        tell();
    else if (!m_unwritable.mayBeMore())
        withdraw();
}

void WritingNotice::tell()
{
    if (m_isDismissed)
        return;
    const NoticeKind kind = isOfLastSave() ? NoticeKind::Substituted : NoticeKind::CannotWrite;
    Notice notice{ kind, &m_editor, [this] { return text(); }, {} };
    notice.offers.push_back(
        { [] { return translated(QT_TRANSLATE_NOOP("frmMain", "Go to it")); }, [this] { goToNext(); } });
    if (m_editor.document().writingCode().codec != &utf8Codec())
        notice.offers.push_back({ [] { return translated(QT_TRANSLATE_NOOP("frmMain", "Save as UTF-8…")); },
            [this] { saveAsUtf8(); } });
    notice.dismissed = [this] {
        m_isDismissed = true;
        settle();
    };
    m_documents.notices().put(std::move(notice));
    takeBack(kind == NoticeKind::Substituted ? NoticeKind::CannotWrite : NoticeKind::Substituted);
}

void WritingNotice::withdraw()
{
    m_isDismissed = false;
    takeBack(NoticeKind::Substituted);
    takeBack(NoticeKind::CannotWrite);
    settle();
}

void WritingNotice::takeBack(NoticeKind kind)
{
    m_documents.notices().withdraw(kind, &m_editor);
}

void WritingNotice::settle()
{
    if (!m_isSubstituted)
        return;
    setSubstituted(false);
    emit settled();
}

void WritingNotice::setSubstituted(bool isSubstituted)
{
    m_isSubstituted = isSubstituted;
    m_unwritable.setLookingOn(m_isShown || m_isSubstituted);
}

bool WritingNotice::isOfLastSave() const
{
    return m_isSubstituted && !m_editor.document().isEdited();
}

QString WritingNotice::text() const
{
    const TextDocument &document = m_editor.document();
    QString number = QString::number(m_unwritable.count());
    if (m_unwritable.mayBeMore())
        number = translated(QT_TRANSLATE_NOOP("frmMain", "%1 or more")).arg(number);
    if (isOfLastSave())
        return translated(QT_TRANSLATE_NOOP("frmMain", "Characters saved as \"%1\": %2 (%3)"))
            .arg(standInOf(*document.writingCode().codec), number, listed());
    return translated(QT_TRANSLATE_NOOP("frmMain", "Characters that %1 lacks: %2 (%3)"))
        .arg(m_editor.charCodeName(), number, listed());
}

QString WritingNotice::listed() const
{
    QStringList characters;
    for (const char32_t c : m_unwritable.first(charactersListed + 1))
        characters << (characters.size() < charactersListed ? shownCharacter(c) : u"…"_s);
    return characters.join(u' ');
}

/// The next one behind the cursor is selected, round at the end.
void WritingNotice::goToNext()
{
    const std::optional<Offset> at =
        m_unwritable.next(qMax(m_editor.cursorOffset(), m_editor.anchorOffset()));
    if (!at)
        return;
    m_editor.select({ *at }, { *at + m_unwritable.lengthAt(*at) });
    showHit(m_editor);
    m_editor.setFocus();
}

void WritingNotice::saveAsUtf8()
{
    m_saver.beginSaveAs(&m_editor, CharCode::Utf8);
}
