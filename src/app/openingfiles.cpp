#include "app/openingfiles.h"

#include "platform/qpeapplication.h"

OpeningFiles::OpeningFiles(NoticeQueue &notices)
    : m_notices(notices)
{
    if (auto *const application = qobject_cast<QPEApplication *>(qApp))
        connect(application, &QPEApplication::requestDelivered, this, &OpeningFiles::note);
}

void OpeningFiles::note(qsizetype waiting)
{
    if (waiting == 0) {
        m_sign.reset();
        m_open = 0;
        return;
    }
    ++m_open;
    if (!m_sign)
        m_sign.emplace(m_notices, nullptr, WorkNotice::Work::Opening, [this] { end(); });
    m_sign->setProgress(int(m_open * 100 / (m_open + waiting)));
}

void OpeningFiles::end()
{
    if (auto *const application = qobject_cast<QPEApplication *>(qApp))
        application->dropRequests();
    note(0);
}
