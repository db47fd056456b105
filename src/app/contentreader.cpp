#include "app/contentreader.h"

#include "app/documentfile.h"
#include "files/endorder.h"
#include "files/filename.h"

#include <QPointer>

ContentReader::ContentReader()
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
    if (m_asked.contains(editor))
        return;
    m_asked << editor;
    const QString file = fullName(*editor);
    m_thread.start([this, asked = static_cast<QObject *>(editor), pointer = QPointer(editor), file] {
        const auto content = contentOf(FileName::toBytes(file), FileCalls::system(),
            [this] { return m_isEnding || EndOrder::isGiven(); });
        const auto tell = [this, asked, pointer, file, content] {
            m_asked.remove(asked);
            if (pointer && content && fullName(*pointer) == file)
                emit seen(pointer, *content);
        };
        QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
    });
}
