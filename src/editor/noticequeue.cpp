#include "editor/noticequeue.h"

#include <algorithm>

std::vector<Notice>::iterator NoticeQueue::find(NoticeKind kind, const QObject *about)
{
    return std::ranges::find_if(
        m_notices, [=](const Notice &notice) { return notice.kind == kind && notice.about == about; });
}

void NoticeQueue::put(Notice notice)
{
    if (notice.about)
        connect(
            notice.about, &QObject::destroyed, this, &NoticeQueue::withdrawAllAbout, Qt::UniqueConnection);
    const auto found = find(notice.kind, notice.about);
    if (found == m_notices.end())
        m_notices.push_back(std::move(notice));
    else
        *found = std::move(notice);
    emit changed();
}

void NoticeQueue::withdraw(NoticeKind kind, const QObject *about)
{
    const auto found = find(kind, about);
    if (found == m_notices.end())
        return;
    m_notices.erase(found);
    emit changed();
}

void NoticeQueue::withdrawAllAbout(const QObject *document)
{
    if (std::erase_if(m_notices, [=](const Notice &notice) { return notice.about == document; }) > 0)
        emit changed();
}

void NoticeQueue::dismiss(NoticeKind kind, const QObject *about)
{
    const auto found = find(kind, about);
    if (found == m_notices.end())
        return;
    const auto dismissed = std::move(found->dismissed);
    withdraw(kind, about);
    if (dismissed)
        dismissed();
}

bool NoticeQueue::has(NoticeKind kind, const QObject *about) const
{
    return std::ranges::any_of(
        m_notices, [=](const Notice &notice) { return notice.kind == kind && notice.about == about; });
}

void NoticeQueue::applySettings()
{
    emit changed();
}

const Notice *NoticeQueue::heaviest(const QObject *document) const
{
    const Notice *found = nullptr;
    for (const Notice &notice : m_notices) {
        const bool concerns = !notice.about || notice.about == document;
        if (concerns && isWanted(notice.kind) && (!found || weightOf(notice.kind) > weightOf(found->kind)))
            found = &notice;
    }
    return found;
}
