#include "app/obstaclenotices.h"

#include "app/documentarea.h"
#include "app/documentfile.h"
#include "app/documentsaver.h"
#include "files/filename.h"

ObstacleNotices::ObstacleNotices(DocumentArea &documents, DocumentSaver &saver, const FileCalls &calls)
    : m_documents(documents)
    , m_saver(saver)
    , m_calls(calls)
{
    connect(&documents, &DocumentArea::added, this, [this](ctlEditer *editor) {
        const auto look = [this, editor] { check(editor); };
        connect(&editor->document(), &TextDocument::replaced, this, look);
        connect(&editor->document(), &TextDocument::saved, this, look);
    });
}

void ObstacleNotices::check(ctlEditer *editor)
{
    if (!hasFile(*editor))
        return;
    if (const auto obstacle = writeObstacle(FileName::toBytes(fullName(*editor)), m_calls))
        tell(editor, *obstacle);
    else
        m_documents.notices().withdraw(NoticeKind::NotWritable, editor);
}

QString ObstacleNotices::textOf(WriteObstacle obstacle)
{
    switch (obstacle) {
    case WriteObstacle::NotAllowed:
        return tr("You may not write this file.");
    case WriteObstacle::ReadOnlyDisk:
        return tr("The disk of this file can only be read.");
    case WriteObstacle::FullDisk:
        return tr("The disk of this file is full.");
    }
    Q_UNREACHABLE();
}

void ObstacleNotices::tell(ctlEditer *editor, WriteObstacle obstacle)
{
    Notice notice{ NoticeKind::NotWritable, editor, [obstacle] { return textOf(obstacle); }, {} };
    notice.offers.push_back(
        { [] { return tr("Save As…"); }, [this, editor] { m_saver.beginSaveAs(editor); } });
    m_documents.notices().put(std::move(notice));
}
