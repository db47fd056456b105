#include "app/writingnotices.h"

#include "app/documentarea.h"
#include "app/writingnotice.h"
#include "editor/ctlediter.h"

WritingNotices::WritingNotices(DocumentArea &documents, DocumentSaver &saver)
{
    connect(&documents, &DocumentArea::added, this, [&documents, &saver, this](ctlEditer *editor) {
        const auto *const notice = new WritingNotice(*editor, documents, saver);
        connect(notice, &WritingNotice::substituted, this, [=, this] { emit substituted(editor); });
        connect(notice, &WritingNotice::settled, this, [=, this] { emit settled(editor); });
        connect(&documents, &DocumentArea::closed, notice, [=](const ctlEditer *closed) {
            if (closed == editor)
                delete notice;
        });
    });
}
