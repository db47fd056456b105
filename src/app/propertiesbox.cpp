#include "app/propertiesbox.h"

#include "app/awaitedanswer.h"
#include "app/documentarea.h"
#include "app/documentproperties.h"
#include "app/windowjobs.h"
#include "document/countwork.h"
#include "editor/ctlediter.h"
#include "platform/messagebox.h"

PropertiesBox::PropertiesBox(QWidget &window, DocumentArea &documents, const WindowJobs &jobs)
    : m_window(window)
    , m_documents(documents)
    , m_jobs(jobs)
{
}

PropertiesBox::~PropertiesBox() = default;

void PropertiesBox::show()
{
    ctlEditer *const editor = m_documents.current();
    if (!editor)
        return;
    const TextStore &text = std::as_const(*editor).document().store();
    if (m_counting)
        m_counting->refuse();
    else if (text.length() < m_jobs.fewest)
        showCounted(*editor, countText(text));
    else
        count(*editor);
}

void PropertiesBox::count(ctlEditer &editor)
{
    auto owned = std::make_unique<CountWork>(TextSnapshot(std::as_const(editor).document().store()));
    const CountWork *const work = owned.get();
    m_counting = std::make_unique<AwaitedAnswer>(
        editor, m_documents, std::move(owned), WorkNotice::Work::Counting, *m_jobs.runner);
    AwaitedAnswer *const counting = m_counting.get();
    connect(&m_documents, &DocumentArea::currentChanged, counting, &AwaitedAnswer::giveUp);
    connect(counting, &AwaitedAnswer::ended, this, [this, &editor, work](bool isAnswered) {
        m_counting.release()->deleteLater(); // it is still telling of its end
        if (isAnswered)
            showCounted(editor, work->counts());
    });
}

void PropertiesBox::showCounted(const ctlEditer &editor, const TextCounts &counts)
{
    MessageBox::information(&m_window, tr("Document properties"), propertiesOf(editor, counts));
}
