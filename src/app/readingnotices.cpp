#include "app/readingnotices.h"

#include "app/documentarea.h"
#include "app/documentfile.h"
#include "app/documentloader.h"
#include "app/reopenchoices.h"
#include "codec/codecs.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

QString codeText(const ReadFindings &found, CharCode readAs)
{
    const QString code = infoOf(readAs).name;
    if (found.fittingCode)
        return ReadingNotices::tr("Read as %1, but %2 reads it without a fault")
            .arg(code, infoOf(*found.fittingCode).label);
    return ReadingNotices::tr("Bytes that are not %1: %2").arg(code).arg(found.undecodableBytes);
}

/// What becomes of what, and how often: "LF → CR+LF (3)".
QString rewrittenText(const TextDocument &document)
{
    const RewrittenBytes &found = document.findings().rewritten;
    QStringList changes;
    const auto add = [&](const QString &before, const QString &after, qint64 count) {
        if (count > 0)
            changes << u"%1 → %2 (%3)"_s.arg(before, after).arg(count);
    };
    add(u"LF"_s, infoOf(document.returnCode()).name, found.lf);
    add(u"CR"_s, u"–"_s, found.cr);
    add(u"00"_s, u"FF"_s, found.nul);
    return ReadingNotices::tr("Saving will change: %1").arg(changes.join(u", "_s));
}

bool canBeSaved(const TextDocument &document)
{
    return document.charCode() != CharCode::Binary;
}

FileCodes codesOf(const TextDocument &document)
{
    return { document.charCode(), document.returnCode() };
}

bool isRewritten(const TextDocument &document)
{
    const RewrittenBytes &found = document.findings().rewritten;
    return canBeSaved(document) && found.lf + found.cr + found.nul > 0;
}

/// Where it cannot be saved nothing will change.
bool isSavedOtherwise(const TextDocument &document)
{
    return document.charCode() == CharCode::Unicode || isRewritten(document);
}

/// Of a file that was read by the rules that go by bytes.
bool isUtf16InBytes(const TextDocument &document)
{
    return document.findings().utf16 && !document.isUtf16();
}

} // namespace

ReadingNotices::ReadingNotices(DocumentArea &documents, DocumentLoader &loader)
    : m_documents(documents)
    , m_loader(loader)
{
    connect(&documents, &DocumentArea::added, this, &ReadingNotices::add);
    connect(&documents, &DocumentArea::closed, this, [this](ctlEditer *editor) { m_inFile.remove(editor); });
}

void ReadingNotices::add(ctlEditer *editor)
{
    const TextDocument *const document = &editor->document();
    connect(document, &TextDocument::replaced, this, [=, this] { update(editor); });
    connect(document, &TextDocument::codesChanged, this, [=, this] { followChoice(editor); });
    connect(document, &TextDocument::saved, this, [=, this] { followSave(editor); });
}

void ReadingNotices::withdraw(std::initializer_list<NoticeKind> kinds, const ctlEditer *editor)
{
    for (const NoticeKind kind : kinds)
        m_documents.notices().withdraw(kind, editor);
}

/// What was said of the codes that a save will write may not be so any more.
void ReadingNotices::followChoice(const ctlEditer *editor)
{
    const TextDocument &document = editor->document();
    if (document.isUtf16() && document.writingCode().codec != &utf8Codec())
        withdraw({ NoticeKind::Utf16 }, editor);
    if (document.returnCode() != m_inFile.value(editor).returnCode)
        withdraw({ NoticeKind::RewrittenBytes }, editor);
}

/// What a save would change has changed, and where the file has got another code, nothing is left of the
/// bytes that were told of.
void ReadingNotices::followSave(const ctlEditer *editor)
{
    withdraw({ NoticeKind::Utf16, NoticeKind::RewrittenBytes }, editor);
    const FileCodes before = std::exchange(m_inFile[editor], codesOf(editor->document()));
    if (&infoOf(before.charCode).codec() != &infoOf(m_inFile[editor].charCode).codec())
        withdraw({ NoticeKind::WrongCode, NoticeKind::OtherCode }, editor);
}

