#include "app/layoutsigns.h"

#include "app/documentarea.h"
#include "editor/ctlediter.h"
#include "editor/memorybox.h"
#include "platform/freeturn.h"
#include "widget/viewlayout.h"

LayoutSigns::LayoutSigns(DocumentArea &documents)
    : m_documents(documents)
{
    connect(&documents, &DocumentArea::added, this, &LayoutSigns::watch);
    connect(&documents, &DocumentArea::closed, this, [this](const ctlEditer *editor) {
        editor->viewLayout().disconnect(this);
        m_signs.erase(editor);
    });
}

void LayoutSigns::watch(ctlEditer *editor)
{
    ViewLayout &layout = editor->viewLayout();
    connect(&layout, &ViewLayout::begun, this, [this, editor, &layout] {
        const auto stop = [&layout] { layout.stop(); };
        m_signs.try_emplace(editor, m_documents.notices(), editor, WorkNotice::Work::LayingOut, stop);
    });
    connect(&layout, &ViewLayout::progressed, this,
        [this, editor](int percent) { m_signs.at(editor).setProgress(percent); });
    connect(&layout, &ViewLayout::ended, this, [this, editor] { m_signs.erase(editor); });
    connect(&layout, &ViewLayout::failed, editor,
        [editor] { FreeTurn::once(editor, [editor] { tellTooLittleMemory(editor); }); });
}
