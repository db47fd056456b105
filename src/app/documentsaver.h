#pragma once

#include "app/windowdialogs.h"

class DocumentArea;
class RecentPlaces;

/// Saves documents: the one place that writes their files.
class DocumentSaver {
public:
    /// Asks over `window`.
    DocumentSaver(
        QWidget &window, const WindowDialogs &dialogs, DocumentArea &documents, RecentPlaces &places);

    /// Saves under the document's own name and codes; asks for a name when it has none. False when it was not
    /// written.
    bool save(ctlEditer *editor);
    /// The same as another file; without a code or a line end the document keeps its own.
    bool saveTo(ctlEditer *editor, const FileChoice &file);
    /// Asks for a name until the document is written under one; the dialog comes with a code chosen, if one
    /// is given. False when the user gave up.
    bool saveAs(ctlEditer *editor, std::optional<CharCode> charCode = {});
    /// Saves the edited documents in the order of their ids, until one cannot be saved.
    void saveAll();

private:
    QWidget &m_window;
    const WindowDialogs &m_dialogs;
    DocumentArea &m_documents;
    RecentPlaces &m_places;
};