/// The text is another one: what was told of the one before says nothing any more.
void ReadingNotices::update(ctlEditer *editor)
{
    withdraw({ NoticeKind::OtherCode, NoticeKind::WrongCode, NoticeKind::Utf16, NoticeKind::RewrittenBytes },
        editor);
    const TextDocument &document = editor->document();
    m_inFile[editor] = codesOf(document);
    if (document.findings().utf16)
        tellUtf16(editor);
    else if (document.charCode() == CharCode::Binary)
        tellBinary(editor);
    else if (document.findings().fittingCode || document.findings().undecodableBytes > 0)
        tellCode(editor);
    if (isRewritten(document) && !isUtf16InBytes(document))
        tellRewritten(editor);
}

void ReadingNotices::tellCode(ctlEditer *editor)
{
    const TextDocument &document = editor->document();
    Notice notice{ NoticeKind::WrongCode, editor,
        [&document, readAs = document.charCode()] { return codeText(document.findings(), readAs); }, {} };
    if (const auto code = document.findings().fittingCode)
        notice.offers.push_back(
            codeOffer(editor, *code, [=] { return tr("Reopen as %1").arg(infoOf(*code).label); }));
    notice.offers.push_back(everyCode(editor));
    m_documents.notices().put(std::move(notice));
}

/// A single NUL makes a text binary.
void ReadingNotices::tellBinary(ctlEditer *editor)
{
    m_documents.notices().put({ NoticeKind::WrongCode, editor,
        [] { return tr("Taken for binary, which cannot be saved"); }, { everyCode(editor) } });
}

void ReadingNotices::tellUtf16(ctlEditer *editor)
{
    const TextDocument &document = editor->document();
    Notice notice{ NoticeKind::Utf16, editor,
        [&document] {
            if (document.isUtf16())
                return tr("UTF-16 text, to be saved as UTF-8");
            return isSavedOtherwise(document) ? tr("UTF-16 text, read byte by byte; saving will change it")
                                              : tr("UTF-16 text, read byte by byte");
        },
        {} };
    if (!document.isUtf16())
        notice.offers.push_back({ [] { return tr("Read it as text"); },
            [=, this] { m_loader.reopenUtf16(editor, *editor->document().findings().utf16); } });
    notice.offers.push_back({ [] { return tr("Keep UTF-16"); }, [=, this] { keepUtf16(editor); } });
    notice.offers.push_back(everyCode(editor));
    m_documents.notices().put(std::move(notice));
}

/// What was read byte by byte is read as text first, which may be refused.
void ReadingNotices::keepUtf16(ctlEditer *editor)
{
    TextDocument &document = editor->document();
    const auto keep = [&document] { document.keepUtf16(); };
    if (document.isUtf16())
        keep();
    else
        m_loader.reopenUtf16(editor, *document.findings().utf16, keep);
}

void ReadingNotices::tellRewritten(ctlEditer *editor)
{
    const TextDocument &document = editor->document();
    Notice notice{ NoticeKind::RewrittenBytes, editor, [&document] { return rewrittenText(document); }, {} };
    notice.offers.push_back({ [] { return tr("Keep a copy"); },
        [=, this] {
            editor->document().file().keep();
            m_documents.notices().withdraw(NoticeKind::RewrittenBytes, editor);
        } });
    m_documents.notices().put(std::move(notice));
}

NoticeOffer ReadingNotices::codeOffer(ctlEditer *editor, CharCode code, std::function<QString()> text)
{
    return { std::move(text), [=, this] { m_loader.reopen(editor, code); } };
}

NoticeOffer ReadingNotices::everyCode(ctlEditer *editor)
{
    return { [] { return tr("Reopen as"); }, {}, reopenChoices(m_loader, editor) };
}
