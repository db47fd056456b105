#include "app/contentreader.h"

#include "app/documentfile.h"
#include "files/endorder.h"
#include "files/filename.h"

#include <QPointer>

ContentReader::ContentReader(const FileCalls &calls)
    : m_calls(calls)
{
    m_thread.setMaxThreadCount(1);
}

ContentReader::~ContentReader()
{
    m_isEnding = true;
    m_thread.waitForDone();
}

void ContentReader::read(ctlEditer *editor)
{
    const bool isRead = m_asked.contains(editor);
    m_asked[editor] = isRead ? Asked::Again : Asked::Once;
    if (!isRead)
        start(editor);
}

void ContentReader::start(ctlEditer *editor)
{
    const QString file = fullName(*editor);
    m_thread.start([this, asked = static_cast<QObject *>(editor), pointer = QPointer(editor), file] {
        const auto content =
            contentOf(FileName::toBytes(file), m_calls, [this] { return m_isEnding || EndOrder::isGiven(); });
        const auto tell = [this, asked, pointer, file, content] {
            const Asked times = m_asked.take(asked);
            if (!pointer)
                return;
            if (content && fullName(*pointer) == file)
                emit seen(pointer, *content);
            else if (times == Asked::Again && !EndOrder::isGiven())
                read(pointer);
        };
        QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
    });
}
