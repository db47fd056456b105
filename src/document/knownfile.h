#pragma once

#include "document/documentversion.h"

/// Where a document is saved, and what was known of the file before.
struct SaveTarget {
    QString path; ///< ends in "/"
    QString name;
    BeforeWriting before = {};
    bool wasToBeKept = false; ///< the old content, as its user wanted
    bool keepsOldContent = false; ///< for this reason or one of its own
};

/// What a document knows of the file that it is from and goes to: its name, what it was when it was read or
/// written, and whether a save over it has to keep what it has.
class KnownFile {
public:
    /// None. `calls` is not owned.
    explicit KnownFile(const FileCalls &calls = FileCalls::system());

    /// Folder, ending in "/"; empty for a document never saved.
    QString path() const { return m_path; }
    QString name() const { return m_name; }
    /// It is to be made by the first save, which keeps what another program may have put there by then.
    bool isNew() const;

    /// What the file was when it was read or written last; of no file for a document that never was.
    const FileVersion &version() const { return m_version.known(); }
    /// What other programs have done to it since then, but for what is acknowledged. `seen` is what somebody
    /// found who has read through the file because this was unsure, see ContentReading. Cost: one call where
    /// nothing has happened.
    FileChange change(const std::optional<SeenContent> &seen = {});
    /// The user knows what the file is now. A save over it keeps a copy of it all the same.
    void acknowledge();
    /// The next save to the file keeps a copy of what it has now.
    void keep() { m_isToBeKept = true; }

    // What follows is for the document, which alone reads and writes.

    /// Nothing was read from or written to a file of that name.
    void setName(const QString &path, const QString &name);
    /// The document has the name from here on, and nothing of the file until it is read.
    void beginReading(const QString &path, const QString &name);
    void endReading(const FileVersion &version);
    /// More of it was read.
    void setReadOn(const FileVersion &version) { m_version.setReadOn(version); }
    /// The document is about to be written as path + name. Cost: see DocumentVersion::beginWriting().
    SaveTarget beginWriting(const QString &path, const QString &name);
    /// See DocumentVersion::writerOf().
    Overtaken writerOf(const FileStamp &file) const { return m_version.writerOf(file); }
    /// It was.
    void endWriting(const SaveTarget &target, const FileVersion &version);

private:
    QByteArray ownName() const;

    const FileCalls *m_calls;
    QString m_path;
    QString m_name;
    bool m_isUnread = false; ///< it could not be read: the text is not its own
    bool m_isToBeKept = false;
    DocumentVersion m_version;
};
