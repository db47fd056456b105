#pragma once

#include "app/windowdialogs.h"

#include <QCoreApplication>

class DocumentArea;
class RecentPlaces;
class ctlEditer;
struct Utf16Form;

/// Opens and reloads files, as the user or another program wants it: the one place that reads a file into a
/// document.
class DocumentLoader {
    Q_DECLARE_TR_FUNCTIONS(frmMain)
public:
    /// Asks over `window`.
    DocumentLoader(
        QWidget &window, const WindowDialogs &dialogs, DocumentArea &documents, RecentPlaces &places);

    /// Opens a file, or switches to its tab when it is open already; asks before edits are thrown away.
    /// Without a code it is detected; a file that is open already stays as it is, and a notice offers to read
    /// it with the code. The path may be relative.
    void open(const QString &path, std::optional<CharCode> charCode);
    /// Opens a file the user has chosen: in the document that was current then (or null), when nobody would
    /// miss that.
    void openChosen(ctlEditer *editor, const FileChoice &file);
    /// Has the user choose the file.
    void askAndOpen();
    /// The same among the text files of a folder, which ends in "/".
    void askAndOpenIn(const QString &folder);
    /// Makes a document of a file that is not there yet, or switches to its tab.
    void openNew(const QString &path, std::optional<CharCode> charCode);
    /// Opens a file's text as that of a document that was never saved, named so. False, after telling the
    /// user, when it cannot be read; there is no document then. Another code that all bytes fit is taken
    /// instead of the one given or detected, and UTF-16 is read as text.
    bool openUnsaved(const QString &path, const QString &name, std::optional<CharCode> charCode);
    /// The same with a document's file, read as the document was.
    bool openFromDisk(const ctlEditer &editor, const QString &name);
    /// Reads a document's file again, as other programs have made it; asks before edits are thrown away.
    /// Cursor and view stay in their rows.
    void reload(ctlEditer *editor);
    /// Asks whether to read the current document's file again, and does; nothing for one that has none.
    void askAndReload();
    /// Reads a document's file again with another code; asks before edits are thrown away.
    void reopen(ctlEditer *editor, CharCode charCode);
    /// The same as UTF-16 text.
    void reopenUtf16(ctlEditer *editor, Utf16Form form);

    /// The document whose file is being read; null for none.
    const ctlEditer *loading() const { return m_loading; }

private:
    void askAndOpen(const FileChoice &start);
    bool load(ctlEditer *editor, const FileChoice &file);
    bool loadInto(ctlEditer *editor, const FileChoice &file);
    bool loadAgain(ctlEditer *editor);
    void loadAsUtf16(ctlEditer *editor, Utf16Form form);
    bool mayReopen(const ctlEditer &editor);
    void offerCode(ctlEditer *editor, CharCode charCode);
    bool isReloadWanted(const ctlEditer &editor);
    bool isReloadWanted(const QString &title, const QString &question);

    QWidget &m_window;
    const WindowDialogs &m_dialogs;
    DocumentArea &m_documents;
    RecentPlaces &m_places;
    const ctlEditer *m_loading = nullptr;
};
