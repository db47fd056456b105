#include "app/documentsaver.h"

#include "app/documentarea.h"
#include "app/recentplaces.h"
#include "editor/ctlediter.h"
#include "editor/ctltabbar.h"
#include "filedialog/documentsfolder.h"
#include "platform/qcop.h"

using namespace Qt::StringLiterals;

namespace {

/// Tells the file explorer, when it runs, that a file has changed.
void announceSaved(const ctlEditer &editor)
{
    const QString channel = u"QPE/Application/corvex"_s;
    if (!QCopChannel::isRegistered(channel))
        return;
    QCopEnvelope message(channel, u"refreshListItem(QString,QString)"_s);
    message << editor.path() << editor.name();
}

} // namespace

DocumentSaver::DocumentSaver(
    QWidget &window, const WindowDialogs &dialogs, DocumentArea &documents, RecentPlaces &places)
    : m_window(window)
    , m_dialogs(dialogs)
    , m_documents(documents)
    , m_places(places)
{
}

bool DocumentSaver::save(ctlEditer *editor)
{
    return saveTo(editor, { editor->path(), editor->name() });
}

bool DocumentSaver::saveTo(ctlEditer *editor, const FileChoice &file)
{
    if (file.folder.isEmpty())
        return saveAs(editor);
    const bool isSaved = editor->saveFile(file.folder, file.name, file.charCode, file.returnCode);
    // Codes that were chosen are the document's also when it could not be written.
    m_documents.refresh(editor);
    if (!isSaved)
        return false;
    m_places.dropCarried(*editor);
    announceSaved(*editor);
    return true;
}

bool DocumentSaver::saveAs(ctlEditer *editor, std::optional<CharCode> charCode)
{
    m_documents.setCurrent(editor);
    FileChoice start = startFor(editor);
    start.charCode = charCode;
    while (const auto file = m_dialogs.chooseFile(&m_window, frmFileDialog::SaveAs, start)) {
        DocumentsFolder::makeForSaving(file->folder);
        if (saveTo(editor, *file))
            return true;
        // Binary text cannot be saved anywhere.
        if (editor->document().charCode() == CharCode::Binary)
            return false;
        start = *file; // what was chosen is not lost, and can be mended
    }
    return false;
}

void DocumentSaver::saveAll()
{
    ctlEditer *const before = m_documents.current();
    if (!before)
        return;
    const ctlTabBar &tabs = *m_documents.tabBar();
    for (const int id : tabs.ids()) {
        ctlEditer *editor = tabs.editorOf(id);
        if (editor && editor->edited() && !save(editor))
            return;
    }
    // A document that asked something was shown for that; where saving stops, it stays so.
    m_documents.setCurrent(before);
}
