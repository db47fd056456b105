#pragma once

#include "document/filecodes.h"
#include "editor/notice.h"

#include <QCoreApplication>
#include <QHash>
#include <QObject>

#include <initializer_list>

class DocumentArea;
class DocumentLoader;
class ctlEditer;

/// Tells the user what reading a file has found out that puts its text at risk, and offers the remedy:
///
/// - its bytes do not fit the code it was read with, or all of them fit another one;
/// - it is UTF-16, which the rules that go by bytes change;
/// - it was taken for binary, which cannot be saved;
/// - a save writes some bytes as others, such as a line end unlike the first one.
///
/// Each goes as soon as it is not so any more: when the text is read again, or saved in another code.
class ReadingNotices : public QObject {
    Q_DECLARE_TR_FUNCTIONS(frmMain)
public:
    ReadingNotices(DocumentArea &documents, DocumentLoader &loader);

private:
    void add(ctlEditer *editor);
    void update(ctlEditer *editor);
    void followChoice(const ctlEditer *editor);
    void followSave(const ctlEditer *editor);
    void withdraw(std::initializer_list<NoticeKind> kinds, const ctlEditer *editor);
    void tellCode(ctlEditer *editor);
    void tellBinary(ctlEditer *editor);
    void tellUtf16(ctlEditer *editor);
    void tellRewritten(ctlEditer *editor);
    NoticeOffer codeOffer(ctlEditer *editor, CharCode code, std::function<QString()> text);
    NoticeOffer everyCode(ctlEditer *editor);
    void keepUtf16(ctlEditer *editor);

    DocumentArea &m_documents;
    DocumentLoader &m_loader;
    QHash<const ctlEditer *, FileCodes> m_inFile; ///< codes that each was read or saved in
};
