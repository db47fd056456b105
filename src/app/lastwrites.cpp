#include "app/lastwrites.h"

#include "app/documentarea.h"
#include "app/documentloader.h"
#include "app/documentsaver.h"
#include "app/recentplaces.h"
#include "editor/ctlediter.h"
#include "files/endorder.h"
#include "platform/qpeapplication.h"
#include "recovery/recoveryjournals.h"
#include "settings/settings.h"

namespace {

/// Leaves room for the settings and for what follows within the three seconds that these writes may take.
constexpr std::chrono::milliseconds longestWrite{ 1500 };

/// What a save that is put in place has for that. What it leaves behind otherwise is found by later starts.
constexpr std::chrono::milliseconds longestGivingUp{ 1000 };

/// What the journals have for the rest.
constexpr std::chrono::milliseconds longestLeaving{ 150 };

} // namespace

LastWrites::LastWrites(DocumentArea &documents, const DocumentLoader &loader, DocumentSaver &saver,
    RecentPlaces &places, RecoveryJournals &journals)
    : m_documents(documents)
    , m_loader(loader)
    , m_saver(saver)
    , m_places(places)
    , m_journals(journals)
{
    if (auto *application = qobject_cast<QPEApplication *>(qApp))
        connect(application, &QPEApplication::endingAtOnce, this, &LastWrites::write);
}

/// The text first: it is what nobody could bring back.
void LastWrites::write()
{
    const EndOrder::Delay delay;
    if (m_documents.current() != m_loader.loading())
        m_documents.commitComposition();
    m_journals.flush(longestWrite);
    const QList<ctlEditer *> editors = m_documents.editors();
    for (auto editor = editors.rbegin(); editor != editors.rend(); ++editor) {
        // A document that is half read has no place yet.
        if (*editor != m_loader.loading())
            m_places.add(**editor);
    }
    writeSettings();
    if (m_saver.giveUp(QDeadlineTimer(longestGivingUp)))
        m_journals.flush(longestLeaving); // what is in its file needs no journal
    m_journals.leaveAll(longestLeaving);
}
