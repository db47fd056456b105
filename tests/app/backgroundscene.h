#pragma once

#include "tests/app/documentparts.h"

#include <memory>

/// The documents of a window, with a long file that is read behind it, step by step.
class BackgroundScene {
protected:
    void beginScene()
    {
        m_parts = std::make_unique<DocumentParts>();
        m_parts->jobs.fewest = 1;
        m_runner = &m_parts->steps;
    }
    static QByteArray longLog(const QByteArray &line = "a line of a long log")
    {
        QByteArray text;
        for (int i = 0; i < lineCount; ++i)
            text += line + ' ' + QByteArray::number(i) + '\n';
        return text;
    }
    ctlEditer *open(const QString &name = QStringLiteral("a.txt"))
    {
        return m_parts->open(m_parts->files.folder() + name);
    }
    QString write(const QByteArray &content)
    {
        return m_parts->files.write(QStringLiteral("a.txt"), content);
    }
    DocumentArea &documents() { return m_parts->documents; }
    /// By the strip's "Stop".
    void stop(const ctlEditer *editor)
    {
        QTRY_VERIFY(documents().notices().has(NoticeKind::Work, editor));
        const auto act = documents().notices().heaviest(editor)->offers.front().act;
        act();
    }

    static constexpr qint64 atOnceAlways = qint64{ 1 } << 40;
    static constexpr int lineCount = 30000; ///< in several blocks

    SteppedRunner *m_runner = nullptr;
    std::unique_ptr<DocumentParts> m_parts;
};
