#pragma once

#include "tests/filedialog/formtest.h"

#include <QComboBox>
#include <QFile>
#include <QPushButton>
#include <QStandardPaths>
#include <QWidget>

inline QPushButton *buttonOf(const QWidget &form, const QString &text)
{
    for (QPushButton *button : form.findChildren<QPushButton *>()) {
        if (button->text() == text)
            return button;
    }
    qFatal("no button %s", qPrintable(text));
}

/// Of the search panel.
inline QComboBox *findField(const QWidget &panel)
{
    return panel.findChildren<QComboBox *>(Qt::FindDirectChildrenOnly).at(0);
}

inline QComboBox *replaceField(const QWidget &panel)
{
    return panel.findChildren<QComboBox *>(Qt::FindDirectChildrenOnly).at(1);
}

inline QString historyFileName()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/marlopad_fr.conf");
}

inline QByteArray historyFileContents()
{
    QFile file(historyFileName());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void writeHistoryFile(const QByteArray &contents)
{
    QFile file(historyFileName());
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
}
