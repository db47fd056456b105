#include "app/firstoffers.h"

#include "app/documentarea.h"
#include "app/documentfile.h"
#include "app/translation.h"
#include "settings/settings.h"

using namespace Qt::StringLiterals;

namespace {

struct LanguageName {
    Language language;
    QStringView name; ///< as those say who speak it
};

constexpr LanguageName languageNames[] = { { English, u"English" }, { French, u"Français" },
    { Japanese, u"日本語" } };

constexpr FileCodes codesOfDesktop{ CharCode::Utf8, ReturnCode::Lf };

bool areNewDocumentsAsOnDesktop()
{
    return appSettings().defaultCharCode() == codesOfDesktop.charCode
        && appSettings().defaultReturnCode() == codesOfDesktop.returnCode;
}

QString newDocumentsText()
{
    return FirstOffers::tr("New documents are in %1 with %2")
        .arg(infoOf(appSettings().defaultCharCode()).name, infoOf(appSettings().defaultReturnCode()).name);
}

/// Nobody has written in it, nor was it read from anywhere.
bool isUnused(const ctlEditer &editor)
{
    return isFresh(editor) && editor.store().end() == Offset(0);
}

} // namespace

FirstOffers::FirstOffers(DocumentArea &documents, DesktopLocale desktop)
    : m_documents(documents)
    , m_desktop(std::move(desktop))
{
    connect(&documents.notices(), &NoticeQueue::changed, this, &FirstOffers::countShown);
}

void FirstOffers::make()
{
    if (isLanguageWanted())
        offerLanguages();
    else if (isUtf8Wanted())
        offerUtf8();
}

bool FirstOffers::isLanguageWanted() const
{
    const auto spoken = languageAmong(m_desktop.languages);
    return spoken && spoken != Japanese && spoken != appSettings().Lang && !appSettings().LangOffered;
}

bool FirstOffers::isUtf8Wanted() const
{
    return m_desktop.isUtf8 && !areNewDocumentsAsOnDesktop() && !appSettings().CodecOffered;
}

/// What nobody sees was not offered.
void FirstOffers::countShown()
{
    const NoticeQueue &notices = m_documents.notices();
    const Notice *const shown = notices.heaviest(nullptr);
    const auto isShown = [shown](NoticeKind kind) { return shown && shown->kind == kind; };
    if (notices.has(NoticeKind::Languages))
        appSettings().LangOffered = isShown(NoticeKind::Languages);
    if (notices.has(NoticeKind::CodesOfNew))
        appSettings().CodecOffered = isShown(NoticeKind::CodesOfNew);
}

/// Its words are those of all languages: its reader may not speak the present one.
void FirstOffers::offerLanguages()
{
    Notice notice{ NoticeKind::Languages, nullptr, [] { return u"Language / Langue / 言語"_s; }, {} };
    for (const auto &[language, name] : languageNames)
        notice.offers.push_back({ [name = name] { return name.toString(); },
            [this, language = language] { useLanguage(language); } });
    notice.dismissed = [this] { make(); };
    appSettings().LangOffered = 1;
    m_documents.notices().put(std::move(notice));
}

void FirstOffers::useLanguage(int language)
{
    m_documents.notices().withdraw(NoticeKind::Languages);
    emit languageChosen(language);
    make();
    writeSettings();
}

void FirstOffers::offerUtf8()
{
    Notice notice{ NoticeKind::CodesOfNew, nullptr, newDocumentsText, {} };
    notice.offers.push_back({ [] { return tr("UTF-8 with LF"); }, [this] { useUtf8(); } });
    appSettings().CodecOffered = 1;
    m_documents.notices().put(std::move(notice));
}

/// Also for the documents that are there and new.
void FirstOffers::useUtf8()
{
    m_documents.notices().withdraw(NoticeKind::CodesOfNew);
    appSettings().DefCodec = int(codesOfDesktop.charCode);
    appSettings().DefCRLF = int(codesOfDesktop.returnCode);
    writeSettings();
    for (ctlEditer *const editor : m_documents.editors()) {
        if (!isUnused(*editor))
            continue;
        editor->document().setCodes(codesOfDesktop);
        m_documents.refresh(editor);
    }
}
