#include "app/openingfiles.h"

#include "app/frmmain.h"
#include "app/keymap.h"
#include "platform/keypause.h"
#include "platform/qpeapplication.h"

OpeningFiles::OpeningFiles(NoticeQueue &notices)
    : m_notices(notices)
{
    if (auto *const application = qobject_cast<QPEApplication *>(qApp))
        connect(application, &QPEApplication::requestDelivered, this, &OpeningFiles::note);
    connect(&KeyPause::instance(), &KeyPause::dropped, this, &OpeningFiles::refuse);
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

void OpeningFiles::refuse(const QKeyEvent &press)
{
    if (!m_sign)
        return;
    if (commandsForKey(press).contains(&frmMain::slotEtcNotice))
        emit noticeKeysWanted();
    else
        m_sign->refuse();
}

void OpeningFiles::end()
{
    if (auto *const application = qobject_cast<QPEApplication *>(qApp))
        application->dropRequests();
    note(0);
}
